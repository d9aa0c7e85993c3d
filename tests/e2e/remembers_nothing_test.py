"""A run leaves nothing behind: no file, and nothing that the next run would go by."""

import os

import e2e

# Where a program may keep what it wants to find again. Caches are the libraries' own.
KEPT = ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR")


class Remembers:
    def setUp(self):
        super().setUp()
        state = os.path.join(self.directory, "state")
        os.mkdir(state)
        self.environment["XDG_STATE_HOME"] = state

    def files(self):
        return sorted(os.path.join(folder, name) for variable in KEPT
                      for folder, _, names in os.walk(self.environment[variable])
                      for name in names)

    def test_no_file_is_left_and_the_next_run_begins_as_the_first(self):
        before = self.files()
        player = self.play(e2e.LONG)
        first = player.state()
        # All that a person can change.
        self.show_controls(player)
        pause, screen = player.button("video/pause"), player.state()["screen"]
        self.touch(player, screen["width"] * 4 // 5, pause[1])
        player.wait("display_mode==original_or_letter")
        self.turn(player, 2)
        player.wait("position>=15000")
        player.control("volume", 3)
        player.wait("volume==3")
        player.control("rotate", 90)
        player.wait("rotation==90")
        player.control("key", "back")
        player.expect_exit(0)
        self.assertEqual(self.files(), before)

        player = self.play(e2e.LONG)
        second = player.state()
        self.assertLess(second["position"], 10_000)
        for entry in ("display_mode", "rotation", "volume", "controls", "page", "language"):
            self.assertEqual(second[entry], first[entry], entry)


class Headless(Remembers, e2e.TestCase):
    pass


class InAWindow(Remembers, e2e.DisplayTestCase):
    pass


if __name__ == "__main__":
    e2e.main()

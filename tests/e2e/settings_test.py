"""What tesselctl changes in the system around the program: region, clock, screen reader, focus."""

import os

import e2e

FIFTEEN = {"ar_EG": "\u0661\u0665", "en_GB": "15", "mr_IN.UTF-8": "\u0967\u096b"}


class Settings(e2e.TestCase):
    def assert_plays_on(self, player):
        position = player.state()["position"]
        player.wait(f"player==playing && position>{position}")

    def assert_wrong(self, player, *words):
        status, reply = player.try_control(*words)
        self.assertEqual(status, 2, (words, reply))

    def stored(self):
        with open(os.path.join(self.environment["XDG_CONFIG_HOME"], "tessel", "settings.ini"),
                  encoding="utf-8") as file:
            return file.read()


class Region(Settings):
    def test_that_is_changed_writes_the_next_number(self):
        player = self.play(e2e.LONG)
        # So that the volume's screen doesn't close by itself.
        player.control("screen-reader", "on")
        self.press(player, "video/volume/on")
        player.wait("page==tsl_volume_view && level!=null")
        for region, level in FIFTEEN.items():
            player.control("region", region)
            self.assertEqual(player.state()["region"], region)
            player.control("volume", 1)
            player.control("volume", 15)
            player.wait(f'level=="{level}"')
        self.assertIn("regionformat=mr_IN.UTF-8\n", self.stored())
        self.assert_plays_on(player)

    def test_that_is_none_changes_nothing(self):
        player = self.play(e2e.LONG)
        before = player.state()["region"]
        for words in (["region"], ["region", ""], ["region", "../x"], ["region", "en", "GB"]):
            self.assert_wrong(player, *words)
        self.assertEqual(player.state()["region"], before)


class Clock(Settings):
    def test_has_twelve_or_twenty_four_hours(self):
        player = self.play(e2e.LONG)
        self.assertEqual(player.state()["clock"], 24)
        for hours, stored in ((12, 1), (24, 2), (12, 1)):
            player.control("clock", hours)
            self.assertEqual(player.state()["clock"], hours)
            self.assertIn(f"regionformat_time1224={stored}\n", self.stored())
        self.assert_plays_on(player)
        player.end()
        self.assertEqual(self.play(e2e.LONG).state()["clock"], 12)

    def test_of_other_hours_is_wrong_use(self):
        player = self.play(e2e.LONG)
        for words in (["clock"], ["clock", "13"], ["clock", "twelve"], ["clock", "12", "24"]):
            self.assert_wrong(player, *words)
        self.assertEqual(player.state()["clock"], 24)


class ScreenReader(Settings):
    def test_keeps_the_controls_on_the_screen_while_it_is_on(self):
        player = self.play(e2e.LONG)
        self.assertFalse(player.state()["screen_reader"])
        player.control("screen-reader", "on")
        self.assertTrue(player.state()["screen_reader"])
        self.show_controls(player)
        shown = player.state()["position"]
        # They would have gone long before.
        self.assertTrue(player.wait(f"position>{shown + 5000}")["controls"])
        player.control("screen-reader", "off")
        self.assertFalse(player.state()["screen_reader"])
        self.assert_plays_on(player)

    def test_is_on_or_off_and_nothing_else(self):
        player = self.play(e2e.LONG)
        for words in (["screen-reader"], ["screen-reader", "loud"], ["screen-reader", "on", "off"]):
            self.assert_wrong(player, *words)
        self.assertFalse(player.state()["screen_reader"])


class Focus:
    """The program holds the focus while it plays, and while nobody takes it."""

    def play_long(self):
        return self.play(e2e.LONG)

    def test_is_seen_with_each_behaviour(self):
        player = self.play_long()
        for behaviour in ("none", "fading"):
            player.wait("player==playing && focus==true")
            player.control("focus", "take", behaviour)
            player.wait("player==paused && focus==false")
            player.control("focus", "give-back")
        player.wait("player==playing && focus==true")
        for behaviour in ("no-resume", "both"):
            player.control("focus", "take", behaviour)
            player.wait("player==paused && focus==false")
            player.control("focus", "give-back")
            self.press(player, "video/play")
            player.wait("player==playing && focus==true")

    def test_of_a_behaviour_that_is_none_is_wrong_use(self):
        player = self.play_long()
        for words in (["focus"], ["focus", "take"], ["focus", "take", "sharply"],
                      ["focus", "give-back", "none"], ["focus", "keep"]):
            self.assert_wrong(player, *words)
        self.assertEqual(player.try_control("focus", "give-back")[0], 1)
        self.assertTrue(player.wait("focus==true"))


class FocusOfTheProcess(Focus, Settings):
    pass


class FocusOnTheSessionBus(Focus, Settings):
    def play_long(self):
        folder = os.path.join(self.directory, "session")
        os.makedirs(folder)
        bus = e2e.Bus(folder)
        self.addCleanup(bus.end)
        return self.play(e2e.LONG, bus=bus)


if __name__ == "__main__":
    e2e.main()

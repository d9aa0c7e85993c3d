"""The scenarios of the documentation, and how a script fails."""

import glob
import math
import os
import subprocess
import time

import e2e

# A rough seek goes to a keyframe, one of which comes each second, and what plays between is not
# the same twice.
SLACK_MS = 4_000 if not e2e.SLOW else 30_000
# How far the middle of the ring lies from the edge of the screen.
RING_PIXELS = 25
SCENARIOS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../docs/scenarios")


class ScriptTestCase:
    def start_recording(self, player, name):
        """The tool that records, and listens by now."""
        tool = subprocess.Popen(
            [os.path.join(e2e.BIN, "tesselctl"), "--pid", str(player.child.pid), "record", name],
            env=self.environment, stderr=subprocess.PIPE, text=True)
        self.addCleanup(tool.stderr.close)
        self.addCleanup(tool.kill)
        e2e.wait_until(lambda: os.path.exists(name), "the recording to begin")
        e2e.wait_until(lambda: player.try_control("input", "0")[0] == 1, "the tool to listen")
        return tool

    def play_script(self, player, *lines, name=None):
        if name is None:
            name = os.path.join(self.directory, "script")
            with open(name, "w", encoding="utf-8") as file:
                file.writelines(line + "\n" for line in lines)
        return subprocess.run(
            [os.path.join(e2e.BIN, "tesselctl"), "--pid", str(player.child.pid), "play-script",
             name], env=self.environment, capture_output=True, text=True,
            timeout=6 * e2e.PATIENCE)


class Script(ScriptTestCase, e2e.TestCase):
    def test_every_scenario_plays_to_its_end(self):
        names = sorted(glob.glob(SCENARIOS + "/*.tesselctl"))
        self.assertGreaterEqual(len(names), 10)
        for name in names:
            with self.subTest(scenario=os.path.basename(name)):
                player = self.play(e2e.LONG)
                done = self.play_script(player, name=name)
                self.assertEqual((done.stderr, done.returncode), ("", 0))
                player.end()

    def test_what_a_person_does_is_recorded_and_plays_again(self):
        player = self.play(e2e.LONG)
        name = os.path.join(self.directory, "recorded")
        tool = self.start_recording(player, name)

        def lines():
            with open(name, encoding="utf-8") as file:
                return [line.rstrip("\n") for line in file]

        def do(*words):
            """Until the tool, which may still be starting, has seen it."""
            before = len(self.commands(lines()))
            player.control(*words)
            e2e.wait_until(lambda: len(self.commands(lines())) > before, f"a record of {words}")

        begin = time.monotonic()
        do("tap", "180", "60")
        do("press", "180", "70", "500")
        do("drag", "100", "60", "200", "60", "200")
        do("bezel", "-1")
        do("rotate", "180")
        do("key", "back")
        took_ms = (time.monotonic() - begin) * 1000
        player.exit_status()
        self.assertEqual((tool.wait(e2e.PATIENCE), tool.stderr.read()), (0, ""))
        recorded = self.commands(lines())
        self.assertEqual(recorded[0], "tap 180 60")
        self.assertRegex(recorded[1], r"^press 180 70 [45]\d\d$")
        self.assertRegex(recorded[2], r"^drag 100 60 200 60 \d+$")
        self.assertEqual(recorded[3:], ["bezel -1", "rotate 180", "key back"])
        self.assertGreater(len(lines()), len(recorded))
        # The script takes no longer than the person did: a finger that is down is no pause.
        pauses_ms = sum(int(line.split()[1]) for line in lines() if line.startswith("sleep "))
        strokes_ms = 50 + int(recorded[1].split()[-1]) + int(recorded[2].split()[-1])
        self.assertLessEqual(pauses_ms + strokes_ms, took_ms)

        player = self.play(e2e.LONG)
        done = self.play_script(player, name=name)
        self.assertEqual((done.stderr, done.returncode), ("", 0))
        player.exit_status()

    @staticmethod
    def commands(lines):
        return [line for line in lines if not line.startswith("sleep ")]

    def test_the_first_command_that_fails_ends_it_and_names_its_line(self):
        player = self.play(e2e.LONG)
        done = self.play_script(player, "# a comment", "state", "wait player==idle 10", "quit")
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"^tesselctl: \S+/script:3: [^\n]+\n$")
        self.assertEqual(player.state()["page"], "tsl_player_view")

    def test_a_command_that_is_none_is_wrong_use(self):
        player = self.play(e2e.LONG)
        for line in ("dance", "sleep", "sleep soon", "tap 1", "sleep -1"):
            with self.subTest(line=line):
                done = self.play_script(player, line)
                self.assertEqual(done.returncode, 2)
                self.assertRegex(done.stderr, r"^tesselctl: \S+/script:1: [^\n]+\n$")

    def test_a_script_that_cannot_be_read_sends_nothing(self):
        player = self.play(e2e.LONG)
        done = self.play_script(player, "quit", 'launch "without an end')
        self.assertEqual(done.returncode, 2)
        self.assertRegex(done.stderr, r"^tesselctl: \S+/script:2: a quote has no end\n$")
        for name in (self.directory, os.path.join(self.directory, "missing")):
            done = self.play_script(player, name=name)
            self.assertEqual(done.returncode, 2)
            self.assertIn("can't be read", done.stderr)
        self.assertEqual(player.state()["page"], "tsl_player_view")


class Recording(ScriptTestCase, e2e.DisplayTestCase):
    """With a real pointer, wheel and keys."""

    def think(self, player):
        """A person takes a second from one thing to the next; a script can't react at all."""
        player.wait(f"player==playing && position>={player.state()['position'] + 1000}")

    def do_it_by_hand(self, player):
        self.show_controls(player)
        self.think(player)
        self.touch(player, *player.button("video/displaymode/letterbox"))
        player.wait("display_mode==original_or_letter")
        self.think(player)
        self.turn(player, 3)
        player.wait("player==playing && position>=25000")
        self.think(player)
        self.key(player, "Left")
        player.wait("player==playing && position<28000")
        self.think(player)
        self.drag_ring(player)
        return player.wait("player==playing && position>=40000")

    def drag_ring(self, player):
        """From the top of the ring to the right, past some detents."""
        left, top, _ = self.place_of_screen(player)
        screen = player.state()["screen"]
        middle = left + screen["width"] // 2, top + screen["height"] // 2
        radius = screen["height"] // 2 + RING_PIXELS
        places = [(middle[0] + round(radius * math.sin(math.radians(degrees))),
                   middle[1] - round(radius * math.cos(math.radians(degrees))))
                  for degrees in range(0, 50, 5)]
        words = ["mousemove", *places[0], "mousedown", 1]
        for place in places[1:]:
            words += ["sleep", 0.03, "mousemove", *place]
        self.display.tool(*words, "mouseup", 1)

    def test_of_hands_plays_again_to_the_same_end(self):
        player = self.play(e2e.LONG)
        self.place_of_screen(player)
        name = os.path.join(self.directory, "recorded")
        tool = self.start_recording(player, name)
        player.wait("position>=500")
        by_hand = self.do_it_by_hand(player)
        tool.terminate()
        tool.wait(e2e.PATIENCE)
        player.end()

        player = self.play(e2e.LONG)
        player.wait("position>=500")
        done = self.play_script(player, name=name)
        self.assertEqual((done.stderr, done.returncode), ("", 0))
        again = player.wait("player==playing && position>=40000")
        self.assertEqual(again["display_mode"], by_hand["display_mode"])
        self.assertLessEqual(abs(again["position"] - by_hand["position"]), SLACK_MS)


if __name__ == "__main__":
    e2e.main()

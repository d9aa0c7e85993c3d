"""The scenarios of the documentation, and how a script fails."""

import glob
import os
import subprocess

import e2e

SCENARIOS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../docs/scenarios")


class Script(e2e.TestCase):
    def play_script(self, player, *lines, name=None):
        if name is None:
            name = os.path.join(self.directory, "script")
            with open(name, "w", encoding="utf-8") as file:
                file.writelines(line + "\n" for line in lines)
        return subprocess.run(
            [os.path.join(e2e.BIN, "tesselctl"), "--pid", str(player.child.pid), "play-script",
             name], env=self.environment, capture_output=True, text=True,
            timeout=6 * e2e.PATIENCE)

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
        tool = subprocess.Popen(
            [os.path.join(e2e.BIN, "tesselctl"), "--pid", str(player.child.pid), "record", name],
            env=self.environment, stderr=subprocess.PIPE, text=True)
        self.addCleanup(tool.kill)

        def lines():
            with open(name, encoding="utf-8") as file:
                return [line.rstrip("\n") for line in file]

        def do(*words):
            """Until the tool, which may still be starting, has seen it."""
            before = len(self.commands(lines()))
            player.control(*words)
            e2e.wait_until(lambda: len(self.commands(lines())) > before, f"a record of {words}")

        e2e.wait_until(lambda: os.path.exists(name), "the recording to begin")
        e2e.wait_until(lambda: player.try_control("input", "0")[0] == 1, "the tool to listen")
        do("tap", "180", "60")
        do("press", "180", "70", "500")
        do("drag", "100", "60", "200", "60", "200")
        do("bezel", "-1")
        do("rotate", "180")
        do("key", "back")
        player.exit_status()
        self.assertEqual((tool.wait(e2e.PATIENCE), tool.stderr.read()), (0, ""))
        tool.stderr.close()
        recorded = self.commands(lines())
        self.assertEqual(recorded[0], "tap 180 60")
        self.assertRegex(recorded[1], r"^press 180 70 [45]\d\d$")
        self.assertRegex(recorded[2], r"^drag 100 60 200 60 \d+$")
        self.assertEqual(recorded[3:], ["bezel -1", "rotate 180", "key back"])
        self.assertGreater(len(lines()), len(recorded))

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


if __name__ == "__main__":
    e2e.main()

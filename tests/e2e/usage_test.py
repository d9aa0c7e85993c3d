"""The command lines of the program and of its tool."""

import os
import subprocess

import e2e


class CommandLine(e2e.TestCase):
    def assert_wrong_use(self, *arguments):
        status, output, player = self.run_to_end(*arguments, mode=[])
        self.assertEqual(status, 2, arguments)
        self.assertEqual(output, "")
        self.assertEqual(len(player.text().splitlines()), 1, player.text())

    def test_wrong_use_gives_status_two_one_line_and_nothing_else(self):
        for arguments in (["--no-such-option"], ["--screen"], ["--screen", "0x0"],
                          ["--screen", "wide"], ["--log", "loud"], ["--extra", "novalue"],
                          ["--screenshot", "file"], ["--profile", "phone"], ["one", "two"]):
            with self.subTest(arguments=arguments):
                self.assert_wrong_use(*arguments)

    def test_help_and_version_are_printed_without_starting_anything(self):
        for option, word in (("--help", "--headless"), ("--version", "tessel ")):
            status, output, player = self.run_to_end(option, mode=[])
            self.assertEqual(status, 0)
            self.assertIn(word, output)
            self.assertEqual(player.text(), "")

    def test_the_size_of_the_screen_is_that_of_the_option(self):
        player = self.start("--screen", "180x180", e2e.clip(e2e.LONG))
        self.assertEqual(player.wait("player==playing")["screen"], {"width": 180, "height": 180})
        picture = self.screen(player)
        self.assertEqual((picture.width, picture.height), (180, 180))

    def test_no_log_without_the_option(self):
        status, _, player = self.run_to_end(e2e.clip(e2e.SHORT))
        self.assertEqual(status, 0)
        self.assertEqual(player.log(), [])


class Tool(e2e.TestCase):
    def tool(self, *arguments):
        done = subprocess.run([os.path.join(e2e.BIN, "tesselctl"), *arguments],
                              env=self.environment, capture_output=True, text=True,
                              timeout=e2e.PATIENCE)
        return done.returncode, done.stdout, done.stderr

    def test_no_player_is_a_failure_with_one_line(self):
        status, output, errors = self.tool("state")
        self.assertEqual((status, output), (1, ""))
        self.assertEqual(len(errors.splitlines()), 1)

    def test_wrong_use_without_a_player(self):
        for arguments in ([], ["--pid"], ["--pid", "x", "state"], ["--loud", "state"],
                          ["--pid", "1", "--socket", "x", "state"]):
            with self.subTest(arguments=arguments):
                status, output, errors = self.tool(*arguments)
                self.assertEqual((status, output), (2, ""))
                self.assertEqual(len(errors.splitlines()), 1)

    def test_help(self):
        status, output, _ = self.tool("--help")
        self.assertEqual(status, 0)
        self.assertIn("wait CONDITION DEADLINE_MS", output)

    def test_wrong_commands_give_status_two_and_change_nothing(self):
        player = self.play(e2e.LONG)
        for words in (["dance"], ["tap"], ["tap", "1", "x"], ["tap", "1", "2", "3"],
                      ["rotate", "45"], ["key", "left"], ["error", "odd"],
                      ["wait", "nonsense", "10"], ["wait", "nothing==1", "10"],
                      ["wait", "player==playing", "-1"], ["bezel", "many"]):
            with self.subTest(words=words):
                status, reply = player.try_control(*words)
                self.assertEqual(status, 2, reply)
                self.assertFalse(reply["ok"])
        self.assertEqual(player.state()["player"], "playing")

    def test_the_only_player_is_found_and_several_have_to_be_told_apart(self):
        first = self.play(e2e.LONG)
        self.assertEqual(self.tool("state")[0], 0)
        second = self.play(e2e.LONG)
        status, _, errors = self.tool("state")
        self.assertEqual(status, 2)
        self.assertIn(str(first.child.pid), errors)
        self.assertIn(str(second.child.pid), errors)

    def test_a_wait_that_comes_to_its_deadline_fails_with_the_state(self):
        player = self.play(e2e.LONG)
        status, reply = player.try_control("wait", "player==none", "100")
        self.assertEqual(status, 1)
        self.assertEqual(reply["state"]["player"], "playing")

    def test_a_screenshot_that_cannot_be_written_fails(self):
        player = self.play(e2e.LONG)
        status, _ = player.try_control("screenshot", "/no/such/folder/shot.png")
        self.assertEqual(status, 1)


if __name__ == "__main__":
    e2e.main()

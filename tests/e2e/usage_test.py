"""The command lines of the program and of its tool."""

import os
import re
import subprocess

import e2e

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../..")
PACKAGING = os.path.join(ROOT, "packaging")
COMMANDS = os.path.join(ROOT, "platform/control/commands.cpp")


class CommandLine(e2e.TestCase):
    def assert_wrong_use(self, *arguments):
        status, output, player = self.run_to_end(*arguments, mode=[])
        self.assertEqual(status, 2, arguments)
        self.assertEqual(output, "")
        self.assertEqual(len(player.text().splitlines()), 1, player.text())

    def test_wrong_use_gives_status_two_one_line_and_nothing_else(self):
        for arguments in (["--no-such-option"], ["--screen"], ["--screen", "0x0"],
                          ["--screen", "wide"], ["--log", "loud"], ["--extra", "novalue"],
                          ["--screenshot", "file"], ["--profile", "phone"], ["--scale", "9"],
                          ["--frame", "gold"], ["one", "two"]):
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

    def test_without_a_video_it_fails_with_one_line(self):
        status, _, player = self.run_to_end()
        self.assertEqual((status, player.text()), (
            1, "tessel: nothing to play: the request has neither a URI nor a path\n"))

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

    def commands_of_help(self):
        """Name and first argument of each, the same name as often as it has a line."""
        _, output, _ = self.tool("--help")
        part = output.split("\nCommands:\n")[1].split("\n\n")[0]
        return re.findall(r"^  ([a-z][a-z-]*)(?: (\S+))?", part, re.MULTILINE)

    def completions(self, *words):
        """What bash offers behind these words."""
        line = " ".join(["tesselctl", *words])
        script = (f'source "{PACKAGING}/tesselctl.bash"; COMP_WORDS=({line} ""); '
                  f'COMP_CWORD={len(words) + 1}; _tesselctl; printf "%s\\n" "${{COMPREPLY[@]}}"')
        environment = dict(self.environment, PATH=e2e.BIN + os.pathsep + os.environ["PATH"])
        done = subprocess.run(["bash", "-c", script], env=environment, capture_output=True,
                              text=True, timeout=e2e.PATIENCE)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout.split()

    def test_help_manual_and_completion_have_the_same_commands(self):
        names = {name for name, _ in self.commands_of_help()}
        self.assertGreater(len(names), 20)
        with open(os.path.join(PACKAGING, "tesselctl.1.in"), encoding="utf-8") as file:
            manual = file.read().split(".SH COMMANDS")[1].split(".SH OPTIONS")[0]
        in_manual = re.findall(r"^\.TP\n\.B (\S+)", manual, re.MULTILINE)
        self.assertEqual({name.replace("\\-", "-") for name in in_manual}, names)
        self.assertEqual({word for word in self.completions() if not word.startswith("-")}, names)

    def test_completion_offers_the_words_that_help_names(self):
        for name, argument in self.commands_of_help():
            if re.fullmatch(r"[a-z0-9-]+(\|[a-z0-9-]+)+", argument):
                with self.subTest(command=name):
                    self.assertLessEqual(set(argument.split("|")), set(self.completions(name)))

    def test_the_player_knows_each_command_and_no_other(self):
        of_player = {name for name, _ in self.commands_of_help()} - {"play-script", "record"}
        with open(COMMANDS, encoding="utf-8") as file:
            self.assertEqual(set(re.findall(r'^ +Command\{"(.*?)"', file.read(), re.MULTILINE)),
                             of_player)
        player = self.play(e2e.LONG)
        for name in of_player:
            with self.subTest(command=name):
                status, reply = player.try_control(name, *["x"] * 70)
                self.assertEqual(status, 2)
                self.assertRegex(reply["error"], f"^the form is: {name}( |$)")
        for name in ("play-script", "record"):
            self.assertEqual(self.tool(name, "x", "y")[0], 2)
        self.assertEqual(player.state()["player"], "playing")

    def test_wrong_commands_give_status_two_and_change_nothing(self):
        player = self.play(e2e.LONG)
        for words in (["dance"], ["tap"], ["tap", "1", "x"], ["tap", "1", "2", "3"],
                      ["rotate", "45"], ["key", "left"], ["error", "odd"], ["interrupt", "odd"],
                      ["missed", "both"], ["volume", "16"], ["network", "1"], ["launch"],
                      ["device", "connect", "phone"], ["press", "1", "1", "-1"],
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

"""The commands of README.md and of the pages in docs, each run as it is written there.

Commands are the lines of fenced blocks marked sh, and what stands in the text between backquotes
and begins with a program's name. A command that can't be run here is in NOT_RUN, with the reason.
"""

import glob
import os
import re
import shutil
import subprocess

import e2e

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "../.."))
BUILD = os.path.realpath(os.path.join(e2e.BIN, ".."))
# The build that the pages name.
IS_NAMED_BUILD = BUILD == os.path.join(ROOT, "build/release")
NEEDS_NAMED_BUILD = re.compile(r"^\./run\b|build/release\b")

PROGRAMS = {"tessel", "tesselctl", "cmake", "ninja", "cpack", "ctest", "grep"}
# What the pages leave to the reader, and what is put there.
WORDS = {"VIDEO": e2e.clip(e2e.LONG), "CLIP": e2e.clip(e2e.SHORT)}
# The player has to be there before it is asked for anything.
UNTIL_DRIVEN = "until tesselctl state >/dev/null 2>&1; do kill -0 $!; sleep 0.1; done"

NOT_RUN = {
    "./test": "runs this test",
    "cmake --preset release": "done by ./test before this test; again, it would leave out the tests",
    "cmake --preset release -DTESSEL_TESTS=ON -DTESSEL_TEST_CLEAN_ROOT=ON": "fetches a Debian",
    "ctest --test-dir build/release -R package/clean_root": "fetches a Debian",
    "packaging/try-in-clean-root package/tessel_*.deb CLIP":
        "fetches a Debian; package/clean_root runs it",
    "fuzz/run BUILD": "the tests of the label fuzz run it",
    "bench/run": "needs other players and most of an hour",
    "tesselctl record FILE": "ends with the player: scenario_test runs it",
}


def pages():
    return [os.path.join(ROOT, "README.md"),
            *sorted(glob.glob(os.path.join(ROOT, "docs/**/*.md"), recursive=True))]


def is_command(text):
    first = text.split()[0]
    path = os.path.join(ROOT, first)
    is_script = "/" in first and os.path.isfile(path) and os.access(path, os.X_OK)
    return is_script or (first in PROGRAMS and len(text.split()) > 1)


def scripts(page):
    """Line number and commands of each fenced block, and of each command in the text."""
    found, block, indented = [], None, []
    with open(page, encoding="utf-8") as file:
        lines = file.read().split("\n")
    fenced = False
    for number, line in enumerate(lines, 1):
        if line.startswith("```"):
            if not fenced and line == "```sh":
                block = []
                found.append((number, block))
            elif fenced:
                block = None
            fenced = not fenced
        elif block is not None:
            command = re.sub(r"(^|\s+)#.*", "", line).strip()
            if command:
                block.append(command)
        elif not fenced:
            if re.match(r"    \S", line) and not lines[number - 2].strip():
                indented.append(number)
            found += [(number, [text]) for text in re.findall(r"(?<!`)`([^`]+)`(?!`)", line)
                      if text.strip() and is_command(text)]
    return found, indented


class Documentation(e2e.TestCase):
    def setUp(self):
        super().setUp()
        # The project as a reader has it, but for what is written.
        self.folder = os.path.join(self.directory, "project")
        os.makedirs(os.path.join(self.folder, "build"))
        for name in os.listdir(ROOT):
            if name == "docs":
                shutil.copytree(os.path.join(ROOT, name), os.path.join(self.folder, name))
            elif name not in ("build", ".git"):
                os.symlink(os.path.join(ROOT, name), os.path.join(self.folder, name))
        os.symlink(BUILD, os.path.join(self.folder, "build/release"))
        self.environment.update(
            PATH=e2e.BIN + ":" + self.environment["PATH"],
            DESTDIR=os.path.join(self.directory, "installed"))

    def run_script(self, commands):
        lines = ["set -e", "trap 'kill $(jobs -p) 2>/dev/null || true; wait' EXIT"]
        for command in commands:
            for word, value in WORDS.items():
                command = re.sub(rf"\b{word}\b", value, command)
            if command.startswith("./run"):
                command = f"(cd {ROOT} && {command})"
            lines.append(command)
            if command.endswith("&") and "--control" in command:
                lines.append(UNTIL_DRIVEN)
        return subprocess.run(["bash", "-c", "\n".join(lines)], cwd=self.folder,
                              env=self.environment, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=6 * e2e.PATIENCE)

    def test_every_command_of_the_pages_works(self):
        seen, left_out = set(), set()
        for page in pages():
            for number, commands in scripts(page)[0]:
                place = f"{os.path.relpath(page, ROOT)}:{number}"
                seen.update(commands)
                wanted = [each for each in commands if each not in NOT_RUN]
                if not IS_NAMED_BUILD:
                    left_out.update(filter(NEEDS_NAMED_BUILD.search, wanted))
                    wanted = [each for each in wanted if not NEEDS_NAMED_BUILD.search(each)]
                if not wanted:
                    continue
                with self.subTest(place=place, commands=wanted):
                    player = None
                    if wanted[0].startswith("tesselctl") and "--help" not in wanted[0]:
                        player = self.play(e2e.LONG)
                    done = self.run_script(wanted)
                    self.assertEqual(done.returncode, 0, done.stdout[-3000:] + done.stderr[-3000:])
                    if player is not None:
                        player.end()
        self.assertEqual(set(NOT_RUN) - seen, set(), "stands in no page any more")
        self.assertGreater(len(seen), len(NOT_RUN))
        if left_out:
            print(f"only the release build runs: {sorted(left_out)}")

    def test_no_command_stands_where_it_is_not_found(self):
        for page in pages():
            with self.subTest(page=page):
                self.assertEqual(scripts(page)[1], [], "use a fenced block marked sh")


if __name__ == "__main__":
    e2e.main()

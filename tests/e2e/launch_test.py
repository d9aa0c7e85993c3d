"""Launch requests: what is named, how it is written, and a second one while the first plays."""

import os
import shutil
import subprocess
import sys
import unittest
import urllib.parse

import e2e

ODD_NAME = "a film  100% %41%20 видео 映画 é'\"&.mp4"


class Launch(e2e.TestCase):
    def odd_clip(self):
        path = os.path.join(self.directory, ODD_NAME)
        shutil.copy(e2e.clip(e2e.SHORT), path)
        return path

    def test_no_thread_waits_for_a_larger_table_of_descriptors(self):
        player = self.play(e2e.LONG)
        with open(f"/proc/{player.child.pid}/status", encoding="ascii") as status:
            size = next(int(line.split()[1]) for line in status if line.startswith("FDSize"))
        # What a playback fills by itself makes it half as large.
        self.assertGreaterEqual(size, 512)

    def test_a_name_with_blanks_percent_signs_and_other_letters_is_taken_literally(self):
        player = self.start(self.odd_clip())
        state = player.wait("player==playing")
        self.assertIn(ODD_NAME, state["uri"])
        player.expect_exit(0)

    def test_a_relative_path_is_meant_from_where_the_program_starts(self):
        path = self.odd_clip()
        here = os.getcwd()
        os.chdir(os.path.dirname(path))
        self.addCleanup(os.chdir, here)
        status, _, player = self.run_to_end(os.path.basename(path))
        self.assertEqual(status, 0, player.text())

    def test_a_file_uri_is_decoded(self):
        uri = "file://" + urllib.parse.quote(self.odd_clip())
        player = self.start(uri)
        player.wait("player==playing")
        player.expect_exit(0)

    def test_any_operation_plays(self):
        status, _, player = self.run_to_end("--operation", "http://example.org/operation/other",
                                            e2e.clip(e2e.SHORT))
        self.assertEqual(status, 0, player.text())

    def test_the_path_may_come_as_extra_data(self):
        status, _, player = self.run_to_end("--extra",
                                            "appcontrol/data/path=" + e2e.clip(e2e.SHORT))
        self.assertEqual(status, 0, player.text())

    def test_a_second_launch_while_playing_takes_the_place_of_the_first(self):
        player = self.play(e2e.LONG)
        player.wait("position>=1500")
        self.press(player, "video/displaymode/letterbox")
        player.wait("display_mode==original_or_letter")
        player.control("launch", e2e.clip(e2e.MIDDLE))
        state = player.wait(f"player==playing && duration<{e2e.LONG_MS - 1000} && duration>0")
        self.assertIn(e2e.MIDDLE, state["uri"])
        self.assertEqual(state["display_mode"], "cropped_full")
        self.assertEqual(state["page"], "tsl_player_view")
        self.assert_in_order(player, [r"SIGNAL_PLAYER_PLAY", r"=== App Control ===",
                                      r"SIGNAL_PLAYER_STOP", r"_preparedCb > ",
                                      r"SIGNAL_PLAYER_PLAY"])

    def test_the_second_clip_plays_to_its_end(self):
        player = self.play(e2e.LONG)
        player.control("launch", e2e.clip(e2e.SHORT))
        player.expect_exit(0)


class SecondProcess(e2e.TestCase):
    """A second start hands its request to the first, over the session bus."""

    def setUp(self):
        super().setUp()
        self.bus = e2e.Bus(self.directory)
        self.addCleanup(self.bus.end)

    def second(self, *arguments):
        return self.start(*arguments, control=False, bus=self.bus)

    def test_the_first_plays_what_the_second_was_given(self):
        first = self.play(e2e.LONG, bus=self.bus)
        first.wait("position>=500")
        second = self.second(e2e.clip(e2e.MIDDLE))
        second.expect_exit(0)
        state = first.wait(f"player==playing && duration<{e2e.LONG_MS - 1000} && duration>0")
        self.assertIn(e2e.MIDDLE, state["uri"])
        self.assertFalse(second.log_has("=== App Control ==="))

    def test_a_screenshot_that_the_second_was_to_take_is_not_dropped_silently(self):
        self.play(e2e.LONG, bus=self.bus)
        picture = os.path.join(self.directory, "second.png")
        second = self.second(e2e.clip(e2e.MIDDLE), "--screenshot", f"{picture}@0")
        second.expect_exit(0)
        self.assertIn(f"tessel: no screenshot {picture}: the video plays in the instance that was "
                      "already there; --new-instance plays it by itself", second.text())
        self.assertFalse(os.path.exists(picture))

    def test_an_odd_name_arrives_as_it_is(self):
        path = os.path.join(self.directory, ODD_NAME)
        shutil.copy(e2e.clip(e2e.MIDDLE), path)
        first = self.play(e2e.LONG, bus=self.bus)
        second = self.second(path)
        second.expect_exit(0)
        state = first.wait(f"player==playing && duration<{e2e.LONG_MS - 1000} && duration>0")
        self.assertIn(ODD_NAME, state["uri"])

    def test_a_new_instance_plays_by_itself(self):
        first = self.play(e2e.LONG, bus=self.bus)
        second = self.second("--new-instance", e2e.clip(e2e.SHORT))
        second.expect_exit(0)
        self.assertTrue(second.log_has("=== App Control ==="))
        self.assertIn(e2e.LONG, first.state()["uri"])

    def test_the_next_start_after_the_end_plays_by_itself(self):
        first = self.play(e2e.LONG, bus=self.bus)
        first.control("quit")
        first.expect_exit(0)
        second = self.second(e2e.clip(e2e.SHORT))
        second.expect_exit(0)
        self.assertTrue(second.log_has("=== App Control ==="))


def without(*names):
    def change(test):
        for name in names:
            del test.environment[name]
    return change


def set_to(value, *names):
    """@param value  "{}" in it is the test's own folder"""
    def change(test):
        for name in names:
            test.environment[name] = value.format(test.directory)
    return change


XDG_FOLDERS = "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"
LOCALE = "LANG", "LC_ALL", "LANGUAGE"

SURROUNDINGS = {
    "no_home_is_set": without("HOME"),
    "the_home_is_gone": set_to("{}/gone", "HOME", *XDG_FOLDERS),
    "the_home_is_no_folder": set_to("/dev/null", "HOME", *XDG_FOLDERS),
    "the_home_can_t_be_written": set_to("/proc", "HOME", *XDG_FOLDERS),
    "no_folder_of_the_session_is_set": without("XDG_RUNTIME_DIR"),
    "the_folder_of_the_session_is_gone": set_to("{}/gone", "XDG_RUNTIME_DIR"),
    "the_folder_of_the_session_can_t_be_written": set_to("/proc", "XDG_RUNTIME_DIR"),
    "the_folder_for_passing_files_is_gone": set_to("{}/gone", "TMPDIR"),
    "the_folder_for_passing_files_is_none": set_to("/dev/null", "TMPDIR"),
    "the_session_bus_is_gone": set_to("unix:path={}/gone", "DBUS_SESSION_BUS_ADDRESS"),
    "the_session_bus_has_a_bogus_address": set_to("bogus", "DBUS_SESSION_BUS_ADDRESS"),
    "the_locale_is_bogus": set_to("xx_YY.bogus", *LOCALE),
    "the_locale_is_no_name": set_to("../../:;%n", *LOCALE),
}


class Surroundings(e2e.TestCase):
    """What may be odd about where the program is started: it plays all the same."""

    def play_to_end(self, wrapper=(), **options):
        """With a picture of what is shown, as an end alone tells little."""
        picture = os.path.join(self.directory, "shown.png")
        player = self.start(e2e.clip(e2e.SHORT), "--screenshot", f"{picture}@0", control=False,
                            wrapper=wrapper, **options)
        player.expect_exit(0)
        self.assertTrue(os.path.exists(picture), player.text())
        self.assertNotIn("tessel: ", player.text())

    def test_no_place_for_a_socket_is_told_in_one_line(self):
        for folder in ("gone", "file"):
            path = os.path.join(self.directory, folder)
            if folder == "file":
                open(path, "wb").close()
            self.environment["XDG_RUNTIME_DIR"] = path
            with self.subTest(folder=folder):
                status, _, player = self.run_to_end(e2e.clip(e2e.SHORT), control=True)
                self.assertEqual(status, 1)
                self.assertRegex(player.text(), r"\Atessel: the control socket \S+ can't be opened: "
                                                r".*\n\Z")


def add_test(name, change):
    def test(self):
        change(self)
        self.play_to_end(log="error")
    setattr(Surroundings, f"test_it_plays_where_{name}", test)


for row in SURROUNDINGS.items():
    add_test(*row)


class ClosedDescriptors(e2e.TestCase):
    """What the program opens itself must not take the place of what is closed at its start: the log
    would go there."""

    def play_with_closed(self, redirections, *numbers):
        bus = e2e.Bus(self.directory)
        self.addCleanup(bus.end)
        player = self.play(e2e.LONG, bus=bus,
                           wrapper=("sh", "-c", f'exec "$@" {redirections}', "sh"))
        for number in numbers:
            self.assertEqual(os.readlink(f"/proc/{player.child.pid}/fd/{number}"), "/dev/null")
        player.control("quit")
        player.expect_exit(0)

    def test_it_plays_without_an_input(self):
        self.play_with_closed("<&-", 0)

    def test_it_plays_without_an_output(self):
        self.play_with_closed(">&-", 1)

    def test_it_plays_without_a_place_for_errors(self):
        self.play_with_closed("2>&-", 2)

    def test_it_plays_without_any_of_them(self):
        self.play_with_closed("<&- >&- 2>&-", 0, 1, 2)


@unittest.skipIf(os.environ.get("TESSEL_SANITIZE"), "the sanitizers themselves need /proc")
class WithoutProc(e2e.TestCase):
    """In a small container nobody may have mounted /proc."""

    # A namespace of its own, and nothing where the processes were.
    ALONE = ("unshare", "--map-root-user", "--mount")
    HIDDEN = 'mount -t tmpfs none /proc && exec "$@"'

    def setUp(self):
        super().setUp()
        tried = subprocess.run([*self.ALONE, "sh", "-c", self.HIDDEN, "sh", "true"],
                               capture_output=True, text=True, timeout=e2e.PATIENCE)
        if tried.returncode != 0:
            self.skipTest(f"/proc can't be hidden here: {tried.stderr.strip()}")

    def start_hidden(self, *command):
        return self.start(e2e.clip(e2e.SHORT), control=False,
                          wrapper=(*self.ALONE, "sh", "-c", self.HIDDEN, "sh", *command))

    def test_it_plays(self):
        player = self.start_hidden()
        player.expect_exit(0)
        self.assertTrue(player.log_has("SIGNAL_PLAYER_PLAY"), player.text())

    def test_started_without_a_name_it_says_so_in_one_line(self):
        by_descriptor = ("import os, sys\n"
                         "program = os.open(sys.argv[1], os.O_RDONLY)\n"
                         "os.execve(program, sys.argv[1:], os.environ)\n")
        player = self.start_hidden(sys.executable, "-c", by_descriptor)
        player.expect_exit(1)
        self.assertEqual(player.text(), "tessel: nothing tells where the program is, and so where "
                                        "its data is: is /proc mounted?\n")


if __name__ == "__main__":
    e2e.main(jobs=3)

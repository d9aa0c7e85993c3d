"""Launch requests: what is named, how it is written, and a second one while the first plays."""

import os
import shutil
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


if __name__ == "__main__":
    e2e.main(jobs=3)

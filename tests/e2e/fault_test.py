"""What can't be played is told to the user, and to whoever started the program."""

import os

import e2e


class Faults:
    def assert_toast_and_failure(self, player, text):
        popup = player.wait("popup==true")["popup"]
        self.assertEqual(popup["style"], "toast/circle")
        self.assertEqual(popup["text"], text)
        player.expect_exit(1)
        self.assert_one_line_says_why(player)

    def assert_one_line_says_why(self, player):
        lines = [line for line in player.text().splitlines() if line.startswith("tessel: ")]
        self.assertEqual(len(lines), 1, lines)

    def test_a_missing_file_gives_a_popup_and_status_one(self):
        player = self.start(os.path.join(self.directory, "nothing here.mp4"))
        self.assert_toast_and_failure(player, e2e.TEXTS["missing"])

    def test_a_bad_uri_gives_a_popup_and_status_one(self):
        player = self.start("nosuchscheme://somewhere/film.mp4")
        self.assert_toast_and_failure(player, e2e.TEXTS["invalid"])

    def test_back_ends_the_popup_and_the_program_early(self):
        player = self.start(os.path.join(self.directory, "nothing here.mp4"))
        player.wait("popup==true")
        player.control("key", "back")
        player.expect_exit(1)

    def test_what_is_no_video_gives_a_popup_that_a_button_closes(self):
        path = os.path.join(self.directory, "letter.mp4")
        with open(path, "w", encoding="utf-8") as file:
            file.write("Dear reader, this is no video.\n" * 1000)
        player = self.start(path)
        popup = player.wait("popup==true")["popup"]
        self.assertEqual(popup["text"], e2e.TEXTS["unsupported"])
        self.touch(player, *player.button("popup/circle"))
        player.expect_exit(1)
        self.assert_one_line_says_why(player)
        self.assertTrue(player.log_has("OneButtonPopup::ButtonClicked"))
        self.assertTrue(player.log_has("Dismissed callback of one button popup."))


class HeadlessFaults(Faults, e2e.TestCase):
    def test_no_uri_gives_status_one_and_no_popup(self):
        status, _, player = self.run_to_end("--log", "info")
        self.assertEqual(status, 1)
        self.assert_one_line_says_why(player)
        self.assertTrue(player.log_has("* Critical * Media url is nullptr."))
        self.assertFalse(any(line.source == "TslPlayerView.cpp" for line in player.log()))

    def test_with_nobody_to_press_a_button_the_popup_closes_by_itself(self):
        path = os.path.join(self.directory, "letter.mp4")
        with open(path, "w", encoding="utf-8") as file:
            file.write("Dear reader, this is no video.\n" * 1000)
        status, _, _ = self.run_to_end(path)
        self.assertEqual(status, 1)

    def test_an_error_while_playing_ends_the_program(self):
        player = self.play(e2e.LONG)
        player.control("error", "no-such-file")
        self.assert_toast_and_failure(player, e2e.TEXTS["missing"])

    def test_an_error_that_is_no_end_changes_nothing(self):
        player = self.play(e2e.LONG)
        player.control("error", "seek-failed")
        e2e.wait_until(lambda: any(line.function == "_errorCb" for line in player.log()),
                       "the error's arrival")
        state = player.state()
        self.assertIsNone(state["popup"])
        self.assertEqual(state["player"], "playing")

    def test_an_interruption_pauses(self):
        player = self.play(e2e.LONG)
        player.control("interrupt", "media")
        player.wait("player==paused")

    def test_a_missing_decoder_is_told_and_the_rest_plays_on(self):
        player = self.play(e2e.LONG)
        player.control("missed", "audio")
        position = player.wait("popup==true")["position"]
        player.wait("popup==false")
        player.wait(f"player==playing && position>{position}")

    def test_a_failure_that_a_later_launch_makes_good_is_none(self):
        player = self.play(e2e.LONG)
        player.control("launch", e2e.clip(e2e.SHORT))
        player.expect_exit(0)


class DisplayFaults(Faults, e2e.DisplayTestCase):
    pass


if __name__ == "__main__":
    e2e.main()

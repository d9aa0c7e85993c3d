"""Pause and resume, crop and letter box, by the buttons of the player screen."""

import e2e


class Touch:
    def test_a_tap_shows_the_controls_and_another_hides_them(self):
        player = self.play(e2e.LONG)
        self.assertFalse(player.state()["controls"])
        screen = player.state()["screen"]
        free = (screen["width"] // 2, screen["height"] // 8)
        self.touch(player, *free)
        player.wait("controls==true")
        self.touch(player, *free)
        # Sooner than they would go by themselves.
        player.wait("controls==false", 2.0 if not e2e.SLOW else e2e.PATIENCE)

    def test_controls_hide_by_themselves(self):
        player = self.play(e2e.LONG)
        self.show_controls(player)
        player.wait("controls==false")

    def test_pause_holds_the_frame_and_resume_goes_on_from_it(self):
        player = self.play(e2e.LONG)
        player.wait("position>=1000")
        self.press(player, "video/pause")
        paused = player.wait("player==paused")
        player.wait("controls==false")
        held = e2e.frame_number(self.screen(player))
        status, reply = player.try_control("wait", f"position!={paused['position']}", 700)
        self.assertEqual(status, 1, reply)
        self.assertEqual(e2e.frame_number(self.screen(player)), held)
        self.press(player, "video/play")
        player.wait(f"player==playing && position>={paused['position'] + 500}")
        player.wait("controls==false")
        self.assertGreater(e2e.frame_number(self.screen(player)), held)

    def test_the_times_follow_the_position(self):
        player = self.play(e2e.LONG)
        state = player.wait("played==00:03")
        self.assertGreaterEqual(state["position"], 3000)
        self.assertEqual(state["length"], f"{e2e.LONG_MS // 60000:02}:{e2e.LONG_MS // 1000 % 60:02}")

    def test_letter_box_shows_bars_and_crop_takes_them_away(self):
        player = self.play(e2e.LONG)
        player.wait("position>=500 && display_mode==cropped_full")
        self.assert_covered(self.screen(player))
        self.press(player, "video/displaymode/letterbox")
        player.wait("display_mode==original_or_letter")
        player.wait("controls==false")
        self.assert_bars(self.screen(player))
        self.press(player, "video/displaymode/full")
        player.wait("display_mode==cropped_full")
        player.wait("controls==false")
        self.assert_covered(self.screen(player))

    def test_letter_box_of_a_paused_video_shows_at_once(self):
        player = self.play(e2e.LONG)
        self.press(player, "video/pause")
        player.wait("player==paused")
        self.press(player, "video/displaymode/letterbox")
        player.wait("display_mode==original_or_letter")
        player.wait("controls==false")
        self.assert_bars(self.screen(player))

    # The clip is 16 to 9 and nowhere black at its upper and lower edge.

    @staticmethod
    def places(picture):
        middle = picture.width // 2
        return [(middle + dx, y) for dx in (-30, 0, 30) for y in (24, picture.height - 25)]

    def assert_covered(self, picture):
        for x, y in self.places(picture):
            self.assertFalse(picture.is_black(x, y), (x, y, picture.at(x, y)))

    def assert_bars(self, picture):
        for x, y in self.places(picture):
            self.assertTrue(picture.is_black(x, y), (x, y, picture.at(x, y)))
        # The video itself is as high as its shape asks for.
        shown = [y for y in range(picture.height) if not picture.is_black(picture.width // 2, y)]
        expected = picture.width * 9 / 16
        self.assertAlmostEqual(shown[-1] - shown[0] + 1, expected, delta=4)


class HeadlessTouch(Touch, e2e.TestCase):
    pass


class DisplayTouch(Touch, e2e.DisplayTestCase):
    pass


if __name__ == "__main__":
    e2e.main()

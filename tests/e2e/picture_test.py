"""What is on the screen is the video: each frame carries its number."""

import e2e


class Picture:
    def frame_at_known_time(self, player):
        """The frame on the screen, which is that of a moment between the two positions."""
        before = player.state()["position"]
        number = e2e.frame_number(self.screen(player))
        after = player.state()["position"]
        earliest = (before - e2e.LATENESS_MS) * e2e.FPS // 1000 - 1
        latest = (after + e2e.LATENESS_MS) * e2e.FPS // 1000 + 1
        self.assertIsNotNone(number)
        self.assertGreaterEqual(number, earliest, f"position {before} to {after}")
        self.assertLessEqual(number, latest, f"position {before} to {after}")
        return number

    def test_the_frame_on_the_screen_is_that_of_the_time_at_three_times(self):
        player = self.play(e2e.LONG)
        numbers = []
        for milliseconds in (1000, 2500, 4000):
            player.wait(f"position>={milliseconds}")
            numbers.append(self.frame_at_known_time(player))
        self.assertEqual(numbers, sorted(set(numbers)))

    def test_the_screen_is_round(self):
        player = self.play(e2e.LONG)
        player.wait("position>=500")
        picture = self.screen(player)
        self.assertFalse(picture.is_black(picture.width // 2, picture.height // 2))
        # The corners belong to the rim around the glass, which is dark.
        for x in (1, picture.width - 2):
            for y in (1, picture.height - 2):
                self.assertLess(picture.luma(x, y), 100)


class HeadlessPicture(Picture, e2e.TestCase):
    def test_the_option_writes_a_picture_after_the_first_frame(self):
        path = f"{self.directory}/option.png"
        status, _, player = self.run_to_end(e2e.clip(e2e.SHORT), "--screenshot", f"{path}@1.0")
        self.assertEqual(status, 0, player.text())
        whole = e2e.Picture.from_png(path)
        screen = whole.part((whole.width - 360) // 2, (whole.height - 360) // 2, 360, 360)
        number = e2e.frame_number(screen)
        self.assertIsNotNone(number)
        self.assertGreaterEqual(number, e2e.FPS * 6 // 10)
        if not e2e.SLOW:
            self.assertLessEqual(number, e2e.FPS * 16 // 10)


class DisplayPicture(Picture, e2e.DisplayTestCase):
    pass


if __name__ == "__main__":
    e2e.main()

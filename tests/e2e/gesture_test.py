"""What the finger can do on the player screen: taps, double taps, long presses and drags."""

import e2e

# Longer than any tap, shorter than the controls stay.
LONG_PRESS_MS = 900
# How long it takes to be sure that nothing comes of a touch; less than the controls stay.
NOTHING_COMES_MS = 700


class Gesture:
    def free_place(self, player):
        screen = player.state()["screen"]
        return screen["width"] // 2, screen["height"] // 8

    def taps(self, player):
        """Ends of taps that the gesture layer has reported."""
        return sum(line.function == "_gestureTabEndCb" for line in player.log())

    def test_a_fast_double_tap_shows_and_hides(self):
        player = self.play(e2e.LONG)
        self.double_touch(player, *self.free_place(player))
        e2e.wait_until(lambda: self.taps(player) == 2, "the second tap")
        player.wait("controls==false", 2.0 if not e2e.SLOW else e2e.PATIENCE)
        self.assertEqual(self.taps(player), 2)

    def test_four_quick_taps_are_four(self):
        player = self.play(e2e.LONG)
        place = self.free_place(player)
        self.double_touch(player, *place)
        self.double_touch(player, *place)
        e2e.wait_until(lambda: self.taps(player) == 4, "the fourth tap")
        player.wait("controls==false", 2.0 if not e2e.SLOW else e2e.PATIENCE)

    def test_a_second_tap_presses_the_button_that_the_first_has_brought(self):
        player = self.play(e2e.LONG)
        screen = player.state()["screen"]
        middle = screen["width"] // 2, screen["height"] // 2
        self.touch(player, *middle)
        player.wait("controls==true")
        # What a person has seen is what can be touched: a frame with the controls has been drawn.
        player.picture()
        self.touch(player, *middle)
        player.wait("player==paused && controls==true")
        self.assertEqual(self.taps(player), 1)

    def test_a_long_press_is_no_tap(self):
        player = self.play(e2e.LONG)
        self.hold(player, *self.free_place(player), LONG_PRESS_MS)
        status, reply = player.try_control("wait", "controls==true", NOTHING_COMES_MS)
        self.assertEqual(status, 1, reply)
        self.assertEqual(self.taps(player), 0)
        # The next touch counts again.
        self.touch(player, *self.free_place(player))
        player.wait("controls==true")

    def test_a_long_press_leaves_shown_controls(self):
        player = self.play(e2e.LONG)
        self.show_controls(player)
        taps = self.taps(player)
        self.hold(player, *self.free_place(player), LONG_PRESS_MS)
        self.assertEqual(self.taps(player), taps)
        if not e2e.SLOW:
            self.assertTrue(player.state()["controls"])

    def test_a_drag_is_no_tap(self):
        player = self.play(e2e.LONG)
        x, y = self.free_place(player)
        self.drag(player, x - 60, y + 20, x + 60, y + 20, 200)
        self.drag(player, x, y, x, y + 150, 200)
        status, reply = player.try_control("wait", "controls==true", NOTHING_COMES_MS)
        self.assertEqual(status, 1, reply)
        self.assertEqual(self.taps(player), 0)
        self.touch(player, x, y)
        player.wait("controls==true")

    def test_a_drag_off_a_button_presses_nothing(self):
        player = self.play(e2e.LONG)
        self.show_controls(player)
        taps = self.taps(player)
        x, y = player.button("video/pause")
        self.drag(player, x, y, *self.free_place(player), 200)
        status, reply = player.try_control("wait", "player==paused", NOTHING_COMES_MS)
        self.assertEqual(status, 1, reply)
        self.assertEqual(self.taps(player), taps)

    def test_a_press_of_a_button_is_no_tap_of_the_screen(self):
        player = self.play(e2e.LONG)
        self.show_controls(player)
        taps = self.taps(player)
        self.touch(player, *player.button("video/displaymode/letterbox"))
        player.wait("display_mode==original_or_letter && controls==true")
        self.assertEqual(self.taps(player), taps)

    def test_a_long_press_of_a_button_still_presses_it(self):
        player = self.play(e2e.LONG)
        self.show_controls(player)
        self.hold(player, *player.button("video/pause"), LONG_PRESS_MS)
        player.wait("player==paused")


class HeadlessGesture(Gesture, e2e.TestCase):
    pass


class DisplayGesture(Gesture, e2e.DisplayTestCase):
    pass


if __name__ == "__main__":
    e2e.main()

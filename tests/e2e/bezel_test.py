"""The bezel moves the position: ten seconds a detent in a clip of a minute and more."""

import e2e

STEP = 10_000
# A rough seek goes to the nearest keyframe, one of which comes each second.
ROUGH = 1_000
# What may play between a seek and the look at it.
SLACK = 3_000 if not e2e.SLOW else 20_000


class Bezel:
    def seeks(self, player):
        return sum(line.function == "_seekCompletedCb" for line in player.log())

    def rotary_lines(self, player):
        return [line.text for line in player.log() if "Event count" in line.text]

    def play_and_turn(self, player, detents):
        """Turns quickly while playing, and waits until it plays on."""
        start = player.state()["position"]
        self.turn(player, detents)
        player.wait("player==paused")
        return start, player.wait("player==playing")["position"]

    def test_three_slow_detents_seek_three_times(self):
        player = self.play(e2e.LONG)
        start = player.state()["position"]
        for count in (1, 2, 3):
            self.turn(player, 1)
            # A rough seek follows half a second of rest.
            player.wait(f"position>={start + count * (STEP - ROUGH)}")
        position = player.wait("player==playing")["position"]
        self.assertLessEqual(position, start + 3 * STEP + 2 * SLACK)
        lines = self.rotary_lines(player)
        self.assertEqual(len(lines), 3)
        for line in lines:
            self.assertIn("=== Event count: [1] === SecondToMove: [10000] ===", line)

    def test_a_quick_turn_seeks_with_every_third_detent(self):
        player = self.play(e2e.LONG)
        start, position = self.play_and_turn(player, 6)
        self.assertGreaterEqual(position, start + 6 * STEP - 2 * ROUGH)
        self.assertLessEqual(position, start + 6 * STEP + SLACK)
        counts = [line.split("[")[1].split("]")[0] for line in self.rotary_lines(player)]
        self.assertEqual(counts, ["1", "2", "1", "2"])

    def test_the_frame_after_a_turn_is_that_of_the_new_place(self):
        player = self.play(e2e.LONG)
        _, position = self.play_and_turn(player, 4)
        player.wait("controls==false")
        number = e2e.frame_number(self.screen(player))
        now = player.state()["position"]
        self.assertGreaterEqual(number, position * e2e.FPS // 1000 - 2)
        self.assertLessEqual(number, (now + e2e.LATENESS_MS) * e2e.FPS // 1000 + 1)

    def test_counter_clockwise_goes_back(self):
        player = self.play(e2e.LONG)
        _, middle = self.play_and_turn(player, 5)
        _, position = self.play_and_turn(player, -2)
        self.assertLess(position, middle - 2 * STEP + 2 * SLACK)
        self.assertGreaterEqual(position, middle - 2 * STEP - ROUGH)

    def test_a_turn_past_the_start_plays_from_the_start(self):
        player = self.play(e2e.LONG)
        player.wait("position>=1500")
        _, position = self.play_and_turn(player, -9)
        self.assertLessEqual(position, SLACK)

    def test_a_turn_past_the_end_ends_the_program(self):
        player = self.play(e2e.LONG)
        self.turn(player, e2e.LONG_MS // STEP + 6)
        player.expect_exit(0)
        self.assert_in_order(player, [r"_seekCompletedCb > ", r"_completedCb > ",
                                      r"SIGNAL_APP_TERMINATE"])

    def test_a_turn_while_paused_moves_and_stays_paused(self):
        player = self.play(e2e.LONG)
        self.press(player, "video/pause")
        start = player.wait("player==paused")["position"]
        self.turn(player, 3)
        # The rough seek and the accurate one.
        e2e.wait_until(lambda: self.seeks(player) >= 2, "both seeks")
        state = player.state()
        self.assertEqual(state["player"], "paused")
        self.assertAlmostEqual(state["position"], start + 3 * STEP, delta=100)
        status, reply = player.try_control("wait", "player==playing", 700)
        self.assertEqual(status, 1, reply)
        player.wait("controls==false")
        number = e2e.frame_number(self.screen(player))
        self.assertAlmostEqual(number, state["position"] * e2e.FPS / 1000, delta=2)

    def test_a_detent_shows_the_controls(self):
        player = self.play(e2e.LONG)
        self.assertFalse(player.state()["controls"])
        self.turn(player, 1)
        player.wait("controls==true")
        player.wait("player==paused")
        player.wait("player==playing && controls==false")

    def test_a_clip_below_a_minute_moves_five_seconds(self):
        player = self.play(e2e.MIDDLE)
        start, position = self.play_and_turn(player, 3)
        # Its keyframes are five seconds apart.
        self.assertGreaterEqual(position, start + 15_000 - 5 * ROUGH)
        self.assertLessEqual(position, start + 15_000 + SLACK)


class HeadlessBezel(Bezel, e2e.TestCase):
    pass


class DisplayBezel(Bezel, e2e.DisplayTestCase):
    pass


if __name__ == "__main__":
    e2e.main()

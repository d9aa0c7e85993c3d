"""What the screen costs while a video plays: nothing that a sanitized build could tell."""

import time

import e2e

# A span on a machine with other work to do says nothing: another is taken.
ATTEMPTS = 4


class SmoothPlayback(e2e.DisplayTestCase):
    """60 frames a second: neither the controls' coming and going nor anything else costs one."""

    TOGGLES = 6
    # Longer than the controls' transitions.
    TOGGLE_S = 0.4
    # On their way between the counters of one state and those of the next.
    UNDER_WAY = 2

    def show_and_hide(self, player):
        left, top, _ = self.place_of_screen(player)
        screen = player.state()["screen"]
        shown = self.times_shown(player)
        self.display.tool("mousemove", left + screen["width"] // 2, top + screen["height"] // 8,
                          *["click", 1, "sleep", self.TOGGLE_S] * self.TOGGLES)
        # A busy machine may take one for a long press.
        self.assertGreater(self.times_shown(player), shown)

    def let_be(self):
        time.sleep(self.TOGGLES * self.TOGGLE_S)

    def frames_lost(self, player, do):
        """Those of the clip that didn't come to the screen while it was done."""
        before = player.state()
        do()
        after = player.state()
        played = (after["position"] - before["position"]) * e2e.SMOOTH_FPS // 1000
        shown = after["frames"]["shown"] - before["frames"]["shown"]
        dropped = after["frames"]["dropped"] - before["frames"]["dropped"]
        self.assertGreater(shown, 0)
        return max(dropped, played - shown - self.UNDER_WAY)

    def test_showing_and_hiding_the_controls_drops_no_frame(self):
        player = self.play(e2e.SMOOTH)
        player.wait("position>=1000")
        spans = []
        for _ in range(ATTEMPTS):
            moved = self.frames_lost(player, lambda: self.show_and_hide(player))
            if moved == 0:
                return
            # A busy machine takes frames also where nothing moves.
            still = self.frames_lost(player, self.let_be)
            if moved <= still:
                return
            spans.append((moved, still))
        player.fail(f"the controls' coming and going costs frames: {spans}")

    @staticmethod
    def times_shown(player):
        return sum(line.function == "_showPlayViewUi" for line in player.log())


class CostOfTheTimes(e2e.TestCase):
    """The times of a clip without pictures: nothing else is drawn."""

    SPAN_S = 2.0
    MOST = 0.005

    @staticmethod
    def main_thread_s(player):
        with open(f"/proc/{player.child.pid}/task/{player.child.pid}/schedstat",
                  encoding="ascii") as file:
            return int(file.read().split()[0]) / 1e9

    def cost(self, player, shown):
        """The least share of a core of some spans."""
        shares = []
        for _ in range(ATTEMPTS):
            if shown:
                self.show_controls(player)
            else:
                player.wait("controls==false")
            before = player.state()
            # Their transition and the reply just given are no cost of theirs.
            time.sleep(0.5)
            start_s, start = self.main_thread_s(player), time.monotonic()
            time.sleep(self.SPAN_S)
            share = (self.main_thread_s(player) - start_s) / (time.monotonic() - start)
            after = player.state()
            if (before["controls"], after["controls"]) == (shown, shown):
                self.assertNotEqual(before["played"], after["played"])
                shares.append(share)
                if share < self.MOST:
                    break
        self.assertTrue(shares)
        return min(shares)

    def test_under_half_a_percent_of_a_core(self):
        player = self.play(e2e.SOUND, log="error")
        for shown in (False, True):
            with self.subTest(shown=shown):
                self.assertLess(self.cost(player, shown), self.MOST)


if __name__ == "__main__":
    e2e.main()

"""What the screen costs while a video plays: nothing that a sanitized build could tell."""

import json
import mmap
import os
import socket
import time

import e2e
from volume_test import VolumeScreen

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


class Line:
    """A connection to the control socket that stays, as a process for each command takes longer
    than what is measured."""

    def __init__(self, player):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(os.path.join(player.environment["XDG_RUNTIME_DIR"], "tessel",
                                         f"control-{player.child.pid}.sock"))
        self.replies = self.socket.makefile()

    def send(self, *words):
        self.socket.sendall((json.dumps([str(word) for word in words]) + "\n").encode())

    def reply(self):
        return json.loads(self.replies.readline())

    def control(self, *words):
        self.send(*words)
        return self.reply()

    def end(self):
        self.replies.close()
        self.socket.close()


class CostOfTheVolumeScreen(VolumeScreen, e2e.DisplayTestCase):
    """The level and its bar, over a clip without pictures: nothing else is drawn."""

    # Shorter than the time after which the screen closes.
    SPAN_S = 1.5
    FPS = 60
    # Of a core. Aimed at is a tenth for the moving bar; work beside it, which takes its caches and
    # half of its core away, makes each frame dearer.
    MOST_MOVING, MOST_STANDING = 0.15, 0.005
    # From the change to the exact end.
    MOVES_S = 0.45
    INPUTS, MOST_MS = 11, 20
    # What the level is written in, without the bar.
    LEVEL = (133, 119, 92, 121)

    def setUp(self):
        super().setUp()
        self.player = self.start(e2e.clip(e2e.SOUND))
        self.player.wait("player==playing")
        self.player.control("volume", 5)
        self.line = Line(self.player)
        self.addCleanup(self.line.end)

    def reopen(self):
        """With a full time until it closes."""
        if self.player.state()["page"] != "tsl_volume_view":
            self.open(self.player)
        self.touch_level(5)
        time.sleep(1.5 * self.MOVES_S)

    def touch_level(self, level):
        self.line.control("tap", *self.on_rim(max(4, 24 * level - 4)))

    def seconds_used(self):
        """By all threads, those that have ended included."""
        clock_of_process = (~self.player.child.pid << 3) | 2
        return time.clock_gettime(clock_of_process)

    def frames(self):
        return sum("lamda for _createAnimator" in line.text for line in self.player.log())

    def share_of_core(self, do):
        used, begin = self.seconds_used(), time.monotonic()
        do()
        return (self.seconds_used() - used) / (time.monotonic() - begin)

    def touch_often(self, *levels):
        """With two levels that are far from each other the bar moves all the time."""
        for _ in range(3):
            for level in levels:
                self.touch_level(level)
                time.sleep(self.MOVES_S)

    def stand(self):
        time.sleep(self.SPAN_S)

    def test_the_moving_bar_costs_little(self):
        costs = []
        for _ in range(ATTEMPTS):
            self.reopen()
            # The touches themselves, and the sound of the clip, are no cost of the bar's.
            others = self.share_of_core(lambda: self.touch_often(5, 5))
            before, begin = self.frames(), time.monotonic()
            share = self.share_of_core(lambda: self.touch_often(15, 0)) - others
            rate = (self.frames() - before) / (time.monotonic() - begin)
            self.assertGreater(rate, 0)
            # A busy machine draws fewer.
            costs.append(share * self.FPS / rate)
            if costs[-1] < self.MOST_MOVING:
                return
        self.fail(f"the moving bar costs {costs} of a core")

    def test_the_standing_bar_costs_nothing(self):
        costs = []
        for _ in range(ATTEMPTS):
            self.player.wait("page==tsl_player_view && controls==false")
            without = self.share_of_core(self.stand)
            self.reopen()
            frames = self.frames()
            costs.append(self.share_of_core(self.stand) - without)
            self.assertEqual(self.frames(), frames)
            self.assertEqual(self.player.state()["page"], "tsl_volume_view")
            if costs[-1] < self.MOST_STANDING:
                return
        self.fail(f"the standing bar costs {costs} of a core")

    def test_a_level_is_repainted_soon_after_the_input(self):
        left, top, _ = self.place_of_screen(self.player)
        times = []
        for _ in range(ATTEMPTS):
            self.reopen()
            # They come anywhere between two frames, and between the turns of other processes.
            times += [self.milliseconds_to_repaint(left, top, 1 if index % 2 else -1)
                      for index in range(self.INPUTS)]
            if min(times) < self.MOST_MS:
                return
        self.fail(f"a level is repainted {sorted(times)} ms after the input")

    def milliseconds_to_repaint(self, left, top, detents):
        # Only its own change is to be seen.
        time.sleep(1.5 * self.MOVES_S)
        with open(os.path.join(self.directory, "Xvfb_screen0"), "rb") as file, \
                mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ) as screen:
            x, y, width, height = self.LEVEL
            area = e2e.rows_of_xwd(screen, left + x, top + y, width, height)
            before = [screen[row] for row in area]
            begin = time.monotonic()
            self.line.send("bezel", detents)
            while [screen[row] for row in area] == before:
                self.assertLess(time.monotonic() - begin, e2e.PATIENCE)
            passed = time.monotonic() - begin
        self.assertTrue(self.line.reply()["ok"])
        return passed * 1000


if __name__ == "__main__":
    e2e.main()

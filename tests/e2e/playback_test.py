"""A clip plays from its first frame to its last, and the program ends by itself."""

import e2e

# One launch as the program's log tells it.
ROAD = [
    r"TslApp\.cpp: onCreate > ",
    r"TslApp\.cpp: onAppControl > ",
    r"_appControl > === App Control ===",
    r"_createPlayerMgr > ",
    r"TslMmPlayer\.cpp: ",
    r"_appControl > == The video player is launched first time\. ==",
    r"TslPlayerView\.cpp: onCreateView > ",
    r"_preparedCb > ",
    r"_getSignalMessage > SIGNAL_PLAYER_PLAY",
    r"_getSignalMessage > SIGNAL_PLAYER_RESUME",
    r"_completedCb > ",
    r"_getSignalMessage > SIGNAL_APP_TERMINATE",
    r"_exit > ",
    r"TslApp\.cpp: onTerminate > ",
    r"Video Player App is terminated\.",
]


class PlayToTheEnd:
    def test_every_stage_of_the_road_comes_in_order_and_the_status_is_zero(self):
        player = self.start(e2e.clip(e2e.SHORT))
        player.wait("player==playing")
        player.expect_exit(0)
        self.assert_in_order(player, ROAD)

    def test_the_only_errors_are_that_a_path_is_no_uri(self):
        player = self.start(e2e.clip(e2e.SHORT))
        player.expect_exit(0)
        self.assertEqual([line.text for line in player.log() if line.level in "EF"],
                         ["* Critical * There is no Uri.",
                          "* Critical * It is failed to get Uri."])

    def test_nearly_every_decoded_frame_is_shown(self):
        player = self.play(e2e.SHORT)
        duration = player.state()["duration"]
        frames = player.wait(f"position>={duration - 600}")["frames"]
        self.assertGreaterEqual(frames["decoded"], (duration - 600) * e2e.FPS // 1000 - 2)
        # One may be on its way to the screen, one waits for its time.
        waiting = frames["decoded"] - frames["shown"] - frames["dropped"]
        self.assertLessEqual(abs(waiting), 3, frames)
        if not e2e.SLOW:
            self.assertLessEqual(frames["dropped"], frames["decoded"] // 20, frames)


class HeadlessPlayToTheEnd(PlayToTheEnd, e2e.TestCase):
    def test_plays_with_nobody_to_drive_it(self):
        status, _, _ = self.run_to_end(e2e.clip(e2e.SHORT))
        self.assertEqual(status, 0)


class DisplayPlayToTheEnd(PlayToTheEnd, e2e.DisplayTestCase):
    pass


if __name__ == "__main__":
    e2e.main()

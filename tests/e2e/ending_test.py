"""The ways to end the program before the video does."""

import signal

import e2e


class Ending:
    def assert_orderly_end(self, player):
        player.expect_exit(0)
        self.assert_in_order(player, [r"TslApp\.cpp: onTerminate > ",
                                      r"Video Player App is terminated\."])

    def test_a_termination_signal_in_the_middle(self):
        player = self.play(e2e.LONG)
        player.wait("position>=1000")
        player.child.send_signal(signal.SIGTERM)
        self.assert_orderly_end(player)

    def test_an_interrupt_from_the_terminal(self):
        player = self.play(e2e.LONG)
        player.child.send_signal(signal.SIGINT)
        self.assert_orderly_end(player)

    def test_the_home_key_pauses_the_application_which_ends_it(self):
        player = self.play(e2e.LONG)
        player.control("key", "home")
        self.assert_orderly_end(player)
        self.assert_in_order(player, [r"_appPause > === App Pause ===", r"SIGNAL_APP_TERMINATE"])

    def test_the_back_key(self):
        player = self.play(e2e.LONG)
        player.control("key", "back")
        self.assert_orderly_end(player)

    def test_while_paused(self):
        player = self.play(e2e.LONG)
        self.press(player, "video/pause")
        player.wait("player==paused")
        player.control("key", "back")
        self.assert_orderly_end(player)


class HeadlessEnding(Ending, e2e.TestCase):
    def test_low_battery(self):
        player = self.play(e2e.LONG)
        player.control("event", "low-battery")
        self.assert_orderly_end(player)
        self.assertTrue(player.log_has("APP_EVENT_LOW_BATTERY"))

    def test_a_signal_before_anything_plays(self):
        player = self.start(e2e.clip(e2e.LONG))
        player.child.send_signal(signal.SIGTERM)
        player.expect_exit(0)

    def test_the_control_socket_goes_with_the_program(self):
        player = self.play(e2e.LONG)
        player.control("quit")
        self.assert_orderly_end(player)
        status, reply = player.try_control("state")
        self.assertEqual(status, 1, reply)


class DisplayEnding(Ending, e2e.DisplayTestCase):
    def test_the_escape_key(self):
        player = self.play(e2e.LONG)
        self.key(player, "Escape")
        self.assert_orderly_end(player)

    def test_the_home_key_of_the_keyboard(self):
        player = self.play(e2e.LONG)
        self.key(player, "Home")
        self.assert_orderly_end(player)


if __name__ == "__main__":
    e2e.main()

"""The program's window among the others of a desktop."""

import threading

import Xlib.display
import Xlib.X
import Xlib.protocol.event

import e2e


class DeafManager:
    """A window manager that asks to be told of each window, and then does nothing about it."""

    def __init__(self, name):
        self.display = Xlib.display.Display(name)
        self.asked_to_show = threading.Event()
        root = self.display.screen().root
        root.change_attributes(event_mask=Xlib.X.SubstructureRedirectMask)
        self.display.sync()
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        while True:
            event = self.display.next_event()
            if event.type == Xlib.X.MapRequest:
                self.asked_to_show.set()
                self.display.close()
                return


class Window(e2e.DisplayTestCase):
    def test_shows_although_a_window_manager_lost_the_first_request(self):
        self.display.manager.end()
        manager = DeafManager(self.display.name)
        player = self.start(e2e.clip(e2e.LONG))
        self.assertTrue(manager.asked_to_show.wait(e2e.PATIENCE))

        self.assertTrue(self.display.visible_window())
        player.wait("position>=500")
        picture = self.screen(player)
        self.assertIsNotNone(e2e.frame_number(picture))

    def test_the_close_button_ends_the_program(self):
        player = self.play(e2e.LONG)
        window = int(self.display.visible_window())
        desktop = Xlib.display.Display(self.display.name)
        self.addCleanup(desktop.close)

        protocols = desktop.intern_atom("WM_PROTOCOLS")
        close = desktop.intern_atom("WM_DELETE_WINDOW")
        target = desktop.create_resource_object("window", window)
        target.send_event(Xlib.protocol.event.ClientMessage(
            window=target, client_type=protocols, data=(32, [close, Xlib.X.CurrentTime, 0, 0, 0])))
        desktop.sync()

        player.expect_exit(0)
        self.assert_in_order(player, [r"TslApp\.cpp: onTerminate > ",
                                      r"Video Player App is terminated\."])


class Shape(e2e.DisplayTestCase):
    """The ways to show the watch: what the window's size is, and what is seen in it."""

    def show(self, *options):
        """Plays, and gives the window's place and size when a picture of the video is in it."""
        player = self.start(*options, e2e.clip(e2e.LONG))
        player.wait("player==playing&&position>=500")
        left, top, width, height, _ = self.display.find_window()
        e2e.wait_until(lambda: self.frame_number(player) is not None, "the picture")
        return player, self.display.picture(left, top, width, height)

    def frame_number(self, player):
        return e2e.frame_number(self.screen(player))

    def test_the_watch_is_around_the_screen_by_default(self):
        _, picture = self.show()
        self.assertGreater(picture.width, 360)
        self.assertEqual(picture.width, picture.height)
        # The metal of the ring, above the screen.
        self.assertFalse(picture.is_black(picture.width // 2 + 12, picture.height // 2 - 180 - 25))

    def test_without_a_frame_the_window_is_the_round_screen_alone(self):
        player, picture = self.show("--frame", "none")
        self.assertEqual((picture.width, picture.height), (360, 360))
        # The pointer was put into the fourth corner.
        for x, y in ((357, 2), (2, 357), (357, 357)):
            self.assertTrue(picture.is_black(x, y))
        self.key(player, "Escape")
        player.expect_exit(0)

    def test_a_scale_enlarges_window_and_controls_alike(self):
        widths = {}
        for scale in (0.5, 1.25):
            player, picture = self.show("--scale", str(scale))
            side = int(360 * scale)
            self.assertEqual(player.state()["screen"], {"width": side, "height": side})
            self.assertGreater(picture.width, side)
            self.assertEqual(picture.width, picture.height)
            self.show_controls(player)
            middle, _ = player.button("video/pause")
            self.assertAlmostEqual(middle, side / 2, delta=2)
            widths[scale] = {button["style"]: button["width"]
                             for button in player.state()["buttons"]}
            player.end()
            self.place = None
        for style, width in widths[0.5].items():
            self.assertAlmostEqual(widths[1.25][style], width * 2.5, delta=3)

    def test_a_full_screen_has_the_round_screen_alone_and_keys_for_all(self):
        player, picture = self.show("--fullscreen")
        self.assertEqual((picture.width, picture.height), self.display.SIZE)
        self.assertEqual(player.state()["screen"], {"width": 700, "height": 700})
        self.assertTrue(picture.is_black(20, 350))
        self.key(player, "Right")
        e2e.wait_until(lambda: player.log_has("Event count: [1]"), "the bezel's turn")
        self.key(player, "Escape")
        player.expect_exit(0)

    def test_a_full_screen_can_have_the_watch(self):
        player, picture = self.show("--fullscreen", "--frame", "watch")
        self.assertEqual((picture.width, picture.height), self.display.SIZE)
        self.assertLess(player.state()["screen"]["width"], 500)
        self.assertFalse(picture.is_black(20, 350))


if __name__ == "__main__":
    e2e.main()

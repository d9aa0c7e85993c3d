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


if __name__ == "__main__":
    e2e.main()

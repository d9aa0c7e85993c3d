"""The program on a Wayland compositor, as on X11."""

import glob
import os
import socket
import struct
import subprocess
import threading

import e2e


class Compositor:
    """A compositor without a screen, which can be asked for a picture of what it would show."""

    SIZE = (640, 560)
    BACKGROUND = (0x33, 0x66, 0x99)
    SOCKET = "wayland-tessel"

    def __init__(self, directory, environment):
        self.directory = directory
        configuration = os.path.join(directory, "weston.ini")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write("[shell]\npanel-position=none\nlocking=false\nbackground-color=0xff" +
                       "".join(f"{part:02x}" for part in self.BACKGROUND) + "\n")
        width, height = self.SIZE
        log_path = os.path.join(directory, "weston.log")
        with open(log_path, "wb") as log:
            # --debug lets pictures be taken.
            self.server = e2e.Process(
                ["weston", "--backend=headless-backend.so", "--use-pixman", "--debug",
                 f"--socket={self.SOCKET}", f"--width={width}", f"--height={height}",
                 f"--config={configuration}", "--idle-time=0"],
                env=environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.environment = dict(environment, WAYLAND_DISPLAY=self.SOCKET)
        self.path = os.path.join(environment["XDG_RUNTIME_DIR"], self.SOCKET)
        e2e.wait_until(lambda: os.path.exists(self.path), "the compositor")

    def picture(self):
        """All that the compositor shows."""
        folder = os.path.join(self.directory, "pictures")
        os.makedirs(folder, exist_ok=True)
        done = subprocess.run(["weston-screenshooter"], env=self.environment, cwd=folder,
                              capture_output=True, text=True, timeout=e2e.PATIENCE)
        files = glob.glob(os.path.join(folder, "*.png"))
        if done.returncode != 0 or not files:
            raise AssertionError(f"no picture: {done.stdout}{done.stderr}")
        picture = e2e.Picture.from_png(files[0])
        os.remove(files[0])
        return picture

    def window(self):
        """Left, top and a picture of the only window; None while there is none."""
        whole = self.picture()
        empty = bytes(self.BACKGROUND)
        line = empty * whole.width
        rows = [y for y in range(whole.height)
                if whole.pixels[y * whole.width * 3 : (y + 1) * whole.width * 3] != line]
        if not rows:
            return None
        # Somewhere below the window's first row, which may have the background's colour.
        columns = [x for x in range(whole.width)
                   if any(whole.at(x, y) != self.BACKGROUND for y in rows[:: len(rows) // 20 or 1])]
        left, top = columns[0], rows[0]
        return left, top, whole.part(left, top, columns[-1] + 1 - left, rows[-1] + 1 - top)

    def end(self):
        self.server.end()


class Messenger:
    """Stands between the program and the compositor, which has no button to press: passes on what
    they say, and can add that the window's close button was pressed."""

    DISPLAY, GET_REGISTRY, BIND, GET_XDG_SURFACE, GET_TOPLEVEL, CLOSE = 1, 1, 0, 2, 1, 1

    def __init__(self, compositor, directory):
        self.path = os.path.join(directory, "between")
        self.lock = threading.Lock()
        self.registries, self.shells, self.surfaces = set(), set(), set()
        self.window = None
        self.ends = []
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind(self.path)
        self.listener.listen()
        threading.Thread(target=self.accept, args=(compositor.path,), daemon=True).start()

    def accept(self, path):
        while True:
            try:
                program, _ = self.listener.accept()
            except OSError:
                return
            server = socket.socket(socket.AF_UNIX)
            server.connect(path)
            self.ends += [program, server]
            for ends in ((program, server, self.read_request), (server, program, None)):
                threading.Thread(target=self.pass_on, args=ends, daemon=True).start()

    def pass_on(self, source, target, reader):
        """Whole messages only, so that one can be put between them."""
        rest, waiting = b"", []
        while True:
            try:
                data, descriptors, _, _ = socket.recv_fds(source, 65536, 32)
            except OSError:
                data, descriptors = b"", []
            waiting += descriptors
            if not data:
                break
            rest += data
            whole = self.length_of_whole(rest, reader, source)
            if whole == 0:
                continue
            try:
                with self.lock:
                    socket.send_fds(target, [rest[:whole]], waiting)
            except OSError:
                break
            rest = rest[whole:]
            while waiting:
                os.close(waiting.pop())
        for descriptor in waiting:
            os.close(descriptor)
        target.close()

    @staticmethod
    def length_of_whole(data, reader, source):
        """Of the messages that have come whole; each is shown to the reader."""
        whole = 0
        while len(data) - whole >= 8:
            subject, word = struct.unpack_from("=II", data, whole)
            size = word >> 16
            if len(data) - whole < size:
                break
            if reader is not None:
                reader(subject, word & 0xffff, data[whole + 8 : whole + size], source)
            whole += size
        return whole

    def read_request(self, subject, request, body, program):
        """Follows the names of objects down to the window's."""
        if subject == self.DISPLAY and request == self.GET_REGISTRY:
            self.registries.add(struct.unpack_from("=I", body)[0])
        elif subject in self.registries and request == self.BIND:
            length = struct.unpack_from("=I", body, 4)[0]
            if body[8 : 8 + length].rstrip(b"\0") == b"xdg_wm_base":
                self.shells.add(struct.unpack("=I", body[-4:])[0])
        elif subject in self.shells and request == self.GET_XDG_SURFACE:
            self.surfaces.add(struct.unpack_from("=I", body)[0])
        elif subject in self.surfaces and request == self.GET_TOPLEVEL:
            self.window = (struct.unpack_from("=I", body)[0], program)

    def close_window(self):
        name, program = e2e.wait_until(lambda: self.window, "the program's window")
        with self.lock:
            program.sendall(struct.pack("=II", name, 8 << 16 | self.CLOSE))

    def end(self):
        for end in [self.listener, *self.ends]:
            end.close()


class Wayland(e2e.TestCase):
    def setUp(self):
        super().setUp()
        self.compositor = Compositor(self.directory, self.environment)
        self.addCleanup(self.compositor.end)
        self.environment["WAYLAND_DISPLAY"] = self.compositor.SOCKET

    def mode(self):
        return []

    def screen(self, player):
        """The round screen, as the compositor shows it."""
        size = player.state()["screen"]
        window = e2e.wait_until(self.compositor.window, "the window")[2]
        return window.part((window.width - size["width"]) // 2,
                           (window.height - size["height"]) // 2, size["width"], size["height"])

    def wait_for_number(self, player):
        return e2e.wait_until(lambda: e2e.frame_number(self.screen(player)), "a numbered picture")

    def test_shows_the_picture_of_its_position_and_ends_with_the_video(self):
        player = self.play(e2e.LONG)
        player.wait("position>=1000")
        self.wait_for_number(player)
        before = player.state()["position"]
        number = e2e.frame_number(self.screen(player))
        after = player.state()["position"]
        self.assertGreaterEqual(number, (before - e2e.LATENESS_MS) * e2e.FPS // 1000)
        self.assertLessEqual(number, (after + e2e.LATENESS_MS) * e2e.FPS // 1000 + 1)
        player.end()

        status, _, player = self.run_to_end(e2e.clip(e2e.SHORT))
        self.assertEqual(status, 0, player.text())

    def test_the_watch_is_around_the_screen_and_answers(self):
        player = self.play(e2e.LONG)
        self.wait_for_number(player)
        window = self.compositor.window()[2]
        self.assertGreater(window.width, 360)
        self.assertEqual(window.width, window.height)
        # The metal of the ring, above the screen.
        self.assertFalse(window.is_black(window.width // 2 + 12, window.height // 2 - 180 - 25))
        self.press(player, "video/pause")
        player.wait("player==paused")
        player.control("key", "back")
        player.expect_exit(0)

    def test_a_window_without_a_frame_has_the_size_of_the_scaled_screen(self):
        player = self.start("--frame", "none", "--scale", "1.5", e2e.clip(e2e.LONG))
        player.wait("player==playing")
        self.wait_for_number(player)
        window = self.compositor.window()[2]
        self.assertEqual((window.width, window.height), (540, 540))

    def test_a_full_screen_covers_all(self):
        player = self.start("--fullscreen", e2e.clip(e2e.LONG))
        player.wait("player==playing&&screen.width==560")
        self.wait_for_number(player)
        left, top, window = self.compositor.window()
        self.assertEqual((left, top, window.width, window.height), (0, 0, *self.compositor.SIZE))
        self.assertTrue(window.is_black(10, 280))
        player.control("key", "back")
        player.expect_exit(0)

    def test_the_compositors_close_button_ends_the_program(self):
        messenger = Messenger(self.compositor, self.directory)
        self.addCleanup(messenger.end)
        self.environment["WAYLAND_DISPLAY"] = messenger.path
        player = self.play(e2e.LONG)
        self.wait_for_number(player)
        messenger.close_window()
        player.expect_exit(0)
        self.assert_ended_in_order(player)

    def test_a_compositor_that_goes_ends_the_program(self):
        player = self.play(e2e.LONG)
        self.compositor.end()
        player.expect_exit(0)
        self.assert_ended_in_order(player)

    def assert_ended_in_order(self, player):
        self.assert_in_order(player, [r"TslApp\.cpp: onTerminate > ",
                                      r"Video Player App is terminated\."])


if __name__ == "__main__":
    e2e.main()

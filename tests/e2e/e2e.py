"""What the end-to-end tests share: the program as a process of its own, the virtual display, the
tools that drive it, and its log and pictures as data.

Nothing here looks into the program: it is started from its file, driven by tesselctl, a pointer,
a wheel and keys, and judged by its log, its pictures, its state and its exit status.
"""

import concurrent.futures
import json
import os
import re
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zlib

BIN = os.environ["TESSEL_BIN"]
MEDIA = os.environ["TESSEL_MEDIA"]

# A sanitized build is many times slower than what a person sees: nothing about speed is asked of it.
SLOW = bool(os.environ.get("TESSEL_SANITIZE"))
PATIENCE = 120.0 if SLOW else 60.0

APPLICATION_TITLE = "Tessel"

# The clips: 640x360, numbered pictures with a tone; and a tone alone.
SHORT, MIDDLE, LONG = "e2e_short.mp4", "short_minute.mp4", "e2e_long.mp4"
SMOOTH, SOUND = "e2e_smooth.mp4", "e2e_sound.m4a"
LONG_MS = 130_000
FPS, SMOOTH_FPS = 30, 60
# How far the picture on the screen may lie behind the position.
LATENESS_MS = 3_000 if SLOW else 300

# A quick hand.
DOUBLE_CLICK_MS = 80
DRAG_STEPS = 10

TEXTS = {
    "missing": "This file doesn't exist",
    "invalid": "Invalid address",
    "unsupported": "Unsupported format",
}


def wait_until(condition, what, seconds=PATIENCE):
    """Returns what `condition` gives as soon as that is true."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"{what} did not come within {seconds} s")
        time.sleep(0.02)


def clip(name):
    path = os.path.join(MEDIA, name)
    if not os.path.exists(path):
        raise AssertionError(f"the clip {path} was not made")
    return path


class LogLine:
    """One line of the log: level letter, tag, source file, function, text."""

    PATTERN = re.compile(r"([VDIWEF])/(\S+?)\s*\(.*?\): (\S+): (\S+)\(\d+\) > (.*)")

    def __init__(self, level, tag, source, function, text):
        self.level, self.tag, self.source = level, tag, source
        self.function, self.text = function, text

    def __repr__(self):
        return f"{self.level}/{self.tag} {self.source}: {self.function} > {self.text}"


class Picture:
    """An image of 8 bits a channel, as rows of RGB bytes."""

    def __init__(self, width, height, pixels):
        self.width, self.height, self.pixels = width, height, pixels

    def at(self, x, y):
        place = (y * self.width + x) * 3
        return tuple(self.pixels[place : place + 3])

    def luma(self, x, y):
        red, green, blue = self.at(x, y)
        return (299 * red + 587 * green + 114 * blue) / 1000

    def is_black(self, x, y):
        return max(self.at(x, y)) < 24

    def part(self, left, top, width, height):
        rows = []
        for y in range(top, top + height):
            begin = (y * self.width + left) * 3
            rows.append(self.pixels[begin : begin + width * 3])
        return Picture(width, height, b"".join(rows))

    @staticmethod
    def from_png(path):
        with open(path, "rb") as file:
            data = file.read()
        if data[:8] != b"\x89PNG\r\n\x1a\n":
            raise AssertionError(f"{path} is no PNG file")
        header, packed, place = None, b"", 8
        while place < len(data):
            length, kind = struct.unpack(">I4s", data[place : place + 8])
            body = data[place + 8 : place + 8 + length]
            if kind == b"IHDR":
                header = struct.unpack(">IIBBBBB", body)
            elif kind == b"IDAT":
                packed += body
            place += length + 12
        width, height, depth, colours, _, _, interlaced = header
        channels = {0: 1, 2: 3, 4: 2, 6: 4}.get(colours)
        if depth != 8 or channels is None or interlaced:
            raise AssertionError(f"{path} has a form of PNG that isn't read here: {header}")
        flat = _unfilter(zlib.decompress(packed), width, height, channels)
        return Picture(width, height, _rgb(flat, channels))

    @staticmethod
    def from_xwd(path, left, top, width, height):
        """A part of a virtual display's frame buffer file."""
        with open(path, "rb") as file:
            data = file.read()
        rows = []
        for place in rows_of_xwd(data, left, top, width, height):
            row = data[place]
            rgb = bytearray(width * 3)
            rgb[0::3], rgb[1::3], rgb[2::3] = row[2::4], row[1::4], row[0::4]
            rows.append(bytes(rgb))
        return Picture(width, height, b"".join(rows))


def rows_of_xwd(data, left, top, width, height):
    """Where the rows of a part of a frame buffer file are in it."""
    header = struct.unpack(">25I", data[:100])
    header_size, bits, line = header[0], header[11], header[12]
    colours = header[19]
    if bits != 32:
        raise AssertionError(f"the display has {bits} bits a pixel")
    start = header_size + colours * 12 + left * 4
    return [slice(start + y * line, start + y * line + width * 4)
            for y in range(top, top + height)]


def _unfilter(raw, width, height, channels):
    stride = width * channels
    out = bytearray()
    previous = bytearray(stride)
    for y in range(height):
        kind = raw[y * (stride + 1)]
        row = bytearray(raw[y * (stride + 1) + 1 : (y + 1) * (stride + 1)])
        if kind == 1:
            for i in range(channels, stride):
                row[i] = (row[i] + row[i - channels]) & 255
        elif kind == 2:
            for i in range(stride):
                row[i] = (row[i] + previous[i]) & 255
        elif kind == 3:
            for i in range(stride):
                left = row[i - channels] if i >= channels else 0
                row[i] = (row[i] + (left + previous[i]) // 2) & 255
        elif kind == 4:
            for i in range(stride):
                a = row[i - channels] if i >= channels else 0
                b = previous[i]
                c = previous[i - channels] if i >= channels else 0
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                row[i] = (row[i] + (a if pa <= pb and pa <= pc else b if pb <= pc else c)) & 255
        out += row
        previous = row
    return out


def _rgb(flat, channels):
    if channels == 3:
        return bytes(flat)
    pixels = bytearray(len(flat) // channels * 3)
    if channels == 4:
        pixels[0::3], pixels[1::3], pixels[2::3] = flat[0::4], flat[1::4], flat[2::4]
    else:
        pixels[0::3] = pixels[1::3] = pixels[2::3] = flat[0::channels]
    return bytes(pixels)


def frame_number(screen, covering=True):
    """The number of the picture that a round screen shows, or None: see tools/clips/frame_number.h."""
    side = screen.width
    # The shorter side of the picture as it is shown.
    shown = side if covering else side * 9 / 16
    cell = shown * 0.6 / 16
    row = int(side / 2 - shown * 0.28)
    bits = []
    for place in range(16):
        value = screen.luma(int(side / 2 + (place + 0.5 - 8) * cell), row)
        if 90 < value < 165:
            return None
        bits.append(value >= 165)
    if (bits[0], bits[1], bits[15]) != (True, False, True) or sum(bits[2:15]) % 2:
        return None
    return int("".join("1" if bit else "0" for bit in bits[2:14]), 2)


class Process:
    """A child whose end is seen to."""

    def __init__(self, command, **options):
        self.child = subprocess.Popen(command, **options)

    def end(self, seconds=10.0):
        if self.child.poll() is None:
            self.child.terminate()
            try:
                self.child.wait(seconds)
            except subprocess.TimeoutExpired:
                self.child.kill()
                self.child.wait()


class Display:
    """A virtual display with a window manager, without which no window is drawn."""

    SIZE = (800, 700)

    def __init__(self, directory):
        self.directory = directory
        read, write = os.pipe()
        width, height = self.SIZE
        # The server looks for a free number itself and says which one it took.
        self.server = Process(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{width}x{height}x24",
             "-fbdir", directory, "-nolisten", "tcp", "-noreset"],
            pass_fds=(write,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as number:
            line = number.readline().strip()
        if not line:
            raise AssertionError("the virtual display did not start")
        self.name = ":" + line
        self.environment = dict(os.environ, DISPLAY=self.name)
        self.manager = Process(["openbox", "--sm-disable"], env=self.environment,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.wait_for_manager()

    def wait_for_manager(self):
        """As on a desktop, the window manager is there before the program."""
        deadline = time.monotonic() + PATIENCE
        while subprocess.run(["xdotool", "get_num_desktops"], env=self.environment,
                             capture_output=True, timeout=PATIENCE).returncode != 0:
            if time.monotonic() > deadline:
                raise AssertionError("the window manager did not start")
            time.sleep(0.02)

    def tool(self, *words):
        done = subprocess.run(["xdotool", *map(str, words)], env=self.environment,
                              capture_output=True, text=True, timeout=PATIENCE)
        if done.returncode != 0:
            raise AssertionError(f"xdotool {words}: {done.stderr}")
        return done.stdout

    def visible_window(self):
        """The number of the program's window, once it is there."""
        # Asked again and again: the tool's own waiting has been seen not to end.
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            found = subprocess.run(
                ["xdotool", "search", "--onlyvisible", "--name", f"^{APPLICATION_TITLE}"],
                env=self.environment, capture_output=True, text=True, timeout=PATIENCE)
            if found.stdout.split():
                return found.stdout.split()[0]
            time.sleep(0.05)
        raise AssertionError(f"no window shows: {found.stderr}")

    def find_window(self):
        """Left, top, width and height of the program's window, and its number."""
        window = self.visible_window()
        def ask(*words):
            return dict(line.split("=") for line in self.tool(*words).split())
        size = ask("getwindowgeometry", "--shell", window)
        # The geometry's own place counts the window manager's frame twice; the pointer's doesn't.
        # Not the tool's waiting for a movement: it has been seen to wait long after it.
        self.tool("mousemove", "--window", window, 1, 1)
        place = ask("getmouselocation", "--shell")
        return (int(place["X"]) - 1, int(place["Y"]) - 1, int(size["WIDTH"]),
                int(size["HEIGHT"]), window)

    def picture(self, left, top, width, height):
        return Picture.from_xwd(os.path.join(self.directory, "Xvfb_screen0"),
                                left, top, width, height)

    def end(self):
        self.manager.end()
        self.server.end()


class Bus:
    """A session bus of its own; what it starts has the environment."""

    def __init__(self, directory, environment=None):
        self.address = f"unix:path={directory}/bus"
        self.daemon = Process(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={self.address}",
             "--print-address=1"], env=environment, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True)
        if not self.daemon.child.stdout.readline():
            raise AssertionError("the bus did not start")

    def end(self):
        self.daemon.end()
        self.daemon.child.stdout.close()


class Player:
    """One run of the program."""

    def __init__(self, directory, arguments, environment, name="player", program="tessel",
                 wrapper=()):
        self.directory = directory
        self.environment = environment
        self.log_path = os.path.join(directory, f"{name}.log")
        with open(self.log_path, "wb") as log:
            self.process = Process([*wrapper, os.path.join(BIN, program), *arguments],
                                   env=environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=log)
        self.child = self.process.child

    # The tools.

    def try_control(self, *words):
        """Exit status and reply of one tesselctl."""
        done = subprocess.run(
            [os.path.join(BIN, "tesselctl"), "--pid", str(self.child.pid), *map(str, words)],
            env=self.environment, capture_output=True, text=True, timeout=4 * PATIENCE)
        reply = json.loads(done.stdout) if done.stdout else {"error": done.stderr.strip()}
        return done.returncode, reply

    def control(self, *words):
        status, reply = self.try_control(*words)
        if status != 0:
            self.fail(f"tesselctl {' '.join(map(str, words))}: {reply}")
        return reply

    def wait_for_socket(self):
        path = os.path.join(self.environment["XDG_RUNTIME_DIR"], "tessel",
                            f"control-{self.child.pid}.sock")
        wait_until(lambda: os.path.exists(path) or self.child.poll() is not None,
                   "the control socket")
        if self.child.poll() is not None:
            self.fail(f"the program ended with {self.child.returncode} before it could be driven")

    def wait(self, condition, seconds=PATIENCE):
        """The state as soon as the condition holds."""
        return self.control("wait", condition, int(seconds * 1000))["state"]

    def state(self):
        return self.control("state")["state"]

    def buffering(self):
        """What was told of the stream's buffers, in the log's words."""
        return [line.text for line in self.log() if line.text.startswith("Buffering: [")]

    def wait_for_stall(self):
        """Until all that a stream has brought is played."""
        full = "Buffering: [100 %]"
        wait_until(lambda: full in self.buffering() and self.buffering()[-1] != full, "the stall")

    def button(self, style):
        """Middle of the visible button of that style, in pixels of the screen."""
        def find():
            for button in self.state()["buttons"]:
                if button["style"] == style and button["enabled"]:
                    return (button["x"] + button["width"] // 2,
                            button["y"] + button["height"] // 2)
            return None
        return wait_until(find, f"the button {style}")

    def picture(self, name="shot"):
        """The round screen alone."""
        path = os.path.join(self.directory, f"{name}.png")
        self.control("screenshot", path)
        whole = Picture.from_png(path)
        screen = self.state()["screen"]
        return whole.part((whole.width - screen["width"]) // 2,
                          (whole.height - screen["height"]) // 2,
                          screen["width"], screen["height"])

    # The log.

    def text(self):
        with open(self.log_path, encoding="utf-8", errors="replace") as file:
            return file.read()

    def log(self):
        lines = []
        for line in self.text().splitlines():
            match = LogLine.PATTERN.search(line)
            if match:
                lines.append(LogLine(*match.groups()))
        return lines

    def log_has(self, text):
        return any(text in line.text for line in self.log())

    # The end.

    def exit_status(self, seconds=PATIENCE):
        try:
            self.child.wait(seconds)
        except subprocess.TimeoutExpired:
            self.fail(f"the program did not end within {seconds} s")
        return self.child.returncode

    def expect_exit(self, status):
        ended = self.exit_status()
        if ended != status:
            self.fail(f"the program ended with {ended} and not with {status}")

    def output(self):
        return self.child.stdout.read().decode("utf-8", "replace")

    def fail(self, why):
        raise AssertionError(f"{why}\n--- log of the program, last lines ---\n" +
                             "\n".join(self.text().splitlines()[-60:]))

    def end(self):
        self.process.end(PATIENCE)
        self.child.stdout.close()


class TestCase(unittest.TestCase):
    """A test with a directory, a home and a runtime directory of its own, headless."""

    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="tessel-e2e-")
        self.addCleanup(shutil.rmtree, self.directory, ignore_errors=True)
        self.environment = dict(os.environ)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "TESSEL_LOG",
                     "PULSE_SERVER", "PULSE_RUNTIME_PATH", "ELM_ENGINE", "LANGUAGE"):
            self.environment.pop(name, None)
        for name, folder in (("HOME", "home"), ("XDG_RUNTIME_DIR", "run"),
                             ("XDG_CONFIG_HOME", "config"), ("XDG_CACHE_HOME", "cache"),
                             ("XDG_DATA_HOME", "data")):
            path = os.path.join(self.directory, folder)
            os.makedirs(path, mode=0o700)
            self.environment[name] = path
        # Looking at every plug-in of the machine takes longer than most tests.
        self.environment["GST_REGISTRY"] = os.path.join(MEDIA, "gstreamer-registry.bin")
        self.players = 0

    def mode(self):
        """Options that say where the program is shown."""
        return ["--headless"]

    def start(self, *arguments, control=True, bus=None, log="info", program="tessel",
              wrapper=()):
        environment = dict(self.environment)
        if bus is not None:
            environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address
        options = [*self.mode(), "--log", log, *(["--control"] if control else [])]
        self.players += 1
        player = Player(self.directory, [*options, *arguments], environment,
                        f"player{self.players}", program, wrapper)
        self.addCleanup(player.end)
        if control:
            player.wait_for_socket()
        return player

    def play(self, name, **options):
        player = self.start(clip(name), **options)
        player.wait("player==playing")
        return player

    def run_to_end(self, *arguments, control=False, mode=None):
        """A run that ends by itself: exit status, standard output, player."""
        player = Player(self.directory, [*(self.mode() if mode is None else mode), *arguments,
                                         *(["--control"] if control else [])],
                        dict(self.environment))
        self.addCleanup(player.end)
        status = player.exit_status()
        return status, player.output(), player

    # What a person does; a test in a display does it with real devices.

    def touch(self, player, x, y):
        player.control("tap", x, y)

    def double_touch(self, player, x, y):
        self.touch(player, x, y)
        self.touch(player, x, y)

    def hold(self, player, x, y, milliseconds):
        player.control("press", x, y, milliseconds)

    def drag(self, player, from_x, from_y, to_x, to_y, milliseconds):
        player.control("drag", from_x, from_y, to_x, to_y, milliseconds)

    def show_controls(self, player):
        """Touches a free place until the controls are there."""
        if not player.state()["controls"]:
            screen = player.state()["screen"]
            self.touch(player, screen["width"] // 2, screen["height"] // 8)
        player.wait("controls==true")

    def press(self, player, style):
        self.show_controls(player)
        self.touch(player, *player.button(style))

    def turn(self, player, detents, interval_ms=30):
        player.control("bezel", detents, interval_ms)

    def screen(self, player):
        return player.picture()

    def assert_in_order(self, player, stages):
        """Each stage is a pattern of "LEVEL/TAG SOURCE: FUNCTION > TEXT"; others may lie between."""
        lines = [repr(line) for line in player.log()]
        place = 0
        for stage in stages:
            pattern = re.compile(stage)
            while place < len(lines) and not pattern.search(lines[place]):
                place += 1
            if place == len(lines):
                player.fail(f"the stage '{stage}' is missing or not in its place")
            place += 1


class DisplayTestCase(TestCase):
    """The same in a window of a virtual display, with a real pointer, wheel and keys."""

    def setUp(self):
        super().setUp()
        self.display = Display(self.directory)
        self.addCleanup(self.display.end)
        self.environment["DISPLAY"] = self.display.name
        self.place = None

    def mode(self):
        return []

    def place_of_screen(self, player):
        """Left and top of the round screen in the display, and the window's number."""
        # The window stays where it is, and the pointer isn't to be moved again by the look.
        if self.place is None:
            left, top, width, height, window = self.display.find_window()
            screen = player.state()["screen"]
            self.place = (left + (width - screen["width"]) // 2,
                          top + (height - screen["height"]) // 2, window)
        return self.place

    def touch(self, player, x, y):
        left, top, _ = self.place_of_screen(player)
        self.display.tool("mousemove", left + x, top + y, "click", 1)

    def double_touch(self, player, x, y):
        left, top, _ = self.place_of_screen(player)
        self.display.tool("mousemove", left + x, top + y,
                          "click", "--repeat", 2, "--delay", DOUBLE_CLICK_MS, 1)

    def hold(self, player, x, y, milliseconds):
        left, top, _ = self.place_of_screen(player)
        self.display.tool("mousemove", left + x, top + y, "mousedown", 1,
                          "sleep", milliseconds / 1000, "mouseup", 1)

    def drag(self, player, from_x, from_y, to_x, to_y, milliseconds):
        left, top, _ = self.place_of_screen(player)
        way = []
        for step in range(1, DRAG_STEPS + 1):
            way += ["sleep", milliseconds / DRAG_STEPS / 1000, "mousemove",
                    left + from_x + (to_x - from_x) * step // DRAG_STEPS,
                    top + from_y + (to_y - from_y) * step // DRAG_STEPS]
        self.display.tool("mousemove", left + from_x, top + from_y, "mousedown", 1, *way,
                          "mouseup", 1)

    def turn(self, player, detents, interval_ms=30):
        screen = player.state()["screen"]
        left, top, _ = self.place_of_screen(player)
        self.display.tool("mousemove", left + screen["width"] // 2, top + screen["height"] // 2)
        self.display.tool("click", "--repeat", abs(detents), "--delay", interval_ms,
                          4 if detents > 0 else 5)

    def key(self, player, name):
        _, _, window = self.place_of_screen(player)
        self.display.tool("windowfocus", "--sync", window, "key", name)

    def screen(self, player):
        left, top, _ = self.place_of_screen(player)
        size = player.state()["screen"]
        return self.display.picture(left, top, size["width"], size["height"])


def tests_of(suite):
    for one in suite:
        if isinstance(one, unittest.TestSuite):
            yield from tests_of(one)
        else:
            yield one


def run_alone(test):
    """With a result of its own, as each of these tests has a folder and processes of its own."""
    result = unittest.TestResult()
    unittest.TestSuite([test]).run(result)
    said = [text for _, text in result.errors + result.failures]
    skipped = [f"skipped: {why}" for _, why in result.skipped]
    return test, result.wasSuccessful(), said, skipped


def run_side_by_side(jobs):
    names = sys.argv[1:]
    loader, module = unittest.TestLoader(), sys.modules["__main__"]
    suite = loader.loadTestsFromNames(names, module) if names else \
        loader.loadTestsFromModule(module)
    good = True
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        done = [pool.submit(run_alone, test) for test in tests_of(suite)]
        for one in concurrent.futures.as_completed(done):
            test, passed, said, skipped = one.result()
            print(f"{test} ... {'ok' if passed else 'FAIL'}", *skipped, *said, sep="\n",
                  file=sys.stderr)
            good = good and passed
    print(f"Ran {len(done)} tests", file=sys.stderr)
    return 0 if good and done else 1


def main(jobs=1):
    """@param jobs  tests at a time, for a topic whose tests mostly wait"""
    if jobs > 1:
        sys.exit(run_side_by_side(jobs))
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[1:]])

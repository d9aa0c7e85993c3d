"""What a screen reader gets: names, descriptions, roles and places of all that is on the screen, in
the current language, and the buttons' actions. It is asked from another process, over the
desktop's own accessibility bus."""

import json
import os
import struct
import subprocess
import sys

import e2e

CLIENT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "assistive.py")
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


class Desktop:
    """A session with the accessibility service, whose screen reader can be switched."""

    def __init__(self, directory, environment):
        self.directory = directory
        self.bus = e2e.Bus(directory)
        self.environment = dict(environment, DBUS_SESSION_BUS_ADDRESS=self.bus.address,
                                GSETTINGS_BACKEND="memory")
        self.launcher = e2e.Process([LAUNCHER, "--launch-immediately"], env=self.environment,
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        e2e.wait_until(lambda: self.call("org.freedesktop.DBus.Properties.Get", "org.a11y.Status",
                                         "ScreenReaderEnabled"), "the accessibility service")

    def call(self, method, *arguments):
        done = subprocess.run(
            ["gdbus", "call", "--session", "-d", "org.a11y.Bus", "-o", "/org/a11y/bus",
             "-m", method, *arguments], env=self.environment, capture_output=True,
            timeout=e2e.PATIENCE)
        return done.returncode == 0

    def set_reader(self, on):
        if not self.call("org.freedesktop.DBus.Properties.Set", "org.a11y.Status",
                         "ScreenReaderEnabled", f"<{'true' if on else 'false'}>"):
            raise AssertionError("the screen reader can't be switched")

    def start_client(self, *words):
        return subprocess.Popen([sys.executable, "-B", CLIENT, *words], env=self.environment,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)

    def ask(self, *words):
        client = self.start_client(*words)
        try:
            output, _ = client.communicate(timeout=e2e.PATIENCE)
        except subprocess.TimeoutExpired:
            client.kill()
            client.wait()
            raise
        return json.loads(output.splitlines()[-1]) if output else None

    def tree(self):
        found = self.ask("tree")
        return found if isinstance(found, list) else []

    def end(self):
        self.launcher.end()
        self.bus.end()


def buttons(tree):
    return {node["name"]: node for node in tree if node["role"] == "push button"}


class Accessibility:
    def setUp(self):
        super().setUp()
        self.environment["GSETTINGS_BACKEND"] = "memory"
        for name in ("LC_ALL", "LC_MESSAGES", "LANG"):
            self.environment.pop(name, None)
        self.desktop = Desktop(self.directory, self.environment)
        self.addCleanup(self.desktop.end)

    def listen_to(self, clip=e2e.LONG):
        """The program with a screen reader that has found it."""
        self.desktop.set_reader(True)
        player = self.play(clip, bus=self.desktop.bus)
        self.node(lambda node: node["role"] == "push button")
        return player

    def node(self, fits):
        """The first object that fits, as soon as there is one."""
        return e2e.wait_until(
            lambda: next((node for node in self.desktop.tree() if fits(node)), None),
            "the object")

    def named(self, name):
        return self.node(lambda node: node["name"] == name)

    def press_by_reader(self, name):
        self.named(name)
        self.assertTrue(self.desktop.ask("press", "push button", name))


class Reader(Accessibility, e2e.TestCase):
    def test_the_program_is_there_while_a_screen_reader_is_on(self):
        self.desktop.set_reader(False)
        player = self.play(e2e.LONG, bus=self.desktop.bus)
        self.assertEqual(self.desktop.tree(), [])
        self.desktop.set_reader(True)
        self.named("Pause")
        self.desktop.set_reader(False)
        e2e.wait_until(lambda: not self.desktop.tree(), "the program's leave")
        player.wait("player==playing")

    def test_it_has_one_window_with_one_page(self):
        self.listen_to()
        tree = self.desktop.tree()
        self.assertEqual([node["name"] for node in tree if node["depth"] == 1], ["Tessel"])
        self.assertEqual([node["role"] for node in tree if node["depth"] == 1], ["window"])
        self.assertEqual([node["name"] for node in tree if node["role"] == "page tab"],
                         ["Video player"])

    def test_buttons_have_name_role_and_description(self):
        self.listen_to()
        found = buttons(self.desktop.tree())
        self.assertEqual(set(found), {"Volume", "Pause", "Screen ratio"})
        self.assertEqual(found["Screen ratio"]["description"], "Fit to screen")
        self.assertEqual(found["Pause"]["description"], "")

    def test_the_times_are_one_sentence_that_is_made_when_it_is_asked_for(self):
        player = self.listen_to()
        player.wait("played==00:03")
        self.press_by_reader("Pause")
        player.wait("player==paused")

        def sentence():
            seconds = int(player.state()["played"][3:])
            expected = f"{seconds} seconds of 2 minutes 10 seconds"
            return [node["name"] for node in self.desktop.tree() if node["name"] == expected]
        # The screen may still be a tick behind when the player has stopped.
        first = e2e.wait_until(sentence, "the sentence of the times on the screen")
        player.control("bezel", 1)
        e2e.wait_until(lambda: sentence() not in ([], first), "the sentence of another time")

    def test_a_second_video_leaves_one_sentence(self):
        player = self.listen_to()
        player.control("launch", e2e.clip(e2e.MIDDLE))
        player.wait("player==playing && length==00:59")
        self.node(lambda node: node["name"].endswith(" of 59 seconds"))
        sentences = [node["name"] for node in self.desktop.tree() if " of " in node["name"]]
        self.assertEqual(len(sentences), 1, sentences)

    def test_all_follows_the_language(self):
        player = self.listen_to()
        player.wait("played==00:02")
        for language, names, end in (
                ("de_DE", {"Lautstärke", "Pause", "Bildformat"}, " von 2 Minuten 10 Sekunden"),
                ("ar", {"مستوى الصوت", "إيقاف مؤقت", "نسبة الشاشة"}, " من 2 دقيقة و10 ثانية"),
                ("ja_JP", {"音量", "一時停止", "画面比率"}, "秒")):
            player.control("language", language)
            tree = self.desktop.tree()
            self.assertEqual(set(buttons(tree)), names)
            self.assertTrue([node for node in tree if node["name"].endswith(end)], tree)

    def test_buttons_are_pressed(self):
        player = self.listen_to()
        self.press_by_reader("Pause")
        player.wait("player==paused")
        self.press_by_reader("Play")
        player.wait("player==playing")
        self.named("Pause")
        self.press_by_reader("Screen ratio")
        player.wait("display_mode==original_or_letter")
        self.assertEqual(self.named("Screen ratio")["description"], "Crop to fit")

    def test_a_new_name_is_reported(self):
        player = self.listen_to()
        client = self.desktop.start_client("events", "3")
        self.assertEqual(client.stdout.readline().strip(), "listening")
        self.press_by_reader("Pause")
        player.wait("player==paused")
        output, _ = client.communicate(timeout=e2e.PATIENCE)
        self.assertIn(["push button", "Play"], json.loads(output.splitlines()[-1]))

    def test_controls_stay_while_a_screen_reader_is_on(self):
        player = self.listen_to()
        self.show_controls(player)
        status, reply = player.try_control("wait", "controls==false", 4500)
        self.assertEqual(status, 1, reply)
        self.desktop.set_reader(False)
        # The reader's going is noticed, and the next tap hides them again.
        e2e.wait_until(lambda: not self.desktop.tree(), "the program's leave")
        screen = player.state()["screen"]
        self.touch(player, screen["width"] // 2, screen["height"] // 8)
        player.wait("controls==false")

    def test_a_message_is_read_and_dismissed(self):
        player = self.listen_to()
        player.control("error", "not-supported-file")
        self.named("Unsupported format")
        player.control("key", "back")
        player.exit_status()

    def test_the_level_of_the_volume_is_spoken(self):
        speech = SpeechServer(self.directory, self.environment)
        self.addCleanup(speech.end)
        self.environment["SPEECHD_ADDRESS"] = speech.address
        player = self.listen_to()
        self.press_by_reader("Volume")
        player.wait("page==tsl_volume_view")
        self.press_by_reader("Decrease volume")
        volume = e2e.wait_until(lambda: player.state()["volume"], "the volume")
        e2e.wait_until(lambda: f"english {volume}" in speech.said(), "the level")

    def showing(self):
        return [node for node in self.desktop.tree() if node["showing"]]

    def test_the_volume_screen_is_read_in_the_language_and_in_the_region_s_digits(self):
        speech = SpeechServer(self.directory, self.environment)
        self.addCleanup(speech.end)
        self.environment["SPEECHD_ADDRESS"] = speech.address
        player = self.listen_to()
        player.control("language", "ar")
        player.control("region", "ar_EG")
        player.control("volume", 7)
        self.press_by_reader("مستوى الصوت")
        player.wait("page==tsl_volume_view && level==٧")
        self.named("٧")
        # The page below is seen, and read, until this one has come all the way.
        names = {"كتم الصوت", "خفض مستوى الصوت", "رفع مستوى الصوت"}
        e2e.wait_until(lambda: set(buttons(self.showing())) == names, "the volume screen alone")
        self.assertIn("مستوى الصوت\nأدر الإطار لضبط مستوى الصوت",
                      [node["name"] for node in self.showing() if node["role"] == "page tab"])
        self.press_by_reader("خفض مستوى الصوت")
        self.named("٦")
        e2e.wait_until(lambda: "arabic ٦" in speech.said(), "the level")
        # The digits are the region's, in any language.
        player.control("language", "de_DE")
        self.press_by_reader("Lautstärke verringern")
        self.named("٥")
        e2e.wait_until(lambda: "german ٥" in speech.said(), "the next level")
        player.control("region", "de_DE")
        self.press_by_reader("Lautstärke verringern")
        self.named("4")
        e2e.wait_until(lambda: "german 4" in speech.said(), "the last level")


class SpeechServer:
    """A real speech service whose voices write down what they say."""

    VOICES = {"en": "english", "ar": "arabic", "de": "german"}

    def __init__(self, directory, environment):
        self.directory = os.path.join(directory, "speech")
        modules = os.path.join(self.directory, "conf", "modules")
        os.makedirs(modules)
        with open(os.path.join(self.directory, "conf", "speechd.conf"), "w") as file:
            file.write('DefaultModule writer\nAddModule "writer" "sd_generic" "writer.conf"\n'
                       'AudioOutputMethod "libao"\nDefaultLanguage "en"\n')
        with open(os.path.join(modules, "writer.conf"), "w") as file:
            file.write(f"GenericExecuteSynth \"echo $VOICE \\'$DATA\\' >> {self.directory}/said\"\n"
                       'GenericCmdDependency "echo"\n')
            for language, voice in self.VOICES.items():
                file.write(f'GenericLanguage "{language}" "{language}" "utf-8"\n'
                           f'AddVoice "{language}" "MALE1" "{voice}"\n')
        socket = os.path.join(self.directory, "socket")
        self.address = f"unix_socket:{socket}"
        self.server = e2e.Process(
            ["speech-dispatcher", "-s", "-C", os.path.join(self.directory, "conf"), "-S", socket,
             "-P", os.path.join(self.directory, "pid"), "-L", self.directory, "-t", "0"],
            env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        e2e.wait_until(lambda: os.path.exists(socket), "the speech service")

    def said(self):
        try:
            with open(os.path.join(self.directory, "said"), encoding="utf-8") as file:
                return file.read()
        except FileNotFoundError:
            return ""

    def end(self):
        self.server.end()


def places(player, left, top):
    """Where the screen's buttons are on the desktop, as a person sees them."""
    return sorted([left + button["x"], top + button["y"], button["width"], button["height"]]
                  for button in player.state()["buttons"])


def extents(tree):
    return sorted(node["extents"] for node in tree if node["role"] == "push button")


class HeadlessPlaces(Accessibility, e2e.TestCase):
    def place_of_screen(self, player):
        path = os.path.join(self.directory, "whole.png")
        player.control("screenshot", path)
        with open(path, "rb") as file:
            width, height = struct.unpack(">II", file.read(24)[16:])
        screen = player.state()["screen"]
        return (width - screen["width"]) // 2, (height - screen["height"]) // 2

    def test_places_are_those_on_the_whole_picture(self):
        player = self.listen_to()
        left, top = self.place_of_screen(player)
        self.show_controls(player)
        self.assertEqual(extents(self.desktop.tree()), places(player, left, top))
        screen = player.state()["screen"]
        window = next(node for node in self.desktop.tree() if node["role"] == "window")
        self.assertEqual(window["extents"], [left, top, screen["width"], screen["height"]])

    def test_places_turn_with_the_watch(self):
        player = self.listen_to()
        left, top = self.place_of_screen(player)
        self.show_controls(player)
        side = player.state()["screen"]["width"]
        upright = self.named("Volume")["extents"]
        x, y, width, height = upright[0] - left, upright[1] - top, upright[2], upright[3]
        turned = {90: [y, side - x - width, height, width],
                  180: [side - x - width, side - y - height, width, height],
                  270: [side - y - height, x, height, width]}
        for degrees, expected in turned.items():
            player.control("rotate", degrees)
            player.wait(f"rotation=={degrees}")
            self.assertEqual(self.named("Volume")["extents"],
                             [left + expected[0], top + expected[1], *expected[2:]])


class DisplayPlaces(Accessibility, e2e.DisplayTestCase):
    def test_places_are_those_on_the_desktop(self):
        player = self.listen_to()
        self.show_controls(player)
        left, top, window = self.place_of_screen(player)
        e2e.wait_until(lambda: extents(self.desktop.tree()) == places(player, left, top),
                       "the places of the buttons")
        self.display.tool("windowmove", "--sync", window, 30, 40)
        self.place = None
        moved = self.place_of_screen(player)
        self.assertNotEqual(moved[:2], (left, top))
        e2e.wait_until(lambda: extents(self.desktop.tree()) == places(player, *moved[:2]),
                       "the places after the move")


class FocusLog:
    """What a screen reader is told of the keyboard's focus while it listens."""

    def __init__(self, desktop):
        self.path = os.path.join(desktop.directory, "focus")
        with open(self.path, "wb") as file:
            self.client = e2e.Process([sys.executable, "-B", CLIENT, "follow-focus"],
                                      env=desktop.environment, stdout=file,
                                      stderr=subprocess.DEVNULL)
        e2e.wait_until(lambda: "listening" in self.lines(), "the listener")

    def lines(self):
        with open(self.path, encoding="utf-8") as file:
            return file.read().splitlines()

    def told(self):
        return [tuple(json.loads(line)) for line in self.lines()[1:] if line.endswith("]")]

    def wait(self, *changes):
        """Until no more than these has been told since the listener began."""
        e2e.wait_until(lambda: self.told() == list(changes), f"{changes}, there is {self.told()}")


class KeyboardFocus(Accessibility, e2e.DisplayTestCase):
    """A person who sees nothing goes through the buttons by Tab, and is told where the focus is."""

    def setUp(self):
        super().setUp()
        self.player = self.listen_to()
        self.show_controls(self.player)
        self.log = FocusLog(self.desktop)
        self.addCleanup(self.log.client.end)

    def focused(self):
        return [node["name"] for node in self.desktop.tree() if node["focused"]]

    def test_each_step_is_told_and_one_button_has_the_focus(self):
        self.assertEqual(self.focused(), [])
        for key, name in (("Tab", "Volume"), ("Tab", "Pause"), ("shift+Tab", "Volume")):
            self.key(self.player, key)
            e2e.wait_until(lambda name=name: self.focused() == [name], f"the focus of {name}")
        self.log.wait(("Volume", True), ("Volume", False), ("Pause", True), ("Pause", False),
                      ("Volume", True))

    def test_a_touch_takes_it_away(self):
        self.key(self.player, "Tab")
        screen = self.player.state()["screen"]
        self.touch(self.player, screen["width"] // 2, screen["height"] // 8)
        self.log.wait(("Volume", True), ("Volume", False))
        self.assertEqual(self.focused(), [])

    def test_a_page_above_takes_it_away_and_gives_it_back(self):
        self.key(self.player, "Tab")
        self.key(self.player, "Return")
        self.player.wait("page==tsl_volume_view")
        self.log.wait(("Volume", True), ("Volume", False))
        self.key(self.player, "Escape")
        self.player.wait("page==tsl_player_view")
        self.log.wait(("Volume", True), ("Volume", False), ("Volume", True))
        self.assertEqual(self.focused(), ["Volume"])

    def test_a_message_takes_it_away(self):
        self.key(self.player, "Tab")
        self.player.control("error", "not-supported-file")
        self.named("Unsupported format")
        self.log.wait(("Volume", True), ("Volume", False))
        self.assertEqual(self.focused(), [])

    def test_a_screen_reader_gives_it_to_a_button_for_the_keys(self):
        self.assertTrue(self.desktop.ask("focus", "push button", "Pause"))
        self.log.wait(("Pause", True))
        self.assertEqual(self.focused(), ["Pause"])
        self.key(self.player, "Return")
        self.player.wait("player==paused")

    def test_a_button_that_can_t_be_pressed_does_not_get_it(self):
        self.key(self.player, "Tab")
        self.key(self.player, "Return")
        self.player.wait("page==tsl_volume_view")
        self.log.wait(("Volume", True), ("Volume", False))
        self.named("Pause")
        self.assertFalse(self.desktop.ask("focus", "push button", "Pause"))
        self.assertEqual(self.focused(), [])


if __name__ == "__main__":
    e2e.main()

"""What the system tells the program while it plays: battery, memory, language, region."""

import os
import subprocess

import dbus
import dbus.lowlevel

import e2e

LOW_LINE = "tessel: the battery is critically low"
EMPTY_LINE = "tessel: the battery is empty"
BATTERY = "/org/freedesktop/UPower/devices/DisplayDevice"
# The numbers of UPower's interface.
LOW, CRITICAL, ACTION = 3, 4, 5
CHARGING, DISCHARGING = 1, 2


def has_ended(player):
    """Now, or within a moment."""
    try:
        player.child.wait(0.2)
    except subprocess.TimeoutExpired:
        return False
    return True


class EventTestCase(e2e.TestCase):
    def assert_plays_on(self, player):
        position = player.state()["position"]
        player.wait(f"player==playing && position>{position}")

    def assert_ends_with(self, player, line):
        player.expect_exit(0)
        self.assert_in_order(player, [r"APP_EVENT_LOW_BATTERY", r"SIGNAL_APP_TERMINATE",
                                      r"Video Player App is terminated\."])
        self.assertEqual([told for told in player.text().splitlines()
                          if told.startswith("tessel: ")], [line])


class Event(EventTestCase):
    def test_low_memory_and_the_region_leave_the_video_alone(self):
        player = self.play(e2e.LONG)
        for event in ("low-memory", "region"):
            player.control("event", event)
            self.assert_plays_on(player)

    def test_the_language_of_the_settings_reaches_the_texts(self):
        # The settings count where the environment has no language of its own.
        self.environment["LC_ALL"] = "C.UTF-8"
        folder = os.path.join(self.environment["XDG_CONFIG_HOME"], "tessel")
        os.makedirs(folder)
        player = self.play(e2e.LONG)
        with open(os.path.join(folder, "settings.ini"), "w", encoding="utf-8") as file:
            file.write("[db/menu_widget]\nlanguage=fr_FR\n")
        player.control("event", "language")
        self.assertTrue(player.log_has("APP_EVENT_LANGUAGE_CHANGED"))
        self.assert_plays_on(player)
        player.control("error", "no-such-file")
        popup = player.wait("popup==true")["popup"]
        self.assertEqual(popup["text"], "Ce fichier n'existe pas")

    def test_an_unknown_event_is_wrong_use(self):
        player = self.play(e2e.LONG)
        for words in (("event", "earthquake"), ("event",), ("battery", "flat"), ("battery",),
                      ("battery", "low", "sideways"), ("battery", "unknown")):
            status, _ = player.try_control(*words)
            self.assertEqual(status, 2, words)
        self.assert_plays_on(player)


class Battery(EventTestCase):
    def test_that_becomes_critical_ends_the_program_with_one_line(self):
        player = self.play(e2e.LONG)
        player.control("battery", "critical")
        self.assert_ends_with(player, LOW_LINE)

    def test_that_is_empty_ends_it_too(self):
        player = self.play(e2e.LONG)
        player.control("battery", "action", "discharging")
        self.assert_ends_with(player, EMPTY_LINE)

    def test_that_is_low_or_charges_leaves_the_video_alone(self):
        player = self.play(e2e.LONG)
        for words in (("low",), ("none",), ("critical", "charging"), ("action", "charging")):
            player.control("battery", *words)
            self.assert_plays_on(player)
        self.assertNotIn("tessel: ", player.text())


class SystemBusTestCase(EventTestCase):
    """A system bus of the test's own, with mocks of the machine's services."""

    def setUp(self):
        super().setUp()
        folder = os.path.join(self.directory, "system")
        os.makedirs(folder)
        bus = e2e.Bus(folder)
        self.addCleanup(bus.end)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = bus.address
        self.connection = dbus.bus.BusConnection(bus.address)
        self.addCleanup(self.connection.close)

    def start_mock(self, name, *arguments, session=False):
        options = [] if session else ["--system"]
        daemon = e2e.Process(["/usr/bin/python3", "-m", "dbusmock", *options, *arguments],
                             env=self.environment, stdout=subprocess.DEVNULL)
        self.addCleanup(daemon.end)
        e2e.wait_until(lambda: self.connection.name_has_owner(name), f"the mock of {name}")

    def mock(self, name, path):
        return dbus.Interface(self.connection.get_object(name, path),
                              "org.freedesktop.DBus.Mock")


class PowerDaemon(SystemBusTestCase):
    """The battery as UPower tells it on the system bus."""

    def setUp(self):
        super().setUp()
        self.start_mock("org.freedesktop.UPower", "--template", "upower",
                        "-p", '{"DaemonVersion": "0.99.20"}')
        self.set_battery(LOW, DISCHARGING)

    def set_battery(self, warning, state):
        self.mock("org.freedesktop.UPower", BATTERY).UpdateProperties(
            "org.freedesktop.UPower.Device",
            {"WarningLevel": dbus.UInt32(warning), "State": dbus.UInt32(state)})

    def assert_ends_at(self, player, warning, line):
        """A program that may still be joining the bus takes the first level that it hears of for
        what was before: it is told again."""
        def ended():
            self.set_battery(LOW, DISCHARGING)
            self.set_battery(warning, DISCHARGING)
            return has_ended(player)
        e2e.wait_until(ended, "the end of the program")
        self.assert_ends_with(player, line)

    def test_a_battery_that_becomes_critical_ends_the_program(self):
        player = self.play(e2e.LONG)
        self.set_battery(CRITICAL, CHARGING)
        self.assert_plays_on(player)
        self.assert_ends_at(player, CRITICAL, LOW_LINE)

    def test_a_battery_that_is_critical_at_the_start_lets_the_video_play(self):
        self.set_battery(CRITICAL, DISCHARGING)
        player = self.play(e2e.LONG)
        player.wait("position>=1000")
        self.assert_ends_at(player, ACTION, EMPTY_LINE)


class LocaleDaemon(SystemBusTestCase):
    """The machine's locale as locale1 tells its changes on the system bus."""

    NAME, PATH = "org.freedesktop.locale1", "/org/freedesktop/locale1"

    def setUp(self):
        super().setUp()
        for name in ("LC_ALL", "LC_MESSAGES", "LC_TIME"):
            self.environment.pop(name, None)
        self.environment["LANG"] = "de_DE.UTF-8"
        self.start_mock(self.NAME, self.NAME, self.PATH, self.NAME)
        self.mock(self.NAME, self.PATH).AddProperty(
            self.NAME, "Locale", dbus.Array(["LANG=de_DE.UTF-8"], signature="s"))

    def set_locale(self, *assignments):
        self.mock(self.NAME, self.PATH).UpdateProperties(
            self.NAME, {"Locale": dbus.Array(assignments, signature="s")})

    def change_until(self, player, condition, *assignments):
        """Until the program, which may still be joining the bus, has heard of it."""
        def heard():
            self.set_locale(*assignments)
            return player.try_control("wait", condition, 200)[0] == 0
        e2e.wait_until(heard, condition)

    def test_that_changes_is_spoken_at_once(self):
        player = self.play(e2e.LONG)
        self.assertEqual(player.state()["language"], "de_DE")
        self.change_until(player, "language==fr_FR && region==fr_FR.UTF-8", "LANG=fr_FR.UTF-8")
        self.assertTrue(player.log_has("APP_EVENT_LANGUAGE_CHANGED"))
        player.control("error", "no-such-file")
        self.assertEqual(player.wait("popup==true")["popup"]["text"], "Ce fichier n'existe pas")

    def test_has_a_region_of_its_own(self):
        player = self.play(e2e.LONG)
        self.change_until(player, "language==pt_BR && region==en_GB.UTF-8",
                          "LANG=fr_FR.UTF-8", "LANGUAGE=pt_BR:pt", "LC_TIME=en_GB.UTF-8")
        self.change_until(player, "language==en && region==en_US", "LANG=C.UTF-8")
        self.assert_plays_on(player)

    def test_does_not_change_what_the_user_has_chosen(self):
        player = self.play(e2e.LONG)
        player.control("language", "ko_KR")
        self.change_until(player, "region==fr_FR.UTF-8", "LANG=fr_FR.UTF-8")
        self.assertEqual(player.state()["language"], "ko_KR")
        player.end()
        # Nor where the choice is an earlier one and the environment names no language.
        self.environment["LANG"] = "C.UTF-8"
        player = self.play(e2e.LONG)
        self.change_until(player, "region==it_IT.UTF-8", "LANG=it_IT.UTF-8")
        self.assertEqual(player.state()["language"], "ko_KR")

    def test_is_not_kept_for_the_next_start(self):
        player = self.play(e2e.LONG)
        self.change_until(player, "language==fr_FR", "LANG=fr_FR.UTF-8")
        player.end()
        self.assertEqual(self.play(e2e.LONG).state()["language"], "de_DE")


class WristTestCase(EventTestCase):
    def play_on_the_wrist(self, **options):
        player = self.start("--profile", "watch", e2e.clip(e2e.LONG), **options)
        player.wait("player==playing")
        return player

    def assert_ends_by(self, player, action):
        """A program that may still be joining the bus is told again."""
        def ended():
            action()
            return has_ended(player)
        e2e.wait_until(ended, "the end of the program")
        player.expect_exit(0)
        self.assert_in_order(player, [r"TslApp\.cpp: onPause", r"SIGNAL_APP_TERMINATE",
                                      r"Video Player App is terminated\."])


class LoginManager(WristTestCase, SystemBusTestCase):
    """Sleep and lock as logind tells them: the screen is off, which is a pause on the wrist."""

    NAME, PATH = "org.freedesktop.login1", "/org/freedesktop/login1"
    MANAGER, SESSION = "org.freedesktop.login1.Manager", "org.freedesktop.login1.Session"

    def setUp(self):
        super().setUp()
        self.environment.pop("XDG_SESSION_ID", None)
        self.start_mock(self.NAME, "--template", "logind")
        for session in ("own", "other"):
            self.mock(self.NAME, self.PATH).AddSession(
                session, "seat0", dbus.UInt32(os.getuid()), "somebody", True)

    def emit(self, path, interface, name, *arguments):
        signature = "b" * len(arguments)
        self.mock(self.NAME, path).EmitSignal(
            interface, name, signature, dbus.Array(arguments, signature="v"))

    def sleep(self):
        self.emit(self.PATH, self.MANAGER, "PrepareForSleep", True)

    def lock(self, session):
        self.emit(f"{self.PATH}/session/{session}", self.SESSION, "Lock")

    def test_sleep_is_a_pause_on_the_wrist(self):
        self.assert_ends_by(self.play_on_the_wrist(), self.sleep)

    def test_lock_of_the_own_session_is_a_pause_on_the_wrist(self):
        self.environment["XDG_SESSION_ID"] = "own"
        player = self.play_on_the_wrist()
        self.lock("other")
        self.assert_plays_on(player)
        self.assert_ends_by(player, lambda: self.lock("own"))

    def test_session_is_asked_for_where_the_environment_does_not_name_it(self):
        self.mock(self.NAME, self.PATH).AddObject(
            f"{self.PATH}/session/auto", self.SESSION, {"Id": "own"},
            dbus.Array([], signature="(ssss)"))
        player = self.play_on_the_wrist()
        self.assert_ends_by(player, lambda: self.lock("own"))

    def test_nothing_of_it_stops_a_video_on_the_desktop(self):
        self.environment["XDG_SESSION_ID"] = "own"
        player = self.play(e2e.LONG)
        player.wait("position>=1000")
        self.sleep()
        self.lock("own")
        self.assert_plays_on(player)
        player.wait(f"player==playing && position>={player.state()['position'] + 500}")


class ScreenSaver(WristTestCase):
    """What covers the screen on the desktop tells so on the session bus."""

    def setUp(self):
        super().setUp()
        folder = os.path.join(self.directory, "session")
        os.makedirs(folder)
        self.bus = e2e.Bus(folder)
        self.addCleanup(self.bus.end)
        self.connection = dbus.bus.BusConnection(self.bus.address)
        self.addCleanup(self.connection.close)

    def cover(self, interface, covered):
        signal = dbus.lowlevel.SignalMessage("/" + interface.replace(".", "/"), interface,
                                             "ActiveChanged")
        signal.append(dbus.Boolean(covered))
        self.connection.send_message(signal)
        self.connection.flush()

    def test_that_covers_the_screen_is_a_pause_on_the_wrist(self):
        for interface in ("org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"):
            with self.subTest(interface=interface):
                player = self.play_on_the_wrist(bus=self.bus)
                self.cover(interface, False)
                self.assert_plays_on(player)
                self.assert_ends_by(player, lambda: self.cover(interface, True))


if __name__ == "__main__":
    e2e.main()

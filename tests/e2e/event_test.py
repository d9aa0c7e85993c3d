"""What the system tells the program while it plays: battery, memory, language, region."""

import os

import dbus

import e2e

LOW_LINE = "tessel: the battery is critically low"
EMPTY_LINE = "tessel: the battery is empty"
BATTERY = "/org/freedesktop/UPower/devices/DisplayDevice"
# The numbers of UPower's interface.
LOW, CRITICAL, ACTION = 3, 4, 5
CHARGING, DISCHARGING = 1, 2


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


class PowerDaemon(EventTestCase):
    """The battery as UPower tells it on the system bus."""

    def setUp(self):
        super().setUp()
        folder = os.path.join(self.directory, "system")
        os.makedirs(folder)
        bus = e2e.Bus(folder)
        self.addCleanup(bus.end)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = bus.address
        daemon = e2e.Process(
            ["/usr/bin/python3", "-m", "dbusmock", "--template", "upower",
             "-p", '{"DaemonVersion": "0.99.20"}'], env=self.environment)
        self.addCleanup(daemon.end)
        self.connection = dbus.bus.BusConnection(bus.address)
        self.addCleanup(self.connection.close)
        e2e.wait_until(lambda: self.connection.name_has_owner("org.freedesktop.UPower"),
                       "the mock of UPower")
        self.set_battery(LOW, DISCHARGING)

    def set_battery(self, warning, state):
        device = self.connection.get_object("org.freedesktop.UPower", BATTERY)
        device.UpdateProperties(
            "org.freedesktop.UPower.Device",
            {"WarningLevel": dbus.UInt32(warning), "State": dbus.UInt32(state)},
            dbus_interface="org.freedesktop.DBus.Mock")

    def test_a_battery_that_becomes_critical_ends_the_program(self):
        player = self.play(e2e.LONG)
        self.set_battery(CRITICAL, CHARGING)
        self.assert_plays_on(player)
        self.set_battery(CRITICAL, DISCHARGING)
        self.assert_ends_with(player, LOW_LINE)

    def test_a_battery_that_is_critical_at_the_start_lets_the_video_play(self):
        self.set_battery(CRITICAL, DISCHARGING)
        player = self.play(e2e.LONG)
        player.wait("position>=1000")
        self.set_battery(ACTION, DISCHARGING)
        self.assert_ends_with(player, EMPTY_LINE)


if __name__ == "__main__":
    e2e.main()

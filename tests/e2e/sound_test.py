"""Focus, volume and devices: two players and others that want the sound, a sound server that is
driven by pactl and one that dies."""

import json
import os
import signal
import subprocess
import time
import unittest

import e2e
import media_server


class SoundServer:
    """A sound server of its own, with a sink that plays into nothing in real time."""

    def __init__(self, directory, runs=True):
        self.directory = directory
        self.socket = os.path.join(directory, "native")
        self.name = f"unix:{self.socket}"
        self.environment = dict(os.environ, HOME=directory, XDG_RUNTIME_DIR=directory,
                                DBUS_SESSION_BUS_ADDRESS="disabled:", PULSE_SERVER=self.name)
        self.environment.pop("DISPLAY", None)
        self.process = None
        if runs:
            self.start()

    def start(self):
        self.process = e2e.Process(
            ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
             "--log-level=error", "-L",
             f"module-native-protocol-unix socket={self.socket} auth-anonymous=1", "-L",
             "module-null-sink sink_name=speaker"],
            env=self.environment, stdin=subprocess.DEVNULL)
        e2e.wait_until(lambda: os.path.exists(self.socket) and self.pactl("info", check=False),
                       "the sound server")

    def pactl(self, *words, check=True):
        done = subprocess.run(["pactl", *words], env=self.environment, capture_output=True,
                              text=True, timeout=e2e.PATIENCE)
        if check and done.returncode != 0:
            raise AssertionError(f"pactl {words}: {done.stderr}")
        return done.stdout

    def volume(self):
        return self.pactl("get-sink-volume", "@DEFAULT_SINK@")

    def plays(self, player):
        """Whether a stream of this player is heard."""
        streams = json.loads(self.pactl("-f", "json", "list", "sink-inputs") or "[]")
        return [stream["corked"] for stream in streams
                if stream["properties"]["application.process.id"] == str(player.child.pid)
                ] == [False]

    def kill(self):
        self.process.child.send_signal(signal.SIGKILL)
        self.process.child.wait()
        os.unlink(self.socket)

    def end(self):
        if self.process is not None:
            self.process.end()


class Focus(e2e.TestCase):
    # Whether the player resumes. It asks for no resumption from the first that forbids it on.
    BEHAVIOURS = {"none": True, "fading": True, "no-resume": False, "both": False}

    def test_each_behaviour_pauses_and_two_of_them_resume(self):
        player = self.play(e2e.LONG)
        for behaviour, resumes in self.BEHAVIOURS.items():
            with self.subTest(behaviour=behaviour):
                begin = time.monotonic()
                player.control("focus", "take", behaviour)
                player.wait("player==paused")
                if behaviour in ("fading", "both"):
                    self.assertGreaterEqual(time.monotonic() - begin, 0.95)
                player.control("focus", "give-back")
                if resumes:
                    player.wait("player==playing")
                else:
                    # A resumption would be there before what is pressed next.
                    self.assertEqual(player.state()["player"], "paused")
                    self.press(player, "video/play")
                    player.wait("player==playing")

    def test_what_is_not_held_is_not_given_back(self):
        player = self.play(e2e.LONG)
        status, reply = player.try_control("focus", "give-back")
        self.assertEqual((status, reply["error"]), (1, "the focus is not held"))
        for words in (("take",), ("take", "loudly"), ("give-back", "now"), ("keep",)):
            self.assertEqual(player.try_control("focus", *words)[0], 2, words)
        self.assertEqual(player.state()["player"], "playing")

    def test_a_second_player_pauses_the_first(self):
        bus = e2e.Bus(self.directory)
        self.addCleanup(bus.end)
        first = self.start("--new-instance", e2e.clip(e2e.LONG), bus=bus)
        first.wait("player==playing")
        second = self.start("--new-instance", e2e.clip(e2e.LONG), bus=bus)
        second.wait("player==playing")
        first.wait("player==paused")
        # It has asked not to be resumed after, and the sound is free when the second crashes.
        second.child.send_signal(signal.SIGKILL)
        second.child.wait()
        self.assertEqual(first.state()["player"], "paused")
        self.press(first, "video/play")
        first.wait("player==playing")


class BuiltinMixer(e2e.TestCase):
    def test_volume_and_devices_come_and_go(self):
        player = self.play(e2e.LONG)
        state = player.state()
        self.assertEqual((state["sound"]["backend"], state["volume"]), ("builtin", 15))
        player.control("volume", 6)
        player.wait("volume==6")
        e2e.wait_until(lambda: player.log_has("nVolume: 6"), "the report of the level")
        self.assertEqual(player.try_control("volume", 16)[0], 2)
        for name, number in (("earjack", 3), ("bluetooth", 4), ("hdmi", 5), ("usb", 7)):
            self.assertEqual(player.try_control("device", "disconnect", name)[0], 1)
            before = len(player.state()["sound"]["devices"])
            player.control("device", "connect", name)
            devices = player.state()["sound"]["devices"]
            self.assertEqual(len(devices), before + 1)
            self.assertIn(number, [device["type"] for device in devices])
            player.control("device", "disconnect", name)
            self.assertEqual(len(player.state()["sound"]["devices"]), before)
        e2e.wait_until(lambda: player.log_has("nChangedDeviceNotice 2"), "the loss of the earjack")
        e2e.wait_until(lambda: player.log_has("nChangedDeviceNotice 4"), "the loss of the set")
        self.assertEqual(player.state()["player"], "playing")


class Server(e2e.TestCase):
    def setUp(self):
        super().setUp()
        self.server = SoundServer(self.directory)
        self.addCleanup(self.server.end)
        self.environment["PULSE_SERVER"] = self.server.name

    def test_volume_is_the_server_s(self):
        player = self.play(e2e.LONG)
        self.assertEqual(player.state()["sound"]["backend"], "pulse")
        self.server.pactl("set-sink-volume", "@DEFAULT_SINK@", "40%")
        player.wait("volume==6")
        e2e.wait_until(lambda: player.log_has("nVolume: 6"), "the report of the level")
        player.control("volume", 3)
        e2e.wait_until(lambda: " 20% " in self.server.volume(), "the level of the server")
        self.assertEqual(player.try_control("device", "connect", "hdmi")[0], 1)

    def test_devices_that_come_and_go_leave_the_film_alone(self):
        player = self.play(e2e.LONG)
        module = self.server.pactl("load-module", "module-null-sink", "sink_name=phones",
                                   "sink_properties=device.form_factor=headphone").strip()
        e2e.wait_until(lambda: 3 in [device["type"] for device in
                                     player.state()["sound"]["devices"]], "the headphones")
        self.server.pactl("unload-module", module)
        e2e.wait_until(lambda: player.log_has("nChangedDeviceNotice 2"), "their loss")
        position = player.state()["position"]
        player.wait(f"player==playing && position>{position + 500}")

    def test_server_that_dies_while_it_plays_holds_nothing_up(self):
        player = self.play(e2e.LONG)
        player.wait("position>1000")
        self.server.kill()
        position = player.state()["position"]

        def goes_on_or_ends():
            if player.child.poll() is not None:
                return "ended"
            _, reply = player.try_control("state")
            state = reply.get("state")
            if state and (state["popup"] or state["position"] > position + 3000):
                return state
            return None
        outcome = e2e.wait_until(goes_on_or_ends, "the film's going on, or its end")
        if outcome == "ended" or outcome["popup"]:
            # Then it is an end as any fault of the media has.
            if outcome != "ended":
                player.control("key", "back")
            player.expect_exit(1)
            return
        self.server.start()
        player.wait("sound.backend==pulse && volume==15")
        player.control("quit")
        player.expect_exit(0)

    def assert_undisturbed(self, player, position):
        state = player.state()
        self.assertEqual((state["popup"], state["player"]), (None, "playing"))
        # Not from the start again, and not on from a later place.
        self.assertGreaterEqual(state["position"], position)
        self.assertLess(state["position"], position + 15000)
        self.assertFalse(player.log_has("Playback fails"))

    def test_sound_comes_back_with_the_server(self):
        player = self.play(e2e.LONG)
        e2e.wait_until(lambda: self.server.plays(player), "the sound")
        self.turn(player, 2)
        player.wait("position>9000")
        for _ in range(2):
            position = player.state()["position"]
            self.server.kill()
            player.wait(f"volume==null && player==playing && position>{position + 500}")
            self.server.start()
            e2e.wait_until(lambda: self.server.plays(player), "the sound's return")
            self.assert_undisturbed(player, position)
            position = player.state()["position"]
            player.wait(f"position>{position + 500}")
        player.control("quit")
        player.expect_exit(0)

    def test_server_that_restarts_in_a_pause_is_heard_after_it(self):
        player = self.play(e2e.LONG)
        player.wait("position>1000")
        self.press(player, "video/pause")
        position = player.wait("player==paused")["position"]
        self.server.kill()
        player.wait("volume==null")
        self.server.start()
        state = player.wait("volume==15 && player==paused")
        self.assertAlmostEqual(state["position"], position, delta=100)
        self.press(player, "video/play")
        player.wait(f"player==playing && position>{position + 300}")
        e2e.wait_until(lambda: self.server.plays(player), "the sound")
        self.assert_undisturbed(player, position)


    def test_a_camera_goes_on_without_the_server_and_is_heard_again_with_it(self):
        camera = media_server.Camera(e2e.clip("h264_aac.mp4"))
        self.addCleanup(camera.end)
        player = self.start(camera.address)
        player.wait("player==playing && position>200")
        self.assertTrue(self.server.plays(player))
        self.server.kill()
        player.wait("volume==null && player==playing && frames.shown<5")
        player.wait("frames.shown>5")
        self.server.start()
        e2e.wait_until(lambda: self.server.plays(player), "the sound's return")
        self.assertEqual(player.state()["player"], "playing")
        self.assertFalse(player.log_has("Playback fails"))


class LateServer(e2e.TestCase):
    def test_it_is_taken_into_use_while_the_film_plays(self):
        server = SoundServer(self.directory, runs=False)
        self.addCleanup(server.end)
        self.environment["PULSE_SERVER"] = server.name
        player = self.play(e2e.LONG)
        player.control("volume", 6)
        position = player.wait("sound.backend==builtin && volume==6 && position>1000")["position"]
        server.start()
        player.wait("sound.backend==pulse && volume==15")
        e2e.wait_until(lambda: server.plays(player), "the sound")
        self.assertGreaterEqual(player.state()["position"], position)
        player.control("volume", 3)
        e2e.wait_until(lambda: " 20% " in server.volume(), "the level of the server")


if __name__ == "__main__":
    unittest.main(verbosity=2)

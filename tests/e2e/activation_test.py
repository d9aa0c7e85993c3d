"""Started by the session bus, as the desktop does it."""

import glob
import json
import os
import subprocess

import e2e

NAME = "com.orvane.tessel"


class Activation(e2e.TestCase):
    def setUp(self):
        super().setUp()
        services = os.path.join(self.environment["XDG_DATA_HOME"], "dbus-1", "services")
        os.makedirs(services)
        with open(os.path.join(services, NAME + ".service"), "w", encoding="utf-8") as file:
            file.write(f"[D-BUS Service]\nName={NAME}\n"
                       f"Exec={e2e.BIN}/tessel --service --headless --control\n")
        self.bus = e2e.Bus(self.directory, self.environment)
        self.addCleanup(self.bus.end)
        self.addCleanup(self.quit)

    def call(self, method, *arguments):
        subprocess.run(
            ["gdbus", "call", "--address", self.bus.address, "--dest", NAME, "--object-path",
             "/com/orvane/tessel", "--method", f"org.freedesktop.Application.{method}",
             *arguments, "{}"],
            check=True, capture_output=True, timeout=e2e.PATIENCE)

    def control(self, *words):
        return subprocess.run([os.path.join(e2e.BIN, "tesselctl"), *words], env=self.environment,
                              capture_output=True, text=True, timeout=2 * e2e.PATIENCE)

    def quit(self):
        self.control("quit")

    def sockets(self):
        return glob.glob(os.path.join(self.environment["XDG_RUNTIME_DIR"], "tessel", "*.sock"))

    def test_the_video_that_is_opened_plays_in_a_process_that_the_bus_starts(self):
        self.assertEqual(self.sockets(), [])
        self.call("Open", str(["file://" + e2e.clip(e2e.LONG)]))
        done = self.control("wait", "player==playing", "20000")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn(e2e.LONG, json.loads(done.stdout)["state"]["uri"])

    def test_the_next_one_opened_plays_in_the_same_process(self):
        self.call("Open", str(["file://" + e2e.clip(e2e.LONG)]))
        self.control("wait", "player==playing", "20000")
        before = self.sockets()
        self.call("Open", str(["file://" + e2e.clip(e2e.MIDDLE)]))
        done = self.control("wait", "player==playing && duration<100000", "20000")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.sockets(), before)

    def test_the_entry_without_a_file_has_nothing_to_play_and_ends(self):
        self.call("Activate")
        e2e.wait_until(lambda: not self.sockets(), "the end of the process")


class Alone(e2e.TestCase):
    def test_without_a_bus_there_is_nothing_to_wait_for(self):
        status, _, player = self.run_to_end("--service")
        self.assertEqual(status, 1)
        self.assertIn("tessel: nothing to play: the desktop handed nothing over", player.text())


if __name__ == "__main__":
    e2e.main()

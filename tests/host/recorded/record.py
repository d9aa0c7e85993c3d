#!/usr/bin/env python3
"""record.py JACK_CARD: writes what a PipeWire server of its own answers about the sinks of that
card, beside this file, as things are plugged into it. README.md tells more."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

PATIENCE = 20.0
ANALOG = "alsa_output.built-in.analog-stereo"
HDMI = "alsa_output.built-in.hdmi-stereo"
SET = "bluez_output.00_11_22_33_44_55.1"
SPEAKER, HEADPHONES, SCREEN = "analog-output-speaker", "analog-output-headphones", "hdmi-output-0"


def wait_until(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            raise SystemExit(f"{what} did not come")
        time.sleep(0.05)


class Server:
    """PipeWire, its session manager and its side that speaks PulseAudio's protocol."""

    def __init__(self, folder, card):
        bus = f"unix:path={folder}/bus"
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": folder, "XDG_RUNTIME_DIR": folder,
            "XDG_CONFIG_HOME": f"{folder}/config", "XDG_STATE_HOME": f"{folder}/state",
            "DBUS_SESSION_BUS_ADDRESS": bus, "PULSE_SERVER": f"unix:{folder}/pulse/native",
            "LC_ALL": "C.UTF-8"}
        self.processes = []
        self.run("dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={bus}")
        wait_until(lambda: os.path.exists(f"{folder}/bus"), "the bus")
        self.run("pipewire")
        wait_until(lambda: os.path.exists(f"{folder}/pipewire-0"), "the server")
        self.run("wireplumber")
        self.run("pipewire-pulse")
        wait_until(lambda: self.pactl("info") is not None, "an answer")
        self.card = self.run(card, stdin=subprocess.PIPE, text=True)

    def run(self, *command, **streams):
        process = subprocess.Popen(command, env=self.environment, **streams)
        self.processes.append(process)
        return process

    def stop(self):
        for process in reversed(self.processes):
            process.kill()
            process.wait()

    def pactl(self, *arguments):
        answer = subprocess.run(["pactl", "-f", "json", *arguments], env=self.environment,
                                capture_output=True, text=True, check=False, timeout=PATIENCE)
        return answer.stdout if answer.returncode == 0 else None

    def answers(self):
        return {"default_sink_name": json.loads(self.pactl("info"))["default_sink_name"],
                "sinks": json.loads(self.pactl("list", "sinks"))}

    def plug(self, route, state):
        self.card.stdin.write(f"{route} {state}\n")
        self.card.stdin.flush()

    def record(self, name, default, active, available):
        """Once the server has come to that: its default sink, that sink's active port, and the
        availability of ports by their name."""

        def shows():
            answers = self.answers()
            sinks = {sink["name"]: sink for sink in answers["sinks"]}
            ports = {port["name"]: port["availability"] for sink in answers["sinks"]
                     for port in sink["ports"]}
            return (answers["default_sink_name"] == default and {ANALOG, HDMI, SET} == set(sinks)
                    and sinks[default].get("active_port") == active
                    and all(ports.get(port) == state for port, state in available.items()))

        wait_until(shows, name)
        with open(pathlib.Path(__file__).parent / f"{name}.json", "w", encoding="utf-8") as file:
            json.dump(self.answers(), file, indent=1)
            file.write("\n")


def main():
    with tempfile.TemporaryDirectory() as folder:
        server = Server(folder, os.path.abspath(sys.argv[1]))
        try:
            server.record("nothing_plugged", ANALOG, SPEAKER, {HEADPHONES: "not available"})
            server.plug(HEADPHONES, "yes")
            server.record("headphones_in", ANALOG, HEADPHONES, {HEADPHONES: "available"})
            server.plug(HEADPHONES, "no")
            server.record("headphones_out", ANALOG, SPEAKER, {HEADPHONES: "not available"})
            server.plug(SCREEN, "yes")
            server.record("screen_in", ANALOG, SPEAKER, {SCREEN: "available"})
            server.pactl("set-default-sink", HDMI)
            server.record("screen_sounds", HDMI, SCREEN, {SCREEN: "available"})
            server.plug(HEADPHONES, "unknown")
            server.pactl("set-default-sink", ANALOG)
            server.record("headphones_undetected", ANALOG, HEADPHONES,
                          {HEADPHONES: "availability unknown"})
        finally:
            server.stop()


if __name__ == "__main__":
    main()

"""Measures the player beside its peers, in turn, in the same run, each timed by the same observer.

Every figure is the median of the runs. The clips are made once, in the build folder:

    A   360x360  30 fps  H.264/AAC   20 s
    B  1280x720  30 fps  H.264/AAC   20 s
    C 1920x1080  60 fps  H.264/AAC   20 s
    D   640x360  30 fps  VP9/Opus    20 s
    E 1920x1080  30 fps  H.264       60 s, a keyframe every 5 s
"""

import argparse
import json
import os
import pathlib
import pwd
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import time

CLIPS = {
    "A": ("a.mp4", "360x360", 30, 20, ["-c:v", "libx264", "-preset", "fast", "-c:a", "aac"]),
    "B": ("b.mp4", "1280x720", 30, 20, ["-c:v", "libx264", "-preset", "fast", "-c:a", "aac"]),
    "C": ("c.mp4", "1920x1080", 60, 20, ["-c:v", "libx264", "-preset", "fast", "-c:a", "aac"]),
    "D": ("d.webm", "640x360", 30, 20,
          ["-c:v", "libvpx-vp9", "-deadline", "realtime", "-cpu-used", "8", "-c:a", "libopus"]),
    "E": ("e.mp4", "1920x1080", 30, 60,
          ["-c:v", "libx264", "-preset", "fast", "-g", "150", "-keyint_min", "150",
           "-sc_threshold", "0", "-an"]),
}
SEEK_TARGETS_S = [3.2, 47.9, 12.4, 33.3, 58.1, 7.7, 24.9, 41.0, 18.6]


def make_clips(folder):
    folder.mkdir(parents=True, exist_ok=True)
    for name, size, rate, seconds, codec in CLIPS.values():
        if not (folder / name).exists():
            print(f"making {name}", file=sys.stderr)
            part = folder / f"part-{name}"
            subprocess.run(
                ["ffmpeg", "-loglevel", "error", "-y", "-f", "lavfi",
                 "-i", f"testsrc2=size={size}:rate={rate}:duration={seconds}",
                 "-f", "lavfi", "-i", f"sine=frequency=440:duration={seconds}",
                 "-pix_fmt", "yuv420p", *codec, str(part)], check=True)
            part.rename(folder / name)


class Desktop:
    """A virtual display with a window manager that centres every window and draws no frame."""

    RC = """<openbox_config xmlns="http://openbox.org/3.4/rc"><applications>
        <application class="*"><decor>no</decor><focus>yes</focus><position force="yes">
        <x>center</x><y>center</y></position></application></applications></openbox_config>"""

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="tessel-bench-")
        os.chmod(self.folder.name, 0o755)
        read, write = os.pipe()
        self.x = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        os.environ["DISPLAY"] = ":" + os.read(read, 16).decode().strip()
        os.environ.pop("WAYLAND_DISPLAY", None)
        rc = pathlib.Path(self.folder.name, "rc.xml")
        rc.write_text(self.RC)
        self.wm = subprocess.Popen(["openbox", "--config-file", str(rc)],
                                   stderr=subprocess.DEVNULL)
        time.sleep(1)  # the window manager says nothing when it is ready
        return self

    def __exit__(self, *_):
        self.wm.terminate()
        self.x.terminate()
        self.wm.wait()
        self.x.wait()
        self.folder.cleanup()


def players(build):
    """Name to the command that plays a clip to its end in a 360-pixel window."""
    tessel = [str(build / "bin/tessel"), "--new-instance"]
    table = {
        "tessel": lambda clip: tessel + [clip],
        "mpv": lambda clip: ["mpv", "--no-config", "--vo=x11", "--ao=null", "--geometry=360x360",
                             "--no-keepaspect-window", clip],
        "gst-play": lambda clip: ["gst-play-1.0", "--videosink=ximagesink",
                                  "--audiosink=fakesink sync=true", clip],
        "ffplay": lambda clip: ["env", "SDL_RENDER_DRIVER=software", "SDL_AUDIODRIVER=dummy",
                                "ffplay", "-autoexit", "-x", "360", "-y", "360", clip],
    }
    if shutil.which("cvlc"):
        table["vlc"] = lambda clip: as_nobody() + [
            "cvlc", "--play-and-exit", "--avcodec-hw=none", "--vout=xcb_x11", "--aout=dummy",
            "--width=360", "--height=360", "--no-video-title-show", clip]
    return table


def as_nobody():
    """This peer refuses to run as root."""
    if os.geteuid() != 0:
        return []
    user = pwd.getpwnam("nobody")
    return ["setpriv", f"--reuid={user.pw_uid}", f"--regid={user.pw_gid}", "--clear-groups",
            "env", "HOME=/tmp"]


def observe(build, command):
    out = subprocess.run([str(build / "bin/bench-observer"), "--", *command], check=True,
                         capture_output=True, text=True).stdout
    return json.loads(out)


def median(values):
    return statistics.median(values) if values else float("nan")


def playback(build, clips, runs, names):
    print("\n## Playback\n")
    print("| clip | player | first frame ms | cpu s per media s | peak MiB | changes/s | status |")
    print("|---|---|---|---|---|---|---|")
    for key in names:
        name, _, _, seconds, _ = CLIPS[key]
        results = {player: [] for player in players(build)}
        for _ in range(runs):
            for player, command in players(build).items():
                results[player].append(observe(build, command(str(clips / name))))
        for player, rows in results.items():
            print(f"| {key} | {player} | {median([r['first_frame_ms'] for r in rows]):.0f} "
                  f"| {median([r['cpu_s'] for r in rows]) / seconds:.4f} "
                  f"| {median([r['peak_mib'] for r in rows]):.0f} "
                  f"| {median([r['changes_per_s'] for r in rows]):.1f} "
                  f"| {rows[-1]['status']} |", flush=True)


def own_count(command, ask, seconds):
    """What `ask` tells of a running player shortly before the clip's end."""
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as player:
        time.sleep(seconds - 1)
        count = ask(player)
        player.terminate()
    return count


def tessel_drops(build, clip, seconds):
    def ask(player):
        state = subprocess.run([str(build / "bin/tesselctl"), "--pid", str(player.pid), "state"],
                               check=True, capture_output=True, text=True).stdout
        return json.loads(state)["state"]["frames"]["dropped"]
    return own_count([str(build / "bin/tessel"), "--new-instance", "--control", clip], ask, seconds)


def mpv_drops(clip, seconds):
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "mpv.sock")

        def ask(_):
            dropped = 0
            for name in ("frame-drop-count", "decoder-frame-drop-count"):
                with socket.socket(socket.AF_UNIX) as link:
                    link.connect(path)
                    link.sendall(json.dumps({"command": ["get_property", name]}).encode() + b"\n")
                    for line in link.makefile("r"):
                        reply = json.loads(line)
                        if "error" in reply:
                            dropped += reply.get("data") or 0
                            break
            return dropped
        return own_count(["mpv", "--no-config", "--vo=x11", "--ao=null", "--geometry=360x360",
                          "--no-keepaspect-window", f"--input-ipc-server={path}", clip],
                         ask, seconds)


def drops(build, clips, runs, names):
    """As each counts them itself. The other peers tell nobody: gst-play and cvlc have no such
    count, and ffplay writes its own only for a terminal. Changes a second, which are seen from
    outside, say less: a line of the cropped picture changes less often than one of all of it."""
    print("\n## Dropped frames, as each player counts them\n")
    print("| clip | frames | tessel | mpv |")
    print("|---|---|---|---|")
    for key in names:
        name, _, rate, seconds, _ = CLIPS[key]
        clip = str(clips / name)
        counts = [(tessel_drops(build, clip, seconds), mpv_drops(clip, seconds))
                  for _ in range(runs)]
        print(f"| {key} | {rate * (seconds - 1)} | {median([count[0] for count in counts]):.0f} "
              f"| {median([count[1] for count in counts]):.0f} |", flush=True)


class Mpv:
    """mpv by its socket: a paused seek has ended at the event that says so."""

    def __init__(self, clip, folder):
        path = os.path.join(folder, "mpv.sock")
        self.process = subprocess.Popen(
            ["mpv", "--no-config", "--vo=x11", "--ao=null", "--geometry=360x360", "--pause",
             "--no-keepaspect-window", "--keep-open", f"--input-ipc-server={path}", clip],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.socket = socket.socket(socket.AF_UNIX)
        deadline = time.monotonic() + 10
        while True:
            try:
                self.socket.connect(path)
                break
            except OSError:
                if time.monotonic() > deadline:
                    raise
                time.sleep(0.01)
        self.lines = self.socket.makefile("r")
        self.until("playback-restart")

    def until(self, event):
        for line in self.lines:
            if json.loads(line).get("event") == event:
                return

    def seek(self, seconds, accurate):
        flags = "absolute+exact" if accurate else "absolute+keyframes"
        begin = time.monotonic()
        self.socket.sendall(json.dumps({"command": ["seek", seconds, flags]}).encode() + b"\n")
        self.until("playback-restart")
        return (time.monotonic() - begin) * 1000

    def close(self):
        self.process.terminate()
        self.process.wait()


def seeks_by_program(build, player, clip, accurate):
    """The seek benchmark's own program prints one time in ms a line."""
    command = [str(build / "bin/bench-seek"), player, "accurate" if accurate else "keyframe", clip,
               *[str(int(s * 1000)) for s in SEEK_TARGETS_S]]
    out = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return [float(line) for line in out.split()]


def seek(build, clips, runs):
    clip = str(clips / CLIPS["E"][0])
    print("\n## Seeks while paused, clip E, ms (median of all targets)\n")
    print("| player | accurate | keyframe |")
    print("|---|---|---|")
    results = {name: ([], []) for name in ("tessel", "playbin", "mpv")}
    for _ in range(runs):
        for player in ("tessel", "playbin"):
            for index, accurate in enumerate((True, False)):
                results[player][index].extend(seeks_by_program(build, player, clip, accurate))
        with tempfile.TemporaryDirectory() as folder:
            mpv = Mpv(clip, folder)
            for index, accurate in enumerate((True, False)):
                results["mpv"][index].extend(mpv.seek(s, accurate) for s in SEEK_TARGETS_S)
            mpv.close()
    for player, (accurate, keyframe) in results.items():
        print(f"| {player} | {median(accurate):.0f} | {median(keyframe):.0f} |", flush=True)


def growth(build, clips, runs):
    """Processor time by size of picture, memory by length, start by size of the file."""
    folder = clips / "growth"
    folder.mkdir(exist_ok=True)
    tessel = players(build)["tessel"]

    def clip(name, *arguments):
        path = folder / name
        if not path.exists():
            part = folder / f"part-{name}"
            subprocess.run(["ffmpeg", "-loglevel", "error", "-y", *arguments, str(part)],
                           check=True)
            part.rename(path)
        return str(path)

    def moving(size, seconds):
        return ["-f", "lavfi", "-i", f"testsrc2=size={size}:rate=30:duration={seconds}",
                "-pix_fmt", "yuv420p", "-c:v", "libx264", "-preset", "ultrafast"]

    print("\n## Growth\n")
    print("| what | first frame ms | cpu s per media s | peak MiB |")
    print("|---|---|---|---|")

    def row(label, path, seconds):
        rows = [observe(build, tessel(path)) for _ in range(runs)]
        print(f"| {label} | {median([r['first_frame_ms'] for r in rows]):.0f} "
              f"| {median([r['cpu_s'] for r in rows]) / seconds:.4f} "
              f"| {median([r['peak_mib'] for r in rows]):.0f} |", flush=True)

    for size in ("180x180", "360x360", "720x720", "1280x720", "1920x1080", "3840x2160"):
        row(size, clip(f"size-{size}.mp4", *moving(size, 5)), 5)

    # Long and large files are opened, played for three seconds and ended from outside.
    def opened(path):
        return ["timeout", "--signal=TERM", "3", *tessel(path)]

    def opened_row(label, path):
        rows = [observe(build, opened(path)) for _ in range(runs)]
        print(f"| {label} | {median([r['first_frame_ms'] for r in rows]):.0f} "
              f"| {median([r['cpu_s'] for r in rows]) / 3:.4f} "
              f"| {median([r['peak_mib'] for r in rows]):.0f} |", flush=True)

    still = ["-f", "lavfi", "-i", "testsrc2=size=360x360:rate=5"]
    for label, seconds in (("10 s", 10), ("10 min", 600), ("10 h", 36000)):
        path = clip(f"length-{seconds}.mp4", *still, "-t", str(seconds), "-pix_fmt", "yuv420p",
                    "-c:v", "libx264", "-preset", "ultrafast", "-crf", "40")
        opened_row(f"length {label}", path)
    base = clip("length-10.mp4", *moving("360x360", 10))
    for label, size in (("1 MB", 10**6), ("1 GB", 10**9), ("50 GB", 50 * 10**9)):
        # Media data first, then a sparse tail that no player has a reason to read.
        path = folder / f"bytes-{size}.mp4"
        shutil.copyfile(base, path)
        with open(path, "r+b") as file:
            end = file.seek(0, os.SEEK_END)
            if size > end + 16:
                file.write((1).to_bytes(4, "big") + b"free" + (size - end).to_bytes(8, "big"))
                file.truncate(size)
        opened_row(f"file of {label}", str(path))


def micro(build):
    print("\n## Micro\n", flush=True)
    subprocess.run([str(build / "bin/bench-micro"), "--benchmark_color=false"], check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--clips", default="ABCD", help="clips of the playback table")
    parser.add_argument("tables", nargs="*", metavar="TABLE",
                        help="playback, drops, seek, growth, micro; all by default")
    arguments = parser.parse_args()
    tables = arguments.tables or ["playback", "drops", "seek", "growth", "micro"]
    unknown = set(tables) - {"playback", "drops", "seek", "growth", "micro"}
    if unknown:
        parser.error(f"no table is called {', '.join(sorted(unknown))}")
    clips = arguments.build / "bench-clips"
    make_clips(clips)
    with Desktop():
        if "playback" in tables:
            playback(arguments.build, clips, arguments.runs, arguments.clips)
        if "drops" in tables:
            drops(arguments.build, clips, arguments.runs, arguments.clips)
        if "seek" in tables:
            seek(arguments.build, clips, arguments.runs)
        if "growth" in tables:
            growth(arguments.build, clips, arguments.runs)
    if "micro" in tables:
        micro(arguments.build)


if __name__ == "__main__":
    main()

"""Every row of docs/faults.md, on the whole program."""

import os
import re
import resource
import shutil
import socket
import time
import unittest

import e2e
import fault_media
from media_server import Camera, LivePlaylist, MediaServer, make_hls

TABLE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "docs", "faults.md")
# A fault shows within this time of the launch, on a machine with nothing else to do.
LIMIT = 30.0 if e2e.SLOW else 2.0
NETWORK_LIMIT_MS = 700
ADDRESS_LENGTH = 64 * 1024


def limit():
    """The limit where other programs take their share of the processors."""
    return LIMIT * max(1.0, os.getloadavg()[0] / os.cpu_count())


class Row:
    """What the table promises for one input."""

    def __init__(self, cells):
        self.name, sees, error, status, self.cause = cells
        messages = {kind: text for text, kind in
                    re.findall(r'"([^"]+)" \((toast|button|notice)\)', sees)}
        self.notice = messages.pop("notice", None)
        self.kind, self.text = next(iter(messages.items()), (None, None))
        self.plays = "the video" in sees or "the sound" in sees
        self.endless = "until it is ended" in sees
        self.error = int(error) if error else None
        self.status = int(status)
        if not (self.text or self.plays or self.endless):
            raise AssertionError(f"the row '{self.name}' says nothing that the user sees: {sees}")


def read_table():
    rows = {}
    with open(TABLE, encoding="utf-8") as file:
        for line in file:
            cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
            if line.startswith("| ") and cells[0] != "Input":
                rows[cells[0]] = Row(cells)
    return rows


ROWS = read_table()
INPUTS = {}


def given(name):
    """The recipe of one row. It returns the started program."""
    def register(recipe):
        INPUTS[name] = recipe
        return recipe
    return register


def given_file(name, make, end="mp4"):
    given(name)(lambda test: test.start(make(test.path(f"medium.{end}"))))


def given_address(name, path):
    given(name)(lambda test: test.start(test.server().address(path)))


given_file("text named .mp4", fault_media.text)
given_file("empty file", lambda path: fault_media.write(path, b""))
given_file("header alone", fault_media.header_only)
given_file("index missing", fault_media.index_missing)
given_file("index that leads nowhere", fault_media.with_broken_index)
given_file("cut off behind its index", fault_media.truncated)
given_file("a hundred flipped bits", fault_media.with_bit_flips)
given_file("video track without pictures", fault_media.without_samples)
given_file("tracks without pictures and sounds", fault_media.without_any_samples)
given_file("1x1 pixels", lambda path: fault_media.of_size(path, 1, 1), "mkv")
given_file("16384x16 pixels", lambda path: fault_media.of_size(path, 16384, 16), "mkv")
given_file("0 pictures a second", fault_media.without_rate)
given_file("fragments, the last one unfinished", fault_media.fragmented_unfinished)
given_file("sound with a rate beyond all numbers",
           lambda path: shutil.copy(e2e.clip("endless_rate.webm"), path), "webm")
given_file("sound in 64 channels",
           lambda path: shutil.copy(e2e.clip("many_channels.wav"), path), "wav")
given("file that isn't there")(lambda test: test.start(test.path("nothing.mp4")))
given("folder")(lambda test: test.start(test.directory))
given("device")(lambda test: test.start("/dev/zero"))
given("no codec for any stream")(lambda test: test.start(e2e.clip("unknown_both.mp4")))
given("no codec for the video")(lambda test: test.start(e2e.clip("unknown_video.mp4")))
given("no codec for the sound")(lambda test: test.start(e2e.clip("unknown_sound.mp4")))
given("address with a port beyond all numbers")(
    lambda test: test.start("http://127.0.0.1:99999/film.mp4"))
given("unknown scheme")(lambda test: test.start("bogus://somewhere/film.mp4"))
given("address with control characters")(lambda test: test.start("http://127.0.0.1/a\nb\x01c"))
given("address that is not UTF-8")(lambda test: test.start(b"http://127.0.0.1/\xff\xfe.mp4"))
given("path of 64 KiB")(lambda test: test.start("/" + "a" * ADDRESS_LENGTH))
given_address("address of 64 KiB", "plain/" + "a" * ADDRESS_LENGTH)
given_address("http 404", "plain/nothing.mp4")
given_address("http 500", "status/500")
given_address("redirections without an end", "loop/0")
given_address("redirection to nowhere", "nowhere/film.mp4")
given_address("server that hangs up", "hang-up/film.mp4")
given_address("answer that is none", "babble/film.mp4")
given_address("answer without a body", "status/200")
given_address("connection cut in the middle", "cut/h264_aac.mp4")
given_address("page in place of the video", "page/film.mp4")
given_address("slow server", "slow/one_second.mp4")
given_address("wrong content type", "mistyped/one_second.mp4")
given_address("fragments without an end", "endless/one_second.mp4")


@given("file without permission to read")
def _(test):
    path = test.copy("one_second.mp4")
    os.chmod(path, 0)
    # Permissions don't bind the superuser, but a superuser without these rights.
    bound = ["setpriv", "--bounding-set", "-dac_override,-dac_read_search", "--"]
    return test.start(path, wrapper=bound if os.geteuid() == 0 else [])


@given("named pipe")
def _(test):
    path = test.path("pipe.mp4")
    os.mkfifo(path)
    return test.start(path)


@given("socket")
def _(test):
    path = test.path("socket.mp4")
    with socket.socket(socket.AF_UNIX) as made:
        made.bind(path)
    return test.start(path)


@given("link that leads to itself")
def _(test):
    path = test.path("link.mp4")
    os.symlink(path, path)
    return test.start(path)


@given("path with control characters")
def _(test):
    return test.start(test.copy("one_second.mp4", "a\nb\tc\x01.mp4"))


@given("path that is not UTF-8")
def _(test):
    path = os.path.join(os.fsencode(test.directory), b"\xff\xfe.mp4")
    shutil.copy(e2e.clip("one_second.mp4"), path)
    return test.start(path)


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as taken:
        return taken.getsockname()[1]


@given("nothing listens")
def _(test):
    return test.start(f"http://127.0.0.1:{free_port()}/film.mp4")


@given("no camera")
def _(test):
    return test.start(f"rtsp://127.0.0.1:{free_port()}/film")


@given("camera that never answers")
def _(test):
    camera = socket.create_server(("127.0.0.1", 0))
    test.addCleanup(camera.close)
    return test.start_impatient(f"rtsp://127.0.0.1:{camera.getsockname()[1]}/film")


@given("camera that goes away while it plays")
def _(test):
    camera = Camera(e2e.clip("h264_aac.mp4"))
    test.addCleanup(camera.end)
    player = test.start(camera.address)
    player.wait("player==playing && position>0")
    camera.end()
    return player


@given("playlist whose pieces are missing")
def _(test):
    server = test.server()
    folder = make_hls(e2e.clip("one_second.mp4"), os.path.join(server.folder, "hls"))
    for name in os.listdir(folder):
        if name.endswith(".ts"):
            os.remove(os.path.join(folder, name))
    return test.start(server.address("plain/hls/list.m3u8"))


def given_playlist(name, *lines):
    @given(name)
    def _(test):
        server = test.server()
        text = "".join(f"{line}\n" for line in ("#EXTM3U", *lines)) + "#\n" * 50
        fault_media.write(os.path.join(server.folder, "list.m3u8"), text.encode())
        return test.start(server.address("plain/list.m3u8"))


@given("live playlist whose pieces are missing")
def _(test):
    server = test.server()
    playlist = LivePlaylist(e2e.clip("one_second.mp4"), os.path.join(server.folder, "live"))
    test.addCleanup(playlist.end)
    for name in playlist.pieces:
        os.remove(os.path.join(playlist.folder, name))
    return test.start_impatient(server.address("plain/live/list.m3u8"))


given_playlist("playlist of nothing", "#EXT-X-TARGETDURATION:1", "#EXT-X-ENDLIST")
given_playlist("playlist of itself", "#EXT-X-STREAM-INF:BANDWIDTH=1000", "list.m3u8")


@given("certificate that nobody vouches for")
def _(test):
    return test.start(test.server(tls=True).address("plain/medium.mp4"))


@given("server that never answers")
def _(test):
    return test.start_impatient(test.server().address("silent/film.mp4"))


@given("server that stalls")
def _(test):
    player = test.start_impatient(test.server().address("stall/h264_aac.mp4"))
    player.wait_for_stall()
    return player


def given_while_it_plays(name, clip, change):
    @given(name)
    def _(test):
        path = test.copy(clip)
        player = test.start(path)
        player.wait("player==playing")
        change(path)
        return player


def replace(path):
    os.replace(fault_media.text(f"{path}.new"), path)


given_while_it_plays("file deleted while it plays", e2e.SHORT, os.unlink)
given_while_it_plays("file replaced while it plays", e2e.SHORT, replace)
given_while_it_plays("file cut short while it plays", "h264_aac.mp4",
                     lambda path: os.truncate(path, 40_000))


@given("file that grows while it plays")
def _(test):
    path = test.copy("fragmented.mp4")
    whole = fault_media.read(path)
    fault_media.write(path, whole[: len(whole) * 3 // 4])
    player = test.start(path)
    player.wait("player==playing")
    with open(path, "ab") as file:
        file.write(whole[len(whole) * 3 // 4 :])
    return player


@given("disk full")
def _(test):
    # What a process writes into a file fails, where it is not allowed to let files grow.
    player = test.start(e2e.clip(e2e.SHORT), wrapper=["env", "--ignore-signal=XFSZ"])
    resource.prlimit(player.child.pid, resource.RLIMIT_FSIZE, (0, 0))
    player.wait("player==playing")
    return player


def leave_descriptors(player, count):
    pid = player.child.pid
    limit = max(map(int, os.listdir(f"/proc/{pid}/fd"))) + 1 + count
    resource.prlimit(pid, resource.RLIMIT_NOFILE, (limit, limit))


@given("out of descriptors")
def _(test):
    player = test.play(e2e.LONG)
    # Enough for the tool that launches, and not for a playback.
    leave_descriptors(player, 7)
    player.control("launch", e2e.clip("one_second.mp4"))
    return player


@given("out of descriptors while it plays")
def _(test):
    player = test.play(e2e.SHORT)
    leave_descriptors(player, 0)
    return player


@given("damaged subtitles beside the video")
def _(test):
    path = test.copy("one_second.mp4")
    for end in (".srt", ".sub", ".smi"):
        fault_media.write(os.path.splitext(path)[0] + end, b"{1}{2 not closed\n\xff\x00" * 100)
    return test.start(path)


@given("damaged settings")
def _(test):
    folder = os.path.join(test.environment["XDG_CONFIG_HOME"], "tessel")
    os.makedirs(folder)
    fault_media.write(os.path.join(folder, "settings.ini"), b"[db/menu_widget\n\xff\x00" * 100)
    return test.start(e2e.clip("one_second.mp4"))


@given("damaged catalogue of the user's language, and a file that isn't there")
def _(test):
    test.environment["LANGUAGE"] = "fr"
    player = test.start(test.path("nothing.mp4"), program=test.install_with_damaged(
        "res/locale/fr/LC_MESSAGES/tessel.mo"))
    e2e.wait_until(lambda: "The damaged catalogue " in player.text(), "the log of the catalogue")
    return player


@given("damaged theme table")
def _(test):
    return test.start(e2e.clip("one_second.mp4"), program=test.install_with_damaged(
        "shared/tables/com.orvane.tessel_ChangeableColorInfo.xml"))


@given("no memory for a picture")
def _(test):
    if e2e.SLOW:
        test.skipTest("a sanitizer dies itself without address space; the release build runs this")
    path = fault_media.huge_picture(test.path("huge.mkv"))
    player = test.play(e2e.LONG)
    pid = player.child.pid
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        size = next(int(line.split()[1]) * 1024 for line in status if line.startswith("VmSize"))
    # Beside what the first playback gives back, less than one picture.
    limit = size + fault_media.HUGE_PICTURE_BYTES // 4
    resource.prlimit(pid, resource.RLIMIT_AS, (limit, limit))
    player.control("launch", path)
    return player


class FaultTable(e2e.TestCase):
    def path(self, name):
        return os.path.join(self.directory, name)

    def copy(self, name, new_name="copy.mp4"):
        return shutil.copy(e2e.clip(name), self.path(new_name))

    def install_with_damaged(self, name):
        """The program with one of its own files cut in half."""
        program = self.path("installed/bin/tessel")
        os.makedirs(os.path.dirname(program))
        shutil.copy(os.path.join(e2e.BIN, "tessel"), program)
        data = self.path("installed/share/tessel")
        shutil.copytree(os.path.join(e2e.BIN, "../share/tessel"), data)
        damaged = os.path.join(data, name)
        os.truncate(damaged, os.path.getsize(damaged) // 2)
        return program

    def server(self, tls=False):
        folder = self.path("served")
        os.makedirs(folder)
        for name in ("one_second.mp4", "h264_aac.mp4"):
            os.symlink(e2e.clip(name), os.path.join(folder, name))
        server = MediaServer(folder, tls)
        self.addCleanup(server.end)
        return server

    def start_impatient(self, address):
        """With a short patience for servers, which only a running program can be told."""
        player = self.play(e2e.LONG)
        player.control("network", NETWORK_LIMIT_MS, NETWORK_LIMIT_MS)
        player.control("launch", address)
        return player

    def run_row(self, row):
        player = INPUTS[row.name](self)
        begin = time.monotonic()
        if row.notice:
            self.check_notice(player, row)
        if row.text:
            self.check_message(player, row, begin)
        if row.endless:
            player.wait("player==playing && position>=1500")
            player.control("quit")
        player.expect_exit(row.status)
        self.check_causes(player, row)

    def check_notice(self, player, row):
        popup = player.wait("popup==true")["popup"]
        self.assertEqual((popup["style"], popup["text"]), ("toast/circle", row.notice))

    def check_message(self, player, row, begin):
        popup = player.wait("popup==true")["popup"]
        if "while it plays" not in row.name:
            self.assertLess(time.monotonic() - begin, limit() + NETWORK_LIMIT_MS / 1000, row.name)
        style = {"toast": "toast/circle", "button": "circle"}[row.kind]
        self.assertEqual((popup["style"], popup["text"]), (style, row.text))
        if row.kind == "button":
            player.control("key", "back")

    def check_causes(self, player, row):
        told = [line for line in player.text().splitlines() if line.startswith("tessel: ")]
        numbers = [int(number) for number in
                   re.findall(r"E/HOST .*? with (-?\d+) \(0x", player.text())]
        if row.error is None:
            self.assertEqual((told, numbers), ([], []))
            return
        self.assertEqual(numbers, [row.error], player.text()[-3000:])
        self.assertEqual(len(told), 1, told)
        self.assertIn(row.cause, told[0])
        # What only a developer can read is for the log.
        self.assertNotRegex(told[0], r"\.c\(|Gst")


def add_tests():
    for name, row in ROWS.items():
        words = re.sub(r"\W+", "_", name).strip("_")
        setattr(FaultTable, f"test_{words}", lambda self, row=row: self.run_row(row))


class Table(unittest.TestCase):
    def test_each_row_has_its_input_and_each_input_its_row(self):
        self.assertEqual(set(ROWS), set(INPUTS))


add_tests()

if __name__ == "__main__":
    e2e.main(jobs=3)

"""A server on the loopback interface that serves media well, badly, or not at all.

The first part of a path says how: see Handler.WAYS. The rest names a file of the folder served.
"""

import http.server
import os
import shutil
import socketserver
import ssl
import subprocess
import threading
import time
import urllib.parse

import e2e

# Debian's own interpreter, which has GStreamer's libraries.
SYSTEM_PYTHON = "/usr/bin/python3"
FFMPEG = ["ffmpeg", "-nostdin", "-v", "error"]
TYPES = {".mp4": "video/mp4", ".webm": "video/webm", ".m3u8": "application/vnd.apple.mpegurl",
         ".ts": "video/mp2t"}
SLICE = 16 * 1024


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        self.server.note(self)
        way, _, name = urllib.parse.urlsplit(self.path).path.lstrip("/").partition("/")
        serve = self.WAYS.get(way)
        if serve is None:
            self.answer(404)
            return
        try:
            serve(self, urllib.parse.unquote(name))
        except (BrokenPipeError, ConnectionResetError):
            self.close_connection = True

    do_HEAD = do_GET

    def answer(self, status, headers=(), body=b""):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def content(self, name):
        path = os.path.join(self.server.folder, name)
        if not os.path.isfile(path):
            self.answer(404)
            return None
        with open(path, "rb") as file:
            return file.read()

    def begin(self, name, length, kind=None):
        self.send_response(200)
        self.send_header("Content-Type", kind or TYPES.get(os.path.splitext(name)[1], "video/mp4"))
        if length is not None:
            self.send_header("Content-Length", str(length))
        self.send_header("Connection", "close")
        self.end_headers()
        self.close_connection = True

    def plain(self, name):
        """With ranges."""
        body = self.content(name)
        if body is None:
            return
        kind = TYPES.get(os.path.splitext(name)[1], "application/octet-stream")
        headers = [("Content-Type", kind), ("Accept-Ranges", "bytes")]
        wanted = self.headers.get("Range")
        if wanted is None:
            self.answer(200, headers, body)
            return
        first, _, last = wanted.removeprefix("bytes=").partition("-")
        first, last = int(first), int(last) if last else len(body) - 1
        if first >= len(body):
            self.answer(416, [("Content-Range", f"bytes */{len(body)}")])
            return
        part = body[first : last + 1]
        place = f"bytes {first}-{first + len(part) - 1}/{len(body)}"
        self.answer(206, [*headers, ("Content-Range", place)], part)

    def no_ranges(self, name):
        body = self.content(name)
        if body is not None:
            self.begin(name, len(body))
            self.wfile.write(body)

    def mistyped(self, name):
        body = self.content(name)
        if body is not None:
            self.begin(name, len(body), "text/plain")
            self.wfile.write(body)

    def page(self, _name):
        self.answer(200, [("Content-Type", "video/mp4")],
                    b"<!DOCTYPE html><html><body><p>Sign in first.</p></body></html>\n" * 40)

    def slow(self, name):
        """In slices with a pause between them, somewhat faster than it plays."""
        body = self.content(name)
        if body is None:
            return
        self.begin(name, len(body))
        for place in range(0, len(body), SLICE):
            self.wfile.write(body[place : place + SLICE])
            self.wfile.flush()
            if self.server.closing.wait(0.05):
                return

    def stall(self, name):
        """The first half, and the rest only when the test lets it go on."""
        body = self.content(name)
        if body is None:
            return
        self.begin(name, len(body))
        self.wfile.write(body[: len(body) // 2])
        self.wfile.flush()
        self.server.go_on.wait()
        if not self.server.closing.is_set():
            self.wfile.write(body[len(body) // 2 :])

    def cut(self, name):
        body = self.content(name)
        if body is not None:
            self.begin(name, len(body))
            self.wfile.write(body[: len(body) // 2])

    def silent(self, _name):
        self.server.closing.wait()
        self.close_connection = True

    def loop(self, name):
        turn = int(name or 0) + 1
        self.answer(302, [("Location", f"/loop/{turn}")])

    def nowhere(self, _name):
        self.answer(302)

    def hang_up(self, _name):
        self.close_connection = True

    def babble(self, _name):
        """Bytes that are no answer."""
        self.wfile.write(bytes(range(256)) * 16)
        self.close_connection = True

    def status(self, code):
        self.answer(int(code))

    def live(self, name, form=("-f", "mpegts"), kind="video/mp2t"):
        """Without an end, at the pace of a clock."""
        self.begin(name, None, kind)
        source = os.path.join(self.server.folder, name)
        with subprocess.Popen([*FFMPEG, "-stream_loop", "-1", "-re", "-i", source, "-c", "copy",
                               *form, "-"], stdout=subprocess.PIPE) as encoder:
            try:
                while not self.server.closing.is_set():
                    data = encoder.stdout.read1(SLICE)
                    if not data:
                        break
                    self.wfile.write(data)
                    self.wfile.flush()
            finally:
                encoder.kill()

    def endless(self, name):
        """A fragmented file that never ends."""
        self.live(name, ("-f", "mp4", "-movflags", "frag_keyframe+empty_moov+default_base_moof"),
                  "video/mp4")

    WAYS = {"plain": plain, "no-ranges": no_ranges, "mistyped": mistyped, "page": page,
            "slow": slow, "stall": stall, "cut": cut, "silent": silent, "loop": loop,
            "nowhere": nowhere, "hang-up": hang_up, "babble": babble, "status": status, "live": live, "endless": endless}

    def log_message(self, *_):
        pass


class MediaServer(socketserver.ThreadingMixIn, http.server.HTTPServer):
    daemon_threads = True
    request_queue_size = 64

    def __init__(self, folder, tls=False):
        super().__init__(("127.0.0.1", 0), Handler)
        self.folder = folder
        self.closing = threading.Event()
        self.go_on = threading.Event()
        self.lock = threading.Lock()
        self.seen = []
        self.scheme = "https" if tls else "http"
        if tls:
            self.socket = self.own_certificate().wrap_socket(self.socket, server_side=True)
        self.thread = threading.Thread(target=self.serve_forever, kwargs={"poll_interval": 0.05})
        self.thread.start()

    def own_certificate(self):
        """A certificate that nobody vouches for."""
        key, certificate = (os.path.join(self.folder, f"server.{end}") for end in ("key", "crt"))
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj",
                        "/CN=127.0.0.1", "-days", "2", "-keyout", key, "-out", certificate],
                       check=True, capture_output=True)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate, key)
        return context

    def note(self, handler):
        with self.lock:
            self.seen.append((handler.path, dict(handler.headers)))

    def requests(self):
        with self.lock:
            return list(self.seen)

    def address(self, path):
        return f"{self.scheme}://127.0.0.1:{self.server_address[1]}/{urllib.parse.quote(path)}"

    def handle_error(self, *_):
        """A client that goes away is no news."""

    def end(self):
        self.closing.set()
        self.go_on.set()
        self.shutdown()
        self.thread.join()
        self.server_close()


def make_hls(clip, folder):
    """The clip as a playlist of one-second pieces."""
    os.makedirs(folder)
    subprocess.run([*FFMPEG, "-i", clip, "-c", "copy", "-f", "hls", "-hls_time", "1",
                    "-hls_playlist_type", "vod", os.path.join(folder, "list.m3u8")], check=True)
    return folder


class LivePlaylist:
    """The clip as a playlist without an end, of which four one-second pieces move on."""

    WINDOW = 4

    def __init__(self, clip, folder):
        self.folder = make_hls(clip, folder)
        names = (name for name in os.listdir(folder) if name.endswith(".ts"))
        self.pieces = sorted(names, key=lambda name: (len(name), name))
        self.closing = threading.Event()
        self.write(0)
        self.thread = threading.Thread(target=self.move_on)
        self.thread.start()

    def write(self, first):
        lines = ["#EXTM3U", "#EXT-X-VERSION:3", "#EXT-X-TARGETDURATION:1",
                 f"#EXT-X-MEDIA-SEQUENCE:{first}"]
        for piece in self.pieces[first:first + self.WINDOW]:
            lines += ["#EXTINF:1.0,", piece]
        new = os.path.join(self.folder, "new")
        with open(new, "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")
        os.replace(new, os.path.join(self.folder, "list.m3u8"))

    def move_on(self):
        for first in range(1, len(self.pieces)):
            if self.closing.wait(1.0):
                return
            self.write(first)

    def end(self):
        self.closing.set()
        self.thread.join()


class Camera:
    """Serves one clip over RTSP, to each who asks from its start, at its own pace."""

    def __init__(self, clip):
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "rtsp_server.py")
        self.process = e2e.Process([SYSTEM_PYTHON, script, clip], stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, text=True)
        self.address = self.process.child.stdout.readline().strip()
        if not self.address.startswith("rtsp://"):
            raise AssertionError("the camera did not start")

    def end(self):
        self.process.end()
        self.process.child.stdout.close()


def wait_for_port(port, seconds=10.0):
    import socket
    end = time.monotonic() + seconds
    while True:
        try:
            socket.create_connection(("127.0.0.1", port), 1.0).close()
            return
        except OSError:
            if time.monotonic() > end:
                raise AssertionError(f"nothing listens at port {port}") from None
            time.sleep(0.02)


def copy_into(folder, *paths):
    for path in paths:
        shutil.copy(path, folder)

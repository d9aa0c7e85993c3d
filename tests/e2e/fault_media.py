"""Media with something wrong in them, each made on the spot from a sound one."""

import random
import struct
import subprocess

import e2e

FFMPEG = ["ffmpeg", "-nostdin", "-v", "error", "-y"]


def sound_clip():
    """One second of video and sound, its index at the end."""
    return e2e.clip("one_second.mp4")


def read(path):
    with open(path, "rb") as file:
        return file.read()


def write(path, data):
    with open(path, "wb") as file:
        file.write(data)
    return path


def encode(path, *arguments):
    subprocess.run([*FFMPEG, *arguments, path], check=True, stdin=subprocess.DEVNULL)
    return path


def faststart(path):
    return encode(path, "-i", sound_clip(), "-c", "copy", "-movflags", "+faststart")


def boxes(data, begin=0, end=None):
    """The boxes of one level: kind, place and size."""
    end = len(data) if end is None else end
    while begin + 8 <= end:
        size, kind = struct.unpack(">I4s", data[begin : begin + 8])
        if size < 8:
            return
        yield kind.decode("latin-1"), begin, size
        begin += size


def box_places(data, kind):
    """Where the payload of each box of that kind begins, at any depth."""
    nested = {"moov", "trak", "mdia", "minf", "stbl"}
    found, levels = [], [(0, len(data))]
    while levels:
        for name, place, size in boxes(data, *levels.pop()):
            if name == kind:
                found.append(place + 8)
            if name in nested:
                levels.append((place + 8, place + size))
    return found


def of_size(path, width, height, frames=30):
    """Grey pictures of that size."""
    grey = bytes([128]) * (width * height * 3 * frames)
    subprocess.run([*FFMPEG, "-f", "rawvideo", "-pix_fmt", "yuv444p", "-s", f"{width}x{height}",
                    "-r", "30", "-i", "-", "-c:v", "ffv1", path], check=True, input=grey)
    return path


# A picture whose decoder asks for this much at once.
HUGE_WIDTH, HUGE_HEIGHT = 16384, 8192
HUGE_PICTURE_BYTES = HUGE_WIDTH * HUGE_HEIGHT * 3


def huge_picture(path):
    return encode(path, "-f", "lavfi", "-i", f"color=gray:s={HUGE_WIDTH}x{HUGE_HEIGHT}:r=1",
                  "-frames:v", "1", "-pix_fmt", "yuvj444p", "-c:v", "mjpeg")


def header_only(path):
    data = read(sound_clip())
    return write(path, data[: next(boxes(data))[2]])


def truncated(path):
    """The first half of a file whose index comes first."""
    data = read(faststart(path))
    return write(path, data[: len(data) // 2])


def index_missing(path):
    data = read(sound_clip())
    return write(path, data[: len(data) // 2])


def with_bit_flips(path, seed=20):
    """Some hundred bits of the pictures and sounds, not of the index."""
    data = bytearray(read(sound_clip()))
    place, size = next((place, size) for kind, place, size in boxes(data) if kind == "mdat")
    dice = random.Random(seed)
    for _ in range(100):
        data[dice.randrange(place + 64, place + size)] ^= 1 << dice.randrange(8)
    return write(path, bytes(data))


def without_samples(path, codec="avc1"):
    """The video track has no samples; the sound stays."""
    data = bytearray(read(sound_clip()))
    for track_kind, place, size in _tracks(data):
        if track_kind == codec:
            _empty_tables(data, place, size)
    return write(path, bytes(data))


def without_any_samples(path):
    data = bytearray(read(sound_clip()))
    for _, place, size in _tracks(data):
        _empty_tables(data, place, size)
    return write(path, bytes(data))


def _tracks(data):
    for kind, place, size in boxes(data):
        if kind == "moov":
            for inner, track, length in boxes(data, place + 8, place + size):
                if inner == "trak":
                    body = data[track : track + length]
                    yield ("avc1" if b"avc1" in body else "mp4a"), track, length


def _empty_tables(data, place, size):
    """Sets the counts of a track's sample tables to zero."""
    part = bytes(data[place : place + size])
    for kind, offset in (("stts", 4), ("stss", 4), ("stsc", 4), ("stco", 4), ("ctts", 4),
                         ("stsz", 8)):
        found = part.find(kind.encode())
        if found >= 0:
            at = place + found + 4 + offset
            data[at : at + 4] = bytes(4)


def without_rate(path):
    """Every picture lasts no time."""
    data = bytearray(read(sound_clip()))
    for place in box_places(bytes(data), "stts"):
        count = struct.unpack(">I", data[place + 4 : place + 8])[0]
        for entry in range(count):
            at = place + 8 + entry * 8 + 4
            data[at : at + 4] = bytes(4)
    return write(path, bytes(data))


def with_broken_index(path):
    """All offsets of the index lead beyond the file."""
    data = bytearray(read(sound_clip()))
    for place in box_places(bytes(data), "stco"):
        count = struct.unpack(">I", data[place + 4 : place + 8])[0]
        for entry in range(count):
            at = place + 8 + entry * 4
            data[at : at + 4] = b"\x7f\xff\xff\xff"
    return write(path, bytes(data))


def fragmented_unfinished(path):
    """As a recorder leaves it while it runs: fragments, no length, the last one not whole."""
    encode(path, "-i", sound_clip(), "-c", "copy", "-f", "mp4", "-movflags",
           "frag_every_frame+empty_moov+default_base_moof")
    data = read(path)
    return write(path, data[: len(data) * 3 // 4])


def text(path):
    return write(path, b"Dear reader, this is no video.\n" * 1000)

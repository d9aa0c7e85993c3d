"""Puts closed captions into an H.264 byte stream: add-captions.py < IN > OUT

Each picture gets a message of user data with one pair of caption bytes before its first slice.
"""

import re
import sys

# Country and provider as registered for captions, their name and kind, one pair (0x94 0x2c: erase
# what is shown), and the end marker.
CAPTIONS = bytes.fromhex("b50031") + b"GA94" + bytes.fromhex("0341fffc942cff")
MESSAGE = b"\0\0\0\1\x06\x04" + bytes([len(CAPTIONS)]) + CAPTIONS + b"\x80"

stream = sys.stdin.buffer.read()
# Start codes of slices (kinds 1 and 5) that begin a picture: their first bit, the number of the
# first macroblock, is zero as one set bit.
pictures = re.compile(rb"\x00?\x00\x00\x01(?=[\x21\x41\x61\x01\x25\x45\x65\x05][\x80-\xff])")
sys.stdout.buffer.write(pictures.sub(lambda found: MESSAGE + found.group(), stream))

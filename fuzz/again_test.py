#!/usr/bin/python3
"""A saved input can be looked at again, as fuzz/run says: again_test.py BUILD-FOLDER"""

import os
import pathlib
import subprocess
import sys
import unittest

BUILD = pathlib.Path(sys.argv.pop(1)).absolute()
# A fuzzer that counts as left behind what was there before waits for a minute, and fails. A
# sanitized one may need as long to load what it plays with.
LIMIT = 200.0 if os.environ.get("TESSEL_SANITIZE") else 50.0
# What libraries lose is told from what the program loses by fuzz/run.
ENVIRONMENT = {**os.environ, "ASAN_OPTIONS": "detect_leaks=0"}


class Again(unittest.TestCase):
    def look(self, fuzzer, name):
        corpus = BUILD / "fuzz-corpus" / fuzzer
        # Named as whoever stands beside it would.
        return subprocess.run([BUILD / "bin" / f"fuzz-{fuzzer}", corpus, "0", "0", name],
                              cwd=corpus, env=ENVIRONMENT, timeout=LIMIT, capture_output=True,
                              text=True, check=False)

    def assert_outcome(self, fuzzer, name, outcome):
        done = self.look(fuzzer, name)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stdout, rf"\A{outcome}\n\Z")

    def test_a_medium_that_plays_tells_so(self):
        self.assert_outcome("media", "F-first.mp4", "0 played.*")

    def test_a_medium_without_memory_for_its_pictures_tells_the_number(self):
        self.assert_outcome("media", "P-first.mp4", "-12 out of memory")

    def test_a_download_without_room_tells_the_number(self):
        self.assert_outcome("media", "D-first.mp4", "-28 no space on the device")

    def test_a_launch_request_tells_its_kind(self):
        self.assert_outcome("inputs", "L1", "launch request: .+")

    def test_an_input_that_is_not_there_is_refused(self):
        done = self.look("media", "nothing")
        self.assertEqual(done.returncode, 2)
        self.assertEqual(done.stdout, "")
        self.assertRegex(done.stderr, r"nothing can't be read\n\Z")


if __name__ == "__main__":
    unittest.main()

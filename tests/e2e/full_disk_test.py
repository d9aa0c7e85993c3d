"""A disk without room: what is written to it fails with one line, and what was there stays."""

import os
import subprocess
import unittest

import e2e

KEPT = "kept"
FILL = ('mount -t tmpfs -o size=64k,mode=755 none "$0" && mkdir "$0/tessel" && '
        'printf "%s" "$1" >"$0/tessel/settings.ini" && printf kept >"$0/kept" && '
        '! head -c 1000000 /dev/zero 2>/dev/null >"$0/filler" && shift && exec "$@"')
SETTINGS = "[db/menu_widget]\nregionformat=en_GB\n"
# A disk of one's own, for the superuser and for others. The kernel allows it to nobody below a
# changed root, and some containers forbid it; nothing else can be full.
OWN_MOUNTS = ["unshare", "--mount", *([] if os.geteuid() == 0 else ["--map-root-user"])]


@unittest.skipIf(subprocess.run([*OWN_MOUNTS, "mount", "-t", "tmpfs", "none", "/mnt"],
                                stderr=subprocess.DEVNULL, check=False).returncode,
                 "no file system may be mounted here, and only one of its own can be filled")
class FullDisk(e2e.TestCase):
    def setUp(self):
        super().setUp()
        self.disk = os.path.join(self.directory, "disk")
        os.makedirs(self.disk)
        self.wrapper = [*OWN_MOUNTS, "sh", "-c", FILL, self.disk, SETTINGS]

    def play_on_full_disk(self):
        player = self.play(e2e.LONG, wrapper=self.wrapper)
        self.assertEqual(self.files(player), ["filler", KEPT, "tessel", "tessel/settings.ini"])
        return player

    def seen_by(self, player, *names):
        return os.path.join(f"/proc/{player.child.pid}/root", *self.disk.split("/"), *names)

    def files(self, player):
        top = self.seen_by(player)
        return sorted(os.path.relpath(os.path.join(folder, name), top)
                      for folder, folders, files in os.walk(top) for name in folders + files)

    def content(self, player, *names):
        with open(self.seen_by(player, *names), encoding="utf-8") as file:
            return file.read()

    def test_a_picture_is_not_half_written(self):
        player = self.play_on_full_disk()
        files = self.files(player)
        for name in ("new.png", KEPT):
            path = os.path.join(self.disk, name)
            status, reply = player.try_control("screenshot", path)
            self.assertEqual((status, reply["ok"]), (1, False))
            self.assertIn(path, reply["error"])
        self.assertEqual(self.files(player), files)
        self.assertEqual(self.content(player, KEPT), "kept")
        position = player.state()["position"]
        player.wait(f"player==playing && position>{position}")

    def test_the_settings_stay_as_they_were_and_the_choice_holds_for_the_run(self):
        self.environment["XDG_CONFIG_HOME"] = self.disk
        player = self.play_on_full_disk()
        files = self.files(player)
        player.control("region", "de_DE")
        self.assertEqual(player.state()["region"], "de_DE")
        self.assertEqual(self.files(player), files)
        self.assertEqual(self.content(player, "tessel", "settings.ini"), SETTINGS)

    def test_a_recording_ends_with_one_line(self):
        player = self.play(e2e.LONG)
        script = os.path.join(self.disk, "script.tesselctl")
        tool = subprocess.Popen(
            [*self.wrapper, os.path.join(e2e.BIN, "tesselctl"), "--pid", str(player.child.pid),
             "record", script], env=self.environment, stderr=subprocess.PIPE, text=True)
        self.addCleanup(tool.kill)
        # Whichever of them comes after the recording has begun.
        def ended():
            player.control("tap", 180, 90)
            return tool.poll() is not None
        e2e.wait_until(ended, "the end of the recording")
        self.assertEqual(tool.returncode, 1)
        self.assertEqual(tool.communicate()[1],
                         f"tesselctl: the script {script} can't be written\n")


if __name__ == "__main__":
    e2e.main()

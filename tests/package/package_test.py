"""The Debian package: what is in it, that it runs from where it was installed, and that it goes."""

import glob
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = os.environ["TESSEL_BUILD"]
TRY_IN_CLEAN_ROOT = os.path.join(os.path.dirname(__file__), "../../packaging/try-in-clean-root")
LIMIT = 120
# A Debian is fetched, and half of it again.
CLEAN_ROOT_LIMIT = 1500


def run(*command, limit=LIMIT, **options):
    done = subprocess.run(command, capture_output=True, text=True, timeout=limit,
                          stdin=subprocess.DEVNULL, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(command)} ended with {done.returncode}:\n"
                             f"{done.stdout}{done.stderr}")
    return done.stdout + done.stderr


class PackageTestCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="tessel-package-")
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        run("cpack", "--config", f"{BUILD}/CPackConfig.cmake", "-B", f"{cls.folder}/made",
            cwd=cls.folder)
        [cls.package] = glob.glob(f"{cls.folder}/made/*.deb")

    def clip(self):
        path = f"{self.folder}/clip.webm"
        run("ffmpeg", "-nostdin", "-loglevel", "error", "-y", "-f", "lavfi",
            "-i", "testsrc2=size=64x64:rate=10:duration=1", "-c:v", "libvpx", path)
        return path


class Package(PackageTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.root = f"{cls.folder}/root"
        run("dpkg-deb", "--extract", cls.package, cls.root)

    def path(self, *parts):
        return os.path.join(self.root, "usr", *parts)

    def test_names_what_is_loaded_only_at_run_time(self):
        depends = run("dpkg-deb", "--field", self.package, "Depends")
        for name in ("libelementary1", "libevas1-engines-x", "gstreamer1.0-plugins-base",
                     "gstreamer1.0-libav", "libicu72"):
            self.assertRegex(depends, rf"\b{name}\b")
        self.assertIn("fonts-noto", run("dpkg-deb", "--field", self.package, "Recommends"))

    def test_the_entry_of_the_menu_is_valid_and_names_the_programs_that_are_there(self):
        entry = self.path("share/applications/com.orvane.tessel.desktop")
        run("desktop-file-validate", entry)
        with open(entry, encoding="utf-8") as file:
            lines = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
        self.assertTrue(os.access(self.path("bin", lines["Exec"].split()[0]), os.X_OK))
        self.assertTrue(os.path.exists(
            self.path("share/icons/hicolor/scalable/apps", lines["Icon"] + ".svg")))
        self.assertIn("video/mp4", lines["MimeType"].split(";"))

    def test_the_description_for_software_centres_is_valid(self):
        run("appstreamcli", "validate", "--no-net",
            self.path("share/metainfo/com.orvane.tessel.metainfo.xml"))

    def test_the_bus_can_start_it(self):
        with open(self.path("share/dbus-1/services/com.orvane.tessel.service"),
                  encoding="utf-8") as file:
            self.assertIn("Exec=/usr/bin/tessel --service\n", file.read())

    def test_the_manual_has_no_faults_and_every_option(self):
        for program in ("tessel", "tesselctl"):
            page = self.path("share/man/man1", program + ".1")
            warnings = subprocess.run(["man", "--warnings", "--local-file", page],
                                      capture_output=True, text=True, timeout=LIMIT,
                                      env=dict(os.environ, LC_ALL="C.UTF-8", MANWIDTH="100"))
            self.assertEqual(warnings.stderr, "")
            help_text = run(self.path("bin", program), "--help")
            for word in help_text.split():
                if word.startswith("--"):
                    self.assertIn(word.strip(",;."), warnings.stdout)

    def test_the_shell_completes_the_player(self):
        script = (f"PATH={self.path('bin')}:$PATH; . {self.path('share/bash-completion/completions/tessel')};"
                  "COMP_WORDS=(tessel --fr); COMP_CWORD=1; _tessel; echo ${COMPREPLY[@]};"
                  "COMP_WORDS=(tessel --frame n); COMP_CWORD=2; _tessel; echo ${COMPREPLY[@]};"
                  "COMP_WORDS=(tessel --screen ''); COMP_CWORD=2; _tessel; echo ${COMPREPLY[@]}")
        self.assertEqual(run("bash", "-c", script).split(), ["--frame", "none"])

    def test_the_manual_tells_of_the_keys_as_the_help_does(self):
        page = subprocess.run(["man", "--local-file", self.path("share/man/man1/tessel.1")],
                              capture_output=True, text=True, timeout=LIMIT,
                              env=dict(os.environ, LC_ALL="C.UTF-8", MANWIDTH="200")).stdout
        page = " ".join(page.split())
        keys = run(self.path("bin/tessel"), "--help").split("\nKeys:\n")[1].split("\n\n")[0]
        for line in keys.splitlines():
            names, meaning = line.strip().split("   ", 1)
            self.assertIn(f"{names} {meaning.strip()}", page)

    def test_the_shell_completes_the_tool(self):
        script = (f"PATH={self.path('bin')}:$PATH; . {self.path('share/bash-completion/completions/tesselctl')};"
                  "COMP_WORDS=(tesselctl ro); COMP_CWORD=1; _tesselctl; echo ${COMPREPLY[@]};"
                  "COMP_WORDS=(tesselctl key b); COMP_CWORD=2; _tesselctl; echo ${COMPREPLY[@]}")
        self.assertEqual(run("bash", "-c", script).split(), ["rotate", "back"])

    def test_runs_from_where_it_was_installed(self):
        environment = {key: value for key, value in os.environ.items()
                       if key not in ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS")}
        for name in ("HOME", "XDG_RUNTIME_DIR"):
            environment[name] = f"{self.folder}/{name}"
            os.makedirs(environment[name], mode=0o700, exist_ok=True)
        picture = f"{self.folder}/picture.png"
        run(self.path("bin/tessel"), "--headless", "--new-instance", "--screenshot",
            f"{picture}@0.2", self.clip(), env=environment)
        self.assertTrue(os.path.getsize(picture) > 0)

    def test_goes_without_a_trace(self):
        root = f"{self.folder}/dpkg"
        os.makedirs(f"{root}/var/lib/dpkg/info")
        os.makedirs(f"{root}/var/lib/dpkg/updates")
        open(f"{root}/var/lib/dpkg/status", "w", encoding="utf-8").close()
        dpkg = ["dpkg", f"--root={root}", "--force-depends", "--force-not-root",
                "--force-script-chrootless", "--log=/dev/null"]
        before = self.files(root)
        run(*dpkg, "--install", self.package)
        self.assertTrue(os.path.exists(f"{root}/usr/bin/tessel"))
        run(*dpkg, "--purge", "tessel")
        self.assertEqual(self.files(root), before)

    @staticmethod
    def files(root):
        return sorted(os.path.join(folder, name) for folder, _, names in os.walk(root)
                      for name in names if "/var/lib/dpkg" not in folder)


class CleanRoot(PackageTestCase):
    def test_installs_plays_and_goes(self):
        said = run(TRY_IN_CLEAN_ROOT, self.package, self.clip(), limit=CLEAN_ROOT_LIMIT)
        self.assertIn("It installed, played and went without a trace", said)


if __name__ == "__main__":
    unittest.main(argv=sys.argv, verbosity=2)

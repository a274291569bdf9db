#!/usr/bin/env python3
"""Holds what is installed with the program against the readers that the distribution has for it.

    packaging_test.py SOURCE BUILD CMAKE CASE

SOURCE and BUILD are the folders of the checkout and of a build in which `zemo_installed` was made. CASE is one
of the tests below. Tools of setup/packages.txt are there; of setup/packaging-packages.txt none is needed.
"""

import os
import re
import struct
import xml.etree.ElementTree

import trial
from trial import InFolder, run, version

ID = "org.zemoradio.ZemoRadio"
PREFIX = "usr/local"  # of a build that was told no other
SIZES = (16, 22, 24, 32, 48, 64, 128, 256)


class Control(InFolder):
    @staticmethod
    def marked(name):
        """The packages of a list that the build of the packages needs."""
        lines = (trial.SOURCE / "setup" / name).read_text(encoding="utf-8").splitlines()
        return {line.split()[0] for line in lines if re.fullmatch(r"\S+ +# package", line)}

    def test_build_dependencies(self):
        control = (trial.SOURCE / "packaging/debian/control").read_text(encoding="utf-8")
        listed = re.search(r"^Build-Depends:((?:\n .*)+)", control, re.M).group(1)
        needed = set(re.findall(r"^ ([\w.+-]+)", listed, re.M))
        lists = self.marked("packages.txt") | self.marked("packaging-packages.txt")
        self.assertGreater(len(lists), 10)
        self.assertEqual(needed, (lists - {"debhelper"}) | {"debhelper-compat"})

    def test_build_stays_out(self):
        build = trial.SOURCE / "packaging/build.sh"
        for words in ([], ["a", "b"], ["--help"], [trial.SOURCE / "packaging/debs"]):
            refused = run(build, *words, cwd=self.folder)
            self.assertEqual(refused.returncode, 1, words)
            self.assertRegex(refused.stderr, r"\Apackaging: [^\n]+\n\Z")
        self.assertFalse((trial.SOURCE / "packaging/debs").exists())


class Installed(InFolder):
    def setUp(self):
        super().setUp()
        self.accepted(run(trial.CMAKE, "--install", trial.BUILD, env={**os.environ, "DESTDIR": str(self.folder)}))
        self.root = self.folder / PREFIX
        self.assertTrue((self.root / "bin/zemoradio").is_file())

    def test_desktop_entries(self):
        for name in (ID, ID + ".Demo"):
            entry = self.root / f"share/applications/{name}.desktop"
            self.assertEqual(self.accepted(run("desktop-file-validate", entry)), "")
            values = dict(re.findall(r"^(\w+)=(.*)$", entry.read_text(encoding="utf-8"), re.M))
            self.assertTrue(os.access(self.root / "bin" / values["Exec"], os.X_OK), values["Exec"])
            icon = self.root / f"share/icons/hicolor/scalable/apps/{values['Icon']}.svg"
            self.assertTrue(icon.is_file(), icon)

    def test_metadata(self):
        data = self.root / f"share/metainfo/{ID}.metainfo.xml"
        # From version 1 on it misses a page in the net, of which the program has none.
        words = ["--no-net"]
        if re.search(r"version: [1-9]", run("appstreamcli", "--version").stdout):
            words += ["--override", "url-homepage-missing=info"]
        self.accepted(run("appstreamcli", "validate", *words, data))
        told = xml.etree.ElementTree.parse(data).getroot()
        entry = self.root / "share/applications" / told.findtext("launchable")
        self.assertTrue(entry.is_file(), entry)
        program = self.root / "bin" / told.findtext("provides/binary")
        self.assertTrue(program.is_file(), program)

    def test_icons(self):
        icons = self.root / "share/icons/hicolor"
        drawn = xml.etree.ElementTree.parse(icons / f"scalable/apps/{ID}.svg").getroot()
        self.assertEqual(drawn.get("viewBox"), "0 0 128 128")
        pictures = sorted(icons.rglob("*.png"))
        if not pictures:
            self.skipTest("rsvg-convert of the package librsvg2-bin is not installed")
        self.assertEqual({path.parts[-3] for path in pictures}, {f"{size}x{size}" for size in SIZES})
        for path in pictures:
            width, height = struct.unpack(">II", path.read_bytes()[16:24])  # of a PNG's first chunk
            self.assertEqual(f"{width}x{height}", path.parts[-3])

    def test_manual_pages(self):
        for name in ("zemoradio", "zemoradio-demo"):
            page = self.root / f"share/man/man1/{name}.1"
            self.assertEqual(self.accepted(run("mandoc", "-T", "lint", "-W", "warning", page)), "")
            shown = run("mandoc", "-T", "utf8", page)
            self.assertIn(f"{name} - ", shown.stdout.replace("\b", "").replace("‐", "-"))

    def test_version(self):
        told = self.accepted(run(self.root / "bin/zemoradio", "--version"))
        self.assertEqual(told, f"Zemo Radio {version()}\n")
        data = xml.etree.ElementTree.parse(self.root / f"share/metainfo/{ID}.metainfo.xml")
        self.assertEqual(data.find("releases/release").get("version"), version())
        for name in ("zemoradio", "zemoradio-demo"):
            page = (self.root / f"share/man/man1/{name}.1").read_text(encoding="utf-8")
            head = re.search(r"^\.TH .*$", page, re.M).group(0)
            self.assertIn(f'"Zemo Radio {version()}"', head)
            self.assertIn(f'"{data.find("releases/release").get("date")}"', head)

    def test_unit(self):
        units = self.root / "lib/systemd/system"
        unit = (units / "zemoradio@.service").read_text(encoding="utf-8")
        command = re.search(r"^ExecStart=(\S+)", unit, re.M).group(1)
        self.assertEqual(command, f"/{PREFIX}/bin/zemoradio")
        # The reader looks for the program as well, which stands elsewhere here, and for the page that
        # is not installed yet.
        tried = self.folder / "zemoradio@.service"
        tried.write_text(re.sub(r"^Documentation=.*\n", "", unit, flags=re.M)
                         .replace(command, str(self.root / "bin/zemoradio")), encoding="utf-8")
        read = run("systemd-analyze", "verify", "--recursive-errors=no", self.folder / "zemoradio@test.service")
        self.assertNotIn("zemoradio@", self.accepted(read))
        # In tenths, 100 for no protection at all.
        self.accepted(run("systemd-analyze", "security", "--offline=yes", "--threshold=25", tried))


class Completion(InFolder):
    def complete(self, *words):
        """What bash offers behind these words, as a completion library would ask for it."""
        script = trial.BUILD / "packaging/zemoradio.bash"
        self.assertEqual(self.accepted(run("bash", "-n", script)), "")
        asked = run("bash", "--norc", "--noprofile", "-c",
                    'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _zemoradio; '
                    '((${#COMPREPLY[@]} == 0)) || printf "%s\\n" "${COMPREPLY[@]}"',
                    "bash", script, "zemoradio", *words, cwd=self.folder)
        self.assertEqual(asked.stderr, "")
        return set(asked.stdout.splitlines())

    def test_words(self):
        (self.folder / "radio").mkdir()
        (self.folder / "rain fall.txt").touch()
        commands = self.complete("")
        self.assertLessEqual({"run", "simulate", "demo", "settings"}, commands)
        self.assertEqual(self.complete("si"), {"simulate"})
        self.assertEqual(self.complete("settings", ""), {"get", "set", "list"})
        self.assertEqual(self.complete("run", "--for"), {"--for", "--for-exactly"})
        self.assertEqual(self.complete("settings", "get", "--"), {"--help", "--json"})
        self.assertEqual(self.complete("import", "--kind", ""), {"music", "jingle", "other"})
        self.assertEqual(self.complete("run", "--station", "ra"), {"radio"})
        self.assertEqual(self.complete("run", "--station", "=", "ra"), {"radio"})
        self.assertEqual(self.complete("run", "--station", "="), {"radio"})
        self.assertEqual(self.complete("check", "ra"), {"radio"})
        self.assertEqual(self.complete("simulate", "--script", "ra"), {"radio", "rain fall.txt"})
        self.assertEqual(self.complete("import", "ra"), {"radio", "rain fall.txt"})
        self.assertEqual(self.complete("run", "--for", ""), set())
        # A value is no command, whatever it is called.
        self.assertEqual(self.complete("--station", "run", ""), commands)
        self.assertEqual(self.complete("--station", "=", "run", ""), commands)


class Demo(InFolder):
    def setUp(self):
        super().setUp()
        self.program = self.folder / "program"
        self.program.write_text('#!/bin/sh\necho "$@" >>"$HOME/orders"\n'
                                '[ "$1" != demo ] || { mkdir -p "$2"; : >"$2/Triskin.MDB"; }\n',
                                encoding="utf-8")
        self.program.chmod(0o755)
        self.demo = f"{self.folder}/.local/share/ZemoKaluri/Demo"

    def orders(self, *words, **more):
        """What the program is asked for, of which the demo asks by these words."""
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder),
                       "ZEMORADIO": str(self.program), **more}
        (self.folder / "orders").unlink(missing_ok=True)
        self.accepted(run(trial.SOURCE / "packaging/zemoradio-demo", *words, env=environment))
        return (self.folder / "orders").read_text(encoding="utf-8").splitlines()

    def test_made_once(self):
        opened = f"run --station {self.demo} --output null"
        self.assertEqual(self.orders("--output", "null"), [f"demo {self.demo}", opened])
        self.assertEqual(self.orders("--output", "null"), [opened])

    def test_display(self):
        self.assertEqual(self.orders(DISPLAY=":7"), [f"demo {self.demo}", f"--station {self.demo}"])
        elsewhere = f"{self.folder}/data/ZemoKaluri/Demo"
        self.assertEqual(self.orders(WAYLAND_DISPLAY="w", XDG_DATA_HOME=f"{self.folder}/data"),
                         [f"demo {elsewhere}", f"--station {elsewhere}"])


if __name__ == "__main__":
    trial.main()

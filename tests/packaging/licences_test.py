#!/usr/bin/env python3
"""Holds docs/licences.md against the lists of setup/, the program's libraries, and what the packages say.

    licences_test.py SOURCE BUILD CMAKE CASE
"""

import pathlib
import re

import trial
from trial import InFolder, run

# How a kind of licence shows in the words of a package.
MARKS = {
    "AFL-2.1": r"AFL-2\.1|Academic Free License",
    "AGPL-3": r"AGPL-3|Affero",
    "Apache-2.0": r"Apache",
    "BSD-2-Clause": r"BSD-2-clause",
    "BSD-3-Clause": r"BSD-3-clause|Neither the name",
    "GCC Runtime Library Exception": r"GCC Runtime Library Exception",
    "GPL-2": r"GPL-2|version 2",
    "GPL-2+": r"GPL-2(\.0)?\+|version 2|(?<!Lesser )General Public License",
    "GPL-3": r"GPL-3|version 3",
    "GPL-3+": r"GPL-3\+|version 3",
    "ISC": r"ISC|permission to use, copy",
    "LGPL-2+": r"LGPL-2",
    "LGPL-2.1": r"LGPL-2\.1|Lesser General Public",
    "LGPL-2.1+": r"L(GP|PG)L-2\.1\+|Lesser General Public",
    "LGPL-3": r"LGPL-3",
    "LLVM exception": r"LLVM",
    "MIT": r"Permission is hereby granted, free of charge",
    "MPL-1.1": r"MPL-1\.1",
    "MPL-2.0": r"MPL-2\.0",
    "PSF-2.0": r"Python Software Foundation",
    "PostgreSQL": r"PostgreSQL",
    "Zlib": r"zlib|as-is",
    "exception for Qt's tools": r"Qt-1\.0 exception",
    "public domain": r"public[- ]domain",
}
# What a package that only names another one stands for.
STANDS_FOR = {"build-essential": "libgcc-s1", "clang-format": "clang-format-14", "clang-tidy": "clang-tidy-14",
              "postgresql": "postgresql-15"}
# Terms that would become those of the program.
OF_ITS_OWN = {"GPL-2", "GPL-2+", "GPL-3", "AGPL-3"}


def kinds(licence):
    return [kind for kind in re.split(r", or | with the | with an |, ", licence) if kind]


def on_debian_12():
    release = pathlib.Path("/etc/os-release")
    return release.is_file() and 'VERSION_ID="12"' in release.read_text(encoding="utf-8")


class Licences(InFolder):
    def setUp(self):
        super().setUp()
        text = trial.read("docs/licences.md")
        self.rows = {}  # package: heading, library or None, version, licence
        for part in re.split(r"^## ", text, flags=re.M)[1:]:
            for line in re.findall(r"^\| ([a-z][^\n]*) \|$", part, re.M):
                cells = [cell.strip() for cell in line.split(" | ")]
                library = cells.pop(1) if len(cells) == 5 else None
                self.assertNotIn(cells[0], self.rows, "two rows")
                self.rows[cells[0]] = (part.split("\n")[0], library, cells[1], cells[2])
        self.assertGreater(len(self.rows), 60)

    def linked(self):
        return {name: row for name, row in self.rows.items() if row[1]}

    def test_lists(self):
        listed = set()
        for name in ("packages.txt", "packaging-packages.txt"):
            listed |= set(re.findall(r"^([a-z][\w.+-]+)", trial.read("setup", name), re.M))
        self.assertGreater(len(listed), 50)
        self.assertEqual(set(self.rows) - set(self.linked()), listed)

    def test_linked(self):
        if not on_debian_12():
            self.skipTest("the libraries are those of Debian 12")
        program = trial.BUILD / "zemoradio"
        needed = set(re.findall(r"\(NEEDED\).*\[(.+)\]", self.accepted(run("readelf", "-d", program))))
        # Those that it loads by their names while it runs.
        loaded = {name.decode() for name in re.findall(rb"\0(lib[\w.+-]+\.so\.\d+)(?=\0)", program.read_bytes())}
        needed = {name for name in needed | loaded if not name.startswith("ld-linux")}
        told = {library: name for name, row in self.linked().items() for library in row[1].split(", ")}
        self.assertEqual(set(told), needed)
        for kind in (kind for row in self.linked().values() for kind in [kinds(row[3])]):
            self.assertTrue(set(kind) - OF_ITS_OWN, kind)

    def test_copyrights(self):
        if not on_debian_12():
            self.skipTest("the packages are those of Debian 12")
        looked = 0
        for name, (_, _, version, licence) in self.rows.items():
            stands = STANDS_FOR.get(name, name)
            file = pathlib.Path("/usr/share/doc", stands, "copyright")
            if not file.is_file():
                continue  # of packaging-packages.txt
            looked += 1
            text = file.read_text(encoding="utf-8", errors="replace")
            for kind in kinds(licence):
                self.assertRegex(text, re.compile(MARKS[kind], re.I), f"{name}: {kind}")
            told = run("dpkg-query", "-W", "-f=${Version}", name).stdout
            self.assertTrue(told.startswith(version) or told.split(":")[-1].startswith(version),
                            f"{name} is {told}, not {version}")
        self.assertGreater(looked, 60)

    def test_notices(self):
        """What is compiled in is told with the program, in the words of its makers."""
        told = trial.read("packaging/debian/copyright")
        words = " ".join(told.replace("\n .\n", "\n").split())
        for package, paragraph in (("libcli11-dev", "BSD-3-clause"), ("nlohmann-json3-dev", "Expat")):
            file = pathlib.Path("/usr/share/doc", package, "copyright")
            if not file.is_file():
                self.skipTest(f"{package} brings no copyright along")
            text = file.read_text(encoding="utf-8")
            holder = re.search(r"^Files: \*\nCopyright: (.*)\n", text, re.M).group(1)
            terms = re.search(rf"^License: {paragraph}\n((?: .*\n)+)", text, re.M).group(1)
            self.assertIn(holder, words)
            self.assertIn(" ".join(terms.replace("\n .\n", "\n").split()), words)


if __name__ == "__main__":
    trial.main()

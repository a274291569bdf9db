#!/usr/bin/env python3
"""Shows that check_documents.py finds what it is there to find."""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import check_documents  # noqa: E402


class Documents(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        for name in ("README.md", "ARCHITECTURE.md", "CONTRIBUTING.md"):
            self.write(name, "")
        self.write("src/engine/Tick.cpp", "void OneTick() {}\n")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def found(self):
        return check_documents.missing(self.root)[0]

    def test_a_file_that_is_there_is_found_by_its_path_or_its_name(self):
        self.write("README.md", "`engine/Tick.cpp`, `src/engine/Tick.cpp`, `Tick.cpp`")
        self.assertEqual(self.found(), [])

    def test_a_file_that_is_gone_is_told_with_its_line(self):
        self.write("ARCHITECTURE.md", "\n`engine/Gone.cpp` and `Tick.h`\n")
        self.assertEqual(self.found(), ["ARCHITECTURE.md:2: there is no engine/Gone.cpp",
                                        "ARCHITECTURE.md:2: there is no Tick.h"])

    def test_a_routine_that_is_gone_is_told_on_the_page_of_changes_only(self):
        self.write("docs/where-to-change.md", "`OneTick`, `List::Add`")
        self.write("README.md", "`Add`")
        self.assertEqual(self.found(), ["docs/where-to-change.md:1: no source has Add"])


if __name__ == "__main__":
    unittest.main()

"""What the tests of the packaging share: the folders that they are about, and one of their own each."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

SOURCE, BUILD, CMAKE = pathlib.Path(), pathlib.Path(), ""


def run(*words, **options):
    return subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False,
                          **options)


def read(*path):
    return SOURCE.joinpath(*path).read_text(encoding="utf-8")


def version():
    return re.search(r"^project\(ZemoRadio VERSION ([\d.]+) ", read("CMakeLists.txt"), re.M).group(1)


class InFolder(unittest.TestCase):
    def setUp(self):
        held = tempfile.TemporaryDirectory(prefix="zemo-packaging-")
        self.addCleanup(held.cleanup)
        self.folder = pathlib.Path(held.name)

    def accepted(self, result):
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return result.stdout + result.stderr


def main():
    """By the words SOURCE BUILD CMAKE CASE."""
    global SOURCE, BUILD, CMAKE
    SOURCE, BUILD, CMAKE = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    unittest.main(module="__main__", argv=[sys.argv[0], *sys.argv[4:]])

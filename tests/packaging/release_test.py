#!/usr/bin/env python3
"""Tries the release of a version, up to its tag, in a small checkout of the test's own.

    release_test.py SOURCE BUILD CMAKE CASE

Its packages hold nothing but their names, and the programs of its soak say one line each: both are given by options
that whoever releases has, too.
"""

import os
import re
import shutil

import trial
from trial import InFolder, run, version

NOTES = "- **On air:** something that is told over a line which is longer than a line of a\n  changelog is.\n"
WORDS = {"GIT_AUTHOR_NAME": "Releaser", "GIT_AUTHOR_EMAIL": "releaser@example.org",
         "GIT_COMMITTER_NAME": "Releaser", "GIT_COMMITTER_EMAIL": "releaser@example.org",
         "GIT_CONFIG_GLOBAL": "/dev/null", "GIT_CONFIG_SYSTEM": "/dev/null"}
PACKAGES = ("zemoradio", "zemoradio-dbgsym", "zemoradio-demo")
SOAK = ("ScreenSoak", "KillBench", "FaultHour")
DAY = "2031-02-03"


class Changelog(InFolder):
    def told(self, *words):
        return run(trial.SOURCE / "packaging/changelog.py", *words)

    def test_agrees(self):
        text = trial.read("CHANGELOG.md")
        self.assertIn("\n## [Unreleased]\n", text)
        newest = re.search(r"^## \[([\d.]+)\] - ([\d-]+)$", text, re.M)
        self.assertEqual(newest.group(1), version())
        day = re.search(r"^set\(ZEMO_RELEASE_DATE ([\d-]+)\)", trial.read("CMakeLists.txt"), re.M)
        self.assertEqual(newest.group(2), day.group(1))

    def test_debian(self):
        written = self.told("debian", "Somebody <somebody@example.org>")
        self.assertEqual(written.returncode, 0, written.stderr)
        self.assertLessEqual(max(len(line) for line in written.stdout.splitlines()), 80)
        file = self.folder / "changelog"
        file.write_text(written.stdout, encoding="utf-8")
        parsed = run("dpkg-parsechangelog", "-l", file, "--all")
        self.assertEqual((parsed.returncode, parsed.stderr), (0, ""))
        self.assertIn(f"Version: {version()}\n", parsed.stdout)
        told = run("dpkg-parsechangelog", "-l", file, "--count", "1").stdout
        self.assertIn("Maintainer: Somebody <somebody@example.org>\n", told)
        self.assertGreater(told.count("\n   * "), 5)

    def test_malformed(self):
        file = self.folder / "CHANGELOG.md"
        for text, why in (
                ("# Changelog\n", "its first entry is not '## [Unreleased]'"),
                ("## [Unreleased]\n### New\n- x\n", "line 2: 'New' is none of Added, "),
                ("## [Unreleased]\n### Added\nx\n", "line 3: neither an item nor a kind of them"),
                ("## [Unreleased]\n## 1.0.0\n", "line 2: neither '## [Unreleased]' nor "),
                ("## [Unreleased]\n## [1.0.0] - 2031-01-01\n## [1.0.1] - 2031-01-02\n",
                 "its versions do not stand once each, newest first"),
                ("## [Unreleased]\n", "nothing is unreleased that 1.0.0 could have")):
            file.write_text(text, encoding="utf-8")
            refused = self.told("--file", file, "release", "1.0.0", DAY)
            self.assertEqual((refused.returncode, refused.stdout), (1, ""), text)
            self.assertTrue(refused.stderr.startswith("changelog: CHANGELOG.md: " + why), refused.stderr)
            self.assertEqual(refused.stderr.count("\n"), 1)
            self.assertEqual(file.read_text(encoding="utf-8"), text)


class Release(InFolder):
    def setUp(self):
        super().setUp()
        self.root, self.to = self.folder / "checkout", self.folder / "release"
        self.root.mkdir()
        shutil.copytree(trial.SOURCE / "packaging", self.root / "packaging")
        shutil.copy(trial.SOURCE / "CMakeLists.txt", self.root)
        (self.root / ".gitignore").write_text("/build/\n__pycache__/\n", encoding="utf-8")
        self.put("CHANGELOG.md", "# Changelog\n\nWords.\n\n## [Unreleased]\n\n### Added\n\n" + NOTES +
                 f"\n## [{version()}] - 2030-01-01\n\n### Added\n\n- Old.\n")
        self.put_program(self.root / "test.sh", "echo tested >>../tested")
        self.git("init", "-q", "-b", "main")
        self.commit("Begin")
        self.make_packages("7.8.9")
        self.make_soak("7.8.9")

    def put(self, name, text):
        (self.root / name).write_text(text, encoding="utf-8")

    @staticmethod
    def put_program(path, does):
        path.write_text("#!/bin/sh\n" + does + "\n", encoding="utf-8")
        path.chmod(0o755)

    def git(self, *words):
        return self.accepted(run("git", *words, cwd=self.root, env={**os.environ, **WORDS})).strip()

    def commit(self, what):
        self.git("add", "-A")
        self.git("commit", "-q", "-m", what)

    def make_packages(self, of):
        shutil.rmtree(self.folder / "packages", ignore_errors=True)
        for name in PACKAGES:
            made = self.folder / "packages" / name
            (made / "DEBIAN").mkdir(parents=True)
            (made / "DEBIAN/control").write_text(
                f"Package: {name}\nVersion: {of}\nArchitecture: all\nMaintainer: a <a@example.org>\n"
                "Description: nothing\n", encoding="utf-8")
            self.accepted(run("dpkg-deb", "--root-owner-group", "--build", made, self.folder / "packages" /
                              f"{name}_7.8.9_all.deb"))
            shutil.rmtree(made)

    def make_soak(self, of, fault_hour=0):
        (self.folder / "build").mkdir(exist_ok=True)
        self.put_program(self.folder / "build/zemoradio", f"echo Zemo Radio {of}")
        for name in SOAK:
            status = fault_hour if name == "FaultHour" else 0
            self.put_program(self.folder / "build" / name, f"echo {name} aired $*; exit {status}")

    def release(self, *words, given="7.8.9", to=None):
        return run(self.root / "packaging/release.sh", "--day", DAY, "--packages", self.folder / "packages",
                   "--build", self.folder / "build", *words, given, to or self.to,
                   cwd=self.folder, env={**os.environ, **WORDS})

    def refused(self, result, why):
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertRegex(result.stderr, r"\A(release|changelog): [^\n]+\n\Z")
        self.assertIn(why, result.stderr)
        self.assertEqual(self.git("tag"), "")

    def test_whole(self):
        self.accepted(self.release())
        self.assertEqual((self.folder / "tested").read_text(encoding="utf-8"), "tested\n")
        build = (self.root / "CMakeLists.txt").read_text(encoding="utf-8")
        self.assertIn("\nproject(ZemoRadio VERSION 7.8.9 LANGUAGES CXX)\n", build)
        self.assertIn(f"\nset(ZEMO_RELEASE_DATE {DAY})", build)
        self.assertEqual((self.root / "CHANGELOG.md").read_text(encoding="utf-8"),
                         f"# Changelog\n\nWords.\n\n## [Unreleased]\n\n## [7.8.9] - {DAY}\n\n### Added\n\n" +
                         NOTES + f"\n## [{version()}] - 2030-01-01\n\n### Added\n\n- Old.\n")
        self.assertEqual(self.git("log", "--format=%s"), "Version 7.8.9\nBegin")
        self.assertEqual(self.git("status", "--porcelain"), "")
        self.assertEqual(self.git("cat-file", "-t", "v7.8.9"), "tag")
        self.assertEqual(self.git("rev-parse", "v7.8.9^{commit}"), self.git("rev-parse", "HEAD"))
        self.assertIn("On air: something that is told", self.git("tag", "--list", "--format=%(contents)"))
        summed = self.accepted(run("sha256sum", "--check", "--strict", "SHA256SUMS", cwd=self.to))
        self.assertEqual(set(re.findall(r"^(.*): OK$", summed, re.M)),
                         {"NOTES-7.8.9.txt", *(f"{name}_7.8.9_all.deb" for name in PACKAGES),
                          *(f"figures/{name}.txt" for name in SOAK)})
        told = (self.to / "figures/FaultHour.txt").read_text(encoding="utf-8")
        self.assertTrue(told.startswith("FaultHour 3600, version 7.8.9, " + self.git("rev-parse", "--short", "HEAD")))
        self.assertTrue(told.endswith("\nFaultHour aired 3600\n"))
        self.assertEqual(self.git("remote"), "")

    def test_again(self):
        """One that a broken bound ended, with a line of the changelog added before the next beginning."""
        self.make_soak("7.8.9", fault_hour=1)
        self.refused(self.release("--soak", "short"), "FaultHour does not hold its bounds")
        self.assertEqual(self.git("log", "--format=%s"), "Version 7.8.9\nBegin")
        self.make_soak("7.8.9")
        text = (self.root / "CHANGELOG.md").read_text(encoding="utf-8")
        self.put("CHANGELOG.md", text.replace("## [Unreleased]\n", "## [Unreleased]\n\n### Added\n\n- More.\n\n### Fixed\n\n- The bound.\n"))
        self.commit("The bound holds")
        self.accepted(self.release("--soak", "short"))
        self.assertEqual(self.git("log", "--format=%s"), "Version 7.8.9\nThe bound holds\nVersion 7.8.9\nBegin")
        text = (self.root / "CHANGELOG.md").read_text(encoding="utf-8")
        self.assertIn(f"## [Unreleased]\n\n## [7.8.9] - {DAY}\n\n### Added\n\n{NOTES}- More.\n\n### Fixed\n\n"
                      "- The bound.\n", text)

    def test_again_without_a_change(self):
        self.put_program(self.folder / "build/FaultHour", "exit 3")
        self.refused(self.release(), "FaultHour does not hold its bounds")
        self.make_soak("7.8.9")
        self.accepted(self.release("--skip-tests"))
        self.assertEqual(self.git("log", "--format=%s"), "Version 7.8.9\nBegin")
        self.assertEqual((self.folder / "tested").read_text(encoding="utf-8"), "tested\n")

    def test_tests_come_first(self):
        self.put_program(self.root / "test.sh", "exit 1")
        self.commit("A test fails")
        ended = self.release()
        self.assertEqual(ended.returncode, 1)
        self.assertFalse(self.to.exists())
        self.assertEqual(self.git("tag"), "")

    def test_refusals_ahead_of_all(self):
        for words, given, to, why in (
                ((), "7.8", None, "'7.8' is no version"),
                ((), "7.8.09", None, "'7.8.09' is no version"),
                (("--day", "2031-02-30"), "7.8.9", None, "'2031-02-30' is no day"),
                (("--soak", "long"), "7.8.9", None, "usage"),
                (("--quick",), "7.8.9", None, "usage"),
                ((), "7.8.9", self.root / "release", "lies within the checkout"),
                (("--build", self.folder / "none"), "7.8.9", None, "there is no folder"),
                ((), "0.0.1", None, "0.0.1 is older than what was released already")):
            self.refused(self.release(*words, given=given, to=to), why)
        self.put("new.txt", "not committed\n")
        self.refused(self.release(), "the tree is not clean")
        (self.root / "new.txt").unlink()
        self.assertEqual(self.git("log", "--format=%s"), "Begin")
        self.assertEqual(self.git("status", "--porcelain"), "")
        self.assertFalse((self.folder / "tested").exists())

    def test_what_is_given_has_to_be_of_the_version(self):
        self.make_packages("7.8.8")
        self.refused(self.release("--skip-tests"), "is of another version within")
        self.make_packages("7.8.9")
        (self.folder / "packages/zemoradio-demo_7.8.9_all.deb").unlink()
        shutil.rmtree(self.to)
        self.refused(self.release("--skip-tests"), "has no package zemoradio-demo of version 7.8.9")
        self.make_packages("7.8.9")
        self.make_soak("7.8.8")
        self.refused(self.release("--skip-tests"), "holds another version than 7.8.9")

    def test_a_version_is_released_once(self):
        self.accepted(self.release("--skip-tests", "--soak", "none"))
        self.assertFalse((self.to / "figures").exists())
        again = self.release("--skip-tests", "--soak", "none")
        self.assertEqual((again.returncode, again.stderr),
                         (1, "release: v7.8.9 is there already: 7.8.9 was released\n"))
        older = self.release("--skip-tests", given="7.8.8")
        self.assertEqual((older.returncode, older.stderr), (1, "release: 7.8.8 is older than v7.8.9\n"))


if __name__ == "__main__":
    trial.main()

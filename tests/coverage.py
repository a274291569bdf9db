#!/usr/bin/env python3
"""Which lines of the program its tests run through, by gcov.

    tests/coverage.py [--under PERCENT] [--report] [LABEL...]

Builds the preset `coverage`, runs the tests of the labels (logic, sound and app, where none is named) and prints
the share of lines run, folder by folder, and the files below PERCENT (80). With --report it only reads what
was counted before.
"""

import argparse
import collections
import json
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
BUILD = ROOT / "build" / "coverage"


def run_tests(labels):
    jobs = str(os.cpu_count())
    targets = [f"zemo_tests_{label}" for label in labels]
    subprocess.run(["cmake", "--preset", "coverage", "--log-level=WARNING"], cwd=ROOT, check=True,
                   stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", "--preset", "coverage", "--parallel", jobs, "--target", *targets],
                   cwd=ROOT, check=True)
    for counted in BUILD.rglob("*.gcda"):
        counted.unlink()
    tests = ["ctest", "--test-dir", str(BUILD), "--label-regex", f"^({'|'.join(labels)})$",
             "--output-on-failure", "--parallel", jobs]
    if subprocess.run(tests, cwd=ROOT).returncode != 0:
        print("some tests failed; what they ran through counts", file=sys.stderr)


def lines_run():
    """By source file of the program: its lines with code, and whether each was run."""
    files = collections.defaultdict(dict)
    for counted in BUILD.rglob("*.gcda"):
        gcov = subprocess.run(["gcov", "--json-format", "--stdout", str(counted)], cwd=BUILD,
                              capture_output=True, text=True, check=True)
        for document in gcov.stdout.splitlines():
            for file in json.loads(document)["files"]:
                path = (BUILD / file["file"]).resolve()
                if ROOT / "src" not in path.parents or "tests" in path.parts:
                    continue
                lines = files[path.relative_to(ROOT)]
                for line in file["lines"]:
                    number = line["line_number"]
                    lines[number] = lines.get(number, False) or line["count"] > 0
    return files


def share(run, lines):
    return 100.0 * run / lines if lines else 100.0


def report(files, under):
    folders = collections.defaultdict(lambda: [0, 0])
    for path, lines in files.items():
        total = folders[path.parent]
        total[0] += sum(lines.values())
        total[1] += len(lines)
    print("  run  lines  folder")
    for folder, (run, lines) in sorted(folders.items()):
        print(f"{share(run, lines):5.1f} {lines:6}  {folder}")
    everything = [sum(column) for column in zip(*folders.values())]
    print(f"{share(*everything):5.1f} {everything[1]:6}  all")
    low = sorted((share(sum(lines.values()), len(lines)), path) for path, lines in files.items())
    print(f"\nfiles below {under} percent:")
    for percent, path in low:
        if percent < under:
            print(f"{percent:5.1f} {len(files[path]):6}  {path}")


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    arguments.add_argument("--under", type=float, default=80.0)
    arguments.add_argument("--report", action="store_true")
    arguments.add_argument("labels", nargs="*", default=["logic", "sound", "app"])
    given = arguments.parse_args()
    if not given.report:
        run_tests(given.labels)
    files = lines_run()
    if not files:
        sys.exit("coverage: nothing was counted")
    report(files, given.under)


if __name__ == "__main__":
    main()

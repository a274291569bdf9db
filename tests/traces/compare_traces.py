#!/usr/bin/env python3
"""Shows that a change of the house's shape changed nothing: what two builds tell and write is compared
byte for byte.

  compare_traces.py record BUILD FOLDER [--only PART...]   everything that BUILD tells and leaves behind
  compare_traces.py compare BEFORE AFTER                   two such folders; exit status 1 where they differ

BUILD is a release build's folder with all of its tests, FOLDER is made anew. Parts:
  tests     every station of every scenario: its events, its whole state at the end, its files, its base
  week      a week of the demo with an operator who works (week.script), in place: trace, files, base
  words     what the commands print: help, lists, reports
  sound     five minutes of the demo rendered
  pictures  the screens as their tests draw them
Record both on the same day (the demo's campaigns begin today) and on the same machine. About seven
minutes on two cores.
"""

import argparse
import fcntl
import hashlib
import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
# The demo's base holds its own path: both builds work at the same place, one after the other.
PLACE = pathlib.Path(tempfile.gettempdir()) / f"zemo-traces-{os.getuid()}"
SOUNDS = {".wav", ".mp3", ".flac", ".ogg"}
DEMO_HOURS = 7 * 24
COMMANDS = ["run", "simulate", "render", "demo", "check", "why", "models", "grid", "affidavit",
            "settings", "devices", "campaign", "compact"]
# What differs from run to run of one build, with the reason.
UNSTEADY = {
    "tests/Grid.ItPrintsToAPdfInTheSizeThatWasAsked": "a PDF holds the moment at which it was made",
    "pictures/search-1920.png": "a search on its way is drawn, as far as it has come",
}


def run(command, to=None, env=None):
    """Runs a command; what it prints goes to the file `to`, with its exit status at the end."""
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, check=False,
                          stderr=subprocess.STDOUT, env={**os.environ, **(env or {})})
    if to is not None:
        to.parent.mkdir(parents=True, exist_ok=True)
        to.write_bytes(done.stdout + f"exit status {done.returncode}\n".encode())
    return done


def must(command, env=None):
    done = run(command, env=env)
    if done.returncode != 0:
        sys.exit(f"compare_traces: {' '.join(map(str, command))}\n{done.stdout.decode()[-2000:]}")


def rows_of_base(path):
    base = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    base.text_factory = bytes
    lines = base.execute("SELECT type, name, sql FROM sqlite_master ORDER BY type, name").fetchall()
    for (name,) in base.execute("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name"):
        lines.append(name)
        lines += base.execute(f'SELECT rowid, * FROM "{name.decode()}" ORDER BY rowid').fetchall()
    base.close()
    return "".join(f"{line}\n" for line in lines).encode()


def keep_files(folder, to):
    """Copies what a run left behind: sounds as their sum, bases as their rows."""
    for path in sorted(folder.rglob("*")):
        if not path.is_file():
            continue
        content = path.read_bytes()
        if path.suffix.lower() in SOUNDS:
            content = hashlib.sha256(content).hexdigest().encode()
        elif content.startswith(b"SQLite format 3"):
            content = rows_of_base(path)
        kept = to / path.relative_to(folder)
        kept.parent.mkdir(parents=True, exist_ok=True)
        kept.write_bytes(content)


def clear_place():
    for path in PLACE.iterdir():
        if path.is_dir():
            shutil.rmtree(path)
        elif path.name != "lock":
            path.unlink()


def make_demo(build):
    clear_place()
    (PLACE / "machine").mkdir()
    must([build / "zemoradio", "demo", PLACE / "demo"])


def record_tests(build, folder):
    records = folder / "tests"
    records.mkdir(parents=True)
    clear_place()
    (PLACE / "tests").mkdir()
    for suite in sorted(build.glob("zemo_*_tests")):
        if b"ZEMO_RECORDS" not in suite.read_bytes():
            continue
        print(f"  {suite.name}", flush=True)
        must([suite, "--gtest_brief=1"], {"ZEMO_RECORDS": str(records.resolve()), "QT_QPA_PLATFORM": "offscreen",
                                          "TEST_TMPDIR": str(PLACE / "tests")})


def record_week(build, folder):
    make_demo(build)
    trace = folder / "week" / "trace.jsonl"
    trace.parent.mkdir(parents=True)
    run([build / "zemoradio", "simulate", "--station", PLACE / "demo", "--machine", PLACE / "machine",
         "--in-place", "--from", "2026-11-23 05:30:00", "--for", f"{DEMO_HOURS}h", "--script",
         HERE / "week.script", "--trace", trace, "--choices", folder / "week" / "choices.jsonl"],
        folder / "week" / "words")
    keep_files(PLACE, folder / "week" / "left")


def record_words(build, folder):
    make_demo(build)
    program, words = build / "zemoradio", folder / "words"
    where = ["--station", PLACE / "demo", "--machine", PLACE / "machine"]
    run([program, "--help"], words / "help")
    for command in COMMANDS:
        run([program, command, "--help"], words / f"help-{command}")
    monday = "2026-11-23"
    for name, arguments in {
            "check": ["check", PLACE / "demo", "--machine", PLACE / "machine"],
            "models": ["models", "list", *where],
            "grid": ["grid", *where, "--day", monday],
            "grid.json": ["grid", *where, "--day", monday, "--json"],
            "settings": ["settings", *where, "list"],
            "settings.json": ["settings", *where, "list", "--json"],
            "settings-unknown": ["settings", *where, "get", "Nothing"],
            "settings-set": ["settings", *where, "set", "FadeOut", "1500"],
            "settings-refused": ["settings", *where, "set", "FadeOut", "-1"],
            "campaigns": ["campaign", *where, "list"],
            "campaigns.json": ["campaign", *where, "list", "--json"],
            "campaign": ["campaign", *where, "show", "1"],
            "why": ["why", *where, "--code", "1", "--at", f"{monday} 12:00:00"],
            "why.json": ["why", *where, "--code", "1", "--at", f"{monday} 12:00:00", "--json"],
            "wrong-use": ["simulate", "--for", "never"],
    }.items():
        run([program, *arguments], words / name)
    for number, line in enumerate(["00:00:00 nothing", "00:00:00 keydown", "later start", "+1 insert film 1",
                                   "+1 mode sideways", "+1 save only-a-label"]):
        script = PLACE / "wrong.script"
        script.write_text(line + "\n")
        run([program, "simulate", *where, "--for", "1s", "--script", script], words / f"script-{number}")
    keep_files(PLACE / "demo", words / "left")


def record_sound(build, folder):
    make_demo(build)
    (folder / "sound").mkdir(parents=True)
    must([build / "zemoradio", "render", "--station", PLACE / "demo", "--machine", PLACE / "machine",
          "--from", "2026-11-23 11:57:00", "--for", "5m", "--trace", folder / "sound" / "trace.jsonl",
          "--audio", PLACE / "air.wav"])
    (folder / "sound" / "sum").write_text(hashlib.sha256((PLACE / "air.wav").read_bytes()).hexdigest())


def record_pictures(build, folder):
    """The pictures that the screens' tests drew last: they run with the part `tests`."""
    for picture in sorted((build / "screenshots").glob("*.png")):
        (folder / "pictures").mkdir(parents=True, exist_ok=True)
        shutil.copy(picture, folder / "pictures")


PARTS = {"tests": record_tests, "week": record_week, "words": record_words, "sound": record_sound,
         "pictures": record_pictures}


def record(build, folder, parts):
    if not (build / "zemoradio").is_file():
        sys.exit(f"compare_traces: there is no program in {build}")
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    PLACE.mkdir(mode=0o700, exist_ok=True)
    with open(PLACE / "lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        for part in parts:
            print(part, flush=True)
            PARTS[part](build, folder)


def first_difference(before, after):
    for number, (old, new) in enumerate(zip(before.splitlines(), after.splitlines()), 1):
        if old != new:
            at = next((i for i, (a, b) in enumerate(zip(old, new)) if a != b), min(len(old), len(new)))
            shown = slice(max(0, at - 60), at + 60)
            return f"line {number}: {old[shown]!r} / {new[shown]!r}"
    return f"{len(before)} bytes / {len(after)}"


def compare(before, after):
    names = {str(path.relative_to(top)) for top in (before, after) for path in top.rglob("*")
             if path.is_file()}
    if not names:
        sys.exit("compare_traces: nothing is recorded there")
    different = 0
    for name in sorted(names):
        old, new = before / name, after / name
        if any(name.startswith(unsteady) for unsteady in UNSTEADY):
            continue
        if not old.is_file() or not new.is_file():
            what = f"only in {before if old.is_file() else after}"
        elif old.read_bytes() != new.read_bytes():
            what = first_difference(old.read_bytes(), new.read_bytes())
        else:
            continue
        different += 1
        print(f"{name}: {what}")
    print(f"{len(names)} compared, {different} different")
    return 1 if different else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    orders = parser.add_subparsers(dest="order", required=True)
    recording = orders.add_parser("record")
    recording.add_argument("build", type=pathlib.Path)
    recording.add_argument("folder", type=pathlib.Path)
    recording.add_argument("--only", nargs="+", choices=PARTS, default=list(PARTS))
    comparing = orders.add_parser("compare")
    comparing.add_argument("before", type=pathlib.Path)
    comparing.add_argument("after", type=pathlib.Path)
    given = parser.parse_args()
    if given.order == "record":
        record(given.build.resolve(), given.folder, given.only)
        return 0
    return compare(given.before, given.after)


if __name__ == "__main__":
    sys.exit(main())

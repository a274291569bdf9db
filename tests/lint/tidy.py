#!/usr/bin/env python3
"""Runs clang-tidy over the program's sources (not its tests), by the set in .clang-tidy.

    cmake --preset tidy && tests/lint/tidy.py build/tidy [--all]

As the compiler does, it reads up to eight sources in one turn: most of its time goes into the headers that
they share. A turn that was clean is not looked at again before a source of it, a header of ours below, its
compile command, the set or the tool changes; build/tidy/tidy remembers. What was changed last comes first,
and the first finding ends the run, unless --all asks for every one.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCES = ROOT / "src"
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def text_of(path, known={}):
    if path not in known:
        known[path] = path.read_text(encoding="utf-8")
    return known[path]


def with_headers(source):
    """The source and all headers of ours that it includes, at any depth."""
    found, open_ends = {source}, [source]
    while open_ends:
        path = open_ends.pop()
        for name in INCLUDE.findall(text_of(path)):
            for header in (SOURCES / name, path.parent / name):
                if header.is_file() and header not in found:
                    found.add(header)
                    open_ends.append(header)
    return sorted(found)


def is_looked_at(path):
    """Whether the path is a source of the program or what the build makes to compile several in one turn."""
    if path.parent.name == "Unity":
        return all(is_looked_at(pathlib.Path(name)) for name in INCLUDE.findall(text_of(path)))
    return SOURCES in path.parents and "tests" not in path.parts


def key_of(source, command, constants):
    digest = hashlib.sha256(constants)
    digest.update(command.encode())
    for path in with_headers(source):
        digest.update(text_of(path).encode() + b"\0")
    return digest.hexdigest()


def main(arguments):
    build = pathlib.Path(arguments[0]).resolve()
    every = "--all" in arguments[1:]
    memory = build / "tidy"
    memory.mkdir(exist_ok=True)
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    constants = version + (ROOT / ".clang-tidy").read_bytes()

    due = {}  # by source: the mark of a clean result
    for entry in json.loads((build / "compile_commands.json").read_text()):
        source = pathlib.Path(entry["directory"], entry["file"]).resolve()
        if is_looked_at(source):
            mark = memory / key_of(source, entry["command"], constants)
            if not mark.exists():
                due[source] = mark

    def look_at(source):
        run = subprocess.run(["clang-tidy", "-p", str(build), "--quiet", str(source)],
                             capture_output=True, text=True)
        return source, run.returncode, run.stdout.replace(f"{ROOT}/", "")

    told = set()
    newest_first = sorted(due, key=lambda source: -max(p.stat().st_mtime for p in with_headers(source)))
    failed = False
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = [pool.submit(look_at, source) for source in newest_first]
        for run in concurrent.futures.as_completed(runs):
            if run.cancelled():
                continue
            source, status, output = run.result()
            if status == 0:
                due[source].touch()
                continue
            failed = True
            if output not in told:
                told.add(output)
                print(output or f"{source}: clang-tidy ended with {status}", flush=True)
            if not every:
                for later in runs:
                    later.cancel()
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

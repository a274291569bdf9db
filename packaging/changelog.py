#!/usr/bin/env python3
"""The changelog: what the packages are told of it, and a release's entry in it.

    packaging/changelog.py [--file CHANGELOG.md] COMMAND

    debian MAINTAINER      the versions as debian/changelog has them, newest first
    notes VERSION          what a version has, as plain text
    release VERSION DAY    moves what stands under "Unreleased" to that version, of that day (YYYY-MM-DD)

A version that has an entry already gets what was unreleased behind what it has, kind by kind, and that day. Ends with
status 1 and one line where the file has another form, or nothing to release.
"""

import argparse
import datetime
import email.utils
import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parents[1]
HEAD = re.compile(r"## \[(?:(?P<version>\d+\.\d+\.\d+)\] - (?P<day>\d{4}-\d\d-\d\d)|Unreleased\])")
KINDS = ("Added", "Changed", "Deprecated", "Removed", "Fixed", "Security")
DISTRIBUTION = "bookworm"


class Malformed(Exception):
    """What is wrong with the file, in one line."""


class Entry:
    """A version, or what is unreleased: words ahead of its kinds, and items of each kind, as lists of lines."""

    def __init__(self, version=None, day=None):
        self.version, self.day, self.words = version, day, []
        self.kinds = {}

    def take(self, other):
        """What the other has behind one's own."""
        self.words += other.words
        for kind, items in other.kinds.items():
            self.kinds.setdefault(kind, []).extend(items)

    def empty(self):
        return not self.words and not any(self.kinds.values())

    def text(self):
        head = f"## [{self.version}] - {self.day}" if self.version else "## [Unreleased]"
        parts = [head] + (["\n".join(self.words)] if self.words else [])
        for kind in KINDS:
            if self.kinds.get(kind):
                parts += [f"### {kind}", "\n".join("\n".join(item) for item in self.kinds[kind])]
        return "\n\n".join(parts) + "\n"


def read_entry(head, lines, number):
    entry, kind = Entry(head["version"], head["day"]), None
    for number, line in enumerate(lines, number + 1):
        if line.startswith("### "):
            kind = line[4:]
            if kind not in KINDS:
                raise Malformed(f"line {number}: '{kind}' is none of {', '.join(KINDS)}")
            entry.kinds.setdefault(kind, [])
        elif line.startswith("- ") and kind:
            entry.kinds[kind].append([line])
        elif line.startswith("  ") and kind and entry.kinds[kind]:
            entry.kinds[kind][-1].append(line)
        elif line and not kind:
            entry.words.append(line)
        elif line:
            raise Malformed(f"line {number}: neither an item nor a kind of them")
    return entry


def read(path):
    """The lines ahead of the first entry, and the entries: the unreleased one first, then by version, newest first."""
    lines = path.read_text(encoding="utf-8").splitlines()
    heads = [number for number, line in enumerate(lines) if line.startswith("## ")]
    entries = []
    for at, number in enumerate(heads):
        head = HEAD.fullmatch(lines[number])
        if not head:
            raise Malformed(f"line {number + 1}: neither '## [Unreleased]' nor '## [VERSION] - YYYY-MM-DD'")
        end = heads[at + 1] if at + 1 < len(heads) else len(lines)
        entries.append(read_entry(head, lines[number + 1:end], number + 1))
    if not entries or entries[0].version:
        raise Malformed("its first entry is not '## [Unreleased]'")
    numbers = [tuple(map(int, entry.version.split("."))) for entry in entries[1:] if entry.version]
    if len(numbers) != len(entries) - 1 or numbers != sorted(set(numbers), reverse=True):
        raise Malformed("its versions do not stand once each, newest first")
    return lines[:heads[0]], entries


def release(path, version, day):
    ahead, entries = read(path)
    unreleased, versions = entries[0], entries[1:]
    if versions and versions[0].version == version:
        versions[0].day = day
    elif unreleased.empty():
        raise Malformed(f"nothing is unreleased that {version} could have")
    else:
        versions.insert(0, Entry(version, day))
    versions[0].take(unreleased)
    numbers = [tuple(map(int, entry.version.split("."))) for entry in versions]
    if numbers != sorted(set(numbers), reverse=True):
        raise Malformed(f"{version} is older than what was released already")
    text = "\n".join(ahead) + "\n" + "\n".join(entry.text() for entry in [Entry(), *versions])
    path.write_text(text, encoding="utf-8")


def plain(item):
    """An item without the marks of its form: bold words, and links by their text."""
    text = " ".join(line.strip() for line in item)[2:]
    text = re.sub(r"\[([^\]]+)\]\([^)]+\)", r"\1", text)
    return text.replace("**", "")


def notes(entry):
    lines = [textwrap.fill(" ".join(entry.words), 76)] if entry.words else []
    for kind in KINDS:
        if entry.kinds.get(kind):
            lines += ["", kind + ":"]
            lines += [textwrap.fill(plain(item), 76, initial_indent="- ", subsequent_indent="  ")
                      for item in entry.kinds[kind]]
    return "\n".join(lines).strip() + "\n"


def debian(entry, maintainer):
    lines = [f"zemoradio ({entry.version}) {DISTRIBUTION}; urgency=medium", ""]
    fill = {"width": 79, "initial_indent": "  * ", "subsequent_indent": "    ", "break_on_hyphens": False}
    if entry.words:
        lines.append(textwrap.fill(" ".join(entry.words), **fill))
    for kind in KINDS:
        lines += [textwrap.fill(f"{kind}: {plain(item)}", **fill) for item in entry.kinds.get(kind, [])]
    day = datetime.datetime.fromisoformat(entry.day).replace(tzinfo=datetime.timezone.utc)
    return "\n".join([*lines, "", f" -- {maintainer}  {email.utils.format_datetime(day)}"]) + "\n"


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    arguments.add_argument("--file", type=pathlib.Path, default=ROOT / "CHANGELOG.md")
    commands = arguments.add_subparsers(dest="command", required=True)
    commands.add_parser("debian").add_argument("maintainer")
    commands.add_parser("notes").add_argument("version")
    released = commands.add_parser("release")
    released.add_argument("version")
    released.add_argument("day")
    given = arguments.parse_args()
    try:
        if given.command == "release":
            return release(given.file, given.version, given.day)
        versions = read(given.file)[1][1:]
        if given.command == "debian":
            return print(*(debian(entry, given.maintainer) for entry in versions), sep="\n", end="")
        told = [entry for entry in versions if entry.version == given.version]
        if not told:
            raise Malformed(f"it has no version {given.version}")
        return print(notes(told[0]), end="")
    except Malformed as wrong:
        sys.exit(f"changelog: {given.file.name}: {wrong}")


if __name__ == "__main__":
    main()

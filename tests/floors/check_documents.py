#!/usr/bin/env python3
"""Holds the names of files in the documents against the tree.

    check_documents.py ROOT

A name is what stands in backticks and looks like a path of ours: with a slash and an ending of a source, or
such an ending alone. It is looked for from the root, from src/, and beside any file of that name. Of the page
on where to change what, names of types and routines are held against the sources as well.
"""

import pathlib
import re
import sys

DOCUMENTS = ["README.md", "ARCHITECTURE.md", "CONTRIBUTING.md", "docs"]
NAME = re.compile(r"`([\w./-]+\.(?:h|cpp|inc|py|sh|md))`")
WORDS_OF = "where-to-change.md"
WORD = re.compile(r"`(?:\w+::)?([A-Z]\w+)`")


def documents(root):
    for name in DOCUMENTS:
        path = root / name
        yield from [path] if path.suffix else sorted(path.rglob("*.md"))


def is_there(root, name, names):
    return (root / name).is_file() or (root / "src" / name).is_file() or \
        ("/" not in name and name in names)


def missing(root):
    """A line for each name that no file bears, and the count of names looked at."""
    names = {path.name for folder in ("src", "tests", "bench", "setup", "docs", "packaging", ".ci")
             for path in (root / folder).rglob("*")}
    words = {word for path in (root / "src").rglob("*") if path.suffix in (".h", ".cpp")
             for word in re.findall(r"\w+", path.read_text(encoding="utf-8"))}
    found, count = [], 0
    for document in documents(root):
        for number, line in enumerate(document.read_text(encoding="utf-8").splitlines(), 1):
            for name in NAME.findall(line):
                count += 1
                if not is_there(root, name, names):
                    found.append(f"{document.relative_to(root)}:{number}: there is no {name}")
            for word in WORD.findall(line) if document.name == WORDS_OF else []:
                count += 1
                if word not in words:
                    found.append(f"{document.relative_to(root)}:{number}: no source has {word}")
    return found, count


def main(arguments):
    found, count = missing(pathlib.Path(arguments[0]))
    print(*found, sep="\n", end="\n" if found else "")
    print(f"{count} names looked at, {len(found)} that no file bears")
    return 1 if found or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

#!/usr/bin/env python3
"""Damages a station and its machine in every way that it knows, has the program air it, and judges what
comes of it (judge.py has the rules).

  hostile.py PROGRAM [--seconds N | --cases N] [--seed S] [--only ATTACK] [--case K] [--sanitized]

The attacks take turns. Case K of an attack is the same for the same seed, whatever else runs: what a
finding names can be run again alone, and its folder is kept. Prints a table; exit status 1 with findings.
"""

import argparse
import collections
import pathlib
import random
import shutil
import sys
import tempfile
import time

import attack_base
import attack_clocks
import attack_disks
import attack_files
import attack_office
import attack_settings
import attack_sounds
import attack_words
from ground import Ground

ATTACKS = {name: attack
           for module in (attack_base, attack_settings, attack_files, attack_office, attack_sounds, attack_words, attack_clocks,
                          attack_disks)
           for name, attack in module.ATTACKS.items()}


def wishes():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("--seconds", type=float, default=120, help="as long as that, the demo's making aside")
    parser.add_argument("--cases", type=int, help="so many cases of each attack, however long they take")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", choices=sorted(ATTACKS), action="append")
    parser.add_argument("--case", type=int, help="only this one, and its folder is kept")
    parser.add_argument("--sanitized", action="store_true", help="the program has sanitizers: no bound of time or memory")
    return parser.parse_args()


def main():
    wish = wishes()
    folder = pathlib.Path(tempfile.mkdtemp(prefix="zemo-hostile-"))
    ground = Ground(wish.program.resolve(), folder, wish.sanitized)
    names = wish.only or list(ATTACKS)
    counts, found = collections.Counter(), collections.Counter()
    until = time.monotonic() + wish.seconds
    number = wish.case or 0
    while True:
        for name in names:
            findings = attack(ground, name, number, wish.seed)
            counts[name] += 1
            found[name] += bool(findings)
        number += 1
        if wish.case is not None or (number >= wish.cases if wish.cases else time.monotonic() >= until):
            break
    tell(counts, found)
    if wish.case is not None or sum(found.values()):
        print(f"kept: {folder}")
    else:
        shutil.rmtree(folder, ignore_errors=True)
    return 1 if sum(found.values()) else 0


def attack(ground, name, number, seed):
    """One case; tells its findings as they come, and keeps its folder when there are any."""
    case = ground.case("case")
    try:
        what, findings = ATTACKS[name](case, random.Random(f"{seed}/{name}/{number}"))
    except PermissionError as refused:
        what, findings = str(refused), []
    for finding in findings:
        print(f"{name}, case {number}: {what}: {finding}", flush=True)
    if findings:
        case.folder.rename(case.folder.with_name(f"{name} {number}".replace(" ", "-")))
    return findings


def tell(counts, found):
    print("| Attack | Cases | With findings |\n|---|---|---|")
    for name in counts:
        print(f"| {name} | {counts[name]} | {found[name]} |")
    print(f"| all | {sum(counts.values())} | {sum(found.values())} |")


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Holds alert rules and the page on monitoring against the metrics of the program.

    check_rules.py METRICS RULES.yml PAGE.md

METRICS is what `zemoradio ctl metrics` printed. Each name in a rule's expression has to be one of its rows, each
rule has what an alert needs, and the page's table tells every metric with its kind and no other.
"""

import pathlib
import re
import sys

import yaml

NAME = re.compile(r"\bzemoradio_\w+")
DURATION = re.compile(r"\d+[smhd]")


def rows_and_kinds(text):
    rows, kinds = set(), {}
    for line in text.splitlines():
        if line.startswith("# TYPE "):
            name, kind = line.split()[2:]
            kinds[name] = kind
        elif not line.startswith("#"):
            rows.add(re.split(r"[{ ]", line)[0])
    return rows, kinds


def faults_of_rule(rule, rows):
    alert = rule.get("alert", "(no name)")
    if not {"alert", "expr", "labels", "annotations"} <= rule.keys():
        yield f"{alert}: expr, labels or annotations are missing"
    if rule.keys() - {"alert", "expr", "for", "labels", "annotations"}:
        yield f"{alert}: unknown keys"
    if "for" in rule and not DURATION.fullmatch(str(rule["for"])):
        yield f"{alert}: '{rule['for']}' is no duration"
    names = NAME.findall(str(rule.get("expr", "")))
    if not names:
        yield f"{alert}: names no metric"
    for name in names:
        if name not in rows:
            yield f"{alert}: there is no {name}"


def faults_of_page(text, kinds):
    told = dict(re.findall(r"^\| `(zemoradio_\w+)[^`]*` \| (\w+) \|", text, re.M))
    for name in sorted(kinds.keys() | told.keys()):
        if kinds.get(name) != told.get(name):
            yield f"{name}: a {kinds.get(name)}, on the page a {told.get(name)}"


def main(metrics, rules, page):
    rows, kinds = rows_and_kinds(pathlib.Path(metrics).read_text(encoding="utf-8"))
    groups = yaml.safe_load(pathlib.Path(rules).read_text(encoding="utf-8"))["groups"]
    alerts = [rule for group in groups for rule in group["rules"]]
    found = [fault for rule in alerts for fault in faults_of_rule(rule, rows)]
    found += faults_of_page(pathlib.Path(page).read_text(encoding="utf-8"), kinds)
    print(*found, sep="\n")
    return 1 if found or not alerts or not kinds else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

"""The base: bytes, what stands in its place, its tables, its values."""

import sqlite3

import damage
import judge

COMMANDS = [["check"], ["grid", "--station"], ["settings", "list", "--station"], ["models", "list", "--station"],
            ["campaign", "list", "--station"], ["compact", "--station"]]
# As a spreadsheet, a careless script or a cosmic ray would leave it. Texts and numbers as each other.
VALUES = [None, "", " ", "a" * 100000, b"\xff\xfe\x00\x01", -1, 0, 1, 32767, 32768, -2147483648, 2147483647,
          9.3e18, 1e308, float("nan"), "' OR 1=1 --", "%", "*", "\x00", "\r\n", "\ufeff\u202e", "99:99", "31/02/2026",
          "2147483648", "-1", "1" * 24, "0" * 400]


def bytes_damaged(case, rng):
    how = damage.bytes_of(case.base, rng)
    return f"base {how}", judge.of_air(case.air(), 1200)


def something_else(case, rng):
    what = damage.instead_of(case.base, rng, ["empty", "noise", "text", "folder", "FIFO", "loop", "/dev/null",
                                              "/dev/zero"])
    command = rng.choice(COMMANDS)
    done = case.command(*command, case.station, "--machine", case.machine) if command[0] == "check" \
        else case.command(*command, case.station)
    return f"base is {what}, {command[0]}", judge.of_command(done) + judge.of_process(case.air())


def structure(case, rng):
    """A table or a column that is gone, or is another one."""
    tables = [name for name, in case.ask("SELECT name FROM sqlite_master WHERE type = 'table' "
                                         "AND name NOT LIKE 'sqlite%'")]
    table = rng.choice(tables)
    columns = [row[1] for row in case.ask(f'PRAGMA table_info("{table}")')]
    column = rng.choice(columns)
    other = rng.choice(columns)
    orders = {
        "dropped": f'DROP TABLE "{table}"',
        "renamed": f'ALTER TABLE "{table}" RENAME TO "Other"',
        "emptied": f'DELETE FROM "{table}"',
        "column dropped": f'ALTER TABLE "{table}" DROP COLUMN "{column}"',
        "column renamed": f'ALTER TABLE "{table}" RENAME COLUMN "{column}" TO "Other"',
        "column added": f'ALTER TABLE "{table}" ADD COLUMN "Other" TEXT',
        "rows doubled": f'CREATE TABLE x AS SELECT * FROM "{table}"; DROP TABLE "{table}"; '
                        f'ALTER TABLE x RENAME TO "{table}"; INSERT INTO "{table}" SELECT * FROM "{table}"',
        "made a view": f'ALTER TABLE "{table}" RENAME TO "Other"; CREATE VIEW "{table}" AS SELECT * FROM "Other"',
        "of no types": f'CREATE TABLE x AS SELECT * FROM "{table}"; DROP TABLE "{table}"; ALTER TABLE x RENAME TO '
                       f'"{table}"',
        "columns swapped": f'UPDATE "{table}" SET "{column}" = "{other}", "{other}" = "{column}"',
    }
    how = rng.choice(list(orders))
    try:
        case.sql(*orders[how].split("; "))
    except sqlite3.Error:
        how += " (refused)"
    findings = judge.of_air(case.air(), 1200)
    command = rng.choice(COMMANDS)
    findings += judge.of_command(case.command(*command, case.station))
    return f"table {table} {how} ({column}), {command[0]}", findings


def values(case, rng):
    """One field, in one row or in all of them."""
    tables = [name for name, in case.ask("SELECT name FROM sqlite_master WHERE type = 'table' "
                                         "AND name NOT LIKE 'sqlite%'")
              if case.ask(f'SELECT COUNT(*) FROM "{name}"')[0][0] > 0]
    done = []
    for _ in range(rng.choice([1, 1, 3])):
        table = rng.choice(tables)
        column = rng.choice([row[1] for row in case.ask(f'PRAGMA table_info("{table}")')])
        value = rng.choice(VALUES)
        one = " WHERE rowid = (SELECT rowid FROM \"%s\" ORDER BY random() LIMIT 1)" % table
        everywhere = rng.random() < 0.5
        try:
            case.sql((f'UPDATE "{table}" SET "{column}" = ?' + ("" if everywhere else one), (value,)))
            done.append(f"{table}.{column} = {str(value)[:20]!r}{' everywhere' if everywhere else ''}")
        except sqlite3.Error:
            pass
    command = rng.choice(COMMANDS)
    findings = judge.of_air(case.air(), 1200) + judge.of_command(case.command(*command, case.station))
    return f"{', '.join(done)}, {command[0]}", findings


def new_base(case, rng):
    """A base that is handed over, damaged."""
    new = case.station / "New.mdb"
    new.write_bytes(case.base.read_bytes())
    how = damage.bytes_of(new, rng) if rng.random() < 0.6 else damage.instead_of(new, rng)
    return f"New.mdb {how}", judge.of_air(case.air(), 1200)


ATTACKS = {"base bytes": bytes_damaged, "base replaced": something_else, "base structure": structure,
           "base values": values, "base handed over": new_base}

"""Every setting at its extremes."""

import sqlite3

import judge

EXTREMES = [-32768, -1, 0, 1, 2, 255, 1000, 32767, 2147483647, None, "", "abc", "1" * 5000]


def field(case, rng):
    names = [row[1] for row in case.ask('PRAGMA table_info("Cnf")')]
    done = []
    for _ in range(rng.choice([1, 1, 1, 4])):
        name, value = rng.choice(names), rng.choice(EXTREMES)
        try:
            case.sql((f'UPDATE Cnf SET "{name}" = ?', (value,)))
            done.append(f"{name} = {str(value)[:12]!r}")
        except sqlite3.Error:
            pass
    return ", ".join(done), judge.of_air(case.air(), 1200)


def by_command(case, rng):
    listed = case.command("settings", "list", "--station", case.station)
    names = [line.split()[0] for line in listed.out.splitlines() if line.split()]
    findings = judge.of_command(listed, allowed=(0,))
    name = rng.choice(names) if names else "Squelette"
    value = rng.choice([str(extreme) for extreme in EXTREMES] + ["-0", "1e9", "٣", "--help", "$(id)"])
    findings += judge.of_command(case.command("settings", "--station", case.station, "set", name, value))
    findings += judge.of_air(case.air(minutes=5), 300)
    return f"settings set {name} {value[:12]!r}", findings


def machine_values(case, rng):
    names = ["AutoPlay", "XRapport", "StartAndStop", "PCProduction", "LastCompactage", "AudioOut", "Langue",
             "StopByHour", "Veille", "Unknown"]
    text = "".join(f"{rng.choice(names)}={rng.choice(EXTREMES)}{rng.choice(['', chr(13), '=', chr(0)])}\n"
                   for _ in range(rng.randint(1, 20)))
    (case.machine / "Settings.Ini").write_text(text)
    return f"Settings.Ini {text[:60]!r}", judge.of_air(case.air(), 1200)


ATTACKS = {"settings": field, "settings by command": by_command, "machine's values": machine_values}

"""Scripts and command lines."""

import judge

ORDERS = ["start", "stop", "next", "keydown 32", "keyup 32", "keydown 97", "mode auto", "mode live", "request", "compose",
          "load 1", "load 99", "save LISTE 25/12/2026 08:00 1", "new", "insert music 1", "insert jingle 1 2",
          "insert spot 1", "insert other 1 1", "insert extract 2", "move 1 5", "move 9 1", "delete 1", "delete 400",
          "rightclick 2", "break 1", "break 3 at 2", "preview 2026-11-25", "local AutoPlay 1", "check OptionDirect on",
          "check MnuStartStop off", "contact 1 on", "contact 1 off", "joystick 2 down", "joystick 2 up",
          "clipboard INSERT", "sql UPDATE Cnf SET CycleMaxi = 1", "sql DELETE FROM Playlist", "remove Genre.Txt",
          "set PmixDef 3000", "answer yes", "answer no", "dump"]
WORDS = ["", "-1", "0", "99999999999", "1e9", "é", "a" * 3000, "\\", "--", "2026-02-30", "25:61", "\t", "'; DROP TABLE Cnf",
         "2026-11-20 11:00:00", "/nowhere", "-", "NaN", "7d", "0s"]


def script(case, rng):
    """Orders that an operator could give, at any pace; the air stays whole wherever it is asked for."""
    lines = []
    for _ in range(rng.randint(5, 60)):
        order = rng.choice([order for order in ORDERS if order not in ("stop", "mode live", "check OptionDirect on")])
        lines.append(f"+{rng.choice([0, 0, 0.1, 1, 7, 40])} {order}")
    done = case.air(script="\n".join(lines) + "\n")
    return f"{len(lines)} orders", judge.of_process(done, (0,)) + judge.of_command(done)


def broken_script(case, rng):
    """Lines that cannot be read end the run before it begins, with the line's number."""
    lines = [f"+1 {rng.choice(ORDERS)}" for _ in range(rng.randint(1, 5))]
    words = rng.choice(lines).split()
    words[rng.randrange(len(words))] = rng.choice(WORDS) or '""'
    lines.insert(rng.randrange(len(lines) + 1), " ".join(words))
    if rng.random() < 0.3:
        lines = ["".join(chr(rng.randrange(1, 0x300)) for _ in range(rng.choice([10, 5000])))]
    done = case.air(minutes=2, script="\n".join(lines) + "\n")
    return f"a script of {lines[0][:40]!r}", judge.of_command(done)


def command_line(case, rng):
    commands = ["run", "simulate", "render", "check", "why", "models", "grid", "affidavit", "settings", "campaign",
                "compact", "devices"]
    options = ["--station", "--machine", "--from", "--for", "--script", "--trace", "--audio", "--day", "--code", "--at",
               "--advertiser", "--to", "--csv", "--json", "--report", "--output", "--in-place", "--no-start", "list",
               "show", "get", "set", "export", "remove", "--choices"]
    words = [rng.choice(commands)]
    for _ in range(rng.randint(0, 5)):
        words.append(rng.choice(options))
        if rng.random() < 0.7:
            words.append(rng.choice(WORDS + [str(case.station)] * 8))
    if words[0] == "run":  # would be on air until it is interrupted
        words += ["--for", "1s", "--output", "null"]
    if words[0] in ("simulate", "render"):
        words += ["--for", "60s"]
    return " ".join(word[:40] for word in words), judge.of_command(case.command(*words))


ATTACKS = {"scripts": script, "broken scripts": broken_script, "command lines": command_line}

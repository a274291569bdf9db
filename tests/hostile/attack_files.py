"""Side files of the station and the machine: every damage and size."""

import damage
import ground
import judge

DAYS = ["Lundi", "Mardi", "Mercredi", "Jeudi", "Vendredi", "Samedi", "Dimanche"]
STATION = (["Genre.Txt", "Decoupe.Ini", "Categori.Ini", "Messages.Txt", "Labels.Txt", "Internet.Txt", "Exclusion.Txt",
            "Donnees_Associees.Txt", "Artiste-Titre.Txt", "ExportPubs.Txt", "LectureBase.Txt", "Instrumental.Txt",
            "CheckTopage.Dat", "CD.Txt", "MajGrillePub.txt", "Langue.Txt", "rapportzemo.txt", "Tranche.Txt",
            "ZemoPasseWord.Ini", "Triskin.LDB"]
           + [f"{day}.Txt" for day in DAYS] + [f"Sq-{day}.Txt" for day in DAYS]
           + [f"StartStop.{day}" for day in range(8)] + [f"Topage.{day}" for day in range(8)])
MACHINE = ["ZemoPlay.Ini", "ZemoAudio.Ini", "ZemoOnOff.Dat", "NoRapport.txt", "Settings.Ini", "PathMap.Txt",
           "Choices.Txt", "ZemoPasseWord.Ini"]
LINES = ['"START","11:10"', '"STOP","99:99 -Q"', '"11:1', "11:15", "POP", "\t\t\t", "1;2;3", '"' * 100, "\x00", "-1",
         "99999999999999999999", "é\xff", "a" * 1000, "", "'"]


def text_of(rng):
    """Lines of every kind, up to five megabytes."""
    line = rng.choice(LINES)
    size = rng.choice([1, 50, 5000, 1000000, 5000000])
    end = rng.choice(["\r\n", "\n", "\r", ""])
    return ((line + end) * (size // (len(line + end) or 1) + 1))[:size].encode("latin-1", "replace")


def side_file(case, rng):
    done = []
    for _ in range(rng.choice([1, 1, 3])):
        folder, names = rng.choice([(case.station, STATION), (case.station, STATION), (case.machine, MACHINE)])
        path = folder / rng.choice(names)
        which = rng.random()
        if which < 0.3:
            how = damage.instead_of(path, rng)
        elif which < 0.5 and path.is_file():
            how = damage.bytes_of(path, rng)
        else:
            ground.remove(path)
            data = text_of(rng)
            path.write_bytes(data)
            how = f"{len(data)} bytes of {data[:12]!r}"
        done.append(f"{path.name} {how}")
    return "; ".join(done), judge.of_air(case.air(), 1200)


def grid_file(case, rng):
    """A campaign's grid: told by the log, by `check` and by `grid`, unless its shape still fits."""
    grids = [row[0] for row in case.ask("SELECT FILENAMEGRILLE FROM GrillePub")]
    path = case.own(rng.choice(grids))
    how = damage.bytes_of(path, rng) if rng.random() < 0.6 else damage.instead_of(path, rng)
    findings = judge.of_air(case.air(minutes=60), 3600)
    findings += judge.of_command(case.command("grid", "--station", case.station, "--day", "2026-11-20"))
    findings += judge.of_command(case.command("check", case.station))
    return f"{path.name} {how}", findings


def exchanged(case, rng):
    """Campaigns that come in by a file, with hours, marks and lines of every kind."""
    records = case.ask("SELECT * FROM GrillePub")
    lines = []
    for _ in range(rng.choice([1, 3, 300, 20000])):
        cells = [str(cell) if cell is not None else "" for cell in rng.choice(records)]
        for _ in range(rng.randint(0, 3)):
            cells[rng.randrange(len(cells))] = rng.choice(LINES)
        lines.append(rng.choice(["\t", ";", ",", "\r\n"]).join(cells))
    (case.station / "ExportPubs.Txt").write_bytes("\r\n".join(lines).encode("latin-1", "replace"))
    return f"ExportPubs.Txt of {len(lines)} lines", judge.of_air(case.air(), 1200)


ATTACKS = {"side files": side_file, "grid files": grid_file, "campaigns exchanged": exchanged}

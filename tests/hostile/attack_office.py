"""The office over what is damaged: its screens are opened, worked and closed while the station airs, and a
voice track is made between two of its titles."""

import sqlite3

import attack_base
import attack_files
import damage
import judge

TABLES = {
    "GrillePub": ["campaigns"], "Models": ["models"], "ModelSquelette": ["models"], "Variete": ["models", "report"],
    "Cnf": ["settings", "campaigns", "models", "voicetrack"], "Rapport": ["report"], "Discotheque": ["models", "voicetrack"],
    "VT": ["voicetrack"], "Raccords": ["voicetrack"], "Mesures": ["voicetrack", "report"]}
# What the office keeps beside the base, and the screens that read it.
FILES = {"Decoupe.Ini": ["campaigns"], "Categori.Ini": ["campaigns"], "Genre.Txt": ["campaigns", "models", "settings"],
         "Exclusion.Txt": ["settings"], "Instrumental.Txt": ["settings"], "StartStop.4": ["settings"],
         "Topage.4": ["settings"], "Vendredi.Txt": ["models"], "Sq-Vendredi.Txt": ["models"],
         "ReportBegin.Txt": ["report"], "VoiceTrack": ["voicetrack"]}
MACHINE_FILES = {"Settings.Ini": ["settings", "voicetrack"], "ZemoAudio.Ini": ["settings"]}
# Numbers that a field of the machine does not take.
NAMES = ["PreRoll", "LevelNormalize", "VoiceTrackInputID", "VoiceTrackOututID", "VoiceTrackLatence", "XRapport",
         "AudioOutID", "AudioOutPFLID", "RapportSquelette", "CheckDoublonYN"]
NUMBERS = ["-1", "99999999", "-2147483648", "2147483647", "NaN", "1e9", "", "0"]

WORK = {
    "campaigns": """open campaigns; show campaigns; press BtnDebut; press BtnPlus; press BtnMoins; press BtnRecherhe;
        show campaigns; press PLPub.1; cell PLPub 1 0; press BtnFin; cell GPub 3 1; cell GPub 4 1 shift; press BtnCopyGrille;
        press BtnCollerGrille; press BtnDecalY; press CmdInitGrille; press BtnReplacer; press BtnImprimer; press ImgMemo;
        put Categorie TOYS; answer yes; key Categorie enter; answer yes; key Categorie delete; press BtnNew;
        answer ok; press BtnDelete; show campaigns; close campaigns""",
    "models": """open models; show models; press JourSemaine.5; cell Models 1 0; cell Models 1 3; choose PopPourCent 35;
        press BtnSave; press BtnImport; show models; choose PopJour 1; press MnuCompteur; cell GVariete 1 0;
        choose PopPourCent 55; answer no; press JourSemaine.6; answer no; close models""",
    "settings": """open settings; show settings; put JourSemaine 4; put ChEdit 11:30; press BtnAjouter; press BtnSave;
        put ChDecoupe.0 15; press BtnInti; put SpinPurge 40; put EnchDef 1700; press BtnRech; put CheckPubToph on;
        put PlayCombo 0; answer yes; close settings""",
    "report": """open report; day 2026-11-01; press CmdCalend; day 2026-11-30; press BtnDateFin; press BtnStats; show report;
        press ListRap.1; press ListStat.0; put FiltreGenre P; press BtnImprimer; press ImprimeStat; put FiltreGenre "";
        day 1999-12-01; press CmdCalend; show report; press BtnIntoPlaylist; close report""",
    "voicetrack": """open voicetrack 3; show voicetrack; press BtnPplay2; press BtnRecord; press BtnStop; press BtnStop2;
        put CheckCut on; put PointSortie 400; put CheckTest on; press BtnStop2; put CheckCut off; press CmdVTToIntro;
        press BtnNormalize; press BtnUndoNormalize; press BtnSave; show voicetrack; close voicetrack; open voicetrack 4;
        show voicetrack; press BtnPplay2; put CheckTest on; press BtnStop2; press BtnSave; close voicetrack;
        load 99; open voicetrack 2; show voicetrack; press BtnPplay2; put CheckTest on; press BtnSave;
        show voicetrack; close voicetrack""",
}
# A track that is there already, with what it was made for, so that both can be damaged.
TRACK = ["CREATE TABLE IF NOT EXISTS Raccords(VT INTEGER, FICHIERAVANT TEXT, DUREEAVANT INTEGER, PSAVANT INTEGER, "
         "FICHIERAPRES TEXT, INTROAPRES INTEGER)",
         "INSERT INTO VT(CODE, FILENAME, LIBELLE, CUT, START, DUREE, POINTSORTIE) "
         "SELECT 1, FILENAME, '', 0, 1000, 3000, 100 FROM DiscothequeJingle LIMIT 1",
         "INSERT INTO Raccords VALUES(1, '/a.wav', 1, 1, '/b.wav', 1)",
         "INSERT INTO Playlist(CODE, LADATE, LHEURE, LIBELLE, NOJINGLE) VALUES(99, '', '', 'WITH A TRACK', 0)",
         "INSERT INTO Pls(NUMPLS, DISCOTHEQUE, FICHE) SELECT 99, MIN(CODE), MIN(CODE) FROM Discotheque",
         "INSERT INTO Pls(NUMPLS, DISCOTHEQUE, FICHE) VALUES(99, -30, 1)",
         "INSERT INTO Pls(NUMPLS, DISCOTHEQUE, FICHE) SELECT 99, MAX(CODE), MAX(CODE) FROM Discotheque"]


def script_of(screens):
    lines = []
    for screen in screens:
        orders = [order.strip() for order in WORK[screen].replace("\n", " ").split(";")]
        lines += [f"+{2 if at == 0 else 1} {order}" for at, order in enumerate(orders)]
    return "\n".join(lines) + "\n"


def worked(case, screens, rng):
    screens = list(dict.fromkeys(screens))
    rng.shuffle(screens)
    return judge.of_air(case.air(script=script_of(screens)), 1200)


def office_values(case, rng):
    """A field of what the office shows, in one row or in all of them."""
    case.sql(*TRACK)
    done, screens = [], []
    for _ in range(rng.choice([1, 1, 3])):
        table = rng.choice(list(TABLES))
        columns = [row[1] for row in case.ask(f'PRAGMA table_info("{table}")')]
        if not columns:
            continue
        column, value = rng.choice(columns), rng.choice(attack_base.VALUES)
        where = "" if rng.random() < 0.5 else f' WHERE rowid = (SELECT MAX(rowid) FROM "{table}")'
        try:
            case.sql((f'UPDATE "{table}" SET "{column}" = ?{where}', (value,)))
            done.append(f"{table}.{column} = {str(value)[:20]!r}{'' if where else ' everywhere'}")
            screens += TABLES[table]
        except sqlite3.Error:
            pass
    return ", ".join(done), worked(case, screens or ["report"], rng)


def office_files(case, rng):
    """A file that the office reads: another one, cut, of any bytes, a folder, of any size."""
    case.sql(*TRACK)
    folder, names = rng.choice([(case.station, FILES), (case.station, FILES), (case.machine, MACHINE_FILES)])
    name = rng.choice(list(names))
    path = folder / name
    if rng.random() < 0.4:
        how = damage.instead_of(path, rng)
    else:
        data = attack_files.text_of(rng)
        path.write_bytes(data)
        how = f"{len(data)} bytes of {data[:12]!r}"
    return f"{name} {how}", worked(case, names[name], rng)


def office_numbers(case, rng):
    """Values of the machine that no field takes."""
    text = "".join(f"{name}={rng.choice(NUMBERS)}\n" for name in rng.sample(NAMES, rng.randint(1, len(NAMES))))
    (case.machine / "Settings.Ini").write_text(text)
    case.sql(*TRACK)
    return f"Settings.Ini {text!r}", worked(case, ["settings", "voicetrack", "report"], rng)


ATTACKS = {"office values": office_values, "office files": office_files, "office numbers": office_numbers}

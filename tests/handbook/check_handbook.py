#!/usr/bin/env python3
"""Holds the handbook against itself and against the program.

    check_handbook.py ROOT

Links and anchors of all documents lead somewhere. The handbook's pages in both languages have the same headings,
commands and pictures. What stands in bold is a control's label, and every control stands on its screen's page. Every
sentence that the program can tell stands in the page of faults, and every message there is one of the program's. Every
file that the program names stands in the page of files.
"""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from program_texts import PLACE, Sources, one_line  # noqa: E402

LANGUAGES = {"en": 1, "fr": 0}
MOST_BYTES = 150_000  # of a picture
FAULTS, FILES = "faults.md", "files.md"
# Named by nobody's hand: an order's own, and one that no routine reads.
NO_FILES = {"script.txt", "Tranche.Txt"}
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
PICTURE = re.compile(r"!\[[^\]]+\]\(([^)\s]+)\)")
BOLD = re.compile(r"\*\*([^*]+)\*\*")
CODE = re.compile(r"`([^`]+)`")

# Where the controls of a table of texts stand: on one of the pages. Of the table, what is no control: tips, words of
# the eye, and lines that are messages.
SCREENS = [
    ("engine/screens/OnAirWindowTexts.cpp", ["screen-on-air.md", "screen-forecast.md"],
     r"(name|tip\w*)$|^(OnAir|Stopped|SilentOnAir|EmergencyOnAir|NoDevice|Draining|Next|Break|Pip|None|NoJingleOnAir|"
     r"OverlayOf|PrintTitle|Shortcuts|ShortcutText|KeysOfNext|Option\w+)$"),
    ("engine/screens/ForecastWindowTexts.cpp", ["screen-forecast.md"], r"^Forecast(Hours|Running|Done|Title)$"),
    ("engine/screens/SkeletonWindowTexts.cpp", ["screen-forecast.md"], r"(name|tip)$|^Skeleton(Hint|Copied)$"),
    ("library/LibraryTexts.cpp", ["screen-library.md", "screen-selector.md"],
     r"Tip$|^(title|GiveTo|NoWindow|ImportFinding|ImportLeft|Info|HelpText|CardList\.Tip)$"),
    ("scheduling/ModelTexts.cpp", ["screen-models.md"], r"Tip$|^(OutlookRuns|OutlookDone)$"),
    ("traffic/CampaignTexts.cpp", ["screen-campaigns.md"], r"Tip$|^(title|Tip\w+)$"),
    ("traffic/AffidavitTexts.cpp", ["screen-affidavit.md"],
     r"^(title|Aired|Missed|ToCome|Extra|Damaged|Spot|News|Crosses|\w+Count|From|To|Page)$|^ "),
    ("reports/ReportTexts.cpp", ["screen-report.md"], r"Tip$|^(title|Reading|Others|LblCompteur|ExportTitle)$"),
    ("settings/SettingsTexts.cpp", ["screen-settings.md"], r"Tip$|^(title|Unit\..*|Default\w*|On|Off|RangeTo)$"),
    ("voicetrack/VoiceTrackTexts.cpp", ["screen-voice-tracks.md"],
     r"Tip$|^(title|LblJoins(\.Done)?|Join\..*|Device|Note\.(Recording|RetakeIn)|SoundFiles|Programs)$"),
]
# Of the tables of texts, the rows that are messages: by a name, or all sentences of a table.
MESSAGES = {
    "engine/screens/OnAirWindowTexts.cpp":
        r"^(NoDeviceTip|StopFirst|Grid(Not)?Composed|MoreCharacters|LibraryWorks|CardsLocked|WrongPassword|TakenBack|"
        r"GivenAgain|Added|ListLoaded|NothingToTakeBack|NewOnAir|SaveWithoutMoment|SaveEmpty|No(Time|Date)Yet|"
        r"NoSuch(Time|Date)|List(Saved|Gone|NotSaved)|NewsAsSpots|NoBreakChosen|ComesLater|LblVerrou text)$",
    "engine/screens/ForecastWindowTexts.cpp": r"^Forecast(Failed|GapText|Missing|Unreadable)$",
    "engine/screens/SkeletonWindowTexts.cpp": r"^SkeletonNone$",
    "library/LibraryTexts.cpp": r"^(ImportStopped|ImportLeave|Changed|Gone(\.Tip)?|NotStored|StoredCards?|ConfirmInitDate)$",
    "scheduling/ModelTexts.cpp": r"^(NotSaved|OutlookFailed)$",
    "traffic/CampaignTexts.cpp": r"^(GridDamaged|EndsBefore|Gone|NotSaved|DateMissing|TooLong|LegendReading)$",
    "traffic/AffidavitTexts.cpp": r"^(a break|engine stopped|report purged|the break|minute lost|file missing|no clock)",
    "reports/ReportTexts.cpp": r"^(NoRows|ChooseRow)$",
    "settings/SettingsTexts.cpp": r"^(Test(Refused|InUse|None)|Refused\w+)$",
    "voicetrack/VoiceTrackTexts.cpp": r"^(LblMicro|LblSortie(\.Tip)?|Track(Other|Changed)\w+|Note\.Unsaved)$",
    "ui/SharedTexts.cpp": r"^PrintFailed$",
    "engine/HealthLine.cpp": r"^Health(BaseAway|BaseReads)$",
    "engine/LiveMode.cpp": r".", "library/ImportReport.cpp": r".", "settings/LockDialogue.cpp": r".",
    "station/OperatorWords.cpp": r".", "station/RecordMerge.cpp": r".", "traffic/CampaignMessages.cpp": r".",
    "traffic/GridDamageTexts.cpp": r".",
}
WORDS_OF_A_SENTENCE = 3  # fewer in a table that is all messages are a label's
# Rows of three words that are labels all the same, or instructions, by their English.
LABELS = re.compile(
    r"^(Jingle (before|after) spots|(Start|End) of playlist|Copy the (spots|news) of|Enter the font size|DD/MM/YYYY|"
    r"Broadcasting at|%1 s of buffers|Grid of|To add a new grid)")
# What the program tells that is neither a fault nor looks like one: its reports, its words for a state, and what it
# looks for in the words of others.
NO_MESSAGES = re.compile(
    r"app/(WhyReport|StatusText|NewCommand|SettingsCommand)\.cpp|check/LibraryWeek\.cpp|settings/SettingsByName\.cpp: "
    r"(hours|start times|stop times|times) |WhyCommand\.cpp: (it )?may|ImportCommand\.cpp|MoveCommand\.cpp: (; as it|"
    r"the base is now|rows, checksum)|AffidavitCommand\.cpp: no cross|Startup\.cpp: Model|SqliteError\.cpp: already "
    r"exists|SqliteDatabase\.cpp: CHECK|PostgresLine\.cpp|PostgresConnection\.cpp: (of the table|, in row)|"
    r"PostgresCopy\.cpp: whole number|PostgresDatabase\.cpp: the rights of|ServerFeed\.cpp|MusicHours\.cpp: 0 |"
    r"LibraryMessages\.cpp|LibraryRuns\.cpp|SoundFileSelector\.cpp|ReportOutput\.cpp: fiches|"
    r"DayGridComposition\.cpp: Total|SkeletonRequest\.cpp|DesktopApplication\.cpp: qt\.")
# Rows of WhyReport that a person asks about.
TOLD_ALL_THE_SAME = {"the report has no row", "no request known",
                     "it is no music, came from a stored list or by hand, or was chosen before the choices that are kept"}


class Page:
    """A Markdown page: its text without what is fenced, its fences, headings and anchors."""

    def __init__(self, path):
        self.path = path
        self.fences, lines, fence = [], [], None
        for line in path.read_text(encoding="utf-8").splitlines():
            mark = line.strip()
            if fence is None and mark.startswith("```"):
                fence = [mark[3:]]
            elif fence is not None and mark == "```":
                self.fences.append(fence)
                fence = None
            elif fence is not None:
                fence.append(mark)
            else:
                lines.append(line)
        self.text = "\n".join(lines)
        self.headings = [(len(found.group(1)), found.group(2))
                         for line in lines if (found := re.match(r"(#+) (.+)", line))]
        self.anchors, seen = set(), {}
        for _, heading in self.headings:
            anchor = slug(heading)
            self.anchors.add(f"{anchor}-{seen[anchor]}" if anchor in seen else anchor)
            seen[anchor] = seen.get(anchor, 0) + 1

    def bold(self):
        return {one_line(found) for found in BOLD.findall(without_code(self.text))}


def slug(heading):
    """The anchor of a heading, as the readers of Markdown on the web make it."""
    return re.sub(r"[^\w\- ]", "", re.sub(r"[`*]", "", heading).lower()).replace(" ", "-")


def without_code(text):
    return CODE.sub("", text)


def broken_links(pages, root):
    for path, page in pages.items():
        for target in LINK.findall(without_code(page.text)):
            if re.match(r"\w+:", target):
                continue
            name, _, anchor = target.partition("#")
            to = (path.parent / name).resolve() if name else path
            if not to.exists():
                yield f"{path.relative_to(root)}: {target} leads nowhere"
            elif anchor and to in pages and anchor not in pages[to].anchors:
                yield f"{path.relative_to(root)}: there is no heading for {target}"


def commands(page):
    return [fence[1:] for fence in page.fences if fence[0] == "sh"]


def differences(pages, root):
    """Between the pages of the two languages."""
    folders = {language: root / "docs/handbook" / language for language in LANGUAGES}
    names = {language: {path.name for path in folder.glob("*.md")} for language, folder in folders.items()}
    for name in sorted(names["en"] ^ names["fr"]):
        yield f"{name} stands in one language only"
    for name in sorted(names["en"] & names["fr"]):
        here, there = (pages[folders[language] / name] for language in ("en", "fr"))
        if [level for level, _ in here.headings] != [level for level, _ in there.headings]:
            yield f"{name}: other headings in French: " + "; ".join(text for _, text in there.headings)
        if commands(here) != commands(there):
            yield f"{name}: other commands in French"
        if [target.replace("-en.", "-fr.") for target in PICTURE.findall(here.text)] != PICTURE.findall(there.text):
            yield f"{name}: other pictures in French"
        if name == FAULTS:
            continue
        english, french = here.text.count("\n|"), there.text.count("\n|")
        if english != french:
            yield f"{name}: {english} rows of tables in English, {french} in French"


def bad_pictures(pages, root):
    used = {(path.parent / target).resolve() for path, page in pages.items() for target in PICTURE.findall(page.text)}
    for picture in sorted((root / "docs").rglob("*.png")):
        if picture.resolve() not in used:
            yield f"{picture.relative_to(root)} stands on no page"
        elif picture.stat().st_size > MOST_BYTES:
            yield f"{picture.relative_to(root)} has more than {MOST_BYTES} bytes"


def label(text):
    """As a page writes it."""
    return one_line(PLACE.sub("…", text.replace("&", ""))).strip()


def wrong_labels(handbook, sources):
    for language, index in LANGUAGES.items():
        labels = {label(row.texts[index]) for row in sources.rows}
        for name, page in handbook[language].items():
            for text in sorted(page.bold() - labels):
                yield f"{language}/{name}: no control is called **{text}**"


def missing_controls(handbook, sources):
    for table, pages, others in SCREENS:
        rows = [row for row in sources.rows if row.table == table]
        if not rows:
            yield f"{table} has no texts"
        for row in rows:
            if re.search(others, row.name) or is_message(row):
                continue
            for language, index in LANGUAGES.items():
                shown = set().union(*(handbook[language][page].bold() for page in pages if page in handbook[language]))
                if (text := label(row.texts[index])) and text not in shown:
                    yield f"{language}/{pages[0]}: the control {row.name} (**{text}**) is missing"


def is_message(row):
    names = MESSAGES.get(row.table)
    if names is None or not re.search(names, row.name or row.texts[1]):
        return False
    return names != "." or (len(re.findall(r"\w+", row.texts[1])) >= WORDS_OF_A_SENTENCE and
                            not LABELS.search(row.texts[1]))


def pieces(text):
    return [piece for part in PLACE.split(text) if len(piece := one_line(part).strip()) > 1]


def missing_messages(handbook, sources):
    for language, index in LANGUAGES.items():
        told = "\0".join(one_line(text) for text in CODE.findall(handbook[language][FAULTS].text))
        for row in filter(is_message, sources.rows):
            for piece in pieces(row.texts[index]):
                if piece not in told:
                    yield f"{language}/{FAULTS}: \"{piece}\" ({row.table}) has no cure"
        for piece, name in sorted(sources.told().items()):
            if NO_MESSAGES.search(f"{name}: {piece}") and piece not in TOLD_ALL_THE_SAME:
                continue
            if piece not in told:
                yield f"{language}/{FAULTS}: \"{piece}\" ({name}) has no cure"


def unknown_messages(handbook, sources):
    """Messages of the tables on the page of faults that the program does not say."""
    for language in LANGUAGES:
        for line in handbook[language][FAULTS].text.splitlines():
            if not line.startswith("| `"):
                continue
            for message in CODE.findall(line.split(" | ")[0]):
                for part in message.split("…"):
                    part = part.strip(" .:,\"«»()")
                    if len(part) > 2 and not sources.can_say(part):
                        yield f"{language}/{FAULTS}: the program does not say \"{part}\""


def missing_files(handbook, sources):
    for language in LANGUAGES:
        if FILES not in handbook[language]:
            yield f"{language}: there is no page of files"
            continue
        told = CODE.findall(handbook[language][FILES].text)
        for name, source in sorted(sources.files.items()):
            if name not in NO_FILES and not any(name in text for text in told):
                yield f"{language}/{FILES}: {name} ({source}) is missing"


def findings(root):
    """A line for each."""
    paths = [*root.glob("*.md"), *root.joinpath("docs").rglob("*.md")]
    pages = {path.resolve(): Page(path) for path in sorted(paths)}
    handbook = {language: {path.name: pages[path.resolve()]
                           for path in sorted((root / "docs/handbook" / language).glob("*.md"))}
                for language in LANGUAGES}
    if any(FAULTS not in handbook[language] for language in LANGUAGES):
        return ["there is no page of faults"]
    sources = Sources(root / "src")
    return [*broken_links(pages, root), *differences(pages, root), *bad_pictures(pages, root),
            *wrong_labels(handbook, sources), *missing_controls(handbook, sources),
            *missing_messages(handbook, sources), *unknown_messages(handbook, sources),
            *missing_files(handbook, sources)]


def main(arguments):
    found = findings(pathlib.Path(arguments[0]).resolve())
    print(*found, sep="\n", end="\n" if found else "")
    print(f"{len(found)} findings")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

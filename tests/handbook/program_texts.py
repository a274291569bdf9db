"""What the program can tell a person, read from its sources: the sentences of its log, its terminal and its
commands, which are English, and the rows of its tables of texts, which are in four languages.
"""

import re

TOKEN = re.compile(
    r'//[^\n]*|/\*.*?\*/|^[ \t]*#[^\n]*|R"\((?P<raw>.*?)\)"|"(?P<text>(?:[^"\\\n]|\\.)*)"|'
    r"'(?P<sign>(?:[^'\\\n]|\\.)+)'|(?P<word>[A-Za-z_]\w*(?:::\w+)*)|(?P<number>\d[\w'.]*)|(?P<mark>\S)",
    re.S | re.M)
ESCAPES = {"n": "\n", "r": "", "t": "\t", "0": "\0"}
SENTENCE = re.compile(r"[a-z]{2,}[,:;]? [a-z]{2,}")
PLACE = re.compile(r"%(?:\d|(?:lld|zu|[sgd])\b)?|\0")  # what is put into a text
FILE = re.compile(r"[\w-]+\.(?:Txt|txt|Ini|Dat|MDB|mdb|LDB|BAK|New|Lock|Sock|part|Wav|wav|peaks)$")
QUERY = re.compile(r"\b(?:SELECT|INSERT|UPDATE|DELETE|CREATE|ALTER|DROP|RAISE|RETURNS|SECURITY|AS) ")

# Whose sentences are no messages: help, the manual, queries, scripts that the program writes, what is printed,
# and samples that columns are as wide as.
THROWN_ONLY = re.compile(
    r"app/(?:Commands|CommandOptions|CampaignOptions|Orders|OperatorOrders|ManualPage|ManualProgram|BashCompletion|"
    r"MetricsText)\.cpp|app/demo/|platform/sim/")
NOT_READ = re.compile(
    r"Texts\.cpp|Tips\.cpp|engine/Forecast\.cpp|traffic/CampaignSheet\.cpp|library/LibraryPrint\.cpp|"
    r"store/postgres/Postgres(?:Functions|TableDefs)\.cpp|station/OperatorWords\.cpp|library/KeptLibrary\.cpp|"
    r"ui/Theme\.cpp|store/SettingRows\.inc|screens/(?:LibraryWindowParts|ReportWindow|AffidavitWindow)\.cpp")


class Row:
    """A text in the four languages: French, English, Portuguese, Spanish."""

    def __init__(self, table, name, texts):
        self.table, self.name, self.texts = table, name, texts


def tokens(source):
    """Kind and value of each token of a C++ source, without comments and directives; what stands side by side as
    one literal is one."""
    found = []
    for match in TOKEN.finditer(source):
        kind = match.lastgroup
        if kind is None:
            continue
        value = match.group(kind)
        if kind in ("text", "sign"):
            value = re.sub(r"\\(.)", lambda sign: ESCAPES.get(sign.group(1), sign.group(1)), value)
        if kind in ("raw", "text", "sign"):
            if found and found[-1][0] == "text" and kind != "sign":
                found[-1] = ("text", found[-1][1] + value)
                continue
            kind = "text"
        found.append((kind, value))
    return found


def group(found, opening):
    """The parts between commas of the bracket that opens at that token, and the place behind it."""
    depth, parts, at = 0, [[]], opening
    while at < len(found):
        kind, value = found[at]
        if kind == "mark" and value in "([{":
            depth += 1
        if kind == "mark" and value in ")]}":
            depth -= 1
            if depth == 0:
                return parts, at + 1
        if depth == 1 and (kind, value) == ("mark", ","):
            parts.append([])
        elif at > opening:
            parts[-1].append(found[at])
        at += 1
    return parts, at


def four_texts(parts, constants):
    """What a bracket of four texts holds, two of them at least as they are; a first one that is no constant of ours
    stands for the routine's own French."""
    if len(parts) != 4 or any(len(part) != 1 or part[0][0] not in ("text", "word") for part in parts):
        return None
    texts = [value if kind == "text" else constants.get(value.split("::")[-1]) for (kind, value), in parts]
    if None in texts[1:] or sum(part[0][0] == "text" for part in parts) < 2:
        return None
    return texts


def constants_in(found):
    """The texts that have a name, by it."""
    return {found[at][1]: found[at + 2][1] for at in range(len(found) - 2)
            if found[at][0] == "word" and found[at + 1] == ("mark", "=") and found[at + 2][0] == "text"}


def rows_in(table, found, constants):
    """The rows of texts in those tokens, and the tokens without them."""
    rows, rest, at = [], [], 0
    while at < len(found):
        texts = None
        if found[at] == ("mark", "{"):
            parts, behind = group(found, at)
            texts = four_texts(parts, constants)
        if texts is None:
            rest.append(found[at])
            at += 1
            continue
        # Ahead of it stand its name and, in a window's table, its property.
        names = []
        while rest and rest[-1] == ("mark", ",") and len(rest) > 1 and rest[-2][0] == "text":
            names.insert(0, rest[-2][1])
            del rest[-2:]
        if texts[0] is None:
            texts[0] = names[0] if names else ""
        rows.append(Row(table, " ".join(names), texts))
        at = behind
    return rows, rest


def without_assertions(found):
    kept, at = [], 0
    while at < len(found):
        if found[at] in (("word", "static_assert"), ("word", "assert")):
            at = group(found, at + 1)[1]
            continue
        kept.append(found[at])
        at += 1
    return kept


def thrown(found):
    kept = []
    for at, token in enumerate(found):
        if token == ("word", "throw") and at + 2 < len(found) and found[at + 2][1] in ("(", "{"):
            parts, _ = group(found, at + 2)
            kept += [inner for part in parts for inner in part]
    return kept


def one_line(text):
    return re.sub(r"\s+", " ", text)


class Sources:
    """Rows of the tables of texts, sentences that are told, names of files, and all literals, of the folder src."""

    def __init__(self, src):
        self.rows, self.sentences, self.files, literals, constants = [], {}, {}, set(), {}
        files = {path.relative_to(src).as_posix(): without_assertions(tokens(path.read_text(encoding="utf-8")))
                 for path in sorted(src.rglob("*"))
                 if path.suffix in (".cpp", ".h", ".inc") and "tests" not in path.parts}
        for found in files.values():
            constants |= constants_in(found)
        for name, found in files.items():
            rows, rest = rows_in(name, found, constants)
            self.rows += rows
            literals |= {one_line(value) for kind, value in rest if kind == "text"}
            self.files |= {value: name for kind, value in rest if kind == "text" and FILE.match(value)}
            literals |= {one_line(text) for row in rows for text in row.texts + [row.name]}
            if not NOT_READ.search(name):
                self._read(name, thrown(rest) if THROWN_ONLY.search(name) else rest)
        self.text = "\0".join(sorted(literals))

    def _read(self, name, found):
        for kind, value in found:
            if kind != "text" or QUERY.search(value):
                continue
            for piece in PLACE.split(value):
                piece = one_line(piece).strip()
                if SENTENCE.search(piece):
                    self.sentences.setdefault(piece, name)

    def told(self):
        """Sentences that are no row's in a language of the screens, each with a file that has it."""
        spoken = {piece for row in self.rows for text in row.texts + [row.name]
                  for piece in (one_line(part).strip() for part in PLACE.split(text))}
        return {piece: name for piece, name in self.sentences.items() if piece not in spoken}

    def can_say(self, text, pieces=3):
        """Whether that text is made of at most so many pieces of the program's."""
        if text in self.text:
            return True
        return pieces > 1 and any(
            text[:end] in self.text and self.can_say(text[end:], pieces - 1) for end in range(len(text) - 1, 0, -1))

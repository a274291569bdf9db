#!/usr/bin/env python3
"""Checks that the floors of the house hold (the table of ARCHITECTURE.md).

Three checks, each printing one line a violation, "FILE:LINE: what":
  sources SRC                 who includes whom, what the logic may not name, types of one name
  globals SRC LIBRARY...      no data in the logic's libraries that can be written to
  callback OBJECT...          nothing in the device callback's objects that could make it wait
Exit status 0 without violations, 1 with, 2 when there was nothing to check.
"""

import pathlib
import re
import subprocess
import sys

# Which folder of src/ may include which others, besides its own. The longest folder that a path
# begins with is its own; "*" is everything.
LOGIC_BELOW_LIBRARY = ["platform", "store", "station", "settings"]
BESIDE = ["scheduling", "traffic", "reports"]
SCHEDULES = LOGIC_BELOW_LIBRARY + ["library"] + BESIDE
MAY_INCLUDE = {
    "platform": [],
    "platform/sound": ["platform"],
    "platform/sim": ["platform", "platform/sound"],
    "platform/real": ["platform", "platform/sound"],
    "store": ["platform"],
    "store/postgres": ["platform", "store"],
    "store/replica": ["platform", "store", "store/postgres"],
    "station": ["platform", "store", "store/postgres"],
    "settings": ["platform", "store", "station"],
    "library": LOGIC_BELOW_LIBRARY,
    "scheduling": SCHEDULES,
    "traffic": SCHEDULES,
    "reports": SCHEDULES,
    "voicetrack": SCHEDULES,
    "engine": SCHEDULES + ["voicetrack"],
    "ui": ["platform", "station", "engine"],
    "app": ["*"],
}

# The folder of what windows share, which only screens and the program may include. Screens are the
# folders of this name in a folder of the logic; they may include each other.
UI = "ui"
SCREENS = "screens"

# Folders that may know the machine: its libraries, clock, threads and files.
MACHINE = ["platform/real", "app"]

# What the rest may not name. A lower-case call that is no member is a call of the system, since our
# own procedures begin with a capital. The mixer core hands data between threads, hence the folders
# that a rule leaves out.
CALL = r"(?<![\w.>])(?:std::|::)?"
RULES = [
    ("Qt", r"#\s*include\s*<Q\w+|\bQ[A-Z][a-z]\w+\s*::", []),
    ("sound library", r"#\s*include\s*[<\"](sndfile|mpg123|samplerate|rtaudio|RtAudio|ebur128|taglib)", []),
    ("server library", r"#\s*include\s*[<\"]libpq|\bPQ[a-z]\w+\s*\(", ["store/postgres"]),
    ("joystick library", r"#\s*include\s*[<\"]SDL", []),
    ("system clock", r"\bstd::chrono\b|#\s*include\s*<(chrono|sys/time\.h)>|"
                     + CALL + r"(time|clock|gettimeofday|clock_gettime|timespec_get|ftime)\s*\(", []),
    ("time zone", r"#\s*include\s*<(ctime|time\.h)>|"
                  + CALL + r"(localtime(_r)?|gmtime(_r)?|mktime|strftime|tzset)\s*\(", []),
    ("sleep", r"\bsleep_(for|until)\b|" + CALL + r"(sleep|usleep|nanosleep|poll|select)\s*\("
              r"|\bsqlite3_sleep\b", []),
    ("thread", r"\bstd::(jthread|thread|this_thread|async|promise|future|packaged_task)\b"
               r"|#\s*include\s*<(thread|future|stop_token)>|\bpthread_\w+", []),
    ("lock", r"\bstd::(\w*mutex|condition_variable\w*|lock_guard|unique_lock|scoped_lock|call_once"
             r"|counting_semaphore|binary_semaphore|latch|barrier)\b"
             r"|#\s*include\s*<(mutex|shared_mutex|condition_variable|semaphore|latch|barrier)>", []),
    ("atomic", r"\bstd::atomic|#\s*include\s*<atomic>", ["platform", "platform/sound"]),
    ("file call", r"\bstd::(filesystem|[io]?fstream|FILE)\b|#\s*include\s*<(fstream|filesystem|fcntl\.h"
                  r"|unistd\.h|dirent\.h|sys/(stat|mman|file|types|socket)\.h)>", []),
    ("file call", CALL + r"(fopen|freopen|fdopen|open|creat|openat|unlink|rename|stat|lstat|fstat"
                  r"|mkdir|rmdir|opendir|fread|fwrite|fgets|fputs|fprintf|printf|puts|system|popen"
                  r"|getenv)\s*\(", []),
    # The algorithm of this name takes three arguments.
    ("file call", CALL + r"remove\s*\([^,()]*(\([^()]*\))?[^,()]*\)", []),
    ("console", r"\bstd::(cout|cerr|clog|cin)\b|#\s*include\s*<iostream>", []),
    ("chance", r"#\s*include\s*<random>|\bstd::random_device\b|" + CALL + r"s?rand\s*\(", []),
]

# Files that a rule leaves out, with the reason.
EXCEPTIONS = {
    ("platform/sim/SimLoop.cpp", "time zone"):
        "virtual time goes through summer time by the rules of the system's zone, not by its clock",
    ("store/LockWait.cpp", "sleep"):
        "the one wait for another process's lock, 100 ms of a tick in all",
}

# A value that is put together into the text of a query, outside of the store: each value would be a
# query of its own. Behind the text of a comparison, a list, a LIKE or a TOP nothing may be added.
QUERY_WORD = re.compile(r"\b(SELECT|INSERT|UPDATE|DELETE|WHERE|AND|SET|VALUES|TOP)\b", re.I)
ENDS_AT_A_VALUE = re.compile(r"(=|<|>|\bLIKE|\bIN\s*\(|\bVALUES\s*\(|\bTOP)\s*'?$", re.I)
VALUE_TEXT = re.compile(r"\b(SqlQuoted|SqlNumber|SqlLiteral|QueryWithValues)\b")
QUERY_CALL = re.compile(r"\b(?:OpenRecordset|ReadRows|Execute)\s*\(")
MADE_OF_A_VALUE = re.compile(r"\b(to_string|AsText|CnfText)\s*\(")

# What the device callback's objects may leave for the linker: copying, and what the compiler puts in.
CALLBACK_MAY_USE = re.compile(
    r"^(memcpy|memmove|memset|memcmp|_GLOBAL_OFFSET_TABLE_|__stack_chk_fail|__dso_handle"
    r"|__gxx_personality_v0|_Unwind_Resume|std::terminate\(\)|__cxa_begin_catch"
    r"|(vtable|typeinfo) for .*)$")


def folder_of(path):
    """The folder of MAY_INCLUDE that a path below src/ belongs to, None outside of all."""
    parts = path.parts[:-1]
    for length in range(len(parts), 0, -1):
        name = "/".join(parts[:length])
        if name in MAY_INCLUDE:
            return name
    return None


def sources(src):
    """Every source below src/ that is no test, as paths below it."""
    for path in sorted(src.rglob("*")):
        if path.suffix in (".h", ".cpp") and "tests" not in path.relative_to(src).parts:
            yield path.relative_to(src)


def without_comments_and_texts(code):
    """The code with comments and the insides of literals blanked, line breaks kept."""
    pattern = re.compile(
        r'R"(?P<mark>[^()\s\\"]{0,16})\(.*?\)(?P=mark)"|//[^\n]*|/\*.*?\*/'
        r"|\"(?:\\.|[^\"\\\n])*\"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'", re.S)

    def blank(match):
        text = match.group(0)
        begin = code.rfind("\n", 0, match.start()) + 1
        if re.match(r"\s*#\s*include\s*$", code[begin:match.start()]):
            return text
        return re.sub(r"[^\n]", " ", text)

    return pattern.sub(blank, code)


def line_of(code, position):
    return code.count("\n", 0, position) + 1


def includes_of(code, path, src):
    """(line, path below src/) of every include of ours."""
    for match in re.finditer(r'^\s*#\s*include\s*"([^"]+)"', code, re.M):
        name = match.group(1)
        beside = path.parent / name
        found = beside if (src / beside).is_file() else pathlib.PurePosixPath(name)
        yield line_of(code, match.start(1)), pathlib.PurePosixPath(found)


def is_screen(path):
    return SCREENS in path.parts[:-1]


def why_not_include(path, other):
    """What bars a file from including another; None where it may."""
    own, folder = folder_of(path), folder_of(other)
    allowed = MAY_INCLUDE[own]
    if folder is None:
        return f"includes {other}, which stands in no folder"
    if "*" in allowed:
        return None
    if is_screen(other):
        return None if is_screen(path) else f"only a screen may include a screen ({other})"
    if folder == own or folder in allowed or (folder == UI and is_screen(path)):
        return None
    return f"{own} may not include {folder} ({other})"


def check_includes(path, includes):
    if folder_of(path) is None:
        return [f"src/{path}:1: stands in no folder of the house"]
    barred = ((line, why_not_include(path, other)) for line, other in includes)
    return [f"src/{path}:{line}: {why}" for line, why in barred if why]


def check_names(path, code):
    own = folder_of(path)
    if own in MACHINE:
        return []
    violations = []
    for what, pattern, free in RULES:
        if own in free or (str(path), what) in EXCEPTIONS:
            continue
        if what == "Qt" and (own == UI or is_screen(path)):
            continue
        for match in re.finditer(pattern, code):
            name = " ".join(match.group(0).split())
            violations.append(f"src/{path}:{line_of(code, match.start())}: {what} in {own}: {name}")
    return violations


def without_comments(code):
    return re.sub(r'//[^\n]*|/\*.*?\*/|("(?:\\.|[^"\\\n])*")',
                  lambda match: match.group(1) or re.sub(r"[^\n]", " ", match.group(0)), code,
                  flags=re.S)


def first_argument(code, begin):
    """The text from `begin`, behind an opening parenthesis, to the end of the first argument."""
    depth, text = 0, re.compile(r'"(?:\\.|[^"\\\n])*"|.', re.S)
    for match in text.finditer(code, begin):
        sign = match.group(0)
        if depth == 0 and sign in ",)":
            return code[begin:match.start()]
        depth += (sign in "([{") - (sign in ")]}")
    return code[begin:]


def check_queries(path, code):
    """Values in the text of a query. Only the store makes SQL of a value."""
    if path.parts[0] == "store":
        return []
    code = without_comments(code)
    found = [match.start() for match in VALUE_TEXT.finditer(code)]
    for match in re.finditer(r'("(?:\\.|[^"\\\n])*"\s*)+(?=\+|<<)', code):
        text = "".join(re.findall(r'"((?:\\.|[^"\\\n])*)"', match.group(0)))
        if QUERY_WORD.search(text) and ENDS_AT_A_VALUE.search(text):
            found.append(match.start())
    for match in QUERY_CALL.finditer(code):
        if MADE_OF_A_VALUE.search(first_argument(code, match.end())):
            found.append(match.start())
    return [f"src/{path}:{line}: a value in the text of a query: bind it"
            for line in sorted({line_of(code, position) for position in found})]


def check_circles(graph):
    """Includes from one of the three folders beside each other to another that lie on a circle. A
    header and its .cpp are one file here."""
    edges = {}
    for path, includes in graph.items():
        if folder_of(path) in BESIDE:
            own = str(path.with_suffix(""))
            edges.setdefault(own, set()).update(
                str(other.with_suffix("")) for _, other in includes if folder_of(other) in BESIDE)
            edges[own].discard(own)

    def reaches(start, goal):
        seen, todo = set(), list(edges.get(start, ()))
        while todo:
            node = todo.pop()
            if node == goal:
                return True
            if node not in seen:
                seen.add(node)
                todo.extend(edges.get(node, ()))
        return False

    return [f"src/{own}: stands in a circle of includes with {other}"
            for own in sorted(edges) for other in sorted(edges[own])
            if own.split("/")[0] != other.split("/")[0] and reaches(other, own)]


def types_of(code):
    """(line, name) of every type that a header defines in a namespace, not in another type."""
    scopes = []  # names of the namespaces around, None for any other brace
    tokens = re.compile(r"\bnamespace\s+([\w:]*)\s*\{"
                        r"|\b(?:enum class|class|struct|enum|union)\s+(\w+)(?![\w\s]*>)[^;{}()]*\{|\{|\}")
    for match in tokens.finditer(code):
        if match.group(0) == "}":
            if scopes:
                scopes.pop()
            continue
        if match.group(2) and None not in scopes:
            yield line_of(code, match.start()), "::".join([*scopes, match.group(2)])
        scopes.append(match.group(1))


def check_types(types):
    """Two types of one name, which the linker would make one."""
    violations, first = [], {}
    for path, line, name in types:
        if name in first:
            violations.append(f"src/{path}:{line}: {name} is defined in src/{first[name]} already")
        first.setdefault(name, path)
    return violations


def check_sources(src):
    graph, types, violations = {}, [], []
    for path in sources(src):
        whole = (src / path).read_text(encoding="utf-8")
        code = without_comments_and_texts(whole)
        graph[path] = list(includes_of(code, path, src))
        violations += check_includes(path, graph[path]) + check_names(path, code)
        violations += check_queries(path, whole)
        if path.suffix == ".h":
            types += [(path, line, name) for line, name in types_of(code)]
    return len(graph), violations + check_circles(graph) + check_types(types)


def declared_constant(src, name):
    """Whether the logic declares an object of this name as constant: made once, at its first use."""
    word = name.split("::")[-1].split("[")[0]
    pattern = re.compile(r"\bconst(expr|init)?\b[^;={}()]*\b" + re.escape(word) + r"\b")
    return any(pattern.search((src / path).read_text(encoding="utf-8"))
               for path in sources(src) if folder_of(path) not in MACHINE)


def check_globals(src, libraries):
    """Symbols in the sections that can be written to (the one for relocated constants is not)."""
    violations, seen = [], 0
    for library in libraries:
        text = subprocess.run(["objdump", "-t", "-C", library], check=True, capture_output=True,
                              text=True).stdout
        for line in text.splitlines():
            match = re.match(r"[0-9a-f]+ .{7} (\S+)\s+[0-9a-f]+\s+(?:\.hidden )?(.+)$", line)
            if not match:
                continue
            seen += 1
            section, name = match.groups()
            writable = re.match(r"\.(t?data|t?bss)($|\.(?!rel\.ro))", section)
            # Guards and the references of exception tables are the compiler's own.
            if not writable or name == section or re.match(r"guard variable for |DW\.ref\.", name):
                continue
            if not declared_constant(src, name):
                violations.append(f"{library}:1: can be written to from everywhere: {name}")
    return seen, violations


def undefined_and_defined(path):
    text = subprocess.run(["nm", "-C", path], check=True, capture_output=True, text=True).stdout
    undefined, defined = set(), set()
    for line in text.splitlines():
        match = re.match(r"[0-9a-f ]{16} (\w) (.+)$", line)
        if match:
            (undefined if match.group(1) in "Uw" else defined).add(match.group(2))
    return undefined, defined


def check_callback(objects):
    tables = {path: undefined_and_defined(path) for path in objects}
    ours = set().union(*(defined for _, defined in tables.values()))
    violations = [f"{path}:1: the device callback may not use: {name}"
                  for path, (undefined, _) in tables.items() for name in sorted(undefined)
                  if name not in ours and not CALLBACK_MAY_USE.match(name)]
    return len(ours), violations


def main(arguments):
    if len(arguments) < 2 or arguments[0] not in ("sources", "globals", "callback"):
        print(__doc__, file=sys.stderr)
        return 2
    what = arguments[0]
    if what == "sources":
        looked, violations = check_sources(pathlib.Path(arguments[1]))
    elif what == "globals":
        looked, violations = check_globals(pathlib.Path(arguments[1]), arguments[2:])
    else:
        looked, violations = check_callback(arguments[1:])
    for violation in violations:
        print(violation)
    if looked == 0:
        print(f"floors: nothing to check in {' '.join(arguments[1:])}", file=sys.stderr)
        return 2
    print(f"floors: {what}: {looked} looked at, {len(violations)} violations")
    return 1 if violations else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

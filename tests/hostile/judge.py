"""What a run of the program may not do, whatever was done to its station and its machine.

One rule, in parts: where something playable is there, no silence longer than 20 s; one clear line for
each fault; no hang beyond 5 s of work; no memory beyond 300 MB; nothing lost without a word.
"""

import collections
import dataclasses
import datetime
import json
import os
import resource
import signal
import subprocess
import tempfile
import unicodedata

SILENCE_SECONDS = 20
WORK_SECONDS = 5  # of the processor: a busy machine changes nothing about it
PATIENCE_SECONDS = 60  # by the wall: who waits for ever works little
MEMORY_MB = 300
SAME_LINE_TIMES = 40  # in 20 minutes of air: one fault may be told every half minute
CRASHES = ("AddressSanitizer", "runtime error:", "ThreadSanitizer", "terminate called")


@dataclasses.dataclass
class Run:
    """A process that ended, or was ended because it did not."""

    words: list
    status: int | None  # None: it had to be killed
    out: str
    err: str
    work: float  # seconds of the processor
    memory_mb: float
    sanitized: bool = False
    trace: list = dataclasses.field(default_factory=list)


def run(words, cwd, env=None, patience=PATIENCE_SECONDS, sanitized=False):
    """Runs a program to its end and measures it."""
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        process = subprocess.Popen(words, cwd=cwd, env=env, stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                                   start_new_session=True, preexec_fn=_no_core)
        previous = signal.signal(signal.SIGALRM, lambda *_: os.killpg(process.pid, signal.SIGKILL))
        signal.alarm(patience * (10 if sanitized else 1))
        try:
            _, status, usage = os.wait4(process.pid, 0)
        finally:
            signal.alarm(0)
            signal.signal(signal.SIGALRM, previous)
        killed = os.WIFSIGNALED(status) and os.WTERMSIG(status) == signal.SIGKILL
        process.returncode = os.waitstatus_to_exitcode(status)
        out.seek(0)
        err.seek(0)
        return Run(words, None if killed else process.returncode,
                   out.read().decode("utf-8", "replace"), err.read().decode("utf-8", "replace"),
                   usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024, sanitized)


def _no_core():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def of_process(done, allowed=(0, 1, 2)):
    """Findings about the process alone."""
    findings = []
    if done.status is None:
        findings.append("hangs")
    elif done.status not in allowed:
        findings.append(f"ends with {done.status}")
    findings += [f"{crash} {done.err[:400]}" for crash in CRASHES if crash in done.err]
    if not done.sanitized:  # they take many times as much of both
        if done.work > WORK_SECONDS:
            findings.append(f"works for {done.work:.1f} s")
        if done.memory_mb > MEMORY_MB:
            findings.append(f"takes {done.memory_mb:.0f} MB")
    return findings


def of_command(done, allowed=(0, 1, 2)):
    """Findings about a command that answers and ends."""
    findings = of_process(done, allowed)
    lines = [line for line in done.err.split("\n") if line]
    if done.status == 1 and not lines and not done.out.strip():
        findings.append("fails without a word")
    if done.status in (1, 2):
        findings += [f"says {line[:120]!r}" for line in lines if not line.startswith("zemoradio: ")][:1]
    findings += [f"a line of {len(line)} characters" for line in lines if len(line) > 2000][:1]
    findings += [f"control characters: {line[:120]!r}" for line in lines
                 if any(unicodedata.category(character) == "Cc" for character in line)][:1]
    return findings


def read_trace(path):
    events = []
    try:
        with open(path, encoding="utf-8", errors="replace") as file:
            for line in file:
                try:
                    events.append(json.loads(line))
                except ValueError:
                    events.append({"event": "unreadable", "text": line[:200], "at": ""})
    except FileNotFoundError:
        pass
    return events


def moment(event):
    return datetime.datetime.fromisoformat(event["at"])


def of_air(done, seconds):
    """Findings about a simulation of so many seconds, asked to be on air all the time."""
    findings = of_command(done, allowed=(0, 1))
    if done.status == 1:
        findings.append("not on air: " + done.err.strip()[:160])
    if done.status == 0:
        findings += _silences(done.trace, seconds) + _told_again(done.trace) + _rows(done.trace)
    findings += [f"a trace that no JSON reader reads: {event['text']}"
                 for event in done.trace if event["event"] == "unreadable"][:1]
    return findings


def of_words(done, said):
    """A finding when none of these words stands in an error, a skip or a message."""
    told = "\n".join([done.err] + [json.dumps(event, ensure_ascii=False) for event in done.trace
                                   if event["event"] in ("error", "skip", "message")])
    return [] if any(words in told for words in said) else [f"nothing said of {' or '.join(said)}"]


def longest_silence(trace, seconds):
    """Seconds of the trace's own order of events, which a clock that is put forward or back does not
    change: the longest time in which the engine ran and nothing sounded."""
    if not trace:
        return seconds
    longest, since, running, passed, last = 0.0, None, True, 0.0, moment(trace[0])
    for event in trace:
        now = moment(event)
        step = (now - last).total_seconds()
        passed += step if 0 <= step < 1800 else 0
        last = now
        if event["event"] == "engine":
            running = event["running"]
        if event["event"] == "silence":
            if event["state"] == "begin":
                since = passed
            elif since is not None:
                longest, since = max(longest, passed - since), None
    if since is not None and running:
        longest = max(longest, max(passed, seconds) - since)
    return longest


def _silences(trace, seconds):
    silence = longest_silence(trace, seconds)
    return [f"silent for {silence:.0f} s"] if silence > SILENCE_SECONDS else []


def _told_again(trace):
    told = collections.Counter((event["where"], event["number"], event["text"]) for event in trace
                               if event["event"] == "error")
    return [f"tells {times} times: {where} {number} {text[:100]}" for (where, number, text), times
            in told.most_common(1) if times > SAME_LINE_TIMES]


def _rows(trace):
    """Each element that sounds has its row, or something was said, or nobody wanted rows; the last one's
    may be to come."""
    if any(event["event"] == "error" or (event["event"] == "flag" and event["name"] == "ReportsDisabled"
                                         and event["value"]) for event in trace):
        return []
    ours = [event for event in trace if "Secours" not in json.dumps(event)]
    starts = sum(event["event"] == "start" and event["code"] != -30 for event in ours)
    markers = sum(event["event"] == "marker" and event["code"] in (-10, -20) for event in ours)
    rows = sum(event["event"] == "report" for event in ours)
    if not 0 <= starts + markers - rows <= 1:
        return [f"{starts} elements and {markers} markers, {rows} rows"]
    return []

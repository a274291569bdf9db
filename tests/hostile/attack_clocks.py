"""Days on which the clocks change, in every zone of the world that has one."""

import datetime
import functools
import zoneinfo

import judge

YEARS = (2026, 2027)
HOUR = datetime.timedelta(hours=1)


@functools.cache
def changes():
    """(zone, UTC moment), one zone for each moment, offset and step."""
    found = {}
    for name in sorted(zoneinfo.available_timezones()):
        if name.startswith(("posix", "right", "SystemV")) or name in ("localtime", "Factory"):
            continue
        zone = zoneinfo.ZoneInfo(name)
        at = datetime.datetime(YEARS[0], 1, 1, tzinfo=datetime.timezone.utc)
        while at.year <= YEARS[1]:
            before, after = (moment.astimezone(zone).utcoffset() for moment in (at, at + HOUR / 2))
            if before != after:
                found.setdefault((at.hour, at.minute, before, after, at.month), (name, at + HOUR / 2))
            at += HOUR / 2
    return sorted(found.values(), key=lambda change: (change[1], change[0]))


def clock_change(case, rng):
    name, moment = rng.choice(changes())
    return around(case, name, moment)


def around(case, name, moment):
    """Three hours around a change: no silence, and a pip at the end of each hour that the clock shows."""
    begin = (moment - 1.2 * HOUR).astimezone(zoneinfo.ZoneInfo(name)).strftime("%Y-%m-%d %H:%M:%S")
    done = case.air(minutes=180, begin=begin, zone=name)
    findings = judge.of_air(done, 10800)
    pips = sum(event["event"] == "overlay" and event["reason"] == "pip" for event in done.trace) \
        + sum(event["event"] == "start" and event["code"] == -3 for event in done.trace)
    hours = hours_that_end(zoneinfo.ZoneInfo(name), moment - 1.2 * HOUR, moment + 1.8 * HOUR)
    if pips != hours:
        findings.append(f"{pips} pips at the end of {hours} hours")
    return f"{name} from {begin}", findings


def hours_that_end(zone, begin, end):
    """How often the clock shows the last seconds of an hour, where its pip begins."""
    at = begin.replace(second=55, microsecond=0)
    count = 0
    while at < end:
        count += at >= begin and at.astimezone(zone).minute == 59
        at += datetime.timedelta(minutes=1)
    return count


ATTACKS = {"clock changes": clock_change}

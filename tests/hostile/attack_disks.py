"""Disks that are full or read-only, and folders that vanish; in the station itself, not in a copy."""

import os
import pathlib
import subprocess
import threading
import time

import judge

SIZE_KB = 2048


class SmallDisk:
    """A file system of its own in memory, where the system lets us make one."""

    def __init__(self, path):
        self.path = path

    def __enter__(self):
        self.path.mkdir(parents=True, exist_ok=True)
        self._mount("-t", "tmpfs", "-o", f"size={SIZE_KB}k", "tmpfs", str(self.path))
        return self

    def __exit__(self, *_):
        subprocess.run(["umount", "-l", str(self.path)], check=False)

    def read_only(self):
        self._mount("-o", "remount,ro", str(self.path))

    @staticmethod
    def _mount(*words):
        if subprocess.run(["mount", *words], stderr=subprocess.DEVNULL, check=False).returncode != 0:
            raise PermissionError("no file system of our own")


def possible():
    return os.geteuid() == 0


def moved_to(disk, case, what):
    """Puts the station's or the machine's folder on the disk."""
    folder = getattr(case, what)
    place = disk.path / what
    subprocess.run(["cp", "-a", str(folder), str(place)], check=True)
    setattr(case, what, place)


def disk(case, rng):
    what = rng.choice(["station", "machine"])
    with SmallDisk(case.folder / "disk") as small:
        moved_to(small, case, what)
        if rng.random() < 0.5:
            small.read_only()
            how = "read-only"
        else:
            filler = small.path / "filler"
            subprocess.run(["dd", "if=/dev/zero", f"of={filler}", "bs=1k"], stderr=subprocess.DEVNULL, check=False)
            left = rng.choice([0, 1, 20, 100])
            os.truncate(filler, max(0, filler.stat().st_size - left * 1024))
            how = f"full but for {left} KB"
        done = case.air(in_place=True)
        findings = of_disk(done)
    return f"{what} {how}", findings


def of_disk(done):
    """The air goes on, and what could not be written is told; at the end by the status as well."""
    findings = judge.of_process(done, (0, 1))
    if done.trace:
        done.status = 0
        findings += judge.of_air(done, 1200)
    starts = [event for event in done.trace if event["event"] == "start"]
    if not starts:
        findings.append("not on air: " + done.err.strip()[:160])
    return findings


def folder_vanishes(case, rng):
    """On air in real time on the null output; a folder goes for some seconds and comes back."""
    case.sql(("UPDATE Discotheque SET FILENAME = ?, NBPASSJOUR = 100", (str(case.a_sound()),)))
    what = rng.choice(["station", "machine"])
    folder = pathlib.Path(getattr(case, what))
    away = folder.with_name(folder.name + ".away")
    vanishing = threading.Thread(target=vanish, args=(case, folder, away))
    vanishing.start()
    done = case.command("run", "--station", case.station, "--machine", case.machine, "--output", "null", "--for", "7s")
    vanishing.join()
    rows = case.ask("SELECT COUNT(*) FROM Rapport")[0][0]
    findings = judge.of_process(done, (0, 1))
    if rows < 2 and done.status == 0:
        findings.append(f"{rows} rows of 7 s of titles of 2 s, and status 0")
    return f"{what} away for 3 s", findings


def vanish(case, folder, away):
    """Away for 3 s once it is on air. What is made in its place meanwhile gives way, as often as it is made."""
    until = time.monotonic() + 4
    while not case.ask("SELECT COUNT(*) FROM Rapport")[0][0] and time.monotonic() < until:
        time.sleep(0.05)
    os.rename(folder, away)
    time.sleep(3)
    for trial in range(100):
        try:
            if folder.exists():
                os.rename(folder, folder.with_name(f"{folder.name}.meanwhile{trial}"))
            return os.rename(away, folder)
        except OSError:
            continue
    raise RuntimeError(f"{folder} cannot come back")


ATTACKS = {"folders that vanish": folder_vanishes}
if possible():
    ATTACKS["disks"] = disk

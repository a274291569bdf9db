"""The ground that the attacks are made on: a demo station made once, and for each case a copy of what
can be damaged, with an emergency folder beside it, so that something playable is always there."""

import os
import pathlib
import shutil
import sqlite3

import judge

BEGIN = "2026-11-20 11:05:00"  # a Friday, with breaks and a pip within the next hour
AIR_MINUTES = 20
# Where the base holds the paths of files.
PATHS = [("Discotheque", "FILENAME"), ("DiscothequeJingle", "FILENAME"), ("DiscothequeVirgule", "FILENAME"),
         ("GrillePub", "FILENAMEAUDIO"), ("GrillePub", "FILENAMEGRILLE"), ("Toph", "FICHIER"), ("VT", "FILENAME")]


class Ground:
    def __init__(self, program, folder, sanitized):
        self.program = str(program)
        self.folder = pathlib.Path(folder)
        self.sanitized = sanitized
        self.demo = self.folder / "demo"
        made = judge.run([self.program, "demo", str(self.demo)], cwd=self.folder, patience=600)
        if made.status != 0:
            raise RuntimeError(f"no demo station: {made.err}")

    def case(self, name="case"):
        return Case(self, self.folder / name)


class Case:
    """A station and a machine of its own. Its sound files stand in the demo's folder: who damages one
    takes a copy (own_sound)."""

    def __init__(self, ground, folder):
        self.ground = ground
        self.folder = folder
        self.station = folder / "station"
        self.machine = folder / "machine"
        remove(folder)
        self.station.mkdir(parents=True)
        for entry in ground.demo.iterdir():
            if entry.is_file():
                shutil.copy(entry, self.station)
        (self.machine / "Secours").mkdir(parents=True)
        shutil.copy(self.a_sound(), self.machine / "Secours" / "a.wav")

    @property
    def base(self):
        return self.station / "Triskin.MDB"

    def a_sound(self):
        return next(iter(sorted((self.ground.demo / "Virgules").glob("*.wav"))))

    def own(self, path):
        """A copy, in the station's folder, of a file that stands in the demo's; the base knows it by its
        new place."""
        path = pathlib.Path(path)
        copy = self.station / path.name
        shutil.copy(path, copy)
        for table, column in PATHS:
            self.sql((f'UPDATE "{table}" SET "{column}" = ? WHERE "{column}" = ?', (str(copy), str(path))))
        return copy

    def sql(self, *statements):
        """Into the base, past its own constraints."""
        with sqlite3.connect(self.base) as base:
            base.execute("PRAGMA ignore_check_constraints = 1")
            for statement in statements:
                base.execute(*statement) if isinstance(statement, tuple) else base.execute(statement)
        base.close()

    def ask(self, query):
        base = sqlite3.connect(self.base)
        try:
            return base.execute(query).fetchall()
        finally:
            base.close()

    def command(self, *words, **more):
        return judge.run([self.ground.program, *map(str, words)], cwd=self.folder,
                         sanitized=self.ground.sanitized, **more)

    def air(self, minutes=AIR_MINUTES, begin=BEGIN, script=None, zone=None, in_place=False, audio=None):
        """The station on air, on the virtual clock; with its sound where a file for it is given."""
        trace = self.folder / "trace"
        words = ["render" if audio else "simulate", "--station", self.station, "--machine", self.machine,
                 "--from", begin, "--for", f"{int(minutes * 60)}s", "--trace", trace]
        if script is not None:
            path = self.folder / "script"
            path.write_text(script, encoding="utf-8")
            words += ["--script", path]
        words += ["--audio", audio] if audio else []
        words += ["--in-place"] if in_place else []
        env = dict(os.environ, TZ=zone) if zone else None
        done = self.command(*words, env=env)
        done.trace = judge.read_trace(trace)
        return done


def remove(path):
    """Whatever it is."""
    path = pathlib.Path(path)
    if path.is_symlink() or (path.exists() and not path.is_dir()):
        path.unlink()
    elif path.is_dir():
        shutil.rmtree(path)

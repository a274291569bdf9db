"""Sound files that lie, are cut, or are no sound files."""

import struct

import damage
import judge


def wav(rng):
    """A RIFF file whose header says anything."""
    number = lambda *likely: rng.choice([*likely, 0, 1, 0x7FFF, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF])
    frames = rng.choice([0, 1, 1000, 200000])
    data = rng.randbytes(min(frames * 4, 100000)) * (frames * 4 // 100000 + 1)
    form = struct.pack("<HHIIHH", number(1, 3, 6, 0xFFFE) & 0xFFFF, number(2, 64) & 0xFFFF, number(44100, 8000),
                       number(176400), number(4) & 0xFFFF, number(16, 24, 64) & 0xFFFF)
    chunks = [b"fmt " + struct.pack("<I", number(16)) + form]
    if rng.random() < 0.3:
        chunks.append(rng.choice([b"LIST", b"fact", b"bext", b"\x00\x00\x00\x00"])
                      + struct.pack("<I", number(20)) + rng.randbytes(20))
    chunks.append(b"data" + struct.pack("<I", number(len(data))) + data)
    if rng.random() < 0.1:
        chunks.reverse()
    body = b"".join(chunks)
    return rng.choice([b"RIFF", b"RIFF", b"RF64", b"FORM"]) + struct.pack("<I", number(len(body) + 4)) + b"WAVE" + body


def mp3(data, rng):
    """A real one with tags that lie, frames of other rates between, or noise in the middle."""
    at = rng.randrange(len(data))
    tag = b"ID3\x04\x00" + bytes([rng.randrange(256)]) + rng.choice(
        [b"\x7f\x7f\x7f\x7f", b"\x00\x00\x00\x0a", b"\xff\xff\xff\xff"]) + rng.randbytes(30)
    return rng.choice([tag + data, data[:at] + b"\xff\xfb" + rng.randbytes(2) + data[at:],
                       data[:at] + rng.randbytes(5000) + data[at:], data[:at], rng.randbytes(3) + data, data[:at] + tag])


def sound_file(case, rng):
    """Three titles damaged and put at the head of the list; what follows them has to be heard."""
    titles = rng.sample(case.ask("SELECT CODE, FILENAME FROM Discotheque"), 3)
    done, script = [], ["+1 start"]
    for code, name in titles:
        path = case.own(name)
        which = rng.random()
        if which < 0.25:
            how = damage.instead_of(path, rng)
        elif which < 0.5:
            path.write_bytes(wav(rng))
            how = "a WAV that lies"
        elif which < 0.75 and path.suffix == ".mp3":
            path.write_bytes(mp3(path.read_bytes(), rng))
            how = "an MP3 that lies"
        else:
            how = damage.bytes_of(path, rng)
        done.append(f"{path.name} {how}")
        script.append(f"+0 insert music {code} 1")
    audio = case.folder / "air.wav"
    findings = judge.of_air(case.air(minutes=6, script="\n".join(script) + "\n", audio=audio), 360)
    findings += judge.of_command(case.command("check", case.station))
    return "; ".join(done), findings


def no_regular_file(case, rng):
    """What cannot be played is told as what it is."""
    code, name = rng.choice(case.ask("SELECT CODE, FILENAME FROM Discotheque"))
    path = case.own(name)
    what = damage.instead_of(path, rng, ["folder", "FIFO", "/dev/zero", "/dev/null"])
    done = case.air(minutes=4, script=f"+1 insert music {code} 1\n")
    findings = judge.of_air(done, 240) + judge.of_words(done, [path.name])
    return f"{path.name} is {what}", findings


ATTACKS = {"sound files": sound_file, "sounds that are no files": no_regular_file}

"""Damages of files, whatever they hold."""

import os

import ground


def flip(data, rng, most=64):
    data = bytearray(data)
    for _ in range(rng.randint(1, most)):
        if data:
            data[rng.randrange(len(data))] ^= 1 << rng.randrange(8)
    return bytes(data)


def cut(data, rng):
    return data[:rng.randrange(len(data) + 1)]


def overwrite(data, rng):
    """A stretch of zeros, of ones or of noise."""
    if not data:
        return data
    at, length = rng.randrange(len(data)), rng.choice([1, 16, 512, 4096, 65536])
    length = min(length, len(data) - at)
    fill = rng.choice([bytes(length), b"\xff" * length, rng.randbytes(length)])
    return data[:at] + fill + data[at + length:]


def swap(data, rng, page=4096):
    pages = [data[i:i + page] for i in range(0, len(data), page)]
    if len(pages) > 1:
        a, b = rng.sample(range(len(pages)), 2)
        pages[a], pages[b] = pages[b], pages[a]
    return b"".join(pages)


def append(data, rng):
    return data + rng.randbytes(rng.choice([1, 100, 4096, 100000]))


BYTES = {"flipped": flip, "cut": cut, "overwritten": overwrite, "swapped": swap, "appended to": append}


def bytes_of(path, rng):
    """Damages a file's bytes; says how."""
    how = rng.choice(list(BYTES))
    path.write_bytes(BYTES[how](path.read_bytes(), rng))
    return how


def instead_of(path, rng, kinds=None):
    """Puts something else in a file's place; says what."""
    what = rng.choice(kinds or ["empty", "noise", "text", "folder", "FIFO", "loop", "nothing there", "/dev/null",
                                "/dev/zero"])
    ground.remove(path)
    if what == "empty":
        path.write_bytes(b"")
    elif what == "noise":
        path.write_bytes(rng.randbytes(rng.choice([1, 1000, 1000000])))
    elif what == "text":
        path.write_text("That is no such file.\n" * rng.choice([1, 100]))
    elif what == "folder":
        path.mkdir()
    elif what == "FIFO":
        os.mkfifo(path)
    elif what == "loop":
        path.symlink_to(path.name)
    elif what.startswith("/dev/"):
        path.symlink_to(what)
    return what

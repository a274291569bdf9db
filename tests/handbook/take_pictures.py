#!/usr/bin/env python3
"""Takes the handbook's pictures from the tests of the screens.

    take_pictures.py BUILD [NAME...]

Runs the tests that draw them, in the build folder, and puts what they drew into docs/handbook/pictures, in at most 256
colours; all of them, or those of these names. Fonts differ between machines: no test looks at their pixels.
"""

import pathlib
import struct
import subprocess
import sys
import zlib

PICTURES = pathlib.Path(__file__).resolve().parents[2] / "docs/handbook/pictures"
LANGUAGES = {"fr": "0", "en": "1"}
# The name on the pages; the tests that draw it; what they call it, with {} for the language.
MAIN, LIBRARY, TRAFFIC = "zemo_main_screen_tests", "zemo_library_screens_tests", "zemo_campaign_screens_tests"
TAKEN = {
    "on-air": (MAIN, "{}-1280-mode1"),
    "live": (MAIN, "{}-1280-mode2"),
    "grid": (MAIN, "{}-1280-mode3"),
    "forecast": (MAIN, "forecast-{}"),
    "library": (LIBRARY, "library-{}-1280-1"),
    "selector": (LIBRARY, "selector-{}-1280"),
    "models": ("zemo_model_screens_tests", "models-percent-{}-1280"),
    "campaigns": (TRAFFIC, "campaigns-{}-1280"),
    "affidavit": (TRAFFIC, "affidavit-{}-1280"),
    "report": ("zemo_report_screens_tests", "report-{}-1280"),
    "settings": ("zemo_settings_screens_tests", "settings-{}-1280-8"),
    "voice-tracks": ("zemo_voicetrack_screens_tests", "voicetrack-{}-1024-join"),
}
FILTER = "*Sweep*:*ForecastInLanguage*:*Selector*:*Affidavit*"
MOST_COLOURS = 256


def chunks(data):
    at = 8
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        yield kind, data[at + 8:at + 8 + length]
        at += 12 + length


def pixels(path):
    """Width, and the rows of a PNG of 8 bits a colour as lists of (red, green, blue)."""
    header, packed = None, b""
    for kind, content in chunks(path.read_bytes()):
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", content)
        elif kind == b"IDAT":
            packed += content
    width, height, bits, colours, _, _, interlaced = header
    if bits != 8 or colours not in (2, 6) or interlaced:
        raise ValueError(f"{path} is of a kind that the screens' tests do not draw")
    size = 3 if colours == 2 else 4
    stride, raw, rows, above = width * size, zlib.decompress(packed), [], bytearray(width * size)
    for row in range(height):
        at = row * (stride + 1)
        line = unfiltered(raw[at], bytearray(raw[at + 1:at + 1 + stride]), above, size)
        rows.append([tuple(line[i:i + 3]) for i in range(0, stride, size)])
        above = line
    return width, rows


def unfiltered(kind, line, above, size):
    if kind == 1:
        for i in range(size, len(line)):
            line[i] = line[i] + line[i - size] & 255
    elif kind == 2:
        for i, up in enumerate(above):
            line[i] = line[i] + up & 255
    elif kind == 3:
        for i, up in enumerate(above):
            left = line[i - size] if i >= size else 0
            line[i] = line[i] + (left + up) // 2 & 255
    elif kind == 4:
        for i, up in enumerate(above):
            left, corner = (line[i - size], above[i - size]) if i >= size else (0, 0)
            guess = left + up - corner
            near = min((abs(guess - left), 0, left), (abs(guess - up), 1, up), (abs(guess - corner), 2, corner))
            line[i] = line[i] + near[2] & 255
    return line


def palette(rows):
    """The colours that stand most often, and for each colour the place of its nearest."""
    counts = {}
    for row in rows:
        for colour in row:
            counts[colour] = counts.get(colour, 0) + 1
    kept = sorted(counts, key=lambda colour: (-counts[colour], colour))[:MOST_COLOURS]
    places = {colour: place for place, colour in enumerate(kept)}
    for colour in counts:
        if colour not in places:
            places[colour] = min(range(len(kept)),
                                 key=lambda place: sum((a - b) ** 2 for a, b in zip(kept[place], colour)))
    return kept, places


def write(path, width, rows):
    kept, places = palette(rows)
    raw = b"".join(b"\0" + bytes(places[colour] for colour in row) for row in rows)
    with path.open("wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n")
        for kind, content in ((b"IHDR", struct.pack(">IIBBBBB", width, len(rows), 8, 3, 0, 0, 0)),
                              (b"PLTE", b"".join(bytes(colour) for colour in kept)),
                              (b"IDAT", zlib.compress(raw, 9)), (b"IEND", b"")):
            file.write(struct.pack(">I", len(content)) + kind + content +
                       struct.pack(">I", zlib.crc32(kind + content)))


def main(arguments):
    build, names = pathlib.Path(arguments[0]), arguments[1:] or list(TAKEN)
    for program in sorted({TAKEN[name][0] for name in names}):
        subprocess.run([build / program, f"--gtest_filter={FILTER}", "--gtest_brief=1"], check=True)
    PICTURES.mkdir(exist_ok=True)
    for name in names:
        for language, number in LANGUAGES.items():
            drawn = TAKEN[name][1].format(number if name == "selector" else language)
            to = PICTURES / f"{name}-{language}.png"
            write(to, *pixels(build / "screenshots" / f"{drawn}.png"))
            print(f"{to.name}: {to.stat().st_size} bytes")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

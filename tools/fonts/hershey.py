"""Reader of the Hershey stroke fonts in the .jhf form shipped by Debian (hershey-fonts-data).

Each line of a .jhf file holds one glyph: a five-character glyph number, a three-character
count of coordinate pairs, then the pairs as letters relative to 'R'.  The first pair gives
the left and right side bearings; a pair " R" lifts the pen.  The y axis of the file grows
downwards with the base line at y = 9 and the capitals reaching y = -12, so capitals are 21
units high, which is exactly the vertical divisor of the stroke fonts: y is turned upwards
and moved to the base line, and both axes otherwise keep the original units.

The files hold the 95 printable ASCII characters (codes 32 to 126) in order, plus one extra
glyph at the end.  Some sets place other letters on the ASCII positions (Greek, Cyrillic,
mathematical symbols); the alphabet layouts choose from them by position.
"""

import os

from glyph import Glyph

HERSHEY_DIR = "/usr/share/hershey-fonts"
BASE_LINE = 9


def read_jhf(path):
    """The glyphs of a .jhf file as a list of Glyph, index 0 being code 32."""
    glyphs = []
    with open(path, encoding="ascii") as f:
        for line in f:
            line = line.rstrip("\n")
            if not line.strip():
                continue
            count = int(line[5:8])
            data = line[8:]
            strokes, cur = [], []
            for i in range(1, count):
                a, b = data[2 * i], data[2 * i + 1]
                if a == " " and b == "R":
                    strokes.append(cur)
                    cur = []
                else:
                    cur.append((ord(a) - ord("R"), BASE_LINE - (ord(b) - ord("R"))))
            strokes.append(cur)
            glyphs.append(Glyph(strokes).dedup())
    return glyphs


class HersheySet:
    """One .jhf file, addressed by the ASCII character at whose position a glyph stands."""

    def __init__(self, name):
        self.name = name
        self.path = os.path.join(HERSHEY_DIR, name + ".jhf")
        self.glyphs = read_jhf(self.path)

    def __getitem__(self, ch):
        code = ord(ch) if isinstance(ch, str) else ch
        g = self.glyphs[code - 32]
        return Glyph(g.strokes, "%s[%r]" % (self.name, chr(code)))


_cache = {}


def hershey(name):
    if name not in _cache:
        _cache[name] = HersheySet(name)
    return _cache[name]

"""Reader of the designed glyphs (zoralf.txt) and the composition kit of the default font."""

import os

from glyph import Glyph, parse_strokes
import latin
import marks as mk

HERE = os.path.dirname(os.path.abspath(__file__))


def read_design(path):
    """Glyphs by character and marks by name from a design file."""
    glyphs, marks = {}, {}
    with open(path, encoding="utf-8") as f:
        for number, line in enumerate(f, 1):
            line = line.rstrip("\n")
            if not line.strip() or line.startswith("#"):
                continue
            key, _, rest = line.partition(" ")
            rest = rest.strip()
            if key.startswith("U+"):
                key = chr(int(key[2:], 16))
            try:
                if rest.startswith("="):
                    g = Glyph(glyphs[rest[1:].strip()].strokes)
                else:
                    g = parse_strokes(rest)
            except (KeyError, ValueError) as e:
                raise SystemExit("%s:%d: bad glyph %r (%s)" % (path, number, key, e))
            if key.startswith("mark."):
                marks[key[5:]] = g
            else:
                if key in glyphs:
                    raise SystemExit("%s:%d: %r defined twice" % (path, number, key))
                glyphs[key] = g
    return glyphs, marks


class DesignedMarks:
    """Marks of a designed font, looked up by name (see the end of zoralf.txt)."""

    style = "simplex"

    def __init__(self, marks):
        self._marks = marks

    def __getattr__(self, name):
        if name.startswith("_") or name not in self._marks:
            raise AttributeError(name)
        return lambda: self._marks[name]


class ZoralfKit(latin.Kit):
    """Marks are centred on the middle column of the cell, one row above the letter."""

    CENTRE = 3

    def __init__(self, glyphs, marks):
        super().__init__(glyphs.get, DesignedMarks(marks), xheight=5,
                         cap=7, gap=1, tonos_left=False)

    def above(self, base, mark):
        return base + mark.shift(self.CENTRE, base.top() + self.gap)

    def below(self, base, mark, where):
        lo, hi = mk.bottom_range(base)
        x = self.CENTRE if where == "centre" else hi
        return base + mark.shift(x, base.bbox()[1])


def zoralf():
    glyphs, marks = read_design(os.path.join(HERE, "zoralf.txt"))
    return ZoralfKit(glyphs, marks)

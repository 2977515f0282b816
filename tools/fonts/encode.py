"""Encoding of glyphs into a coordinate pool and a glyph index.

Pool: one entry per point, either packed (one 16-bit word, high byte y, low byte x, both
signed) or separate (two int16 arrays).  Index: one record per glyph from glyph 2 on; a
record is its length L in words (L included) followed by stroke descriptors (count, start),
start being 1-based into the pool.  A negative count announces a third word, an offset
packed like a point and multiplied by the font's offset unit (0.5 for stroke fonts, 2.0 for
outline fonts) before it is added to every point of the stroke.

Points are shared in two simple ways: a stroke whose points already stand in the pool, in
order and contiguous (also inside a longer stroke), only refers to them; and a stroke that
is a translated copy of an earlier stroke refers to that one with an offset, if the offset
is representable.  Accented letters, which repeat their base letter and a mark, cost little.
"""

import struct


def to_int16(v):
    v &= 0xFFFF
    return v - 0x10000 if v >= 0x8000 else v


def pack_xy(x, y):
    if not (-128 <= x <= 127 and -128 <= y <= 127):
        raise ValueError("point (%d, %d) does not fit a packed word" % (x, y))
    return ((y & 0xFF) << 8) | (x & 0xFF)


class Pool:
    def __init__(self, packed, offset_unit):
        self.packed = packed
        self.offset_unit = offset_unit
        self.points = []
        self._bytes = bytearray()
        self._shapes = {}

    @staticmethod
    def _enc(pts):
        return b"".join(struct.pack(">hh", x, y) for x, y in pts)

    def _find(self, needle):
        start = 0
        while True:
            i = self._bytes.find(needle, start)
            if i < 0 or i % 4 == 0:
                return i // 4 if i >= 0 else -1
            start = i + 1

    def _offset_word(self, dx, dy):
        u = self.offset_unit
        ox, oy = dx / u, dy / u
        if ox != int(ox) or oy != int(oy):
            return None
        ox, oy = int(ox), int(oy)
        if not (-128 <= ox <= 127 and -128 <= oy <= 127):
            return None
        return to_int16(((oy & 0xFF) << 8) | (ox & 0xFF))

    def add(self, pts):
        """The stroke descriptor (a list of 2 or 3 words) for a stroke of at least 2 points."""
        assert len(pts) >= 2
        if self.packed:
            for x, y in pts:
                pack_xy(x, y)
        n = len(pts)
        at = self._find(self._enc(pts))
        if at >= 0:
            return [n, at + 1]
        x0, y0 = pts[0]
        shape = tuple((x - x0, y - y0) for x, y in pts)
        if shape in self._shapes:
            start, (sx, sy) = self._shapes[shape]
            word = self._offset_word(x0 - sx, y0 - sy)
            if word is not None:
                return [-n, start + 1, word]
        start = len(self.points)
        self.points.extend(pts)
        self._bytes += self._enc(pts)
        self._shapes.setdefault(shape, (start, (x0, y0)))
        return [n, start + 1]


def encode_index(pool, glyphs):
    """Index words and per-record lengths for glyphs 2.. (glyphs[0] is glyph 2)."""
    words, records = [], []
    for g in glyphs:
        rec = [0]
        for s in (g.strokes if g is not None else []):
            rec.extend(pool.add(s))
        rec[0] = len(rec)
        words.extend(rec)
        records.append(rec)
    return words, records

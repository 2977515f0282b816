"""Accented and additional Latin letters, composed from a font's own letters and marks.

A kit gives access to the font's glyphs by character and knows its marks and its x-height.
Most letters come from their Unicode decomposition (base letter + combining mark); the
others (ligatures, letters with stroke, symbols) have recipes below.
"""

import unicodedata

from glyph import Glyph
import marks as mk

_TOP_MARKS = {
    "\u0300": "grave", "\u0301": "acute", "\u0302": "circumflex", "\u0303": "tilde",
    "\u0306": "breve", "\u0307": "dot", "\u0308": "dieresis", "\u030a": "ring",
    "\u030b": "double_acute", "\u030c": "caron",
}
_BOTTOM_MARKS = {"\u0327": "cedilla", "\u0328": "ogonek"}


class Kit:
    """Glyph source of one font for composition.

    lookup(ch) returns the font's own glyph for a character or None; marks is a
    marks.MarkSet; xheight the height of the small letters; extra maps characters to glyphs
    drawn for this font (e.g. the sharp s) that take precedence over everything else.
    """

    def __init__(self, lookup, marks, xheight, extra=None, cap=21, gap=2, tonos_left=True):
        self.lookup = lookup
        self.marks = marks
        self.xheight = xheight
        self.cap = cap
        self.gap = gap
        self.tonos_left = tonos_left
        self.extra = extra if extra is not None else {}

    def glyph(self, ch):
        """The glyph of ch: drawn for the font, found in it, or composed; None if none."""
        if ch in self.extra:
            return self.extra[ch]
        g = self.lookup(ch)
        if g is not None:
            return g
        return compose(self, ch)

    def get(self, ch):
        g = self.glyph(ch)
        if g is None:
            raise KeyError("no glyph for %r" % ch)
        return g

    def dotless(self, ch):
        g = self.get(ch)
        return g.drop(lambda s: min(y for _, y in s) > self.xheight)

    def above(self, base, mark):
        return mk.above(base, mark, self.gap)

    def below(self, base, mark, where):
        return mk.below(base, mark, where)


def compose(kit, ch):
    """The glyph of character ch in the kit's font, or None if it cannot be made."""
    if ch in _SPECIAL:
        return _SPECIAL[ch](kit)
    decomposition = unicodedata.decomposition(ch).split()
    if len(decomposition) != 2:
        return None
    base_ch, mark_ch = (chr(int(c, 16)) for c in decomposition)
    if base_ch in "ij" and mark_ch in _TOP_MARKS:
        base = kit.dotless(base_ch)
    else:
        base = kit.glyph(base_ch)
    if base is None:
        return None
    m = kit.marks
    if mark_ch == "\u030c" and ch in "ďľťĽ":
        return _apostrophe_caron(kit, base, ch)
    if mark_ch in _TOP_MARKS:
        mark = getattr(m, _TOP_MARKS[mark_ch])()
        if mark_ch == "\u0301" and kit.tonos_left and _is_greek_capital(base_ch):
            return _tonos_left(kit, base, mark)
        return kit.above(base, mark)
    if mark_ch in _BOTTOM_MARKS:
        name = _BOTTOM_MARKS[mark_ch]
        where = "right" if name == "ogonek" else "centre"
        return kit.below(base, getattr(m, name)(), where)
    return None


def _is_greek_capital(ch):
    return "\u0391" <= ch <= "\u03a9"


def _tonos_left(kit, base, mark):
    """Greek capitals carry the tonos before the letter, at its top left."""
    base = base.normalized()
    mx0, _, mx1, _ = mark.bbox()
    m = mark.shift(-mx0, kit.cap - 5)
    return m + base.shift(mx1 - mx0 + 1, 0)


def _apostrophe_caron(kit, base, ch):
    """d, l, t and L take their caron as an apostrophe beside the top of the stem (the t's
    stem ends lower, so its apostrophe stands lower too)."""
    top = base.top()
    _, right = base.x_range_where(lambda y: y >= top - 1)
    return base + kit.marks.apostrophe().shift(right + 3, top - (4 if ch == "ť" else 6))


def _bar(kit, base, y, x0=None, x1=None):
    """A horizontal bar across the stem at height y, as heavy as the font's strokes."""
    bx0, _, bx1, _ = base.bbox()
    x0 = bx0 if x0 is None else x0
    x1 = bx1 if x1 is None else x1
    g = Glyph([[(x0, y), (x1, y)]])
    if kit.marks.style != "simplex":
        g = g + Glyph([[(x0, y + 1), (x1, y + 1)]])
    return base + g


def _eth(kit):
    d = kit.get("D")
    lo, hi = d.stem(10)
    return _bar(kit, d, 10, lo - 3, hi + 4)


def _dcroat(kit):
    d = kit.get("d")
    lo, hi = d.stem(17, "right")
    return _bar(kit, d, 17, lo - 4, hi + 3)


def _hbar(kit):
    h = kit.get("h")
    lo, hi = h.stem(17)
    return _bar(kit, h, 17, lo - 4, hi + 4)


def _Hbar(kit):
    h = kit.get("H")
    x0, _, x1, _ = h.bbox()
    return _bar(kit, h, 16, x0, x1)


def _lslash(kit):
    g = kit.get("l")
    lo, hi = g.stem(11)
    c = (lo + hi) // 2
    return g + _slash(kit, c - 4, 8, c + 4, 14)


def _Lslash(kit):
    g = kit.get("L")
    lo, hi = g.stem(10)
    c = (lo + hi) // 2
    return g + _slash(kit, c - 4, 7, c + 5, 13)


def _slash(kit, x0, y0, x1, y1):
    g = Glyph([[(x0, y0), (x1, y1)]])
    if kit.marks.style != "simplex":
        g = g + g.shift(1, 0)
    return g


def _oslash(kit, ch):
    o = kit.get(ch)
    x0, y0, x1, y1 = o.bbox()
    return o + _slash(kit, x0 - 1, y0 - 1, x1, y1 + 1)


def _dotless_i(kit):
    return kit.dotless("i")


def _idot(kit):
    return kit.above(kit.get("I"), kit.marks.dot())


def ligature(kit, a, b, overlap):
    """Two letters set closer by overlap units (the ae and AE ligatures)."""
    ga = kit.get(a).normalized()
    gb = kit.get(b).normalized()
    return ga + gb.shift(ga.bbox()[2] - overlap, 0)


def _ae_caps(kit):
    a = kit.get("A").normalized()
    e = kit.get("E").normalized()
    # The E takes the place of the right leg of the A: keep the A left of its apex.
    apex = mk.top_anchor(a)[0]
    left = a.clip(xmax=apex)
    return left + e.shift(apex - e.bbox()[0] - 1, 0)


def _thorn_caps(kit):
    """The P with its bowl lowered to the middle of the stem."""
    p = kit.get("P")
    lo, hi = p.stem(5)
    is_bowl = lambda s: max(x for x, _ in s) > hi + 1 and min(y for _, y in s) >= 5
    bowl = p.keep(is_bowl).clip(xmin=lo)
    rest = p.drop(is_bowl)
    # The serifs at the foot of the stem come back at its head, where the bowl left.
    foot = rest.keep(lambda s: max(y for _, y in s) <= 0)
    top = p.top()
    return rest + bowl.shift(0, -5) + foot.shift(0, top)


def _thorn(kit):
    """The p with the ascender of the l."""
    p = kit.get("p")
    l = kit.get("l")
    p_stem = p.stem(-3)[0]
    l_stem = l.stem(8)[0]
    return p + l.clip(ymin=kit.xheight - 1).shift(p_stem - l_stem, 0)


def _eth_small(kit):
    """An o whose right side rises to an ascender bending over to the left, crossed."""
    o = kit.get("o")
    x0, y0, x1, y1 = o.bbox()
    up = Glyph([[(x1, y1 // 2), (x1 - 1, y1 - 2), (x1 - 2, y1 + 1), (x1 - 4, y1 + 4),
                 (x1 - 7, y1 + 6), (x1 - 10, y1 + 7)]])
    if kit.marks.style != "simplex":
        up = up + Glyph([[(x1 - 1, y1 // 2 + 1), (x1 - 2, y1 - 1), (x1 - 3, y1 + 1)]])
    cx = (x0 + x1) // 2
    cross = _slash(kit, cx - 3, y1 + 2, cx + 4, y1 + 5)
    return o + up + cross


def _times(kit):
    return Glyph([[(0, 4), (12, 16)], [(12, 4), (0, 16)]])


def _divide(kit):
    dot = kit.marks.dot()
    return Glyph([[(0, 10), (14, 10)]]) + dot.shift(7, 4) + dot.shift(7, 14)


def _degree(kit):
    return Glyph([[(1, 14), (0, 15), (0, 19), (1, 20), (3, 21), (5, 21), (7, 20), (8, 19),
                   (8, 15), (7, 14), (5, 13), (3, 13), (1, 14)]])


def _invert(kit, ch):
    """Inverted ! and ? for Spanish: turned half round, the dot at the x-height."""
    g = kit.get(ch)
    x0, y0, x1, y1 = g.bbox()
    return g.map(lambda x, y: (x0 + x1 - x, kit.xheight + y0 - y))


def _currency(kit):
    ring = Glyph([[(3, 5), (1, 7), (1, 11), (3, 13), (7, 13), (9, 11), (9, 7), (7, 5), (3, 5)]])
    ticks = Glyph([[(0, 4), (2, 6)], [(10, 4), (8, 6)], [(0, 14), (2, 12)], [(10, 14), (8, 12)]])
    return ring + ticks


def _copyright(kit):
    ring = Glyph([[(7, 0), (4, 1), (2, 3), (1, 5), (0, 8), (0, 13), (1, 16), (2, 18), (4, 20),
                   (7, 21), (12, 21), (15, 20), (17, 18), (18, 16), (19, 13), (19, 8), (18, 5),
                   (17, 3), (15, 1), (12, 0), (7, 0)]])
    c = Glyph([[(13, 14), (12, 15), (10, 16), (9, 16), (7, 15), (6, 13), (6, 8), (7, 6), (9, 5),
                (10, 5), (12, 6), (13, 7)]])
    return ring + c


_SPECIAL = {
    "Ð": _eth, "đ": _dcroat, "ħ": _hbar, "Ħ": _Hbar, "Ł": _Lslash, "ł": _lslash,
    "Ø": lambda k: _oslash(k, "O"), "ø": lambda k: _oslash(k, "o"),
    "ı": _dotless_i, "İ": _idot,
    "æ": lambda k: ligature(k, "a", "e", 3), "Æ": _ae_caps,
    "Þ": _thorn_caps, "þ": _thorn, "ð": _eth_small,
    "×": _times, "÷": _divide, "°": _degree,
    "¡": lambda k: _invert(k, "!"), "¿": lambda k: _invert(k, "?"),
    "¤": _currency, "©": _copyright,
}

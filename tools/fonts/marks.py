"""Accent marks for the Hershey-based fonts and the composition of accented letters.

The sources hold no accented letters, so every one is composed from its base letter and a
mark drawn here.  A mark is drawn once as a skeleton in Hershey units and given weight by
the style of the font it joins: a single line (simplex), a doubled line (duplex), a thin
wedge (complex, like the serifs of those fonts) or a heavier wedge (triplex).

Top marks have their lower centre at (0, 0); bottom marks (cedilla, ogonek) hang from (0, 0).
"""

from glyph import Glyph

# Skeletons: lists of strokes.
_ACUTE = [[(-2, 0), (2, 5)]]
_CIRCUMFLEX = [[(-4, 0), (0, 4), (4, 0)]]
_CARON = [[(-4, 4), (0, 0), (4, 4)]]
_TILDE = [[(-5, 1), (-4, 3), (-3, 4), (-2, 4), (-1, 3), (1, 1), (2, 0), (3, 0), (4, 1), (5, 3)]]
_BREVE = [[(-4, 4), (-3, 2), (-1, 1), (1, 1), (3, 2), (4, 4)]]
_RING = [[(-1, 0), (1, 0), (2, 1), (2, 3), (1, 4), (-1, 4), (-2, 3), (-2, 1), (-1, 0)]]
_CEDILLA = [[(0, 0), (0, -2), (2, -3), (2, -5), (1, -6), (-2, -6)]]
_OGONEK = [[(0, 0), (-2, -2), (-2, -4), (-1, -5), (1, -5)]]


class MarkSet:
    """The marks of one style; dot is the font's own dot (taken from its 'i')."""

    def __init__(self, style, dot, apostrophe):
        self.style = style
        self.dot_glyph = dot
        self.apostrophe_glyph = apostrophe

    def _weigh(self, strokes, heavy_shift=(1, 0)):
        """The skeleton, drawn twice in the heavier styles."""
        g = Glyph(strokes)
        if self.style in ("duplex", "triplex"):
            g = g + g.shift(*heavy_shift)
        return g

    def acute(self):
        if self.style == "simplex":
            return Glyph(_ACUTE)
        if self.style == "duplex":
            return Glyph(_ACUTE) + Glyph(_ACUTE).shift(1, 0)
        # A thin wedge, widening upwards like the serif strokes of these fonts.
        if self.style == "triplex":
            return Glyph([[(-2, 0), (2, 5), (4, 4), (-2, 0)], [(-2, 0), (3, 5)]])
        return Glyph([[(-2, 0), (2, 5), (3, 4), (-2, 0)]])

    def grave(self):
        return self.acute().mirror_x()

    def double_acute(self):
        a = self.acute()
        return a.shift(-2, 0) + a.shift(3, 0)

    def circumflex(self):
        if self.style == "simplex":
            return Glyph(_CIRCUMFLEX)
        return Glyph(_CIRCUMFLEX) + Glyph([[(-4, 0), (0, 5), (4, 0)]])

    def caron(self):
        if self.style == "simplex":
            return Glyph(_CARON)
        return Glyph(_CARON) + Glyph([[(-4, 4), (0, 1), (4, 4)]])

    def tilde(self):
        return self._weigh(_TILDE, (0, 1))

    def breve(self):
        if self.style == "simplex":
            return Glyph(_BREVE)
        return Glyph(_BREVE) + Glyph([[(-3, 2), (-1, 0), (1, 0), (3, 2)]])

    def ring(self):
        return Glyph(_RING)

    def dot(self):
        return self.dot_glyph

    def dieresis(self, spread=4):
        d = self.dot_glyph
        return d.shift(-spread, 0) + d.shift(spread, 0)

    def cedilla(self):
        return self._weigh(_CEDILLA)

    def ogonek(self):
        return self._weigh(_OGONEK)

    def apostrophe(self):
        return self.apostrophe_glyph


def centred_dot(dot_source, xheight):
    """The dot of an 'i' (its strokes above the x-height), centred at (0, 1)."""
    d = dot_source.keep(lambda s: min(y for _, y in s) > xheight + 1)
    x0, y0, x1, y1 = d.bbox()
    return d.shift(-((x0 + x1) // 2), -y0)


def centred_apostrophe(glyph):
    """An apostrophe moved so that its bottom centre lies at (0, 0)."""
    x0, y0, x1, y1 = glyph.bbox()
    return glyph.shift(-((x0 + x1) // 2), -y0)


def top_anchor(base, slice_depth=3):
    """Centre of the glyph's topmost points, where a mark above it is centred."""
    top = base.top()
    lo, hi = base.x_range_where(lambda y: y >= top - slice_depth)
    return (lo + hi) // 2, top


def bottom_range(base, height=2):
    lo, hi = base.x_range_where(lambda y: y <= base.bbox()[1] + height)
    return lo, hi


def above(base, mark, gap=2, dx=0, min_y=None):
    """base with mark centred above it."""
    cx, top = top_anchor(base)
    y = top + gap if min_y is None else max(top + gap, min_y)
    return base + mark.shift(cx + dx, y)


def below(base, mark, where="centre", dx=0):
    lo, hi = bottom_range(base)
    x = (lo + hi) // 2 if where == "centre" else hi - 1
    return base + mark.shift(x + dx, base.bbox()[1])

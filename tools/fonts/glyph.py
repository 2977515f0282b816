"""Stroke glyphs and the small geometry the font generator needs.

A glyph is a list of strokes; a stroke is a list of integer points (x, y) with y growing
upwards and the base line at y = 0.  Glyphs are values: every operation returns a new one.
"""

import math


class Glyph:
    def __init__(self, strokes=(), name=""):
        self.strokes = [list(s) for s in strokes if len(s) >= 2]
        self.name = name

    # -- measures ------------------------------------------------------------------------

    def points(self):
        return [p for s in self.strokes for p in s]

    def bbox(self):
        pts = self.points()
        if not pts:
            return (0, 0, 0, 0)
        xs = [p[0] for p in pts]
        ys = [p[1] for p in pts]
        return (min(xs), min(ys), max(xs), max(ys))

    def top(self):
        return self.bbox()[3]

    def is_empty(self):
        return not self.strokes

    def x_range_where(self, pred):
        """Horizontal extent of the segments' points that satisfy pred(y)."""
        xs = [x for s in self.strokes for (x, y) in s if pred(y)]
        return (min(xs), max(xs)) if xs else None

    def crossings(self, y):
        """Sorted horizontal positions where the strokes cross the line at height y."""
        xs = []
        for s in self.strokes:
            for (x0, y0), (x1, y1) in zip(s, s[1:]):
                if y0 == y1 or not (min(y0, y1) <= y <= max(y0, y1)):
                    continue
                xs.append(x0 + (x1 - x0) * (y - y0) / (y1 - y0))
        return sorted(xs)

    def stem(self, y, side="left"):
        """The leftmost (or rightmost) crossing at height y and its parallel companion(s):
        the horizontal range of a stem that may be drawn with several lines."""
        xs = self.crossings(y)
        if not xs:
            raise ValueError("nothing at height %d" % y)
        if side == "left":
            lo = xs[0]
            hi = max(x for x in xs if x <= lo + 2)
        else:
            hi = xs[-1]
            lo = min(x for x in xs if x >= hi - 2)
        return int(round(lo)), int(round(hi))

    # -- transforms ----------------------------------------------------------------------

    def map(self, fn):
        return Glyph([[fn(x, y) for (x, y) in s] for s in self.strokes], self.name)

    def shift(self, dx, dy=0):
        return self.map(lambda x, y: (x + dx, y + dy))

    def scale(self, sx, sy=None, cx=0, cy=0):
        sy = sx if sy is None else sy
        return self.map(lambda x, y: (round_half_up(cx + (x - cx) * sx),
                                      round_half_up(cy + (y - cy) * sy))).dedup()

    def mirror_x(self, axis=0):
        """Mirror left-right about x = axis / 2 (axis is the sum of the two x mapped)."""
        return self.map(lambda x, y: (axis - x, y))

    def mirror_y(self, axis=0):
        return self.map(lambda x, y: (x, axis - y))

    def dedup(self):
        out = []
        for s in self.strokes:
            t = [s[0]]
            for p in s[1:]:
                if p != t[-1]:
                    t.append(p)
            if len(t) >= 2:
                out.append(t)
        return Glyph(out, self.name)

    def chained(self):
        """The same drawing with strokes that meet end to end joined into one (turning a
        stroke round where needed), so that it takes fewer moves."""
        strokes = [list(s) for s in self.strokes]
        out = []
        while strokes:
            cur = strokes.pop(0)
            joined = True
            while joined:
                joined = False
                for i, s in enumerate(strokes):
                    if s[0] == cur[-1]:
                        cur = cur + s[1:]
                    elif s[-1] == cur[-1]:
                        cur = cur + s[::-1][1:]
                    elif s[-1] == cur[0]:
                        cur = s + cur[1:]
                    elif s[0] == cur[0]:
                        cur = s[::-1] + cur[1:]
                    else:
                        continue
                    del strokes[i]
                    joined = True
                    break
            out.append(cur)
        return Glyph(out, self.name)

    def normalized(self):
        """The glyph moved so that its leftmost point lies on x = 0."""
        if self.is_empty():
            return self
        return self.shift(-self.bbox()[0])

    def __add__(self, other):
        return Glyph(self.strokes + other.strokes, self.name or other.name)

    # -- selections ----------------------------------------------------------------------

    def keep(self, pred):
        """Only the strokes for which pred(stroke) holds."""
        return Glyph([s for s in self.strokes if pred(s)], self.name)

    def drop(self, pred):
        return Glyph([s for s in self.strokes if not pred(s)], self.name)

    def clip(self, xmin=-1000, ymin=-1000, xmax=1000, ymax=1000):
        """The parts of every stroke inside the box; segments are cut exactly and rounded."""
        out = []
        for s in self.strokes:
            cur = []
            for a, b in zip(s, s[1:]):
                seg = _clip_segment(a, b, xmin, ymin, xmax, ymax)
                if seg is None:
                    if len(cur) >= 2:
                        out.append(cur)
                    cur = []
                    continue
                p, q = seg
                if cur and cur[-1] == p:
                    cur.append(q)
                else:
                    if len(cur) >= 2:
                        out.append(cur)
                    cur = [p, q]
                if q != b:  # left the box: the run ends here
                    out.append(cur)
                    cur = []
            if len(cur) >= 2:
                out.append(cur)
        return Glyph(out, self.name).dedup()


def round_half_up(v):
    return int(math.floor(v + 0.5))


def _clip_segment(a, b, xmin, ymin, xmax, ymax):
    (x0, y0), (x1, y1) = a, b
    t0, t1 = 0.0, 1.0
    dx, dy = x1 - x0, y1 - y0
    for p, q in ((-dx, x0 - xmin), (dx, xmax - x0), (-dy, y0 - ymin), (dy, ymax - y0)):
        if p == 0:
            if q < 0:
                return None
            continue
        r = q / p
        if p < 0:
            t0 = max(t0, r)
        else:
            t1 = min(t1, r)
        if t0 > t1:
            return None
    pa = a if t0 == 0.0 else (round_half_up(x0 + t0 * dx), round_half_up(y0 + t0 * dy))
    pb = b if t1 == 1.0 else (round_half_up(x0 + t1 * dx), round_half_up(y0 + t1 * dy))
    if pa == pb:
        return None
    return pa, pb


def parse_strokes(text):
    """Strokes written as "x y, x y, ... / x y, ..." (the form of the designed glyphs)."""
    strokes = []
    for part in text.split("/"):
        part = part.strip()
        if not part:
            continue
        pts = []
        for xy in part.split(","):
            x, y = xy.split()
            pts.append((int(x), int(y)))
        strokes.append(pts)
    return Glyph(strokes)

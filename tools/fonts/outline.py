"""Outline glyphs from TrueType fonts, flattened into closed polygons.

The quadratic contours of a glyph are flattened to within a tolerance, scaled so that the
capitals are 200 units high (the divisors of the outline fonts), rounded to integers and
thinned where points lie nearly on a line.  Every contour is closed by repeating its first
point.  All contours of a glyph, plus one joining point per contour after the first, must
fit a polygon of 200 points; glyphs that would not are flattened again more coarsely.

Accented letters are composites in the fonts: the base letter and the accent are
flattened once and placed by their offsets, rounded to even units so that the pool can
share their points through stroke offsets (which count in steps of 2).
"""

import math

from fontTools.ttLib import TTFont

from glyph import Glyph

CAP_HEIGHT = 200
MAX_POLYGON = 200


class OutlineFont:
    def __init__(self, path, x_scale=1.0):
        self.path = path
        self.font = TTFont(path)
        self.cmap = self.font.getBestCmap()
        self.glyf = self.font["glyf"]
        cap = self.font["OS/2"].sCapHeight
        self.sy = CAP_HEIGHT / cap
        self.sx = self.sy * x_scale
        self._cache = {}

    def glyph(self, ch):
        name = self.cmap.get(ord(ch))
        if name is None:
            raise KeyError("%s has no %r" % (self.path, ch))
        for tolerance in (0.5, 0.8, 1.2, 1.8, 2.5, 3.5, 5.0):
            contours = self._contours(name, tolerance)
            if polygon_size(contours) <= MAX_POLYGON:
                break
        else:
            raise SystemExit("glyph %r of %s needs more than %d points" % (ch, self.path,
                                                                             MAX_POLYGON))
        g = Glyph(contours)
        if g.is_empty():
            return g
        shift = g.bbox()[0]
        shift -= shift % 2  # even, so that composites keep sharing their parts
        return g.shift(-shift, 0)

    def _contours(self, name, tolerance):
        key = (name, tolerance)
        if key in self._cache:
            return self._cache[key]
        g = self.glyf[name]
        out = []
        if g.isComposite():
            for c in g.components:
                if hasattr(c, "transform") and c.transform != [[1, 0], [0, 1]]:
                    raise SystemExit("scaled component in %s of %s" % (name, self.path))
                dx = 2 * round(c.x * self.sx / 2)
                dy = 2 * round(c.y * self.sy / 2)
                for contour in self._contours(c.glyphName, tolerance):
                    out.append([(x + dx, y + dy) for x, y in contour])
        elif g.numberOfContours > 0:
            coords, ends, flags = g.getCoordinates(self.glyf)
            start = 0
            for end in ends:
                pts = [(coords[i][0], coords[i][1], flags[i] & 1) for i in range(start, end + 1)]
                start = end + 1
                poly = self._flatten(pts, tolerance)
                if poly:
                    out.append(poly)
        self._cache[key] = out
        return out

    def _flatten(self, pts, tolerance):
        """One closed quadratic contour as a closed polygon of integer points."""
        # Scale first, so that the tolerance is in output units.
        pts = [(x * self.sx, y * self.sy, on) for x, y, on in pts]
        n = len(pts)
        # Start at an on-curve point (or the midpoint of two off-curve points).
        first = next((i for i in range(n) if pts[i][2]), None)
        if first is None:
            a, b = pts[-1], pts[0]
            seq = [((a[0] + b[0]) / 2, (a[1] + b[1]) / 2, 1)] + pts
            n = len(seq)
        else:
            seq = pts[first:] + pts[:first]
        out = [(seq[0][0], seq[0][1])]
        i = 1
        cur = (seq[0][0], seq[0][1])
        while i <= n:
            p = seq[i % n]
            if p[2]:
                out.append((p[0], p[1]))
                cur = (p[0], p[1])
                i += 1
                continue
            q = seq[(i + 1) % n]
            if q[2]:
                end = (q[0], q[1])
                step = 2
            else:
                end = ((p[0] + q[0]) / 2, (p[1] + q[1]) / 2)
                step = 1
            out.extend(_quad(cur, (p[0], p[1]), end, tolerance))
            cur = end
            i += step
        ipts = []
        for x, y in out:
            q = (int(math.floor(x + 0.5)), int(math.floor(y + 0.5)))
            if not ipts or ipts[-1] != q:
                ipts.append(q)
        if ipts[0] != ipts[-1]:
            ipts.append(ipts[0])
        ipts = _thin(ipts, tolerance)
        return ipts if len(ipts) >= 4 else None


def _quad(p0, p1, p2, tolerance):
    """Points after p0 of the quadratic curve p0 p1 p2, within tolerance of it."""
    dx = p0[0] - 2 * p1[0] + p2[0]
    dy = p0[1] - 2 * p1[1] + p2[1]
    dd = math.hypot(dx, dy)  # the deviation of the chord is dd / 4 per halving squared
    n = max(1, int(math.ceil(math.sqrt(dd / (8 * tolerance))))) if dd > 0 else 1
    out = []
    for k in range(1, n + 1):
        t = k / n
        u = 1 - t
        out.append((u * u * p0[0] + 2 * u * t * p1[0] + t * t * p2[0],
                    u * u * p0[1] + 2 * u * t * p1[1] + t * t * p2[1]))
    return out


def _thin(pts, tolerance):
    """Drop points of a closed polygon that lie within tolerance of the line of their
    neighbours (Douglas-Peucker on the open chain from the first point round to it)."""
    if len(pts) <= 4:
        return pts
    keep = [False] * len(pts)
    keep[0] = keep[-1] = True
    # Split at the point farthest from the start so that the chain is not degenerate.
    far = max(range(len(pts)), key=lambda i: (pts[i][0] - pts[0][0]) ** 2 +
              (pts[i][1] - pts[0][1]) ** 2)
    keep[far] = True
    stack = [(0, far), (far, len(pts) - 1)]
    while stack:
        a, b = stack.pop()
        if b - a < 2:
            continue
        (x0, y0), (x1, y1) = pts[a], pts[b]
        length = math.hypot(x1 - x0, y1 - y0)
        best, at = -1.0, -1
        for i in range(a + 1, b):
            x, y = pts[i]
            if length == 0:
                d = math.hypot(x - x0, y - y0)
            else:
                d = abs((x1 - x0) * (y0 - y) - (x0 - x) * (y1 - y0)) / length
            if d > best:
                best, at = d, i
        if best > tolerance:
            keep[at] = True
            stack.append((a, at))
            stack.append((at, b))
    return [p for p, k in zip(pts, keep) if k]


def polygon_size(contours):
    """Points of the polygon the engine assembles: all contours plus one join each."""
    if not contours:
        return 0
    return sum(len(c) for c in contours) + len(contours) - 1

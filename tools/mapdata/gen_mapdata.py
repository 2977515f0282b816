#!/usr/bin/python3
"""Writes maps/map_data.cpp, the map data built into the library, from the Natural Earth
shapefiles that libplplot-data installs (public domain; see README.md here):

  globe.shp   283 coastline pieces (8,259 points), chained here into closed rings (a
              piece that goes on across 180 degrees is shifted by 360, so that the
              longitudes of a ring are continuous); the ring of Antarctica, which runs
              from -180 to 180 degrees, is closed along the cut meridian and the South
              Pole. Each ring gets the level of the GSHHS data: 1 land, 2 lake (a ring
              inside land), 3 island in a lake; the few chains that do not close (small
              islands drawn as lines at this scale) get level 0: drawn, never filled.
  cglobe.shp  the same coastlines cut into other pieces, followed by the political
              borders: its records from 284 on (169 lines) are taken as borders.

Points are stored as int32 in units of 1e-4 degrees.

Usage: gen_mapdata.py [SHAPE_DIR] [OUTPUT]
"""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from shp import read_shp  # noqa: E402

SHAPES = "/usr/share/plplot5.15.0"
FIRST_BORDER = 284
UNIT = 1e-4


def chain(pieces):
    """Joins pieces end to start into rings; a piece that goes on across the cut meridian
    (its start 360 degrees from the end so far) is shifted to keep the longitudes
    continuous. Returns the rings and the chains that do not close."""
    by_start = {}
    for i, p in enumerate(pieces):
        by_start.setdefault(p[0], []).append(i)
    used = [False] * len(pieces)
    rings, chains = [], []
    for i in range(len(pieces)):
        if used[i]:
            continue
        used[i] = True
        line = list(pieces[i])
        while not closes(line):
            x, y = line[-1]
            found = None
            for shift in (0.0, 360.0, -360.0):
                for j in by_start.get((x - shift, y), []):
                    if not used[j]:
                        found = (j, shift)
                        break
                if found:
                    break
            if not found:
                break
            j, shift = found
            used[j] = True
            line += [(px + shift, py) for px, py in pieces[j][1:]]
        (rings if closes(line) else chains).append(line)
    return rings, chains


def closes(line):
    return len(line) > 3 and line[-1] == line[0]


def close_round_pole(line):
    """A chain from -180 to 180 (or back) round a pole, closed through the pole."""
    (x0, y0), (x1, y1) = line[0], line[-1]
    if abs(abs(x1 - x0) - 360) > 1e-9 or y0 != y1:
        raise ValueError("open coastline from %s to %s" % (line[0], line[-1]))
    pole = -90.0 if sum(y for _, y in line) < 0 else 90.0
    return line + [(x1, pole), (x0, pole), line[0]]


def inside(pt, ring):
    x, y = pt
    c = False
    for (x1, y1), (x2, y2) in zip(ring, ring[1:]):
        if (y1 > y) != (y2 > y) and x < x1 + (y - y1) * (x2 - x1) / (y2 - y1):
            c = not c
    return c


def signed_area(ring):
    return 0.5 * sum(x1 * y2 - x2 * y1 for (x1, y1), (x2, y2) in zip(ring, ring[1:]))


def levels(rings):
    """Nesting depth of every ring: 1 for rings inside no other."""
    out = []
    for i, r in enumerate(rings):
        # A vertex of the ring that no other ring shares decides.
        depth = 1
        for j, o in enumerate(rings):
            if i != j and abs(signed_area(o)) > abs(signed_area(r)) and inside(r[0], o):
                depth += 1
        out.append(depth)
    return out


def emit(out, name, records, comment):
    out.append("// %s" % comment)
    out.append("const BuiltinRecord %sRecords[] = {" % name)
    first = 0
    for pts, level in records:
        out.append("    {%d, %d, %d}," % (first, len(pts), level))
        first += len(pts)
    out.append("};")
    out.append("const std::int32_t %sPoints[] = {" % name)
    for pts, _ in records:
        vals = []
        for x, y in pts:
            vals += [round(x / UNIT), round(y / UNIT)]
        for k in range(0, len(vals), 12):
            out.append("    " + ", ".join(str(v) for v in vals[k:k + 12]) + ",")
    out.append("};")
    out.append("")
    return first


def main():
    shapes = sys.argv[1] if len(sys.argv) > 1 else SHAPES
    target = sys.argv[2] if len(sys.argv) > 2 else os.path.join(
        os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__)))), "maps", "map_data.cpp")
    globe = [part for rec in read_shp(os.path.join(shapes, "globe.shp")) for part in rec]
    cglobe = read_shp(os.path.join(shapes, "cglobe.shp"))
    rings, chains = chain(globe)
    # The chain round the South Pole is Antarctica; the other open chains are small
    # islands drawn as lines at this scale (level 0: drawn, never filled).
    rings += [close_round_pole(c) for c in chains if abs(abs(c[-1][0] - c[0][0]) - 360) < 1e-9]
    lines = [c for c in chains if abs(abs(c[-1][0] - c[0][0]) - 360) >= 1e-9]
    lv = levels(rings)
    coast = list(zip(rings, lv)) + [(c, 0) for c in lines]
    borders = [(part, 1) for rec in cglobe[FIRST_BORDER:] for part in rec]
    out = ["// Generated by tools/mapdata/gen_mapdata.py, do not edit.",
           "// Natural Earth coastlines and borders (public domain), from libplplot-data.",
           "",
           "#include \"maps/map_data.h\"",
           "",
           "namespace zorvel {",
           "namespace {",
           ""]
    n_coast = emit(out, "kCoast", coast, "%d rings (levels 1 land, 2 lake, 3 island in a lake) and %d open lines (level 0)" % (len(rings), len(lines)))
    n_border = emit(out, "kBorder", borders, "%d border lines" % len(borders))
    out += ["}  // namespace",
            "",
            "const BuiltinLayer kBuiltinCoast = {kCoastRecords, %d, kCoastPoints, %d};" % (len(coast), n_coast),
            "const BuiltinLayer kBuiltinBorders = {kBorderRecords, %d, kBorderPoints, %d};" % (len(borders), n_border),
            "",
            "}  // namespace zorvel",
            ""]
    with open(target, "w") as f:
        f.write("\n".join(out))
    print("%s: %d rings (%d points; levels %s), %d borders (%d points)" % (
        target, len(coast), n_coast, sorted(set(lv)), len(borders), n_border))


if __name__ == "__main__":
    main()

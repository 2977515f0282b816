#!/usr/bin/python3
"""Writes the map data files gshhs_<r>.b, wdb_borders_<r>.b and wdb_rivers_<r>.b (r: l low,
i intermediate) from the shorelines, borders and rivers that GMT ships in its binned form.

`gmt coast -M` dumps the data cut into pieces at the edges of its bins; the shoreline
pieces of one level are chained end to start into closed rings (Antarctica, which runs
round the South Pole, is closed through the pole), borders and rivers into lines as far as
one piece continues another. Each ring or line becomes a record of the GSHHS 2 layout: a
header of 11 big-endian int32 (id, n, flag, west, east, south, north, area, area_full,
container, ancestor) followed by n (lon, lat) int32 pairs in micro-degrees.

Usage: gen_gshhs.py [-r l,i] [-o DIR] [--gmt GMT] [-v]
"""

import argparse
import math
import os
import struct
import subprocess
import sys
import tempfile
from array import array

MICRO = 1000000
TURN = 360 * MICRO
# GSHHS data release written into the flag (bits 8-15).
VERSION = 15
# Authalic radius of WGS 84 (km): polygon areas on the sphere of the same surface.
RADIUS = 6371.0072
INT32_MAX = 2**31 - 1


def run_gmt(gmt, args):
    # In a directory of its own: gmt leaves its gmt.history behind.
    with tempfile.TemporaryDirectory() as tmp:
        out = subprocess.run([gmt, "coast", "-Rd", "-M"] + args, check=True, cwd=tmp,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE).stdout
    return out.decode("ascii")


def pieces(text):
    """[(level, [(x, y) micro-degrees])] of a `gmt coast -M` dump ("> ... Level L")."""
    out = []
    cur = None
    for line in text.splitlines():
        if not line:
            continue
        if line[0] == ">":
            level = int(line.rsplit("Level", 1)[1])
            cur = []
            out.append((level, cur))
        elif line[0] != "#":
            x, y = line.split()[:2]
            cur.append((round(float(x) * MICRO), round(float(y) * MICRO)))
    return [(lv, pts) for lv, pts in out if len(pts) >= 2]


def key(p):
    return (p[0] % TURN, p[1])


def unwrap(points):
    """Longitudes made continuous: no step of more than 180 degrees between neighbours."""
    out = [points[0]]
    for x, y in points[1:]:
        px = out[-1][0]
        while x - px > TURN // 2:
            x -= TURN
        while px - x > TURN // 2:
            x += TURN
        out.append((x, y))
    return out


def chain(parts):
    """Chains pieces end to start (same level) into closed rings. Returns (rings, number of
    chains that do not close, number of slivers left out)."""
    starts = {}
    for i, (level, pts) in enumerate(parts):
        if key(pts[0]) != key(pts[-1]):
            starts.setdefault((level, key(pts[0])), []).append(i)
    used = [False] * len(parts)
    out = []
    n_open = 0
    n_slivers = 0
    for i, (level, pts) in enumerate(parts):
        if used[i]:
            continue
        used[i] = True
        line = list(pts)
        while key(line[-1]) != key(line[0]):
            nxt = next((j for j in starts.get((level, key(line[-1])), ()) if not used[j]), None)
            if nxt is None:
                break
            used[nxt] = True
            line.extend(parts[nxt][1][1:])
        line = unwrap(line)
        if key(line[-1]) != key(line[0]):
            n_open += 1
            continue
        if line[-1][0] != line[0][0]:
            # Round a pole: closed along the meridian of the ends through the pole, back
            # along the pole in steps of 120 degrees (a reader that keeps longitudes
            # continuous takes a step of 360 for none).
            pole = -90 * MICRO if sum(y for _, y in line) < 0 else 90 * MICRO
            x1, x0 = line[-1][0], line[0][0]
            line += [(x1 + (x0 - x1) * k // 3, pole) for k in range(4)] + [line[0]]
        if len(line) < 4 or ring_area(line) == 0.0:
            # A sliver along a bin edge (there and back): no ring.
            n_slivers += 1
            continue
        out.append((level, line))
    return out, n_open, n_slivers


def chain_lines(parts):
    """Lines: a piece is joined to the one that starts where it ends when that is the only
    piece starting there and the only one ending there (a plain continuation across a bin
    edge, not a junction)."""
    n_start = {}
    n_end = {}
    for i, (level, pts) in enumerate(parts):
        n_start.setdefault((level, key(pts[0])), []).append(i)
        n_end.setdefault((level, key(pts[-1])), []).append(i)
    nxt = {}
    has_prev = set()
    for i, (level, pts) in enumerate(parts):
        k = (level, key(pts[-1]))
        if len(n_end[k]) == 1 and len(n_start.get(k, ())) == 1:
            j = n_start[k][0]
            if j != i:
                nxt[i] = j
                has_prev.add(j)
    out = []
    used = [False] * len(parts)
    order = [i for i in range(len(parts)) if i not in has_prev] + list(range(len(parts)))
    for i in order:
        if used[i]:
            continue
        level, pts = parts[i]
        line = list(pts)
        used[i] = True
        j = nxt.get(i)
        while j is not None and not used[j]:
            used[j] = True
            line.extend(parts[j][1][1:])
            j = nxt.get(j)
        out.append((level, unwrap(line)))
    return out


def ring_area(line):
    """Area (km^2) of a closed ring on the sphere (longitudes continuous)."""
    s = 0.0
    for (x0, y0), (x1, y1) in zip(line, line[1:]):
        s += math.radians((x1 - x0) / MICRO) * (math.sin(math.radians(y0 / MICRO)) +
                                                 math.sin(math.radians(y1 / MICRO)))
    return abs(s) * 0.5 * RADIUS * RADIUS


def area_scaled(area):
    """(stored area, magnitude m): area * 10^m in int32 with the largest m up to 6."""
    for m in range(6, -1, -1):
        v = round(area * 10**m)
        if v <= INT32_MAX:
            return v, m
    return INT32_MAX, 0


def record(rid, level, line, area, source, river):
    xs = [x for x, _ in line]
    ys = [y for _, y in line]
    west, east = min(xs), max(xs)
    # West in 0 .. 360; a record across the prime meridian starts below 0.
    shift = -(west // TURN) * TURN
    west += shift
    east += shift
    round_pole = east - west >= TURN
    if round_pole:
        # Round a pole (Antarctica): the whole circle.
        west, east = 0, TURN
    elif east > TURN:
        shift -= TURN
        west -= TURN
        east -= TURN
    greenwich = 1 if west < 0 < east or round_pole else 0
    dateline = 2 if round_pole or any(west <= k * TURN + TURN // 2 <= east for k in (-1, 0)) else 0
    stored, m = area_scaled(area)
    flag = (level | VERSION << 8 | (greenwich | dateline) << 16 | source << 24 | river << 25 |
            m << 26)
    head = struct.pack(">11i", rid, len(line), flag, west, east, min(ys), max(ys), stored,
                       stored, -1, -1)
    pts = array("i")
    for x, y in line:
        # Points continuous inside the box (those west of the prime meridian below 0 in a
        # record across it); round a pole in 0 .. 360.
        x = x % TURN if round_pole else x + shift
        pts.append(x)
        pts.append(y)
    if sys.byteorder == "little":
        pts.byteswap()
    return head + pts.tobytes()


def write(path, records):
    with open(path + ".tmp", "wb") as f:
        for r in records:
            f.write(r)
    os.replace(path + ".tmp", path)


def make(gmt, res, outdir, verbose):
    shore = pieces(run_gmt(gmt, ["-D" + res, "-W"]))
    rings, n_open, n_slivers = chain(shore)
    if n_open:
        raise SystemExit(f"gen_gshhs: {n_open} shoreline chains of resolution {res} do not close")
    # Riverlakes (level 2 rings of the +r selection) get the river flag.
    riverlakes = {key(p[0]) + key(p[1]) for _, p in pieces(run_gmt(gmt, ["-D" + res, "-W",
                                                                          "-A0/2/2+r"]))}
    rings = [(lv, line, ring_area(line)) for lv, line in rings]
    rings.sort(key=lambda r: (r[0], -r[2]))
    recs = []
    n_points = 0
    for rid, (lv, line, area) in enumerate(rings):
        river = 1 if lv == 2 and any(key(a) + key(b) in riverlakes
                                     for a, b in zip(line, line[1:])) else 0
        recs.append(record(rid, lv, line, area, 1 if lv == 1 else 0, river))
        n_points += len(line)
    write(os.path.join(outdir, f"gshhs_{res}.b"), recs)
    report = [f"gshhs_{res}.b: {len(shore)} pieces, {len(rings)} rings, {n_points} points "
              f"({n_slivers} slivers left out)"]
    for name, opt, base in (("borders", "-Na", 0), ("rivers", "-Ia", 1)):
        lines = chain_lines(pieces(run_gmt(gmt, ["-D" + res, opt])))
        # River levels count from 1 in the file (GMT's 0 is the double-lined rivers).
        recs = [record(i, lv + base, line, 0.0, 0, 0) for i, (lv, line) in enumerate(lines)]
        write(os.path.join(outdir, f"wdb_{name}_{res}.b"), recs)
        report.append(f"wdb_{name}_{res}.b: {len(lines)} lines, "
                      f"{sum(len(l) for _, l in lines)} points")
    if verbose:
        print("\n".join(report))


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    ap.add_argument("-r", default="l,i", help="resolutions (l, i, h, f)")
    ap.add_argument("-o", default=".", help="output directory")
    ap.add_argument("--gmt", default="gmt")
    ap.add_argument("-v", action="store_true")
    a = ap.parse_args()
    os.makedirs(a.o, exist_ok=True)
    for res in a.r.split(","):
        make(a.gmt, res, a.o, a.v)


if __name__ == "__main__":
    main()

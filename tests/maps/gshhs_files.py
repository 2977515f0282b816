#!/usr/bin/python3
"""The map data files made by tools/mapdata/gen_gshhs.py at low resolution: GMT's own
reader (`gmt gshhg`) and the library's reader read every record of them, and the headers
hold what the layout promises (closed rings of levels 1-4 inside their boxes, the
greenwich flag where a box starts below 0, areas that add up to the Earth's land).

Usage: gshhs_files.py GEN_GSHHS READER DIR/map   (exit 77 when gmt is not installed)
"""

import os
import shutil
import struct
import subprocess
import sys

FILES = ("gshhs_l.b", "wdb_borders_l.b", "wdb_rivers_l.b")


def records(path):
    data = open(path, "rb").read()
    at = 0
    while at < len(data):
        h = struct.unpack_from(">11i", data, at)
        pts = struct.unpack_from(">%di" % (2 * h[1]), data, at + 44)
        at += 44 + 8 * h[1]
        yield h, pts


def main():
    gen, reader, out = sys.argv[1:4]
    if shutil.which("gmt") is None:
        print("gmt is not installed")
        return 77
    os.makedirs(out, exist_ok=True)
    subprocess.run([sys.executable, gen, "-r", "l", "-o", out], check=True)
    bad = []
    counts = {}
    for name in FILES:
        path = os.path.join(out, name)
        n_rec = n_pts = 0
        land = 0.0
        levels = set()
        for h, pts in records(path):
            rid, n, flag, west, east, south, north, area = h[:8]
            level, scale = flag & 255, (flag >> 26) & 63
            levels.add(level)
            n_rec += 1
            n_pts += n
            greenwich = (flag >> 16) & 1 == 1
            if rid != n_rec - 1 or n < 2 or greenwich != (west < 0 or east - west >= 360_000_000):
                bad.append(f"{name} record {rid}: id, count or greenwich flag")
            xs, ys = pts[0::2], pts[1::2]
            if (min(ys), max(ys)) != (south, north) or min(xs) < west or max(xs) > east:
                bad.append(f"{name} record {rid}: points outside the box")
            if name.startswith("gshhs"):
                if (xs[0] - xs[-1]) % 360_000_000 or ys[0] != ys[-1] or n < 4 or area <= 0:
                    bad.append(f"{name} record {rid}: not a closed ring with an area")
                if level == 1:
                    land += area / 10**scale
        counts[name] = (n_rec, n_pts)
        if name.startswith("gshhs"):
            # Land (Antarctica to its ice front) is 1.49e8 km2; 12,087 pieces make 10,623
            # rings of levels 1-4 (and 7 slivers, left out).
            if not 1.45e8 < land < 1.53e8 or n_rec != 10623 or levels != {1, 2, 3, 4}:
                bad.append(f"{name}: {n_rec} rings, levels {sorted(levels)}, land {land:.4g} km2")
        # GMT's reader: the same records and points.
        text = subprocess.run(["gmt", "gshhg", path], check=True, stdout=subprocess.PIPE,
                              text=True).stdout.splitlines()
        segs = sum(1 for t in text if t.startswith(">"))
        rows = sum(1 for t in text if t and t[0] not in ">#")
        if (segs, rows) != (n_rec, n_pts):
            bad.append(f"{name}: gmt gshhg reads {segs} records, {rows} points of {n_rec}, {n_pts}")
    # The library's reader: every record, no damage (282), every point inside its box, every
    # ring closed.
    got = subprocess.run([reader] + [os.path.join(out, f) for f in FILES],
                         stdout=subprocess.PIPE, text=True).stdout.split("\n")
    for line in filter(None, got):
        path, n_rec, n_pts, rc, faults = line.split()
        name = os.path.basename(path)
        if (int(n_rec), int(n_pts)) != counts[name] or rc != "0" or faults != "0":
            bad.append(f"{name}: the reader gives {line}")
    if len(list(filter(None, got))) != len(FILES):
        bad.append("the reader stopped early")
    # The public routines find them through $ZORVEL/map/ and warn of nothing (281 missing,
    # 282 damaged).
    drawn = subprocess.run([reader, "-draw", os.path.join(os.path.dirname(out), "world.ps")],
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                           env=dict(os.environ, ZORVEL=os.path.dirname(out)))
    if drawn.returncode != 0 or "Warning" in drawn.stdout:
        bad.append("drawing from the files: " + drawn.stdout.strip()[:300])
    print("\n".join(bad[:20]) or "ok: " + ", ".join(f"{k} {v[0]} records"
                                                  for k, v in counts.items()))
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())

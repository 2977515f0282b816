#!/usr/bin/python3
"""The map projections against PROJ (the proj program of proj-bin): every projection on a
5-degree grid plus points by the poles, the cut meridian and the horizon, on the sphere
(+R=1) and, where the projection has an ellipsoidal form, on WGS 84 (divided by its
semi-major axis). Positions must agree within 1e-9 of the radius (Robinson: 1e-7 at the
nodes of its table, 2e-3 between, as its table is interpolated differently), inverses
must come back within 1e-9 degrees, and a point PROJ can place must be placed. Cases that
PROJ refuses (symmetric standard parallels) must give warning 284.

Usage: reference.py RUNNER   (the proj_cases program); exit 77 without proj.
"""

import math
import shutil
import subprocess
import sys

A_WGS84 = 6378137.0
KINDS = ["eqc", "merc", "mill", "cea", "lcc", "aea", "eqdc", "stere", "laea", "aeqd",
         "ortho", "gnom", "robin", "moll", "wintri", "hammer", "sinu", "eck4", "eqearth"]
ELLIPSOIDAL = {"merc", "cea", "lcc", "aea", "stere", "laea", "eqearth"}
CONIC = {"lcc", "aea", "eqdc"}
AZIMUTHAL = {"stere", "laea", "aeqd", "ortho", "gnom"}


def points(kind, lat0):
    pts = [(lon, lat) for lon in range(-180, 181, 5) for lat in range(-90, 91, 5)]
    for lat in (89.9999, -89.9999, 89.999999999, -89.999999999, 84.9, -84.9):
        pts += [(lon, lat) for lon in (-170.0, -45.5, 0.0, 33.3, 179.5)]
    for lon in (179.9999999, -179.9999999, 179.999, -179.999):
        pts += [(lon, lat) for lat in (-60.0, -0.5, 0.0, 12.25, 75.0)]
    if kind in AZIMUTHAL:
        # Along the horizon of a centre on the equator or the poles, just inside.
        if abs(lat0) == 90:
            rim = 0.001 if kind == "ortho" else (1.0 if kind == "gnom" else 0.0)
            pts += [(lon, (lat0 > 0 and 1 or -1) * rim + 0.0) for lon in range(-175, 180, 10)]
        else:
            pts += [(s * 89.999, lat) for s in (-1, 1) for lat in range(-80, 81, 20)]
    return pts


def configs():
    for k, kind in enumerate(KINDS):
        if kind in CONIC:
            setups = [(45, 30, 60), (-35, -20, -50), (40, 40, 40), (10, -5, 25)]
        elif kind in AZIMUTHAL:
            setups = [(90, 0, 0), (-90, 0, 0), (40, 0, 0), (0, 0, 0)]
        else:
            setups = [(0, 0, 0)]
        for lat0, lat1, lat2 in setups:
            for ell in ((0, 1) if kind in ELLIPSOIDAL else (0,)):
                yield k, kind, lat0, lat1, lat2, ell


def proj_args(kind, lat0, lat1, lat2, ell):
    args = ["+proj=" + kind, "+lon_0=0"]
    if kind in CONIC:
        args += ["+lat_0=%g" % lat0, "+lat_1=%g" % lat1, "+lat_2=%g" % lat2]
    elif kind in AZIMUTHAL:
        args += ["+lat_0=%g" % lat0]
    args += ["+ellps=WGS84"] if ell else ["+R=1"]
    return args


def run(cmd, text):
    return subprocess.run(cmd, input=text, capture_output=True, text=True, check=True).stdout


def main():
    if shutil.which("proj") is None:
        print("proj not installed")
        return 77
    runner = sys.argv[1]
    failures = 0
    checked = 0
    refused = [(4, -30, 30), (5, 30, -30), (6, 0, 0)]
    out = run([runner], "".join("%d 0 %g %g 0 0 0\n" % r for r in refused)).splitlines()
    for r, line in zip(refused, out):
        if line != "warning 284":
            print("FAIL setup", r, line)
            failures += 1
    for k, kind, lat0, lat1, lat2, ell in configs():
        pts = points(kind, lat0)
        theirs = run(["proj", "-f", "%.17g"] + proj_args(kind, lat0, lat1, lat2, ell),
                     "".join("%.12f %.12f\n" % p for p in pts)).splitlines()
        ours = run([runner], "".join("%d %g %g %g %d %.12f %.12f\n" % ((k, lat0, lat1, lat2, ell) + p)
                                     for p in pts)).splitlines()
        scale = A_WGS84 if ell else 1.0
        worst = 0.0
        for (lon, lat), t, o in zip(pts, theirs, ours):
            tf = t.split()
            of = o.split()
            label = "%s lat0=%g %g/%g ell=%d (%.12g, %.12g)" % (kind, lat0, lat1, lat2, ell, lon, lat)
            if tf[0] == "*" or "inf" in t or "nan" in t or (kind in ("merc", "mill") and abs(lat) == 90):
                continue
            tx, ty = float(tf[0]) / scale, float(tf[1]) / scale
            if abs(tx) > 1e6 or abs(ty) > 1e6:
                continue
            if of[0] == "*":
                print("FAIL not placed:", label, "PROJ", tx, ty)
                failures += 1
                continue
            x, y = float(of[0]), float(of[1])
            # Near a singular point (the antipode of an azimuthal centre, the far pole of
            # a cone, the horizon of a gnomonic map) the formulas' rounding grows with the
            # square of the distance from the centre.
            tol = 1e-9 * max(1.0, tx * tx + ty * ty)
            cosc = (math.sin(math.radians(lat0)) * math.sin(math.radians(lat)) +
                    math.cos(math.radians(lat0)) * math.cos(math.radians(lat)) *
                    math.cos(math.radians(lon)))
            antipode = kind in AZIMUTHAL and 1 + cosc < 1e-7
            if antipode and kind in ("laea", "aeqd", "stere"):
                # PROJ's equatorial forms compute 1 + cos c by cancellation there.
                tol = max(tol, 1e-6 * max(1.0, tx * tx + ty * ty))
            if kind == "merc":
                tol = max(tol, 4e-16 / max(1e-300, math.cos(math.radians(lat))))  # y' = 1/cos
            if ell and kind in ("laea", "cea", "aea", "eqearth") and abs(lat) > 89.99999:
                tol = 1e-7  # PROJ's q/qp is not exactly -1 or 1 at the poles
            if kind in ("moll", "eck4") and abs(lat) > 89.99:
                tol = 1e-4  # PROJ stops its iteration for the auxiliary angle at 1e-7
            if kind == "robin":
                tol = 1e-7 if abs(lat) % 5 == 0 else 2e-3
            err = max(abs(x - tx), abs(y - ty))
            worst = max(worst, err if kind != "robin" or abs(lat) % 5 == 0 else 0)
            checked += 1
            if err > tol:
                print("FAIL position:", label, "ours", x, y, "PROJ", tx, ty, "error %.3g" % err)
                failures += 1
            if of[2] == "*":
                if antipode or abs(lat) > 89.99999:
                    continue  # a singular point: no neighbourhood maps onto its image
                print("FAIL no inverse:", label)
                failures += 1
                continue
            il, ip = float(of[2]), float(of[3])
            if (kind == "ortho" and abs(cosc) < 1e-4) or antipode:
                continue  # the horizon and the antipode, where the map is flat
            if abs(lat) > 89.99:
                # Near the poles the map of an equal-area or pointed-pole projection is flat
                # to second order: the inverse is conditioned like a square root.
                if abs(ip - lat) > 1e-5:
                    print("FAIL inverse by the pole:", label, "->", il, ip)
                    failures += 1
                continue
            dl = abs(il - lon)
            if abs(abs(lat) - 90) < 1e-6 or (kind in AZIMUTHAL and abs(lat + lat0) < 1e-9 and
                                              abs(abs(lon) - 180) < 1e-9 and lat0 != 0):
                dl = 0.0  # the longitude of a pole is any
            dl = min(dl, abs(dl - 360))
            if kind in AZIMUTHAL and abs(lat0) < 90 and abs(lat - lat0) < 1e-9 and lon == 0:
                dl = 0.0
            if max(dl * max(1e-9, abs(math.cos(math.radians(lat)))),
                   abs(ip - lat)) > 1e-9:
                print("FAIL inverse:", label, "->", il, ip)
                failures += 1
        print("%-8s lat0=%4g par=%g/%g ell=%d  worst %.2e" % (kind, lat0, lat1, lat2, ell, worst))
    print("%d positions checked, %d failures" % (checked, failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())

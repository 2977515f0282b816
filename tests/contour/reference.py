#!/usr/bin/python3
"""Contour lines and triangulations against other programs' answers.

  reference.py contourpy RUNNER   conpts against contourpy's lines of the same grids:
                                  random fields full of saddles, smooth fields with
                                  closed lines, uneven and falling coordinates, holes of
                                  NaN; every line, its direction and every point to 1e-9.
  reference.py qhull RUNNER       triang against qdelaunay for random points in general
                                  position: the same triangles, ours counter-clockwise.

RUNNER is the contour_cases program. Exits 77 (skipped) when the other program is missing.
"""

import shutil
import subprocess
import sys

import numpy as np

TOL = 1e-9
SKIP = 77


def run(runner, text):
    out = subprocess.run([runner], input=text, capture_output=True, text=True, check=True)
    return out.stdout.split("\n")


def numbers(values):
    return " ".join(repr(float(v)) for v in values) + "\n"


# Contour lines
# =============

def conpts(runner, x, y, z, level):
    """Our lines of one level: a list of (n, 2) arrays."""
    text = f"conpts {len(x)} {len(y)} {level!r}\n" + numbers(x) + numbers(y) + numbers(z.ravel())
    out = run(runner, text)
    if not out[0].startswith("lines "):
        raise AssertionError(f"conpts: unexpected output {out[:3]}")
    lines, i = [], 1
    while i < len(out) and out[i].startswith("line "):
        n = int(out[i].split()[1])
        lines.append(np.array([[float(v) for v in out[i + 1 + k].split()] for k in range(n)]))
        i += n + 1
    return lines


def canonical(line):
    """A closed line starts at its smallest point (its direction kept)."""
    if len(line) > 2 and np.array_equal(line[0], line[-1]):
        ring = line[:-1]
        k = min(range(len(ring)), key=lambda i: (ring[i][0], ring[i][1]))
        ring = np.roll(ring, -k, axis=0)
        return np.vstack([ring, ring[:1]])
    return line


def same_lines(ours, theirs):
    """Differences between two sets of lines, as text (empty when equal)."""
    a = sorted((canonical(l) for l in ours), key=lambda l: (len(l), l[0][0], l[0][1]))
    b = sorted((canonical(l) for l in theirs), key=lambda l: (len(l), l[0][0], l[0][1]))
    if len(a) != len(b):
        return f"{len(a)} lines, contourpy {len(b)}"
    for la, lb in zip(a, b):
        if la.shape != lb.shape:
            return f"a line of {len(la)} points, contourpy's of {len(lb)}"
        err = np.max(np.abs(la - lb))
        if not err <= TOL:
            return f"points differ by {err:g} in the line from {la[0]}"
    return ""


def contour_cases(rng):
    """(name, x, y, z, levels) of the grids compared."""
    cases = []
    for k, (nx, ny) in enumerate([(2, 2), (3, 2), (9, 7), (40, 31)]):
        x = np.cumsum(rng.uniform(0.2, 1.5, nx))
        y = np.cumsum(rng.uniform(0.2, 1.5, ny))
        z = rng.normal(size=(ny, nx))  # saddles everywhere
        cases.append((f"random {nx}x{ny}", x, y, z, [-0.7, 0.0, 0.31]))
    x = np.linspace(-3, 3, 61)
    y = np.linspace(-2, 2.5, 47) ** 3 / 4
    xx, yy = np.meshgrid(x, y)
    smooth = np.exp(-((xx - 1) ** 2 + yy ** 2)) - 0.8 * np.exp(-((xx + 1) ** 2 + (yy - 0.5) ** 2))
    smooth += 0.1 * np.sin(3 * xx) * np.cos(2 * yy)
    cases.append(("smooth", x, y, smooth, [-0.5, -0.1, 0.05, 0.2, 0.6]))
    cases.append(("falling x", x[::-1], y, smooth[:, ::-1], [-0.1, 0.3]))
    holes = smooth.copy()
    holes[10:14, 20:30] = np.nan
    holes[30, 5] = np.nan
    holes[0, :] = np.nan
    holes[5:40, 40] = np.nan
    cases.append(("holes", x, y, holes, [-0.3, 0.0, 0.2, 0.5]))
    return cases


def check_contourpy(runner):
    try:
        import contourpy
    except ImportError:
        print("contourpy is missing: skipped")
        return SKIP
    failures = 0
    compared = 0
    for name, x, y, z, levels in contour_cases(np.random.default_rng(17)):
        gen = contourpy.contour_generator(x, y, np.ma.masked_invalid(z), name="serial",
                                          line_type="Separate", corner_mask=False)
        for level in levels:
            ours = conpts(runner, x, y, z, level)
            theirs = [np.asarray(l, dtype=float) for l in gen.lines(level)]
            compared += len(theirs)
            diff = same_lines(ours, theirs)
            if diff:
                print(f"FAIL {name}, level {level}: {diff}")
                failures += 1
    print(f"{compared} lines compared with contourpy, {failures} levels differ")
    return 1 if failures else 0


# Triangulations
# ==============

def triang(runner, pts):
    text = f"triang {len(pts)}\n" + "".join(f"{p[0]!r} {p[1]!r}\n" for p in pts)
    out = run(runner, text)
    count = int(out[0].split()[1])
    return [tuple(int(v) - 1 for v in out[1 + k].split()) for k in range(count)]


def qdelaunay(pts):
    text = f"2\n{len(pts)}\n" + "".join(f"{p[0]!r} {p[1]!r}\n" for p in pts)
    out = subprocess.run(["qdelaunay", "i"], input=text, capture_output=True, text=True,
                         check=True).stdout.split("\n")
    count = int(out[0])
    return [tuple(int(v) for v in out[1 + k].split()) for k in range(count)]


def check_qhull(runner):
    if shutil.which("qdelaunay") is None:
        print("qdelaunay is missing: skipped")
        return SKIP
    rng = np.random.default_rng(5)
    failures = 0
    for name, pts in [("uniform", rng.uniform(-1, 1, (3000, 2))),
                      ("clustered", rng.normal(0, 1, (2000, 2)) * [1e-3, 4e5] + [7e3, -2e6]),
                      ("few", rng.uniform(0, 1, (5, 2)))]:
        ours = triang(runner, pts)
        for t in ours:
            a, b, c = (pts[i] for i in t)
            if (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]) <= 0:
                print(f"FAIL {name}: triangle {t} is not counter-clockwise")
                failures += 1
                break
        mine = {tuple(sorted(t)) for t in ours}
        theirs = {tuple(sorted(t)) for t in qdelaunay(pts)}
        if mine != theirs or len(mine) != len(ours):
            print(f"FAIL {name}: {len(mine - theirs)} triangles not in qdelaunay's, "
                  f"{len(theirs - mine)} of qdelaunay's missing")
            failures += 1
        else:
            print(f"{name}: {len(ours)} triangles equal")
    return 1 if failures else 0


if __name__ == "__main__":
    if len(sys.argv) != 3 or sys.argv[1] not in ("contourpy", "qhull"):
        sys.exit(__doc__)
    sys.exit(check_contourpy(sys.argv[2]) if sys.argv[1] == "contourpy" else check_qhull(sys.argv[2]))

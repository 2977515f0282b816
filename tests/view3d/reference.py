#!/usr/bin/python3
"""rel3pt against a computation of its own: user to box coordinates, the viewpoint and
focus modes, the view matrix, the perspective and orthographic projections and the page
origin, written here from the formulas of the 3D axis system and not from the library's
code. Each case is a list of library calls; rel3pt_cases runs them in a fresh process and
prints what rel3pt and getlev return, and the warnings in between. A model of the calls
below predicts the same lines: the warnings exactly, the numbers to a relative 1e-9
(absolute 1e-9 near 0).

Usage: reference.py RUNNER   (the rel3pt_cases program)
"""

import math
import re
import subprocess
import sys

import numpy as np

# pi as the angle routines write it (vup3d, vang3d), and the degree factor of ANGL
# viewpoints: 3.1415927 / 180 in single precision (0.01745329238474369).
PI = 3.1415927
DEG = float(np.float32(PI / 180))
TOL = 1e-9
SENTINEL = -7777.0  # rel3pt_cases' results before a call: kept by a refused rel3pt

# Levels of the routines used: (lowest, highest, relaxed). A relaxed routine called at
# level 0 warns (3) and applies the setting all the same; the others warn and do nothing.
LEVELS = {
    "metafl": (0, 0, False), "setfil": (0, 0, False), "zorini": (0, 0, False),
    "zorfin": (1, 3, False), "errmod": (0, 3, True), "setpag": (0, 0, False),
    "units": (0, 0, False), "page": (0, 0, False), "pagorg": (1, 3, False),
    "axspos": (1, 1, False), "axslen": (1, 1, False), "axsscl": (1, 3, False),
    "axis3d": (1, 3, True), "view3d": (1, 3, True), "vfoc3d": (1, 3, True),
    "vup3d": (1, 3, True), "vang3d": (1, 3, True), "vclp3d": (1, 3, True),
    "vscl3d": (1, 3, False), "proj3d": (1, 1, False), "graf": (1, 1, False),
    "graf3d": (1, 1, False), "endgrf": (1, 3, False), "getlev": (0, 3, False),
    "rel3pt": (3, 3, False),
}


class Model:
    """What the library should answer, call by call."""

    def __init__(self):
        self.level = 0
        self.page_h, self.unit = 2099.0, 1.0  # page height in plot units, less one
        self.bottom = False
        self.box = np.array([2.0, 2.0, 2.0])
        self.view, self.view_mode = np.zeros(3), 0
        self.focus, self.focus_mode = np.zeros(3), 0
        self.up = 0.0
        self.half = 0.24497869610786438
        self.scale = 1.0
        self.ortho = False
        self.log = [False] * 3
        self.pos = (0, 0)
        self.len = (2, 2)

    def call(self, name, *a):
        lo, hi, relaxed = LEVELS[name]
        out = []
        if not lo <= self.level <= hi:
            out.append(("warn", 3, name))
            if not (relaxed and self.level == 0):
                return out + ([("rel3pt", SENTINEL, SENTINEL)] if name == "rel3pt" else [])
        return out + (getattr(self, "do_" + name, lambda *_: [])(*a) or [])

    # Settings.
    def do_zorini(self):
        self.level = 1

    def do_zorfin(self):
        self.level = 0

    def do_units(self, u):
        self.unit = {"CM": 1.0, "INCH": 2.5399999618530273}[u]

    def do_page(self, nx, ny):
        self.page_h = (ny - 1) * self.unit

    def do_setpag(self, name):
        self.page_h = {"DA4L": 2099.0, "DA4P": 2969.0}[name]

    def do_pagorg(self, where):
        self.bottom = where == "BOTT"

    def do_axspos(self, x, y):
        # Kept as a page position: from the top, the page height (integer) less y when
        # y counts from the bottom.
        self.pos = (x, int(self.page_h) - y if self.bottom else y)

    def do_axslen(self, w, h):
        self.len = (w, h)

    def do_axsscl(self, mode, axes):
        for i, c in enumerate("XYZ"):
            if c in axes:
                self.log[i] = mode == "LOG"

    def do_axis3d(self, x, y, z):
        if min(x, y, z) <= 0:
            return [("warn", 2, "axis3d")]
        self.box = np.array([x, y, z], dtype=float)

    def do_view3d(self, x, y, z, mode):
        self.view, self.view_mode = np.array([x, y, z], dtype=float), ["ABS", "USER", "ANGL"].index(mode) + 1

    def do_vfoc3d(self, x, y, z, mode):
        self.focus, self.focus_mode = np.array([x, y, z], dtype=float), ["ABS", "USER"].index(mode) + 1

    def do_vup3d(self, angle):
        self.up = angle * PI / 180

    def do_vang3d(self, angle):
        self.half = angle * PI / 360

    def do_vclp3d(self, front, back):
        # Front and back planes move the depth only, which rel3pt does not return.
        pass

    def do_vscl3d(self, s):
        self.scale = s

    def do_proj3d(self, mode):
        self.ortho = mode == "ORTH"

    def do_graf(self, *a):
        self.level = 2

    def do_endgrf(self):
        self.level = 1

    def do_getlev(self):
        return [("level", self.level)]

    # The 3D axis system.
    def to_box(self, user):
        b = np.empty(3)
        for i in range(3):
            a, e = self.limits[i]
            v = math.log10(user[i]) if self.log[i] else user[i]
            b[i] = (v - a) * self.box[i] / (e - a) - self.box[i] / 2
        return b

    def do_graf3d(self, xa, xe, xo, xs, ya, ye, yo, ys, za, ze, zo, zs):
        out = []
        self.limits = [(xa, xe), (ya, ye), (za, ze)]
        self.level = 3
        if self.view_mode == 2:
            self.view, self.view_mode = self.to_box(self.view), 1
        elif self.view_mode == 3:
            a, b, r = self.view
            a, b = a * DEG, b * DEG
            self.view = np.array([r * math.cos(b) * math.sin(a), r * math.cos(b) * math.cos(a),
                                  r * math.sin(b)])
            self.view_mode = 1
        eye = self.view
        half = self.box / 2
        if self.view_mode != 0 and np.all((-half <= eye) & (eye <= half)):
            out.append(("warn", 33, "graf3d"))
        if self.view_mode == 0 or out:
            eye = np.array([2, -2.5, 2]) * self.box
        focus = {0: np.zeros(3), 1: self.focus}.get(self.focus_mode)
        if focus is None:
            focus = self.to_box(self.focus)

        c, s = math.cos(self.up), math.sin(self.up)
        d = eye - focus
        r = math.hypot(d[0], d[1])
        length = math.sqrt(r * r + d[2] * d[2])
        if r >= 1e-6:
            u = np.array([-d[1] / r, d[0] / r, 0.0])
            v = np.array([d[2] / length * d[0] / r, d[2] / length * d[1] / r, -r / length])
            w = -d / length
            rows = [c * u + s * v, s * u - c * v, w]
            self.m = [np.append(row, -row @ eye) for row in rows]
        else:
            ex, ey, ez = eye
            self.m = [np.array([c, -s, 0, s * ey - c * ex]), np.array([s, c, 0, -s * ex - c * ey]),
                      np.array([0, 0, -1, ez])]
        if self.ortho:
            # The divisor is 2/S for every point; the depth row does not reach rel3pt.
            self.m.append(np.array([0, 0, 0, 2 / self.scale]))
        else:
            self.m.append(math.tan(self.half) * self.m[2])

        w, h = self.len
        self.dd = min(w, h) / 2
        self.cx = self.pos[0] + w / 2
        self.cy = self.pos[1] - h / 2
        return out

    def do_rel3pt(self, x, y, z):
        p = np.append(self.to_box((x, y, z)), 1.0)
        w = self.m[3] @ p
        if not self.ortho and not w > 0:
            return [("rel3pt", math.nan, math.nan)]  # at or behind the eye
        xp = self.dd * (self.m[0] @ p) / w + self.cx
        yp = self.cy - self.dd * (self.m[1] @ p) / w
        if self.bottom:
            yp = int(self.page_h) - yp
        return [("rel3pt", xp, yp)]


# Points at fractions of each axis range (log axes: of the exponent range): corners, the
# centre, points inside and points outside the box.
FRACTIONS = [(0, 0, 0), (1, 1, 1), (1, 0, 0.5), (0, 1, 1), (0.25, 0.75, 0.1),
             (0.5, 0.5, 0.5), (1.5, -0.5, 1.2), (-2, 3, -0.8), (0.5, 0.5, 4)]
LINEAR = (0.0, 10.0, 0.0, 2.0) * 3


def points(limits, log=(False, False, False), fractions=FRACTIONS):
    calls = []
    for f in fractions:
        p = []
        for i in range(3):
            a, e = limits[4 * i], limits[4 * i + 1]
            v = a + f[i] * (e - a)
            p.append(10.0 ** v if log[i] else v)
        calls.append(("rel3pt", *p))
    return calls


def system(*calls, limits=LINEAR, log=(False, False, False), pos=(300, 1800), size=(1500, 1200)):
    """axspos, axslen, the calls, graf3d and rel3pt at the points of its scaling."""
    return [("axspos", *pos), ("axslen", *size), *calls, ("graf3d", *limits),
            *points(limits, log), ("endgrf",)]


def behind_the_eye():
    # Default view of a 2-unit box on 0..10: the eye at box (4, -5, 4), user (25, -20, 25).
    eye = np.array([4.0, -5.0, 4.0])
    toward = -eye / np.linalg.norm(eye)
    user = lambda b: tuple(float(v) for v in (b + 1) * 5)
    side = np.array([5.0, 4.0, 0.0]) / math.hypot(5, 4)  # across the view, at the eye
    return [("axspos", 300, 1800), ("axslen", 1500, 1200), ("graf3d", *LINEAR),
            ("rel3pt", *user(eye)),                    # the eye itself
            ("rel3pt", *user(eye + 3 * side)),         # beside it, no depth
            ("rel3pt", *user(eye - 2 * toward)),       # behind it
            ("rel3pt", *user(2 * eye)),                # further behind
            ("rel3pt", *user(eye + 0.5 * toward)),     # before the front distance 1
            ("rel3pt", *user(eye + 1e-3 * toward)),    # just in front
            ("endgrf",)]


LOG_XZ = (-1.0, 3.0, -1.0, 1.0, 0.0, 10.0, 0.0, 2.0, 0.0, 2.0, 0.0, 1.0)
DESCENDING = (10.0, 0.0, 10.0, -2.0, 0.0, 10.0, 0.0, 2.0, 5.0, -5.0, 5.0, -1.0)
OTHER = (0.0, 20.0, 0.0, 5.0, -10.0, 10.0, -10.0, 5.0, 0.0, 5.0, 0.0, 1.0)

# (name, calls before zorini, calls after it)
CASES = [
    ("default view", [], system()),
    ("default view of a flat box", [], system(("axis3d", 3, 1.5, 0.5))),
    ("ABS viewpoint", [], system(("axis3d", 2, 3, 1.5), ("view3d", 3.5, -4, 2.5, "ABS"))),
    ("ABS viewpoint on a face: the default view", [],
     system(("axis3d", 2, 3, 1.5), ("view3d", 0.3, -1.5, 0.75, "ABS"))),
    ("USER viewpoint, kept in box coordinates for the next graf3d", [],
     system(("view3d", 25, -10, 18, "USER"))
     + [("graf3d", *OTHER), *points(OTHER), ("endgrf",)]),
    ("ANGL viewpoint with an ABS focus", [],
     system(("view3d", 35, 25, 7, "ANGL"), ("vfoc3d", 0.3, -0.2, 0.4, "ABS"))),
    ("ANGL viewpoint from below", [], system(("view3d", -120, -30, 6, "ANGL"))),
    ("straight above, up angle 0", [], system(("view3d", 0, 0, 5, "ABS"))),
    ("straight above, up angle 30", [], system(("view3d", 0, 0, 5, "ABS"), ("vup3d", 30))),
    ("off the vertical by 5e-7 and by 2e-6", [],
     system(("view3d", 5e-7, 0, 5, "ABS")) + system(("view3d", 2e-6, 0, 5, "ABS"))),
    ("USER focus off the centre, up angle -15", [],
     system(("vfoc3d", 2, 7, 3, "USER"), ("vup3d", -15))),
    ("USER focus converted with each graf3d's scaling", [],
     system(("vfoc3d", 2, 7, 3, "USER")) + [("graf3d", *OTHER), *points(OTHER), ("endgrf",)]),
    ("view angle 60", [], system(("vang3d", 60), ("view3d", 3, -3, 2, "ABS"))),
    ("back plane", [], system(("vclp3d", 2, 12), ("view3d", 3, -3, 2, "ABS"))),
    ("orthographic, scale 0.7", [], system(("proj3d", "ORTH"), ("vscl3d", 0.7))),
    ("orthographic, scale 0.7, back plane", [],
     system(("proj3d", "ORTH"), ("vscl3d", 0.7), ("vclp3d", 1, 9),
            ("view3d", 50, 20, 8, "ANGL"))),
    ("orthographic from straight below", [],
     system(("proj3d", "ORTH"), ("view3d", 0, 0, -4, "ABS"), ("vup3d", 10))),
    ("log x and z axes", [],
     system(("axsscl", "LOG", "XZ"), limits=LOG_XZ, log=(True, False, True))),
    ("log x and z axes, orthographic", [],
     system(("axsscl", "LOG", "XZ"), ("proj3d", "ORTH"), ("view3d", 30, 30, 6, "ANGL"),
            limits=LOG_XZ, log=(True, False, True))),
    ("descending x and z axes", [], system(limits=DESCENDING)),
    ("descending axes, USER viewpoint and focus", [],
     system(("view3d", -2, 25, 14, "USER"), ("vfoc3d", 8, 4, 0, "USER"), limits=DESCENDING)),
    ("origin at the bottom", [], [("pagorg", "BOTT")] + system(pos=(300, 400))),
    ("origin at the bottom after axspos", [],
     [("axspos", 300, 1800), ("pagorg", "BOTT")] + system(pos=(300, 1800))[1:]),
    ("origin at the bottom of a portrait page", [("setpag", "DA4P")],
     [("pagorg", "BOTT")] + system(("view3d", 40, 30, 7, "ANGL"), pos=(200, 500))),
    ("origin at the bottom of a page in inches", [("units", "INCH"), ("page", 1100, 850)],
     [("pagorg", "BOTT")] + system(pos=(400, 300), size=(1200, 1201))),
    ("narrow axis system", [], system(("view3d", 3, -4, 2, "ABS"), size=(801, 1500))),
    ("wide axis system", [], system(("view3d", 3, -4, 2, "ABS"), pos=(101, 1501),
                                    size=(1999, 900))),
    ("behind the eye", [], behind_the_eye()),
    ("levels",
     # At level 0 the view routines warn and keep their values; vscl3d, proj3d, graf3d
     # and rel3pt warn and do nothing.
     [("getlev",), ("axis3d", 3, 2, 1.5), ("view3d", 2, -6, 3, "ABS"),
      ("vfoc3d", 0.2, -0.1, 0.1, "ABS"), ("vup3d", 20), ("vang3d", 40), ("vclp3d", 0.5, 20),
      ("vscl3d", 0.5), ("proj3d", "ORTH"), ("graf3d", *LINEAR), ("rel3pt", 1, 2, 3)],
     [("getlev",), ("rel3pt", 1, 2, 3), ("axspos", 300, 1800), ("axslen", 1500, 1200),
      ("graf3d", *LINEAR), ("getlev",), *points(LINEAR),
      # At level 3: graf3d and proj3d refused; a new viewpoint waits for the next graf3d.
      ("graf3d", *OTHER), ("proj3d", "ORTH"), ("view3d", 5, 4, 3, "ABS"), *points(LINEAR),
      ("endgrf",), ("getlev",), ("proj3d", "ORTH"), ("graf3d", *LINEAR), *points(LINEAR),
      ("vscl3d", 0.5), *points(LINEAR), ("endgrf",), ("graf3d", *LINEAR), *points(LINEAR),
      ("endgrf",),
      # Inside a 2D axis system.
      ("graf", 0, 10, 0, 2, 0, 10, 0, 2), ("getlev",), ("rel3pt", 1, 2, 3),
      ("graf3d", *LINEAR), ("endgrf",), ("getlev",), ("rel3pt", 1, 2, 3)]),
]


def arg(v):
    return repr(float(v)) if isinstance(v, (float, np.floating)) else str(v)


def run(runner, before, after):
    calls = [("metafl", "GKSL"), ("setfil", "/dev/null"), *before, ("zorini",),
             ("errmod", "PROT", "OFF"), *after, ("zorfin",)]
    script = "".join(" ".join([c[0], *map(arg, c[1:])]) + "\n" for c in calls)
    done = subprocess.run([runner], input=script, capture_output=True, text=True, timeout=60)
    got = []
    for line in done.stdout.splitlines():
        if m := re.match(r" <<<< Warning (\d+): .* in (\w+)!", line):
            if int(m[1]) != 193:  # the box's own labels off the page: not the model's business
                got.append(("warn", int(m[1]), m[2]))
        elif line.startswith("rel3pt "):
            got.append(("rel3pt", *map(float, line.split()[1:])))
        elif line.startswith("level "):
            got.append(("level", int(line.split()[1])))
        else:
            got.append(("line", line))
    model = Model()
    want = [e for c in calls for e in model.call(*c)]
    return done, got, want


def main():
    runner = sys.argv[1]
    failures, values, worst = 0, 0, (0.0, "")
    for name, before, after in CASES:
        done, got, want = run(runner, before, after)
        problems = []
        if done.returncode != 0 or done.stderr:
            problems.append(f"exit {done.returncode}, standard error: {done.stderr.strip()}")
        for i in range(max(len(got), len(want))):
            g = got[i] if i < len(got) else None
            w = want[i] if i < len(want) else None
            if g is None or w is None or g[0] != w[0] or (g[0] != "rel3pt" and g != w):
                problems.append(f"line {i + 1}: got {g}, expected {w}")
                break
            if g[0] != "rel3pt":
                continue
            for gv, wv, axis in zip(g[1:], w[1:], "xy"):
                values += 1
                if math.isnan(wv) or math.isnan(gv):
                    if not (math.isnan(wv) and math.isnan(gv)):
                        problems.append(f"rel3pt {i + 1} {axis}: got {gv!r}, expected {wv!r}")
                    continue
                diff = abs(gv - wv)
                if wv != 0 and diff / abs(wv) > worst[0]:
                    worst = (diff / abs(wv), f"{name}, rel3pt {i + 1} {axis}: {gv!r} / {wv!r}")
                if diff > max(TOL * abs(wv), TOL):
                    problems.append(f"rel3pt {i + 1} {axis}: got {gv!r}, expected {wv!r}")
        print(f"{'FAIL' if problems else 'ok  '} {name}")
        for p in problems:
            print("     " + p)
        failures += bool(problems)
    print(f"{values} values, largest relative difference {worst[0]:.3g} ({worst[1]})")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/python3
"""Reference values for tests/unit/spline_test.cpp, computed with scipy.interpolate.

Builds the knots of axes/spline.cpp independently here, lets make_interp_spline solve
the collocation system (LAPACK banded solver with pivoting) and evaluates the BSpline on
the grid of interpolate_spline. Run once; paste the printed arrays into the test.
"""

import numpy as np
from scipy.interpolate import make_interp_spline

END_SHIFT = float(np.float32(1e-7))


def knots(p, k):
    """k knots at p[0], n - k interior knots centred on the data, k at p[-1] + END_SHIFT."""
    n, s = len(p), k // 2
    if k % 2 == 0:
        inner = [p[j + s] for j in range(n - k)]
    else:
        inner = [(p[j + s] + p[j + s + 1]) / 2 for j in range(n - k)]
    return np.array([p[0]] * k + inner + [p[-1] + END_SHIFT] * k)


def grid(first, last, npts):
    h = (last - first) / npts
    return np.array([first + i * h for i in range(1, npts)])


def show(name, values):
    print(f"const double {name}[] = {{" + ", ".join(repr(float(v)) for v in values) + "};")


x = np.arange(10.0)
y = np.sin(x)
for degree in (2, 3, 4, 5):
    spline = make_interp_spline(x, y, k=degree, t=knots(x, degree + 1))
    show(f"kSinDegree{degree}", spline(grid(x[0], x[-1], 4)))

px = np.array([0.0, 1.0, 1.0, 2.0, 3.0])
py = np.array([0.0, 1.0, 2.0, 2.0, 0.0])
t = np.concatenate([[0.0], np.cumsum(np.hypot(np.diff(px), np.diff(py)))])
kt = knots(t, 4)
g = grid(t[0], t[-1], 4)
show("kParametricX", make_interp_spline(t, px, k=3, t=kt)(g))
show("kParametricY", make_interp_spline(t, py, k=3, t=kt)(g))

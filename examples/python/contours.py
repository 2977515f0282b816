"""Contour lines, "contours.eps" (examples/contours.c in Python): labelled contour lines
of a function with two hills and two hollows on an 81 x 61 grid (contur), and the same
function at 60 scattered stations, triangulated (triang) and contoured through the
triangles (contri). The grid is a NumPy array of shape (ny, nx): rows are y."""
import numpy as np

import zorvel as z

COLOURS = [(0.267, 0.005, 0.329), (0.281, 0.161, 0.473), (0.241, 0.296, 0.540),
           (0.186, 0.419, 0.557), (0.142, 0.526, 0.556), (0.123, 0.637, 0.529),
           (0.246, 0.739, 0.452), (0.497, 0.826, 0.306), (0.720, 0.860, 0.150)]
LEVELS = [-0.6 + 0.2 * k for k in range(len(COLOURS))]


def bump(x, y, x0, y0, s):
    return 1.0 / (1.0 + ((x - x0) / s) ** 2 + ((y - y0) / s) ** 2)


def field(x, y):
    return (bump(x, y, 1.0, 1.0, 0.6) + 0.9 * bump(x, y, 3.0, 2.1, 0.7)
            - 0.8 * bump(x, y, 1.1, 2.3, 0.5) - 0.7 * bump(x, y, 3.0, 0.8, 0.6) + 0.05 * x)


def pen(k):
    z.setrgb(*COLOURS[k])
    z.dash() if LEVELS[k] < -1e-9 else z.solid()


def axes(nx, heading):
    z.axspos(nx, 1060)
    z.axslen(1200, 900)
    z.name("x", "X")
    z.name("y", "Y")
    z.titlin(heading, 1)
    z.graf(0, 4, 0, 1, 0, 3, 0, 1)
    z.title()


xg = 0.05 * np.arange(81)
yg = 0.05 * np.arange(61)
zg = field(xg[np.newaxis, :], yg[:, np.newaxis])  # shape (61, 81)
u = 0.31 + np.arange(60) * 0.7548776662466927  # stations without a pattern
v = 0.17 + np.arange(60) * 0.5698402909980532
xs, ys = 0.1 + 3.8 * (u % 1.0), 0.1 + 2.8 * (v % 1.0)
zs = field(xs, ys)

z.page(2970, 1250)
z.pagmod("NONE")
z.metafl("EPS")
z.setfil("contours.eps")
z.filmod("DELE")
z.zorini()
z.errmod("PROT", "OFF")
z.helve()
z.height(30)
z.labels("FLOA", "CON")
z.labdig(1, "CON")
z.labdis(700, "CON")

axes(250, "Contour lines of a grid (contur)")
z.height(24)
z.linwid(4)
for k, level in enumerate(LEVELS):
    pen(k)
    z.contur(xg, yg, zg, level)
z.solid()
z.linwid(1)
z.color("FORE")
z.height(30)
z.endgrf()

axes(1650, "Contour lines of 60 stations (triang, contri)")
ntri, i1, i2, i3 = z.triang(xs, ys, 2 * len(xs))
z.setrgb(0.8, 0.8, 0.8)
z.linwid(2)
for a, b, c in zip(i1[:ntri] - 1, i2[:ntri] - 1, i3[:ntri] - 1):
    z.rlstrt(xs[a], ys[a])
    for p in (b, c, a):
        z.rlconn(xs[p], ys[p])
z.height(24)
z.linwid(4)
for k, level in enumerate(LEVELS):
    pen(k)
    z.contri(xs, ys, zs, i1[:ntri], i2[:ntri], i3[:ntri], level)
z.solid()
z.linwid(1)
z.color("FORE")
z.hsymbl(14)
for x, y in zip(xs, ys):
    z.symbol(13, z.nxposn(x), z.nyposn(y))
z.height(30)
z.endgrf()
z.zorfin()

"""Curves, error bars and legends (two pages of examples/curves_gallery.c in Python):
  curves_methods.eps   every interpolation of polcrv on the same data
  science_figure.eps   measurements with error bars, a spline fit and a legend
The count arguments of the C routines are left out: the arrays give them."""
import numpy as np

import zorvel as z

XS = np.arange(8) + 0.5
YS = np.array([1.0, 3.0, 2.2, 4.1, 3.3, 5.0, 4.2, 5.6])


def start(file):
    z.metafl("EPS")
    z.setfil(file)
    z.filmod("DELE")
    z.pagmod("NONE")
    z.zorini()
    z.errmod("PROT", "OFF")
    z.helve()


def methods_page():
    start("curves_methods.eps")
    for i, method in enumerate(["LINE", "STEP", "STAI", "BARS", "STEM", "FBAR", "SPLI", "PSPL"]):
        z.axspos(220 + (i % 4) * 690, 880 + (i // 4) * 980)
        z.axslen(560, 620)
        z.titlin(method, 1)
        z.polcrv(method)
        z.marker(13)  # the joining methods show the data points too
        z.hsymbl(18)
        z.incmrk(0 if method in ("BARS", "STEM", "FBAR") else 1)
        z.graf(0, 8, 0, 2, 0, 6, 0, 2)
        z.title()
        z.curve(XS, YS)
        z.endgrf()
    z.zorfin()


def science_figure():
    """A measured decay with errors, fitted by a spline."""
    t = 0.5 + np.arange(12)
    v = 8.0 * np.exp(-t / 4.0) + 0.8 + 0.25 * np.sin(3.1 * np.arange(12))
    e = 0.25 + 0.04 * np.arange(12)
    cbuf = bytearray(2 * 24 + 1)
    start("science_figure.eps")
    z.name("Time [ms]", "X")
    z.name("Signal [mV]", "Y")
    z.titlin("Relaxation after the pulse", 1)
    z.graf(0, 12, 0, 2, 0, 9, 0, 1)
    z.title()
    z.grid(1, 1)
    z.legini(cbuf, 2, 24)
    z.marker(13)  # measurements: symbols with error bars
    z.hsymbl(22)
    z.incmrk(-1)
    z.errbar(t, v, e, e)
    z.curve(t, v)
    z.incmrk(0)  # the fit: a spline through the points, as a line
    z.linwid(5)
    z.splmod(3, 200)
    ts, vs = np.zeros(201), np.zeros(201)
    n = z.spline(t, v, ts, vs)
    z.curve(ts[:n], vs[:n])
    z.linwid(1)
    z.leglin(cbuf, "measured", 1)
    z.leglin(cbuf, "spline fit", 2)
    z.legtit("")
    z.legend(cbuf, 7)
    z.endgrf()
    z.zorfin()


methods_page()
science_figure()

#!/usr/bin/env python3
"""The science figure of examples/curves_gallery.c drawn by matplotlib, for comparing the
looks of the two: the same measurements with error bars, a cubic spline through them and
a legend; everything else as matplotlib sets it by default.

Usage: science_figure.py [output.png]   (dpi 110: about the EPS page rendered at 60 dpi)
"""
import math
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
from scipy.interpolate import make_interp_spline  # noqa: E402


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else "science_figure_mpl.png"
    t = [0.5 + i for i in range(12)]
    v = [8.0 * math.exp(-ti / 4.0) + 0.8 + 0.25 * math.sin(3.1 * i) for i, ti in enumerate(t)]
    e = [0.25 + 0.04 * i for i in range(12)]
    spline = make_interp_spline(t, v, k=3)
    ts = [t[0] + (t[-1] - t[0]) * i / 200 for i in range(201)]

    fig, ax = plt.subplots()
    ax.errorbar(t, v, yerr=e, fmt="o", capsize=3, label="measured")
    ax.plot(ts, spline(ts), label="spline fit")
    ax.set_xlabel("Time [ms]")
    ax.set_ylabel("Signal [mV]")
    ax.set_title("Relaxation after the pulse")
    ax.grid()
    ax.legend()
    fig.savefig(out, dpi=110)


if __name__ == "__main__":
    main()

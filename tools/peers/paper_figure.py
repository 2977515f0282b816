#!/usr/bin/env python3
"""The paper figure of examples/axes_gallery.c drawn by matplotlib, for comparing the
looks of the two: the same data, names, two-line title, a grid and a second Y axis
in Fahrenheit; everything else as matplotlib sets it by default.

Usage: paper_figure.py [output.png]   (default: paper_figure_mpl.png; dpi 110 gives about
the size of the EPS page rendered at 60 dpi)
"""
import math
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

DPI = 110


def noise_sequence():
    """Uniform noise in -0.5..0.5: the generator of axes_gallery.c."""
    state = 12345
    while True:
        state = (state * 1103515245 + 12345) & 0x7FFFFFFF
        yield state / 2147483648.0 - 0.5


def model(h):
    return 12 + 8 * math.sin(2 * math.pi * (h - 9) / 24)


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else "paper_figure_mpl.png"
    noise = noise_sequence()
    hm = [i * 0.5 for i in range(49)]
    tm = [model(h) + 2.5 * next(noise) for h in hm]
    hc = [i * 0.1 for i in range(241)]
    tc = [model(h) for h in hc]

    fig, ax = plt.subplots()
    ax.plot(hm, tm)
    ax.plot(hc, tc)
    ax.set_xlabel("Time of day [h]")
    ax.set_ylabel("Temperature [°C]")
    ax.set_title("Air temperature at a weather station\n"
                 "measured every 30 minutes, with a harmonic model")
    ax.grid()
    right = ax.secondary_yaxis("right", functions=(lambda c: c * 9 / 5 + 32,
                                                   lambda f: (f - 32) * 5 / 9))
    right.set_ylabel("Temperature [°F]")
    fig.savefig(out, dpi=DPI)


if __name__ == "__main__":
    main()

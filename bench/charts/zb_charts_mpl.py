"""matplotlib peer for chart workload W6 (see WORKLOAD.md).

usage: /usr/bin/python3 zb_charts_mpl.py w6 FORMAT OUTPREFIX
  FORMAT  ps | svg | pdf | png     (png: Agg, 1200x850 pixels)
pdf: one file OUTPREFIX.pdf of two pages (PdfPages); ps, svg and png: page 1 in
OUTPREFIX.FMT, page 2 in OUTPREFIX_2.FMT (these writers hold one figure a file).
"""
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
import numpy as np  # noqa: E402
from matplotlib.backends.backend_pdf import PdfPages  # noqa: E402

A4_LANDSCAPE_IN = (11.69, 8.27)
R4 = (0.8566748838545029, 0.7338918566271260, 0.6287067210378087, 0.5385972572236101)
N = 1_000_000
BINS = 1000
YMAX = 4500.0


def new_figure(fmt):
    if fmt == "png":
        return plt.figure(figsize=(12.0, 8.5), dpi=100)  # 1200x850 pixels
    return plt.figure(figsize=A4_LANDSCAPE_IN)


def axes(fig, x0, x1, y0, y1, title):
    ax = fig.add_subplot()
    ax.set_xlim(x0, x1)
    ax.set_ylim(y0, y1)
    ax.set_xlabel("X axis")
    ax.set_ylabel("Y axis")
    ax.set_title(title)
    return ax


def histogram_page(fmt):
    k = np.arange(N, dtype=np.float64)
    f = (np.modf(0.5 + k * R4[0])[0] + np.modf(0.5 + k * R4[1])[0]) + \
        np.modf(0.5 + k * R4[2])[0]
    f = f + np.modf(0.5 + k * R4[3])[0]
    x = 1.7320508075688772 * (f - 2.0)
    counts, edges = np.histogram(x, bins=BINS, range=(-5.0, 5.0))
    fig = new_figure(fmt)
    ax = axes(fig, -5, 5, 0, YMAX, "W6 histogram")
    bars = ax.bar(edges[:-1], counts, width=np.diff(edges), align="edge", color="blue",
                  linewidth=0)
    ax.bar_label(bars, fontsize=2)
    return fig


def hatched_page(fmt):
    i = np.arange(100)
    fig = new_figure(fmt)
    ax = axes(fig, -1, 100, 0, 11, "W6 hatched")
    ax.bar(i, 1 + i % 10, width=0.8, facecolor="none", edgecolor="black", linewidth=0.5,
           hatch="//")
    return fig


def main(argv):
    if len(argv) < 4 or argv[1] != "w6":
        print(__doc__, file=sys.stderr)
        return 2
    fmt, pre = argv[2], argv[3]
    if fmt not in ("ps", "svg", "pdf", "png"):
        print(f"unknown format {fmt}", file=sys.stderr)
        return 2
    if fmt == "pdf":
        with PdfPages(f"{pre}.pdf") as pdf:
            for page in (histogram_page, hatched_page):
                fig = page(fmt)
                pdf.savefig(fig)
                plt.close(fig)
        return 0
    for page, path in ((histogram_page, f"{pre}.{fmt}"), (hatched_page, f"{pre}_2.{fmt}")):
        fig = page(fmt)
        fig.savefig(path, format=fmt)
        plt.close(fig)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))

"""matplotlib peer for workload W7 (see WORKLOAD.md).

usage: /usr/bin/python3 zb_contours_mpl.py w7c|w7h|w7s|w7t FORMAT OUTPREFIX
  FORMAT  ps | pdf | png     (png: Agg, 1200x850 pixels)
w7c, w7h, w7s: one page in OUTPREFIX.FMT. w7t: the Delaunay triangulation of the points
by scipy.spatial.Delaunay, nothing drawn, the number of triangles to stdout.
"""
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
import numpy as np  # noqa: E402

A4_LANDSCAPE_IN = (11.69, 8.27)
R2 = (0.7548776662466927, 0.5698402909980532)
SIZES = {"w7c": 1000, "w7h": 2000, "w7s": 200}
LEVELS = 21
POINTS = 1_000_000


def grid(n):
    x = 4.0 * np.arange(n) / (n - 1)
    y = 3.0 * np.arange(n) / (n - 1)
    z = np.sin(3.0 * x)[np.newaxis, :] * np.cos(2.0 * y)[:, np.newaxis] + 0.3 * x
    return x, y, z  # z[j, i] at (x[i], y[j])


def triangulate():
    from scipy.spatial import Delaunay

    k = np.arange(POINTS, dtype=np.float64)
    pts = np.column_stack((np.modf(0.5 + k * R2[0])[0], np.modf(0.5 + k * R2[1])[0]))
    print(f"{len(Delaunay(pts).simplices)} triangles")


def page(sub, fmt):
    x, y, z = grid(SIZES[sub])
    if fmt == "png":
        fig = plt.figure(figsize=(12.0, 8.5), dpi=100)  # 1200x850 pixels
    else:
        fig = plt.figure(figsize=A4_LANDSCAPE_IN)
    if sub == "w7s":
        ax = fig.add_subplot(projection="3d")
        xx, yy = np.meshgrid(x, y)
        ax.plot_surface(xx, yy, z, rstride=1, cstride=1, cmap="viridis", linewidth=0)
        ax.set_zlabel("Z axis")
        title = "W7 surface"
    else:
        ax = fig.add_subplot()
        if sub == "w7h":
            im = ax.imshow(z, origin="lower", extent=(0, 4, 0, 3), aspect="auto",
                           cmap="viridis", interpolation="nearest")
            title = "W7 heat map"
        else:
            lev = np.linspace(z.min(), z.max(), LEVELS)
            im = ax.contourf(x, y, z, levels=lev, cmap="viridis")
            lines = ax.contour(x, y, z, levels=lev[1:-1], colors="black", linewidths=0.5)
            ax.clabel(lines, fmt="%.2f")
            title = "W7 contours"
        fig.colorbar(im, ax=ax)
    ax.set_xlabel("X axis")
    ax.set_ylabel("Y axis")
    ax.set_title(title)
    return fig


def main(argv):
    if len(argv) < 4 or argv[1] not in ("w7c", "w7h", "w7s", "w7t"):
        print(__doc__, file=sys.stderr)
        return 2
    sub, fmt, pre = argv[1], argv[2], argv[3]
    if fmt not in ("ps", "pdf", "png"):
        print(f"unknown format {fmt}", file=sys.stderr)
        return 2
    if sub == "w7t":
        triangulate()
        return 0
    fig = page(sub, fmt)
    fig.savefig(f"{pre}.{fmt}", format=fmt)
    plt.close(fig)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))

"""matplotlib peer for formula workload W8 (see WORKLOAD.md).

usage: /usr/bin/python3 zb_formulas_mpl.py w8 ps|pdf OUTPREFIX
"""
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

FORMULA = r"$\frac{\alpha_i^2}{\sqrt{2\pi}}$"


def main():
    if len(sys.argv) != 4 or sys.argv[1] != "w8" or sys.argv[2] not in ("ps", "pdf"):
        sys.exit(__doc__)
    fmt, pre = sys.argv[2], sys.argv[3]
    fig = plt.figure(figsize=(11.69, 8.27))
    cols, rows = 100, 100
    for i in range(cols * rows):
        col, row = i % cols, i // cols
        fig.text((col + 0.5) / cols, (rows - 0.5 - row) / rows, FORMULA, fontsize=2,
                 ha="center", va="center")
    fig.savefig(f"{pre}.{fmt}", format=fmt)


if __name__ == "__main__":
    main()

"""matplotlib peer for formula workload W8 (see WORKLOAD.md), and W8x: 20,000 exponent
labels $x^2$ on 100 by 200 cells.

usage: /usr/bin/python3 zb_formulas_mpl.py w8|w8x ps|pdf OUTPREFIX
"""
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

FORMULA = r"$\frac{\alpha_i^2}{\sqrt{2\pi}}$"


def main():
    if len(sys.argv) != 4 or sys.argv[1] not in ("w8", "w8x") or sys.argv[2] not in ("ps", "pdf"):
        sys.exit(__doc__)
    fmt, pre = sys.argv[2], sys.argv[3]
    fig = plt.figure(figsize=(11.69, 8.27))
    exponents = sys.argv[1] == "w8x"
    cols, rows = 100, 200 if exponents else 100
    text = r"$x^2$" if exponents else FORMULA
    for i in range(cols * rows):
        col, row = i % cols, i // cols
        fig.text((col + 0.5) / cols, (rows - 0.5 - row) / rows, text, fontsize=2,
                 ha="center", va="center")
    fig.savefig(f"{pre}.{fmt}", format=fmt)


if __name__ == "__main__":
    main()

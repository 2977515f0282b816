#!/usr/bin/env bash
# Filled shapes as their readers see them: write_filled_shapes draws a square with a
# square hole three times (red, red, blue) in PostScript, PDF and SVG; Ghostscript,
# Poppler and librsvg render the pages, and in each picture there must be two red squares
# and one blue one, each of the size of the others, filled by the non-zero rule: the
# ring full, the hole (the middle quarter of the area) empty. qpdf --check must pass the
# PDF (exit 0) and xmllint the SVG.
#
# Usage: filled_shapes.sh WORKDIR WRITER
set -u
work=$1
writer=$2
for tool in gs pdftoppm qpdf xmllint rsvg-convert; do
  if ! command -v $tool > /dev/null; then
    echo "FAIL: $tool is not installed"
    exit 1
  fi
done
rm -rf "$work" && mkdir -p "$work" || exit 2
"$writer" "$work" > "$work/writer.txt" || { cat "$work/writer.txt"; exit 1; }
status=0
gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=png16m -r40 -o "$work/ps.png" "$work/filled_shapes.ps" \
  > "$work/gs.txt" 2>&1 || { echo "FAIL: gs:"; cat "$work/gs.txt"; status=1; }
qpdf --check "$work/filled_shapes.pdf" > "$work/qpdf.txt" 2>&1 ||
  { echo "FAIL: qpdf --check:"; cat "$work/qpdf.txt"; status=1; }
pdftoppm -r 40 -png -singlefile "$work/filled_shapes.pdf" "$work/pdf" 2> "$work/pdftoppm.txt" &&
  [ ! -s "$work/pdftoppm.txt" ] || { echo "FAIL: pdftoppm:"; cat "$work/pdftoppm.txt"; status=1; }
xmllint --noout --nonet "$work/filled_shapes.svg" > "$work/xmllint.txt" 2>&1 ||
  { echo "FAIL: xmllint:"; cat "$work/xmllint.txt"; status=1; }
rsvg-convert -o "$work/svg.png" "$work/filled_shapes.svg" > "$work/rsvg.txt" 2>&1 ||
  { echo "FAIL: rsvg-convert:"; cat "$work/rsvg.txt"; status=1; }
[ $status -eq 0 ] || exit 1

/usr/bin/python3 - "$work" << 'PY' || status=1
import sys
import numpy as np
from PIL import Image

def squares(mask):
    """Bounding boxes of the runs of the mask along the axis where the squares stand apart
    (the PostScript page may be turned on its sheet)."""
    for axis in (0, 1):
        cols = np.flatnonzero(mask.any(axis=axis))
        if cols.size == 0:
            return []
        runs = np.split(cols, np.flatnonzero(np.diff(cols) > 1) + 1)
        boxes = []
        for r in runs:
            band = mask[:, r[0]:r[-1] + 1] if axis == 0 else mask[r[0]:r[-1] + 1, :]
            other = np.flatnonzero(band.any(axis=1 - axis))
            if axis == 0:
                boxes.append((r[0], other[0], r[-1] + 1, other[-1] + 1))
            else:
                boxes.append((other[0], r[0], other[-1] + 1, r[-1] + 1))
        if len(boxes) > 1:
            return boxes
    return boxes

failed = False
for name in ("ps", "pdf", "svg"):
    img = Image.open(f"{sys.argv[1]}/{name}.png").convert("RGBA")
    # librsvg leaves the page transparent where nothing is drawn: paper is white.
    img = Image.alpha_composite(Image.new("RGBA", img.size, "white"), img).convert("RGB")
    px = np.asarray(img).astype(int)
    r, g, b = px[..., 0], px[..., 1], px[..., 2]
    red = (r > 200) & (g < 80) & (b < 80)
    blue = (b > 200) & (r < 80) & (g < 80)
    white = (r > 230) & (g > 230) & (b > 230)
    found = {"red": squares(red), "blue": squares(blue)}
    problems = []
    if len(found["red"]) != 2 or len(found["blue"]) != 1:
        problems.append(f"{len(found['red'])} red and {len(found['blue'])} blue squares")
    sides = []
    for colour, boxes in found.items():
        mask = red if colour == "red" else blue
        for (x0, y0, x1, y1) in boxes:
            w, h = x1 - x0, y1 - y0
            sides += [w, h]
            ring = mask[y0:y1, x0:x1].mean()
            hole = white[y0 + h * 3 // 8:y1 - h * 3 // 8, x0 + w * 3 // 8:x1 - w * 3 // 8]
            if not 0.70 < ring < 0.80:
                problems.append(f"{colour} square at {x0},{y0}: ring covers {ring:.2f}")
            if hole.size == 0 or hole.mean() < 0.99:
                problems.append(f"{colour} square at {x0},{y0}: the hole is not empty")
    if sides and max(sides) - min(sides) > 2:
        problems.append(f"squares of different sizes: {sides}")
    if sides and min(sides) < 20:
        problems.append(f"squares too small: {sides}")
    for p in problems:
        print(f"FAIL: {name}: {p}")
    failed = failed or bool(problems)
sys.exit(1 if failed else 0)
PY
exit $status

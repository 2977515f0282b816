#!/usr/bin/env bash
# Real consumer check of the raster writers: write_images writes two test pages (a plot of
# few colours, gradients of many) at 853x603 and at odd small sizes in every format, and
# each file must pass its format's own tools and decode to the page:
#   PNG   pngcheck -q
#   TIFF  tiffinfo -D (no message on standard error) and tiffcp to a copy
#   GIF   giftext
#   BMP   bmptopnm, then pnmfile;  PPM  pnmfile
#   all but PostScript: ImageMagick reads them (the raw image as rgb: data after its 8-byte
#         header) and Python/PIL compares the pixels with the page: exactly, except GIF
#         pages of many colours, whose pixels must be the nearest colours of the table
#   PS    Ghostscript renders it on A4 at 72 dpi: the image must lie in the box where the
#         header puts it, upright (landscape turned by 90 degrees) with the page's colours
#
# Then every image file that the raster devices left in the folders given (the tests'
# and the gallery's files) goes to its format's tool the same way.
#
# Usage: raster.sh WORKDIR WRITE_IMAGES [FOLDER...]
# The tools come with tools/deps.sh (pngcheck, libtiff-tools, giflib-tools, netpbm,
# imagemagick, ghostscript, python3-pil, python3-numpy). Exit status 1 on any rejection.
set -u
set -o pipefail
work=$1
writer=$2
shift 2
for tool in pngcheck tiffinfo tiffcp giftext bmptopnm pnmfile gs /usr/bin/python3; do
  command -v $tool > /dev/null || { echo "FAIL: $tool is not installed (tools/deps.sh)"; exit 1; }
done
convert=convert
command -v magick > /dev/null && convert="magick"
command -v $convert > /dev/null || { echo "FAIL: ImageMagick is not installed"; exit 1; }

rm -rf "$work" && mkdir -p "$work/decoded" || exit 2
"$writer" "$work" || { echo "FAIL: write_images"; exit 1; }

status=0
fail() {
  echo "FAIL: $1 rejects $2:"
  sed 's/^/  /' "$work/log" | head -20
  status=1
}
checked=0
for ref in "$work"/*_*x*.ref; do
  stem=${ref%.ref}
  name=$(basename "$stem")
  size=${name#*_}
  pngcheck -q "$stem.png" > "$work/log" 2>&1 || fail pngcheck "$stem.png"
  for tif in "$stem".*.tif; do
    if ! tiffinfo -D "$tif" > /dev/null 2> "$work/log" || [ -s "$work/log" ]; then
      fail tiffinfo "$tif"
    fi
    tiffcp "$tif" "$work/copy.tif" > "$work/log" 2>&1 || fail tiffcp "$tif"
  done
  giftext "$stem.gif" > "$work/log" 2>&1 || fail giftext "$stem.gif"
  # Through a file: pnmfile stops reading after the header.
  { bmptopnm -quiet "$stem.bmp" > "$work/bmp.pnm" && pnmfile "$work/bmp.pnm"; } > "$work/log" 2>&1 ||
    fail "bmptopnm | pnmfile" "$stem.bmp"
  pnmfile "$stem.ppm" > "$work/log" 2>&1 || fail pnmfile "$stem.ppm"
  for f in "$stem".png "$stem".*.tif "$stem".gif "$stem".bmp "$stem".ppm; do
    $convert "$f" -depth 8 "PNG24:$work/decoded/$(basename "$f").png" > "$work/log" 2>&1 ||
      fail ImageMagick "$f"
  done
  $convert -size "$size+8" -depth 8 "rgb:$stem.img" -depth 8 "PNG24:$work/decoded/$name.img.png" \
    > "$work/log" 2>&1 || fail ImageMagick "$stem.img"
  gs -q -dSAFER -dNOPAUSE -dBATCH -sDEVICE=png16m -r72 -sPAPERSIZE=a4 -dFIXEDMEDIA \
    -o "$work/decoded/$name.ps.png" "$stem.ps" > "$work/log" 2>&1 || fail Ghostscript "$stem.ps"
  checked=$((checked + 1))
done

# The pixels: every decoded file against its page.
/usr/bin/python3 - "$work" > "$work/log" 2>&1 <<'PY' || { echo "FAIL: decoded pixels differ:"; sed 's/^/  /' "$work/log"; status=1; }
import glob, math, os, sys
import numpy as np
from PIL import Image

work = sys.argv[1]
table = np.frombuffer(open(os.path.join(work, "table.ref"), "rb").read(), np.uint8)
table = table.reshape(-1, 3).astype(np.int32)
K = 0.1417322835  # points per 1/200 cm
bad = 0

def nearest(px):
    out = np.empty_like(px)
    for a in range(0, len(px), 20000):
        part = px[a:a + 20000].astype(np.int32)
        d = ((part[:, None, :] - table[None, :, :]) ** 2).sum(axis=2)
        out[a:a + 20000] = table[d.argmin(axis=1)]
    return out

def report(f, msg):
    global bad
    bad += 1
    print(f"{f}: {msg}")

for ref in sorted(glob.glob(os.path.join(work, "*_*x*.ref"))):
    stem = os.path.basename(ref)[:-4]
    w, h = map(int, stem.split("_")[1].split("x"))
    page = np.frombuffer(open(ref, "rb").read(), np.uint8).reshape(h, w, 3)
    colours = len(np.unique(page.reshape(-1, 3), axis=0))
    for ext in ("png", "deflate.tif", "lzw.tif", "none.tif", "gif", "bmp", "ppm", "img"):
        f = f"{stem}.{ext}"
        try:
            got = np.asarray(Image.open(os.path.join(work, "decoded", f + ".png")).convert("RGB"))
        except OSError as e:
            report(f, f"no decoded image ({e})")
            continue
        want = page
        if ext == "gif" and colours > 256:
            want = nearest(page.reshape(-1, 3)).reshape(h, w, 3)
        if got.shape != want.shape:
            report(f, f"size {got.shape[1]}x{got.shape[0]}, not {w}x{h}")
        elif not np.array_equal(got, want):
            y, x = np.argwhere((got != want).any(axis=2))[0]
            report(f, f"pixel ({x}, {y}) is {got[y, x]}, not {want[y, x]}")

    # PostScript on A4 at 72 dpi: one pixel a point. The default placement: offset 150,
    # 200 and a box of 3900 by 5600 units; a landscape image turned by 90 degrees.
    f = f"{stem}.ps"
    try:
        r = np.asarray(Image.open(os.path.join(work, "decoded", f + ".png")).convert("RGB")).astype(int)
    except OSError as e:
        report(f, f"no rendering ({e})")
        continue
    H = r.shape[0]
    ox, oy, bw, bh = 150 * K, 200 * K, 3900 * K, 5600 * K
    landscape = w > h
    if landscape:
        q = min(bh / w, bw / h)
        sx, sy = w * q, h * q   # along the page's y (up) and x (leftwards from ox + bw)
        def place(u, v):  # pattern point (u right, v down, in pixels) to page x, y
            return ox + bw - (1 - v / h) * sy, oy + u / w * sx
        rect = (ox + bw - sy, oy, ox + bw, oy + sx)
    else:
        q = min(bw / w, bh / h)
        sx, sy = w * q, h * q
        def place(u, v):
            return ox + u / w * sx, oy + (1 - v / h) * sy
        rect = (ox, oy, ox + sx, oy + sy)
    ink = np.argwhere((r < 250).any(axis=2))
    if len(ink) == 0:
        report(f, "nothing rendered")
        continue
    top, left = ink.min(axis=0)
    bottom, right = ink.max(axis=0) + 1
    found = (left, H - bottom, right, H - top)  # in points from the lower left corner
    if any(abs(a - b) > 1.5 for a, b in zip(found, rect)):
        report(f, "image at %s, not in its box at %s" % (
            tuple(int(v) for v in found), tuple(round(v, 1) for v in rect)))
    for fu, fv in ((0.25, 0.25), (0.75, 0.25), (0.25, 0.75), (0.75, 0.75)):
        u, v = int(fu * w), int(fv * h)
        x, y = place(u + 0.5, v + 0.5)
        got = r[int(H - y), int(x)]
        if np.abs(got - page[v, u].astype(int)).max() > 24:
            report(f, f"pixel ({u}, {v}) rendered as {got}, not {page[v, u]}")
print(f"{bad} difference(s)")
sys.exit(1 if bad else 0)
PY

echo "Raster: $checked page(s) in 9 formats read by their tools, ImageMagick and Ghostscript"

# The devices' files: every image in the folders given, by its tool.
devices=0
while IFS= read -r -d '' f; do
  case $f in "$work"/*) continue ;; esac
  case $f in
    *.png) pngcheck -q "$f" > "$work/log" 2>&1 || fail pngcheck "$f" ;;
    *.tif)
      if ! tiffinfo -D "$f" > /dev/null 2> "$work/log" || [ -s "$work/log" ]; then
        fail tiffinfo "$f"
      fi ;;
    *.gif) giftext "$f" > "$work/log" 2>&1 || fail giftext "$f" ;;
    *.bmp) { bmptopnm -quiet "$f" > "$work/bmp.pnm" && pnmfile "$work/bmp.pnm"; } > "$work/log" 2>&1 ||
             fail "bmptopnm | pnmfile" "$f" ;;
    *.ppm) pnmfile "$f" > "$work/log" 2>&1 || fail pnmfile "$f" ;;
  esac
  devices=$((devices + 1))
done < <(find "$@" -type f \( -name '*.png' -o -name '*.tif' -o -name '*.gif' -o -name '*.bmp' \
           -o -name '*.ppm' \) -print0 2>/dev/null)
echo "Raster: $devices image file(s) of the devices read by their tools"
for f in "$work"/plot_853x603.* "$work"/ramp_853x603.*; do
  case $f in *.ref) continue ;; esac
  printf '  %-28s %9d bytes\n' "$(basename "$f")" "$(stat -c %s "$f")"
done
exit $status

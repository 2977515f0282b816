#!/usr/bin/env bash
# A browser renders an SVG page: headless Chromium takes a screenshot of the golden axis
# page, and the screenshot must show the drawing (enough dark pixels, as the same page
# rendered by librsvg shows). Skipped (exit 77) where Chromium is not installed.
#
# Usage: chromium.sh WORKDIR SVGFILE
set -u
work=$1
svg=$(cd "$(dirname "$2")" && pwd)/$(basename "$2")
browser=$(command -v chromium || command -v chromium-browser || true)
[ -n "$browser" ] || { echo "SKIP: chromium is not installed"; exit 77; }
[ -f "$svg" ] || { echo "FAIL: $svg is missing"; exit 1; }
rm -rf "$work" && mkdir -p "$work" || exit 2
# The page in a plain HTML frame, at the SVG's own size.
cat > "$work/page.html" <<HTML
<!DOCTYPE html><html><body style="margin:0;background:#fff">
<img src="file://$svg" style="display:block"></body></html>
HTML
timeout 120 "$browser" --headless --no-sandbox --disable-gpu --hide-scrollbars \
  --user-data-dir="$work/profile" --window-size=1200,900 \
  --screenshot="$work/shot.png" "file://$work/page.html" > "$work/log.txt" 2>&1
[ -s "$work/shot.png" ] || { echo "FAIL: no screenshot"; cat "$work/log.txt"; exit 1; }
rsvg-convert -b white "$svg" > "$work/rsvg.png" || { echo "FAIL: rsvg-convert"; exit 1; }
/usr/bin/python3 - "$work/shot.png" "$work/rsvg.png" <<'PY'
import sys
from PIL import Image
def dark_share(path):
    img = Image.open(path).convert("L")
    pixels = img.getdata()
    return sum(1 for p in pixels if p < 128) / len(pixels), img.size
shot, shot_size = dark_share(sys.argv[1])
ref, ref_size = dark_share(sys.argv[2])
# The screenshot holds the page (and white around it): compare the dark pixels per page.
area = (shot_size[0] * shot_size[1]) / (ref_size[0] * ref_size[1])
ratio = shot * area / ref if ref > 0 else 0.0
print(f"dark pixels: browser {shot:.4f} of {shot_size}, librsvg {ref:.4f} of {ref_size}; ratio {ratio:.2f}")
sys.exit(0 if 0.5 < ratio < 2.0 else 1)
PY

#!/usr/bin/env bash
# W9 in GMT (Debian's gmt 6 and its GSHHG data at the intermediate resolution -Di).
# usage: maps_gmt.sh w9w|w9e ps|png OUTPREFIX
# The same layers as the library: land and lakes filled, graticule, coastlines, all
# borders, all rivers; PNG at 103 dpi (the A4 width in 1200 pixels); GMT crops its pages to the
# drawing.
set -euo pipefail
sub=$1 fmt=$2 out=$3
case $fmt in
  ps) opts=() ;;
  png) opts=(E103) ;;
  *) echo "unknown format $fmt" >&2; exit 2 ;;
esac
export GMT_SESSION_NAME=zb$$
layers=(-Di -G220/230/200 -S210/230/245 -W0.25p,90/90/80 -Na/0.25p,160/60/40 -Ia/0.25p,60/140/200)
gmt begin "$out" "$fmt" "${opts[@]}"
gmt set MAP_GRID_PEN_PRIMARY 0.25p,180/180/180
if [ "$sub" = w9w ]; then
  gmt coast -Rd -JN0/24c "${layers[@]}" -Bxa60g60 -Bya30g30 -B+t"W9 Robinson world"
else
  gmt coast -R-15/40/33/72 -JL12.5/52.5/40/60/17c "${layers[@]}" -Bxa10g10 -Bya10g10 \
    -B+t"W9 Lambert Europe"
fi
gmt end

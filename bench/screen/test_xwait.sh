#!/usr/bin/env bash
# Checks the watch of bench/run_screen.sh (zb_xwait) against a window whose timing is known
# (xwait_probe: its picture is final 300 ms after the start, and repainted 200 ms after a
# resize). A watch that matched a partial picture, missed a change or timed from the wrong
# moment would report times below those or far above them; one that took a wrong picture
# for the recorded one would report a repaint that never happened.
# Usage: bench/screen/test_xwait.sh [BINDIR]   (on $DISPLAY when set, else on an Xvfb of its own;
#   BINDIR holds zb_xwait and xwait_probe, built here when missing)
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
bin=${1:-$work}
xvfb=
trap '[ -z "$xvfb" ] || kill $xvfb 2> /dev/null; rm -rf "$work"' EXIT
[ -x "$bin/zb_xwait" ] || gcc -O2 -o "$bin/zb_xwait" "$here/zb_xwait.c" -lXdamage -lXext -lX11
[ -x "$bin/xwait_probe" ] || gcc -O2 -o "$bin/xwait_probe" "$here/xwait_probe.c" -lX11
if [ -z "${DISPLAY:-}" ]; then
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3> "$work/display" 2> /dev/null &
  xvfb=$!
  for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
  display=$(head -n 1 "$work/display")
  export DISPLAY=:$display
fi
fails=0
check() {  # what, value, low, high
  if awk -v v="$2" -v lo="$3" -v hi="$4" 'BEGIN { exit !(v != "-" && v >= lo && v <= hi) }'; then
    echo "ok    $1: $2 s"
  else
    echo "FAIL  $1: $2 s, expected $3 to $4"
    fails=$((fails + 1))
  fi
}
title="zb_xwait probe"
probe="$bin/xwait_probe"

# Recording: the pictures once still, at both sizes.
"$bin/zb_xwait" -s "$work/ref" -r 200x150 -q 600 -t 20 "$title" -- "$probe" "$title" 300 200 > /dev/null
[ "$(head -c 15 "$work/ref.show.ppm" | tr '\n' ' ')" = "P6 400 300 255 " ] || { echo "FAIL  recorded picture"; fails=$((fails + 1)); }

# Comparing: no earlier than the probe's delays, and not much later (a busy machine adds).
line=$("$bin/zb_xwait" -c "$work/ref" -r 200x150 -t 20 "$title" -- "$probe" "$title" 300 200) || true
read -r show ended resized _ <<< "$line"
check "shown" "$show" 0.300 0.550
check "repainted" "$resized" 0.200 0.450
[ "$ended" = - ] || { echo "FAIL  the probe ended before it was closed"; fails=$((fails + 1)); }

# A picture of another size is never taken for the recorded one.
status=0
line=$("$bin/zb_xwait" -c "$work/ref" -r 240x150 -t 3 "$title" -- "$probe" "$title" 0 0) || status=$?
read -r show _ resized _ <<< "$line"
check "shown, no delay" "$show" 0.000 0.250
[ "$resized" = - ] && [ $status -eq 1 ] && echo "ok    another picture: no repaint found" ||
  { echo "FAIL  another picture matched ($resized, status $status)"; fails=$((fails + 1)); }

# Without a window: the program's end.
line=$("$bin/zb_xwait" "$title" -- sleep 0.2)
read -r _ ended _ <<< "$line"
check "ended" "$ended" 0.200 0.400

[ $fails -eq 0 ] || { echo "$fails checks failed"; exit 1; }

#!/usr/bin/env bash
# W1 of the shared benchmark (a curve of N points, default 10^6) on the screen: the
# library's "XWND" window (bench/zb_zorvel w1 xwnd) beside gnuplot's x11 terminal and
# matplotlib's GTK3Agg backend (bench/screen/), in windows of 1200 x 850 pixels on an Xvfb
# server of its own. bench/screen/zb_xwait watches each window from outside, alike for
# every program: it starts the program and reads the window's pixels back at every change
# the server reports. Three measurements:
#   w1.shown   from the start of the program until the window shows the finished plot,
#              that is until its pixels equal those recorded in a first, untimed run
#   w1.resize  from the request to resize the window to 960 x 680 (made after the plot is
#              shown and the program has been left alone for 0.5 s) until it shows the plot
#              repainted at that size
#   w1.exit    the whole process of a program that ends once its page is on the screen:
#              the library with winmod "HOLD", matplotlib after its canvas is painted and
#              the server synced, gnuplot -persist (which ends when gnuplot_x11 has drawn,
#              as the watch sees, though nothing in the terminal promises it)
# The library draws exact pixels by default; zorvel-smooth draws anti-aliased, as
# matplotlib does. The cases take turns, RUNS times after the untimed first run; the table
# gives the medians of wall time, for w1.shown and w1.exit also of the processor time and
# the peak memory of the program's process (gnuplot's window belongs to another process,
# gnuplot_x11: "-"), and the wall time as a ratio to the fastest peer.
#
# Usage: bench/run_screen.sh [--install] [BUILD_DIR] [RUNS] [N]
#   --install  installs what is missing from Debian first: xvfb, libxdamage-dev,
#              gnuplot-x11 (which replaces gnuplot-nox: the same gnuplot with the x11
#              terminal besides), python3-matplotlib, python3-gi-cairo, gir1.2-gtk-3.0
#   BUILD_DIR  a configured build with the screen module (default: build); zb_zorvel and
#              zorvel_screen are built when missing
#   RUNS       timed runs per case (default 5)
#   N          points of the curve (default 1000000)
# ZB_SCREEN_KEEP=DIR keeps the recorded windows there (PPM files), to look at. Run it on a
# quiet machine: the X server, the program and the watch share the processors.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
install=0
if [ "${1:-}" = "--install" ]; then
  install=1
  shift
fi
build=$(cd "${1:-$root/build}" && pwd)
runs=${2:-5}
n=${3:-1000000}
resize=960x680
title="W1 big curve"
peers=${ZORVEL_PEERS_DIR:-$root/../shared/bench/peers}
if [ $install -eq 1 ]; then
  "$root/tools/deps.sh" xvfb libxdamage-dev libxext-dev gnuplot-x11 python3-matplotlib \
    python3-gi-cairo gir1.2-gtk-3.0
fi
zb=$build/bench/zb_zorvel
[ -x "$zb" ] || cmake --build "$build" --target zb_zorvel > /dev/null
[ -f "$build/libzorvel_screen.so" ] || cmake --build "$build" --target zorvel_screen > /dev/null
work=$(mktemp -d)
bin=$work/bin
mkdir -p "$bin"

# An X server of our own, on the first free display (-displayfd tells which).
command -v Xvfb > /dev/null || { echo "Xvfb is missing (xvfb; --install)"; exit 2; }
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3> "$work/display" 2> "$work/xvfb.log" &
xvfb=$!
trap 'kill $xvfb 2> /dev/null; wait $xvfb 2> /dev/null; rm -rf "$work"' EXIT
for _ in $(seq 100); do
  [ -s "$work/display" ] && break
  sleep 0.1
done
[ -s "$work/display" ] || { echo "Xvfb did not start:"; cat "$work/xvfb.log"; exit 2; }
display=$(head -n 1 "$work/display")
export DISPLAY=:$display

gcc -O2 -o "$bin/zb_xwait" "$root/bench/screen/zb_xwait.c" -lXdamage -lXext -lX11 &&
  gcc -O2 -o "$bin/xwait_probe" "$root/bench/screen/xwait_probe.c" -lX11 ||
  { echo "bench/screen/zb_xwait.c does not build (libx11-dev, libxext-dev, libxdamage-dev)"; exit 2; }
# The watch first times a window of known timing; no figures from a watch that fails it.
"$root/bench/screen/test_xwait.sh" "$bin" > "$work/selftest" ||
  { cat "$work/selftest"; echo "the watch failed its check: no measurement"; exit 1; }
have_gp=0 have_mpl=0
command -v gnuplot-x11 > /dev/null && gcc -O2 -o "$bin/mkdata" "$peers/gnuplot/mkdata.c" -lm 2> /dev/null &&
  "$bin/mkdata" "$work/w1.bin" "$n" && have_gp=1
/usr/bin/python3 -c "import gi; gi.require_version('Gtk', '3.0'); from gi.repository import Gtk; \
import cairo, matplotlib, numpy" 2> /dev/null && have_mpl=1
[ $have_gp -eq 1 ] || echo "gnuplot left out (gnuplot-x11 and the peers' mkdata.c; --install)"
[ $have_mpl -eq 1 ] || echo "matplotlib left out (python3-matplotlib, python3-gi-cairo; --install)"

# Cases: "kind|name|command"; kind "watch" gives w1.shown and w1.resize, "exit" w1.exit.
# zb_zorvel takes no file for a window: OUT is a prefix nothing is written to.
mpl=$root/bench/screen/w1_gtk3agg.py
cases=(
  "watch|zorvel|env ZB_XWND_MODE=STAN $zb w1 xwnd OUT $n"
  "watch|zorvel-smooth|env ZB_XWND_MODE=STAN ZB_ZORVEL_SMOOTH=1 $zb w1 xwnd OUT $n"
)
[ $have_gp -eq 1 ] && cases+=("watch|gnuplot|gnuplot-x11 -c $root/bench/screen/w1_x11.gp $work/w1.bin")
[ $have_mpl -eq 1 ] && cases+=("watch|matplotlib|/usr/bin/python3 $mpl wait $n")
cases+=(
  "exit|zorvel|env ZB_XWND_MODE=HOLD $zb w1 xwnd OUT $n"
  "exit|zorvel-smooth|env ZB_XWND_MODE=HOLD ZB_ZORVEL_SMOOTH=1 $zb w1 xwnd OUT $n"
)
[ $have_gp -eq 1 ] && cases+=("exit|gnuplot|gnuplot-x11 -c $root/bench/screen/w1_x11.gp $work/w1.bin")
[ $have_mpl -eq 1 ] && cases+=("exit|matplotlib|/usr/bin/python3 $mpl exit $n")

# One run of case k: "watch" appends "show cpu peak_kb" to shown and the repaint time to
# resize, "exit" "wall cpu peak_kb" to exit. The first run records the windows instead.
run_case() {
  local k=$1 record=${2:-} dir=$work/case$1 kind name cmd line show ended resized cpu peak
  IFS='|' read -r kind name cmd <<< "${cases[$k]}"
  mkdir -p "$dir"
  cmd=${cmd//OUT/$dir/out}
  if [ "$kind" = exit ]; then
    line=$("$bin/zb_xwait" -t 60 "$title" -- $cmd 2>> "$dir/stderr") || return 1
    read -r show ended resized cpu peak <<< "$line"
    [ "$ended" != - ] || return 1
    [ "$name" = gnuplot ] && cpu=- peak=-
    [ -n "$record" ] || echo "$ended $cpu $peak" >> "$dir/exit"
    return 0
  fi
  if [ -n "$record" ]; then
    "$bin/zb_xwait" -s "$dir/ref" -r $resize -t 60 "$title" -- $cmd > /dev/null 2>> "$dir/stderr"
    return
  fi
  line=$("$bin/zb_xwait" -c "$dir/ref" -r $resize -t 60 "$title" -- $cmd 2>> "$dir/stderr") || true
  [ -n "$line" ] || return 1
  read -r show ended resized cpu peak <<< "$line"
  [ "$name" = gnuplot ] && cpu=- peak=-
  [ "$show" != - ] && echo "$show $cpu $peak" >> "$dir/shown"
  [ "$resized" != - ] && echo "$resized - -" >> "$dir/resize"
  [ "$show" != - ] && [ "$resized" != - ]
}

for k in "${!cases[@]}"; do run_case "$k" record || echo "first run failed: ${cases[$k]}"; done
if [ -n "${ZB_SCREEN_KEEP:-}" ]; then
  mkdir -p "$ZB_SCREEN_KEEP"
  for k in "${!cases[@]}"; do
    IFS='|' read -r kind name _ <<< "${cases[$k]}"
    for f in "$work/case$k"/ref.*.ppm; do
      [ -f "$f" ] && cp "$f" "$ZB_SCREEN_KEEP/$name.${f##*/ref.}"
    done
  done
fi
failed=0
for _ in $(seq "$runs"); do
  for k in "${!cases[@]}"; do run_case "$k" || failed=$((failed + 1)); done
done

median() {  # file, column
  [ -s "$1" ] || { echo -; return; }
  sort -n -k"$2" "$1" | awk -v c="$2" '{ v[NR] = $c } END { print v[int((NR + 1) / 2)] }'
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0 && a != "-") printf "%.2f", a / b; else printf "-" }'; }

echo "Medians of $runs runs, $(date -u +%Y-%m-%d), $(nproc) cores, $(uname -m), load $(cut -d' ' -f1-3 /proc/loadavg)"
[ $failed -eq 0 ] || echo "$failed runs failed (timed out or never showed the recorded pixels): left out of the medians"
printf '%-11s %-13s %8s %8s %8s %7s\n' case program "wall s" "cpu s" "peak MB" /peer
for group in shown resize exit; do
  best=""
  for k in "${!cases[@]}"; do
    IFS='|' read -r _ name _ <<< "${cases[$k]}"
    t=$(median "$work/case$k/$group" 1)
    case $name in
      zorvel | zorvel-* | -) ;;
      *) if [ "$t" != - ] && { [ -z "$best" ] || awk -v a="$t" -v b="$best" 'BEGIN { exit !(a < b) }'; }; then best=$t; fi ;;
    esac
  done
  for k in "${!cases[@]}"; do
    IFS='|' read -r kind name _ <<< "${cases[$k]}"
    { [ "$group" = exit ] && [ "$kind" = exit ]; } || { [ "$group" != exit ] && [ "$kind" = watch ]; } || continue
    t=$(median "$work/case$k/$group" 1)
    printf '%-11s %-13s %8s %8s %8s %7s\n' "w1.$group" "$name" "$t" "$(median "$work/case$k/$group" 2)" \
      "$(awk -v m="$(median "$work/case$k/$group" 3)" 'BEGIN { if (m == "-") print "-"; else printf "%.1f", m / 1024 }')" \
      "$(ratio "$t" "$best")"
  done
done

#!/usr/bin/env bash
# Times the raster workloads W1 (1,000,000 points) and W4 (100,000 open circles) as PNG
# of 1200 x 850 pixels, side by side in one run: the library (bench/raster_workloads.cpp,
# exact and anti-aliased), the limit program of the peer measurements (a Bresenham
# polyline written by libpng and by zlib alone, W1 only) and the peers PLplot (pngcairo)
# and matplotlib (Agg). Each case runs as a whole process, the cases taking turns, RUNS
# times after one warm-up run; the table gives the medians of wall time, processor time
# (user + system) and peak memory, the file's size, and the ratios of the wall time to
# the fastest peer and to the limit program.
#
# Usage: bench/run_png.sh [--install] [BUILD_DIR] [RUNS]
#   --install  installs the peers from Debian when missing (libplplot-dev,
#              plplot-driver-cairo, python3-matplotlib, libpng-dev); without it a missing
#              peer is left out with a line saying so
#   BUILD_DIR  a configured build (default: build); the benchmark is built when missing
#   RUNS       timed runs per case (default 7)
# The peers' programs are those of ../shared/bench/peers beside the repository
# (ZORVEL_PEERS_DIR overrides). Do not run it beside a build: it measures the machine.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
install=0
if [ "${1:-}" = "--install" ]; then
  install=1
  shift
fi
build=$(cd "${1:-$root/build}" && pwd)
runs=${2:-7}
peers=${ZORVEL_PEERS_DIR:-$root/../shared/bench/peers}
[ -d "$peers" ] || { echo "no peer programs at $peers (set ZORVEL_PEERS_DIR)"; exit 2; }
if [ $install -eq 1 ]; then
  "$root/tools/deps.sh" libplplot-dev plplot-driver-cairo python3-matplotlib libpng-dev
fi
prog=$build/bench/bench_raster_workloads
[ -x "$prog" ] || cmake --build "$build" --target bench_raster_workloads > /dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The peers' programs, built here with the flags of the peer measurements.
cases=()
add() { cases+=("$1|$2|$3"); }  # name | workload | command (OUT is the output's prefix)
add "zorvel exact" w1 "$prog w1 exact OUT.png"
add "zorvel smooth" w1 "$prog w1 smooth OUT.png"
add "zorvel exact" w4 "$prog w4 exact OUT.png"
add "zorvel smooth" w4 "$prog w4 smooth OUT.png"
if g++ -O2 -std=c++17 -o "$work/limit_png" "$peers/limit/limit_png.cpp" -lpng -lz 2> /dev/null; then
  add "limit libpng" w1 "$work/limit_png libpng OUT.png 1000000"
  add "limit zlib" w1 "$work/limit_png zlib OUT.png 1000000"
else
  echo "limit program not built (libpng-dev missing; --install installs it)"
fi
if gcc -O2 -o "$work/zb_plplot" "$peers/plplot/zb_plplot.c" $(pkg-config --cflags --libs plplot 2> /dev/null) -lm 2> /dev/null; then
  add "plplot" w1 "$work/zb_plplot w1 png OUT 1000000"
  add "plplot" w4 "$work/zb_plplot w4 png OUT"
else
  echo "PLplot peer not built (libplplot-dev missing; --install installs it)"
fi
if /usr/bin/python3 -c "import matplotlib" 2> /dev/null; then
  add "matplotlib" w1 "/usr/bin/python3 $peers/matplotlib/zb_mpl.py w1 png OUT 1000000"
  add "matplotlib" w4 "/usr/bin/python3 $peers/matplotlib/zb_mpl.py w4 png OUT"
else
  echo "matplotlib peer left out (python3-matplotlib missing; --install installs it)"
fi

# One timed run of case k: "wall cpu peak_kb bytes" appended to its log.
run_case() {
  local k=$1 spec=${cases[$1]} dir=$work/case$1
  local cmd=${spec##*|}
  mkdir -p "$dir"
  cmd=${cmd//OUT/$dir/out}
  local t0 t1
  t0=$(date +%s%N)
  (cd "$dir" && /usr/bin/time -f "%U %S %M" -o "$dir/time" $cmd > /dev/null 2>&1) || return 1
  t1=$(date +%s%N)
  local bytes
  bytes=$(stat -c %s "$dir/out.png" 2> /dev/null || echo 0)
  # Wall time to the millisecond from the clock; processor time (centiseconds) and peak
  # memory from time(1).
  awk -v b="$bytes" -v w="$(( (t1 - t0) / 1000000 ))" \
    '{ printf "%.3f %.3f %d %d\n", w / 1000, $1 + $2, $3, b }' "$dir/time" >> "$dir/log"
}

for k in "${!cases[@]}"; do run_case "$k" || echo "case failed: ${cases[$k]}"; done  # warm-up
for k in "${!cases[@]}"; do : > "$work/case$k/log"; done
for _ in $(seq "$runs"); do
  for k in "${!cases[@]}"; do run_case "$k" || true; done
done

median() {  # column of a case's log
  sort -n -k"$2" "$work/case$1/log" | awk -v c="$2" '{ v[NR] = $c } END { print v[int((NR + 1) / 2)] }'
}
echo "PNG 1200 x 850, medians of $runs runs, $(date -u +%Y-%m-%d) on $(nproc) cores"
for w in w1 w4; do
  best=""
  limit=""
  for k in "${!cases[@]}"; do
    IFS='|' read -r name wl _ <<< "${cases[$k]}"
    [ "$wl" = "$w" ] || continue
    t=$(median "$k" 1)
    case $name in
      zorvel*) ;;
      limit\ libpng) limit=$t ;;
      limit*) ;;
      *) if [ -z "$best" ] || awk -v a="$t" -v b="$best" 'BEGIN { exit !(a < b) }'; then best=$t; fi ;;
    esac
  done
  echo
  printf '%-4s %-15s %8s %8s %9s %10s %8s %8s\n' "$w" case "wall s" "cpu s" "peak MB" bytes "/peer" "/limit"
  for k in "${!cases[@]}"; do
    IFS='|' read -r name wl _ <<< "${cases[$k]}"
    [ "$wl" = "$w" ] || continue
    t=$(median "$k" 1)
    printf '%-4s %-15s %8s %8s %9.1f %10s %8s %8s\n' "" "$name" "$t" "$(median "$k" 2)" \
      "$(awk -v m="$(median "$k" 3)" 'BEGIN { print m / 1024 }')" "$(median "$k" 4)" \
      "$([ -n "$best" ] && awk -v a="$t" -v b="$best" 'BEGIN { printf "%.2f", a / b }' || echo -)" \
      "$([ -n "$limit" ] && awk -v a="$t" -v b="$limit" 'BEGIN { printf "%.2f", a / b }' || echo -)"
  done
done

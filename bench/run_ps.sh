#!/usr/bin/env bash
# Times the PostScript polyline benchmark (bench/ps_polyline.cpp) as whole processes,
# as the peer measurements do, and prints the medians, the ratio of the library to the
# plain formatting program, and the peers' figures for the same workload when the shared
# results table is at hand.
#
# Usage: bench/run_ps.sh [BUILD_DIR] [N] [RUNS]
#   BUILD_DIR  a configured build (default: build); the benchmark is built when missing
#   N          points (default 1000000)
#   RUNS       timed runs per mode after one warm-up run (default 11); medians count
# ZORVEL_PEERS may name the peers' results.tsv (default: ../shared/bench/results/results.tsv
# beside the repository).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
n=${2:-1000000}
runs=${3:-11}
prog=$build/bench/bench_ps_polyline
if [ ! -x "$prog" ]; then
  cmake --build "$build" --target bench_ps_polyline > /dev/null
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
TIMEFORMAT='%R %U %S'

# "wall cpu": the median wall time and the median processor time (user + system) in
# seconds of RUNS runs of one mode. Processor time is less disturbed by other load.
measure() {
  local mode=$1 out=$work/out.$1 log=$work/times.$1
  (cd "$work" && "$prog" "$mode" "$out" "$n" > /dev/null) || return 1  # warm-up
  : > "$log"
  for _ in $(seq "$runs"); do
    { time (cd "$work" && "$prog" "$mode" "$out" "$n" > /dev/null); } 2>> "$log" || return 1
  done
  local m=$(((runs + 1) / 2))
  printf '%s %s\n' \
    "$(awk '{ printf "%.4f\n", $1 }' "$log" | sort -n | sed -n "${m}p")" \
    "$(awk '{ printf "%.4f\n", $2 + $3 }' "$log" | sort -n | sed -n "${m}p")"
}

size() { [ -f "$work/out.$1" ] && stat -c %s "$work/out.$1" || echo 0; }

declare -A wall cpu
for mode in data plain distinct api curve svg_plain svg curve_svg curve_pdf; do
  read -r wall[$mode] cpu[$mode] < <(measure "$mode") || { echo "benchmark run failed"; exit 1; }
done
echo "PostScript polyline of $n points (W1), medians of $runs runs: wall s, cpu s"
printf '  %-9s %8s %8s  %s\n' data "${wall[data]}" "${cpu[data]}" "computing the points only"
printf '  %-9s %8s %8s  %s (%s bytes)\n' plain "${wall[plain]}" "${cpu[plain]}" \
  "formatting and writing the integers of every point" "$(size plain)"
printf '  %-9s %8s %8s  %s (%s bytes)\n' distinct "${wall[distinct]}" "${cpu[distinct]}" \
  "the same, without repeated points" "$(size distinct)"
printf '  %-9s %8s %8s  %s (%s bytes)\n' api "${wall[api]}" "${cpu[api]}" \
  "metafl, zorini, strtpt/connpt per point, zorfin" "$(size api)"
printf '  %-9s %8s %8s  %s (%s bytes)\n' curve "${wall[curve]}" "${cpu[curve]}" \
  "an axis system with title and names, one curve call" "$(size curve)"
for mode in svg_plain svg curve_svg curve_pdf; do
  printf '  %-9s %8s %8s  (%s bytes)\n' "$mode" "${wall[$mode]}" "${cpu[$mode]}" "$(size "$mode")"
done
awk -v sw="${wall[svg]}" -v spw="${wall[svg_plain]}" -v sc="${cpu[svg]}" -v spc="${cpu[svg_plain]}" \
  'BEGIN { printf "  svg / svg_plain = %.2f wall, %.2f cpu (target: at most 1.3)\n", sw / spw, sc / spc }'
awk -v aw="${wall[api]}" -v pw="${wall[plain]}" -v ac="${cpu[api]}" -v pc="${cpu[plain]}" \
    -v dc="${cpu[distinct]}" 'BEGIN {
  printf "  api / plain = %.2f wall, %.2f cpu (target: at most 2)\n", aw / pw, ac / pc
  printf "  api / distinct = %.2f cpu\n", ac / dc
}'

peers=${ZORVEL_PEERS:-$root/../shared/bench/results/results.tsv}
case $n in
  100000) id=W1_1e5 ;;
  1000000) id=W1_1e6 ;;
  10000000) id=W1_1e7 ;;
  *) id="" ;;
esac
# PLplot measured in the same run, when its library and the peer program are at hand.
peer_src=$root/../shared/bench/peers/plplot/zb_plplot.c
if [ -f "$peer_src" ] && pkg-config --exists plplot 2> /dev/null &&
   gcc -O2 -I"$(dirname "$peer_src")/.." -o "$work/zb_plplot" "$peer_src" \
       $(pkg-config --cflags --libs plplot) -lm 2> /dev/null; then
  log=$work/times.plplot
  (cd "$work" && ./zb_plplot w1 ps pl "$n" > /dev/null 2>&1)
  : > "$log"
  for _ in $(seq "$runs"); do
    { time (cd "$work" && ./zb_plplot w1 ps pl "$n" > /dev/null 2>&1); } 2>> "$log"
  done
  m=$(((runs + 1) / 2))
  pw=$(awk '{ printf "%.4f\n", $1 }' "$log" | sort -n | sed -n "${m}p")
  pc=$(awk '{ printf "%.4f\n", $2 + $3 }' "$log" | sort -n | sed -n "${m}p")
  pbytes=$(cat "$work"/pl* 2> /dev/null | wc -c)
  printf '  %-9s %8s %8s  %s (%s bytes)\n' plplot "$pw" "$pc" "the PLplot peer, same run" "$pbytes"
  awk -v cw="${wall[curve]}" -v cc="${cpu[curve]}" -v pw="$pw" -v pc="$pc" 'BEGIN {
    printf "  curve / plplot = %.2f wall, %.2f cpu\n", cw / pw, cc / pc }'
  # The same peer writing SVG and PDF (its cairo PDF driver), where it has them.
  for fmt in svg pdf; do
    log=$work/times.plplot_$fmt
    (cd "$work" && ./zb_plplot w1 "$fmt" pl_$fmt "$n" > /dev/null 2>&1) || continue
    : > "$log"
    for _ in $(seq "$runs"); do
      { time (cd "$work" && ./zb_plplot w1 "$fmt" pl_$fmt "$n" > /dev/null 2>&1); } 2>> "$log"
    done
    fw=$(awk '{ printf "%.4f\n", $1 }' "$log" | sort -n | sed -n "${m}p")
    fc=$(awk '{ printf "%.4f\n", $2 + $3 }' "$log" | sort -n | sed -n "${m}p")
    ours=curve_$fmt
    printf '  %-9s %8s %8s  the PLplot peer, %s (%s bytes); curve_%s / it = %.2f cpu\n' \
      "plplot" "$fw" "$fc" "$fmt" "$(cat "$work"/pl_"$fmt"* 2> /dev/null | wc -c)" "$fmt" \
      "$(awk -v a="${cpu[$ours]}" -v b="$fc" 'BEGIN { print a / b }')"
  done
fi

if [ -n "$id" ] && [ -f "$peers" ]; then
  echo "Peers, $id PS (medians from $(basename "$peers")): wall s, cpu s, ours / theirs"
  awk -F'\t' -v id="$id" -v aw="${wall[api]}" -v ac="${cpu[api]}" '$2 == id && $3 == "ps" {
      printf "  %-18s %7.3f %7.3f   wall %.2f, cpu %.2f\n", $4, $6, $9, aw / $6, ac / $9 }' \
    "$peers"
fi

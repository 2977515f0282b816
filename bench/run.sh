#!/usr/bin/env bash
# The peer workloads side by side in one run: the library (bench/zb_zorvel.c), the peers
# PLplot, giza, gnuplot and matplotlib, and the limit programs, on the workloads and
# formats of the shared benchmark (W1 1e5/1e6/1e7 points, W2 200 small plots, W3 20,000
# labels, W4 100,000 markers, W5 a trivial plot), the chart workload W6 of bench/charts
# (a labelled 1,000-bar histogram of 1e6 values and a page of hatched bars; its peers'
# programs are those of bench/charts) and the contour workload W7 of bench/contours
# (filled contours, a heat map, a surface, a Delaunay triangulation of 1e6 points) and the
# formula workload W8 of bench/formulas (10,000 formula labels) and the map workload W9 of
# bench/maps (a Robinson world and Lambert Europe at the intermediate resolution). Each case
# runs as a whole process; the cases of one workload and format take turns, RUNS times
# after a warm-up run. The table gives per case the medians of wall time (ms clock),
# processor time (user + system) and peak memory, the bytes written, and the wall time as a
# ratio to the fastest peer and to the limit program.
#
# Usage: bench/run.sh [--install] [BUILD_DIR] [RUNS] [CASES]
#   --install  installs what is missing from Debian first: libplplot-dev,
#              plplot-driver-cairo, giza-dev, gnuplot-x11, python3-matplotlib, libpng-dev,
#              qhull-bin, python3-scipy
#              (without it a peer that is not installed is left out, with a line)
#   BUILD_DIR  a configured build (default: build); zb_zorvel is built when missing
#   RUNS       timed runs per case (default 5)
#   CASES      an extended regular expression on "workload.format" (default: all), e.g.
#              'w1_1e6' or 'w4\.png'
# ZB_ZORVEL_SMOOTH=1 draws the library's PNG pages anti-aliased. The peers' programs are
# those of ../shared/bench/peers beside the repository (ZORVEL_PEERS_DIR overrides). Run
# it on a quiet machine: not beside a build.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
install=0
if [ "${1:-}" = "--install" ]; then
  install=1
  shift
fi
build=$(cd "${1:-$root/build}" && pwd)
runs=${2:-5}
only=${3:-.}
peers=${ZORVEL_PEERS_DIR:-$root/../shared/bench/peers}
[ -d "$peers" ] || { echo "no peer programs at $peers (set ZORVEL_PEERS_DIR)"; exit 2; }
if [ $install -eq 1 ]; then
  "$root/tools/deps.sh" libplplot-dev plplot-driver-cairo giza-dev gnuplot-x11 \
    python3-matplotlib libpng-dev qhull-bin python3-scipy
fi
zb=$build/bench/zb_zorvel
[ -x "$zb" ] || cmake --build "$build" --target zb_zorvel > /dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
bin=$work/bin
mkdir -p "$bin"

# The peers' programs and the limit programs (built here, not timed).
have_pl=0 have_gz=0 have_gp=0 have_mpl=0 have_lim=0
gcc -O2 -o "$bin/zb_plplot" "$peers/plplot/zb_plplot.c" $(pkg-config --cflags --libs plplot 2> /dev/null) -lm 2> /dev/null && have_pl=1
gcc -O2 -o "$bin/zb_giza" "$peers/giza/zb_giza.c" $(pkg-config --cflags --libs giza 2> /dev/null) -lm 2> /dev/null && have_gz=1
command -v gnuplot > /dev/null && gcc -O2 -o "$bin/mkdata" "$peers/gnuplot/mkdata.c" -lm 2> /dev/null && have_gp=1
/usr/bin/python3 -c "import matplotlib, numpy" 2> /dev/null && have_mpl=1
g++ -O2 -std=c++17 -o "$bin/limit_text" "$peers/limit/limit_text.cpp" 2> /dev/null &&
  g++ -O2 -std=c++17 -o "$bin/limit_png" "$peers/limit/limit_png.cpp" -lpng -lz 2> /dev/null && have_lim=1
[ $have_pl -eq 1 ] || echo "PLplot left out (libplplot-dev, plplot-driver-cairo; --install)"
[ $have_gz -eq 1 ] || echo "giza left out (giza-dev; --install)"
[ $have_gp -eq 1 ] || echo "gnuplot left out (gnuplot-x11; --install)"
[ $have_mpl -eq 1 ] || echo "matplotlib left out (python3-matplotlib; --install)"
[ $have_lim -eq 1 ] || echo "limit programs left out (libpng-dev; --install)"
charts=$root/bench/charts
w6_pl=0 w6_gp=0
[ $have_pl -eq 1 ] && gcc -O2 -o "$bin/zb_charts_plplot" "$charts/zb_charts_plplot.c" $(pkg-config --cflags --libs plplot) -lm 2> /dev/null && w6_pl=1
[ $have_gp -eq 1 ] && gcc -O2 -o "$bin/mkcharts" "$charts/mkcharts.c" -lm 2> /dev/null && w6_gp=1
[ $have_pl -eq $w6_pl ] || echo "PLplot left out of W6 ($charts/zb_charts_plplot.c does not build)"
[ $have_gp -eq $w6_gp ] || echo "gnuplot left out of W6 ($charts/mkcharts.c does not build)"
contours=$root/bench/contours
w7_pl=0 w7_qh=0 w7_sp=0
[ $have_pl -eq 1 ] && gcc -O2 -o "$bin/zb_contours_plplot" "$contours/zb_contours_plplot.c" $(pkg-config --cflags --libs plplot) -lm 2> /dev/null && w7_pl=1
command -v qdelaunay > /dev/null && gcc -O2 -o "$bin/mkpoints" "$contours/mkpoints.c" -lm 2> /dev/null && w7_qh=1
[ $have_mpl -eq 1 ] && /usr/bin/python3 -c "import scipy.spatial" 2> /dev/null && w7_sp=1
[ $have_pl -eq $w7_pl ] || echo "PLplot left out of W7 ($contours/zb_contours_plplot.c does not build)"
[ $w7_qh -eq 1 ] || echo "qhull left out of W7 (qhull-bin)"
[ $w7_sp -eq 1 ] || echo "scipy left out of W7 (python3-scipy)"
mpl=$peers/matplotlib/zb_mpl.py
gp=$peers/gnuplot

# Cases: "group|name|command|output" (OUT stands for the case's output prefix; the output
# is a file or, for W2 and W6, a pattern of files).
cases=()
add() { [[ $1 =~ $only ]] && cases+=("$1|$2|$3|$4"); return 0; }
for plan in "w1_1e5:100000:ps" "w1_1e6:1000000:ps svg pdf png" "w1_1e7:10000000:ps"; do
  IFS=: read -r group n formats <<< "$plan"
  for f in $formats; do
    g=$group.$f
    add "$g" zorvel "$zb w1 $f OUT $n" "OUT.$f"
    [ $have_pl -eq 1 ] && add "$g" plplot "$bin/zb_plplot w1 $f OUT $n" "OUT.$f"
    [ $have_gz -eq 1 ] && add "$g" giza "$bin/zb_giza w1 $f OUT $n" "OUT.$f"
    if [ $have_gp -eq 1 ]; then
      [ -f "$work/w1_$n.bin" ] || "$bin/mkdata" "$work/w1_$n.bin" "$n"
      add "$g" gnuplot "gnuplot -c $gp/w1_file.gp $f OUT $work/w1_$n.bin" "OUT.$f"
    fi
    [ $have_mpl -eq 1 ] && add "$g" matplotlib "/usr/bin/python3 $mpl w1 $f OUT $n" "OUT.$f"
    if [ $have_lim -eq 1 ]; then
      case $f in
        ps | svg) add "$g" limit "$bin/limit_text $f OUT.$f $n" "OUT.$f" ;;
        png) add "$g" limit "$bin/limit_png libpng OUT.png $n" "OUT.png" ;;
      esac
    fi
  done
done
for plan in "w2:ps svg" "w3:ps pdf" "w4:ps svg png" "w5:ps"; do
  IFS=: read -r w formats <<< "$plan"
  for f in $formats; do
    out="OUT.$f"
    [ "$w" = w2 ] && out="OUT_*.$f"
    add "$w.$f" zorvel "$zb $w $f OUT" "$out"
    [ $have_pl -eq 1 ] && add "$w.$f" plplot "$bin/zb_plplot $w $f OUT" "$out"
    [ $have_gz -eq 1 ] && add "$w.$f" giza "$bin/zb_giza $w $f OUT" "$out"
    [ $have_gp -eq 1 ] && add "$w.$f" gnuplot "gnuplot -c $gp/$w.gp $f OUT" "$out"
    [ $have_mpl -eq 1 ] && add "$w.$f" matplotlib "/usr/bin/python3 $mpl $w $f OUT" "$out"
  done
done
# W3 in outline fonts: DejaVu Sans through ttfont (the font of matplotlib's labels),
# Times-Roman through psfont and through hwfont, beside the peers' W3 in the same format.
for f in ps pdf png; do
  g=w3f.$f
  add "$g" zorvel-ttfont "$zb w3t $f OUT" "OUT.$f"
  add "$g" zorvel-psfont "$zb w3p $f OUT" "OUT.$f"
  add "$g" zorvel-hwfont "$zb w3h $f OUT" "OUT.$f"
  [ $have_pl -eq 1 ] && add "$g" plplot "$bin/zb_plplot w3 $f OUT" "OUT.$f"
  [ $have_mpl -eq 1 ] && add "$g" matplotlib "/usr/bin/python3 $mpl w3 $f OUT" "OUT.$f"
done
# W6: two pages, in one file where the format has pages, else in OUT.fmt and OUT_2.fmt
# (matplotlib's PS too). gnuplot reads the values from a file written here (not timed)
# and bins them itself.
for f in ps svg pdf png; do
  g=w6.$f
  add "$g" zorvel "$zb w6 $f OUT" "OUT*.$f"
  [ $w6_pl -eq 1 ] && add "$g" plplot "$bin/zb_charts_plplot w6 $f OUT" "OUT*.$f"
  if [ $w6_gp -eq 1 ]; then
    [ -f "$work/w6_values.bin" ] || "$bin/mkcharts" "$work/w6_values.bin"
    add "$g" gnuplot "gnuplot -c $charts/charts.gp $f OUT $work/w6_values.bin" "OUT*.$f"
  fi
  [ $have_mpl -eq 1 ] && add "$g" matplotlib "/usr/bin/python3 $charts/zb_charts_mpl.py w6 $f OUT" "OUT*.$f"
done
# W7: one sub-case a call, each one page in OUT.fmt: w7c filled and labelled contours
# (gnuplot 5.4 has none), w7h a heat map, w7s a shaded surface; w7t a triangulation that
# draws nothing, its peers qhull (the points read from a file written here, not timed)
# and scipy.
for plan in "w7c:ps pdf png" "w7h:ps pdf png" "w7s:ps pdf png" "w7t:ps"; do
  IFS=: read -r w formats <<< "$plan"
  for f in $formats; do
    g=$w.$f
    add "$g" zorvel "$zb $w $f OUT" "OUT.$f"
    if [ $w = w7t ]; then
      if [ $w7_qh -eq 1 ] && [[ $g =~ $only ]]; then
        [ -f "$work/w7_points.txt" ] || "$bin/mkpoints" "$work/w7_points.txt"
        add "$g" qhull "qdelaunay Qt s TI $work/w7_points.txt" "OUT.$f"
      fi
      [ $w7_sp -eq 1 ] && add "$g" scipy "/usr/bin/python3 $contours/zb_contours_mpl.py $w $f OUT" "OUT.$f"
      continue
    fi
    [ $w7_pl -eq 1 ] && add "$g" plplot "$bin/zb_contours_plplot $w $f OUT" "OUT.$f"
    [ $have_gp -eq 1 ] && [ $w != w7c ] && add "$g" gnuplot "gnuplot -c $contours/contours.gp $w $f OUT" "OUT.$f"
    [ $have_mpl -eq 1 ] && add "$g" matplotlib "/usr/bin/python3 $contours/zb_contours_mpl.py $w $f OUT" "OUT.$f"
  done
done
# W1 with 10^6 points in the further vector formats, beside gnuplot's terminals of them and
# our own PostScript.
for f in cgm wmf emf ipe hpgl; do
  g=w1f.$f
  ext=$f
  [ $f = hpgl ] && ext=hpg
  add "$g" zorvel "$zb w1 $f OUT 1000000" "OUT.$ext"
  add "$g" zorvel-ps "$zb w1 ps OUT 1000000" "OUT.ps"
  if [ $have_gp -eq 1 ] && [ $f != wmf ] && [ $f != ipe ]; then
    [ -f "$work/w1_1000000.bin" ] || "$bin/mkdata" "$work/w1_1000000.bin" 1000000
    add "$g" gnuplot "gnuplot -c $root/bench/formats/w1_formats.gp $f OUT $work/w1_1000000.bin" "OUT.$ext"
  fi
done
# W8: 10,000 formula labels (bench/formulas), the library's formula mode beside mathtext;
# W8x: 20,000 exponent labels of the instruction alphabet beside mathtext's $x^2$.
formulas=$root/bench/formulas
for f in ps pdf; do
  fb=$build/bench/bench_formulas
  for w in w8 w8x; do
    [[ $w.$f =~ $only ]] && { [ -x "$fb" ] || cmake --build "$build" --target bench_formulas > /dev/null; }
    add "$w.$f" zorvel "$fb $w $f OUT" "OUT.$f"
    [ $have_mpl -eq 1 ] && add "$w.$f" matplotlib "/usr/bin/python3 $formulas/zb_formulas_mpl.py $w $f OUT" "OUT.$f"
  done
done
# W9: maps at the intermediate resolution (bench/maps): the library reads the files that the
# build's zorvel_map_data target writes to $build/map (made here when missing, not timed);
# GMT reads its own data; PLplot draws its 1:110m shapefiles only (lines).
maps=$root/bench/maps
if [[ "w9w.ps w9w.png w9e.ps w9e.png" =~ $only ]]; then
  mb=$build/bench/bench_maps
  [ -x "$mb" ] || cmake --build "$build" --target bench_maps > /dev/null
  [ -f "$build/map/gshhs_i.b" ] || cmake --build "$build" --target zorvel_map_data > /dev/null ||
    echo "the map files are missing (gmt not installed?): W9 of the library fails"
  w9_pl=0
  [ $have_pl -eq 1 ] && gcc -O2 -o "$bin/zb_maps_plplot" "$maps/zb_maps_plplot.c" $(pkg-config --cflags --libs plplot) -lm 2> /dev/null && w9_pl=1
  command -v gmt > /dev/null || echo "GMT left out of W9 (gmt, gmt-gshhg-low)"
  for w in w9w w9e; do
    for f in ps png; do
      add "$w.$f" zorvel "env ZORVEL=$build $mb $w $f OUT" "OUT.$f"
      command -v gmt > /dev/null && add "$w.$f" gmt "$maps/maps_gmt.sh $w $f OUT" "OUT.$f"
      [ $w9_pl -eq 1 ] && add "$w.$f" plplot "$bin/zb_maps_plplot $w $f OUT" "OUT.$f"
    done
  done
fi
[ ${#cases[@]} -gt 0 ] || { echo "no case matches '$only'"; exit 2; }

# One timed run of case k, appended to its log: "wall cpu peak_kb bytes".
run_case() {
  local k=$1 dir=$work/case$1 group name cmd out
  IFS='|' read -r group name cmd out <<< "${cases[$1]}"
  mkdir -p "$dir"
  rm -f "$dir"/out*
  cmd=${cmd//OUT/$dir/out}
  out=${out//OUT/$dir/out}
  local t0 t1
  t0=$(date +%s%N)
  (cd "$dir" && /usr/bin/time -f "%U %S %M" -o "$dir/time" $cmd < /dev/null > "$dir/stdout" 2>&1) ||
    return 1
  t1=$(date +%s%N)
  local bytes
  bytes=$(cat $out 2> /dev/null | wc -c)
  awk -v b="$bytes" -v w="$(((t1 - t0) / 1000000))" \
    '{ printf "%.3f %.3f %d %d\n", w / 1000, $1 + $2, $3, b }' "$dir/time" >> "$dir/log"
}

for k in "${!cases[@]}"; do run_case "$k" || echo "warm-up failed: ${cases[$k]}"; done
for k in "${!cases[@]}"; do : > "$work/case$k/log"; done
for _ in $(seq "$runs"); do
  for k in "${!cases[@]}"; do run_case "$k" || true; done
done

median() {  # case, column
  sort -n -k"$2" "$work/case$1/log" | awk -v c="$2" '{ v[NR] = $c } END { print NR ? v[int((NR + 1) / 2)] : "-" }'
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0 && a != "-") printf "%.2f", a / b; else printf "-" }'; }

echo "Medians of $runs runs, $(date -u +%Y-%m-%d), $(nproc) cores, $(uname -m)"
printf '%-11s %-13s %8s %8s %8s %11s %7s %7s\n' case program "wall s" "cpu s" "peak MB" bytes /peer /limit
groups=$(for c in "${cases[@]}"; do echo "${c%%|*}"; done | awk '!seen[$0]++')
for group in $groups; do
  best=""
  limit=""
  for k in "${!cases[@]}"; do
    IFS='|' read -r g name _ <<< "${cases[$k]}"
    [ "$g" = "$group" ] || continue
    t=$(median "$k" 1)
    [ "$t" = "-" ] && continue
    case $name in
      zorvel | zorvel-*) ;;
      limit) limit=$t ;;
      *) if [ -z "$best" ] || awk -v a="$t" -v b="$best" 'BEGIN { exit !(a < b) }'; then best=$t; fi ;;
    esac
  done
  for k in "${!cases[@]}"; do
    IFS='|' read -r g name _ <<< "${cases[$k]}"
    [ "$g" = "$group" ] || continue
    t=$(median "$k" 1)
    printf '%-11s %-13s %8s %8s %8s %11s %7s %7s\n' "$group" "$name" "$t" "$(median "$k" 2)" \
      "$(awk -v m="$(median "$k" 3)" 'BEGIN { if (m == "-") print "-"; else printf "%.1f", m / 1024 }')" \
      "$(median "$k" 4)" "$(ratio "$t" "$best")" "$(ratio "$t" "$limit")"
  done
done

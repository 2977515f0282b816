#!/usr/bin/env bash
# Builds Zorvel and runs the example gallery; every example writes its plots into the
# folder given (default: gallery/ at the top of the repository). Builds in build/,
# configured by tools/configure.sh as for tools/check.sh.
#
# The gallery is written four times: as the examples' own PostScript/EPS files into the
# folder, then as SVG into <folder>/svg/, as PDF into <folder>/pdf/ and as anti-aliased
# PNG into <folder>/png/ (the examples choose the format from ZORVEL_GALLERY_FORMAT, see
# examples/gallery.h). A format whose driver is not available yet is skipped with one
# line. The Java twins run in every format into <folder>/java/, <folder>/svg/java/,
# <folder>/pdf/java/ and <folder>/png/java/ and compare their files with the C
# examples'. tools/compare_formats.py <folder> then renders the pages
# of all formats and compares them.
# Usage: tools/gallery.sh [output folder]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=$(mkdir -p "${1:-$root/gallery}" && cd "${1:-$root/gallery}" && pwd)
jobs=$(nproc 2>/dev/null || echo 2)
"$root/tools/configure.sh"
cmake --build "$root/build" -j"$jobs" --target gallery_examples
bin=$root/build/examples
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-1700000000}
# The data files the build makes (map files, bitmap fonts) are found in the build tree.
export ZORVEL=${ZORVEL:-$root/build}

run_gallery() {  # folder: every C example, then the Java twins
  local ex
  for ex in "$bin"/ex_*; do
    [ -x "$ex" ] || continue
    echo "== $(basename "$ex")"
    (cd "$1" && "$ex")
  done
  if [ -x "$bin/java/run_java_gallery.sh" ]; then
    "$bin/java/run_java_gallery.sh" "$1"
  fi
}

# Tells whether the device of a format writes files: the smallest example, run in a
# scratch folder, must write its file and not give warning 183 (device not available).
format_available() {  # SVG | PDF | PNG
  local probe log ext
  probe=$(mktemp -d)
  ext=$(echo "$1" | tr '[:upper:]' '[:lower:]')
  log=$(cd "$probe" && ZORVEL_GALLERY_FORMAT=$1 "$bin/ex_eps_figure" 2>&1 || true)
  local ok=1
  if [[ $log == *"Warning 183:"* ]] || [ ! -s "$probe/eps_figure.$ext" ]; then
    ok=0
  fi
  rm -rf "$probe"
  [ $ok -eq 1 ]
}

# A fresh gallery: the versions of multi-page files would otherwise take the next free
# numbers after those of an earlier run.
find "$out" -maxdepth 1 -type f -delete
rm -rf "$out/java" "$out/svg" "$out/pdf" "$out/png"
unset ZORVEL_GALLERY_FORMAT
run_gallery "$out"
for format in SVG PDF PNG; do
  dir=$out/$(echo "$format" | tr '[:upper:]' '[:lower:]')
  if ! format_available "$format"; then
    echo "== $format: skipped, its driver is not available yet (warning 183)"
    continue
  fi
  echo "== the gallery as $format, into $dir"
  mkdir -p "$dir"
  ZORVEL_GALLERY_FORMAT=$format run_gallery "$dir"
done
echo "Gallery written to $out:"
ls -1 "$out"

#!/usr/bin/env bash
# Builds Zorvel and runs the example gallery; every example writes its plots into the
# folder given (default: gallery/ at the top of the repository). Builds in build/,
# configured by tools/configure.sh as for tools/check.sh.
# Usage: tools/gallery.sh [output folder]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=$(mkdir -p "${1:-$root/gallery}" && cd "${1:-$root/gallery}" && pwd)
jobs=$(nproc 2>/dev/null || echo 2)
"$root/tools/configure.sh"
cmake --build "$root/build" -j"$jobs" --target gallery_examples
cd "$out"
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-1700000000}
for ex in "$root"/build/examples/ex_*; do
  [ -x "$ex" ] || continue
  echo "== $(basename "$ex")"
  "$ex"
done
if [ -x "$root/build/examples/java/run_java_gallery.sh" ]; then
  "$root/build/examples/java/run_java_gallery.sh" "$out"
fi
echo "Gallery written to $out:"
ls -1 "$out"

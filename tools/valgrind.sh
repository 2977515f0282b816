#!/usr/bin/env bash
# Runs every example of the gallery and every end-to-end program under Valgrind's
# memcheck and fails on any invalid read or write, use of uninitialised values, bad free,
# or memory lost for good (definitely or indirectly lost). Memory still reachable at exit
# is no error: the thread table and a block the program did not free with delglb stay on
# purpose until the process ends. Nor is "possibly lost": the C library's thread records
# give it when a program ends while a thread runs (too_many_threads.c).
#
# The end-to-end programs run through tests/e2e/run_case.sh as in ctest, so their output
# and files are checked as well; a memcheck error turns their exit status into 97.
# Builds in build/ (tools/configure.sh) unless a configured build folder is given.
# Usage: tools/valgrind.sh [BUILD_DIR]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
jobs=$(nproc 2>/dev/null || echo 2)
"$root/tools/deps.sh" valgrind
if [ $# -gt 0 ]; then
  build=$(cd "$1" && pwd)
else
  build=$root/build
  "$root/tools/configure.sh"
fi
cmake --build "$build" -j"$jobs" > /dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
logs=$work/logs
mkdir -p "$logs"

# A wrapper per program: run_case.sh takes a single program to run.
wrap() {
  local prog=$1 name=$2
  cat > "$work/$name.vg" <<EOF
#!/bin/sh
exec valgrind -q --leak-check=full --show-leak-kinds=definite,indirect \\
  --suppressions=$root/tools/valgrind.supp \\
  --errors-for-leak-kinds=definite,indirect --error-exitcode=97 \\
  --log-file="$logs/$name.log" "$prog" "\$@"
EOF
  chmod +x "$work/$name.vg"
  echo "$work/$name.vg"
}

failed=()
report() {
  local name=$1
  failed+=("$name")
  echo "FAIL: $name"
  cat "$logs/$name.log" 2>/dev/null || true
}

export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-1700000000}
unset DISPLAY  # no screens here: widgets and dialogs would wait for a user
start=$(date +%s)
for ex in "$build"/examples/ex_*; do
  [ -x "$ex" ] || continue
  name=$(basename "$ex")
  mkdir -p "$work/$name"
  if ! (cd "$work/$name" && "$(wrap "$ex" "$name")" > /dev/null); then
    report "$name"
  fi
done
for src in "$root"/tests/e2e/*.c; do
  name=$(basename "$src" .c)
  prog=$build/tests/e2e_$name
  [ -x "$prog" ] || continue
  if ! "$root/tests/e2e/run_case.sh" "$(wrap "$prog" "e2e_$name")" "$root/tests/e2e/$name" \
      "$work/e2e_$name" > "$work/e2e_$name.txt"; then
    cat "$work/e2e_$name.txt"
    report "e2e_$name"
  fi
done
if [ -x "$build/tests/api_misuse" ]; then
  if ! "$root/tests/e2e/run_case.sh" "$(wrap "$build/tests/api_misuse" misuse)" \
      "$build/tests/misuse/misuse" "$work/misuse" > "$work/misuse.txt"; then
    cat "$work/misuse.txt"
    report misuse
  fi
fi

echo "Valgrind: $(ls "$logs" | wc -l) programs in $(($(date +%s) - start)) s"
if [ ${#failed[@]} -gt 0 ]; then
  echo "Valgrind found errors in: ${failed[*]}"
  exit 1
fi

#!/usr/bin/env bash
# Builds Zorvel and runs every test: the normal build (g++), its examples and end-to-end
# programs under Valgrind (tools/valgrind.sh), then the whole suite once more under
# AddressSanitizer and UndefinedBehaviorSanitizer (clang), then a bounded run of the
# fuzzer whose files go to their readers (tools/fuzz.sh, a few minutes), and last the
# Windows libraries cross-built with mingw-w64 and run under wine (tools/windows.sh).
# Warnings are errors in every build. Installs missing Debian packages first. The normal build is
# build/, configured by tools/configure.sh as for tools/gallery.sh.
# Usage: tools/check.sh [--quick]    (--quick: skip Valgrind, the sanitizer build, the fuzzer
#                                    and the Windows libraries)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
jobs=$(nproc 2>/dev/null || echo 2)

echo "== Build and test (g++)"
"$root/tools/configure.sh"
cmake --build "$root/build" -j"$jobs"
ctest --test-dir "$root/build" -j"$jobs" --output-on-failure

if [ "${1:-}" = "--quick" ]; then
  exit 0
fi
echo "== Examples and end-to-end programs under Valgrind"
"$root/tools/valgrind.sh" "$root/build"
echo "== Build and test under ASan + UBSan (clang)"
cmake -S "$root" -B "$root/build-sanitize" -DCMAKE_BUILD_TYPE=Debug -DZORVEL_SANITIZE=ON \
      -DZORVEL_WERROR=ON -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
      -DZORVEL_BUILD_EXAMPLES=OFF > /dev/null
cmake --build "$root/build-sanitize" -j"$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir "$root/build-sanitize" -j"$jobs" --output-on-failure

echo "== Fuzzer (bounded run)"
# A fixed seed and number of runs: the same inputs on every machine, so that the suite's
# verdict does not depend on what a random search happens to find. The open-ended search
# is the long run of fuzz/README.md.
ZORVEL_FUZZ_ARGS="-seed=1 -runs=${ZORVEL_FUZZ_RUNS:-60000} ${ZORVEL_FUZZ_ARGS:-}" \
  "$root/tools/fuzz.sh"

echo "== The Windows libraries (mingw-w64, wine)"
"$root/tools/windows.sh" "$root/build"

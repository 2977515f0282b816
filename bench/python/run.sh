#!/usr/bin/env bash
# Python against C: 1,000,000 calls of a cheap routine (setclr) and W1 (1,000,000 points,
# one curve call with a NumPy array) through the zorvel package and through the C API.
# The aim: W1 from Python within 1.2 times the C time (the array goes through without a
# copy; what remains is the fixed cost of the calls). Run on a quiet machine.
# Usage: bench/python/run.sh [BUILD] [CALLS] [N] [RUNS]   (default build 1000000 1000000 5)
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
build=${1:-$root/build} calls=${2:-1000000} n=${3:-1000000} runs=${4:-5}
cmake --build "$build" --target bench_python_c zorvel_python > /dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export ZORVEL_LIBRARY=$build/libzorvel.so PYTHONPATH=$build/python SOURCE_DATE_EPOCH=1700000000
for ((r = 1; r <= runs; r++)); do
  "$build/bench/bench_python_c" "$calls" "$n" "$work/c"
  /usr/bin/python3 "$root/bench/python/bench.py" "$calls" "$n" "$work/py"
done
cmp -s "$work/c_w1.ps" "$work/py_w1.ps" && echo "W1 files: identical" || echo "W1 files: differ (NumPy's sin and cos)"

#!/usr/bin/env bash
# Real consumers of the HPGL and applet files that the end-to-end tests write:
#   - every *.java compiles with javac, warnings counted as errors (-Xlint:all -Werror);
#   - every *.hpg converts with hp2xx into a PNG without a diagnostic (an unknown
#     instruction or pen is reported on standard error).
# Usage: consumers.sh WORKDIR DIR...
# javac and hp2xx are installed through tools/deps.sh when missing.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$1
shift
command -v javac > /dev/null || "$root/tools/deps.sh" default-jdk-headless > /dev/null 2>&1 || true
command -v hp2xx > /dev/null || "$root/tools/deps.sh" hp2xx > /dev/null 2>&1 || true
for tool in javac hp2xx; do
  if ! command -v $tool > /dev/null; then
    echo "FAIL: $tool is not installed and could not be installed"
    exit 1
  fi
done

rm -rf "$work" && mkdir -p "$work" || exit 2
status=0
checked=0
while IFS= read -r -d '' f; do
  checked=$((checked + 1))
  out="$work/java_$checked"
  mkdir -p "$out"
  if ! javac -Xlint:all -Werror -d "$out" "$f" > "$out/javac.txt" 2>&1; then
    echo "FAIL: javac rejects $f:"; cat "$out/javac.txt"
    status=1
  fi
done < <(find "$@" -name '*.java' -print0 2>/dev/null)
while IFS= read -r -d '' f; do
  checked=$((checked + 1))
  png="$work/hpgl_$checked.png"
  if ! hp2xx -q -m png -f "$png" "$f" > "$work/hp2xx.txt" 2>&1 || [ -s "$work/hp2xx.txt" ] ||
     [ ! -s "$png" ]; then
    echo "FAIL: hp2xx on $f:"; cat "$work/hp2xx.txt"
    status=1
  fi
done < <(find "$@" -name '*.hpg' -print0 2>/dev/null)
if [ $checked -eq 0 ]; then
  echo "FAIL: no HPGL or applet file found in $*"
  status=1
fi
[ $status -eq 0 ] && echo "$checked HPGL and applet files accepted"
exit $status

#!/usr/bin/env bash
# Runs one golden scene in a fresh folder under a fixed SOURCE_DATE_EPOCH and compares
# the plot files it writes (NAME.ps, .psc, .eps, .svg, .pdf, .ipe, .cgm, .wmf, .emf,
# .hpg) byte for byte with the references of the same names in REFDIR. On a mismatch the
# actual file stays in WORKDIR and the first differing line of both files is printed.
#
# Usage: run_golden.sh PROGRAM NAME REFDIR WORKDIR
# With ZORVEL_REGEN_GOLDEN=1 the references are rewritten from the actual files instead
# (review the difference with git diff before committing it).
set -u
prog=$1 name=$2 refdir=$3 work=$4
rm -rf "$work" && mkdir -p "$work" && cd "$work" || exit 2
SOURCE_DATE_EPOCH=1700000000 "$prog" > stdout.txt 2> stderr.txt
rc=$?
status=0
if [ $rc -ne 0 ]; then
  echo "FAIL: $name exited with $rc"; cat stdout.txt stderr.txt
  exit 1
fi
if [ -s stderr.txt ]; then
  echo "FAIL: $name wrote to standard error:"; cat stderr.txt
  status=1
fi
if grep -q "<<<< Warning" stdout.txt; then
  echo "FAIL: $name gave warnings:"; grep "<<<< Warning" stdout.txt
  status=1
fi

written=()
for ext in ps psc eps svg pdf ipe cgm wmf emf hpg; do
  [ -f "$name.$ext" ] && written+=("$name.$ext")
done
if [ ${#written[@]} -eq 0 ]; then
  echo "FAIL: $name wrote no plot file"; ls -l
  exit 1
fi
for f in "${written[@]}"; do
  ref="$refdir/$f"
  if [ "${ZORVEL_REGEN_GOLDEN:-0}" = 1 ]; then
    cp "$f" "$ref" && echo "regenerated $ref"
    continue
  fi
  if [ ! -f "$ref" ]; then
    echo "FAIL: no reference $ref (actual file: $work/$f)"
    status=1
    continue
  fi
  if ! cmp -s "$f" "$ref"; then
    # "cmp" names the first differing byte and its line.
    line=$(cmp "$ref" "$f" 2>&1 | sed -n 's/.* line \([0-9]*\).*/\1/p')
    echo "FAIL: $f differs from $ref"
    if [ -n "$line" ]; then
      echo "  first difference in line $line"
      echo "  expected: $(sed -n "${line}p" "$ref")"
      echo "  actual:   $(sed -n "${line}p" "$f")"
    else
      cmp "$ref" "$f" 2>&1 | sed 's/^/  /'
    fi
    echo "  actual file kept: $work/$f"
    status=1
  fi
done
# A reference whose file the scene no longer writes is a failure too.
for ref in "$refdir/$name".*; do
  [ -f "$ref" ] || continue
  f=$(basename "$ref")
  if [ ! -f "$f" ]; then
    echo "FAIL: $name did not write $f (reference $ref)"
    status=1
  fi
done
[ $status -eq 0 ] && echo "$name: ${#written[@]} file(s) match"
exit $status

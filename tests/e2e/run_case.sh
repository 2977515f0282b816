#!/usr/bin/env bash
# Runs one end-to-end program in a fresh folder with a fixed SOURCE_DATE_EPOCH and
# compares its standard output with CASE.out and the files it leaves with CASE.files.
# Usage: run_case.sh PROGRAM CASE WORKDIR
set -u
prog=$1 case=$2 work=$3
rm -rf "$work" && mkdir -p "$work" && cd "$work" || exit 2
if [ -x "$case.setup" ]; then "$case.setup" || exit 2; fi
SOURCE_DATE_EPOCH=1700000000 "$prog" > stdout.txt 2> stderr.txt
echo "exit $?" >> stdout.txt
status=0
if ! diff -u "$case.out" stdout.txt; then
  echo "FAIL: standard output differs from $case.out"
  status=1
fi
if [ -f "$case.files" ]; then
  ls -1 | grep -v -E "^(stdout|stderr)\.txt$" > "$work.files.txt"
  if ! diff -u "$case.files" "$work.files.txt"; then
    echo "FAIL: files left differ from $case.files"
    status=1
  fi
fi
if [ -s stderr.txt ]; then
  echo "FAIL: the program wrote to standard error:"; cat stderr.txt
  status=1
fi
exit $status

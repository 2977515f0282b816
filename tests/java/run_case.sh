#!/usr/bin/env bash
# Runs the Java binding's test programs, each in a fresh folder with a fixed
# SOURCE_DATE_EPOCH.
#
#   run_case.sh expect CASE WORKDIR -- COMMAND...
#       compares standard output (and "exit N") with CASE.out, the files left with
#       CASE.files when that exists, and standard error with CASE.err (empty when there
#       is no CASE.err); with CASE.errgrep, standard error must hold each of its lines
#       (for texts with varying parts, such as a Java stack trace).
#   run_case.sh same WORKDIR -- COMMAND_A... -- COMMAND_B...
#       runs both commands in their own folders; their standard output and every file
#       they leave must be byte for byte the same (a C program and its Java twin).
set -u
mode=$1
shift
export SOURCE_DATE_EPOCH=1700000000
export LC_ALL=C.UTF-8

run_in() {  # folder command...
  local dir=$1
  shift
  rm -rf "$dir" && mkdir -p "$dir" || exit 2
  (cd "$dir" && "$@" > ../"$(basename "$dir")".stdout 2> ../"$(basename "$dir")".stderr
   echo "exit $?" >> ../"$(basename "$dir")".stdout)
}

case $mode in
expect)
  case=$1 work=$2
  shift 3
  mkdir -p "$work" || exit 2
  run_in "$work/run" "$@"
  status=0
  if ! diff -u "$case.out" "$work/run.stdout"; then
    echo "FAIL: standard output differs from $case.out"
    status=1
  fi
  if [ -f "$case.files" ]; then
    (cd "$work/run" && ls -1) > "$work/run.files"
    if ! diff -u "$case.files" "$work/run.files"; then
      echo "FAIL: files left differ from $case.files"
      status=1
    fi
  fi
  expected_err=/dev/null
  if [ -f "$case.errgrep" ]; then
    while IFS= read -r line; do
      if ! grep -q -F -- "$line" "$work/run.stderr"; then
        echo "FAIL: standard error lacks: $line"; cat "$work/run.stderr"
        status=1
      fi
    done < "$case.errgrep"
    exit $status
  fi
  [ -f "$case.err" ] && expected_err=$case.err
  if ! diff -u "$expected_err" "$work/run.stderr"; then
    echo "FAIL: standard error differs from $expected_err"
    status=1
  fi
  exit $status
  ;;
same)
  work=$1
  shift 2
  a=() b=()
  while [ $# -gt 0 ] && [ "$1" != "--" ]; do a+=("$1"); shift; done
  shift
  b=("$@")
  mkdir -p "$work" || exit 2
  run_in "$work/a" "${a[@]}"
  run_in "$work/b" "${b[@]}"
  status=0
  if ! diff -u "$work/a.stdout" "$work/b.stdout"; then
    echo "FAIL: the two programs print different output"
    status=1
  fi
  if ! diff -r "$work/a" "$work/b"; then
    echo "FAIL: the two programs leave different files"
    status=1
  fi
  for s in a b; do
    if [ -s "$work/$s.stderr" ]; then
      echo "FAIL: program $s wrote to standard error:"
      cat "$work/$s.stderr"
      status=1
    fi
  done
  if [ -z "$(ls -A "$work/a")" ] && [ $status -eq 0 ]; then
    echo "note: the programs wrote no files (device not available?)"
  fi
  exit $status
  ;;
*)
  echo "usage: run_case.sh expect CASE WORKDIR -- COMMAND... | same WORKDIR -- A... -- B..."
  exit 2
  ;;
esac

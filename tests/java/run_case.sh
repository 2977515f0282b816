#!/usr/bin/env bash
# Runs the Java binding's test programs, each in a fresh folder with a fixed
# SOURCE_DATE_EPOCH.
#
#   run_case.sh expect CASE WORKDIR -- COMMAND...
#       compares standard output (and "exit N") with CASE.out, the files left with
#       CASE.files when that exists, and standard error with CASE.err (empty when there
#       is none); with CASE.errgrep instead, standard error must hold each of its lines
#       (for texts with varying parts, such as a Java stack trace).
#   run_case.sh same WORKDIR -- COMMAND_A... -- COMMAND_B...
#       runs both commands in their own folders; their standard output and every file
#       they leave must be byte for byte the same, and neither writes to standard error.
set -u
mode=$1
shift
export SOURCE_DATE_EPOCH=1700000000
export LC_ALL=C.UTF-8
status=0

run_in() {  # folder command...
  local dir=$1
  shift
  rm -rf "$dir" && mkdir -p "$dir" || exit 2
  (cd "$dir" && "$@" > "$dir.stdout" 2> "$dir.stderr"; echo "exit $?" >> "$dir.stdout")
}
same() {  # expected actual message
  diff -u "$1" "$2" || { echo "FAIL: $3"; status=1; }
}

case $mode in
expect)
  case=$1 work=$2
  shift 3
  mkdir -p "$work" || exit 2
  run_in "$work/run" "$@"
  same "$case.out" "$work/run.stdout" "standard output differs from $case.out"
  if [ -f "$case.files" ]; then
    (cd "$work/run" && ls -1) > "$work/run.files"
    same "$case.files" "$work/run.files" "files left differ from $case.files"
  fi
  if [ -f "$case.errgrep" ]; then
    while IFS= read -r line; do
      grep -q -F -- "$line" "$work/run.stderr" ||
        { echo "FAIL: standard error lacks: $line"; cat "$work/run.stderr"; status=1; }
    done < "$case.errgrep"
  else
    err=/dev/null
    [ -f "$case.err" ] && err=$case.err
    same "$err" "$work/run.stderr" "standard error differs from $err"
  fi
  ;;
same)
  work=$1
  shift 2
  a=()
  while [ $# -gt 0 ] && [ "$1" != "--" ]; do a+=("$1"); shift; done
  shift
  mkdir -p "$work" || exit 2
  run_in "$work/a" "${a[@]}"
  run_in "$work/b" "$@"
  same "$work/a.stdout" "$work/b.stdout" "the two programs print different output"
  diff -r "$work/a" "$work/b" || { echo "FAIL: the two programs leave different files"; status=1; }
  same /dev/null "$work/a.stderr" "program a wrote to standard error"
  same /dev/null "$work/b.stderr" "program b wrote to standard error"
  ;;
*)
  echo "usage: run_case.sh expect CASE WORKDIR -- COMMAND... | same WORKDIR -- A... -- B..."
  exit 2
  ;;
esac
exit $status

#!/usr/bin/env bash
# The same figure in five languages: runs the scene (scene/) from C, C++, Java, Python and
# Fortran into PS, SVG, PDF and PNG files under a fixed SOURCE_DATE_EPOCH and compares
# every file with the C program's byte for byte. A language given as "-" was not built
# and is skipped with a line; C, C++ and Python always run.
# Usage: same_figure.sh WORK C CXX FORTRAN|- "JAVA COMMAND"|- "PYTHON COMMAND"
set -u
work=$1 c=$2 cxx=$3 fortran=$4 java=$5 python=$6
export SOURCE_DATE_EPOCH=1700000000
rm -rf "$work" && mkdir -p "$work"
status=0
run() {  # language format command...
  local lang=$1 format=$2
  shift 2
  local ext
  ext=$(echo "$format" | tr '[:upper:]' '[:lower:]')
  mkdir -p "$work/$lang"
  if ! (cd "$work/$lang" && "$@" "$format" "scene.$ext" > "$format.log" 2>&1); then
    echo "FAIL: $lang $format did not run:"; cat "$work/$lang/$format.log"; status=1; return
  fi
  if [ ! -s "$work/$lang/scene.$ext" ]; then
    echo "FAIL: $lang wrote no scene.$ext"; cat "$work/$lang/$format.log"; status=1; return
  fi
  if grep -q "Warning [0-9]" "$work/$lang/$format.log"; then
    echo "FAIL: $lang $format gave warnings:"; cat "$work/$lang/$format.log"; status=1
  fi
  if [ "$lang" != c ] && ! cmp "$work/c/scene.$ext" "$work/$lang/scene.$ext"; then
    echo "FAIL: $lang scene.$ext differs from C's"; status=1
  fi
}
read -r -a java_cmd <<< "$java"
read -r -a python_cmd <<< "$python"
for format in PS SVG PDF PNG; do
  run c "$format" "$c"
  run cxx "$format" "$cxx"
  run python "$format" "${python_cmd[@]}"
  if [ "$fortran" != - ]; then run fortran "$format" "$fortran"; fi
  if [ "$java" != - ]; then run java "$format" "${java_cmd[@]}"; fi
done
[ "$fortran" = - ] && echo "Fortran not built: skipped"
[ "$java" = - ] && echo "Java not built: skipped"
[ $status -eq 0 ] && echo "the same figure in every language and format"
exit $status

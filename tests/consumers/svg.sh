#!/usr/bin/env bash
# Real consumer check: every SVG file that the tests and the examples write must be
# well-formed XML (xmllint, without fetching the DTD) and must render (rsvg-convert exits
# 0 and writes a PNG).
#
# Usage: svg.sh WORKDIR [--examples BINDIR] DIR...
#   DIRs are searched for *.svg; with --examples every ex_* program in BINDIR is first
#   run in WORKDIR/examples with ZORVEL_GALLERY_FORMAT=SVG and its files are checked too.
# The tools come with tools/deps.sh (libxml2-utils, librsvg2-bin).
set -u
work=$1
shift
examples=""
dirs=()
while [ $# -gt 0 ]; do
  case $1 in
    --examples) examples=$(cd "$2" && pwd); shift 2 ;;
    *) dirs+=("$1"); shift ;;
  esac
done
for tool in xmllint rsvg-convert; do
  command -v $tool > /dev/null || { echo "FAIL: $tool is not installed (tools/deps.sh)"; exit 1; }
done

rm -rf "$work" && mkdir -p "$work/examples" || exit 2
status=0
if [ -n "$examples" ]; then
  for ex in "$examples"/ex_*; do
    [ -x "$ex" ] || continue
    if ! (cd "$work/examples" && SOURCE_DATE_EPOCH=1700000000 ZORVEL_GALLERY_FORMAT=SVG \
          "$ex" > /dev/null 2>&1); then
      echo "FAIL: example $(basename "$ex") failed"
      status=1
    fi
  done
  dirs+=("$(cd "$work/examples" && pwd)")
fi

files=()
while IFS= read -r f; do
  files+=("$f")
done < <(find "${dirs[@]}" -type f -name '*.svg' 2> /dev/null | sort -u)
[ ${#files[@]} -gt 0 ] || { echo "FAIL: no SVG files found in ${dirs[*]}"; exit 1; }

# Each file is checked as a copy. Tests running at the same time may rewrite their
# files; an error in a copy that no longer matches its file is not the file's fault.
checked=0
skipped=0
copy=$work/checked.svg
png=$work/checked.png
for f in "${files[@]}"; do
  cp "$f" "$copy" 2> /dev/null || { skipped=$((skipped + 1)); continue; }
  rm -f "$png"
  if xmllint --noout --nonet "$copy" > "$work/log" 2>&1 &&
     rsvg-convert -o "$png" "$copy" > "$work/log" 2>&1 && [ -s "$png" ]; then
    checked=$((checked + 1))
  elif ! cmp -s "$f" "$copy"; then
    skipped=$((skipped + 1))
  else
    echo "FAIL: xmllint or rsvg-convert rejects $f:"
    sed 's/^/  /' "$work/log" | head -20
    status=1
  fi
done
echo "SVG: $checked of ${#files[@]} file(s) well-formed and rendered" \
     "($skipped rewritten by other tests while they were checked)"
exit $status

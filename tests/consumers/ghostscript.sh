#!/usr/bin/env bash
# Real consumer check: every PostScript and EPS file that the tests and the examples
# write must go through Ghostscript without an error.
#   - every file is interpreted completely (nullpage device);
#   - the pages that come out (counted by the bbox device) match the "%%Pages:" count of
#     the trailer when the file has one;
#   - the ink of an EPS file lies inside its "%%BoundingBox" (1 point of tolerance).
#
# Usage: ghostscript.sh WORKDIR [--examples BINDIR] DIR...
#   DIRs are searched for *.ps, *.psc and *.eps; with --examples every ex_* program in
#   BINDIR is first run in WORKDIR/examples and its files are checked too.
# Ghostscript is installed through tools/deps.sh when missing.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
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

if ! command -v gs > /dev/null; then
  "$root/tools/deps.sh" ghostscript > /dev/null 2>&1 || true
fi
if ! command -v gs > /dev/null; then
  echo "FAIL: Ghostscript (gs) is not installed and could not be installed"
  exit 1
fi

rm -rf "$work" && mkdir -p "$work/examples" || exit 2
status=0
if [ -n "$examples" ]; then
  for ex in "$examples"/ex_*; do
    [ -x "$ex" ] || continue
    if ! (cd "$work/examples" && SOURCE_DATE_EPOCH=1700000000 "$ex" > /dev/null 2>&1); then
      echo "FAIL: example $(basename "$ex") failed"
      status=1
    fi
  done
  dirs+=("$(cd "$work/examples" && pwd)")
fi

files=()
while IFS= read -r f; do
  files+=("$f")
done < <(find "${dirs[@]}" -type f \( -name '*.ps' -o -name '*.psc' -o -name '*.eps' \) \
           2> /dev/null | sort -u)
if [ ${#files[@]} -eq 0 ]; then
  echo "FAIL: no PostScript files found in ${dirs[*]}"
  exit 1
fi

gs_run() {  # gs_run LOG ARGS...: Ghostscript on a file; false on an error
  local log=$1
  shift
  gs -dSAFER -dBATCH -dNOPAUSE -dQUIET "$@" > "$log" 2>&1 || return 1
  ! grep -q -E "Error|Unrecoverable" "$log"
}

# Ink is measured on a large medium so that nothing is cut off at a paper edge.
big=(-sDEVICE=bbox -dDEVICEWIDTHPOINTS=4000 -dDEVICEHEIGHTPOINTS=4000 -dFIXEDMEDIA)
checked=0
# Each file is checked as a copy. Tests running at the same time may rewrite their
# files; an error in a copy that no longer matches its file is not the file's fault.
skipped=0
for f in "${files[@]}"; do
  log="$work/gs.log"
  copy="$work/checked.${f##*.}"
  cp "$f" "$copy" 2> /dev/null || { skipped=$((skipped + 1)); continue; }
  eps=()
  case $f in *.eps) eps=(-dEPSCrop) ;; esac
  what=""
  gs_run "$log" -sDEVICE=nullpage "${eps[@]}" "$copy" || what="Ghostscript"
  [ -z "$what" ] && { gs_run "$log" "${big[@]}" "$copy" || what="Ghostscript (bbox)"; }
  if [ -n "$what" ]; then
    if ! cmp -s "$f" "$copy"; then
      skipped=$((skipped + 1))
      continue
    fi
    echo "FAIL: $what reports an error in $f:"
    sed 's/^/  /' "$log" | head -20
    status=1
    continue
  fi
  problem=""
  pages=$(grep -c "^%%HiResBoundingBox:" "$log")
  declared=$(sed -n 's/^%%Pages: \([0-9][0-9]*\).*/\1/p' "$copy" | tail -1)
  if [ -n "$declared" ] && [ "$pages" != "$declared" ]; then
    problem="FAIL: $f declares $declared page(s), Ghostscript output $pages"
  fi
  case $f in
    *.eps)
      box=$(sed -n 's/^%%BoundingBox: //p' "$copy" | head -1)
      ink=$(sed -n 's/^%%HiResBoundingBox: //p' "$log" | head -1)
      if ! awk -v box="$box" -v ink="$ink" 'BEGIN {
             split(box, b, " "); split(ink, i, " ");
             if (i[3] - i[1] <= 0 || i[4] - i[2] <= 0) exit 0;   # nothing drawn
             exit !(i[1] >= b[1] - 1 && i[2] >= b[2] - 1 && i[3] <= b[3] + 1 && i[4] <= b[4] + 1)
           }'; then
        problem="FAIL: the ink of $f ($ink) leaves its BoundingBox ($box)"
      fi
      ;;
  esac
  if [ -z "$problem" ]; then
    checked=$((checked + 1))
  elif ! cmp -s "$f" "$copy"; then
    skipped=$((skipped + 1))
  else
    echo "$problem"
    status=1
  fi
done
echo "Ghostscript: $checked of ${#files[@]} PostScript file(s) passed" \
     "($skipped rewritten by other tests while they were checked)"
exit $status

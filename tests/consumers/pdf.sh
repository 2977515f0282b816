#!/usr/bin/env bash
# Real consumer check: every PDF file that the tests and the examples write must be read
# by qpdf and Poppler without a complaint.
#   - qpdf --check: structure, cross-reference offsets, stream lengths, every stream
#     decoded; exit 0 only (2 is an error, 3 a warning: a file that qpdf had to repair);
#   - pdfinfo reads it and counts at least one page;
#   - pdftoppm renders every page at 30 dpi without an error on standard error.
#
# Usage: pdf.sh WORKDIR [--examples BINDIR] DIR...
#   DIRs are searched for *.pdf; with --examples every ex_* program in BINDIR is first
#   run in WORKDIR/examples with ZORVEL_GALLERY_FORMAT=PDF and its files are checked too.
# qpdf and poppler-utils are installed through tools/deps.sh when missing.
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

command -v qpdf > /dev/null || "$root/tools/deps.sh" qpdf > /dev/null 2>&1 || true
command -v pdftoppm > /dev/null || "$root/tools/deps.sh" poppler-utils > /dev/null 2>&1 || true
for tool in qpdf pdfinfo pdftoppm; do
  if ! command -v $tool > /dev/null; then
    echo "FAIL: $tool is not installed and could not be installed"
    exit 1
  fi
done

rm -rf "$work" && mkdir -p "$work/examples" || exit 2
status=0
if [ -n "$examples" ]; then
  for ex in "$examples"/ex_*; do
    [ -x "$ex" ] || continue
    if ! (cd "$work/examples" && SOURCE_DATE_EPOCH=1700000000 ZORVEL_GALLERY_FORMAT=PDF \
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
done < <(find "${dirs[@]}" -type f -name '*.pdf' 2> /dev/null | sort -u)
if [ ${#files[@]} -eq 0 ]; then
  echo "FAIL: no PDF files found in ${dirs[*]}"
  exit 1
fi

# Each file is checked as a copy: tests running at the same time may rewrite their
# files, and an error in a copy that no longer matches its file is not the file's fault.
checked=0
skipped=0
for f in "${files[@]}"; do
  copy="$work/checked.pdf"
  log="$work/log.txt"
  cp "$f" "$copy" 2> /dev/null || { skipped=$((skipped + 1)); continue; }
  problem=""
  qpdf --check "$copy" > "$log" 2>&1
  rc=$?
  if [ $rc -ne 0 ]; then
    problem="qpdf --check exits with $rc"
  elif ! pdfinfo "$copy" > "$log" 2>&1 || ! grep -q "^Pages: *[1-9]" "$log"; then
    problem="pdfinfo cannot read it"
  else
    rm -f "$work"/page-*.ppm
    if ! pdftoppm -r 30 "$copy" "$work/page" > "$log" 2>&1 || [ -s "$log" ]; then
      problem="pdftoppm cannot render it"
    fi
  fi
  if [ -z "$problem" ]; then
    checked=$((checked + 1))
  elif ! cmp -s "$f" "$copy"; then
    skipped=$((skipped + 1))
  else
    echo "FAIL: $f: $problem"
    sed 's/^/  /' "$log" | head -20
    status=1
  fi
done
rm -f "$work"/page-*.ppm
echo "PDF: $checked of ${#files[@]} file(s) passed qpdf, pdfinfo and pdftoppm" \
     "($skipped rewritten by other tests while they were checked)"
exit $status

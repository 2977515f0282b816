#!/usr/bin/env bash
# Real consumer check of the vector formats beyond PostScript, PDF and SVG: the example
# gallery is written in FORMAT and every file must be read by that format's own tools.
#   IPE   ipetoipe converts it to PDF (which qpdf accepts) and iperender draws its first
#         page (Debian ipe)
#   CGM   the test-side decoder cgm_decode.py walks its elements and draws its first
#         picture
#   WMF   wmf2svg and wmf2gd convert it (Debian libwmf-bin)
#   EMF   emf2svg-conv converts it (Debian emf2svg) and librsvg draws the result
#   HPGL2 (the HPGL devices in HP-GL/2) hp2xx draws it without a diagnostic
#   GKSL  zorconv converts it to PDF, which qpdf accepts and pdftoppm draws
#
# Usage: vector_formats.sh WORKDIR FORMAT EXAMPLES_BINDIR [ZORCONV]
# Exits 77 (skipped) when the format's tools are not installed.
set -u
work=$1
format=$2
examples=$(cd "$3" && pwd)
zorconv=${4:-}
gallery_format=$format
case $format in
  IPE) tools=(ipetoipe iperender qpdf); ext=ipe ;;
  CGM) tools=(/usr/bin/python3); ext=cgm ;;
  WMF) tools=(wmf2svg wmf2gd); ext=wmf ;;
  EMF) tools=(emf2svg-conv rsvg-convert); ext=emf ;;
  HPGL2) tools=(hp2xx); ext=hpg; gallery_format=HPGL; export ZORVEL_GALLERY_HPGL2=1 ;;
  GKSL) tools=(qpdf pdftoppm "$zorconv"); ext=met ;;
  *) echo "FAIL: unknown format $format"; exit 2 ;;
esac
for tool in "${tools[@]}"; do
  command -v "$tool" > /dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
rm -rf "$work" && mkdir -p "$work/files" || exit 2
status=0
for ex in "$examples"/ex_*; do
  [ -x "$ex" ] || continue
  if ! (cd "$work/files" && SOURCE_DATE_EPOCH=1700000000 ZORVEL_GALLERY_FORMAT=$gallery_format \
        "$ex" > /dev/null 2>&1); then
    echo "FAIL: example $(basename "$ex") failed"
    status=1
  fi
done
checked=0
log=$work/log.txt
for f in "$work"/files/*."$ext"; do
  [ -e "$f" ] || continue
  problem=""
  case $format in
    IPE)
      if ! ipetoipe -pdf "$f" "$work/out.pdf" > "$log" 2>&1; then
        problem="ipetoipe cannot convert it"
      elif ! qpdf --check "$work/out.pdf" > "$log" 2>&1; then
        problem="qpdf rejects ipetoipe's PDF"
      elif ! iperender -png -page 1 -resolution 20 "$f" "$work/out.png" > "$log" 2>&1 ||
           [ ! -s "$work/out.png" ]; then
        problem="iperender cannot draw it"
      fi
      ;;
    WMF)
      if ! wmf2svg -o "$work/out.svg" "$f" > "$log" 2>&1 || [ ! -s "$work/out.svg" ]; then
        problem="wmf2svg cannot convert it"
      elif ! wmf2gd -o "$work/out.png" "$f" > "$log" 2>&1 || [ ! -s "$work/out.png" ]; then
        problem="wmf2gd cannot draw it"
      fi
      ;;
    EMF)
      if ! emf2svg-conv -i "$f" -o "$work/out.svg" > "$log" 2>&1 || [ ! -s "$work/out.svg" ]; then
        problem="emf2svg-conv cannot convert it"
      elif ! rsvg-convert -z 0.1 -o "$work/out.png" "$work/out.svg" > "$log" 2>&1; then
        problem="librsvg cannot draw emf2svg-conv's SVG"
      fi
      ;;
    HPGL2)
      if ! hp2xx -q -m png -f "$work/out.png" "$f" > "$log" 2>&1 || [ -s "$log" ] ||
         [ ! -s "$work/out.png" ]; then
        problem="hp2xx cannot draw it"
      fi
      ;;
    GKSL)
      if ! "$zorconv" "$f" "$work/out.pdf" > "$log" 2>&1 || grep -q "Warning" "$log"; then
        problem="zorconv cannot convert it"
      elif ! qpdf --check "$work/out.pdf" > "$log" 2>&1; then
        problem="qpdf rejects zorconv's PDF"
      elif ! pdftoppm -r 20 -png "$work/out.pdf" "$work/page" > "$log" 2>&1; then
        problem="pdftoppm cannot draw zorconv's PDF"
      fi
      ;;
    CGM)
      if ! /usr/bin/python3 "$(dirname "$0")/cgm_decode.py" "$f" "$work/out.png" > "$log" 2>&1; then
        problem="its elements do not decode"
      fi
      ;;
  esac
  if [ -n "$problem" ]; then
    echo "FAIL: $(basename "$f"): $problem"
    sed 's/^/  /' "$log" | head -10
    status=1
  else
    checked=$((checked + 1))
  fi
done
[ $checked -gt 0 ] || { echo "FAIL: no $format files written"; exit 1; }
echo "$format: $checked file(s) read by their tools"
exit $status

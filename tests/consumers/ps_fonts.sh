#!/usr/bin/env bash
# Real consumer check of the 35 standard PostScript fonts (write_ps_fonts writes a page
# with a line in each through the PostScript, PDF and SVG drivers):
#   - Ghostscript runs the PostScript page without an error, and the characters outside
#     the fonts' encodings are shown by name (glyphshow through `gn`: /Euro in
#     Palatino-Italic, /infinity in Symbol);
#   - qpdf --check passes the PDF file; pdffonts lists the 14 standard fonts unembedded
#     and the other 21 embedded (Palatino-Roman among them); pdftotext gives the lines
#     back, the characters named through /Differences (the euro sign) included;
#   - xmllint reads the SVG page.
# Usage: ps_fonts.sh WORKDIR WRITE_PS_FONTS. Exit 77 (skip) without Ghostscript or
# poppler-utils and qpdf.
set -u
work=$1
writer=$2
for tool in gs qpdf pdffonts pdftotext xmllint; do
  command -v $tool > /dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
rm -rf "$work" && mkdir -p "$work" || exit 2
"$writer" "$work" || { echo "FAIL: write_ps_fonts"; exit 1; }
status=0
fail() { echo "FAIL: $*"; status=1; }

ps=$work/ps_fonts.ps
if ! gs -q -dNOPAUSE -dBATCH -dSAFER -sDEVICE=bbox -o /dev/null "$ps" > "$work/gs.log" 2>&1 ||
    grep -q -i "error" "$work/gs.log"; then
  fail "Ghostscript: $(head -5 "$work/gs.log")"
fi
grep -q "glyphshow" "$ps" || fail "no glyphshow procedure in $ps"
grep -q "/Palatino-Italic-Zv" "$ps" && tr ' ' '\n' < "$ps" | grep -qx "/Euro" ||
  fail "Palatino-Italic or /Euro missing in $ps"
tr ' ' '\n' < "$ps" | grep -qx "/infinity" || fail "/infinity missing in $ps"

pdf=$work/ps_fonts.pdf
qpdf --check "$pdf" > "$work/qpdf.log" 2>&1 || fail "qpdf --check: $(tail -3 "$work/qpdf.log")"
pdffonts "$pdf" > "$work/pdffonts.log" 2>&1 || fail "pdffonts"
emb() { awk -v f="$1" '$1 == f { print $(NF-4) }' "$work/pdffonts.log"; }
[ "$(emb Palatino-Roman)" = yes ] || fail "Palatino-Roman not embedded: $(cat "$work/pdffonts.log")"
[ "$(emb Helvetica)" = no ] || fail "Helvetica embedded"
[ "$(awk 'NR > 2 && $(NF-4) == "yes"' "$work/pdffonts.log" | wc -l)" = 21 ] ||
  fail "not 21 fonts embedded"
pdftotext -layout "$pdf" "$work/text.txt" 2> "$work/pdftotext.log" || fail "pdftotext"
for font in Palatino-Roman Helvetica ZapfChancery-MediumItalic; do
  grep -q "$font AVATAR Wave äöü €" "$work/text.txt" || fail "pdftotext lacks the $font line"
done

xmllint --noout "$work/ps_fonts.svg" || fail "xmllint"
[ $status = 0 ] && echo "ps_fonts: PostScript, PDF and SVG pages read back"
exit $status

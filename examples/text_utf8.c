/* UTF-8 text: Latin accents, Greek and Cyrillic in one page with chacod("UTF8"), once
 * in the stroke font complx and once in the PostScript driver font. Written to
 * text_utf8.ps. */
#include "gallery.h"
#include "zorvel.h"

static const char* const kLines[] = {
    "Latin: \xC3\x84rger \xC3\xBC" "ber Stra\xC3\x9F" "e, caf\xC3\xA9, se\xC3\xB1or, Fran\xC3\xA7" "ais, \xC3\x85ngstr\xC3\xB6m",
    "\xC3\x80 \xC3\x81 \xC3\x82 \xC3\x83 \xC3\x88 \xC3\x89 \xC3\x8A \xC3\x8C \xC3\x8D \xC3\x92 \xC3\x93 \xC3\x94 \xC3\x95 \xC3\x99 \xC3\x9A \xC3\x9B \xC3\xBF \xC2\xA9 \xC2\xA1 \xC2\xBF",
    "Greek: \xCE\x91\xCE\xB8\xCE\xAE\xCE\xBD\xCE\xB1 \xCE\xB1\xCE\xB2\xCE\xB3\xCE\xB4 \xCE\xA9\xCE\xA3\xCE\xA6 \xCF\x80\xCF\x81",
    "Cyrillic: \xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0 \xD0\x96\xD0\xB8\xD0\xB7\xD0\xBD\xD1\x8C \xD0\xA9\xD0\xB8 \xD0\xAF",
    "Euro sign (no glyph, a blank): [\xE2\x82\xAC]",
};

int main(void) {
  int i;
  gallery_output("PS", "text_utf8.ps");
  filmod("DELE");
  zorini();
  chacod("UTF8");
  height(50);
  complx();
  for (i = 0; i < 5; ++i) {
    messag(kLines[i], 150, 150 + i * 120);
  }
  hwfont();
  for (i = 0; i < 5; ++i) {
    messag(kLines[i], 150, 1000 + i * 120);
  }
  zorfin();
  return 0;
}

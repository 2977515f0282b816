/* Golden scene of the text engine: a sample line in every font, the six alphabets of
 * complx, the driver font, rotated and justified texts, slant, width factor, frame and a
 * number, on one PostScript page. Catches any change in glyph placement, widths, gaps,
 * outline fills and driver-font commands. */
#include "zorvel.h"

int main(void) {
  static void (*const fonts[])(void) = {zoralf, complx, simplx, duplx, triplx,
                                        gothic, helve,  helves, helvet, serif};
  static const char* const alphabets[] = {"STAN", "GREE", "MATH", "ITAL", "SCRI", "RUSS"};
  int i;
  metafl("PS");
  setfil("text_fonts.ps");
  zorini();
  height(45);
  for (i = 0; i < 10; ++i) {
    fonts[i]();
    messag("Zorvel 0123 AaBbGgQq &%?", 80, 60 + i * 80);
  }
  complx();
  for (i = 0; i < 6; ++i) {
    basalf(alphabets[i]);
    messag("ABCDEFG abcdefg 123", 80, 900 + i * 80);
  }
  basalf("STAN");
  hwfont();
  chacod("ISO1");
  messag("Times-Roman: \xC4rger \xFC" "ber Stra\xDF" "e \xA9", 80, 1420);
  chacod("STAN");
  chawth(1.5);
  messag("Times-Roman stretched", 80, 1520);
  chawth(1.0);
  complx();
  height(36);
  angle(30);
  messag("Rotated by 30 degrees", 1500, 500);
  angle(0);
  txtjus("CENT");
  txtjus("MIDD");
  messag("Centred", 2200, 120);
  txtjus("RIGH");
  txtjus("BOTT");
  messag("Right and bottom", 2700, 300);
  txtjus("LEFT");
  txtjus("TOP");
  chaang(20.0);
  chawth(1.5);
  frmess(1);
  messag("Slanted and wide", 1500, 800);
  frmess(0);
  chawth(1.0);
  chaang(0.0);
  number(-12.345, 2, 1500, 1000);
  messag(" and on", 999, 999);
  zorfin();
  return 0;
}

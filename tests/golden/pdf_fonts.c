/* The PDF driver's own fonts (hwfont): Times-Roman with accented letters given as UTF-8,
 * Greek letters through the Symbol face, Times-Italic, characters that strings must
 * escape, a stretched, a rotated and a centred line, and a line in complx below each
 * for the widths. Catches a wrong encoding, font resource or width, and characters placed
 * off the centres that the text engine measured. */
#include "zorvel.h"

int main(void) {
  metafl("PDF");
  setfil("pdf_fonts.pdf");
  filmod("DELE");
  pdfmod("OFF", "COMP");
  zorini();
  errmod("PROT", "OFF");
  height(60);
  chacod("UTF8");
  hwfont();
  messag("Z\xC3\xBCrich, \xC3\x86r\xC3\xB8, caf\xC3\xA9, na\xC3\xAFve, "
         "\xC3\x85ngstr\xC3\xB6m \xC2\xA9", 200, 200);
  basalf("GREE");
  messag("abgdp w = 2pn", 200, 350);
  basalf("ITAL");
  messag("Italic (a\\b) 'quoted'", 200, 500);
  basalf("STAN");
  chawth(1.5);
  messag("Stretched by 1.5", 200, 650);
  chawth(1.0);
  angle(30);
  messag("Rotated by 30 degrees", 1600, 1300);
  angle(0);
  txtjus("CENT");
  color("RED");
  messag("Centred in red", 2200, 250);
  txtjus("LEFT");
  color("FORE");
  complx();
  messag("Times-Roman widths: Zurich, Aero, cafe", 200, 1200);
  hwfont();
  messag("Times-Roman widths: Zurich, Aero, cafe", 200, 1300);
  zorfin();
  return 0;
}

/* Two PDF pages from newpag: the first with line widths drawn by the device, every cap,
 * dots, dashed lines and filled rectangles in table and RGB colours; the second with
 * text, after which the attributes set on the first page must still hold (width, cap,
 * colour). The same drawing is written once more with compressed streams, for the
 * consumer checks (tests/consumers/pdf.sh); only the plain file has a reference. */
#include "zorvel.h"

static void pages(const char* file, const char* comp) {
  static const char* const caps[] = {"CUT", "ROUN", "LONG"};
  int i;
  metafl("PDF");
  setfil(file);
  filmod("DELE");
  pdfmod(comp, "COMP");
  zorini();
  errmod("PROT", "OFF");
  for (i = 0; i < 3; ++i) {
    lncap(caps[i]);
    linwid(20 + 20 * i);
    setclr(50 + 80 * i);
    line(300, 300 + 150 * i, 2000, 300 + 150 * i);
  }
  linwid(10);
  for (i = 0; i < 10; ++i) {
    line(300 + 100 * i, 900, 300 + 100 * i, 900);
  }
  linwid(3);
  lintyp(2);
  line(300, 1050, 2600, 1050);
  lintyp(0);
  setvlt("RAIN");
  for (i = 0; i < 8; ++i) {
    point(400 + 200 * i, 1400, 150, 200, 30 * i + 10);
  }
  point(1200, 1750, 1800, 80, intrgb(0.2, 0.6, 0.9));
  setrgb(0.9, 0.4, 0.1);
  newpag();
  line(300, 300, 2600, 300);
  hwfont();
  height(50);
  messag("Second page", 300, 500);
  zorfin();
}

int main(void) {
  pages("pdf_pages.pdf", "OFF");
  pages("pdf_pages_deflated.pdf", "ON");
  return 0;
}

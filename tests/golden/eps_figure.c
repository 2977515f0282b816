/* Catches changes in the EPS variant on a portrait page: its first line, no page count
 * and no trailer, the placement inside the prolog, the box of a portrait page, and a
 * figure of dashed, coloured and filled parts that must stay inside that box. */
#include "zorvel.h"

int main(void) {
  int i;
  metafl("EPS");
  setpag("DA4P");
  setfil("eps_figure.eps");
  zorini();
  color("FORE");
  line(100, 100, 1999, 100);
  line(1999, 100, 1999, 2869);
  line(1999, 2869, 100, 2869);
  line(100, 2869, 100, 100);
  dashl();
  color("GREE");
  for (i = 0; i < 4; i++) {
    line(200, 300 + i * 600, 1900, 2700 - i * 600);
  }
  solid();
  linwid(12);
  color("MAGE");
  line(1000, 200, 1000, 2769);
  point(1000, 1485, 600, 600, intrgb(0.2, 0.6, 0.9));
  zorfin();
  return 0;
}

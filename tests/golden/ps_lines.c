/* Catches changes in the PostScript output of the default "PS" device on an A4
 * landscape page of two pages: header, prolog and trailer; line styles, colours and
 * widths; a dot; a polyline longer than the 100-point buffer; clipped lines; a new page
 * with its restated settings, round caps and filled rectangles. */
#include <math.h>

#include "zorvel.h"

int main(void) {
  int i;
  metafl("PS");
  setfil("ps_lines.ps");
  zorini();

  /* Line styles 0..7, each in its own colour and width. */
  for (i = 0; i < 8; i++) {
    setrgb(i / 7.0, 0.2, 1.0 - i / 7.0);
    linwid(1 + 3 * i);
    lintyp(i);
    line(200, 200 + i * 100, 1400, 200 + i * 100);
  }
  solid();
  linwid(1);
  color("FORE");
  line(1500, 200, 1500, 200); /* a dot */

  /* A sine of 250 points: polylines of 100, 100 and 52 points sharing their ends. */
  strtpt(200, 1500);
  for (i = 1; i < 250; i++) {
    connpt(200 + i * 10, 1500 - 300 * sin(i * 0.05));
  }

  /* Lines clipped to a window. */
  color("RED");
  clpwin(1800, 300, 800, 600);
  for (i = 0; i < 6; i++) {
    line(1600 + i * 100, 200, 2200 + i * 100, 1100);
  }
  noclip();

  newpag();
  lncap("ROUN");
  color("BLUE");
  linwid(40);
  line(300, 300, 2600, 300);
  point(600, 1000, 400, 300, 3);
  point(1400, 1000, 300, 400, intrgb(1.0, 0.5, 0.0));
  zorfin();
  return 0;
}

/* Catches wrong warnings of the drawing, clipping and colour routines: the value each
 * warning reports, a level check that is missing, settings that are applied in spite of
 * a warning, and queries that warn when they should only return -1. */
#include <stdio.h>
#include "zorvel.h"

int main(void) {
  int pattern[3] = {10, 0, 5};
  metafl("GKSL");
  setfil("warnings.met");
  lncap("BUTT");          /* not a cap */
  hwmode("ON", "WIDT");   /* not a key of hwmode */
  zorini();
  pagmod("LAND");         /* page settings only before zorini */
  lintyp(8);
  myline(pattern, 3);     /* a part of length 0 */
  myline(pattern, 11);
  linwid(0);
  linwid(32001);
  clpwin(-5, 10, 100, 0); /* both reported, and still applied */
  clpwin(0, 0, 2971, 100);
  clpbor("PAGE");         /* only inside an axis system */
  clpmod("OVAL");
  bufmod("ON", "SENT");
  setclr(-1);
  setrgb(0, 1.002, 0);
  printf("intrgb %d\n", intrgb(2, 0, 0));
  printf("indrgb %d\n", indrgb(0, 0, -0.5));
  setind(256, 0, 0, 0);
  setind(3, 0, 0, 1.01);
  setvlt("BLUE");
  color("PINK");
  zorfin();
  return 0;
}

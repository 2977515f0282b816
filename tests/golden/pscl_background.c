/* Catches changes in the colour PostScript variant: the black background fill on the
 * first page and on a new page (the screen mode is not reversed for "PSCL"), lines in
 * the colour table's foreground (white), and the colour restated after the new page. */
#include "zorvel.h"

int main(void) {
  metafl("PSCL");
  setfil("pscl_background.psc");
  zorini();
  line(300, 300, 2600, 1800);
  color("YELL");
  line(300, 1800, 2600, 300);
  newpag();
  linwid(5);
  line(300, 1050, 2600, 1050);
  zorfin();
  return 0;
}

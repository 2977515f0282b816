/* Catches any change in the PostScript header, prolog, placement and trailer of the
 * default "PS" device on an A4 landscape page. */
#include "zorvel.h"

int main(void) {
  metafl("PS");
  setfil("ps_lines.ps");
  zorini();
  zorfin();
  return 0;
}

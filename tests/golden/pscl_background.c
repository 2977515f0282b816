/* Catches any change in the colour PostScript variant: the black background page fill
 * (the screen mode is not reversed for "PSCL"). */
#include "zorvel.h"

int main(void) {
  metafl("PSCL");
  setfil("pscl_background.psc");
  zorini();
  zorfin();
  return 0;
}

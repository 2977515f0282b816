/* Catches any change in the EPS variant: its first line, the missing page count and
 * trailer, the placement inside the prolog, and the box of a portrait page. */
#include "zorvel.h"

int main(void) {
  metafl("EPS");
  setpag("DA4P");
  setfil("eps_figure.eps");
  zorini();
  zorfin();
  return 0;
}

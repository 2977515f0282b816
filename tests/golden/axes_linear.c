/* Golden scene of a plain axis system in PostScript on the default page: names, a title
 * line, the default labels, ticks and frame, a grid at the labels and a curve in user
 * coordinates. Catches changes in the default position and lengths of the axes, label
 * placement and digits, tick lengths, title spacing and the grid. */
#include <math.h>

#include "zorvel.h"

int main(void) {
  int i;
  metafl("PS");
  setfil("axes_linear.ps");
  zorini();
  name("Time t [s]", "X");
  name("Amplitude", "Y");
  titlin("Damped oscillation", 1);
  graf(0, 10, 0, 2, -1, 1, -1, 0.5);
  title();
  grid(1, 1);
  rlstrt(0, 1);
  for (i = 1; i <= 50; i++) {
    double t = i * 0.2;
    rlconn(t, exp(-t / 4) * cos(2 * t));
  }
  endgrf();
  zorfin();
  return 0;
}

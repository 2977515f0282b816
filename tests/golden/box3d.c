/* Golden scene of the 3D axis system: a box of unequal sides from the front right, its
 * three axes with ticks, labels and names (the z axis logarithmic with LOG labels, the x
 * axis in its own colours), a two-line title above the area, dashed grid lines on the
 * back planes, a curve with symbols, and a 2D plot with its own log axis on the back plane
 * across y. */
#include <math.h>

#include "zorvel.h"

int main(void) {
  double x[61], y[61], z[61];
  int i;
  metafl("PS");
  setfil("box3d.ps");
  zorini();
  axis3d(3, 2, 1.5);
  view3d(6, -5, 3, "ABS");
  axsscl("LOG", "Z");
  labels("LOG", "Z");
  axclrs(intrgb(0.8, 0.0, 0.0), "LINE", "X");
  axclrs(intrgb(0.0, 0.0, 0.8), "NAME", "X");
  name("Time [s]", "X");
  name("Depth", "Y");
  name("Energy", "Z");
  titlin("A 3D axis system", 1);
  titlin("log z, grid lines on the back planes", 3);
  graf3d(0, 30, 0, 5, -1, 1, -1, 0.5, -1, 2, -1, 1);
  title();
  dash();
  grid3d(1, 2, "ALL");
  solid();
  for (i = 0; i <= 60; i++) {
    x[i] = i * 0.5;
    y[i] = cos(i * 0.2);
    z[i] = pow(10.0, -1 + 3.0 * (i / 60.0) * (i / 60.0));
  }
  color("BLUE");
  marker(3);
  incmrk(10);
  curv3d(x, y, z, 61);
  incmrk(0);
  color("FORE");
  /* The back plane across y (y = 1): a 2D plot of the curve's z against x. */
  grfini(0, 1, 0.1, 30, 1, 0.1, 30, 1, 100);
  height(80);
  name("", "X");
  name("", "Y");
  axsscl("LOG", "Y");
  labels("LOG", "Y");
  graf(0, 30, 0, 10, -1, 2, -1, 1);
  color("GREEN");
  curve(x, z, 61);
  color("FORE");
  endgrf();
  grffin();
  endgrf();
  zorfin();
  return 0;
}

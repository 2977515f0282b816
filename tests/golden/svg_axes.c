/* Golden scene of the SVG driver: an axis system with names and a title in an outline
 * font, filled bars, a curve with symbols, a wide red curve and a legend. Catches changes
 * in the header, line groups (colour, width, caps), polylines and their line breaks,
 * rectangles and the paths of outline glyphs. */
#include <math.h>

#include "zorvel.h"

int main(void) {
  double x[40], y[40], bars[10], bx[10];
  char cbuf[3 * 12 + 1];
  int i;
  for (i = 0; i < 40; i++) {
    x[i] = i * 0.25;
    y[i] = exp(-x[i] / 4) * cos(2 * x[i]);
    bx[i / 4] = i / 4 + 0.5;
    bars[i / 4] = 0.08 * (i / 4) - 0.9;
  }
  metafl("SVG");
  setfil("svg_axes.svg");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  helve();
  name("Time t [s]", "X");
  name("Amplitude", "Y");
  titlin("Damped oscillation", 1);
  graf(0, 10, 0, 2, -1, 1, -1, 0.5);
  title();
  legini(cbuf, 3, 12);
  polcrv("FBAR");
  curve(bx, bars, 10);
  polcrv("LINE");
  marker(3);
  incmrk(4);
  curve(x, y, 40);
  incmrk(0);
  color("RED");
  linwid(8);
  for (i = 0; i < 40; i++) {
    y[i] *= -0.5;
  }
  curve(x, y, 40);
  linwid(1);
  color("FORE");
  leglin(cbuf, "bars", 1);
  leglin(cbuf, "data", 2);
  leglin(cbuf, "mirrored", 3);
  legend(cbuf, 7);
  endgrf();
  zorfin();
  return 0;
}

/* Curves and a legend: a line with symbols, a dashed spline, stems, filled bars and
 * error bars, with the colour cycle and a framed legend inside the axis system. */
#include "zorvel.h"

int main(void) {
  static const double x[6] = {1, 2, 3, 4, 5, 6};
  static const double y[6] = {2.0, 3.5, 3.0, 5.0, 4.2, 6.1};
  static const double e[6] = {0.3, 0.4, 0.3, 0.5, 0.4, 0.6};
  static const double bars[6] = {0.5, 1.0, 0.8, 1.4, 1.1, 1.6};
  char cbuf[4 * 10 + 1];
  metafl("PS");
  setfil("curves_legend.ps");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  name("x", "X");
  name("y", "Y");
  graf(0, 7, 0, 1, 0, 8, 0, 2);
  legini(cbuf, 4, 10);
  polcrv("FBAR");
  curve(x, bars, 6);
  polcrv("LINE");
  marker(13);
  incmrk(1);
  errbar(x, y, e, e, 6);
  curve(x, y, 6);
  polcrv("SPLI");
  incmrk(0);
  dash();
  curve(x, y, 6);
  solid();
  polcrv("STEM");
  marker(2);
  curve(x, bars, 6);
  leglin(cbuf, "bars", 1);
  leglin(cbuf, "data", 2);
  leglin(cbuf, "spline", 3);
  leglin(cbuf, "stems", 4);
  legtit("Curves");
  legend(cbuf, 8);
  endgrf();
  zorfin();
  return 0;
}

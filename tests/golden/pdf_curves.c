/* A page of curves as PDF: an axis system with a grid, a filled-bar curve, a line with
 * symbols and error bars, a dashed spline and a legend, with the title and the legend in
 * the filled outline font helve (even-odd fills with holes) and colours of the cycle.
 * Streams are not compressed, so that the reference reads as text. */
#include "zorvel.h"

int main(void) {
  static const double x[6] = {1, 2, 3, 4, 5, 6};
  static const double y[6] = {2.0, 3.5, 3.0, 5.0, 4.2, 6.1};
  static const double e[6] = {0.3, 0.4, 0.3, 0.5, 0.4, 0.6};
  static const double bars[6] = {0.5, 1.0, 0.8, 1.4, 1.1, 1.6};
  char cbuf[3 * 10 + 1];
  metafl("PDF");
  setfil("pdf_curves.pdf");
  filmod("DELE");
  pdfmod("OFF", "COMP");
  zorini();
  errmod("PROT", "OFF");
  name("x", "X");
  name("y", "Y");
  titlin("Measured and smoothed", 1);
  graf(0, 7, 0, 1, 0, 8, 0, 2);
  grid(1, 1);
  helve();
  title();
  legini(cbuf, 3, 10);
  polcrv("FBAR");
  curve(x, bars, 6);
  polcrv("LINE");
  marker(13);
  incmrk(1);
  linwid(4);
  errbar(x, y, e, e, 6);
  curve(x, y, 6);
  linwid(1);
  polcrv("SPLI");
  incmrk(0);
  dash();
  curve(x, y, 6);
  solid();
  leglin(cbuf, "bars", 1);
  leglin(cbuf, "data", 2);
  leglin(cbuf, "spline", 3);
  legtit("Curves");
  legend(cbuf, 8);
  endgrf();
  zorfin();
  return 0;
}

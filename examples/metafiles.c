/* Metafiles: two plots written as GKSL metafiles, "metafiles_curve.met" (a damped wave
 * in an axis system) and "metafiles_rings.met" (filled rings with holes, in the colours
 * of the table), then merged side by side on one page, "metafiles.eps", by incmet. The
 * metafiles keep colours, line widths and fills, so that the merged page looks as if it
 * had been drawn directly. */
#include <math.h>

#include "gallery.h"
#include "zorvel.h"

static void start_metafile(const char* file) {
  page(1500, 1100);
  metafl("GKSL");
  setfil(file);
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  helve();
}

static void curve_plot(void) {
  double x[201], y[201];
  int i;
  for (i = 0; i <= 200; i++) {
    x[i] = i * 0.05;
    y[i] = exp(-0.25 * x[i]) * cos(3.0 * x[i]);
  }
  start_metafile("metafiles_curve.met");
  axspos(250, 900);
  axslen(1100, 700);
  name("t", "X");
  name("amplitude", "Y");
  titlin("A damped wave", 1);
  graf(0, 10, 0, 2, -1, 1, -1, 0.5);
  title();
  color("BLUE");
  linwid(8);
  curve(x, y, 201);
  linwid(1);
  color("FORE");
  endgrf();
  zorfin();
}

static void rings_plot(void) {
  int i;
  start_metafile("metafiles_rings.met");
  for (i = 0; i < 6; i++) {
    /* Six rings of growing holes, each in three sectors of its own colours. */
    int cx = 300 + (i % 3) * 450;
    int cy = 350 + (i / 3) * 450;
    sector(cx, cy, 30 * i, 180, 0, 140, 40 + i * 30);
    sector(cx, cy, 30 * i, 180, 140, 250, 60 + i * 30);
    sector(cx, cy, 30 * i, 180, 250, 360, 80 + i * 30);
  }
  height(40);
  messag("Rings in filled sectors", 450, 1030);
  zorfin();
}

int main(void) {
  curve_plot();
  rings_plot();

  gallery_output("EPS", "metafiles.eps");
  page(3100, 1200);
  pagmod("NONE");
  filmod("DELE");
  zorini();
  incmet("metafiles_curve.met", 0, 50, 50, 1.0);
  incmet("metafiles_rings.met", 0, 1600, 100, 0.9);
  zorfin();
  return 0;
}

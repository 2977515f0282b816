/* Catches changes in the vector formats beyond PostScript, PDF and SVG: the same two
 * pages as an IPE drawing, a CGM metafile, Windows metafiles WMF and EMF (two files
 * each, one per page) and an HP-GL/2 plotter file. Header and page layout; lines of several
 * colours, widths and caps; a polyline longer than the 100-point buffer; filled areas, and
 * glyphs with holes (even-odd rule); text as strokes; a second page. */
#include <math.h>

#include "zorvel.h"

static void scene(const char* device, const char* file) {
  int i;
  double xs[4] = {1, 4, 3, 1.5};
  double ys[4] = {1, 1.5, 4, 3};
  metafl(device);
  setfil(file);
  zorini();
  for (i = 0; i < 4; i++) {
    setrgb(i / 3.0, 0.3, 1.0 - i / 3.0);
    linwid(1 + 5 * i);
    lncap(i % 2 == 0 ? "CUT" : "ROUND");
    line(200, 200 + i * 100, 1400, 200 + i * 100);
  }
  linwid(1);
  color("FORE");
  strtpt(200, 1000);
  for (i = 1; i < 150; i++) {
    connpt(200 + i * 10, 1000 - 200 * sin(i * 0.08));
  }
  axspos(1700, 1800);
  axslen(1000, 1000);
  graf(0, 5, 0, 1, 0, 5, 0, 1);
  color("GREEN");
  shdpat(16);
  rlarea(xs, ys, 4);
  color("FORE");
  endgrf();
  helve();
  height(60);
  messag("IPE: gOB", 1700, 1950);
  newpag();
  complx();
  color("RED");
  messag("page 2", 500, 500);
  zorfin();
}

int main(void) {
  scene("IPE", "vector_formats.ipe");
  scene("CGM", "vector_formats.cgm");
  scene("WMF", "vector_formats.wmf");
  scene("EMF", "vector_formats.emf");
  metafl("HPGL");
  hpmode("HPG2");
  scene("HPGL", "vector_formats.hpg");
  return 0;
}

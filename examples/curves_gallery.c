/* Curves, error bars and legends, one EPS file per page:
 *   curves_methods.eps   every interpolation of polcrv on the same data
 *   curves_symbols.eps   lines with symbols, symbols alone, the colour cycle
 *   legend_positions.eps a legend in each of the eight positions, vertical and horizontal
 *   science_figure.eps   measurements with error bars, a spline fit and a legend */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "gallery.h"
#include "zorvel.h"

static void start(const char* file) {
  gallery_output("EPS", file);
  filmod("DELE");
  pagmod("NONE");
  zorini();
  errmod("PROT", "OFF");
  helve();
}

/* The same eight points for every method. */
static const double xs[8] = {0.5, 1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5};
static const double ys[8] = {1.0, 3.0, 2.2, 4.1, 3.3, 5.0, 4.2, 5.6};

static void methods_page(void) {
  static const char* methods[8] = {"LINE", "STEP", "STAI", "BARS", "STEM", "FBAR", "SPLI", "PSPL"};
  int i;
  start("curves_methods.eps");
  for (i = 0; i < 8; i++) {
    int col = i % 4, row = i / 4;
    axspos(220 + col * 690, 880 + row * 980);
    axslen(560, 620);
    titlin(methods[i], 1);
    polcrv(methods[i]);
    /* The joining methods show the data points too. */
    marker(13);
    hsymbl(18);
    incmrk(i == 3 || i == 4 || i == 5 ? 0 : 1);
    graf(0, 8, 0, 2, 0, 6, 0, 2);
    title();
    curve(xs, ys, 8);
    endgrf();
  }
  zorfin();
}

static void symbols_page(void) {
  static const char* names[6] = {"one", "two", "three", "four", "five", "six"};
  char cbuf[6 * 8 + 1];
  double x[21], y[21];
  int i, k;
  start("curves_symbols.eps");
  name("x", "X");
  name("y", "Y");
  titlin("Six curves: the colour cycle, symbols on lines and alone", 1);
  graf(0, 10, 0, 2, 0, 8, 0, 1);
  title();
  legtyp("HORI");
  legini(cbuf, 6, 8);
  for (k = 0; k < 6; k++) {
    for (i = 0; i <= 20; i++) {
      x[i] = i * 0.5;
      y[i] = 1.0 + k + 0.4 * sin(x[i] + k);
    }
    marker(12 + k);
    incmrk(k < 2 ? 0 : k < 4 ? 2 : -1);
    linwid(k < 2 ? 4 : 2);
    curve(x, y, 21);
    leglin(cbuf, names[k], k + 1);
  }
  linwid(1);
  legtit("");
  legend(cbuf, 7);
  endgrf();
  zorfin();
}

static void legend_positions_page(void) {
  char cbuf[3 * 12 + 1];
  double x[2] = {0, 10}, y1[2] = {1, 9}, y2[2] = {9, 1}, y3[2] = {5, 5};
  int ncor;
  start("legend_positions.eps");
  height(28);
  axspos(600, 1500);
  axslen(1800, 900);
  titlin("Legend positions 1-8 (1-4: page corners, 5-8: inside the axes)", 1);
  graf(0, 10, 0, 2, 0, 10, 0, 2);
  title();
  legini(cbuf, 3, 12);
  curve(x, y1, 2);
  curve(x, y2, 2);
  curve(x, y3, 2);
  leglin(cbuf, "rising", 1);
  leglin(cbuf, "falling", 2);
  leglin(cbuf, "flat|level", 3);
  for (ncor = 1; ncor <= 8; ncor++) {
    char title[16];
    sprintf(title, "Position %d", ncor);
    legtit(title);
    legend(cbuf, ncor);
  }
  endgrf();
  zorfin();
}

/* A measured decay with errors, fitted by a spline. */
static void science_figure(void) {
  static double t[12], v[12], e[12], ts[201], vs[201];
  char cbuf[2 * 24 + 1];
  int i, n = 0;
  for (i = 0; i < 12; i++) {
    t[i] = 0.5 + i;
    v[i] = 8.0 * exp(-t[i] / 4.0) + 0.8 + 0.25 * sin(3.1 * i);
    e[i] = 0.25 + 0.04 * i;
  }
  start("science_figure.eps");
  name("Time [ms]", "X");
  name("Signal [mV]", "Y");
  titlin("Relaxation after the pulse", 1);
  graf(0, 12, 0, 2, 0, 9, 0, 1);
  title();
  grid(1, 1);
  legini(cbuf, 2, 24);
  /* Measurements: symbols with error bars. */
  marker(13);
  hsymbl(22);
  incmrk(-1);
  errbar(t, v, e, e, 12);
  curve(t, v, 12);
  /* The fit: a spline through the points, as a line. */
  incmrk(0);
  linwid(5);
  splmod(3, 200);
  spline(t, v, 12, ts, vs, &n);
  curve(ts, vs, n);
  linwid(1);
  leglin(cbuf, "measured", 1);
  leglin(cbuf, "spline fit", 2);
  legtit("");
  legend(cbuf, 7);
  endgrf();
  zorfin();
}

int main(void) {
  methods_page();
  symbols_page();
  legend_positions_page();
  science_figure();
  return 0;
}

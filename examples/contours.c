/* Contour lines, "contours.eps": on the left the labelled contour lines of a smooth
 * function with two hills, two hollows and the saddles between them, traced through a
 * grid of 81 x 61 values (contur); on the right the same function measured at 60
 * scattered stations, triangulated (triang) and contoured through the triangles
 * (contri), with the triangles and the stations drawn beneath. Negative levels are
 * dashed, as usual for contour maps. The function is built of rational bumps, so that
 * the Java twin computes the same values to the last bit. */
#include <math.h>

#include "gallery.h"
#include "zorvel.h"

#define NX 81
#define NY 61
#define NS 60
#define NLEV 9

/* Colours of the levels, dark to light. */
static const double kColours[NLEV][3] = {
    {0.267, 0.005, 0.329}, {0.281, 0.161, 0.473}, {0.241, 0.296, 0.540},
    {0.186, 0.419, 0.557}, {0.142, 0.526, 0.556}, {0.123, 0.637, 0.529},
    {0.246, 0.739, 0.452}, {0.497, 0.826, 0.306}, {0.720, 0.860, 0.150}};

static double bump(double x, double y, double x0, double y0, double s) {
  double dx = (x - x0) / s;
  double dy = (y - y0) / s;
  return 1.0 / (1.0 + dx * dx + dy * dy);
}

static double field(double x, double y) {
  return bump(x, y, 1.0, 1.0, 0.6) + 0.9 * bump(x, y, 3.0, 2.1, 0.7) -
         0.8 * bump(x, y, 1.1, 2.3, 0.5) - 0.7 * bump(x, y, 3.0, 0.8, 0.6) + 0.05 * x;
}

static double level(int k) { return -0.6 + 0.2 * k; }

/* The level's colour and line style. */
static void pen(int k) {
  setrgb(kColours[k][0], kColours[k][1], kColours[k][2]);
  if (level(k) < -1e-9) {
    dash();
  } else {
    solid();
  }
}

static void axes(int nx, const char* heading) {
  axspos(nx, 1060);
  axslen(1200, 900);
  name("x", "X");
  name("y", "Y");
  titlin(heading, 1);
  graf(0, 4, 0, 1, 0, 3, 0, 1);
  title();
}

int main(void) {
  static double xg[NX], yg[NY], zg[NX * NY];
  static double xs[NS], ys[NS], zs[NS];
  static int i1[2 * NS], i2[2 * NS], i3[2 * NS];
  int i, j, k, ntri;
  for (i = 0; i < NX; i++) {
    xg[i] = 0.05 * i;
  }
  for (j = 0; j < NY; j++) {
    yg[j] = 0.05 * j;
    for (i = 0; i < NX; i++) {
      zg[j * NX + i] = field(xg[i], yg[j]);
    }
  }
  /* Stations spread evenly without a pattern (an additive recurrence of the plastic
   * number). */
  for (i = 0; i < NS; i++) {
    double u = 0.31 + i * 0.7548776662466927;
    double v = 0.17 + i * 0.5698402909980532;
    xs[i] = 0.1 + 3.8 * (u - floor(u));
    ys[i] = 0.1 + 2.8 * (v - floor(v));
    zs[i] = field(xs[i], ys[i]);
  }

  page(2970, 1250);
  pagmod("NONE");
  gallery_output("EPS", "contours.eps");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  helve();
  height(30);
  labels("FLOA", "CON");
  labdig(1, "CON");
  labdis(700, "CON");

  axes(250, "Contour lines of a grid (contur)");
  height(24);
  linwid(4);
  for (k = 0; k < NLEV; k++) {
    pen(k);
    contur(xg, NX, yg, NY, zg, level(k));
  }
  solid();
  linwid(1);
  color("FORE");
  height(30);
  endgrf();

  axes(1650, "Contour lines of 60 stations (triang, contri)");
  ntri = triang(xs, ys, NS, i1, i2, i3, 2 * NS);
  setrgb(0.8, 0.8, 0.8);
  linwid(2);
  for (k = 0; k < ntri; k++) {
    rlstrt(xs[i1[k] - 1], ys[i1[k] - 1]);
    rlconn(xs[i2[k] - 1], ys[i2[k] - 1]);
    rlconn(xs[i3[k] - 1], ys[i3[k] - 1]);
    rlconn(xs[i1[k] - 1], ys[i1[k] - 1]);
  }
  height(24);
  linwid(4);
  for (k = 0; k < NLEV; k++) {
    pen(k);
    contri(xs, ys, zs, NS, i1, i2, i3, ntri, level(k));
  }
  solid();
  linwid(1);
  color("FORE");
  hsymbl(14);
  for (i = 0; i < NS; i++) {
    symbol(13, nxposn(xs[i]), nyposn(ys[i]));
  }
  height(30);
  endgrf();
  zorfin();
  return 0;
}

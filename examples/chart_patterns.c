/* Fill patterns and areas, "chart_patterns.eps": the patterns of shdpat (0 the outline
 * alone, 1..15 hatchings, 16 solid) and one of myptrn as labelled boxes; sectors as the
 * slices of a pie (one pulled out and hatched) and as a ring; the area between two
 * crossing curves and the area under one of them, with a legend that shows each area's
 * pattern. */
#include <math.h>

#include "gallery.h"
#include "zorvel.h"

/* Colours of the slices and areas. */
static int rgb(int r, int g, int b) { return intrgb(r / 255.0, g / 255.0, b / 255.0); }

/* The boxes of the patterns in an axis system without axes: six columns, three rows. */
static void pattern_boxes(void) {
  static const int angles[2] = {20, 110};
  static const int spacings[2] = {30, 15};
  int n;
  frame(0);
  setgrf("NONE", "NONE", "NONE", "NONE");
  axspos(100, 1050);
  axslen(1500, 900);
  graf(0.0, 6.0, 0.0, 1.0, 0.0, 3.0, 0.0, 1.0);
  height(28);
  txtjus("CENT");
  for (n = 0; n < 18; n++) {
    int col = n % 6, row = n / 6;
    double x0 = col + 0.12, x1 = col + 0.88;
    double y0 = 2.3 - row + 0.05, y1 = 2.9 - row;
    double xs[4], ys[4];
    xs[0] = x0; xs[1] = x1; xs[2] = x1; xs[3] = x0;
    ys[0] = y0; ys[1] = y0; ys[2] = y1; ys[3] = y1;
    if (n < 17) {
      shdpat(n);
    } else {
      myptrn(angles, spacings, 2);
    }
    rlarea(xs, ys, 4);
    if (n < 17) {
      number(n, -1, 100 + (int)((col + 0.5) * 250), 1050 - (int)((2.3 - row) * 300) + 10);
    } else {
      messag("myptrn", 100 + (int)((col + 0.5) * 250), 1050 - (int)((2.3 - row) * 300) + 10);
    }
  }
  txtjus("LEFT");
  endgrf();
}

/* A pie of five slices, the first pulled out and hatched, and a ring of four sectors. */
static void sectors(void) {
  static const double shares[5] = {0.30, 0.25, 0.20, 0.15, 0.10};
  static const int ring_patterns[4] = {1, 6, 9, 14};
  int colours[5];
  double a = 90.0;
  int i;
  colours[0] = rgb(31, 119, 180);
  colours[1] = rgb(255, 127, 14);
  colours[2] = rgb(44, 160, 44);
  colours[3] = rgb(214, 39, 40);
  colours[4] = rgb(148, 103, 189);
  for (i = 0; i < 5; i++) {
    double b = a + 360.0 * shares[i];
    int cx = 1985, cy = 560;
    if (i == 0) {
      /* Pulled out along its middle. */
      double mid = (a + b) / 2.0 * 3.14159265358979 / 180.0;
      cx += (int)(40.0 * cos(mid));
      cy -= (int)(40.0 * sin(mid));
      shdpat(9);
    } else {
      shdpat(16);
    }
    sector(cx, cy, 0, 300, a, b, colours[i]);
    a = b;
  }
  for (i = 0; i < 4; i++) {
    shdpat(ring_patterns[i]);
    sector(2620, 560, 160, 300, 90.0 * i + 10.0, 90.0 * i + 80.0, colours[i]);
  }
  shdpat(0);
  sector(2620, 560, 0, 110, 0.0, 360.0, colours[4]);
  shdpat(16);
  height(30);
  txtjus("CENT");
  messag("sector: slices of a pie", 1985, 920);
  messag("sector: a ring", 2620, 920);
  txtjus("LEFT");
}

/* Two crossing curves, the area between them hatched, the area under the first solid. */
static void areas(void) {
  enum { N = 121 };
  static double x[N], y1[N], y2[N];
  static const double base_x[2] = {0.0, 12.0};
  static const double base_y[2] = {-1.5, -1.5};
  char cbuf[4 * 24 + 1];
  int i;
  for (i = 0; i < N; i++) {
    x[i] = i * 0.1;
    y1[i] = sin(x[i]);
    y2[i] = 0.8 * cos(1.5 * x[i]);
  }
  frame(1);
  setgrf("NAME", "NAME", "TICK", "TICK");
  axspos(250, 1950);
  axslen(2600, 800);
  name("x", "X");
  name("y", "Y");
  graf(0.0, 12.0, 0.0, 1.0, -1.5, 1.5, -1.5, 0.5);
  legini(cbuf, 4, 24);
  setrgb(0.78, 0.86, 0.94);
  shdpat(16);
  shdcrv(x, y1, N, base_x, base_y, 2);
  setclr(rgb(255, 127, 14));
  shdpat(7);
  shdcrv(x, y1, N, x, y2, N);
  shdpat(16);
  color("FORE");
  linwid(3);
  curve(x, y1, N);
  curve(x, y2, N);
  linwid(1);
  leglin(cbuf, "under sin x", 1);
  leglin(cbuf, "between the curves", 2);
  leglin(cbuf, "sin x", 3);
  leglin(cbuf, "0.8 cos 1.5x", 4);
  legtit("");
  legend(cbuf, 7);
  endgrf();
}

int main(void) {
  gallery_output("EPS", "chart_patterns.eps");
  pagmod("NONE");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  helve();
  height(44);
  messag("Fill patterns and areas", 100, 40);
  pattern_boxes();
  sectors();
  areas();
  zorfin();
  return 0;
}

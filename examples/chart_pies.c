/* Pie charts and polar axis systems, one EPS file per page:
 *   chart_pies.eps   an exploded pie with aligned labels and a legend, a 3D pie and a donut
 *   chart_polar.eps  the rose r = cos 4 phi, and a wind rose of stacked wedges (FBAR) */
#include <math.h>
#include <stdio.h>

#include "gallery.h"
#include "zorvel.h"

#define PI 3.14159265358979

static void start(const char* file) {
  gallery_output("EPS", file);
  filmod("DELE");
  pagmod("NONE");
  zorini();
  errmod("PROT", "OFF");
  chacod("UTF8");
  helve();
}

/* Electricity by source, in TWh. */
static const double shares[5] = {350, 250, 200, 120, 80};
static const char* sources[5] = {"Coal", "Gas", "Nuclear", "Wind", "Solar"};

static void pies_page(void) {
  char cbuf[5 * 8 + 1];
  static const double out[5] = {0.12, 0, 0, 0, 0};
  int i;
  start("chart_pies.eps");
  height(30);

  /* An exploded pie with the percentages in aligned columns and a legend of the sources. */
  axspos(120, 1550);
  axslen(850, 850);
  titlin("Exploded pie", 1);
  legini(cbuf, 5, 8);
  for (i = 0; i < 5; i++) {
    leglin(cbuf, sources[i], i + 1);
  }
  pieexp(out, 5);
  labpos("ALIG", "PIE");
  piegrf(cbuf, 0, shares, 5);
  title();
  legtit("");
  legpos(230, 1620);
  legend(cbuf, 1);
  endgrf();
  pieexp(NULL, 0);
  labpos("INTE", "PIE");

  /* The same data as a 3D pie: sources, values and shares inside. */
  axspos(1060, 1550);
  axslen(850, 850);
  titlin("3D pie", 1);
  pietyp("3D");
  pieopt(0.25, 45);
  labels("BOTH", "PIE");
  labdig(-1, "PIE");
  piegrf(cbuf, 1, shares, 5);
  title();
  endgrf();
  pietyp("2D");

  /* A donut, running anticlockwise from 3 o'clock. */
  axspos(2000, 1550);
  axslen(850, 850);
  titlin("Donut", 1);
  pierad(0.5);
  pieang(0, "ANTI");
  labels("PERC", "PIE");
  piegrf(cbuf, 1, shares, 5);
  title();
  endgrf();
  zorfin();
}

static void polar_page(void) {
  static double r[721], phi[721];
  /* Wind from 16 directions: the share of hours in three speed classes, stacked. */
  static const double calm[16] = {4, 3, 2, 2, 3, 4, 6, 8, 9, 8, 7, 6, 5, 5, 4, 4};
  static const double fresh[16] = {2, 2, 1, 1, 1, 2, 3, 5, 6, 6, 5, 4, 3, 2, 2, 2};
  static const double strong[16] = {1, 0.5, 0.5, 0.5, 0.5, 1, 1, 2, 3, 3, 2, 2, 1, 1, 1, 1};
  double dir[16], total[16];
  char cbuf[3 * 14 + 1];
  int i;
  start("chart_polar.eps");
  height(30);

  /* The rose r = cos 4 phi: negative radii lie opposite their angle. */
  for (i = 0; i <= 720; i++) {
    phi[i] = i * PI / 360;
    r[i] = cos(4 * phi[i]);
  }
  axspos(200, 1750);
  axslen(1150, 1150);
  name("r", "X");
  titlin("Rose r = cos 4φ", 1);
  grafp(1.0, 0.0, 0.25, 0.0, 30.0);
  polgrd(1, 1);
  title();
  color("BLUE");
  linwid(6);
  curve(r, phi, 721);
  linwid(1);
  color("FORE");
  endgrf();

  /* A wind rose: compass directions, angles in degrees clockwise from north. The three
   * classes are drawn as their running totals, the largest first. */
  for (i = 0; i < 16; i++) {
    dir[i] = 22.5 * i;
  }
  axspos(1600, 1750);
  axslen(1150, 1150);
  name("% of hours", "X");
  titlin("Wind rose", 1);
  polopt("DEGR", "ANGL");
  polopt("NORT", "ZERO");
  polopt("CLOC", "DIRE");
  grafp(20.0, 0.0, 5.0, 0.0, 45.0);
  title();
  legini(cbuf, 3, 14);
  polcrv("FBAR");
  for (i = 0; i < 16; i++) {
    total[i] = calm[i] + fresh[i] + strong[i];
  }
  setrgb(0.35, 0.10, 0.45);
  curve(total, dir, 16);
  for (i = 0; i < 16; i++) {
    total[i] = calm[i] + fresh[i];
  }
  setrgb(0.20, 0.55, 0.60);
  curve(total, dir, 16);
  setrgb(0.70, 0.85, 0.35);
  curve(calm, dir, 16);
  color("FORE");
  /* The grid over the wedges, so that their lengths can be read. */
  polgrd(1, 2);
  leglin(cbuf, "above 8 m/s", 1);
  leglin(cbuf, "4 to 8 m/s", 2);
  leglin(cbuf, "below 4 m/s", 3);
  legtit("");
  legpos(2460, 300);
  legend(cbuf, 1);
  polcrv("LINE");
  polopt("RADI", "ANGL");
  polopt("EAST", "ZERO");
  polopt("ANTI", "DIRE");
  endgrf();
  zorfin();
}

int main(void) {
  pies_page();
  polar_page();
  return 0;
}

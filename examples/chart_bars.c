/* Bar graphs and statistics, one EPS file per page:
 *   chart_bars.eps        four axis systems: grouped bars with labels and a legend,
 *                         stacked bars labelled with their parts, horizontal bars of
 *                         named categories, 3D bars
 *   chart_statistics.eps  a histogram with the density curve of its distribution, and
 *                         box plots of four samples */
#include <math.h>
#include <stdio.h>

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

/* Uniform values in 0..1 from a fixed sequence (the same in the Java twin). */
static long state = 2024;

static double uniform(void) {
  state = (state * 1103515245L + 12345L) & 0x7fffffffL;
  return state / 2147483648.0;
}

/* Nearly normal values: the sum of twelve uniform ones, less six. */
static double normal(double mean, double sd) {
  double s = -6;
  int i;
  for (i = 0; i < 12; i++) {
    s += uniform();
  }
  return mean + sd * s;
}

/* Category labels 1..n of the axis cax. */
static void categories(const char* const* names, int n, const char* cax) {
  int i;
  labels("MYLA", cax);
  ticks(1, cax);
  for (i = 0; i < n; i++) {
    mylab(names[i], i + 1, cax);
  }
}

/* Numbers again on both axes after categories. */
static void plain_axes(void) {
  labels("FLOA", "XY");
  ticks(2, "XY");
}

/* The lower left corner of panel k (0..3) of a 2 x 2 page. */
static void panel(int k) {
  axspos(300 + (k % 2) * 1420, 880 + (k / 2) * 1000);
  axslen(1100, 620);
}

static void grouped(void) {
  static const char* quarters[4] = {"Q1", "Q2", "Q3", "Q4"};
  static const double x[4] = {1, 2, 3, 4}, zero[4] = {0, 0, 0, 0};
  static const double sales[3][4] = {{12, 15, 14, 19}, {14, 17, 16, 22}, {17, 18, 21, 25}};
  static const char* years[3] = {"2022", "2023", "2024"};
  char cbuf[3 * 4 + 1];
  int k;
  panel(0);
  categories(quarters, 4, "X");
  name("Sales [Mio EUR]", "Y");
  titlin("Grouped bars with labels", 1);
  graf(0.5, 4.5, 1, 1, 0, 30, 0, 5);
  title();
  legini(cbuf, 3, 4);
  barwth(-0.8);
  bargrp(3, -0.02);
  labels("SECO", "BAR");
  labdig(-1, "BAR");
  for (k = 0; k < 3; k++) {
    bars(x, zero, sales[k], 4);
    leglin(cbuf, years[k], k + 1);
  }
  labels("NONE", "BAR");
  legtit("");
  legend(cbuf, 8);
  endgrf();
}

static void stacked(void) {
  static const char* days[5] = {"Mon", "Tue", "Wed", "Thu", "Fri"};
  static const double x[5] = {1, 2, 3, 4, 5};
  static const double hours[3][5] = {{1.5, 1, 2, 1, 0.5}, {2, 3.5, 1, 4, 1.5}, {4, 3, 4.5, 2.5, 5}};
  static const char* parts[3] = {"Mail", "Meetings", "Code"};
  double bottom[5] = {0, 0, 0, 0, 0}, top[5];
  char cbuf[3 * 8 + 1];
  int i, k;
  panel(1);
  categories(days, 5, "X");
  name("Hours", "Y");
  titlin("Stacked bars, labelled with their parts", 1);
  graf(0.5, 5.5, 1, 1, 0, 12, 0, 2);
  title();
  legini(cbuf, 3, 8);
  barwth(-0.6);
  labels("DELT", "BAR");
  labdig(-2, "BAR");
  labpos("CENT", "BAR");
  barclr(-1, 255, -1);
  for (k = 0; k < 3; k++) {
    for (i = 0; i < 5; i++) {
      top[i] = bottom[i] + hours[k][i];
    }
    shdpat(k == 1 ? 7 : 16); /* the middle part hatched */
    bars(x, bottom, top, 5);
    for (i = 0; i < 5; i++) {
      bottom[i] = top[i];
    }
    leglin(cbuf, parts[k], k + 1);
  }
  barclr(-1, -1, -1);
  shdpat(16);
  labels("NONE", "BAR");
  labpos("OUTS", "BAR");
  legtit("");
  legend(cbuf, 7);
  endgrf();
}

static void horizontal(void) {
  static const char* langs[6] = {"Fortran", "Java", "C", "C++", "Python", "Rust"};
  static const double y[6] = {1, 2, 3, 4, 5, 6}, zero[6] = {0, 0, 0, 0, 0, 0};
  static const double share[6] = {4.2, 9.7, 11.3, 10.1, 23.9, 1.6};
  panel(2);
  categories(langs, 6, "Y");
  name("Share [%]", "X");
  name("", "Y");
  titlin("Horizontal bars of named categories", 1);
  graf(0, 30, 0, 5, 0.5, 6.5, 1, 1);
  title();
  bartyp("HORI");
  barwth(-0.7);
  labels("SECO", "BAR");
  labdig(1, "BAR");
  setrgb(0.25, 0.55, 0.75);
  bars(y, zero, share, 6);
  color("FORE");
  labels("NONE", "BAR");
  bartyp("VERT");
  endgrf();
}

static void depth_bars(void) {
  static const char* months[6] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun"};
  static const double x[6] = {1, 2, 3, 4, 5, 6}, zero[6] = {0, 0, 0, 0, 0, 0};
  static const double rain[6] = {48, 41, 52, 38, 61, 70};
  panel(3);
  categories(months, 6, "X");
  name("Month", "X");
  name("Rain [mm]", "Y");
  titlin("3D bars", 1);
  graf(0.5, 6.5, 1, 1, 0, 80, 0, 20);
  title();
  bartyp("3DVE");
  barwth(-0.6);
  baropt(0.5, 45);
  setrgb(0.2, 0.6, 0.35);
  bars(x, zero, rain, 6);
  color("FORE");
  bartyp("VERT");
  endgrf();
}

static void bars_page(void) {
  start("chart_bars.eps");
  height(30);
  hname(30);
  htitle(34);
  grouped();
  plain_axes();
  stacked();
  plain_axes();
  horizontal();
  plain_axes();
  depth_bars();
  zorfin();
}

static void statistics_page(void) {
  enum { kSamples = 2000, kBins = 30 };
  static double heights[kSamples], centres[kBins], density[kBins], zero[kBins];
  static double curve_x[121], curve_y[121];
  static const char* names[4] = {"A", "B", "C", "D"};
  static double sample[4][60];
  char cbuf[2 * 16 + 1];
  int i, k;
  for (i = 0; i < kSamples; i++) {
    heights[i] = normal(170, 8);
  }
  histog(heights, kSamples, 140, 200, kBins, "DENS", centres, density);
  for (i = 0; i <= 120; i++) {
    double t = (curve_x[i] = 140 + i * 0.5) - 170;
    curve_y[i] = exp(-t * t / 128) / (8 * sqrt(2 * 3.14159265358979));
  }
  start("chart_statistics.eps");
  height(30);
  hname(30);
  htitle(34);

  axspos(300, 1650);
  axslen(1100, 1200);
  name("Height [cm]", "X");
  name("Density", "Y");
  labdig(2, "Y");
  titlin("Histogram and the normal density", 1);
  graf(140, 200, 140, 10, 0, 0.06, 0, 0.01);
  title();
  legini(cbuf, 2, 16);
  barwth(-1);
  bars(centres, zero, density, kBins);
  leglin(cbuf, "2000 samples", 1);
  color("RED");
  linwid(6);
  curve(curve_x, curve_y, 121);
  linwid(1);
  color("FORE");
  leglin(cbuf, "normal density", 2);
  legtit("");
  legend(cbuf, 8);
  endgrf();

  for (k = 0; k < 4; k++) {
    for (i = 0; i < 60; i++) {
      sample[k][i] = normal(20 + 4 * k, 2 + k);
    }
    sample[k][0] = 20 + 4 * k + (k % 2 == 0 ? 5.5 : -5) * (2 + k);  /* an outlier */
  }
  axspos(1720, 1650);
  axslen(1100, 1200);
  labdig(-1, "Y");
  categories(names, 4, "X");
  name("Sample", "X");
  name("Value", "Y");
  titlin("Box plots", 1);
  graf(0.5, 4.5, 1, 1, 0, 60, 0, 10);
  title();
  barwth(-0.5);
  hsymbl(20);
  for (k = 0; k < 4; k++) {
    boxplt(sample[k], 60, k + 1);
  }
  endgrf();
  zorfin();
}

int main(void) {
  bars_page();
  statistics_page();
  return 0;
}

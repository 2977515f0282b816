/* PLplot peer for chart workload W6 (see WORKLOAD.md).
 * usage: zb_charts_plplot w6 FORMAT OUTPREFIX
 *   FORMAT  ps (native psc driver) | svg (native svg driver)
 *           | pdf (pdfcairo) | png (pngcairo, 1200x850)
 * ps and pdf: one file OUTPREFIX.FMT of two pages; svg and png: page 1 in OUTPREFIX.FMT,
 * page 2 in OUTPREFIX_2.FMT (a stream of its own, as these drivers write one page a file). */
#include <plplot.h>
#include <string.h>

#include "w6_data.h"

static const char* device_for(const char* fmt) {
  if (!strcmp(fmt, "ps")) return "psc";
  if (!strcmp(fmt, "svg")) return "svg";
  if (!strcmp(fmt, "pdf")) return "pdfcairo";
  if (!strcmp(fmt, "png")) return "pngcairo";
  fprintf(stderr, "unknown format %s\n", fmt);
  exit(2);
}

static void open_page(const char* fmt, const char* path) {
  plsdev(device_for(fmt));
  plsfnam(path);
  if (!strcmp(fmt, "png"))
    plspage(0., 0., 1200, 850, 0, 0); /* pixels */
  else if (strcmp(fmt, "ps"))
    plspage(0., 0., 842, 595, 0, 0); /* A4 landscape in points */
  else
    plsetopt("drvopt", "text=1"); /* ps: the psc driver's own landscape page */
  plscolbg(255, 255, 255);        /* white page like the other peers */
  plscol0(15, 0, 0, 0);           /* colour 15: black text and frame */
  plinit();
}

static void bar(double x0, double x1, double h, int outline) {
  PLFLT x[4] = {x0, x1, x1, x0}, y[4] = {0., 0., h, h};
  plfill(4, x, y);
  if (outline) {
    PLFLT xo[5] = {x0, x1, x1, x0, x0}, yo[5] = {0., 0., h, h, 0.};
    plline(5, xo, yo);
  }
}

int main(int argc, char** argv) {
  if (argc < 4 || strcmp(argv[1], "w6")) {
    fprintf(stderr, "usage: %s w6 FORMAT OUTPREFIX\n", argv[0]);
    return 2;
  }
  const char *fmt = argv[2], *pre = argv[3];
  int paged = !strcmp(fmt, "ps") || !strcmp(fmt, "pdf");
  char path[4096];

  /* Page 1: 1,000 touching filled bars, each with its count above it. */
  double* x = w6_xmalloc(W6_N * sizeof *x);
  static long count[W6_BINS];
  w6_data(W6_N, x);
  w6_histogram(W6_N, x, count);
  free(x);
  snprintf(path, sizeof path, "%s.%s", pre, fmt);
  open_page(fmt, path);
  plcol0(15);
  plenv(W6_LO, W6_HI, 0., W6_YMAX, 0, 0);
  pllab("X axis", "Y axis", "W6 histogram");
  plcol0(9);
  for (int j = 0; j < W6_BINS; j++) bar(w6_edge(j), w6_edge(j + 1), (double)count[j], 0);
  plcol0(15);
  plschr(0.7, 1.0); /* about 2 pt characters */
  char buf[32];
  for (int j = 0; j < W6_BINS; j++) {
    snprintf(buf, sizeof buf, "%ld", count[j]);
    plptex(0.5 * (w6_edge(j) + w6_edge(j + 1)), count[j] + 0.005 * W6_YMAX, 1., 0., 0.5, buf);
  }
  plschr(0., 1.0);

  /* Page 2: 100 bars hatched at 45 degrees, outlined. */
  if (!paged) {
    plend();
    snprintf(path, sizeof path, "%s_2.%s", pre, fmt);
    open_page(fmt, path);
  }
  plcol0(15);
  plenv(-1., W6_BARS, 0., 11., 0, 0);
  pllab("X axis", "Y axis", "W6 hatched");
  plpsty(3); /* lines at 45 degrees */
  for (int i = 0; i < W6_BARS; i++) bar(i - 0.4, i + 0.4, 1 + i % 10, 1);
  plpsty(0);
  plend();
  return 0;
}

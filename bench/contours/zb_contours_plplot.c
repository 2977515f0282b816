/* PLplot peer for workload W7 (see WORKLOAD.md).
 * usage: zb_contours_plplot w7c|w7h|w7s FORMAT OUTPREFIX
 *   FORMAT  ps (native psc driver) | pdf (pdfcairo) | png (pngcairo, 1200x850)
 * One page in OUTPREFIX.FMT. w7t (the triangulation) is not a PLplot case. */
#include <plplot.h>
#include <string.h>

#include "w7_data.h"

static const char* device_for(const char* fmt) {
  if (!strcmp(fmt, "ps")) return "psc";
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

/* cmap1 as viridis, from nine samples of matplotlib's table. */
static void viridis(void) {
  static const PLFLT r[9] = {0.267, 0.279, 0.230, 0.173, 0.128, 0.158, 0.369, 0.678, 0.993};
  static const PLFLT g[9] = {0.005, 0.175, 0.322, 0.449, 0.567, 0.684, 0.789, 0.864, 0.906};
  static const PLFLT b[9] = {0.329, 0.483, 0.546, 0.558, 0.551, 0.502, 0.383, 0.190, 0.144};
  PLFLT at[9];
  for (int k = 0; k < 9; k++) at[k] = k / 8.0;
  plscmap1n(256);
  plscmap1l(1, 9, at, r, g, b, NULL);
}

/* A colour bar right of the axes: the bands of values[0..n-1] (shade) or an image. */
static void colour_bar(PLINT kind, PLINT n, PLFLT* values) {
  PLFLT w, h;
  PLINT label_opts[1] = {PL_COLORBAR_LABEL_BOTTOM};
  const char* label[1] = {""};
  const char* axis_opts[1] = {"bcvtm"};
  PLFLT ticks[1] = {0.0};
  PLINT sub_ticks[1] = {0};
  PLINT n_values[1] = {n};
  const PLFLT* vals[1] = {values};
  plcol0(15);
  plcolorbar(&w, &h, kind, PL_POSITION_RIGHT, 0.03, 0.0, 0.04, 0.9, 0, 15, 0, 0.0, 0.0, 0,
             0.0, 1, label_opts, label, 1, axis_opts, ticks, sub_ticks, n_values, vals);
}

int main(int argc, char** argv) {
  if (argc < 4 || (strcmp(argv[1], "w7c") && strcmp(argv[1], "w7h") && strcmp(argv[1], "w7s"))) {
    fprintf(stderr, "usage: %s w7c|w7h|w7s FORMAT OUTPREFIX\n", argv[0]);
    return 2;
  }
  const char *sub = argv[1], *fmt = argv[2], *pre = argv[3];
  const int n = !strcmp(sub, "w7c") ? W7_CONTOUR_N : !strcmp(sub, "w7h") ? W7_HEAT_N : W7_SURFACE_N;
  double* x = w7_xmalloc((size_t)n * sizeof *x);
  double* y = w7_xmalloc((size_t)n * sizeof *y);
  double* z = w7_xmalloc((size_t)n * n * sizeof *z);
  double zmin, zmax;
  PLFLT** a;
  char path[4096];
  w7_grid(n, x, y, z, &zmin, &zmax);
  plAlloc2dGrid(&a, n, n); /* a[i][j] = z at (x[i], y[j]) */
  for (int j = 0; j < n; j++)
    for (int i = 0; i < n; i++) a[i][j] = z[(size_t)j * n + i];
  free(z);

  snprintf(path, sizeof path, "%s.%s", pre, fmt);
  open_page(fmt, path);
  viridis();
  plcol0(15);
  if (!strcmp(sub, "w7s")) {
    pladv(0);
    plvpor(0.0, 1.0, 0.0, 0.9);
    plwind(-1.0, 1.0, -0.9, 1.1);
    plw3d(1.0, 0.75, 0.6, 0.0, W7_XMAX, 0.0, W7_YMAX, floor(zmin * 2.0) / 2.0,
          ceil(zmax * 2.0) / 2.0, 30.0, -60.0);
    plbox3("bnstu", "X axis", 0.0, 0, "bnstu", "Y axis", 0.0, 0, "bcdmnstuv", "Z axis", 0.0,
           0);
    plmtex("t", 1.0, 0.5, 0.5, "W7 surface");
    plsurf3d(x, y, (PLFLT_MATRIX)a, n, n, MAG_COLOR, NULL, 0);
  } else {
    pladv(0);
    plvpor(0.1, 0.84, 0.12, 0.9); /* room for the colour bar on the right */
    plwind(0.0, W7_XMAX, 0.0, W7_YMAX);
    plbox("bcnst", 0.0, 0, "bcnstv", 0.0, 0);
    if (!strcmp(sub, "w7h")) {
      PLFLT range[2] = {zmin, zmax};
      pllab("X axis", "Y axis", "W7 heat map");
      plimage((PLFLT_MATRIX)a, n, n, 0.0, W7_XMAX, 0.0, W7_YMAX, zmin, zmax, 0.0, W7_XMAX, 0.0,
              W7_YMAX);
      colour_bar(PL_COLORBAR_IMAGE, 2, range);
    } else {
      PLFLT lev[W7_LEVELS];
      PLcGrid grid = {x, y, NULL, n, n, 0};
      for (int k = 0; k < W7_LEVELS; k++) lev[k] = zmin + (zmax - zmin) * k / (W7_LEVELS - 1);
      pllab("X axis", "Y axis", "W7 contours");
      plshades((PLFLT_MATRIX)a, n, n, NULL, 0.0, W7_XMAX, 0.0, W7_YMAX, lev, W7_LEVELS, 1.0, 0,
               0.0, plfill, 1, NULL, NULL);
      plcol0(15);
      /* the inner levels; plcont's labels (pl_setcontlabelparam) are left off */
      plcont((PLFLT_MATRIX)a, n, n, 1, n, 1, n, lev + 1, W7_LEVELS - 2, pltr1, &grid);
      colour_bar(PL_COLORBAR_SHADE, W7_LEVELS, lev);
    }
  }
  plend();
  plFree2dGrid(a, n, n);
  free(x);
  free(y);
  return 0;
}

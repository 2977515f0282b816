/* The peer workloads W1-W5 (the shared benchmark's WORKLOADS.md) through the public C API,
 * with the peers' own data functions, for the runner bench/run.sh.
 * usage: zb_zorvel WORKLOAD FORMAT OUTPREFIX [N]
 *   WORKLOAD  w1 | w2 | w3 | w4 | w5 | w6 (the chart workload of bench/charts)
 *             | w7c | w7h | w7s | w7t (the contour workload of bench/contours)
 *             | w3t | w3p | w3h (W3 in DejaVu Sans through ttfont, in Times-Roman
 *             through psfont, in hwfont)
 *   FORMAT    ps | svg | pdf | png (PNG pages of 1200 x 850 pixels, the default raster
 *             output; ZB_ZORVEL_SMOOTH=1 draws them anti-aliased) | cgm | wmf | emf | ipe
 *             | hpgl (the further vector formats) | xwnd (a screen window, for
 *             bench/run_screen.sh; see open_window)
 *   OUTPREFIX output file without its extension (w2: the prefix of 200 files)
 *   N         w1: number of points (default 1000000) */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "charts/w6_data.h"
#include "contours/w7_data.h"
#include "workload_data.h"
#include "zorvel.h"

static const char* format = "ps";

/* The screen: a window of 1200 x 850 pixels titled "W1 big curve" (bench/screen/zb_xwait
 * finds it by that title), dark on white. ZB_XWND_MODE is the winmod keyword: "HOLD"
 * (default) lets zorfin return once the page is on the screen, so that the process ends
 * with the last pixel shown; "STAN" waits until the window is closed, which leaves time
 * to resize it (bench/run_screen.sh). ZB_ZORVEL_SMOOTH=1 draws anti-aliased, as for PNG. */
static void open_window(void) {
  const char* mode = getenv("ZB_XWND_MODE");
  const char* smooth = getenv("ZB_ZORVEL_SMOOTH");
  metafl("XWND");
  scrmod("REVERS");
  winsiz(1200, 850);
  wintit("W1 big curve");
  winmod(mode != NULL && mode[0] != '\0' ? mode : "HOLD");
  imgopt(smooth != NULL && smooth[0] == '1' ? "ON" : "OFF", "ANTI");
  zorini();
  errmod("PROT", "OFF");
}

static void open_page(const char* path) {
  char file[1024];
  const char* device = "PS";
  const char* ext = "ps";
  if (strcmp(format, "svg") == 0) {
    device = "SVG";
    ext = "svg";
  } else if (strcmp(format, "pdf") == 0) {
    device = "PDF";
    ext = "pdf";
  } else if (strcmp(format, "png") == 0) {
    device = "PNG";
    ext = "png";
  } else if (strcmp(format, "cgm") == 0 || strcmp(format, "wmf") == 0 ||
             strcmp(format, "emf") == 0 || strcmp(format, "ipe") == 0) {
    /* The further vector formats: the keyword is the extension in capitals. */
    static char key[4];
    for (int k = 0; k < 3; k++) {
      key[k] = (char)(format[k] - 'a' + 'A');
    }
    device = key;
    ext = format;
  } else if (strcmp(format, "hpgl") == 0) {
    device = "HPGL";
    ext = "hpg";
  } else if (strcmp(format, "xwnd") == 0) {
    open_window();
    return;
  } else if (strcmp(format, "ps") != 0) {
    fprintf(stderr, "unknown format %s\n", format);
    exit(2);
  }
  snprintf(file, sizeof file, "%s.%s", path, ext);
  metafl(device);
  setfil(file);
  filmod("DELE");
  if (strcmp(format, "png") == 0) {
    const char* smooth = getenv("ZB_ZORVEL_SMOOTH");
    scrmod("REVERS");
    imgsiz(1200, 850);
    zorini();
    imgopt(smooth != NULL && smooth[0] == '1' ? "ON" : "OFF", "ANTI");
  } else {
    zorini();
  }
  errmod("PROT", "OFF");
}

/* One axis system with names and a title (W1, W4). */
static void axes(const char* heading, double ya, double ye, double ystp) {
  name("X axis", "X");
  name("Y axis", "Y");
  titlin(heading, 1);
  graf(0.0, 10.0, 0.0, 2.0, ya, ye, ya, ystp);
  title();
}

static void w1(const char* pre, long n) {
  double* x = bench_alloc((size_t)n * sizeof *x);
  double* y = bench_alloc((size_t)n * sizeof *y);
  w1_data(n, x, y);
  open_page(pre);
  axes("W1 big curve", -1.0, 1.0, 0.5);
  curve(x, y, (int)n);
  endgrf();
  zorfin();
  free(x);
  free(y);
}

static void w2(const char* pre) {
  enum { M = 1000 };
  static double x[M], y[M];
  char path[1024], cbuf[3 * 8 + 1], ctitle[32];
  int k, c;
  for (k = 0; k < 200; k++) {
    snprintf(path, sizeof path, "%s_%03d", pre, k);
    open_page(path);
    snprintf(ctitle, sizeof ctitle, "W2 plot %d", k);
    titlin(ctitle, 1);
    graf(0.0, 10.0, 0.0, 2.0, -1.5, 1.5, -1.5, 0.5);
    title();
    legini(cbuf, 3, 8);
    legtit("");
    for (c = 0; c < 3; c++) {
      char text[8];
      w2_data(k, c, M, x, y);
      curve(x, y, M);
      snprintf(text, sizeof text, "curve %d", c + 1);
      leglin(cbuf, text, c + 1);
    }
    legend(cbuf, 7);
    endgrf();
    zorfin();
  }
}

/* W3 in the default font, or in the font of `font`: "ttfont" DejaVu Sans (the font of
 * matplotlib's labels), "psfont" Times-Roman, "hwfont" the driver font. */
static void w3(const char* pre, const char* font) {
  char text[16];
  int i;
  open_page(pre);
  if (strcmp(font, "ttfont") == 0) {
    ttfont("DejaVuSans.ttf");
  } else if (strcmp(font, "psfont") == 0) {
    psfont("Times-Roman");
  } else if (strcmp(font, "hwfont") == 0) {
    hwfont();
  }
  height(7); /* 0.7 mm, about 2 pt */
  txtjus("CENT");
  for (i = 0; i < W3_LABELS; i++) {
    const double wx = (i % W3_COLUMNS) + 0.5;
    const double wy = 199.5 - (double)(i / W3_COLUMNS);
    /* The world window [0, 100] x [0, 200] on the whole page (2970 x 2100 plot units). */
    const int nx = (int)(wx / 100.0 * 2970.0 + 0.5);
    const int ny = (int)((1.0 - wy / 200.0) * 2100.0 + 0.5);
    snprintf(text, sizeof text, "%.3f", i * 0.001);
    messag(text, nx, ny);
  }
  zorfin();
}

static void w4(const char* pre) {
  enum { K = 100000 };
  double* x = bench_alloc(K * sizeof *x);
  double* y = bench_alloc(K * sizeof *y);
  w4_data(K, x, y);
  open_page(pre);
  axes("W4 markers", -1.0, 1.0, 0.5);
  color("BLUE");
  marker(1);  /* open circle */
  hsymbl(12); /* 1.2 mm */
  incmrk(-1); /* symbols only */
  curve(x, y, K);
  endgrf();
  zorfin();
  free(x);
  free(y);
}

static void w5(const char* pre) {
  double x[10], y[10];
  int i;
  for (i = 0; i < 10; i++) {
    x[i] = i;
    y[i] = (double)i * i;
  }
  open_page(pre);
  graf(0.0, 9.0, 0.0, 1.0, 0.0, 81.0, 0.0, 9.0);
  curve(x, y, 10);
  endgrf();
  zorfin();
}

/* W6: a histogram of 1e6 values into 1,000 bars labelled with their counts, then a page
 * of 100 hatched bars (SVG and PNG write it to a second file). */
static void w6(const char* pre) {
  double* x = bench_alloc(W6_N * sizeof *x);
  double xb[W6_BINS], yb[W6_BINS], y0[W6_BINS];
  double bx[W6_BARS], bh[W6_BARS], b0[W6_BARS];
  int i;
  w6_data(W6_N, x);
  open_page(pre);
  histog(x, (int)W6_N, W6_LO, W6_HI, W6_BINS, "COUN", xb, yb);
  for (i = 0; i < W6_BINS; i++) {
    y0[i] = 0.0;
  }
  name("X axis", "X");
  name("Y axis", "Y");
  titlin("W6 histogram", 1);
  graf(W6_LO, W6_HI, W6_LO, 1.0, 0.0, W6_YMAX, 0.0, 500.0);
  title();
  color("BLUE");
  barwth(-1.0);
  barclr(-1, -1, -1);
  labels("SECO", "BAR");
  labdig(0, "BAR");
  height(7);
  bars(xb, y0, yb, W6_BINS);
  color("FORE");
  endgrf();
  newpag();
  for (i = 0; i < W6_BARS; i++) {
    bx[i] = i;
    bh[i] = 1 + i % 10;
    b0[i] = 0.0;
  }
  height(36);
  labels("NONE", "BAR");
  titlin("W6 hatched", 1);
  graf(-1.0, 100.0, 0.0, 10.0, 0.0, 11.0, 0.0, 1.0);
  title();
  barwth(0.8);
  barclr(255, 255, -1); /* black hatching and outlines */
  shdpat(1);
  bars(bx, b0, bh, W6_BARS);
  endgrf();
  zorfin();
  free(x);
}

/* W7, one sub-case a call: w7c filled contours of 1000 x 1000 values in 20 bands with the
 * labelled level lines between them on top, w7h a heat map of 2000 x 2000 values, w7s a
 * shaded surface of 200 x 200 values, w7t the Delaunay triangulation of 1e6 points
 * (nothing drawn; the number of triangles to stdout). */
static void w7(const char* sub, const char* pre) {
  const int n = strcmp(sub, "w7c") == 0   ? W7_CONTOUR_N
                : strcmp(sub, "w7h") == 0 ? W7_HEAT_N
                                          : W7_SURFACE_N;
  double *x, *y, *z, zmin, zmax, zlo, zhi;
  int k;
  if (strcmp(sub, "w7t") == 0) {
    const int m = (int)W7_POINTS;
    int* i1 = bench_alloc(2 * (size_t)m * sizeof *i1);
    int* i2 = bench_alloc(2 * (size_t)m * sizeof *i2);
    int* i3 = bench_alloc(2 * (size_t)m * sizeof *i3);
    x = bench_alloc((size_t)m * sizeof *x);
    y = bench_alloc((size_t)m * sizeof *y);
    w7_points(m, x, y);
    printf("%d triangles\n", triang(x, y, m, i1, i2, i3, 2 * m));
    free(i1);
    free(i2);
    free(i3);
    free(x);
    free(y);
    return;
  }
  if (strcmp(sub, "w7c") != 0 && strcmp(sub, "w7h") != 0 && strcmp(sub, "w7s") != 0) {
    fprintf(stderr, "unknown workload %s\n", sub);
    exit(2);
  }
  x = bench_alloc((size_t)n * sizeof *x);
  y = bench_alloc((size_t)n * sizeof *y);
  z = bench_alloc((size_t)n * n * sizeof *z);
  w7_grid(n, x, y, z, &zmin, &zmax);
  zlo = floor(zmin * 2.0) / 2.0; /* the Z labels every 0.5 */
  zhi = ceil(zmax * 2.0) / 2.0;
  open_page(pre);
  setvlt("VIRI");
  name("X axis", "X");
  name("Y axis", "Y");
  if (strcmp(sub, "w7s") == 0) {
    name("Z axis", "Z");
    titlin("W7 surface", 4);
    axis3d(2.0, 1.5, 1.2);
    graf3d(0.0, W7_XMAX, 0.0, 1.0, 0.0, W7_YMAX, 0.0, 1.0, zlo, zhi, zlo, 0.5);
    title();
    color("FORE");
    surshd(x, n, y, n, z);
  } else if (strcmp(sub, "w7h") == 0) {
    titlin("W7 heat map", 1);
    graf3(0.0, W7_XMAX, 0.0, 1.0, 0.0, W7_YMAX, 0.0, 1.0, zmin, zmax, ceil(zmin * 2.0) / 2.0,
          0.5);
    title();
    colmat(x, n, y, n, z);
  } else {
    double lev[W7_LEVELS];
    for (k = 0; k < W7_LEVELS; k++) {
      lev[k] = zmin + (zmax - zmin) * k / (W7_LEVELS - 1);
    }
    titlin("W7 contours", 1);
    graf3(0.0, W7_XMAX, 0.0, 1.0, 0.0, W7_YMAX, 0.0, 1.0, zmin, zmax, ceil(zmin * 2.0) / 2.0,
          0.5);
    title();
    conshd(x, n, y, n, z, lev, W7_LEVELS);
    color("FORE");
    labels("FLOA", "CON");
    labdig(2, "CON");
    for (k = 1; k < W7_LEVELS - 1; k++) { /* the inner levels */
      contur(x, n, y, n, z, lev[k]);
    }
  }
  endgrf();
  zorfin();
  free(x);
  free(y);
  free(z);
}

int main(int argc, char** argv) {
  if (argc < 4) {
    fprintf(stderr,
            "usage: %s w1|w2|w3|w4|w5|w6|w7c|w7h|w7s|w7t ps|svg|pdf|png|xwnd OUTPREFIX [N]\n",
            argv[0]);
    return 2;
  }
  format = argv[2];
  if (strcmp(argv[1], "w1") == 0) {
    w1(argv[3], argc > 4 ? atol(argv[4]) : 1000000L);
  } else if (strcmp(argv[1], "w2") == 0) {
    w2(argv[3]);
  } else if (strcmp(argv[1], "w3") == 0) {
    w3(argv[3], "");
  } else if (strcmp(argv[1], "w3t") == 0) {
    w3(argv[3], "ttfont");
  } else if (strcmp(argv[1], "w3p") == 0) {
    w3(argv[3], "psfont");
  } else if (strcmp(argv[1], "w3h") == 0) {
    w3(argv[3], "hwfont");
  } else if (strcmp(argv[1], "w4") == 0) {
    w4(argv[3]);
  } else if (strcmp(argv[1], "w5") == 0) {
    w5(argv[3]);
  } else if (strcmp(argv[1], "w6") == 0) {
    w6(argv[3]);
  } else if (strncmp(argv[1], "w7", 2) == 0) {
    w7(argv[1], argv[3]);
  } else {
    fprintf(stderr, "unknown workload %s\n", argv[1]);
    return 2;
  }
  return 0;
}

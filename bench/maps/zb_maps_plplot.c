/* PLplot peer for workload W9 (see WORKLOAD.md).
 * usage: zb_maps_plplot w9w|w9e ps|png OUTPREFIX
 *   ps (native psc driver) | png (pngcairo, 1200x850); one page in OUTPREFIX.FMT.
 * plmap draws PLplot's own data, the 1:110m Natural Earth shapefiles of libplplot-data:
 * coastlines ("globe") and borders ("cglobe"), about 20,000 points, lines only (PLplot
 * has no filled land of its own and no rivers). The projections are plmap's mapform
 * callbacks: Robinson (its table, interpolated linearly) and the spherical Lambert
 * conformal conic with standard parallels 40 and 60, centred on 12.5 E, 52.5 N. */
#include <math.h>
#include <plplot.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const double robin_x[19] = {1.0000, 0.9986, 0.9954, 0.9900, 0.9822, 0.9730, 0.9600,
                                   0.9427, 0.9216, 0.8962, 0.8679, 0.8350, 0.7986, 0.7597,
                                   0.7186, 0.6732, 0.6213, 0.5722, 0.5322};
static const double robin_y[19] = {0.0000, 0.0620, 0.1240, 0.1860, 0.2480, 0.3100, 0.3720,
                                   0.4340, 0.4958, 0.5571, 0.6176, 0.6769, 0.7346, 0.7903,
                                   0.8435, 0.8936, 0.9394, 0.9761, 1.0000};

static void robinson(PLINT n, PLFLT* x, PLFLT* y) {
  for (PLINT i = 0; i < n; i++) {
    double a = fabs(y[i]) / 5.0;
    int k = (int)a;
    if (k > 17) k = 17;
    const double t = a - k;
    const double px = robin_x[k] + t * (robin_x[k + 1] - robin_x[k]);
    const double py = robin_y[k] + t * (robin_y[k + 1] - robin_y[k]);
    x[i] = 0.8487 * px * x[i] * M_PI / 180.0;
    y[i] = 1.3523 * py * (y[i] < 0 ? -1.0 : 1.0);
  }
}

static double lam_n, lam_f, lam_rho0;
static void lambert(PLINT n, PLFLT* x, PLFLT* y) {
  for (PLINT i = 0; i < n; i++) {
    const double phi = y[i] * M_PI / 180.0;
    const double rho = lam_f / pow(tan(M_PI / 4 + phi / 2), lam_n);
    const double th = lam_n * (x[i] - 12.5) * M_PI / 180.0;
    x[i] = rho * sin(th);
    y[i] = lam_rho0 - rho * cos(th);
  }
}

static void lambert_setup(void) {
  const double p1 = 40.0 * M_PI / 180, p2 = 60.0 * M_PI / 180, p0 = 52.5 * M_PI / 180;
  lam_n = log(cos(p1) / cos(p2)) / log(tan(M_PI / 4 + p2 / 2) / tan(M_PI / 4 + p1 / 2));
  lam_f = cos(p1) * pow(tan(M_PI / 4 + p1 / 2), lam_n) / lam_n;
  lam_rho0 = lam_f / pow(tan(M_PI / 4 + p0 / 2), lam_n);
}

int main(int argc, char** argv) {
  char path[1024];
  if (argc != 4 || (strcmp(argv[1], "w9w") && strcmp(argv[1], "w9e")) ||
      (strcmp(argv[2], "ps") && strcmp(argv[2], "png"))) {
    fprintf(stderr, "usage: %s w9w|w9e ps|png OUTPREFIX\n", argv[0]);
    return 2;
  }
  snprintf(path, sizeof path, "%s.%s", argv[3], argv[2]);
  const int png = !strcmp(argv[2], "png");
  plsdev(png ? "pngcairo" : "psc");
  plsfnam(path);
  if (png)
    plspage(0., 0., 1200, 850, 0, 0);
  else
    plsetopt("drvopt", "text=1");
  plscolbg(255, 255, 255);
  plscol0(15, 0, 0, 0);
  plscol0(1, 90, 90, 80);
  plscol0(2, 180, 180, 180);
  plscol0(3, 160, 60, 40);
  plinit();
  pladv(0);
  const int world = !strcmp(argv[1], "w9w");
  void (*form)(PLINT, PLFLT*, PLFLT*) = world ? robinson : lambert;
  double lo0 = -180, lo1 = 180, la0 = -90, la1 = 90, step = 30;
  if (world) {
    plvpor(0.05, 0.95, 0.05, 0.9);
    plwind(-2.67, 2.67, -1.36, 1.36);
  } else {
    lambert_setup();
    lo0 = -15, lo1 = 40, la0 = 33, la1 = 72, step = 10;
    /* The window: the box of the projected outline, at equal scales. */
    double x0 = 1e9, x1 = -1e9, y0 = 1e9, y1 = -1e9;
    for (int i = 0; i <= 55; i++) {
      for (int j = 0; j <= 39; j++) {
        PLFLT x = lo0 + i, y = la0 + j;
        lambert(1, &x, &y);
        x0 = fmin(x0, x), x1 = fmax(x1, x), y0 = fmin(y0, y), y1 = fmax(y1, y);
      }
    }
    plvpor(0.05, 0.95, 0.05, 0.9);
    plvasp((y1 - y0) / (x1 - x0));
    plwind(x0, x1, y0, y1);
  }
  plcol0(2);
  plmeridians(form, step, step, lo0, lo1, la0, la1);
  plcol0(1);
  plmap(form, "globe", lo0, lo1, la0, la1);
  plcol0(3);
  plmap(form, "cglobe", lo0, lo1, la0, la1);
  plcol0(15);
  pllab("", "", world ? "W9 Robinson world" : "W9 Lambert Europe");
  plend();
  return 0;
}

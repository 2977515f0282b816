/* Click to zoom: a damped oscillation in a window; drag a rectangle with the left mouse
   button to zoom into it, press "r" to see the whole curve again, "q" or Escape to end.
   Build: cc zoom.c -lzorvel -lm */
#include <math.h>
#include <stdio.h>
#include <zorvel.h>

#define N 2000

static double xs[N], ys[N];

/* Labels every quarter of the range, rounded to a tidy step. */
static double step_of(double a, double e) {
  const double raw = (e - a) / 4.0;
  const double p = pow(10.0, floor(log10(raw)));
  const double m = raw / p;
  return (m < 1.5 ? 1.0 : m < 3.5 ? 2.0 : m < 7.5 ? 5.0 : 10.0) * p;
}

static void plot(double xa, double xe, double ya, double ye) {
  const double xs_step = step_of(xa, xe), ys_step = step_of(ya, ye);
  metafl("XWND");
  scrmod("REVE");
  winmod("HOLD");
  wintit("Zoom: drag a rectangle, r resets, q ends");
  zorini();
  name("t (s)", "X");
  name("Amplitude", "Y");
  titlin("Damped oscillation", 2);
  graf(xa, xe, ceil(xa / xs_step) * xs_step, xs_step, ya, ye, ceil(ya / ys_step) * ys_step, ys_step);
  title();
  grid(1, 1);
  color("BLUE");
  curve(xs, ys, N);
  color("FORE");
}

int main(void) {
  double xa = 0, xe = 20, ya = -1, ye = 1;
  int i;
  for (i = 0; i < N; ++i) {
    xs[i] = 20.0 * i / (N - 1);
    ys[i] = exp(-xs[i] / 6.0) * cos(3.0 * xs[i]);
  }
  for (;;) {
    int nx1, ny1, nx2, ny2, key;
    double x1, y1, x2, y2;
    plot(xa, xe, ya, ye);
    key = csrkey();
    if (key == 'q' || key == 27 || key < 0) {
      endgrf();
      zorfin();
      break;
    }
    if (key == 'r') {
      xa = 0, xe = 20, ya = -1, ye = 1;
    } else {
      csrrec(&nx1, &ny1, &nx2, &ny2);
      x1 = xinvrs(nx1), x2 = xinvrs(nx2);
      y1 = yinvrs(ny1), y2 = yinvrs(ny2);
      if (fabs(x2 - x1) > 1e-9 && fabs(y2 - y1) > 1e-9) {
        xa = fmin(x1, x2), xe = fmax(x1, x2);
        ya = fmin(y1, y2), ye = fmax(y1, y2);
      }
    }
    endgrf();
    zorfin();
  }
  return 0;
}

/* An animation: a travelling wave drawn frame by frame into one window. With bufmod "ON"
   a frame reaches the screen only at sendbf, so the window never shows half a frame.
   Build: cc animation.c -lzorvel -lm;  argument: the number of frames (default 200). */
#include <math.h>
#include <stdlib.h>
#include <zorvel.h>

#define N 400

int main(int argc, char **argv) {
  const int frames = argc > 1 ? atoi(argv[1]) : 200;
  double xs[N], ys[N];
  int f, i;
  metafl("XWND");
  scrmod("REVE");
  winmod(argc > 2 ? argv[2] : "STAN");
  wintit("Travelling wave");
  zorini();
  bufmod("ON", "SEND");
  for (f = 0; f < frames; ++f) {
    const double t = f * 0.05;
    for (i = 0; i < N; ++i) {
      xs[i] = 10.0 * i / (N - 1);
      ys[i] = sin(2.0 * xs[i] - 4.0 * t) * exp(-0.1 * xs[i]);
    }
    erase();
    graf(0, 10, 0, 2, -1.2, 1.2, -1.2, 0.4);
    color("RED");
    linwid(6);
    curve(xs, ys, N);
    linwid(1);
    color("FORE");
    endgrf();
    sendbf();
  }
  zorfin();
  return 0;
}

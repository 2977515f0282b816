// Benchmark: the raster workloads of the peer measurements as PNG of 1200 x 850 pixels,
// through the public API as a user writes them:
//   w1  one axis system (x 0..10, y -1..1, title "W1 big curve") and one curve of N
//       points x_i = i/N*10, y_i = sin(3 x_i) cos(17 x_i)
//   w4  one axis system (title "W4 markers") and 100,000 open circles of about 1.2 mm at
//       the points of the R2 sequence, x = 10 frac(0.5 + k a1), y = 2 frac(0.5 + k a2) - 1
// usage: raster_workloads w1|w4 exact|smooth OUTFILE [N]
//   exact   the default raster output (no anti-aliasing)
//   smooth  anti-aliased (imgopt "ON", "ANTI"), as the peers draw
// bench/run_png.sh times it as whole processes beside the peers and the limit program.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "zorvel.h"

namespace {

double frac(double v) { return v - std::floor(v); }

void start(const char* file, bool smooth, const char* title) {
  metafl("PNG");
  setfil(file);
  filmod("DELE");
  scrmod("REVERS");
  imgsiz(1200, 850);
  zorini();
  errmod("PROT", "OFF");
  imgopt(smooth ? "ON" : "OFF", "ANTI");
  name("X axis", "X");
  name("Y axis", "Y");
  titlin(title, 1);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: %s w1|w4 exact|smooth OUTFILE [N]\n", argv[0]);
    return 2;
  }
  const bool w1 = std::strcmp(argv[1], "w1") == 0;
  const bool smooth = std::strcmp(argv[2], "smooth") == 0;
  const long n = argc > 4 ? std::atol(argv[4]) : (w1 ? 1000000 : 100000);
  std::vector<double> x(static_cast<std::size_t>(n));
  std::vector<double> y(static_cast<std::size_t>(n));
  for (long i = 0; i < n; ++i) {
    const auto k = static_cast<std::size_t>(i);
    if (w1) {
      x[k] = static_cast<double>(i) / static_cast<double>(n) * 10.0;
      y[k] = std::sin(3.0 * x[k]) * std::cos(17.0 * x[k]);
    } else {
      x[k] = 10.0 * frac(0.5 + static_cast<double>(i) * 0.7548776662466927);
      y[k] = 2.0 * frac(0.5 + static_cast<double>(i) * 0.5698402909980532) - 1.0;
    }
  }
  start(argv[3], smooth, w1 ? "W1 big curve" : "W4 markers");
  graf(0, 10, 0, 2, -1, 1, -1, 0.5);
  title();
  if (w1) {
    curve(x.data(), y.data(), static_cast<int>(n));
  } else {
    color("BLUE");
    marker(1);   // open circle
    hsymbl(12);  // 1.2 mm
    incmrk(-1);  // symbols only
    curve(x.data(), y.data(), static_cast<int>(n));
  }
  endgrf();
  zorfin();
  return 0;
}

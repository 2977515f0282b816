// Benchmark: one polyline of N points (the W1 workload of the peer measurements:
// x_i = i/N*10, y_i = sin(3 x_i) cos(17 x_i)) written as PostScript, against a plain
// program that only formats and writes the same integers.
//
// usage: ps_polyline api|curve|curve_pdf|plain|distinct|svg|curve_svg|svg_plain|data
//                    OUTFILE [N]
//   api       the whole library: metafl("PS"), zorini, strtpt/connpt per point, zorfin
//   curve     the workload as a user writes it: an axis system with its title and the
//             points drawn by one call of curve
//   curve_pdf the same scene as PDF (metafl("PDF")): content streams through deflate
//   plain     the lower bound: the driver-unit integers of every point formatted with
//             std::to_chars into one buffer and written in blocks, nothing else
//   distinct  as plain, but a point whose integers repeat the previous point's is left
//             out, as the PostScript driver leaves it out (the file then holds about
//             the same numbers as the library's)
//   svg, curve_svg   api and curve with the device "SVG"
//   svg_plain the lower bound of svg: the same polyline elements of 100 points (five to
//             a line, 2 decimals by std::to_chars) written in blocks, nothing else
//   data      only the points (the floor under all)
// bench/run_ps.sh times the three modes as whole processes.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "zorvel.h"

namespace {

// The plot area on the A4 landscape page (plot units, 0.01 cm, y downwards).
constexpr double kLeft = 300.0;
constexpr double kWidth = 2400.0;   // x 0..10
constexpr double kMiddle = 1050.0;
constexpr double kHalfHeight = 800.0;  // y -1..1
// PostScript driver units per plot unit on an A4 landscape page at scale factor 1.
constexpr double kDeviceScale = 2.0;
// SVG pixels per plot unit (96 per inch), the page unturned.
constexpr double kSvgScale = 96.0 / 254.0;
// Points of one polyline element: the library's buffer, each piece restarting at the
// last point of the one before.
constexpr long kSvgPolyline = 100;

void w1_data(long n, std::vector<double>& x, std::vector<double>& y) {
  for (long i = 0; i < n; ++i) {
    const double xi = static_cast<double>(i) / static_cast<double>(n) * 10.0;
    x[static_cast<std::size_t>(i)] = xi;
    y[static_cast<std::size_t>(i)] = std::sin(3.0 * xi) * std::cos(17.0 * xi);
  }
}

double plot_x(double x) { return kLeft + x * (kWidth / 10.0); }
double plot_y(double y) { return kMiddle - y * kHalfHeight; }

int run_api(const char* device, const char* file, long n, const std::vector<double>& x,
            const std::vector<double>& y) {
  metafl(device);
  filmod("DELE");
  setfil(file);
  zorini();
  strtpt(plot_x(x[0]), plot_y(y[0]));
  for (long i = 1; i < n; ++i) {
    connpt(plot_x(x[static_cast<std::size_t>(i)]), plot_y(y[static_cast<std::size_t>(i)]));
  }
  zorfin();
  return 0;
}

// W1 as the peers draw it: one labelled axis system, one curve call.
int run_curve(const char* device, const char* file, long n, const std::vector<double>& x,
              const std::vector<double>& y) {
  metafl(device);
  filmod("DELE");
  setfil(file);
  zorini();
  errmod("PROT", "OFF");
  name("X axis", "X");
  name("Y axis", "Y");
  titlin("W1 big curve", 1);
  graf(0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5);
  title();
  curve(x.data(), y.data(), static_cast<int>(n));
  endgrf();
  zorfin();
  return 0;
}

// The same integers as the PostScript body (a landscape page is turned: the device x is
// the plot y), each pair followed by " d", with a line break every few pairs.
int run_plain(const char* file, long n, const std::vector<double>& x, const std::vector<double>& y,
              bool distinct) {
  std::FILE* f = std::fopen(file, "wb");
  if (f == nullptr) {
    std::perror(file);
    return 1;
  }
  constexpr std::size_t kBlock = 1 << 16;
  std::vector<char> buf(kBlock + 64);
  std::size_t len = 0;
  int last_x = -1;
  int last_y = -1;
  long pairs = 0;
  for (long i = 0; i < n; ++i) {
    const auto k = static_cast<std::size_t>(i);
    const int dx = static_cast<int>(kDeviceScale * plot_y(y[k]) + 0.5);
    const int dy = static_cast<int>(kDeviceScale * plot_x(x[k]) + 0.5);
    if (distinct && dx == last_x && dy == last_y) {
      continue;
    }
    last_x = dx;
    last_y = dy;
    char* p = buf.data() + len;
    p = std::to_chars(p, p + 16, dx).ptr;
    *p++ = ' ';
    p = std::to_chars(p, p + 16, dy).ptr;
    std::memcpy(p, ++pairs % 6 == 0 ? " d\n" : " d ", 3);
    len = static_cast<std::size_t>(p + 3 - buf.data());
    if (len >= kBlock) {
      if (std::fwrite(buf.data(), 1, len, f) != len) {
        std::perror(file);
        return 1;
      }
      len = 0;
    }
  }
  if (std::fwrite(buf.data(), 1, len, f) != len || std::fclose(f) != 0) {
    std::perror(file);
    return 1;
  }
  return 0;
}

// The body of the SVG file that svg writes: polyline elements of 100 points, the first
// of each piece repeating the last of the one before.
int run_svg_plain(const char* file, long n, const std::vector<double>& x,
                  const std::vector<double>& y) {
  std::FILE* f = std::fopen(file, "wb");
  if (f == nullptr) {
    std::perror(file);
    return 1;
  }
  constexpr std::size_t kBlock = 1 << 16;
  std::vector<char> buf(kBlock + 256);
  std::size_t len = 0;
  const auto flush = [&]() {
    const bool ok = std::fwrite(buf.data(), 1, len, f) == len;
    len = 0;
    return ok;
  };
  for (long start = 0; start + 1 < n; start += kSvgPolyline - 1) {
    const long end = std::min(n, start + kSvgPolyline);
    std::memcpy(buf.data() + len, "<polyline points=\"\n", 19);
    len += 19;
    for (long i = start; i < end; ++i) {
      const auto k = static_cast<std::size_t>(i);
      char* p = buf.data() + len;
      *p++ = ' ';
      p = std::to_chars(p, p + 32, kSvgScale * plot_x(x[k]), std::chars_format::fixed, 2).ptr;
      *p++ = ',';
      *p++ = ' ';
      p = std::to_chars(p, p + 32, kSvgScale * plot_y(y[k]), std::chars_format::fixed, 2).ptr;
      if ((i - start + 1) % 5 == 0 && i + 1 < end) {
        *p++ = '\n';
      }
      len = static_cast<std::size_t>(p - buf.data());
      if (len >= kBlock && !flush()) {
        std::perror(file);
        return 1;
      }
    }
    std::memcpy(buf.data() + len, "\"/>\n", 4);
    len += 4;
  }
  if (!flush() || std::fclose(f) != 0) {
    std::perror(file);
    return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr,
                 "usage: %s api|curve|curve_pdf|plain|distinct|svg|curve_svg|svg_plain|data "
                 "OUTFILE [N]\n",
                 argv[0]);
    return 2;
  }
  const std::string mode = argv[1];
  const long n = argc > 3 ? std::atol(argv[3]) : 1000000;
  if (n < 2) {
    std::fprintf(stderr, "N must be at least 2\n");
    return 2;
  }
  std::vector<double> x(static_cast<std::size_t>(n));
  std::vector<double> y(static_cast<std::size_t>(n));
  w1_data(n, x, y);
  if (mode == "api" || mode == "svg") {
    return run_api(mode == "api" ? "PS" : "SVG", argv[2], n, x, y);
  }
  if (mode == "curve" || mode == "curve_pdf" || mode == "curve_svg") {
    const char* device = mode == "curve" ? "PS" : mode == "curve_pdf" ? "PDF" : "SVG";
    return run_curve(device, argv[2], n, x, y);
  }
  if (mode == "svg_plain") {
    return run_svg_plain(argv[2], n, x, y);
  }
  if (mode == "plain" || mode == "distinct") {
    return run_plain(argv[2], n, x, y, mode == "distinct");
  }
  if (mode == "data") {
    double sum = 0.0;  // keeps the points observable, so that they are computed
    for (double v : y) {
      sum += v;
    }
    std::printf("%.6f\n", sum);
    return 0;
  }
  std::fprintf(stderr, "unknown mode %s\n", mode.c_str());
  return 2;
}

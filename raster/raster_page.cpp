#include "raster/raster_page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace zorvel {
namespace {

// sRGB <-> linear light, 16 bits linear. The encoding table is indexed by the top 12 bits.
struct Gamma {
  std::array<std::uint16_t, 256> to_linear{};
  std::array<std::uint8_t, 4096> to_srgb{};
  Gamma() {
    for (int i = 0; i < 256; ++i) {
      const double c = i / 255.0;
      const double l = c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
      to_linear[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(std::lround(l * 65535.0));
    }
    for (int i = 0; i < 4096; ++i) {
      const double l = (i + 0.5) / 4096.0;
      const double c = l <= 0.0031308 ? l * 12.92 : 1.055 * std::pow(l, 1.0 / 2.4) - 0.055;
      to_srgb[static_cast<std::size_t>(i)] =
          static_cast<std::uint8_t>(std::clamp(std::lround(c * 255.0), 0L, 255L));
    }
    to_srgb[0] = 0;
    to_srgb[4095] = 255;
  }
};

const Gamma& gamma() {
  static const Gamma g;
  return g;
}

// Integral of the tent max(0, 1 - |u|) from minus infinity to v.
inline double tent_integral(double v) {
  if (v <= -1.0) {
    return 0.0;
  }
  if (v <= 0.0) {
    return 0.5 * (1.0 + v) * (1.0 + v);
  }
  if (v < 1.0) {
    return 1.0 - 0.5 * (1.0 - v) * (1.0 - v);
  }
  return 1.0;
}

// Below this accumulated coverage a pixel counts as untouched (rounding noise of the sums).
constexpr float kNoCoverage = 1.0F / 1024.0F;

// Non-anti-aliased edges are moved this far right and down, so that an edge through pixel
// centres covers the pixel on one side by a little more than half and the other by less.
constexpr double kTieShift = 1.0 / 256.0;

// Coordinates beyond this are as good as infinitely far for a page of at most 20,000
// pixels a side, and keep every product below overflow.
constexpr double kFar = 1e12;

}  // namespace

bool RasterPage::allocate(int w, int h, Rgb background) {
  release();
  if (w < 1 || h < 1 || w > kMaxRasterSide || h > kMaxRasterSide ||
      static_cast<long long>(w) * h > kMaxRasterPixels) {
    return false;
  }
  try {
    rgb_.resize(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 3);
  } catch (...) {
    release();
    return false;
  }
  w_ = w;
  h_ = h;
  clear(background);
  return true;
}

void RasterPage::release() {
  rgb_ = {};
  acc_ = {};
  lo_ = {};
  hi_ = {};
  w_ = 0;
  h_ = 0;
  row_lo_ = 0;
  row_hi_ = -1;
}

PixelView RasterPage::view() const { return {rgb_.data(), w_, h_, stride()}; }

void RasterPage::clear(Rgb c) {
  if (empty()) {
    return;
  }
  std::uint8_t* p = rgb_.data();
  const std::uint8_t px[3] = {static_cast<std::uint8_t>(c.r), static_cast<std::uint8_t>(c.g),
                              static_cast<std::uint8_t>(c.b)};
  // One row by pixels, the others as copies of it.
  for (int i = 0; i < w_; ++i) {
    std::memcpy(p + 3 * static_cast<std::size_t>(i), px, 3);
  }
  for (int j = 1; j < h_; ++j) {
    std::memcpy(row(j), p, stride());
  }
}

void RasterPage::set_colour(Rgb c) {
  colour_ = {std::clamp(c.r, 0, 255), std::clamp(c.g, 0, 255), std::clamp(c.b, 0, 255),
             std::clamp(c.a, 0, 255)};
  const Gamma& g = gamma();
  colour_linear_[0] = g.to_linear[static_cast<std::size_t>(colour_.r)];
  colour_linear_[1] = g.to_linear[static_cast<std::size_t>(colour_.g)];
  colour_linear_[2] = g.to_linear[static_cast<std::size_t>(colour_.b)];
}

inline void RasterPage::set_pixel(std::uint8_t* p) {
  p[0] = static_cast<std::uint8_t>(colour_.r);
  p[1] = static_cast<std::uint8_t>(colour_.g);
  p[2] = static_cast<std::uint8_t>(colour_.b);
}

// Blends the current colour over the pixel at opacity alpha / 65535, in linear light.
inline void RasterPage::blend(std::uint8_t* p, unsigned alpha) {
  const Gamma& g = gamma();
  const unsigned rest = 65535U - alpha;
  for (int k = 0; k < 3; ++k) {
    const unsigned dst = g.to_linear[p[k]];
    const unsigned mixed = (colour_linear_[k] * alpha + dst * rest) / 65535U;
    p[k] = g.to_srgb[mixed >> 4];
  }
}

void RasterPage::plot(long long x, long long y) {
  if (x < 0 || y < 0 || x >= w_ || y >= h_) {
    return;
  }
  std::uint8_t* p = row(static_cast<int>(y)) + 3 * static_cast<std::size_t>(x);
  if (colour_.a == 255) {
    set_pixel(p);
  } else {
    blend(p, static_cast<unsigned>(colour_.a) * 257U);
  }
}

void RasterPage::line(long long x0, long long y0, long long x1, long long y1) {
  if (empty()) {
    return;
  }
  // Cut to the page widened by a pixel (Liang-Barsky), then step between the rounded
  // ends: the loop never runs longer than the page is wide and high. Most lines lie on
  // the page and need no cutting.
  if (x0 >= 0 && y0 >= 0 && x1 >= 0 && y1 >= 0 && x0 < w_ && x1 < w_ && y0 < h_ && y1 < h_) {
    step_line(x0, y0, x1, y1);
    return;
  }
  double t0 = 0.0;
  double t1 = 1.0;
  const double fx0 = static_cast<double>(x0);
  const double fy0 = static_cast<double>(y0);
  const double dx = static_cast<double>(x1) - fx0;
  const double dy = static_cast<double>(y1) - fy0;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {fx0 + 1.0, w_ - fx0, fy0 + 1.0, h_ - fy0};
  for (int k = 0; k < 4; ++k) {
    if (p[k] == 0.0) {
      if (q[k] < 0.0) {
        return;
      }
      continue;
    }
    const double r = q[k] / p[k];
    if (p[k] < 0.0) {
      t0 = std::max(t0, r);
    } else {
      t1 = std::min(t1, r);
    }
    if (t0 > t1) {
      return;
    }
  }
  long long ax = t0 > 0.0 ? std::llround(fx0 + t0 * dx) : x0;
  long long ay = t0 > 0.0 ? std::llround(fy0 + t0 * dy) : y0;
  const long long bx = t1 < 1.0 ? std::llround(fx0 + t1 * dx) : x1;
  const long long by = t1 < 1.0 ? std::llround(fy0 + t1 * dy) : y1;

  step_line(ax, ay, bx, by);
}

void RasterPage::step_line(long long ax, long long ay, long long bx, long long by) {
  const long long sx = ax < bx ? 1 : -1;
  const long long sy = ay < by ? 1 : -1;
  const long long adx = ax < bx ? bx - ax : ax - bx;
  const long long ady = -(ay < by ? by - ay : ay - by);
  long long err = adx + ady;
  const bool opaque = colour_.a == 255;
  for (;;) {
    if (ax >= 0 && ay >= 0 && ax < w_ && ay < h_) {
      std::uint8_t* px = row(static_cast<int>(ay)) + 3 * static_cast<std::size_t>(ax);
      if (opaque) {
        set_pixel(px);
      } else {
        blend(px, static_cast<unsigned>(colour_.a) * 257U);
      }
    }
    if (ax == bx && ay == by) {
      break;
    }
    const long long e2 = 2 * err;
    if (e2 >= ady) {
      err += ady;
      ax += sx;
    }
    if (e2 <= adx) {
      err += adx;
      ay += sy;
    }
  }
}

// Coverage
// ========
//
// An edge crossing row j from height ya to yb (a part dy of the row's height, signed by
// its direction) covers, of each pixel to its right, the area between it and the pixel's
// right side. Cell c of the row receives the difference between the covered parts of
// pixels c and c - 1, so that the running sum along the row is the covered area:
//
//     a[c] += dy * mean over the edge's x in [xl, xr] of tent(x - c),  tent(u) = max(0, 1 - |u|)
//
// in coordinates where pixel c spans [c, c + 1). The mean is (T(xr - c) - T(xl - c)) /
// (xr - xl) with T the tent's integral; cells from floor(xl) to floor(xr) + 1 receive
// something, and every cell wholly between receives dy / (xr - xl).

void RasterPage::deposit(int j, double xa, double xb, float d) {
  const double xl = std::min(xa, xb);
  const double xr = std::max(xa, xb);
  float* a = acc_.data() + static_cast<std::size_t>(j) * static_cast<std::size_t>(w_ + 2);
  const int c0 = static_cast<int>(xl);  // xl >= 0
  int c1 = 0;
  if (xr < c0 + 1.0) {
    // Within one column the tent's share is linear: the edge's middle decides.
    const double f = (xl + xr) * 0.5 - c0;
    a[c0] += static_cast<float>(d * (1.0 - f));
    a[c0 + 1] += static_cast<float>(d * f);
    c1 = c0 + 1;
  } else {
    c1 = static_cast<int>(xr) + 1;
    const double inv = d / (xr - xl);
    // Cells wholly between the ends take inv each; the few at the ends the tent's share.
    const int m0 = static_cast<int>(std::ceil(xl + 1.0));
    const int m1 = static_cast<int>(std::floor(xr - 1.0));
    int c = c0;
    for (; c <= c1 && c < m0; ++c) {
      a[c] += static_cast<float>(inv * (tent_integral(xr - c) - tent_integral(xl - c)));
    }
    const auto each = static_cast<float>(inv);
    for (; c <= m1; ++c) {
      a[c] += each;
    }
    for (; c <= c1; ++c) {
      a[c] += static_cast<float>(inv * (tent_integral(xr - c) - tent_integral(xl - c)));
    }
  }
  touch(j, c0, c1);
}

// The coverage buffer, allocated on first use; false when memory is short (nothing can
// be filled then, one-pixel lines still draw).
bool RasterPage::coverage_buffer() {
  if (!acc_.empty()) {
    return true;
  }
  try {
    acc_.assign(static_cast<std::size_t>(w_ + 2) * static_cast<std::size_t>(h_), 0.0F);
    lo_.assign(static_cast<std::size_t>(h_), w_ + 2);
    hi_.assign(static_cast<std::size_t>(h_), -1);
  } catch (...) {
    acc_ = {};
    return false;
  }
  row_lo_ = h_;
  row_hi_ = -1;
  return true;
}

void RasterPage::edge(double x0, double y0, double x1, double y1) {
  if (empty() || !(std::isfinite(x0) && std::isfinite(y0) && std::isfinite(x1) &&
                   std::isfinite(y1))) {
    return;
  }
  if (!coverage_buffer()) {
    return;
  }
  // Pixel c spans [c, c + 1) from here on.
  const double shift = antialias_ ? 0.5 : 0.5 + kTieShift;
  x0 = std::clamp(x0, -kFar, kFar) + shift;
  x1 = std::clamp(x1, -kFar, kFar) + shift;
  y0 = std::clamp(y0, -kFar, kFar) + shift;
  y1 = std::clamp(y1, -kFar, kFar) + shift;
  if (y0 == y1) {
    return;
  }
  float dir = 1.0F;
  if (y0 > y1) {
    std::swap(x0, x1);
    std::swap(y0, y1);
    dir = -1.0F;
  }
  if (y1 <= 0.0 || y0 >= h_) {
    return;
  }
  const double dxdy = (x1 - x0) / (y1 - y0);
  if (antialias_) {
    cover(x0, y0, y1, dxdy, dir);
  } else {
    sample(x0, y0, y1, dxdy, dir);
  }
}

// Exact area coverage: the edge in pieces left of, on and right of the page. A piece on
// the left covers every pixel to its right as an edge at x = 0 would; one on the right
// covers nothing on the page, yet the rows it crosses must be swept to the page's right
// side.
void RasterPage::cover(double x0, double y0, double y1, double dxdy, float dir) {
  const double w = w_;
  const double xend = x0 + (y1 - y0) * dxdy;
  if (x0 >= 0.0 && xend >= 0.0 && x0 <= w && xend <= w) {
    // Wholly on the page across: row by row.
    const int ja = static_cast<int>(std::clamp(std::floor(y0), 0.0, static_cast<double>(h_)));
    const int jb = static_cast<int>(std::clamp(std::ceil(y1), 0.0, static_cast<double>(h_))) - 1;
    for (int j = ja; j <= jb; ++j) {
      const double ya = std::max(y0, static_cast<double>(j));
      const double yb = std::min(y1, static_cast<double>(j) + 1.0);
      if (yb > ya) {
        deposit(j, std::clamp(x0 + (ya - y0) * dxdy, 0.0, w),
                std::clamp(x0 + (yb - y0) * dxdy, 0.0, w), static_cast<float>(dir * (yb - ya)));
      }
    }
    return;
  }
  double cut[4] = {y0, y1, y1, y1};
  int ncut = 1;
  if (dxdy != 0.0) {
    const double ya = y0 + (0.0 - x0) / dxdy;
    const double yb = y0 + (w - x0) / dxdy;
    const double c1 = std::min(ya, yb);
    const double c2 = std::max(ya, yb);
    if (c1 > y0 && c1 < y1) {
      cut[ncut++] = c1;
    }
    if (c2 > y0 && c2 < y1) {
      cut[ncut++] = c2;
    }
  }
  cut[ncut] = y1;
  for (int k = 0; k < ncut; ++k) {
    const double pa = cut[k];
    const double pb = cut[k + 1];
    if (pb <= pa) {
      continue;
    }
    const double xmid = x0 + ((pa + pb) * 0.5 - y0) * dxdy;
    const int ja = static_cast<int>(std::clamp(std::floor(pa), 0.0, static_cast<double>(h_)));
    const int jb = static_cast<int>(std::clamp(std::ceil(pb), 0.0, static_cast<double>(h_))) - 1;
    for (int j = ja; j <= jb; ++j) {
      const double ya = std::max(pa, static_cast<double>(j));
      const double yb = std::min(pb, static_cast<double>(j) + 1.0);
      if (yb <= ya) {
        continue;
      }
      const auto d = static_cast<float>(dir * (yb - ya));
      if (xmid >= w) {
        touch(j, w_, w_ + 1);
        continue;
      }
      double xa = 0.0;
      double xb = 0.0;
      if (xmid > 0.0) {
        xa = std::clamp(x0 + (ya - y0) * dxdy, 0.0, w);
        xb = std::clamp(x0 + (yb - y0) * dxdy, 0.0, w);
      }
      deposit(j, xa, xb, d);
    }
  }
}

// Point sampling at pixel centres: the rows whose centres the edge crosses (half-open,
// so that an edge ending on a centre counts once) change the winding from the first
// pixel whose centre lies right of the crossing.
void RasterPage::sample(double x0, double y0, double y1, double dxdy, float dir) {
  const double h = h_;
  const int ja = static_cast<int>(std::clamp(std::ceil(y0 - 0.5), 0.0, h));
  const int jb = static_cast<int>(std::clamp(std::ceil(y1 - 0.5), 0.0, h)) - 1;
  const double w = w_;
  for (int j = ja; j <= jb; ++j) {
    const double x = std::clamp(x0 + (j + 0.5 - y0) * dxdy, -1.0, w + 1.0);
    const int c = static_cast<int>(std::clamp(std::ceil(x - 0.5), 0.0, w));
    acc_[static_cast<std::size_t>(j) * static_cast<std::size_t>(w_ + 2) + static_cast<std::size_t>(c)] += dir;
    touch(j, c, c == w_ ? w_ + 1 : c);
  }
}

inline void RasterPage::touch(int j, int c0, int c1) {
  const auto jj = static_cast<std::size_t>(j);
  lo_[jj] = std::min(lo_[jj], c0);
  hi_[jj] = std::max(hi_[jj], c1);
  row_lo_ = std::min(row_lo_, j);
  row_hi_ = std::max(row_hi_, j);
}

void RasterPage::polygon(const double* xs, const double* ys, std::size_t n) {
  if (n < 3) {
    return;
  }
  for (std::size_t i = 0, k = n - 1; i < n; k = i++) {
    edge(xs[k], ys[k], xs[i], ys[i]);
  }
}

void RasterPage::paint(FillRule rule) { composite(rule, true); }

void RasterPage::paint_lines() { composite(FillRule::NonZero, false); }

// Composites the coverage buffer: a running sum along each row (edges), or each cell's
// own value (hairlines).
void RasterPage::composite(FillRule rule, bool summed) {
  if (acc_.empty() || row_hi_ < row_lo_) {
    return;
  }
  const bool even_odd = rule == FillRule::EvenOdd;
  const float opacity = static_cast<float>(colour_.a) / 255.0F;
  const bool opaque = colour_.a == 255;
  for (int j = row_lo_; j <= row_hi_; ++j) {
    const auto jj = static_cast<std::size_t>(j);
    const int from = lo_[jj];
    const int to = hi_[jj];
    if (to < from) {
      continue;
    }
    lo_[jj] = w_ + 2;
    hi_[jj] = -1;
    float* a = acc_.data() + jj * static_cast<std::size_t>(w_ + 2);
    std::uint8_t* px = row(j) + 3 * static_cast<std::size_t>(from);
    float sum = 0.0F;
    const int last = std::min(to, w_ - 1);
    for (int c = from; c <= last; ++c, px += 3) {
      if (!summed && a[c] == 0.0F) {
        continue;  // untouched by the hairlines
      }
      sum = summed ? sum + a[c] : a[c];
      a[c] = 0.0F;
      float cover = std::fabs(sum);
      if (even_odd) {
        cover = std::fmod(cover, 2.0F);
        if (cover > 1.0F) {
          cover = 2.0F - cover;
        }
      } else if (cover > 1.0F) {
        cover = 1.0F;
      }
      if (cover < kNoCoverage) {
        continue;
      }
      if (!antialias_) {
        if (cover >= 0.5F) {
          if (opaque) {
            set_pixel(px);
          } else {
            blend(px, static_cast<unsigned>(colour_.a) * 257U);
          }
        }
      } else if (opaque && cover >= 1.0F - kNoCoverage) {
        set_pixel(px);
      } else {
        blend(px, static_cast<unsigned>(cover * opacity * 65535.0F + 0.5F));
      }
    }
    for (int c = std::max(from, last + 1); c <= to; ++c) {
      a[c] = 0.0F;
    }
  }
  row_lo_ = h_;
  row_hi_ = -1;
}

// Hairlines
// =========

void RasterPage::hairline(double x0, double y0, double x1, double y1, double width) {
  if (empty() || !(std::isfinite(x0) && std::isfinite(y0) && std::isfinite(x1) &&
                   std::isfinite(y1)) || !coverage_buffer()) {
    return;
  }
  const double r = std::max(0.5, width * 0.5);
  const double reach = r + 0.5;  // centres farther from the segment are not covered
  const double reach2 = reach * reach;
  // Cut to the page widened by the reach (Liang-Barsky): every loop below stays within
  // the page.
  double t0 = 0.0;
  double t1 = 1.0;
  const double dx = x1 - x0;
  const double dy = y1 - y0;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {x0 + reach, w_ - 1 + reach - x0, y0 + reach, h_ - 1 + reach - y0};
  const double xlo = -reach;
  const double xhi = w_ - 1 + reach;
  const double ylo = -reach;
  const double yhi = h_ - 1 + reach;
  const bool inside = std::min(x0, x1) >= xlo && std::max(x0, x1) <= xhi &&
                      std::min(y0, y1) >= ylo && std::max(y0, y1) <= yhi;
  for (int k = 0; k < 4 && !inside; ++k) {
    if (p[k] == 0.0) {
      if (q[k] < 0.0) {
        return;
      }
      continue;
    }
    const double t = q[k] / p[k];
    if (p[k] < 0.0) {
      t0 = std::max(t0, t);
    } else {
      t1 = std::min(t1, t);
    }
    if (t0 > t1) {
      return;
    }
  }
  const double ax = x0 + t0 * dx;
  const double ay = y0 + t0 * dy;
  const double bx = x0 + t1 * dx;
  const double by = y0 + t1 * dy;
  const double ux = bx - ax;
  const double uy = by - ay;
  const double len2 = ux * ux + uy * uy;
  const bool along_x = std::fabs(ux) >= std::fabs(uy);
  // Across the major axis, the pixels within reach of the line at each step.
  const double len = std::sqrt(len2);
  const double major = along_x ? std::fabs(ux) : std::fabs(uy);
  const double span = major > 0.0 ? reach * len / major : reach;
  const double lo = along_x ? std::min(ax, bx) : std::min(ay, by);
  const double hi = along_x ? std::max(ax, bx) : std::max(ay, by);
  const double limit_major = along_x ? w_ - 1 : h_ - 1;
  const double limit_minor = along_x ? h_ - 1 : w_ - 1;
  const int m0 = static_cast<int>(std::clamp(std::ceil(lo - reach), 0.0, limit_major));
  const int m1 = static_cast<int>(std::clamp(std::floor(hi + reach), -1.0, limit_major));
  const double slope = major > 0.0 ? (along_x ? uy / ux : ux / uy) : 0.0;
  const double base_major = along_x ? ax : ay;
  const double base_minor = along_x ? ay : ax;
  const double inv = len2 > 0.0 ? 1.0 / len2 : 0.0;
  const std::size_t row = static_cast<std::size_t>(w_ + 2);
  // Raw pointers: the writes below cannot then be taken to change the vectors themselves.
  float* const acc = acc_.data();
  int* const lo_col = lo_.data();
  int* const hi_col = hi_.data();
  int first_row = row_lo_;
  int last_row = row_hi_;
  for (int m = m0; m <= m1; ++m) {
    const double at = std::clamp(static_cast<double>(m), lo, hi);
    const double centre = base_minor + (at - base_major) * slope;
    const int n0 = static_cast<int>(std::clamp(std::ceil(centre - span), 0.0, limit_minor));
    const int n1 = static_cast<int>(std::clamp(std::floor(centre + span), -1.0, limit_minor));
    for (int n = n0; n <= n1; ++n) {
      const int i = along_x ? m : n;
      const int j = along_x ? n : m;
      const double qx = i - ax;
      const double qy = j - ay;
      const double t = std::clamp((qx * ux + qy * uy) * inv, 0.0, 1.0);
      const double ex = t * ux - qx;
      const double ey = t * uy - qy;
      const double d2 = ex * ex + ey * ey;
      if (d2 >= reach2) {
        continue;
      }
      const auto cover = static_cast<float>(std::min(reach - std::sqrt(d2), 1.0));
      float& cell = acc[static_cast<std::size_t>(j) * row + static_cast<std::size_t>(i)];
      cell = std::max(cell, cover);
      lo_col[j] = std::min(lo_col[j], i);
      hi_col[j] = std::max(hi_col[j], i);
      first_row = std::min(first_row, j);
      last_row = std::max(last_row, j);
    }
  }
  row_lo_ = first_row;
  row_hi_ = last_row;
}

// Images
// ======

void RasterPage::image(const Image& img) {
  if (empty() || img.pixels == nullptr || img.width < 1 || img.height < 1 ||
      (img.channels != 3 && img.channels != 4)) {
    return;
  }
  const double x0 = std::min(img.x0, img.x1);
  const double x1 = std::max(img.x0, img.x1);
  const double y0 = std::min(img.y0, img.y1);
  const double y1 = std::max(img.y0, img.y1);
  if (!(x1 > x0 && y1 > y0) || !std::isfinite(x0 + x1 + y0 + y1)) {
    return;
  }
  // Page pixels whose centres lie inside the rectangle (left and top sides included).
  const int i0 = static_cast<int>(std::clamp(std::ceil(x0), 0.0, static_cast<double>(w_)));
  const int i1 = static_cast<int>(std::clamp(std::ceil(x1), 0.0, static_cast<double>(w_)));
  const int j0 = static_cast<int>(std::clamp(std::ceil(y0), 0.0, static_cast<double>(h_)));
  const int j1 = static_cast<int>(std::clamp(std::ceil(y1), 0.0, static_cast<double>(h_)));
  const bool flip_x = img.x0 > img.x1;
  const bool flip_y = img.y0 > img.y1;
  const double sx = img.width / (x1 - x0);
  const double sy = img.height / (y1 - y0);
  const Rgb keep = colour_;
  for (int j = j0; j < j1; ++j) {
    int v = static_cast<int>((j - y0) * sy);
    v = std::clamp(v, 0, img.height - 1);
    if (flip_y) {
      v = img.height - 1 - v;
    }
    const std::uint8_t* src = img.pixels + static_cast<std::size_t>(v) * img.stride;
    std::uint8_t* dst = row(j) + 3 * static_cast<std::size_t>(i0);
    for (int i = i0; i < i1; ++i, dst += 3) {
      int u = static_cast<int>((i - x0) * sx);
      u = std::clamp(u, 0, img.width - 1);
      if (flip_x) {
        u = img.width - 1 - u;
      }
      const std::uint8_t* s = src + static_cast<std::size_t>(u) * img.channels;
      const int alpha = img.channels == 4 ? s[3] : 255;
      if (alpha == 255) {
        std::memcpy(dst, s, 3);
      } else if (alpha > 0) {
        set_colour({s[0], s[1], s[2], 255});
        blend(dst, static_cast<unsigned>(alpha) * 257U);
      }
    }
  }
  set_colour(keep);
}

void PageEdges::polygon(const double* xs, const double* ys, int n) {
  double area = 0.0;
  for (int i = 0, k = n - 1; i < n; k = i++) {
    area += xs[k] * ys[i] - xs[i] * ys[k];
  }
  if (area > 0.0) {
    for (int i = 0, k = n - 1; i < n; k = i++) {
      page_.edge(xs[i], ys[i], xs[k], ys[k]);
    }
  } else {
    for (int i = 0, k = n - 1; i < n; k = i++) {
      page_.edge(xs[k], ys[k], xs[i], ys[i]);
    }
  }
}

}  // namespace zorvel

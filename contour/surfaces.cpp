// Surfaces in the 3D axis system: meshes with hidden lines (surfce, surmat, surfun),
// shaded surfaces (surshd, surtri) and their settings (surclr, suropt).
//
// Hidden lines. The cells of the grid are drawn front to back: a cell's rank is the
// number of grid columns plus grid rows that lie between it and the eye (for the
// orthographic projection, the eye at infinity along the view direction). A ray from
// the eye to a point of a cell crosses only columns and rows nearer to the eye, so every
// cell that can hide part of a cell has a smaller rank and is drawn before it. Two
// horizons keep what the drawn cells cover on the page: the highest and the lowest page
// point over each page x, piecewise linear with as many pieces as the drawn edges make
// (no fixed work area). A new edge is visible where it runs above the upper horizon or
// below the lower one; then its cell's edges raise and lower the horizons.
//
// This is exact as long as the drawn cells cover, over every page x, the whole band
// between the horizons, i.e. their projection has no holes in a vertical line of the
// page. Drawing in rank order keeps the drawn part connected and growing from the cell
// nearest to the eye, which holds for the usual views of a surface from outside the
// grid (and, with a view up of 0, for views from above it); a surface that folds so
// that a column of the page crosses the drawn part twice with a gap between may hide
// lines seen through the gap.

#include <algorithm>
#include <cmath>
#include <limits>

#include "api_decl.h"
#include "axes3d/axes3d.h"
#include "contour/bands.h"
#include "contour/colour_scale.h"
#include "contour/surfaces.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// Most grid points a surface takes (each costs some 80 bytes of work space); more give
// warning 53.
constexpr long long kMaxGridPoints = 10000000LL;
// Most grid points of a mesh with hidden lines.
constexpr long long kMaxHiddenMeshPoints = 1000000LL;
// Page distances below this (plot units) count as equal when lines meet the horizons.
constexpr double kTouch = 1e-7;

// The grid's vertices on the page (SurfaceState::points) and their user z (values), from
// a function giving the user point (x, y, z) of vertex (i, j).
template <class Point>
void project_grid(GlobalBlock& g, int nx, int ny, Point user) {
  SurfaceState& s = g.contours.surface;
  const auto n = static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny);
  s.points.resize(n);
  s.values.resize(n);
  s.xs.resize(static_cast<std::size_t>(nx));
  s.ys.resize(static_cast<std::size_t>(ny));
  for (int j = 0; j < ny; ++j) {
    for (int i = 0; i < nx; ++i) {
      const std::array<double, 3> u = user(i, j);
      const auto k = static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                     static_cast<std::size_t>(i);
      const std::array<double, 3> b = user_to_box(g, u[0], u[1], u[2]);
      s.points[k] = project_box(g, b);
      s.values[k] = u[2];
      if (j == 0) {
        s.xs[static_cast<std::size_t>(i)] = b[0];
      }
      if (i == 0) {
        s.ys[static_cast<std::size_t>(j)] = b[1];
      }
    }
  }
}

// Rank of each cell 0 .. n-2 along one axis of grid lines c[0 .. n): the number of cells
// between it and the eye at e (orthographic: dir, the view's component along the axis,
// puts the eye beyond the end it points away from), into rank.
void axis_ranks(const std::vector<double>& c, double e, bool ortho, double dir,
                std::vector<double>& rank) {
  const auto n = static_cast<long long>(c.size());
  const bool rising = c[static_cast<std::size_t>(n - 1)] >= c[0];
  // The eye's cell in the rising order: the number of lines at or below it, less one.
  long long k = 0;
  if (ortho) {
    k = dir == 0.0 ? -2 : (dir > 0.0 ? -1 : n - 1);
  } else {
    k = -1;
    for (long long m = 0; m < n; ++m) {
      const double v = c[static_cast<std::size_t>(rising ? m : n - 1 - m)];
      if (v <= e) {
        k = m;
      }
    }
  }
  rank.resize(static_cast<std::size_t>(n - 1));
  for (long long i = 0; i < n - 1; ++i) {
    const long long r = rising ? i : n - 2 - i;
    rank[static_cast<std::size_t>(i)] =
        k == -2 ? 0.0 : static_cast<double>(r >= k ? r - k : k - r);
  }
}

// Cells in drawing order, nearest first, into s.order.
void order_cells(GlobalBlock& g, int nx, int ny) {
  SurfaceState& s = g.contours.surface;
  const View3dState& v = g.view3d;
  const bool ortho = v.projection != 0;
  std::vector<double>& rx = s.keys;
  std::vector<double>& ry = s.ranks;
  axis_ranks(s.xs, v.eye[0], ortho, v.focus_box[0] - v.eye[0], rx);
  axis_ranks(s.ys, v.eye[1], ortho, v.focus_box[1] - v.eye[1], ry);
  // Counting sort by rank sum.
  const auto cx = static_cast<std::size_t>(nx - 1);
  const auto cy = static_cast<std::size_t>(ny - 1);
  const std::size_t buckets = cx + cy + 2;
  std::vector<std::uint32_t>& count = s.counts;
  count.assign(buckets + 1, 0);
  for (std::size_t j = 0; j < cy; ++j) {
    for (std::size_t i = 0; i < cx; ++i) {
      ++count[static_cast<std::size_t>(rx[i] + ry[j]) + 1];
    }
  }
  for (std::size_t b = 1; b <= buckets; ++b) {
    count[b] += count[b - 1];
  }
  s.order.resize(cx * cy);
  for (std::size_t j = 0; j < cy; ++j) {
    for (std::size_t i = 0; i < cx; ++i) {
      s.order[count[static_cast<std::size_t>(rx[i] + ry[j])]++] =
          static_cast<std::uint32_t>(j * cx + i);
    }
  }
}

// Horizons
// ========
// Both are kept as upper horizons over x of a page height w: the upper one of w = -y,
// the lower one of w = +y (so that "covered" is w <= H(x) for both).

bool covers(const Horizon& h, double x, bool right) {
  if (h.x.empty()) {
    return false;
  }
  return right ? h.x.front() <= x && x < h.x.back() : h.x.front() < x && x <= h.x.back();
}

// The value just right (right) or just left of x; x within the horizon's range.
double value_at(const Horizon& h, double x, bool right) {
  const auto n = h.x.size();
  std::size_t k = 0;
  if (right) {
    k = static_cast<std::size_t>(std::upper_bound(h.x.begin(), h.x.end(), x) - h.x.begin());
    if (k == 0) {
      return h.y.front();
    }
    if (k == n) {
      return h.y.back();
    }
    --k;  // h.x[k] <= x < h.x[k + 1]
  } else {
    k = static_cast<std::size_t>(std::lower_bound(h.x.begin(), h.x.end(), x) - h.x.begin());
    if (k == 0) {
      return h.y.front();
    }
    if (k == n) {
      return h.y.back();
    }
    --k;  // h.x[k] < x <= h.x[k + 1]
  }
  const double t = (x - h.x[k]) / (h.x[k + 1] - h.x[k]);
  return h.y[k] + t * (h.y[k + 1] - h.y[k]);
}

void push_point(Horizon& h, double x, double y) {
  const std::size_t n = h.x.size();
  if (n > 0 && h.x[n - 1] == x && h.y[n - 1] == y) {
    return;
  }
  // No three points at one x: a jump needs two.
  if (n > 1 && h.x[n - 1] == x && h.x[n - 2] == x) {
    h.y[n - 1] = y;
    return;
  }
  // A point on the line through its neighbours says nothing.
  if (n > 1 && h.x[n - 2] < h.x[n - 1] && h.x[n - 1] < x) {
    const double t = (h.x[n - 1] - h.x[n - 2]) / (x - h.x[n - 2]);
    const double on = h.y[n - 2] + t * (y - h.y[n - 2]);
    if (std::fabs(on - h.y[n - 1]) <= kTouch) {
      h.x[n - 1] = x;
      h.y[n - 1] = y;
      return;
    }
  }
  h.x.push_back(x);
  h.y.push_back(y);
}

// Raises h to the line from (xa, wa) to (xb, wb), xa < xb, over [xa, xb].
void raise(Horizon& h, Horizon& out, double xa, double wa, double xb, double wb) {
  out.x.clear();
  out.y.clear();
  const auto line = [&](double x) { return wa + (x - xa) / (xb - xa) * (wb - wa); };
  const auto lo = static_cast<std::size_t>(std::lower_bound(h.x.begin(), h.x.end(), xa) - h.x.begin());
  const auto hi = static_cast<std::size_t>(std::upper_bound(h.x.begin(), h.x.end(), xb) - h.x.begin());
  // out: the new points from xa to xb, which replace h's points in [xa, xb].
  // At xa: what h had just left of it, then the higher of both on the right.
  if (covers(h, xa, false)) {
    push_point(out, xa, value_at(h, xa, false));
  }
  double prev_x = xa;
  const auto higher = [&](double x, bool right) {
    const double e = line(x);
    return covers(h, x, right) ? std::max(e, value_at(h, x, right)) : e;
  };
  push_point(out, xa, higher(xa, true));
  for (std::size_t k = lo; k <= hi; ++k) {
    const double t = k < hi ? h.x[k] : xb;
    if (k < hi && !(t > xa && t < xb)) {
      continue;
    }
    // Where the line crosses h between prev_x and t.
    if (t > prev_x && covers(h, prev_x, true) && covers(h, t, false)) {
      const double d0 = value_at(h, prev_x, true) - line(prev_x);
      const double d1 = value_at(h, t, false) - line(t);
      if ((d0 < 0.0 && d1 > 0.0) || (d0 > 0.0 && d1 < 0.0)) {
        const double x = prev_x + d0 / (d0 - d1) * (t - prev_x);
        push_point(out, x, line(x));
      }
    }
    push_point(out, t, higher(t, false));
    if (k < hi) {
      push_point(out, t, higher(t, true));
    }
    prev_x = t;
  }
  if (covers(h, xb, true)) {
    push_point(out, xb, value_at(h, xb, true));
  }
  const auto from = static_cast<std::ptrdiff_t>(lo);
  const auto to = static_cast<std::ptrdiff_t>(hi);
  const auto splice = [&](std::vector<double>& v, const std::vector<double>& mid) {
    const std::ptrdiff_t old_len = to - from;
    const auto new_len = static_cast<std::ptrdiff_t>(mid.size());
    if (new_len > old_len) {
      v.insert(v.begin() + to, mid.begin() + old_len, mid.end());
    } else if (new_len < old_len) {
      v.erase(v.begin() + from + new_len, v.begin() + to);
    }
    std::copy(mid.begin(), mid.begin() + std::min(old_len, new_len), v.begin() + from);
  };
  splice(h.x, out.x);
  splice(h.y, out.y);
}

// Adds the page segment a-b to both horizons.
void cover_segment(SurfaceState& s, const SurfacePoint& a, const SurfacePoint& b) {
  const SurfacePoint& p = a.x <= b.x ? a : b;
  const SurfacePoint& q = a.x <= b.x ? b : a;
  if (!(q.x > p.x)) {
    return;  // an upright edge: the cell's other edges cover its x
  }
  raise(s.upper, s.merged, p.x, -p.y, q.x, -q.y);
  raise(s.lower, s.merged, p.x, p.y, q.x, q.y);
}

// Adds the hidden part [0, 1] minus the visible parts to s.cuts: the visible parameter
// intervals of the segment, merged, in rising order of the segment's parameter within
// one call of add_visible (the caller maps them).
void add_interval(std::vector<double>& cuts, double t0, double t1) {
  if (!(t1 > t0)) {
    return;
  }
  if (!cuts.empty() && t0 <= cuts.back() + 1e-12) {
    cuts.back() = std::max(cuts.back(), t1);
    return;
  }
  cuts.push_back(t0);
  cuts.push_back(t1);
}

// {tau in [0, 1] : f(tau) <= 0} for f linear from f0 to f1, as [lo, hi] (lo > hi: empty).
void below_zero(double f0, double f1, double& lo, double& hi) {
  if (f0 <= 0.0 && f1 <= 0.0) {
    lo = 0.0;
    hi = 1.0;
  } else if (f0 > 0.0 && f1 > 0.0) {
    lo = 1.0;
    hi = 0.0;
  } else {
    const double c = f0 / (f0 - f1);
    lo = f0 <= 0.0 ? 0.0 : c;
    hi = f0 <= 0.0 ? c : 1.0;
  }
}

// The visible parts of the segment p-q (page points, p.x < q.x) as parameter pairs of
// the segment from p, into s.cuts.
void visible_parts(SurfaceState& s, const SurfacePoint& p, const SurfacePoint& q) {
  std::vector<double>& cuts = s.cuts;
  cuts.clear();
  const Horizon& up = s.upper;
  const Horizon& lo = s.lower;
  const double dx = q.x - p.x;
  if (!(dx > kTouch)) {
    // Upright: hidden between the horizons at this x.
    const double x = 0.5 * (p.x + q.x);
    if (up.x.empty() || x < up.x.front() || x > up.x.back()) {
      add_interval(cuts, 0.0, 1.0);
      return;
    }
    const double top = std::max(value_at(up, x, true), value_at(up, x, false));  // -y
    const double bottom = std::max(value_at(lo, x, true), value_at(lo, x, false));  // y
    const double dy = q.y - p.y;
    if (std::fabs(dy) <= kTouch) {
      const bool hidden = -p.y <= top + kTouch && p.y <= bottom + kTouch;
      if (!hidden) {
        add_interval(cuts, 0.0, 1.0);
      }
      return;
    }
    // y from -top to bottom is hidden.
    double t0 = (-top - p.y) / dy;
    double t1 = (bottom - p.y) / dy;
    if (t0 > t1) {
      std::swap(t0, t1);
    }
    add_interval(cuts, 0.0, std::clamp(t0, 0.0, 1.0));
    add_interval(cuts, std::clamp(t1, 0.0, 1.0), 1.0);
    return;
  }
  // Break points of both horizons inside (p.x, q.x), in rising order.
  auto iu = std::upper_bound(up.x.begin(), up.x.end(), p.x);
  auto il = std::upper_bound(lo.x.begin(), lo.x.end(), p.x);
  double s0 = p.x;
  const auto seg = [&](double x) { return p.y + (x - p.x) / dx * (q.y - p.y); };
  while (true) {
    double s1 = q.x;
    if (iu != up.x.end() && *iu < s1) {
      s1 = *iu;
    }
    if (il != lo.x.end() && *il < s1) {
      s1 = *il;
    }
    if (s1 > s0) {
      const double ta = (s0 - p.x) / dx;
      const double tb = (s1 - p.x) / dx;
      if (covers(up, s0, true) && covers(up, s1, false) && covers(lo, s0, true) &&
          covers(lo, s1, false)) {
        // Hidden where -y <= up and y <= lo.
        double a0 = 0.0;
        double a1 = 0.0;
        double b0 = 0.0;
        double b1 = 0.0;
        below_zero(-seg(s0) - value_at(up, s0, true) - kTouch,
                   -seg(s1) - value_at(up, s1, false) - kTouch, a0, a1);
        below_zero(seg(s0) - value_at(lo, s0, true) - kTouch,
                   seg(s1) - value_at(lo, s1, false) - kTouch, b0, b1);
        const double h0 = std::max(a0, b0);
        const double h1 = std::min(a1, b1);
        if (h0 < h1) {
          add_interval(cuts, ta, ta + h0 * (tb - ta));
          add_interval(cuts, ta + h1 * (tb - ta), tb);
        } else {
          add_interval(cuts, ta, tb);
        }
      } else {
        add_interval(cuts, ta, tb);
      }
    }
    if (!(s1 < q.x)) {
      break;
    }
    while (iu != up.x.end() && *iu <= s1) {
      ++iu;
    }
    while (il != lo.x.end() && *il <= s1) {
      ++il;
    }
    s0 = s1;
  }
}

// Colour value of a side of the surface (surclr), -1: the current colour.
int side_colour(const GlobalBlock& g, bool top, int current) {
  const SurfaceState& s = g.contours.surface;
  const int c = top ? s.top : s.bottom;
  return c < 0 ? current : c;
}

// Whether the cell a, b, c, d (corners in the grid's order) shows its upper side: seen
// counter-clockwise on the page (y up) when the grid's x and y rise alike.
bool shows_top(const SurfaceState& s, const SurfacePoint& a, const SurfacePoint& b,
               const SurfacePoint& c, const SurfacePoint& d) {
  const double area = (a.x * (-b.y) - b.x * (-a.y)) + (b.x * (-c.y) - c.x * (-b.y)) +
                      (c.x * (-d.y) - d.x * (-c.y)) + (d.x * (-a.y) - a.x * (-d.y));
  const bool rx = s.xs.back() >= s.xs.front();
  const bool ry = s.ys.back() >= s.ys.front();
  return (area > 0.0) == (rx == ry);
}

// The mesh of the projected grid: lines along x on rows j % iy == 0 (and the last), along
// y on columns i % ix == 0 (and the last), hidden parts left out when "HIDD" is on.
void draw_mesh_lines(GlobalBlock& g, int nx, int ny, int ix, int iy);

// The horizons cost some microseconds a grid point: a mesh of more points is drawn whole,
// without hidden lines, with warning 52.
void draw_mesh(GlobalBlock& g, int nx, int ny, int ix, int iy) {
  SurfaceState& s = g.contours.surface;
  const bool hidden = s.hidden;
  if (hidden && static_cast<long long>(nx) * ny > kMaxHiddenMeshPoints) {
    warn(g, 52);
    s.hidden = false;
  }
  draw_mesh_lines(g, nx, ny, ix, iy);
  s.hidden = hidden;
}

void draw_mesh_lines(GlobalBlock& g, int nx, int ny, int ix, int iy) {
  SurfaceState& s = g.contours.surface;
  const int current = g.colour.current;
  order_cells(g, nx, ny);
  const auto ux = static_cast<std::size_t>(nx);
  const std::size_t x_edges = (ux - 1) * static_cast<std::size_t>(ny);
  s.drawn.assign(x_edges + ux * static_cast<std::size_t>(ny - 1), 0);
  s.upper.x.clear();
  s.upper.y.clear();
  s.lower.x.clear();
  s.lower.y.clear();
  int colour = current;
  const auto draw_edge = [&](std::size_t edge, bool on_line, const SurfacePoint& a,
                             const SurfacePoint& b, int c) {
    if (s.drawn[edge] != 0) {
      return;
    }
    s.drawn[edge] = 1;
    if (!on_line) {
      return;
    }
    const bool flip = b.x < a.x;
    const SurfacePoint& p = flip ? b : a;
    const SurfacePoint& q = flip ? a : b;
    if (s.hidden) {
      visible_parts(s, p, q);
    } else {
      s.cuts.assign({0.0, 1.0});
    }
    if (s.cuts.empty()) {
      return;
    }
    if (c != colour) {
      set_colour(g, c);
      colour = c;
    }
    for (std::size_t k = 0; k + 1 < s.cuts.size(); k += 2) {
      const double t0 = s.cuts[k];
      const double t1 = s.cuts[k + 1];
      move_to(g, p.x + t0 * (q.x - p.x), p.y + t0 * (q.y - p.y));
      draw_to(g, p.x + t1 * (q.x - p.x), p.y + t1 * (q.y - p.y));
    }
  };
  for (const std::uint32_t cell : s.order) {
    const std::size_t i = cell % (ux - 1);
    const std::size_t j = cell / (ux - 1);
    const std::size_t k00 = j * ux + i;
    const SurfacePoint& a = s.points[k00];
    const SurfacePoint& b = s.points[k00 + 1];
    const SurfacePoint& c = s.points[k00 + ux + 1];
    const SurfacePoint& d = s.points[k00 + ux];
    if (!(a.ok && b.ok && c.ok && d.ok)) {
      continue;
    }
    const int col = side_colour(g, shows_top(s, a, b, c, d), current);
    const auto on_row = [&](std::size_t r) {
      return r % static_cast<std::size_t>(iy) == 0 || r + 1 == static_cast<std::size_t>(ny);
    };
    const auto on_col = [&](std::size_t q) {
      return q % static_cast<std::size_t>(ix) == 0 || q + 1 == ux;
    };
    draw_edge(j * (ux - 1) + i, on_row(j), a, b, col);
    draw_edge((j + 1) * (ux - 1) + i, on_row(j + 1), d, c, col);
    draw_edge(x_edges + i * static_cast<std::size_t>(ny - 1) + j, on_col(i), a, d, col);
    draw_edge(x_edges + (i + 1) * static_cast<std::size_t>(ny - 1) + j, on_col(i + 1), b, c,
              col);
    if (s.hidden) {
      cover_segment(s, a, b);
      cover_segment(s, b, c);
      cover_segment(s, c, d);
      cover_segment(s, d, a);
    }
  }
  end_polyline(g);
  if (colour != current) {
    set_colour(g, current);
  }
}

// Shaded surfaces
// ===============

// The darkening of a piece of surface with the corners a, b, c by its angle to the eye
// under suropt "LIGH": 1 facing the eye, 0.35 edge on; 1 without the light.
double light_factor(const GlobalBlock& g, const SurfacePoint& a, const SurfacePoint& b,
                    const SurfacePoint& c) {
  if (!g.contours.surface.light) {
    return 1.0;
  }
  const double ux = b.bx - a.bx;
  const double uy = b.by - a.by;
  const double uz = b.bz - a.bz;
  const double vx = c.bx - a.bx;
  const double vy = c.by - a.by;
  const double vz = c.bz - a.bz;
  const double nx = uy * vz - uz * vy;
  const double ny = uz * vx - ux * vz;
  const double nz = ux * vy - uy * vx;
  const auto& e = g.view3d.eye;
  const double ex = e[0] - (a.bx + b.bx + c.bx) / 3.0;
  const double ey = e[1] - (a.by + b.by + c.by) / 3.0;
  const double ez = e[2] - (a.bz + b.bz + c.bz) / 3.0;
  const double nn = std::sqrt(nx * nx + ny * ny + nz * nz) * std::sqrt(ex * ex + ey * ey + ez * ez);
  const double cosine = nn > 0.0 ? std::fabs(nx * ex + ny * ey + nz * ez) / nn : 1.0;
  return 0.35 + 0.65 * cosine;
}

Rgb lit(const GlobalBlock& g, int colour, double f) {
  Rgb out = colour_rgb(g, colour);
  if (f != 1.0) {
    out.r = static_cast<int>(std::lround(out.r * f));
    out.g = static_cast<int>(std::lround(out.g * f));
    out.b = static_cast<int>(std::lround(out.b * f));
  }
  return out;
}

// The colour of a piece of surface of mean value z with the corners a, b, c: the scale
// colour, darkened by the angle to the eye when "LIGH" is on. false: not drawn.
bool shade(const GlobalBlock& g, double z, const SurfacePoint& a, const SurfacePoint& b,
           const SurfacePoint& c, Rgb& out) {
  const int v = z_colour(g, z);
  if (v < 0) {
    return false;
  }
  out = lit(g, v, light_factor(g, a, b, c));
  return true;
}

// Cut shading
// ===========
//
// A triangle of the surface is cut into the pieces where its values (linear over it)
// lie in one slab: the bands of conshd3d, or one colour of the table each for smooth
// shading on devices that fill polygons. The pieces are cut in the triangle's own
// coordinates (s, t), P = a + s (b - a) + t (c - a), so that they lie exactly on it.

// Paints the pieces of the triangle p[0..2] (values f) in the slabs, with the light
// factor of the triangle: into the z-buffer when a section is open, else filled.
void paint_slabs(GlobalBlock& g, const SurfacePoint* const* p, const double* f,
                 const Slab* slabs, std::size_t n, double light, bool zb) {
  static constexpr double kS[3] = {0.0, 1.0, 0.0};
  static constexpr double kT[3] = {0.0, 0.0, 1.0};
  const SurfacePoint& a = *p[0];
  const SurfacePoint& b = *p[1];
  const SurfacePoint& c = *p[2];
  double ps[kMaxTrianglePiece];
  double pt[kMaxTrianglePiece];
  SurfacePoint q[kMaxTrianglePiece];
  double xs[kMaxTrianglePiece];
  double ys[kMaxTrianglePiece];
  for (std::size_t k = 0; k < n; ++k) {
    const int m = triangle_band_piece(kS, kT, f, slabs[k].lo, slabs[k].hi, ps, pt);
    if (m < 3) {
      continue;
    }
    bool ok = true;
    for (int i = 0; i < m && ok; ++i) {
      const double u = ps[i];
      const double v = pt[i];
      q[i] = project_box(g, {a.bx + u * (b.bx - a.bx) + v * (c.bx - a.bx),
                             a.by + u * (b.by - a.by) + v * (c.by - a.by),
                             a.bz + u * (b.bz - a.bz) + v * (c.bz - a.bz)});
      ok = q[i].ok;
      xs[i] = q[i].x;
      ys[i] = q[i].y;
    }
    if (!ok) {
      continue;
    }
    const Rgb rgb = lit(g, slabs[k].colour, light);
    if (zb) {
      for (int i = 1; i + 1 < m; ++i) {
        zbuffer_triangle(g, q[0], q[i], q[i + 1], rgb, rgb, rgb);
      }
    } else {
      set_colour(g, explicit_rgb(rgb.r, rgb.g, rgb.b));
      fill_polygon(g, xs, ys, m);
    }
  }
}

// The stretch of the triangle p[0..2] (values f) where f equals `level`, drawn in the
// current colour: into the z-buffer (a little in front) or on the page.
void level_segment(GlobalBlock& g, const SurfacePoint* const* p, const double* f, double level,
                   bool zb) {
  SurfacePoint ends[2];
  int n = 0;
  for (int k = 0; k < 3 && n < 2; ++k) {
    const int m = (k + 1) % 3;
    if ((f[k] < level) == (f[m] < level)) {
      continue;
    }
    const double t = (level - f[k]) / (f[m] - f[k]);
    const SurfacePoint& a = *p[k];
    const SurfacePoint& b = *p[m];
    ends[n++] = project_box(g, {a.bx + t * (b.bx - a.bx), a.by + t * (b.by - a.by),
                                a.bz + t * (b.bz - a.bz)});
  }
  if (n < 2 || !ends[0].ok || !ends[1].ok) {
    return;
  }
  if (zb) {
    zbuffer_line(g, ends[0], ends[1], colour_rgb(g, g.colour.current));
  } else {
    move_to(g, ends[0].x, ends[0].y);
    draw_to(g, ends[1].x, ends[1].y);
  }
}

// The slabs of one colour each that the colour positions f[0..2] reach (smooth shading):
// a colour k covers the positions that round to it; the end colours reach on beyond the
// scaling unless colopt "OUTS" "NONE".
void colour_slabs(const GlobalBlock& g, const double* f, std::vector<Slab>& out) {
  out.clear();
  const ColourPlotState& c = g.contours.colour;
  const int low = std::min(c.first, c.last);
  const int high = std::max(c.first, c.last);
  const double fmin = std::min({f[0], f[1], f[2]});
  const double fmax = std::max({f[0], f[1], f[2]});
  if (!std::isfinite(fmin) || !std::isfinite(fmax)) {
    return;
  }
  const int k0 = static_cast<int>(std::clamp(std::floor(fmin + 0.5), double(low), double(high)));
  const int k1 = static_cast<int>(std::clamp(std::floor(fmax + 0.5), double(low), double(high)));
  constexpr double kInf = std::numeric_limits<double>::infinity();
  for (int k = k0; k <= k1; ++k) {
    const double lo = k == low ? (c.clip_outside ? -kInf : low - 1e-9) : k - 0.5;
    const double hi = k == high ? (c.clip_outside ? kInf : high + 1e-9) : k + 0.5;
    out.push_back({lo, hi, k});
  }
}

// Triangles of corner indices tri[3k .. 3k + 3) in drawing order, far to near by the
// depth of their centres, into s.order; those with a corner that does not project are
// left out.
void order_far_to_near(SurfaceState& s, const std::vector<std::uint32_t>& tri, std::size_t per) {
  const std::size_t faces = tri.size() / per;
  s.order.clear();
  s.keys.resize(faces);
  for (std::size_t f = 0; f < faces; ++f) {
    double depth = 0.0;
    bool ok = true;
    for (std::size_t k = 0; k < per; ++k) {
      const SurfacePoint& p = s.points[tri[f * per + k]];
      ok = ok && p.ok;
      depth += p.depth;
    }
    s.keys[f] = depth / static_cast<double>(per);
    if (ok) {
      s.order.push_back(static_cast<std::uint32_t>(f));
    }
  }
  std::stable_sort(s.order.begin(), s.order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return s.keys[a] > s.keys[b];
  });
}

// A face of 3 or 4 corners (page points) in rgb, then its outline when the mesh is on.
void paint_face(GlobalBlock& g, const SurfacePoint* const* p, int n, const Rgb* rgb,
                bool outline, int mesh_colour) {
  double xs[4];
  double ys[4];
  for (int k = 0; k < n; ++k) {
    xs[k] = p[k]->x;
    ys[k] = p[k]->y;
  }
  if (rgb != nullptr) {
    set_colour(g, explicit_rgb(rgb->r, rgb->g, rgb->b));
    fill_polygon(g, xs, ys, n);
  }
  if (outline) {
    set_colour(g, mesh_colour);
    move_to(g, xs[n - 1], ys[n - 1]);
    for (int k = 0; k < n; ++k) {
      draw_to(g, xs[k], ys[k]);
    }
    end_polyline(g);
  }
}

// Triangles of corner indices tri[3k .. 3k + 3) into the points and values of s, shaded:
// painted far to near (the depth of their centres), or into the z-buffer when a section
// is open. Faces of two triangles (quads) are painted together when `pairs`.
void shade_triangles(GlobalBlock& g, const std::vector<std::uint32_t>& tri, bool pairs) {
  const SeamlessFillScope mesh(g);
  SurfaceState& s = g.contours.surface;
  const int current = g.colour.current;
  const std::size_t per = pairs ? 6 : 3;
  const std::size_t faces = tri.size() / per;
  const bool zb = zbuffer_open(g);
  if (zb) {
    for (std::size_t f = 0; f < faces; ++f) {
      for (std::size_t h = 0; h < per; h += 3) {
        const std::uint32_t* t = &tri[f * per + h];
        const SurfacePoint& a = s.points[t[0]];
        const SurfacePoint& b = s.points[t[1]];
        const SurfacePoint& c = s.points[t[2]];
        if (!(a.ok && b.ok && c.ok)) {
          continue;
        }
        Rgb ca;
        Rgb cb;
        Rgb cc;
        if (s.smooth) {
          if (!shade(g, s.values[t[0]], a, b, c, ca) || !shade(g, s.values[t[1]], a, b, c, cb) ||
              !shade(g, s.values[t[2]], a, b, c, cc)) {
            continue;
          }
        } else {
          const double z = (s.values[t[0]] + s.values[t[1]] + s.values[t[2]]) / 3.0;
          if (!shade(g, z, a, b, c, ca)) {
            continue;
          }
          cb = ca;
          cc = ca;
        }
        zbuffer_triangle(g, a, b, c, ca, cb, cc);
        if (s.mesh) {
          const Rgb m = colour_rgb(g, current);
          // The cell's sides only: a b c and a c d share the diagonal a c.
          if (!pairs || h == 0) {
            zbuffer_line(g, a, b, m);
          }
          zbuffer_line(g, b, c, m);
          if (!pairs || h != 0) {
            zbuffer_line(g, c, a, m);
          }
        }
      }
    }
    return;
  }
  order_far_to_near(s, tri, per);
  FillPatternScope solid(g, kSolidPattern);
  // Smooth shading: every triangle in the colours of the table that its values reach.
  const auto smooth = [&](const SurfacePoint* const* q, const std::uint32_t* t) {
    const double f[3] = {colour_position(g, s.values[t[0]]), colour_position(g, s.values[t[1]]),
                         colour_position(g, s.values[t[2]])};
    colour_slabs(g, f, s.slabs);
    paint_slabs(g, q, f, s.slabs.data(), s.slabs.size(), light_factor(g, *q[0], *q[1], *q[2]),
                false);
  };
  for (const std::uint32_t f : s.order) {
    const std::uint32_t* t = &tri[f * per];
    if (pairs) {
      // A quad a b c d split as a b c and a c d.
      const SurfacePoint* q[4] = {&s.points[t[0]], &s.points[t[1]], &s.points[t[2]],
                                  &s.points[t[5]]};
      if (s.smooth) {
        const SurfacePoint* t1[3] = {q[0], q[1], q[2]};
        const SurfacePoint* t2[3] = {q[0], q[2], q[3]};
        smooth(t1, t);
        smooth(t2, t + 3);
        if (s.mesh) {
          paint_face(g, q, 4, nullptr, true, current);
        }
      } else {
        const double z[4] = {s.values[t[0]], s.values[t[1]], s.values[t[2]], s.values[t[5]]};
        Rgb c;
        const bool ok = shade(g, (z[0] + z[1] + z[2] + z[3]) / 4.0, *q[0], *q[1], *q[2], c);
        paint_face(g, q, 4, ok ? &c : nullptr, s.mesh, current);
      }
    } else {
      const SurfacePoint* q[3] = {&s.points[t[0]], &s.points[t[1]], &s.points[t[2]]};
      if (s.smooth) {
        smooth(q, t);
        if (s.mesh) {
          paint_face(g, q, 3, nullptr, true, current);
        }
      } else {
        Rgb c;
        const bool ok = shade(g, (s.values[t[0]] + s.values[t[1]] + s.values[t[2]]) / 3.0,
                              *q[0], *q[1], *q[2], c);
        paint_face(g, q, 3, ok ? &c : nullptr, s.mesh, current);
      }
    }
  }
  end_polyline(g);
  set_colour(g, current);
}

// The checks of a grid: enough points (30), not too many (53), and coordinates that are
// numbers rising or falling (271).
bool check_grid(GlobalBlock& g, const double* x, int nx, const double* y, int ny) {
  if (nx < 2 || ny < 2) {
    warn(g, 30, std::min(nx, ny));
    return false;
  }
  if (static_cast<long long>(nx) * ny > kMaxGridPoints) {
    warn(g, 53);
    return false;
  }
  const auto monotonic = [](const double* v, int n) {
    const bool rising = v[1] > v[0];
    for (int i = 1; i < n; ++i) {
      if (rising ? !(v[i] > v[i - 1]) : !(v[i] < v[i - 1])) {
        return false;
      }
    }
    return std::isfinite(v[0]) && std::isfinite(v[n - 1]);
  };
  if (x != nullptr && !monotonic(x, nx)) {
    warn(g, 271, "X");
    return false;
  }
  if (y != nullptr && !monotonic(y, ny)) {
    warn(g, 271, "Y");
    return false;
  }
  return true;
}

// The triangles of the grid's cells, two per cell (a b c, a c d).
void grid_triangles(int nx, int ny, std::vector<std::uint32_t>& tri) {
  tri.clear();
  const auto ux = static_cast<std::uint32_t>(nx);
  for (std::uint32_t j = 0; j + 1 < static_cast<std::uint32_t>(ny); ++j) {
    for (std::uint32_t i = 0; i + 1 < ux; ++i) {
      const std::uint32_t a = j * ux + i;
      const std::uint32_t b = a + 1;
      const std::uint32_t c = a + ux + 1;
      const std::uint32_t d = a + ux;
      tri.insert(tri.end(), {a, b, c, a, c, d});
    }
  }
}

// The user coordinate of grid line k of n spread over axis ax's scaling.
double spread(const GlobalBlock& g, int ax, int k, int n) {
  const double len = g.view3d.box[static_cast<std::size_t>(ax)];
  return box_to_user(g, ax, -len / 2.0 + len * k / (n - 1));
}

}  // namespace

SurfacePoint project_box(const GlobalBlock& g, const std::array<double, 3>& b) {
  SurfacePoint p;
  p.bx = b[0];
  p.by = b[1];
  p.bz = b[2];
  const View3dState& v = g.view3d;
  const double dist = box_distance(g, b);
  if (!(dist >= v.front) || (v.back >= 0.0 && dist > v.back) || !box_to_page(g, b, p.x, p.y)) {
    return p;
  }
  const auto& m = v.m;
  const double w = m[3][0] * b[0] + m[3][1] * b[1] + m[3][2] * b[2] + m[3][3];
  p.depth = (m[2][0] * b[0] + m[2][1] * b[1] + m[2][2] * b[2] + m[2][3]) / w;
  p.ok = std::isfinite(p.depth);
  return p;
}

void shade_surface_bands(GlobalBlock& g, const GridData& grid, const std::vector<double>& levels,
                         int extend, bool lines) {
  if (levels.empty() || !check_grid(g, grid.x, grid.nx, grid.y, grid.ny)) {
    return;
  }
  const SeamlessFillScope mesh(g);
  const int nx = grid.nx;
  project_grid(g, nx, grid.ny, [&](int i, int j) {
    return std::array<double, 3>{grid.x[i], grid.y[j],
                                 grid.z[static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                                        static_cast<std::size_t>(i)]};
  });
  SurfaceState& s = g.contours.surface;
  std::vector<std::uint32_t>& tri = s.triangles;
  grid_triangles(nx, grid.ny, tri);
  // The bands as slabs; the last one between levels holds its upper level too unless a
  // band above follows.
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const std::size_t n = levels.size();
  s.slabs.clear();
  const auto add = [&](double lo, double hi) {
    const int colour = band_colour(g, lo, hi);
    if (colour >= 0) {
      s.slabs.push_back({lo, hi, colour});
    }
  };
  if ((extend & kExtendLow) != 0) {
    add(-kInf, levels[0]);
  }
  const bool high = (extend & kExtendHigh) != 0;
  for (std::size_t k = 0; k + 1 < n; ++k) {
    add(levels[k], levels[k + 1]);
    if (k + 2 == n && !high && !s.slabs.empty()) {
      s.slabs.back().hi = std::nextafter(levels[k + 1], kInf);
    }
  }
  if (high) {
    add(levels[n - 1], kInf);
  }
  const bool zb = zbuffer_open(g);
  if (zb) {
    s.order.resize(tri.size() / 3);
    for (std::size_t f = 0; f < s.order.size(); ++f) {
      s.order[f] = static_cast<std::uint32_t>(f);
    }
  } else {
    order_far_to_near(s, tri, 3);
  }
  const int current = g.colour.current;
  FillPatternScope solid(g, kSolidPattern);
  for (const std::uint32_t f : s.order) {
    const std::uint32_t* t = &tri[3 * static_cast<std::size_t>(f)];
    const SurfacePoint* q[3] = {&s.points[t[0]], &s.points[t[1]], &s.points[t[2]]};
    const double v[3] = {s.values[t[0]], s.values[t[1]], s.values[t[2]]};
    if (!(q[0]->ok && q[1]->ok && q[2]->ok)) {
      continue;
    }
    const double vmin = std::min({v[0], v[1], v[2]});
    const double vmax = std::max({v[0], v[1], v[2]});
    // The slabs that the triangle reaches: they rise, so a range of them.
    const auto first = std::partition_point(s.slabs.begin(), s.slabs.end(),
                                            [&](const Slab& b) { return b.hi <= vmin; });
    auto last = first;
    while (last != s.slabs.end() && last->lo <= vmax) {
      ++last;
    }
    paint_slabs(g, q, v, s.slabs.data() + (first - s.slabs.begin()),
                static_cast<std::size_t>(last - first),
                light_factor(g, *q[0], *q[1], *q[2]), zb);
    if (lines) {
      set_colour(g, current);
      for (const double level : levels) {
        if (level > vmin && level < vmax) {
          level_segment(g, q, v, level, zb);
        }
      }
    }
  }
  end_polyline(g);
  set_colour(g, current);
}

namespace api {

void surfce(GlobalBlock& g, const double* xray, int nx, const double* yray, int ny,
            const double* zmat) {
  if (!check_grid(g, xray, nx, yray, ny)) {
    return;
  }
  project_grid(g, nx, ny, [&](int i, int j) {
    return std::array<double, 3>{xray[i], yray[j],
                                 zmat[static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                                      static_cast<std::size_t>(i)]};
  });
  draw_mesh(g, nx, ny, 1, 1);
}

void surmat(GlobalBlock& g, const double* zmat, int nx, int ny, int ixpt, int iypt) {
  if (!check_grid(g, nullptr, nx, nullptr, ny)) {
    return;
  }
  if (ixpt < 1 || iypt < 1) {
    warn(g, 2, std::min(ixpt, iypt));
    return;
  }
  project_grid(g, nx, ny, [&](int i, int j) {
    return std::array<double, 3>{spread(g, 0, i, nx), spread(g, 1, j, ny),
                                 zmat[static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                                      static_cast<std::size_t>(i)]};
  });
  draw_mesh(g, nx, ny, ixpt, iypt);
}

void surshd(GlobalBlock& g, const double* xray, int nx, const double* yray, int ny,
            const double* zmat) {
  if (!check_grid(g, xray, nx, yray, ny)) {
    return;
  }
  project_grid(g, nx, ny, [&](int i, int j) {
    return std::array<double, 3>{xray[i], yray[j],
                                 zmat[static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                                      static_cast<std::size_t>(i)]};
  });
  std::vector<std::uint32_t>& tri = g.contours.surface.triangles;
  grid_triangles(nx, ny, tri);
  shade_triangles(g, tri, true);
}

void surtri(GlobalBlock& g, const double* xray, const double* yray, const double* zray, int n,
            const int* i1ray, const int* i2ray, const int* i3ray, int ntri) {
  if (n < 3 || ntri < 1) {
    warn(g, 30, n < 3 ? n : ntri);
    return;
  }
  SurfaceState& s = g.contours.surface;
  const auto un = static_cast<std::size_t>(n);
  s.points.resize(un);
  s.values.resize(un);
  for (std::size_t k = 0; k < un; ++k) {
    s.points[k] = project_box(g, user_to_box(g, xray[k], yray[k], zray[k]));
    s.values[k] = zray[k];
  }
  std::vector<std::uint32_t>& tri = g.contours.surface.triangles;
  tri.clear();
  int skipped = 0;
  for (int t = 0; t < ntri; ++t) {
    const int c[3] = {i1ray[t], i2ray[t], i3ray[t]};
    if (c[0] < 1 || c[0] > n || c[1] < 1 || c[1] > n || c[2] < 1 || c[2] > n) {
      ++skipped;
      continue;
    }
    tri.insert(tri.end(), {static_cast<std::uint32_t>(c[0] - 1), static_cast<std::uint32_t>(c[1] - 1),
                           static_cast<std::uint32_t>(c[2] - 1)});
  }
  if (skipped > 0) {
    warn(g, 275, skipped);
  }
  shade_triangles(g, tri, false);
}

void surclr(GlobalBlock& g, int ntop, int nbot) {
  const auto valid = [](int c) { return c == -1 || (c >= 0 && c <= 255) || is_explicit(c); };
  if (!valid(ntop) || !valid(nbot)) {
    warn(g, 2, valid(ntop) ? nbot : ntop);
    return;
  }
  g.contours.surface.top = ntop;
  g.contours.surface.bottom = nbot;
}

void suropt(GlobalBlock& g, const char* cval, const char* copt) {
  const int opt = match_keyword(g, "HIDD+MESH+SHAD+LIGH", copt);
  if (opt == 0) {
    return;
  }
  SurfaceState& s = g.contours.surface;
  if (opt == 3) {
    if (const int v = match_keyword(g, "FLAT+SMOO", cval); v != 0) {
      s.smooth = v == 2;
    }
    return;
  }
  const int v = match_keyword(g, "ON  +OFF ", cval);
  if (v == 0) {
    return;
  }
  bool& flag = opt == 1 ? s.hidden : opt == 2 ? s.mesh : s.light;
  flag = v == 1;
}

// The surface function stays set after the call; it is drawn inside a 3D axis system.
// xdel, ydel <= 0 spread the points over the X and Y scalings.
void surfun(GlobalBlock& g, zorvel_surface_fn cfun, int ixpts, double xdel, int iypts,
            double ydel) {
  g.callbacks.surface = cfun;
  if (g.core.level != 3) {
    return;
  }
  if (!check_grid(g, nullptr, ixpts, nullptr, iypts)) {
    return;
  }
  if (!std::isfinite(xdel) || !std::isfinite(ydel)) {
    warn(g, 2, std::isfinite(xdel) ? ydel : xdel);
    return;
  }
  const AxisScale& sx = g.axes.scale[0];
  const AxisScale& sy = g.axes.scale[1];
  const double dx = xdel > 0.0 ? (sx.e >= sx.a ? xdel : -xdel) : (sx.e - sx.a) / (ixpts - 1);
  const double dy = ydel > 0.0 ? (sy.e >= sy.a ? ydel : -ydel) : (sy.e - sy.a) / (iypts - 1);
  project_grid(g, ixpts, iypts, [&](int i, int j) {
    const double x = sx.a + i * dx;
    const double y = sy.a + j * dy;
    return std::array<double, 3>{x, y, cfun(x, y)};
  });
  draw_mesh(g, ixpts, iypts, 1, 1);
}

}  // namespace api
}  // namespace zorvel

// Filled areas. Every contour of a path is cut to the clip rectangle on its own (the
// rectangle is convex, so both fill rules keep their meaning); the pattern in force
// (pattern.cpp) then decides what is drawn:
//
//   solid      the path goes to the driver in device units; a driver that cannot fill
//              (no kCapFill) gets the area hatched with horizontal lines of its thinnest
//              pen instead, spaced so that they cover it, straight to the dispatch
//   hatching   the lines of each family inside the path, then its contours, all through
//              the line path (widening, clipping, dispatch) in the current colour and width
//   outline    the contours alone, as lines
//
// One hatcher serves both. It turns the path so that the lines of a family run along u,
// and sweeps lines of constant v across it:
//
//        y (down the page)        u = x cos a - y sin a     along the lines
//        |   \ v      / u         v = x sin a + y cos a     across them
//        |    \     /             a counter-clockwise on the page (y grows downwards)
//        |     \  / a
//        +------+---------- x
//
// Each line meets the edges at crossings, which carry the direction of their edge; the
// rule says which of the pieces between neighbouring crossings lie inside.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// Hatch lines of a family in one fill, at most; larger fills get their lines spread
// further apart.
constexpr double kMaxHatchLines = 20000.0;
constexpr double kDegree = 3.14159265358979323846 / 180.0;
// Chords of a sector's arc: at least one per 45 degrees, at most this many.
constexpr int kMaxArcChords = 3600;

// Where the lines of one family go.
struct HatchLines {
  double angle = 0.0;     // degrees
  double step = 1.0;      // plot units between the lines
  bool anchored = false;  // lines at whole multiples of step (v = k step), so that areas
                          //   side by side continue each other's lines; else the first
                          //   half a step inside the path
  bool device = false;    // straight to the dispatch; else through the line path
};

// cos and sin of an angle in degrees, exact at the multiples of 90 degrees, so that
// horizontal and vertical hatch lines keep their coordinates exactly.
void direction(double degrees, double& c, double& s) {
  double a = std::fmod(degrees, 360.0);
  if (a < 0.0) {
    a += 360.0;
  }
  if (a == 0.0 || a == 90.0 || a == 180.0 || a == 270.0) {
    const int quarter = static_cast<int>(a / 90.0);
    static constexpr double kCos[4] = {1.0, 0.0, -1.0, 0.0};
    c = kCos[quarter];
    s = kCos[(quarter + 3) % 4];
    return;
  }
  c = std::cos(a * kDegree);
  s = std::sin(a * kDegree);
}

// A point appended to the polyline buffer as it is (already placed and transformed).
void append_placed(GlobalBlock& g, double x, double y) {
  PipelineState& p = g.pipe;
  const auto n = static_cast<std::size_t>(p.count);
  p.buf_x[n] = x;
  p.buf_y[n] = y;
  if (++p.count == kPolylineCapacity) {
    flush_polyline(g);
  }
}

// Line pieces of one family across the clipped path in fill_x/fill_y/fill_ends.
void hatch(GlobalBlock& g, FillRule rule, const HatchLines& h) {
  PipelineState& p = g.pipe;
  const std::vector<double>& xs = p.fill_x;
  const std::vector<double>& ys = p.fill_y;
  double c = 1.0;
  double s = 0.0;
  direction(h.angle, c, s);
  // The turned path in the scratch vectors that clipping no longer needs.
  std::vector<double>& us = p.fill_tx;
  std::vector<double>& vs = p.fill_ty;
  us.resize(xs.size());
  vs.resize(xs.size());
  for (std::size_t i = 0; i < xs.size(); ++i) {
    us[i] = xs[i] * c - ys[i] * s;
    vs[i] = xs[i] * s + ys[i] * c;
  }
  const auto [lo, hi] = std::minmax_element(vs.begin(), vs.end());
  const double v0 = *lo;
  const double v1 = *hi;
  double step = h.step > 0.0 && std::isfinite(h.step) ? h.step : 1.0;
  step = std::max(step, (v1 - v0) / kMaxHatchLines);
  const double first = h.anchored ? std::ceil(v0 / step) * step : v0 + step / 2.0;
  std::vector<Crossing>& cuts = p.crossings;  // scratch, reused
  // The count bounds the loop where the steps vanish against huge coordinates.
  for (int k = 0; k <= static_cast<int>(kMaxHatchLines); ++k) {
    const double v = first + k * step;
    if (!(v < v1)) {
      break;
    }
    cuts.clear();
    std::size_t start = 0;
    for (const int end_index : p.fill_ends) {
      const auto end = static_cast<std::size_t>(end_index);
      for (std::size_t i = start; i < end; ++i) {
        const std::size_t j = i + 1 == end ? start : i + 1;
        const double va = vs[i];
        const double vb = vs[j];
        // Half-open at the upper end, so that a vertex is counted once.
        if ((va <= v && v < vb) || (vb <= v && v < va)) {
          cuts.push_back({us[i] + (v - va) / (vb - va) * (us[j] - us[i]), va < vb ? 1 : -1});
        }
      }
      start = end;
    }
    std::sort(cuts.begin(), cuts.end(),
              [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
    int winding = 0;
    for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
      winding += rule == FillRule::EvenOdd ? 1 : cuts[i].direction;
      const bool inside = rule == FillRule::EvenOdd ? (winding & 1) != 0 : winding != 0;
      if (!inside) {
        continue;
      }
      const double ua = cuts[i].x;
      const double ub = cuts[i + 1].x;
      const double xa = ua * c + v * s;
      const double ya = v * c - ua * s;
      const double xb = ub * c + v * s;
      const double yb = v * c - ub * s;
      if (h.device) {
        plot_point(g, xa, ya, Pen::Move);
        plot_point(g, xb, yb, Pen::Draw);
      } else {
        p.buf_x[0] = xa;
        p.buf_y[0] = ya;
        p.count = 1;
        append_placed(g, xb, yb);
        flush_polyline(g);
      }
    }
  }
}

// The contours of the caller's path as closed lines through the line path (the points
// are known to be placeable: fill_path has placed them all).
void trace_contours(GlobalBlock& g, const double* xs, const double* ys, const int* ends,
                    int contours) {
  PipelineState& p = g.pipe;
  int start = 0;
  for (int c = 0; c < contours; ++c) {
    const int end = ends[c];
    if (end - start >= 3) {
      double x0 = 0.0;
      double y0 = 0.0;
      place_point(g, xs[start], ys[start], x0, y0);
      p.buf_x[0] = x0;
      p.buf_y[0] = y0;
      p.count = 1;
      for (int i = start + 1; i < end; ++i) {
        double x = 0.0;
        double y = 0.0;
        place_point(g, xs[i], ys[i], x, y);
        append_placed(g, x, y);
      }
      append_placed(g, x0, y0);
      flush_polyline(g);
    }
    start = std::max(start, end);
  }
}

// Lines of the pattern: its families inside the clipped path, then the contours. The
// polyline buffer is given back as it was, so that a line of the caller's goes on from
// its own last point.
void draw_pattern(GlobalBlock& g, const double* xs, const double* ys, const int* ends, int contours,
                  FillRule rule) {
  PipelineState& p = g.pipe;
  const int saved_count = p.count;
  const double saved_x = p.buf_x[0];
  const double saved_y = p.buf_y[0];
  HatchFamily families[kMaxHatchFamilies];
  const int n = hatch_families(p.pattern, p.pattern.number, families);
  for (int i = 0; i < n; ++i) {
    hatch(g, rule, {families[i].angle, families[i].spacing, true, false});
  }
  trace_contours(g, xs, ys, ends, contours);
  end_polyline(g);
  p.count = saved_count;
  p.buf_x[0] = saved_x;
  p.buf_y[0] = saved_y;
}

// A point of a circle around (cx, cy), counter-clockwise on the page.
void arc_point(std::vector<double>& xs, std::vector<double>& ys, double cx, double cy, double r,
               double degrees) {
  xs.push_back(cx + r * std::cos(degrees * kDegree));
  ys.push_back(cy - r * std::sin(degrees * kDegree));
}

// Whether the sector (page position of its centre) lies inside the clip region: its
// bounding box, from the arcs' ends and the quarter points between them.
bool sector_visible(const PipelineState& p, double x, double y, double r1, double r2, double a,
                    double b) {
  ClipRect box{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
  auto add = [&](double r, double t) {
    const double px = x + r * std::cos(t * kDegree);
    const double py = y - r * std::sin(t * kDegree);
    box = {std::min(box.xmin, px), std::min(box.ymin, py), std::max(box.xmax, px),
           std::max(box.ymax, py)};
  };
  for (const double r : {r1, r2}) {
    add(r, a);
    add(r, b);
  }
  for (double t = std::ceil(a / 90.0) * 90.0; t < b; t += 90.0) {
    add(r2, t);
  }
  // Without clipping the arcs still must stay near the page: devices draw arcs of any
  // radius only up to their own limits.
  const bool near_page = box.xmin >= -p.page_w && box.xmax <= 2.0 * p.page_w &&
                         box.ymin >= -p.page_h && box.ymax <= 2.0 * p.page_h;
  return near_page && box_inside_clip(p, box);
}

// A solid sector through the driver's own arcs; false when the driver cannot take it
// (transforms in force, a device frame that is not a similarity of the page, a sector
// that reaches out of the clip region).
bool native_sector(GlobalBlock& g, double cx, double cy, double r1, double r2, double a, double b) {
  PipelineState& p = g.pipe;
  double x = 0.0;
  double y = 0.0;
  if ((p.caps & kCapSectors) == 0U || p.plane || p.affine || !place_point(g, cx, cy, x, y) ||
      !sector_visible(p, x, y, r1, r2, a, b)) {
    return false;
  }
  // The device images of one plot unit to the right and one up the page.
  double dx = 0.0, dy = 0.0, ex = 0.0, ey = 0.0, ux = 0.0, uy = 0.0;
  to_device(p, x, y, dx, dy);
  to_device(p, x + 1.0, y, ex, ey);
  to_device(p, x, y - 1.0, ux, uy);
  ex -= dx;
  ey -= dy;
  ux -= dx;
  uy -= dy;
  const double scale = std::hypot(ex, ey);
  if (!(scale > 0.0) || std::fabs(std::hypot(ux, uy) - scale) > 1e-9 * scale ||
      std::fabs(ex * ux + ey * uy) > 1e-9 * scale * scale) {
    return false;
  }
  const double turn = std::atan2(ey, ex) / kDegree;
  // Counter-clockwise on the page runs from the device's x axis towards its y axis when
  // right-then-up keeps its sense on the device; otherwise the frame is mirrored.
  const bool kept = ex * uy - ey * ux > 0.0;
  double start = kept ? turn + a : turn - b;
  start = std::fmod(start, 360.0);
  if (start < 0.0) {
    start += 360.0;
  }
  const Sector sec{dx, dy, r1 * scale, r2 * scale, start, start + (b - a)};
  p.driver->sector(sec, colour_rgb(g, g.colour.current));
  check_driver(g);
  return true;
}

}  // namespace

void fill_polygon(GlobalBlock& g, const double* xs, const double* ys, int n) {
  fill_path(g, xs, ys, &n, 1, FillRule::NonZero);
}

void fill_path(GlobalBlock& g, const double* xs, const double* ys, const int* ends, int contours,
               FillRule rule) {
  PipelineState& p = g.pipe;
  if (!p.driver || contours <= 0) {
    return;
  }
  end_polyline(g);
  std::vector<double>& fx = p.fill_x;
  std::vector<double>& fy = p.fill_y;
  fx.clear();
  fy.clear();
  p.fill_ends.clear();
  int start = 0;
  for (int c = 0; c < contours; ++c) {
    const int end = ends[c];
    if (end - start < 3) {
      start = std::max(start, end);
      continue;
    }
    std::vector<double>& cx = p.cut_x;
    std::vector<double>& cy = p.cut_y;
    cx.clear();
    cy.clear();
    for (int i = start; i < end; ++i) {
      double x = 0.0;
      double y = 0.0;
      if (!place_point(g, xs[i], ys[i], x, y)) {
        // A path with a point that is not a number has no area to fill.
        if (g.core.nans < 0x7fffffff) {
          ++g.core.nans;
        }
        return;
      }
      cx.push_back(x);
      cy.push_back(y);
    }
    start = end;
    if (clip_polygon(p, cx, cy, p.fill_tx, p.fill_ty) >= 3) {
      fx.insert(fx.end(), cx.begin(), cx.end());
      fy.insert(fy.end(), cy.begin(), cy.end());
      p.fill_ends.push_back(static_cast<int>(fx.size()));
    }
  }
  if (p.fill_ends.empty()) {
    return;
  }
  p.fill_active = true;
  if (p.pattern.number != kSolidPattern) {
    draw_pattern(g, xs, ys, ends, contours, rule);
  } else if ((p.caps & kCapFill) != 0U) {
    for (std::size_t i = 0; i < fx.size(); ++i) {
      to_device(p, fx[i], fy[i], fx[i], fy[i]);
    }
    p.driver->fill(Path{fx, fy, p.fill_ends, rule, p.seamless_fills},
                   colour_rgb(g, g.colour.current));
  } else {
    double step = p.device != nullptr ? thinnest_line(*p.device, p.scale) : 1.0;
    hatch(g, rule, {0.0, step, false, true});
    end_polyline(g);
  }
  p.fill_active = false;
  check_driver(g);
}

void fill_sector(GlobalBlock& g, double cx, double cy, double r1, double r2, double a, double b) {
  PipelineState& p = g.pipe;
  if (!p.driver || !(r2 > 0.0) || !(r1 >= 0.0) || !(r1 <= r2) || !(b > a) || !std::isfinite(a) ||
      !std::isfinite(b)) {
    return;
  }
  const double sweep = std::min(b - a, 360.0);
  a = std::fmod(a, 360.0);
  b = a + sweep;
  if (p.pattern.number == kSolidPattern && native_sector(g, cx, cy, r1, r2, a, b)) {
    return;
  }
  // Chords within kArcTolerance of the outer arc: the sagitta r (1 - cos(t/2)).
  const double chord =
      r2 > kArcTolerance ? 2.0 * std::acos(1.0 - kArcTolerance / r2) / kDegree : 45.0;
  const int n = static_cast<int>(std::clamp(std::ceil(sweep / std::min(chord, 45.0)), 1.0,
                                            static_cast<double>(kMaxArcChords)));
  std::vector<double>& xs = p.area_x;
  std::vector<double>& ys = p.area_y;
  std::vector<int>& ends = p.area_ends;
  xs.clear();
  ys.clear();
  ends.clear();
  const bool ring = sweep >= 360.0;
  // A full ring is two circles (no seam between them); a slice runs out along the outer
  // arc and back along the inner one, or to the centre.
  for (int i = 0; i < (ring ? n : n + 1); ++i) {
    arc_point(xs, ys, cx, cy, r2, a + sweep * i / n);
  }
  if (ring) {
    ends.push_back(static_cast<int>(xs.size()));
  }
  if (r1 > 0.0) {
    for (int i = ring ? n - 1 : n; i >= 0; --i) {
      arc_point(xs, ys, cx, cy, r1, a + sweep * i / n);
    }
  } else if (!ring) {
    xs.push_back(cx);
    ys.push_back(cy);
  }
  if (ends.empty() || ends.back() != static_cast<int>(xs.size())) {
    ends.push_back(static_cast<int>(xs.size()));
  }
  fill_path(g, xs.data(), ys.data(), ends.data(), static_cast<int>(ends.size()), FillRule::EvenOdd);
}

}  // namespace zorvel

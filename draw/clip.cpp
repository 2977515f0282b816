// Clipping: the buffered polyline is cut to the active region before the dispatch.
//
// The region is the clip rectangle (the page, clpwin's rectangle or the axis system's
// frame), or a circle. A point counts as inside the rectangle up to kClipTolerance beyond
// its borders, so that points computed onto a border are not lost to rounding. Segments
// that cross the border are cut exactly; cut points are put onto the border itself.
//
//          xmin                  xmax
//     ymin  +----------------------+
//           |        inside        |      a visible piece goes to the device as a Move
//      A *--+-------------*B       |      to its first point (A's cut point) and Draws
//           |              \       |      to the following ones; leaving the region
//           |               \      |      ends the piece at the exit point
//     ymax  +----------------*-----+
//                             \ C (outside)

#include <algorithm>
#include <cmath>
#include <limits>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// One border of Liang and Barsky's clipper: keeps the part of the segment where
// num_t * t <= q, narrowing [t0, t1]. False when nothing is left.
bool clip_edge(double num_t, double q, double& t0, double& t1) {
  if (num_t == 0.0) {
    return q >= 0.0;  // parallel to the border: all inside or all outside
  }
  const double t = q / num_t;
  if (num_t < 0.0) {
    if (t > t1) {
      return false;
    }
    t0 = std::max(t0, t);
  } else {
    if (t < t0) {
      return false;
    }
    t1 = std::min(t1, t);
  }
  return true;
}

bool inside_rect(const ClipRect& r, double x, double y) {
  return x >= r.xmin - kClipTolerance && x <= r.xmax + kClipTolerance &&
         y >= r.ymin - kClipTolerance && y <= r.ymax + kClipTolerance;
}

enum class Region { None, Rect, Circle };

Region active_region(const PipelineState& p) {
  switch (p.clip_mode) {
    case ClipMode::None:
      return Region::None;
    case ClipMode::Rect:
      return Region::Rect;
    case ClipMode::Auto:
    case ClipMode::Circle:
      break;
  }
  return p.circle ? Region::Circle : Region::Rect;
}

// Sutherland and Hodgman: the polygon (xs, ys) cut by one half-plane, written into
// (ox, oy). `side` is 0..3 for x >= v, x <= v, y >= v, y <= v.
void clip_polygon_side(const std::vector<double>& xs, const std::vector<double>& ys,
                       std::vector<double>& ox, std::vector<double>& oy, int side, double v) {
  ox.clear();
  oy.clear();
  const std::size_t n = xs.size();
  auto in = [&](std::size_t i) {
    switch (side) {
      case 0:
        return xs[i] >= v;
      case 1:
        return xs[i] <= v;
      case 2:
        return ys[i] >= v;
      default:
        return ys[i] <= v;
    }
  };
  auto cut = [&](std::size_t a, std::size_t b) {
    const bool vertical_border = side < 2;
    const double da = vertical_border ? xs[a] : ys[a];
    const double db = vertical_border ? xs[b] : ys[b];
    const double t = (v - da) / (db - da);
    if (vertical_border) {
      ox.push_back(v);
      oy.push_back(ys[a] + t * (ys[b] - ys[a]));
    } else {
      ox.push_back(xs[a] + t * (xs[b] - xs[a]));
      oy.push_back(v);
    }
  };
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t prev = i == 0 ? n - 1 : i - 1;
    const bool cur_in = in(i);
    if (cur_in != in(prev)) {
      cut(prev, i);
    }
    if (cur_in) {
      ox.push_back(xs[i]);
      oy.push_back(ys[i]);
    }
  }
}

}  // namespace

// Segment clippers
// ================

bool clip_segment_rect(const ClipRect& r, double ax, double ay, double bx, double by,
                       double& t0, double& t1) {
  const double dx = bx - ax;
  const double dy = by - ay;
  // Visibility with the tolerance: an end inside the band stays as it is.
  auto clip = [&](double tol, double& u0, double& u1) {
    u0 = 0.0;
    u1 = 1.0;
    return clip_edge(-dx, ax - (r.xmin - tol), u0, u1) &&
           clip_edge(dx, (r.xmax + tol) - ax, u0, u1) &&
           clip_edge(-dy, ay - (r.ymin - tol), u0, u1) &&
           clip_edge(dy, (r.ymax + tol) - ay, u0, u1);
  };
  if (!clip(kClipTolerance, t0, t1)) {
    return false;
  }
  // A cut is made at the border itself, not at the edge of the band.
  double e0 = 0.0;
  double e1 = 1.0;
  if ((t0 > 0.0 || t1 < 1.0) && clip(0.0, e0, e1)) {
    if (t0 > 0.0) {
      t0 = e0;
    }
    if (t1 < 1.0) {
      t1 = e1;
    }
  }
  return true;
}

bool clip_segment_circle(double cx, double cy, double radius, double ax, double ay, double bx,
                         double by, double& t0, double& t1) {
  // |A + t (B - A) - C|^2 = r^2, solved in units of the largest magnitude involved so
  // that no square overflows.
  double dx = bx - ax;
  double dy = by - ay;
  double fx = ax - cx;
  double fy = ay - cy;
  double r = radius;
  const double k = std::max({std::abs(dx), std::abs(dy), std::abs(fx), std::abs(fy), r});
  if (!(k > 0.0)) {
    t0 = 0.0;
    t1 = 1.0;
    return radius >= 0.0;  // a point on the centre of a circle of radius 0
  }
  dx /= k;
  dy /= k;
  fx /= k;
  fy /= k;
  r /= k;
  const double a = dx * dx + dy * dy;
  const double c = fx * fx + fy * fy - r * r;
  if (a == 0.0) {
    t0 = 0.0;
    t1 = 1.0;
    return c <= 0.0;
  }
  const double b = 2.0 * (fx * dx + fy * dy);
  const double disc = b * b - 4.0 * a * c;
  if (disc < 0.0) {
    return false;
  }
  const double root = std::sqrt(disc);
  t0 = std::max(0.0, (-b - root) / (2.0 * a));
  t1 = std::min(1.0, (-b + root) / (2.0 * a));
  if (c <= 0.0) {
    t0 = 0.0;  // A inside: no rounding may move the start
  }
  return t0 <= t1;
}

// Polyline clipping
// =================

void clip_and_send(GlobalBlock& g, const double* xs, const double* ys, int n) {
  PipelineState& p = g.pipe;
  const Region region = active_region(p);
  if (region == Region::None) {
    plot_point(g, xs[0], ys[0], Pen::Move);
    for (int i = 1; i < n; ++i) {
      plot_point(g, xs[i], ys[i], Pen::Draw);
    }
    return;
  }
  const ClipRect& r = p.clip;
  bool down = false;  // the last point sent continues the polyline
  if (region == Region::Rect && inside_rect(r, xs[0], ys[0])) {
    plot_point(g, xs[0], ys[0], Pen::Move);
    down = true;
  }
  for (int i = 1; i < n; ++i) {
    const double ax = xs[i - 1];
    const double ay = ys[i - 1];
    const double bx = xs[i];
    const double by = ys[i];
    if (down && region == Region::Rect && inside_rect(r, bx, by)) {
      plot_point(g, bx, by, Pen::Draw);  // the common case: both ends inside
      continue;
    }
    double t0 = 0.0;
    double t1 = 1.0;
    const bool visible = region == Region::Rect
                             ? clip_segment_rect(r, ax, ay, bx, by, t0, t1)
                             : clip_segment_circle(p.circle_x, p.circle_y, p.circle_r, ax, ay,
                                                   bx, by, t0, t1);
    if (!visible) {
      down = false;
      continue;
    }
    auto at = [&](double t, double& x, double& y) {
      x = ax + t * (bx - ax);
      y = ay + t * (by - ay);
      if (region == Region::Rect) {
        // Onto the border itself, not its tolerance band.
        x = std::clamp(x, r.xmin, r.xmax);
        y = std::clamp(y, r.ymin, r.ymax);
      }
    };
    if (!down || t0 > 0.0) {
      double x = ax;
      double y = ay;
      if (t0 > 0.0) {
        at(t0, x, y);
      }
      plot_point(g, x, y, Pen::Move);
    }
    if (t1 < 1.0) {
      double x = 0.0;
      double y = 0.0;
      at(t1, x, y);
      plot_point(g, x, y, Pen::Draw);
      down = false;
    } else {
      plot_point(g, bx, by, Pen::Draw);
      down = true;
    }
  }
}

int clip_polygon(const PipelineState& p, std::vector<double>& xs, std::vector<double>& ys,
                 std::vector<double>& tx, std::vector<double>& ty) {
  if (active_region(p) == Region::None) {
    return static_cast<int>(xs.size());
  }
  // Fills keep to the clip rectangle; a clip circle limits them to its square.
  ClipRect r = p.clip;
  if (active_region(p) == Region::Circle) {
    r = {p.circle_x - p.circle_r, p.circle_y - p.circle_r, p.circle_x + p.circle_r,
         p.circle_y + p.circle_r};
  }
  // A polygon wholly inside (glyphs, markers, most areas) is left as it is.
  bool inside = true;
  for (std::size_t i = 0; i < xs.size() && inside; ++i) {
    inside = xs[i] >= r.xmin && xs[i] <= r.xmax && ys[i] >= r.ymin && ys[i] <= r.ymax;
  }
  if (inside) {
    return static_cast<int>(xs.size());
  }
  const double bounds[4] = {r.xmin, r.xmax, r.ymin, r.ymax};
  for (int side = 0; side < 4 && !xs.empty(); ++side) {
    clip_polygon_side(xs, ys, tx, ty, side, bounds[side]);
    xs.swap(tx);
    ys.swap(ty);
  }
  return static_cast<int>(xs.size());
}

bool box_inside_clip(const PipelineState& p, const ClipRect& box) {
  switch (active_region(p)) {
    case Region::None:
      return true;
    case Region::Rect:
      return inside_rect(p.clip, box.xmin, box.ymin) && inside_rect(p.clip, box.xmax, box.ymax);
    case Region::Circle:
      break;
  }
  for (const double x : {box.xmin, box.xmax}) {
    for (const double y : {box.ymin, box.ymax}) {
      if (std::hypot(x - p.circle_x, y - p.circle_y) > p.circle_r) {
        return false;
      }
    }
  }
  return true;
}

// Settings
// ========

void clip_to_page(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  p.clip = {0.0, 0.0, g.page.width, g.page.height};
  p.border = ClipBorder::Page;
}

void set_axis_clip(GlobalBlock& g, const ClipRect& r) {
  PipelineState& p = g.pipe;
  p.axis_rect = r;
  p.axis_rect_set = true;
  if (p.border == ClipBorder::Axis) {
    flush_polyline(g);
    p.clip = r;
  }
}

void clear_axis_clip(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  p.axis_rect_set = false;
  if (p.border == ClipBorder::Axis) {
    flush_polyline(g);
    clip_to_page(g);
  }
}

void clip_to_axis(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  if (!p.axis_rect_set) {
    return;
  }
  flush_polyline(g);
  p.border = ClipBorder::Axis;
  p.clip = p.axis_rect;
}

PageClipScope::PageClipScope(GlobalBlock& g)
    : g_(g),
      active_(g.pipe.border == ClipBorder::Axis && g.pipe.axis_rect_set &&
              g.pipe.clip == g.pipe.axis_rect),
      circle_(g.pipe.circle) {
  if (active_ || circle_) {
    flush_polyline(g);
  }
  if (active_) {
    g.pipe.clip = {0.0, 0.0, g.page.width, g.page.height};
  }
  g.pipe.circle = false;
}

PageClipScope::~PageClipScope() {
  if (active_ || circle_) {
    flush_polyline(g_);
  }
  if (active_ && g_.pipe.border == ClipBorder::Axis) {
    g_.pipe.clip = g_.pipe.axis_rect;
  }
  if (circle_) {
    g_.pipe.circle = true;
  }
}

void set_clip_circle(GlobalBlock& g, double cx, double cy, double r) {
  flush_polyline(g);
  PipelineState& p = g.pipe;
  p.circle = true;
  p.circle_x = cx;
  p.circle_y = cy;
  p.circle_r = r;
}

void clear_clip_circle(GlobalBlock& g) {
  flush_polyline(g);
  g.pipe.circle = false;
}

namespace api {

void clpwin(GlobalBlock& g, int nx, int ny, int nw, int nh) {
  // Negative origins and empty sizes are reported, and the rectangle is still tried.
  if (nx < 0 || ny < 0) {
    warn(g, 2, std::min(nx, ny));
  }
  if (nw < 1 || nh < 1) {
    warn(g, 2, std::min(nw, nh));
  }
  const long long y = page_y(g, ny);
  const long long x_end = static_cast<long long>(nx) + nw - 1;
  const long long y_end = y + nh - 1;
  if (x_end > g.page.width) {
    warn(g, 2, static_cast<double>(x_end));
    return;
  }
  if (y_end > g.page.height) {
    warn(g, 2, static_cast<double>(y_end));
    return;
  }
  flush_polyline(g);
  PipelineState& p = g.pipe;
  p.clip = {static_cast<double>(nx), static_cast<double>(y), static_cast<double>(x_end),
            static_cast<double>(y_end)};
  p.border = ClipBorder::User;
}

void clpbor(GlobalBlock& g, const char* copt) {
  const int i = match_keyword(g, "PAGE+AXIS", copt);
  if (i == 0) {
    return;
  }
  flush_polyline(g);
  PipelineState& p = g.pipe;
  if (i == 1) {
    p.circle = false;
    clip_to_page(g);
    return;
  }
  // The frame of the axis system in force; the page while none has published one.
  if (p.axis_rect_set) {
    p.clip = p.axis_rect;
  } else {
    clip_to_page(g);
  }
  p.border = ClipBorder::Axis;
}

void clpmod(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "AUTO+NONE+CIRC+RECT", cmode); i != 0) {
    flush_polyline(g);
    g.pipe.clip_mode = static_cast<ClipMode>(i - 1);
  }
}

void noclip(GlobalBlock& g) {
  flush_polyline(g);
  PipelineState& p = g.pipe;
  p.clip_mode = ClipMode::None;
  if (p.border == ClipBorder::Axis) {
    // The axis system's clipping is given up for the page; the border still says AXIS,
    // so that a later clpmod returns to the page rectangle within the same axis system.
    clip_to_page(g);
    p.border = ClipBorder::Axis;
  }
}

}  // namespace api
}  // namespace zorvel

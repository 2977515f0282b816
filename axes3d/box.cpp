// The 3D box: its edges, the three axes with their ticks, labels and names along edges
// chosen for the view, and grid lines on its back planes.
//
// Which edges carry the axes. Each edge lies between two faces of the box. Where one of
// them is turned towards the eye and the other away, the edge is part of the outline of
// the projected box, and both faces lie on the same side of it on the page:
//
//          +-----------+
//         /    top    /|      Seen from above and in front, the top and the front face
//        +===========+ |      are turned towards the eye. The edge between them (===)
//        |           | +      is not on the outline: labels there would lie on the box.
//        |   front   |/       The bottom edge in front and the upright edge on the left
//        +-----------+        are: labels placed outwards from them stay off the box.
//
// So every axis runs along an outline edge: x and y along the lowest one on the page, z
// along the one furthest left. Only an axis seen end-on (the eye within the box's extent
// on both other axes, as straight from above for z) has no outline edge; it takes the
// edge that shares the fewest corners with the other two axes.
//
// Labels are upright text. Each stands beside its point of the edge, moved outwards
// along the page normal of the edge so that its nearest corner is labdis beyond the tick:
// the labels of one axis line up parallel to the edge, and none reaches over the edge.

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "api_decl.h"
#include "axes/axis_marks.h"
#include "axes3d/axes3d.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/pipeline.h"
#include "text/layout.h"
#include "text/text.h"

namespace zorvel {
namespace {

using Vec3 = std::array<double, 3>;

// Text of the box is half as large again as that of a 2D axis system.
constexpr double kBoxTextScale = 1.5;
// Gap between neighbouring labels of an axis, in label heights: closer labels are
// thinned, as on 2D axes.
constexpr double kLabelGap = 0.6;
// Gap between texts of different axes, in their heights: a label that would come closer
// to one drawn before is left out.
constexpr double kTextGap = 0.3;
// Page midpoints of edges closer than this (plot units) count as equally low or left.
constexpr double kTie = 0.5;
// An axis whose edge is shorter than this on the page (plot units), or shorter than
// kForeshortened of its length seen across (within about 15 degrees of the line of
// sight), counts as seen end-on and gets neither ticks nor labels.
constexpr double kShortest = 1.0;
constexpr double kForeshortened = 0.25;
// Tries of a name that would cover the labels of another axis: it moves outwards by a
// name height each time.
constexpr int kNameTries = 8;

// The other two axes of axis ax, in order.
std::array<int, 2> others(int ax) {
  return ax == kAxisX   ? std::array<int, 2>{1, 2}
         : ax == kAxisY ? std::array<int, 2>{0, 2}
                        : std::array<int, 2>{0, 1};
}

std::size_t idx(int i) { return static_cast<std::size_t>(i); }

// The point of edge e at the box coordinate t along its axis.
Vec3 edge_point(const GlobalBlock& g, const BoxEdge& e, double t) {
  const std::array<int, 2> o = others(e.axis);
  Vec3 p{};
  p[idx(e.axis)] = t;
  for (std::size_t k = 0; k < 2; ++k) {
    p[idx(o[k])] = e.side[k] * g.view3d.box[idx(o[k])] / 2.0;
  }
  return p;
}

// Box coordinate of the scaling value v of axis ax (log axes: an exponent).
double box_coordinate(const GlobalBlock& g, int ax, double v) {
  const AxisScale& sc = g.axes.scale[idx(ax)];
  const double len = g.view3d.box[idx(ax)];
  return (v - sc.a) * len / (sc.e - sc.a) - len / 2.0;
}

// Whether the face of the box across axis ax on side s is turned towards the eye.
bool face_visible(const GlobalBlock& g, int ax, int s) {
  const View3dState& v = g.view3d;
  if (v.projection == 0) {
    return s * v.eye[idx(ax)] > v.box[idx(ax)] / 2.0;
  }
  // Orthographic: every ray runs along the view direction (the depth row).
  return s * v.distance[idx(ax)] < 0.0;
}

bool on_outline(const GlobalBlock& g, const BoxEdge& e) {
  const std::array<int, 2> o = others(e.axis);
  return face_visible(g, o[0], e.side[0]) != face_visible(g, o[1], e.side[1]);
}

// The four edges along axis ax.
std::array<BoxEdge, 4> edges_along(int ax) {
  std::array<BoxEdge, 4> out{};
  for (int k = 0; k < 4; ++k) {
    out[idx(k)] = {ax, {k % 2 == 0 ? -1 : 1, k < 2 ? -1 : 1}};
  }
  return out;
}

// A page point; ok is false where the point cannot be projected.
struct PagePoint {
  double x = 0.0;
  double y = 0.0;
  bool ok = false;
};

PagePoint project(const GlobalBlock& g, const Vec3& b) {
  PagePoint p;
  p.ok = box_to_page(g, b, p.x, p.y);
  return p;
}

// Page midpoint of an edge; a point that cannot be projected lies nowhere useful, far
// up and to the right.
PagePoint edge_middle(const GlobalBlock& g, const BoxEdge& e) {
  PagePoint p = project(g, edge_point(g, e, 0.0));
  if (!p.ok) {
    p.x = 1e300;
    p.y = -1e300;
  }
  return p;
}

// Corners (as box points) that two edges share.
int shared_corners(const GlobalBlock& g, const BoxEdge& a, const BoxEdge& b) {
  int n = 0;
  for (const double ta : {-1.0, 1.0}) {
    for (const double tb : {-1.0, 1.0}) {
      n += edge_point(g, a, ta * g.view3d.box[idx(a.axis)] / 2.0) ==
                   edge_point(g, b, tb * g.view3d.box[idx(b.axis)] / 2.0)
               ? 1
               : 0;
    }
  }
  return n;
}

// A rectangle on the page that a text covers.
struct PageRect {
  double x0, y0, x1, y1;
  bool overlaps(const PageRect& r) const {
    return x0 < r.x1 && r.x0 < x1 && y0 < r.y1 && r.y0 < y1;
  }
};

// The character and name heights while the box is drawn, restored afterwards.
class BoxTextHeights {
 public:
  explicit BoxTextHeights(GlobalBlock& g)
      : g_(g), height_(g.text.height), name_(g.axes.name_height) {
    set_height(g, std::min(10000, round_int(kBoxTextScale * height_)));
    if (name_ > 0) {
      g.axes.name_height = std::min(10000, round_int(kBoxTextScale * name_));
    }
  }
  ~BoxTextHeights() {
    set_height(g_, height_);
    g_.axes.name_height = name_;
  }
  BoxTextHeights(const BoxTextHeights&) = delete;
  BoxTextHeights& operator=(const BoxTextHeights&) = delete;

 private:
  GlobalBlock& g_;
  int height_;
  int name_;
};

// One axis of the box as it appears on the page.
struct BoxAxis {
  BoxEdge edge;
  double ux = 0.0;  // page direction from a to b
  double uy = 0.0;
  double nx = 0.0;  // page normal outwards, away from the box
  double ny = 0.0;
  Vec3 tick{};          // outwards in the box: the direction of the ticks
  double per_unit = 0;  // plot units per box unit across the view at the edge's middle
  bool marks = false;   // ticks, labels and a name are drawn
  double reach = 0.0;   // how far ticks and labels reach outwards from the edge on the page
};

// A label of the box before it is placed.
struct AxisLabel {
  Vec3 p;        // its point of the edge
  PagePoint at;  // ... on the page
  int index;
  double value;
  double width;  // of the text, plot units
  bool raised;   // the text has a raised part (an exponent)
};

class BoxPainter {
 public:
  explicit BoxPainter(GlobalBlock& g) : g_(g), edges_(axis_edges(g)) {}

  void run() {
    for (int ax = 0; ax < 3; ++ax) {
      axes_[idx(ax)] = measure_axis(edges_[idx(ax)]);
    }
    draw_edges();
    const DashScope solid(g_);  // ticks and text in solid lines
    for (int ax = 0; ax < 3; ++ax) {
      draw_ticks(ax);
    }
    for (int ax = 0; ax < 3; ++ax) {
      draw_labels(ax);
    }
    for (int ax = 0; ax < 3; ++ax) {
      draw_name(ax);
    }
    end_polyline(g_);
  }

 private:
  const AxisSettings& settings(int ax) const { return g_.axes.axis[idx(ax)]; }

  // Page vector of a small step `dir` from the box point p (per box unit).
  bool page_step(const Vec3& p, const Vec3& dir, double& dx, double& dy) const {
    const double eps = 1e-3 * std::max({g_.view3d.box[0], g_.view3d.box[1], g_.view3d.box[2]});
    const Vec3 q{p[0] + eps * dir[0], p[1] + eps * dir[1], p[2] + eps * dir[2]};
    const PagePoint pp = project(g_, p);
    const PagePoint pq = project(g_, q);
    if (!pp.ok || !pq.ok) {
      return false;
    }
    dx = (pq.x - pp.x) / eps;
    dy = (pq.y - pp.y) / eps;
    return std::isfinite(dx) && std::isfinite(dy);
  }

  BoxAxis measure_axis(const BoxEdge& e) const {
    BoxAxis a;
    a.edge = e;
    const double half = g_.view3d.box[idx(e.axis)] / 2.0;
    const PagePoint pa = project(g_, edge_point(g_, e, -half));
    const PagePoint pb = project(g_, edge_point(g_, e, half));
    // An axis seen end-on has no side away from the box for its labels.
    if (!pa.ok || !pb.ok || !on_outline(g_, e)) {
      return a;
    }
    const double len = std::hypot(pb.x - pa.x, pb.y - pa.y);
    if (!(len >= kShortest) || !std::isfinite(len)) {
      return a;
    }
    a.ux = (pb.x - pa.x) / len;
    a.uy = (pb.y - pa.y) / len;
    // Outwards: the side of the edge away from its two faces, where the diagonal between
    // the faces' normals points.
    const std::array<int, 2> o = others(e.axis);
    const Vec3 mid = edge_point(g_, e, 0.0);
    Vec3 normal[2]{};
    normal[0][idx(o[0])] = e.side[0];
    normal[1][idx(o[1])] = e.side[1];
    const Vec3 diagonal = {normal[0][0] + normal[1][0], normal[0][1] + normal[1][1],
                           normal[0][2] + normal[1][2]};
    a.nx = -a.uy;
    a.ny = a.ux;
    double dx = 0.0, dy = 0.0;
    if (!page_step(mid, diagonal, dx, dy)) {
      return a;
    }
    if (dx * a.nx + dy * a.ny < 0.0) {
      a.nx = -a.nx;
      a.ny = -a.ny;
    }
    // Ticks along the face normal that shows longest across the edge.
    double best = -1.0;
    for (const Vec3& dir : normal) {
      double tx = 0.0, ty = 0.0;
      if (page_step(mid, dir, tx, ty) && tx * a.nx + ty * a.ny > best) {
        best = tx * a.nx + ty * a.ny;
        a.tick = dir;
      }
    }
    // The divisor of the projection there (row 3 of the view matrix).
    const auto& m3 = g_.view3d.m[3];
    a.per_unit = g_.view3d.d / (m3[0] * mid[0] + m3[1] * mid[1] + m3[2] * mid[2] + m3[3]);
    // Nor can an axis close to the line of sight show its labels apart.
    a.marks = best >= 0.0 && a.per_unit > 0.0 && std::isfinite(a.per_unit) &&
              len >= kForeshortened * a.per_unit * 2.0 * half;
    return a;
  }

  // The box edges in the current colour and line style; an axis' edge in its line colour.
  void draw_edges() {
    for (int ax = 0; ax < 3; ++ax) {
      const double half = g_.view3d.box[idx(ax)] / 2.0;
      for (const BoxEdge& e : edges_along(ax)) {
        const PartColour c(g_, e == edges_[idx(ax)] ? settings(ax).colours[0] : -1);
        line3d(g_, edge_point(g_, e, -half), edge_point(g_, e, half), false);
      }
    }
  }

  // Whether a box point lies within the depth range of vclp3d and projects.
  bool visible(const Vec3& p) const {
    const View3dState& v = g_.view3d;
    const double dist = box_distance(g_, p);
    return dist >= v.front && (v.back < 0.0 || dist <= v.back) && project(g_, p).ok;
  }

  // Start and end of a tick as multiples of its length, as ticpos says.
  void tick_span(int ax, double& lo, double& hi) const {
    const int pos = settings(ax).tick_pos;
    lo = pos == 1 ? -1.0 : pos == 2 ? -0.5 : 0.0;
    hi = pos == 1 ? 0.0 : pos == 2 ? 0.5 : 1.0;
  }

  void draw_ticks(int ax) {
    const BoxAxis& a = axes_[idx(ax)];
    if (!a.marks) {
      return;
    }
    std::vector<TickMark> ticks;
    tick_marks(g_.axes, ax, ticks);
    if (ticks.empty()) {
      return;
    }
    const PartColour c(g_, settings(ax).colours[1]);
    double lo = 0.0, hi = 0.0;
    tick_span(ax, lo, hi);
    for (const TickMark& t : ticks) {
      const double len = (t.major ? g_.axes.tick_major : g_.axes.tick_minor) / a.per_unit;
      const Vec3 p = edge_point(g_, a.edge, box_coordinate(g_, ax, t.value));
      Vec3 p0{}, p1{};
      for (std::size_t i = 0; i < 3; ++i) {
        p0[i] = p[i] + lo * len * a.tick[i];
        p1[i] = p[i] + hi * len * a.tick[i];
      }
      line3d(g_, p0, p1, false);
    }
  }

  // How far the major tick at p reaches outwards on the page.
  double tick_reach(int ax, const Vec3& p) const {
    const BoxAxis& a = axes_[idx(ax)];
    if (settings(ax).ticks == 0) {
      return 0.0;
    }
    double lo = 0.0, hi = 0.0;
    tick_span(ax, lo, hi);
    double dx = 0.0, dy = 0.0;
    if (hi <= 0.0 || !page_step(p, a.tick, dx, dy)) {
      return 0.0;
    }
    return std::max(0.0, hi * g_.axes.tick_major / a.per_unit * (dx * a.nx + dy * a.ny));
  }

  // The rectangle of a text of width w and height h (a raised part adds `raise` above)
  // placed outwards from the page point (x, y) so that its nearest corner is `dist` away
  // along the normal of axis a; `far` receives its furthest distance.
  static PageRect place(const BoxAxis& a, double x, double y, double dist, double w, double h,
                        double raise, double& far) {
    const double cx[2] = {-w / 2.0, w / 2.0};
    const double cy[2] = {-h / 2.0 - raise, h / 2.0};
    double near = 0.0;
    far = 0.0;
    for (const double px : cx) {
      for (const double py : cy) {
        const double d = px * a.nx + py * a.ny;
        near = std::min(near, d);
        far = std::max(far, d);
      }
    }
    const double mx = x + a.nx * (dist - near);
    const double my = y + a.ny * (dist - near);
    far = dist + far - near;
    return {mx + cx[0], my + cy[0], mx + cx[1], my + cy[1]};
  }

  // Whether a text would touch one drawn before, keeping a gap of `gap`.
  bool overlaps_placed(const PageRect& r, double gap) const {
    const PageRect wide{r.x0 - gap, r.y0 - gap, r.x1 + gap, r.y1 + gap};
    return std::any_of(placed_.begin(), placed_.end(),
                       [&](const PageRect& p) { return p.overlaps(wide); });
  }

  // The labels of one axis: thinned to every stride-th where they would touch each other,
  // left out where they would cover a label of an axis drawn before.
  void draw_labels(int ax) {
    BoxAxis& a = axes_[idx(ax)];
    const AxisSettings& st = settings(ax);
    a.reach = a.marks ? tick_reach(ax, edge_point(g_, a.edge, 0.0)) : 0.0;
    if (!a.marks || st.label_type == kLabNone) {
      return;
    }
    if (st.kind == kKindDate && !g_.axes.base_date_set) {
      warn(g_, 252);
      return;
    }
    std::vector<LabelMark> marks;
    if (!label_marks(g_.axes, ax, marks)) {
      warn(g_, 251, kMaxAxisLabels);
      return;
    }
    if (marks.empty()) {
      return;
    }
    const AxisLabelText text(g_.axes, ax, marks, label_chars(g_));
    const int height = g_.text.height;
    std::vector<AxisLabel> labels;
    char buf[kLabelBuffer];
    double widest = 0.0;
    int last = -1;
    for (const LabelMark& m : marks) {
      last = m.index;
      const Vec3 p = edge_point(g_, a.edge, box_coordinate(g_, ax, m.value));
      if (!visible(p)) {
        continue;
      }
      const int n = text.format(m.value, m.index, buf);
      const std::string_view s(buf, static_cast<std::size_t>(n));
      const double w = measure_label(g_, s, height);
      widest = std::max(widest, w);
      labels.push_back({p, project(g_, p), m.index, m.value, w,
                        s.find(text.chars().raise) != std::string_view::npos});
    }
    const int stride = st.label_type == kLabMyla ? 1 : label_stride(a, labels, widest, height);
    const PartColour c(g_, st.colours[2]);
    LabelStyle style;
    style.height = height;
    style.hjust = 1;
    style.vjust = 1;
    std::vector<PageRect> drawn;
    for (const AxisLabel& l : labels) {
      const int ends = st.ends;
      if (l.index % stride != 0 || ((ends == 1 || ends == 3) && l.index == 0) ||
          ((ends == 2 || ends == 3) && l.index == last)) {
        continue;
      }
      const double dist = tick_reach(ax, l.p) + st.label_dist;
      const double raise = l.raised ? 0.3 * height : 0.0;
      double far = 0.0;
      const PageRect r = place(a, l.at.x, l.at.y, dist, l.width, height, raise, far);
      if (overlaps_placed(r, kTextGap * height)) {
        continue;
      }
      const int n = text.format(l.value, l.index, buf);
      draw_label(g_, std::string_view(buf, static_cast<std::size_t>(n)), (r.x0 + r.x1) / 2.0,
                 (r.y0 + r.y1 + raise) / 2.0, style);
      drawn.push_back(r);
      // The edge is a straight line on the page: every label's distance counts from it.
      a.reach = std::max(a.reach, far);
    }
    placed_.insert(placed_.end(), drawn.begin(), drawn.end());
  }

  // Every how many labels one is drawn so that neighbours keep a gap: upright labels of
  // width w and height h, repeated every s along the page direction u, stay apart when
  // s |ux| > w or s |uy| > h.
  static int label_stride(const BoxAxis& a, const std::vector<AxisLabel>& labels, double widest,
                          int height) {
    const double gap = kLabelGap * height;
    const double need =
        std::min(std::fabs(a.ux) > 1e-9 ? (widest + gap) / std::fabs(a.ux) : HUGE_VAL,
                 std::fabs(a.uy) > 1e-9 ? (height + gap) / std::fabs(a.uy) : HUGE_VAL);
    double spacing = HUGE_VAL;
    for (std::size_t i = 1; i < labels.size(); ++i) {
      const PagePoint& p = labels[i - 1].at;
      const PagePoint& q = labels[i].at;
      spacing = std::min(spacing, std::hypot(q.x - p.x, q.y - p.y));
    }
    if (!(spacing < need)) {
      return 1;
    }
    return spacing > 0.0 ? static_cast<int>(std::min(1e6, std::ceil(need / spacing))) : 1000000;
  }

  // The name beside the middle of the edge, beyond the labels; moved further out while
  // it would cover the labels of another axis.
  void draw_name(int ax) {
    const BoxAxis& a = axes_[idx(ax)];
    const AxisSettings& st = settings(ax);
    if (!a.marks || st.name.empty()) {
      return;
    }
    const int height = g_.axes.name_height > 0 ? g_.axes.name_height : g_.text.height;
    const Vec3 mid = edge_point(g_, a.edge, 0.0);
    if (!visible(mid)) {
      return;
    }
    const PagePoint at = project(g_, mid);
    const double w = measure_label(g_, st.name.view(), height, true);
    double dist = a.reach + st.name_dist;
    double far = 0.0;
    PageRect r = place(a, at.x, at.y, dist, w, height, 0.0, far);
    for (int i = 0; i < kNameTries && overlaps_placed(r, kTextGap * height); ++i) {
      dist += height;
      r = place(a, at.x, at.y, dist, w, height, 0.0, far);
    }
    const PartColour c(g_, st.colours[3]);
    LabelStyle style;
    style.height = height;
    style.hjust = 1;
    style.vjust = 1;
    style.user_text = true;
    draw_label(g_, st.name.view(), (r.x0 + r.x1) / 2.0, (r.y0 + r.y1) / 2.0, style);
    placed_.push_back(r);
  }

  GlobalBlock& g_;
  std::array<BoxEdge, 3> edges_;
  std::array<BoxAxis, 3> axes_{};
  std::vector<PageRect> placed_;  // labels and names drawn so far
};

// Grid lines on the plane across axis r at its back side: n lines per label interval of
// axis p, running along axis q.
void grid_lines(GlobalBlock& g, int p, int q, int n) {
  std::vector<double> values;
  if (!grid_marks(g.axes, p, n, values)) {
    warn(g, 251, kMaxAxisTicks);
    return;
  }
  const int r = 3 - p - q;
  const double hq = g.view3d.box[idx(q)] / 2.0;
  for (const double v : values) {
    Vec3 a{};
    a[idx(p)] = box_coordinate(g, p, v);
    a[idx(r)] = back_side(g, r) * g.view3d.box[idx(r)] / 2.0;
    Vec3 b = a;
    a[idx(q)] = -hq;
    b[idx(q)] = hq;
    line3d(g, a, b, false);
  }
}

}  // namespace

int back_side(const GlobalBlock& g, int ax) {
  return g.view3d.eye[idx(std::clamp(ax, 0, 2))] > 0.0 ? -1 : 1;
}

std::array<BoxEdge, 3> axis_edges(const GlobalBlock& g) {
  std::array<BoxEdge, 3> chosen{};
  std::array<bool, 3> done{};
  // z first: the furthest left of its outline edges (the lower one of two as far left).
  auto pick = [&](int ax, auto&& better) {
    bool any = false;
    for (const BoxEdge& e : edges_along(ax)) {
      if (on_outline(g, e) &&
          (!any || better(edge_middle(g, e), edge_middle(g, chosen[idx(ax)])))) {
        chosen[idx(ax)] = e;
        any = true;
      }
    }
    done[idx(ax)] = any;
  };
  pick(kAxisZ, [](const PagePoint& p, const PagePoint& q) {
    return p.x < q.x - kTie || (p.x <= q.x + kTie && p.y > q.y + kTie);
  });
  // x and y: the lowest of their outline edges; of two as low, the one further from
  // the z axis (or further left, when z is seen end-on).
  const PagePoint z = edge_middle(g, chosen[kAxisZ]);
  const bool has_z = done[kAxisZ];
  for (const int ax : {kAxisX, kAxisY}) {
    pick(ax, [&](const PagePoint& p, const PagePoint& q) {
      if (p.y > q.y + kTie) {
        return true;
      }
      if (p.y < q.y - kTie) {
        return false;
      }
      if (has_z) {
        return std::hypot(p.x - z.x, p.y - z.y) > std::hypot(q.x - z.x, q.y - z.y) + kTie;
      }
      return p.x < q.x - kTie;
    });
  }
  // An axis seen end-on: the edge that keeps furthest from the other two.
  for (int ax = 0; ax < 3; ++ax) {
    if (done[idx(ax)]) {
      continue;
    }
    int fewest = 99;
    for (const BoxEdge& e : edges_along(ax)) {
      int n = 0;
      for (int other = 0; other < 3; ++other) {
        n += other == ax ? 0 : shared_corners(g, e, chosen[idx(other)]);
      }
      if (n < fewest) {
        fewest = n;
        chosen[idx(ax)] = e;
      }
    }
  }
  return chosen;
}

void draw_box3d(GlobalBlock& g) {
  const BoxTextHeights heights(g);
  BoxPainter(g).run();
}

namespace api {

void grid3d(GlobalBlock& g, int igrid, int jgrid, const char* copt) {
  const int which = match_keyword(g, "ALL +XY  +XZ  +YZ  ", copt);
  if (which == 0 || !check_range(g, igrid, 1, kMaxTicks) || !check_range(g, jgrid, 1, kMaxTicks)) {
    return;
  }
  // The planes in the order of the keywords, each with its two axes.
  constexpr int kPlanes[3][2] = {{kAxisX, kAxisY}, {kAxisX, kAxisZ}, {kAxisY, kAxisZ}};
  const PartColour colour(g, grid_colour(g));
  for (int k = 0; k < 3; ++k) {
    if (which != 1 && which != k + 2) {
      continue;
    }
    const int p = kPlanes[k][0];
    const int q = kPlanes[k][1];
    grid_lines(g, p, q, igrid);
    grid_lines(g, q, p, jgrid);
  }
  end_polyline(g);
}

}  // namespace api
}  // namespace zorvel

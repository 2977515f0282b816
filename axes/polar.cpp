// Polar axis systems: grafp, the conversion of a radius and an angle into a page position,
// the polar forms of curve (spokes for BARS and STEM, wedges for FBAR), polgrd and polpos.
//
// The circle of the largest radius fills the shorter side of the axis rectangle, centred
// in it. Angle labels stand outside it in degrees; the radius is labelled under the
// horizontal radius on the right, drawn as the lower X axis would be:
//
//                       90                  polopt "ZERO" turns the angle 0 to the
//                 .-----+-----.             east (default), north, west or south, and
//               /       |       \           "DIRE" makes angles grow anticlockwise
//          180 +--------+--|--|--+ 0        (default) or clockwise on the page;
//               \       |  1  2 /           "ANGL" says whether the data's angles are
//                 '-----+-----'             radians (default) or degrees
//                      270
//
// Inside the axis system lines are clipped to the circle; filled areas, whose clipping
// stops at the circle's square, never reach beyond it because wedges keep within the
// largest radius.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>
#include <vector>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes/axis_marks.h"
#include "axes/labels.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "text/layout.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180.0;
// The page angle of the angle 0 for each direction of polopt "ZERO".
constexpr double kZeroAngle[4] = {0.0, 0.5 * kPi, kPi, 1.5 * kPi};
// Largest gap between a circle and its polygon, plot units.
constexpr double kRoundness = 0.2;
// Gap between angle labels, as a share of the label height: closer ones are thinned.
constexpr double kLabelSpacing = 0.6;
// Wedges of FBAR: their width as a share of the smallest angle between the points, and
// the width of a single wedge (a twentieth of the circle).
constexpr double kWedgeShare = 0.8;
constexpr double kLoneWedge = 0.1 * kPi;

// Page angle (radians, anticlockwise from east) of the data angle phi.
double page_angle(const PolarState& p, double phi) {
  const double a = p.degrees ? phi * kDegree : phi;
  return kZeroAngle[std::clamp(p.zero, 0, 3)] + (p.clockwise ? -a : a);
}

// Page angle of an angle label's value (degrees, whatever polopt "ANGL" says).
double label_angle(const PolarState& p, double degrees) {
  return kZeroAngle[std::clamp(p.zero, 0, 3)] + (p.clockwise ? -1.0 : 1.0) * degrees * kDegree;
}

void circle(GlobalBlock& g, double cx, double cy, double r) {
  const int n = arc_segments(r, 2.0 * kPi);
  move_to(g, cx + r, cy);
  for (int k = 1; k <= n; ++k) {
    const double a = 2.0 * kPi * k / n;
    draw_to(g, cx + r * std::cos(a), cy - r * std::sin(a));
  }
}

// The circle's place in the axis rectangle, and the scalings' factors and corners.
void place_circle(GlobalBlock& g) {
  AxisState& s = g.axes;
  PolarState& p = g.charts.polar;
  p.radius = 0.5 * (std::min(s.len_x, s.len_y) - 1.0);
  p.centre_x = s.pos_x + 0.5 * (s.len_x - 1.0);
  p.centre_y = s.pos_y - 0.5 * (s.len_y - 1.0);
  p.factor = p.radius / p.range;
  AxisScale& x = s.scale[kAxisX];
  x.factor = p.factor;
  x.corner = p.centre_x;
  AxisScale& y = s.scale[kAxisY];
  y.factor = 1.0;
  y.corner = p.centre_y;
}

// The angle labels that are drawn: every label of the step once round the circle,
// thinned to every stride-th where they would touch.
struct AngleLabels {
  std::vector<LabelMark> marks;
  int stride = 1;
};

bool angle_labels(GlobalBlock& g, double out, AngleLabels& a) {
  const AxisState& s = g.axes;
  if (!label_marks(s, kAxisY, a.marks)) {
    return false;
  }
  const AxisScale& sc = s.scale[kAxisY];
  const double last = sc.a + 360.0 - 1e-9 * std::fabs(sc.step);
  std::erase_if(a.marks, [&](const LabelMark& m) { return m.value >= last; });
  // Labels along the arc closer than their width are thinned.
  const AxisLabelText text(s, kAxisY, a.marks, label_chars(g));
  char buf[kLabelBuffer];
  double widest = 0.0;
  for (const LabelMark& m : a.marks) {
    const int n = text.format(m.value, m.index, buf);
    widest = std::max(widest, static_cast<double>(measure_label(
                                  g, std::string_view(buf, static_cast<std::size_t>(n)),
                                  g.text.height)));
  }
  const double spacing = out * sc.step * kDegree;
  const double need = widest + kLabelSpacing * g.text.height;
  if (spacing > 0.0 && spacing < need) {
    a.stride = static_cast<int>(std::min(1e6, std::ceil(need / spacing)));
  }
  return true;
}

// The text of an angle label: the axis' label with a degree sign after plain numbers.
int angle_text(const AxisState& s, const AxisLabelText& text, const LabelMark& m, char* buf) {
  int n = text.format(m.value, m.index, buf);
  const AxisSettings& st = s.axis[kAxisY];
  if (st.kind == kKindOrdinary && st.label_type != kLabMyla && n > 0 &&
      n + 4 < static_cast<int>(kLabelBuffer)) {
    buf[n++] = text.chars().raise;
    buf[n++] = 'o';
    buf[n++] = text.chars().back;
    buf[n] = '\0';
  }
  return n;
}

// The circle, its ticks and the angle labels; returns how far they reach beyond each
// side of the axis rectangle.
AxisExtents angle_axis(GlobalBlock& g, bool draw) {
  const AxisState& s = g.axes;
  const PolarState& p = g.charts.polar;
  const AxisSettings& st = s.axis[kAxisY];
  const int parts = s.sides[kSideLeft];
  AxisExtents ext{};
  if (parts == kPartNone) {
    return ext;
  }
  const double r = p.radius;
  if (draw) {
    const PartColour c(g, st.colours[0]);
    for (int i = 0; i < std::max(1, s.frame); ++i) {
      circle(g, p.centre_x, p.centre_y, r + i);
    }
  }
  double out = std::max(0, s.frame - 1);
  if (parts >= kPartTick && st.ticks > 0) {
    const int len = s.tick_major;
    const double reach = st.tick_pos == 0 ? len : st.tick_pos == 2 ? 0.5 * len : 0.0;
    if (draw) {
      const PartColour c(g, st.colours[1]);
      std::vector<TickMark> ticks;
      tick_marks(s, kAxisY, ticks);
      for (const TickMark& t : ticks) {
        const double l = t.major ? s.tick_major : s.tick_minor;
        const double lo = st.tick_pos == 0 ? 0.0 : st.tick_pos == 1 ? -l : -0.5 * l;
        const double a = label_angle(p, t.value);
        const double ca = std::cos(a), sa = std::sin(a);
        move_to(g, p.centre_x + (r + lo) * ca, p.centre_y - (r + lo) * sa);
        draw_to(g, p.centre_x + (r + lo + l) * ca, p.centre_y - (r + lo + l) * sa);
      }
    }
    out = std::max(out, reach);
  }
  if (parts < kPartLabel || st.label_type == kLabNone) {
    return ext;
  }
  out += r + st.label_dist;
  AngleLabels labels;
  if (!angle_labels(g, out, labels)) {
    return ext;
  }
  const AxisLabelText text(s, kAxisY, labels.marks, label_chars(g));
  const PartColour c(g, st.colours[2]);
  const int h = g.text.height;
  const double left = s.pos_x;
  const double right = s.pos_x + s.len_x - 1.0;
  const double top = s.pos_y - s.len_y + 1.0;
  const double bottom = s.pos_y;
  char buf[kLabelBuffer];
  for (const LabelMark& m : labels.marks) {
    if (m.index % labels.stride != 0) {
      continue;
    }
    const std::string_view label(buf, static_cast<std::size_t>(angle_text(s, text, m, buf)));
    const double w = measure_label(g, label, h);
    // The label's middle, pushed out until its nearest edge keeps the distance.
    const double a = label_angle(p, m.value);
    const double ca = std::cos(a), sa = std::sin(a);
    const double d = out + 0.5 * (std::fabs(ca) * w + std::fabs(sa) * h);
    const double x = p.centre_x + d * ca;
    const double y = p.centre_y - d * sa;
    ext[kSideLeft] = std::max(ext[kSideLeft], left - (x - 0.5 * w));
    ext[kSideRight] = std::max(ext[kSideRight], x + 0.5 * w - right);
    ext[kSideTop] = std::max(ext[kSideTop], top - (y - 0.5 * h));
    ext[kSideBottom] = std::max(ext[kSideBottom], y + 0.5 * h - bottom);
    if (draw) {
      draw_label(g, label, x, y, LabelStyle{0, h, 1, 1});
    }
  }
  return ext;
}

// The smallest angle between the data points (radians), for the width of wedges.
double smallest_gap(const PolarState& p, const double* phi, int n) {
  double gap = HUGE_VAL;
  for (int i = 1; i < n; ++i) {
    const double a = page_angle(p, phi[i - 1]);
    const double b = page_angle(p, phi[i]);
    if (!std::isfinite(a) || !std::isfinite(b)) {
      continue;
    }
    double d = std::fmod(std::fabs(b - a), 2.0 * kPi);
    d = std::min(d, 2.0 * kPi - d);
    if (d > 1e-12) {
      gap = std::min(gap, d);
    }
  }
  return std::isfinite(gap) ? kWedgeShare * gap : kLoneWedge;
}

}  // namespace

int arc_segments(double radius, double sweep) {
  const double r = std::fabs(radius);
  if (!(r > kRoundness) || !std::isfinite(r) || !(sweep > 0.0)) {
    return 1;
  }
  const double step = 2.0 * std::acos(1.0 - kRoundness / r);
  return static_cast<int>(std::clamp(std::ceil(std::min(sweep, 2.0 * kPi) / step), 1.0, 2000.0));
}

bool polar_to_page(const GlobalBlock& g, double r, double phi, double& px, double& py) {
  const PolarState& p = g.charts.polar;
  const double a = page_angle(p, phi);
  const double d = r * p.factor;
  px = p.centre_x + d * std::cos(a);
  py = p.centre_y - d * std::sin(a);
  return std::isfinite(px) && std::isfinite(py);
}

void draw_polar_bars(GlobalBlock& g, const double* r, const double* phi, int n, int method) {
  const PolarState& p = g.charts.polar;
  if (method != kFilledBars) {
    // BARS and STEM: a spoke from the centre to every point.
    for (int i = 0; i < n; ++i) {
      double x = 0.0, y = 0.0;
      if (polar_to_page(g, r[i], phi[i], x, y)) {
        move_to(g, p.centre_x, p.centre_y);
        draw_to(g, x, y);
      }
    }
    return;
  }
  // A wedge from the centre to every point, as wide as kWedgeShare of the closest
  // points' angle; kept within the largest radius, which is what clipping to the circle
  // would leave of it.
  const double width = smallest_gap(p, phi, n);
  std::vector<double> xs, ys;
  for (int i = 0; i < n; ++i) {
    double a = page_angle(p, phi[i]);
    double d = r[i] * p.factor;
    if (!std::isfinite(a) || !std::isfinite(d)) {
      if (g.core.nans < 0x7fffffff) {
        ++g.core.nans;
      }
      continue;
    }
    if (d < 0.0) {
      d = -d;
      a += kPi;
    }
    d = std::min(d, p.radius);
    const int segments = arc_segments(d, width);
    xs.assign(1, p.centre_x);
    ys.assign(1, p.centre_y);
    for (int k = 0; k <= segments; ++k) {
      const double t = a - 0.5 * width + width * k / segments;
      xs.push_back(p.centre_x + d * std::cos(t));
      ys.push_back(p.centre_y - d * std::sin(t));
    }
    fill_polygon(g, xs.data(), ys.data(), static_cast<int>(xs.size()));
  }
}

AxisExtents draw_polar_axes(GlobalBlock& g, bool draw) {
  const AxisState& s = g.axes;
  const PolarState& p = g.charts.polar;
  const PageClipScope page(g);
  AxisExtents ext = angle_axis(g, draw);
  // The radius axis: the lower X axis laid along the horizontal radius on the right.
  const double reach =
      draw_axis_ray(g, kAxisX, p.centre_x, p.centre_y, 1.0, 0.0, 0.0, 1.0, p.radius, draw);
  ext[kSideBottom] = std::max(ext[kSideBottom], p.centre_y + reach - s.pos_y);
  return ext;
}

void end_polar(GlobalBlock& g) {
  clear_clip_circle(g);
  g.axes.log[kAxisX] = g.charts.polar.kept_log[0];
  g.axes.log[kAxisY] = g.charts.polar.kept_log[1];
  g.charts.polar.kept_log = {};
}

namespace api {

void grafp(GlobalBlock& g, double xe, double xorg, double xstp, double yorg, double ystp) {
  AxisState& s = g.axes;
  PolarState& p = g.charts.polar;
  const double vx[4] = {0.0, xe, xorg, xstp};
  if (!check_axis_scaling(g, vx)) {
    return;
  }
  if (xe < 0.0) {
    warn(g, 2, xe);
    return;
  }
  if (!std::isfinite(yorg) || !std::isfinite(ystp)) {
    warn(g, 2, std::isfinite(yorg) ? ystp : yorg);
    return;
  }
  if (std::fabs(ystp) < 1e-35) {
    warn(g, 9);
    return;
  }
  if (ystp < 0.0) {
    warn(g, 50);
    ystp = -ystp;
  }
  if (s.log[kAxisX] || s.log[kAxisY]) {
    warn(g, 13);
  }
  p.kept_log = {s.log[kAxisX], s.log[kAxisY]};
  s.log[kAxisX] = false;
  s.log[kAxisY] = false;
  g.core.level = 2;
  s.polar = true;
  s.no_axes = false;
  p.range = xe;
  AxisScale& x = s.scale[kAxisX];
  x = AxisScale{};
  x.a = 0.0;
  x.e = xe;
  x.first = xorg;
  x.step = xstp;
  // Negative radii lie opposite their angle: only radii beyond xe are out of the scaling.
  x.umin = -xe;
  x.umax = xe;
  AxisScale& y = s.scale[kAxisY];
  y = AxisScale{};
  y.a = yorg;
  y.e = yorg + 360.0;
  y.first = yorg;
  y.step = ystp;
  y.umin = y.a;
  y.umax = y.e;
  for (const AxisScale* sc : {&x, &y}) {
    if (std::fabs((sc->e - sc->a) / sc->step) > kMaxAxisLabels) {
      warn(g, 251, kMaxAxisLabels);  // drawn without labels and ticks
    }
  }
  s.scaled = true;
  place_circle(g);
  if (s.centring == 1) {
    centre_axis_system(g);
    s.centring = 2;
    place_circle(g);
  }
  const int colour = g.colour.current;
  {
    const DashScope solid(g);
    if (s.background != -1) {
      std::vector<double> xs, ys;
      const int n = arc_segments(p.radius, 2.0 * kPi);
      for (int k = 0; k < n; ++k) {
        xs.push_back(p.centre_x + p.radius * std::cos(2.0 * kPi * k / n));
        ys.push_back(p.centre_y - p.radius * std::sin(2.0 * kPi * k / n));
      }
      set_colour(g, s.background);
      fill_polygon(g, xs.data(), ys.data(), n);
      set_colour(g, colour);
    }
    draw_polar_axes(g, true);
    if (g.colour.current != colour) {
      set_colour(g, colour);
    }
  }
  set_axis_clip(g, {p.centre_x - p.radius, p.centre_y - p.radius, p.centre_x + p.radius,
                    p.centre_y + p.radius});
  clip_to_axis(g);
  set_clip_circle(g, p.centre_x, p.centre_y, p.radius + kClipTolerance);
}

void polopt(GlobalBlock& g, const char* cval, const char* copt) {
  PolarState& p = g.charts.polar;
  const int opt = match_keyword(g, "ANGL+DIRE+ZERO", copt);
  switch (opt) {
    case 1:
      if (const int i = match_keyword(g, "RADI+DEGR", cval); i != 0) {
        p.degrees = i == 2;
      }
      break;
    case 2:
      if (const int i = match_keyword(g, "ANTI+CLOC", cval); i != 0) {
        p.clockwise = i == 2;
      }
      break;
    case 3:
      if (const int i = match_keyword(g, "EAST+NORT+WEST+SOUT", cval); i != 0) {
        p.zero = i - 1;
      }
      break;
    default:
      break;
  }
}

void polgrd(GlobalBlock& g, int nring, int nspoke) {
  if (!g.axes.polar) {
    warn(g, 261);
    return;
  }
  if (!check_range(g, nring, 0, kMaxTicks) || !check_range(g, nspoke, 0, kMaxTicks)) {
    return;
  }
  const AxisState& s = g.axes;
  const PolarState& p = g.charts.polar;
  const PartColour colour(g, grid_colour(g));
  std::vector<double> values;
  if (nring > 0) {
    if (!grid_marks(s, kAxisX, nring, values)) {
      warn(g, 251, kMaxAxisTicks);
    }
    for (const double v : values) {
      // The outermost circle is the axis itself.
      if (v > 0.0 && v < p.range * (1.0 - 1e-9)) {
        circle(g, p.centre_x, p.centre_y, v * p.factor);
      }
    }
  }
  if (nspoke > 0) {
    if (!grid_marks(s, kAxisY, nspoke, values)) {
      warn(g, 251, kMaxAxisTicks);
    }
    const AxisScale& sc = s.scale[kAxisY];
    const double last = sc.a + 360.0 - 1e-9 * sc.step;
    for (const double v : values) {
      if (v >= last) {
        continue;
      }
      const double a = label_angle(p, v);
      move_to(g, p.centre_x, p.centre_y);
      draw_to(g, p.centre_x + p.radius * std::cos(a), p.centre_y - p.radius * std::sin(a));
    }
  }
  end_polyline(g);
}

void polpos(GlobalBlock& g, double r, double phi, double* xp, double* yp) {
  *xp = 0.0;
  *yp = 0.0;
  if (!g.axes.polar) {
    warn(g, 261);
    return;
  }
  double x = 0.0, y = 0.0;
  polar_to_page(g, r, phi, x, y);
  *xp = x;
  *yp = page_y(g, y);
}

}  // namespace api
}  // namespace zorvel

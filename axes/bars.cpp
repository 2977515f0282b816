// Bar graphs: bars with their types, widths, groups, colours, 3D depth and labels, and
// labpos for the labels of bars and pies.
//
// A call of bars lays its bars out in page coordinates. Along the category direction a
// bar of width W is centred at its position; the k calls of a group (bargrp) share that
// width, in the order of growing user values:
//
//   |<------------------------------ W ------------------------------>|
//   +-------------------+  G  +-------------------+  G  +-------------------+
//   |      call 1       |     |      call 2       |     |      call 3       |
//   |<------- b ------->|        b = (W - (k - 1) G) / k
//
// A 3D bar adds its top and its side: the back face is the front shifted by
// d = depth * b at the angle of baropt, to the upper right.
//
//        +-----------+
//       /    top    /|
//      +-----------+ |
//      |           |s|
//      |   front   |i|
//      |           |d+
//      |           |/
//      +-----------+
//
// Bars further back are drawn first, so that the fronts of their neighbours cover their
// sides: vertical bars from left to right, horizontal ones from the bottom up.

#include "axes/bars.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>
#include <vector>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes/axis_marks.h"
#include "axes/curves.h"
#include "core/format.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "text/text.h"

namespace zorvel {
namespace {

// Relative widths and gaps (negative barwth and bargrp values) up to ten times the
// smallest gap; absolute ones up to 1e15 user units.
constexpr double kMaxRelative = 10.0;
constexpr double kMaxAbsolute = 1e15;
// Calls in one bar group.
constexpr int kMaxGroup = 1000;
// 3D depth in bar widths.
constexpr double kMaxDepth = 10.0;
// Bars are cut this far (plot units) around the axis system before they are drawn: what
// lies beyond is clipped anyway, and the sums of the 3D faces stay exact.
constexpr double kReach = 1e7;
// Page positions closer than this are the same position (plot units).
constexpr double kSamePosition = 1e-6;
// Darkening of the side and the top of 3D bars.
constexpr double kSideShade = 0.6;
constexpr double kTopShade = 0.8;
// Most decimals that automatic label digits (labdig -2) choose.
constexpr int kMaxAutoDigits = 6;

enum BarLabel : int { kLabelNone = 0, kLabelSecond, kLabelFirst, kLabelMax, kLabelMin,
                      kLabelDelta, kLabelPosition };
enum LabelPlace : int { kOutside = 0, kInside = 1, kCentre = 2 };

const double kNaN = std::nan("");

double page_of(const GlobalBlock& g, int ax, double v) {
  return ax == kAxisX ? axis_page_x(g, v) : axis_page_y(g, v);
}

// Keeps a page position within kReach of the axis system (NaN stays NaN).
double keep_near(const GlobalBlock& g, int ax, double p) {
  const AxisState& s = g.axes;
  const double lo = ax == kAxisX ? s.pos_x : s.pos_y - s.len_y;
  const double hi = ax == kAxisX ? s.pos_x + s.len_x : s.pos_y;
  return std::isnan(p) ? p : std::clamp(p, lo - kReach, hi + kReach);
}

// Whether a page position lies within the axis system along axis ax.
bool inside_axes(const GlobalBlock& g, int ax, double p) {
  const AxisState& s = g.axes;
  const double lo = ax == kAxisX ? s.pos_x : s.pos_y - s.len_y + 1;
  const double hi = ax == kAxisX ? s.pos_x + s.len_x - 1 : s.pos_y;
  return p >= lo - 0.5 && p <= hi + 0.5;
}

// +1 when page positions along the category axis grow with its user values, else -1.
double category_direction(const GlobalBlock& g, const BarLayout& l) {
  const AxisScale& sc = g.axes.scale[static_cast<std::size_t>(l.category_axis)];
  const bool growing = sc.e > sc.a;
  return (l.category_axis == kAxisX) == growing ? 1.0 : -1.0;
}

// The reference of relative widths: the smallest gap between the bars, else one label
// step of the category axis, else a twentieth of its length.
double reference_gap(const GlobalBlock& g, const BarLayout& l, double gap) {
  if (gap > 0.0) {
    return gap;
  }
  const AxisScale& sc = g.axes.scale[static_cast<std::size_t>(l.category_axis)];
  const double step = std::fabs(sc.step) * category_scale(g, l);
  if (step > 0.0 && std::isfinite(step)) {
    return step;
  }
  return 0.05 * (l.category_axis == kAxisX ? g.axes.len_x : g.axes.len_y);
}

// The smallest gap between distinct page positions of x, 0 with fewer than two.
double smallest_gap(GlobalBlock& g, const BarLayout& l, const double* x, int n) {
  std::vector<double>& p = g.charts.bars.scratch;
  p.clear();
  for (int i = 0; i < n; ++i) {
    const double c = bar_category_page(g, l, x[i]);
    if (!std::isnan(c)) {
      p.push_back(c);
    }
  }
  std::sort(p.begin(), p.end());
  double gap = 0.0;
  for (std::size_t i = 1; i < p.size(); ++i) {
    const double d = p[i] - p[i - 1];
    if (d > kSamePosition && (gap == 0.0 || d < gap)) {
      gap = d;
    }
  }
  return gap;
}

// Warning 28 when the category axis is labelled with MYLA labels and the bars are not as
// many as its labels; they are drawn all the same.
void check_categories(GlobalBlock& g, const BarLayout& l, int n) {
  if (g.axes.axis[static_cast<std::size_t>(l.category_axis)].label_type != kLabMyla) {
    return;
  }
  std::vector<LabelMark> marks;
  label_marks(g.axes, l.category_axis, marks);
  if (static_cast<int>(marks.size()) != n) {
    warn(g, 28, n);
  }
}

// Where the bars of this call stand within the width W: offset of their centre from the
// position and their own width.
struct Slot {
  double offset = 0.0;
  double width = 0.0;
};

Slot group_slot(GlobalBlock& g, const BarLayout& l, double w, double gap) {
  const BarState& b = g.charts.bars;
  if (b.group_size <= 1) {
    return {0.0, w};
  }
  const int k = b.group_size;
  double between = b.group_gap >= 0.0 ? b.group_gap * category_scale(g, l)
                                      : -b.group_gap * reference_gap(g, l, gap);
  double each = (w - (k - 1) * between) / k;
  if (!(each > 0.0)) {
    // The gaps leave no room for the bars: they stand side by side without gaps.
    warn(g, 2, b.group_gap);
    between = 0.0;
    each = w / k;
  }
  const double offset = -0.5 * w + 0.5 * each + b.group_done * (each + between);
  return {category_direction(g, l) * offset, each};
}

int darker(const GlobalBlock& g, int value, double f) {
  const Rgb c = colour_rgb(g, value);
  const auto part = [f](int v) { return static_cast<int>(std::lround(v * f)); };
  return explicit_rgb(part(c.r), part(c.g), part(c.b));
}

// One face: filled, then outlined.
void face(GlobalBlock& g, const double* xs, const double* ys, int fill, int line) {
  set_colour_if(g, fill);
  fill_polygon(g, xs, ys, 4);
  set_colour_if(g, line);
  move_to(g, xs[0], ys[0]);
  for (int i = 1; i <= 4; ++i) {
    draw_to(g, xs[i % 4], ys[i % 4]);
  }
}

// The page positions of bar i: its category and its two ends; false when one of its
// numbers cannot be placed.
bool place_bar(const GlobalBlock& g, const BarLayout& l, double x, double y1, double y2,
               double& c, double& v1, double& v2) {
  c = bar_category_page(g, l, x);
  v1 = bar_value_page(g, l, y1);
  v2 = bar_value_page(g, l, y2);
  return !std::isnan(c) && !std::isnan(v1) && !std::isnan(v2);
}

// The decimals of a label: labdig's, or with -2 the fewest that show the value.
int label_digits(int digits, double v) {
  if (digits != -2) {
    return digits;
  }
  double scaled = v;
  for (int d = 0; d <= kMaxAutoDigits; ++d) {
    if (std::fabs(scaled - std::round(scaled)) <= 1e-9 * std::max(1.0, std::fabs(scaled))) {
      return d == 0 ? -1 : d;
    }
    scaled *= 10.0;
  }
  return kMaxAutoDigits;
}

double label_value(int kind, double x, double y1, double y2) {
  switch (kind) {
    case kLabelFirst: return y1;
    case kLabelMax: return std::max(y1, y2);
    case kLabelMin: return std::min(y1, y2);
    case kLabelDelta: return y2 - y1;
    case kLabelPosition: return x;
    default: return y2;
  }
}

// The labels of labels(copt, "BAR") at the end y2 of every bar (outside beyond it, inside
// before it, or at the bar's centre), in the colour the bars were called with; bars whose
// end lies outside the axis system get none.
void draw_labels(GlobalBlock& g, const BarLayout& l, const Slot& slot, const double* x,
                 const double* y1, const double* y2, int n, double dx, double dy) {
  const BarState& b = g.charts.bars;
  const ChartLabelSettings& cs = g.axes.chart;
  const PageClipScope page(g);
  const double dist = b.label_distance;
  for (int i = 0; i < n; ++i) {
    double c = 0.0, v1 = 0.0, v2 = 0.0;
    if (!place_bar(g, l, x[i], y1[i], y2[i], c, v1, v2)) {
      continue;
    }
    c += slot.offset;
    if (!inside_axes(g, l.category_axis, c) || !inside_axes(g, l.value_axis, v2)) {
      continue;  // the end of a bar that the axis system cuts off has no label
    }
    // The page direction from y1 to y2; a bar of no length points to growing values.
    double d = v2 > v1 ? 1.0 : v2 < v1 ? -1.0 : 0.0;
    if (d == 0.0) {
      const AxisScale& sc = g.axes.scale[static_cast<std::size_t>(l.value_axis)];
      d = (l.value_axis == kAxisX) == (sc.e > sc.a) ? 1.0 : -1.0;
    }
    double v = 0.5 * (v1 + v2);
    int along = 1;  // justification along the value direction: 0 before, 1 centred, 2 after
    if (b.label_position == kOutside) {
      v = v2 + d * dist;
      along = 0;
    } else if (b.label_position == kInside) {
      v = v2 - d * dist;
      along = 2;
    }
    LabelStyle st;
    st.height = g.text.height;
    double px = 0.0, py = 0.0;
    if (l.horizontal) {
      px = v;
      py = c;
      if (b.label_position == kOutside && d > 0.0) {
        px += dx;  // beyond the side of a 3D bar
        py -= 0.5 * dy;
      }
      st.vjust = 1;
      st.hjust = along == 1 ? 1 : (along == 0) == (d > 0.0) ? 0 : 2;
    } else {
      px = c;
      py = v;
      if (b.label_position == kOutside && d < 0.0) {
        py -= dy;  // above the top of a 3D bar
        px += 0.5 * dx;
      }
      st.hjust = 1;
      st.vjust = along == 1 ? 1 : (along == 0) == (d < 0.0) ? 2 : 0;
    }
    const double value = label_value(cs.bar_labels, x[i], y1[i], y2[i]);
    char buf[kNumberBuffer];
    const int len = format_number(buf, sizeof buf, value, label_digits(cs.bar_digits, value));
    draw_label(g, std::string_view(buf, static_cast<std::size_t>(len)), px, py, st);
  }
}

// The bar group advances by one call; after its last call bars stand alone again.
void advance_group(BarState& b) {
  if (b.group_size > 1 && ++b.group_done >= b.group_size) {
    b.group_size = 0;
    b.group_done = 0;
  }
}

}  // namespace

BarLayout bar_layout(const GlobalBlock& g) {
  const int t = g.charts.bars.type;
  BarLayout l;
  l.horizontal = t == 1 || t == 3;
  l.solid3d = t >= 2;
  l.category_axis = l.horizontal ? kAxisY : kAxisX;
  l.value_axis = l.horizontal ? kAxisX : kAxisY;
  return l;
}

double bar_category_page(const GlobalBlock& g, const BarLayout& l, double v) {
  if (!std::isfinite(v)) {
    return kNaN;
  }
  return keep_near(g, l.category_axis, page_of(g, l.category_axis, v));
}

double bar_value_page(const GlobalBlock& g, const BarLayout& l, double v) {
  if (!std::isfinite(v)) {
    return kNaN;
  }
  const auto ax = static_cast<std::size_t>(l.value_axis);
  if (g.axes.log[ax] && v <= 0.0) {
    const AxisScale& sc = g.axes.scale[ax];
    v = std::pow(10.0, std::min(sc.a, sc.e));
  }
  return keep_near(g, l.value_axis, page_of(g, l.value_axis, v));
}

double category_scale(const GlobalBlock& g, const BarLayout& l) {
  return std::fabs(g.axes.scale[static_cast<std::size_t>(l.category_axis)].factor);
}

double bar_width(const GlobalBlock& g, const BarLayout& l, double gap) {
  const double w = g.charts.bars.width;
  const double width = w > 0.0 ? w * category_scale(g, l) : -w * reference_gap(g, l, gap);
  return std::min(width, 4.0 * kReach);
}

BarColours bar_colours(GlobalBlock& g) {
  const BarState& b = g.charts.bars;
  const int current = g.colour.current;
  BarColours k{};
  k.fill = b.fill_colour >= 0 ? b.fill_colour : current;
  k.line = b.line_colour >= 0 ? b.line_colour : current;
  k.side = b.side_colour >= 0 ? b.side_colour : darker(g, k.fill, kSideShade);
  k.top = b.side_colour >= 0 ? b.side_colour : darker(g, k.fill, kTopShade);
  return k;
}

void draw_bar(GlobalBlock& g, const BarLayout& l, const BarColours& k, double c0, double c1,
              double v0, double v1, double dx, double dy) {
  const double a0 = std::min(c0, c1), a1 = std::max(c0, c1);
  const double b0 = std::min(v0, v1), b1 = std::max(v0, v1);
  const double x0 = l.horizontal ? b0 : a0, x1 = l.horizontal ? b1 : a1;
  const double y0 = l.horizontal ? a0 : b0, y1 = l.horizontal ? a1 : b1;
  if (dx != 0.0 || dy != 0.0) {
    const double side_x[4] = {x1, x1 + dx, x1 + dx, x1};
    const double side_y[4] = {y0, y0 - dy, y1 - dy, y1};
    face(g, side_x, side_y, k.side, k.line);
    const double top_x[4] = {x0, x1, x1 + dx, x0 + dx};
    const double top_y[4] = {y0, y0, y0 - dy, y0 - dy};
    face(g, top_x, top_y, k.top, k.line);
  }
  const double front_x[4] = {x0, x1, x1, x0};
  const double front_y[4] = {y0, y0, y1, y1};
  face(g, front_x, front_y, k.fill, k.line);
}

void set_colour_if(GlobalBlock& g, int value) {
  if (g.colour.current != value) {
    set_colour(g, value);
  }
}

void count_nan(GlobalBlock& g) {
  if (g.core.nans < 0x7fffffff) {
    ++g.core.nans;
  }
}

void record_bar_legend(GlobalBlock& g, int colour) {
  // The legend line of a bar graph: a box in its colour and the fill pattern in force.
  record_area(g, g.pipe.pattern.number, colour);
}

void end_bar_group(GlobalBlock& g) {
  BarState& b = g.charts.bars;
  if (b.group_size > 1 && b.group_done > 0) {
    warn(g, 263, b.group_done);
  }
  b.group_size = 0;
  b.group_done = 0;
}

namespace api {

void bars(GlobalBlock& g, const double* xray, const double* y1ray, const double* y2ray, int n) {
  if (n < 1) {
    warn(g, 2, n);
    return;
  }
  BarState& b = g.charts.bars;
  const BarLayout l = bar_layout(g);
  check_categories(g, l, n);
  const double gap = smallest_gap(g, l, xray, n);
  const Slot slot = group_slot(g, l, bar_width(g, l, gap), gap);
  const double depth = l.solid3d ? b.depth * slot.width : 0.0;
  const double angle = b.depth_angle * (std::numbers::pi / 180.0);
  const double dx = depth * std::cos(angle);
  const double dy = depth * std::sin(angle);

  // Back to front: the first and the last position tell the order of the others.
  const double first = bar_category_page(g, l, xray[0]);
  const double last = bar_category_page(g, l, xray[n - 1]);
  const bool reverse = l.horizontal ? last > first : last < first;
  {
    const CurveColour colour(g, true);
    const BarColours k = bar_colours(g);
    const DashScope solid(g);
    for (int j = 0; j < n; ++j) {
      const int i = reverse ? n - 1 - j : j;
      double c = 0.0, v1 = 0.0, v2 = 0.0;
      if (!place_bar(g, l, xray[i], y1ray[i], y2ray[i], c, v1, v2)) {
        count_nan(g);
        continue;
      }
      c += slot.offset;
      draw_bar(g, l, k, c - 0.5 * slot.width, c + 0.5 * slot.width, v1, v2, dx, dy);
    }
    end_polyline(g);
    record_bar_legend(g, k.fill);
  }
  if (g.axes.chart.bar_labels != kLabelNone) {
    draw_labels(g, l, slot, xray, y1ray, y2ray, n, dx, dy);
  }
  end_polyline(g);
  advance_group(b);
}

void bartyp(GlobalBlock& g, const char* ctyp) {
  if (const int i = match_keyword(g, "VERT+HORI+3DVE+3DHO", ctyp); i != 0) {
    g.charts.bars.type = i - 1;
  }
}

void barwth(GlobalBlock& g, double xwth) {
  if (xwth == 0.0) {
    warn(g, 2, xwth);
  } else if (check_range(g, xwth, -kMaxRelative, kMaxAbsolute)) {
    g.charts.bars.width = xwth;
  }
}

void bargrp(GlobalBlock& g, int ngrp, double xgap) {
  if (!check_range(g, ngrp, 1, kMaxGroup) || !check_range(g, xgap, -kMaxRelative, kMaxAbsolute)) {
    return;
  }
  BarState& b = g.charts.bars;
  if (b.group_size > 1 && b.group_done > 0) {
    warn(g, 263, b.group_done);
  }
  b.group_size = ngrp;
  b.group_gap = xgap;
  b.group_done = 0;
}

void barclr(GlobalBlock& g, int nfill, int nline, int nside) {
  if (check_range(g, nfill, -1, -2) && check_range(g, nline, -1, -2) &&
      check_range(g, nside, -1, -2)) {
    BarState& b = g.charts.bars;
    b.fill_colour = nfill;
    b.line_colour = nline;
    b.side_colour = nside;
  }
}

void baropt(GlobalBlock& g, double xdep, double xang) {
  if (check_range(g, xdep, 0.0, kMaxDepth) && check_range(g, xang, 0.0, 90.0)) {
    g.charts.bars.depth = xdep;
    g.charts.bars.depth_angle = xang;
  }
}

void labpos(GlobalBlock& g, const char* cpos, const char* cax) {
  const Key4 key = key4(cax);
  const std::string_view chart(key.data(), 3);
  if (chart == "BAR") {
    if (const int i = match_keyword(g, "OUTS+INSI+CENT", cpos); i != 0) {
      g.charts.bars.label_position = i - 1;
    }
  } else if (chart == "PIE") {
    if (const int i = match_keyword(g, "INTE+EXTE+ALIG", cpos); i != 0) {
      g.charts.pie.label_position = i - 1;
    }
  } else {
    warn(g, 2, std::string_view(cax));
  }
}

}  // namespace api
}  // namespace zorvel

// Drawing an axis system: the line, ticks, labels and name of every drawn side, the
// frame, the title lines and grid lines. The same code measures what it would draw, so
// that centring accounts for exactly what appears on the page.
//
// An axis is described by its start point (the page position of the scaling's start
// value), a unit vector along it and a unit normal pointing to the side of its labels.
// Every distance outwards is measured along that normal from the axis line.

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "axes/axes.h"
#include "axes/axis_marks.h"
#include "axes/labels.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/pipeline.h"
#include "maps/maps.h"
#include "text/layout.h"
#include "text/text.h"

namespace zorvel {
namespace {

// Gap between the labels, as a share of the label height: closer labels are thinned.
constexpr double kLabelGap = 0.6;
// Title lines: their distance from the axes and their spacing, in title heights.
constexpr double kTitleGap = 0.8;
constexpr double kTitleSpacing = 1.5;
// The Y name of a crossed system: its distance above the axis, in name heights.
constexpr double kCrossedNameGap = 0.5;

struct AxisLine {
  int ax = kAxisX;     // which scaling: 0 X, 1 Y
  int side = kSideBottom;
  double x0 = 0.0;     // page point of the start value of the scaling
  double y0 = 0.0;
  double ux = 1.0;     // along the axis, towards increasing positions
  double uy = 0.0;
  double nx = 0.0;     // outwards, towards the labels
  double ny = 1.0;
  double length = 1.0; // from the first to the last point of the axis, plot units
  int parts = kPartName;
  bool crossed = false;
};

const AxisScale& scale_of(const GlobalBlock& g, int ax) {
  return g.axes.scale[static_cast<std::size_t>(ax)];
}

const AxisSettings& settings_of(const GlobalBlock& g, int ax) {
  return g.axes.axis[static_cast<std::size_t>(ax)];
}

// Position along the axis (0 at the start value) of the scaling value v.
double along(const GlobalBlock& g, int ax, double v) {
  const AxisScale& sc = scale_of(g, ax);
  return (v - sc.a) * sc.factor;
}

// The settings of one side as setgrf and the axis system say.
int side_parts(const GlobalBlock& g, int side) {
  const AxisState& s = g.axes;
  if (s.crossed) {
    return side == kSideBottom || side == kSideLeft ? s.sides[static_cast<std::size_t>(side)]
                                                    : kPartNone;
  }
  if (s.no_second_axes && (side == kSideTop || side == kSideRight)) {
    return kPartNone;
  }
  return s.sides[static_cast<std::size_t>(side)];
}

AxisLine make_line(const GlobalBlock& g, int side) {
  const AxisState& s = g.axes;
  AxisLine l;
  l.side = side;
  l.parts = side_parts(g, side);
  l.crossed = s.crossed;
  const double left = s.pos_x;
  const double lower = s.pos_y;
  if (side == kSideBottom || side == kSideTop) {
    l.ax = kAxisX;
    l.x0 = left;
    l.y0 = s.crossed ? s.org_y : side == kSideBottom ? lower : lower - s.len_y + 1;
    l.ux = 1.0;
    l.uy = 0.0;
    l.nx = 0.0;
    l.ny = side == kSideBottom ? 1.0 : -1.0;
    l.length = s.len_x - 1.0;
  } else {
    l.ax = kAxisY;
    l.x0 = s.crossed ? s.org_x : side == kSideLeft ? left : left + s.len_x - 1;
    l.y0 = lower;
    l.ux = 0.0;
    l.uy = -1.0;
    l.nx = side == kSideLeft ? -1.0 : 1.0;
    l.ny = 0.0;
    l.length = s.len_y - 1.0;
  }
  return l;
}

// Labels run along the axis (X axes with horizontal labels, Y axes with vertical ones)
// or across it.
bool labels_along(const AxisLine& l, const AxisSettings& st) {
  return (l.ax == kAxisX) != st.vertical_labels;
}

// The drawing of one axis; measures when `draw` is false. Returns how far it reaches
// outwards from its line.
class AxisPainter {
 public:
  AxisPainter(GlobalBlock& g, const AxisLine& l, bool draw)
      : g_(g),
        l_(l),
        st_(settings_of(g, l.ax)),
        sc_(scale_of(g, l.ax)),
        draw_(draw),
        labels_ok_(label_marks(g.axes, l.ax, marks_)),
        text_(g.axes, l.ax, marks_, label_chars(g)) {
    height_ = g.text.height;
    name_height_ = g.axes.name_height > 0 ? g.axes.name_height : height_;
  }

  // An additional label of addlab at the scaling value v, placed as the axis' own
  // labels would be, with a major tick there when `tick` is set.
  void extra_label(std::string_view text, double v, bool tick) {
    const double t = along(g_, l_.ax, v);
    if (tick) {
      const PartColour c(g_, st_.colours[1]);
      tick_at(t, g_.axes.tick_major);
    }
    const PartColour c(g_, st_.colours[2]);
    LabelStyle style;
    style.height = height_;
    if (l_.ax == kAxisX) {
      style.hjust = 1;  // hanging below the lower axis
      style.vjust = 0;
    } else {
      style.hjust = 2;  // beside the left axis, aligned at its near edge
      style.vjust = 1;
    }
    double x = 0.0, y = 0.0;
    point(t, (st_.ticks == 0 ? 0.0 : tick_reach()) + st_.label_dist, x, y);
    draw_label(g_, text, x, y, style);
  }

  double run() {
    if (l_.parts == kPartNone) {
      return 0.0;
    }
    double out = 0.0;
    if (l_.parts >= kPartLine && st_.line && draw_) {
      const PartColour c(g_, st_.colours[0]);
      move_to(g_, l_.x0, l_.y0);
      draw_to(g_, l_.x0 + l_.ux * l_.length, l_.y0 + l_.uy * l_.length);
    }
    if (l_.parts >= kPartTick) {
      out = ticks();
    }
    if (l_.parts >= kPartLabel && st_.label_type != kLabNone) {
      out = labels(out + st_.label_dist);
    }
    if (l_.parts >= kPartName && !st_.name.empty()) {
      out = name(out + st_.name_dist);
    }
    return out;
  }

 private:
  // Point at position t along the axis and d outwards.
  void point(double t, double d, double& x, double& y) const {
    x = l_.x0 + l_.ux * t + l_.nx * d;
    y = l_.y0 + l_.uy * t + l_.ny * d;
  }

  void tick_at(double t, double len) {
    if (t < -0.5 || t > l_.length + 0.5) {
      return;
    }
    double lo = 0.0, hi = len;  // LABE: outwards
    if (st_.tick_pos == 1) {
      lo = -len;
      hi = 0.0;
    } else if (st_.tick_pos == 2) {
      lo = -0.5 * len;
      hi = 0.5 * len;
    }
    double x = 0.0, y = 0.0;
    point(t, lo, x, y);
    move_to(g_, x, y);
    point(t, hi, x, y);
    draw_to(g_, x, y);
  }

  // How far the ticks reach outwards.
  double tick_reach() const {
    const int len = g_.axes.tick_major;
    return st_.tick_pos == 0 ? len : st_.tick_pos == 2 ? 0.5 * len : 0.0;
  }

  double ticks() {
    const double reach = tick_reach();
    if (!draw_ || st_.ticks == 0) {
      return st_.ticks == 0 ? 0.0 : reach;
    }
    const PartColour c(g_, st_.colours[1]);
    if (!labels_ok_) {
      return 0.0;  // graf has reported the step
    }
    const double major = g_.axes.tick_major;
    const double minor = g_.axes.tick_minor;
    std::vector<TickMark> ticks;
    tick_marks(g_.axes, l_.ax, ticks);
    for (const TickMark& t : ticks) {
      tick_at(along(g_, l_.ax, t.value), t.major ? major : minor);
    }
    return reach;
  }

  // Which labels are drawn: the axends rules, and none at the origin of a crossed
  // system, where the other axis passes.
  bool shown(double v, int i, int last) const {
    const int ends = st_.ends;
    if ((ends == 1 || ends == 3) && i == 0) {
      return false;
    }
    if ((ends == 2 || ends == 3) && i == last) {
      return false;
    }
    return !(l_.crossed && v == 0.0);
  }

  double labels(double out) {
    if (st_.kind == kKindDate && !g_.axes.base_date_set) {
      if (draw_) {
        warn(g_, 252);
      }
      return out;
    }
    if (!labels_ok_) {
      return out;
    }
    char buf[kLabelBuffer];
    // Pass 1: the widest label, whether any is raised, the last index.
    double widest = 0.0;
    bool raised = false;
    int last = -1;
    for (const LabelMark& m : marks_) {
      const int n = text_.format(m.value, m.index, buf);
      const std::string_view text(buf, static_cast<std::size_t>(n));
      widest = std::max(widest, static_cast<double>(measure_label(g_, text, height_)));
      raised = raised || text.find(text_.chars().raise) != std::string_view::npos;
      last = m.index;
    }
    std::array<double, 2> forced{};
    int forced_count = 0;
    if (st_.ends >= 4) {
      if (st_.ends != 6) {
        forced[static_cast<std::size_t>(forced_count++)] = sc_.a;
      }
      if (st_.ends != 5) {
        forced[static_cast<std::size_t>(forced_count++)] = sc_.e;
      }
      for (int k = 0; k < forced_count; ++k) {
        const int n = text_.format(forced[static_cast<std::size_t>(k)], 0, buf);
        widest = std::max(widest, static_cast<double>(measure_label(
                                      g_, std::string_view(buf, static_cast<std::size_t>(n)),
                                      height_)));
      }
    }
    if (last < 0 && forced_count == 0) {
      return out;
    }
    const bool along_axis = labels_along(l_, st_);
    const double across = along_axis ? height_ * (raised ? 1.3 : 1.0) : widest;
    if (!draw_) {
      return out + across;
    }
    // Labels closer than their size are thinned to every stride-th.
    const double need =
        along_axis ? widest + kLabelGap * height_ : (1.0 + kLabelGap) * height_;
    const double spacing = sc_.months > 0 ? sc_.months * 30.4 * std::fabs(sc_.factor)
                                          : std::fabs(sc_.step * sc_.factor);
    int stride = 1;
    if (spacing > 0.0 && spacing < need && st_.label_type != kLabMyla) {
      stride = static_cast<int>(std::min(1e6, std::ceil(need / spacing)));
    }
    const PartColour c(g_, st_.colours[2]);
    const LabelStyle style = label_style(along_axis);
    double x = 0.0, y = 0.0;
    const double base = out + label_offset(along_axis, widest);
    for (const LabelMark& m : marks_) {
      if (m.index % stride != 0 || !shown(m.value, m.index, last) ||
          touches_forced(m.value, forced, forced_count, need)) {
        continue;
      }
      const int n = text_.format(m.value, m.index, buf);
      point(along(g_, l_.ax, m.value) + label_shift(along_axis), base, x, y);
      draw_label(g_, std::string_view(buf, static_cast<std::size_t>(n)), x, y, style);
    }
    for (int k = 0; k < forced_count; ++k) {
      const double v = forced[static_cast<std::size_t>(k)];
      const int n = text_.format(v, 0, buf);
      point(along(g_, l_.ax, v) + label_shift(along_axis), base, x, y);
      draw_label(g_, std::string_view(buf, static_cast<std::size_t>(n)), x, y, style);
    }
    return out + across;
  }

  // The forced end labels of axends take the place of labels that they would touch.
  bool touches_forced(double v, const std::array<double, 2>& forced, int count,
                      double need) const {
    for (int k = 0; k < count; ++k) {
      const double gap = std::fabs(along(g_, l_.ax, v) -
                                   along(g_, l_.ax, forced[static_cast<std::size_t>(k)]));
      if (gap < need) {
        return true;
      }
    }
    return false;
  }

  // Justification of the labels: their anchor is at the distance `out` from the axis,
  // on the line through the tick.
  LabelStyle label_style(bool along_axis) const {
    LabelStyle st;
    st.height = height_;
    st.angle = st_.vertical_labels ? 90 : 0;
    const int just = st_.label_just;
    const bool clog = st_.label_type == kLabClog;
    if (along_axis) {
      // Across the axis: the labels hang from it (or stand on it above it).
      if (!st_.vertical_labels) {
        st.hjust = just == 1 || clog ? 0 : just == 2 ? 2 : 1;
        st.vjust = l_.side == kSideTop ? 2 : 0;
      } else {
        st.hjust = just == 1 || clog ? 0 : just == 2 ? 2 : 1;
        st.vjust = l_.side == kSideLeft ? 2 : 0;
      }
      return st;
    }
    // The labels stand in a column beside the axis.
    st.vjust = 1;
    const bool near = near_aligned();
    if (!st_.vertical_labels) {
      // Y axis, horizontal text.
      const bool left_side = l_.side == kSideLeft;
      st.hjust = (near == left_side) ? 2 : 0;
    } else {
      // X axis, text running upwards.
      const bool below = l_.side == kSideBottom;
      st.hjust = (near == below) ? 2 : 0;
    }
    return st;
  }

  // Column labels aligned at the edge near the axis (AUTO, INWA, and LEFT or RIGH where
  // that is the near edge).
  bool near_aligned() const {
    const int just = st_.label_just;
    if (just == 0 || just == 4) {
      return true;
    }
    if (just == 3) {
      return false;
    }
    // LEFT and RIGH in terms of the text: its start or its end.
    const bool start_near = !st_.vertical_labels ? l_.side == kSideRight : l_.side == kSideTop;
    return just == 1 ? start_near : !start_near;
  }

  // Extra distance outwards for column labels aligned at the far edge.
  double label_offset(bool along_axis, double widest) const {
    return along_axis || near_aligned() ? 0.0 : widest;
  }

  // Shift along the axis of CLOG labels: "10" centred on the tick.
  double label_shift(bool along_axis) const {
    if (!along_axis || st_.label_type != kLabClog) {
      return 0.0;
    }
    const double ten = measure_label(g_, "10", height_);
    return -0.5 * ten;
  }

  double name(double out) {
    const bool above = l_.crossed && l_.ax == kAxisY && st_.name_just == 0;
    const double reach = above ? out : out + name_height_;
    if (!draw_) {
      return reach;
    }
    const PartColour c(g_, st_.colours[3]);
    LabelStyle st;
    st.height = name_height_;
    st.user_text = true;
    if (l_.crossed && l_.ax == kAxisY && st_.name_just == 0) {
      // The Y name of a crossed system stands upright above the axis' upper end.
      st.hjust = 1;
      st.vjust = 2;
      double x = 0.0, y = 0.0;
      point(l_.length + kCrossedNameGap * name_height_, 0.0, x, y);
      draw_label(g_, st_.name.view(), x, y, st);
      return out;
    }
    st.angle = l_.ax == kAxisX ? 0 : 90;
    // Names of a crossed system stand at the axes' ends, clear of the other axis.
    const int just = l_.crossed && st_.name_just == 0 ? 2 : st_.name_just;
    st.hjust = just == 1 ? 0 : just == 2 ? 2 : 1;
    const double t = just == 1 ? 0.0 : just == 2 ? l_.length : 0.5 * l_.length;
    if (l_.ax == kAxisX) {
      st.vjust = l_.side == kSideTop ? 2 : 0;
    } else {
      st.vjust = l_.side == kSideLeft ? 2 : 0;
    }
    // Names read upwards on Y axes: their start is the axis' lower end.
    double x = 0.0, y = 0.0;
    point(t, out, x, y);
    draw_label(g_, st_.name.view(), x, y, st);
    return reach;
  }

  GlobalBlock& g_;
  const AxisLine& l_;
  const AxisSettings& st_;
  const AxisScale& sc_;
  bool draw_;
  std::vector<LabelMark> marks_;
  bool labels_ok_;  // false: more labels than an axis shows (graf has warned)
  AxisLabelText text_;
  int height_ = 36;
  int name_height_ = 36;
};

// Outward reach of a side, measured from the rectangle's edge on that side.
double edge_reach(const GlobalBlock& g, const AxisLine& l, double out) {
  const AxisState& s = g.axes;
  if (!l.crossed) {
    return out;
  }
  // A crossed axis runs through the origin: only what passes the rectangle counts.
  const double from_edge = l.ax == kAxisX ? s.pos_y - l.y0 : l.x0 - s.pos_x;
  return std::max(0.0, out - from_edge);
}

}  // namespace

AxisExtents draw_axis_system(GlobalBlock& g, bool draw) {
  if (g.axes.no_axes) {
    return {};  // a pie chart's axis system
  }
  if (g.axes.polar) {
    return draw_polar_axes(g, draw);
  }
  if (g.maps.active) {
    return draw_map_axes(g, draw);
  }
  AxisExtents ext{};
  const PageClipScope page(g);
  for (int side = 0; side < 4; ++side) {
    const AxisLine l = make_line(g, side);
    if (l.parts == kPartNone) {
      continue;
    }
    AxisPainter painter(g, l, draw);
    const double out = painter.run();
    ext[static_cast<std::size_t>(side)] = edge_reach(g, l, out);
    const AxisSettings& st = settings_of(g, l.ax);
    if (l.crossed && l.ax == kAxisY && l.parts >= kPartName && !st.name.empty() &&
        st.name_just == 0) {
      const double h = g.axes.name_height > 0 ? g.axes.name_height : g.text.height;
      ext[kSideTop] = std::max(ext[kSideTop], (1.0 + kCrossedNameGap) * h);
    }
  }
  if (g.axes.frame > 0 && !g.axes.crossed) {
    for (double& e : ext) {
      e = std::max(e, static_cast<double>(g.axes.frame));
    }
  }
  return ext;
}

double draw_axis_ray(GlobalBlock& g, int ax, double x0, double y0, double ux, double uy,
                     double nx, double ny, double length, bool draw, bool crossed) {
  AxisLine l;
  l.ax = ax;
  l.side = kSideBottom;
  l.parts = g.axes.sides[kSideBottom];
  l.x0 = x0;
  l.y0 = y0;
  l.ux = ux;
  l.uy = uy;
  l.nx = nx;
  l.ny = ny;
  l.length = length;
  l.crossed = crossed;  // crossed: no label at 0, the name at the far end
  if (!crossed) {
    l.side = nx < 0.0 ? kSideLeft : nx > 0.0 ? kSideRight : ny < 0.0 ? kSideTop : kSideBottom;
  }
  const PageClipScope page(g);
  const DashScope solid(g);
  return AxisPainter(g, l, draw).run();
}

void draw_axis_frame(GlobalBlock& g) {
  const AxisState& s = g.axes;
  if (s.frame <= 0 || s.crossed) {
    return;  // a crossed system is framed by its axes
  }
  const PageClipScope page(g);
  const double x0 = s.pos_x;
  const double y0 = s.pos_y - s.len_y + 1;
  const double x1 = s.pos_x + s.len_x - 1;
  const double y1 = s.pos_y;
  // Thicker frames grow outwards, one plot unit per line.
  for (int i = 0; i < s.frame; ++i) {
    move_to(g, x0 - i, y0 - i);
    draw_to(g, x1 + i, y0 - i);
    draw_to(g, x1 + i, y1 + i);
    draw_to(g, x0 - i, y1 + i);
    draw_to(g, x0 - i, y0 - i);
  }
}

double draw_titles(GlobalBlock& g, const AxisExtents& ext, bool draw) {
  const AxisState& s = g.axes;
  const int th = s.title_height > 0 ? s.title_height : round_int(1.2 * g.text.height);
  int lines = 0;
  for (const auto& t : s.titles) {
    if (!t.empty()) {
      ++lines;
    }
  }
  if (lines == 0) {
    return 0.0;
  }
  const double gap = kTitleGap * th;
  const double need = gap + (lines - 1) * kTitleSpacing * th + th;
  if (!draw) {
    return need;
  }
  const PageClipScope page(g);
  LabelStyle st;
  st.user_text = true;  // titles are the caller's text
  st.hjust = s.title_just == 1 ? 0 : s.title_just == 2 ? 2 : 1;
  const double x = s.title_just == 1   ? s.pos_x
                   : s.title_just == 2 ? s.pos_x + s.len_x - 1.0
                                       : s.pos_x + 0.5 * (s.len_x - 1.0);
  // Line by line away from the axis system: upwards from the last line above it,
  // downwards from the first line below it.
  double y = 0.0;
  if (s.title_below) {
    y = s.pos_y + ext[kSideBottom] + gap;
  } else {
    y = s.pos_y - s.len_y + 1.0 - ext[kSideTop] - gap;
  }
  for (int k = 0; k < kTitleLines; ++k) {
    const int i = s.title_below ? k : kTitleLines - 1 - k;
    const auto& t = s.titles[static_cast<std::size_t>(i)];
    if (t.empty()) {
      continue;
    }
    // A flagged line is a subtitle at the label height.
    st.height = s.title_flags[static_cast<std::size_t>(i)] ? g.text.height : th;
    st.vjust = s.title_below ? 0 : 2;
    draw_label(g, t.view(), x, y, st);
    y += (s.title_below ? 1.0 : -1.0) * kTitleSpacing * th;
  }
  return need;
}

void draw_axis_grid(GlobalBlock& g, int nx, int ny) {
  const AxisState& s = g.axes;
  const PartColour colour(g, grid_colour(g));
  const double x0 = s.pos_x;
  const double y0 = s.pos_y - s.len_y + 1;
  const double x1 = s.pos_x + s.len_x - 1;
  const double y1 = s.pos_y;
  const int counts[2] = {nx, ny};
  std::vector<double> values;
  for (int ax = 0; ax < 2; ++ax) {
    const int n = counts[ax];
    if (n == 0) {
      continue;
    }
    if (!grid_marks(s, ax, n, values)) {
      warn(g, 251, kMaxAxisTicks);  // lines closer than anything can show
      continue;
    }
    for (const double v : values) {
      const double t = along(g, ax, v);
      if (ax == kAxisX) {
        move_to(g, x0 + t, y0);
        draw_to(g, x0 + t, y1);
      } else {
        move_to(g, x0, y1 - t);
        draw_to(g, x1, y1 - t);
      }
    }
  }
}

}  // namespace zorvel

namespace zorvel::api {

void addlab(GlobalBlock& g, const char* cstr, double v, int itic, const char* cax) {
  if (g.core.level == 3) {
    warn_text(g, -1, "Additonal labels for graf3d are not supported");
    return;
  }
  const int ax = match_keyword(g, "X   +Y   ", cax) - 1;
  if (ax < 0 || !check_range(g, itic, 0, 1)) {
    return;
  }
  const AxisState& s = g.axes;
  const AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
  const bool lg = s.log[static_cast<std::size_t>(ax)];
  const double u = lg && v > 0.0 ? std::log10(v) : v;
  const double t = 1e-9 * std::fabs(sc.e - sc.a);
  if ((lg && !(v > 0.0)) || !(u >= std::min(sc.a, sc.e) - t && u <= std::max(sc.a, sc.e) + t)) {
    warn(g, 2, v);
    return;
  }
  const PageClipScope page(g);
  const DashScope solid(g);
  const AxisLine l = make_line(g, ax == kAxisX ? kSideBottom : kSideLeft);
  AxisPainter(g, l, true).extra_label(cstr, u, itic == 1);
}

}  // namespace zorvel::api

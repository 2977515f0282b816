// Contour lines on the page and their labels.
//
// A call converts all its lines into plot units first, cut into pieces where a point
// cannot be placed; then it places the labels on the pieces, draws the pieces with gaps
// where labels sit, and draws the labels last.
//
// A label wants a straight stretch of its line. For a position s along a piece (arc
// length), the stretch runs from s - a to s + a, a being half the label's length with
// its gap; its chord sets the label's direction, and no point of the piece in between
// may lie farther from the chord than the limits below allow. Positions are tried
// around targets spaced labdis apart along the piece; the straightest wins, and among
// equally straight ones the one nearest its target.
//
//            gap  +----------+  gap
//   -------       |   12.5   |       -------    the box of 2a x 2b around the text cuts
//                 +----------+                  every contour line drawn after it
//
// Labels turn with the line but never further than upright: their angle is kept within
// -90 (exclusive) and 90 degrees, so that they read from left to right.
//
// Labels keep clear of each other and of the lines drawn before them: the boxes placed in
// the axis system are kept, and so is a grid of cells over it that remembers which piece
// of a line crossed each cell last. Only a piece that finds no clear place at all takes
// one over other lines.

#include "contour/draw_lines.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>

#include "axes/axes.h"
#include "contour/lines.h"
#include "core/format.h"
#include "core/global_block.h"
#include "draw/pipeline.h"
#include "text/text.h"

namespace zorvel {
namespace {

// How straight a stretch must be: how far the line may leave the chord (in character
// heights), and how long the chord must be (of the stretch's length: the line must not
// turn back). A piece without any such stretch, a small ring say, takes its best label
// within the looser limits; one whose every stretch lies among other lines takes the
// one with the fewest of them under the label.
struct Limits {
  double bend;
  double chord;
  bool cross;  // may lie over other lines
};
constexpr Limits kStraight{0.35, 0.9, false};
constexpr Limits kCurved{1.0, 0.7, false};
constexpr Limits kCrowded{1.0, 0.7, true};
constexpr int kCandidates = 24;         // positions tried per label
constexpr double kMaxLabels = 10000.0;  // per piece of a line
// The cells that remember where lines run: at most this many a side, and no smaller
// than this (plot units).
constexpr double kMaxCells = 512.0;
constexpr double kMinCell = 2.0;
constexpr double kPi = 3.14159265358979323846;

// Where labels may go: the axis system, else the page.
struct Frame {
  double x0;
  double y0;
  double x1;
  double y1;
};

struct Label {
  PlacedLabel box;
  int angle;  // degrees, counter-clockwise on the page
};

// Decimals of an automatic label: the fewest (up to 6) that show the level as it is.
int auto_digits(double v) {
  double scaled = std::fabs(v);
  for (int d = 0; d <= 6; ++d) {
    if (std::fabs(scaled - std::round(scaled)) <= 1e-9 * std::max(1.0, scaled)) {
      return d == 0 ? -1 : d;
    }
    scaled *= 10.0;
  }
  return 6;
}

// The text of the labels of `level` in buf; its length, 0 without labels.
std::size_t label_text(GlobalBlock& g, double level, char* buf, std::size_t size) {
  const ChartLabelSettings& c = g.axes.chart;
  if (c.contour_labels == 1) {
    const int digits = c.contour_digits == -2 ? auto_digits(level) : c.contour_digits;
    return static_cast<std::size_t>(format_number(buf, size, level, digits));
  }
  if (c.contour_labels == 2) {
    const std::string_view t = g.contours.label_text.view();
    const std::size_t n = std::min(t.size(), size - 1);
    std::memcpy(buf, t.data(), n);
    buf[n] = '\0';
    return n;
  }
  return 0;
}

Frame label_frame(const GlobalBlock& g) {
  const AxisState& s = g.axes;
  if (s.scaled) {
    return {static_cast<double>(s.pos_x), static_cast<double>(s.pos_y - s.len_y + 1),
            static_cast<double>(s.pos_x + s.len_x - 1), static_cast<double>(s.pos_y)};
  }
  return {0.0, 0.0, static_cast<double>(g.page.width), static_cast<double>(g.page.height)};
}

// The labels and lines of the axis system in force; those of another one are forgotten.
PlacedLabels& axis_labels(GlobalBlock& g) {
  PlacedLabels& p = g.contours.placed;
  if (p.graf_serial != g.axes.graf_serial || p.level != g.core.level || p.plane != g.view3d.plane ||
      p.owner.empty()) {
    p.boxes.clear();
    p.graf_serial = g.axes.graf_serial;
    p.level = g.core.level;
    p.plane = g.view3d.plane;
    const Frame f = label_frame(g);
    p.x0 = f.x0;
    p.y0 = f.y0;
    p.cell = std::max(kMinCell, std::max(f.x1 - f.x0, f.y1 - f.y0) / kMaxCells);
    p.cols = static_cast<int>((f.x1 - f.x0) / p.cell) + 1;
    p.rows = static_cast<int>((f.y1 - f.y0) / p.cell) + 1;
    p.owner.assign(static_cast<std::size_t>(p.cols) * static_cast<std::size_t>(p.rows), 0);
    p.pieces = 0;
  }
  return p;
}

// Records the cells that a piece of a line crosses as the piece's (within the frame).
void mark_cells(PlacedLabels& p, const double* x, const double* y, std::size_t m,
                std::uint32_t id) {
  const ClipRect r{p.x0, p.y0, p.x0 + p.cols * p.cell, p.y0 + p.rows * p.cell};
  const auto index = [&](double v, double origin, int count) {
    return std::clamp(static_cast<int>(std::floor((v - origin) / p.cell)), 0, count - 1);
  };
  for (std::size_t i = 0; i + 1 < m; ++i) {
    double t0 = 0.0, t1 = 0.0;
    if (!clip_segment_rect(r, x[i], y[i], x[i + 1], y[i + 1], t0, t1)) {
      continue;
    }
    // The visible part, from points that stay finite however far out the ends lie.
    const double ax = (1.0 - t0) * x[i] + t0 * x[i + 1], ay = (1.0 - t0) * y[i] + t0 * y[i + 1];
    const double bx = (1.0 - t1) * x[i] + t1 * x[i + 1], by = (1.0 - t1) * y[i] + t1 * y[i + 1];
    // Steps of half a cell miss no cell the segment crosses by more than a corner.
    const double span = std::min(std::hypot(bx - ax, by - ay), 2.0 * (p.cols + p.rows) * p.cell);
    const int steps = static_cast<int>(std::ceil(2.0 * span / p.cell));
    for (int k = 0; k <= steps; ++k) {
      const double t = steps > 0 ? static_cast<double>(k) / steps : 0.0;
      const int col = index(ax + t * (bx - ax), p.x0, p.cols);
      const int row = index(ay + t * (by - ay), p.y0, p.rows);
      p.owner[static_cast<std::size_t>(row) * static_cast<std::size_t>(p.cols) +
              static_cast<std::size_t>(col)] = id;
    }
  }
}

// Half the extents of a box along x and y.
double extent_x(const PlacedLabel& b) { return b.a * std::fabs(b.ux) + b.b * std::fabs(b.uy); }
double extent_y(const PlacedLabel& b) { return b.a * std::fabs(b.uy) + b.b * std::fabs(b.ux); }

// Whether two boxes overlap: no axis of either separates them.
bool overlap(const PlacedLabel& p, const PlacedLabel& q) {
  const double dx = q.x - p.x;
  const double dy = q.y - p.y;
  if (std::fabs(dx) > extent_x(p) + extent_x(q) || std::fabs(dy) > extent_y(p) + extent_y(q)) {
    return false;
  }
  const double axes[4][2] = {{p.ux, p.uy}, {-p.uy, p.ux}, {q.ux, q.uy}, {-q.uy, q.ux}};
  for (const auto& n : axes) {
    const double dist = std::fabs(dx * n[0] + dy * n[1]);
    const double rp =
        p.a * std::fabs(p.ux * n[0] + p.uy * n[1]) + p.b * std::fabs(-p.uy * n[0] + p.ux * n[1]);
    const double rq =
        q.a * std::fabs(q.ux * n[0] + q.uy * n[1]) + q.b * std::fabs(-q.uy * n[0] + q.ux * n[1]);
    if (dist > rp + rq) {
      return false;
    }
  }
  return true;
}

// The cell centres in the box that another piece than `id` has crossed.
int crossed_cells(const PlacedLabels& p, const PlacedLabel& b, std::uint32_t id) {
  int count = 0;
  const double ex = extent_x(b), ey = extent_y(b);
  const int c0 = std::max(0, static_cast<int>(std::floor((b.x - ex - p.x0) / p.cell)));
  const int c1 = std::min(p.cols - 1, static_cast<int>(std::floor((b.x + ex - p.x0) / p.cell)));
  const int r0 = std::max(0, static_cast<int>(std::floor((b.y - ey - p.y0) / p.cell)));
  const int r1 = std::min(p.rows - 1, static_cast<int>(std::floor((b.y + ey - p.y0) / p.cell)));
  for (int r = r0; r <= r1; ++r) {
    for (int c = c0; c <= c1; ++c) {
      const std::uint32_t o =
          p.owner[static_cast<std::size_t>(r) * static_cast<std::size_t>(p.cols) +
                  static_cast<std::size_t>(c)];
      if (o == 0 || o == id) {
        continue;
      }
      const double px = p.x0 + (c + 0.5) * p.cell - b.x;
      const double py = p.y0 + (r + 0.5) * p.cell - b.y;
      if (std::fabs(px * b.ux + py * b.uy) < b.a && std::fabs(-px * b.uy + py * b.ux) < b.b) {
        ++count;
      }
    }
  }
  return count;
}

// The part of the segment (ax, ay) -> (bx, by) inside the box, as parameters t0 < t1.
bool inside_box(const PlacedLabel& b, double ax, double ay, double bx, double by, double& t0,
                double& t1) {
  const double px = ax - b.x;
  const double py = ay - b.y;
  const double dx = bx - ax;
  const double dy = by - ay;
  const double u = px * b.ux + py * b.uy;  // box coordinates: along and across the text
  const double v = -px * b.uy + py * b.ux;
  const double du = dx * b.ux + dy * b.uy;
  const double dv = -dx * b.uy + dy * b.ux;
  t0 = 0.0;
  t1 = 1.0;
  // Keeps the part where p t <= q.
  const auto side = [&](double p, double q) {
    if (p == 0.0) {
      return q >= 0.0;
    }
    const double r = q / p;
    if (p < 0.0) {
      t0 = std::max(t0, r);
    } else {
      t1 = std::min(t1, r);
    }
    return t0 < t1;
  };
  return side(du, b.a - u) && side(-du, b.a + u) && side(dv, b.b - v) && side(-dv, b.b + v);
}

class Placer {
 public:
  Placer(GlobalBlock& g, std::string_view text, PlacedLabels& placed, std::vector<Label>& out)
      : placed_(placed),
        out_(out),
        x_(g.contours.ring_x),
        y_(g.contours.ring_y),
        arc_(g.contours.arc),
        frame_(label_frame(g)) {
    h_ = g.text.height;
    const double gap = g.contours.label_gap * h_;
    a_ = 0.5 * measure_label(g, text, g.text.height) + gap;
    b_ = 0.5 * h_ + gap;
    spacing_ = g.axes.chart.contour_label_dist;
  }

  void place(const double* x, const double* y, std::size_t m, bool closed, std::uint32_t id) {
    id_ = id;
    x_.assign(x, x + m);
    y_.assign(y, y + m);
    if (closed) {  // twice round, so that a stretch may pass the first point
      x_.insert(x_.end(), x + 1, x + m);
      y_.insert(y_.end(), y + 1, y + m);
    }
    arc_.resize(x_.size());
    arc_[0] = 0.0;
    for (std::size_t i = 1; i < x_.size(); ++i) {
      arc_[i] = arc_[i - 1] + std::hypot(x_[i] - x_[i - 1], y_[i] - y_[i - 1]);
    }
    const double length = arc_[m - 1];
    if (!(length >= 4.0 * a_) || !std::isfinite(length)) {
      return;
    }
    const double lo = closed ? a_ : a_ + h_;
    const double hi = closed ? length + a_ : length - a_ - h_;
    if (!(hi >= lo)) {
      return;
    }
    // Labels never overlap: no more than the piece has room for.
    const double count =
        std::max(1.0, std::floor(std::min({length / spacing_, length / (2.0 * a_), kMaxLabels})));
    const double step = (hi - lo) / count;
    const double half = std::max(0.0, 0.5 * step - a_);
    bool any = false;
    for (double q = 0.0; q < count; q += 1.0) {
      const double target = lo + (q + 0.5) * step;
      any =
          best_near(target, std::max(lo, target - half), std::min(hi, target + half), kStraight) ||
          any;
    }
    if (!any && !best_near(0.5 * (lo + hi), lo, hi, kCurved)) {
      best_near(0.5 * (lo + hi), lo, hi, kCrowded);
    }
  }

 private:
  // Places the best label between from and to, if one fits: the straightest, and of
  // equally straight ones the nearest to target.
  bool best_near(double target, double from, double to, const Limits& limits) {
    Label best{};
    double best_score = HUGE_VAL;
    const double half = std::max(0.5 * (to - from), 1.0);
    for (int k = 0; k <= kCandidates; ++k) {
      const double s = from + (to - from) * k / kCandidates;
      Label l{};
      double cost = 0.0;
      if (!try_at(s, limits, l, cost)) {
        continue;
      }
      const double score = cost + 0.5 * std::fabs(s - target) / half;
      if (score < best_score) {
        best_score = score;
        best = l;
      }
    }
    if (best_score == HUGE_VAL) {
      return false;
    }
    placed_.boxes.push_back(best.box);
    out_.push_back(best);
    return true;
  }

  void point_at(double s, double& x, double& y) const {
    const auto it = std::upper_bound(arc_.begin(), arc_.end(), s);
    std::size_t i = it == arc_.begin() ? 0 : static_cast<std::size_t>(it - arc_.begin()) - 1;
    i = std::min(i, arc_.size() - 2);
    const double len = arc_[i + 1] - arc_[i];
    const double t = len > 0.0 ? std::clamp((s - arc_[i]) / len, 0.0, 1.0) : 0.0;
    x = x_[i] + t * (x_[i + 1] - x_[i]);
    y = y_[i] + t * (y_[i + 1] - y_[i]);
  }

  // The label centred at s, when the stretch there is straight enough and the label
  // fits; `cost` is how far the stretch leaves its chord (in heights) and the number of
  // cells of other lines under the label.
  bool try_at(double s, const Limits& limits, Label& l, double& cost) const {
    const double s0 = s - a_;
    const double s1 = s + a_;
    double ax = 0.0, ay = 0.0, bx = 0.0, by = 0.0;
    point_at(s0, ax, ay);
    point_at(s1, bx, by);
    const double chord = std::hypot(bx - ax, by - ay);
    if (!(chord >= limits.chord * 2.0 * a_)) {
      return false;
    }
    const double ux = (bx - ax) / chord;
    const double uy = (by - ay) / chord;
    const auto i0 =
        static_cast<std::size_t>(std::upper_bound(arc_.begin(), arc_.end(), s0) - arc_.begin());
    const auto i1 =
        static_cast<std::size_t>(std::lower_bound(arc_.begin(), arc_.end(), s1) - arc_.begin());
    double bend = 0.0;
    for (std::size_t i = i0; i < i1; ++i) {
      bend = std::max(bend, std::fabs(-uy * (x_[i] - ax) + ux * (y_[i] - ay)));
    }
    if (bend > limits.bend * h_) {
      return false;
    }
    // Page y grows downwards: the angle counter-clockwise on the page is that of (ux, -uy).
    double deg = std::atan2(-uy, ux) * (180.0 / kPi);
    if (deg > 90.0) {
      deg -= 180.0;
    } else if (deg <= -90.0) {
      deg += 180.0;
    }
    l.angle = static_cast<int>(std::lround(deg));
    const double rad = l.angle * (kPi / 180.0);
    PlacedLabel& b = l.box;
    point_at(s, b.x, b.y);
    b.ux = std::cos(rad);
    b.uy = -std::sin(rad);
    b.a = a_;
    b.b = b_;
    const double ex = extent_x(b);
    const double ey = extent_y(b);
    if (b.x - ex < frame_.x0 || b.x + ex > frame_.x1 || b.y - ey < frame_.y0 ||
        b.y + ey > frame_.y1) {
      return false;
    }
    if (std::any_of(placed_.boxes.begin(), placed_.boxes.end(),
                    [&](const PlacedLabel& o) { return overlap(b, o); })) {
      return false;
    }
    const int crossed = crossed_cells(placed_, b, id_);
    cost = bend / h_ + crossed;
    return crossed == 0 || limits.cross;
  }

  PlacedLabels& placed_;
  std::vector<Label>& out_;
  std::vector<double>& x_;
  std::vector<double>& y_;
  std::vector<double>& arc_;
  Frame frame_;
  double h_ = 0.0;
  double a_ = 0.0;
  double b_ = 0.0;
  double spacing_ = 1.0;
  std::uint32_t id_ = 0;  // the piece being labelled
};

// Draws a piece, leaving out what lies inside the boxes.
void draw_piece(GlobalBlock& g, const double* x, const double* y, std::size_t m,
                const std::vector<PlacedLabel>& boxes) {
  std::vector<std::size_t>& near = g.contours.near;
  near.clear();
  if (!boxes.empty()) {
    const auto [x0, x1] = std::minmax_element(x, x + m);
    const auto [y0, y1] = std::minmax_element(y, y + m);
    for (std::size_t k = 0; k < boxes.size(); ++k) {
      const PlacedLabel& b = boxes[k];
      if (b.x + extent_x(b) >= *x0 && b.x - extent_x(b) <= *x1 && b.y + extent_y(b) >= *y0 &&
          b.y - extent_y(b) <= *y1) {
        near.push_back(k);
      }
    }
  }
  move_to(g, x[0], y[0]);
  if (near.empty()) {
    for (std::size_t i = 1; i < m; ++i) {
      draw_to(g, x[i], y[i]);
    }
    return;
  }
  std::vector<std::pair<double, double>> cuts;
  bool down = true;  // the pen is at the start of the next segment
  for (std::size_t i = 0; i + 1 < m; ++i) {
    const double ax = x[i], ay = y[i], dx = x[i + 1] - ax, dy = y[i + 1] - ay;
    cuts.clear();
    for (const std::size_t k : near) {
      double t0 = 0.0, t1 = 0.0;
      if (inside_box(boxes[k], ax, ay, x[i + 1], y[i + 1], t0, t1)) {
        cuts.emplace_back(t0, t1);
      }
    }
    std::sort(cuts.begin(), cuts.end());
    double t = 0.0;
    const auto visible = [&](double ta, double tb) {
      if (!down || ta > 0.0) {
        move_to(g, ax + ta * dx, ay + ta * dy);
      }
      draw_to(g, ax + tb * dx, ay + tb * dy);
      down = tb >= 1.0;
    };
    for (const auto& [c0, c1] : cuts) {
      if (c0 > t) {
        visible(t, c0);
      }
      t = std::max(t, c1);
    }
    if (t < 1.0) {
      visible(t, 1.0);
    } else {
      down = false;
    }
  }
}

void draw_labels(GlobalBlock& g, std::string_view text, const std::vector<Label>& labels) {
  if (labels.empty()) {
    return;
  }
  const DashScope solid(g);
  TextState& t = g.text;
  const int height = t.height;
  for (const Label& l : labels) {
    // Only characters inside the gap's circle are drawn: never one over a line.
    t.label_mode = true;
    t.label_cx = l.box.x;
    t.label_cy = l.box.y;
    t.label_radius = l.box.a;
    draw_label(g, text, l.box.x, l.box.y, {l.angle, height, 1, 1});
  }
  t.label_mode = false;
}

}  // namespace

void draw_contour_lines(GlobalBlock& g, const ContourLines& lines, double level) {
  ContourState& c = g.contours;
  PlacedLabels& placed = axis_labels(g);
  c.page_x.clear();
  c.page_y.clear();
  c.piece_ends.clear();
  c.piece_closed.clear();
  for (std::size_t k = 0; k < lines.lines(); ++k) {
    std::size_t start = c.page_x.size();
    bool whole = true;
    const auto close_piece = [&](bool closed) {
      if (c.page_x.size() - start >= 2) {
        c.piece_ends.push_back(c.page_x.size());
        c.piece_closed.push_back(closed ? 1 : 0);
      } else {
        c.page_x.resize(start);
        c.page_y.resize(start);
      }
      start = c.page_x.size();
    };
    for (std::size_t i = lines.begin(k); i < lines.ends[k]; ++i) {
      const double px = axis_page_x(g, lines.x[i]);
      const double py = axis_page_y(g, lines.y[i]);
      if (!std::isfinite(px) || !std::isfinite(py)) {
        whole = false;
        close_piece(false);
        continue;
      }
      c.page_x.push_back(px);
      c.page_y.push_back(py);
    }
    close_piece(whole && lines.closed[k] != 0);
  }

  // Where the pieces run, so that labels keep off every line but their own.
  const std::uint32_t first = placed.pieces + 1;
  for (std::size_t k = 0; k < c.piece_ends.size(); ++k) {
    const std::size_t b = k == 0 ? 0 : c.piece_ends[k - 1];
    mark_cells(placed, c.page_x.data() + b, c.page_y.data() + b, c.piece_ends[k] - b,
               ++placed.pieces);
  }

  char text[kMaxContourLabel + kNumberBuffer];
  const std::size_t n = label_text(g, level, text, sizeof text);
  std::vector<Label> labels;
  if (n > 0) {
    Placer placer(g, {text, n}, placed, labels);
    for (std::size_t k = 0; k < c.piece_ends.size(); ++k) {
      const std::size_t b = k == 0 ? 0 : c.piece_ends[k - 1];
      placer.place(c.page_x.data() + b, c.page_y.data() + b, c.piece_ends[k] - b,
                   c.piece_closed[k] != 0, first + static_cast<std::uint32_t>(k));
    }
  }
  for (std::size_t k = 0; k < c.piece_ends.size(); ++k) {
    const std::size_t b = k == 0 ? 0 : c.piece_ends[k - 1];
    draw_piece(g, c.page_x.data() + b, c.page_y.data() + b, c.piece_ends[k] - b, placed.boxes);
  }
  end_polyline(g);
  draw_labels(g, {text, n}, labels);
}

}  // namespace zorvel

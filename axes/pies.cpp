// Pie charts: piegrf and its settings. A pie is an axis system without axes, scaled 0 to
// 5 on both axes so that legends and titles find it, holding one sector per value: flat,
// or as a solid with walls under an elliptical top; labels inside the sectors, outside
// them, or in two columns beside the pie with leader lines.
//
// Angles are page angles, counter-clockwise from 3 o'clock. The first sector begins at
// pieang's angle (12 o'clock by default) and the others follow clockwise:
//
//                     start
//                       |
//               .-------+-------.
//             /    5    |    1    \        sector i spans 360 |x_i| / sum |x| degrees;
//            |  4       +   -->    |       its label and its explosion take the angle
//             \    3         2    /        in its middle
//               '---------------'
//
// A solid pie is the same pie seen from `elevation` degrees above its plane: the top is
// an ellipse of the semi-axes r and r sin(elevation), the walls hang depth r
// cos(elevation) below it. Every wall that faces the viewer is drawn, from the back to
// the front, in a darker shade of its sector; the tops come last.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes/curves.h"
#include "axes/labels.h"
#include "core/format.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180.0;
// The library's smallest significant magnitude: a smaller sum has no sectors.
constexpr double kEps = 1e-35;
// The scaling of the pie's axis system on both axes.
constexpr double kPieScale = 5.0;
// Label layout, in character heights: the gap between a pie and the labels outside it,
// the length of a leader line's first piece, the distance between text lines.
constexpr double kLabelGap = 0.6;
constexpr double kLeaderRun = 1.2;
constexpr double kRowStep = 1.4;
// Labels inside a full pie sit at this share of the radius (a donut: its middle).
constexpr double kInsideRadius = 0.62;
// The smallest radius that room for labels may leave, as a share of the largest.
constexpr double kSmallestRadius = 0.2;
// Shades of the walls: outer walls, and the cut faces and inner walls further inside.
constexpr double kWallShade = 0.72;
constexpr double kInnerShade = 0.55;
// The solid fill of pieclr's default pattern.
constexpr int kSolidPattern = 16;

// Labels of labpos "PIE".
enum LabelPlace : int { kInside = 0, kOutside = 1, kAligned = 2 };
// Values of labels "PIE".
enum LabelValue : int { kNoValue = 0, kPercent = 1, kData = 2, kBoth = 3 };

struct PieSector {
  double value = 0.0;  // |x_i|
  double share = 0.0;  // its share of the sum, 0..1
  double lo = 0.0;     // page angles of its edges, radians, lo <= hi
  double hi = 0.0;
  double mid = 0.0;
  double shift = 0.0;  // explosion, plot units along the middle angle (in the pie's plane)
  int colour = 0;
  int pattern = kSolidPattern;
};

// Where the pie lies on the page.
struct Geometry {
  double cx = 0.0;      // centre of the top, page positions
  double cy = 0.0;
  double r = 1.0;       // outer radius, plot units
  double hole = 0.0;    // inner radius
  double squash = 1.0;  // vertical scale of the pie's plane: sin(elevation), 1 flat
  double depth = 0.0;   // height of the walls on the page, 0 flat
};

// The page point at angle a and distance rho from the centre of sector s, `down` below
// the top.
void at(const Geometry& geo, const PieSector& s, double rho, double a, double down, double& x,
        double& y) {
  x = geo.cx + s.shift * std::cos(s.mid) + rho * std::cos(a);
  y = geo.cy - (s.shift * std::sin(s.mid) + rho * std::sin(a)) * geo.squash + down;
}

// Appends the arc from angle a0 to a1 at distance rho (both ends included).
void arc(const Geometry& geo, const PieSector& s, double rho, double a0, double a1, double down,
         std::vector<double>& xs, std::vector<double>& ys) {
  const int n = arc_segments(rho, std::fabs(a1 - a0));
  for (int k = 0; k <= n; ++k) {
    double x = 0.0, y = 0.0;
    at(geo, s, rho, a0 + (a1 - a0) * k / n, down, x, y);
    xs.push_back(x);
    ys.push_back(y);
  }
}

Rgb shaded(const GlobalBlock& g, int colour, double f) {
  const Rgb c = colour_rgb(g, colour);
  return {static_cast<int>(c.r * f + 0.5), static_cast<int>(c.g * f + 0.5),
          static_cast<int>(c.b * f + 0.5), c.a};
}

// The colour and pattern of one face while it lives; the caller's come back after it.
class FaceStyle {
 public:
  FaceStyle(GlobalBlock& g, int colour, int pattern)
      : g_(g), old_(g.colour.current), pattern_(g, pattern) {
    set_colour(g, colour);
  }
  ~FaceStyle() { set_colour(g_, old_); }
  FaceStyle(const FaceStyle&) = delete;
  FaceStyle& operator=(const FaceStyle&) = delete;

 private:
  GlobalBlock& g_;
  int old_;
  FillPatternScope pattern_;
};

// A closed outline through the points.
void outline(GlobalBlock& g, const std::vector<double>& xs, const std::vector<double>& ys) {
  if (xs.empty()) {
    return;
  }
  move_to(g, xs[0], ys[0]);
  for (std::size_t i = 1; i < xs.size(); ++i) {
    draw_to(g, xs[i], ys[i]);
  }
  draw_to(g, xs[0], ys[0]);
}

// One face: filled in its colour and pattern, outlined in the caller's colour.
class Painter {
 public:
  explicit Painter(GlobalBlock& g) : g_(g), line_colour_(g.colour.current) {}

  void face(int colour, int pattern) {
    {
      const FaceStyle style(g_, colour, pattern);
      fill_polygon(g_, xs.data(), ys.data(), static_cast<int>(xs.size()));
    }
    outline(g_, xs, ys);
    end_polyline(g_);
  }
  // A full ring: the outer contour in xs/ys up to `split`, the hole after it.
  void ring(int colour, int pattern, int split) {
    const int ends[2] = {split, static_cast<int>(xs.size())};
    {
      const FaceStyle style(g_, colour, pattern);
      fill_path(g_, xs.data(), ys.data(), ends, 2, FillRule::EvenOdd);
    }
    const auto cut = xs.begin() + split;
    const auto cut_y = ys.begin() + split;
    const std::vector<double> ox(xs.begin(), cut), oy(ys.begin(), cut_y);
    const std::vector<double> ix(cut, xs.end()), iy(cut_y, ys.end());
    outline(g_, ox, oy);
    outline(g_, ix, iy);
    end_polyline(g_);
  }
  void clear() {
    xs.clear();
    ys.clear();
  }
  int line_colour() const { return line_colour_; }

  std::vector<double> xs;
  std::vector<double> ys;

 private:
  GlobalBlock& g_;
  int line_colour_;
};

bool full_turn(const PieSector& s) { return s.hi - s.lo >= 2.0 * kPi - 1e-12; }

// The top of sector s into the painter's points; returns the end of the outer contour
// of a full ring (0 for every other shape).
int top_face(const Geometry& geo, const PieSector& s, Painter& p) {
  p.clear();
  if (full_turn(s)) {
    arc(geo, s, geo.r, s.lo, s.hi, 0.0, p.xs, p.ys);
    if (geo.hole <= 0.0) {
      return 0;
    }
    const int split = static_cast<int>(p.xs.size());
    arc(geo, s, geo.hole, s.hi, s.lo, 0.0, p.xs, p.ys);
    return split;
  }
  arc(geo, s, geo.r, s.lo, s.hi, 0.0, p.xs, p.ys);
  if (geo.hole > 0.0) {
    arc(geo, s, geo.hole, s.hi, s.lo, 0.0, p.xs, p.ys);
  } else {
    double x = 0.0, y = 0.0;
    at(geo, s, 0.0, s.mid, 0.0, x, y);
    p.xs.push_back(x);
    p.ys.push_back(y);
  }
  return 0;
}

// Solid pies
// ==========

enum class FaceKind { Outer, Inner, Cut };

// A wall of a solid pie: a piece of the outer or inner wall between two angles, or the
// cut face along one edge of a sector.
struct Wall {
  double key;  // page y of its middle: larger is nearer to the viewer
  int sector;
  FaceKind kind;
  double a0;
  double a1;
};

// The pieces of [lo, hi] where sin(a) has the sign of `front` (-1: the front half, whose
// outer wall faces the viewer; +1: the back half, whose inner wall does).
template <typename F>
void visible_pieces(double lo, double hi, int front, F f) {
  const double base = std::floor(lo / (2.0 * kPi)) * 2.0 * kPi;
  for (int k = -1; k <= 2; ++k) {
    const double from = base + k * 2.0 * kPi + (front < 0 ? kPi : 0.0);
    const double a0 = std::max(lo, from);
    const double a1 = std::min(hi, from + kPi);
    if (a1 - a0 > 1e-9) {
      f(a0, a1);
    }
  }
}

void draw_walls(GlobalBlock& g, const Geometry& geo, const std::vector<PieSector>& sectors,
                bool cuts, Painter& p) {
  std::vector<Wall> walls;
  for (std::size_t i = 0; i < sectors.size(); ++i) {
    const PieSector& s = sectors[i];
    if (s.hi <= s.lo) {
      continue;
    }
    const int index = static_cast<int>(i);
    auto key = [&](double rho, double a) {
      double x = 0.0, y = 0.0;
      at(geo, s, rho, a, 0.0, x, y);
      return y;
    };
    visible_pieces(s.lo, s.hi, -1, [&](double a0, double a1) {
      walls.push_back({key(geo.r, 0.5 * (a0 + a1)), index, FaceKind::Outer, a0, a1});
    });
    if (geo.hole > 0.0) {
      visible_pieces(s.lo, s.hi, 1, [&](double a0, double a1) {
        walls.push_back({key(geo.hole, 0.5 * (a0 + a1)), index, FaceKind::Inner, a0, a1});
      });
    }
    if (cuts && !full_turn(s)) {
      const double mid_r = 0.5 * (geo.r + geo.hole);
      walls.push_back({key(mid_r, s.lo), index, FaceKind::Cut, s.lo, s.lo});
      walls.push_back({key(mid_r, s.hi), index, FaceKind::Cut, s.hi, s.hi});
    }
  }
  std::stable_sort(walls.begin(), walls.end(),
                   [](const Wall& a, const Wall& b) { return a.key < b.key; });
  for (const Wall& w : walls) {
    const PieSector& s = sectors[static_cast<std::size_t>(w.sector)];
    p.clear();
    double shade = kInnerShade;
    if (w.kind == FaceKind::Cut) {
      double x = 0.0, y = 0.0;
      const double rhos[4] = {geo.hole, geo.r, geo.r, geo.hole};
      const double downs[4] = {0.0, 0.0, geo.depth, geo.depth};
      for (int k = 0; k < 4; ++k) {
        at(geo, s, rhos[k], w.a0, downs[k], x, y);
        p.xs.push_back(x);
        p.ys.push_back(y);
      }
    } else {
      const double rho = w.kind == FaceKind::Outer ? geo.r : geo.hole;
      arc(geo, s, rho, w.a0, w.a1, 0.0, p.xs, p.ys);
      arc(geo, s, rho, w.a1, w.a0, geo.depth, p.xs, p.ys);
      if (w.kind == FaceKind::Outer) {
        shade = kWallShade;
      }
    }
    const Rgb c = shaded(g, s.colour, shade);
    p.face(explicit_rgb(c.r, c.g, c.b), s.pattern);
  }
}

// Labels
// ======

std::string_view trim(std::string_view s) {
  const std::size_t first = s.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    return {};
  }
  return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// The text of one sector's label: its lines of the legend, then its value.
struct LabelText {
  std::vector<std::string_view> rows;
  char value[2 * kLabelBuffer] = {};
  double width = 0.0;
  double height = 0.0;
};

class Labels {
 public:
  Labels(GlobalBlock& g, const char* cbuf, int nlin) : g_(g), nlin_(nlin), h_(g.text.height) {
    if (nlin > 0 && !g.legend.open) {
      warn(g, 15);
      nlin_ = 0;
    }
    if (nlin_ > 0) {
      // The legend's own copy, with the caller's text over it up to its terminator (as
      // legend reads its buffer).
      text_ = g.legend.text;
      const std::size_t n = strnlen(cbuf, text_.size());
      text_.replace(0, n, cbuf, n);
    }
  }

  // The label of sector i into t; false when it has no text.
  bool compose(int i, const PieSector& s, LabelText& t) const {
    t.rows.clear();
    const LegendState& l = g_.legend;
    for (int k = 0; k < nlin_; ++k) {
      const long long line = static_cast<long long>(i) * nlin_ + k;
      if (line >= l.lines) {
        break;
      }
      const auto at = static_cast<std::size_t>(line) * static_cast<std::size_t>(l.line_length);
      split(trim(std::string_view(text_).substr(at, static_cast<std::size_t>(l.line_length))),
            t.rows);
    }
    const int len = value_text(s.value, s.share, t.value, sizeof t.value);
    if (len > 0) {
      t.rows.emplace_back(t.value, static_cast<std::size_t>(len));
    }
    t.width = 0.0;
    for (const std::string_view row : t.rows) {
      t.width = std::max(t.width, static_cast<double>(measure_label(g_, row, h_)));
    }
    t.height = t.rows.empty() ? 0.0 : h_ + (static_cast<double>(t.rows.size()) - 1.0) * step();
    return !t.rows.empty();
  }

  // Draws the rows of t in a block whose left edge is at x (hjust 0), centre (1) or right
  // edge (2), and whose middle is at y.
  void draw(const LabelText& t, double x, double y, int hjust) const {
    double top = y - 0.5 * t.height;
    for (const std::string_view row : t.rows) {
      draw_label(g_, row, x, top, LabelStyle{0, h_, hjust, 0});
      top += step();
    }
  }

  double step() const { return kRowStep * h_; }
  int height() const { return h_; }

 private:
  // The text lines of one legend line, split at the legend's line-break character.
  void split(std::string_view line, std::vector<std::string_view>& rows) const {
    const char brk = g_.legend.line_break;
    for (;;) {
      const std::size_t at = brk != '\0' ? line.find(brk) : std::string_view::npos;
      const std::string_view row = trim(line.substr(0, at));
      if (!row.empty()) {
        rows.push_back(row);
      }
      if (at == std::string_view::npos) {
        return;
      }
      line.remove_prefix(at + 1);
    }
  }

  // The value line as labels "PIE" asks: "25.0%", "12.5", or "12.5 (25.0%)".
  int value_text(double v, double share, char* buf, std::size_t size) const {
    const ChartLabelSettings& c = g_.axes.chart;
    char pct[kLabelBuffer];
    int np = format_number(pct, sizeof pct - 1, 100.0 * share, c.percent_digits);
    pct[np++] = '%';
    char dat[kLabelBuffer];
    const int nd = format_number(dat, sizeof dat, v, c.data_digits);
    const std::string_view p(pct, static_cast<std::size_t>(np));
    const std::string_view d(dat, static_cast<std::size_t>(nd));
    std::string_view parts[4] = {d, " (", p, ")"};
    std::size_t count = 0;
    switch (c.pie_labels) {
      case kPercent:
        parts[0] = p;
        count = 1;
        break;
      case kData:
        count = 1;
        break;
      case kBoth:
        count = 4;
        break;
      default:
        break;
    }
    std::size_t n = 0;
    for (std::size_t k = 0; k < count; ++k) {
      const std::size_t m = std::min(parts[k].size(), size - 1 - n);
      parts[k].copy(buf + n, m);
      n += m;
    }
    buf[n] = '\0';
    return static_cast<int>(n);
  }

  GlobalBlock& g_;
  int nlin_;
  int h_;
  std::string text_;
};

// Label colour on a solid sector: black on light colours, white on dark ones.
int contrast(const GlobalBlock& g, int colour) {
  const Rgb c = colour_rgb(g, colour);
  const double light = 0.2126 * c.r + 0.7152 * c.g + 0.0722 * c.b;
  return light < 128.0 ? explicit_rgb(255, 255, 255) : explicit_rgb(0, 0, 0);
}

// The point of the pie's rim in the middle of sector s, below the walls in the front
// half of a solid pie.
void rim(const Geometry& geo, const PieSector& s, double& x, double& y) {
  at(geo, s, geo.r, s.mid, std::sin(s.mid) < 0.0 ? geo.depth : 0.0, x, y);
}

void labels_inside(GlobalBlock& g, const Geometry& geo, const std::vector<PieSector>& sectors,
                   const Labels& labels) {
  LabelText t;
  const int old = g.colour.current;
  const double rho = geo.hole > 0.0 ? 0.5 * (geo.r + geo.hole) : kInsideRadius * geo.r;
  for (std::size_t i = 0; i < sectors.size(); ++i) {
    const PieSector& s = sectors[i];
    if (s.value <= 0.0 || !labels.compose(static_cast<int>(i), s, t)) {
      continue;
    }
    set_colour(g, s.pattern == kSolidPattern ? contrast(g, s.colour) : old);
    double x = 0.0, y = 0.0;
    at(geo, s, full_turn(s) && geo.hole <= 0.0 ? 0.0 : rho, s.mid, 0.0, x, y);
    labels.draw(t, x, y, 1);
  }
  set_colour(g, old);
}

void labels_outside(const Geometry& geo, const std::vector<PieSector>& sectors,
                    const Labels& labels) {
  LabelText t;
  const double gap = kLabelGap * labels.height();
  for (std::size_t i = 0; i < sectors.size(); ++i) {
    const PieSector& s = sectors[i];
    if (s.value <= 0.0 || !labels.compose(static_cast<int>(i), s, t)) {
      continue;
    }
    const double c = std::cos(s.mid);
    const double sn = std::sin(s.mid);
    double x = 0.0, y = 0.0;
    rim(geo, s, x, y);
    // The block's centre, pushed out until its nearest edge keeps the gap.
    const double d = gap + 0.5 * (std::fabs(c) * t.width + std::fabs(sn) * t.height);
    x += c * d;
    y -= sn * d;
    const int hjust = c > 0.25 ? 0 : c < -0.25 ? 2 : 1;
    labels.draw(t, hjust == 0 ? x - 0.5 * t.width : hjust == 2 ? x + 0.5 * t.width : x, y,
                hjust);
  }
}

// Labels in a column on each side of the pie, in the order of their sectors' heights,
// pushed apart where they would overlap, each joined to its sector by a leader line.
void labels_aligned(GlobalBlock& g, const Geometry& geo, const std::vector<PieSector>& sectors,
                    const Labels& labels, double reach, double top, double bottom) {
  struct Placed {
    int sector;
    double want;  // the height of its sector's rim
    double y;     // the middle of its block
    double height;
  };
  LabelText t;
  std::vector<Placed> side[2];  // 0 left, 1 right
  for (std::size_t i = 0; i < sectors.size(); ++i) {
    const PieSector& s = sectors[i];
    if (s.value <= 0.0 || !labels.compose(static_cast<int>(i), s, t)) {
      continue;
    }
    double x = 0.0, y = 0.0;
    rim(geo, s, x, y);
    side[std::cos(s.mid) >= 0.0 ? 1 : 0].push_back({static_cast<int>(i), y, y, t.height});
  }
  const double gap = 0.5 * labels.height();
  const double run = kLeaderRun * labels.height();
  for (int k = 0; k < 2; ++k) {
    std::vector<Placed>& col = side[k];
    std::stable_sort(col.begin(), col.end(),
                     [](const Placed& a, const Placed& b) { return a.want < b.want; });
    // Down the column, then back up from the lower limit.
    double edge = top;
    for (Placed& p : col) {
      p.y = std::max(p.want, edge + 0.5 * p.height);
      edge = p.y + 0.5 * p.height + gap;
    }
    edge = bottom;
    for (auto it = col.rbegin(); it != col.rend(); ++it) {
      it->y = std::min(it->y, edge - 0.5 * it->height);
      edge = it->y - 0.5 * it->height - gap;
    }
    const double sign = k == 1 ? 1.0 : -1.0;
    const double column = geo.cx + sign * reach;
    for (const Placed& p : col) {
      const PieSector& s = sectors[static_cast<std::size_t>(p.sector)];
      double x0 = 0.0, y0 = 0.0;
      rim(geo, s, x0, y0);
      // Out from the rim along the middle of the sector, then across to the column.
      const double x1 = x0 + std::cos(s.mid) * run * 0.6;
      const double y1 = y0 - std::sin(s.mid) * run * 0.6;
      move_to(g, x0, y0);
      draw_to(g, x1, y1);
      draw_to(g, column - sign * 0.3 * run, p.y);
      draw_to(g, column, p.y);
      end_polyline(g);
      labels.compose(p.sector, s, t);
      labels.draw(t, column + sign * 0.3 * labels.height(), p.y, k == 1 ? 0 : 2);
    }
  }
}

// The pie
// =======

// The sectors of the data: angles, explosions, colours and patterns. The values are
// taken as absolute values (warning 1 for negative ones, 2 for values that are not
// numbers, which count as 0); false with warning 29 when their sum is too small.
bool make_sectors(GlobalBlock& g, const double* xray, int n, std::vector<PieSector>& sectors) {
  const PieState& p = g.charts.pie;
  bool negative = false;
  bool bad = false;
  double largest = 0.0;
  sectors.resize(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    double v = xray[i];
    if (!std::isfinite(v)) {
      bad = true;
      v = 0.0;
    } else if (v < 0.0) {
      negative = true;
      v = -v;
    }
    sectors[static_cast<std::size_t>(i)].value = v;
    largest = std::max(largest, v);
  }
  if (bad) {
    warn(g, 2, std::string_view("xray"));
  }
  if (negative) {
    warn(g, 1);
  }
  // The shares from the values over the largest, so that no sum overflows.
  double scaled = 0.0;
  for (const PieSector& s : sectors) {
    scaled += largest > 0.0 ? s.value / largest : 0.0;
  }
  if (!(largest * scaled > kEps)) {
    warn(g, 29);
    return false;
  }
  const ColourState& c = g.colour;
  const double first = c.shade_first;
  const double span = c.shade_last - c.shade_first;
  const double dir = p.clockwise ? -1.0 : 1.0;
  const double start = std::fmod(p.start, 360.0) * kDegree;
  double angle = start;
  double done = 0.0;
  for (int i = 0; i < n; ++i) {
    PieSector& s = sectors[static_cast<std::size_t>(i)];
    const auto k = static_cast<std::size_t>(i);
    // Angles from the running sum, so that the last sector closes the circle exactly.
    s.share = s.value / largest / scaled;
    done += s.value / largest;
    const double next = start + dir * 2.0 * kPi * (done / scaled);
    s.lo = std::min(angle, next);
    s.hi = std::max(angle, next);
    s.mid = 0.5 * (s.lo + s.hi);
    angle = next;
    s.colour = k < p.colours.size() && p.colours[k] >= 0
                   ? p.colours[k]
                   : static_cast<int>(first + span * (i + 0.5) / n + 0.5);
    s.pattern = k < p.patterns.size() && p.patterns[k] >= 0 ? p.patterns[k] : kSolidPattern;
    s.shift = k < p.explode.size() ? p.explode[k] : 0.0;
  }
  return true;
}

// Room for the labels outside the pie: horizontal and vertical, plot units.
void label_room(GlobalBlock& g, const std::vector<PieSector>& sectors, const Labels& labels,
                int place, double& wide, double& high) {
  wide = 0.0;
  high = 0.0;
  if (place == kInside) {
    return;
  }
  LabelText t;
  for (std::size_t i = 0; i < sectors.size(); ++i) {
    if (sectors[i].value > 0.0 && labels.compose(static_cast<int>(i), sectors[i], t)) {
      wide = std::max(wide, t.width);
      high = std::max(high, t.height);
    }
  }
  const double h = g.text.height;
  if (place == kAligned) {
    wide += (kLeaderRun + 0.3) * h + kLabelGap * h;
    high = 0.5 * h;
  } else {
    wide += kLabelGap * h;
    high += kLabelGap * h;
  }
}

Geometry fit(const GlobalBlock& g, double wide, double high, double most_shift) {
  const AxisState& s = g.axes;
  const PieState& p = g.charts.pie;
  Geometry geo;
  const double w = s.len_x - 1.0;
  const double h = s.len_y - 1.0;
  double tilt = 0.0;  // wall height per unit of radius
  if (p.solid) {
    geo.squash = std::sin(p.elevation * kDegree);
    tilt = p.depth * std::cos(p.elevation * kDegree);
  }
  const double grow = 1.0 + most_shift;
  const double by_w = (w - 2.0 * wide) / (2.0 * grow);
  const double by_h = (h - 2.0 * high) / (2.0 * grow * geo.squash + tilt);
  const double largest = std::min(w / 2.0, h / (2.0 * geo.squash + tilt));
  geo.r = std::max(std::min(by_w, by_h), kSmallestRadius * largest);
  geo.hole = p.inner * geo.r;
  geo.depth = tilt * geo.r;
  geo.cx = s.pos_x + 0.5 * w;
  geo.cy = s.pos_y - 0.5 * h - 0.5 * geo.depth;
  return geo;
}

void draw_pie(GlobalBlock& g, std::vector<PieSector>& sectors, const Labels& labels) {
  const AxisState& s = g.axes;
  const int place = std::clamp(g.charts.pie.label_position, 0, 2);
  double wide = 0.0, high = 0.0, most_shift = 0.0;
  label_room(g, sectors, labels, place, wide, high);
  for (const PieSector& sec : sectors) {
    most_shift = std::max(most_shift, sec.shift);
  }
  const Geometry geo = fit(g, wide, high, most_shift);
  for (PieSector& sec : sectors) {
    sec.shift *= geo.r;
  }
  const DashScope solid(g);
  Painter p(g);
  if (g.charts.pie.solid) {
    draw_walls(g, geo, sectors, most_shift > 0.0, p);
  }
  for (const PieSector& sec : sectors) {
    if (sec.hi <= sec.lo) {
      continue;
    }
    const int split = top_face(geo, sec, p);
    if (split > 0) {
      p.ring(sec.colour, sec.pattern, split);
    } else {
      p.face(sec.colour, sec.pattern);
    }
  }
  const PageClipScope page(g);
  switch (place) {
    case kInside:
      labels_inside(g, geo, sectors, labels);
      break;
    case kOutside:
      labels_outside(geo, sectors, labels);
      break;
    default:
      labels_aligned(g, geo, sectors, labels, geo.r * (1.0 + most_shift) + kLabelGap * g.text.height,
                     s.pos_y - s.len_y + 1.0, static_cast<double>(s.pos_y));
      break;
  }
}

// The legend's entries: a filled box per sector.
void record_sectors(GlobalBlock& g, const std::vector<PieSector>& sectors) {
  for (const PieSector& s : sectors) {
    record_area(g, s.pattern, s.colour);
  }
}

// The axis system of a pie: scaled 0 to 5 on both axes, centred when center() asked for
// it, clipping to its rectangle; no axes are drawn.
void pie_axis_system(GlobalBlock& g) {
  AxisState& s = g.axes;
  g.core.level = 2;
  s.polar = false;
  s.no_axes = true;
  for (const int ax : {kAxisX, kAxisY}) {
    AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
    sc = AxisScale{};
    sc.a = 0.0;
    sc.e = kPieScale;
    sc.first = 0.0;
    sc.step = 1.0;
    sc.umin = 0.0;
    sc.umax = kPieScale;
  }
  s.scaled = true;
  if (s.centring == 1) {
    centre_axis_system(g);
    s.centring = 2;
  }
  s.scale[kAxisX].factor = (s.len_x - 1.0) / kPieScale;
  s.scale[kAxisY].factor = (s.len_y - 1.0) / kPieScale;
  s.scale[kAxisX].corner = s.pos_x;
  s.scale[kAxisY].corner = s.pos_y;
}

}  // namespace

namespace api {

void piegrf(GlobalBlock& g, const char* cbuf, int nlin, const double* xray, int n) {
  if (!check_range(g, n, 1, kMaxPieEntries) || !check_range(g, nlin, 0, 1000)) {
    return;
  }
  std::vector<PieSector> sectors;
  if (!make_sectors(g, xray, n, sectors)) {
    return;
  }
  pie_axis_system(g);
  const Labels labels(g, cbuf, nlin);
  draw_pie(g, sectors, labels);
  record_sectors(g, sectors);
  const AxisState& s = g.axes;
  set_axis_clip(g, {static_cast<double>(s.pos_x), static_cast<double>(s.pos_y - s.len_y + 1),
                    static_cast<double>(s.pos_x + s.len_x - 1), static_cast<double>(s.pos_y)});
  clip_to_axis(g);
}

void pietyp(GlobalBlock& g, const char* ctyp) {
  if (const int i = match_keyword(g, "2D  +3D  ", ctyp); i != 0) {
    g.charts.pie.solid = i == 2;
  }
}

void pieopt(GlobalBlock& g, double xdep, double xelev) {
  if (check_range(g, xdep, 0.0, 10.0) &&
      check_range(g, xelev, std::numeric_limits<double>::min(), 90.0)) {
    g.charts.pie.depth = xdep;
    g.charts.pie.elevation = xelev;
  }
}

void pieang(GlobalBlock& g, double a, const char* cdir) {
  if (!std::isfinite(a)) {
    warn(g, 2, a);
    return;
  }
  if (const int i = match_keyword(g, "CLOC+ANTI", cdir); i != 0) {
    g.charts.pie.start = std::fmod(a, 360.0);
    g.charts.pie.clockwise = i == 1;
  }
}

void pierad(GlobalBlock& g, double xin) {
  if (!(xin >= 0.0 && xin < 1.0)) {
    warn(g, 7, xin);
    return;
  }
  g.charts.pie.inner = xin;
}

void pieexp(GlobalBlock& g, const double* xoff, int n) {
  if (!check_range(g, n, 0, kMaxPieEntries)) {
    return;
  }
  for (int i = 0; i < n; ++i) {
    if (!check_range(g, xoff[i], 0.0, 10.0)) {
      return;
    }
  }
  g.charts.pie.explode.assign(xoff, xoff + n);
}

void pieclr(GlobalBlock& g, const int* nclr, const int* npat, int n) {
  if (!check_range(g, n, 0, kMaxPieEntries)) {
    return;
  }
  for (int i = 0; i < n; ++i) {
    if (!check_range(g, nclr[i], -1, -2) || !check_range(g, npat[i], -1, 17)) {
      return;
    }
  }
  g.charts.pie.colours.assign(nclr, nclr + n);
  g.charts.pie.patterns.assign(npat, npat + n);
}

}  // namespace api
}  // namespace zorvel

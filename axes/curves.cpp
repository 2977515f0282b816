// Curves in the axis system: curve with its interpolation methods, symbols at the data
// points, the colour cycle of successive curves, error bars and spline interpolation.
//
// Points are converted one at a time and handed to the pipeline as they come: no copy
// of the data is made, whatever its length. A point that is not a number (or cannot be
// placed on a log axis) ends the line; the next good point starts a new one.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes/curves.h"
#include "axes/spline.h"
#include "axes/symbols.h"
#include "core/buffers.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "maps/maps.h"

namespace zorvel {
namespace {

// Points out of the axis scaling that a curve reports one by one; the rest are counted.
constexpr int kReportedPoints = 10;

// The colour cycle: ten colours that stay apart on paper and screen, for the lines of
// successive curves.
constexpr std::array<int, 10> kCycle = {
    explicit_rgb(31, 119, 180),  explicit_rgb(255, 127, 14), explicit_rgb(44, 160, 44),
    explicit_rgb(214, 39, 40),   explicit_rgb(148, 103, 189), explicit_rgb(140, 86, 75),
    explicit_rgb(227, 119, 194), explicit_rgb(127, 127, 127), explicit_rgb(188, 189, 34),
    explicit_rgb(23, 190, 207)};

bool finite(double v) { return std::isfinite(v); }

// The record of the next curve (null beyond those a legend can show); counts the curve.
CurveRecord* next_record(CurveState& c) {
  CurveRecord* r =
      c.curves < kMaxLegendLines ? &c.records[static_cast<std::size_t>(c.curves)] : nullptr;
  if (c.curves < 2147483647) {
    ++c.curves;
  }
  return r;
}

// Remembers how the curve is drawn, for its legend line.
void record(GlobalBlock& g, bool lines, bool symbols) {
  CurveState& c = g.curves;
  if (CurveRecord* rp = next_record(c); rp != nullptr) {
    CurveRecord& r = *rp;
    const PipelineState& p = g.pipe;
    r.dash_count = std::clamp(p.dash_count, 1, static_cast<int>(r.dash.size()));
    for (int i = 0; i < r.dash_count; ++i) {
      r.dash[static_cast<std::size_t>(i)] = p.dash[static_cast<std::size_t>(i)];
    }
    r.width = p.line_width;
    r.colour = g.colour.current;
    r.symbol = symbols ? c.symbol : -1;
    r.symbol_colour = c.symbol_colour;
    r.line = lines;
    r.method = c.method;
    r.pattern = lines && c.method == kFilledBars ? p.pattern.number : -1;
  }
}

// The page position of the data point i, false when it cannot be placed.
bool place(const GlobalBlock& g, const double* x, const double* y, int i, double& px,
           double& py) {
  if (g.axes.polar) {
    return polar_to_page(g, x[i], y[i], px, py);
  }
  if (g.maps.active) {
    return map_to_page(g, x[i], y[i], px, py);
  }
  px = axis_page_x(g, x[i]);
  py = axis_page_y(g, y[i]);
  return finite(px) && finite(py);
}

// The y page position of the bars' base: y = 0 where the axis shows it, else the edge of
// the axis system nearest to it (the lower edge on log axes).
double bar_base(const GlobalBlock& g) {
  const AxisState& s = g.axes;
  const double bottom = s.pos_y;
  const double top = s.pos_y - s.len_y + 1.0;
  if (s.log[kAxisY]) {
    return bottom;
  }
  const double zero = axis_page_y(g, 0.0);
  return std::clamp(zero, top, bottom);
}

// The joins of the interpolation methods that draw from point to point.
void draw_joins(GlobalBlock& g, const double* x, const double* y, int n, int method) {
  if (g.axes.polar && method != kLine) {
    draw_polar_bars(g, x, y, n, method);  // BARS, STEM and FBAR: the others are refused
    return;
  }
  if (g.maps.active) {
    map_polyline(g, x, y, n);  // lines on the globe: the methods joining points straight
    return;
  }
  bool open = false;  // a line is being drawn
  double lx = 0.0, ly = 0.0;
  const double base = bar_base(g);
  double width = 0.0;  // FBAR: the bars' width
  if (method == kFilledBars) {
    double gap = HUGE_VAL;
    double prev = HUGE_VAL;
    for (int i = 0; i < n; ++i) {
      const double px = axis_page_x(g, x[i]);
      if (finite(px) && finite(prev) && std::fabs(px - prev) > 0.0) {
        gap = std::min(gap, std::fabs(px - prev));
      }
      if (finite(px)) {
        prev = px;
      }
    }
    width = finite(gap) ? 0.8 * gap : 0.05 * g.axes.len_x;
  }
  for (int i = 0; i < n; ++i) {
    double px = 0.0, py = 0.0;
    if (!place(g, x, y, i, px, py)) {
      open = false;
      continue;
    }
    switch (method) {
      case kStep:  // hold the value until the next x
      case kStairs: {  // jump at the next x
        if (!open) {
          move_to(g, px, py);
        } else if (method == kStep) {
          draw_to(g, px, ly);
          draw_to(g, px, py);
        } else {
          draw_to(g, lx, py);
          draw_to(g, px, py);
        }
        break;
      }
      case kBars:
      case kStem:
        move_to(g, px, base);
        draw_to(g, px, py);
        break;
      case kFilledBars: {
        const double xs[4] = {px - 0.5 * width, px + 0.5 * width, px + 0.5 * width,
                              px - 0.5 * width};
        const double ys[4] = {base, base, py, py};
        fill_polygon(g, xs, ys, 4);
        break;
      }
      default:
        if (!open) {
          move_to(g, px, py);
        } else {
          draw_to(g, px, py);
        }
        break;
    }
    open = true;
    lx = px;
    ly = py;
  }
  if (method == kStem) {
    // The base line under the stems.
    double lo = HUGE_VAL, hi = -HUGE_VAL;
    for (int i = 0; i < n; ++i) {
      double px = 0.0, py = 0.0;
      if (place(g, x, y, i, px, py)) {
        lo = std::min(lo, px);
        hi = std::max(hi, px);
      }
    }
    if (lo < hi) {
      move_to(g, lo, base);
      draw_to(g, hi, base);
    }
  }
}

// Symbols at every |interval|-th point from the first, at the rounded plot position.
void draw_marks(GlobalBlock& g, const double* x, const double* y, int n, int interval,
                int symbol) {
  CurveState& c = g.curves;
  const int old = g.colour.current;
  if (c.symbol_colour >= 0) {
    set_colour(g, c.symbol_colour);
  }
  const long long step = std::max(1LL, std::llabs(static_cast<long long>(interval)));
  for (long long i = 0; i < n; i += step) {
    double px = 0.0, py = 0.0;
    if (place(g, x, y, static_cast<int>(i), px, py)) {
      draw_symbol(g, symbol, std::floor(px + 0.5), std::floor(py + 0.5), c.symbol_height);
    }
  }
  if (g.colour.current != old) {
    set_colour(g, old);
  }
}

// Reports the points outside the axis scaling: the first few one by one, then a count.
void report_outside(GlobalBlock& g, const double* x, const double* y, int n) {
  const AxisState& s = g.axes;
  const AxisScale& sx = s.scale[kAxisX];
  const AxisScale& sy = s.scale[kAxisY];
  const double tx = 1e-9 * (sx.umax - sx.umin);
  const double ty = 1e-9 * (sy.umax - sy.umin);
  long long outside = 0;
  for (int i = 0; i < n; ++i) {
    if (std::isnan(x[i]) || std::isnan(y[i])) {
      continue;
    }
    const bool out = x[i] < sx.umin - tx || x[i] > sx.umax + tx ||
                     (!s.polar && (y[i] < sy.umin - ty || y[i] > sy.umax + ty));
    if (!out) {
      continue;
    }
    if (++outside <= kReportedPoints) {
      char xs[32];
      char ys[32];
      std::snprintf(xs, sizeof xs, "%12.4e", x[i]);
      std::snprintf(ys, sizeof ys, "%12.4e", y[i]);
      warn(g, 253, xs, ys);
    }
  }
  if (outside > kReportedPoints) {
    warn(g, 254, static_cast<double>(outside - kReportedPoints));
  }
}

bool spline_method(int m) { return m == kSpline || m == kParametricSpline; }

// Interpolates with the curve settings into the curve state's buffers; false after a
// warning. The result has spline_points + 1 points.
bool interpolate(GlobalBlock& g, const double* x, const double* y, int n, int method) {
  CurveState& c = g.curves;
  const std::size_t m = static_cast<std::size_t>(c.spline_points) + 1;
  if (c.spline_x.size() < m) {
    c.spline_x.resize(m);
    c.spline_y.resize(m);
  }
  const bool log_x = g.axes.log[kAxisX] && method == kSpline && g.core.level >= 2;
  const SplineResult r = interpolate_spline(x, y, n, c.spline_degree, c.spline_points,
                                            method == kParametricSpline, log_x,
                                            c.spline_x.data(), c.spline_y.data(), c.spline_work);
  switch (r) {
    case SplineResult::Ok:
      return true;
    case SplineResult::BadCount:
      warn(g, 31);
      break;
    case SplineResult::NotIncreasing:
      warn(g, 32);
      break;
    case SplineResult::Singular:
      warn(g, 38);
      break;
  }
  return false;
}

// Error bars from y - e1 to y + e2 (vertical) or x - e1 to x + e2, with caps and the
// curve symbol at the point.
void draw_error_bars(GlobalBlock& g, const double* x, const double* y, const double* e1,
                     const double* e2, int n, bool vertical) {
  if (n < 1) {
    warn(g, 2, n);
    return;
  }
  CurveState& c = g.curves;
  const CurveColour colour(g, false);
  const double cap = 0.5 * c.symbol_height;
  for (int i = 0; i < n; ++i) {
    double lo_x = x[i], lo_y = y[i], hi_x = x[i], hi_y = y[i];
    if (vertical) {
      lo_y = y[i] - e1[i];
      hi_y = y[i] + e2[i];
    } else {
      lo_x = x[i] - e1[i];
      hi_x = x[i] + e2[i];
    }
    const double ax = axis_page_x(g, lo_x), ay = axis_page_y(g, lo_y);
    const double bx = axis_page_x(g, hi_x), by = axis_page_y(g, hi_y);
    if (!finite(ax) || !finite(ay) || !finite(bx) || !finite(by)) {
      continue;
    }
    move_to(g, ax, ay);
    draw_to(g, bx, by);
    for (const double* end : {&ax, &bx}) {
      const double ex = *end;
      const double ey = end == &ax ? ay : by;
      if (vertical) {
        move_to(g, ex - cap, ey);
        draw_to(g, ex + cap, ey);
      } else {
        move_to(g, ex, ey - cap);
        draw_to(g, ex, ey + cap);
      }
    }
  }
  if (c.symbol >= 0) {
    draw_marks(g, x, y, n, 1, c.symbol);
  }
}

}  // namespace

CurveColour::CurveColour(GlobalBlock& g, bool advance) : g_(g), old_(g.colour.current) {
  CurveState& c = g.curves;
  if (c.cycle_colours && (old_ == g.colour.foreground || old_ == c.cycled_colour)) {
    const int rgb = kCycle[static_cast<std::size_t>(c.cycle_index) % kCycle.size()];
    if (advance) {
      c.cycle_index = (c.cycle_index + 1) % static_cast<int>(kCycle.size());
      c.cycled_colour = rgb;
    }
    set_colour(g, rgb);
    changed_ = true;
  }
}

CurveColour::~CurveColour() {
  if (changed_) {
    set_colour(g_, old_);
  }
}

void record_curve(GlobalBlock& g, bool lines, bool symbols) { record(g, lines, symbols); }

void record_area(GlobalBlock& g, int pattern, int colour) {
  if (CurveRecord* r = next_record(g.curves); r != nullptr) {
    *r = CurveRecord{};
    r->colour = colour;
    r->line = false;
    r->pattern = pattern;
  }
}

namespace api {

void curve(GlobalBlock& g, const double* xray, const double* yray, int n) {
  CurveState& c = g.curves;
  if (n < 1 || (n == 1 && c.marker_interval >= 0)) {
    warn(g, 2, n);
    return;
  }
  const int method = c.method;
  if (g.axes.polar && method != kLine && method != kBars && method != kStem &&
      method != kFilledBars) {
    warn(g, 160);
    return;
  }
  if (g.maps.active && method != kLine && !spline_method(method)) {
    warn(g, 286);  // steps and bars have no meaning on a map
    return;
  }
  if (c.scale_check && g.msg.warnings_on) {
    report_outside(g, xray, yray, n);
  }
  if (c.nan_check && spline_method(method)) {
    for (int i = 0; i < n; ++i) {
      if (std::isnan(xray[i]) || std::isnan(yray[i])) {
        warn(g, 161);
        return;
      }
    }
  }
  const bool symbols = c.marker_interval != 0 && c.symbol >= 0 && symbol_defined(g, c.symbol);
  const bool lines = c.marker_interval >= 0;
  const CurveColour colour(g, true);
  if (lines) {
    if (spline_method(method)) {
      if (!interpolate(g, xray, yray, n, method)) {
        return;
      }
      draw_joins(g, c.spline_x.data(), c.spline_y.data(), c.spline_points + 1, kLine);
    } else {
      draw_joins(g, xray, yray, n, method);
    }
  }
  if (symbols || (method == kStem && lines)) {
    // Stems end in a symbol: the marker, or a filled circle.
    draw_marks(g, xray, yray, n, symbols ? c.marker_interval : 1, symbols ? c.symbol : 13);
  }
  end_polyline(g);
  record(g, lines, symbols);
}

void spline(GlobalBlock& g, const double* xray, const double* yray, int n,
            OutArray<double> xsray, OutArray<double> ysray, int* nspl) {
  CurveState& c = g.curves;
  *nspl = 0;
  const std::size_t m = static_cast<std::size_t>(c.spline_points) + 1;
  if (!xsray.holds(m) || !ysray.holds(m)) {
    warn(g, 2, static_cast<int>(std::min(xsray.size, ysray.size)));
    return;
  }
  const int method = c.method == kParametricSpline ? kParametricSpline : kSpline;
  if (!interpolate(g, xray, yray, n, method)) {
    return;
  }
  std::copy_n(c.spline_x.data(), m, xsray.data);
  std::copy_n(c.spline_y.data(), m, ysray.data);
  *nspl = static_cast<int>(m);
}

void polcrv(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "LINE+STEP+BARS+SPLI+PSPL+STEM+STAI+FBAR", copt); i != 0) {
    g.curves.method = i - 1;
  }
}

void splmod(GlobalBlock& g, int ndeg, int nspl) {
  if (check_range(g, ndeg, 2, 10) && check_range(g, nspl, 5, 30000)) {
    g.curves.spline_degree = ndeg;
    g.curves.spline_points = nspl;
  }
}

void nancrv(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "OFF +ON  ", copt); i != 0) {
    g.curves.nan_check = i == 2;
  }
}

void clrcyc(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "ON  +OFF +RESE", copt); i != 0) {
    if (i == 3) {
      g.curves.cycle_index = 0;
    } else {
      g.curves.cycle_colours = i == 1;
    }
  }
}

void errbar(GlobalBlock& g, const double* xray, const double* yray, const double* e1ray,
            const double* e2ray, int n) {
  draw_error_bars(g, xray, yray, e1ray, e2ray, n, true);
}

void errbrh(GlobalBlock& g, const double* xray, const double* yray, const double* e1ray,
            const double* e2ray, int n) {
  draw_error_bars(g, xray, yray, e1ray, e2ray, n, false);
}

}  // namespace api

void curve_defaults(GlobalBlock& g) {
  g.curves = CurveState{};
  g.legend = LegendState{};
  g.charts = ChartState{};
  g.contours = ContourState{};
}

}  // namespace zorvel

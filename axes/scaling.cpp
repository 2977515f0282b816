// Axis systems: graf and its checks, automatic scaling (numbers, times, dates), the
// position, size and type of the axis system, and the conversions between user
// coordinates and plot coordinates.

#include <algorithm>
#include <cmath>
#include <limits>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes3d/axes3d.h"
#include "axes/labels.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "maps/maps.h"
#include "text/layout.h"
#include "text/text.h"

namespace zorvel {
namespace {

// The smallest significant difference of scaling values.
constexpr double kEps = 1e-35;
// The single-precision 1.2 of the time steps: 600 minutes become 720.
constexpr double kTimeStretch = 1.2000000476837158;

double pow10i(int k) { return std::pow(10.0, k); }

// Axis letters of cax: which of X, Y and Z it names.
std::array<bool, 3> named_axes(const char* cax) {
  std::array<bool, 3> on{};
  for (const char* c = cax; *c != '\0'; ++c) {
    const char u = static_cast<char>(*c & ~0x20);
    if (u >= 'X' && u <= 'Z') {
      on[static_cast<std::size_t>(u - 'X')] = true;
    }
  }
  return on;
}

bool exponent_type(int type) { return type == kLabExp || type == kLabFexp || type == kLabXexp; }

// Length of the axis along which axis `ax` runs.
int axis_length(const AxisState& s, int ax) { return ax == kAxisX ? s.len_x : s.len_y; }

// Time axes: the step in seconds from the range, and the label form (seconds below two
// minutes, hours and minutes above).
void time_steps(AxisScale& sc, double a, double e) {
  const double d = std::fabs(e - a);
  double step = 0.0;
  if (d < 120.0) {
    step = d < 8 ? 1 : d < 15 ? 2 : d < 30 ? 5 : d < 60 ? 10 : 20;
    sc.time_form = kLabSeco;
  } else {
    const double m = std::trunc(std::min(d, 1e15) / 60.0);
    double minutes = 0.0;
    if (m < 240.0) {
      minutes = m < 8 ? 1 : m < 15 ? 2 : m < 30 ? 5 : m < 60 ? 10 : m < 120 ? 15 : 30;
    } else {
      const double h = std::trunc(m / 60.0);
      const int p = static_cast<int>(std::floor(std::log10(h)));
      const int lead = static_cast<int>(h / pow10i(p));
      minutes = pow10i(p) * 60.0;
      if (lead == 1) {
        minutes /= 5.0;
      } else if (lead <= 3) {
        minutes /= 2.5;
      } else if (lead >= 8) {
        minutes *= 2.0;
      }
      if (minutes > 300.0) {
        minutes *= kTimeStretch;
      }
    }
    step = minutes * 60.0;
    sc.time_form = kLabTime;
  }
  step = std::round(step);
  const double start = std::round(a);
  sc.step = step;
  const double q = std::trunc(start / step);
  sc.first = std::fmod(start, step) == 0.0 ? start : (q + 1.0) * step;
}

// Date axes: day steps below five weeks, then months, quarters, half years and years;
// the first label moves to the first day of a month that begins such a period.
void date_steps(const AxisState& s, AxisScale& sc, double a, double e) {
  const double d = std::fabs(e - a);
  const double start = std::round(a);
  sc.months = 0;
  sc.date_form = kDateDay;
  if (d < 36.0) {
    sc.step = d < 6 ? 1 : d < 11 ? 2 : d < 16 ? 3 : 7;
    sc.first = start;
    int d0 = 1, m0 = 1, y0 = 2000, d1 = 1, m1 = 1, y1 = 2000;
    date_of_day(s, static_cast<long long>(start), d0, m0, y0);
    date_of_day(s, static_cast<long long>(std::round(e)), d1, m1, y1);
    if (y0 != y1) {
      sc.date_form = kDateFull;
    }
    return;
  }
  int months = 12;
  if (d < 160.0) {
    months = 1;
  } else if (d < 500.0) {
    months = 3;
  } else if (d < 1000.0) {
    months = 6;
  } else {
    // Yearly, in steps of 1, 2, 5, 10, ... years that leave at most ten labels.
    const double years = d / 365.25;
    double k = 1.0;
    while (years / k > 10.0 && k < 1e6) {
      k *= (static_cast<int>(std::log10(k) * 3 + 0.5) % 3 == 1) ? 2.5 : 2.0;
    }
    months = static_cast<int>(12.0 * k);
  }
  sc.months = months;
  sc.step = months * 30.436875;
  sc.date_form = months >= 12 ? kDateYear : kDateMonth;
  int day = 1, month = 1, year = 2000;
  date_of_day(s, static_cast<long long>(std::clamp(start, -4e6, 4e6)), day, month, year);
  // The next month that begins a period (or this one, on its first day).
  const int year_step = std::max(1, months / 12);
  for (int guard = 0; guard < 100000; ++guard) {
    const bool begins = months < 12 ? (month - 1) % months == 0
                                    : month == 1 && year % year_step == 0;
    if (begins && day == 1) {
      break;
    }
    day = 1;
    if (++month > 12) {
      month = 1;
      ++year;
    }
  }
  sc.first = static_cast<double>(day_number(s, day, month, year));
}

// Automatic scaling of axis `ax` from the limits of setscl: the axis runs from the data
// minimum to the maximum; first label, step and digits are chosen.
void auto_scale(GlobalBlock& g, int ax, double v[4]) {
  AxisState& s = g.axes;
  AxisSettings& st = s.axis[static_cast<std::size_t>(ax)];
  AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
  double a = s.auto_min[static_cast<std::size_t>(ax)];
  double e = s.auto_max[static_cast<std::size_t>(ax)];
  const bool lg = s.log[static_cast<std::size_t>(ax)];
  if (lg) {
    if (a > 0.0) {
      a = std::log10(a);
    } else {
      warn(g, 23);
      a = -1.0;
      s.auto_min[static_cast<std::size_t>(ax)] = 0.1;
    }
    if (e > 0.0) {
      e = std::log10(e);
    } else {
      warn(g, 24);
      e = 0.0;
      s.auto_max[static_cast<std::size_t>(ax)] = 1.0;
    }
    st.log_form = kLogPower;
  }
  v[0] = a;
  v[1] = e;
  if (!lg && st.kind == kKindTime) {
    time_steps(sc, a, e);
    v[2] = sc.first;
    v[3] = sc.step;
    return;
  }
  if (!lg && st.kind == kKindDate) {
    date_steps(s, sc, a, e);
    v[2] = sc.first;
    v[3] = sc.step;
    return;
  }
  const double d = e - a;
  int k = 0;
  for (int i = 0; i < 50; ++i) {
    const double q = d / pow10i(k);
    if (q >= 10.0) {
      ++k;
    } else if (q < 1.0) {
      --k;
    } else {
      break;
    }
  }
  const double q = d / pow10i(k);
  const int n = static_cast<int>(std::clamp(std::trunc(q), -1e9, 1e9));
  double step = pow10i(k);
  int digits = k < 0 ? -k : -1;
  const bool expo = exponent_type(st.label_type);

  // The first label as step 8 below chooses it, for the width of the labels.
  auto first_label = [&](double stp) {
    const double r = a / stp;
    if (std::fabs(r) > 2147483647.0) {
      return a;
    }
    const double frac = std::fabs(r - std::trunc(r));
    if (frac < 1e-15 || 1.0 - frac < 1e-9) {
      return std::round(r) * stp;
    }
    return (a >= 0.0 ? std::trunc(r) + 1.0 : std::trunc(r)) * stp;
  };
  double m = 100.0;
  if (ax == kAxisX) {
    char text[kLabelBuffer];
    LabelRequest r;
    r.axis = ax;
    r.log_axis = lg;
    r.digits = digits;
    r.chars = label_chars(g);
    const int len = format_label(s, st, r, first_label(step), text, sizeof text);
    const int w = measure_label(g, std::string_view(text, static_cast<std::size_t>(len)),
                                g.text.height);
    m = std::max(200.0, 1.25 * w);
  }
  const double length = axis_length(s, ax);
  bool finer = false;
  if (n >= 5) {
    if (!(length / n >= m && (n < 7 || !expo))) {
      step *= 2.0;
    }
  } else if (n == 2 || n == 3) {
    if (!lg && length / (2.0 * n) >= m) {
      step /= 2.0;
      finer = true;
    }
  } else if (n == 1) {
    if (lg) {
      if (step > 2.0) {
        step = 1.0;
      }
    } else if (length / 2.0 >= m) {
      if (expo && q > 1.8) {
        step /= 2.0;
      } else {
        step /= length / 5.0 >= m ? 5.0 : 2.0;
      }
      finer = true;
    }
  }
  if (finer) {
    if (k < 0) {
      ++digits;
    } else if (k == 0) {
      digits = 1;
    }
  }
  double first = a;
  if (std::fabs(a / step) > 2147483647.0) {
    step = e - a;
    digits = 3;
  } else {
    first = first_label(step);
  }
  if (expo) {
    double big = std::max(std::fabs(first), std::fabs(e));
    for (int i = 0; i < 400 && big >= 10.0; ++i) {
      big /= 10.0;
      if (digits >= 1) {
        ++digits;
      }
    }
    for (int i = 0; i < 400 && big > 0.0 && big < 1.0; ++i) {
      big *= 10.0;
      --digits;
    }
    digits = std::max(digits, 1);
  }
  st.digits = std::clamp(digits, -1, 100);
  v[2] = first;
  v[3] = step;
}

// The scaling checks of one axis; false for the fatal ones (equal limits, zero step,
// values that are not finite numbers).
bool check_axis(GlobalBlock& g, const double v[4]) {
  for (int i = 0; i < 4; ++i) {
    if (!std::isfinite(v[i])) {
      warn(g, 2, v[i]);
      return false;
    }
  }
  const double a = v[0], e = v[1], first = v[2], step = v[3];
  bool ok = true;
  if (kEps > std::fabs(e - a) || !std::isfinite(e - a)) {
    warn(g, 10);
    ok = false;
  }
  if (kEps > std::fabs(step)) {
    warn(g, 9);
    ok = false;
  }
  if (e > a ? (first < a || first > e) : (first > a || first < e)) {
    warn(g, 12);
  }
  if ((e > a && step < 0.0) || (e <= a && step > 0.0)) {
    warn(g, 50);
  }
  return ok;
}

// Page position of the user value v on axis ax (log axes: its logarithm).
double to_page(const AxisState& s, int ax, double v) {
  const AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
  if (s.log[static_cast<std::size_t>(ax)]) {
    v = v > 0.0 ? std::log10(v) : std::numeric_limits<double>::quiet_NaN();
  }
  const double d = (v - sc.a) * sc.factor;
  return ax == kAxisX ? sc.corner + d : sc.corner - d;
}

// The axis system's rectangle as the pipeline clips to it.
ClipRect axis_rect(const AxisState& s) {
  return {static_cast<double>(s.pos_x), static_cast<double>(s.pos_y - s.len_y + 1),
          static_cast<double>(s.pos_x + s.len_x - 1), static_cast<double>(s.pos_y)};
}

// Centres the axis system with everything drawn around it on the page.
void centre(GlobalBlock& g) {
  AxisState& s = g.axes;
  const AxisExtents ext = draw_axis_system(g, false);
  AxisExtents all = ext;
  const double titles = draw_titles(g, ext, false);
  all[s.title_below ? kSideBottom : kSideTop] += titles;
  const double w = all[kSideLeft] + s.len_x + all[kSideRight];
  const double h = all[kSideTop] + s.len_y + all[kSideBottom];
  s.pos_x = round_int((g.page.width + 1.0 - w) / 2.0 + all[kSideLeft]);
  s.pos_y = round_int((g.page.height + 1.0 - h) / 2.0 + all[kSideTop] + s.len_y - 1.0);
}

// The axis positions and scale factors from the stored scaling.
void place(AxisState& s) {
  AxisScale& x = s.scale[kAxisX];
  AxisScale& y = s.scale[kAxisY];
  x.factor = (s.len_x - 1.0) / (x.e - x.a);
  y.factor = (s.len_y - 1.0) / (y.e - y.a);
  x.corner = s.pos_x;
  y.corner = s.pos_y;
}

}  // namespace

bool check_axis_scaling(GlobalBlock& g, const double v[4]) { return check_axis(g, v); }

void auto_scale_axis(GlobalBlock& g, int ax, double v[4]) { auto_scale(g, ax, v); }

void centre_axis_system(GlobalBlock& g) { centre(g); }

double axis_page_x(const GlobalBlock& g, double x) { return to_page(g.axes, kAxisX, x); }

double axis_page_y(const GlobalBlock& g, double y) { return to_page(g.axes, kAxisY, y); }

void axes_defaults(GlobalBlock& g) {
  AxisState& s = g.axes;
  // Kept across plots: the options that may be given before zorini.
  const bool separator = s.hour_separator;
  const int language = s.date_language;
  const bool base_set = s.base_date_set;
  const int bd = s.base_day, bm = s.base_month, by = s.base_year, bdy = s.base_day_of_year;
  s = AxisState{};
  s.hour_separator = separator;
  s.date_language = language;
  s.base_date_set = base_set;
  s.base_day = bd;
  s.base_month = bm;
  s.base_year = by;
  s.base_day_of_year = bdy;
  // Position and lengths in the proportions of a good figure: room for labels and a
  // name on the left and below, for titles above; portrait pages get a 4:3 area.
  const double w = g.page.width + 1.0;
  const double h = g.page.height + 1.0;
  s.len_x = round_int(0.775 * w);
  s.pos_x = round_int(0.125 * w);
  if (w >= h) {
    s.len_y = round_int(0.77 * h);
    s.pos_y = round_int(0.89 * h) - 1;
  } else {
    s.len_y = round_int(0.75 * s.len_x);
    s.pos_y = round_int(0.5 * (h + s.len_y)) - 1;
  }
}

namespace api {

void graf(GlobalBlock& g, double xa, double xe, double xorg, double xstp, double ya, double ye,
          double yorg, double ystp) {
  AxisState& s = g.axes;
  g.core.level = 2;
  s.polar = false;
  s.no_axes = false;
  s.scaled = false;
  double v[2][4] = {{xa, xe, xorg, xstp}, {ya, ye, yorg, ystp}};
  for (int ax = 0; ax < 2; ++ax) {
    AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
    sc.time_form = -1;
    sc.date_form = kDateFull;
    sc.months = 0;
    if (s.autoscale[static_cast<std::size_t>(ax)]) {
      auto_scale(g, ax, v[ax]);
    }
  }
  const bool ok_x = check_axis(g, v[0]);
  const bool ok_y = check_axis(g, v[1]);
  if (!ok_x || !ok_y) {
    g.core.level = 1;
    return;
  }
  if (s.crossed && (s.log[kAxisX] || s.log[kAxisY])) {
    warn(g, 150);
    g.core.level = 1;
    return;
  }
  for (int ax = 0; ax < 2; ++ax) {
    AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
    sc.a = v[ax][0];
    sc.e = v[ax][1];
    sc.first = v[ax][2];
    sc.step = v[ax][3];
    double lo = sc.a;
    double hi = sc.e;
    if (s.log[static_cast<std::size_t>(ax)]) {
      lo = std::pow(10.0, lo);
      hi = std::pow(10.0, hi);
      if (s.autoscale[static_cast<std::size_t>(ax)]) {
        lo = s.auto_min[static_cast<std::size_t>(ax)];
        hi = s.auto_max[static_cast<std::size_t>(ax)];
      }
    }
    sc.umin = std::min(lo, hi);
    sc.umax = std::max(lo, hi);
  }
  place(s);
  for (int ax = 0; ax < 2; ++ax) {
    const AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
    if (std::fabs((sc.e - sc.a) / sc.step) > kMaxAxisLabels) {
      warn(g, 251, kMaxAxisLabels);  // the axis is drawn without labels and ticks
    }
  }
  if (s.crossed) {
    const AxisScale& x = s.scale[kAxisX];
    const AxisScale& y = s.scale[kAxisY];
    if (x.umin - kEps > 0.0 || x.umax + kEps < 0.0 || y.umin - kEps > 0.0 ||
        y.umax + kEps < 0.0) {
      warn(g, 151);
      g.core.level = 1;
      return;
    }
    if (s.origin_given) {
      s.pos_x = s.org_x + trunc_int((s.len_x - 1.0) * x.a / (x.e - x.a));
      s.pos_y = trunc_int(s.len_y - (s.len_y - 1.0) * y.e / (y.e - y.a)) + s.org_y - 1;
      place(s);
    }
  }
  s.scaled = true;
  ++s.graf_serial;
  if (s.centring == 1) {
    centre(g);
    s.centring = 2;
    place(s);
  }
  if (s.crossed) {
    s.org_x = trunc_int(to_page(s, kAxisX, 0.0) + 0.5);
    s.org_y = trunc_int(to_page(s, kAxisY, 0.0) + 0.5);
  }
  const ClipRect rect = axis_rect(s);
  const int colour = g.colour.current;
  const DashScope solid(g);  // the axes in solid lines, whatever the caller draws with
  if (s.background != -1) {
    const double xs[4] = {rect.xmin, rect.xmax, rect.xmax, rect.xmin};
    const double ys[4] = {rect.ymin, rect.ymin, rect.ymax, rect.ymax};
    set_colour(g, s.background);
    const FillPatternScope solid(g, kSolidPattern);
    fill_polygon(g, xs, ys, 4);
    set_colour(g, colour);
  }
  // The frame first, so that the colours of axclrs show on the axis lines over it.
  draw_axis_frame(g);
  draw_axis_system(g, true);
  if (g.colour.current != colour) {
    set_colour(g, colour);
  }
  set_axis_clip(g, rect);
  clip_to_axis(g);
}

void endgrf(GlobalBlock& g) {
  AxisState& s = g.axes;
  end_plane_for_endgrf(g);
  end_zbuffer_for_endgrf(g);
  end_bar_group(g);
  flush_polyline(g);
  clear_axis_clip(g);
  g.pipe.border = ClipBorder::Page;
  g.core.level = 1;
  if (s.polar) {
    end_polar(g);
  }
  if (g.maps.active) {
    end_map(g);
  }
  s.polar = false;
  s.no_axes = false;
  s.scaled = false;
  s.autoscale = {};
  if (s.centring == 2) {
    s.centring = 0;
  }
}

void axspos(GlobalBlock& g, int nxa, int nya) {
  const int y = page_y(g, nya);
  if (nxa < 0 || nxa > g.page.width) {
    warn(g, 2, nxa);
    return;
  }
  if (y < 0 || y > g.page.height) {
    warn(g, 2, nya);
    return;
  }
  g.axes.pos_x = nxa;
  g.axes.pos_y = y;
  g.axes.origin_given = false;
}

void axslen(GlobalBlock& g, int nxl, int nyl) {
  // At most ten times the page: room for any layout, no overflow in the positions.
  if (nxl < 2 || nyl < 2) {
    warn(g, 11);
    return;
  }
  const double most = 10.0 * (std::max(g.page.width, g.page.height) + 1.0);
  if (nxl > most || nyl > most) {
    warn(g, 2, std::max(nxl, nyl));
    return;
  }
  g.axes.len_x = nxl;
  g.axes.len_y = nyl;
}

void axsorg(GlobalBlock& g, int nx, int ny) {
  const int y = page_y(g, ny);
  if (nx < 0 || nx > g.page.width) {
    warn(g, 2, nx);
    return;
  }
  if (y < 0 || y > g.page.height) {
    warn(g, 2, ny);
    return;
  }
  g.axes.org_x = nx;
  g.axes.org_y = y;
  g.axes.origin_given = true;
}

void axstyp(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "RECT+CROS", copt); i != 0) {
    g.axes.crossed = i == 2;
  }
}

void axsscl(GlobalBlock& g, const char* copt, const char* cax) {
  const int i = match_keyword(g, "LIN +LOG ", copt);
  if (i == 0) {
    return;
  }
  const std::array<bool, 3> on = named_axes(cax);
  for (std::size_t ax = 0; ax < 3; ++ax) {
    if (on[ax]) {
      g.axes.log[ax] = i == 2;
    }
  }
}

void scale(GlobalBlock& g, const char* copt, const char* cax) { axsscl(g, copt, cax); }

void center(GlobalBlock& g) { g.axes.centring = 1; }

void axsbgd(GlobalBlock& g, int nclr) {
  if (nclr < -1) {
    warn(g, 2, nclr);
    return;
  }
  g.axes.background = nclr;
}

void secaxs(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "ON  +OFF ", copt); i != 0) {
    g.axes.no_second_axes = i == 2;
  }
}

void setscl(GlobalBlock& g, const double* ray, int n, const char* cax) {
  AxisState& s = g.axes;
  const Key4 k = key4(cax);
  const std::string_view key(k.data(), 3);
  if (key == "RES") {
    s.autoscale = {};
    return;
  }
  if (key == "XRE" || key == "YRE" || key == "ZRE") {
    s.autoscale[static_cast<std::size_t>(key[0] - 'X')] = false;
    return;
  }
  if (n < 1) {
    warn(g, 2, n);
    return;
  }
  double lo = std::numeric_limits<double>::infinity();
  double hi = -lo;
  for (int i = 0; i < n; ++i) {
    const double v = ray[i];
    if (std::isfinite(v)) {
      lo = std::min(lo, v);
      hi = std::max(hi, v);
    }
  }
  if (lo > hi) {
    warn(g, 2, n);  // not one finite value
    return;
  }
  if (hi - lo < kEps) {
    warn(g, 25);
    lo -= 1.0;
    hi += 1.0;
  }
  const std::array<bool, 3> on = named_axes(cax);
  for (std::size_t ax = 0; ax < 3; ++ax) {
    if (on[ax]) {
      s.auto_min[ax] = lo;
      s.auto_max[ax] = hi;
      s.autoscale[ax] = true;
    }
  }
}

double xposn(GlobalBlock& g, double x) {
  if (g.maps.active) {
    warn(g, 286);  // mappos gives both coordinates of a map point
    return 0.0;
  }
  return axis_page_x(g, x);
}

double yposn(GlobalBlock& g, double y) {
  if (g.maps.active) {
    warn(g, 286);
    return 0.0;
  }
  if (g.axes.polar) {
    warn(g, 109);
    return 0.0;
  }
  return page_y(g, axis_page_y(g, y));
}

int nxposn(GlobalBlock& g, double x) {
  if (g.maps.active) {
    warn(g, 286);
    return 0;
  }
  return trunc_int(axis_page_x(g, x) + 0.5);
}

int nyposn(GlobalBlock& g, double y) {
  if (g.maps.active) {
    warn(g, 286);
    return 0;
  }
  if (g.axes.polar) {
    warn(g, 109);
    return 0;
  }
  return trunc_int(page_y(g, axis_page_y(g, y)) + 0.5);
}

double xinvrs(GlobalBlock& g, int n) {
  if (g.maps.active) {
    warn(g, 286);  // mapinv
    return 0.0;
  }
  const AxisScale& sc = g.axes.scale[kAxisX];
  const double v = (n - sc.corner) / sc.factor + sc.a;
  return g.axes.log[kAxisX] ? std::pow(10.0, v) : v;
}

double yinvrs(GlobalBlock& g, int n) {
  if (g.maps.active) {
    warn(g, 286);
    return 0.0;
  }
  const AxisScale& sc = g.axes.scale[kAxisY];
  const double v = (sc.corner - page_y(g, n)) / sc.factor + sc.a;
  return g.axes.log[kAxisY] ? std::pow(10.0, v) : v;
}

void rlstrt(GlobalBlock& g, double x, double y) {
  if (g.maps.active) {
    map_line_start(g, x, y);
    return;
  }
  double px = axis_page_x(g, x), py = axis_page_y(g, y);
  if (g.axes.polar) {
    polar_to_page(g, x, y, px, py);
  }
  move_to(g, px, py);
}

void rlconn(GlobalBlock& g, double x, double y) {
  if (g.maps.active) {
    map_line_to(g, x, y);
    return;
  }
  double px = axis_page_x(g, x), py = axis_page_y(g, y);
  if (g.axes.polar) {
    polar_to_page(g, x, y, px, py);
  }
  draw_to(g, px, py);
}

void grid(GlobalBlock& g, int nx, int ny) {
  if (nx < 0 || nx > kMaxTicks || ny < 0 || ny > kMaxTicks) {
    warn(g, 2, std::max(nx, ny) > kMaxTicks ? std::max(nx, ny) : std::min(nx, ny));
    return;
  }
  if (g.axes.polar) {
    polgrd(g, nx, ny);  // rings and spokes
    return;
  }
  if (g.maps.active) {
    gridmp(g, nx, ny);  // meridians and parallels
    return;
  }
  draw_axis_grid(g, nx, ny);
}

void title(GlobalBlock& g) {
  // A 3D axis system has no axes around its area: the title keeps its distance from the
  // area itself.
  const AxisExtents ext = g.core.level == 3 ? AxisExtents{} : draw_axis_system(g, false);
  draw_titles(g, ext, true);
}

}  // namespace api
}  // namespace zorvel

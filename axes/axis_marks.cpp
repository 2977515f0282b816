// The values of an axis' labels, ticks and grid lines, and the label texts, for the 2D
// axes (axis_draw.cpp) and the 3D box (axes3d/box.cpp).

#include "axes/axis_marks.h"

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/colour.h"

namespace zorvel {
namespace {

// The colour of grid lines while the program draws in the foreground colour.
constexpr int kGridGrey = explicit_rgb(176, 176, 176);

bool exponent_type(int type) { return type == kLabExp || type == kLabFexp || type == kLabXexp; }

double tolerance(const AxisScale& sc) { return 1e-9 * std::fabs(sc.e - sc.a); }

bool in_range(const AxisScale& sc, double v) {
  const double t = tolerance(sc);
  return v >= std::min(sc.a, sc.e) - t && v <= std::max(sc.a, sc.e) + t;
}

// Calls f(k) for k = j0 .. j1 (integers as doubles), at most kMaxAxisTicks + 1 times.
template <class F>
void for_each_step(double j0, double j1, F&& f) {
  const double span = j1 - j0;  // at most kMaxAxisTicks or so, unless not a number
  const long long steps =
      std::isfinite(span) && span >= 0.0
          ? static_cast<long long>(std::min(span, static_cast<double>(kMaxAxisTicks))) + 1
          : 0;
  for (long long i = 0; i < steps; ++i) {
    f(j0 + static_cast<double>(i));
  }
}

// Calls f(value, k) for the values log10(k) of every decade in the range (k = 1 .. 9);
// false when there are too many decades to show.
template <class F>
bool for_each_decade_tick(const AxisScale& sc, F&& f) {
  const double lo = std::min(sc.a, sc.e);
  const double hi = std::max(sc.a, sc.e);
  if (hi - lo > kMaxAxisTicks / 9.0) {
    return false;
  }
  // Counted in integers: far from zero, adding one to a double changes nothing.
  const long long decades = static_cast<long long>(hi - std::floor(lo)) + 1;
  for (long long d = 0; d < decades; ++d) {
    const double dec = std::floor(lo) + static_cast<double>(d);
    for (int k = 1; k <= 9; ++k) {
      const double v = dec + std::log10(static_cast<double>(k));
      if (v >= lo - tolerance(sc) && v <= hi + tolerance(sc)) {
        f(v, k);
      }
    }
  }
  return true;
}

// Calendar ticks of ticmod on a date axis.
void date_ticks(const AxisState& s, const AxisSettings& st, const AxisScale& sc,
                std::vector<TickMark>& out) {
  const long long d0 = static_cast<long long>(std::ceil(std::min(sc.a, sc.e)));
  const long long d1 = static_cast<long long>(std::floor(std::max(sc.a, sc.e)));
  if (d1 - d0 > kMaxAxisTicks) {
    return;
  }
  const int mode = st.tick_mode;
  for (long long n = d0; n <= d1; ++n) {
    int day = 1, month = 1, year = 2000;
    date_of_day(s, n, day, month, year);
    bool on = false;
    bool longer = false;
    switch (mode) {
      case 1: on = true; break;                                         // DAYS
      case 2: on = day == 1; break;                                     // MONT
      case 3: on = day == 1 && (month - 1) % 3 == 0; break;             // QUAR
      case 4: on = day == 1 && (month - 1) % 6 == 0; break;             // HALF
      case 5: on = day == 1 && month == 1; break;                       // YEAR
      default: on = true; longer = day == 1; break;                     // DMON
    }
    if (on) {
      out.push_back({static_cast<double>(n), longer});
    }
  }
}

// Digits of the labels when labdig asked for them to be chosen: as few as show every
// label exactly (of the mantissas for exponent forms), and no point for whole numbers.
int chosen_digits(const AxisScale& sc, bool lg, const std::vector<LabelMark>& marks,
                  bool exponent) {
  auto exact = [](double v, int d) {
    const double m = v * std::pow(10.0, d);
    return std::fabs(m - std::round(m)) <= 1e-9 * (std::max(1.0, std::fabs(m)) + 1.0);
  };
  auto digits_for = [&](double v) {
    for (int d = 0; d <= 12; ++d) {
      if (exact(v, d)) {
        return d;
      }
    }
    return 12;
  };
  int d = 0;
  if (exponent) {
    // Mantissas: as few digits as show them all, at least one.
    for (const LabelMark& m : marks) {
      double x = lg ? std::pow(10.0, m.value) : m.value;
      if (x == 0.0 || !std::isfinite(x)) {
        continue;
      }
      const double e = std::floor(std::log10(std::fabs(x)));
      x /= std::pow(10.0, e);
      d = std::max(d, std::min(digits_for(x), 6));
    }
    return d == 0 ? -1 : d;
  }
  d = std::max(digits_for(sc.first), digits_for(sc.step));
  return d == 0 ? -1 : d;
}

}  // namespace

bool label_marks(const AxisState& s, int ax, std::vector<LabelMark>& out) {
  out.clear();
  const AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
  if (sc.months > 0) {
    int day = 1, month = 1, year = 2000;
    date_of_day(s, static_cast<long long>(sc.first), day, month, year);
    for (int i = 0; i < kMaxAxisLabels; ++i) {
      const double v = static_cast<double>(day_number(s, day, month, year));
      if (!in_range(sc, v)) {
        break;
      }
      out.push_back({v, i});
      month += sc.months;
      year += (month - 1) / 12;
      month = (month - 1) % 12 + 1;
      if (year > 9999) {
        break;
      }
    }
    return true;
  }
  const double span = (sc.e - sc.first) / sc.step;
  if (!(span > -1e-9)) {
    return true;  // the first label lies beyond the end: no labels
  }
  if (span > kMaxAxisLabels) {
    return false;
  }
  const int n = static_cast<int>(std::floor(span + 1e-9)) + 1;
  const double snap = 1e-10 * std::fabs(sc.step);
  for (int i = 0; i < n; ++i) {
    double v = sc.first + i * sc.step;
    if (std::fabs(v) < snap) {
      v = 0.0;
    }
    if (in_range(sc, v)) {
      out.push_back({v, i});
    }
  }
  return true;
}

void tick_marks(const AxisState& s, int ax, std::vector<TickMark>& out) {
  out.clear();
  const AxisSettings& st = s.axis[static_cast<std::size_t>(ax)];
  const AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
  std::vector<LabelMark> labels;
  if (st.ticks == 0 || !label_marks(s, ax, labels)) {
    return;  // graf has reported a step that gives too many labels
  }
  for (const LabelMark& m : labels) {
    out.push_back({m.value, true});
  }
  if (st.kind == kKindDate && st.tick_mode != 0) {
    date_ticks(s, st, sc, out);
    return;
  }
  const double lo = std::min(sc.a, sc.e);
  const double hi = std::max(sc.a, sc.e);
  if (s.log[static_cast<std::size_t>(ax)] &&
      (s.log_ticks_full || (std::fabs(std::fabs(sc.step) - 1.0) < 1e-9 &&
                            std::fabs(sc.first - std::round(sc.first)) < 1e-9))) {
    for_each_decade_tick(sc, [&](double v, int k) {
      out.push_back({v, k == 1 && s.log_ticks_full});
    });
    return;
  }
  if (st.ticks < 2 || sc.months > 0) {
    return;
  }
  const double ts = std::fabs(sc.step) / st.ticks;
  if ((hi - lo) / ts > kMaxAxisTicks) {
    return;  // minor ticks closer than anything can show
  }
  const double j0 = std::ceil((lo - sc.first) / ts - 1e-9);
  const double j1 = std::floor((hi - sc.first) / ts + 1e-9);
  for_each_step(j0, j1, [&](double j) {
    if (std::fmod(std::fabs(j), st.ticks) != 0.0) {
      out.push_back({sc.first + j * ts, false});
    }
  });
}

bool grid_marks(const AxisState& s, int ax, int n, std::vector<double>& out) {
  out.clear();
  const AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
  const double lo = std::min(sc.a, sc.e);
  const double hi = std::max(sc.a, sc.e);
  const bool decades =
      s.log[static_cast<std::size_t>(ax)] && std::fabs(std::fabs(sc.step) - 1.0) < 1e-9 && n > 1;
  if (sc.months > 0 || (n == 1 && !decades)) {
    std::vector<LabelMark> labels;
    label_marks(s, ax, labels);
    for (const LabelMark& m : labels) {
      out.push_back(m.value);
    }
    return true;
  }
  if (decades) {
    for_each_decade_tick(sc, [&](double v, int) { out.push_back(v); });
    return true;
  }
  const double ts = std::fabs(sc.step) / n;
  if ((hi - lo) / ts > kMaxAxisTicks) {
    return false;
  }
  const double j0 = std::ceil((lo - sc.first) / ts - 1e-9);
  const double j1 = std::floor((hi - sc.first) / ts + 1e-9);
  for_each_step(j0, j1, [&](double j) { out.push_back(sc.first + j * ts); });
  return true;
}

AxisLabelText::AxisLabelText(const AxisState& s, int ax, const std::vector<LabelMark>& marks,
                             const LabelChars& chars)
    : s_(s),
      st_(s.axis[static_cast<std::size_t>(ax)]),
      sc_(s.scale[static_cast<std::size_t>(ax)]),
      ax_(ax),
      log_(s.log[static_cast<std::size_t>(ax)]),
      chars_(chars) {
  const bool autoscaled = s.autoscale[static_cast<std::size_t>(ax)];
  per_label_digits_ = log_ && st_.auto_digits && !autoscaled && st_.label_type == kLabFloa &&
                      st_.log_form == kLogPlain;
  // Plain numbers too long or too small to read switch to the exponent form when the
  // digits are chosen automatically.
  if (st_.label_type == kLabFloa && st_.auto_digits && !log_ && !autoscaled) {
    const double big = std::max(std::fabs(sc_.a), std::fabs(sc_.e));
    auto_exponent_ = big >= 1e7 || (big > 0.0 && big < 1e-4);
  }
  digits_ = autoscaled || !st_.auto_digits
                ? st_.digits
                : chosen_digits(sc_, log_, marks, auto_exponent_ || exponent_type(st_.label_type));
}

int AxisLabelText::format(double v, int index, char* buf) const {
  if (v == 0.0 && (auto_exponent_ || (exponent_type(st_.label_type) && !log_))) {
    buf[0] = '0';  // zero needs no exponent
    buf[1] = '\0';
    return 1;
  }
  if (auto_exponent_) {
    return format_exponent(buf, kLabelBuffer, v, digits_, kLabExp, chars_);
  }
  int digits = digits_;
  if (per_label_digits_) {
    // Plain numbers on a log axis: each with the decimals it needs (0.1, 1, 10).
    digits = -1;
    const double x = std::pow(10.0, v);
    for (int d = 0; d <= 12; ++d) {
      const double m = x * std::pow(10.0, d);
      if (std::fabs(m - std::round(m)) <= 1e-9 * std::max(1.0, m)) {
        digits = d == 0 ? -1 : d;
        break;
      }
    }
  }
  LabelRequest r;
  r.axis = ax_;
  r.log_axis = log_;
  r.digits = digits;
  r.index = index;
  r.time_form = sc_.time_form;
  r.date_form = sc_.date_form;
  r.chars = chars_;
  return format_label(s_, st_, r, v, buf, kLabelBuffer);
}

PartColour::PartColour(GlobalBlock& g, int value)
    : g_(g), old_(g.colour.current), set_(value != -1) {
  if (set_) {
    set_colour(g, value);
  }
}

PartColour::~PartColour() {
  if (set_ && g_.colour.current != old_) {
    set_colour(g_, old_);
  }
}

int grid_colour(const GlobalBlock& g) {
  return g.colour.current != g.colour.foreground ? -1 : kGridGrey;
}

}  // namespace zorvel

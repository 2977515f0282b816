// The settings of the axes: ticks, labels, names, titles, colours and the drawn parts,
// and the base date of date labels with its conversions.

#include <algorithm>
#include <array>

#include "api_decl.h"
#include "axes/axis_state.h"
#include "axes/labels.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"

namespace zorvel {
namespace {

// Longest tick, distance and height that the axes accept, in plot units.
constexpr int kMaxLength = 10000;
constexpr int kMaxFrame = 100;

// Calls f(settings) for every axis named in cax (the letters X, Y and Z).
template <class F>
void for_axes(GlobalBlock& g, const char* cax, F&& f) {
  for (const char* c = cax; *c != '\0'; ++c) {
    const char u = static_cast<char>(*c & ~0x20);
    if (u >= 'X' && u <= 'Z') {
      f(g.axes.axis[static_cast<std::size_t>(u - 'X')]);
    }
  }
}

// The chart forms of labels and labdig: "BAR", "PIE", "CON" (and "DAT", "PER").
struct ChartKey {
  Key4 key;
  bool operator==(std::string_view name) const { return std::string_view(key.data(), 3) == name; }
};
ChartKey chart_key(const char* cax) { return {key4(cax)}; }

// A keyword setting of the named axes: index - 1 of copt in list, stored by f.
template <class F>
void axis_keyword(GlobalBlock& g, std::string_view list, const char* copt, const char* cax,
                  F&& f) {
  if (const int i = match_keyword(g, list, copt); i != 0) {
    for_axes(g, cax, [&](AxisSettings& s) { f(s, i - 1); });
  }
}

bool check_length(GlobalBlock& g, int n) { return check_range(g, n, -kMaxLength, kMaxLength); }

}  // namespace

namespace api {

void ticks(GlobalBlock& g, int n, const char* cax) {
  if (check_range(g, n, 0, kMaxTicks)) {
    for_axes(g, cax, [&](AxisSettings& s) { s.ticks = n; });
  }
}

void ticlen(GlobalBlock& g, int nmaj, int nmin) {
  if (check_range(g, nmaj, 0, kMaxLength) && check_range(g, nmin, 0, kMaxLength)) {
    g.axes.tick_major = nmaj;
    g.axes.tick_minor = nmin;
  }
}

void ticmod(GlobalBlock& g, const char* copt, const char* cax) {
  axis_keyword(g, "NONE+DAYS+MONT+QUAR+HALF+YEAR+DMON", copt, cax,
               [](AxisSettings& s, int i) { s.tick_mode = i; });
}

void ticpos(GlobalBlock& g, const char* copt, const char* cax) {
  axis_keyword(g, "LABE+REVE+CENT", copt, cax, [](AxisSettings& s, int i) { s.tick_pos = i; });
}

void logtic(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "AUTO+FULL", copt); i != 0) {
    g.axes.log_ticks_full = i == 2;
  }
}

void labels(GlobalBlock& g, const char* copt, const char* cax) {
  ChartLabelSettings& c = g.axes.chart;
  const ChartKey chart = chart_key(cax);
  if (chart == "BAR") {
    if (const int i = match_keyword(g, "NONE+SECO+FIRS+MAXI+MINI+DELT+POSI", copt); i != 0) {
      c.bar_labels = i - 1;
    }
    return;
  }
  if (chart == "PIE") {
    if (const int i = match_keyword(g, "NONE+PERC+DATA+BOTH", copt); i != 0) {
      c.pie_labels = i - 1;
    }
    return;
  }
  if (chart == "CON") {
    if (const int i = match_keyword(g, "NONE+FLOA+CONL", copt); i != 0) {
      c.contour_labels = i - 1;
    }
    return;
  }
  axis_keyword(g, kLabelKeywords, copt, cax, [](AxisSettings& s, int type) {
    s.label_type = type;
    s.log_form = type == kLabLog || type == kLabClog ? kLogPower
                 : type == kLabElog                  ? kLogExponent
                                                     : kLogPlain;
    s.kind = type >= kLabTime && type <= kLabSeco  ? kKindTime
             : type == kLabDate                    ? kKindDate
             : type >= kLabMap && type <= kLabMapn ? kKindMap
                                                   : kKindOrdinary;
  });
}

void labdig(GlobalBlock& g, int ndig, const char* cax) {
  if (!check_range(g, ndig, -2, 100)) {
    return;
  }
  ChartLabelSettings& c = g.axes.chart;
  const ChartKey chart = chart_key(cax);
  if (chart == "BAR") {
    c.bar_digits = ndig;
  } else if (chart == "CON") {
    c.contour_digits = ndig;
  } else if (chart == "PIE") {
    // Both numbers of a pie's labels; "DAT" and "PER" set one of them.
    c.pie_digits = ndig;
    c.data_digits = ndig;
    c.percent_digits = ndig;
  } else if (chart == "DAT") {
    c.data_digits = ndig;
  } else if (chart == "PER") {
    c.percent_digits = ndig;
  } else {
    for_axes(g, cax, [&](AxisSettings& s) {
      s.digits = ndig;
      s.auto_digits = ndig == -2;
    });
  }
}

void labdis(GlobalBlock& g, int n, const char* cax) {
  if (chart_key(cax) == "BAR") {
    if (check_length(g, n)) {
      g.charts.bars.label_distance = n;
    }
    return;
  }
  if (chart_key(cax) == "CON") {
    if (check_range(g, n, 1, 10000)) {
      g.axes.chart.contour_label_dist = n;
    }
    return;
  }
  if (check_length(g, n)) {
    for_axes(g, cax, [&](AxisSettings& s) { s.label_dist = n; });
  }
}

void labjus(GlobalBlock& g, const char* copt, const char* cax) {
  axis_keyword(g, "AUTO+LEFT+RIGH+OUTW+INWA", copt, cax,
               [](AxisSettings& s, int i) { s.label_just = i; });
}

void labtyp(GlobalBlock& g, const char* copt, const char* cax) {
  axis_keyword(g, "HORI+VERT", copt, cax,
               [](AxisSettings& s, int i) { s.vertical_labels = i == 1; });
}

void labopt(GlobalBlock& g, const char* copt, const char* ckey) {
  const int key = match_keyword(g, "SEPA+LANG", ckey);
  if (key == 1) {
    if (const int i = match_keyword(g, "ON  +OFF ", copt); i != 0) {
      g.axes.hour_separator = i == 1;
    }
  } else if (key == 2) {
    if (const int i = match_keyword(g, "ENGL+GERM+SPAN", copt); i != 0) {
      g.axes.date_language = i - 1;
    }
  }
}

void mylab(GlobalBlock& g, const char* cstr, int itick, const char* cax) {
  if (!check_range(g, itick, 1, kMaxUserLabels)) {
    return;
  }
  // The control codes that stand in for instruction characters in the library's labels
  // are its own; a user's label shows them as blanks.
  std::array<char, kUserLabelSize> text{};
  std::size_t n = 0;
  for (const char* c = cstr; *c != '\0' && n < text.size(); ++c) {
    text[n++] = *c == kRaiseChar || *c == kReturnChar || *c == kCommandChar ? ' ' : *c;
  }
  for_axes(g, cax, [&](AxisSettings& s) {
    s.user_labels[static_cast<std::size_t>(itick - 1)] = std::string_view(text.data(), n);
    s.user_label_count = std::max(s.user_label_count, itick);
  });
}

void name(GlobalBlock& g, const char* cstr, const char* cax) {
  for_axes(g, cax, [&](AxisSettings& s) { s.name = cstr; });
}

void namdis(GlobalBlock& g, int n, const char* cax) {
  if (check_length(g, n)) {
    for_axes(g, cax, [&](AxisSettings& s) { s.name_dist = n; });
  }
}

void namjus(GlobalBlock& g, const char* copt, const char* cax) {
  axis_keyword(g, "CENT+LEFT+RIGH", copt, cax, [](AxisSettings& s, int i) { s.name_just = i; });
}

void hname(GlobalBlock& g, int nh) {
  if (check_range(g, nh, 0, kMaxLength)) {
    g.axes.name_height = nh;
  }
}

void htitle(GlobalBlock& g, int nh) {
  if (check_range(g, nh, 0, kMaxLength)) {
    g.axes.title_height = nh;
  }
}

void titlin(GlobalBlock& g, const char* cstr, int n) {
  if (n == 0 || n < -kTitleLines || n > kTitleLines) {
    warn(g, 2, n);
    return;
  }
  const int line = n < 0 ? -n : n;
  g.axes.titles[static_cast<std::size_t>(line - 1)] = cstr;
  g.axes.title_flags[static_cast<std::size_t>(line - 1)] = n < 0;
}

void titjus(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "CENT+LEFT+RIGH", copt); i != 0) {
    g.axes.title_just = i - 1;
  }
}

void titpos(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "ABOV+BELO", copt); i != 0) {
    g.axes.title_below = i == 2;
  }
}

void axends(GlobalBlock& g, const char* copt, const char* cax) {
  axis_keyword(g, "NONE+NOFI+NOLA+NOEN+ENDS+FIRS+LAST", copt, cax,
               [](AxisSettings& s, int i) { s.ends = i; });
}

void axclrs(GlobalBlock& g, int nclr, const char* copt, const char* cax) {
  if (nclr < -1) {
    warn(g, 2, nclr);
    return;
  }
  axis_keyword(g, "LINE+TICK+LABE+NAME+ALL ", copt, cax, [&](AxisSettings& s, int i) {
    if (i == 4) {
      s.colours.fill(nclr);
    } else {
      s.colours[static_cast<std::size_t>(i)] = nclr;
    }
  });
}

void noline(GlobalBlock& g, const char* cax) {
  for_axes(g, cax, [](AxisSettings& s) { s.line = false; });
}

void frame(GlobalBlock& g, int n) {
  if (check_range(g, n, 0, kMaxFrame)) {
    g.axes.frame = n;
  }
}

void setgrf(GlobalBlock& g, const char* c1, const char* c2, const char* c3, const char* c4) {
  static constexpr std::string_view kParts = "NONE+LINE+TICK+LABE+NAME";
  const char* opts[4] = {c1, c2, c3, c4};
  std::array<int, 4> parts = g.axes.sides;
  for (std::size_t k = 0; k < 4; ++k) {
    if (const int i = match_keyword(g, kParts, opts[k]); i != 0) {
      parts[k] = i - 1;
    }
  }
  g.axes.sides = parts;
}

void basdat(GlobalBlock& g, int iday, int imon, int iyear) {
  if (!check_date(g, iday, imon, iyear) || !check_range(g, iyear, 1, 9999)) {
    return;
  }
  AxisState& s = g.axes;
  s.base_date_set = true;
  s.base_day = iday;
  s.base_month = imon;
  s.base_year = iyear;
  s.base_day_of_year = day_of_year(iday, imon, iyear);
}

int incdat(GlobalBlock& g, int iday, int imon, int iyear) {
  if (!g.axes.base_date_set) {
    warn(g, 252);
    return 0;
  }
  if (!check_date(g, iday, imon, iyear) || !check_range(g, iyear, 1, 9999)) {
    return 0;
  }
  const long long n = day_number(g.axes, iday, imon, iyear);
  return static_cast<int>(std::clamp(n, -2147483647LL, 2147483647LL));
}

void trfdat(GlobalBlock& g, int ndays, int* iday, int* imon, int* iyear) {
  if (!g.axes.base_date_set) {
    warn(g, 252);
    return;
  }
  date_of_day(g.axes, ndays, *iday, *imon, *iyear);
}

}  // namespace api
}  // namespace zorvel

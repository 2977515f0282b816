// Axis labels at the values that roll over (mantissa 10, minute 60, longitude 180, the
// day before midnight), bad inputs, cut buffers; the calendar behind date labels.

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>
#include <vector>

#include "axes/labels.h"

namespace zorvel {
namespace {

constexpr int kX = kAxisX, kY = kAxisY, kZ = kAxisZ;

struct Case {  // v is the index for MYLA
  const char* want;
  int type;
  double v;
  int digits = -1, axis = kX, log = 0, form = kLogPlain, time = -1, date = kDateFull;
};

// The label with ^, _ and { for the raise, return and command characters; user label 0
// is "first".
std::string label(const Case& c, AxisState st = {}, std::size_t size = kLabelBuffer) {
  AxisSettings& s = st.axis[static_cast<std::size_t>(c.axis)];
  s.label_type = c.type;
  s.log_form = c.form;
  s.user_labels[0] = "first";
  s.user_labels[1] = "beyond";
  s.user_label_count = 1;
  const int index = c.type == kLabMyla ? int(c.v) : 0;
  const LabelRequest r{c.axis, c.log != 0, c.digits, index, c.time, c.date};
  std::string buf(size + 1, '#');
  const int n = format_label(st, s, r, c.v, buf.data(), size);
  EXPECT_TRUE(size ? n < int(size) && buf[size_t(n)] == '\0' : n == 0 && buf[0] == '#');
  buf.resize(static_cast<std::size_t>(n));
  for (char& ch : buf) {
    ch = ch == kRaiseChar ? '^' : (ch == kReturnChar ? '_' : (ch == kCommandChar ? '{' : ch));
  }
  return buf;
}

void check(const std::vector<Case>& cases, const AxisState& st = {}) {
  for (const Case& c : cases) {
    EXPECT_EQ(label(c, st), c.want) << c.type << " " << c.v;
  }
}

// clang-format off
TEST(AxisLabels, Numbers) {
  // Halves, "-0", a mantissa left at "10", subnormal exponents, the log forms mixed up.
  check({{"3.", kLabFloa, 2.5, 0}, {"3", kLabFloa, 2.5}, {"0.00", kLabFloa, -0.004, 2},
         {"1.0*10^1_", kLabExp, 9.96, 1}, {"-1.0*10^1_", kLabExp, -9.96, 1},
         {"-1*10^1_", kLabExp, -9.6}, {"2", kLabClog, 2.0, -1, kX, 0, kLogPower},
         {"1.23{D}10^4_", kLabXexp, 12345.0, 2}, {"4.9E-324", kLabFexp, 5e-324, 1},
         {"1.0*10^3_", kLabExp, 3.0, 1, kY, 1}, {"10^2_", kLabLog, 2.0, -1, kX, 1, kLogPower},
         {"2.0", kLabElog, 2.0, 1, kX, 1, kLogExponent}, {"100", kLabFloa, 2.0, -1, kX, 1}});
  // log10 of the largest value below 1000 rounds up to 3: the mantissa must still be 9.99..
  const std::string near = label({"", kLabFexp, std::nextafter(1000.0, 0.0), 17});
  EXPECT_EQ(near.substr(0, 4) + near.substr(near.size() - 2), "9.99E2");
}

TEST(AxisLabels, TimesAndMaps) {
  // Times that do not roll over, angles not brought back, wrong hemispheres and degrees.
  check({{"23:59", kLabTime, -60.0}, {"00:00", kLabTime, 86370.0}, {"02", kLabHour, 5400.0},
         {"01:02:35", kLabTime, 3755.4, -1, kX, 0, 0, kLabSeco},
         {"170^o_ W", kLabMap, 190.0}, {"170^o_ E", kLabMap, -910.0},
         {"80^o_ N", kLabMap, 100.0, -1, kY}, {"0^o_  _", kLabMap, 0.0, -1, kY},
         {"45 E", kLabMapn, 45.0}, {"-45^o_ ", kLabDmap, -45.0},
         {"30^o_ n", kLabLmap, 30.0, -1, kZ}});
}

TEST(AxisLabels, UserLabelsDatesAndSettings) {
  // Indexes past the count, dates off by a day or without a base date, cut buffers,
  // the date language and hour separator of the state.
  check({{"first", kLabMyla, 0}, {"", kLabMyla, 1}, {"", kLabDate, 0.0}, {"", kLabNone, 1.0}});
  AxisState st;
  st.base_date_set = true;
  check({{"1 Jan 2000", kLabDate, 0.0}, {"1 Jan 2001", kLabDate, 366.0},
         {"31 Dec 1999", kLabDate, -0.5}, {"29 Feb 2000", kLabDate, 58.5},
         {"29 Feb", kLabDate, 59, 0, kX, 0, 0, -1, kDateDay},
         {"Feb 2000", kLabDate, 59, 0, kX, 0, 0, -1, kDateMonth},
         {"2000", kLabDate, 59, 0, kX, 0, 0, -1, kDateYear}}, st);
  for (int t = kLabNone; t < kLabMyla; ++t) {  // bad values and long texts stay bounded
    for (double v : {std::nan(""), HUGE_VAL, -1e300, 400.0}) {
      label({"", t, v, 100, kY, 1}, st), label({"", t, v, 100}, st);
    }
  }
  EXPECT_EQ(label({"", kLabMap, 190.0}, {}, 4), "170");
  EXPECT_EQ(label({"", kLabSeco, 3725.0}, {}, 1), "");
  EXPECT_EQ(label({"", kLabFloa, 1.0}, {}, 0), "");
  st.date_language = 1, st.hour_separator = false;
  check({{"1 Mrz 2000", kLabDate, 60.0}, {"010205", kLabSeco, 3725.0}}, st);
}

// clang-format on
TEST(Calendar, DaysAndNames) {
  // Round trip over four centuries: month lengths, leap rules and both clamps.
  AxisState st;
  st.base_day = 15, st.base_month = 3, st.base_year = 1999;
  int d = 0, m = 0, y = 0, pd = 0, pm = 0, py = 0;
  for (long long n = -80000; n <= 80000; ++n, pd = d, pm = m, py = y) {
    ASSERT_TRUE(date_of_day(st, n, d, m, y));
    ASSERT_EQ(day_number(st, d, m, y), n);
    ASSERT_TRUE(d == 1 ? n == -80000 || pd == days_in_month(pm, py) : d == pd + 1 || pd == 0);
  }
  EXPECT_TRUE(!date_of_day(st, LLONG_MAX, d, m, y) && d == 31 && m == 12 && y == 9999);
  EXPECT_TRUE(!date_of_day(st, LLONG_MIN, d, m, y) && d == 1 && m == 1 && y == 1);
  EXPECT_TRUE(!leap_year(1900) && leap_year(2000) && leap_year(2024) && !leap_year(2023));
  EXPECT_EQ(day_of_year(29, 2, 2024) + day_of_year(31, 12, 2023), 60 + 365);
  EXPECT_EQ(weekday(25, 11, 2026), 3);
  using Names = std::vector<std::string_view>;
  EXPECT_EQ(Names({month_name(1, 3, false), month_name(1, 3, true), month_name(2, 12, false),
                   month_name(3, 1, true), weekday_name(2, 3, false), weekday_name(0, 7, true),
                   month_name(0, 13, false), weekday_name(1, 0, true)}),
            Names({"Maerz", "Mrz", "diciembre", "Jan", "miercoles", "Sun", "", ""}));
}

}  // namespace
}  // namespace zorvel

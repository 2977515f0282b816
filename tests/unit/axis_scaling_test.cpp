// Unit tests of the axis system: the checks of graf, the conversions on linear,
// descending, logarithmic and crossed axes, and the choices of automatic scaling.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "api_decl.h"
#include "axes/axis_state.h"
#include "text/text.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

using recording::Plot;

// A plot with the axis system at (300, 1800), 2000 x 1000 plot units.
struct AxisPlot : Plot {
  AxisPlot() {
    text_defaults(g);
    axes_defaults(g);
    api::axspos(g, 300, 1800);
    api::axslen(g, 2000, 1000);
  }
  ~AxisPlot() { g.core.level = 0; }
};

TEST(AxisSystem, ConversionsOnEveryKindOfAxis) {
  // Catches the factor (length - 1), the y direction, descending axes, the logarithm of
  // log axes and the inverse conversions.
  AxisPlot p;
  api::graf(p.g, 0, 10, 0, 2, -1, 1, -1, 0.5);
  EXPECT_EQ(p.g.core.level, 2);
  EXPECT_DOUBLE_EQ(api::xposn(p.g, 0), 300);
  EXPECT_DOUBLE_EQ(api::xposn(p.g, 10), 2299);
  EXPECT_DOUBLE_EQ(api::yposn(p.g, -1), 1800);
  EXPECT_DOUBLE_EQ(api::yposn(p.g, 1), 801);
  EXPECT_EQ(api::nxposn(p.g, 5), 1300);  // 1299.5 rounds up
  EXPECT_NEAR(api::xinvrs(p.g, api::nxposn(p.g, 7.3)), 7.3, 0.01);
  EXPECT_NEAR(api::yinvrs(p.g, api::nyposn(p.g, 0.25)), 0.25, 0.002);
  api::endgrf(p.g);
  EXPECT_EQ(p.g.core.level, 1);

  api::graf(p.g, 10, 0, 10, -2, 0, 1, 0, 0.5);  // descending X
  EXPECT_DOUBLE_EQ(api::xposn(p.g, 10), 300);
  EXPECT_DOUBLE_EQ(api::xposn(p.g, 0), 2299);
  api::endgrf(p.g);

  api::axsscl(p.g, "LOG", "X");
  api::graf(p.g, -1, 3, -1, 1, 0, 1, 0, 0.5);
  EXPECT_DOUBLE_EQ(api::xposn(p.g, 0.1), 300);
  EXPECT_NEAR(api::xposn(p.g, 1000), 2299, 1e-9);
  EXPECT_TRUE(std::isnan(api::xposn(p.g, -5)));
  EXPECT_NEAR(api::xinvrs(p.g, 2299), 1000, 1e-9);
  EXPECT_EQ(p.text(), "");
}

TEST(AxisSystem, ChecksOfGraf) {
  // Fatal checks leave level 1 and draw nothing; the others warn and draw.
  AxisPlot p;
  struct Case {
    double v[8];
    int level;
    const char* warning;
  };
  const double nan = std::nan("");
  const double inf = HUGE_VAL;
  for (const Case& c : {
           Case{{0, 0, 0, 1, 0, 1, 0, 1}, 1, "Begin and end of scaling are equal"},
           Case{{0, 1, 0, 0, 0, 1, 0, 1}, 1, "Step equal zero"},
           Case{{0, 1, 0, 1, 0, 1e-300, 0, 1e-301}, 1, "Begin and end of scaling are equal"},
           Case{{-1e308, 1e308, 0, 1e307, 0, 1, 0, 1}, 1, "Begin and end of scaling are equal"},
           Case{{0, nan, 0, 1, 0, 1, 0, 1}, 1, "Incorrect parameter"},
           Case{{0, 1, 0, 1, 0, 1, 0, inf}, 1, "Incorrect parameter"},
           Case{{0, 1, 2, 0.5, 0, 1, 0, 1}, 2, "Startlabel out of scaling"},
           Case{{10, 0, 10, 2, 0, 1, 0, 1}, 2, "Incorrect sign for step"},
       }) {
    const std::size_t before = p.text().size();
    const std::size_t points = p.rec->points.size();
    api::graf(p.g, c.v[0], c.v[1], c.v[2], c.v[3], c.v[4], c.v[5], c.v[6], c.v[7]);
    EXPECT_EQ(p.g.core.level, c.level) << c.warning;
    EXPECT_NE(p.text().find(c.warning, before), std::string::npos) << p.text();
    end_polyline(p.g);
    EXPECT_EQ(p.rec->points.size() > points, c.level == 2) << c.warning;
    if (p.g.core.level == 2) {
      api::endgrf(p.g);
    }
  }
  // Crossed systems: linear scaling and an origin inside both ranges.
  api::axstyp(p.g, "CROS");
  api::graf(p.g, 1, 10, 1, 1, -1, 1, -1, 1);
  EXPECT_NE(p.text().find("No origin found for crossed axis system"), std::string::npos);
  EXPECT_EQ(p.g.core.level, 1);
  api::axsscl(p.g, "LOG", "Y");
  api::graf(p.g, -1, 1, -1, 1, -1, 1, -1, 1);
  EXPECT_NE(p.text().find("Crossed axis systems must have linear scaling"), std::string::npos);
  api::axsscl(p.g, "LIN", "Y");
  api::graf(p.g, -2, 8, -2, 2, -1, 1, -1, 1);
  ASSERT_EQ(p.g.core.level, 2);
  EXPECT_EQ(p.g.axes.org_x, api::nxposn(p.g, 0));
  EXPECT_EQ(p.g.axes.org_y, api::nyposn(p.g, 0));
}

TEST(AxisSystem, StepsTooSmallAreRefused) {
  // A step that would give millions of labels and ticks: warning 251, the axes without
  // them, and no run for minutes.
  AxisPlot p;
  api::graf(p.g, 0, 1e6, 0, 1e-3, 0, 1, 0, 1e-9);
  EXPECT_EQ(p.g.core.level, 2);
  EXPECT_NE(p.text().find("Step too small"), std::string::npos);
  end_polyline(p.g);
  EXPECT_LT(p.rec->points.size(), 2000U);
}

// The scaling record of axis ax after setscl over [lo, hi] and graf.
AxisScale autoscaled(AxisPlot& p, int ax, double lo, double hi) {
  const double data[2] = {lo, hi};
  api::setscl(p.g, data, 2, ax == kAxisX ? "X" : "Y");
  api::graf(p.g, 0, 1, 0, 1, 0, 1, 0, 1);
  const AxisScale s = p.g.axes.scale[static_cast<std::size_t>(ax)];
  if (p.g.core.level == 2) {
    api::endgrf(p.g);
  }
  return s;
}

TEST(AutomaticScaling, NumbersTimesAndDates) {
  AxisPlot p;
  // 0..1 on an X axis of 2000: the step by the width of the labels, one decimal.
  AxisScale s = autoscaled(p, kAxisX, 0, 1);
  EXPECT_TRUE(s.step == 0.2 || s.step == 0.1) << s.step;
  EXPECT_EQ(p.g.axes.axis[kAxisX].digits, 1);
  EXPECT_EQ(s.a, 0);
  EXPECT_EQ(s.e, 1);
  // The first label is the first multiple of the step above the start.
  s = autoscaled(p, kAxisY, -0.37, 0.93);
  EXPECT_NEAR(s.first, -0.2, 1e-12);
  // Constant data is widened by one on both sides.
  s = autoscaled(p, kAxisY, 5, 5);
  EXPECT_EQ(s.a, 4);
  EXPECT_EQ(s.e, 6);
  EXPECT_NE(p.text().find("Minimum equal maximum"), std::string::npos);
  // Log axes: exponents, non-positive limits replaced.
  api::axsscl(p.g, "LOG", "Y");
  s = autoscaled(p, kAxisY, -3, 100);
  EXPECT_EQ(s.a, -1);
  EXPECT_EQ(s.e, 2);
  EXPECT_NE(p.text().find("Non positive minimum for log scaling"), std::string::npos);
  api::axsscl(p.g, "LIN", "Y");

  // Time axes: the step in seconds from the range, and the form of the labels.
  api::labels(p.g, "TIME", "X");
  struct TimeCase {
    double lo, hi, step, first;
    int form;
  };
  for (const TimeCase& c : {
           TimeCase{0, 50, 10, 0, kLabSeco},
           TimeCase{0, 3 * 3600, 1800, 0, kLabTime},
           TimeCase{0, 10 * 3600, 7200, 0, kLabTime},
           TimeCase{0, 20 * 3600, 14400, 0, kLabTime},
           TimeCase{0, 50 * 3600, 43200, 0, kLabTime},  // 600 minutes stretched to 720
           TimeCase{-90, 0, 20, -60, kLabSeco},         // the first multiple is skipped
       }) {
    s = autoscaled(p, kAxisX, c.lo, c.hi);
    EXPECT_EQ(s.step, c.step) << c.hi;
    EXPECT_EQ(s.first, c.first) << c.hi;
    EXPECT_EQ(s.time_form, c.form) << c.hi;
  }
  // Date axes: days, then months from the first day of a month beginning a period.
  api::basdat(p.g, 1, 1, 2024);
  api::labels(p.g, "DATE", "X");
  s = autoscaled(p, kAxisX, 0.4, 3.2);
  EXPECT_EQ(s.step, 1);
  EXPECT_EQ(s.months, 0);
  s = autoscaled(p, kAxisX, 10, 110);  // 11 Jan .. 20 Apr: monthly from 1 Feb
  EXPECT_EQ(s.months, 1);
  EXPECT_EQ(s.first, 31);
  s = autoscaled(p, kAxisX, 10, 410);  // quarterly from 1 Apr
  EXPECT_EQ(s.months, 3);
  EXPECT_EQ(s.first, 91);
}

}  // namespace
}  // namespace zorvel

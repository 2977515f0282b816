// Unit tests of bar graphs and statistics: the rectangles that bars hands to the driver on
// descending and logarithmic axes, in groups and lying down; bad input that must be warned
// without losing the rest; histog and boxplt against values computed with numpy.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "api_decl.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

// An axis system of 1001 x 1001 plot units with its lower left corner at (100, 1100), so
// that one user unit of a 0..10 axis is 100 plot units.
struct BarPlot : recording::Plot {
  BarPlot() {
    text_defaults(g);
    axes_defaults(g);
    curve_defaults(g);
    api::frame(g, 0);
    api::setgrf(g, "NONE", "NONE", "NONE", "NONE");
    api::axspos(g, 100, 1100);
    api::axslen(g, 1001, 1001);
  }
  ~BarPlot() { g.core.level = 0; }
  void graf(double xa, double xe, double xor_, double xs, double ya, double ye, double yor,
            double ys) {
    if (g.core.level == 2) {
      api::endgrf(g);
    }
    api::graf(g, xa, xe, xor_, xs, ya, ye, yor, ys);
    end_polyline(g);
    rec->fills.clear();
  }
  // The bounding boxes of the fills so far: "x0..x1 x y0..y1", one per fill.
  std::vector<std::string> boxes() {
    std::vector<std::string> out;
    for (const recording::Filled& f : rec->fills) {
      const auto [x0, x1] = std::minmax_element(f.xs.begin(), f.xs.end());
      const auto [y0, y1] = std::minmax_element(f.ys.begin(), f.ys.end());
      char buf[96];
      std::snprintf(buf, sizeof buf, "%.2f..%.2f x %.2f..%.2f", *x0, *x1, *y0, *y1);
      out.emplace_back(buf);
    }
    rec->fills.clear();
    return out;
  }
};

using Boxes = std::vector<std::string>;

TEST(Bars, RectanglesOnAnyAxisAndInGroups) {
  BarPlot p;
  const double zero[3] = {0, 0, 0};

  // Ascending axes: 0.75 of the smallest gap (100 units) wide, from y1 to y2.
  p.graf(0, 10, 0, 1, 0, 10, 0, 1);
  const double x[3] = {1, 2, 4};
  const double top[3] = {2, 5, 3};
  api::bars(p.g, x, zero, top, 3);
  EXPECT_EQ(p.boxes(), (Boxes{"162.50..237.50 x 900.00..1100.00", "262.50..337.50 x 600.00..1100.00",
                              "462.50..537.50 x 800.00..1100.00"}));

  // A descending Y axis: the bar hangs from 0 at the top. One bar: 0.75 of a label step.
  p.graf(0, 10, 0, 1, 10, 0, 10, -1);
  api::bars(p.g, x, zero, top, 1);
  EXPECT_EQ(p.boxes(), (Boxes{"162.50..237.50 x 100.00..300.00"}));

  // A log Y axis of 1 to 1000: a bar from 0 starts at the axis' lower end.
  api::axsscl(p.g, "LOG", "Y");
  p.graf(0, 10, 0, 1, 0, 3, 0, 1);
  const double lo[2] = {0, 10};
  const double hi[2] = {100, 1000};
  api::bars(p.g, x, lo, hi, 2);
  EXPECT_EQ(p.boxes(), (Boxes{"162.50..237.50 x 433.33..1100.00", "262.50..337.50 x 100.00..766.67"}));
  api::axsscl(p.g, "LIN", "Y");

  // A group of two on a descending X axis: the first call stands on the side of the
  // smaller values, here the right; both share the width of 150 units. Bars are drawn
  // from left to right (the order that 3D bars need).
  p.graf(10, 0, 10, -1, 0, 10, 0, 1);
  const double gx[2] = {2, 4};
  api::bargrp(p.g, 2, 0.0);
  api::bars(p.g, gx, zero, top, 2);
  api::bars(p.g, gx, zero, top, 2);
  EXPECT_EQ(p.boxes(), (Boxes{"700.00..775.00 x 600.00..1100.00", "900.00..975.00 x 900.00..1100.00",
                              "625.00..700.00 x 600.00..1100.00", "825.00..900.00 x 900.00..1100.00"}));
  // Afterwards bars stand alone again.
  api::bars(p.g, gx, zero, top, 1);
  EXPECT_EQ(p.boxes(), (Boxes{"862.50..937.50 x 900.00..1100.00"}));
  // A group left incomplete is reported when the axis system ends.
  api::bargrp(p.g, 3, 0.0);
  api::bars(p.g, gx, zero, top, 2);
  EXPECT_EQ(p.text().find("Incomplete bar group"), std::string::npos);
  api::endgrf(p.g);
  EXPECT_NE(p.text().find("Warning 263: Incomplete bar group in test!   ( 1)"), std::string::npos)
      << p.text();

  // Horizontal bars: positions on the Y axis, values along X.
  api::bartyp(p.g, "HORI");
  p.graf(0, 10, 0, 1, 0, 10, 0, 1);
  api::bars(p.g, x, zero, top, 1);
  EXPECT_EQ(p.boxes(), (Boxes{"100.00..300.00 x 962.50..1037.50"}));
}

TEST(Bars, BadInputIsWarnedAndNothingIsLost) {
  BarPlot p;
  p.graf(0, 10, 0, 1, 0, 10, 0, 1);
  const double nan = std::nan("");
  const double x[3] = {1, nan, 3};
  const double y1[3] = {0, 0, 0};
  const double y2[3] = {1, 2, nan};

  // No bars, then bars that are not numbers: skipped and counted, the others drawn.
  api::bars(p.g, x, y1, y2, 0);
  const int nans = p.g.core.nans;
  api::bars(p.g, x, y1, y2, 3);
  EXPECT_EQ(p.g.core.nans - nans, 2);
  // The gap of the bars that can be placed sets the width: 1 and 3 are 200 units apart.
  EXPECT_EQ(p.boxes(), (Boxes{"125.00..275.00 x 1000.00..1100.00"}));

  // Widths of zero, not a number, too large or beyond the relative bound change nothing.
  const int warned = p.g.msg.warnings;
  api::barwth(p.g, 0.0);
  api::barwth(p.g, nan);
  api::barwth(p.g, 1e300);
  api::barwth(p.g, -100.0);
  api::bargrp(p.g, 0, 0.0);
  api::bargrp(p.g, 2, -20.0);
  api::baropt(p.g, -1.0, 45.0);
  api::barclr(p.g, -2, -1, -1);
  EXPECT_EQ(p.g.msg.warnings - warned, 8);
  api::bars(p.g, x, y1, y2, 1);
  EXPECT_EQ(p.boxes(), (Boxes{"162.50..237.50 x 1000.00..1100.00"}));

  // Gaps that leave no room in the group: warned, the bars stand side by side.
  api::bargrp(p.g, 2, 5.0);
  api::bars(p.g, x, y1, y2, 1);
  EXPECT_EQ(p.g.msg.warnings - warned, 9);
  EXPECT_EQ(p.boxes(), (Boxes{"162.50..200.00 x 1000.00..1100.00"}));
  api::bars(p.g, x, y1, y2, 1);
  p.boxes();

  // Named categories: three bars for eleven labels are warned about and all drawn.
  api::labels(p.g, "MYLA", "X");
  p.graf(0, 10, 0, 1, 0, 10, 0, 1);
  const double cx[3] = {1, 2, 3};
  const double cy[3] = {1, 1, 1};
  api::bars(p.g, cx, y1, cy, 3);
  EXPECT_NE(p.text().find("Warning 28: Number of bars unequal number of main ticks"),
            std::string::npos);
  EXPECT_EQ(p.boxes().size(), 3U);

  // Every call is one legend entry: a box filled in the bars' colour.
  api::barclr(p.g, 2, -1, -1);
  const int first = p.g.curves.curves;
  api::bars(p.g, cx, y1, cy, 3);
  const CurveRecord& r = p.g.curves.records[static_cast<std::size_t>(first)];
  EXPECT_EQ(r.pattern, kSolidPattern);
  EXPECT_FALSE(r.line);
  EXPECT_EQ(r.colour, 2);
}

TEST(Statistics, HistogramAsNumpy) {
  Captured c;
  const double nan = std::nan("");
  // Values on the edges, the end of the range, beside it and outside, numbers and not.
  const double x[15] = {0, 0.1, 0.2, 0.3, 0.7, 1.0, 1.0, -0.5, 1.5, nan, HUGE_VAL,
                        0.30000000000000004, 0.6, 0.9999999999999999, 0.7000000000000001};
  double xb[10];
  double yb[10];
  // numpy.histogram(x, bins=10, range=(0, 1)), with and without density=True.
  api::histog(c.g, x, 15, 0.0, 1.0, 10, "COUN", xb, yb);
  const double counts[10] = {1, 1, 2, 1, 0, 1, 1, 1, 0, 3};
  const double centres[10] = {0.05, 0.15000000000000002, 0.25, 0.35000000000000003, 0.45,
                              0.55, 0.6500000000000001, 0.75, 0.8500000000000001, 0.95};
  for (int k = 0; k < 10; ++k) {
    EXPECT_EQ(yb[k], counts[k]) << k;
    EXPECT_EQ(xb[k], centres[k]) << k;
  }
  EXPECT_NE(c.text().find("Warning 262: Values outside the histogram range in test!   ( 3)"),
            std::string::npos)
      << c.text();
  api::histog(c.g, x, 15, 0.0, 1.0, 10, "DENS", xb, yb);
  const double density[10] = {0.9090909090909091, 0.9090909090909091, 1.8181818181818175,
                              0.9090909090909093, 0.0, 0.9090909090909083, 0.9090909090909093,
                              0.9090909090909093, 0.0, 2.727272727272728};
  for (int k = 0; k < 10; ++k) {
    EXPECT_EQ(yb[k], density[k]) << k;
  }
  api::histog(c.g, x, 15, 0.0, 1.0, 10, "CUMU", xb, yb);
  EXPECT_EQ(yb[9], 11.0);
  EXPECT_EQ(yb[3], 5.0);

  // Bad input: warned, the arrays untouched.
  const int warnings = c.g.msg.warnings;
  yb[0] = -1.0;
  api::histog(c.g, x, 0, 0.0, 1.0, 10, "COUN", xb, yb);
  api::histog(c.g, x, 15, 0.0, 1.0, 0, "COUN", xb, yb);
  api::histog(c.g, x, 15, 1.0, 1.0, 10, "COUN", xb, yb);
  api::histog(c.g, x, 15, 0.0, nan, 10, "COUN", xb, yb);
  api::histog(c.g, x, 15, 0.0, 1.0, 10, "MEAN", xb, yb);
  EXPECT_EQ(c.g.msg.warnings - warnings, 5);
  EXPECT_EQ(yb[0], -1.0);
}

TEST(Statistics, BoxPlotAsNumpy) {
  BarPlot p;
  // y from -20 to 40: one user unit is 1000 / 60 plot units.
  p.graf(0, 10, 0, 1, -20, 40, -20, 10);
  const auto page = [](double y) { return 1100.0 - (y + 20.0) * 1000.0 / 60.0; };
  // numpy.percentile of the numbers: 2.5, 5, 7.5; whiskers within 1.5 IQR reach 1 and 9,
  // 30 and -12 are outliers; the NaN is counted and left out.
  const double s[12] = {7, 1, 2, 30, 3, 4, 5, 6, 8, 9, -12, std::nan("")};
  const int nans = p.g.core.nans;
  p.rec->points.clear();
  api::boxplt(p.g, s, 12, 5.0);
  EXPECT_EQ(p.g.core.nans - nans, 1);
  ASSERT_EQ(p.rec->fills.size(), 1U);
  const recording::Filled& box = p.rec->fills[0];
  const auto [y0, y1] = std::minmax_element(box.ys.begin(), box.ys.end());
  const auto [x0, x1] = std::minmax_element(box.xs.begin(), box.xs.end());
  EXPECT_NEAR(*y0, page(7.5), 1e-9);
  EXPECT_NEAR(*y1, page(2.5), 1e-9);
  EXPECT_NEAR(*x0, 562.5, 1e-9);
  EXPECT_NEAR(*x1, 637.5, 1e-9);
  // The whiskers, the caps and the median as lines of their own.
  const auto has_line = [&](double ax, double ay, double bx, double by) {
    for (const auto& line : p.polylines()) {
      if (line.size() == 2 && std::fabs(line[0].x - ax) < 1e-6 && std::fabs(line[0].y - ay) < 1e-6 &&
          std::fabs(line[1].x - bx) < 1e-6 && std::fabs(line[1].y - by) < 1e-6) {
        return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(has_line(600, page(2.5), 600, page(1)));
  EXPECT_TRUE(has_line(600, page(7.5), 600, page(9)));
  EXPECT_TRUE(has_line(581.25, page(9), 618.75, page(9)));
  EXPECT_TRUE(has_line(562.5, page(5), 637.5, page(5)));
  // The outliers' symbols (circles of 24 units) and nothing beyond them.
  double top = HUGE_VAL, bottom = -HUGE_VAL;
  for (const recording::Sent& q : p.rec->points) {
    top = std::min(top, q.y);
    bottom = std::max(bottom, q.y);
  }
  EXPECT_NEAR(top, page(30) - 12, 1.0);
  EXPECT_NEAR(bottom, page(-12) + 12, 1.0);
}

}  // namespace
}  // namespace zorvel

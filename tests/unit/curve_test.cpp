// Unit tests of curve: lines break at points that are not numbers, the colour cycle
// respects the program's own colour, and each curve records what its legend shows.

#include <gtest/gtest.h>

#include <cmath>

#include "api_decl.h"
#include "text/text.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

struct CurvePlot : recording::Plot {
  CurvePlot() {
    text_defaults(g);
    axes_defaults(g);
    curve_defaults(g);
    api::frame(g, 0);
    api::setgrf(g, "NONE", "NONE", "NONE", "NONE");
    api::axspos(g, 100, 1100);
    api::axslen(g, 1001, 1001);
    api::graf(g, 0, 10, 0, 1, 0, 10, 0, 1);
    end_polyline(g);
    rec->points.clear();
  }
  ~CurvePlot() { g.core.level = 0; }
};

TEST(Curve, LinesBreakAtPointsThatAreNotNumbers) {
  CurvePlot p;
  const double nan = std::nan("");
  const double x[6] = {1, 2, nan, 4, 5, 6};
  const double y[6] = {1, 2, 3, 4, 5, HUGE_VAL};
  api::curve(p.g, x, y, 6);
  // Two pieces (1-2 and 4-5): never a line across a gap.
  const auto lines = p.polylines();
  ASSERT_EQ(lines.size(), 2U) << p.traced();
  EXPECT_EQ(lines[0].size(), 2U);
  EXPECT_EQ(lines[1].size(), 2U);
  EXPECT_DOUBLE_EQ(lines[0][0].x, 200);
  EXPECT_DOUBLE_EQ(lines[0][1].y, 900);
  // The same for log axes, where non-positive values cannot be placed.
  api::endgrf(p.g);
  api::axsscl(p.g, "LOG", "Y");
  api::graf(p.g, 0, 10, 0, 1, 0, 1, 0, 1);
  end_polyline(p.g);
  p.rec->points.clear();
  const double lx[5] = {1, 2, 3, 4, 5};
  const double ly[5] = {1, 2, -1, 5, 10};
  api::curve(p.g, lx, ly, 5);
  EXPECT_EQ(p.polylines().size(), 2U) << p.traced();
  // Points out of the scaling are reported (and clipped), never dropped silently.
  EXPECT_NE(p.text().find("(  3.0000e+00 / -1.0000e+00) out of axis scaling"),
            std::string::npos);
}

TEST(Curve, ColourCycleAndRecords) {
  CurvePlot p;
  const double x[2] = {1, 2};
  const double y[2] = {1, 2};
  const int fore = p.g.colour.current;
  api::curve(p.g, x, y, 2);
  api::curve(p.g, x, y, 2);
  api::color(p.g, "RED");
  const int red = p.g.colour.current;
  api::lintyp(p.g, 2);
  api::marker(p.g, 3);
  api::incmrk(p.g, -1);
  api::curve(p.g, x, y, 2);
  ASSERT_EQ(p.g.curves.curves, 3);
  const auto& r = p.g.curves.records;
  EXPECT_NE(r[0].colour, r[1].colour);  // two colours of the cycle ...
  EXPECT_NE(r[0].colour, fore);
  EXPECT_EQ(p.g.colour.current, red);   // ... and the program's own colour after them
  EXPECT_EQ(r[2].colour, red);
  EXPECT_GT(r[2].dash_count, 1);
  EXPECT_EQ(r[2].symbol, 3);
  EXPECT_FALSE(r[2].line);
  // One point is drawn only as a symbol.
  api::incmrk(p.g, 0);
  api::curve(p.g, x, y, 1);
  EXPECT_NE(p.text().find("Incorrect parameter"), std::string::npos);
}

}  // namespace
}  // namespace zorvel

// Symbols: their size and place at several heights, filled shapes, solid lines under a
// dash pattern, numbers that are not defined, and the checks of mysymb.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "api_decl.h"
#include "axes/symbols.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

using recording::Plot;

// Bounding box of everything drawn, and the number of points.
struct Box {
  double x0 = 1e9, y0 = 1e9, x1 = -1e9, y1 = -1e9;
  int points = 0;
};
Box box_of(Plot& p) {
  Box b;
  for (const auto& line : p.polylines()) {
    for (const auto& s : line) {
      b = {std::min(b.x0, s.x), std::min(b.y0, s.y), std::max(b.x1, s.x), std::max(b.y1, s.y),
           b.points + 1};
    }
  }
  return b;
}

TEST(Symbols, SquareCircleAndTriangleSpanTheHeightAroundThePoint) {
  // Catches a shape sized by its radius instead of its height, one off centre (a
  // triangle centred on its centroid), a y axis turned over, and circles too coarse
  // to look round when large or with a fixed number of corners.
  for (const int h : {8, 24, 500, 1500}) {
    int corners = 0;
    for (const int n : {0, 1, 2, 12, 13, 14}) {
      Plot p;
      draw_symbol(p.g, n, 1000.0, 1000.0, h);
      const Box b = box_of(p);
      EXPECT_NEAR(b.x1 - b.x0, h, 1.0) << n << " at " << h;
      EXPECT_NEAR(b.y1 - b.y0, h, 1.0) << n << " at " << h;
      EXPECT_NEAR((b.x0 + b.x1) / 2.0, 1000.0, 0.5) << n << " at " << h;
      EXPECT_NEAR((b.y0 + b.y1) / 2.0, 1000.0, 0.5) << n << " at " << h;
      if (n == 1) {
        corners = b.points;
      }
    }
    EXPECT_GE(corners, h < 50 ? 12 : 100) << h;
    EXPECT_LE(corners, 260) << h;
  }
  // The apex up (towards smaller page y); the line starts and ends amid an edge.
  Plot up;
  draw_symbol(up.g, 2, 100.0, 100.0, 10);
  EXPECT_EQ(up.traced(), "102.5,100 100,95 95,105 105,105 102.5,100");
}

TEST(Symbols, FilledShapesAreOneFillAndTheirOutline) {
  // Catches filled symbols without their outline (they would look lighter than the
  // open ones) or drawn as several fills, and open ones that fill.
  Plot p;
  draw_symbol(p.g, 5, 100.0, 100.0, 40);
  EXPECT_TRUE(p.rec->fills.empty());
  EXPECT_EQ(p.polylines().size(), 1U);
  for (const int n : {11, 12, 13, 14, 15, 16, 17, 18, 19}) {
    p.rec->fills.clear();
    p.rec->points.clear();
    draw_symbol(p.g, n, 100.0, 100.0, 40);
    ASSERT_EQ(p.rec->fills.size(), 1U) << n;
    EXPECT_EQ(p.polylines().size(), 1U) << n;
  }
}

TEST(Symbols, SolidUnderADashPatternWhichThenContinues) {
  // Catches symbols drawn dashed, and a pattern (or its phase) lost after a symbol.
  Plot p;
  api::lintyp(p.g, 2);
  move_to(p.g, 0.0, 0.0);
  draw_to(p.g, 15.0, 0.0);  // half-way into the first blank
  const double remainder = p.g.pipe.dash_remainder;
  const int index = p.g.pipe.dash_index;
  p.polylines();
  p.rec->points.clear();
  draw_symbol(p.g, 0, 500.0, 500.0, 100);
  EXPECT_EQ(p.polylines().size(), 1U);
  EXPECT_EQ(p.g.pipe.dash_count, 2);
  EXPECT_EQ(p.g.pipe.dash_remainder, remainder);
  EXPECT_EQ(p.g.pipe.dash_index, index);
}

TEST(Symbols, UndefinedNumbersAndBadDefinitions) {
  // Catches an undefined or out-of-range number that draws, or that marker stores;
  // mysymb definitions with bad counts, numbers, flags or coordinates that are kept;
  // and a user symbol not scaled by the height with y up.
  Plot p;
  for (const int n : {-1, 24, 99, 100, std::numeric_limits<int>::min()}) {
    draw_symbol(p.g, n, 100.0, 100.0, 24);
  }
  EXPECT_TRUE(p.polylines().empty());
  api::marker(p.g, 30);
  api::symbol(p.g, 30, 100, 100);
  EXPECT_EQ(p.g.curves.symbol, -1);
  const double xs[3] = {-0.5, 0.5, 0.0};
  const double ys[3] = {-0.5, -0.5, 1.0};
  const double bad[3] = {0.0, std::nan(""), 0.0};
  api::mysymb(p.g, xs, ys, 2, 30, 0);
  api::mysymb(p.g, xs, ys, 3, 23, 0);
  api::mysymb(p.g, xs, ys, 3, 30, 2);
  api::mysymb(p.g, xs, bad, 3, 30, 0);
  EXPECT_FALSE(symbol_defined(p.g, 30));
  EXPECT_EQ(p.g.msg.warnings, 6);
  EXPECT_NE(p.text().find("Warning 2: Incorrect parameter"), std::string::npos);

  api::mysymb(p.g, xs, ys, 3, 30, 1);
  api::marker(p.g, 30);
  EXPECT_EQ(p.g.curves.symbol, 30);
  api::hsymbl(p.g, 40);
  api::symbol(p.g, 30, 100, 100);
  ASSERT_EQ(p.rec->fills.size(), 1U);
  const Box b = box_of(p);
  EXPECT_EQ(b.x0, 80.0);
  EXPECT_EQ(b.x1, 120.0);
  EXPECT_EQ(b.y0, 60.0);  // y = 1 lies above the centre
  EXPECT_EQ(b.y1, 120.0);
}

}  // namespace
}  // namespace zorvel

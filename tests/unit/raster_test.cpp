// The raster page's scan conversion: exact coverage, the pixel-centre rule without
// anti-aliasing, fill rules, unions of strokes, and coordinates no page could hold.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "raster/raster_page.h"
#include "raster/stroke.h"

namespace zorvel {
namespace {

constexpr Rgb kWhite{255, 255, 255, 255};
constexpr Rgb kBlack{0, 0, 0, 255};

int red(const RasterPage& p, int x, int y) { return p.row(y)[3 * x]; }

int count_below(const RasterPage& p, int level) {
  int n = 0;
  for (int j = 0; j < p.height(); ++j) {
    for (int i = 0; i < p.width(); ++i) {
      n += red(p, i, j) < level ? 1 : 0;
    }
  }
  return n;
}

void rect(RasterPage& p, double x0, double y0, double x1, double y1) {
  const double xs[4] = {x0, x1, x1, x0};
  const double ys[4] = {y0, y0, y1, y1};
  p.polygon(xs, ys, 4);
}

TEST(RasterPage, CoverageIsTheExactAreaBlendedInLinearLight) {
  RasterPage p;
  ASSERT_TRUE(p.allocate(40, 30, kWhite));
  p.set_antialias(true);
  p.set_colour(kBlack);
  rect(p, 10.25, 10.0, 20.75, 20.0);  // a quarter of pixels 10 and 21 covered
  p.paint(FillRule::NonZero);
  EXPECT_EQ(red(p, 9, 15), 255);
  EXPECT_EQ(red(p, 10, 15), 225);  // 75 % white in linear light
  EXPECT_EQ(red(p, 11, 15), 0);
  EXPECT_EQ(red(p, 20, 15), 0);
  EXPECT_EQ(red(p, 21, 15), 225);
  EXPECT_EQ(red(p, 22, 15), 255);
  // Half a pixel of a diagonal edge: its neighbours split the coverage evenly.
  RasterPage q;
  ASSERT_TRUE(q.allocate(8, 8, kWhite));
  q.set_antialias(true);
  q.set_colour(kBlack);
  const double xs[3] = {-0.5, 7.5, -0.5};
  const double ys[3] = {-0.5, 7.5, 7.5};
  q.polygon(xs, ys, 3);
  q.paint(FillRule::NonZero);
  for (int i = 0; i < 8; ++i) {
    EXPECT_NEAR(red(q, i, i), 188, 1);  // 50 % in linear light
  }
}

TEST(RasterPage, WithoutAntiAliasingAbuttingAreasShareNoPixel) {
  RasterPage p;
  ASSERT_TRUE(p.allocate(30, 30, kWhite));
  p.set_colour({0, 0, 0, 128});  // a pixel painted twice would come out darker
  rect(p, 0, 0, 10, 10);
  p.paint(FillRule::NonZero);
  rect(p, 10, 0, 20, 10);
  p.paint(FillRule::NonZero);
  rect(p, 0, 10, 20, 17);
  p.paint(FillRule::NonZero);
  int painted = 0;
  for (int j = 0; j < 30; ++j) {
    for (int i = 0; i < 30; ++i) {
      const int v = red(p, i, j);
      EXPECT_TRUE(v == 255 || v == red(p, 5, 5)) << i << "," << j;
      painted += v != 255 ? 1 : 0;
    }
  }
  EXPECT_EQ(painted, 20 * 17);  // no gap, no overlap
}

TEST(RasterPage, FillRulesDecideAboutInnerContours) {
  for (const FillRule rule : {FillRule::NonZero, FillRule::EvenOdd}) {
    for (const bool aa : {false, true}) {
      RasterPage p;
      ASSERT_TRUE(p.allocate(20, 20, kWhite));
      p.set_antialias(aa);
      p.set_colour(kBlack);
      rect(p, 1, 1, 18, 18);
      rect(p, 6, 6, 12, 12);  // same direction: a hole only by the even-odd rule
      p.paint(rule);
      EXPECT_EQ(red(p, 9, 9), rule == FillRule::EvenOdd ? 255 : 0);
      EXPECT_EQ(red(p, 3, 3), 0);
    }
  }
}

TEST(RasterPage, StrokesArePaintedOnceWhereTheyCross) {
  RasterPage p;
  ASSERT_TRUE(p.allocate(60, 60, kWhite));
  p.set_antialias(true);
  p.set_colour({0, 0, 0, 100});
  PageEdges edges(p);
  Stroker s(edges);
  StrokeStyle style;
  style.width = 6.0;
  style.join = 1;
  s.set_style(style);
  s.move(5, 30);
  s.line(55, 30);
  s.line(30, 5);
  s.line(30, 55);  // crosses the first segment at (30, 30)
  s.finish();
  p.paint(FillRule::NonZero);
  EXPECT_EQ(red(p, 30, 30), red(p, 15, 30));
  EXPECT_EQ(red(p, 30, 45), red(p, 15, 30));
  EXPECT_LT(red(p, 15, 30), 255);
  EXPECT_EQ(red(p, 15, 40), 255);
  // A dot: a polyline drawn to its own start.
  RasterPage d;
  ASSERT_TRUE(d.allocate(10, 10, kWhite));
  d.set_colour(kBlack);
  PageEdges dot_edges(d);
  Stroker dot(dot_edges);
  dot.set_style(style);
  dot.move(5, 5);
  dot.line(5, 5);
  dot.finish();
  d.paint(FillRule::NonZero);
  EXPECT_EQ(count_below(d, 128), 36);
}

TEST(RasterPage, HairlinesCoverByDistanceAndUniteAtJoints) {
  RasterPage p;
  ASSERT_TRUE(p.allocate(20, 12, kWhite));
  p.set_antialias(true);
  p.set_colour(kBlack);
  p.hairline(2, 5, 17, 5, 1.0);  // through pixel centres: one row, whole
  p.paint_lines();
  EXPECT_EQ(red(p, 9, 5), 0);
  EXPECT_EQ(red(p, 9, 4), 255);
  EXPECT_EQ(red(p, 9, 6), 255);
  EXPECT_EQ(count_below(p, 255), 16);  // round ends reach half a pixel
  // A translucent polyline is as dark at its corner as along its segments.
  p.clear(kWhite);
  p.set_colour({0, 0, 0, 100});
  p.hairline(2, 2, 10, 8, 1.0);
  p.hairline(10, 8, 18, 2, 1.0);
  p.paint_lines();
  EXPECT_EQ(red(p, 10, 8), red(p, 6, 5));
  EXPECT_LT(red(p, 6, 5), 255);
}

TEST(RasterPage, CoordinatesNoPageHoldsAreClipped) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInf = std::numeric_limits<double>::infinity();
  for (const bool aa : {false, true}) {
    RasterPage p;
    ASSERT_TRUE(p.allocate(50, 40, kWhite));
    p.set_antialias(aa);
    p.set_colour(kBlack);
    // A triangle over the whole page from vertices far away; one edge through NaN.
    const double xs[3] = {-1e300, 1e300, 25};
    const double ys[3] = {-10, -10, 1e308};
    p.polygon(xs, ys, 3);
    p.paint(FillRule::NonZero);
    EXPECT_EQ(count_below(p, 128), 50 * 40);
    p.clear(kWhite);
    const double bad_x[4] = {kNaN, 10, kInf, 10};
    const double bad_y[4] = {0, 1e18, 5, -1e18};
    p.polygon(bad_x, bad_y, 4);
    p.paint(FillRule::EvenOdd);
    p.line(-4'000'000'000'000LL, 20, 4'000'000'000'000LL, 20);  // bounded by the page
    p.hairline(-1e300, 1e300, kNaN, 0, 1);
    p.hairline(-1e12, -1e12, 1e12, 1e12, 3);  // through the page: bounded loops
    p.paint_lines();
    EXPECT_GT(count_below(p, 128), 50);
    p.clear(kWhite);
    p.line(-4'000'000'000'000LL, 20, 4'000'000'000'000LL, 20);
    EXPECT_EQ(count_below(p, 128), 50);
    p.plot(-1, 0);
    p.plot(50, 39);
    p.plot(0, 40);
  }
  RasterPage none;
  EXPECT_FALSE(none.allocate(0, 10, kWhite));
  EXPECT_FALSE(none.allocate(kMaxRasterSide + 1, 1, kWhite));
  EXPECT_FALSE(none.allocate(10000, 10000, kWhite));  // beyond the pixel count
  none.line(0, 0, 5, 5);
  none.edge(0, 0, 5, 5);
  none.paint(FillRule::NonZero);
}

TEST(RasterPage, ImagesFillTheirRectangleAndBlendByAlpha) {
  RasterPage p;
  ASSERT_TRUE(p.allocate(8, 8, kWhite));
  // 2 x 2 pixels: black, red / green, half-transparent blue; upside down on the page.
  const std::uint8_t px[16] = {0, 0, 0, 255, 255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 128};
  Image img;
  img.pixels = px;
  img.width = 2;
  img.height = 2;
  img.channels = 4;
  img.stride = 8;
  img.x0 = -0.5;
  img.y0 = 3.5;  // the first row goes to the bottom of the 4 x 4 block
  img.x1 = 3.5;
  img.y1 = -0.5;
  p.image(img);
  EXPECT_EQ(red(p, 0, 3), 0);  // black at the bottom left
  EXPECT_EQ(red(p, 3, 2), 255);
  EXPECT_EQ(p.row(2)[3 * 2 + 1], 0);  // red: no green
  EXPECT_EQ(p.row(0)[1], 255);        // green at the top left
  EXPECT_EQ(p.row(0)[3 * 3 + 2], 255);
  EXPECT_GT(p.row(0)[3 * 3], 100);  // blended blue over white
  EXPECT_EQ(red(p, 4, 4), 255);
}

}  // namespace
}  // namespace zorvel

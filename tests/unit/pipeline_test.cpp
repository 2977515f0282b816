// The drawing pipeline through a recording driver: buffer splitting, the dash engine,
// the sideways offset, clipping, NaN handling, widening, fills, the dispatch of every
// device family and the fitting of the page to the device.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "api_decl.h"
#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "drivers/registry.h"
#include "drivers/text_writer.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

using recording::Plot;
using recording::Sent;

// Drawn parts of a horizontal dashed line as [x0, x1] intervals, adjacent ones joined.
std::vector<std::pair<double, double>> dashes_along_x(Plot& plot) {
  std::vector<std::pair<double, double>> out;
  for (const auto& line : plot.polylines()) {
    const double a = line.front().x;
    const double b = line.back().x;
    if (!out.empty() && std::abs(out.back().second - a) < 1e-9) {
      out.back().second = b;
    } else {
      out.emplace_back(a, b);
    }
  }
  return out;
}

// Polyline buffer
// ===============

TEST(Pipeline, LongPolylinesArriveInPiecesOfAHundredSharingTheirEnds) {
  // Catches an off-by-one in the buffer split (99 or 101 points), pieces that do not
  // restart at the last point of the one before, and points lost at the end.
  Plot plot;
  move_to(plot.g, 0, 10);
  for (int i = 1; i < 250; ++i) {
    draw_to(plot.g, i, 10 + i % 7);
  }
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].size(), 100U);
  EXPECT_EQ(lines[1].size(), 100U);
  EXPECT_EQ(lines[2].size(), 52U);
  EXPECT_EQ(lines[1].front().x, lines[0].back().x);
  EXPECT_EQ(lines[1].front().y, lines[0].back().y);
  EXPECT_EQ(lines[2].front().x, lines[1].back().x);
  EXPECT_EQ(lines[2].back().x, 249);
  EXPECT_EQ(plot.g.core.vectors, 99 + 99 + 51);
}

TEST(Pipeline, AttributeChangesEndThePolylineAndTheLineGoesOn) {
  // Catches a colour change that loses the buffered points, a missing End before the
  // colour, and a line that does not continue from the point it had reached.
  Plot plot;
  move_to(plot.g, 0, 0);
  draw_to(plot.g, 10, 0);
  set_colour(plot.g, 3);
  draw_to(plot.g, 20, 0);
  end_polyline(plot.g);
  const auto& p = plot.rec->points;
  ASSERT_EQ(p.size(), 6U);
  EXPECT_EQ(p[2].pen, Pen::End);
  EXPECT_EQ(p[3].pen, Pen::Move);
  EXPECT_EQ(p[3].x, 10);
  EXPECT_EQ(p[4].x, 20);
  ASSERT_EQ(plot.rec->values.size(), 1U);
  EXPECT_EQ(plot.rec->values[0], 3);
}

TEST(Pipeline, OriginOffsetAndPageDirection) {
  // Catches an origin that is not added, and strtpt/connpt/line that ignore pagorg BOTT.
  Plot plot;
  api::origin(plot.g, 100, 50);
  api::strtpt(plot.g, 0, 0);
  api::connpt(plot.g, 10, 20);
  api::pagorg(plot.g, "BOTT");
  api::line(plot.g, 0, 0, 5, 5);
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0][0].x, 100);
  EXPECT_EQ(lines[0][0].y, 50);
  EXPECT_EQ(lines[0][1].x, 110);
  EXPECT_EQ(lines[0][1].y, 70);
  // From the bottom: y = 2099 - (y + 50) for the origin 50 units up.
  EXPECT_EQ(lines[1][0].y, 2099 - 50);
  EXPECT_EQ(lines[1][1].y, 2099 - 55);
}

// Dash engine
// ===========

TEST(Dash, PatternRunsOnAcrossShortSegments) {
  // Catches a pattern that restarts at every segment or polyline: the same dashed line
  // drawn at once and in pieces of 3 units must give the same dashes.
  const int pattern[2] = {10, 5};
  Plot whole;
  set_dash_pattern(whole.g, pattern, 2);
  move_to(whole.g, 0, 100);
  draw_to(whole.g, 100, 100);
  Plot pieces;
  set_dash_pattern(pieces.g, pattern, 2);
  move_to(pieces.g, 0, 100);
  for (int x = 3; x < 100; x += 3) {
    draw_to(pieces.g, x, 100);
  }
  draw_to(pieces.g, 100, 100);
  const auto a = dashes_along_x(whole);
  const auto b = dashes_along_x(pieces);
  ASSERT_EQ(a.size(), 7U);  // 0-10, 15-25, ..., 90-100
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    EXPECT_NEAR(a[i].first, 15.0 * static_cast<double>(i), 1e-9);
    EXPECT_NEAR(a[i].second, std::min(15.0 * static_cast<double>(i) + 10, 100.0), 1e-9);
    EXPECT_NEAR(b[i].first, a[i].first, 1e-9);
    EXPECT_NEAR(b[i].second, a[i].second, 1e-9);
  }
  // Phase kept across a move too: the next line starts 5 units into the gap... no, the
  // last dash ended at 100 with 0 left: the next line begins with the gap of 5.
  move_to(whole.g, 0, 200);
  whole.rec->points.clear();
  draw_to(whole.g, 20, 200);
  const auto c = dashes_along_x(whole);
  ASSERT_EQ(c.size(), 1U);
  EXPECT_NEAR(c[0].first, 5.0, 1e-9);
  EXPECT_NEAR(c[0].second, 15.0, 1e-9);
}

TEST(Dash, VerticalSegmentsInBothDirections) {
  // Catches a wrong angle for dx <= 1e-6 (dashes drawn sideways or the wrong way).
  for (const int dir : {1, -1}) {
    Plot plot;
    const int pattern[2] = {10, 10};
    set_dash_pattern(plot.g, pattern, 2);
    const double y0 = dir == 1 ? 500 : 560;
    move_to(plot.g, 300, y0);
    draw_to(plot.g, 300, y0 + dir * 60.0);
    const auto lines = plot.polylines();
    ASSERT_EQ(lines.size(), 3U) << "direction " << dir;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      ASSERT_EQ(lines[i].size(), 2U);
      EXPECT_NEAR(lines[i][0].x, 300, 1e-4);
      EXPECT_NEAR(lines[i][1].x, 300, 1e-4);
      EXPECT_NEAR(lines[i][0].y, y0 + dir * 20.0 * static_cast<double>(i), 1e-4);
      EXPECT_NEAR(lines[i][1].y, y0 + dir * (20.0 * static_cast<double>(i) + 10), 1e-4);
    }
  }
}

TEST(Dash, LineStylesNeverGetZeroLengthParts) {
  // Catches lintyp lengths that round to 0 under a large line-style scale (the engine
  // would then never advance) and wrong base lengths.
  Plot plot;
  plot.g.pipe.line_style_scale = 1000.0;
  api::lintyp(plot.g, 3);
  ASSERT_EQ(plot.g.pipe.dash_count, 4);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(plot.g.pipe.dash[static_cast<std::size_t>(i)], 1);
  }
  plot.g.pipe.line_style_scale = 2.0;
  api::lintyp(plot.g, 3);  // 30 15 10 15 halved, 7.5 rounds up
  EXPECT_EQ(plot.g.pipe.dash[0], 15);
  EXPECT_EQ(plot.g.pipe.dash[1], 8);
  EXPECT_EQ(plot.g.pipe.dash[2], 5);
  plot.g.pipe.line_style_scale = 0.0;  // no scale: huge lengths, but no overflow
  api::lintyp(plot.g, 7);
  EXPECT_GE(plot.g.pipe.dash[0], 1);
  api::lintyp(plot.g, 8);
  EXPECT_NE(plot.messages().find("Warning 2: Incorrect parameter in test!   ( 8)"),
            std::string::npos);
  EXPECT_EQ(plot.g.pipe.dash_count, 2);  // unchanged
}

TEST(Dash, MylineRefusesBadPatterns) {
  // Catches patterns of 0 or 11 entries or with a part below 1 being stored.
  Plot plot;
  const int good[3] = {5, 3, 2};
  const int bad[3] = {5, 0, 2};
  const int eleven[11] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  api::myline(plot.g, good, 3);
  api::myline(plot.g, bad, 3);
  api::myline(plot.g, eleven, 11);
  api::myline(plot.g, good, 0);
  EXPECT_EQ(plot.g.pipe.dash_count, 3);
  EXPECT_EQ(plot.g.pipe.dash[1], 3);
  const std::string m = plot.messages();
  EXPECT_NE(m.find("in test!   ( 0)"), std::string::npos);
  EXPECT_NE(m.find("in test!   ( 11)"), std::string::npos);
}

TEST(Dash, DashColoursChangeAtEveryDash) {
  // Catches dash colours that are not cycled, or cycled on the wrong transition.
  Plot plot;
  const int pattern[2] = {10, 10};
  const int colours[2] = {2, 5};
  set_dash_pattern(plot.g, pattern, 2);
  set_dash_colours(plot.g, colours, 2);
  api::line(plot.g, 0, 0, 55, 0);
  // Dashes at 0, 20, 40: colours 2, 5, 2; the gap reaching the end moves on to 5;
  // then the line's own colour comes back.
  const std::vector<int> expected = {2, 5, 2, 5, plot.g.colour.foreground};
  EXPECT_EQ(plot.rec->values, expected);
}

TEST(Dash, SidewaysOffsetDrawsAParallelLine) {
  // Catches an offset on the wrong side, a current point left on the shifted line
  // (the offset would then add up segment after segment), and a lost pending move.
  Plot plot;
  set_side_offset(plot.g, 5.0);
  move_to(plot.g, 100, 100);
  draw_to(plot.g, 200, 100);
  draw_to(plot.g, 200, 200);
  EXPECT_EQ(plot.g.pipe.cur_x, 200);
  EXPECT_EQ(plot.g.pipe.cur_y, 200);
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 1U);
  ASSERT_EQ(lines[0].size(), 4U);
  // Left of the direction of travel on the page: up for a line to the right.
  EXPECT_NEAR(lines[0][0].x, 100, 1e-9);
  EXPECT_NEAR(lines[0][0].y, 95, 1e-9);
  EXPECT_NEAR(lines[0][1].x, 200, 1e-9);
  EXPECT_NEAR(lines[0][1].y, 95, 1e-9);
  // Down the page: shifted to the right (x + 5).
  EXPECT_NEAR(lines[0][2].x, 205, 1e-4);
  EXPECT_NEAR(lines[0][2].y, 100, 1e-4);
  EXPECT_NEAR(lines[0][3].x, 205, 1e-4);
  EXPECT_NEAR(lines[0][3].y, 200, 1e-4);
  // A move that waits for its direction is made when the offset goes away.
  move_to(plot.g, 500, 500);
  set_side_offset(plot.g, 0.0);
  draw_to(plot.g, 600, 500);
  const auto after = plot.polylines();
  ASSERT_EQ(after.size(), 2U);
  EXPECT_EQ(after[1][0].x, 500);
  EXPECT_EQ(after[1][1].x, 600);
}

// Clipping
// ========

TEST(Clip, ToleranceAndExactCutPoints) {
  // Catches a missing tolerance (a point 0.0005 outside dropped), a tolerance that is too
  // wide (0.002 outside kept), and cut points that are not on the border.
  Plot plot;
  api::clpwin(plot.g, 100, 100, 101, 101);  // 100..200 inclusive
  move_to(plot.g, 150, 99.9995);
  draw_to(plot.g, 150, 150);
  move_to(plot.g, 160, 99.998);
  draw_to(plot.g, 160, 150);
  move_to(plot.g, 50, 150);  // crosses x = 100 at y = 150 + 50 * (50 / 200)
  draw_to(plot.g, 250, 200);
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0][0].y, 99.9995);  // inside by tolerance: kept as it is
  EXPECT_EQ(lines[1][0].y, 100.0);    // cut onto the border
  EXPECT_EQ(lines[2][0].x, 100.0);
  EXPECT_DOUBLE_EQ(lines[2][0].y, 162.5);
  EXPECT_EQ(lines[2][1].x, 200.0);
  EXPECT_DOUBLE_EQ(lines[2][1].y, 187.5);
}

TEST(Clip, PolylineLeavingAndReenteringGivesSeparatePieces) {
  // Catches a piece that is not restarted with a move after leaving the region (a
  // line would run along the outside), and an invisible segment that is sent.
  Plot plot;
  api::clpwin(plot.g, 0, 0, 101, 101);
  move_to(plot.g, 50, 50);
  draw_to(plot.g, 150, 50);   // leaves at x = 100
  draw_to(plot.g, 150, 80);   // outside
  draw_to(plot.g, 50, 80);    // enters at x = 100
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].back().x, 100);
  EXPECT_EQ(lines[1].front().x, 100);
  EXPECT_EQ(lines[1].front().y, 80);
  EXPECT_EQ(lines[1].back().x, 50);
}

TEST(Clip, CircleCutsExactly) {
  // Catches a circle test against the square, cut points off the circle, and a chord
  // that misses the circle but is still sent.
  Plot plot;
  set_clip_circle(plot.g, 500, 500, 100);
  move_to(plot.g, 300, 500);
  draw_to(plot.g, 700, 500);  // through the centre: 400..600
  move_to(plot.g, 300, 300);
  draw_to(plot.g, 700, 300);  // misses
  move_to(plot.g, 500, 500);
  draw_to(plot.g, 500, 550);  // inside: unchanged
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_NEAR(lines[0][0].x, 400, 1e-9);
  EXPECT_NEAR(lines[0][1].x, 600, 1e-9);
  EXPECT_EQ(lines[1][0].y, 500);
  EXPECT_EQ(lines[1][1].y, 550);
  double t0 = 0;
  double t1 = 0;
  // A diagonal chord from outside to outside: both cut points on the circle.
  ASSERT_TRUE(clip_segment_circle(0, 0, 10, -20, -5, 20, 5, t0, t1));
  for (const double t : {t0, t1}) {
    const double x = -20 + 40 * t;
    const double y = -5 + 10 * t;
    EXPECT_NEAR(std::hypot(x, y), 10.0, 1e-9);
  }
  // Huge coordinates: no overflow in the squares.
  EXPECT_TRUE(clip_segment_circle(0, 0, 10, -1e300, 0, 1e300, 0, t0, t1));
  EXPECT_NEAR(t0, 0.5, 1e-12);
}

TEST(Clip, ClpwinChecksTheRectangle) {
  // Catches a rectangle past the page being accepted, negative origins that stop the
  // routine, and an integer overflow on nx + nw.
  Plot plot;
  api::clpwin(plot.g, 2000, 0, 970, 100);  // 2000 + 970 - 1 = 2969: fits
  EXPECT_EQ(plot.g.pipe.clip.xmax, 2969);
  api::clpwin(plot.g, 2000, 0, 971, 100);  // one too wide: refused
  EXPECT_EQ(plot.g.pipe.clip.xmax, 2969);
  api::clpwin(plot.g, 10, -5, 100, 100);   // warned, then applied
  EXPECT_EQ(plot.g.pipe.clip.ymin, -5);
  api::clpwin(plot.g, 2147483647, 0, 2147483647, 1);
  const std::string m = plot.messages();
  EXPECT_NE(m.find("( 2970)"), std::string::npos);
  EXPECT_NE(m.find("( -5)"), std::string::npos);
  EXPECT_EQ(plot.g.pipe.border, ClipBorder::User);
}

TEST(Clip, NoClipSendsEverything) {
  // Catches clpmod("NONE") still clipping, and a page rectangle not restored by clpbor.
  Plot plot;
  api::noclip(plot.g);
  move_to(plot.g, -500, -500);
  draw_to(plot.g, 5000, 5000);
  api::clpmod(plot.g, "RECT");
  move_to(plot.g, -500, 10);
  draw_to(plot.g, 10, 10);
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0][0].x, -500);
  EXPECT_EQ(lines[0][1].x, 5000);
  EXPECT_EQ(lines[1][0].x, 0);
}

// Bad coordinates
// ===============

TEST(Pipeline, NotANumberIsCountedAndBreaksTheLine) {
  // Catches NaN or infinities reaching the driver, a count that misses them, and a line
  // drawn across the gap.
  Plot plot;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  move_to(plot.g, 0, 10);
  draw_to(plot.g, 10, 10);
  draw_to(plot.g, nan, 10);
  draw_to(plot.g, 20, 10);
  draw_to(plot.g, 30, 10);
  move_to(plot.g, inf, 0);
  draw_to(plot.g, 40, -inf);
  const auto lines = plot.polylines();
  EXPECT_EQ(plot.g.core.nans, 3);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].back().x, 10);
  EXPECT_EQ(lines[1].front().x, 20);
  for (const Sent& s : plot.rec->points) {
    EXPECT_TRUE(std::isfinite(s.x) && std::isfinite(s.y));
  }
}

TEST(Pipeline, HugeCoordinatesStayFiniteOnEveryDevice) {
  // Catches overflowing integer conversions and infinite differences for coordinates
  // near the limits of double.
  for (const int device : {80, 201, 401, 402, 504, 604, 701, 801}) {
    Plot plot(device, false);
    api::noclip(plot.g);
    move_to(plot.g, -1.7e308, 1.7e308);
    draw_to(plot.g, 1.7e308, -1.7e308);
    const int pattern[2] = {1, 1};
    set_dash_pattern(plot.g, pattern, 2);
    draw_to(plot.g, 0, 0);
    end_polyline(plot.g);
    for (const Sent& s : plot.rec->points) {
      EXPECT_TRUE(std::isfinite(s.x) && std::isfinite(s.y)) << device;
    }
  }
}

// Widening and fills
// ==================

TEST(Widen, DevicesWithoutNativeWidthsGetParallelStrokes) {
  // Catches wide lines drawn as one thin stroke on the metafile, strokes that are not
  // spread over the width, and widening on PostScript in hardware mode.
  Plot plot;  // metafile: thinnest line 1 plot unit
  api::linwid(plot.g, 5);
  move_to(plot.g, 100, 100);
  draw_to(plot.g, 200, 100);
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_NEAR(lines[i][0].y, 98.0 + static_cast<double>(i), 1e-9);
  }
  Plot ps(504, false, kCapFill | kCapWidths);
  api::linwid(ps.g, 20);
  move_to(ps.g, 100, 100);
  draw_to(ps.g, 200, 100);
  EXPECT_EQ(ps.polylines().size(), 1U);
  ASSERT_FALSE(ps.rec->widths.empty());
  EXPECT_EQ(ps.rec->widths.back().n, 20);
  EXPECT_TRUE(ps.rec->widths.back().hardware);
  api::hwmode(ps.g, "OFF", "LINE");  // now the pipeline widens: 7 strokes at s = 1.857
  EXPECT_FALSE(ps.rec->widths.back().hardware);
  ps.rec->points.clear();
  move_to(ps.g, 100, 100);
  draw_to(ps.g, 200, 100);
  EXPECT_EQ(ps.polylines().size(), 7U);
}

TEST(Fill, PointFillsARectangleAndRestoresTheColour) {
  // Catches a rectangle of the wrong size or place, a fill in the wrong colour, and a
  // colour that is not restored afterwards.
  Plot plot;
  api::setclr(plot.g, 7);
  api::point(plot.g, 100, 200, 40, 20, 30);
  ASSERT_EQ(plot.rec->fills.size(), 1U);
  const auto& xs = plot.rec->fills[0].xs;
  const auto& ys = plot.rec->fills[0].ys;
  ASSERT_EQ(xs.size(), 4U);
  EXPECT_EQ(*std::min_element(xs.begin(), xs.end()), 80);
  EXPECT_EQ(*std::max_element(xs.begin(), xs.end()), 120);
  EXPECT_EQ(*std::min_element(ys.begin(), ys.end()), 190);
  EXPECT_EQ(*std::max_element(ys.begin(), ys.end()), 210);
  const Rgb fill = plot.rec->fills[0].rgb;
  const Rgb table = colour_rgb(plot.g, 30);
  EXPECT_EQ(fill.r, table.r);
  EXPECT_EQ(fill.b, table.b);
  EXPECT_EQ(plot.rec->values.back(), 7);
  EXPECT_EQ(plot.g.colour.current, 7);
}

TEST(Fill, ClippedAndHatchedWithoutNativeFills) {
  // Catches fills that are not clipped, and drivers without fills getting nothing.
  Plot plot(201, true, 0);
  api::clpwin(plot.g, 0, 0, 101, 101);
  const double xs[4] = {50, 150, 150, 50};
  const double ys[4] = {50, 50, 60, 60};
  fill_polygon(plot.g, xs, ys, 4);
  const auto lines = plot.polylines();
  ASSERT_EQ(lines.size(), 10U);  // one line per plot unit of height
  for (const auto& l : lines) {
    EXPECT_EQ(l.front().x, 50);
    EXPECT_EQ(l.back().x, 100);
  }
}

// Dispatch
// ========

TEST(Dispatch, EveryTransformConvertsAsDocumented) {
  // Catches a wrong axis direction, a missing turn, or rounding that would cost raster
  // devices their sub-pixel positions.
  PipelineState p;
  p.scale = 2.0;
  p.page_w = 2969;
  p.page_h = 2099;
  p.device_dx = 10;
  p.device_dy = 20;
  struct Case {
    Dispatch d;
    bool turned;
    double x;
    double y;
  };
  const Case cases[] = {
      // x = 100.25, y = 10.25, s = 2: s x = 200.5, s y = 20.5, s (H - y) = 4177.5,
      // s (W - x) = 5737.5; HPGL adds its shift (10, 20).
      {Dispatch::Pixels, false, 200.5, 20.5},   {Dispatch::Pixels, true, 20.5, 5737.5},
      {Dispatch::Metafile, false, 200.5, 4177.5}, {Dispatch::Metafile, true, 20.5, 200.5},
      {Dispatch::Hpgl, false, 210.5, 4197.5},   {Dispatch::Hpgl, true, 30.5, 220.5},
      {Dispatch::HpglSheet, true, 4187.5, 5757.5}, {Dispatch::HpglSheet, false, 210.5, 4197.5},
      {Dispatch::Paper, false, 200.5, 4177.5},  {Dispatch::Paper, true, 20.5, 200.5},
  };
  for (const Case& c : cases) {
    p.dispatch = c.d;
    p.rotated = c.turned;
    double x = 0;
    double y = 0;
    to_device(p, 100.25, 10.25, x, y);
    EXPECT_EQ(x, c.x) << static_cast<int>(c.d) << (c.turned ? " turned" : "");
    EXPECT_EQ(y, c.y) << static_cast<int>(c.d) << (c.turned ? " turned" : "");
  }
  EXPECT_EQ(device_int(2.5), 3);
  EXPECT_EQ(device_int(-2.5), -2);
  EXPECT_EQ(device_int(1e300), 2000000000);
  EXPECT_EQ(device_int(-1e300), -2000000000);
}

TEST(Dispatch, VectorsCountDrawsOnly) {
  // Catches moves counted as vectors, and clipped-away segments counted.
  Plot plot;
  move_to(plot.g, 0, 0);
  draw_to(plot.g, 10, 0);
  draw_to(plot.g, 10, 10);
  move_to(plot.g, -100, -100);
  draw_to(plot.g, -50, -100);  // invisible
  end_polyline(plot.g);
  EXPECT_EQ(plot.g.core.vectors, 2);
}

// Output errors
// =============

TEST(Output, WriteErrorsAndOverflowsAreReportedOnce) {
  // Catches a write error reported at every polyline (or never before zorfin), and
  // dropped words that go unreported or are reported again without new ones.
  Plot plot;
  plot.rec->fail = true;
  for (int i = 0; i < 3; ++i) {
    api::line(plot.g, 0, 0, 100, 100);
  }
  plot.rec->overflow_count = 2;
  api::line(plot.g, 0, 0, 100, 100);
  api::line(plot.g, 0, 0, 100, 100);
  plot.rec->overflow_count = 3;
  api::line(plot.g, 0, 0, 100, 100);
  end_polyline(plot.g);
  EXPECT_EQ(plot.messages(),
            " <<<< Warning 36: File error in test!\n"
            " <<<< Warning 176: Internal overflow in qqsbuf in test!\n"
            " <<<< Warning 176: Internal overflow in qqsbuf in test!\n");
}

TEST(Output, WordsLongerThanALineAreDropped) {
  // Catches a word longer than the line width being written (a line over 80 characters)
  // or being dropped without being counted.
  MemorySink sink;
  TextWriter w(&sink, 80);
  w.word(std::string(80, 'a'));
  w.word(std::string(81, 'b'));
  w.word("c ");
  EXPECT_TRUE(w.finish());
  EXPECT_EQ(w.overflows(), 1);
  EXPECT_EQ(sink.bytes(), std::string(80, 'a') + "\nc ");
}

// Page fitting
// ============

TEST(PageFitting, DeviceScales) {
  // Catches a wrong natural scale, a page that is not turned before fitting, sclfac
  // counted twice on PostScript, and the fitting modes mixed up.
  GlobalBlock g;
  g.core.window_width = 853;
  g.core.window_height = 603;
  auto scale = [&](int device) { return device_scale(g, *find_device(device)); };
  // A4 landscape fills the printable area (19.5 x 28 cm) of the A4 sheet
  EXPECT_DOUBLE_EQ(scale(504), 2.0 * 1950.0 / 2100.0);
  EXPECT_DOUBLE_EQ(scale(201), 0.01);
  EXPECT_DOUBLE_EQ(scale(401), 4.0);
  EXPECT_DOUBLE_EQ(scale(402), 4.0);  // HPA4: A4 sheet, landscape
  EXPECT_NEAR(scale(701) * 2100, 603.0, 1e-9);  // the page fits the window
  EXPECT_LE(scale(701) * 2970, 853.0);
  g.page.scale_factor = 0.5;
  // written into the file's scale command instead
  EXPECT_DOUBLE_EQ(scale(504), 2.0 * 1950.0 / 2100.0);
  EXPECT_DOUBLE_EQ(scale(201), 0.005);
  g.page.scale_factor = 1.0;
  api::setpag(g, "DA3L");
  EXPECT_NEAR(scale(504), 2.0 * 1950.0 / 2970.0, 1e-12);  // shrunk onto A4
  EXPECT_DOUBLE_EQ(scale(403), 4.0);                       // HPA3 holds it
  g.page.scale_mode = 2;                                   // NONE: true size
  EXPECT_DOUBLE_EQ(scale(504), 2.0);
  api::setpag(g, "DA4P");
  EXPECT_DOUBLE_EQ(scale(504), 2.0);  // portrait A4 is not turned
  g.page.scale_mode = 1;              // FULL: a small page grows
  api::page(g, 1050, 1485);
  EXPECT_DOUBLE_EQ(scale(504), 2.0 * 1950.0 / 1050.0);
  g.page.hw_scale = 1.5;
  EXPECT_DOUBLE_EQ(scale(504), 1.5 * 2.0 * 1950.0 / 1050.0);
}

}  // namespace
}  // namespace zorvel

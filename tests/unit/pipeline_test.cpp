// The drawing pipeline through a recording driver, where the golden scenes do not reach:
// lines that go on across attribute changes, the dash engine and the sideways offset,
// clipping, NaN and huge coordinates, widening, paths of several contours and their
// hatching, text runs, the dispatch, output errors and the fitting of the page.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
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

using recording::Filled;
using recording::Plot;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

void segment(Plot& plot, double x0, double y0, double x1, double y1) {
  move_to(plot.g, x0, y0);
  draw_to(plot.g, x1, y1);
}

// The dashes of a horizontal dashed line as [x0, x1] intervals, adjacent ones joined.
std::vector<std::pair<double, double>> dashes_along_x(Plot& plot) {
  std::vector<std::pair<double, double>> out;
  for (const auto& line : plot.polylines()) {
    if (!out.empty() && out.back().second == line.front().x) {
      out.back().second = line.back().x;
    } else {
      out.emplace_back(line.front().x, line.back().x);
    }
  }
  return out;
}

// Lines
// =====

TEST(Pipeline, AttributeChangesEndThePolylineAndTheLineGoesOn) {
  // Catches a colour change that loses the buffered points, a missing End before the
  // colour, and a line that does not continue from the point it had reached.
  Plot plot;
  segment(plot, 0, 0, 10, 0);
  set_colour(plot.g, 3);
  draw_to(plot.g, 20, 0);
  end_polyline(plot.g);
  ASSERT_EQ(plot.rec->points.size(), 6U);
  EXPECT_EQ(plot.rec->points[2].pen, Pen::End);
  EXPECT_EQ(plot.traced(), "0,0 10,0; 10,0 20,0");
  EXPECT_EQ(plot.rec->values, std::vector<int>{3});
}

TEST(Pipeline, OriginOffsetAndPageDirection) {
  // Catches an origin that is not added, and strtpt/connpt/line that ignore pagorg BOTT.
  Plot plot;
  api::origin(plot.g, 100, 50);
  api::strtpt(plot.g, 0, 0);
  api::connpt(plot.g, 10, 20);
  api::pagorg(plot.g, "BOTT");
  api::line(plot.g, 0, 0, 5, 5);  // y = 2099 - y, the origin 50 units up
  EXPECT_EQ(plot.traced(), "100,50 110,70; 100,2049 105,2044");
}

TEST(Pipeline, NotANumberIsCountedAndBreaksTheLine) {
  // Catches NaN or infinities reaching the driver, a count that misses them, and a line
  // drawn across the gap.
  Plot plot;
  segment(plot, 0, 10, 10, 10);
  draw_to(plot.g, kNaN, 10);
  draw_to(plot.g, 20, 10);
  draw_to(plot.g, 30, 10);
  segment(plot, kInf, 0, 40, -kInf);
  EXPECT_EQ(plot.traced(), "0,10 10,10; 20,10 30,10");
  EXPECT_EQ(plot.g.core.nans, 3);
}

TEST(Pipeline, HugeCoordinatesStayFiniteOnEveryDevice) {
  // Catches overflowing conversions and infinite differences for coordinates near the
  // limits of double, through every dispatch and the dash engine.
  for (const char* key : {"JAVA", "GKSL", "HPGL", "HPA4", "PS  "}) {
    Plot plot(key, false);
    api::noclip(plot.g);
    segment(plot, -1.7e308, 1.7e308, 1.7e308, -1.7e308);
    const int pattern[2] = {1, 1};
    set_dash_pattern(plot.g, pattern, 2);
    draw_to(plot.g, 0, 0);
    const std::string drawn = plot.traced();
    EXPECT_TRUE(!drawn.empty() && drawn.find_first_of("ni") == std::string::npos) << key << drawn;
  }
}

// Dash engine and sideways offset
// ===============================

TEST(Dash, PatternRunsOnAcrossSegmentsAndMoves) {
  // Catches a pattern that restarts at every segment, polyline or move: a dashed line
  // drawn in pieces of 3 units gives the dashes of the line drawn at once, and a new line
  // goes on in the phase the last one ended in.
  const int pattern[2] = {10, 5};
  Plot whole;
  Plot pieces;
  set_dash_pattern(whole.g, pattern, 2);
  set_dash_pattern(pieces.g, pattern, 2);
  segment(whole, 0, 100, 100, 100);
  move_to(pieces.g, 0, 100);
  for (int x = 3; x < 103; x += 3) {
    draw_to(pieces.g, std::min(x, 100), 100);
  }
  EXPECT_EQ(dashes_along_x(pieces), dashes_along_x(whole));
  EXPECT_EQ(whole.traced(),
            "0,100 10,100; 15,100 25,100; 30,100 40,100; 45,100 55,100; 60,100 70,100; "
            "75,100 85,100; 90,100 100,100");
  whole.rec->points.clear();
  segment(whole, 0, 200, 20, 200);  // the last dash used up its length: a gap comes first
  EXPECT_EQ(whole.traced(), "5,200 15,200");
}

TEST(Dash, VerticalSegmentsInBothDirections) {
  // Catches a wrong angle for dx <= 1e-6 (dashes drawn sideways or the wrong way).
  for (const int dir : {1, -1}) {
    Plot plot;
    const int pattern[2] = {10, 10};
    set_dash_pattern(plot.g, pattern, 2);
    segment(plot, 300, 530 - 30 * dir, 300, 530 + 30 * dir);
    EXPECT_EQ(plot.traced(), dir > 0 ? "300,500 300,510; 300,520 300,530; 300,540 300,550"
                                     : "300,560 300,550; 300,540 300,530; 300,520 300,510");
  }
}

TEST(Dash, PatternsAreNeverStoredBroken) {
  // Catches lintyp lengths that round to 0 under a large line-style scale (the engine
  // would never advance) or overflow without one, wrong rounding, and refused patterns
  // (0 or 11 entries, an entry below 1, lintyp 8) that are stored all the same.
  Plot plot;
  PipelineState& p = plot.g.pipe;
  p.line_style_scale = 1000.0;
  api::lintyp(plot.g, 3);
  EXPECT_EQ(p.dash_count, 4);
  EXPECT_TRUE(p.dash[0] == 1 && p.dash[3] == 1);
  p.line_style_scale = 2.0;
  api::lintyp(plot.g, 3);  // 30 15 10 15 halved: 7.5 rounds up
  EXPECT_TRUE(p.dash[1] == 8 && p.dash[2] == 5);
  p.line_style_scale = 0.0;
  api::lintyp(plot.g, 7);
  EXPECT_GE(p.dash[0], 1);
  const int good[3] = {5, 3, 2};
  const int bad[3] = {5, 0, 2};
  const int eleven[11] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  api::myline(plot.g, good, 3);
  api::myline(plot.g, bad, 3);
  api::myline(plot.g, eleven, 11);
  api::myline(plot.g, good, 0);
  api::lintyp(plot.g, 8);
  EXPECT_TRUE(p.dash_count == 3 && p.dash[1] == 3);
}

TEST(Dash, DashColoursChangeAtEveryDash) {
  // Catches dash colours that are not cycled, or cycled on the wrong transition.
  Plot plot;
  const int pattern[2] = {10, 10};
  const int colours[2] = {2, 5};
  set_dash_pattern(plot.g, pattern, 2);
  set_dash_colours(plot.g, colours, 2);
  api::line(plot.g, 0, 0, 55, 0);
  // Dashes at 0, 20, 40: colours 2, 5, 2; the gap reaching the end moves on to 5; then
  // the line's own colour comes back.
  EXPECT_EQ(plot.rec->values, (std::vector<int>{2, 5, 2, 5, plot.g.colour.foreground}));
}

TEST(Dash, SidewaysOffsetDrawsAParallelLine) {
  // Catches an offset on the wrong side, a current point left on the shifted line (the
  // offset would add up segment after segment), and a lost pending move.
  Plot plot;
  set_side_offset(plot.g, 5.0);
  segment(plot, 100, 100, 200, 100);
  draw_to(plot.g, 200, 200);
  EXPECT_TRUE(plot.g.pipe.cur_x == 200 && plot.g.pipe.cur_y == 200);
  // Left of the direction of travel: up the page, then x + 5 for a line down the page.
  EXPECT_EQ(plot.traced(), "100,95 200,95 205,100 205,200");
  plot.rec->points.clear();
  move_to(plot.g, 500, 500);
  set_side_offset(plot.g, 0.0);  // the move that waited for a direction is made now
  draw_to(plot.g, 600, 500);
  EXPECT_EQ(plot.traced(), "500,500 600,500");
}

// Clipping
// ========

TEST(Clip, ToleranceAndExactCutPoints) {
  // Catches a missing tolerance (a point 0.0005 outside dropped), one that is too wide
  // (0.002 outside kept), cut points that are not on the border, and a polyline that
  // leaves and enters again without a move (a line along the outside).
  Plot plot;
  api::clpwin(plot.g, 100, 100, 101, 101);  // 100..200 inclusive
  segment(plot, 150, 99.9995, 150, 150);
  segment(plot, 160, 99.998, 160, 150);
  segment(plot, 50, 150, 250, 200);
  segment(plot, 150, 150, 250, 150);
  draw_to(plot.g, 250, 180);
  draw_to(plot.g, 150, 180);
  EXPECT_EQ(plot.traced(),
            "150,99.9995 150,150; 160,100 160,150; 100,162.5 200,187.5; 150,150 200,150; "
            "200,180 150,180");
}

TEST(Clip, CircleCutsExactly) {
  // Catches a circle test against the square, cut points off the circle, a chord that
  // misses the circle but is still sent, and squares that overflow for huge coordinates.
  Plot plot;
  set_clip_circle(plot.g, 500, 500, 100);
  segment(plot, 300, 500, 700, 500);  // through the centre
  segment(plot, 300, 300, 700, 300);  // misses
  segment(plot, 500, 500, 500, 550);  // inside
  EXPECT_EQ(plot.traced(), "400,500 600,500; 500,500 500,550");
  double t0 = 0;
  double t1 = 0;
  ASSERT_TRUE(clip_segment_circle(0, 0, 10, -20, -5, 20, 5, t0, t1));
  EXPECT_NEAR(std::hypot(-20 + 40 * t0, -5 + 10 * t0), 10.0, 1e-9);
  EXPECT_NEAR(std::hypot(-20 + 40 * t1, -5 + 10 * t1), 10.0, 1e-9);
  EXPECT_TRUE(clip_segment_circle(0, 0, 10, -1e300, 0, 1e300, 0, t0, t1));
  EXPECT_NEAR(t0, 0.5, 1e-12);
}

TEST(Clip, ClpwinAndClipModes) {
  // Catches a rectangle past the page being accepted, an integer overflow on nx + nw,
  // negative origins that stop the routine, clpmod("NONE") still clipping, and the
  // rectangle not coming back with clpmod("RECT").
  Plot plot;
  api::clpwin(plot.g, 2000, 0, 970, 100);  // 2000 + 970 - 1 = 2969: fits
  api::clpwin(plot.g, 2000, 0, 971, 100);  // one too wide: refused
  api::clpwin(plot.g, 2147483647, 0, 2147483647, 1);
  EXPECT_EQ(plot.g.pipe.clip.xmax, 2969);
  api::clpwin(plot.g, 10, -5, 100, 100);  // warned, then applied
  EXPECT_EQ(plot.g.pipe.clip.ymin, -5);
  api::clpmod(plot.g, "NONE");
  segment(plot, -500, -500, 5000, 5000);
  api::clpmod(plot.g, "RECT");
  segment(plot, -500, 10, 50, 10);
  EXPECT_EQ(plot.traced(), "-500,-500 5000,5000; 10,10 50,10");
}

// Widening
// ========

TEST(Widen, DevicesWithoutNativeWidthsGetParallelStrokes) {
  // Catches wide lines drawn as one thin stroke on the metafile, strokes that are not
  // spread over the width, and no widening on PostScript when the hardware mode is off.
  Plot plot;  // metafile: thinnest line 1 plot unit
  api::linwid(plot.g, 5);
  segment(plot, 100, 100, 200, 100);
  EXPECT_EQ(plot.traced(),
            "100,98 200,98; 100,99 200,99; 100,100 200,100; 100,101 200,101; 100,102 200,102");
  Plot ps("PS  ", false, kCapFill | kCapWidths);  // hardware widths: golden ps_lines
  api::linwid(ps.g, 20);
  api::hwmode(ps.g, "OFF", "LINE");  // now the pipeline widens: 7 strokes at s = 1.857
  ASSERT_FALSE(ps.rec->widths.empty());
  EXPECT_FALSE(ps.rec->widths.back().hardware);
  segment(ps, 100, 100, 200, 100);
  EXPECT_EQ(ps.polylines().size(), 7U);
}

// Fills
// =====

TEST(Fill, ContoursReachTheDriverClippedWithTheirRule) {
  // Catches contours merged or lost on the way to the driver, contour ends that do not
  // follow the clipping, a contour of two points or one wholly outside the rectangle
  // that is sent all the same, a rule or colour that does not reach the driver, and a
  // path with a point that is not a number being filled.
  Plot plot;
  api::clpwin(plot.g, 0, 0, 101, 101);  // 0..100
  api::setclr(plot.g, 30);
  const double xs[] = {10, 40, 40, 10, 60, 150, 150, 60, 5, 6, 300, 400, 350, 20, 30, 25};
  const double ys[] = {10, 10, 40, 40, 60, 60, 90, 90, 5, 6, 300, 300, 400, 80, 80, 95};
  const int ends[] = {4, 8, 10, 13, 16};
  fill_path(plot.g, xs, ys, ends, 5, FillRule::EvenOdd);
  ASSERT_EQ(plot.rec->fills.size(), 1U);
  const Filled& f = plot.rec->fills[0];
  EXPECT_EQ(f.rule, FillRule::EvenOdd);
  EXPECT_EQ(f.ends, (std::vector<int>{4, 8, 11}));
  // The second contour is cut at x = 100; the others stay as they were.
  EXPECT_EQ(f.xs, (std::vector<double>{10, 40, 40, 10, 60, 100, 100, 60, 20, 30, 25}));
  EXPECT_EQ(f.ys, (std::vector<double>{10, 10, 40, 40, 60, 60, 90, 90, 80, 80, 95}));
  const Rgb want = colour_rgb(plot.g, 30);
  EXPECT_TRUE(f.rgb.r == want.r && f.rgb.g == want.g && f.rgb.b == want.b);
  EXPECT_EQ(plot.rec->values.back(), 30);  // the line colour is not touched

  const double bad[] = {10, kNaN, 40, 10};
  fill_path(plot.g, bad, ys, ends, 1, FillRule::NonZero);
  EXPECT_EQ(plot.rec->fills.size(), 1U);
  EXPECT_EQ(plot.g.core.nans, 1);
}

TEST(Fill, HatchedByTheRuleWithoutNativeFills) {
  // Catches drivers without fills getting nothing, hatch lines that leave the clip
  // rectangle, and the fill rules mixed up: in a square with a square hole, even-odd
  // leaves the hole empty, non-zero fills it when both contours run the same way and
  // leaves it empty when they run against each other.
  // The outer square, then the hole running the same way (path 0) or against it (1).
  const double xs[2][8] = {{0, 100, 100, 0, 40, 60, 60, 40}, {0, 100, 100, 0, 40, 40, 60, 60}};
  const double ys[2][8] = {{0, 0, 100, 100, 40, 40, 60, 60}, {0, 0, 100, 100, 40, 60, 60, 40}};
  const int ends[] = {4, 8};
  struct Case {
    FillRule rule;
    int path;
    bool hole_filled;
  };
  for (const Case c : {Case{FillRule::EvenOdd, 0, false}, Case{FillRule::NonZero, 0, true},
                       Case{FillRule::NonZero, 1, false}}) {
    Plot plot("GKSL", true, 0);  // hatch lines one plot unit apart
    api::clpwin(plot.g, 0, 0, 81, 101);  // cuts the square at x = 80
    fill_path(plot.g, xs[c.path], ys[c.path], ends, 2, c.rule);
    EXPECT_TRUE(plot.rec->fills.empty());
    double length = 0;  // 100 lines, 20 of them across the hole
    for (const auto& l : plot.polylines()) {
      ASSERT_EQ(l.size(), 2U);
      EXPECT_EQ(l[0].y, l[1].y);
      EXPECT_TRUE(l[0].x >= 0 && l[1].x <= 80) << l[0].x << " " << l[1].x;
      EXPECT_FALSE(!c.hole_filled && l[0].x < 50 && l[1].x > 50 && l[0].y > 40 && l[0].y < 60)
          << "the hole is hatched at y = " << l[0].y;
      length += l[1].x - l[0].x;
    }
    EXPECT_EQ(length, c.hole_filled ? 100 * 80 : 80 * 80 + 20 * 60);
  }
}

// Text runs
// =========

TEST(TextRun, GlyphsOutsideTheClipRegionAreLeftOut) {
  // Catches glyphs written outside the clip rectangle and a run sent when none is
  // visible. (Places, angle and size in device units on a turned landscape sheet are
  // pinned by the golden scene text_fonts.)
  Plot plot("PS  ", false, kCapText);
  api::clpwin(plot.g, 0, 0, 1001, 1001);
  const GlyphPlace glyphs[3] = {{100, 100, 'a', 'a'}, {2000, 100, 'b', 'b'}, {200, 100, 'c', 'c'}};
  draw_text_run(plot.g, TextRun{"abc", glyphs, "Times-Roman", nullptr, 0.0, 36.0, 1.0});
  draw_text_run(plot.g, TextRun{"b", {glyphs + 1, 1}, "Times-Roman", nullptr, 0.0, 36.0, 1.0});
  ASSERT_EQ(plot.rec->texts.size(), 1U);
  const auto& run = plot.rec->texts[0];
  EXPECT_EQ(run.utf8, "ac");
  EXPECT_EQ(run.glyphs.size(), 2U);
}

// Dispatch
// ========

TEST(Dispatch, PagesLandOnTheDeviceUnmirrored) {
  // Catches a transform that mirrors the page, swaps or forgets the turn, scales a side
  // wrongly or loses the plotter shift: for every transform, turned or not, the page's
  // axes run along the device's, W s and H s long (swapped when turned), the page starts
  // at the shift, and y runs down the device only in the pixel transform. Integer devices
  // clamp far outside every page and round halves up.
  PipelineState p;
  p.scale = 2.0;
  p.page_w = 2969;
  p.page_h = 2099;
  const double w = 2 * 2969;
  const double h = 2 * 2099;
  for (const Dispatch d : {Dispatch::Pixels, Dispatch::Metafile, Dispatch::Hpgl,
                           Dispatch::HpglSheet, Dispatch::Paper}) {
    for (const bool turned : {false, true}) {
      const bool plotter = d == Dispatch::Hpgl || d == Dispatch::HpglSheet;
      p.dispatch = d;
      p.rotated = turned;
      p.device_dx = plotter ? 10 : 0;
      p.device_dy = plotter ? 20 : 0;
      double x[4];
      double y[4];
      const double corners[4][2] = {{0, 0}, {p.page_w, 0}, {0, p.page_h}, {p.page_w, p.page_h}};
      for (int i = 0; i < 4; ++i) {
        to_device(p, corners[i][0], corners[i][1], x[i], y[i]);
      }
      const double ux = x[1] - x[0], uy = y[1] - y[0];  // the page's x axis
      const double vx = x[2] - x[0], vy = y[2] - y[0];  // down the page
      SCOPED_TRACE(std::to_string(static_cast<int>(d)) + (turned ? " turned" : ""));
      EXPECT_EQ((std::array{std::abs(ux), std::abs(uy), std::abs(vx), std::abs(vy)}),
                (turned ? std::array{0.0, w, h, 0.0} : std::array{w, 0.0, 0.0, h}));
      EXPECT_EQ(*std::min_element(x, x + 4), p.device_dx);
      EXPECT_EQ(*std::min_element(y, y + 4), p.device_dy);
      EXPECT_EQ(ux * vy - uy * vx > 0, d == Dispatch::Pixels);
    }
  }
  EXPECT_EQ(device_int(2.5), 3);
  EXPECT_EQ(device_int(-2.5), -2);
  EXPECT_EQ(device_int(1e300), 2000000000);
  EXPECT_EQ(device_int(-kInf), -2000000000);
  EXPECT_EQ(device_int(kNaN), 0);
}

// Output errors
// =============

TEST(Output, DroppedWordsAreReportedOnceEach) {
  // Catches words that the driver dropped (longer than a line) going unreported, or
  // reported again without new ones. The end-to-end disk-full case pins warning 36.
  Plot plot;
  plot.rec->overflow_count = 2;
  api::line(plot.g, 0, 0, 100, 100);
  api::line(plot.g, 0, 0, 100, 100);
  plot.rec->overflow_count = 3;
  api::line(plot.g, 0, 0, 100, 100);
  EXPECT_EQ(plot.text(),
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

TEST(PageFitting, ModesSheetsAndFactors) {
  // Catches the fitting modes mixed up, a page that is not turned before fitting (or a
  // portrait one that is), a sheet of the wrong size, sclfac left out of devices that do
  // not write it into their file, and hwscal left out. The golden and end-to-end scenes
  // pin the A4 landscape page on PostScript, the metafile, HPGL and the applet.
  GlobalBlock g;
  auto scale = [&](const char* key) { return device_scale(g, *find_device(key)); };
  const double printable = 2.0 * 1950.0;  // PostScript units across the printable area
  g.page.scale_factor = 0.5;
  EXPECT_DOUBLE_EQ(scale("GKSL"), 0.005);
  EXPECT_DOUBLE_EQ(scale("PS  "), printable / 2100.0);  // written into the file instead
  g.page.scale_factor = 1.0;
  EXPECT_DOUBLE_EQ(scale("HPA4"), 4.0);
  api::setpag(g, "DA3L");
  EXPECT_NEAR(scale("PS  "), printable / 2970.0, 1e-12);  // shrunk onto the A4 sheet
  EXPECT_DOUBLE_EQ(scale("HPA3"), 4.0);                    // the A3 sheet holds it
  EXPECT_NEAR(scale("HPA4"), 4.0 * 2100.0 / 2970.0, 1e-12);
  g.page.scale_mode = 2;  // NONE: true size
  EXPECT_DOUBLE_EQ(scale("PS  "), 2.0);
  api::setpag(g, "DA4P");
  EXPECT_DOUBLE_EQ(scale("PS  "), 2.0);  // portrait A4 is not turned
  g.page.scale_mode = 1;                 // FULL: a small page grows
  api::page(g, 1050, 1485);
  EXPECT_DOUBLE_EQ(scale("PS  "), printable / 1050.0);
  g.page.hw_scale = 1.5;
  EXPECT_DOUBLE_EQ(scale("PS  "), 1.5 * printable / 1050.0);
}

}  // namespace
}  // namespace zorvel

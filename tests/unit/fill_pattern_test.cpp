// Unit tests of fill patterns and filled areas: hatching against a brute-force even-odd
// test, the patterns and the fills that stay solid, sectors on drivers with and without
// arcs of their own, the areas of rlarea and shdcrv, their legend boxes and bad input.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "api_decl.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

using recording::Plot;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 3.14159265358979323846;

struct Shape {
  std::vector<double> xs, ys;
  std::vector<int> ends;
};

// Even-odd by counting the edges that a ray to the right crosses.
bool inside(const Shape& s, double x, double y) {
  bool in = false;
  std::size_t start = 0;
  for (const int e : s.ends) {
    const auto end = static_cast<std::size_t>(e);
    for (std::size_t i = start; i < end; ++i) {
      const std::size_t j = i + 1 == end ? start : i + 1;
      if ((s.ys[i] > y) != (s.ys[j] > y) &&
          x < s.xs[i] + (y - s.ys[i]) / (s.ys[j] - s.ys[i]) * (s.xs[j] - s.xs[i])) {
        in = !in;
      }
    }
    start = end;
  }
  return in;
}

Shape star(double cx, double cy, double r) {  // a pentagram: its centre lies outside
  Shape s{{}, {}, {5}};
  for (int i = 0; i < 5; ++i) {
    s.xs.push_back(cx + r * std::cos(0.1 + i * 4 * kPi / 5));
    s.ys.push_back(cy - r * std::sin(0.1 + i * 4 * kPi / 5));
  }
  return s;
}

TEST(Hatching, CoversExactlyTheEvenOddInsideOfAnyPolygon) {
  // Catches hatch lines that miss inside parts or cross outside ones: holes filled, the
  // centre of a self-crossing star filled, lines beyond the clip rectangle or circle,
  // families at the wrong angle or off their spacing, and huge polygons lost or hatched
  // without bound. Every line of the family is sampled along its length, each sample
  // compared with a brute-force even-odd test (samples next to an edge are left out).
  struct Case {
    const char* name;
    Shape shape;
    double x0, y0, x1, y1;  // clpwin's rectangle
    bool circle;            // and the circle inside it
  };
  const Case cases[] = {
      {"square with a hole",
       {{100.3, 700.2, 700.2, 100.3, 300.1, 450.6, 450.6, 300.1},
        {100.7, 100.7, 600.9, 600.9, 250.2, 250.2, 420.4, 420.4},
        {4, 8}},
       0,
       0,
       2969,
       2099,
       false},
      {"star", star(1200.4, 700.2, 400), 0, 0, 2969, 2099, false},
      {"star in a circle", star(1200.4, 700.2, 400), 900, 400, 1500, 1000, true},
      {"huge triangle",
       {{-1e9, 1e9, 2100.7}, {950.5, 1850.3, -1e9}, {3}},
       1500,
       900,
       2500,
       1900,
       false},
  };
  const int spacing = 7;
  for (const Case& c : cases) {
    for (const int angle : {0, 30, 90, 135, 160}) {
      SCOPED_TRACE(testing::Message() << c.name << ", " << angle << " degrees");
      Plot plot;
      api::clpwin(plot.g, static_cast<int>(c.x0), static_cast<int>(c.y0),
                  static_cast<int>(c.x1 - c.x0 + 1), static_cast<int>(c.y1 - c.y0 + 1));
      const double ccx = (c.x0 + c.x1) / 2, ccy = (c.y0 + c.y1) / 2, cr = (c.x1 - c.x0) / 2;
      if (c.circle) {
        set_clip_circle(plot.g, ccx, ccy, cr);
      }
      api::myptrn(plot.g, &angle, &spacing, 1);
      fill_path(plot.g, c.shape.xs.data(), c.shape.ys.data(), c.shape.ends.data(),
                static_cast<int>(c.shape.ends.size()), FillRule::EvenOdd);
      EXPECT_TRUE(plot.rec->fills.empty());
      // Along the lines u, across them v (counter-clockwise on the page, y down).
      const double ca = std::cos(angle * kPi / 180), sa = std::sin(angle * kPi / 180);
      auto u_of = [&](double x, double y) { return x * ca - y * sa; };
      auto v_of = [&](double x, double y) { return x * sa + y * ca; };
      std::map<long, std::vector<std::pair<double, double>>> pieces;  // line k: u ranges
      for (const auto& l : plot.polylines()) {
        const double v = v_of(l[0].x, l[0].y);
        const long k = std::lround(v / spacing);
        if (l.size() == 2 && std::fabs(v - k * spacing) < 1e-6 &&
            std::fabs(v_of(l[1].x, l[1].y) - v) < 1e-6) {  // else a piece of the outline
          const double ua = u_of(l[0].x, l[0].y), ub = u_of(l[1].x, l[1].y);
          pieces[k].emplace_back(std::min(ua, ub), std::max(ua, ub));
        }
      }
      auto want = [&](double u, double v) {
        const double x = u * ca + v * sa, y = v * ca - u * sa;
        return x > c.x0 && x < c.x1 && y > c.y0 && y < c.y1 &&
               (!c.circle || std::hypot(x - ccx, y - ccy) < cr) && inside(c.shape, x, y);
      };
      // Every line through the window where the shape is, sampled every unit.
      const auto [sx0, sx1] = std::minmax_element(c.shape.xs.begin(), c.shape.xs.end());
      const auto [sy0, sy1] = std::minmax_element(c.shape.ys.begin(), c.shape.ys.end());
      double u0 = HUGE_VAL, u1 = -HUGE_VAL, v0 = HUGE_VAL, v1 = -HUGE_VAL;
      for (const double x : {std::max(c.x0, *sx0 - 10), std::min(c.x1, *sx1 + 10)}) {
        for (const double y : {std::max(c.y0, *sy0 - 10), std::min(c.y1, *sy1 + 10)}) {
          u0 = std::min(u0, u_of(x, y));
          u1 = std::max(u1, u_of(x, y));
          v0 = std::min(v0, v_of(x, y));
          v1 = std::max(v1, v_of(x, y));
        }
      }
      int checked = 0, wrong = 0;
      for (long k = std::lround(std::ceil(v0 / spacing)); k * spacing <= v1; ++k) {
        for (double u = u0 + 0.25; u < u1; u += 1.0) {
          const bool w = want(u, k * spacing);
          if (w != want(u - 1e-3, k * spacing) || w != want(u + 1e-3, k * spacing)) {
            continue;  // on an edge: either answer is right
          }
          bool got = false;
          for (const auto& [a, b] : pieces[k]) {
            got = got || (u >= a && u <= b);
          }
          ++checked;
          if (got != w && ++wrong <= 3) {
            ADD_FAILURE() << "line " << k << " at u = " << u << ": hatched " << got;
          }
        }
      }
      EXPECT_GT(checked, 1000);
      EXPECT_EQ(wrong, 0);
    }
  }
}

TEST(Hatching, PatternsAndTheFillsThatStaySolid) {
  // Catches shdpat and myptrn taking bad values, pattern 0 filling or 16 hatching, a
  // hatched fill that leaves the caller's polyline continuing from a hatch line, zorini
  // not resetting the pattern, and glyphs, symbols and point() taking the pattern of the
  // chart.
  Plot plot;
  const double xs[] = {100, 300, 300, 100}, ys[] = {100, 100, 200, 200};
  api::shdpat(plot.g, 0);
  fill_polygon(plot.g, xs, ys, 4);
  EXPECT_TRUE(plot.rec->fills.empty());
  EXPECT_EQ(plot.traced(), "100,100 300,100 300,200 100,200 100,100");

  plot.rec->points.clear();
  api::shdpat(plot.g, 4);  // horizontal lines 24 apart: at y = 120, 144, 168, 192
  move_to(plot.g, 10, 10);
  fill_polygon(plot.g, xs, ys, 4);
  draw_to(plot.g, 20, 20);
  EXPECT_EQ(plot.traced(),
            "100,120 300,120; 100,144 300,144; 100,168 300,168; 100,192 300,192; "
            "100,100 300,100 300,200 100,200 100,100; 10,10 20,20");

  const int angles[] = {30, -30}, bad_spacings[] = {5, 0}, spacings[] = {5, 10000};
  api::myptrn(plot.g, angles, bad_spacings, 2);
  api::myptrn(plot.g, angles, spacings, 0);
  api::shdpat(plot.g, 17);
  api::myptrn(plot.g, angles, spacings, 2);
  EXPECT_EQ(plot.g.pipe.pattern.user[1].angle, 150);
  EXPECT_EQ(plot.text(),
            " <<<< Warning 2: Incorrect parameter in test!   ( 0)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 0)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 17)\n");

  plot.rec->points.clear();
  text_defaults(plot.g);
  api::helve(plot.g);  // an outline font: every glyph is a fill
  api::messag(plot.g, "A", 500, 500);
  api::symbol(plot.g, 13, 600, 600);
  api::point(plot.g, 700, 700, 10, 10, 3);
  EXPECT_EQ(plot.rec->fills.size(), 3U);  // the glyph, the filled circle and the point

  Plot fresh;
  fill_polygon(fresh.g, xs, ys, 4);
  EXPECT_EQ(fresh.rec->fills.size(), 1U);  // solid again in a new plot
}

TEST(Sector, WholeArcsWherePossibleElseRoundPolygons) {
  // Catches sectors sent to drivers without arcs, angles not turned into the device's
  // frame (mirrored in plot units, a quarter turn on landscape PostScript), sectors
  // reaching out of the clip region sent whole, polygons too coarse to look round or of
  // the wrong area, a full ring with a seam, the bad input of sector, and the colour not
  // given back.
  Plot raw("GKSL", true, kCapFill | kCapSectors);  // plot units: y grows downwards
  api::sector(raw.g, 400, 500, 0, 100, 30, 120, 5);
  ASSERT_EQ(raw.rec->sectors.size(), 1U);
  const Sector s = raw.rec->sectors[0];
  EXPECT_EQ((std::array{s.x, s.y, s.r1, s.r2, s.start, s.end}),
            (std::array<double, 6>{400, 500, 0, 100, 240, 330}));
  EXPECT_EQ(raw.rec->values, (std::vector<int>{5, 255}));
  Plot ps("PS  ", false, kCapFill | kCapSectors);
  api::sector(ps.g, 400, 500, 20, 100, 30, 120, 5);
  ASSERT_EQ(ps.rec->sectors.size(), 1U);
  EXPECT_NEAR(ps.rec->sectors[0].start, 120, 1e-9);  // landscape: the page is turned
  EXPECT_NEAR(ps.rec->sectors[0].end, 210, 1e-9);
  EXPECT_NEAR(ps.rec->sectors[0].r1 / ps.rec->sectors[0].r2, 0.2, 1e-12);

  // Reaching over the clip rectangle (left edge 1300), or a driver without arcs: polygons
  // with every corner on a radius (or the clip edge), of the sector's area.
  for (const bool clipped : {true, false}) {
    Plot p("GKSL", true, clipped ? kCapFill | kCapSectors : kCapFill);
    api::clpwin(p.g, clipped ? 1300 : 0, 0, 1600, 2000);
    api::sector(p.g, 1200, 1000, clipped ? 0 : 150, 300, clipped ? -50 : 0, clipped ? 20 : 400, 5);
    EXPECT_TRUE(p.rec->sectors.empty());
    ASSERT_EQ(p.rec->fills.size(), 1U);
    const auto& f = p.rec->fills[0];
    EXPECT_EQ(f.ends.size(), clipped ? 1U : 2U);  // a ring is two circles, without a seam
    double area = 0;
    std::size_t start = 0;
    for (const int e : f.ends) {
      for (std::size_t i = start; i < static_cast<std::size_t>(e); ++i) {
        const std::size_t j = i + 1 == static_cast<std::size_t>(e) ? start : i + 1;
        area += (f.xs[i] * f.ys[j] - f.xs[j] * f.ys[i]) / 2;
        const double r = std::hypot(f.xs[i] - 1200, f.ys[i] - 1000);
        EXPECT_TRUE(std::fabs(r - 150) < 1e-9 || std::fabs(r - 300) < 1e-9 || f.xs[i] == 1300) << r;
      }
      start = static_cast<std::size_t>(e);
    }
    if (!clipped) {  // chords within 0.25 units of the arcs: the inner circle runs backwards
      EXPECT_NEAR(std::fabs(area), kPi * (300 * 300 - 150 * 150), 0.25 * 2 * kPi * 450);
    }
  }

  Plot bad("GKSL", true, kCapFill);
  api::sector(bad.g, 400, 500, 0, 100, 60, 60, 5);
  api::sector(bad.g, 400, 500, 0, 100, kNaN, 60, 5);
  api::sector(bad.g, 400, 500, -100, 50, 0, 90, 5);  // drawn from 50 to 100
  EXPECT_EQ(bad.rec->fills.size(), 1U);
  EXPECT_EQ(bad.text(),
            " <<<< Warning 8: Start angle greater/equal end angle in test!\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( nan)\n"
            " <<<< Warning 1: Negative parameter in test!   ( -100)\n"
            " <<<< Warning 7: First radius greater than second radius in test!\n");
}

// An axis system 0..10 in both directions, one unit = 100 plot units, y up from 1100.
struct AreaPlot : Plot {
  AreaPlot() {
    text_defaults(g);
    axes_defaults(g);
    curve_defaults(g);
    api::frame(g, 0);
    api::setgrf(g, "NONE", "NONE", "NONE", "NONE");
    api::axspos(g, 100, 1100);
    api::axslen(g, 1001, 1001);
    api::graf(g, 0, 10, 0, 1, 0, 10, 0, 1);
    end_polyline(g);
    rec->fills.clear();
  }
  ~AreaPlot() { g.core.level = 0; }
  // The outline of the fills so far, "x,y x,y ...".
  std::string outline() {
    std::string out;
    for (const auto& f : rec->fills) {
      EXPECT_EQ(f.rule, FillRule::EvenOdd);
      for (std::size_t i = 0; i < f.xs.size(); ++i) {
        out += (out.empty() ? "" : " ") + std::to_string(static_cast<int>(f.xs[i])) + "," +
               std::to_string(static_cast<int>(f.ys[i]));
      }
    }
    rec->fills.clear();
    return out;
  }
};

TEST(Areas, OutlinesOfRlareaAndShdcrvAndTheirLegendBoxes) {
  // Catches the second curve not reversed (crossing curves filled as the wrong bow-tie),
  // step edges of STEP and STAI mixed up or missing, splines accepted without warning 14,
  // points that are not numbers kept in the outline or not counted, too few points
  // accepted, and areas that leave no filled box in their pattern for the legend.
  AreaPlot p;
  const double x1[] = {1, 2, 3}, y1[] = {1, 3, 2};
  const double x2[] = {1, 3}, y2[] = {2, 2};  // a baseline that curve 1 crosses
  api::shdcrv(p.g, x1, y1, 3, x2, y2, 2);
  EXPECT_EQ(p.outline(), "200,1000 300,800 400,900 400,900 200,900");
  api::polcrv(p.g, "STEP");
  api::shdcrv(p.g, x1, y1, 3, x2, y2, 2);
  EXPECT_EQ(p.outline(), "200,1000 300,1000 300,800 400,800 400,900 400,900 400,900 200,900");
  api::polcrv(p.g, "STAI");
  api::shdcrv(p.g, x1, y1, 3, x2, y2, 2);
  EXPECT_EQ(p.outline(), "200,1000 200,800 300,800 300,900 400,900 400,900 200,900 200,900");
  api::polcrv(p.g, "SPLI");
  api::setclr(p.g, 40);
  api::shdpat(p.g, 9);
  api::shdcrv(p.g, x1, y1, 3, x2, y2, 2);  // hatched: lines, no fill
  EXPECT_EQ(p.outline(), "");
  api::shdpat(p.g, 16);
  const double xa[] = {1, kNaN, 5, 5}, ya[] = {1, 1, 1, 5};
  api::rlarea(p.g, xa, ya, 4);
  EXPECT_EQ(p.outline(), "200,1000 600,1000 600,600");
  EXPECT_EQ(p.g.core.nans, 1);
  api::rlarea(p.g, xa, ya, 2);
  api::shdcrv(p.g, xa, ya, 1, xa, ya, 1);
  api::shdcrv(p.g, xa, ya, 0, xa, ya, 3);
  EXPECT_EQ(p.outline(), "");
  EXPECT_EQ(p.text(),
            " <<<< Warning 14: Linear interpolation must be used in test!\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 2)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 2)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 0)\n");
  ASSERT_EQ(p.g.curves.curves, 5);
  EXPECT_EQ(p.g.curves.records[3].pattern, 9);
  EXPECT_EQ(p.g.curves.records[3].colour, 40);
  EXPECT_EQ(p.g.curves.records[4].pattern, 16);
}

}  // namespace
}  // namespace zorvel

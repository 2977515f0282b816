// Unit tests of polar axis systems: the conversion of a radius and an angle for every
// direction and zero of polopt, curves clipped to the circle, wedges, and the warnings.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "api_decl.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr double kPi = 3.14159265358979323846;

// A polar system in the square (500, 500) .. (1500, 1500): centre (1000, 1000), radius
// 500 plot units for the radius 2 (250 plot units per unit).
struct PolarPlot : recording::Plot {
  PolarPlot() : Plot("PS  ", true, kCapFill | kCapText) {
    text_defaults(g);
    axes_defaults(g);
    api::axspos(g, 500, 1500);
    api::axslen(g, 1001, 1001);
  }
  ~PolarPlot() { g.core.level = 0; }
  void open() { api::grafp(g, 2.0, 0.0, 0.5, 0.0, 30.0); }
};

TEST(Polar, ConversionForEveryDirectionAndZero) {
  // Catches: a direction with the wrong sign, a zero turned the wrong way or by the wrong
  // amount, degrees taken as radians (or the other way), the page's downward y not
  // reversed, and pagorg not applied to polpos's y.
  PolarPlot p;
  GlobalBlock& g = p.g;
  p.open();
  ASSERT_EQ(g.core.level, 2);
  const char* zeros[4] = {"EAST", "NORT", "WEST", "SOUT"};
  const char* dirs[2] = {"ANTI", "CLOC"};
  api::polopt(g, "DEGR", "ANGL");
  for (int z = 0; z < 4; ++z) {
    for (int d = 0; d < 2; ++d) {
      SCOPED_TRACE(std::string(zeros[z]) + " " + dirs[d]);
      api::polopt(g, zeros[z], "ZERO");
      api::polopt(g, dirs[d], "DIRE");
      for (const double phi : {0.0, 30.0, 90.0, 200.0}) {
        const double a = (90.0 * z + (d == 0 ? phi : -phi)) * kPi / 180.0;
        double x = 0.0, y = 0.0;
        api::polpos(g, 1.5, phi, &x, &y);
        EXPECT_NEAR(x, 1000.0 + 375.0 * std::cos(a), 1e-9);
        EXPECT_NEAR(y, 1000.0 - 375.0 * std::sin(a), 1e-9);
      }
    }
  }
  // Radians by default; a negative radius lies opposite its angle.
  api::polopt(g, "RADI", "ANGL");
  api::polopt(g, "EAST", "ZERO");
  api::polopt(g, "ANTI", "DIRE");
  double x = 0.0, y = 0.0;
  api::polpos(g, 2.0, kPi / 2, &x, &y);
  EXPECT_NEAR(x, 1000.0, 1e-9);
  EXPECT_NEAR(y, 500.0, 1e-9);
  api::polpos(g, -1.0, 0.0, &x, &y);
  EXPECT_NEAR(x, 750.0, 1e-9);
  // From the bottom of the page with pagorg.
  api::pagorg(g, "BOTT");
  api::polpos(g, 2.0, kPi / 2, &x, &y);
  EXPECT_NEAR(y, g.page.height - 500.0, 1e-9);
  EXPECT_EQ(p.text(), "");
}

TEST(Polar, CurvesWedgesAndClipping) {
  // Catches: curve converting x and y as a rectangular system would, lines running past
  // the circle, text (titles, legends) clipped by the circle, wedges of FBAR that are not
  // centred on their angle, too wide, or longer than the largest radius, and a clip
  // circle that outlives endgrf.
  PolarPlot p;
  GlobalBlock& g = p.g;
  api::hwfont(g);
  p.open();
  p.rec->points.clear();
  // From radius 1 at 0 to radius 4 at pi/2: cut where it leaves the circle of radius 2.
  const double r[2] = {1.0, 4.0};
  const double phi[2] = {0.0, kPi / 2};
  g.curves.scale_check = false;  // the point beyond the circle is meant
  api::curve(g, r, phi, 2);
  const auto lines = p.polylines();
  ASSERT_EQ(lines.size(), 1U);
  ASSERT_EQ(lines[0].size(), 2U);
  EXPECT_NEAR(lines[0][0].x, 1250.0, 1e-9);
  EXPECT_NEAR(lines[0][0].y, 1000.0, 1e-9);
  EXPECT_NEAR(std::hypot(lines[0][1].x - 1000.0, lines[0][1].y - 1000.0), 500.0, 0.01);

  // Text outside the circle is drawn.
  p.rec->texts.clear();
  api::messag(g, "outside", 100, 100);
  EXPECT_EQ(p.rec->texts.size(), 1U);

  // Wedges: 0.8 of the 90 degrees between the points, the radius 3 cut to 2.
  p.rec->fills.clear();
  api::polcrv(g, "FBAR");
  const double len[2] = {1.0, 3.0};
  const double dir[2] = {0.0, kPi / 2};
  api::curve(g, len, dir, 2);
  ASSERT_EQ(p.rec->fills.size(), 2U);
  for (std::size_t i = 0; i < 2; ++i) {
    SCOPED_TRACE(i);
    const recording::Filled& f = p.rec->fills[i];
    const std::size_t n = f.xs.size();
    EXPECT_NEAR(f.xs[0], 1000.0, 1e-9);
    EXPECT_NEAR(f.ys[0], 1000.0, 1e-9);
    const double a0 = std::atan2(1000.0 - f.ys[1], f.xs[1] - 1000.0);
    const double a1 = std::atan2(1000.0 - f.ys[n - 1], f.xs[n - 1] - 1000.0);
    EXPECT_NEAR(a1 - a0, 0.8 * kPi / 2, 1e-9);
    EXPECT_NEAR(0.5 * (a0 + a1), dir[i], 1e-9);
    EXPECT_NEAR(std::hypot(f.xs[1] - 1000.0, f.ys[1] - 1000.0), i == 0 ? 250.0 : 500.0, 1e-9);
  }
  api::endgrf(g);
  EXPECT_FALSE(g.pipe.circle);
  EXPECT_EQ(p.text(), "");
}

TEST(Polar, BadInput) {
  // Catches: a log axis drawn or kept logarithmic inside the system and not restored
  // after it, yposn answering, polar routines working outside a polar system, a
  // degenerate system entering level 2, and splines accepted.
  PolarPlot p;
  GlobalBlock& g = p.g;
  double x = 1.0, y = 1.0;
  api::polpos(g, 1.0, 0.0, &x, &y);
  EXPECT_EQ(x, 0.0);
  g.core.level = 2;
  api::polgrd(g, 1, 1);
  g.core.level = 1;
  api::grafp(g, 0.0, 0.0, 0.5, 0.0, 30.0);
  api::grafp(g, 2.0, 0.0, 0.5, 0.0, 0.0);
  EXPECT_EQ(g.core.level, 1);
  api::axsscl(g, "LOG", "X");
  p.open();
  EXPECT_FALSE(g.axes.log[kAxisX]);
  EXPECT_EQ(api::yposn(g, 1.0), 0.0);
  api::polcrv(g, "SPLI");
  const double r[3] = {1, 1, 1}, phi[3] = {0, 1, 2};
  api::curve(g, r, phi, 3);
  api::endgrf(g);
  EXPECT_TRUE(g.axes.log[kAxisX]);
  EXPECT_EQ(p.text(),
            " <<<< Warning 261: Routine needs a polar axis system in test!\n"
            " <<<< Warning 261: Routine needs a polar axis system in test!\n"
            " <<<< Warning 10: Begin and end of scaling are equal in test!\n"
            " <<<< Warning 50: Incorrect sign for step in test!\n"
            " <<<< Warning 9: Step equal zero in test!\n"
            " <<<< Warning 13: Linear scaling must be used in test!\n"
            " <<<< Warning 109: Routine does not work for polar axis systems in test!\n"
            " <<<< Warning 160: Bad interpolation method for polar scaling in test!\n");
}

}  // namespace
}  // namespace zorvel

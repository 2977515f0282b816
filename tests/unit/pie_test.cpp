// Unit tests of pie charts: the sectors' angles, areas and colours, their labels and
// legend entries, solid pies, and the warnings of bad input.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "api_decl.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

using recording::Filled;

constexpr double kPi = 3.14159265358979323846;

// A pie in the square (500, 500) .. (1500, 1500): centre (1000, 1000), radius 500 with
// the labels inside; text in the device's font, so that labels arrive as text runs.
struct PiePlot : recording::Plot {
  PiePlot() : Plot("PS  ", true, kCapFill | kCapText) {
    text_defaults(g);
    axes_defaults(g);
    api::axspos(g, 500, 1500);
    api::axslen(g, 1001, 1001);
    api::hwfont(g);
  }
  ~PiePlot() { g.core.level = 0; }
  void open_legend(int lines) {
    api::legini(g, {buf, kUnknownSize}, lines, 8);
    const char* names[] = {"A", "B", "C", "D"};
    for (int i = 0; i < lines; ++i) {
      api::leglin(g, {buf, kUnknownSize}, names[i], i + 1);
    }
  }
  std::vector<std::string> texts() const {
    std::vector<std::string> out;
    for (const auto& t : rec->texts) {
      out.push_back(t.utf8);
    }
    return out;
  }
  char buf[4 * 8 + 1] = {};
};

// Page angle in degrees (anticlockwise, 0 at 3 o'clock) of a point seen from the centre.
double angle_of(double x, double y) { return std::atan2(1000.0 - y, x - 1000.0) * 180.0 / kPi; }

// Whether the angles a and b are the same (modulo 360 degrees).
bool same_angle(double a, double b) { return std::fabs(std::remainder(a - b, 360.0)) < 1e-9; }

// Whether the arc of a sector (its points but the last, the centre) runs between the
// angles a and b, in either order.
bool arc_between(const Filled& f, double a, double b) {
  const std::size_t n = f.xs.size();
  const double first = angle_of(f.xs[0], f.ys[0]);
  const double last = angle_of(f.xs[n - 2], f.ys[n - 2]);
  return (same_angle(first, a) && same_angle(last, b)) ||
         (same_angle(first, b) && same_angle(last, a));
}

double area(const Filled& f) {
  double a = 0.0;
  const std::size_t n = f.xs.size();
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t j = (i + 1) % n;
    a += f.xs[i] * f.ys[j] - f.xs[j] * f.ys[i];
  }
  return std::fabs(a) / 2.0;
}

TEST(Pie, SectorsFollowTheData) {
  // Catches: the first sector not at 12 o'clock or running anticlockwise by default,
  // spans not proportional to the values, a negative value not taken as its absolute
  // value, colours that are not spread over the shading range or ignore pieclr, pieang's
  // direction not reversing the order, and a pie that does not leave level 2.
  PiePlot p;
  GlobalBlock& g = p.g;
  const double v[3] = {1.0, -2.0, 1.0};
  api::piegrf(g, "", 0, v, 3);
  EXPECT_EQ(p.text(), " <<<< Warning 1: Negative parameter in test!\n");
  EXPECT_EQ(g.core.level, 2);
  ASSERT_EQ(p.rec->fills.size(), 3U);
  // Each sector: its arc, then the centre.
  const double starts[3] = {90.0, 0.0, -180.0};
  const double ends[3] = {0.0, -180.0, 90.0};
  const double shares[3] = {0.25, 0.5, 0.25};
  for (std::size_t i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    const Filled& f = p.rec->fills[i];
    const std::size_t n = f.xs.size();
    EXPECT_NEAR(f.xs[n - 1], 1000.0, 1e-9);
    EXPECT_NEAR(f.ys[n - 1], 1000.0, 1e-9);
    EXPECT_TRUE(arc_between(f, starts[i], ends[i]));
    EXPECT_NEAR(area(f) / (kPi * 500.0 * 500.0), shares[i], 0.01 * shares[i]);
    EXPECT_NEAR(std::hypot(f.xs[0] - 1000.0, f.ys[0] - 1000.0), 500.0, 1e-9);
  }
  // The default colours: the shading range in equal steps from its middles.
  for (std::size_t i = 0; i < 3; ++i) {
    const int index = static_cast<int>(1 + 253 * (i + 0.5) / 3 + 0.5);
    const Rgb want = colour_rgb(g, index);
    EXPECT_EQ(p.rec->fills[i].rgb.r, want.r);
    EXPECT_EQ(p.rec->fills[i].rgb.g, want.g);
  }
  api::endgrf(g);
  EXPECT_EQ(g.core.level, 1);

  // Anticlockwise from 3 o'clock; sector 2 in a colour of pieclr's.
  p.rec->fills.clear();
  api::pieang(g, 0.0, "ANTI");
  const int colours[2] = {-1, explicit_rgb(10, 20, 30)};
  const int patterns[2] = {-1, -1};
  api::pieclr(g, colours, patterns, 2);
  api::piegrf(g, "", 0, v, 3);
  ASSERT_EQ(p.rec->fills.size(), 3U);
  const Filled& second = p.rec->fills[1];
  EXPECT_TRUE(arc_between(second, 90.0, 270.0));
  EXPECT_EQ(second.rgb.r, 10);
  EXPECT_EQ(second.rgb.b, 30);
  api::endgrf(g);
}

TEST(Pie, LabelsAndLegendEntries) {
  // Catches: labels away from their sector's middle, the wrong texts or digits of
  // labels "PIE" and labdig, legend lines not taken nlin at a time, sectors that leave
  // no legend entry, and a missing legend that is not reported (warning 15).
  PiePlot p;
  GlobalBlock& g = p.g;
  const double v[3] = {1.0, 2.0, 1.0};
  p.open_legend(3);
  api::piegrf(g, p.buf, 1, v, 3);
  EXPECT_EQ(p.texts(),
            (std::vector<std::string>{"A", "25.0%", "B", "50.0%", "C", "25.0%"}));
  EXPECT_EQ(g.curves.curves, 3);
  ASSERT_EQ(p.rec->fills.size(), 3U);
  // Every label in the middle of its sector, at about 0.62 of the radius.
  const double middles[3] = {45.0, -90.0, 135.0};
  for (std::size_t i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    const GlyphPlace& first = p.rec->texts[2 * i + 1].glyphs.front();
    const GlyphPlace& last = p.rec->texts[2 * i + 1].glyphs.back();
    const double x = 0.5 * (first.x + last.x);
    const double y = first.y;
    EXPECT_NEAR(std::remainder(angle_of(x, y) - middles[i], 360.0), 0.0, 12.0);
    EXPECT_NEAR(std::hypot(x - 1000.0, y - 1000.0), 310.0, 50.0);
    // The entry of the legend repeats the sector's colour as a filled box.
    const Rgb c = colour_rgb(g, g.curves.records[i].colour);
    EXPECT_EQ(c.r, p.rec->fills[i].rgb.r);
    EXPECT_EQ(g.curves.records[i].pattern, kSolidPattern);
  }
  api::endgrf(g);

  // Two legend lines per sector; both numbers with their digits.
  p.rec->texts.clear();
  p.open_legend(4);
  api::labels(g, "BOTH", "PIE");
  api::labdig(g, -1, "DAT");
  api::labdig(g, 2, "PER");
  const double two[2] = {3.0, 1.0};
  api::piegrf(g, p.buf, 2, two, 2);
  EXPECT_EQ(p.texts(),
            (std::vector<std::string>{"A", "B", "3 (75.00%)", "C", "D", "1 (25.00%)"}));
  api::endgrf(g);

  // No legend: the values alone, after warning 15; labels "NONE": nothing at all.
  PiePlot q;
  api::labdig(q.g, 0, "PIE");
  api::piegrf(q.g, "", 1, two, 2);
  EXPECT_EQ(q.text(), " <<<< Warning 15: No call to legini before in test!\n");
  EXPECT_EQ(q.texts(), (std::vector<std::string>{"75.%", "25.%"}));
  api::endgrf(q.g);
  q.rec->texts.clear();
  api::labels(q.g, "NONE", "PIE");
  api::piegrf(q.g, "", 0, two, 2);
  EXPECT_TRUE(q.rec->texts.empty());
  api::endgrf(q.g);
}

TEST(Pie, SolidPieAndDonut) {
  // Catches: walls drawn after the tops (they would cover them), walls in the top's own
  // colour, a front wall missing, and a donut whose hole is filled.
  PiePlot p;
  GlobalBlock& g = p.g;
  const double v[2] = {1.0, 1.0};
  api::pietyp(g, "3D");
  api::pieang(g, 0.0, "CLOC");
  api::piegrf(g, "", 0, v, 2);
  // Sector 1 runs clockwise from 3 to 9 o'clock over the front: one outer wall. Sector 2
  // lies behind: no wall. Then the two tops.
  ASSERT_EQ(p.rec->fills.size(), 3U);
  const Filled& wall = p.rec->fills[0];
  const Filled& top = p.rec->fills[1];
  EXPECT_EQ(wall.rgb.r, static_cast<int>(top.rgb.r * 0.72 + 0.5));
  EXPECT_EQ(wall.rgb.b, static_cast<int>(top.rgb.b * 0.72 + 0.5));
  double lowest_wall = 0.0, lowest_top = 0.0;
  for (const double y : wall.ys) {
    lowest_wall = std::max(lowest_wall, y);
  }
  for (const double y : top.ys) {
    lowest_top = std::max(lowest_top, y);
  }
  EXPECT_GT(lowest_wall, lowest_top + 10.0);
  api::endgrf(g);

  // A flat donut: no point of a sector inside the hole.
  p.rec->fills.clear();
  api::pietyp(g, "2D");
  api::pierad(g, 0.5);
  api::piegrf(g, "", 0, v, 2);
  ASSERT_EQ(p.rec->fills.size(), 2U);
  for (const Filled& f : p.rec->fills) {
    for (std::size_t i = 0; i < f.xs.size(); ++i) {
      EXPECT_GE(std::hypot(f.xs[i] - 1000.0, f.ys[i] - 1000.0), 250.0 - 1e-9);
    }
  }
  api::endgrf(g);
}

TEST(Pie, BadInput) {
  // Catches: a pie of nothing drawn or entering level 2, values that are not numbers
  // taken as they are, a sum that overflows, and settings out of range stored.
  PiePlot p;
  GlobalBlock& g = p.g;
  const double zero[2] = {0.0, -0.0};
  api::piegrf(g, "", 0, zero, 2);
  EXPECT_EQ(g.core.level, 1);
  EXPECT_TRUE(p.rec->fills.empty());
  const double nan[2] = {std::nan(""), 1.0};
  api::piegrf(g, "", 0, nan, 2);
  EXPECT_EQ(p.rec->fills.size(), 1U);
  api::endgrf(g);
  // Values whose sum overflows still make halves.
  const double huge[2] = {1e308, 1e308};
  api::piegrf(g, "", 0, huge, 2);
  ASSERT_EQ(p.rec->fills.size(), 3U);
  EXPECT_NEAR(area(p.rec->fills[2]) / (kPi * 500.0 * 500.0), 0.5, 0.005);
  api::endgrf(g);
  api::piegrf(g, "", 0, zero, 0);
  api::pierad(g, 1.0);
  api::pierad(g, std::nan(""));
  const double out[1] = {-0.5};
  api::pieexp(g, out, 1);
  api::pieopt(g, 0.2, 0.0);
  api::pieang(g, HUGE_VAL, "CLOC");
  EXPECT_EQ(p.text(),
            " <<<< Warning 29: Sum of data is zero in test!\n"
            " <<<< Warning 2: Incorrect parameter in test!   (xray)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 0)\n"
            " <<<< Warning 7: First radius greater than second radius in test!   ( 1)\n"
            " <<<< Warning 7: First radius greater than second radius in test!   ( nan)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( -0.5)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 0)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( inf)\n");
  EXPECT_EQ(g.charts.pie.inner, 0.0);
  EXPECT_TRUE(g.charts.pie.explode.empty());
  EXPECT_EQ(g.charts.pie.elevation, 40.0);
}

}  // namespace
}  // namespace zorvel

// Colour tables, named colours and their device adjustments, the RGB routines and the
// colour that reaches the driver.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api_decl.h"
#include "core/global_block.h"
#include "draw/colour.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

using recording::Plot;

int entry(const GlobalBlock& g, int i) { return g.colour.table[static_cast<std::size_t>(i)]; }

TEST(ColourTables, RampsPassThroughTheirRowsSmoothly) {
  // Catches a wrong row, a ramp that jumps between rows, and entries 0 and 255 that are
  // not black and white.
  Plot plot(201);
  GlobalBlock& g = plot.g;
  api::setvlt(g, "RAIN");
  EXPECT_EQ(entry(g, 0), 0x000000);
  EXPECT_EQ(entry(g, 1), 0x220044);
  EXPECT_EQ(entry(g, 30), 0x0000ff);
  EXPECT_EQ(entry(g, 128), 0x00ff52);
  EXPECT_EQ(entry(g, 254), 0xff0000);
  EXPECT_EQ(entry(g, 255), 0xffffff);
  EXPECT_EQ(entry(g, 40), 0x0026ff);  // halfway between 0000ff and 004cff
  api::setvlt(g, "SPEC");
  EXPECT_EQ(entry(g, 1), 0xff00ff);
  EXPECT_EQ(entry(g, 150), 0x00ff0e);
  EXPECT_EQ(entry(g, 254), 0xff0000);
  // No step between neighbours is larger than the steepest stretch between two rows.
  for (int i = 2; i < 254; ++i) {
    for (int shift = 0; shift <= 16; shift += 8) {
      const int a = (entry(g, i) >> shift) & 0xff;
      const int b = (entry(g, i + 1) >> shift) & 0xff;
      EXPECT_LE(std::abs(a - b), 31) << "entry " << i;
    }
  }
  api::setvlt(g, "TEMP");
  EXPECT_EQ(entry(g, 0), 0x000000);
  EXPECT_EQ(entry(g, 100), 0xaa0000);  // red 1.7 * 100
  EXPECT_EQ(entry(g, 255), 0xffffff);
}

TEST(ColourTables, ReversedTablesAndDeviceAdjustments) {
  // Catches a reversed table that is not reversed, VGA and SMAL paper swaps missing,
  // and the top index of the small tables.
  Plot screen(201);
  api::setvlt(screen.g, "RGRE");
  EXPECT_EQ(entry(screen.g, 0), 0xffffff);
  EXPECT_EQ(entry(screen.g, 255), 0x000000);
  Plot post(501);
  api::setvlt(post.g, "VGA");
  EXPECT_EQ(entry(post.g, 0), 0xffffff);
  EXPECT_EQ(entry(post.g, 15), 0x000000);
  EXPECT_EQ(post.g.colour.top, 15);
  api::setvlt(post.g, "SMAL");
  EXPECT_EQ(entry(post.g, 0), 0xffffff);  // entries 0 and 1 swap on paper
  EXPECT_EQ(entry(post.g, 1), 0x000000);
  EXPECT_EQ(post.g.colour.top, 9);
  EXPECT_EQ(post.g.colour.foreground, 1);
}

TEST(ColourTables, BlackOnScreensAndPaper) {
  // Catches the deliberate white "black" of the small table on screen-type devices
  // being lost, or leaking onto PostScript.
  Plot screen(201);
  api::setvlt(screen.g, "SMAL");
  api::color(screen.g, "BLAC");
  EXPECT_EQ(screen.g.colour.current, explicit_rgb(255, 255, 255));
  Plot post(501);
  api::setvlt(post.g, "SMAL");
  api::color(post.g, "BLAC");
  EXPECT_EQ(post.g.colour.current, explicit_rgb(0, 0, 0));
}

TEST(ColourTables, DefaultsOfTheStartOfAPlot) {
  // Catches a wrong default table or reversed mode: PS and EPS draw black on white,
  // PSCL white on black, and the first colour reaches the driver.
  Plot ps(504, false);
  ps.g.core.effective_screen_mode = 2;  // what zorini resolves AUTO to for PS
  init_colours(ps.g);
  ASSERT_FALSE(ps.rec->colours.empty());
  EXPECT_EQ(ps.rec->colours.back().r, 0);
  EXPECT_EQ(colour_rgb(ps.g, ps.g.colour.background).r, 255);
  Plot pscl(502, false);
  init_colours(pscl.g);
  EXPECT_EQ(pscl.rec->colours.back().r, 255);
  EXPECT_EQ(colour_rgb(pscl.g, pscl.g.colour.background).r, 0);
  // The cycle for curves: WHIT, RED, ..., MAGE, then WHIT again.
  EXPECT_EQ(pscl.g.colour.cycle[1], explicit_rgb(255, 0, 0));
  EXPECT_EQ(pscl.g.colour.cycle[7], explicit_rgb(255, 0, 255));
  EXPECT_EQ(pscl.g.colour.cycle[8], pscl.g.colour.cycle[0]);
}

TEST(ColourValues, RgbBoundsAndRounding) {
  // Catches bounds without the single-precision tolerance (1.0005 refused) or too wide
  // (1.002 accepted), wrong rounding, and red and blue swapped in explicit values.
  Plot plot(504);
  GlobalBlock& g = plot.g;
  api::setrgb(g, 1.0005, 0, 0);
  EXPECT_EQ(g.colour.current, 0x010000ff);
  api::setrgb(g, 1.002, 0, 0);
  EXPECT_EQ(g.colour.current, 0x010000ff);
  EXPECT_NE(plot.messages().find("Warning 2: Incorrect parameter in test!   ( 1.002)"),
            std::string::npos);
  EXPECT_EQ(api::intrgb(g, 0, 0, 1), 0x01ff0000);
  EXPECT_EQ(api::intrgb(g, 0.5, 0.5, 0.5), 0x01808080);
  EXPECT_EQ(api::intrgb(g, -0.0005, 0.2, 0.2), 0x01333300);
  EXPECT_EQ(api::intrgb(g, -0.002, 0, 0), -1);
  api::color(g, "GRAY");
  EXPECT_EQ(g.colour.current, 0x01808080);
  const Rgb rgb = plot.rec->colours.back();
  EXPECT_EQ(rgb.r, 128);
  EXPECT_EQ(rgb.b, 128);
}

TEST(ColourValues, NearestIndexTakesTheFirstOfEqualDistances) {
  // Catches a search that lets a later entry of the same distance win, or that searches
  // beyond the small table's nine entries.
  Plot plot(201);
  GlobalBlock& g = plot.g;
  api::setvlt(g, "SMAL");
  api::setind(g, 2, 100 / 255.0, 0, 0);
  api::setind(g, 6, 120 / 255.0, 0, 0);
  api::setind(g, 9, 110 / 255.0, 0, 0);  // beyond the small table: never chosen
  EXPECT_EQ(api::indrgb(g, 110 / 255.0, 0, 0), 2);
  api::setind(g, 2, 120 / 255.0, 0, 0);
  api::setind(g, 6, 100 / 255.0, 0, 0);
  EXPECT_EQ(api::indrgb(g, 110 / 255.0, 0, 0), 2);
  EXPECT_EQ(api::indrgb(g, 1.5, 0, 0), -1);
  api::setind(g, 256, 0, 0, 0);
  const std::string m = plot.messages();
  EXPECT_NE(m.find("( 1.5)"), std::string::npos);
  EXPECT_NE(m.find("( 256)"), std::string::npos);
}

TEST(ColourValues, IndexDevicesGetTheNearestEntry) {
  // Catches explicit RGB values reaching a device that only knows indices (the
  // metafile would write the red component as a colour number).
  Plot plot(201);
  api::setvlt(plot.g, "RAIN");
  api::setrgb(plot.g, 1, 0, 0);
  ASSERT_FALSE(plot.rec->values.empty());
  EXPECT_EQ(plot.rec->values.back(), 254);
  EXPECT_EQ(plot.rec->colours.back().r, 255);
  EXPECT_EQ(plot.g.colour.current, explicit_rgb(255, 0, 0));  // the value is kept
  Plot ps(504);
  api::setrgb(ps.g, 1, 0, 0);
  EXPECT_EQ(ps.rec->values.back(), explicit_rgb(255, 0, 0));  // true colour: exact
  api::setclr(ps.g, 256 + 30);  // an index counts modulo 256
  EXPECT_EQ(ps.rec->values.back(), 30);
}

TEST(ColourValues, HalfAndBackground) {
  // Catches HALF mixing with the wrong colour, and FORE/BACK not being indices.
  Plot plot(504);
  GlobalBlock& g = plot.g;
  api::setvlt(g, "GREY");
  api::color(g, "FORE");
  EXPECT_EQ(g.colour.current, g.colour.foreground);
  api::setrgb(g, 1, 0, 0);
  api::color(g, "HALF");
  const Rgb bg = colour_rgb(g, g.colour.background);
  EXPECT_EQ(g.colour.current, explicit_rgb((255 + bg.r + 1) / 2, (bg.g + 1) / 2, (bg.b + 1) / 2));
  api::color(g, "BACK");
  EXPECT_EQ(g.colour.current, g.colour.background);
}

}  // namespace
}  // namespace zorvel

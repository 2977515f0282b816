// Colour tables and their device adjustments, the bounds and rounding of the RGB
// routines, and the colour that reaches the driver. The golden scenes pin the start
// colours of the PostScript variants; the end-to-end warnings pin the messages.

#include <gtest/gtest.h>

#include <cstdlib>

#include "api_decl.h"
#include "core/global_block.h"
#include "draw/colour.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

using recording::Plot;

int entry(const GlobalBlock& g, int i) { return g.colour.table[static_cast<std::size_t>(i)]; }
int component(int e, int shift) { return (e >> shift) & 0xff; }

TEST(ColourTables, RampsRunSmoothlyFromBlackToWhite) {
  // Catches a ramp that jumps (a wrong row or interpolation), a temperature scale that
  // turns back, and ends that are not black and white.
  Plot plot;
  GlobalBlock& g = plot.g;
  for (const char* table : {"RAIN", "SPEC", "GREY", "TEMP"}) {
    api::setvlt(g, table);
    EXPECT_EQ(entry(g, 0), 0x000000) << table;
    EXPECT_EQ(entry(g, 255), 0xffffff) << table;
    for (int i = 1; i < 254; ++i) {
      for (const int shift : {0, 8, 16}) {
        const int a = component(entry(g, i), shift);
        const int b = component(entry(g, i + 1), shift);
        EXPECT_LE(std::abs(a - b), 31) << table << " entry " << i;
        if (table[0] == 'T') {
          EXPECT_LE(a, b) << table << " entry " << i;
        }
      }
    }
  }
}

TEST(ColourTables, DeviceAdjustments) {
  // Catches a reversed table that is not reversed, the VGA and small tables not swapping
  // their ends on paper, the small table's range, and the deliberate white "black" of the
  // small table on other devices lost or leaking onto paper.
  Plot other;
  api::setvlt(other.g, "RGRE");
  EXPECT_EQ(entry(other.g, 0), 0xffffff);
  EXPECT_EQ(entry(other.g, 255), 0x000000);
  api::setvlt(other.g, "SMAL");
  api::color(other.g, "BLAC");
  EXPECT_EQ(other.g.colour.current, explicit_rgb(255, 255, 255));
  Plot paper("POST");
  api::setvlt(paper.g, "VGA");
  EXPECT_EQ(entry(paper.g, 0), 0xffffff);
  EXPECT_EQ(entry(paper.g, 15), 0x000000);
  EXPECT_EQ(paper.g.colour.top, 15);
  api::setvlt(paper.g, "SMAL");
  EXPECT_EQ(entry(paper.g, 0), 0xffffff);
  EXPECT_EQ(entry(paper.g, 1), 0x000000);
  EXPECT_EQ(paper.g.colour.top, 9);
  EXPECT_EQ(paper.g.colour.foreground, 1);
  api::color(paper.g, "BLAC");
  EXPECT_EQ(paper.g.colour.current, explicit_rgb(0, 0, 0));
}

TEST(ColourValues, RgbBoundsAndRounding) {
  // Catches bounds without the single-precision tolerance (1.0005 refused) or too wide
  // (1.002 accepted), wrong rounding, red and blue swapped in explicit values, and a
  // refused value that changes the colour.
  Plot plot("PS  ");
  GlobalBlock& g = plot.g;
  api::setrgb(g, 1.0005, 0, 0);
  EXPECT_EQ(g.colour.current, 0x010000ff);
  api::setrgb(g, 0, 1.002, 0);
  EXPECT_EQ(g.colour.current, 0x010000ff);
  EXPECT_EQ(api::intrgb(g, 0, 0, 1), 0x01ff0000);
  EXPECT_EQ(api::intrgb(g, 0.5, 0.5, 0.5), 0x01808080);
  EXPECT_EQ(api::intrgb(g, -0.0005, 0.2, 0.2), 0x01333300);
  EXPECT_EQ(api::intrgb(g, -0.002, 0, 0), -1);
  api::color(g, "GRAY");
  EXPECT_EQ(g.colour.current, 0x01808080);
  const Rgb rgb = plot.rec->colours.back();
  EXPECT_TRUE(rgb.r == 128 && rgb.g == 128 && rgb.b == 128);
}

TEST(ColourValues, NearestIndexTakesTheFirstOfEqualDistances) {
  // Catches a search that lets a later entry of the same distance win, or that searches
  // beyond the small table's nine entries.
  Plot plot;
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
}

TEST(ColourValues, IndexDevicesGetTheNearestEntry) {
  // Catches the explicit value lost where the device only knows indices, true-colour
  // devices getting an index instead, and indices not taken modulo 256.
  Plot plot;  // what the metafile gets: tests/e2e/text_formats
  api::setrgb(plot.g, 1, 0, 0);
  EXPECT_EQ(plot.g.colour.current, explicit_rgb(255, 0, 0));  // the value is kept
  Plot ps("PS  ");
  api::setrgb(ps.g, 1, 0, 0);
  EXPECT_EQ(ps.rec->values.back(), explicit_rgb(255, 0, 0));
  api::setclr(ps.g, 256 + 30);
  EXPECT_EQ(ps.rec->values.back(), 30);
}

TEST(ColourValues, HalfForeAndBack) {
  // Catches HALF mixing with the wrong colour or rounding down, and FORE/BACK not being
  // the indices of the table in force.
  Plot plot("POST");
  GlobalBlock& g = plot.g;
  api::setvlt(g, "GREY");  // dark on light paper: white background at 255, black at 0
  api::color(g, "FORE");
  EXPECT_EQ(g.colour.current, 0);
  api::color(g, "BACK");
  EXPECT_EQ(g.colour.current, 255);
  api::setrgb(g, 1, 0, 1.0 / 255.0);
  api::color(g, "HALF");
  EXPECT_EQ(g.colour.current, explicit_rgb(255, 128, 128));
}

}  // namespace
}  // namespace zorvel

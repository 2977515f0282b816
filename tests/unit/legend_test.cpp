// Unit tests of legends: the size formulas of nxlegn and nylegn, the eight positions, the
// caller's buffer, and the warnings of the legend routines.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "api_decl.h"
#include "axes/axis_state.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

using recording::Plot;

// A plot inside an axis system at (300, 1800), 2000 x 1000 plot units, with a legend of
// three lines of 20 bytes; h = 36, so one text line is 54 and MARG h f is 27.
struct LegendPlot : Plot {
  LegendPlot() {
    text_defaults(g);
    axes_defaults(g);
    api::axspos(g, 300, 1800);
    api::axslen(g, 2000, 1000);
    g.core.level = 2;
  }
  ~LegendPlot() { g.core.level = 0; }
  void open(const char* a, const char* b, const char* c) {
    api::legini(g, {buf, kUnknownSize}, 3, 20);
    api::leglin(g, {buf, kUnknownSize}, a, 1);
    api::leglin(g, {buf, kUnknownSize}, b, 2);
    api::leglin(g, {buf, kUnknownSize}, c, 3);
  }
  int width(const char* s) { return measure_label(g, s, 36); }
  char buf[3 * 20 + 1] = {};
};

TEST(Legend, SizesFollowTheFormulas) {
  // Catches: the wrong margins (h f, not h), the pattern column counted once per entry in
  // the horizontal layout, the title not deciding the width, extra text lines or the
  // frame left out, and the buffer's edits not reaching the legend.
  LegendPlot p;
  p.open("first", "a longer line", "two|lines");
  const int t = p.width("a longer line");
  EXPECT_EQ(api::nxlegn(p.g, ""), 54 + t + 180 + 2);
  // (2 MARG + N - 1) g + h, one extra text line, the frame, the title.
  EXPECT_EQ(api::nylegn(p.g, ""), 162 + 36 + 54 + 2 + 81);
  std::memset(p.buf + 20, ' ', 13);  // the caller blanks line 2
  const int rest = std::max({p.width("first"), p.width("two"), p.width("lines")});
  EXPECT_EQ(api::nxlegn(p.g, p.buf), 54 + rest + 180 + 2);

  api::frame(p.g, 3);
  api::legtit(p.g, "A title wider than every line of it");
  EXPECT_EQ(api::nxlegn(p.g, ""), 54 + p.width("A title wider than every line of it") + 6);
  api::legtit(p.g, "");
  api::legval(p.g, 0.0, "PATT");
  EXPECT_EQ(api::nxlegn(p.g, ""), 54 + t + 6);
  EXPECT_EQ(api::nylegn(p.g, ""), 162 + 36 + 54 + 6);

  // legsel: lines 3 and 1 only; -1 all again.
  const int sel[] = {3, 1};
  api::legsel(p.g, sel, 2);
  EXPECT_EQ(api::nylegn(p.g, ""), 108 + 36 + 54 + 6);
  api::legsel(p.g, nullptr, -1);
  EXPECT_EQ(api::nylegn(p.g, ""), 162 + 36 + 54 + 6);

  EXPECT_EQ(p.text(), "");

  // Horizontal: the widths and the column spaces side by side, the most text lines.
  LegendPlot q;
  api::legtyp(q.g, "HORI");
  q.open("first", "second", "two|lines");
  const double row =
      q.width("first") + q.width("second") + std::max(q.width("two"), q.width("lines")) + 2 * 72;
  EXPECT_EQ(api::nxlegn(q.g, ""), static_cast<int>(54 + row) + 3 * 180 + 2);
  EXPECT_EQ(api::nylegn(q.g, ""), 54 + 36 + 54 + 2 + 81);
  EXPECT_EQ(q.text(), "");
}

TEST(Legend, PositionsOnThePageAndInTheAxisSystem) {
  // Catches: corners swapped, the axis rectangle's last unit, the page offset of origin()
  // not taken off the page corners, and a bad ncor drawing anything.
  LegendPlot p;
  p.open("one", "two", "three");
  api::legpat(p.g, 0, 1, -1, -1, -1, 1);
  api::legpat(p.g, 1, 1, 3, -1, -1, 2);
  api::legpat(p.g, -1, 1, -1, -1, 1, 3);
  const int w = api::nxlegn(p.g, "");
  const int h = api::nylegn(p.g, "");
  p.g.page.origin_x = 100;
  p.g.page.origin_y = -40;
  struct Case {
    int ncor, x, y;
  };
  for (const Case& c :
       {Case{1, 18, 2099 - 18 - h}, Case{3, 2969 - 18 - w, 18},
        Case{6, 2299 - 18 - w + 100, 1800 - 18 - h - 40}, Case{8, 318 + 100, 801 + 18 - 40}}) {
    p.rec->fills.clear();
    api::legend(p.g, "", c.ncor);
    ASSERT_FALSE(p.rec->fills.empty()) << c.ncor;
    const auto& box = p.rec->fills.front();  // the background comes first
    EXPECT_EQ(box.xs[0], c.x) << c.ncor;
    EXPECT_EQ(box.ys[0], c.y) << c.ncor;
    EXPECT_EQ(box.xs[1] - box.xs[0], w - 1) << c.ncor;
    EXPECT_EQ(box.ys[2] - box.ys[0], h - 1) << c.ncor;
  }
  EXPECT_EQ(p.text(), "");
  p.rec->fills.clear();
  p.rec->points.clear();
  api::legend(p.g, "", 9);
  EXPECT_EQ(p.text(), " <<<< Warning 2: Incorrect parameter in test!   ( 9)\n");
  EXPECT_TRUE(p.rec->fills.empty());
  EXPECT_TRUE(p.polylines().empty());
}

TEST(Legend, WarningsAndTheCallersBuffer) {
  // Catches: a routine working before legini, a long line stored or cut, lines without a
  // curve or a pattern passing silently, legsel entries beyond the legend, legtyp after
  // legini, and any byte written past nlin * nmaxln + 1 or into a buffer too short.
  LegendPlot p;
  char buf[3 * 4 + 2];
  std::memset(buf, '#', sizeof buf);
  api::leglin(p.g, {buf, kUnknownSize}, "x", 1);
  api::legend(p.g, "", 1);
  api::legini(p.g, {buf, 12}, 3, 4);  // one byte short for the terminator
  EXPECT_EQ(buf[0], '#');
  api::legini(p.g, {buf, kUnknownSize}, 3, 4);
  api::leglin(p.g, {buf, kUnknownSize}, "12345", 2);
  api::leglin(p.g, {buf, kUnknownSize}, "1234", 3);
  EXPECT_EQ(std::string(buf), "        1234");
  EXPECT_EQ(buf[13], '#');
  api::legtyp(p.g, "HORI");
  const int sel[] = {1, 5};
  api::legsel(p.g, sel, 2);
  p.g.curves.curves = 1;
  api::legend(p.g, buf, 1);
  api::legpat(p.g, 0, 1, -1, -1, -1, 1);
  api::legend(p.g, buf, 1);
  EXPECT_EQ(p.text(),
            " <<<< Warning 15: No call to legini before in test!\n"
            " <<<< Warning 15: No call to legini before in test!\n"
            " <<<< Warning 2: Incorrect parameter in test!   (cbuf)\n"
            " <<<< Warning 16: Too long string for legend line in test!   (12345)\n"
            " <<<< Warning 182: legtyp must be called before legini in test!\n"
            " <<<< Warning 149: Undefined legend line by legsel in test!   ( 5)\n"
            " <<<< Warning 42: More legend lines than calls to curve in test!   ( 2)\n"
            " <<<< Warning 149: Undefined legend line in test!   ( 2)\n"
            " <<<< Warning 149: Undefined legend line in test!   ( 3)\n");
}

}  // namespace
}  // namespace zorvel

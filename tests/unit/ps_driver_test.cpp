// The PostScript driver on its own, through the Driver interface, where the golden scenes
// (tests/golden) do not reach: page set-ups and variant combinations they do not draw,
// the polyline rules at their edges, width settings without a public routine, non-zero
// fills and write errors.

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "drivers/registry.h"
#include "drivers/sink.h"

namespace zorvel {
namespace {

// An A4 landscape page of the device `key` at the PostScript scale (W s = 5938, H s =
// 4198 units), in the screen mode that zorini resolves AUTO to.
DriverSetup a4(std::string_view key) {
  const DeviceInfo& dev = *find_device(key);
  DriverSetup s;
  s.variant = dev.variant;
  s.page_width = 2969;
  s.page_height = 2099;
  s.scale = 2.0;
  s.landscape = true;
  s.reversed = (dev.colours & kColourAutoReversed) != 0U;
  s.stamp = DateTime{"14.11.2023", "22:13:20"};
  return s;
}

// Opens the driver, runs `body`, closes it and returns what it wrote.
std::string run(const DriverSetup& setup, const std::function<void(Driver&)>& body = {}) {
  std::unique_ptr<Driver> d = find_device("PS  ")->factory();
  MemorySink sink;
  EXPECT_TRUE(d->open(&sink, setup));
  if (body) {
    body(*d);
  }
  EXPECT_TRUE(d->close());
  return sink.bytes();
}

// The drawing of `body` as words: what follows the last set-up line of the header, up to
// the closing "gsave showpage grestore".
std::string drawn(std::string_view key, const std::function<void(Driver&)>& body) {
  const std::string text = run(a4(key), body);
  const std::string mark = "2 setlinecap 2 setlinejoin\n";
  std::istringstream in(text.substr(text.rfind(mark) + mark.size()));
  std::string out;
  for (std::string t; in >> t;) {
    out += " " + t;
  }
  out.erase(out.rfind(" gsave showpage grestore"));
  return out.empty() ? out : out.substr(1);
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(PsDriver, PageSetUpsTheScenesDoNotDraw) {
  // Catches a wrong box for a wide page kept unrotated (pagmod NONE: placed like a
  // portrait page), a placement line whose fields break on a negative or six-digit
  // offset, a portrait background fill with its sides swapped, and pages or a trailer
  // in EPS after a new page.
  DriverSetup wide = a4("PS  ");
  wide.page_width = 3000;
  wide.page_height = 1000;
  wide.scale = 1.5;
  wide.landscape = false;
  EXPECT_TRUE(contains(run(wide), "\n%%BoundingBox: 21 28 660 241\n"));
  wide.user_offset = true;
  wide.offset_x = 123456;
  wide.offset_y = -50;
  EXPECT_TRUE(contains(run(wide), "\n123456 cm   -50 cm translate   1.000000  1.000000 scale\n"));

  DriverSetup portrait = a4("PSCL");  // the golden scenes pin the landscape backgrounds
  portrait.landscape = false;
  std::swap(portrait.page_width, portrait.page_height);
  EXPECT_TRUE(contains(run(portrait), "scale\n0 5938 4198 0 0 0 0 e \n2 setlinecap"));
  const std::string eps = run(a4("EPS "), [](Driver& d) {
    d.point(1, 2, Pen::Move);
    d.point(3, 4, Pen::Draw);
    d.new_page();
    d.point(5, 6, Pen::Draw);
  });
  for (const char* absent : {"copypage", "erasepage", "%%Page: 1 2", "%%Pages", "%%Trailer"}) {
    EXPECT_FALSE(contains(eps, absent)) << absent;
  }
}

TEST(PsDriver, PolylineRules) {
  // Catches the dot rule applied to the wrong points (or not at all), a repeated point
  // kept, rounding that is not "add 0.5 and truncate" for negative values, and a lone
  // move written. (The split of long polylines is pinned by the golden ps_lines.)
  EXPECT_EQ(drawn("PS  ",
                  [](Driver& d) {
                    d.point(10.2, 20.4, Pen::Move);
                    d.point(10.2, 20.4, Pen::Draw);  // a line of 4 units
                    d.point(0, 0, Pen::Move);
                    d.point(100.49, 0, Pen::Draw);
                    d.point(100.2, 0.3, Pen::Draw);  // the same in driver units
                    d.point(100, 50, Pen::Draw);
                    d.point(5, 5, Pen::Move);
                    d.point(-3.7, -0.2, Pen::Move);
                    d.point(-1.5, 7, Pen::Draw);
                  }),
            "8 20 u 12 20 d p 0 0 u 100 0 d 100 50 d p -3 0 u -1 7 d p");
}

TEST(PsDriver, WidthsAndMitres) {
  // Catches a non-hardware width that is not the thinnest line, a wrong minimum, the
  // width scale left out, decimals other than two, and a mitre limit that is not
  // restated after a width or that reaches the file below 1 (PostScript's rangecheck).
  EXPECT_EQ(drawn("EPS ",
                  [](Driver& d) {
                    d.pen_width(LineWidth{10, false, 1.0, 1.0});
                    d.pen_width(LineWidth{10, true, 1.5, 1.0});
                    d.pen_width(LineWidth{7, true, 0.333, 1.0});
                    d.line_join(0, 4.0);
                    d.pen_width(LineWidth{1, true, 1.0, 1.0});
                    d.line_join(0, 0.2);
                  }),
            "5.00 cm setlinewidth 30.00 cm setlinewidth 4.66 cm setlinewidth 0 setlinejoin "
            "4.00 setmiterlimit 5.00 cm setlinewidth 4.00 setmiterlimit 0 setlinejoin "
            "10.00 setmiterlimit");
}

TEST(PsDriver, NonZeroPathsAndNearRectangles) {
  // Catches the non-zero rule written as eofill, and a four-point path that is not an
  // axis-parallel rectangle sent through `e`. (The golden text scene pins even-odd paths
  // of several contours, the golden line scene rectangles.)
  const double xs[] = {10, 10, 50, 51};
  const double ys[] = {20, 60, 60, 20};
  const int ends[] = {4};
  EXPECT_EQ(drawn("EPS ", [&](Driver& d) { d.fill(Path{xs, ys, ends}, Rgb{9, 8, 7}); }),
            "gsave 9 8 7 f 10 20 u 10 60 d 50 60 d 51 20 d closepath fill grestore");
}

TEST(PsDriver, StandardFontsAndCharactersByGlyphName) {
  // Catches a character outside the encoding written with `c` (code 0 shows nothing), the
  // procedure `gn` missing, written on every use or not again on a new page, ZapfDingbats
  // re-encoded with the accented letters (its own glyphs would be lost), and a face
  // outside the 35 written into the file.
  const GlyphPlace g[] = {{100, 200, 'a', 'a'}, {150, 200, 0x20AC, 0}, {200, 200, 0x20AC, 0}};
  const std::string out = drawn("PS  ", [&](Driver& d) {
    d.text(TextRun{"a\xE2\x82\xAC\xE2\x82\xAC", g, "Palatino-Italic", nullptr, 0.0, 100.0, 1.0});
    d.text(TextRun{"a", {g, 1}, "ZapfDingbats", nullptr, 0.0, 100.0, 1.0});
    d.text(TextRun{"a", {g, 1}, "Nonsense) show", nullptr, 0.0, 100.0, 1.0});
    d.new_page();
    d.text(TextRun{"\xE2\x82\xAC", {g + 1, 1}, "Palatino-Italic", nullptr, 90.0, 100.0, 1.0});
  });
  const std::string half = "3.543 ";  // 0.5 * 500 (the euro's width) / 1000 * 14.173 points
  EXPECT_TRUE(contains(out, "/Palatino-Italic /Palatino-Italic-Zv [ GermanVec aload pop "
                            "8#273 /copyright ] ReEncodeSmall /Palatino-Italic-Zv 14.17 font "
                            "97 100 200 0 c /gn {"))
      << out;
  EXPECT_TRUE(contains(out, "/Euro " + half + "150 200 0 gn /Euro " + half + "200 200 0 gn "
                            "/ZapfDingbats 14.17 font 97 100 200 0 c copypage"))
      << out;
  EXPECT_TRUE(contains(out, "/Euro " + half + "150 200 90 gn"));
  std::size_t procs = 0;
  for (std::size_t at = out.find("/gn { /a exch def"); at != std::string::npos;
       at = out.find("/gn {", at + 1)) {
    ++procs;
  }
  EXPECT_EQ(procs, 2U);  // once on each page
  EXPECT_FALSE(contains(out, "Nonsense"));
  EXPECT_FALSE(contains(out, "ZapfDingbats-Zv"));
}

TEST(PsDriver, WriteErrorIsReportedByClose) {
  // Catches a write error that goes unreported (a full disk must make failed() and
  // close() say so, so that the pipeline warns) or a crash after it.
  std::FILE* f = std::fopen("/dev/full", "w");
  if (f == nullptr) {
    GTEST_SKIP() << "no /dev/full";
  }
  std::unique_ptr<Driver> d = find_device("PS  ")->factory();
  FileSink sink(f);
  d->open(&sink, a4("PS  "));
  d->point(0, 0, Pen::Move);
  for (int i = 0; i < 200000; ++i) {
    d->point(i % 5000, i % 3000, Pen::Draw);
  }
  EXPECT_TRUE(d->failed());
  EXPECT_FALSE(d->close());
  std::fclose(f);
}

}  // namespace
}  // namespace zorvel

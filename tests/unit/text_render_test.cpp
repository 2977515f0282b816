// Unit tests of the text engine with the real font tables: measuring invariants, the
// strokes that reach the pipeline for characters of the different alphabets and
// character sets, justification and continuation, outline fills, page warnings and the
// driver-font runs. Drawing goes to a driver that records what it is handed, with plot
// units passed through unchanged.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "api_decl.h"
#include "core/global_block.h"
#include "tests/unit/captured.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "drivers/registry.h"
#include "text/driver_font.h"
#include "text/font.h"
#include "text/text.h"

namespace zorvel {
namespace {

struct Point {
  double x;
  double y;
  bool move;
};

class TextRecorder final : public Driver {
 public:
  bool open(Sink* /*out*/, const DriverSetup& /*setup*/) override { return true; }
  void point(double x, double y, Pen pen) override {
    if (pen == Pen::Move || pen == Pen::Draw) {
      points.push_back({x, y, pen == Pen::Move});
    }
  }
  unsigned caps() const override { return caps_; }
  unsigned caps_ = kCapFill | kCapText;
  void fill(const Path& path, Rgb /*rgb*/) override {
    fills.emplace_back(path.xs.begin(), path.xs.end());
    fills.emplace_back(path.ys.begin(), path.ys.end());
  }
  void text(const TextRun& run) override {
    runs.push_back(run);
    std::string codes;
    for (const GlyphPlace& glyph : run.glyphs) {
      codes += static_cast<char>(glyph.code);
    }
    run_text.push_back(codes);
    run_face.emplace_back(run.face);
  }
  bool close() override { return true; }
  bool failed() const override { return false; }

  std::vector<Point> points;
  std::vector<std::vector<double>> fills;
  std::vector<TextRun> runs;  // text and face views are copied below
  std::vector<std::string> run_text;
  std::vector<std::string> run_face;
};

// A plot on the recording driver with the text defaults of zorini; clipping off so that
// text near the edges arrives whole.
class TextPlot : public Captured {
 public:
  explicit TextPlot(int device = 201, bool raw = true) {
    g.core.device = device;
    g.core.level = 1;
    auto r = std::make_unique<TextRecorder>();
    rec = r.get();
    EXPECT_TRUE(open_driver(g, *find_device(device), std::move(r), nullptr));
    if (raw) {
      g.pipe.dispatch = Dispatch::None;
      g.pipe.scale = 1.0;
    }
    init_colours(g);
    g.pipe.clip_mode = ClipMode::None;
    text_defaults(g);
  }
  ~TextPlot() {
    g.pipe.driver.reset();
  }
  std::string messages() { return text(); }
  // Draws s at (x, y) and returns the points it sent.
  std::vector<Point> draw(const char* s, int x = 500, int y = 500) {
    rec->points.clear();
    api::messag(g, s, x, y);
    end_polyline(g);
    return rec->points;
  }

  TextRecorder* rec = nullptr;
};

void expect_same(const std::vector<Point>& a, const std::vector<Point>& b, double dx = 0.0,
                 double dy = 0.0) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    EXPECT_NEAR(a[i].x + dx, b[i].x, 1e-6) << i;
    EXPECT_NEAR(a[i].y + dy, b[i].y, 1e-6) << i;
    EXPECT_EQ(a[i].move, b[i].move) << i;
  }
}

TEST(TextMeasure, Invariants) {
  // Catches a length that depends on the text angle, a zoralf character that is not set
  // on the fixed 6-unit pitch, trailing blanks that are counted, a last gap that is
  // counted, and a string of blanks that measures more than 0.
  TextPlot p;
  GlobalBlock& g = p.g;
  const int h1 = g.text.height - 1;
  for (int c = 33; c < 127; ++c) {
    const char s[2] = {static_cast<char>(c), '\0'};
    EXPECT_EQ(api::nlmess(g, s), h1) << c;
  }
  EXPECT_EQ(api::nlmess(g, "iW.M"), 4 * h1);
  api::chaspc(g, 0.5);
  EXPECT_EQ(api::nlmess(g, "AB"), 2 * h1 + 18);
  api::chaspc(g, 0.0);
  EXPECT_EQ(api::nlmess(g, "AB   "), api::nlmess(g, "AB"));
  EXPECT_EQ(api::nlmess(g, "  AB"), 4 * h1);
  EXPECT_EQ(api::nlmess(g, "     "), 0);
  EXPECT_EQ(api::nlmess(g, ""), 0);
  for (auto font : {api::zoralf, api::complx, api::gothic, api::serif, api::helvet}) {
    font(g);
    api::angle(g, 0);
    const int flat = api::nlmess(g, "AB");
    EXPECT_GT(flat, 0);
    for (int a : {30, 90, 137, 180, -45, 721}) {
      api::angle(g, a);
      EXPECT_EQ(api::nlmess(g, "AB"), flat) << a;
    }
  }
  EXPECT_EQ(p.messages(), "");
}

TEST(TextMeasure, ProportionalFontsAndFactors) {
  // Catches a width factor or fixed spacing that does not reach the measured length, and a
  // proportional font that is measured as fixed-pitch.
  TextPlot p;
  GlobalBlock& g = p.g;
  api::complx(g);
  EXPECT_LT(api::nlmess(g, "iii"), api::nlmess(g, "WWW"));
  const int normal = api::nlmess(g, "WWW");
  api::chawth(g, 0.5);
  EXPECT_NEAR(api::nlmess(g, "WWW"), normal - 0.5 * (normal - 2 * 0.25 * 36), 2.0);
  api::chawth(g, 1.0);
  api::fixspc(g, 1.0);
  // Every cell is 1.4 * (height - 1) wide and the gap is 0.
  EXPECT_EQ(api::nlmess(g, "iW"), static_cast<int>(std::lround(2 * 1.4 * 35)));
  EXPECT_EQ(api::nlmess(g, "iW"), api::nlmess(g, "Wi"));
}

TEST(TextDraw, CharacterSetsAndAlphabets) {
  // Catches the euro sign drawing something, Cyrillic that does not come from the Russian
  // alphabet, an ISO 8859-1 letter on the wrong glyph, and a synthetic italic that is not
  // the standard glyph slanted by 1 / 3.732 of its height.
  TextPlot p;
  GlobalBlock& g = p.g;
  api::complx(g);
  api::chacod(g, "UTF8");
  expect_same(p.draw("A B"), p.draw("A\xE2\x82\xAC" "B"));
  const std::vector<Point> zhe = p.draw("\xD0\x96");
  EXPECT_FALSE(zhe.empty());
  api::chacod(g, "STAN");
  api::basalf(g, "RUSS");
  expect_same(p.draw("X"), zhe);
  api::basalf(g, "STAN");
  api::chacod(g, "ISO1");
  const std::vector<Point> auml = p.draw("\xE4");
  api::chacod(g, "STAN");
  expect_same(p.draw("\x82"), auml);  // code 130 is the extended alphabet's a-umlaut

  // simplx italic: the standard glyph, every point moved right by v / 3.732.
  api::simplx(g);
  const std::vector<Point> upright = p.draw("A");
  api::basalf(g, "ITAL");
  const std::vector<Point> italic = p.draw("A");
  ASSERT_EQ(upright.size(), italic.size());
  const double base = 500 + g.text.height - 1;
  for (std::size_t i = 0; i < upright.size(); ++i) {
    EXPECT_NEAR(italic[i].y, upright[i].y, 1e-9);
    EXPECT_NEAR(italic[i].x - upright[i].x, (base - upright[i].y) / 3.732, 1e-3);
  }
  // complx italic: glyphs of its own, not the slanted standard ones.
  api::complx(g);
  api::basalf(g, "STAN");
  const std::vector<Point> roman = p.draw("a");
  api::basalf(g, "ITAL");
  const std::vector<Point> own = p.draw("a");
  EXPECT_FALSE(own.empty());
  bool differs = own.size() != roman.size();
  for (std::size_t i = 0; !differs && i < own.size(); ++i) {
    differs = std::fabs(own[i].x - roman[i].x - (base - roman[i].y) / 3.732) > 0.01;
  }
  EXPECT_TRUE(differs);
}

TEST(TextDraw, JustificationAndContinuation) {
  // Catches justification offsets of the wrong size or sign (horizontal by the measured
  // length, vertical by the height), and a continued string that does not start where the
  // previous one ended.
  TextPlot p;
  GlobalBlock& g = p.g;
  api::complx(g);
  const int len = api::nlmess(g, "Hello");
  const std::vector<Point> left = p.draw("Hello", 1000, 800);
  api::txtjus(g, "CENT");
  expect_same(left, p.draw("Hello", 1000, 800), std::trunc(-0.5 * len + 0.5) , 0.0);
  api::txtjus(g, "RIGH");
  expect_same(left, p.draw("Hello", 1000, 800), -len, 0.0);
  api::txtjus(g, "LEFT");
  api::txtjus(g, "BOTT");
  expect_same(left, p.draw("Hello", 1000, 800), 0.0, -g.text.height);
  api::txtjus(g, "MIDD");
  expect_same(left, p.draw("Hello", 1000, 800), 0.0, -g.text.height / 2);
  api::txtjus(g, "TOP");

  const std::vector<Point> whole = p.draw("AbCd", 300, 300);
  std::vector<Point> parts = p.draw("Ab", 300, 300);
  const std::vector<Point> rest = p.draw("Cd", 999, 999);
  parts.insert(parts.end(), rest.begin(), rest.end());
  expect_same(whole, parts);
  // A number continues the same way.
  std::vector<Point> n1 = p.draw("x=", 300, 600);
  p.rec->points.clear();
  api::number(g, 2.5, 0, 999, 999);
  end_polyline(g);
  n1.insert(n1.end(), p.rec->points.begin(), p.rec->points.end());
  expect_same(p.draw("x=3.", 300, 600), n1);
  EXPECT_EQ(p.messages(), "");
}

TEST(TextDraw, RotationKeepsTheShape) {
  // Catches a rotation in the wrong direction (angles count counter-clockwise on the page,
  // y downwards) and the top of the capitals not hanging from the start point.
  TextPlot p;
  GlobalBlock& g = p.g;
  api::zoralf(g);
  const std::vector<Point> flat = p.draw("I", 1000, 1000);
  double top = 1e9;
  for (const Point& q : flat) {
    top = std::min(top, q.y);
  }
  EXPECT_NEAR(top, 1000.0, 0.5);
  api::angle(g, 90);
  const std::vector<Point> up = p.draw("I", 1000, 1000);
  ASSERT_EQ(flat.size(), up.size());
  for (std::size_t i = 0; i < flat.size(); ++i) {
    // Turned by 90 degrees about the start point: (dx, dy) -> (dy, -dx).
    EXPECT_NEAR(up[i].x - 1000, flat[i].y - 1000, 1e-6);
    EXPECT_NEAR(up[i].y - 1000, -(flat[i].x - 1000), 1e-6);
  }
}

TEST(TextDraw, OutlineGlyphsAreFilledOnce) {
  // Catches outline glyphs that are not filled, a hole contour that is filled as a
  // separate polygon (it must be one polygon with the join points), and outlines missing.
  TextPlot p;
  GlobalBlock& g = p.g;
  api::helve(g);
  p.rec->fills.clear();
  const std::vector<Point> pts = p.draw("O");
  ASSERT_EQ(p.rec->fills.size(), 2U);  // one polygon: xs and ys
  const std::vector<double>& xs = p.rec->fills[0];
  int contours = 0;
  for (const Point& q : pts) {
    contours += q.move ? 1 : 0;
  }
  EXPECT_EQ(contours, 2);
  EXPECT_EQ(xs.size(), pts.size() + 1);  // both contours plus one join point
  EXPECT_LE(xs.size(), static_cast<std::size_t>(kMaxOutlinePolygon));
  p.rec->fills.clear();
  p.draw("-");
  EXPECT_EQ(p.rec->fills.size(), 2U);
  api::complx(g);
  p.rec->fills.clear();
  p.draw("O");
  EXPECT_TRUE(p.rec->fills.empty());  // stroke fonts never fill
}

TEST(TextDraw, PageWarnings) {
  // Catches the wrong format of the start and end point warnings ("%5d" fields), a check
  // without the origin offset, and a string that is not drawn after the warning.
  TextPlot p;
  GlobalBlock& g = p.g;
  EXPECT_FALSE(p.draw("A", -5, 100).empty());
  EXPECT_FALSE(p.draw("AB", 2950, 100).empty());
  // The start point is x + 0.5 truncated towards zero: -5 gives -4.
  EXPECT_EQ(p.messages(),
            " <<<< Warning 193: Startpoint (   -4/  100) out of page in test!\n"
            " <<<< Warning 193: Endpoint ( 3020/  135) out of page in test!\n");
  EXPECT_EQ(g.msg.warnings, 2);
}

TEST(TextDraw, BadInputDrawsNothing) {
  // Catches broken UTF-8 or an over-long string that still draws part of the text, and a
  // code beyond every table that reads outside the font.
  TextPlot p;
  GlobalBlock& g = p.g;
  api::chacod(g, "UTF8");
  EXPECT_TRUE(p.draw("ab\xC3").empty());
  EXPECT_TRUE(p.draw(std::string(300, 'x').c_str()).empty());
  EXPECT_EQ(api::nlmess(g, "ab\xC3"), 0);
  api::chacod(g, "STAN");
  for (auto font : {api::zoralf, api::simplx, api::gothic, api::helves}) {
    font(g);
    for (const char* alphabet : {"STAN", "GREE", "MATH", "ITAL", "SCRI", "RUSS"}) {
      api::basalf(g, alphabet);
      std::string all;
      for (int c = 1; c < 256; ++c) {
        all += static_cast<char>(c);
      }
      p.draw(all.c_str());
      EXPECT_GT(api::nlmess(g, all.c_str()), 0);
    }
  }
}

TEST(TextDriverFont, RunsAndWidths) {
  // Catches driver text that is measured with the wrong widths or gap, codes outside the
  // driver's encoding that reach it, the wrong face for Greek and italic, and alphabets
  // without a face that are lost instead of drawn as strokes.
  TextPlot p(504, false);
  GlobalBlock& g = p.g;
  api::hwfont(g);
  ASSERT_EQ(g.text.font.mode, FontMode::Driver);
  const double em = kDriverEmPerHeight * g.text.height;
  EXPECT_EQ(api::nlmess(g, "AV"),
            std::lround((722 + 722) / 1000.0 * em + 0.1 * g.text.height));
  p.rec->runs.clear();
  api::chacod(g, "ISO1");
  api::messag(g, "A\xA9\xE4", 500, 500);
  ASSERT_EQ(p.rec->run_text.size(), 3U);
  EXPECT_EQ(p.rec->run_text[0], "A");
  EXPECT_EQ(p.rec->run_text[1], "\xBB");  // the copyright sign as 187
  EXPECT_EQ(p.rec->run_text[2], "\x82");  // a-umlaut in the GermanVec order
  EXPECT_EQ(p.rec->run_face[0], "Times-Roman");
  EXPECT_GT(p.rec->runs[0].size, 0.0);
  EXPECT_EQ(p.rec->runs[0].stretch, 1.0);
  api::chacod(g, "STAN");
  api::basalf(g, "GREE");
  api::messag(g, "a", 500, 700);
  api::basalf(g, "ITAL");
  api::messag(g, "a", 500, 800);
  ASSERT_EQ(p.rec->run_face.size(), 5U);
  EXPECT_EQ(p.rec->run_face[3], "Symbol");
  EXPECT_EQ(p.rec->run_face[4], "Times-Italic");
  p.rec->points.clear();
  api::basalf(g, "RUSS");
  api::messag(g, "X", 500, 900);
  EXPECT_EQ(p.rec->run_face.size(), 5U);
  end_polyline(g);
  EXPECT_FALSE(p.rec->points.empty());
  // On a device whose driver cannot write fonts of its own, hwfont is complx.
  TextPlot mute(504, false);
  mute.g.pipe.caps = kCapFill;
  api::hwfont(mute.g);
  EXPECT_EQ(mute.g.text.font.mode, FontMode::Stroke);
  EXPECT_EQ(mute.g.text.font.type, kFontComplx);
}

}  // namespace
}  // namespace zorvel

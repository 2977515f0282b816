// Unit tests of the text engine with the real font tables: measuring against what the
// renderer draws, outline glyphs as filled paths, driver-font runs and characters
// without a glyph. (Justification, continuation and the alphabets are in the golden
// scene text_fonts.) Drawing goes
// to the recording driver with plot units passed through unchanged and clipping off.
// (The page warnings are checked by tests/e2e/text_messages.)

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "api_decl.h"
#include "tests/unit/recording_driver.h"
#include "text/font.h"
#include "text/text.h"

namespace zorvel {
namespace {

using recording::Sent;

class TextPlot : public recording::Plot {
 public:
  explicit TextPlot(unsigned caps = kCapFill | kCapText) : Plot("PS  ", true, caps) {
    g.pipe.clip_mode = ClipMode::None;
    text_defaults(g);
  }
  // Draws s at (x, y) and returns the points of the polylines it sent.
  std::vector<Sent> draw(const char* s, int x = 500, int y = 500) {
    rec->points.clear();
    api::messag(g, s, x, y);
    end_polyline(g);
    std::vector<Sent> out;
    for (const Sent& p : rec->points) {
      if (p.pen != Pen::End) {
        out.push_back(p);
      }
    }
    return out;
  }
};

TEST(TextMeasure, Invariants) {
  // Catches a length that depends on the text angle, a zoralf character that is not set
  // on the fixed 6-unit pitch, trailing blanks or the last gap that are counted, fixed
  // spacing that does not reach the length, and a proportional font measured as
  // fixed-pitch.
  TextPlot p;
  GlobalBlock& g = p.g;
  const int h1 = g.text.height - 1;
  for (int c = 33; c < 127; ++c) {
    const char s[2] = {static_cast<char>(c), '\0'};
    EXPECT_EQ(api::nlmess(g, s), h1) << c;
  }
  api::chaspc(g, 0.5);
  EXPECT_EQ(api::nlmess(g, "AB"), 2 * h1 + 18);
  api::chaspc(g, 0.0);
  EXPECT_EQ(api::nlmess(g, "AB   "), api::nlmess(g, "AB"));
  EXPECT_EQ(api::nlmess(g, "  AB"), 4 * h1);
  for (auto font : {api::zoralf, api::complx, api::serif}) {
    font(g);
    api::angle(g, 0);
    const int flat = api::nlmess(g, "AB");
    for (int a : {30, 137, -45, 721}) {
      api::angle(g, a);
      EXPECT_EQ(api::nlmess(g, "AB"), flat) << a;
    }
  }
  api::angle(g, 0);
  api::complx(g);
  EXPECT_LT(api::nlmess(g, "iii"), api::nlmess(g, "WWW"));
  api::fixspc(g, 1.0);
  // Every cell is 1.4 * (height - 1) wide and the gap is 0.
  EXPECT_EQ(api::nlmess(g, "iW"), static_cast<int>(std::lround(2 * 1.4 * 35)));
  EXPECT_EQ(p.text(), "");
}

TEST(TextMeasure, MeasuredLengthIsTheDrawnAdvance) {
  // Right-justified text must end at its justification point plus the gap after the last
  // character. Catches a renderer whose pen moves differently from the layout that
  // measured it: a lost gap before fall-back characters, fixed cells, width factors,
  // spacing, outline and driver-font widths, rotation.
  struct Case {
    void (*font)(GlobalBlock&);
    const char* alphabet;
    double spacing, width, fixed;  // fixed 0: proportional
    int angle;
  } const cases[] = {
      {api::zoralf, "STAN", 0.0, 1.0, 0.0, 0},  {api::complx, "GREE", 0.0, 1.0, 0.0, 0},
      {api::complx, "STAN", 0.3, 0.6, 0.0, 30}, {api::helve, "STAN", 0.0, 1.0, 0.0, 0},
      {api::serif, "ITAL", 0.0, 1.0, 1.2, -60}, {api::hwfont, "STAN", 0.1, 1.3, 0.0, 0},
      {api::hwfont, "RUSS", 0.0, 1.0, 0.0, 90},
  };
  for (const Case& c : cases) {
    TextPlot p;
    GlobalBlock& g = p.g;
    c.font(g);
    api::basalf(g, c.alphabet);
    api::chaspc(g, c.spacing);
    api::chawth(g, c.width);
    g.text.fixed = c.fixed > 0.0;
    g.text.fixed_factor = c.fixed;
    api::angle(g, c.angle);
    api::txtjus(g, "RIGH");
    const char* s = "Ab1c(9";
    api::nlmess(g, s);
    const double gap = g.text.layout.glyphs.back().gap;
    api::messag(g, s, 1500, 1000);
    const double sn = g.text.sin_a;
    const double cs = g.text.cos_a;
    const double h1 = g.text.height - 1;
    const double ex = g.text.next_x - (1500 + sn * h1);
    const double ey = g.text.next_y - (1000 + cs * h1);
    EXPECT_NEAR(ex * cs - ey * sn, gap, 1.5) << c.alphabet << " " << c.angle;
    EXPECT_NEAR(ex * sn + ey * cs, 0.0, 1.0) << c.alphabet << " " << c.angle;
  }
}

TEST(TextDraw, OutlineGlyphsAreOnePathOfTheirContours) {
  // Catches holes joined by bridges or filled separately (a glyph must be one even-odd
  // path with one contour per ring), a point limit that leaves large glyphs unfilled,
  // outlines missing after the fill, stroke fonts that fill, and a broken contour that
  // passes without a warning.
  TextPlot p;
  GlobalBlock& g = p.g;
  api::helve(g);  // an outline font; its "B" is pinned by the golden scene text_fonts
  // A glyph of three closed rings of 150 points each and a stroke of two points.
  constexpr int kRing = 150;
  std::vector<std::int16_t> xs;
  std::vector<std::int16_t> ys;
  for (int r : {90, 60, 30}) {
    for (int i = 0; i < kRing; ++i) {
      const double a = 6.283185307179586 * (i % (kRing - 1)) / (kRing - 1);
      xs.push_back(static_cast<std::int16_t>(std::lround(100 + r * std::cos(a))));
      ys.push_back(static_cast<std::int16_t>(std::lround(100 + r * std::sin(a))));
    }
  }
  xs.insert(xs.end(), {0, 10});
  ys.insert(ys.end(), {0, 0});
  // Glyph 2: the record's length, then count and first pool entry of every stroke.
  const std::int16_t index[] = {9, kRing, 1, kRing, kRing + 1, kRing, 2 * kRing + 1,
                                2, 3 * kRing + 1};
  AlphabetSlot& s = g.text.font.alphabets[kAlphabetStan];
  s.packed = nullptr;
  s.xs = xs.data();
  s.ys = ys.data();
  s.points = static_cast<int>(xs.size());
  s.index = index;
  s.index_words = 9;
  s.chars = 2;
  build_glyph_caches(s);
  p.rec->fills.clear();
  EXPECT_FALSE(p.draw("!").empty());
  ASSERT_EQ(p.rec->fills.size(), 1U);
  EXPECT_EQ(p.rec->fills[0].ends, (std::vector<int>{kRing - 1, 2 * kRing - 2, 3 * kRing - 3}));
  EXPECT_EQ(p.rec->fills[0].rule, FillRule::EvenOdd);
  EXPECT_EQ(p.text(), " <<<< Warning 214: Character cannot be drawn in test!   ( 33)\n");

  api::complx(g);
  p.rec->fills.clear();
  p.draw("O");
  EXPECT_TRUE(p.rec->fills.empty());
}

TEST(TextDraw, StrokeGlyphsAsShapesAreTheLinesTheyReplace) {
  // Catches shapes placed off by the glyph origin or the text angle, equal glyphs that do
  // not share a shape (or different ones that do), glyphs crossing the clip rectangle or
  // drawn dashed that skip the clipping or the dash engine, and a vector count that
  // differs from line-by-line drawing.
  auto lines = [](TextPlot& p, const char* text) {
    p.draw(text, 500, 400);
    std::vector<std::vector<Sent>> out;
    for (const Sent& s : p.rec->points) {
      if (s.pen == Pen::Move) {
        out.emplace_back();
      }
      if (s.pen != Pen::End) {
        out.back().push_back(s);
      }
    }
    for (const recording::Placed& sh : p.rec->shapes) {
      out.insert(out.end(), sh.polylines.begin(), sh.polylines.end());
    }
    return out;
  };
  for (const double angle : {0.0, 30.0}) {
    TextPlot plain;
    TextPlot shaped(kCapFill | kCapText | kCapShapes);
    for (TextPlot* p : {&plain, &shaped}) {
      api::angle(p->g, static_cast<int>(angle));
    }
    const auto want = lines(plain, "8.08");
    const auto got = lines(shaped, "8.08");
    EXPECT_TRUE(shaped.rec->points.empty());
    ASSERT_EQ(shaped.rec->shapes.size(), 4U);
    EXPECT_EQ(shaped.rec->shapes[0].id, shaped.rec->shapes[3].id);
    EXPECT_NE(shaped.rec->shapes[0].id, shaped.rec->shapes[2].id);
    ASSERT_EQ(got.size(), want.size());
    // Shapes come after the lines in `got`; here every glyph is a shape, so the order
    // is the drawing order.
    for (std::size_t i = 0; i < want.size(); ++i) {
      ASSERT_EQ(got[i].size(), want[i].size());
      for (std::size_t k = 0; k < want[i].size(); ++k) {
        EXPECT_NEAR(got[i][k].x, want[i][k].x, 1e-9);
        EXPECT_NEAR(got[i][k].y, want[i][k].y, 1e-9);
      }
    }
    EXPECT_EQ(shaped.g.core.vectors, plain.g.core.vectors);
  }

  // A clip border through the last glyph.
  TextPlot plain;
  double right = 0.0;
  for (const auto& line : lines(plain, "8.08")) {
    for (const Sent& s : line) {
      right = std::max(right, s.x);
    }
  }
  const double border = right - 1.0;
  TextPlot clipped(kCapFill | kCapText | kCapShapes);
  clipped.g.pipe.clip_mode = ClipMode::Rect;
  clipped.g.pipe.clip = {0.0, 0.0, border, 1000.0};
  lines(clipped, "8.08");
  EXPECT_EQ(clipped.rec->shapes.size(), 3U);
  ASSERT_FALSE(clipped.rec->points.empty());
  for (const Sent& s : clipped.rec->points) {
    EXPECT_LE(s.x, border + kClipTolerance);
  }

  TextPlot dashed(kCapFill | kCapText | kCapShapes);
  api::lintyp(dashed.g, 2);
  lines(dashed, "8");
  EXPECT_TRUE(dashed.rec->shapes.empty());
  EXPECT_FALSE(dashed.rec->points.empty());
}

TEST(TextDraw, BadInputAndCharactersWithoutGlyph) {
  // Catches broken UTF-8 or an over-long string that still draws part of the text, codes
  // beyond every table that read outside the font, characters without a glyph that pass
  // in silence or warn more than once per string, blanks and control codes that warn,
  // and measuring that warns.
  TextPlot p;
  GlobalBlock& g = p.g;
  api::chacod(g, "UTF8");
  EXPECT_TRUE(p.draw("ab\xC3").empty());
  EXPECT_TRUE(p.draw(std::string(300, 'x').c_str()).empty());
  const std::size_t before = p.text().size();
  p.draw("A\xE2\x82\xAC" "B\xE2\x82\xAC");
  p.draw("a\tb\xC2\xA0" "c\x7F");
  EXPECT_GT(api::nlmess(g, "\xE2\x82\xAC"), 0);
  api::hwfont(g);
  api::chacod(g, "ISO1");
  p.draw("x\xA2");
  EXPECT_EQ(p.text().substr(before),
            " <<<< Warning 214: Character cannot be drawn in test!   ( 8364)\n"
            " <<<< Warning 214: Character cannot be drawn in test!   ( 162)\n");

  api::chacod(g, "STAN");
  std::string all;
  for (int c = 1; c < 256; ++c) {
    all += static_cast<char>(c);
  }
  for (auto font : {api::zoralf, api::simplx, api::gothic, api::helves}) {
    font(g);
    for (const char* alphabet : {"STAN", "GREE", "MATH", "ITAL", "SCRI", "RUSS"}) {
      api::basalf(g, alphabet);
      p.draw(all.c_str());
      EXPECT_GT(api::nlmess(g, all.c_str()), 0);
    }
  }
}

TEST(TextDriverFont, RunsSplitByFace) {
  // Catches runs not split where the face changes or stroke glyphs come between, and
  // alphabets without a face that are lost instead of drawn as strokes. (Widths, gaps,
  // cell centres and the ISO 8859-1 codes of one run are pinned by the golden text_fonts.)
  TextPlot p;
  GlobalBlock& g = p.g;
  api::hwfont(g);
  ASSERT_EQ(g.text.font.mode, FontMode::Driver);
  // ISO 8859-7 draws its upper half from GREE (Symbol), KOI8-R from RUSS (strokes).
  p.rec->texts.clear();
  api::chacod(g, "ISO7");
  api::messag(g, "A\xE1" "B", 500, 700);
  api::chacod(g, "KOI8");
  api::messag(g, "C\xE1" "D", 500, 800);
  api::chacod(g, "STAN");
  api::basalf(g, "ITAL");
  api::messag(g, "a", 500, 900);
  std::vector<std::string> runs;
  for (const recording::Written& w : p.rec->texts) {
    runs.push_back(w.face + " " + w.utf8);
  }
  EXPECT_EQ(runs, (std::vector<std::string>{"Times-Roman A", "Symbol \xCE\xB1", "Times-Roman B",
                                            "Times-Roman C", "Times-Roman D", "Times-Italic a"}));
  p.rec->texts.clear();
  api::basalf(g, "RUSS");
  EXPECT_FALSE(p.draw("X", 500, 900).empty());
  EXPECT_TRUE(p.rec->texts.empty());
  EXPECT_EQ(p.text(), "");

  // On a device whose driver cannot write fonts of its own, hwfont is complx.
  TextPlot mute(kCapFill);
  api::hwfont(mute.g);
  EXPECT_EQ(mute.g.text.font.mode, FontMode::Stroke);
  EXPECT_EQ(mute.g.text.font.type, kFontComplx);
}

}  // namespace
}  // namespace zorvel

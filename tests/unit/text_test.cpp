// Unit tests of the text engine: the character-set and alphabet mappings, the glyph-index
// walk and the limits of the parameter routines. Each test works on a block of its own
// with messages captured.

#include <gtest/gtest.h>

#include <vector>

#include "api_decl.h"
#include "core/global_block.h"
#include "tests/unit/captured.h"
#include "text/decode.h"
#include "text/font.h"
#include "text/mapping.h"
#include "text/text.h"

namespace zorvel {
namespace {

TEST(Mapping, CharacterSets) {
  // Catches control codes that are not blanks, the edges of the ISO 8859-1 signs below
  // 191, uncovered codes drawing something, the math exception of code 127, the lower
  // half of KOI8/ISO7 not forced to STAN, and the driver's 8-bit limit.
  struct Case {
    int charset, code, alphabet, want_code, want_alphabet;
  };
  for (const Case& t : std::vector<Case>{
           {kCharsetStan, 9, 0, kBlank, -2},
           {kCharsetIso1, 161, 0, 185, -2},
           {kCharsetIso1, 170, 0, kBlank, -2},
           {kCharsetIso1, 127, 0, kBlank, -2},
           {kCharsetIso1, 127, kAlphabetMath, 127, -2},
           {kCharsetUtf8, 169, 0, 264, -2},
           {kCharsetUtf8, 8364, 0, kBlank, -2},
           {kCharsetUtf8, 0x1F600, 0, kBlank, -2},
           {kCharsetIso2, 150, 0, kBlank, -2},
           {kCharsetKoi8, 65, kAlphabetGree, 65, kAlphabetStan},
           {kCharsetIso7, 65, kAlphabetRuss, 65, kAlphabetStan},
           {kCharsetUtf8, 65, kAlphabetGree, 65, -1},
       }) {
    const auto m = map_charset(t.charset, t.code, t.alphabet);
    EXPECT_EQ(m.code, t.want_code) << t.charset << " " << t.code;
    if (t.want_alphabet != -2) {
      EXPECT_EQ(m.alphabet, t.want_alphabet) << t.charset << " " << t.code;
    }
  }
  EXPECT_EQ(driver_code(186), 186);
  EXPECT_EQ(driver_code(264), 187);
  EXPECT_EQ(driver_code(187), kBlank);
}

// A font record whose alphabets have the given sizes, without tables: enough for the
// remapping rules.
FontRecord record_of(int type, bool ital_borrowed) {
  FontRecord f;
  f.type = type;
  for (int k = 0; k < kAlphabetCount; ++k) {
    f.alphabets[static_cast<std::size_t>(k)].chars = k == kAlphabetStan ? 233 : 120;
  }
  f.alphabets[kAlphabetStan].present = true;
  f.alphabets[kAlphabetItal].borrowed = ital_borrowed;
  return f;
}

TEST(Mapping, AlphabetRemapping) {
  // Catches off-by-one errors at the edges of the letter ranges, Russian punctuation that
  // does not reach STAN, the complx italic rule applied to other fonts, and missing
  // synthetic slants on the fall-backs of the italic and script alphabets.
  const FontRecord f = record_of(4, true);
  const FontRecord cx = record_of(3, false);  // complx: an italic of its own
  FontRecord direct = record_of(7, false);    // a script numbered like STAN
  direct.alphabets[kAlphabetScri].present = true;
  struct Case {
    const FontRecord* font;
    int k, code, alphabet, glyph, italic, fell_back;
  };
  for (const Case& t : std::vector<Case>{
           {&f, kAlphabetGree, 'A', kAlphabetGree, 2, 0, 0},
           {&f, kAlphabetGree, 'z', kAlphabetGree, 53, 0, 0},
           {&f, kAlphabetGree, '[', kAlphabetStan, '[' - 31, 0, 1},
           {&f, kAlphabetGree, 127, kAlphabetGree, 54, 0, 0},
           {&f, kAlphabetMath, 128, kAlphabetStan, 97, 0, 1},
           {&f, kAlphabetScri, '1', kAlphabetStan, '1' - 31, 1, 1},
           {&f, kAlphabetRuss, '$', kAlphabetRuss, 2, 0, 0},
           {&f, kAlphabetRuss, '^', kAlphabetRuss, 37, 0, 0},
           {&f, kAlphabetRuss, '_', kAlphabetStan, '_' - 31, 0, 1},
           {&f, kAlphabetRuss, '~', kAlphabetRuss, 67, 0, 0},
           {&f, kAlphabetRuss, 127, kAlphabetStan, 1, 0, 1},
           {&f, kAlphabetItal, 'q', kAlphabetItal, 'q' - 31, 1, 0},
           {&cx, kAlphabetItal, 'z', kAlphabetItal, 27, 0, 0},
           {&cx, kAlphabetItal, 130, kAlphabetItal, 28, 0, 0},
           {&cx, kAlphabetItal, 'A', kAlphabetStan, 34, 1, 1},
           {&cx, kAlphabetStan, 300, kAlphabetStan, 1, 0, 0},
           {&direct, kAlphabetScri, 'A', kAlphabetScri, 34, 0, 0},
       }) {
    const GlyphChoice c = choose_glyph(*t.font, t.k, t.code);
    EXPECT_EQ((std::vector<int>{c.alphabet, c.glyph, c.italic, c.fell_back}),
              (std::vector<int>{t.alphabet, t.glyph, t.italic, t.fell_back}))
        << "alphabet " << t.k << " code " << t.code << " font " << t.font->type;
  }
}

TEST(GlyphIndex, WalkCachesAndBrokenRecords) {
  // Catches a cache that does not match the walk (wrong record for a glyph), strokes with
  // offsets that are not decoded, widths without offsets, and broken records that are
  // read past their pool or index instead of becoming blanks.
  const std::uint16_t pool[] = {pack_point(0, 0), pack_point(4, 9), pack_point(8, 0),
                                pack_point(2, 3), pack_point(6, 3)};
  const std::int16_t index[] = {
      5, 3, 1, 2, 4,                                        // glyph 2: two strokes
      4, -2, 4, static_cast<std::int16_t>(pack_point(6, -2)),  // glyph 3: offset stroke
      1,                                                    // glyph 4: draws nothing
      3, 9, 1,                                              // glyph 5: leaves the pool
      3, 2, 1,                                              // glyph 6: fine
      0, 2, 1,                                              // glyph 7: broken length
  };
  AlphabetSlot s;
  s.packed = pool;
  s.points = 5;
  s.index = index;
  s.index_words = static_cast<int>(std::size(index));
  s.chars = 9;
  build_glyph_caches(s);
  EXPECT_EQ(s.record[1], -1);
  EXPECT_EQ(s.record[2], 0);
  EXPECT_EQ(s.record[3], 5);
  EXPECT_EQ(s.record[4], 9);
  EXPECT_EQ(s.record[5], -1);
  EXPECT_EQ(s.record[6], 13);
  EXPECT_EQ(s.record[7], -1);
  EXPECT_EQ(s.record[8], -1);
  EXPECT_FLOAT_EQ(s.width[2], 8.0F);
  EXPECT_FLOAT_EQ(s.width[3], 6.0F + 3.0F);  // x 6 plus half of the offset 6
  EXPECT_FLOAT_EQ(s.width[4], 0.0F);
  std::vector<double> pts;
  for_each_point(s, 3, [&](double x, double y, bool first) {
    pts.insert(pts.end(), {x, y, first ? 1.0 : 0.0});
  });
  EXPECT_EQ(pts, (std::vector<double>{5.0, 2.0, 1.0, 9.0, 2.0, 0.0}));
}

TEST(TextRoutines, ParameterRanges) {
  // Catches inclusive/exclusive mistakes at the limits of chaang, chawth, fixspc and
  // height, and a refused value or keyword that still changes the setting.
  Captured c("messag");
  api::chaang(c.g, 60.0);
  EXPECT_NEAR(c.g.text.slant, 1.7320508, 1e-6);
  api::chaang(c.g, -60.0);
  api::chaang(c.g, 60.5);
  EXPECT_NEAR(c.g.text.slant, -1.7320508, 1e-6);
  api::chawth(c.g, 1.999);
  api::chawth(c.g, 2.0);
  api::chawth(c.g, 0.0);
  EXPECT_DOUBLE_EQ(c.g.text.width_factor, 1.999);
  api::fixspc(c.g, 0.0);
  EXPECT_FALSE(c.g.text.fixed);
  api::fixspc(c.g, 0.5);
  EXPECT_TRUE(c.g.text.fixed);
  api::height(c.g, 10000);
  api::height(c.g, 10001);
  api::height(c.g, 0);
  EXPECT_EQ(c.g.text.height, 10000);
  api::basalf(c.g, "RUSS");
  api::basalf(c.g, "LATIN");
  EXPECT_EQ(c.g.text.base_alphabet, kAlphabetRuss);
  EXPECT_EQ(c.g.msg.warnings, 7);  // the lines themselves: tests/e2e/text_messages
}

}  // namespace
}  // namespace zorvel

// Unit tests of the text engine: the character-set and alphabet mappings, the glyph-index
// walk, the parameter routines, and measuring and drawing with the real fonts through a
// recording driver. Each test works on a block of its own with messages captured.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
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
  // Catches control codes that are not blanks, the three single ISO 8859-1 codes below
  // 191, codes that no table covers drawing something, the math exception of code 127,
  // the lower half of KOI8/ISO7 not forced to STAN, and the driver's 8-bit limit.
  EXPECT_EQ(map_charset(kCharsetStan, 9, 0).code, kBlank);
  EXPECT_EQ(map_charset(kCharsetStan, 200, 0).code, 200);
  EXPECT_EQ(map_charset(kCharsetIso1, 161, 0).code, 185);
  EXPECT_EQ(map_charset(kCharsetIso1, 164, 0).code, 263);
  EXPECT_EQ(map_charset(kCharsetIso1, 169, 0).code, 264);
  EXPECT_EQ(map_charset(kCharsetIso1, 170, 0).code, kBlank);
  EXPECT_EQ(map_charset(kCharsetIso1, 127, 0).code, kBlank);
  EXPECT_EQ(map_charset(kCharsetIso1, 127, kAlphabetMath).code, 127);
  EXPECT_EQ(map_charset(kCharsetUtf8, 169, 0).code, 264);
  EXPECT_EQ(map_charset(kCharsetUtf8, 8364, 0).code, kBlank);  // the euro sign
  EXPECT_EQ(map_charset(kCharsetUtf8, 0x1F600, 0).code, kBlank);
  EXPECT_EQ(map_charset(kCharsetIso2, 150, 0).code, kBlank);
  EXPECT_EQ(map_charset(kCharsetKoi8, 65, kAlphabetGree).alphabet, kAlphabetStan);
  EXPECT_EQ(map_charset(kCharsetIso7, 65, kAlphabetRuss).alphabet, kAlphabetStan);
  EXPECT_EQ(map_charset(kCharsetUtf8, 65, kAlphabetGree).alphabet, -1);
  EXPECT_EQ(driver_code(186), 186);
  EXPECT_EQ(driver_code(264), 187);
  EXPECT_EQ(driver_code(187), kBlank);
  EXPECT_EQ(driver_code(263), kBlank);
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
  auto pick = [](const FontRecord& font, int k, int code) {
    const GlyphChoice c = choose_glyph(font, k, code);
    return std::vector<int>{c.alphabet, c.glyph, c.italic, c.fell_back};
  };
  EXPECT_EQ(pick(f, kAlphabetGree, 'A'), (std::vector<int>{kAlphabetGree, 2, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetGree, 'Z'), (std::vector<int>{kAlphabetGree, 27, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetGree, 'a'), (std::vector<int>{kAlphabetGree, 28, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetGree, 'z'), (std::vector<int>{kAlphabetGree, 53, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetGree, '['), (std::vector<int>{kAlphabetStan, '[' - 31, 0, 1}));
  EXPECT_EQ(pick(f, kAlphabetGree, '1'), (std::vector<int>{kAlphabetStan, '1' - 31, 0, 1}));
  EXPECT_EQ(pick(f, kAlphabetGree, 127), (std::vector<int>{kAlphabetGree, 54, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetMath, 127), (std::vector<int>{kAlphabetMath, 54, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetMath, 128), (std::vector<int>{kAlphabetStan, 97, 0, 1}));
  EXPECT_EQ(pick(f, kAlphabetScri, '1'), (std::vector<int>{kAlphabetStan, '1' - 31, 1, 1}));
  // Russian: digits and signs from STAN, letters shifted, codes from 127 blank.
  EXPECT_EQ(pick(f, kAlphabetRuss, '$'), (std::vector<int>{kAlphabetRuss, 2, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetRuss, '<'), (std::vector<int>{kAlphabetRuss, 5, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetRuss, 'A'), (std::vector<int>{kAlphabetRuss, 8, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetRuss, '^'), (std::vector<int>{kAlphabetRuss, 37, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetRuss, '_'), (std::vector<int>{kAlphabetStan, '_' - 31, 0, 1}));
  EXPECT_EQ(pick(f, kAlphabetRuss, '~'), (std::vector<int>{kAlphabetRuss, 67, 0, 0}));
  EXPECT_EQ(pick(f, kAlphabetRuss, 127), (std::vector<int>{kAlphabetStan, 1, 0, 1}));
  // Italic without glyphs of its own: the STAN glyph, slanted.
  EXPECT_EQ(pick(f, kAlphabetItal, 'q'), (std::vector<int>{kAlphabetItal, 'q' - 31, 1, 0}));
  // complx italic: small letters and three signs of its own, the rest slanted STAN.
  const FontRecord cx = record_of(3, false);
  EXPECT_EQ(pick(cx, kAlphabetItal, 'a'), (std::vector<int>{kAlphabetItal, 2, 0, 0}));
  EXPECT_EQ(pick(cx, kAlphabetItal, 'z'), (std::vector<int>{kAlphabetItal, 27, 0, 0}));
  EXPECT_EQ(pick(cx, kAlphabetItal, 130), (std::vector<int>{kAlphabetItal, 28, 0, 0}));
  EXPECT_EQ(pick(cx, kAlphabetItal, 'A'), (std::vector<int>{kAlphabetStan, 34, 1, 1}));
  // Glyph numbers beyond the alphabet: the blank.
  EXPECT_EQ(pick(cx, kAlphabetStan, 300), (std::vector<int>{kAlphabetStan, 1, 0, 0}));
  // An alphabet registered with glyphs numbered like STAN is not remapped.
  FontRecord direct = record_of(7, false);
  direct.alphabets[kAlphabetScri].present = true;
  EXPECT_EQ(pick(direct, kAlphabetScri, 'A'), (std::vector<int>{kAlphabetScri, 34, 0, 0}));
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
  // height, and a refused value that still changes the setting.
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
  EXPECT_EQ(c.text(),
            " <<<< Warning 2: Incorrect parameter in messag!   ( 60.5)\n"
            " <<<< Warning 2: Incorrect parameter in messag!   ( 2)\n"
            " <<<< Warning 2: Incorrect parameter in messag!   ( 0)\n"
            " <<<< Warning 2: Incorrect parameter in messag!   ( 0)\n"
            " <<<< Warning 2: Incorrect parameter in messag!   ( 10001)\n"
            " <<<< Warning 2: Incorrect parameter in messag!   ( 0)\n");
}

TEST(TextRoutines, Keywords) {
  // Catches a justification keyword that sets the wrong axis (horizontal vs vertical) and
  // keyword indices off by one.
  Captured c("messag");
  api::txtjus(c.g, "CENT");
  api::txtjus(c.g, "bott");
  EXPECT_EQ(c.g.text.hjust, 1);
  EXPECT_EQ(c.g.text.vjust, 2);
  api::txtjus(c.g, "RIGHT");
  api::txtjus(c.g, "TOP");
  EXPECT_EQ(c.g.text.hjust, 2);
  EXPECT_EQ(c.g.text.vjust, 0);
  api::chacod(c.g, "UTF8");
  EXPECT_EQ(c.g.text.charset, kCharsetUtf8);
  api::chacod(c.g, "ISO7");
  EXPECT_EQ(c.g.text.charset, kCharsetIso7);
  api::basalf(c.g, "RUSS");
  EXPECT_EQ(c.g.text.base_alphabet, kAlphabetRuss);
  api::basalf(c.g, "LATIN");
  EXPECT_EQ(c.g.text.base_alphabet, kAlphabetRuss);
  EXPECT_EQ(c.text(), " <<<< Warning 2: Incorrect parameter in messag!   (LATIN)\n");
}

}  // namespace
}  // namespace zorvel

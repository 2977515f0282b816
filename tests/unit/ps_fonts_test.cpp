// The metrics of the 35 standard PostScript fonts (text/ps_fonts.h, generated from the
// URW AFM files).

#include <gtest/gtest.h>

#include <string>

#include "text/driver_font.h"
#include "text/ps_font_data.h"
#include "text/ps_fonts.h"

namespace zorvel {
namespace {

TEST(PsFonts, CodeWidthsAgreeWithTheDriverFontTables) {
  // Catches a generator that reads another AFM file, another encoding or the straight
  // quotes at 39 and 96: hwfont text measured with the old tables would then be placed
  // differently by the drivers that now take the widths from here.
  for (int code = kDriverFirstCode; code < kDriverFirstCode + kDriverCodes; ++code) {
    EXPECT_EQ(ps_code_width(kPsTimesRoman, code), driver_width(DriverFace::Roman, code)) << code;
    EXPECT_EQ(ps_code_width(kPsTimesItalic, code), driver_width(DriverFace::Italic, code)) << code;
    EXPECT_EQ(ps_code_width(kPsSymbol, code), driver_width(DriverFace::Greek, code)) << code;
  }
}

TEST(PsFonts, TablesAreSortedAndCodesRoundTrip) {
  // Catches unsorted or duplicated entries (binary search then misses glyphs), codes
  // that lead to another character than the one the driver shows, and wrong ids.
  for (int id = 0; id < kPsFontCount; ++id) {
    const PsFontData& f = kPsFonts[id];
    SCOPED_TRACE(std::string(f.info.name));
    EXPECT_EQ(find_ps_font(f.info.name), id);
    for (std::size_t i = 1; i < f.glyphs.size(); ++i) {
      ASSERT_LT(f.glyphs[i - 1].unicode, f.glyphs[i].unicode);
    }
    for (std::size_t i = 1; i < f.kerns.size(); ++i) {
      const PsKern& a = f.kerns[i - 1];
      const PsKern& b = f.kerns[i];
      ASSERT_TRUE(a.left < b.left || (a.left == b.left && a.right < b.right));
    }
    for (int code = 1; code < 256; ++code) {
      const std::uint32_t u = ps_code_unicode(id, code);
      if (u != 0) {
        EXPECT_EQ(ps_code(id, u), code) << code;
        EXPECT_EQ(ps_code_width(id, code), ps_width(id, u)) << code;
      } else {
        EXPECT_EQ(ps_code_width(id, code), 0) << code;
      }
    }
    const int twin = f.info.italic_twin;
    if (f.info.symbolic) {
      EXPECT_EQ(twin, -1);
    } else {
      ASSERT_GE(twin, 0);
      EXPECT_TRUE(ps_font(twin).italic);
      EXPECT_EQ(ps_font(twin).weight, f.info.weight);
      EXPECT_EQ(ps_font(twin).families, f.info.families);
    }
  }
  EXPECT_EQ(find_ps_font("palatino-bolditalic"), 31);
  EXPECT_EQ(find_ps_font("Palatino"), -1);
  EXPECT_EQ(ps_font(kPsTimesRoman).cap_height, 662);
  EXPECT_EQ(ps_font(find_ps_font("Helvetica-Narrow")).italic_twin, 13);
}

TEST(PsFonts, CharactersNamesAndKerning) {
  // Catches glyph names mapped to the wrong characters (Symbol's letters are Greek, its
  // D also the increment sign), kerning pairs read the wrong way round, and code 0 for
  // characters a font has only by name.
  EXPECT_EQ(ps_kern(kPsTimesRoman, 'A', 'V'), -128);  // KPX A V -128
  EXPECT_EQ(ps_kern(kPsTimesRoman, 'V', 'A'), -120);  // KPX V A -120
  EXPECT_EQ(ps_kern(kPsTimesRoman, 'x', 'x'), 0);
  EXPECT_EQ(ps_kern(kPsTimesRoman, 'A', 0x10FFFF), 0);
  EXPECT_EQ(ps_code(kPsSymbol, 0x3B1), 'a');
  EXPECT_EQ(ps_code(kPsSymbol, 0x394), 'D');
  EXPECT_EQ(ps_code(kPsSymbol, 0x2206), 'D');
  EXPECT_EQ(ps_code(kPsSymbol, 0x221E), 0);  // infinity: shown by name
  EXPECT_EQ(ps_glyph_name(kPsSymbol, 0x221E), "infinity");
  EXPECT_EQ(ps_code(kPsZapfDingbats, 0x2701), '!');
  EXPECT_EQ(ps_glyph_name(kPsZapfDingbats, 0x2708), "a118");
  const int palatino = find_ps_font("Palatino-Italic");
  EXPECT_EQ(ps_code(palatino, 0xE4), 130);  // GermanVec's adieresis
  EXPECT_EQ(ps_code(palatino, 0x20AC), 0);
  EXPECT_EQ(ps_glyph_name(palatino, 0x20AC), "Euro");
  EXPECT_EQ(ps_code(palatino, '\''), '\'');
  EXPECT_EQ(ps_width(palatino, 0x4E00), -1);
  EXPECT_EQ(ps_glyph_name(palatino, 0x4E00), "");
  EXPECT_EQ(ps_width(8, 'i'), 600);  // Courier
  EXPECT_EQ(ps_width(-1, 'i'), -1);
  EXPECT_EQ(ps_code_width(kPsFontCount, 'i'), 0);
}

}  // namespace
}  // namespace zorvel

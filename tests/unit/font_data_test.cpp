// Integrity of the generated font tables (text/font_data_*.cpp), read through the
// engine's own walk (load_font, choose_glyph, for_each_point): a corrupt table must fail
// here, not draw blanks or garbage. Records fill their index and stay in their pools,
// glyphs lie in their cells, outline glyphs are closed polygons that fit the engine's
// buffer, letters exist and differ, and the character-set tables lead to the right glyphs.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "text/font.h"
#include "text/font_data.h"
#include "text/mapping.h"

namespace zorvel {
namespace {

constexpr int kTypes[] = {1, 3, 4, 5, 6, 7, 11, 12, 13, 14};

using Point = std::pair<double, double>;
using Stroke = std::vector<Point>;

const FontRecord& font(int type) {
  static std::map<int, std::unique_ptr<FontRecord>> fonts;
  auto& f = fonts[type];
  if (!f) {
    f = std::make_unique<FontRecord>();
    load_font(*f, type);
  }
  return *f;
}

// The strokes of glyph g of alphabet k, offsets applied; empty for a blank.
std::vector<Stroke> strokes(const FontRecord& f, int k, int g) {
  const AlphabetSlot& s = f.alphabets[static_cast<std::size_t>(k)];
  std::vector<Stroke> out;
  if (g < 2 || g > s.chars || s.record[static_cast<std::size_t>(g)] < 0) {
    return out;
  }
  for_each_point(s, g, [&](double x, double y, bool first) {
    if (first) {
      out.emplace_back();
    }
    out.back().emplace_back(x, y);
  });
  return out;
}

// The strokes that character code c draws in alphabet k, by the engine's glyph choice.
std::vector<Stroke> drawn(int type, int k, int c) {
  const GlyphChoice ch = choose_glyph(font(type), k, c);
  return strokes(font(type), ch.alphabet, ch.glyph);
}

std::vector<Stroke> stan(int type, int c) { return drawn(type, kAlphabetStan, c); }

// Whether every point of `part` is a point of `whole`, moved sideways by some amount.
bool contains_shifted(const std::vector<Stroke>& whole, const std::vector<Stroke>& part) {
  std::set<Point> w;
  std::set<Point> p;
  for (const Stroke& s : whole) w.insert(s.begin(), s.end());
  for (const Stroke& s : part) p.insert(s.begin(), s.end());
  for (int dx = -60; dx <= 60 && !p.empty(); ++dx) {
    if (std::all_of(p.begin(), p.end(),
                    [&](const Point& q) { return w.count({q.first + dx, q.second}) > 0; })) {
      return true;
    }
  }
  return false;
}

std::string where(int type, int k, int g) {
  return std::string(font_data(type)->name) + " alphabet " + std::to_string(k) + " glyph " +
         std::to_string(g);
}

TEST(FontData, EveryGlyphWalksAndLiesInItsCell) {
  // Catches a wrong length word (every later glyph of the alphabet turns blank), a
  // descriptor cut off by its record or a stroke reading outside its pool (the walk makes
  // that glyph blank), junk after the last record, a character count beyond the caches,
  // strokes of one point, a lookup that returns another font, and coordinates out of
  // their cell: left of the pen (overlapping the previous character), widths or heights
  // out of scale (a unit or sign error in the generator), or outside the 6-unit cell of
  // the fixed-pitch default font.
  for (const int t : kTypes) {
    const FontData& d = *font_data(t);
    ASSERT_EQ(d.type, t);
    const FontRecord& f = font(t);
    for (int k = 0; k < kAlphabetCount; ++k) {
      const AlphabetData& a = d.alphabets[k];
      const AlphabetSlot& s = f.alphabets[static_cast<std::size_t>(k)];
      EXPECT_LE(a.chars, kMaxGlyphs) << where(t, k, 0);
      if (a.index_words > 0) {
        EXPECT_EQ(a.points > 0, a.packed != nullptr) << where(t, k, 0);
        EXPECT_EQ(a.points < 0, a.xs != nullptr && a.ys != nullptr) << where(t, k, 0);
        const int last = s.record[static_cast<std::size_t>(a.chars)];
        EXPECT_EQ(last < 0 ? -1 : last + a.index[last], a.index_words) << where(t, k, 0);
      }
      const bool on_stan_pool = s.packed == f.alphabets[0].packed && s.xs == f.alphabets[0].xs;
      const bool cell = t == 1 && on_stan_pool;
      const double x_hi = cell ? (s.fixed_pitch ? 6 : 7) : s.outline ? 300 : 32;
      const double y_lo = cell ? -2 : s.outline ? -70 : -14;
      const double y_hi = cell ? 10 : s.outline ? 270 : 30;
      for (int g = 2; g <= s.chars; ++g) {
        ASSERT_GE(s.record[static_cast<std::size_t>(g)], 0) << where(t, k, g);
        for (const Stroke& st : strokes(f, k, g)) {
          EXPECT_GE(st.size(), 2U) << where(t, k, g);
          for (const auto& [x, y] : st) {
            EXPECT_TRUE(x >= 0 && x <= x_hi && y >= y_lo && y <= y_hi)
                << where(t, k, g) << " point " << x << ", " << y;
          }
        }
      }
    }
  }
  for (const int t : {-1, 0, 2, 8, 10, 15}) {
    EXPECT_EQ(font_data(t), nullptr) << t;
  }
}

double signed_area(const Stroke& c) {
  double a = 0;
  for (std::size_t i = 0; i + 1 < c.size(); ++i) {
    a += c[i].first * c[i + 1].second - c[i + 1].first * c[i].second;
  }
  return a / 2;
}

TEST(FontData, OutlineGlyphsAreClosedWithHolesRunningBackwards) {
  // Catches contours that are not closed (a gap in the outline, a fill that leaks) and
  // holes that run the same way as their outer contour (they would fill solid under the
  // non-zero rule).
  for (const int t : {11, 12, 13, 14}) {
    const FontRecord& f = font(t);
    for (int g = 2; g <= f.alphabets[kAlphabetStan].chars; ++g) {
      for (const Stroke& c : strokes(f, kAlphabetStan, g)) {
        EXPECT_TRUE(c.size() >= 4 && c.front() == c.back()) << where(t, 0, g);
      }
    }
    for (const int c : {'O', 'o', 'B', '8', 'a', 'e', 'A', 'D', 'R', '0'}) {
      const std::vector<Stroke> s = stan(t, c);
      ASSERT_GE(s.size(), 2U) << where(t, 0, c - 31);
      double outer = 0;  // the largest contour
      for (const Stroke& contour : s) {
        outer = std::abs(signed_area(contour)) > std::abs(outer) ? signed_area(contour) : outer;
      }
      for (const Stroke& contour : s) {
        const double a = signed_area(contour);
        EXPECT_TRUE(a == outer || a * outer < 0) << where(t, 0, c - 31);
      }
    }
  }
}

// Base letters of the accented codes 127..262 ('-': none to look for).
constexpr char kBases[] =
    "AOUaou-AO-ao-NnCcEIe-AEIOUae-ouAEIOUae-ouAEIOUae-ouAaOoYyy--"  // 127..186
    "D--p---AaAaCcCcCcCcDddEeEeGgGgGgHhHhI-J-LlLlNnNnOoRrSsSsSsSsTtTtUuUuUuZzZzZz";
// Base letters of ISO 8859-1 0xC0..0xFF.
constexpr char kIso1Bases[] = "AAAAAA-CEEEEIIII-NOOOOO-OUUUUY--aaaaaa-ceeee-----nooooo-ouuuuy-y";

TEST(FontData, EveryCharacterHasItsGlyph) {
  // Catches a standard character without strokes (drawn as a blank), and a shifted or
  // reordered extended alphabet: an accented letter contains its base letter's points,
  // at codes 127..262 (the driver's re-encoding order) and through the ISO 8859-1 table.
  static_assert(sizeof(kBases) - 1 == 262 - 127 + 1 && sizeof(kIso1Bases) - 1 == 64);
  for (const int t : kTypes) {
    const int last = 31 + font(t).alphabets[kAlphabetStan].chars;
    for (int c = 33; c <= last; ++c) {
      EXPECT_FALSE(stan(t, c).empty()) << where(t, 0, c - 31);
    }
    for (int c = 127; c <= std::min(262, last) && t < 7; ++c) {
      const char base = kBases[c - 127];
      EXPECT_TRUE(base == '-' || contains_shifted(stan(t, c), stan(t, base)))
          << where(t, 0, c - 31) << " base " << base;
    }
  }
  for (int b = 0xC0; b <= 0xFF; ++b) {
    const char base = kIso1Bases[b - 0xC0];
    EXPECT_TRUE(base == '-' || contains_shifted(stan(3, kIso1Codes[b - kIso1First]), stan(3, base)))
        << "ISO 8859-1 " << b << " base " << base;
  }
  for (const int t : {11, 12, 13, 14}) {  // an accent adds contours to its letter
    for (const int c : {127, 128, 130, 134, 140, 142, 148, 153, 158, 163}) {
      EXPECT_GT(stan(t, c).size(), stan(t, kBases[c - 127]).size()) << where(t, 0, c - 31);
    }
  }
}

TEST(FontData, LettersOfTheOtherAlphabetsExistAndDiffer) {
  // Catches a layout that puts one glyph on two letters or leaves a letter empty.
  struct Case {
    int type, alphabet, first, last;
  };
  const Case cases[] = {
      {3, kAlphabetGree, 2, 53}, {1, kAlphabetGree, 2, 53}, {4, kAlphabetGree, 2, 53},
      {3, kAlphabetRuss, 2, 67}, {3, kAlphabetMath, 2, 54}, {3, kAlphabetScri, 2, 53},
      {3, kAlphabetItal, 2, 30}, {7, kAlphabetItal, 34, 91},
      {7, kAlphabetScri, 66, 91},  // German I and J are one letter
  };
  for (const Case& c : cases) {
    std::set<std::vector<Stroke>> seen;
    for (int g = c.first; g <= c.last; ++g) {
      const std::vector<Stroke> s = strokes(font(c.type), c.alphabet, g);
      EXPECT_FALSE(s.empty()) << where(c.type, c.alphabet, g);
      EXPECT_TRUE(seen.insert(s).second) << where(c.type, c.alphabet, g) << " twice";
    }
  }
  for (const int t : kTypes) {
    EXPECT_FALSE(drawn(t, kAlphabetGree, 'A').empty()) << t;
    EXPECT_FALSE(drawn(t, kAlphabetGree, 'a').empty()) << t;
  }
}

TEST(FontData, CharacterSetTablesLeadToGlyphs) {
  // Catches a table entry naming a code without a glyph (a blank where the set has a
  // character), including in the 95-character Greek of zoralf and simplx.
  for (int i = 0; i < 96; ++i) {
    const int b = i + kIsoUpperFirst;
    if (b >= kIso1First) {  // every Latin-1 character above 190 has a glyph
      EXPECT_FALSE(stan(3, kIso1Codes[b - kIso1First]).empty()) << b;
    }
    for (const int code : {kIso2Codes[i], kIso3Codes[i]}) {
      EXPECT_TRUE(code <= 32 || !stan(3, code).empty()) << b << " code " << code;
    }
    for (const int code : {kIso5Codes[i], kKoi8Codes[i]}) {
      EXPECT_TRUE(code <= 32 || !drawn(3, kAlphabetRuss, code).empty()) << b;
    }
    for (const int t : {1, 3, 4}) {
      EXPECT_TRUE(kIso7Codes[i] <= 32 || !drawn(t, kAlphabetGree, kIso7Codes[i]).empty()) << b;
    }
    const int k = kUnicodeCyrillicAlphabets[i];
    EXPECT_TRUE(k == kAlphabetStan || k == kAlphabetRuss) << i;
    EXPECT_TRUE(kUnicodeCyrillicCodes[i] <= 32 || !drawn(3, k, kUnicodeCyrillicCodes[i]).empty())
        << i + 0x400;
  }
  for (int i = 0; i < 73; ++i) {
    const int k = kUnicodeGreekAlphabets[i];
    EXPECT_TRUE(k == kAlphabetStan || k == kAlphabetGree) << i;
    EXPECT_TRUE(kUnicodeGreekCodes[i] <= 32 || !drawn(3, k, kUnicodeGreekCodes[i]).empty())
        << i + 0x386;
  }
}

TEST(FontData, CharacterSetTablesAgreeWithEachOther) {
  // Catches a table built from a wrong chart: a character gets the same code whichever
  // set it comes from.
  for (int b = 0xB0; b <= 0xEF; ++b) {  // ISO 8859-5 0xB0..0xEF are U+0410..U+044F
    EXPECT_EQ(kIso5Codes[b - 160], kUnicodeCyrillicCodes[b - 0xB0 + 0x10]) << b;
  }
  EXPECT_EQ(kIso5Codes[0xA1 - 160], kUnicodeCyrillicCodes[0x01]);  // Io
  EXPECT_EQ(kIso5Codes[0xF1 - 160], kUnicodeCyrillicCodes[0x51]);  // io
  EXPECT_EQ(kKoi8Codes[0xA3 - 160], kIso5Codes[0xF1 - 160]);
  EXPECT_EQ(kKoi8Codes[0xB3 - 160], kIso5Codes[0xA1 - 160]);
  // KOI8-R small letters at 0xC0..0xDF in its own order, the capitals 32 above.
  const char16_t koi8[] = u"юабцдефгхийклмнопярстужвьызшэщчъ";
  std::set<int> russian;
  for (int i = 0; i < 32; ++i) {
    EXPECT_EQ(kKoi8Codes[0xC0 + i - 160], kUnicodeCyrillicCodes[koi8[i] - 0x400]) << i;
    EXPECT_EQ(kKoi8Codes[0xE0 + i - 160], kUnicodeCyrillicCodes[koi8[i] - 0x420]) << i;
    russian.insert({kKoi8Codes[0xC0 + i - 160], kKoi8Codes[0xE0 + i - 160]});
  }
  russian.insert({kIso5Codes[0xA1 - 160], kIso5Codes[0xF1 - 160]});
  EXPECT_EQ(russian.size(), 66U);  // 66 Russian letters, 66 codes
  for (int b = 0xB6; b <= 0xFE; ++b) {  // ISO 8859-7 0xB6..0xFE are U+0386..U+03CE ...
    if (b != 0xB7 && b != 0xBB && b != 0xBD) {  // ... but for three Latin-1 signs
      EXPECT_EQ(kIso7Codes[b - 160], kUnicodeGreekCodes[b + 0x2D0 - 0x386]) << b;
    }
  }
  // Latin letters that ISO 8859-1, -2 and -3 share at the same byte.
  for (const int b : {0xC1, 0xC2, 0xC4, 0xC7, 0xC9, 0xCB, 0xCD, 0xCE, 0xD3, 0xD4, 0xD6, 0xD7,
                      0xDA, 0xDC, 0xDD, 0xDF, 0xE1, 0xE2, 0xE4, 0xE7, 0xE9, 0xEB, 0xED, 0xEE,
                      0xF3, 0xF4, 0xF6, 0xF7, 0xFA, 0xFC}) {
    EXPECT_EQ(kIso2Codes[b - 160], kIso1Codes[b - kIso1First]) << b;
    EXPECT_TRUE(b == 0xDD || kIso3Codes[b - 160] == kIso1Codes[b - kIso1First]) << b;
  }
}

}  // namespace
}  // namespace zorvel

// Integrity of the generated font tables (text/font_data_*.cpp): every record walks, every
// stroke stays in its pool, the glyphs have the metrics the text engine relies on, and
// the character-set tables lead to glyphs that exist.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "text/font_data.h"

namespace zorvel {
namespace {

constexpr int kTypes[] = {1, 3, 4, 5, 6, 7, 11, 12, 13, 14};
const char* const kAlphabetNames[] = {"STAN", "GREE", "MATH", "ITAL", "SCRI", "RUSS"};

using Point = std::pair<double, double>;
using Stroke = std::vector<Point>;

struct Descriptor {
  int count;  // points, always positive here
  int start;  // 1-based
  double dx, dy;
};

// The tables an alphabet draws with, after the fall-backs to STAN.
struct Resolved {
  const AlphabetData* pool;   // the alphabet that holds the coordinates
  const AlphabetData* index;  // the alphabet that holds the glyph index
  double offset_unit;
};

Resolved resolve(const FontData& f, int k) {
  const AlphabetData* stan = &f.alphabets[kAlphabetStan];
  const AlphabetData* a = &f.alphabets[k];
  const AlphabetData* index = a->index_words == 0 ? stan : a;
  const AlphabetData* pool = index->points == 0 ? stan : index;
  const bool outline_glyphs = f.outline && pool == stan;
  return {pool, index, outline_glyphs ? 2.0 : 0.5};
}

int pool_size(const AlphabetData& a) { return a.points < 0 ? -a.points : a.points; }

Point pool_point(const AlphabetData& a, int i) {
  if (a.points > 0) {
    return {packed_x(a.packed[i]), packed_y(a.packed[i])};
  }
  return {a.xs[i], a.ys[i]};
}

// Offsets of the records of glyphs 2..chars; empty if the walk leaves the index.
std::vector<int> record_offsets(const AlphabetData& a) {
  std::vector<int> at;
  int pos = 0;
  for (int g = 2; g <= a.chars; ++g) {
    if (pos >= a.index_words || a.index[pos] < 1) {
      return {};
    }
    at.push_back(pos);
    pos += a.index[pos];
  }
  return pos == a.index_words ? at : std::vector<int>{};
}

// Stroke descriptors of one record, or nothing with ok = false if they do not fill it.
std::vector<Descriptor> descriptors(const Resolved& r, int at, bool* ok) {
  const int16_t* idx = r.index->index;
  const int end = at + idx[at];
  std::vector<Descriptor> out;
  int i = at + 1;
  *ok = true;
  while (i < end) {
    if (i + 1 >= end) {
      *ok = false;
      return out;
    }
    Descriptor d{idx[i], idx[i + 1], 0.0, 0.0};
    i += 2;
    if (d.count < 0) {
      if (i >= end) {
        *ok = false;
        return out;
      }
      const auto w = static_cast<uint16_t>(idx[i++]);
      d.count = -d.count;
      d.dx = packed_x(w) * r.offset_unit;
      d.dy = packed_y(w) * r.offset_unit;
    }
    out.push_back(d);
  }
  return out;
}

// The strokes of glyph g (2..chars) of alphabet k, offsets applied.
std::vector<Stroke> glyph(const FontData& f, int k, int g) {
  const Resolved r = resolve(f, k);
  const std::vector<int> at = record_offsets(*r.index);
  std::vector<Stroke> out;
  if (g < 2 || g - 2 >= static_cast<int>(at.size())) {
    return out;
  }
  bool ok = false;
  for (const Descriptor& d : descriptors(r, at[g - 2], &ok)) {
    Stroke s;
    for (int i = 0; i < d.count; ++i) {
      const Point p = pool_point(*r.pool, d.start - 1 + i);
      s.emplace_back(p.first + d.dx, p.second + d.dy);
    }
    out.push_back(s);
  }
  return out;
}

std::vector<Stroke> stan_glyph(int type, int code) {
  return glyph(*font_data(type), kAlphabetStan, code - 31);
}

std::set<Point> points_of(const std::vector<Stroke>& strokes) {
  std::set<Point> out;
  for (const Stroke& s : strokes) {
    out.insert(s.begin(), s.end());
  }
  return out;
}

struct Box {
  double x0 = 1e9, y0 = 1e9, x1 = -1e9, y1 = -1e9;
};

Box box_of(const std::vector<Stroke>& strokes) {
  Box b;
  for (const Stroke& s : strokes) {
    for (const Point& p : s) {
      b.x0 = std::min(b.x0, p.first);
      b.x1 = std::max(b.x1, p.first);
      b.y0 = std::min(b.y0, p.second);
      b.y1 = std::max(b.y1, p.second);
    }
  }
  return b;
}

// Whether every point of `part` is a point of `whole`, moved sideways by some amount.
bool contains_shifted(const std::vector<Stroke>& whole, const std::vector<Stroke>& part) {
  const std::set<Point> w = points_of(whole);
  const std::set<Point> p = points_of(part);
  if (p.empty()) {
    return false;
  }
  for (int dx = -60; dx <= 60; ++dx) {
    const bool all = std::all_of(p.begin(), p.end(), [&](const Point& q) {
      return w.count({q.first + dx, q.second}) > 0;
    });
    if (all) {
      return true;
    }
  }
  return false;
}

// Glyph number of code c in alphabet k of font f, by the remapping rules; 0: falls
// back to STAN.
int remap(const FontData& f, int k, int c) {
  const int g = c - 31;
  if (k == kAlphabetStan || f.alphabets[k].direct) {
    return g;
  }
  if (k == kAlphabetRuss) {
    if (g >= 5 && g <= 7) return g - 3;
    if (g >= 29 && g <= 31) return g - 24;
    if (g >= 34 && g <= 63) return g - 26;
    if (g >= 66 && g <= 95) return g - 28;
    return 0;
  }
  if (g >= 34 && g <= 59) return g - 32;
  if (g >= 66 && g <= 91) return g - 38;
  if (k == kAlphabetMath && g == 96) return 54;
  if ((k == kAlphabetGree || k == kAlphabetScri) && g >= 96) return g - 42;
  return 0;
}

// The strokes a character code draws in alphabet k (STAN where the alphabet passes it
// on); empty for a blank.
std::vector<Stroke> drawn(int type, int k, int c) {
  const FontData& f = *font_data(type);
  const int g = remap(f, k, c);
  if (g == 0) {
    return c - 31 <= f.alphabets[kAlphabetStan].chars ? stan_glyph(type, c)
                                                       : std::vector<Stroke>{};
  }
  return g <= f.alphabets[k].chars ? glyph(f, k, g) : std::vector<Stroke>{};
}

// ==========================================================================================
// Registration
// ==========================================================================================

TEST(FontData, FontsAreFoundByType) {
  // Catches a lookup that returns the wrong font, or tables for a type no routine selects.
  const char* const names[] = {"zoralf", "complx", "simplx", "duplx", "triplx",
                               "gothic", "helve",  "helves", "helvet", "serif"};
  int i = 0;
  for (int t : kTypes) {
    const FontData* f = font_data(t);
    ASSERT_NE(f, nullptr) << t;
    EXPECT_EQ(f->type, t);
    EXPECT_STREQ(f->name, names[i++]);
    EXPECT_EQ(f->outline, t > 10);
    EXPECT_EQ(f->blank_width, t == 1 ? 6 : t > 10 ? 60 : 9);
  }
  for (int t : {-1, 0, 2, 8, 9, 10, 15, 100}) {
    EXPECT_EQ(font_data(t), nullptr) << t;
  }
}

TEST(FontData, AlphabetsHaveTheirCharacterCounts) {
  // Catches an alphabet registered with the wrong table or count: glyph numbers beyond the
  // count draw blanks, so a short count silently loses characters.
  for (int t : kTypes) {
    const FontData& f = *font_data(t);
    const int stan = t == 3 ? 233 : t == 7 ? 95 : 132;
    const int gree = (t == 1 || t == 4) ? 95 : 116;
    const int ital = t == 3 ? 102 : t == 7 ? 95 : stan;
    const int expected[] = {stan, gree, 96, ital, 102, 95};
    for (int k = 0; k < kAlphabetCount; ++k) {
      EXPECT_EQ(f.alphabets[k].chars, expected[k]) << f.name << " " << kAlphabetNames[k];
    }
    // Italic of its own only in complx and gothic; the others draw slanted STAN glyphs.
    EXPECT_EQ(f.alphabets[kAlphabetItal].index_words == 0, t != 3 && t != 7) << f.name;
    // Only gothic's italic and German alphabets are numbered like STAN.
    for (int k = 0; k < kAlphabetCount; ++k) {
      const bool direct = t == 7 && (k == kAlphabetItal || k == kAlphabetScri);
      EXPECT_EQ(f.alphabets[k].direct, direct) << f.name << " " << kAlphabetNames[k];
    }
    // The Greek of zoralf and simplx lies on their STAN points.
    EXPECT_EQ(f.alphabets[kAlphabetGree].points == 0, t == 1 || t == 4) << f.name;
  }
}

TEST(FontData, SharedAlphabetsAreOneTable) {
  // Catches a shared alphabet emitted twice (or a font pointing at another font's own
  // alphabet): Greek, math, script and Russian are one table each.
  const FontData& complx = *font_data(3);
  for (int t : kTypes) {
    const FontData& f = *font_data(t);
    EXPECT_EQ(f.alphabets[kAlphabetMath].index, complx.alphabets[kAlphabetMath].index);
    EXPECT_EQ(f.alphabets[kAlphabetRuss].index, complx.alphabets[kAlphabetRuss].index);
    EXPECT_EQ(f.alphabets[kAlphabetScri].index == complx.alphabets[kAlphabetScri].index,
              t != 7);
    EXPECT_EQ(f.alphabets[kAlphabetGree].index == complx.alphabets[kAlphabetGree].index,
              t != 1 && t != 4);
  }
}

// ==========================================================================================
// Records and pools
// ==========================================================================================

TEST(FontData, EveryRecordWalksAndStaysInItsPool) {
  // Catches a wrong length word (every later glyph of the alphabet would draw garbage), a
  // descriptor cut off by the end of its record, and a stroke that reads outside its pool.
  for (int t : kTypes) {
    const FontData& f = *font_data(t);
    for (int k = 0; k < kAlphabetCount; ++k) {
      const Resolved r = resolve(f, k);
      SCOPED_TRACE(std::string(f.name) + " " + kAlphabetNames[k]);
      ASSERT_NE(r.index->index, nullptr);
      ASSERT_EQ(r.pool->points > 0, r.pool->packed != nullptr);
      ASSERT_EQ(r.pool->points < 0, r.pool->xs != nullptr && r.pool->ys != nullptr);
      const std::vector<int> at = record_offsets(*r.index);
      ASSERT_EQ(static_cast<int>(at.size()), r.index->chars - 1) << "the walk left the index";
      for (int g = 2; g <= r.index->chars; ++g) {
        bool ok = false;
        const std::vector<Descriptor> ds = descriptors(r, at[g - 2], &ok);
        ASSERT_TRUE(ok) << "glyph " << g;
        for (const Descriptor& d : ds) {
          EXPECT_GE(d.count, 2) << "glyph " << g;  // one point draws nothing
          EXPECT_GE(d.start, 1) << "glyph " << g;
          EXPECT_LE(d.start - 1 + d.count, pool_size(*r.pool)) << "glyph " << g;
        }
      }
    }
  }
}

TEST(FontData, GlyphsLieWithinTheirCells) {
  // Catches coordinates that start left of the pen (overlapping the previous character),
  // widths out of scale (a unit or sign error in the generator) and the fixed pitch of
  // the default font: its glyphs must fit the 6-unit cell it is set in.
  for (int t : kTypes) {
    const FontData& f = *font_data(t);
    for (int k = 0; k < kAlphabetCount; ++k) {
      const Resolved r = resolve(f, k);
      const bool outline = r.offset_unit == 2.0;
      double max_width = outline ? 300 : 32;
      double y_lo = outline ? -70 : -14, y_hi = outline ? 270 : 30;
      if (t == 1 && r.pool == &f.alphabets[kAlphabetStan]) {
        max_width = r.index == r.pool ? 6 : 7;
        y_lo = -2;
        y_hi = 10;
      }
      for (int g = 2; g <= r.index->chars; ++g) {
        const std::vector<Stroke> s = glyph(f, k, g);
        if (s.empty()) {
          continue;
        }
        const Box b = box_of(s);
        SCOPED_TRACE(std::string(f.name) + " " + kAlphabetNames[k] + " glyph " +
                     std::to_string(g));
        EXPECT_GE(b.x0, 0);
        EXPECT_LE(b.x1, max_width);
        EXPECT_GE(b.y0, y_lo);
        EXPECT_LE(b.y1, y_hi);
      }
    }
  }
}

double signed_area(const Stroke& c) {
  double a = 0;
  for (std::size_t i = 0; i + 1 < c.size(); ++i) {
    a += c[i].first * c[i + 1].second - c[i + 1].first * c[i].second;
  }
  return a / 2;
}

TEST(FontData, OutlineGlyphsAreClosedPolygonsOfAtMost200Points) {
  // Catches contours that are not closed (the outline drawn around the filled area would
  // have a gap, and the joins between contours would not cancel), glyphs too large for
  // the engine's polygon buffer, and holes that run the same way as their outer contour
  // (they would fill solid under the non-zero rule).
  for (int t : {11, 12, 13, 14}) {
    const FontData& f = *font_data(t);
    for (int g = 2; g <= f.alphabets[kAlphabetStan].chars; ++g) {
      const std::vector<Stroke> s = glyph(f, kAlphabetStan, g);
      int polygon = 0;
      for (const Stroke& c : s) {
        EXPECT_GE(c.size(), 4u) << f.name << " glyph " << g;
        EXPECT_EQ(c.front(), c.back()) << f.name << " glyph " << g;
        polygon += static_cast<int>(c.size());
      }
      if (!s.empty()) {
        polygon += static_cast<int>(s.size()) - 1;
      }
      EXPECT_LE(polygon, kMaxOutlinePolygon) << f.name << " glyph " << g;
    }
    // Letters made of one outer contour (the largest) and holes.
    for (int c : {'O', 'o', 'B', '8', 'a', 'e', 'A', 'D', 'R', '0'}) {
      const std::vector<Stroke> s = stan_glyph(t, c);
      ASSERT_GE(s.size(), 2u) << f.name << " " << static_cast<char>(c);
      std::vector<double> areas;
      for (const Stroke& contour : s) {
        areas.push_back(signed_area(contour));
      }
      const double outer = *std::max_element(areas.begin(), areas.end(), [](double a, double b) {
        return std::abs(a) < std::abs(b);
      });
      for (double a : areas) {
        if (a != outer) {
          EXPECT_LT(a * outer, 0) << f.name << " " << static_cast<char>(c);
        }
      }
    }
  }
}

// ==========================================================================================
// Metrics and coverage
// ==========================================================================================

TEST(FontData, CapitalsSpanTheCharacterHeight) {
  // Catches a wrong vertical scale or base line: the engine scales by divisors that make a
  // capital exactly the character height (7 units in zoralf, 21 in the stroke fonts, 200
  // in the outline fonts), and small letters lower and descenders below the line.
  for (int t : kTypes) {
    const double cap = t == 1 ? 7 : t > 10 ? 200 : 21;
    const Box h = box_of(stan_glyph(t, 'H'));
    const Box x = box_of(stan_glyph(t, 'x'));
    const Box p = box_of(stan_glyph(t, 'p'));
    SCOPED_TRACE(font_data(t)->name);
    EXPECT_NEAR(h.y0, 0, cap / 40);
    if (t != 7) {  // the gothic capitals carry flourishes above the line
      EXPECT_NEAR(h.y1, cap, cap / 40);
    }
    EXPECT_LT(x.y1, h.y1 * 0.8);
    EXPECT_NEAR(x.y0, 0, cap / 40);
    EXPECT_LT(p.y0, -cap / 10);
  }
}

TEST(FontData, EveryStandardCharacterHasAGlyph) {
  // Catches a character of the standard alphabet left without strokes (it would draw as a
  // blank), in ASCII, in the extended codes and in the ISO 8859-2/-3 letters of complx.
  for (int t : kTypes) {
    const FontData& f = *font_data(t);
    for (int c = 33; c <= 31 + f.alphabets[kAlphabetStan].chars; ++c) {
      EXPECT_FALSE(stan_glyph(t, c).empty()) << f.name << " code " << c;
    }
  }
}

// Base letter of the accented codes 127..262 ('-': no single base letter to look for).
constexpr char kBases[] =
    "AOUaou-AO-ao-NnCcEIe-AEIOUae-ouAEIOUae-ouAEIOUae-ouAaOoYyy--"  // 127..186
    "D--p---AaAaCcCcCcCcDddEeEeGgGgGgHhHhI-J-LlLlNnNnOoRrSsSsSsSsTtTtUuUuUuZzZzZz";

TEST(FontData, AccentedLettersContainTheirBaseLetter) {
  // Catches a shifted or reordered extended alphabet (codes 127..262 must follow the
  // driver's re-encoding order and the documented layout): an accented letter drawn from
  // its base letter contains all of the base letter's points.
  static_assert(sizeof(kBases) - 1 == 262 - 127 + 1);
  for (int t : {1, 3, 4, 5, 6}) {
    const FontData& f = *font_data(t);
    for (int c = 127; c <= std::min(262, 31 + f.alphabets[kAlphabetStan].chars); ++c) {
      const char base = kBases[c - 127];
      if (base == '-') {
        continue;
      }
      EXPECT_TRUE(contains_shifted(stan_glyph(t, c), stan_glyph(t, base)))
          << f.name << " code " << c << " base " << base;
    }
  }
  // In the outline fonts an accent adds contours to its letter.
  for (int t : {11, 12, 13, 14}) {
    for (int c : {127, 128, 130, 134, 140, 142, 148, 153, 158, 163}) {
      EXPECT_GT(stan_glyph(t, c).size(), stan_glyph(t, kBases[c - 127]).size())
          << font_data(t)->name << " code " << c;
    }
  }
}

TEST(FontData, GreekRussianMathAndScriptLettersAreDistinct) {
  // Catches a layout that puts the same glyph on two letters or leaves a letter empty, in
  // each alphabet reached by the letters.
  struct Case {
    int type, alphabet, first, last;
  };
  const Case cases[] = {
      {3, kAlphabetGree, 2, 53},   // Greek capitals and small letters
      {1, kAlphabetGree, 2, 53},   {4, kAlphabetGree, 2, 53},
      {3, kAlphabetRuss, 2, 67},   // 33 + 33 Russian letters
      {3, kAlphabetMath, 2, 54},   // symbols on the letters and on code 127
      {3, kAlphabetScri, 2, 53},   {3, kAlphabetItal, 2, 30},
      {7, kAlphabetItal, 34, 91},
      {7, kAlphabetScri, 66, 91},  // German I and J are one letter
  };
  for (const Case& c : cases) {
    const FontData& f = *font_data(c.type);
    std::set<std::vector<Stroke>> seen;
    for (int g = c.first; g <= c.last; ++g) {
      const std::vector<Stroke> s = glyph(f, c.alphabet, g);
      SCOPED_TRACE(std::string(f.name) + " " + kAlphabetNames[c.alphabet] + " glyph " +
                   std::to_string(g));
      EXPECT_FALSE(s.empty());
      EXPECT_TRUE(seen.insert(s).second) << "same glyph twice";
    }
  }
  // The Greek capital A (code 'A' in GREE) and alpha (code 'a') draw in every font.
  for (int t : kTypes) {
    EXPECT_FALSE(drawn(t, kAlphabetGree, 'A').empty()) << font_data(t)->name;
    EXPECT_FALSE(drawn(t, kAlphabetGree, 'a').empty()) << font_data(t)->name;
  }
  // The Greek accented letters contain their letter: alpha tonos (127 and 136).
  EXPECT_TRUE(contains_shifted(drawn(3, kAlphabetGree, 127), drawn(3, kAlphabetGree, 'A')));
  EXPECT_TRUE(contains_shifted(drawn(4, kAlphabetGree, 136), drawn(4, kAlphabetGree, 'a')));
}

// ==========================================================================================
// Character-set tables
// ==========================================================================================

TEST(FontData, CharacterSetTablesLeadToGlyphs) {
  // Catches a table entry that names a code without a glyph (it would draw a blank where
  // the set has a character) or a code beyond the alphabet of the fonts that should have
  // it: the ISO 8859-7 table must work in the 95-character Greek of zoralf and simplx.
  for (int i = 0; i < 65; ++i) {
    const int c = kIso1Codes[i];
    EXPECT_NE(c, 0) << "ISO 8859-1 " << i + kIso1First;  // every Latin-1 letter exists
    EXPECT_FALSE(drawn(3, kAlphabetStan, c).empty()) << "ISO 8859-1 " << i + kIso1First;
  }
  for (int i = 0; i < 96; ++i) {
    const int b = i + kIsoUpperFirst;
    for (const uint16_t* table : {kIso2Codes, kIso3Codes}) {
      if (table[i] > 32) {
        EXPECT_FALSE(drawn(3, kAlphabetStan, table[i]).empty()) << b;
      }
    }
    for (const uint8_t* table : {kIso5Codes, kKoi8Codes}) {
      if (table[i] > 32) {
        EXPECT_FALSE(drawn(3, kAlphabetRuss, table[i]).empty()) << b;
      }
    }
    if (kIso7Codes[i] > 32) {
      for (int t : {1, 3, 4}) {
        EXPECT_FALSE(drawn(t, kAlphabetGree, kIso7Codes[i]).empty()) << t << " " << b;
      }
    }
  }
  for (int i = 0; i < 96; ++i) {
    const int k = kUnicodeCyrillicAlphabets[i];
    ASSERT_TRUE(k == kAlphabetStan || k == kAlphabetRuss);
    if (kUnicodeCyrillicCodes[i] > 32) {
      EXPECT_FALSE(drawn(3, k, kUnicodeCyrillicCodes[i]).empty()) << i + 0x400;
    }
  }
  for (int i = 0; i < 73; ++i) {
    const int k = kUnicodeGreekAlphabets[i];
    ASSERT_TRUE(k == kAlphabetStan || k == kAlphabetGree);
    if (kUnicodeGreekCodes[i] > 32) {
      EXPECT_FALSE(drawn(3, k, kUnicodeGreekCodes[i]).empty()) << i + 0x386;
    }
  }
  // Spot checks of the layouts.
  EXPECT_EQ(kIso1Codes[0xC4 - kIso1First], 127);  // A dieresis
  EXPECT_EQ(kIso1Codes[0xBF - kIso1First], 186);  // inverted question mark
  EXPECT_EQ(kIso1Codes[0xFF - kIso1First], 184);  // y dieresis
  const int zhe = 0x416 - kUnicodeCyrillicFirst;   // Cyrillic capital Zhe
  EXPECT_EQ(kUnicodeCyrillicAlphabets[zhe], kAlphabetRuss);
  EXPECT_FALSE(drawn(3, kAlphabetRuss, kUnicodeCyrillicCodes[zhe]).empty());
  EXPECT_EQ(kUnicodeGreekCodes[0x3B1 - kUnicodeGreekFirst], 'a');  // alpha on 'a'
  EXPECT_EQ(kUnicodeGreekCodes[0x3A6 - kUnicodeGreekFirst], 'F');  // Phi on 'F'
}

TEST(FontData, CharacterSetTablesAgreeWithEachOther) {
  // Catches a table built from a wrong chart: the same character must get the same code
  // whichever set it comes from.
  // ISO 8859-5 letters 0xB0..0xEF are U+0410..U+044F in order, 0xA1 and 0xF1 are Io.
  for (int b = 0xB0; b <= 0xEF; ++b) {
    EXPECT_EQ(kIso5Codes[b - 160], kUnicodeCyrillicCodes[b - 0xB0 + 0x10]) << b;
  }
  EXPECT_EQ(kIso5Codes[0xA1 - 160], kUnicodeCyrillicCodes[0x01]);
  EXPECT_EQ(kIso5Codes[0xF1 - 160], kUnicodeCyrillicCodes[0x51]);
  // KOI8-R small letters at 0xC0..0xDF in its own order, the capitals 32 above.
  const int koi8[32] = {0x44E, 0x430, 0x431, 0x446, 0x434, 0x435, 0x444, 0x433,
                        0x445, 0x438, 0x439, 0x43A, 0x43B, 0x43C, 0x43D, 0x43E,
                        0x43F, 0x44F, 0x440, 0x441, 0x442, 0x443, 0x436, 0x432,
                        0x44C, 0x44B, 0x437, 0x448, 0x44D, 0x449, 0x447, 0x44A};
  for (int i = 0; i < 32; ++i) {
    EXPECT_EQ(kKoi8Codes[0xC0 + i - 160], kUnicodeCyrillicCodes[koi8[i] - 0x400]) << i;
    EXPECT_EQ(kKoi8Codes[0xE0 + i - 160], kUnicodeCyrillicCodes[koi8[i] - 0x20 - 0x400]) << i;
  }
  EXPECT_EQ(kKoi8Codes[0xA3 - 160], kIso5Codes[0xF1 - 160]);  // io
  EXPECT_EQ(kKoi8Codes[0xB3 - 160], kIso5Codes[0xA1 - 160]);  // Io
  // The 66 Russian letters get 66 different codes.
  std::set<int> russian;
  for (int i = 0x10; i < 0x50; ++i) {
    russian.insert(kUnicodeCyrillicCodes[i]);
  }
  russian.insert(kUnicodeCyrillicCodes[0x01]);
  russian.insert(kUnicodeCyrillicCodes[0x51]);
  EXPECT_EQ(russian.size(), 66u);
  // ISO 8859-7 0xB6..0xFE are U+0386..U+03CE, but for three Latin-1 signs.
  for (int b = 0xB6; b <= 0xFE; ++b) {
    if (b == 0xB7 || b == 0xBB || b == 0xBD) {
      continue;
    }
    EXPECT_EQ(kIso7Codes[b - 160], kUnicodeGreekCodes[b + 0x2D0 - 0x386]) << b;
  }
  // Latin letters that ISO 8859-1, -2 and -3 share at the same byte.
  for (int b : {0xC1, 0xC2, 0xC4, 0xC7, 0xC9, 0xCB, 0xCD, 0xCE, 0xD3, 0xD4, 0xD6, 0xD7,
                0xDA, 0xDC, 0xDF, 0xE1, 0xE2, 0xE4, 0xE7, 0xE9, 0xEB, 0xED, 0xEE, 0xF3,
                0xF4, 0xF6, 0xF7, 0xFA, 0xFC}) {
    EXPECT_EQ(kIso2Codes[b - 160], kIso1Codes[b - kIso1First]) << b;
    EXPECT_EQ(kIso3Codes[b - 160], kIso1Codes[b - kIso1First]) << b;
  }
  EXPECT_EQ(kIso2Codes[0xDD - 160], kIso1Codes[0xDD - kIso1First]);  // Y acute
}

}  // namespace
}  // namespace zorvel

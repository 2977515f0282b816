#pragma once
// Loading a font into the font record: the font reset, the registration of its six
// alphabets and the caches that spare every character a walk through the glyph index.

#include "text/text_state.h"

namespace zorvel {

struct GlobalBlock;

// Font types of the font routines.
inline constexpr int kFontZoralf = 1;
inline constexpr int kFontComplx = 3;
inline constexpr int kFontSimplx = 4;
inline constexpr int kFontDuplx = 5;
inline constexpr int kFontTriplx = 6;
inline constexpr int kFontGothic = 7;
inline constexpr int kFontHelve = 11;
inline constexpr int kFontHelves = 12;
inline constexpr int kFontHelvet = 13;
inline constexpr int kFontSerif = 14;

// Replaces the font record by the font of `type` (stroke mode): resets the metrics of
// the six alphabets for the type, registers the font's tables and builds the caches. A
// type without tables leaves every alphabet empty (every character draws a blank).
void load_font(FontRecord& font, int type);

// Fills the record-offset and width caches of an alphabet by walking its index once.
// A record that would leave the index, or a stroke that would leave the coordinate
// pool, makes its glyph a blank; a broken length word ends the walk (the glyphs after
// it are blanks). Public for the integrity tests.
void build_glyph_caches(AlphabetSlot& slot);

// Calls f(x, y, first) for every point of glyph `glyph` of `slot` in font units, the
// stroke offsets applied; first is true at the first point of every stroke. The glyph
// must have a record (slot.record[glyph] >= 0), which the caches have checked.
template <typename F>
void for_each_point(const AlphabetSlot& slot, int glyph, F&& f) {
  const std::int16_t* idx = slot.index;
  const int at = slot.record[static_cast<std::size_t>(glyph)];
  const int end = at + idx[at];
  int i = at + 1;
  while (i < end) {
    int count = idx[i];
    const int start = idx[i + 1] - 1;
    i += 2;
    double dx = 0.0;
    double dy = 0.0;
    if (count < 0) {
      const auto off = static_cast<std::uint16_t>(idx[i++]);
      dx = packed_x(off) * slot.offset_unit;
      dy = packed_y(off) * slot.offset_unit;
      count = -count;
    }
    if (slot.packed != nullptr) {
      const std::uint16_t* p = slot.packed + start;
      for (int k = 0; k < count; ++k) {
        f(packed_x(p[k]) + dx, packed_y(p[k]) + dy, k == 0);
      }
    } else {
      const std::int16_t* xs = slot.xs + start;
      const std::int16_t* ys = slot.ys + start;
      for (int k = 0; k < count; ++k) {
        f(xs[k] + dx, ys[k] + dy, k == 0);
      }
    }
  }
}

}  // namespace zorvel

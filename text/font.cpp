#include "text/font.h"

#include <algorithm>
#include <limits>

#include "text/font_data.h"

namespace zorvel {
namespace {

struct Metrics {
  int x_divisor;
  int y_divisor;
  double gap_factor;
};

// Per-alphabet metrics of the font reset. The first glyph designs differ in their grids:
// font 1 draws on a 6 by 7 grid, font 2 on 12 by 13, the outline fonts on 200 by 200;
// the stroke alphabets of every font share the 20 by 21 grid.
Metrics reset_metrics(int type, int alphabet) {
  const bool latin = alphabet == kAlphabetStan || alphabet == kAlphabetItal;
  const bool first_three = latin || alphabet == kAlphabetGree;
  if (type == 1 && first_three) {
    return {6, 7, 0.0};
  }
  if (type == 2 && first_three) {
    return {12, 13, static_cast<double>(1.0F / 6.0F)};
  }
  if (type > 10 && latin) {
    return {200, 200, static_cast<double>(0.2F)};
  }
  return {20, 21, 0.25};
}

// Checks the record at `at` of length `len` and computes the glyph's width; false when
// a descriptor runs past the record or a stroke past the pool.
bool check_record(const AlphabetSlot& s, int at, int len, float& width) {
  const std::int16_t* idx = s.index;
  const int end = at + len;
  int i = at + 1;
  double widest = -std::numeric_limits<double>::infinity();
  while (i < end) {
    if (end - i < 2) {
      return false;
    }
    int count = idx[i];
    const int start = idx[i + 1];
    i += 2;
    double dx = 0.0;
    if (count < 0) {
      if (i >= end) {
        return false;
      }
      dx = packed_x(static_cast<std::uint16_t>(idx[i++])) * s.offset_unit;
      count = -count;
    }
    if (count == 0) {
      continue;
    }
    if (start < 1 || start - 1 + count > s.points) {
      return false;
    }
    for (int k = start - 1; k < start - 1 + count; ++k) {
      const int x = s.packed != nullptr ? packed_x(s.packed[k]) : s.xs[k];
      widest = std::max(widest, x + dx);
    }
  }
  width = widest == -std::numeric_limits<double>::infinity() ? 0.0F : static_cast<float>(widest);
  return true;
}

}  // namespace

void build_glyph_caches(AlphabetSlot& s) {
  s.record.fill(-1);
  s.width.fill(0.0F);
  if (s.index == nullptr || s.index_words <= 0) {
    return;
  }
  if (s.packed == nullptr && (s.xs == nullptr || s.ys == nullptr)) {
    return;
  }
  const int last = std::min(s.chars, kMaxGlyphs);
  int at = 0;
  for (int glyph = 2; glyph <= last && at < s.index_words; ++glyph) {
    const int len = s.index[at];
    if (len < 1 || len > s.index_words - at) {
      return;  // the walk cannot go on: the remaining glyphs stay blanks
    }
    float width = 0.0F;
    if (check_record(s, at, len, width)) {
      s.record[static_cast<std::size_t>(glyph)] = at;
      s.width[static_cast<std::size_t>(glyph)] = width;
    }
    at += len;
  }
}

void load_font(FontRecord& f, int type) {
  // The font reset.
  f.type = type;
  f.mode = FontMode::Stroke;
  f.blank_width = type == 1 ? 6 : type == 2 ? 5 : type > 10 ? 60 : 9;
  f.loaded = 0;
  f.total_points = 0;
  f.total_index = 0;
  f.selected = -1;
  for (int k = 0; k < kAlphabetCount; ++k) {
    AlphabetSlot& s = f.alphabets[static_cast<std::size_t>(k)];
    s = AlphabetSlot{};
    const Metrics m = reset_metrics(type, k);
    s.x_divisor = m.x_divisor;
    s.y_divisor = m.y_divisor;
    s.gap_factor = m.gap_factor;
    s.present = k == kAlphabetStan;
  }
  if (type != 7) {
    f.alphabets[kAlphabetScri].gap_factor = 0.0;
  }

  const FontData* data = font_data(type);
  if (data == nullptr) {
    return;
  }
  f.blank_width = data->blank_width;
  const AlphabetSlot* stan = nullptr;
  for (int k = 0; k < kAlphabetCount; ++k) {
    const AlphabetData& a = data->alphabets[k];
    AlphabetSlot& s = f.alphabets[static_cast<std::size_t>(k)];
    s.index_offset = f.total_index;
    s.coord_offset = f.total_points;
    s.chars = std::min(a.chars, kMaxGlyphs);
    if (stan != nullptr && a.index_words == 0) {
      // No glyphs of its own: the STAN glyphs, with this alphabet's metrics.
      const AlphabetSlot keep = s;
      s = *stan;
      s.x_divisor = keep.x_divisor;
      s.y_divisor = keep.y_divisor;
      s.gap_factor = keep.gap_factor;
      s.index_offset = keep.index_offset;
      s.coord_offset = keep.coord_offset;
      s.present = false;
      s.borrowed = true;
    } else {
      if (a.points == 0 && stan != nullptr) {
        s.packed = stan->packed;  // the STAN pool under an index of its own
        s.xs = stan->xs;
        s.ys = stan->ys;
        s.points = stan->points;
      } else {
        s.packed = a.points > 0 ? a.packed : nullptr;
        s.xs = a.points < 0 ? a.xs : nullptr;
        s.ys = a.points < 0 ? a.ys : nullptr;
        s.points = a.points < 0 ? -a.points : a.points;
      }
      s.index = a.index;
      s.index_words = a.index_words;
      s.outline = k == kAlphabetStan && data->outline;
      s.offset_unit = s.outline ? 2.0 : 0.5;
      s.fixed_pitch = k == kAlphabetStan && type == 1;
      s.present = k == kAlphabetStan || a.direct;
      build_glyph_caches(s);
    }
    f.total_points += a.points < 0 ? -a.points : a.points;
    f.total_index += a.index_words;
    ++f.loaded;
    if (k == kAlphabetStan) {
      stan = &s;
    }
  }
}

}  // namespace zorvel

#pragma once
// Bitmap fonts in the Glyph Bitmap Distribution Format (BDF 2.1, as pcf2bdf and the X
// font tools write it), read by our own parser. Only what drawing needs is kept: every
// glyph's bitmap, box and advance, by its encoding, and the font's ascent, descent and
// capital height in pixels.
//
// The parser trusts nothing: sizes, counts and coordinates are bounded (kBdf* limits),
// lines may end anywhere, and a damaged glyph is dropped, not the font. A file that is
// not BDF at all, or holds no glyph, is refused.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zorvel {

// Bounds on what a BDF file may claim; beyond them it is refused or the glyph dropped.
inline constexpr int kBdfMaxGlyphs = 65536;     // glyphs kept
inline constexpr int kBdfMaxPixels = 1024;      // width or height of one glyph bitmap
inline constexpr std::size_t kBdfMaxBytes = 64U << 20;  // bitmap bytes of the whole font

struct BdfGlyph {
  std::uint32_t code = 0;   // ENCODING: Unicode when the font's registry is ISO10646,
                            //   else the code in the font's own charset
  int advance = 0;          // DWIDTH x, pixels
  int width = 0;            // BBX: bitmap size and offset of its lower left corner from
  int height = 0;           //   the origin, pixels, y up
  int xoff = 0;
  int yoff = 0;
  std::uint32_t bits = 0;   // first byte of the bitmap in BdfFont::bits: rows from the
                            //   top, each (width + 7) / 8 bytes, most significant bit left
};

struct BdfFont {
  std::string name;         // FONT
  std::string registry;     // CHARSET_REGISTRY-CHARSET_ENCODING, "ISO10646-1", "ISO8859-1"
  int ascent = 0;           // FONT_ASCENT, pixels above the base line
  int descent = 0;          // FONT_DESCENT
  int cap_height = 0;       // CAP_HEIGHT, else the height of "H" above the base line,
                            //   else the ascent
  int default_char = -1;    // DEFAULT_CHAR, -1 when absent
  std::vector<BdfGlyph> glyphs;     // sorted by code, codes unique
  std::vector<std::uint8_t> bits;   // the bitmaps of all glyphs

  // The glyph of `code`, or null.
  const BdfGlyph* find(std::uint32_t code) const;
  // The pixel at column x, row y (from the top) of glyph g.
  bool pixel(const BdfGlyph& g, int x, int y) const;
};

enum class BdfStatus { Ok, NotBdf, Damaged };

// Parses a whole BDF file held in memory into `font`. NotBdf: it does not start with
// STARTFONT; Damaged: no glyph could be read, or the limits are exceeded. Glyphs with
// unusable records are dropped silently and counted in `dropped` (may be null).
BdfStatus parse_bdf(std::span<const std::uint8_t> data, BdfFont& font, int* dropped);

// Calls run(x, y, n) for every horizontal run of n set pixels of glyph g: column x, row
// y from the top of the bitmap.
template <typename F>
void for_each_run(const BdfFont& font, const BdfGlyph& g, F&& run) {
  const int stride = (g.width + 7) / 8;
  for (int y = 0; y < g.height; ++y) {
    const std::uint8_t* row = font.bits.data() + g.bits + static_cast<std::size_t>(y) * stride;
    int x = 0;
    while (x < g.width) {
      if ((row[x >> 3] & (0x80U >> (x & 7))) == 0U) {
        ++x;
        continue;
      }
      const int start = x;
      while (x < g.width && (row[x >> 3] & (0x80U >> (x & 7))) != 0U) {
        ++x;
      }
      run(start, y, x - start);
    }
  }
}

}  // namespace zorvel

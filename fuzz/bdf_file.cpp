// The fuzz target of the BDF reader: the input is a BDF font file. The reader must end on
// anything, read only inside the input, and hand back a font whose every glyph lies inside
// its bit store and within the limits, sorted by unique codes, or nothing at all.

#include <cstdint>
#include <cstdlib>
#include <span>

#include "fonts/bdf.h"

namespace {

void check(bool ok) {
  if (!ok) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zorvel::BdfFont font;
  int dropped = -1;
  const zorvel::BdfStatus status = zorvel::parse_bdf(std::span(data, size), font, &dropped);
  check(dropped >= 0);
  if (status != zorvel::BdfStatus::Ok) {
    check(font.glyphs.empty() && font.bits.empty());
    return 0;
  }
  check(!font.glyphs.empty() && font.glyphs.size() <= zorvel::kBdfMaxGlyphs);
  check(font.bits.size() <= zorvel::kBdfMaxBytes);
  // A CHARS count reserves no more than the file can hold.
  check(font.glyphs.capacity() <= size / 8 + 2 * font.glyphs.size());
  std::uint64_t set = 0;
  for (std::size_t i = 0; i < font.glyphs.size(); ++i) {
    const zorvel::BdfGlyph& g = font.glyphs[i];
    check(i == 0 || font.glyphs[i - 1].code < g.code);
    check(font.find(g.code) == &g);
    check(g.width >= 0 && g.width <= zorvel::kBdfMaxPixels);
    check(g.height >= 0 && g.height <= zorvel::kBdfMaxPixels);
    const std::size_t stride = static_cast<std::size_t>(g.width + 7) / 8;
    check(g.bits + stride * static_cast<std::size_t>(g.height) <= font.bits.size());
    // The runs and the pixels tell the same bitmap.
    std::uint64_t runs = 0;
    zorvel::for_each_run(font, g, [&](int x, int y, int n) {
      check(x >= 0 && n > 0 && x + n <= g.width && y >= 0 && y < g.height);
      check(font.pixel(g, x, y) && font.pixel(g, x + n - 1, y) && !font.pixel(g, x + n, y));
      runs += static_cast<std::uint64_t>(n);
    });
    std::uint64_t pixels = 0;
    for (int y = -1; y <= g.height; ++y) {
      for (int x = -1; x <= g.width; ++x) {
        pixels += font.pixel(g, x, y) ? 1U : 0U;
      }
    }
    check(pixels == runs);
    set += pixels;
  }
  check(set <= font.bits.size() * 8U);
  return 0;
}

// The fuzz target of the TrueType/OpenType reader that embeds fonts in PDF files: the
// input is a font file. The reader must end on anything and read only inside the input;
// a face it accepts must give widths, glyph checks and a font program for every glyph it
// calls sound, without faults.

#include <cstdint>
#include <string>
#include <vector>

#include "drivers/pdf_fontfile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zorvel::FontProgram font;
  if (!font.load_bytes(std::string(reinterpret_cast<const char*>(data), size), 0)) {
    return 0;
  }
  // The first glyphs and those of a few characters, as a run would use them.
  std::vector<bool> used(std::min<std::uint32_t>(font.glyph_count(), 256), false);
  for (std::uint32_t g = 0; g < used.size(); ++g) {
    used[g] = font.glyph_ok(g);
    static_cast<void>(font.width(g));
  }
  for (const std::uint32_t u : {0x41U, 0x61U, 0xE9U, 0x3B1U, 0x416U, 0x10FFFFU}) {
    const std::uint32_t g = font.glyph_of(u);
    if (g < used.size()) {
      continue;
    }
    static_cast<void>(font.glyph_ok(g));
  }
  static_cast<void>(font.program(used));
  return 0;
}

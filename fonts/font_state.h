#pragma once
// State of the outline and bitmap fonts in the GlobalBlock: the options of fntopt, the
// faces read so far (kept with their flattened glyphs until the block is deleted, so a
// glyph is loaded and flattened once), and which of them the font in use draws with.

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fonts/bdf.h"
#include "fonts/outline_font.h"
#include "text/ps_fonts.h"

namespace zorvel {

// Faces kept per block; further font files are refused (warning 212).
inline constexpr int kMaxFaces = 64;
// Characters whose fall-back face is remembered.
inline constexpr int kMaxFallbacks = 256;

struct FontFileState {
  // fntopt
  bool kerning = false;   // "KERN": pair kerning
  bool typo = false;      // "SPAC" "TYPO": the font's advances plus chaspc
  bool embed = true;      // "EMBE" "SUBS": fonts embedded as subsets where formats can
  bool fallback = true;   // "FALL": missing characters from fontconfig's fall-back font

  std::string name;       // what getfnt reports for modes 1 to 4 ("Times-Roman", ...)
  // Faces read so far, found again by path and index.
  std::vector<std::unique_ptr<OutlineFont>> faces;
  // Per face: whether drivers that embed font files can embed it (-1: not asked yet).
  std::vector<signed char> file_embeddable;
  int roman = -1;         // face of the font in use (window-system and font-file modes)
  int italic = -1;        // its italic face: -1 not looked for yet, -2 none (15-degree slant)
  // Characters the font lacks and the face (index into faces, -1 none) that draws them.
  std::vector<std::pair<std::uint32_t, int>> fallbacks;
  int ps_font = -1;       // psfont: the standard font in use (driver-font mode)
  // The URW twins' faces per standard font: -1 not read yet, -2 missing.
  std::array<int, kPsFontCount> ps_faces{};
  std::unique_ptr<BdfFont> bitmap;  // bmpfnt: the bitmap font in use

  FontFileState() { ps_faces.fill(-1); }
};

// Leaves the outline, bitmap and standard fonts: a stroke font or hwfont is in use. The
// faces read stay for later use.
void forget_font_file(FontFileState& s);

}  // namespace zorvel

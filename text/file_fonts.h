#pragma once
// The text engine's side of the outline, bitmap and standard PostScript fonts: laying out
// a character in them (layout_fonts.cpp) and drawing it (render_fonts.cpp). The faces
// themselves, their lookup and their routines are in fonts/.
//
// Metrics as for the stroke fonts: capitals are (height - 1) high, a character's cell is
// its extent from the origin plus the font mode's gap ("SPAC" "STAN"), or its advance plus
// chaspc ("SPAC" "TYPO"). The standard PostScript fonts measure with their AFM widths on
// every device, so a string is as long in a PNG file as in PostScript.

#include <cstdint>
#include <vector>

#include "drivers/driver.h"

namespace zorvel {

struct GlobalBlock;
struct LaidGlyph;

// Lays out `code` in the outline, bitmap or standard font in use, when that font draws
// it: false for characters left to the stroke glyphs of the font record (the alphabets
// these fonts lack, and everything in stroke and hwfont modes).
bool lay_file_code(GlobalBlock& g, LaidGlyph& e, int code);

// The character that `code` stands for in character set `charset` (0 for codes the set
// leaves undefined).
std::uint32_t code_unicode(int charset, int code);

// A run of glyphs in one font file for a driver that embeds fonts, collected while a
// string is drawn.
struct FileRun {
  int face = -1;                   // face in g.fonts.faces; -1: nothing collected
  double size = 0.0;               // em, plot units
  double stretch = 1.0;
  std::vector<GlyphPlace> places;  // origins in plot units
};

// Draws a File, Bitmap or outline-drawn standard-font glyph with its pen at (x, y) (plot
// units, on the base line, raise not applied). File glyphs that the driver embeds are
// added to `run` (flushed by flush_file_run); false when the glyph could not be drawn.
bool draw_font_glyph(GlobalBlock& g, const LaidGlyph& e, double x, double y, FileRun& run);
// Hands the collected run to the driver and empties it.
void flush_file_run(GlobalBlock& g, FileRun& run);

// The face drawing standard font `id` on devices without fonts of their own (its URW
// twin), read on first use; -1 when the file is missing.
int ps_outline_face(GlobalBlock& g, int id);

}  // namespace zorvel

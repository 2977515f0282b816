#pragma once
// From character codes to glyphs: the character-set mapping (codes of ISO 8859 sets,
// KOI8-R and Unicode onto the fonts' character codes and alphabets) and the alphabet
// remapping (a code's glyph number translated into the numbering of the Greek, math,
// italic, script and Russian alphabets, with the fall-back to STAN).

#include "text/text_state.h"

namespace zorvel {

// Code 32, the blank.
inline constexpr int kBlank = 32;

struct MappedCode {
  int code;      // character code of the fonts (glyph = code - 31)
  int alphabet;  // alphabet to draw this one character from, -1: the current one
  bool missing;  // a character that the fonts lack, drawn as the blank
};

// Maps a decoded code by the character set (chacod). Codes below 32 become the blank;
// codes from 127 up become glyph codes of the extended standard alphabet, of RUSS or of
// GREE by the set's table, or the blank where no table covers them (missing; the
// control codes 127..159 and the no-break space are blanks without being missing).
// Code 127 while the current alphabet is MATH is kept.
MappedCode map_charset(int charset, int code, int current_alphabet);

// Restricts a mapped code to the 8-bit codes of the driver fonts (32..187: ASCII, the
// accented letters 127..186, 187 the copyright sign): the copyright sign of the extended
// alphabet (264) becomes 187, other codes above 186 the blank.
int driver_code(int code);

struct GlyphChoice {
  int alphabet;    // alphabet whose tables draw the glyph
  int glyph;       // glyph number in that alphabet (1 = blank)
  bool italic;     // add the synthetic 15-degree slant
  bool fell_back;  // the alphabet has no glyph for it: drawn from STAN
};

// Chooses the glyph of `code` in alphabet `alphabet` of the loaded font: the alphabet's
// remapping rule unless the font registered it with glyphs numbered like STAN; the STAN
// glyph (with the synthetic slant for the italic and script alphabets) where the
// alphabet has none. A glyph number beyond the chosen alphabet becomes the blank.
GlyphChoice choose_glyph(const FontRecord& font, int alphabet, int code);

}  // namespace zorvel

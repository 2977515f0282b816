#pragma once
// The two steps of the text engine.
//
// Layout (layout.cpp): the decoded codes of a string become a run of laid-out glyphs,
// one per code, each with everything needed to draw it: which glyph of which alphabet
// (or which character of which driver face), its cell along the base line, the gap
// after it, its scale, slant and offsets. The run is independent of the start point and
// of the angle, so one layout serves measuring (nlmess, justification, frames) and
// drawing, and nothing is drawn while laying out.
//
// Rendering (render.cpp): a laid-out run is drawn from a pen position along the text
// angle through the pipeline: stroke glyphs as polylines, outline glyphs as one filled
// path of all their contours (even-odd rule) followed by their outlines, consecutive
// driver-font characters of one face as one text run. Transforms and clipping apply to
// everything alike.
//
// Pen positions along the base line are plot units from the start of the string; the
// renderer moves the pen by the same steps (lead, then advance) as the layout adds them.

#include <cstdint>
#include <vector>

#include "text/decode.h"
#include "text/driver_font.h"

namespace zorvel {

struct GlobalBlock;
struct AlphabetSlot;

// How a laid-out glyph is drawn.
enum class GlyphKind : std::uint8_t {
  Blank,    // nothing: the blank, and characters without a glyph
  Stroke,   // polylines of a stroke alphabet
  Outline,  // closed contours of an outline alphabet: filled, then outlined
  Driver,   // a character of the device's own font
  Rule,     // a filled bar (fraction bars, radicals, under- and overlines): the cell
            //   from pen + inset over `width`, from `raise` up to `raise + thick`
  Symbol,   // plot symbol `font_code` (axes/symbols.h), `width` high, centred on the
            //   cell from `raise` up
  File,     // a glyph of an outline font (ttfont, winfnt): `gid` of face `face_slot` of
            //   the block's faces, filled (or text in the font file where drivers embed)
  Bitmap,   // a glyph of the bitmap font (bmpfnt): `gid` is its code, drawn as pixel runs
  Shape,    // a drawn sign of formulas that stretches (radicals, delimiters, accents):
            //   `glyph` names it (TexShape), in the same cell as a rule; drawn as lines,
            //   or filled `weight` thick when weight > 0
};

struct LaidGlyph {
  std::int32_t code = 0;       // the string's code (Unicode with UTF8), for warnings
  std::int32_t font_code = 0;  // the code after the character-set mapping; driver glyphs:
                               //   the face's 8-bit code (see driver_code)
  std::int16_t glyph = 1;      // glyph number in `alphabet` (1: the blank)
  std::int8_t alphabet = 0;    // alphabet whose tables draw the glyph
  GlyphKind kind = GlyphKind::Blank;
  DriverFace face = DriverFace::Roman;  // face of a driver glyph
  bool italic = false;         // synthetic 15-degree slant of a fall-back glyph
  bool missing = false;        // no glyph for the character: a blank in its place
  double lead = 0.0;           // pen step before the cell (the gap in front of a run of
                               //   fall-back characters)
  double pen = 0.0;            // start of the cell along the base line
  double width = 0.0;          // width of the cell
  double gap = 0.0;            // gap after the cell
  double advance = 0.0;        // pen step after the cell: width + gap
  double inset = 0.0;          // where the glyph starts in its cell (fixed spacing)
  double unit_x = 0.0;         // plot units per font unit, scale included
  double unit_y = 0.0;
  double slant = 0.0;          // chaang: horizontal shift per unit of height
  double stretch = 1.0;        // width factor (driver faces)
  double raise = 0.0;          // base-line offset along "up" of raised and lowered pieces
  double size = 1.0;           // their size factor; units and widths already include it
  double thick = 0.0;          // thickness of a rule, plot units
  int colour = -1;             // colour value the glyph is drawn in; -1: the current one
  const AlphabetSlot* slot = nullptr;  // tables of a glyph of another font than the
                                       //   loaded one ({F} commands); null: the loaded font's
  double weight = 0.0;         // Shape: stroke thickness, plot units; 0 drawn as lines
  std::uint32_t gid = 0;       // File: glyph index in its face; Bitmap: the glyph's code
  std::uint32_t unicode = 0;   // File, Bitmap and standard-font glyphs: the character
  std::int16_t face_slot = -1; // File: face in g.fonts.faces
  std::int16_t ps_id = -1;     // Driver glyphs of psfont: the standard font (ps_fonts.h)
  double own_width = 0.0;      // File and standard-font glyphs: the glyph's own advance,
                               //   plot units (the cell may be wider: fixed spacing)
};

struct TextLayout {
  std::vector<LaidGlyph> glyphs;  // reused: allocated once for kMaxTextCodes glyphs
  double end = 0.0;               // pen after the last glyph
  int length = 0;                 // measured length as nlmess gives it
  int missing = -1;               // code of the first character without a glyph, or -1
  double ascent = 0.0;            // extent above the base line and below it, plot units:
  double descent = 0.0;           //   for plain text the capitals' height and 0
};

// Nearest int of v (halves away from zero), clamped to +-2e9; NaN gives 0.
int round_int(double v);
// The same conversion towards zero.
int trunc_int(double v);

// Lays out `codes` with the text parameters in force into g.text.layout (which it
// returns). The measured length is the largest extent of the pen from the start with the
// gap after the last glyph not counted, rounded; 0 for no codes.
const TextLayout& layout_codes(GlobalBlock& g, const CodeString& codes);

// Lays out one code into `e` (everything but its pen) in the working state's alphabet,
// size, shift and colour (g.text.work), with the character-set mapping, stand-ins and
// fall-backs of layout_codes: the step of layout_codes for code loops that change the
// working state between characters (instructions inside strings, formulas).
void lay_code(GlobalBlock& g, LaidGlyph& e, int code);

// Draws `layout` with the pen starting at (x, y) (plot units before the origin offset,
// on the base line); (x, y) is left at the pen after the last glyph. Returns the code of
// the first character that could not be drawn (no glyph, or an outline whose contours
// are broken), -1 when all were drawn.
int render_layout(GlobalBlock& g, const TextLayout& layout, double& x, double& y);

}  // namespace zorvel

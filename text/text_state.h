#pragma once
// State of the text engine in the GlobalBlock: the text parameters set by the public
// routines, the font record of the loaded font with its per-alphabet caches, the
// working state of the string being laid out, its layout and the renderer's buffers.
//
// Units: plot units (0.01 cm) with y growing downwards for positions; font units for
// glyph coordinates (y upwards). Angles are degrees counter-clockwise on the page.

#include <array>
#include <cstdint>
#include <vector>

#include "drivers/driver.h"
#include "text/file_fonts.h"
#include "text/font_data.h"
#include "text/layout.h"
#include "text/mix_state.h"
#include "text/tex_state.h"

namespace zorvel {

// Glyph numbers an alphabet can hold (record-offset and width caches).
inline constexpr int kMaxGlyphs = 256;
// Character height set by zorini: 36 plot units (3.6 mm capitals, about 10 pt type),
// readable on an A4 page and the size axis labels are designed around.
inline constexpr int kDefaultHeight = 36;
// Fixed-cell width constant of fixspc, the single-precision 1.4.
inline constexpr double kFixedCell = static_cast<double>(1.4F);
// Synthetic italic: one unit across for every 3.732 up (15 degrees), single precision.
inline constexpr double kItalicRise = static_cast<double>(3.732F);

// Font modes.
enum class FontMode : int {
  Stroke = 0,  // stroke and outline glyphs of the font tables, drawn by the pipeline
  Driver = 1,  // the output device's own font (PostScript Times-Roman), see driver_font.h,
               //   or a standard PostScript font of psfont (text/ps_fonts.h)
  Window = 2,  // a system font found by fontconfig (winfnt), drawn from its outlines
  Bitmap = 3,  // a BDF bitmap font (bmpfnt)
  File = 4,    // an outline font file (ttfont)
};

// One alphabet of the loaded font as the font routine registered it, with the caches
// built at load: the offset of every glyph's record in the index and every glyph's
// width, so that no character walks the index.
struct AlphabetSlot {
  const std::uint16_t* packed = nullptr;  // packed pool, or null for the separate form
  const std::int16_t* xs = nullptr;       // separate pool
  const std::int16_t* ys = nullptr;
  int points = 0;                         // points in the pool
  const std::int16_t* index = nullptr;    // glyph index
  int index_words = 0;
  int chars = 0;                          // glyphs 1 .. chars (1 is the blank)
  int index_offset = 0;                   // index words registered before this alphabet
  int coord_offset = 0;                   // points registered before this alphabet
  int x_divisor = 20;                     // font units per (height - 1), horizontally
  int y_divisor = 21;                     // ... and vertically
  double gap_factor = 0.25;               // gap after every character, in heights
  double offset_unit = 0.5;               // stroke offsets: 0.5 stroke, 2.0 outline glyphs
  bool present = false;   // own glyphs numbered like STAN: no remapping rule
  bool borrowed = false;  // no glyphs of its own: draws the STAN glyphs
  bool outline = false;   // closed contours: filled and outlined
  bool fixed_pitch = false;  // every glyph 6 font units wide (STAN of font 1)
  // Offset of glyph g's record in the index, -1 for glyphs without a usable record
  // (beyond the index, or a record that does not stay inside its tables).
  std::array<std::int32_t, kMaxGlyphs + 1> record{};
  // Width of glyph g in font units: its largest horizontal coordinate (offsets added).
  std::array<float, kMaxGlyphs + 1> width{};
};

// The font record: rebuilt by every font routine.
struct FontRecord {
  int type = 0;                   // font type; 0 before the first font routine
  FontMode mode = FontMode::Stroke;
  int blank_width = 6;            // advance of the blank in font units
  std::array<AlphabetSlot, kAlphabetCount> alphabets{};
  int loaded = 0;                 // alphabets registered
  int total_points = 0;           // running totals of the registrations
  int total_index = 0;

  // Cache of the alphabet last selected (-1: none; forgotten at the start of every
  // string and whenever height or width factor change).
  int selected = -1;
  double unit_x = 0.0;            // plot units per font unit, horizontally
  double unit_y = 0.0;            // ... vertically
  double gap = 0.0;               // gap after every character, plot units
};

// Working copies made at the start of every string (instructions inside a string may
// change them for that string only); the layout reads them for every character.
struct TextWork {
  double shift = 0.0;             // base-line offset along the "up" direction
  double size = 1.0;              // size factor of the current piece
  int alphabet = 0;               // current alphabet
  double spacing = 0.0;
  double width_factor = 1.0;
  double slant = 0.0;
  bool fixed = false;
  double fixed_factor = 1.0;
  bool fell_back = false;         // the previous character fell back to STAN
  int colour = -1;                // colour value of the characters; -1: the current one
  int prev_face = -1;             // outline and standard fonts: the face and character of
  std::uint32_t prev_char = 0;    //   the glyph before, for kerning (-1: none)
};

// Buffers of the renderer, kept between strings: once they have grown to the largest
// glyph and run seen, drawing allocates nothing.
struct TextScratch {
  std::vector<double> xs;          // the contours of one outline glyph, plot units
  std::vector<double> ys;
  std::vector<int> ends;           // end index of every contour
  std::vector<GlyphPlace> places;  // the driver-font run being collected
  FileRun file_run;                // the run in a font file being collected
};

struct TextState {
  int height = kDefaultHeight;    // capitals' height, plot units, 1..10000
  int angle = 0;                  // base-line direction, degrees counter-clockwise
  double sin_a = 0.0;             // sine and cosine of angle, used everywhere
  double cos_a = 1.0;
  double slant = 0.0;             // chaang: 1 / tan(90 - a)
  double spacing = 0.0;           // chaspc: extra gap, in heights
  double width_factor = 1.0;      // chawth: horizontal stretch, 0 < f < 2
  bool fixed = false;             // fixspc: every character in a fixed cell ...
  double fixed_factor = 1.0;      // ... of factor * 1.4 * width factor * (height - 1)
  int hjust = 0;                  // txtjus: 0 LEFT, 1 CENT, 2 RIGH
  int vjust = 0;                  // txtjus: 0 TOP, 1 MIDD, 2 BOTT
  int charset = 0;                // chacod: 0 STAN 1 ISO1 2 ISO2 3 ISO3 4 ISO5 5 KOI8 6 UTF8 7 ISO7
  int base_alphabet = 0;          // basalf: 0 STAN .. 5 RUSS
  int frame = 0;                  // frmess: frame thickness around every string, 0 none
  bool page_check = true;         // warn about start and end points outside the page

  // Contour labels (concrv): characters whose centre lies outside the circle are skipped.
  bool label_mode = false;
  double label_cx = 0.0;
  double label_cy = 0.0;
  double label_radius = 0.0;

  MixState mix;                   // the instruction alphabet
  TexState tex;                   // the formula mode

  FontRecord font;
  TextWork work;
  TextLayout layout;              // the string last laid out (drawn or measured)
  TextScratch scratch;

  // End of the last string drawn: where messag(..., 999, 999) continues.
  double next_x = 0.0;
  double next_y = 0.0;
};

}  // namespace zorvel

#pragma once
// The formula mode (texmod): strings with $...$ (text style) and $$...$$ (display style)
// are laid out as formulas: the source is expanded (texmac), parsed into boxes in one
// pass and the boxes are placed by the rules of mathematical typesetting, with glue in
// units of the character height. The result is an ordinary run of laid-out glyphs:
// every glyph's lead moves the pen to its x, its raise is its y, so that the renderer,
// measuring, justification and frames treat formulas like other text.

#include <cstdint>
#include <string_view>

#include "text/decode.h"
#include "text/layout.h"

namespace zorvel {

struct GlobalBlock;

// Warnings of the formula mode.
inline constexpr int kTexSyntax = 201;    // "TeX syntax error: <fault>" (value: position)
inline constexpr int kTexUnknown = 202;   // "Unknown TeX command" (value: the name)
inline constexpr int kTexComplex = 203;   // "Formula too complex"

// Lays out `codes` (a string in which formula mode is on) into `out`, with the working
// state of the string already set up: the text outside the dollars as plain text, the
// formulas as boxes; out.ascent and out.descent are the extents of the tallest box (at
// least the capitals' height and 0). Returns false when the string holds no formula, or
// after a warning (201-203): the caller then lays the string out as plain text, dollars
// and all. The working state is left as it was found.
bool layout_formula(GlobalBlock& g, const CodeString& codes, TextLayout& out);

// Signs of formulas drawn by the renderer (LaidGlyph::glyph of a Shape glyph).
enum TexShape : std::int16_t {
  kShapeNone = 0,
  kShapeParenL,
  kShapeParenR,
  kShapeBracketL,
  kShapeBracketR,
  kShapeBraceL,
  kShapeBraceR,
  kShapeVert,
  kShapeDoubleVert,
  kShapeAngleL,
  kShapeAngleR,
  kShapeFloorL,
  kShapeFloorR,
  kShapeCeilL,
  kShapeCeilR,
  kShapeSlash,
  kShapeRadical,
  kShapeHat,
  kShapeTilde,
  kShapeVec,
  kShapeRule,  // a bar drawn as one line along the middle of its cell
  kShapeCount,
};

// How far a filled stroke of a shape reaches out of its centre lines, in weights.
inline constexpr double kTexShapeReach = 0.75;

// Draws a Shape glyph whose cell starts at the pen (x, y) (plot units, y down), along
// the text angle: as polylines, or as filled strokes of e.weight.
void draw_tex_shape(GlobalBlock& g, const LaidGlyph& e, double x, double y);

// Centre lines of shape `shape` in a cell of width w and height h (plot units, v up from
// the bottom of the cell): up to `max` points into us, vs; starts[i] is true where a new
// line begins. Returns the number of points. For tests and the renderer.
int tex_shape_points(int shape, double w, double h, double* us, double* vs, bool* starts,
                     int max);

// Commands of formulas and what they stand for (formula_symbols.cpp).
enum class TexCmd : std::uint8_t {
  Glyph,      // a sign: alphabet, code, class
  BigOp,      // a big operator: MATH code; amount: 1 sum-like (limits in display), 0 integral
  Func,       // an upright name (\sin); amount 1: limits in display style (\lim)
  Space,      // glue of `amount` em
  Frac,       // \frac, \dfrac (code 1), \tfrac (code 2), \binom (code 3)
  Sqrt,
  Accent,     // code: TexAccent
  Left,
  Right,
  Middle,
  Big,        // amount: height in em; code 0 any, 1 opening, 2 closing
  Font,       // code: TexFont
  Text,       // \text, \mbox
  Begin,
  End,
  Delim,      // a delimiter sign by name: code TexShape (or a character for \{ \})
  Dots,       // code 0 \ldots, 1 \cdots
  Limits,     // code 1 \limits, 0 \nolimits
  Ignore,     // accepted without effect (\displaystyle, \nonumber, \left.)
};

enum TexAccent : std::int32_t {
  kAccentHat = 0,
  kAccentBar,
  kAccentVec,
  kAccentDot,
  kAccentDdot,
  kAccentTilde,
  kAccentOverline,
  kAccentUnderline,
};

enum TexFont : std::int32_t {
  kFontMath = 0,  // letters italic (texopt ITAL), the rest upright
  kFontRm,
  kFontIt,
  kFontBf,
  kFontCal,
  kFontText,      // \text: spaces kept, no atom classes
};

struct TexSymbol {
  std::string_view name;
  TexCmd cmd;
  std::int8_t alphabet;
  std::uint8_t cls;
  std::int16_t code;
  float amount;
};

// The symbol of command `name` (without the backslash), or null.
const TexSymbol* find_tex_symbol(std::string_view name);

}  // namespace zorvel

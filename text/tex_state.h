#pragma once
// Settings of the formula mode: $...$ and $$...$$ laid out as formulas (texmod, texmac,
// texopt), and the buffers that the parser and the box layout reuse from formula to
// formula so that laying one out allocates nothing once they have grown.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "text/layout.h"

namespace zorvel {

// Deepest nesting of groups, fractions, scripts and environments in a formula, and the
// most boxes (characters, rules, lists) one string may hold.
inline constexpr int kTexMaxNesting = 32;
inline constexpr int kTexMaxBoxes = 2000;
// Macros of texmac: how many, the longest name and definition.
inline constexpr int kTexMaxMacros = 100;
inline constexpr int kTexMaxMacroName = 31;
inline constexpr int kTexMaxMacroBody = 1000;
// Longest formula source after macro expansion, and most expansions per string.
inline constexpr int kTexMaxSource = 4096;
inline constexpr int kTexMaxExpansions = 500;

// What a box of the formula is.
enum class TexKind : std::uint8_t {
  Char,     // one glyph: code in `code`, alphabet in `alphabet`
  List,     // a horizontal list: children a, linked by `next`
  Frac,     // fraction: numerator a, denominator b; flags bit 0: no bar
  Sqrt,     // radical: body a, index b (-1: none)
  Scripts,  // nucleus a (-1: empty), superscript b, subscript c
  Op,       // big operator or function name with limits: nucleus a, limits b (above), c (below)
  Accent,   // accent `code` (TexAccent) over body a
  Delims,   // body a between the delimiters code >> 8 and code & 0xff (TexDelim)
  Big,      // a delimiter of fixed size: code the delimiter, aux its height in em
  Space,    // glue of `aux` em (negative: a kern backwards)
  Matrix,   // environment `code` (TexEnv): cells a (List boxes) in rows; aux: columns
  RowEnd,   // the end of a matrix row (among the cells)
};

// Spacing classes of atoms, as in the classic rules of mathematical typesetting.
enum TexClass : std::uint8_t {
  kTexOrd = 0,
  kTexOp = 1,
  kTexBin = 2,
  kTexRel = 3,
  kTexOpen = 4,
  kTexClose = 5,
  kTexPunct = 6,
  kTexInner = 7,
};

struct TexNode {
  TexKind kind = TexKind::Char;
  std::uint8_t cls = kTexOrd;   // spacing class
  std::int8_t alphabet = 0;     // Char: alphabet of the glyph
  std::uint8_t flags = 0;       // Char: 1 bold, 2 italic letter, 4 text; List: 0x80 primes;
                                //   Frac: 1 no bar, 2 display, 4 text style; Op: 1 limits
                                //   in display style, 2 always, 4 large in display style,
                                //   8 (set by the layout) limits above and below
  std::int32_t code = 0;        // Char: character code; Accent, Delims, Matrix: kind
  std::int32_t a = -1;          // children (see TexKind)
  std::int32_t b = -1;
  std::int32_t c = -1;
  std::int32_t next = -1;       // next box of the same list
  float aux = 0.0F;             // Space, Big: amount in em
  // Filled by the layout: the box in plot units and positions of its parts.
  float w = 0.0F;
  float h = 0.0F;
  float d = 0.0F;
  float p = 0.0F;               // Frac: numerator shift; Scripts: sup shift; Char: glyph index
  float q = 0.0F;               // Frac: denominator shift; Scripts: sub shift
  float r = 0.0F;               // further offsets (Scripts: italic kern; Op: centring)
  float r2 = 0.0F;              // Op: the space before its side scripts
  float x = 0.0F;               // offset in its list
  std::uint8_t ecls = kTexOrd;  // class after the rules of the list it stands in
};

struct TexMacro {
  std::string name;  // without the backslash
  std::string body;
  int params = 0;    // highest #n of the body
};

struct TexState {
  bool on = false;       // texmod
  bool display = false;  // texopt STYL: $...$ in display style
  bool italic = true;    // texopt ITAL: letters from the ITAL alphabet

  std::vector<TexMacro> macros;

  // Buffers of one formula, reused.
  std::vector<std::int32_t> source;    // the formula's codes after macro expansion
  std::vector<std::int32_t> expand;    // expansion work buffer
  std::vector<TexNode> nodes;          // the boxes
  std::vector<float> cells;            // matrix column widths and row extents
  std::vector<LaidGlyph> laid;         // the glyph of every Char box, laid once

  // Vertical extents of glyphs (font units), per alphabet, filled on first use and
  // forgotten when the alphabet's tables change (another font).
  struct Extents {
    const void* index = nullptr;
    double offset_unit = 0.0;
    std::array<std::int16_t, 257> top{};
    std::array<std::int16_t, 257> bottom{};
    std::array<bool, 257> known{};
  };
  std::array<Extents, 6> extents{};

  // Back to the settings of zorini (the macros are forgotten too).
  void reset() {
    on = false;
    display = false;
    italic = true;
    macros.clear();
  }
};

}  // namespace zorvel

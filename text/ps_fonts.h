#pragma once
// The 35 standard PostScript fonts: their names, the URW twins whose outlines draw them
// on devices without fonts of their own, and the metrics that measure text in them alike
// on every device (advance widths and kerning pairs, generated from the URW AFM files by
// tools/fonts/gen_ps_fonts.py into text/ps_font_metrics.cpp).
//
// Text fonts are written in one 8-bit encoding on every device: ASCII 32..126, the
// accented letters of the PostScript prolog's GermanVec vector at 127..186, the
// copyright sign at 187 (driver_unicode of text/driver_font.h); codes 39 and 96 show the
// standard encoding's curly quotes. Symbol and ZapfDingbats keep their built-in
// encodings, of which codes 32..126 are used. A character outside the font's encoding
// has code 0: drivers show it by glyph name (PostScript glyphshow, PDF /Differences).

#include <cstdint>
#include <string_view>

namespace zorvel {

inline constexpr int kPsFontCount = 35;

struct PsFontInfo {
  std::string_view name;      // PostScript name: "Times-Roman", "Helvetica-BoldOblique"
  std::string_view urw;       // file stem of its URW twin: "NimbusRoman-Regular"
  std::string_view families;  // CSS font-family list for SVG, generic family last
  int weight = 400;           // CSS font-weight
  bool italic = false;        // italic or oblique face
  bool standard14 = false;    // one of the 14 fonts every PDF viewer has
  bool symbolic = false;      // Symbol, ZapfDingbats: their own encoding
  int cap_height = 700;       // thousandths of the em (AFM CapHeight; x-height-free fonts: "H")
  int italic_twin = -1;       // id of the italic/oblique face of the family (itself when
                              //   italic; -1 for the symbolic fonts)
};

// The numbers of a PDF font descriptor, from the AFM file and the font program of the
// font's URW twin; lengths in thousandths of the em.
struct PsFontDescriptor {
  int flags = 0;          // PDF font flags: 1 fixed pitch, 2 serif, 4 symbolic, 8 script,
                          //   32 nonsymbolic, 64 italic
  int bbox[4] = {};       // FontBBox: llx lly urx ury
  double italic_angle = 0.0;
  int ascent = 0;         // the AFM files give none: the top of "d"
  int descent = 0;        // the bottom of "p" (negative)
  int cap_height = 0;
  int x_height = 0;
  int stem_v = 0;         // StdVW of the font program's private dictionary
};

// Font ids are 0..34 in a fixed order; these are used by name elsewhere.
inline constexpr int kPsTimesRoman = 0;
inline constexpr int kPsTimesItalic = 1;
inline constexpr int kPsSymbol = 33;
inline constexpr int kPsZapfDingbats = 34;

// The font of `id`; ids outside 0..34 give Times-Roman.
const PsFontInfo& ps_font(int id);
const PsFontDescriptor& ps_font_descriptor(int id);
// Id of the font named `name` (exact PostScript name, case ignored), -1 when unknown.
int find_ps_font(std::string_view name);

// Advance width of `unicode` in font `id`, thousandths of the em; -1 when the font has
// no glyph for it. Symbolic fonts take the Unicode of their glyphs (Greek letters and
// mathematical signs for Symbol, dingbats for ZapfDingbats).
int ps_width(int id, std::uint32_t unicode);
// Kerning between two characters of font `id` (AFM KPX), thousandths of the em; 0 when
// the pair is not kerned.
int ps_kern(int id, std::uint32_t left, std::uint32_t right);
// Glyph name of `unicode` in font `id` ("adieresis", "Euro"); empty when it has none.
std::string_view ps_glyph_name(int id, std::uint32_t unicode);
// Code of `unicode` in the font's 8-bit encoding as drivers write it (see above); 0 when
// the encoding lacks it.
int ps_code(int id, std::uint32_t unicode);
// Advance width of 8-bit `code` (as ps_code gives) in font `id`; 0 for codes outside.
int ps_code_width(int id, int code);
// The character that 8-bit `code` stands for in font `id` (the inverse of ps_code); 0 for
// codes outside the encoding.
std::uint32_t ps_code_unicode(int id, int code);

}  // namespace zorvel

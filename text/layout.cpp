// The layout step: every code of a string is mapped to a glyph (or a driver-font
// character), its cell is measured with the alphabet's unit sizes and gap, and the pen
// moves on along the base line. Nothing here draws.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "text/file_fonts.h"
#include "text/font.h"
#include "text/formula.h"
#include "text/layout.h"
#include "text/mapping.h"
#include "text/mix.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr int kIntLimit = 2000000000;
constexpr double kDriverGap = 0.1;  // gap of driver fonts, in heights
constexpr int kFixedPitch = 6;      // width of every glyph of a fixed-pitch alphabet
// Signs drawn as a raised small character: the base line moves up by kRaiseShift
// heights and the character shrinks by kRaiseSize.
constexpr double kRaiseShift = 0.6;
constexpr double kRaiseSize = 0.7;

// Driver face of alphabet k, or -1 for the alphabets that the driver fonts lack (they
// are drawn with the stroke glyphs of the font record).
int face_of(int k) {
  switch (k) {
    case kAlphabetStan:
      return static_cast<int>(DriverFace::Roman);
    case kAlphabetGree:
      return static_cast<int>(DriverFace::Greek);
    case kAlphabetItal:
      return static_cast<int>(DriverFace::Italic);
    default:
      return -1;
  }
}

// The character drawn raised in place of a sign that the fonts lack, or 0: the degree
// sign and the superscript digits of ISO 8859-1 and Unicode.
int raised_stand_in(int charset, int code) {
  if (charset != kCharsetIso1 && charset != kCharsetUtf8) {
    return 0;
  }
  switch (code) {
    case 176:
      return 'o';
    case 185:
      return '1';
    case 178:
      return '2';
    case 179:
      return '3';
    default:
      return 0;
  }
}

// Selects alphabet k into the cache: unit sizes and gap for the working parameters.
void select(GlobalBlock& g, int k) {
  TextState& t = g.text;
  FontRecord& f = t.font;
  if (f.selected == k) {
    return;
  }
  const TextWork& w = t.work;
  const AlphabetSlot& s = f.alphabets[static_cast<std::size_t>(k)];
  const double h1 = t.height - 1;
  f.unit_x = h1 * w.width_factor / s.x_divisor;
  f.unit_y = h1 / s.y_divisor;
  if (w.fixed) {
    f.gap = w.spacing * t.height;
  } else if (f.mode == FontMode::Driver && face_of(k) >= 0) {
    f.gap = (kDriverGap + w.spacing) * t.height;
  } else {
    f.gap = (s.gap_factor + w.spacing) * t.height;
  }
  f.selected = k;
}

// Copies the parameters into the working state for one string.
void begin_string(TextState& t) {
  TextWork& w = t.work;
  w.shift = 0.0;
  w.size = 1.0;
  w.alphabet = t.base_alphabet;
  w.spacing = t.spacing;
  w.width_factor = t.width_factor;
  w.slant = t.slant;
  w.fixed = t.fixed;
  w.fixed_factor = t.fixed_factor;
  w.fell_back = false;
  w.colour = -1;
  w.prev_face = -1;
  t.font.selected = -1;
}

// Width, gap and scale of a glyph of the selected alphabet; fixed spacing puts it in
// the middle of its cell.
void set_cell(const TextState& t, LaidGlyph& e, double width) {
  const TextWork& w = t.work;
  const FontRecord& f = t.font;
  e.raise = w.shift;
  e.size = w.size;
  e.slant = w.slant;
  e.stretch = w.width_factor;
  e.unit_x = f.unit_x * w.size;
  e.unit_y = f.unit_y * w.size;
  e.width = width * w.size;
  e.gap = f.gap * w.size;
  if (w.fixed) {
    const double cell = w.fixed_factor * kFixedCell * w.width_factor * (t.height - 1);
    e.inset = 0.5 * (cell - e.width);
    e.width = cell;
  }
  e.advance = e.width + e.gap;
}

// A character of a driver face: measured with the face's widths.
void lay_driver_char(GlobalBlock& g, LaidGlyph& e, const MappedCode& m, int k, DriverFace face) {
  TextState& t = g.text;
  select(g, k);
  t.work.fell_back = false;
  int code = driver_code(m.code);
  int w1000 = driver_width(face, code);
  if (w1000 == 0) {
    code = kBlank;
    w1000 = driver_width(face, code);
  }
  e.alphabet = static_cast<std::int8_t>(k);
  e.face = face;
  e.font_code = code;
  e.missing = m.missing || (code == kBlank && m.code != kBlank);
  e.kind = code == kBlank ? GlyphKind::Blank : GlyphKind::Driver;
  set_cell(t, e, w1000 / 1000.0 * kDriverEmPerHeight * t.height * t.work.width_factor);
}

// A glyph of the font record; characters that the alphabet lacks fall back to STAN, with
// a gap in front of every run of them.
void lay_font_glyph(GlobalBlock& g, LaidGlyph& e, const MappedCode& m, int k) {
  TextState& t = g.text;
  TextWork& w = t.work;
  const FontRecord& f = t.font;
  const GlyphChoice c = choose_glyph(f, k, m.code);
  if (c.fell_back && !w.fell_back) {
    select(g, c.alphabet);
    e.lead = f.gap * w.size;
  }
  w.fell_back = c.fell_back;
  select(g, c.alphabet);
  const AlphabetSlot& s = f.alphabets[static_cast<std::size_t>(c.alphabet)];
  const int at = c.glyph > 1 ? s.record[static_cast<std::size_t>(c.glyph)] : -1;
  double width = 0.0;
  if (at < 0) {
    width = f.blank_width * f.unit_x;  // the blank, and codes without a glyph
  } else if (s.fixed_pitch) {
    width = kFixedPitch * f.unit_x;
  } else {
    width = s.width[static_cast<std::size_t>(c.glyph)] * f.unit_x;
  }
  e.alphabet = static_cast<std::int8_t>(c.alphabet);
  e.glyph = static_cast<std::int16_t>(c.glyph);
  e.font_code = m.code;
  e.italic = c.italic;
  // A record of one word is a free place of the alphabet: no glyph either.
  e.missing = m.missing || (at < 0 ? m.code != kBlank : s.index[at] == 1);
  e.kind = at < 0 ? GlyphKind::Blank : s.outline ? GlyphKind::Outline : GlyphKind::Stroke;
  set_cell(t, e, width);
}

}  // namespace

namespace {

// v clamped into +-kIntLimit; NaN gives 0.
double int_range(double v) {
  if (!(v == v)) {
    return 0.0;
  }
  return std::clamp(v, -static_cast<double>(kIntLimit), static_cast<double>(kIntLimit));
}

}  // namespace

int round_int(double v) { return static_cast<int>(std::lround(int_range(v))); }

int trunc_int(double v) { return static_cast<int>(int_range(v)); }

void lay_code(GlobalBlock& g, LaidGlyph& e, int code) {
  TextState& t = g.text;
  TextWork& w = t.work;
  e.code = code;
  if (lay_file_code(g, e, code)) {
    return;
  }
  w.prev_face = -1;
  MappedCode m = map_charset(t.charset, code, w.alphabet);
  // Signs that the fonts lack but a raised small character shows well: the degree
  // sign and the superscript digits.
  const int stand_in = m.missing ? raised_stand_in(t.charset, code) : 0;
  const double shift = w.shift;
  const double size = w.size;
  if (stand_in != 0) {
    w.shift += kRaiseShift * t.height * w.size;
    w.size *= kRaiseSize;
    m = map_charset(t.charset, stand_in, w.alphabet);
  }
  const int k = m.alphabet >= 0 ? m.alphabet : w.alphabet;
  const int face = t.font.mode == FontMode::Driver ? face_of(k) : -1;
  if (face >= 0) {
    lay_driver_char(g, e, m, k, static_cast<DriverFace>(face));
  } else {
    lay_font_glyph(g, e, m, k);
  }
  w.shift = shift;
  w.size = size;
  e.colour = w.colour;
}

const TextLayout& layout_codes(GlobalBlock& g, const CodeString& codes) {
  TextState& t = g.text;
  TextLayout& out = t.layout;
  if (out.glyphs.capacity() < static_cast<std::size_t>(kMaxTextCodes)) {
    out.glyphs.reserve(kMaxTextCodes);
  }
  out.glyphs.clear();
  out.length = 0;
  out.missing = -1;
  begin_string(t);
  // Formulas first (not in the library's own labels); instruction characters are not
  // read in formula mode.
  const bool formulas = t.tex.on && !t.mix.label;
  if (formulas && layout_formula(g, codes, out)) {
    return out;
  }
  if (!formulas && has_instructions(t, codes)) {
    layout_instructions(g, codes, out);
    t.font.selected = -1;
    return out;
  }
  double pen = 0.0;
  for (int i = 0; i < codes.n; ++i) {
    const int code = codes.code[static_cast<std::size_t>(i)];
    LaidGlyph& e = out.glyphs.emplace_back();
    lay_code(g, e, code);
    pen += e.lead;
    e.pen = pen;
    pen += e.advance;
    // The extent of the pen; the gap after the last glyph does not count.
    const int extent = round_int(std::fabs(pen) - e.gap);
    if (i == 0 || extent > out.length) {
      out.length = extent;
    }
    if (e.missing && out.missing < 0) {
      out.missing = code;
    }
  }
  out.end = pen;
  out.ascent = t.height;
  out.descent = 0.0;
  t.font.selected = -1;
  return out;
}

void select_alphabet(GlobalBlock& g, int k) {
  if (k < 0 || k >= kAlphabetCount) {
    return;
  }
  select(g, k);
}

}  // namespace zorvel

// Laying out characters in the outline, bitmap and standard PostScript fonts.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "fonts/faces.h"
#include "fonts/font_lookup.h"
#include "text/file_fonts.h"
#include "text/layout.h"
#include "text/mapping.h"
#include "text/unicode_tables.h"

namespace zorvel {
namespace {

// Gaps after every character, in heights (fixed spacing and "TYPO" leave only chaspc).
constexpr double kDriverGap = 0.1;    // standard fonts and window-system fonts
constexpr double kFileGap = 0.18;     // font files
constexpr double kBitmapGap = 0.15;   // bitmap fonts; 0.18 on pages scaled below 0.3
constexpr double kSmallPageGap = 0.18;
constexpr double kSmallPage = 0.3;

// The character of a code in the working alphabet: GREE, MATH and RUSS put their letters
// on the codes 32..127 (0: the alphabet is drawn by the stroke glyphs).
std::uint32_t alphabet_unicode(int alphabet, std::uint32_t u) {
  const std::uint16_t* table = nullptr;
  switch (alphabet) {
    case kAlphabetGree:
      table = kGreekUnicode;
      break;
    case kAlphabetMath:
      table = kMathUnicode;
      break;
    case kAlphabetRuss:
      table = kRussianUnicode;
      break;
    case kAlphabetScri:
      return 0;
    default:
      return u;
  }
  if (u < 32 || u >= 128 || table[u - 32] == 0) {
    return u;
  }
  return table[u - 32];
}

// The gap of the font mode after every character, plot units.
double mode_gap(const GlobalBlock& g) {
  const TextState& t = g.text;
  const TextWork& w = t.work;
  if (w.fixed || g.fonts.typo) {
    return w.spacing * t.height;
  }
  switch (t.font.mode) {
    case FontMode::Bitmap: {
      const double f = g.page.scale_factor < kSmallPage ? kSmallPageGap : kBitmapGap;
      return std::trunc((f + w.spacing) * t.height);
    }
    case FontMode::File:
      return (kFileGap + w.spacing) * t.height;
    default:
      return (kDriverGap + w.spacing) * t.height;
  }
}

// Cell, gap and scale of a glyph of `width` plot units (before the size factor); fixed
// spacing centres it in its cell.
void set_font_cell(GlobalBlock& g, LaidGlyph& e, double width, double unit_x, double unit_y) {
  const TextState& t = g.text;
  const TextWork& w = t.work;
  e.raise = w.shift;
  e.size = w.size;
  e.slant = w.slant;
  e.stretch = w.width_factor;
  e.unit_x = unit_x * w.size;
  e.unit_y = unit_y * w.size;
  e.width = width * w.size;
  e.own_width = e.width;
  e.gap = mode_gap(g) * w.size;
  if (w.fixed) {
    const double cell = w.fixed_factor * kFixedCell * w.width_factor * (t.height - 1);
    e.inset = 0.5 * (cell - e.width);
    e.width = cell;
  }
  e.advance = e.width + e.gap;
}

// The italic face of the font in use, looked for once.
int italic_face(GlobalBlock& g) {
  FontFileState& s = g.fonts;
  if (s.italic != -1 || s.roman < 0) {
    return s.italic;
  }
  s.italic = -2;
  const OutlineFont& roman = *s.faces[static_cast<std::size_t>(s.roman)];
  if (roman.italic()) {
    s.italic = s.roman;
    return s.italic;
  }
  const FontLocation loc = find_italic_face(roman.family(), roman.style());
  FaceError err = FaceError::None;
  if (!loc.path.empty()) {
    if (const int slot = face_slot(s, loc.path, loc.index, err); slot >= 0) {
      s.italic = slot;
    }
  }
  return s.italic;
}

// A face with a glyph for `u` when the font lacks it (fontconfig's fall-back), or -1.
int fallback_face(GlobalBlock& g, std::uint32_t u) {
  FontFileState& s = g.fonts;
  for (const auto& [c, slot] : s.fallbacks) {
    if (c == u) {
      return slot;
    }
  }
  int slot = -1;
  if (s.fallbacks.size() < static_cast<std::size_t>(kMaxFallbacks) && s.roman >= 0) {
    const FontLocation loc =
        find_fallback_font(s.faces[static_cast<std::size_t>(s.roman)]->family(), u);
    FaceError err = FaceError::None;
    if (!loc.path.empty()) {
      slot = face_slot(s, loc.path, loc.index, err);
    }
    if (slot >= 0 && s.faces[static_cast<std::size_t>(slot)]->glyph_index(u) == 0) {
      slot = -1;
    }
    s.fallbacks.emplace_back(u, slot);
  }
  return slot;
}

// A character of an outline font (window-system and font-file modes).
void lay_outline(GlobalBlock& g, LaidGlyph& e, std::uint32_t u, bool italic) {
  FontFileState& s = g.fonts;
  TextState& t = g.text;
  TextWork& w = t.work;
  int slot = s.roman;
  if (italic) {
    if (const int it = italic_face(g); it >= 0) {
      slot = it;
      italic = false;
    }
  }
  OutlineFont* face = s.faces[static_cast<std::size_t>(slot)].get();
  std::uint32_t gid = face->glyph_index(u);
  if (gid == 0 && u > kBlank && s.fallback) {
    if (const int fb = fallback_face(g, u); fb >= 0) {
      slot = fb;
      face = s.faces[static_cast<std::size_t>(fb)].get();
      gid = face->glyph_index(u);
    }
  }
  // Every face is scaled by its own capitals' height, so that capitals of a fall-back
  // face stand as high as those of the font.
  const double unit_y = (t.height - 1) / face->cap_height();
  const double unit_x = unit_y * w.width_factor;
  const FlatGlyph* m = face->metrics(gid);
  double width = 0.0;
  if (m != nullptr) {
    const double own = g.fonts.typo || m->xmax <= 0.0F ? m->advance : m->xmax;
    width = std::max(0.0, own) * unit_x;
  }
  e.kind = u == kBlank ? GlyphKind::Blank : GlyphKind::File;
  e.gid = gid;
  e.unicode = u;
  e.font_code = static_cast<std::int32_t>(u);
  e.face_slot = static_cast<std::int16_t>(slot);
  e.italic = italic;
  e.missing = gid == 0 && u != kBlank;
  if (s.kerning && w.prev_face == slot && m != nullptr) {
    e.lead = face->kerning(w.prev_char, gid) * unit_x * w.size;
  }
  w.prev_face = slot;
  w.prev_char = gid;
  set_font_cell(g, e, width, unit_x, unit_y);
}

// A character of the bitmap font.
void lay_bitmap(GlobalBlock& g, LaidGlyph& e, std::uint32_t u, bool italic) {
  const BdfFont& font = *g.fonts.bitmap;
  TextState& t = g.text;
  // Fonts in another registry than Unicode are indexed by their 8-bit codes.
  const bool unicode = font.registry.rfind("ISO10646", 0) == 0;
  const BdfGlyph* b = unicode || u < 256 ? font.find(u) : nullptr;
  e.missing = b == nullptr && u != kBlank;
  if (b == nullptr && font.default_char >= 0) {
    b = font.find(static_cast<std::uint32_t>(font.default_char));
  }
  const double unit_y = (t.height - 1) / static_cast<double>(std::max(1, font.cap_height));
  const double unit_x = unit_y * t.work.width_factor;
  double width = 0.0;
  if (b != nullptr) {
    const int extent = b->width > 0 ? b->xoff + b->width : b->advance;
    width = std::max(0, g.fonts.typo ? b->advance : extent) * unit_x;
  }
  e.kind = b != nullptr && b->width > 0 ? GlyphKind::Bitmap : GlyphKind::Blank;
  e.gid = b != nullptr ? b->code : 0;
  e.unicode = u;
  e.font_code = static_cast<std::int32_t>(u);
  e.italic = italic;
  t.work.prev_face = -1;
  set_font_cell(g, e, width, unit_x, unit_y);
}

// A character of a standard PostScript font (psfont): measured with its AFM widths on
// every device; drawn by the driver or from its URW twin's outlines.
void lay_standard(GlobalBlock& g, LaidGlyph& e, std::uint32_t u, int alphabet) {
  TextState& t = g.text;
  TextWork& w = t.work;
  const int base = g.fonts.ps_font;
  int id = base;
  if (alphabet == kAlphabetItal && ps_font(base).italic_twin >= 0) {
    id = ps_font(base).italic_twin;
  }
  // Greek letters and mathematical signs that the font lacks are Symbol's.
  if (ps_width(id, u) < 0 && ps_width(kPsSymbol, u) >= 0) {
    id = kPsSymbol;
  }
  int w1000 = ps_width(id, u);
  e.missing = w1000 < 0 && u != kBlank;
  if (w1000 < 0) {
    u = kBlank;
    w1000 = std::max(0, ps_width(id, kBlank));
  }
  // The em of every face is that of the base font, whose capitals are the height.
  const double em = (t.height - 1) * 1000.0 / ps_font(base).cap_height;
  const double unit = em / 1000.0;
  e.kind = u == kBlank ? GlyphKind::Blank : GlyphKind::Driver;
  e.unicode = u;
  e.font_code = static_cast<std::int32_t>(u);
  e.ps_id = static_cast<std::int16_t>(id);
  e.alphabet = static_cast<std::int8_t>(alphabet);
  if (g.fonts.kerning && w.prev_face == id && u != kBlank) {
    e.lead = ps_kern(id, w.prev_char, u) * unit * w.width_factor * w.size;
  }
  w.prev_face = id;
  w.prev_char = u;
  set_font_cell(g, e, w1000 * unit * w.width_factor, unit * w.width_factor, unit);
}

}  // namespace

std::uint32_t code_unicode(int charset, int code) {
  if (code < kBlank) {
    return kBlank;
  }
  if (code < 160) {
    return static_cast<std::uint32_t>(code);
  }
  int row = -1;
  switch (charset) {
    case kCharsetIso2:
      row = 0;
      break;
    case kCharsetIso3:
      row = 1;
      break;
    case kCharsetIso5:
      row = 2;
      break;
    case kCharsetKoi8:
      row = 3;
      break;
    case kCharsetIso7:
      row = 4;
      break;
    default:
      // STAN and ISO1 read bytes as Latin-1; UTF8 codes are characters already.
      return code <= 0x10FFFF ? static_cast<std::uint32_t>(code) : 0U;
  }
  return code < 256 ? kCharsetUnicode[row][code - 160] : 0U;
}

bool lay_file_code(GlobalBlock& g, LaidGlyph& e, int code) {
  TextState& t = g.text;
  const FontMode mode = t.font.mode;
  const bool standard = mode == FontMode::Driver && g.fonts.ps_font >= 0;
  const bool outline = (mode == FontMode::Window || mode == FontMode::File) && g.fonts.roman >= 0;
  const bool bitmap = mode == FontMode::Bitmap && g.fonts.bitmap != nullptr;
  if (!standard && !outline && !bitmap) {
    return false;
  }
  const int alphabet = t.work.alphabet;
  std::uint32_t u = code_unicode(t.charset, code);
  if (u == 0) {
    u = kBlank;
    e.missing = true;
  }
  const std::uint32_t a = alphabet_unicode(alphabet, u);
  if (a == 0) {
    return false;  // script letters: the stroke glyphs
  }
  e.code = code;
  const bool was_missing = e.missing;
  if (standard) {
    lay_standard(g, e, a, alphabet);
  } else if (outline) {
    lay_outline(g, e, a, alphabet == kAlphabetItal);
  } else {
    lay_bitmap(g, e, a, alphabet == kAlphabetItal);
  }
  e.missing = e.missing || was_missing;
  e.colour = t.work.colour;
  t.font.selected = -1;
  return true;
}

}  // namespace zorvel

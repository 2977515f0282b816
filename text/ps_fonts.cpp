#include "text/ps_fonts.h"

#include <algorithm>

#include "text/driver_font.h"
#include "text/ps_font_data.h"

namespace zorvel {
namespace {

const PsFontData& data(int id) {
  return kPsFonts[id >= 0 && id < kPsFontCount ? id : kPsTimesRoman];
}

bool valid(int id) { return id >= 0 && id < kPsFontCount; }

const PsGlyph* find_glyph(const PsFontData& f, std::uint32_t unicode) {
  const auto it = std::lower_bound(f.glyphs.begin(), f.glyphs.end(), unicode,
                                   [](const PsGlyph& g, std::uint32_t u) { return g.unicode < u; });
  return it != f.glyphs.end() && it->unicode == unicode ? &*it : nullptr;
}

// The character of a text font's code 32..187. Codes 39 and 96 are the standard
// encoding's quotes (quoteright, quoteleft), as PostScript shows them.
std::uint32_t text_code_unicode(int code) {
  if (code == '\'') {
    return 0x2019;
  }
  if (code == '`') {
    return 0x2018;
  }
  return driver_unicode(DriverFace::Roman, code);
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) {
    return false;
  }
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (lower(a[i]) != lower(b[i])) {
      return false;
    }
  }
  return true;
}

}  // namespace

const PsFontInfo& ps_font(int id) { return data(id).info; }

const PsFontDescriptor& ps_font_descriptor(int id) { return data(id).descriptor; }

int find_ps_font(std::string_view name) {
  for (int id = 0; id < kPsFontCount; ++id) {
    if (equal_ignoring_case(kPsFonts[id].info.name, name)) {
      return id;
    }
  }
  return -1;
}

int ps_width(int id, std::uint32_t unicode) {
  if (!valid(id)) {
    return -1;
  }
  const PsGlyph* g = find_glyph(kPsFonts[id], unicode);
  return g != nullptr ? g->width : -1;
}

int ps_kern(int id, std::uint32_t left, std::uint32_t right) {
  if (!valid(id)) {
    return 0;
  }
  const PsFontData& f = kPsFonts[id];
  const PsGlyph* l = find_glyph(f, left);
  const PsGlyph* r = find_glyph(f, right);
  if (l == nullptr || r == nullptr) {
    return 0;
  }
  const PsKern key{l->name, r->name, 0};
  const auto it =
      std::lower_bound(f.kerns.begin(), f.kerns.end(), key, [](const PsKern& a, const PsKern& b) {
        return a.left != b.left ? a.left < b.left : a.right < b.right;
      });
  return it != f.kerns.end() && it->left == key.left && it->right == key.right ? it->value : 0;
}

std::string_view ps_glyph_name(int id, std::uint32_t unicode) {
  if (!valid(id)) {
    return {};
  }
  const PsGlyph* g = find_glyph(kPsFonts[id], unicode);
  return g != nullptr && g->name < kPsGlyphNameCount ? kPsGlyphNames[g->name] : std::string_view{};
}

int ps_code(int id, std::uint32_t unicode) {
  if (!valid(id)) {
    return 0;
  }
  const PsFontData& f = kPsFonts[id];
  if (f.info.symbolic) {
    const PsGlyph* g = find_glyph(f, unicode);
    if (g == nullptr) {
      return 0;
    }
    for (const PsGlyph& b : f.builtin) {
      if (b.name == g->name) {
        return static_cast<int>(b.unicode);
      }
    }
    return 0;
  }
  // The apostrophe and the grave accent keep the codes of their keys: the standard
  // encoding shows them as the curly quotes.
  if (unicode >= 32 && unicode < 127) {
    return static_cast<int>(unicode);
  }
  if (unicode == 0x2019) {
    return '\'';
  }
  if (unicode == 0x2018) {
    return '`';
  }
  for (int code = 127; code < kDriverFirstCode + kDriverCodes; ++code) {
    if (driver_unicode(DriverFace::Roman, code) == unicode) {
      return code;
    }
  }
  return 0;
}

std::uint32_t ps_code_unicode(int id, int code) {
  if (!valid(id) || code < kDriverFirstCode) {
    return 0;
  }
  const PsFontData& f = kPsFonts[id];
  if (!f.info.symbolic) {
    return code < kDriverFirstCode + kDriverCodes ? text_code_unicode(code) : 0;
  }
  const auto it =
      std::lower_bound(f.builtin.begin(), f.builtin.end(), static_cast<std::uint32_t>(code),
                       [](const PsGlyph& g, std::uint32_t c) { return g.unicode < c; });
  if (it == f.builtin.end() || it->unicode != static_cast<std::uint32_t>(code)) {
    return 0;
  }
  // The first character that names the glyph.
  for (const PsGlyph& g : f.glyphs) {
    if (g.name == it->name) {
      return g.unicode;
    }
  }
  return 0;
}

int ps_code_width(int id, int code) {
  if (!valid(id) || code < kDriverFirstCode) {
    return 0;
  }
  const PsFontData& f = kPsFonts[id];
  if (f.info.symbolic) {
    const auto it =
        std::lower_bound(f.builtin.begin(), f.builtin.end(), static_cast<std::uint32_t>(code),
                         [](const PsGlyph& g, std::uint32_t c) { return g.unicode < c; });
    return it != f.builtin.end() && it->unicode == static_cast<std::uint32_t>(code) ? it->width : 0;
  }
  const std::uint32_t u = code < kDriverFirstCode + kDriverCodes ? text_code_unicode(code) : 0;
  const int w = u != 0 ? ps_width(id, u) : -1;
  return std::max(w, 0);
}

}  // namespace zorvel

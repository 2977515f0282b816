// The font routines of the outline, bitmap and standard fonts: ttfont, winfnt, bmpfnt,
// psfont, fntopt and getfnt. A font that cannot be had leaves the font in force.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/platform.h"
#include "fonts/faces.h"
#include "fonts/font_lookup.h"
#include "text/file_fonts.h"
#include "text/font.h"

namespace zorvel {
namespace {

constexpr int kNotFound = 211;
constexpr int kUnreadable = 212;
constexpr int kNoFontType = 213;

// Largest bitmap font file read.
constexpr std::uintmax_t kMaxBdfFile = 64U << 20;

int warning_of(FaceError err) {
  switch (err) {
    case FaceError::NotFound:
      return kNotFound;
    case FaceError::NoFreeType:
      return kNoFontType;
    default:
      return kUnreadable;
  }
}

bool is_directory(const std::string& path) {
  std::error_code ec;
  return std::filesystem::is_directory(path, ec);
}

// Makes face `slot` the font in use in `mode`. Alphabets these fonts lack (script) are
// drawn with the complx strokes.
void use_outline(GlobalBlock& g, int slot, FontMode mode) {
  load_font(g.text.font, kFontComplx);
  g.text.font.mode = mode;
  FontFileState& s = g.fonts;
  forget_font_file(s);
  s.roman = slot;
  s.name = s.faces[static_cast<std::size_t>(slot)]->full_name();
}

// Opens the face at `loc` as the font in use, or warns.
void open_outline(GlobalBlock& g, const FontLocation& loc, std::string_view name, FontMode mode) {
  if (!have_freetype()) {
    warn(g, kNoFontType, name);
    return;
  }
  if (loc.path.empty()) {
    warn(g, kNotFound, name);
    return;
  }
  if (is_directory(loc.path)) {
    warn(g, kUnreadable, name);
    return;
  }
  FaceError err = FaceError::None;
  const int slot = face_slot(g.fonts, loc.path, loc.index, err);
  if (slot < 0) {
    warn(g, warning_of(err), name);
    return;
  }
  use_outline(g, slot, mode);
}

// The whole file at `path`, or false when it cannot be read (or is too large to be a font).
bool read_file(const std::string& path, std::vector<std::uint8_t>& data) {
  std::error_code ec;
  const std::uintmax_t size = std::filesystem::file_size(path, ec);
  if (ec || size > kMaxBdfFile) {
    return false;
  }
  std::FILE* f = platform::open_file(path, "rb");
  if (f == nullptr) {
    return false;
  }
  data.resize(static_cast<std::size_t>(size));
  const std::size_t got = std::fread(data.data(), 1, data.size(), f);
  std::fclose(f);
  data.resize(got);
  return true;
}

const char* stroke_font_name(int type) {
  switch (type) {
    case kFontZoralf:
      return "zoralf";
    case kFontSimplx:
      return "simplx";
    case kFontDuplx:
      return "duplx";
    case kFontTriplx:
      return "triplx";
    case kFontGothic:
      return "gothic";
    case kFontHelve:
      return "helve";
    case kFontHelves:
      return "helves";
    case kFontHelvet:
      return "helvet";
    case kFontSerif:
      return "serif";
    default:
      return "complx";
  }
}

}  // namespace

void forget_font_file(FontFileState& s) {
  s.ps_font = -1;
  s.roman = -1;
  s.italic = -1;
  s.fallbacks.clear();
  s.bitmap.reset();
  s.name.clear();
}

namespace api {

void ttfont(GlobalBlock& g, const char* cfnt) {
  open_outline(g, find_font_file(cfnt), cfnt, FontMode::File);
}

void winfnt(GlobalBlock& g, const char* cfnt) {
  open_outline(g, find_system_font(cfnt), cfnt, FontMode::Window);
}

void bmpfnt(GlobalBlock& g, const char* cfnt) {
  const FontLocation loc = find_font_file(cfnt);
  if (loc.path.empty()) {
    warn(g, kNotFound, cfnt);
    return;
  }
  std::vector<std::uint8_t> data;
  if (is_directory(loc.path) || !read_file(loc.path, data)) {
    std::error_code ec;
    warn(g, std::filesystem::exists(loc.path, ec) ? kUnreadable : kNotFound, cfnt);
    return;
  }
  auto font = std::make_unique<BdfFont>();
  if (parse_bdf(data, *font, nullptr) != BdfStatus::Ok) {
    warn(g, kUnreadable, cfnt);
    return;
  }
  load_font(g.text.font, kFontComplx);
  g.text.font.mode = FontMode::Bitmap;
  FontFileState& s = g.fonts;
  forget_font_file(s);
  s.bitmap = std::move(font);
  s.name = cfnt;
}

void psfont(GlobalBlock& g, const char* cfnt) {
  const int id = find_ps_font(cfnt);
  if (id < 0) {
    warn(g, 2, cfnt);
    return;
  }
  const bool driver_text = g.pipe.driver && (g.pipe.caps & kCapText) != 0U;
  load_font(g.text.font, kFontComplx);
  forget_font_file(g.fonts);
  if (!driver_text && ps_outline_face(g, id) < 0) {
    // Without the twin's outlines nothing could draw the font here: complx draws.
    warn(g, kNoFontType, cfnt);
    return;
  }
  g.text.font.mode = FontMode::Driver;
  g.fonts.ps_font = id;
  g.fonts.name = ps_font(id).name;
}

void fntopt(GlobalBlock& g, const char* cval, const char* copt) {
  const int opt = match_keyword(g, "KERN+SPAC+EMBE+FALL", copt);
  FontFileState& s = g.fonts;
  switch (opt) {
    case 1:
      if (const int v = match_keyword(g, "ON  +OFF ", cval); v != 0) {
        s.kerning = v == 1;
      }
      break;
    case 2:
      if (const int v = match_keyword(g, "STAN+TYPO", cval); v != 0) {
        s.typo = v == 2;
      }
      break;
    case 3:
      if (const int v = match_keyword(g, "SUBS+NONE", cval); v != 0) {
        s.embed = v == 1;
      }
      break;
    case 4:
      if (const int v = match_keyword(g, "ON  +OFF ", cval); v != 0) {
        s.fallback = v == 1;
      }
      break;
    default:
      break;
  }
}

void getfnt(GlobalBlock& g, char* cbuf, int nmax) {
  if (nmax <= 0) {
    warn(g, 2, nmax);
    return;
  }
  std::string_view name = g.fonts.name;
  if (g.text.font.mode == FontMode::Stroke || name.empty()) {
    name = g.text.font.mode == FontMode::Driver ? "Times-Roman"
                                                : stroke_font_name(g.text.font.type);
  }
  const std::size_t n = std::min(name.size(), static_cast<std::size_t>(nmax) - 1);
  std::copy_n(name.data(), n, cbuf);
  cbuf[n] = '\0';
}

}  // namespace api
}  // namespace zorvel

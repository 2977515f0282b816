#include "fonts/font_lookup.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "core/install_dirs.h"

#ifdef ZORVEL_HAVE_FREETYPE
#include <fontconfig/fontconfig.h>
#endif

namespace zorvel {
namespace {

[[maybe_unused]] bool same_text(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) ==
                  std::tolower(static_cast<unsigned char>(y));
         });
}

bool is_file(const std::filesystem::path& p) {
  std::error_code ec;
  return std::filesystem::is_regular_file(p, ec);
}

// "name,n": the name and the face n; a name without a trailing ",digits" is face 0.
std::string_view split_face(std::string_view name, int& index) {
  index = 0;
  const std::size_t comma = name.rfind(',');
  if (comma == std::string_view::npos || comma + 1 >= name.size() || name.size() - comma > 6) {
    return name;
  }
  int n = 0;
  for (std::size_t i = comma + 1; i < name.size(); ++i) {
    if (std::isdigit(static_cast<unsigned char>(name[i])) == 0) {
      return name;
    }
    n = n * 10 + (name[i] - '0');
  }
  index = n;
  return name.substr(0, comma);
}

#ifdef ZORVEL_HAVE_FREETYPE

// Generic families: fontconfig appends them (and what they stand for) to every pattern.
bool generic_family(std::string_view f) {
  for (std::string_view g : {"sans-serif", "serif", "monospace", "cursive", "fantasy", "emoji",
                             "math", "system-ui", "sans", "mono"}) {
    if (same_text(f, g)) {
      return true;
    }
  }
  return false;
}

FontLocation location_of(FcPattern* font) {
  FontLocation loc;
  FcChar8* file = nullptr;
  int index = 0;
  if (FcPatternGetString(font, FC_FILE, 0, &file) == FcResultMatch && file != nullptr) {
    loc.path = reinterpret_cast<const char*>(file);
    if (FcPatternGetInteger(font, FC_INDEX, 0, &index) == FcResultMatch) {
      loc.index = index;
    }
  }
  return loc;
}

// The families of `pat` after fontconfig's substitutions: the asked-for ones, their
// aliases (metric twins), then the defaults.
std::vector<std::string> families_of(FcPattern* pat) {
  std::vector<std::string> out;
  FcChar8* f = nullptr;
  for (int i = 0; FcPatternGetString(pat, FC_FAMILY, i, &f) == FcResultMatch; ++i) {
    out.emplace_back(reinterpret_cast<const char*>(f));
  }
  return out;
}

// The first family fontconfig appends to a pattern of a family it does not know: where
// the defaults begin in a substituted family list.
std::string first_default_family() {
  FcPattern* pat = FcPatternCreate();
  FcPatternAddString(pat, FC_FAMILY, reinterpret_cast<const FcChar8*>("zorvel-no-such-family"));
  FcConfigSubstitute(nullptr, pat, FcMatchPattern);
  FcDefaultSubstitute(pat);
  const std::vector<std::string> f = families_of(pat);
  FcPatternDestroy(pat);
  return f.size() > 1 ? f[1] : std::string();
}

// The match of `pat` when its family is one the pattern asked for or an alias of it (a
// metric twin), not one of the defaults; any match when a generic family ("serif") was
// asked for. Takes ownership of pat.
FontLocation match_family(FcPattern* pat) {
  FontLocation loc;
  if (pat == nullptr) {
    return loc;
  }
  FcChar8* first = nullptr;
  const bool generic = FcPatternGetString(pat, FC_FAMILY, 0, &first) != FcResultMatch ||
                       generic_family(reinterpret_cast<const char*>(first));
  FcConfigSubstitute(nullptr, pat, FcMatchPattern);
  FcDefaultSubstitute(pat);
  const std::vector<std::string> families = families_of(pat);
  FcResult result = FcResultNoMatch;
  FcPattern* font = FcFontMatch(nullptr, pat, &result);
  if (font != nullptr && result == FcResultMatch) {
    FcChar8* got = nullptr;
    FcPatternGetString(font, FC_FAMILY, 0, &got);
    const std::string_view matched = got != nullptr ? reinterpret_cast<const char*>(got) : "";
    const std::string defaults = first_default_family();
    bool accept = generic;
    for (std::size_t i = 0; i < families.size() && !accept; ++i) {
      if (i > 0 && same_text(families[i], defaults)) {
        break;
      }
      accept = same_text(families[i], matched);
    }
    if (accept) {
      loc = location_of(font);
    }
  }
  if (font != nullptr) {
    FcPatternDestroy(font);
  }
  FcPatternDestroy(pat);
  return loc;
}

// A font known to fontconfig whose file is called `base`.
FontLocation by_file_name(std::string_view base, int index) {
  FontLocation loc;
  FcPattern* pat = FcPatternCreate();
  FcObjectSet* os = FcObjectSetBuild(FC_FILE, FC_INDEX, nullptr);
  FcFontSet* set = FcFontList(nullptr, pat, os);
  if (set != nullptr) {
    for (int i = 0; i < set->nfont && loc.path.empty(); ++i) {
      const FontLocation l = location_of(set->fonts[i]);
      if (l.index == index && same_text(std::filesystem::path(l.path).filename().string(), base)) {
        loc = l;
      }
    }
    FcFontSetDestroy(set);
  }
  FcObjectSetDestroy(os);
  FcPatternDestroy(pat);
  return loc;
}

#endif

}  // namespace

std::string font_directory() {
  if (const std::filesystem::path env = env_directory(); !env.empty()) {
    return (env / "fonts").string();
  }
  const std::filesystem::path share = installed_data_directory();
  return share.empty() ? std::string() : (share / "fonts").string();
}

FontLocation find_font_file(std::string_view name) {
  int index = 0;
  const std::string_view file = split_face(name, index);
  FontLocation loc;
  loc.index = index;
  if (file.empty()) {
    return {};
  }
  if (file.find_first_of("/\\") != std::string_view::npos) {
    loc.path = file;
    return loc;
  }
  if (const std::string dir = font_directory(); !dir.empty()) {
    const std::filesystem::path p = std::filesystem::path(dir) / std::string(file);
    if (is_file(p)) {
      loc.path = p.string();
      return loc;
    }
  }
#ifdef ZORVEL_HAVE_FREETYPE
  if (FontLocation l = by_file_name(file, index); !l.path.empty()) {
    return l;
  }
  return match_family(FcNameParse(reinterpret_cast<const FcChar8*>(std::string(file).c_str())));
#else
  return {};
#endif
}

FontLocation find_system_font(std::string_view pattern) {
#ifdef ZORVEL_HAVE_FREETYPE
  if (pattern.empty()) {
    return {};
  }
  return match_family(FcNameParse(reinterpret_cast<const FcChar8*>(std::string(pattern).c_str())));
#else
  (void)pattern;
  return {};
#endif
}

FontLocation find_italic_face(std::string_view family, std::string_view style) {
#ifdef ZORVEL_HAVE_FREETYPE
  FcPattern* pat = FcPatternCreate();
  FcPatternAddString(pat, FC_FAMILY, reinterpret_cast<const FcChar8*>(std::string(family).c_str()));
  FcPatternAddInteger(pat, FC_SLANT, FC_SLANT_ITALIC);
  std::string s(style);
  std::transform(s.begin(), s.end(), s.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (s.find("bold") != std::string::npos) {
    FcPatternAddInteger(pat, FC_WEIGHT, FC_WEIGHT_BOLD);
  }
  FcConfigSubstitute(nullptr, pat, FcMatchPattern);
  FcDefaultSubstitute(pat);
  FcResult result = FcResultNoMatch;
  FcPattern* font = FcFontMatch(nullptr, pat, &result);
  FontLocation loc;
  if (font != nullptr) {
    FcChar8* got = nullptr;
    int slant = FC_SLANT_ROMAN;
    FcPatternGetString(font, FC_FAMILY, 0, &got);
    FcPatternGetInteger(font, FC_SLANT, 0, &slant);
    if (got != nullptr && same_text(reinterpret_cast<const char*>(got), family) &&
        slant != FC_SLANT_ROMAN) {
      loc = location_of(font);
    }
    FcPatternDestroy(font);
  }
  FcPatternDestroy(pat);
  return loc;
#else
  (void)family;
  (void)style;
  return {};
#endif
}

FontLocation find_fallback_font(std::string_view family, std::uint32_t unicode) {
#ifdef ZORVEL_HAVE_FREETYPE
  FcPattern* pat = FcPatternCreate();
  FcPatternAddString(pat, FC_FAMILY, reinterpret_cast<const FcChar8*>(std::string(family).c_str()));
  FcCharSet* cs = FcCharSetCreate();
  FcCharSetAddChar(cs, unicode);
  FcPatternAddCharSet(pat, FC_CHARSET, cs);
  FcPatternAddBool(pat, FC_SCALABLE, FcTrue);
  FcConfigSubstitute(nullptr, pat, FcMatchPattern);
  FcDefaultSubstitute(pat);
  FcResult result = FcResultNoMatch;
  FcFontSet* set = FcFontSort(nullptr, pat, FcFalse, nullptr, &result);
  FontLocation loc;
  if (set != nullptr) {
    for (int i = 0; i < set->nfont && loc.path.empty(); ++i) {
      FcCharSet* has = nullptr;
      FcBool scalable = FcFalse;
      FcPatternGetBool(set->fonts[i], FC_SCALABLE, 0, &scalable);
      if (scalable == FcTrue &&
          FcPatternGetCharSet(set->fonts[i], FC_CHARSET, 0, &has) == FcResultMatch &&
          FcCharSetHasChar(has, unicode) == FcTrue) {
        loc = location_of(set->fonts[i]);
      }
    }
    FcFontSetDestroy(set);
  }
  FcCharSetDestroy(cs);
  FcPatternDestroy(pat);
  return loc;
#else
  (void)family;
  (void)unicode;
  return {};
#endif
}

}  // namespace zorvel

#pragma once
// Finding font files: by path, in the library's font directory, and through fontconfig
// (by file name, or by a family and style pattern such as "DejaVu Sans:bold").

#include <cstdint>
#include <string>
#include <string_view>

namespace zorvel {

struct FontLocation {
  std::string path;  // empty: not found
  int index = 0;     // face in a collection
};

// The library's font directory: $ZORVEL/fonts when ZORVEL is set, else
// <prefix>/share/zorvel/fonts.
std::string font_directory();

// A font file named `name`: "file,n" takes face n of a collection. A name with "/" is a
// path; else the font directory, then fontconfig's fonts by file name, then `name` as a
// fontconfig pattern whose family must be that of the match.
FontLocation find_font_file(std::string_view name);

// A system font by family and style as fontconfig reads them ("DejaVu Sans:bold"); a
// family that fontconfig maps to a metric twin ("Times New Roman") finds the twin.
FontLocation find_system_font(std::string_view pattern);

// The italic face of `family` at the weight of `style`, when fontconfig knows one.
FontLocation find_italic_face(std::string_view family, std::string_view style);

// A font that has `unicode` (fontconfig's fall-back for a missing character), preferring
// fonts like `family`.
FontLocation find_fallback_font(std::string_view family, std::uint32_t unicode);

}  // namespace zorvel

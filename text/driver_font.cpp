#include "text/driver_font.h"

namespace zorvel {
namespace {

// Codes 127..186 of the text faces: the accented letters in the order of the PostScript
// prolog's GermanVec vector; 187 is the copyright sign.
constexpr std::uint16_t kAccented[] = {
    0xC4, 0xD6, 0xDC, 0xE4, 0xF6, 0xFC, 0xDF, 0xC5, 0xD8, 0xC6, 0xE5, 0xF8, 0xE6, 0xD1, 0xF1,
    0xC7, 0xE7, 0xCB, 0xCF, 0xEB, 0xEF, 0xC1, 0xC9, 0xCD, 0xD3, 0xDA, 0xE1, 0xE9, 0xED, 0xF3,
    0xFA, 0xC0, 0xC8, 0xCC, 0xD2, 0xD9, 0xE0, 0xE8, 0xEC, 0xF2, 0xF9, 0xC2, 0xCA, 0xCE, 0xD4,
    0xDB, 0xE2, 0xEA, 0xEE, 0xF4, 0xFB, 0xC3, 0xE3, 0xD5, 0xF5, 0xDD, 0xFD, 0xFF, 0xA1, 0xBF,
    0xA9};

// Letters of the Symbol face: 'A'..'Z' and 'a'..'z' are Greek letters.
constexpr std::uint16_t kSymbolUpper[26] = {
    0x391, 0x392, 0x3A7, 0x394, 0x395, 0x3A6, 0x393, 0x397, 0x399, 0x3D1, 0x39A, 0x39B, 0x39C,
    0x39D, 0x39F, 0x3A0, 0x398, 0x3A1, 0x3A3, 0x3A4, 0x3A5, 0x3C2, 0x3A9, 0x39E, 0x3A8, 0x396};
constexpr std::uint16_t kSymbolLower[26] = {
    0x3B1, 0x3B2, 0x3C7, 0x3B4, 0x3B5, 0x3C6, 0x3B3, 0x3B7, 0x3B9, 0x3D5, 0x3BA, 0x3BB, 0x3BC,
    0x3BD, 0x3BF, 0x3C0, 0x3B8, 0x3C1, 0x3C3, 0x3C4, 0x3C5, 0x3D6, 0x3C9, 0x3BE, 0x3C8, 0x3B6};

}  // namespace

std::uint32_t driver_unicode(DriverFace face, int code) {
  if (code < kDriverFirstCode || code >= kDriverFirstCode + kDriverCodes) {
    return 0;
  }
  if (face == DriverFace::Greek) {
    if (code >= 'A' && code <= 'Z') {
      return kSymbolUpper[code - 'A'];
    }
    if (code >= 'a' && code <= 'z') {
      return kSymbolLower[code - 'a'];
    }
    return code < 127 ? static_cast<std::uint32_t>(code) : 0;
  }
  return code < 127 ? static_cast<std::uint32_t>(code) : kAccented[code - 127];
}

std::string_view driver_face_name(DriverFace face) {
  switch (face) {
    case DriverFace::Greek:
      return "Symbol";
    case DriverFace::Italic:
      return "Times-Italic";
    default:
      return "Times-Roman";
  }
}

int driver_width(DriverFace face, int code) {
  if (code < kDriverFirstCode || code >= kDriverFirstCode + kDriverCodes) {
    return 0;
  }
  const int i = code - kDriverFirstCode;
  switch (face) {
    case DriverFace::Greek:
      return kSymbolWidths[i];
    case DriverFace::Italic:
      return kTimesItalicWidths[i];
    default:
      return kTimesRomanWidths[i];
  }
}

}  // namespace zorvel

#include "text/driver_font.h"

namespace zorvel {

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

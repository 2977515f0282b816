#pragma once
// The output device's own fonts (font mode 1, hwfont): the faces the text engine names
// and their advance widths, so that driver text is measured and justified like stroke
// text.

#include <cstdint>
#include <string_view>

namespace zorvel {

// Codes the driver fonts receive: 32..187 (see driver_code in text/mapping.h).
inline constexpr int kDriverFirstCode = 32;
inline constexpr int kDriverCodes = 156;

// Font size (em) of the driver fonts per unit of character height: Times capitals are
// 0.662 em high, so the capitals of driver text are as high as the character height of
// stroke text. In the width formula w / 40 * height * 0.28346458 * 1000 / F this is the
// driver font scale F = 7086.6 * 0.662 = 4691.3.
inline constexpr double kDriverEmPerHeight = 1.0 / 0.662;

// Faces of the driver fonts: the base face and those that select_alphabet switches to.
enum class DriverFace : int { Roman = 0, Greek = 1, Italic = 2 };

// PostScript name of a face: "Times-Roman", "Symbol", "Times-Italic".
std::string_view driver_face_name(DriverFace face);

// The character that `code` (32..187) stands for in the face's encoding; 0 for codes
// outside it.
std::uint32_t driver_unicode(DriverFace face, int code);

// Advance width of `code` (32..187) in thousandths of the font size; 0 where the face has
// no glyph for the code.
int driver_width(DriverFace face, int code);

extern const std::uint16_t kTimesRomanWidths[kDriverCodes];
extern const std::uint16_t kTimesItalicWidths[kDriverCodes];
extern const std::uint16_t kSymbolWidths[kDriverCodes];

}  // namespace zorvel

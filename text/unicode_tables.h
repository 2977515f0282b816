#pragma once
// The characters (Unicode) that outline and bitmap fonts draw for the codes of the 8-bit
// character sets and for the letters of the alphabets that switch scripts.

#include <cstdint>

namespace zorvel {

// Codes 160..255 of ISO2, ISO3, ISO5, KOI8 and ISO7 (character sets 2..5 and 7).
extern const std::uint16_t kCharsetUnicode[5][96];
// Codes 32..127 in the alphabets GREE, MATH and RUSS; 0 where the alphabet has no letter
// of its own (the code keeps its meaning).
extern const std::uint16_t kGreekUnicode[96];
extern const std::uint16_t kMathUnicode[96];
extern const std::uint16_t kRussianUnicode[96];

}  // namespace zorvel

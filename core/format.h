#pragma once
// Number formatting without printf: independent of the C locale (a Java VM sets one),
// never "-0", never "nan" or "inf".

#include <cstddef>
#include <string_view>

namespace zorvel {

// Enough for any int64 and for fixed-point doubles within the clamp below.
inline constexpr std::size_t kNumberBuffer = 64;

// Values are clamped to +-1e15 before fixed formatting, far beyond any plot coordinate;
// NaN is written as 0.
inline constexpr double kFormatLimit = 1e15;

// Writes the decimal digits of v at p and returns the end (no terminator).
char* format_int(char* p, long long v);

// Writes v rounded to `decimals` places (0..17) at p and returns the end. A result that
// rounds to zero is written without a sign.
char* format_fixed(char* p, double v, int decimals);

// Right-aligns the text [begin, end) in a field of `width` characters, padding with
// blanks on the left; returns the new end. The buffer must hold max(width, length).
char* pad_left(char* begin, char* end, int width);

// Shortest text that reads back as v ("0.5", "1e-07"); NaN and infinities as "nan",
// "inf", "-inf" (only for warning lines, never for output files).
std::string_view format_shortest(char* buf, double v);

}  // namespace zorvel

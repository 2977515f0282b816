#pragma once
// Number formatting without printf: independent of the C locale (a Java VM sets one),
// never "-0", never "nan" or "inf" (format_shortest aside). Drivers, warning lines and
// every number that a routine prints on the page go through these functions, so that the
// same value always reads the same.

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

// Most digits that format_number keeps (the integer part of huge values is cut to its
// last digits rather than written past the buffer).
inline constexpr int kMaxNumberDigits = 100;

// The general formatter of numbers on the page (axis labels, `number`, legends): writes
// `value` rounded to `digits` decimal places into buf[0 .. size-1], always terminated,
// and returns the length of the text (never more than size - 1).
//   digits > 0   that many decimals: 2.345 with 2 gives "2.35"
//   digits = 0   the rounded integer with a trailing point: 2.5 gives "3."
//   digits < 0   the rounded integer without a point: 2.5 gives "3"
// Halves of the scaled value round away from zero (unlike format_fixed). A value that
// rounds to zero loses its sign ("0.00", never "-0.00"). `width` > 0 right-aligns the
// text in a field of that many characters (blanks on the left); the sign keeps its
// column when it is dropped. Non-finite values are written as 0. A size of 0 writes
// nothing and returns 0.
int format_number(char* buf, std::size_t size, double value, int digits, int width = 0);

// Shortest text that reads back as v ("0.5", "1e-07"); NaN and infinities as "nan",
// "inf", "-inf" (only for warning lines, never for output files).
std::string_view format_shortest(char* buf, double v);

}  // namespace zorvel

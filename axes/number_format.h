#pragma once
// The general number formatter: the one routine that writes a double as text with a
// given number of decimal places. Axis labels, `number`, legends and every other routine
// that prints a number on the page go through it, so that the same value always reads
// the same. It uses no printf (the result must not depend on the C locale) and never
// writes "-0", "nan" or "inf".

#include <cstddef>

namespace zorvel {

// Most digits that a formatted number keeps (the integer part of huge values is cut to
// its last digits rather than written past the buffer).
inline constexpr int kMaxNumberDigits = 100;

// Writes `value` rounded to `digits` decimal places into buf[0 .. size-1], always
// terminated, and returns the length of the text (never more than size - 1).
//   digits > 0   that many decimals: 2.345 with 2 gives "2.35"
//   digits = 0   the rounded integer with a trailing point: 2.5 gives "3."
//   digits < 0   the rounded integer without a point: 2.5 gives "3"
// Halves round away from zero. A value that rounds to zero loses its sign ("0.00", never
// "-0.00"). `width` > 0 right-aligns the text in a field of that many characters
// (blanks on the left); the sign keeps its column when it is dropped. Non-finite values
// are written as 0. A size of 0 writes nothing and returns 0.
int format_number(char* buf, std::size_t size, double value, int digits, int width = 0);

}  // namespace zorvel

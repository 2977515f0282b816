#include "axes/number_format.h"

#include <cfloat>
#include <cmath>

namespace zorvel {

int format_number(char* buf, std::size_t size, double value, int digits, int width) {
  if (size == 0) {
    return 0;
  }
  if (!std::isfinite(value)) {
    value = std::isnan(value) ? 0.0 : std::copysign(DBL_MAX, value);
  }
  if (digits > kMaxNumberDigits) {
    digits = kMaxNumberDigits;
  }
  bool negative = value < 0.0;
  const double x = std::fabs(value);

  // The rounded value as a whole number of the last decimal place.
  double r = digits > 0 ? std::floor(x * std::pow(10.0, digits) + 0.5) : std::floor(x + 0.5);
  if (!std::isfinite(r)) {
    r = DBL_MAX;
  }

  // Its decimal digits, least significant first.
  char rev[kMaxNumberDigits];
  int count = 0;
  if (r <= 0.5) {
    rev[count++] = '0';
  } else {
    while (r > 0.5 && count < kMaxNumberDigits) {
      const int d = static_cast<int>(std::fmod(r, 10.0) + 0.5);
      rev[count++] = static_cast<char>('0' + (d > 9 ? 9 : d));
      r = std::floor((r + 0.5) / 10.0);
    }
  }
  if (count == 1 && rev[0] == '0') {
    negative = false;  // nothing but zeros: no "-0.00"
  }

  // The text, built in full: sign, leading "0." and zeros, digits, point.
  char text[2 * kMaxNumberDigits + 4];
  int n = 0;
  if (negative) {
    text[n++] = '-';
  }
  if (count <= digits) {
    text[n++] = '0';
    text[n++] = '.';
    for (int i = 0; i < digits - count; ++i) {
      text[n++] = '0';
    }
  }
  const int point_after = count > digits && digits > 0 ? count - digits : -1;
  for (int i = 0; i < count; ++i) {
    if (i == point_after) {
      text[n++] = '.';
    }
    text[n++] = rev[count - 1 - i];
  }
  if (digits == 0) {
    text[n++] = '.';
  }

  // Copy with the field's blanks, never past size - 1.
  const std::size_t cap = size - 1;
  std::size_t out = 0;
  for (int i = n; i < width && out < cap; ++i) {
    buf[out++] = ' ';
  }
  for (int i = 0; i < n && out < cap; ++i) {
    buf[out++] = text[i];
  }
  buf[out] = '\0';
  return static_cast<int>(out);
}

}  // namespace zorvel

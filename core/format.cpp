#include "core/format.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>

namespace zorvel {

char* format_int(char* p, long long v) {
  // Two digits at a time from a table, written straight into place.
  static constexpr char kPairs[] =
      "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
      "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
      "8081828384858687888990919293949596979899";
  // Work on the unsigned magnitude so that the most negative value does not overflow.
  unsigned long long u = v < 0 ? 0ULL - static_cast<unsigned long long>(v)
                               : static_cast<unsigned long long>(v);
  if (v < 0) {
    *p++ = '-';
  }
  int digits = 1;
  for (unsigned long long t = u; t >= 10; t /= 10) {
    ++digits;
  }
  char* const end = p + digits;
  char* t = end;
  while (u >= 100) {
    const auto i = static_cast<std::size_t>(u % 100) * 2;
    u /= 100;
    *--t = kPairs[i + 1];
    *--t = kPairs[i];
  }
  if (u >= 10) {
    const auto i = static_cast<std::size_t>(u) * 2;
    *--t = kPairs[i + 1];
    *--t = kPairs[i];
  } else {
    *--t = static_cast<char>('0' + u);
  }
  return end;
}

char* format_fixed(char* p, double v, int decimals) {
  if (std::isnan(v)) {
    v = 0.0;
  }
  if (v > kFormatLimit) {
    v = kFormatLimit;
  } else if (v < -kFormatLimit) {
    v = -kFormatLimit;
  }
  if (decimals < 0) {
    decimals = 0;
  } else if (decimals > 17) {
    decimals = 17;
  }
  char* end = std::to_chars(p, p + kNumberBuffer, v, std::chars_format::fixed, decimals).ptr;
  if (*p == '-') {
    bool zero = true;
    for (char* q = p + 1; q < end; ++q) {
      if (*q >= '1' && *q <= '9') {
        zero = false;
        break;
      }
    }
    if (zero) {
      std::memmove(p, p + 1, static_cast<std::size_t>(end - p - 1));
      --end;
    }
  }
  return end;
}

char* pad_left(char* begin, char* end, int width) {
  const long len = end - begin;
  if (len >= width) {
    return end;
  }
  const long pad = width - len;
  std::memmove(begin + pad, begin, static_cast<std::size_t>(len));
  std::memset(begin, ' ', static_cast<std::size_t>(pad));
  return begin + width;
}

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

  // Its decimal digits, most significant first. Within the limit of format_fixed they
  // are its exact digits; beyond it, every division by ten rounds and the digits are
  // taken one by one from the last, at most kMaxNumberDigits of them.
  static_assert(kMaxNumberDigits >= static_cast<int>(kNumberBuffer));
  char whole[kMaxNumberDigits];
  int count = 0;
  if (r <= kFormatLimit) {
    count = static_cast<int>(format_fixed(whole, r, 0) - whole);
  } else {
    while (r > 0.5 && count < kMaxNumberDigits) {
      const int d = static_cast<int>(std::fmod(r, 10.0) + 0.5);
      whole[kMaxNumberDigits - 1 - count++] = static_cast<char>('0' + (d > 9 ? 9 : d));
      r = std::floor((r + 0.5) / 10.0);
    }
    std::memmove(whole, whole + kMaxNumberDigits - count, static_cast<std::size_t>(count));
  }
  if (count == 1 && whole[0] == '0') {
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
    text[n++] = whole[i];
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

std::string_view format_shortest(char* buf, double v) {
  if (std::isnan(v)) {
    return "nan";
  }
  if (std::isinf(v)) {
    return v > 0 ? "inf" : "-inf";
  }
  char* end = std::to_chars(buf, buf + kNumberBuffer, v).ptr;
  return {buf, static_cast<std::size_t>(end - buf)};
}

}  // namespace zorvel

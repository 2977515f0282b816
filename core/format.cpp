#include "core/format.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace zorvel {

char* format_int(char* p, long long v) {
  char tmp[24];
  char* t = tmp + sizeof tmp;
  // Work on the unsigned magnitude so that the most negative value does not overflow.
  unsigned long long u = v < 0 ? 0ULL - static_cast<unsigned long long>(v)
                               : static_cast<unsigned long long>(v);
  do {
    *--t = static_cast<char>('0' + u % 10);
    u /= 10;
  } while (u != 0);
  if (v < 0) {
    *--t = '-';
  }
  const std::size_t n = static_cast<std::size_t>(tmp + sizeof tmp - t);
  std::memcpy(p, t, n);
  return p + n;
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

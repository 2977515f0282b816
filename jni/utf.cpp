#include "jni/utf.h"

namespace zorvel::jni {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::uint32_t kByteEscape = 0xDC00;  // U+DC80..U+DCFF carry the bytes 0x80..0xFF

bool is_high_surrogate(std::uint32_t u) { return u >= 0xD800 && u <= 0xDBFF; }
bool is_low_surrogate(std::uint32_t u) { return u >= 0xDC00 && u <= 0xDFFF; }

char* put_utf8(char* p, std::uint32_t c) {
  if (c < 0x80) {
    *p++ = static_cast<char>(c);
  } else if (c < 0x800) {
    *p++ = static_cast<char>(0xC0 | (c >> 6));
    *p++ = static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    *p++ = static_cast<char>(0xE0 | (c >> 12));
    *p++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    *p++ = static_cast<char>(0x80 | (c & 0x3F));
  } else {
    *p++ = static_cast<char>(0xF0 | (c >> 18));
    *p++ = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    *p++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    *p++ = static_cast<char>(0x80 | (c & 0x3F));
  }
  return p;
}

std::uint16_t* put_utf16(std::uint16_t* p, std::uint32_t c) {
  if (c < 0x10000) {
    *p++ = static_cast<std::uint16_t>(c);
  } else {
    c -= 0x10000;
    *p++ = static_cast<std::uint16_t>(0xD800 + (c >> 10));
    *p++ = static_cast<std::uint16_t>(0xDC00 + (c & 0x3FF));
  }
  return p;
}

// Length of the sequence that lead byte b starts, 0 for a byte that cannot lead.
int sequence_length(unsigned char b) {
  if (b < 0x80) {
    return 1;
  }
  if (b >= 0xC2 && b <= 0xDF) {
    return 2;
  }
  if (b >= 0xE0 && b <= 0xEF) {
    return 3;
  }
  if (b >= 0xF0 && b <= 0xF4) {
    return 4;
  }
  return 0;  // continuation bytes, the overlong leads C0 and C1, and F5 to FF
}

}  // namespace

std::size_t utf16_to_utf8(const std::uint16_t* s, std::size_t n, char* out) {
  char* p = out;
  for (std::size_t i = 0; i < n; ++i) {
    std::uint32_t c = s[i];
    if (c == 0) {
      break;
    }
    if (is_high_surrogate(c) && i + 1 < n && is_low_surrogate(s[i + 1])) {
      c = 0x10000 + ((c - 0xD800) << 10) + (s[i + 1] - 0xDC00);
      ++i;
    } else if (c >= kByteEscape + 0x80 && c <= kByteEscape + 0xFF) {
      *p++ = static_cast<char>(c - kByteEscape);
      continue;
    } else if (is_high_surrogate(c) || is_low_surrogate(c)) {
      c = kReplacement;
    }
    p = put_utf8(p, c);
  }
  return static_cast<std::size_t>(p - out);
}

std::size_t utf8_to_utf16(const char* s, std::size_t n, std::uint16_t* out) {
  const auto* b = reinterpret_cast<const unsigned char*>(s);
  std::uint16_t* p = out;
  std::size_t i = 0;
  while (i < n && b[i] != 0) {
    const int len = sequence_length(b[i]);
    if (len == 1) {
      *p++ = b[i++];
      continue;
    }
    // A sequence is taken only when it is complete and its value is in range for its
    // length; otherwise the lead byte alone is escaped and decoding resumes after it.
    bool good = len > 0 && i + static_cast<std::size_t>(len) <= n;
    std::uint32_t c = len == 2 ? (b[i] & 0x1Fu) : len == 3 ? (b[i] & 0x0Fu) : (b[i] & 0x07u);
    for (int k = 1; good && k < len; ++k) {
      const unsigned char t = b[i + static_cast<std::size_t>(k)];
      good = (t & 0xC0) == 0x80;
      c = (c << 6) | (t & 0x3Fu);
    }
    if (good) {
      good = (len == 3 && c >= 0x800 && !(c >= 0xD800 && c <= 0xDFFF)) ||
             (len == 4 && c >= 0x10000 && c <= 0x10FFFF) || len == 2;
    }
    if (!good) {
      *p++ = static_cast<std::uint16_t>(kByteEscape + b[i]);
      ++i;
      continue;
    }
    p = put_utf16(p, c);
    i += static_cast<std::size_t>(len);
  }
  return static_cast<std::size_t>(p - out);
}

}  // namespace zorvel::jni

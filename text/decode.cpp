#include "text/decode.h"

#include "core/global_block.h"
#include "core/messages.h"

namespace zorvel {
namespace {

constexpr int kArrayFull = 171;   // more than kMaxTextCodes characters
constexpr int kStringFull = 172;  // the UTF-8 buffer is too small
constexpr int kTooBig = 173;      // a code outside UTF-8
constexpr int kSyntaxError = 174; // not valid UTF-8

bool is_continuation(unsigned char b) { return b >= 128 && b <= 191; }

}  // namespace

bool decode_string(GlobalBlock& g, std::string_view s, int charset, CodeString& out) {
  out.n = 0;
  const std::size_t len = s.size();
  std::size_t i = 0;
  while (i < len) {
    const auto lead = static_cast<unsigned char>(s[i++]);
    std::int32_t code = lead;
    if (charset == kCharsetUtf8 && lead >= 128) {
      int follow = 0;
      if (lead >= 192 && lead <= 223) {
        follow = 1;
        code = lead & 31;
      } else if (lead >= 224 && lead <= 239) {
        follow = 2;
        code = lead & 15;
      } else if (lead >= 240 && lead <= 247) {
        follow = 3;
        code = lead & 7;
      } else {
        // A continuation byte where a character should begin, or a lead of 248 and up.
        warn(g, kSyntaxError);
        return false;
      }
      for (int k = 0; k < follow; ++k) {
        if (i >= len || !is_continuation(static_cast<unsigned char>(s[i]))) {
          warn(g, kSyntaxError);
          return false;
        }
        code = code * 64 + (static_cast<unsigned char>(s[i++]) & 63);
      }
    }
    if (out.n == kMaxTextCodes) {
      warn(g, kArrayFull);
      return false;
    }
    out.code[static_cast<std::size_t>(out.n++)] = code;
  }
  while (out.n > 0 && out.code[static_cast<std::size_t>(out.n - 1)] == 32) {
    --out.n;
  }
  return true;
}

int encode_utf8(GlobalBlock& g, const std::int32_t* codes, int n, char* buf, std::size_t size) {
  if (size == 0) {
    warn(g, kStringFull);
    return -1;
  }
  const std::size_t cap = size - 1;  // room for the terminator
  std::size_t out = 0;
  for (int i = 0; i < n; ++i) {
    const std::int32_t c = codes[i];
    if (c < 0 || c >= 0x200000) {
      buf[out] = '\0';
      warn(g, kTooBig);
      return -1;
    }
    unsigned char bytes[4];
    int k = 0;
    if (c < 0x80) {
      bytes[k++] = static_cast<unsigned char>(c);
    } else if (c < 0x800) {
      bytes[k++] = static_cast<unsigned char>(0xC0 | (c >> 6));
      bytes[k++] = static_cast<unsigned char>(0x80 | (c & 63));
    } else if (c < 0x10000) {
      bytes[k++] = static_cast<unsigned char>(0xE0 | (c >> 12));
      bytes[k++] = static_cast<unsigned char>(0x80 | ((c >> 6) & 63));
      bytes[k++] = static_cast<unsigned char>(0x80 | (c & 63));
    } else {
      bytes[k++] = static_cast<unsigned char>(0xF0 | (c >> 18));
      bytes[k++] = static_cast<unsigned char>(0x80 | ((c >> 12) & 63));
      bytes[k++] = static_cast<unsigned char>(0x80 | ((c >> 6) & 63));
      bytes[k++] = static_cast<unsigned char>(0x80 | (c & 63));
    }
    if (out + static_cast<std::size_t>(k) > cap) {
      buf[out] = '\0';
      warn(g, kStringFull);
      return -1;
    }
    for (int j = 0; j < k; ++j) {
      buf[out++] = static_cast<char>(bytes[j]);
    }
  }
  buf[out] = '\0';
  return static_cast<int>(out);
}

}  // namespace zorvel

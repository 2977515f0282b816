// The UTF-16 <-> UTF-8 conversions of the Java binding (jni/utf.h). The well-formed
// cases travel end to end in the fixture (tests/java/fixture); these are the edges.

#include "jni/utf.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace zorvel::jni {
namespace {

std::string to_utf8(const std::u16string& s) {
  std::vector<char> buf(utf8_capacity(s.size()) + 1);
  const auto* units = reinterpret_cast<const std::uint16_t*>(s.data());
  return std::string(buf.data(), utf16_to_utf8(units, s.size(), buf.data()));
}

std::u16string to_utf16(const std::string& s) {
  std::vector<std::uint16_t> buf(s.size() + 1);
  const std::size_t n = utf8_to_utf16(s.data(), s.size(), buf.data());
  return std::u16string(buf.begin(), buf.begin() + static_cast<std::ptrdiff_t>(n));
}

// The escape of each byte: U+DC00 + byte.
std::u16string esc(const std::string& bytes) {
  std::u16string s;
  for (const unsigned char b : bytes) {
    s += char16_t(0xDC00 + b);
  }
  return s;
}

// Catches: U+0000 not ending the C string, unpaired surrogates (high at the end, low
// alone, high before a normal character) turned into invalid bytes instead of U+FFFD,
// escapes that leak into neighbouring ranges (U+DC7F; D83D DC80 is a real pair), 8-bit
// text (codes 128..255 of the STAN set) that Java could not send, and an encoder that
// writes more than utf8_capacity promises.
TEST(JavaUtf, Encodes) {
  std::string bytes;
  for (int b = 0x80; b <= 0xFF; ++b) {
    bytes += static_cast<char>(b);
  }
  for (const auto& [in, out] : std::vector<std::pair<std::u16string, std::string>>{
           {std::u16string(u"ab\0cd", 5), "ab"},
           {std::u16string(1, char16_t(0xD83D)), "\xef\xbf\xbd"},
           {std::u16string(1, char16_t(0xDE00)) + u"x", "\xef\xbf\xbdx"},
           {std::u16string(1, char16_t(0xD83D)) + u"x", "\xef\xbf\xbdx"},
           {std::u16string(1, char16_t(0xDC7F)), "\xef\xbf\xbd"},
           {u"\U0001F480", "\xf0\x9f\x92\x80"},
           {u"a" + esc(bytes) + u"z", "a" + bytes + "z"},
       }) {
    EXPECT_EQ(to_utf8(in), out);
  }
  const std::u16string wide(100, u'\uffff');  // three bytes for every unit
  EXPECT_EQ(to_utf8(wide).size(), utf8_capacity(wide.size()));
}

// Catches: decoding that does not stop at the terminator, overlong or surrogate forms
// accepted as characters, invalid input read past its end, and bytes that are no UTF-8
// not coming back as the escapes that the encoder turns back into the same bytes.
TEST(JavaUtf, DecodesWithEscapes) {
  for (const auto& [in, out] : std::vector<std::pair<std::string, std::u16string>>{
           {std::string("ab\0cd", 5), u"ab"},
           {"\xc0\xaf", esc("\xc0\xaf")},                  // overlong '/'
           {"\xe0\x80\xaf", esc("\xe0\x80\xaf")},          // overlong, 3 bytes
           {"\xed\xa0\xbd", esc("\xed\xa0\xbd")},          // a surrogate in UTF-8
           {"\xf4\x90\x80\x80", esc("\xf4\x90\x80\x80")},  // > U+10FFFF
           {"\xff\x61", esc("\xff") + u"a"},
           {"a\xe2\x82", u"a" + esc("\xe2\x82")},          // cut by the end of the text
           {"caf\xe9 ok", u"caf" + esc("\xe9") + u" ok"},  // Latin-1 keeps its neighbours
       }) {
    EXPECT_EQ(to_utf16(in), out);
    EXPECT_EQ(to_utf8(to_utf16(in)), in.substr(0, in.find('\0')));
  }
}

}  // namespace
}  // namespace zorvel::jni

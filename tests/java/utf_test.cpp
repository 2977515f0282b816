// The UTF-16 <-> UTF-8 conversions of the Java binding (jni/utf.h).

#include "jni/utf.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
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

// Catches: text handed to the library in Java's modified UTF-8 (supplementary characters
// as two 3-byte surrogates, U+0000 as C0 80) instead of real UTF-8, and an encoder that
// writes more than utf8_capacity promises.
TEST(JavaUtf, EncodesRealUtf8) {
  // Each length class of UTF-8: 1, 2, 3 bytes and the 4-byte form of a surrogate pair.
  EXPECT_EQ(to_utf8(u"plot.ps"), "plot.ps");
  EXPECT_EQ(to_utf8(u"gr\u00fc\u00dfe"), "gr\xc3\xbc\xc3\x9f\x65");
  EXPECT_EQ(to_utf8(u"\u20ac"), "\xe2\x82\xac");
  EXPECT_EQ(to_utf8(u"\U0001F600"), "\xf0\x9f\x98\x80");
  // The worst case for the capacity: three bytes for every unit.
  const std::u16string wide(100, u'\uffff');
  EXPECT_EQ(to_utf8(wide).size(), utf8_capacity(wide.size()));

  // U+0000 ends the C string; nothing after it reaches the library.
  EXPECT_EQ(to_utf8(std::u16string(u"ab\0cd", 5)), "ab");
  // Unpaired surrogates (a high one at the end, a low one alone, a high one before a
  // normal character) become U+FFFD instead of invalid bytes.
  EXPECT_EQ(to_utf8(std::u16string(1, char16_t(0xD83D))), "\xef\xbf\xbd");
  EXPECT_EQ(to_utf8(std::u16string(1, char16_t(0xDE00)) + u"x"), "\xef\xbf\xbdx");
  EXPECT_EQ(to_utf8(std::u16string(1, char16_t(0xD83D)) + u"x"), "\xef\xbf\xbdx");
}

// Catches: 8-bit text (the font chart's codes 128..255 in the STAN character set) that
// Java cannot send because every char is turned into UTF-8, and escapes that leak into
// neighbouring ranges (U+DC7F is no byte escape, nor is a real surrogate pair).
TEST(JavaUtf, ByteEscapes) {
  std::u16string raw;
  for (char16_t b = 0x80; b <= 0xFF; ++b) {
    raw += char16_t(0xDC00 + b);
  }
  std::string bytes;
  for (int b = 0x80; b <= 0xFF; ++b) {
    bytes += static_cast<char>(b);
  }
  EXPECT_EQ(to_utf8(u"a" + raw + u"z"), "a" + bytes + "z");
  EXPECT_EQ(to_utf8(std::u16string(1, char16_t(0xDC7F))), "\xef\xbf\xbd");
  EXPECT_EQ(to_utf8(u"\U0001F480"), "\xf0\x9f\x92\x80");  // D83D DC80: a pair
  // Bytes that are no UTF-8 come back as the same escapes: a round trip keeps them.
  EXPECT_EQ(to_utf16("a" + bytes + "z"), u"a" + raw + u"z");
  EXPECT_EQ(to_utf8(to_utf16("caf\xe9")), "caf\xe9");
}

// Catches: library text decoded byte by byte (mojibake in Java strings), invalid input
// read past its end, and overlong or surrogate forms accepted as characters.
TEST(JavaUtf, DecodesUtf8WithEscapes) {
  EXPECT_EQ(to_utf16("gr\xc3\xbc\xc3\x9f\x65"), u"gr\u00fc\u00dfe");
  EXPECT_EQ(to_utf16("\xe2\x82\xac"), u"\u20ac");
  EXPECT_EQ(to_utf16("\xf0\x9f\x98\x80"), u"\U0001F600");
  // Decoding stops at the terminator.
  EXPECT_EQ(to_utf16(std::string("ab\0cd", 5)), u"ab");

  // Each byte of a malformed sequence comes back as its escape U+DC00 + byte.
  auto esc = [](std::initializer_list<int> bytes) {
    std::u16string s;
    for (int b : bytes) {
      s += char16_t(0xDC00 + b);
    }
    return s;
  };
  EXPECT_EQ(to_utf16("\xc0\xaf"), esc({0xC0, 0xAF}));                      // overlong '/'
  EXPECT_EQ(to_utf16("\xe0\x80\xaf"), esc({0xE0, 0x80, 0xAF}));            // overlong, 3 bytes
  EXPECT_EQ(to_utf16("\xed\xa0\xbd"), esc({0xED, 0xA0, 0xBD}));            // a surrogate in UTF-8
  EXPECT_EQ(to_utf16("\xf4\x90\x80\x80"), esc({0xF4, 0x90, 0x80, 0x80}));  // > U+10FFFF
  EXPECT_EQ(to_utf16("\xff\x61"), esc({0xFF}) + u"a");
  // A sequence cut by the end of the text: each byte alone is escaped, nothing after
  // the end is read.
  EXPECT_EQ(to_utf16("a\xe2\x82"), u"a" + esc({0xE2, 0x82}));
  // Latin-1 bytes (a file name from another system) keep their neighbours intact.
  EXPECT_EQ(to_utf16("caf\xe9 ok"), u"caf" + esc({0xE9}) + u" ok");
}

}  // namespace
}  // namespace zorvel::jni

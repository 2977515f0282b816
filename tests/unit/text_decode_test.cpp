// Unit tests of string decoding: UTF-8 sequences and their errors, the code limit, the
// trailing blanks and the reverse conversion, with the warnings they give.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/global_block.h"
#include "tests/unit/captured.h"
#include "text/decode.h"

namespace zorvel {
namespace {


std::vector<int> codes_of(Captured& c, std::string_view s, int charset) {
  CodeString out;
  EXPECT_TRUE(decode_string(c.g, s, charset, out));
  return std::vector<int>(out.code.begin(), out.code.begin() + out.n);
}

TEST(Decode, Utf8SequencesAndBlanks) {
  // Catches wrong bit arithmetic for two-, three- and four-byte sequences, bytes taken as
  // UTF-8 under other character sets, and trailing blanks that are kept.
  Captured c("messag");
  EXPECT_EQ(codes_of(c, "A\xC3\xA4\xD0\x96\xE2\x82\xAC\xF0\x9F\x98\x80", kCharsetUtf8),
            (std::vector<int>{65, 228, 1046, 8364, 0x1F600}));
  EXPECT_EQ(codes_of(c, "\xC3\xA4", kCharsetIso1), (std::vector<int>{195, 164}));
  EXPECT_EQ(codes_of(c, "ab  ", kCharsetStan), (std::vector<int>{97, 98}));
  EXPECT_EQ(codes_of(c, " a b", kCharsetStan), (std::vector<int>{32, 97, 32, 98}));
  EXPECT_TRUE(codes_of(c, "    ", kCharsetStan).empty());
  EXPECT_TRUE(codes_of(c, "", kCharsetUtf8).empty());
  EXPECT_EQ(c.text(), "");
}

TEST(Decode, Utf8ErrorsAndLimits) {
  // Catches broken sequences that are let through (a stray continuation byte, a lead of
  // 248 and up, a short sequence at the end, a bad continuation) and a string of more
  // than 256 codes that is cut instead of refused; each must give one warning 174.
  const char* bad[] = {"\x80", "a\xBF", "\xF8\x80\x80\x80\x80", "\xFF", "\xC3", "\xE2\x82",
                       "\xC3(", "\xE2\x28\xA1"};
  for (const char* s : bad) {
    Captured c("messag");
    CodeString out;
    EXPECT_FALSE(decode_string(c.g, s, kCharsetUtf8, out)) << s;
    EXPECT_EQ(c.text(), " <<<< Warning 174: Syntax error in UTF string in messag!\n") << s;
    EXPECT_EQ(c.g.msg.warnings, 1);
  }
  Captured c("messag");
  CodeString out;
  EXPECT_TRUE(decode_string(c.g, std::string(256, 'x'), kCharsetStan, out));
  EXPECT_EQ(out.n, 256);
  EXPECT_FALSE(decode_string(c.g, std::string(257, 'x'), kCharsetStan, out));
  std::string two_byte;
  for (int i = 0; i < 257; ++i) {
    two_byte += "\xC3\xA4";
  }
  EXPECT_FALSE(decode_string(c.g, two_byte, kCharsetUtf8, out));
  // 256 codes and trailing blanks beyond them still do not fit: blanks count first.
  EXPECT_FALSE(decode_string(c.g, std::string(256, 'x') + " ", kCharsetStan, out));
  EXPECT_EQ(c.text(),
            " <<<< Warning 171: Not enough space in array in messag!\n"
            " <<<< Warning 171: Not enough space in array in messag!\n"
            " <<<< Warning 171: Not enough space in array in messag!\n");
}

TEST(Decode, ReverseConversion) {
  // Catches wrong UTF-8 bytes for each sequence length, a missing terminator, writing
  // past a small buffer, and codes of 0x200000 and up that are not refused.
  Captured c("messag");
  const std::int32_t codes[] = {65, 228, 1046, 8364, 0x1F600};
  char buf[32];
  const int n = encode_utf8(c.g, codes, 5, buf, sizeof buf);
  EXPECT_EQ(std::string(buf, static_cast<std::size_t>(n)),
            "A\xC3\xA4\xD0\x96\xE2\x82\xAC\xF0\x9F\x98\x80");
  char small[4] = {'#', '#', '#', '#'};
  EXPECT_EQ(encode_utf8(c.g, codes, 3, small, sizeof small), -1);
  EXPECT_STREQ(small, "A\xC3\xA4");
  const std::int32_t big[] = {66, 0x200000};
  EXPECT_EQ(encode_utf8(c.g, big, 2, buf, sizeof buf), -1);
  EXPECT_STREQ(buf, "B");
  EXPECT_EQ(c.text(),
            " <<<< Warning 172: Not enough space in string in messag!\n"
            " <<<< Warning 173: Number too big for UTF8 conversion in messag!\n");
}

}  // namespace
}  // namespace zorvel

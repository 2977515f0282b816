#pragma once
// Strings into character codes and back. Every string that the text engine draws or
// measures is decoded first, by the character set of chacod.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>


namespace zorvel {

struct GlobalBlock;

// Most character codes a string may decode into.
inline constexpr int kMaxTextCodes = 256;

// Character sets of chacod, in the order of its keyword list.
enum Charset : int {
  kCharsetStan = 0,
  kCharsetIso1 = 1,
  kCharsetIso2 = 2,
  kCharsetIso3 = 3,
  kCharsetIso5 = 4,
  kCharsetKoi8 = 5,
  kCharsetUtf8 = 6,
  kCharsetIso7 = 7,
};

// The codes of one string (at most kMaxTextCodes).
struct CodeString {
  std::array<std::int32_t, kMaxTextCodes> code{};
  int n = 0;
};

// Decodes `s` by `charset` into `out` and drops the trailing blanks (code 32). Without
// UTF8 every byte is one code (0..255). With UTF8 a lead byte takes one to three
// continuation bytes. False, with warning 174 naming the problem, when the UTF-8 is
// broken ("Syntax error in UTF string") or the string holds more than kMaxTextCodes codes
// ("Not enough space in array"): the caller then draws nothing. A string of blanks
// decodes to n = 0 (true).
bool decode_string(GlobalBlock& g, std::string_view s, int charset, CodeString& out);

// Writes the codes as UTF-8 (one to four bytes each) into buf[0 .. size-1], terminated,
// and returns the length; -1 with warning 174 for a code of 0x200000 or more ("Number too
// big for UTF8 conversion") or when the text does not fit ("Not enough space in
// string"); buf then holds the codes converted before the problem.
int encode_utf8(GlobalBlock& g, const std::int32_t* codes, int n, char* buf, std::size_t size);

}  // namespace zorvel

#pragma once
// Keyword options and value checks shared by all public routines.
//
// A KeywordList is a text of 4-character keywords joined by '+', short keywords padded
// with blanks: "OFF +ON  +FILE". Input matches on its first four characters, upper-cased
// and blank-padded, so "postscript" and "POST" are the same.

#include <array>
#include <string_view>

namespace zorvel {

struct GlobalBlock;

using Key4 = std::array<char, 4>;

// First four characters of s, upper-cased, padded with blanks.
Key4 key4(std::string_view s);
inline std::string_view key_view(const Key4& k) { return {k.data(), k.size()}; }

// Number of keywords in a list ("A+B+C" holds 3).
constexpr int keyword_count(std::string_view list) {
  return list.empty() ? 0 : static_cast<int>((list.size() + 1) / 5);
}

// 1-based index of input among the first `count` keywords of `list`, or 0.
int find_keyword(std::string_view list, int count, std::string_view input);

// As find_keyword over the whole list, but no match issues warning 2 with the input.
int match_keyword(GlobalBlock& g, std::string_view list, std::string_view input);
int match_keyword(GlobalBlock& g, std::string_view list, int count, std::string_view input);

// Range check: fails with warning 2 and the value when value < lo, or when lo <= hi and
// value > hi. A highest below the lowest means that there is no upper bound.
bool check_range(GlobalBlock& g, int value, int lo, int hi);
bool check_range(GlobalBlock& g, double value, double lo, double hi);

// Date check: day 1..31, month 1..12, year >= 1000, and February's 29 days (28 outside
// leap years). Fails with warning 2 and the first offending value.
bool check_date(GlobalBlock& g, int day, int month, int year);

}  // namespace zorvel

#include "core/keywords.h"

#include "core/global_block.h"
#include "core/messages.h"

namespace zorvel {
namespace {

char upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

Key4 key4(std::string_view s) {
  Key4 k{' ', ' ', ' ', ' '};
  for (std::size_t i = 0; i < 4 && i < s.size(); ++i) {
    k[i] = upper(s[i]);
  }
  return k;
}

int find_keyword(std::string_view list, int count, std::string_view input) {
  const Key4 k = key4(input);
  for (int i = 0; i < count; ++i) {
    const std::size_t at = static_cast<std::size_t>(5 * i);
    if (at + 4 > list.size()) {
      break;
    }
    bool same = true;
    for (std::size_t j = 0; j < 4; ++j) {
      if (upper(list[at + j]) != k[j]) {
        same = false;
        break;
      }
    }
    if (same) {
      return i + 1;
    }
  }
  return 0;
}

int match_keyword(GlobalBlock& g, std::string_view list, int count, std::string_view input) {
  const int i = find_keyword(list, count, input);
  if (i == 0) {
    warn(g, 2, input);
  }
  return i;
}

int match_keyword(GlobalBlock& g, std::string_view list, std::string_view input) {
  return match_keyword(g, list, keyword_count(list), input);
}

bool check_range(GlobalBlock& g, int value, int lo, int hi) {
  if (value < lo || (lo <= hi && value > hi)) {
    warn(g, 2, value);
    return false;
  }
  return true;
}

bool check_range(GlobalBlock& g, double value, double lo, double hi) {
  // Written so that NaN fails as well.
  if (!(value >= lo) || (lo <= hi && !(value <= hi))) {
    warn(g, 2, value);
    return false;
  }
  return true;
}

bool check_date(GlobalBlock& g, int day, int month, int year) {
  if (day < 1 || day > 31) {
    warn(g, 2, day);
    return false;
  }
  if (month < 1 || month > 12) {
    warn(g, 2, month);
    return false;
  }
  if (year < 1000) {
    warn(g, 2, year);
    return false;
  }
  if (month == 2) {
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (day > 29 || (day == 29 && !leap)) {
      warn(g, 2, day);
      return false;
    }
  }
  return true;
}

}  // namespace zorvel

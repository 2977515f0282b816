// The message table core/warnings.def, read as the library reads it.

#include <gtest/gtest.h>

#include <set>
#include <string_view>

namespace {

struct Entry {
  int number;
  std::string_view text;
};

constexpr Entry kTable[] = {
#define ZORVEL_MESSAGE(n, text) {n, text},
#include "core/warnings.def"
#undef ZORVEL_MESSAGE
};

TEST(WarningTable, NumbersAreUniqueAndHaveTexts) {
  // Catches a number given two messages (the first would hide the second) and a number
  // above 100 without a text (it would print a blank).
  std::set<int> seen;
  for (const Entry& e : kTable) {
    EXPECT_TRUE(seen.insert(e.number).second) << "number " << e.number << " twice";
    if (e.number > 100) {
      EXPECT_FALSE(e.text.find_first_not_of(' ') == std::string_view::npos)
          << "number " << e.number << " without a text";
    }
  }
}

}  // namespace

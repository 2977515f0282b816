// Unit tests of the number formatters of core/format.h: exact texts of the general
// formatter for the digit modes, field widths and the limits of the buffer and of the
// values; fixed-point and integer texts of the drivers and warning lines.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/format.h"

namespace zorvel {
namespace {

std::string num(double v, int digits, int width = 0, std::size_t size = 64) {
  std::vector<char> buf(size + 1, '#');
  const int n = format_number(buf.data(), size, v, digits, width);
  EXPECT_EQ(buf[static_cast<std::size_t>(n)], '\0');
  return std::string(buf.data(), static_cast<std::size_t>(n));
}

std::string fixed(double v, int decimals) {
  char buf[kNumberBuffer];
  return std::string(buf, format_fixed(buf, v, decimals));
}

TEST(NumberFormat, ExactTexts) {
  // Catches wrong rounding (halves away from zero), a missing or extra point for the
  // digit modes 0 and -1, lost leading zeros of small fractions, a "-0" and a wrong
  // field width.
  EXPECT_EQ(num(2.5, 0), "3.");
  EXPECT_EQ(num(2.5, -1), "3");
  EXPECT_EQ(num(-2.5, -1), "-3");
  EXPECT_EQ(num(-0.004, 2), "0.00");
  EXPECT_EQ(num(-0.0, 1), "0.0");
  EXPECT_EQ(num(0.05, 3), "0.050");
  EXPECT_EQ(num(0.005, 3), "0.005");
  EXPECT_EQ(num(12.345, 2), "12.35");
  // Both sides of the limit where the digits stop coming from format_fixed.
  EXPECT_EQ(num(1e15, -1), "1000000000000000");
  EXPECT_EQ(num(1e15 + 2.0, -1), "1000000000000002");
  // Field widths: blanks on the left; a dropped sign keeps its column.
  EXPECT_EQ(num(3.25, 1, 6), "   3.3");
  EXPECT_EQ(num(-3.25, 1, 6), "  -3.3");
  EXPECT_EQ(num(-0.001, 1, 5), "  0.0");
  EXPECT_EQ(num(12345.0, -1, 3), "12345");
}

TEST(NumberFormat, LimitsAndBadValues) {
  // Catches writing past the buffer, a missing terminator, "nan"/"inf" in the output and
  // an overflow of the digit buffer for huge values or many decimals.
  EXPECT_EQ(num(123.456, 2, 0, 4), "123");
  EXPECT_EQ(num(-5.0, 1, 0, 2), "-");
  EXPECT_EQ(num(7.0, 1, 0, 1), "");
  EXPECT_EQ(num(std::nan(""), 2), "0.00");
  const std::string inf = num(HUGE_VAL, -1, 0, 200);
  EXPECT_EQ(inf.size(), static_cast<std::size_t>(kMaxNumberDigits));
  EXPECT_EQ(inf.find_first_not_of("0123456789"), std::string::npos);
  const std::string many = num(1.0 / 3.0, 100, 0, 300);
  EXPECT_EQ(many.size(), 102U);
  EXPECT_EQ(many.substr(0, 6), "0.3333");
  char none[1] = {'x'};
  EXPECT_EQ(format_number(none, 0, 1.0, 1), 0);
  EXPECT_EQ(none[0], 'x');
}

TEST(NumberFormat, FixedAndIntegers) {
  // Catches "-0", "nan", wrong rounding and an overflow of the most negative integer.
  EXPECT_EQ(fixed(-0.0001, 2), "0.00");
  EXPECT_EQ(fixed(-0.005, 2), "-0.01");
  EXPECT_EQ(fixed(2.675, 2), "2.67");  // the binary value lies below 2.675
  EXPECT_EQ(fixed(std::nan(""), 3), "0.000");
  EXPECT_EQ(fixed(1e300, 0), "1000000000000000");
  char buf[kNumberBuffer];
  EXPECT_EQ(std::string(buf, format_int(buf, -9223372036854775807LL - 1)),
            "-9223372036854775808");
  char* end = format_fixed(buf, 1.5, 7);
  EXPECT_EQ(std::string(buf, pad_left(buf, end, 10)), " 1.5000000");
}

}  // namespace
}  // namespace zorvel

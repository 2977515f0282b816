// The library core where the end-to-end programs do not reach: keyword matching, the
// bounds of the value checks, the rarer warning forms, page formats, metafl's keys and
// the summary's cut file names. Each test works on a block of its own, with messages
// captured in memory.

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <string_view>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/summary.h"
#include "drivers/registry.h"
#include "tests/unit/captured.h"

namespace zorvel {
namespace {

TEST(Keywords, MatchesOnFourUpperCasedCharacters) {
  // Catches input that is not cut, upper-cased or blank-padded, and a count that is not
  // respected.
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 3, "on"), 2);
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 3, "file_and_more"), 3);
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 2, "FILE"), 0);  // third keyword not searched
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 3, "o"), 0);     // "O   " is no keyword
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 3, ""), 0);
  EXPECT_EQ(keyword_count("OFF +ON  +FILE"), 3);
}

TEST(Checks, RangeAndDate) {
  // Catches an inclusive/exclusive mix-up at the bounds, an open upper bound that is
  // checked, NaN let through, and the leap-year rule of February.
  Captured c;
  EXPECT_TRUE(check_range(c.g, 10, 1, 10));
  EXPECT_FALSE(check_range(c.g, 11, 1, 10));
  EXPECT_TRUE(check_range(c.g, 1000000, 1, 0));  // no upper bound
  EXPECT_FALSE(check_range(c.g, 0, 1, 0));
  EXPECT_FALSE(check_range(c.g, std::nan(""), 0.0, 1.0));
  EXPECT_TRUE(check_date(c.g, 29, 2, 2000));
  EXPECT_FALSE(check_date(c.g, 29, 2, 1900));
  EXPECT_TRUE(check_date(c.g, 29, 2, 2024));
  EXPECT_FALSE(check_date(c.g, 30, 2, 2024));
  EXPECT_FALSE(check_date(c.g, 1, 13, 2024));
  EXPECT_FALSE(check_date(c.g, 1, 1, 999));
  EXPECT_EQ(c.g.msg.warnings, 7);
  EXPECT_NE(c.text().find("Incorrect parameter in test!   ( nan)\n"), std::string::npos);
}

TEST(Warnings, RareForms) {
  // Catches text printed for an unused number, notes (negative numbers) that are counted
  // or silenced with the warnings, suppressed warnings that are not counted, and lines
  // over 132 characters.
  Captured c;
  warn(c.g, 60);
  warn_text(c.g, -1, "Just a note");
  c.g.msg.warnings_on = false;
  warn(c.g, 2, "x");
  warn_text(c.g, -1, "shown");
  EXPECT_EQ(c.text(), " <<<< Warning 60:   in test!\n <<<< Just a note in test!\n"
                      " <<<< shown in test!\n");
  EXPECT_EQ(c.g.msg.warnings, 2);
  Captured longer;
  warn(longer.g, 2, std::string(300, 'x'));
  const std::string line = longer.text();
  EXPECT_EQ(line.size(), 132U);
  EXPECT_EQ(line.back(), '\n');
}

TEST(Warnings, TableNumbersAreUniqueAndHaveTexts) {
  // Catches a number given two messages in core/warnings.def (the first would hide the
  // second) and a number above 100 without a text (it would print a blank).
  struct Entry {
    int number;
    std::string_view text;
  };
  constexpr Entry kTable[] = {
#define ZORVEL_MESSAGE(n, text) {n, text},
#include "core/warnings.def"
#undef ZORVEL_MESSAGE
  };
  std::set<int> seen;
  for (const Entry& e : kTable) {
    EXPECT_TRUE(seen.insert(e.number).second) << "number " << e.number << " twice";
    EXPECT_TRUE(e.number <= 100 || e.text.find_first_not_of(' ') != std::string_view::npos)
        << "number " << e.number << " without a text";
  }
}

TEST(Page, FormatsUnitsAndOrigin) {
  // Catches portrait forms not swapped, unknown names accepted, the wrong unit factor in
  // page(), setpag choosing the metafile over a device chosen with metafl, and refused
  // factors that are stored. (pagorg BOTT: Pipeline.OriginOffsetAndPageDirection.)
  Captured c;
  api::setpag(c.g, "da4p");
  EXPECT_EQ(c.g.page.width, 2099.0);
  EXPECT_EQ(c.g.page.height, 2969.0);
  api::setpag(c.g, "DA5L");
  EXPECT_EQ(c.g.page.format.view(), "DA4P");
  api::setpag(c.g, "HP2L");
  EXPECT_EQ(c.g.page.width, 5339.0);
  api::units(c.g, "INCH");
  api::page(c.g, 1100, 850);
  EXPECT_DOUBLE_EQ(c.g.page.width, 1099 * 2.5399999618530273);
  EXPECT_EQ(c.g.page.format.view(), "PAGE");
  api::page(c.g, 0, 100);
  EXPECT_DOUBLE_EQ(c.g.page.width, 1099 * 2.5399999618530273);

  Captured d;
  api::metafl(d.g, "PS");
  const int ps = d.g.core.device;
  api::setpag(d.g, "USAL");
  EXPECT_EQ(d.g.core.device, ps);
  api::sclfac(d.g, 0.0);
  api::hwscal(d.g, -1.0);
  EXPECT_EQ(d.g.page.scale_factor, 1.0);
  EXPECT_EQ(d.g.page.hw_scale, 1.0);
}

TEST(Metafl, KeysAreCutPaddedAndChecked) {
  // Catches keys compared without cutting or padding, a failed call that changes the
  // device, and the metafile numbers not falling back to the console.
  Captured c;
  const int cons = find_device("CONS")->code;
  api::metafl(c.g, "pdf");
  EXPECT_EQ(c.g.core.device_key.view(), "PDF ");
  api::metafl(c.g, "MET5");
  EXPECT_EQ(c.g.core.device, cons);
  api::metafl(c.g, "XWI8");
  api::metafl(c.g, "nonsense");
  EXPECT_EQ(c.g.core.device, find_device("XWI8")->code);
  api::metafl(c.g, "gl");
  EXPECT_EQ(c.g.core.device, find_device("GL  ")->code);
  EXPECT_EQ(c.text(), " <<<< Warning 2: Incorrect parameter in test!   (nonsense)\n");
}

TEST(Summary, FileNamesAreCutToTheFrame) {
  // Catches file names that push the frame out of line: both are cut to 48 characters.
  GlobalBlock g;
  g.core.device_key = "PS  ";
  g.core.has_plot_file = true;
  g.core.plot_file = std::string(60, 'f');
  g.msg.file_open = true;
  g.msg.file_name = std::string(60, 'e');
  const std::string s = summary_text(g, DateTime{"01.02.2026", "03:04:05"});
  EXPECT_NE(s.find("\n <<  Metafile: " + std::string(48, 'f') + "  <<\n"), std::string::npos);
  EXPECT_NE(s.find("\n <<  Err-file: " + std::string(48, 'e') + "  <<\n"), std::string::npos);
  g.msg.file_open = false;  // not really open: nothing to close
}

}  // namespace
}  // namespace zorvel

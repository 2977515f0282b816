// Unit tests of the library core: keyword matching, value checks, warning lines, page
// formats and the end-of-plot summary. Each test works on a block of its own, with
// messages captured in memory.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "api_decl.h"
#include "core/global_block.h"
#include "tests/unit/captured.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/summary.h"

namespace zorvel {
namespace {



TEST(Keywords, MatchesOnFourUpperCasedCharacters) {
  // Catches input that is not cut, upper-cased or blank-padded, and a count that is not
  // respected.
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 3, "on"), 2);
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 3, "file_and_more"), 3);
  EXPECT_EQ(find_keyword("POST+PSCL", 2, "postscript"), 1);
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 2, "FILE"), 0);  // third keyword not searched
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 3, "o"), 0);     // "O   " is no keyword
  EXPECT_EQ(find_keyword("OFF +ON  +FILE", 3, ""), 0);
  EXPECT_EQ(keyword_count("OFF +ON  +FILE"), 3);
}

TEST(Keywords, MismatchWarnsWithTheInputAsGiven) {
  // Catches a warning that prints the upper-cased or cut key instead of the input.
  Captured c;
  EXPECT_EQ(match_keyword(c.g, "OFF +ON  ", "maybe"), 0);
  EXPECT_EQ(c.text(), " <<<< Warning 2: Incorrect parameter in test!   (maybe)\n");
  EXPECT_EQ(c.g.msg.warnings, 1);
}

TEST(Checks, RangeAndDate) {
  // Catches an inclusive/exclusive mix-up at the bounds, an open upper bound that is
  // checked, and the leap-year rule of February.
  Captured c;
  EXPECT_TRUE(check_range(c.g, 5, 1, 10));
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
  EXPECT_EQ(c.text(),
            " <<<< Warning 2: Incorrect parameter in test!   ( 11)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 0)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( nan)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 29)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 30)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 13)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 999)\n");
}

TEST(Warnings, EveryForm) {
  // Catches a wrong line format for each kind of warning, text of unused numbers, texts
  // above 100, counting of suppressed warnings and the 132-character limit.
  Captured c;
  warn(c.g, 36);
  warn(c.g, 60);
  warn(c.g, 169);
  warn_text(c.g, 174, "Syntax error in UTF string");
  warn_text(c.g, -1, "Just a note");
  warn(c.g, 2, 0.5);
  EXPECT_EQ(c.text(),
            " <<<< Warning 36: File error in test!\n"
            " <<<< Warning 60:   in test!\n"
            " <<<< Warning 169: Plotfile does exist in test!\n"
            " <<<< Warning 174: Syntax error in UTF string in test!\n"
            " <<<< Just a note in test!\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 0.5)\n");
  EXPECT_EQ(c.g.msg.warnings, 5);  // the text with a negative number is not counted

  Captured off;
  off.g.msg.warnings_on = false;
  warn(off.g, 2, "x");
  warn_text(off.g, -1, "a note is not a warning");
  EXPECT_EQ(off.text(), " <<<< a note is not a warning in test!\n");
  EXPECT_EQ(off.g.msg.warnings, 1);

  Captured longer;
  warn(longer.g, 2, std::string(300, 'x'));
  const std::string line = longer.text();
  EXPECT_EQ(line.size(), 132u);
  EXPECT_EQ(line.back(), '\n');
}

TEST(Page, FormatsUnitsAndOrigin) {
  // Catches portrait forms not swapped, unknown names accepted, the wrong unit factor in
  // page(), and the coupling of setpag to the metafile.
  Captured c;
  api::setpag(c.g, "da4p");
  EXPECT_EQ(c.g.page.width, 2099.0);
  EXPECT_EQ(c.g.page.height, 2969.0);
  EXPECT_EQ(c.g.page.format.view(), "DA4P");
  EXPECT_EQ(c.g.core.device, 201);
  api::setpag(c.g, "DA5L");
  EXPECT_EQ(c.g.page.format.view(), "DA4P");
  api::setpag(c.g, "HP2L");
  EXPECT_EQ(c.g.page.width, 5339.0);
  EXPECT_EQ(c.g.page.height, 3359.0);

  api::units(c.g, "INCH");
  api::page(c.g, 1100, 850);
  EXPECT_DOUBLE_EQ(c.g.page.width, 1099 * 2.5399999618530273);
  EXPECT_DOUBLE_EQ(c.g.page.height, 849 * 2.5399999618530273);
  EXPECT_EQ(c.g.page.format.view(), "PAGE");
  api::page(c.g, 0, 100);
  EXPECT_DOUBLE_EQ(c.g.page.width, 1099 * 2.5399999618530273);

  Captured d;
  d.g.core.metafl_called = true;
  d.g.core.device = 504;
  api::setpag(d.g, "USAL");
  EXPECT_EQ(d.g.core.device, 504);  // a chosen device stays

  api::origin(d.g, 100, 200);
  api::pagorg(d.g, "BOTT");
  EXPECT_EQ(d.g.page.origin_y, -200);
  EXPECT_EQ(page_y(d.g, 100), 2159 - 100);
  api::sclfac(d.g, 0.0);
  api::hwscal(d.g, -1.0);
  EXPECT_EQ(d.g.page.scale_factor, 1.0);
  EXPECT_EQ(d.g.page.hw_scale, 1.0);
  EXPECT_EQ(c.text(),
            " <<<< Warning 2: Incorrect parameter in test!   (DA5L)\n"
            " <<<< Warning 2: Incorrect parameter in test!   ( 0)\n");
}

TEST(Metafl, KeysAndCodes) {
  // Catches keys compared without cutting or padding, CONS not stored as 80, and a
  // failed call that changes the device.
  Captured c;
  api::metafl(c.g, "pdf");
  EXPECT_EQ(c.g.core.device, 511);
  EXPECT_EQ(c.g.core.device_key.view(), "PDF ");
  api::metafl(c.g, "postscript");
  EXPECT_EQ(c.g.core.device, 501);
  api::metafl(c.g, "cons");
  EXPECT_EQ(c.g.core.device, 80);
  api::metafl(c.g, "MET5");
  EXPECT_EQ(c.g.core.device, 80);
  api::metafl(c.g, "XWI8");
  EXPECT_EQ(c.g.core.device, 79);
  api::metafl(c.g, "nonsense");
  EXPECT_EQ(c.g.core.device, 79);
  api::metafl(c.g, "gl");
  EXPECT_EQ(c.g.core.device, 80);
  EXPECT_EQ(c.text(),
            " <<<< Warning 2: Incorrect parameter in test!   (nonsense)\n"
            " <<<< Warning 181: OPENGL is not supported in test!\n");
}

TEST(Summary, LinesAndWidths) {
  // Catches a line of the wrong width, a missing NaN line, file names not cut to 48
  // characters, and the metafile line shown where it must be left out.
  GlobalBlock g;
  g.core.device_key = "PS  ";
  g.core.vectors = 1234;
  g.core.nans = 3;
  g.core.has_plot_file = true;
  g.core.plot_file = std::string(60, 'f');
  g.msg.warnings = 2;
  const DateTime t{"01.02.2026", "03:04:05"};
  const std::string s = summary_text(g, t);
  EXPECT_EQ(s,
            "\n <<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<"
            "\n <<                END OF ZORVEL / VERSION 10.6                  <<"
            "\n <<  Date    : 01.02.2026  Time    : 03:04:05  Pageformat: DA4L  <<"
            "\n <<  Vectors : 1234        Warnings: 2         Fileformat: PS    <<"
            "\n <<  NaN     : 3                                                 <<"
            "\n <<  Metafile: " + std::string(48, 'f') + "  <<"
            "\n <<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<\n\n");
  g.core.has_plot_file = false;
  g.msg.file_open = true;
  g.msg.file_name = "zorvel.err";
  const std::string e = summary_text(g, t);
  EXPECT_EQ(e.find("Metafile"), std::string::npos);
  EXPECT_NE(e.find("\n <<  Err-file: zorvel.err                                        <<"),
            std::string::npos);
  g.msg.file_open = false;  // not really open: nothing to close
}

}  // namespace
}  // namespace zorvel

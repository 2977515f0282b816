// Unit tests of the BDF reader: a crafted font read exactly (codes, boxes, pixels, runs,
// the font's metrics), the same font with CR LF line ends and cut at every byte, damaged
// files that lose a glyph or are refused, and a real font made from the X fonts.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "fonts/bdf.h"

namespace zorvel {
namespace {

std::span<const std::uint8_t> bytes(const std::string& s) {
  return {reinterpret_cast<const std::uint8_t*>(s.data()), s.size()};
}

// The pixels of glyph g as rows of '#' and '.', joined by '/'.
std::string picture(const BdfFont& font, const BdfGlyph& g) {
  std::string out;
  for (int y = 0; y < g.height; ++y) {
    out += y > 0 ? "/" : "";
    for (int x = 0; x < g.width; ++x) {
      out += font.pixel(g, x, y) ? '#' : '.';
    }
  }
  return out;
}

// The runs of glyph g as "x,y,n " each.
std::string runs(const BdfFont& font, const BdfGlyph& g) {
  std::string out;
  for_each_run(font, g, [&](int x, int y, int n) {
    out += std::to_string(x) + "," + std::to_string(y) + "," + std::to_string(n) + " ";
  });
  return out;
}

// Glyphs out of order, a ring with a hole, a glyph two bytes wide whose padding bits are
// set, a blank without pixels, an unencoded glyph with its code, and a repeated code.
const std::string kFont = R"(STARTFONT 2.1
COMMENT made for the tests
FONT -Zorvel-Test-Medium-R-Normal--8-80-75-75-C-60-ISO10646-1
SIZE 8 75 75
FONTBOUNDINGBOX 10 9 0 -2
STARTPROPERTIES 5
FONT_ASCENT 7
FONT_DESCENT 2
DEFAULT_CHAR 32
CHARSET_REGISTRY "ISO10646"
CHARSET_ENCODING "1"
ENDPROPERTIES
CHARS 7
STARTCHAR O
ENCODING 79
SWIDTH 750 0
DWIDTH 6 0
BBX 5 6 0 0
BITMAP
70
88
88
88
88
70
ENDCHAR
STARTCHAR H
ENCODING 72
DWIDTH 6 0
BBX 5 9 0 -2
BITMAP
00
88
88
F8
88
88
88
00
00
ENDCHAR
STARTCHAR arrow
ENCODING 8594
DWIDTH 11 0
BBX 10 3 0 1
BITMAP
8040
FFFF
8040
ENDCHAR
STARTCHAR space
ENCODING 32
DWIDTH 4 0
BBX 0 0 0 0
BITMAP
ENDCHAR
STARTCHAR g
ENCODING -1 103
DWIDTH 5 0
BBX 4 4 0 -2
BITMAP
70
90
70
E0
ENDCHAR
STARTCHAR O.again
ENCODING 79
DWIDTH 6 0
BBX 1 1 0 0
BITMAP
80
ENDCHAR
ENDFONT
)";

TEST(Bdf, ReadsACraftedFontExactly) {
  // Would catch: wrong sort or duplicate rule, rows decoded with the wrong stride or their
  // padding bits read as pixels, metrics or properties misread.
  BdfFont font;
  int dropped = -1;
  ASSERT_EQ(parse_bdf(bytes(kFont), font, &dropped), BdfStatus::Ok);
  EXPECT_EQ(dropped, 1);  // the second "O"
  EXPECT_EQ(font.name, "-Zorvel-Test-Medium-R-Normal--8-80-75-75-C-60-ISO10646-1");
  EXPECT_EQ(font.registry, "ISO10646-1");
  EXPECT_EQ(font.ascent, 7);
  EXPECT_EQ(font.descent, 2);
  EXPECT_EQ(font.cap_height, 6);  // no CAP_HEIGHT: the ink of "H", not its box
  EXPECT_EQ(font.default_char, 32);

  std::vector<std::uint32_t> codes;
  for (const BdfGlyph& g : font.glyphs) {
    codes.push_back(g.code);
  }
  EXPECT_EQ(codes, (std::vector<std::uint32_t>{32, 72, 79, 103, 8594}));
  EXPECT_EQ(font.find(80), nullptr);
  EXPECT_EQ(font.find(0), nullptr);

  const BdfGlyph* o = font.find('O');
  ASSERT_NE(o, nullptr);
  EXPECT_EQ(o->advance, 6);
  EXPECT_EQ(o->width, 5);
  EXPECT_EQ(o->height, 6);
  EXPECT_EQ(picture(font, *o), ".###./#...#/#...#/#...#/#...#/.###.");
  EXPECT_EQ(runs(font, *o), "1,0,3 0,1,1 4,1,1 0,2,1 4,2,1 0,3,1 4,3,1 0,4,1 4,4,1 1,5,3 ");

  const BdfGlyph* arrow = font.find(8594);
  ASSERT_NE(arrow, nullptr);
  EXPECT_EQ(arrow->advance, 11);
  EXPECT_EQ(arrow->yoff, 1);
  EXPECT_EQ(picture(font, *arrow), "#........#/##########/#........#");
  EXPECT_EQ(font.bits[arrow->bits + 3], 0xC0);  // "FFFF": the padding bits are cleared
  EXPECT_EQ(runs(font, *arrow), "0,0,1 9,0,1 0,1,10 0,2,1 9,2,1 ");

  const BdfGlyph* g = font.find('g');
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(g->yoff, -2);
  EXPECT_EQ(picture(font, *g), ".###/#..#/.###/###.");
  const BdfGlyph* space = font.find(' ');
  ASSERT_NE(space, nullptr);
  EXPECT_EQ(space->advance, 4);
  EXPECT_EQ(space->width, 0);
  EXPECT_EQ(space->height, 0);

  // CR LF line ends read the same.
  std::string crlf;
  for (const char c : kFont) {
    crlf += c == '\n' ? "\r\n" : std::string(1, c);
  }
  BdfFont again;
  ASSERT_EQ(parse_bdf(bytes(crlf), again, nullptr), BdfStatus::Ok);
  EXPECT_EQ(again.bits, font.bits);
  ASSERT_EQ(again.glyphs.size(), font.glyphs.size());
  for (std::size_t i = 0; i < font.glyphs.size(); ++i) {
    EXPECT_EQ(picture(again, again.glyphs[i]), picture(font, font.glyphs[i]));
  }
}

TEST(Bdf, EveryPrefixIsReadOrRefused) {
  // Would catch: reading past the end of a cut file, or keeping a glyph the cut made
  // incomplete (a row cut short would be padded into a different bitmap).
  BdfFont full;
  ASSERT_EQ(parse_bdf(bytes(kFont), full, nullptr), BdfStatus::Ok);
  for (std::size_t n = 0; n <= kFont.size(); ++n) {
    // A copy of exactly n bytes, so that reading beyond them is an error under ASan.
    const std::vector<std::uint8_t> cut(kFont.begin(),
                                        kFont.begin() + static_cast<std::ptrdiff_t>(n));
    BdfFont font;
    const BdfStatus status = parse_bdf(cut, font, nullptr);
    if (status != BdfStatus::Ok) {
      EXPECT_TRUE(font.glyphs.empty()) << n;
      continue;
    }
    for (const BdfGlyph& g : font.glyphs) {
      const BdfGlyph* whole = full.find(g.code);
      ASSERT_NE(whole, nullptr) << n;
      EXPECT_EQ(picture(font, g), picture(full, *whole)) << n;
      EXPECT_EQ(g.advance, whole->advance) << n;
    }
  }
}

// A font of one header and the glyph records given.
std::string font_of(const std::string& glyphs, const std::string& chars = "CHARS 1\n") {
  return "STARTFONT 2.1\nFONT x\nFONTBOUNDINGBOX 8 8 0 0\n" + chars + glyphs + "ENDFONT\n";
}

std::string glyph(const std::string& code, const std::string& bbx, const std::string& rows,
                  const std::string& end = "ENDCHAR\n") {
  return "STARTCHAR c\nENCODING " + code + "\nDWIDTH 8 0\nBBX " + bbx + "\nBITMAP\n" + rows + end;
}

TEST(Bdf, DamagedFiles) {
  // Would catch: a crash, an endless loop or an allocation by a claimed size on hostile
  // input; a damaged glyph taking the font with it; a file that is not BDF accepted.
  const std::string a = glyph("65", "4 2 0 0", "F0\n90\n");
  BdfFont font;
  int dropped = -1;
  // A damaged glyph before a good one: it alone is lost.
  const std::pair<const char*, std::string> lost[] = {
      {"no ENDCHAR", glyph("66", "4 2 0 0", "F0\n", "")},
      {"too few rows", glyph("66", "4 3 0 0", "F0\nF0\n")},
      {"not hex", glyph("66", "4 2 0 0", "F0\nG0\n")},
      {"hex with a blank in it", glyph("66", "16 1 0 0", "F0 F0\n")},
      {"unencoded without a code", glyph("-1", "4 1 0 0", "F0\n")},
      {"negative code", glyph("-7", "4 1 0 0", "F0\n")},
      {"code beyond int", glyph("4294967296", "4 1 0 0", "F0\n")},
      {"BBX beyond the limit", glyph("66", "1025 1 0 0", "FF\n")},
      {"BBX beyond int", glyph("66", "99999999999 1 0 0", "FF\n")},
      {"BBX negative", glyph("66", "4 -2 0 0", "F0\n")},
      {"BBX short", glyph("66", "4 2 0", "F0\nF0\n")},
      {"huge BBX with one row", glyph("66", "1024 1024 0 0", "FF\n")},
  };
  for (const auto& [what, bad] : lost) {
    SCOPED_TRACE(what);
    ASSERT_EQ(parse_bdf(bytes(font_of(bad + a)), font, &dropped), BdfStatus::Ok);
    ASSERT_EQ(font.glyphs.size(), 1U);
    EXPECT_EQ(picture(font, font.glyphs[0]), "####/#..#");
    EXPECT_EQ(dropped, 1);
  }

  struct Case {
    const char* what;
    std::string file;
    BdfStatus status;
    std::string picture;  // of the one glyph kept
  };
  const Case cases[] = {
      {"empty", "", BdfStatus::NotBdf, ""},
      {"garbage", std::string("\x00\xff\x13STARTFONT\n", 13), BdfStatus::NotBdf, ""},
      {"header only", "STARTFONT 2.1\r\nFONT x\r\nCHARS 0\r\nENDFONT\r\n", BdfStatus::Damaged, ""},
      {"no ENDCHAR at the end", "STARTFONT 2.1\n" + glyph("65", "4 1 0 0", "F0\n", ""),
       BdfStatus::Damaged, ""},
      {"lone CR line ends",
       "STARTFONT 2.1\rSTARTCHAR c\rENCODING 9\rDWIDTH 8 0\rBBX 2 1 0 0\r"
       "BITMAP\rC0\rENDCHAR\r",
       BdfStatus::Ok, "##"},
      {"no ENDCHAR before ENDFONT, glyphs after it",
       font_of(a + glyph("66", "4 2 0 0", "F0\nF0\n", "")) + glyph("67", "1 1 0 0", "80\n"),
       BdfStatus::Ok, "####/#..#"},
      {"rows short, odd and long", font_of(glyph("65", "12 3 0 0", "F\nFFF\nF0F0F0F0\n")),
       BdfStatus::Ok, "####......../############/####....####"},
      {"rows beyond the height", font_of(glyph("65", "4 1 0 0", "90\nF0\n")), BdfStatus::Ok,
       "#..#"},
      {"CHARS huge", font_of(a, "CHARS 2147483647\n"), BdfStatus::Ok, "####/#..#"},
      {"CHARS beyond int", font_of(a, "CHARS 99999999999999999999\n"), BdfStatus::Ok, "####/#..#"},
      {"no ENDPROPERTIES", "STARTFONT 2.1\nSTARTPROPERTIES 1\nFONT_ASCENT 5\nCHARS 1\n" + a,
       BdfStatus::Ok, "####/#..#"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(parse_bdf(bytes(c.file), font, &dropped), c.status);
    if (c.status == BdfStatus::Ok) {
      ASSERT_EQ(font.glyphs.size(), 1U);
      EXPECT_EQ(picture(font, font.glyphs[0]), c.picture);
    } else {
      EXPECT_TRUE(font.glyphs.empty());
    }
    // A claimed count reserves no more than the file holds.
    EXPECT_LE(font.glyphs.capacity(), c.file.size() / 8 + 1);
  }

  // Beyond the limits the font is refused: more glyphs than kBdfMaxGlyphs, and more
  // bitmap bytes than kBdfMaxBytes (rows of one digit padded to 128 bytes each).
  std::string many = "STARTFONT 2.1\n";
  for (int i = 0; i <= kBdfMaxGlyphs; ++i) {
    many += "STARTCHAR\nENCODING " + std::to_string(i) + "\nDWIDTH 1 0\nBBX 0 0 0 0\nENDCHAR\n";
  }
  EXPECT_EQ(parse_bdf(bytes(many), font, nullptr), BdfStatus::Damaged);
  std::string big = "STARTFONT 2.1\n";
  for (std::size_t i = 0; i <= kBdfMaxBytes / (1024 * 128); ++i) {
    big += "STARTCHAR\nENCODING " + std::to_string(i) + "\nDWIDTH 1 0\nBBX 1024 1024 0 0\nBITMAP\n";
    for (int y = 0; y < 1024; ++y) {
      big += "0\n";
    }
    big += "ENDCHAR\n";
  }
  EXPECT_EQ(parse_bdf(bytes(big), font, nullptr), BdfStatus::Damaged);
  EXPECT_TRUE(font.glyphs.empty());
}

TEST(Bdf, ReadsARealFont) {
  // Would catch: what real files hold and the crafted ones do not (many properties, every
  // glyph boxed by the whole cell, thousands of glyphs).
  std::string data;
  for (const std::string& path :
       {std::string(ZORVEL_TEST_BDF_DIR) + "/9x15.bdf", std::string("/tmp/9x15.bdf")}) {
    if (std::FILE* f = std::fopen(path.c_str(), "rb")) {
      char buf[65536];
      std::size_t n = 0;
      while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) {
        data.append(buf, n);
      }
      std::fclose(f);
      break;
    }
  }
  if (data.empty()) {
    GTEST_SKIP() << "9x15.bdf not made (pcf2bdf or xfonts-base missing)";
  }
  BdfFont font;
  int dropped = -1;
  ASSERT_EQ(parse_bdf(bytes(data), font, &dropped), BdfStatus::Ok);
  EXPECT_EQ(dropped, 0);
  EXPECT_GT(font.glyphs.size(), 1000U);
  EXPECT_EQ(font.registry, "ISO10646-1");
  EXPECT_EQ(font.ascent + font.descent, 15);
  EXPECT_GT(font.cap_height, 5);
  EXPECT_LT(font.cap_height, font.ascent);
  const BdfGlyph* a = font.find('A');
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(a->advance, 9);
  ASSERT_NE(font.find(0x416), nullptr);  // Cyrillic Zhe

  // Without CAP_HEIGHT, the ink of "H" says the same.
  const std::size_t at = data.find("\nCAP_HEIGHT ");
  ASSERT_NE(at, std::string::npos);
  data[at + 1] = 'X';
  BdfFont no_cap;
  ASSERT_EQ(parse_bdf(bytes(data), no_cap, nullptr), BdfStatus::Ok);
  EXPECT_EQ(no_cap.cap_height, font.cap_height);
}

}  // namespace
}  // namespace zorvel

// The SVG driver on its own, where the golden scenes (tests/golden/svg_*.c) do not show
// the structure well: line against polyline, groups split by attribute changes, the end
// of the file, characters XML cannot hold, pages in files of their own and embedded
// images. (Write errors: tests/e2e/disk_full.c, on every device.)

#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>

#include "drivers/registry.h"

namespace zorvel {
namespace {

DriverSetup a4(std::string_view file = {}) {
  DriverSetup s;
  s.scale = 96.0 / 254.0;
  s.device_width = 2969 * s.scale;
  s.device_height = 2099 * s.scale;
  s.reversed = true;  // AUTO on SVG: dark on white paper
  s.file_name = file;
  return s;
}

// What `body` draws into memory: the file after the header's blank line.
std::string drawn(const std::function<void(Driver&)>& body) {
  MemorySink memory;
  std::unique_ptr<Driver> d = find_device("SVG ")->factory();
  EXPECT_TRUE(d->open(&memory, a4()));
  body(*d);
  EXPECT_TRUE(d->close());
  return memory.bytes().substr(memory.bytes().find(">\n\n") + 3);
}

TEST(SvgDriver, ElementsGroupsAndCharacters) {
  // Catches two points written as a polyline (or more as lines), a line break missing or
  // extra among the points, "-0.00", a colour change that stays in the old group, a draw
  // that does not continue from the saved end point, a file not ending in "</svg>\n"; and
  // raw control characters or surrogates (not well-formed XML) or characters above 255
  // written as bytes, which the declared ISO-8859-1 would misread.
  const std::string group =
      "\" stroke-linecap=\"square\" stroke-linejoin=\"bevel\" "
      "stroke-width=\"1.000\">\n";
  EXPECT_EQ(
      drawn([](Driver& d) {
        d.point(1, 2, Pen::Move);
        d.point(3.005, -0.004, Pen::Draw);
        d.point(0, 0, Pen::Move);
        for (int i = 1; i <= 6; ++i) {
          d.point(i, i + 0.25 * (i == 6), Pen::Draw);
        }
        d.point(6, 6.25, Pen::End);
        d.colour(Rgb{255, 0, 0}, 2);
        d.point(5, 5, Pen::Draw);
      }),
      "<g fill=\"none\" stroke=\"#000000" + group +
          "<line x1=\"1.00\" y1=\"2.00\" x2=\"3.00\" y2=\"0.00\"/>\n<polyline points=\"\n"
          " 0.00, 0.00 1.00, 1.00 2.00, 2.00 3.00, 3.00 4.00, 4.00\n 5.00, 5.00 6.00, 6.25\"/>\n"
          "</g>\n<g fill=\"none\" stroke=\"#ff0000" +
          group + "<line x1=\"6.00\" y1=\"6.25\" x2=\"5.00\" y2=\"5.00\"/>\n</g>\n</svg>\n");

  const GlyphPlace glyphs[] = {
      {1, 2, 0x1F600, 0}, {3, 2, 7, 0}, {5, 2, 0xD800, 0}, {7, 2, 0xE9, 0}};
  const std::string text = drawn([&](Driver& d) {
    d.text(TextRun{{}, glyphs, "Times-Roman", nullptr, 0, 20});
  });
  EXPECT_NE(text.find("rotate=\"0\">&#128512;</text>\n<text x=\"7.00\" y=\"2.00\" rotate=\"0\">"
                      "\xE9</text>\n</g>\n</svg>\n"),
            std::string::npos)
      << text;
}

TEST(SvgDriver, NewPagesGoToVersionedFiles) {
  // Catches a second page appended to the first file (two documents in one, which every
  // XML reader rejects), a page lost, and a page file left unfinished.
  char dir[] = "/tmp/zorvel_svg_XXXXXX";
  ASSERT_NE(mkdtemp(dir), nullptr);
  const std::string name = std::string(dir) + "/plot.svg";
  std::FILE* f = std::fopen(name.c_str(), "w");
  FileSink sink(f);
  std::unique_ptr<Driver> d = find_device("SVG ")->factory();
  ASSERT_TRUE(d->open(&sink, a4(name)));
  for (int page = 0; page < 3; ++page) {
    if (page > 0) {
      d->new_page();
    }
    d->point(0, 0, Pen::Move);
    d->point(10 + page, 0, Pen::Draw);
  }
  EXPECT_TRUE(d->close());
  std::fclose(f);
  for (const std::string page : {"0/plot.svg", "1/plot_1.svg", "2/plot_2.svg"}) {
    const std::string path = dir + page.substr(1);
    std::ifstream in(path);
    const std::string s{std::istreambuf_iterator<char>(in), {}};
    EXPECT_EQ(s.rfind("<?xml", 0), 0U) << path;
    EXPECT_NE(s.find("x2=\"1" + page.substr(0, 1) + ".00\""), std::string::npos) << path;
    EXPECT_EQ(s.size() - s.find("</svg>"), 7U) << path;
    std::remove(path.c_str());
  }
  rmdir(dir);
}

TEST(SvgDriver, ImageIsAnEmbeddedPng) {
  // Catches a PNG whose header or filtered rows are wrong (viewers show nothing or other
  // pixels) and a placement that ignores the device rectangle.
  const std::uint8_t px[] = {255, 0, 0, 255, 0, 255, 0, 128, 0, 0, 255, 0, 9, 9, 9, 255};
  const std::string s = drawn([&](Driver& d) { d.image(Image{px, 2, 2, 4, 8, 10, 20, 30, 60}); });
  EXPECT_NE(s.find("matrix(10.000000 0 0 20.000000 10.00 20.00)"), std::string::npos) << s;
  std::string png;
  const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  unsigned bits = 0;
  int n = 0;
  for (std::size_t i = s.find("base64,") + 7; s[i] != '"' && s[i] != '='; ++i) {
    if (const std::size_t v = digits.find(s[i]); v != std::string::npos) {
      bits = bits << 6 | static_cast<unsigned>(v);
      if ((n += 6) >= 8) {
        png += static_cast<char>(bits >> (n -= 8) & 0xffU);
      }
    }
  }
  ASSERT_GT(png.size(), 41U);
  EXPECT_EQ(png.substr(0, 41),
            std::string("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\0\x02\0\0\0\x02\x08\x06"
                        "\0\0\0",
                        29) +
                png.substr(29, 8) + "IDAT");
  std::uint8_t raw[18];  // the rows, inflated: each a filter type and 8 bytes
  uLongf size = sizeof raw;
  ASSERT_EQ(
      uncompress(raw, &size, reinterpret_cast<const Bytef*>(png.data()) + 41, png.size() - 41),
      Z_OK);  // inflate stops at the end of the stream, before the CRC and IEND
  std::uint8_t rows[16];
  for (int k = 0; k < 16; ++k) {
    const int a = k % 8 >= 4 ? rows[k - 4] : 0;
    const int b = k >= 8 ? rows[k - 8] : 0;
    const int c = k >= 8 && k % 8 >= 4 ? rows[k - 12] : 0;
    const int pa = std::abs(b - c), pb = std::abs(a - c), pc = std::abs(a + b - 2 * c);
    const int predicted[] = {0, a, b, (a + b) / 2, pa <= pb && pa <= pc ? a : pb <= pc ? b : c};
    rows[k] = static_cast<std::uint8_t>(raw[k / 8 * 9 + 1 + k % 8] + predicted[raw[k / 8 * 9] % 5]);
  }
  EXPECT_EQ(std::string(rows, rows + 16), std::string(px, px + 16));
}

}  // namespace
}  // namespace zorvel

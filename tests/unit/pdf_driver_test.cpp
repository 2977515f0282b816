// The PDF driver through the Driver interface, where the golden scenes do not reach: the
// cross-reference table of a file with every kind of object (compressed and plain),
// images (no public routine draws one yet), glyph places read back from the content,
// and write errors.

#define ZLIB_CONST
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "drivers/registry.h"
#include "drivers/sink.h"
#include "text/driver_font.h"

namespace zorvel {
namespace {

// An A4 landscape page in points, unturned.
DriverSetup a4(bool compress) {
  DriverSetup s;
  s.page_width = 2969;
  s.page_height = 2099;
  s.scale = 72.0 / 254.0;
  s.device_width = 2969 * s.scale;
  s.device_height = 2099 * s.scale;
  s.reversed = true;
  s.compress = compress;
  s.stamp = DateTime{"14.11.2023", "22:13:20"};
  return s;
}

std::string run(const DriverSetup& setup, const std::function<void(Driver&)>& body) {
  std::unique_ptr<Driver> d = find_device("PDF ")->factory();
  MemorySink sink;
  EXPECT_TRUE(d->open(&sink, setup));
  body(*d);
  EXPECT_FALSE(d->failed());
  EXPECT_TRUE(d->close());
  return sink.bytes();
}

// The data of the stream of object `obj`, inflated when it is deflated.
std::string stream_of(const std::string& pdf, int obj) {
  const std::size_t at = pdf.find("\n" + std::to_string(obj) + " 0 obj\n");
  const std::size_t begin = pdf.find("stream\n", at) + 7;
  const std::size_t end = pdf.find("\nendstream", begin);
  std::string data = pdf.substr(begin, end - begin);
  if (pdf.substr(at, begin - at).find("/FlateDecode") == std::string::npos) {
    return data;
  }
  std::string out(1 << 20, '\0');
  uLongf n = out.size();
  EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(out.data()), &n,
                       reinterpret_cast<const Bytef*>(data.data()), data.size()),
            Z_OK);
  out.resize(n);
  return out;
}

// Two red and blue pixels over two translucent ones.
const std::uint8_t kPixels[2][2][4] = {{{255, 0, 0, 255}, {0, 0, 255, 255}},
                                       {{0, 255, 0, 128}, {9, 8, 7, 0}}};

void everything(Driver& d) {
  d.colour(Rgb{255, 0, 0, 255}, 1);
  d.point(10, 10, Pen::Move);
  d.point(200, 300, Pen::Draw);
  d.point(200, 300, Pen::End);
  const double xs[] = {1, 50, 50, 1, 10, 20, 20};
  const double ys[] = {1, 1, 50, 50, 10, 10, 20};
  const int ends[] = {4, 7};
  d.fill(Path{xs, ys, ends, FillRule::EvenOdd}, Rgb{0, 128, 0, 255});
  const GlyphPlace g[] = {{100, 100, 'A', 'A'}, {110, 100, 0xC4, 127}};
  d.text(TextRun{"A\xC3\x84", g, "Times-Roman", nullptr, 0.0, 12.0, 1.0});
  d.text(TextRun{"a", {g, 1}, "Symbol", nullptr, 0.0, 12.0, 1.0});
  Image img;
  img.pixels = &kPixels[0][0][0];
  img.width = 2;
  img.height = 2;
  img.channels = 4;
  img.stride = sizeof kPixels[0];
  img.x0 = 100;
  img.y0 = 240;
  img.x1 = 130;
  img.y1 = 220;
  d.image(img);
  d.new_page();
  d.point(5, 5, Pen::Move);
  d.point(6, 6, Pen::Draw);
}

TEST(PdfDriver, CrossReferenceOffsetsPointAtTheirObjects) {
  // Catches an offset counted before buffered bytes, a length object or image never
  // written, entries that are not 20 bytes, a wrong /Size or startxref, and pages
  // missing from the page tree.
  for (const bool compress : {true, false}) {
    const std::string pdf = run(a4(compress), everything);
    ASSERT_EQ(pdf.rfind("%%EOF\n"), pdf.size() - 6);
    const std::size_t start = pdf.rfind("startxref\n");
    const std::size_t table = std::stoull(pdf.substr(start + 10));
    ASSERT_EQ(pdf.compare(table, 7, "xref\n0 "), 0);
    std::istringstream head(pdf.substr(table + 7, 12));
    std::size_t count = 0;
    head >> count;
    const std::size_t entries = pdf.find('\n', table + 7) + 1;
    EXPECT_EQ(pdf.compare(entries, 20, "0000000000 65535 f \n"), 0);
    for (std::size_t i = 1; i < count; ++i) {
      const std::string entry = pdf.substr(entries + 20 * i, 20);
      ASSERT_EQ(entry.substr(10), " 00000 n \n") << i;
      const std::size_t at = std::stoull(entry.substr(0, 10));
      EXPECT_EQ(pdf.compare(at, std::to_string(i).size() + 7, std::to_string(i) + " 0 obj\n"), 0)
          << "object " << i << " compress " << compress;
    }
    EXPECT_EQ(pdf.compare(entries + 20 * count, 8, "trailer\n"), 0);
    EXPECT_NE(pdf.find("/Size " + std::to_string(count) + " /Root 1 0 R"), std::string::npos);
    EXPECT_NE(pdf.find("/Type /Pages /Count 2 "), std::string::npos);
  }
}

TEST(PdfDriver, ImagesAsXObjectsWithSoftMasks) {
  // Catches rows written bottom up or with the alpha byte, a missing soft mask, and a
  // placement that flips the image or misses its corners.
  const std::string pdf = run(a4(true), everything);
  const std::size_t im = pdf.find("/Subtype /Image /Width 2 /Height 2 /ColorSpace /DeviceRGB");
  ASSERT_NE(im, std::string::npos);
  const int obj = std::atoi(pdf.c_str() + pdf.rfind('\n', pdf.rfind('\n', im) - 1) + 1);
  const int mask = std::atoi(pdf.c_str() + pdf.find("/SMask ", im) + 7);
  EXPECT_EQ(stream_of(pdf, obj), std::string("\xff\0\0\0\0\xff\0\xff\0\x09\x08\x07", 12));
  EXPECT_EQ(stream_of(pdf, mask), std::string("\xff\xff\x80\0", 4));
  EXPECT_NE(pdf.find("/DeviceGray", pdf.find("\n" + std::to_string(mask) + " 0 obj")),
            std::string::npos);
  EXPECT_NE(pdf.find("/XObject << /Im1 " + std::to_string(obj) + " 0 R >>"), std::string::npos);
  // The second content stream of the first page starts with the placement.
  const std::size_t contents = pdf.find("/Contents [\n");
  const int second = std::atoi(pdf.c_str() + pdf.find(" 0 R ", contents) + 5);
  EXPECT_EQ(stream_of(pdf, second).substr(0, 33), "q 30 0 0 20 100 220 cm /Im1 Do Q ");
}

TEST(PdfDriver, GlyphCentresReadBackFromTheContent) {
  // Catches TJ displacements of the wrong sign or scale, character spacing or horizontal
  // scaling left out of the advance, a rise on the wrong axis, and widths other than
  // those the text engine measures with: the content is interpreted as a viewer does
  // and every character's centre must come out at its place within 0.01 point.
  const double a = 30.0 * 3.14159265358979323846 / 180.0;
  std::vector<GlyphPlace> g;
  const char* text = "Wa(V)i -\x7f";
  double t = 0.0;
  for (int i = 0; text[i] != '\0'; ++i) {
    const int code = static_cast<unsigned char>(text[i]);
    const double w = driver_width(DriverFace::Roman, code) * 20.0 * 1.4 / 1000.0;
    t += 0.5 * w;
    const double rise = i == 5 ? 4.0 : 0.0;  // one character raised
    g.push_back({300 + t * std::cos(a) - rise * std::sin(a),
                 200 + t * std::sin(a) + rise * std::cos(a), static_cast<std::uint32_t>(code),
                 static_cast<std::uint8_t>(code)});
    t += 0.5 * w + (i == 2 ? 9.0 : 3.0);  // an uneven gap after the third
  }
  const std::string pdf = run(a4(false), [&](Driver& d) {
    d.text(TextRun{text, g, "Times-Roman", nullptr, 30.0, 20.0, 1.4});
  });
  // A viewer's text machinery, as far as the driver uses it.
  const std::string c = stream_of(pdf, 4);
  double size = 0, tz = 100, tc = 0, rise = 0, m[6] = {}, pen = 0;
  std::vector<double> nums;
  bool in_array = false;
  std::size_t k = 0;
  for (std::size_t i = 0; i < c.size();) {
    if (c[i] == ' ' || c[i] == '\n' || c[i] == '[' || c[i] == ']') {
      in_array = c[i] == '[' || (in_array && c[i] != ']');
      ++i;
      continue;
    }
    if (c[i] == '(') {
      for (++i; c[i] != ')'; ++i) {
        int code = static_cast<unsigned char>(c[i]);
        if (code == '\\') {
          const bool octal = c[i + 1] >= '0' && c[i + 1] <= '7';
          code = octal ? std::stoi(c.substr(i + 1, 3), nullptr, 8) : c[i + 1];
          i += octal ? 3 : 1;
        }
        const double w = driver_width(DriverFace::Roman, code) * size / 1000.0 * tz / 100.0;
        ASSERT_LT(k, g.size());
        EXPECT_EQ(g[k].code, code) << k;
        EXPECT_NEAR(m[0] * (pen + 0.5 * w) + m[2] * rise + m[4], g[k].x, 0.01) << k;
        EXPECT_NEAR(m[1] * (pen + 0.5 * w) + m[3] * rise + m[5], g[k].y, 0.01) << k;
        pen += w + tc * tz / 100.0;
        ++k;
      }
      ++i;
      continue;
    }
    const std::size_t j = std::min(c.find_first_of(" \n[]()", i), c.size());
    const std::string tok = c.substr(i, j - i);
    i = j;
    if (tok.find_first_of("-.0123456789") == 0) {
      if (in_array) {
        pen -= std::stod(tok) / 1000.0 * size * tz / 100.0;  // a TJ displacement
      } else {
        nums.push_back(std::stod(tok));
      }
      continue;
    }
    if (tok == "Tf" || tok == "Tz" || tok == "Tc" || tok == "Ts") {
      (tok == "Tf" ? size : tok == "Tz" ? tz : tok == "Tc" ? tc : rise) = nums.back();
    } else if (tok == "Tm") {
      std::copy(nums.end() - 6, nums.end(), m);
      pen = 0.0;
    }
    nums.clear();
  }
  EXPECT_EQ(k, g.size());
}

// A sink that takes `room` bytes and then fails, as a full disk does.
class FullSink final : public Sink {
 public:
  explicit FullSink(std::size_t room) : room_(room) {}
  bool write(const char* /*data*/, std::size_t n) override {
    if (n > room_) {
      room_ = 0;
      return false;
    }
    room_ -= n;
    return true;
  }

 private:
  std::size_t room_;
};

TEST(PdfDriver, WriteErrorsAreReportedAndNothingBreaks) {
  // Catches a failed write that goes unnoticed while the plot goes on (its blocks are
  // written long before close) or is forgotten afterwards, and a crash when the output
  // of deflate or an image cannot be written.
  for (const std::size_t room : {std::size_t{0}, std::size_t{100}, std::size_t{200000}}) {
    std::unique_ptr<Driver> d = find_device("PDF ")->factory();
    FullSink sink(room);
    d->open(&sink, a4(true));
    for (int i = 0; i < 2000000 && !d->failed(); ++i) {
      d->point(i % 800, (i * 7919) % 590, i % 50 == 0 ? Pen::Move : Pen::Draw);
    }
    EXPECT_TRUE(d->failed()) << room;
    everything(*d);
    EXPECT_TRUE(d->failed()) << room;
    EXPECT_FALSE(d->close()) << room;
    EXPECT_TRUE(d->failed()) << room;
  }
}

}  // namespace
}  // namespace zorvel

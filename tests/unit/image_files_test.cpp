// The image-file writers where the real readers of tests/consumers/raster.sh cannot look:
// the PNG's colour type, bit depth, filters, chunks and CRCs (through zlib's inflate and
// the filters undone here), the PostScript image's exact header, and every writer's
// failures and limits.

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "drivers/image_files.h"

namespace zorvel {
namespace {

// A page of `colours` colours repeated pixel after pixel or, with colours = 0, of
// thousands. Rows are 5 bytes longer than their pixels: a writer that ignores the stride
// reads the wrong bytes.
struct Page {
  Page(int w, int h, int colours) : width(w), height(h), stride(3 * std::size_t(w) + 5) {
    bytes.assign(stride * std::size_t(h), 0xEE);
    for (int j = 0; j < h; ++j) {
      for (int i = 0; i < w; ++i) {
        const int n = colours > 0 ? (j * w + i) % colours : j * w + i;
        std::uint8_t* p = at(i, j);
        p[0] = std::uint8_t(colours > 0 ? n * 97 : n * 7 + j);  // 97 odd: 256 distinct
        p[1] = std::uint8_t(colours > 0 ? n >> 8 : n * 13);
        p[2] = std::uint8_t(colours > 0 ? 200 : n * 31 + i);
      }
    }
  }
  std::uint8_t* at(int i, int j) { return bytes.data() + std::size_t(j) * stride + 3 * i; }
  PixelView view() const { return {bytes.data(), width, height, stride}; }
  std::string rgb() const {  // the pixels without the row padding
    std::string s;
    for (int j = 0; j < height; ++j) {
      s.append(reinterpret_cast<const char*>(bytes.data()) + std::size_t(j) * stride,
               3 * std::size_t(width));
    }
    return s;
  }
  void scramble() {  // noise: nothing to compress
    std::uint32_t seed = 1;
    for (std::uint8_t& b : bytes) {
      seed = seed * 1664525U + 1013904223U;
      b = std::uint8_t(seed >> 24);
    }
  }

  int width, height;
  std::size_t stride;
  std::vector<std::uint8_t> bytes;
};

std::uint32_t be32(const std::string& s, std::size_t at) {
  std::uint32_t v = 0;
  for (int k = 0; k < 4; ++k) {
    v = v << 8 | static_cast<std::uint8_t>(s[at + std::size_t(k)]);
  }
  return v;
}

// A PNG file read back: its chunks checked (lengths, CRCs, order), the data inflated, the
// filters undone, palette indices looked up.
struct DecodedPng {
  int colour_type = -1, depth = 0, idat_chunks = 0;
  std::vector<int> filters;  // per row
  std::string rgb;
};

DecodedPng decode_png(const std::string& f) {
  DecodedPng d;
  EXPECT_EQ(f.substr(0, 8), "\x89PNG\r\n\x1a\n");
  std::string palette, z, type;
  std::size_t w = 0, h = 0, at = 8;
  for (; at + 12 <= f.size(); at += 12 + be32(f, at)) {
    const std::uint32_t n = be32(f, at);
    type = f.substr(at + 4, 4);
    if (at + 12 + n > f.size()) {
      break;  // a length past the end: the check below fails
    }
    EXPECT_EQ(be32(f, at + 8 + n), crc32(0, reinterpret_cast<const Bytef*>(&f[at + 4]), n + 4));
    const std::string data = f.substr(at + 8, n);
    if (type == "IHDR") {
      w = be32(data, 0);
      h = be32(data, 4);
      d.depth = data[8];
      d.colour_type = data[9];
    } else if (type == "PLTE") {
      palette = data;
    } else if (type == "IDAT") {
      EXPECT_LE(n, 65536U);
      z += data;
      ++d.idat_chunks;
    }
  }
  EXPECT_EQ(at, f.size());
  EXPECT_EQ(type, "IEND");
  const std::size_t bpp = d.colour_type == 2 ? 3 : 1;
  const std::size_t row = (w * bpp * std::size_t(d.depth) + 7) / 8;
  std::vector<std::uint8_t> raw((row + 1) * h), prev(row, 0), cur(row);
  uLongf size = raw.size();
  EXPECT_EQ(uncompress(raw.data(), &size, reinterpret_cast<const Bytef*>(z.data()), z.size()),
            Z_OK);
  EXPECT_EQ(size, raw.size());
  for (std::size_t j = 0; j < h; ++j) {
    const std::uint8_t* in = &raw[j * (row + 1)];
    d.filters.push_back(in[0]);
    for (std::size_t k = 0; k < row; ++k) {
      const int a = k >= bpp ? cur[k - bpp] : 0, b = prev[k], c = k >= bpp ? prev[k - bpp] : 0;
      const int pa = std::abs(b - c), pb = std::abs(a - c), pc = std::abs(a + b - 2 * c);
      const int predicted[] = {0, a, b, (a + b) / 2, pa <= pb && pa <= pc ? a : pb <= pc ? b : c};
      cur[k] = std::uint8_t(in[1 + k] + predicted[in[0] % 5]);
    }
    for (std::size_t i = 0; i < w; ++i) {
      if (d.colour_type == 2) {
        d.rgb.append(reinterpret_cast<const char*>(&cur[3 * i]), 3);
      } else {
        const std::size_t bit = i * std::size_t(d.depth);
        const int index = cur[bit / 8] >> (8 - d.depth - int(bit % 8)) & ((1 << d.depth) - 1);
        d.rgb += palette.substr(3 * std::size_t(index), 3);
      }
    }
    prev = cur;
  }
  return d;
}

TEST(ImageFiles, PngPaletteOrRgbByColourCount) {
  // Catches a wrong colour count (the 257th colour missed, runs or repeated rows counted
  // twice), a bit depth that cannot index the palette, indices packed in the wrong order
  // or across a row's end (widths not a multiple of 8), filtered palette rows, chunks over
  // 64 KiB or with a wrong length or CRC, and filters applied wrongly.
  struct Case {
    int colours, width, height, type, depth;
  };
  for (const Case c : {Case{2, 13, 5, 3, 1}, Case{3, 11, 4, 3, 2}, Case{16, 17, 9, 3, 4},
                       Case{256, 31, 17, 3, 8}, Case{257, 31, 17, 2, 8}}) {
    SCOPED_TRACE(c.colours);
    const Page page(c.width, c.height, c.colours);
    MemorySink out;
    ASSERT_TRUE(write_png(out, page.view()));
    const DecodedPng d = decode_png(out.bytes());
    EXPECT_EQ(d.colour_type, c.type);
    EXPECT_EQ(d.depth, c.depth);
    EXPECT_EQ(d.rgb, page.rgb());
    if (c.type == 3) {
      EXPECT_EQ(std::count(d.filters.begin(), d.filters.end(), 0), c.height);
    }
  }
  // Plain rows, then repeated rows of two colours, through encode_png (the SVG images).
  Page plain(40, 30, 1);
  for (int j = 20; j < 25; ++j) {
    std::fill(plain.at(7, j), plain.at(9, j), 0);
  }
  const std::vector<std::uint8_t> block =
      encode_png(Image{plain.bytes.data(), 40, 30, 3, plain.stride});
  DecodedPng d = decode_png(std::string(block.begin(), block.end()));
  EXPECT_EQ(d.depth, 1);
  EXPECT_EQ(d.rgb, plain.rgb());
  // Noise in several IDAT chunks, and smooth rows below it for the prediction filters.
  Page rgb(300, 300, 0);
  rgb.scramble();
  for (int j = 200; j < 300; ++j) {
    for (int i = 0; i < 300; ++i) {
      std::uint8_t* p = rgb.at(i, j);
      p[0] = std::uint8_t(i);
      p[1] = std::uint8_t(j + i / 2);
      p[2] = std::uint8_t(i * j / 64);
    }
  }
  MemorySink out;
  ASSERT_TRUE(write_png(out, rgb.view()));
  d = decode_png(out.bytes());
  EXPECT_EQ(d.colour_type, 2);
  EXPECT_GE(d.idat_chunks, 3);
  EXPECT_EQ(d.rgb, rgb.rgb());
  EXPECT_GT(std::count_if(d.filters.begin(), d.filters.end(), [](int f) { return f != 0; }), 50);
}

TEST(ImageFiles, PostScriptImageHeader) {
  // Catches a change of the header lines (the box, the turn of a landscape image, the
  // scale that keeps the aspect ratio, the image matrix that puts the first row on top)
  // and hexadecimal lines not of 80 digits or not ended by the filter's ">".
  const Page landscape(4, 2, 0);
  MemorySink out;
  ASSERT_TRUE(write_ps_image(out, landscape.view(), {}));
  std::string hex;
  for (const char c : landscape.rgb()) {
    hex += {"0123456789ABCDEF"[std::uint8_t(c) >> 4], "0123456789ABCDEF"[c & 15]};
  }
  EXPECT_EQ(out.bytes(),
            "%!PS-Adobe-2.0\n"
            "%%BoundingBox: 21 28 575 823\n"
            "%%Creator: ZORVEL  10.3\n"
            "21.260 28.346 translate\n"
            "/DeviceRGB setcolorspace\n"
            "gsave\n"
            "552.756 0.000 translate\n"
            "90 rotate\n"
            "793.701 396.850 scale\n"
            "<<\n/ImageType 1\n/Width 4\n/Height 2\n/BitsPerComponent 8\n"
            "/Decode [0 1 0 1 0 1]\n/ImageMatrix [4 0 0 -2 0 2]\n"
            "/DataSource currentfile /ASCIIHexDecode filter\n>> image\n" +
                hex + "\n> grestore showpage\n");
  // Portrait at the user's (negative) offset and box; 42 bytes of pixels make a line of
  // 80 digits and one of 4.
  const Page portrait(2, 7, 0);
  out.clear();
  ASSERT_TRUE(write_ps_image(out, portrait.view(), {true, -40, 50, true, 1000, 2000}));
  const std::string& s = out.bytes();
  EXPECT_EQ(s.substr(0, s.find("/ImageType")),
            "%!PS-Adobe-2.0\n"
            "%%BoundingBox: -6 7 137 291\n"
            "%%Creator: ZORVEL  10.3\n"
            "-5.669 7.087 translate\n"
            "/DeviceRGB setcolorspace\n"
            "gsave\n"
            "0.000 0.000 translate\n"
            "80.990 283.465 scale\n"
            "<<\n");
  const std::size_t data = s.find(">> image\n") + 9;
  EXPECT_EQ(s.find('\n', data), data + 80);
  EXPECT_EQ(s.substr(data + 81), s.substr(data + 81, 4) + "\n> grestore showpage\n");
}

// A sink that takes `budget` bytes and fails every write after them.
struct FailingSink final : Sink {
  explicit FailingSink(std::size_t budget) : budget(budget) {}
  bool write(const char*, std::size_t n) override {
    const bool ok = n <= budget;
    budget = ok ? budget - n : 0;
    return ok;
  }
  std::size_t budget;
};

TEST(ImageFiles, FailuresAndLimits) {
  // Catches a writer that reports success after a failed write (at the start or in the
  // middle of the pixels), that writes anything for a page it cannot hold, or that reads
  // the pixels of a page too large for its format before refusing it.
  std::vector<Rgb> table(256);
  for (int i = 0; i < 256; ++i) {
    table[std::size_t(i)] = Rgb{i, i, i};
  }
  const std::function<bool(Sink&, const PixelView&)> writers[] = {
      [](Sink& s, const PixelView& p) { return write_png(s, p); },
      [](Sink& s, const PixelView& p) { return write_tiff(s, p, TiffCompression::Deflate); },
      [](Sink& s, const PixelView& p) { return write_tiff(s, p, TiffCompression::None); },
      [&](Sink& s, const PixelView& p) { return write_gif(s, p, table); },
      [](Sink& s, const PixelView& p) { return write_bmp(s, p); },
      [](Sink& s, const PixelView& p) { return write_ppm(s, p); },
      [](Sink& s, const PixelView& p) { return write_raw_image(s, p); },
      [](Sink& s, const PixelView& p) { return write_ps_image(s, p, {}); },
  };
  Page noise(128, 128, 0);
  noise.scramble();
  const std::uint8_t pixel[3] = {1, 2, 3};
  for (const auto& write : writers) {
    SCOPED_TRACE(&write - writers);
    for (const std::size_t budget : {0, 40, 3000}) {
      FailingSink failing(budget);
      EXPECT_FALSE(write(failing, noise.view())) << budget;
    }
    for (const PixelView bad : {PixelView{pixel, 0, 1, 3}, PixelView{pixel, 1, 0, 3},
                                PixelView{nullptr, 1, 1, 3}, PixelView{pixel, 1, 1, 2}}) {
      MemorySink out;
      EXPECT_FALSE(write(out, bad));
      EXPECT_TRUE(out.bytes().empty());
    }
  }
  // Beyond a format's size limits, refused before any pixel is read: GIF sides are 16
  // bits, a BMP file must stay below 4 GiB, the PostScript box must not be empty; and a
  // GIF of too many colours needs a table to map them to.
  MemorySink out;
  EXPECT_FALSE(write_gif(out, PixelView{pixel, 65536, 1, 3 * 65536}, table));
  EXPECT_FALSE(write_bmp(out, PixelView{pixel, 40000, 40000, 3 * 40000}));
  EXPECT_FALSE(write_ps_image(out, PixelView{pixel, 1, 1, 3}, {false, 0, 0, true, 0, 100}));
  EXPECT_FALSE(write_gif(out, noise.view(), {}));
  EXPECT_TRUE(out.bytes().empty());
}

}  // namespace
}  // namespace zorvel

// Writes two test pages in every raster format for raster.sh, at the usual page size and
// at odd small ones:
//   plot_WxH.*  a plot-like page of under 256 colours (PNG and GIF palettes)
//   ramp_WxH.*  gradients of thousands of colours (PNG RGB, GIF mapped to the table)
// each as .png, .deflate.tif, .lzw.tif, .none.tif, .gif, .bmp, .ppm, .img (the raw image)
// and .ps, next to .ref, the page's bare RGB rows, and table.ref, the GIF colour table
// (256 RGB triples). Both pages are four quadrants of distinct colours (red, green at
// the top, blue, yellow below) in a black frame, so that a turned or mirrored image shows.
//
// Usage: write_images DIR. Exit status 1 when a writer or a file fails.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "drivers/image_files.h"

namespace {

using zorvel::PixelView;
using zorvel::Rgb;

constexpr std::uint8_t kQuadrants[4][3] = {
    {220, 40, 40}, {40, 160, 60}, {40, 60, 200}, {230, 200, 40}};

std::vector<std::uint8_t> pattern(int w, int h, bool ramp) {
  std::vector<std::uint8_t> px(3 * static_cast<std::size_t>(w) * static_cast<std::size_t>(h));
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      std::uint8_t* p = px.data() + 3 * (static_cast<std::size_t>(y) * w + x);
      const std::uint8_t* q = kQuadrants[(y >= h / 2 ? 2 : 0) + (x >= w / 2 ? 1 : 0)];
      int c[3] = {q[0], q[1], q[2]};
      if (ramp) {
        const int d = (x * 3 + y * 5) % 32;
        c[0] += d - 16;
        c[1] += (x * y) % 24 - 12;
        c[2] += 16 - d;
      } else if (y > 0 && y < 9 && w > 20) {
        c[0] = (x * 7) % 200;  // a band of 200 colours along the top
        c[1] = 255 - (x * 7) % 200;
        c[2] = 128;
      } else if (w > 20 && (x == w / 2 || y == h / 2)) {
        c[0] = c[1] = c[2] = 255;  // a white cross between the quadrants
      }
      if (x == 0 || y == 0 || x == w - 1 || y == h - 1) {
        c[0] = c[1] = c[2] = 0;
      }
      for (int k = 0; k < 3; ++k) {
        p[k] = static_cast<std::uint8_t>(c[k]);
      }
    }
  }
  return px;
}

bool save(const std::string& path, const std::function<bool(zorvel::Sink&)>& write) {
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr) {
    std::printf("FAIL: cannot create %s\n", path.c_str());
    return false;
  }
  zorvel::FileSink sink(f);
  const bool ok = write(sink) && sink.flush();
  if (std::fclose(f) != 0 || !ok) {
    std::printf("FAIL: writing %s\n", path.c_str());
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::printf("usage: write_images DIR\n");
    return 2;
  }
  const std::string dir = argv[1];
  std::vector<Rgb> table;  // a 6x7x6 colour cube and four greys
  for (int r = 0; r < 6; ++r) {
    for (int g = 0; g < 7; ++g) {
      for (int b = 0; b < 6; ++b) {
        table.push_back(Rgb{r * 51, g * 42, b * 51});
      }
    }
  }
  for (const int grey : {64, 128, 160, 192}) {
    table.push_back(Rgb{grey, grey, grey});
  }
  std::vector<std::uint8_t> table_bytes;
  for (const Rgb& c : table) {
    table_bytes.insert(table_bytes.end(),
                       {static_cast<std::uint8_t>(c.r), static_cast<std::uint8_t>(c.g),
                        static_cast<std::uint8_t>(c.b)});
  }
  bool ok = save(dir + "/table.ref", [&](zorvel::Sink& s) {
    return s.write(reinterpret_cast<const char*>(table_bytes.data()), table_bytes.size());
  });
  using Writer = std::function<bool(zorvel::Sink&, const PixelView&)>;
  const std::pair<const char*, Writer> formats[] = {
      {".png", [](zorvel::Sink& s, const PixelView& v) { return zorvel::write_png(s, v); }},
      {".deflate.tif",
       [](zorvel::Sink& s, const PixelView& v) {
         return zorvel::write_tiff(s, v, zorvel::TiffCompression::Deflate);
       }},
      {".lzw.tif",
       [](zorvel::Sink& s, const PixelView& v) {
         return zorvel::write_tiff(s, v, zorvel::TiffCompression::Lzw);
       }},
      {".none.tif",
       [](zorvel::Sink& s, const PixelView& v) {
         return zorvel::write_tiff(s, v, zorvel::TiffCompression::None);
       }},
      {".gif", [&](zorvel::Sink& s, const PixelView& v) { return zorvel::write_gif(s, v, table); }},
      {".bmp", [](zorvel::Sink& s, const PixelView& v) { return zorvel::write_bmp(s, v); }},
      {".ppm", [](zorvel::Sink& s, const PixelView& v) { return zorvel::write_ppm(s, v); }},
      {".img", [](zorvel::Sink& s, const PixelView& v) { return zorvel::write_raw_image(s, v); }},
      {".ps", [](zorvel::Sink& s, const PixelView& v) { return zorvel::write_ps_image(s, v, {}); }},
  };
  const int sizes[][2] = {{853, 603}, {1, 1}, {7, 3}, {3, 7}, {200, 200}};
  for (const auto& size : sizes) {
    for (const bool ramp : {false, true}) {
      const std::vector<std::uint8_t> px = pattern(size[0], size[1], ramp);
      const PixelView view{px.data(), size[0], size[1], 3 * static_cast<std::size_t>(size[0])};
      const std::string stem = dir + (ramp ? "/ramp_" : "/plot_") + std::to_string(size[0]) + "x" +
                               std::to_string(size[1]);
      ok &= save(stem + ".ref", [&](zorvel::Sink& s) {
        return s.write(reinterpret_cast<const char*>(px.data()), px.size());
      });
      for (const auto& format : formats) {
        ok &= save(stem + format.first, [&](zorvel::Sink& s) { return format.second(s, view); });
      }
    }
  }
  return ok ? 0 : 1;
}

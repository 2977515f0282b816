// Writes a page with a line in each of the 35 standard PostScript fonts through the
// PostScript, PDF and SVG drivers for ps_fonts.sh: ps_fonts.ps, ps_fonts.pdf and
// ps_fonts.svg. Every line names its font and holds characters outside the font's 8-bit
// encoding (code 0: the euro sign in the text fonts, infinity and summation in Symbol,
// dingbats beyond code 126), which the drivers show by glyph name. Characters are placed
// as the text engine places them: centres one advance (ps_width, kerned) apart.
//
// Usage: write_ps_fonts DIR. Exit status 1 when a driver or a file fails.

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "drivers/registry.h"
#include "drivers/sink.h"
#include "text/ps_fonts.h"

namespace {

using namespace zorvel;

std::vector<std::uint32_t> decode(std::string_view s) {
  std::vector<std::uint32_t> out;
  for (std::size_t i = 0; i < s.size();) {
    const auto c = static_cast<unsigned char>(s[i]);
    const int n = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    std::uint32_t u = n == 1 ? c : c & (0x7F >> n);
    for (int k = 1; k < n && i + k < s.size(); ++k) {
      u = u << 6 | (static_cast<unsigned char>(s[i + k]) & 0x3F);
    }
    out.push_back(u);
    i += n;
  }
  return out;
}

std::string sample(int font) {
  std::string s(ps_font(font).name);
  if (font == kPsSymbol) {
    return s + " \xCE\xB1\xCE\xB2\xCE\xB3 \xCE\xA9 \xE2\x88\x9E \xE2\x88\x91 \xE2\x89\xA4";
  }
  if (font == kPsZapfDingbats) {
    return s + " \xE2\x9C\x93\xE2\x9C\x88\xE2\x9D\xA4\xE2\x9E\x94";
  }
  return s + " AVATAR Wave \xC3\xA4\xC3\xB6\xC3\xBC \xE2\x82\xAC";
}

// One line of `font` from (x, y) in device units, its characters `size` units high.
void line(Driver& d, int font, double x, double y, double size) {
  const std::string text = sample(font);
  const std::vector<std::uint32_t> chars = decode(text);
  std::vector<GlyphPlace> places;
  double pen = x;
  for (std::size_t i = 0; i < chars.size(); ++i) {
    if (ps_width(font, chars[i]) < 0) {
      continue;  // Symbol and ZapfDingbats have no Latin letters for their names
    }
    const double w = ps_width(font, chars[i]) * size / 1000.0;
    GlyphPlace g;
    g.x = pen + 0.5 * w;
    g.y = y;
    g.unicode = chars[i];
    g.code = static_cast<std::uint8_t>(ps_code(font, chars[i]));
    places.push_back(g);
    pen += w;
    if (i + 1 < chars.size()) {
      pen += ps_kern(font, chars[i], chars[i + 1]) * size / 1000.0;
    }
  }
  d.text(TextRun{text, places, ps_font(font).name, nullptr, 0.0, size, 1.0});
}

// The 35 lines on an A4 landscape page of `key` whose device units are `unit` points.
bool write(const std::string& path, std::string_view key, double unit, bool y_down) {
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr) {
    return false;
  }
  FileSink sink(f);
  DriverSetup s;
  const DeviceInfo& dev = *find_device(key);
  s.variant = dev.variant;
  s.page_width = 2969;
  s.page_height = 2099;
  s.scale = 72.0 / 254.0 / unit;
  s.device_width = 2969 * s.scale;
  s.device_height = 2099 * s.scale;
  s.landscape = true;
  s.reversed = true;
  s.stamp = DateTime{"14.11.2023", "22:13:20"};
  std::unique_ptr<Driver> d = dev.factory();
  bool ok = d->open(&sink, s);
  const double step = s.device_height / 37.0;
  for (int font = 0; font < kPsFontCount; ++font) {
    const double y = (font + 1.5) * step;
    line(*d, font, 20.0 / unit, y_down ? y : s.device_height - y, 0.8 * step);
  }
  ok = d->close() && ok;
  return std::fclose(f) == 0 && ok;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: write_ps_fonts DIR\n");
    return 2;
  }
  const std::string dir = argv[1];
  // PostScript device units are 1/200 cm, PDF's points (both from the bottom), SVG's
  // plot units of 0.1 mm (from the top).
  const bool ok = write(dir + "/ps_fonts.ps", "PS  ", 72.0 / 508.0, false) &&
                  write(dir + "/ps_fonts.pdf", "PDF ", 1.0, false) &&
                  write(dir + "/ps_fonts.svg", "SVG ", 72.0 / 254.0, true);
  return ok ? 0 : 1;
}

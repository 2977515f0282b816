// Unit tests of the outline and standard fonts in the text engine: capitals as high as
// stroke capitals, the holes of filled glyphs, the lookup order with its warnings, and
// glyphs loaded once however often they are drawn. DejaVu Sans (Debian's
// fonts-dejavu-core) is the test font; without it or FreeType the tests are skipped.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "api_decl.h"
#include "fonts/outline_font.h"
#include "tests/unit/recording_driver.h"
#include "text/ps_fonts.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr const char* kDejaVu = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

bool have_test_font() {
  std::error_code ec;
  return have_freetype() && std::filesystem::is_regular_file(kDejaVu, ec);
}

class FontPlot : public recording::Plot {
 public:
  explicit FontPlot(unsigned caps = kCapFill) : Plot("PS  ", true, caps) {
    g.pipe.clip_mode = ClipMode::None;
    text_defaults(g);
  }
  // The fills of drawing s.
  std::vector<recording::Filled> fills_of(const char* s) {
    rec->fills.clear();
    api::messag(g, s, 500, 500);
    return rec->fills;
  }
  std::string font() {
    char buf[64];
    api::getfnt(g, buf, sizeof buf);
    return buf;
  }
};

// Signed area of contour i of a fill (plot units, y down).
double contour_area(const recording::Filled& f, std::size_t i) {
  const std::size_t from = i == 0 ? 0 : static_cast<std::size_t>(f.ends[i - 1]);
  const auto to = static_cast<std::size_t>(f.ends[i]);
  double a = 0.0;
  for (std::size_t k = from; k < to; ++k) {
    const std::size_t n = k + 1 < to ? k + 1 : from;
    a += f.xs[k] * f.ys[n] - f.xs[n] * f.ys[k];
  }
  return 0.5 * a;
}

TEST(FontFiles, CapitalsAndHoles) {
  // Catches a scale taken from the em instead of the capitals, capitals (height) rather
  // than (height - 1) high, and holes that the non-zero rule would fill: the inner
  // contours of "o", "B" and "8" must run against the outer one.
  if (!have_test_font()) {
    GTEST_SKIP() << "no FreeType or no DejaVu Sans";
  }
  FontPlot p;
  GlobalBlock& g = p.g;
  api::height(g, 101);
  api::ttfont(g, kDejaVu);
  ASSERT_EQ(p.font(), "DejaVu Sans");
  const auto h = p.fills_of("H");
  ASSERT_EQ(h.size(), 1U);
  const auto [lo, hi] = std::minmax_element(h[0].ys.begin(), h[0].ys.end());
  EXPECT_NEAR(*hi - *lo, 100.0, 0.05);
  EXPECT_EQ(h[0].rule, FillRule::NonZero);
  for (const char* s : {"o", "B", "8"}) {
    const auto f = p.fills_of(s);
    ASSERT_EQ(f.size(), 1U) << s;
    const std::size_t holes = std::string_view(s) == "B" || std::string_view(s) == "8" ? 2 : 1;
    ASSERT_EQ(f[0].ends.size(), holes + 1) << s;
    double outer = 0.0;
    std::size_t at = 0;
    for (std::size_t i = 0; i < f[0].ends.size(); ++i) {
      if (std::fabs(contour_area(f[0], i)) > std::fabs(outer)) {
        outer = contour_area(f[0], i);
        at = i;
      }
    }
    for (std::size_t i = 0; i < f[0].ends.size(); ++i) {
      if (i != at) {
        EXPECT_LT(contour_area(f[0], i) * outer, 0.0) << s << " contour " << i;
      }
    }
  }
}

TEST(FontFiles, CapitalsInEveryMode) {
  // Catches a mode scaled by the em or by "height" instead of the capitals' height - 1:
  // a standard font drawn from its URW twin and a bitmap font (whose "H" is whole pixels).
  if (!have_test_font()) {
    GTEST_SKIP() << "no FreeType or no DejaVu Sans";
  }
  FontPlot p;
  GlobalBlock& g = p.g;
  api::height(g, 101);
  api::psfont(g, "Helvetica-Bold");
  api::bmpfnt(g, ZORVEL_TEST_BDF_DIR "/9x15.bdf");
  const bool bitmap = g.text.font.mode == FontMode::Bitmap;
  for (int mode = 0; mode < 2; ++mode) {
    if (mode == 0) {
      api::psfont(g, "Helvetica-Bold");
    } else if (bitmap) {
      api::bmpfnt(g, ZORVEL_TEST_BDF_DIR "/9x15.bdf");
    } else {
      continue;  // no BDF font made by this build
    }
    const auto h = p.fills_of("H");
    ASSERT_EQ(h.size(), 1U) << mode;
    const auto [lo, hi] = std::minmax_element(h[0].ys.begin(), h[0].ys.end());
    EXPECT_NEAR(*hi - *lo, 100.0, 0.5) << mode;
  }
}

TEST(FontFiles, StandardFontsMeasureAlikeOnEveryDevice) {
  // Catches a layout that depends on the device: the 35 standard fonts are the driver's
  // own on PostScript and outlines elsewhere, and a string must be as long in both. Also
  // that kerning moves the pen by exactly the AFM pair.
  if (!have_test_font()) {
    GTEST_SKIP() << "no FreeType";
  }
  FontPlot text_device(kCapFill | kCapText);
  FontPlot raster_like;
  const char* s = "AVATAR Wave, 0.5";
  for (int id = 0; id < kPsFontCount; ++id) {
    const std::string name(ps_font(id).name);
    api::psfont(text_device.g, name.c_str());
    api::psfont(raster_like.g, name.c_str());
    ASSERT_EQ(raster_like.font(), name);
    EXPECT_EQ(api::nlmess(text_device.g, s), api::nlmess(raster_like.g, s)) << name;
  }
  GlobalBlock& g = text_device.g;
  api::height(g, 1001);
  api::psfont(g, "Times-Roman");
  const int plain = api::nlmess(g, "AV");
  api::fntopt(g, "ON", "KERN");
  const int kerned = api::nlmess(g, "AV");
  const double em = 1000.0 * 1000.0 / ps_font(kPsTimesRoman).cap_height;  // plot units
  // Both lengths are rounded: the difference is the pair's to within a plot unit.
  EXPECT_NEAR(kerned - plain, ps_kern(kPsTimesRoman, 'A', 'V') * em / 1000.0, 1.0);
  EXPECT_NE(kerned, plain);
}

TEST(FontFiles, LookupOrderAndWarnings) {
  // Catches the font directory not searched before fontconfig, a failed lookup that
  // changes the font in force, and the wrong warning for missing, unreadable and
  // directory "fonts".
  if (!have_test_font()) {
    GTEST_SKIP() << "no FreeType or no DejaVu Sans";
  }
  const std::filesystem::path dir = std::filesystem::temp_directory_path() / "zorvel_fonts_test";
  std::filesystem::create_directories(dir / "fonts");
  // A serif face under the sans face's file name: the font directory must win.
  std::filesystem::copy_file("/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf",
                             dir / "fonts" / "DejaVuSans.ttf",
                             std::filesystem::copy_options::overwrite_existing);
  std::ofstream(dir / "fonts" / "broken.ttf") << "not a font at all";
  setenv("ZORVEL", dir.c_str(), 1);
  FontPlot p;
  GlobalBlock& g = p.g;
  api::ttfont(g, "DejaVuSans.ttf");
  EXPECT_EQ(p.font(), "DejaVu Serif");
  unsetenv("ZORVEL");
  api::ttfont(g, "DejaVuSans.ttf");  // now fontconfig's
  EXPECT_EQ(p.font(), "DejaVu Sans");
  api::ttfont(g, "no-such-font.ttf");
  api::ttfont(g, (dir / "fonts" / "broken.ttf").c_str());
  api::ttfont(g, dir.c_str());
  api::winfnt(g, "No Such Family Anywhere");
  EXPECT_EQ(p.font(), "DejaVu Sans");
  const std::string said = p.text();
  EXPECT_NE(said.find("Warning 211: Font file not found in test!   (no-such-font.ttf)"),
            std::string::npos)
      << said;
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 4) << said;
  EXPECT_NE(said.find("Warning 212"), std::string::npos);
  EXPECT_NE(said.find("Warning 211: Font file not found in test!   (No Such Family"),
            std::string::npos);
  api::winfnt(g, "DejaVu Sans:bold");
  EXPECT_EQ(p.font(), "DejaVu Sans Bold");
  std::filesystem::remove_all(dir);
}

TEST(FontFiles, GlyphsLoadedOnce) {
  // Catches glyphs loaded or flattened again for every string.
  if (!have_test_font()) {
    GTEST_SKIP() << "no FreeType or no DejaVu Sans";
  }
  FontPlot p;
  GlobalBlock& g = p.g;
  api::ttfont(g, kDejaVu);
  const OutlineFont& face = *g.fonts.faces.at(static_cast<std::size_t>(g.fonts.roman));
  const long before = face.loads();
  for (int i = 0; i < 10000; ++i) {
    api::messag(g, "Wave 42", 100 + i % 500, 300);
  }
  // W a v e 4 2 and the blank: each loaded for its metrics, the inked ones once more
  // for their outline.
  EXPECT_LE(face.loads() - before, 13);
}

}  // namespace
}  // namespace zorvel

// Outline font files embedded by the PDF driver: the file that Poppler and qpdf read back
// (fonts listed as embedded subsets, the text extracted exactly, glyphs inked where the
// runs put them), and damaged font files that must be refused without harm.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "drivers/pdf_fontfile.h"
#include "drivers/registry.h"
#include "drivers/sink.h"

namespace zorvel {
namespace {

constexpr const char* kDejaVu = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr const char* kLatinModern =
    "/usr/share/texmf/fonts/opentype/public/lm/lmroman10-regular.otf";
constexpr double kPi = 3.14159265358979323846;

std::string slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

bool exists(const std::string& path) { return std::ifstream(path).good(); }

// Standard output and exit status of a shell command.
std::pair<std::string, int> shell(const std::string& cmd) {
  std::string out;
  FILE* p = popen(cmd.c_str(), "r");
  if (p == nullptr) {
    return {out, -1};
  }
  char buf[4096];
  std::size_t n = 0;
  while ((n = std::fread(buf, 1, sizeof buf, p)) > 0) {
    out.append(buf, n);
  }
  const int rc = pclose(p);
  return {out, WIFEXITED(rc) ? WEXITSTATUS(rc) : -1};
}

bool have(const char* tool) {
  return shell(std::string("command -v ") + tool + " > /dev/null 2>&1").second == 0;
}

std::vector<std::uint32_t> code_points(std::string_view s) {
  std::vector<std::uint32_t> out;
  for (std::size_t i = 0; i < s.size();) {
    const auto c = static_cast<unsigned char>(s[i]);
    const int n = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
    std::uint32_t u = n == 1 ? c : c & (0x7F >> n);
    for (int k = 1; k < n; ++k) {
      u = u << 6 | (static_cast<unsigned char>(s[i + static_cast<std::size_t>(k)]) & 0x3F);
    }
    out.push_back(u);
    i += static_cast<std::size_t>(n);
  }
  return out;
}

// A run laid out as the text engine does: origins advancing by the hmtx widths along
// the turned base line, plus `gap` points after the second character.
struct LaidRun {
  std::string utf8;
  std::vector<GlyphPlace> glyphs;
  TextRun run;
  double length = 0.0;  // along the base line, in points
};

LaidRun lay_out(const FontProgram& font, const FontFileRef& ref, std::string utf8, double x,
                double y, double size, double angle, double stretch, double gap = 0.0) {
  LaidRun r;
  r.utf8 = std::move(utf8);
  const double c = std::cos(angle * kPi / 180.0);
  const double s = std::sin(angle * kPi / 180.0);
  double along = 0.0;
  for (const std::uint32_t u : code_points(r.utf8)) {
    const std::uint32_t g = font.glyph_of(u);
    r.glyphs.push_back(GlyphPlace{x + along * c, y + along * s, u, 0, g});
    along += font.width(g) / 1000.0 * size * stretch + (r.glyphs.size() == 2 ? gap : 0.0);
  }
  r.length = along;
  r.run.utf8 = r.utf8;
  r.run.file = &ref;
  r.run.size = size;
  r.run.angle = angle;
  r.run.stretch = stretch;
  return r;
}

std::string write_pdf(const std::function<void(Driver&)>& body) {
  DriverSetup s;
  s.scale = 72.0 / 254.0;
  s.device_width = 2099 * s.scale;
  s.device_height = 2969 * s.scale;
  s.reversed = true;
  s.compress = false;  // content readable below; the font programs are deflated still
  s.stamp = DateTime{"14.11.2023", "22:13:20"};
  std::unique_ptr<Driver> d = find_device("PDF ")->factory();
  MemorySink sink;
  EXPECT_TRUE(d->open(&sink, s));
  EXPECT_NE(d->caps() & kCapFontFiles, 0U);
  body(*d);
  EXPECT_TRUE(d->close());
  return sink.bytes();
}

// Gray pixels of a binary PGM (P5, 8 bit) as pdftoppm writes it.
struct Gray {
  int w = 0;
  int h = 0;
  std::string px;
  // Dark pixels in the box of points (x0, y0)-(x1, y1) from the lower left, at 72 dpi.
  int ink(double x0, double y0, double x1, double y1) const {
    int n = 0;
    for (int j = std::max(0, static_cast<int>(h - y1)); j < std::min(h, static_cast<int>(h - y0));
         ++j) {
      for (int i = std::max(0, static_cast<int>(x0)); i < std::min(w, static_cast<int>(x1)); ++i) {
        n += static_cast<unsigned char>(px[static_cast<std::size_t>(j * w + i)]) < 128 ? 1 : 0;
      }
    }
    return n;
  }
};

Gray read_pgm(const std::string& bytes) {
  Gray g;
  std::istringstream in(bytes);
  std::string magic;
  int max = 0;
  in >> magic >> g.w >> g.h >> max;
  in.get();
  g.px = bytes.substr(static_cast<std::size_t>(in.tellg()));
  if (magic != "P5" || g.px.size() < static_cast<std::size_t>(g.w) * g.h) {
    g.w = g.h = 0;
  }
  return g;
}

TEST(PdfFontFile, SubsetsReadBackByPopplerAndQpdf) {
  // Catches a font program that viewers reject or show as another font (wrong tables,
  // checksums, loca, a component left out of the subset), codes other than glyph ids,
  // a ToUnicode map that loses characters (non-ASCII, ranges, the space), origins off
  // their places in turned or stretched runs, and page resources without the font.
  if (!exists(kDejaVu)) {
    GTEST_SKIP() << kDejaVu << " is not installed";
  }
  FontProgram dejavu;
  ASSERT_TRUE(dejavu.load(kDejaVu, 0));
  EXPECT_TRUE(pdf_can_embed(kDejaVu, 0));
  const FontFileRef sans{kDejaVu, 0, "DejaVuSans", 7};
  FontProgram lm;
  const bool with_cff = lm.load(kLatinModern, 0);
  const FontFileRef roman{kLatinModern, 0, "LMRoman10-Regular", 9};

  std::vector<LaidRun> runs;
  runs.push_back(lay_out(dejavu, sans, "Grüße αβγ Жж", 60, 700, 24, 0, 1));
  runs.push_back(lay_out(dejavu, sans, "ASCII (text) 0123", 60, 640, 18, 0, 1, 1.0));
  runs.push_back(lay_out(dejavu, sans, "Wide", 60, 560, 30, 0, 1.6));
  runs.push_back(lay_out(dejavu, sans, "Turned", 450, 300, 20, 90, 0.8, -1.5));
  if (with_cff) {
    runs.push_back(lay_out(lm, roman, "Modern", 60, 480, 24, 0, 1));
  }
  const std::string pdf = write_pdf([&](Driver& d) {
    for (LaidRun& r : runs) {
      r.run.glyphs = r.glyphs;
      d.text(r.run);
    }
    // A page of its own for the first run, between runs of a driver font: the font is
    // listed there too, and each run restates the font it shows.
    d.new_page();
    const GlyphPlace times[] = {{100, 300, 'T', 'T', 0}, {110, 300, 'o', 'o', 0}};
    const TextRun driver_font{"To", times, "Times-Roman", nullptr, 0.0, 20.0, 1.0};
    d.text(driver_font);
    d.text(runs[0].run);
    d.text(driver_font);
  });
  EXPECT_NE(pdf.find("/FontFile2"), std::string::npos);
  EXPECT_EQ(pdf.find("/Version /1.6") != std::string::npos, with_cff);  // FontFile3 /OpenType
  const std::string path = "pdf_fontfile.pdf";
  std::ofstream(path, std::ios::binary) << pdf;

  // The first page's content as a viewer reads it: every glyph's origin from the text
  // matrix, the advances of /W, TJ displacements, Tz and Ts, within a hundredth of a point
  // of its place.
  {
    const std::size_t begin = pdf.find("stream\n") + 7;
    std::istringstream content(pdf.substr(begin, pdf.find("endstream", begin) - begin));
    const FontProgram* font = nullptr;
    double size = 0.0;
    double tz = 100.0;
    double ts = 0.0;
    double pen = 0.0;
    std::array<double, 6> m{};
    std::vector<double> nums;
    bool in_array = false;
    std::vector<std::array<double, 2>> origins;
    for (std::string tok; content >> tok;) {
      if (tok.size() > 1 && tok[0] == '[') {  // "[<0024...>": the array's first string
        in_array = true;
        tok.erase(0, 1);
      }
      if (tok == "/FF1" || tok == "/FF2") {
        font = tok == "/FF1" ? &dejavu : &lm;
      } else if (tok == "[" || tok == "]") {
        in_array = tok == "[";
      } else if (tok[0] == '<') {
        for (std::size_t i = 1; i + 4 <= tok.size(); i += 4) {
          origins.push_back({m[4] + pen * m[0] + ts * m[2], m[5] + pen * m[1] + ts * m[3]});
          const auto g = static_cast<std::uint32_t>(std::stoul(tok.substr(i, 4), nullptr, 16));
          pen += font->width(g) / 1000.0 * size * tz / 100.0;
        }
      } else if (std::isdigit(static_cast<unsigned char>(tok.back())) != 0) {
        if (in_array) {
          pen -= std::stod(tok) / 1000.0 * size * tz / 100.0;
        } else {
          nums.push_back(std::stod(tok));
        }
      } else {
        if (tok == "Tf") {
          size = nums.back();
        } else if (tok == "Tz") {
          tz = nums.back();
        } else if (tok == "Ts") {
          ts = nums.back();
        } else if (tok == "Tm") {
          std::copy(nums.end() - 6, nums.end(), m.begin());
          pen = 0.0;
        }
        nums.clear();
      }
    }
    std::size_t k = 0;
    for (const LaidRun& r : runs) {
      for (const GlyphPlace& g : r.glyphs) {
        ASSERT_LT(k, origins.size());
        EXPECT_NEAR(origins[k][0], g.x, 0.011) << r.utf8 << " glyph " << k;
        EXPECT_NEAR(origins[k][1], g.y, 0.011) << r.utf8 << " glyph " << k;
        ++k;
      }
    }
    EXPECT_EQ(k, origins.size());
  }

  if (!have("qpdf") || !have("pdffonts") || !have("pdftotext") || !have("pdftoppm")) {
    GTEST_SKIP() << "qpdf or poppler-utils missing";
  }
  EXPECT_EQ(shell("qpdf --check " + path + " > /dev/null 2>&1").second, 0);

  // name  type  encoding  emb sub uni  object; the second page lists the font as well.
  for (const char* pages : {"", "-f 2 -l 2 "}) {
    const std::string fonts = shell("pdffonts " + std::string(pages) + path).first;
    std::istringstream lines(fonts);
    int embedded = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.find("+DejaVuSans ") == 6) {
        EXPECT_NE(line.find("CID TrueType      Identity-H       yes yes yes"), std::string::npos)
            << line;
        ++embedded;
      } else if (line.find("LMRoman10-Regular ") == 0) {
        EXPECT_NE(line.find("CID Type 0C (OT)  Identity-H       yes no  yes"), std::string::npos)
            << line;
        ++embedded;
      }
    }
    EXPECT_EQ(embedded, with_cff && *pages == '\0' ? 2 : 1) << fonts;
  }

  const std::string text = shell("pdftotext -f 1 -l 1 -raw " + path + " -").first;
  for (const LaidRun& r : runs) {
    EXPECT_NE(text.find(r.utf8 + "\n"), std::string::npos) << r.utf8 << " in\n" << text;
  }
  const std::string second = shell("pdftotext -f 2 -l 2 -raw " + path + " -").first;
  EXPECT_EQ(second, "To\nGrüße αβγ Жж\nTo\n\f") << second;

  // Ink in each run's box (from the base line down by a fifth and up by the em) and
  // nowhere between the runs.
  const Gray page = read_pgm(shell("pdftoppm -f 1 -l 1 -r 72 -gray " + path).first);
  ASSERT_GT(page.w, 0);
  for (const LaidRun& r : runs) {
    const GlyphPlace& g = r.glyphs.front();
    const double em = r.run.size;
    const bool turned = r.run.angle == 90;
    const double x0 = turned ? g.x - em : g.x;
    const double x1 = turned ? g.x + 0.2 * em : g.x + r.length;
    const double y0 = turned ? g.y : g.y - 0.25 * em;
    const double y1 = turned ? g.y + r.length : g.y + em;
    const int inside = page.ink(x0, y0, x1, y1);
    const int around = page.ink(x0 - 40, y0 - 0.6 * em, x1 + 40, y1 + 0.6 * em);
    EXPECT_GT(inside, 20 * r.glyphs.size() / 2) << r.utf8;
    EXPECT_EQ(inside, around) << r.utf8 << ": ink outside its box";
    // The last glyph ends where its advance ends.
    if (!turned) {
      EXPECT_GT(page.ink(x1 - 0.6 * em * r.run.stretch, y0, x1, y1), 0) << r.utf8;
      EXPECT_EQ(page.ink(x1 + 2, y0, x1 + 40, y1), 0) << r.utf8;
    }
  }
}

// Byte patches of a font file.
class Patcher {
 public:
  explicit Patcher(std::string bytes) : b_(std::move(bytes)) {}
  std::uint32_t get(std::size_t at, int n) const {
    std::uint32_t v = 0;
    for (int i = 0; i < n; ++i) {
      v = v << 8 | static_cast<unsigned char>(b_.at(at + static_cast<std::size_t>(i)));
    }
    return v;
  }
  void set(std::size_t at, int n, std::uint32_t v) {
    for (int i = n - 1; i >= 0; --i, v >>= 8) {
      b_.at(at + static_cast<std::size_t>(i)) = static_cast<char>(v & 0xFF);
    }
  }
  // The table record of `tag`: its offset field is at record + 8, its length at + 12.
  std::size_t record(std::string_view tag) const {
    for (std::size_t i = 0, n = get(4, 2); i < n; ++i) {
      if (b_.compare(12 + 16 * i, 4, tag) == 0) {
        return 12 + 16 * i;
      }
    }
    return 0;
  }
  std::size_t table(std::string_view tag) const { return get(record(tag) + 8, 4); }
  // Offset of a glyph's data in the file (long loca).
  std::size_t glyph(std::uint32_t g) const { return table("glyf") + get(table("loca") + 4 * g, 4); }
  std::string& bytes() { return b_; }

 private:
  std::string b_;
};

TEST(PdfFontFile, DamagedFilesAreRefusedAndTheirRunsLeftOut) {
  // Catches reads outside the file or a table, a loca that points beyond glyf, and
  // composite glyphs that refer to themselves or run past their bytes: each must be
  // refused (the file, or the run that shows the glyph) without a crash, and the PDF
  // file stays sound with nothing of the refused run in it.
  if (!exists(kDejaVu)) {
    GTEST_SKIP() << kDejaVu << " is not installed";
  }
  const std::string good = slurp(kDejaVu);
  FontProgram ref;
  ASSERT_TRUE(ref.load_bytes(good, 0));
  const std::uint32_t udieresis = ref.glyph_of(0xFC);  // a composite: u and dieresis
  const std::uint32_t a = ref.glyph_of('A');
  ASSERT_EQ(Patcher(good).get(Patcher(good).glyph(udieresis), 2), 0xFFFFU);

  struct Case {
    const char* what;
    std::function<void(Patcher&)> damage;
    bool loads;  // the file is read; the composite is then refused
  };
  const Case cases[] = {
      {"file cut in half", [](Patcher& p) { p.bytes().resize(p.bytes().size() / 2); }, false},
      {"file cut in the table directory", [](Patcher& p) { p.bytes().resize(40); }, false},
      {"head shorter than its fields", [](Patcher& p) { p.set(p.record("head") + 12, 4, 20); },
       false},
      {"hmtx shorter than its metrics", [](Patcher& p) { p.set(p.record("hmtx") + 12, 4, 8); },
       false},
      {"no horizontal metrics", [](Patcher& p) { p.set(p.table("hhea") + 34, 2, 0); }, false},
      {"table beyond the file", [](Patcher& p) { p.set(p.record("glyf") + 8, 4, 0xFFFFFFF0U); },
       false},
      {"loca beyond glyf",
       [](Patcher& p) { p.set(p.table("loca") + 4 * 100, 4, p.get(p.record("glyf") + 12, 4) + 4); },
       false},
      {"loca running backwards", [&](Patcher& p) { p.set(p.table("loca") + 4 * 50, 4, 0); }, false},
      {"composite made of itself",
       [&](Patcher& p) { p.set(p.glyph(udieresis) + 12, 2, udieresis); }, true},
      {"composite component out of range",
       [&](Patcher& p) { p.set(p.glyph(udieresis) + 12, 2, 0xFFFF); }, true},
      {"composite running past its bytes",
       [&](Patcher& p) {
         // Every component says another follows.
         for (std::size_t at = p.glyph(udieresis) + 10; at + 4 <= p.glyph(udieresis + 1); at += 2) {
           p.set(at, 2, p.get(at, 2) | 0x20);
         }
       },
       true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Patcher p(good);
    c.damage(p);
    FontProgram f;
    ASSERT_EQ(f.load_bytes(p.bytes(), 0), c.loads);
    if (c.loads) {
      EXPECT_FALSE(f.glyph_ok(udieresis));
      EXPECT_TRUE(f.glyph_ok(a));
    }
    const std::string path = "pdf_fontfile_damaged.ttf";
    std::ofstream(path, std::ios::binary | std::ios::trunc) << p.bytes();
    EXPECT_EQ(pdf_can_embed(path, 0), c.loads);

    // The refused run reports -1 and leaves nothing; a sound run of the face still goes in.
    const FontFileRef bad{path, 0, "Damaged", 1};
    const std::vector<GlyphPlace> refused = {{10, 10, 'A', 0, a}, {20, 10, 0xFC, 0, udieresis}};
    const std::vector<GlyphPlace> sound = {{10, 10, 'A', 0, a}};
    PdfFontFiles files;
    int objects = 0;
    EXPECT_EQ(files.use(bad, refused, [&] { return ++objects; }), -1);
    EXPECT_EQ(files.use(bad, sound, [&] { return ++objects; }), c.loads ? 0 : -1);
    const std::string pdf = write_pdf([&](Driver& d) {
      TextRun run;
      run.file = &bad;
      run.size = 20;
      run.glyphs = refused;
      d.text(run);
    });
    EXPECT_EQ(pdf.find("/FF1"), std::string::npos);
    EXPECT_EQ(pdf.find("/FontFile2"), std::string::npos);
  }
  EXPECT_FALSE(pdf_can_embed(kDejaVu, 1));  // no second face
  EXPECT_FALSE(pdf_can_embed("/nonexistent/font.ttf", 0));
}

}  // namespace
}  // namespace zorvel

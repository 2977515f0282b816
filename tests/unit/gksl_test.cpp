// The metafile "GKSL": what a plot writes, incmet brings back to any driver as the plot
// drew it directly; metcnv and incmet warn about files that are missing or damaged.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "api_decl.h"
#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "tests/unit/captured.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

using recording::Plot;

// A random scene on a landscape A4 page: polylines (some longer than the pipeline's
// buffer) whose points fall on whole centimetres too, colours, widths, filled polygons
// and paths with holes under both rules, and pages.
void scene(GlobalBlock& g, unsigned seed) {
  std::mt19937 rng(seed);
  auto coord = [&](double hi) {
    // Whole centimetres (2, 3, 9, 10 .. 99 cm and the page's edge) half of the time.
    if (rng() % 2 == 0) {
      static constexpr double kCm[] = {1, 2, 3, 9, 10, 11, 20, 29, 50, 99};
      const double v = kCm[rng() % 10] * 100.0;
      return v <= hi ? v : hi;
    }
    return std::uniform_real_distribution<double>(0.0, hi)(rng);
  };
  set_colour(g, 7);
  for (int item = 0; item < 60; ++item) {
    switch (rng() % 6) {
      case 0:
        set_colour(g, static_cast<int>(rng() % 256));
        break;
      case 1:
        api::linwid(g, 1 + static_cast<int>(rng() % 60));
        break;
      case 2: {
        const int n = 3 + static_cast<int>(rng() % 3);
        const int k = 1 + static_cast<int>(rng() % 3);
        std::vector<double> xs;
        std::vector<double> ys;
        std::vector<int> ends;
        for (int c = 0; c < k; ++c) {
          for (int i = 0; i < n; ++i) {
            xs.push_back(coord(2969.0));
            ys.push_back(coord(2099.0));
          }
          ends.push_back(static_cast<int>(xs.size()));
        }
        fill_path(g, xs.data(), ys.data(), ends.data(), k,
                  rng() % 2 == 0 ? FillRule::NonZero : FillRule::EvenOdd);
        break;
      }
      case 3:
        if (rng() % 3 == 0) {
          api::newpag(g);
        }
        break;
      default: {
        const int n = 2 + static_cast<int>(rng() % 160);
        move_to(g, coord(2969.0), coord(2099.0));
        for (int i = 1; i < n; ++i) {
          draw_to(g, coord(2969.0), coord(2099.0));
        }
        break;
      }
    }
  }
  end_polyline(g);
}

std::vector<int> changes(const std::vector<int>& v) {
  std::vector<int> out;
  for (const int x : v) {
    if (out.empty() || out.back() != x) {
      out.push_back(x);
    }
  }
  return out;
}

std::vector<int> widths(const recording::Recorder& r) {
  std::vector<int> n;
  for (const LineWidth& w : r.widths) {
    n.push_back(w.n);
  }
  return changes(n);
}

// The first values of `replayed` are those of `direct` (the replay may add the colour
// and width it restores at its end, and begins with the plot's own).
void expect_prefix(std::vector<int> direct, std::vector<int> replayed, const char* what) {
  if (!direct.empty() && !replayed.empty() && replayed.front() != direct.front()) {
    replayed.erase(replayed.begin());
  }
  ASSERT_GE(replayed.size(), direct.size()) << what;
  replayed.resize(direct.size());
  EXPECT_EQ(direct, replayed) << what;
}

std::string write_metafile(unsigned seed, const std::string& path) {
  Captured c;
  api::metafl(c.g, "GKSL");
  api::setfil(c.g, path.c_str());
  api::filmod(c.g, "DELE");
  api::zorini(c.g);
  scene(c.g, seed);
  api::zorfin(c.g);
  return c.text();
}

// Catches points read as pen or colour codes (x on whole centimetres), lost precision,
// fills whose holes or rule are lost, widths, colours and pages that go missing or move.
TEST(Gksl, ReplayDrawsWhatThePlotDrewDirectly) {
  constexpr double kTolerance = 1.000001e-5;  // plot units: 1e-7 cm and rounding
  const std::string path = ::testing::TempDir() + "gksl_round_trip.met";
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    Plot direct("GKSL", true, kCapFill | kCapWidths);
    scene(direct.g, seed);
    write_metafile(seed, path);
    Plot replay("GKSL", true, kCapFill | kCapWidths);
    api::incmet(replay.g, path.c_str(), 0, 0, 0, 1.0);
    EXPECT_EQ(replay.text(), "");

    const auto a = direct.polylines();
    const auto b = replay.polylines();
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      ASSERT_EQ(a[i].size(), b[i].size()) << "polyline " << i;
      for (std::size_t j = 0; j < a[i].size(); ++j) {
        EXPECT_NEAR(a[i][j].x, b[i][j].x, kTolerance) << i << ' ' << j;
        EXPECT_NEAR(a[i][j].y, b[i][j].y, kTolerance) << i << ' ' << j;
      }
    }
    const auto& fa = direct.rec->fills;
    const auto& fb = replay.rec->fills;
    ASSERT_EQ(fa.size(), fb.size());
    for (std::size_t i = 0; i < fa.size(); ++i) {
      EXPECT_EQ(fa[i].ends, fb[i].ends);
      EXPECT_EQ(fa[i].rule == FillRule::EvenOdd && fa[i].ends.size() >= 1,
                fb[i].rule == FillRule::EvenOdd);
      EXPECT_EQ(fa[i].rgb.r, fb[i].rgb.r);
      EXPECT_EQ(fa[i].rgb.g, fb[i].rgb.g);
      EXPECT_EQ(fa[i].rgb.b, fb[i].rgb.b);
      ASSERT_EQ(fa[i].xs.size(), fb[i].xs.size());
      for (std::size_t j = 0; j < fa[i].xs.size(); ++j) {
        EXPECT_NEAR(fa[i].xs[j], fb[i].xs[j], kTolerance);
        EXPECT_NEAR(fa[i].ys[j], fb[i].ys[j], kTolerance);
      }
    }
    expect_prefix(changes(direct.rec->values), changes(replay.rec->values), "colours");
    expect_prefix(widths(*direct.rec), widths(*replay.rec), "widths");
    EXPECT_EQ(direct.rec->pages, replay.rec->pages);
  }
  std::remove(path.c_str());
}

// Catches a wrong page chosen, a wrong offset or scale, and a newpag for a single page.
TEST(Gksl, OnePageAtAPlaceAndScale) {
  // Page 2 of a three-page file at (500, 300), half size: only its line arrives.
  const std::string path = ::testing::TempDir() + "gksl_pages.met";
  {
    Captured c;
    api::metafl(c.g, "GKSL");
    api::setfil(c.g, path.c_str());
    api::filmod(c.g, "DELE");
    api::zorini(c.g);
    api::line(c.g, 0, 0, 100, 100);
    api::newpag(c.g);
    api::line(c.g, 1000, 2000, 1200, 1000);
    api::newpag(c.g);
    api::line(c.g, 5, 5, 6, 6);
    api::zorfin(c.g);
  }
  Plot p("GKSL", true, kCapFill | kCapWidths);
  api::incmet(p.g, path.c_str(), 2, 500, 300, 0.5);
  EXPECT_EQ(p.traced(), "1000,1300 1100,800") << p.text();
  EXPECT_EQ(p.rec->pages, 0);
  api::incmet(p.g, path.c_str(), 4, 0, 0, 1.0);
  EXPECT_NE(p.text().find("Warning 2:"), std::string::npos);
  std::remove(path.c_str());
}

// Writes `text` as a file and returns the messages of incmet reading it.
std::string incmet_messages(const std::string& text) {
  const std::string path = ::testing::TempDir() + "gksl_bad.met";
  std::FILE* f = std::fopen(path.c_str(), "wb");
  std::fwrite(text.data(), 1, text.size(), f);
  std::fclose(f);
  Plot p("GKSL", true, kCapFill | kCapWidths);
  api::incmet(p.g, path.c_str(), 0, 0, 0, 1.0);
  std::remove(path.c_str());
  return p.text();
}

// Catches crashes, silence or endless reading on truncated and malformed files.
TEST(Gksl, DamagedFilesGiveWarnings) {
  const std::string head = "29.690000020.9900000 0.0000000";
  const std::string line = " 1.0000001 1.0000000 3.0000000 5.0000001 5.0000000 2.0000000";
  // Complete: nothing to say.
  EXPECT_EQ(incmet_messages(head + line + " 9.0000000\n"), "");
  // Cut after a field, inside a field, inside a polygon whose count is huge.
  EXPECT_NE(incmet_messages(head + line).find("Warning 241"), std::string::npos);
  EXPECT_NE(incmet_messages(head + line + " 9.00").find("Warning 241"), std::string::npos);
  EXPECT_NE(incmet_messages(head + " 5.00000009999999.90").find("Warning 56"), std::string::npos);
  EXPECT_NE(incmet_messages(head + " 5.0000000 3000000.0 1.0000001").find("Warning 241"),
            std::string::npos);
  // Not numbers, negative counts, unknown codes, colours beyond the table.
  for (const char* bad : {"       nan", " 5.0000000999999999.", " 5.0000000-3.0000000",
                          " 7.0000000", "99.000000099.000000099.000000099.0000000", "1.0e5     "}) {
    const std::string m = incmet_messages(head + bad + " 9.0000000\n");
    EXPECT_NE(m.find("Warning 56"), std::string::npos) << bad << m;
  }
  // No metafile: empty, a PostScript file, a directory, nothing at all.
  EXPECT_NE(incmet_messages("").find("Warning 56"), std::string::npos);
  EXPECT_NE(incmet_messages("%!PS-Adobe-3.0\n").find("Warning 56"), std::string::npos);
  Plot p("GKSL", true, kCapFill);
  api::incmet(p.g, ::testing::TempDir().c_str(), 0, 0, 0, 1.0);
  api::incmet(p.g, "/nonexistent/none.met", 0, 0, 0, 1.0);
  api::incmet(p.g, "x.met", 0, 0, 0, -1.0);
  // A plot that reads its own metafile would read what it writes for ever.
  {
    Captured own;
    const std::string path = ::testing::TempDir() + "gksl_own.met";
    api::metafl(own.g, "GKSL");
    api::setfil(own.g, path.c_str());
    api::filmod(own.g, "DELE");
    api::zorini(own.g);
    api::line(own.g, 0, 0, 100, 100);
    api::incmet(own.g, path.c_str(), 0, 0, 0, 1.0);
    EXPECT_NE(own.text().find("Warning 2:"), std::string::npos);
    api::zorfin(own.g);
    std::remove(path.c_str());
  }
  const std::string m = p.text();
  const auto first = m.find("Warning 36");
  ASSERT_NE(first, std::string::npos);
  EXPECT_NE(m.find("Warning 36", first + 1), std::string::npos);
  EXPECT_NE(m.find("Warning 51"), std::string::npos);
}

// Catches metcnv converting nothing silently, or the wrong file, and a DELE that keeps it.
TEST(Gksl, MetcnvWarnsWithoutAUsableMetafile) {
  const std::string dir = ::testing::TempDir();
  Captured c;
  api::metcnv(c.g, "PS", "KEEP");  // no plot yet
  api::metafl(c.g, "GKSL");
  api::setfil(c.g, (dir + "gksl_cnv.met").c_str());
  api::filmod(c.g, "DELE");
  api::zorini(c.g);
  api::line(c.g, 0, 0, 1000, 1000);
  api::metcnv(c.g, "PS", "KEEP");  // the plot is open
  api::zorfin(c.g);
  api::metcnv(c.g, "CONS", "KEEP");  // a screen has no file
  api::metcnv(c.g, "GKSL", "KEEP");  // nor a conversion into itself
  api::metcnv(c.g, "EPS", "DELE");
  api::metcnv(c.g, "PDF", "KEEP");  // deleted before
  std::string m = c.text();
  const auto order = {"Warning 20", "Warning 21", "Warning 40", "Warning 40", "Warning 22"};
  std::size_t at = 0;
  for (const char* w : order) {
    at = m.find(w, at);
    EXPECT_NE(at, std::string::npos) << w << '\n' << m;
    at += 1;
  }
  struct stat st {};
  EXPECT_EQ(::stat((dir + "gksl_cnv.eps").c_str(), &st), 0);
  EXPECT_GT(st.st_size, 100);
  EXPECT_NE(::stat((dir + "gksl_cnv.met").c_str(), &st), 0);
  std::remove((dir + "gksl_cnv.eps").c_str());

  // A metafile that something else overwrote is no metafile.
  api::zorini(c.g);
  api::zorfin(c.g);
  std::FILE* f = std::fopen((dir + "gksl_cnv.met").c_str(), "w");
  std::fputs("not a metafile\n", f);
  std::fclose(f);
  api::metcnv(c.g, "PS", "KEEP");
  EXPECT_NE(c.text().find("Warning 56"), std::string::npos);
  std::remove((dir + "gksl_cnv.met").c_str());
}

}  // namespace
}  // namespace zorvel

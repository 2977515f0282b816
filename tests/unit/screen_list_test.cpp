// The screen driver's display list, without a display: replayed at the page's own size it
// gives the page's very pixels (every kind of call recorded, none twice), an erase keeps
// only the frame after it and the attributes in force, the replay's shortcut for dense
// thin lines changes no pixel at another size, and a resized window gets the scale the
// pipeline would give a plot of that size.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>

#include "api_decl.h"
#include "core/global_block.h"
#include "draw/pipeline.h"
#include "drivers/raster_driver.h"
#include "drivers/registry.h"
#include "raster/raster_page.h"
#include "screen/screen_target.h"
#include "screen/windows.h"

namespace zorvel {

std::unique_ptr<Driver> make_screen_driver();

namespace {

class FakeTarget final : public screen::Target {
 public:
  screen::DisplayList& list() override { return list_; }
  void present(const PixelView&) override { ++shown; }
  void tick(const PixelView&) override {}
  void finish(const PixelView&) override { ++finished; }
  bool gl() const override { return false; }
  int shown = 0;
  int finished = 0;

 private:
  screen::DisplayList list_;
};

bool same_pixels(const RasterPage& a, const RasterPage& b) {
  if (a.width() != b.width() || a.height() != b.height()) {
    return false;
  }
  for (int j = 0; j < a.height(); ++j) {
    if (std::memcmp(a.row(j), b.row(j), a.stride()) != 0) {
      return false;
    }
  }
  return true;
}

struct Screen {
  RasterPage page;
  FakeTarget target;
  std::unique_ptr<Driver> driver = make_screen_driver();
  explicit Screen(bool antialias, int w = 120, int h = 90) {
    page.allocate(w, h, Rgb{0, 0, 0, 255});
    DriverSetup setup;
    setup.raster = &page;
    setup.screen = &target;
    setup.scale = 0.04;
    setup.antialias = antialias;
    EXPECT_TRUE(driver->open(nullptr, setup));
  }
  // The list replayed on a fresh page of the size w x h.
  RasterPage replayed(int w, int h) {
    const screen::DisplayList& l = target.list();
    RasterPage p;
    p.allocate(w, h, Rgb{0, 0, 0, 255});
    const double f = static_cast<double>(w) / page.width();
    screen::replay(l, f, l.scale * f, p);
    return p;
  }
};

void polyline(Driver& d, std::initializer_list<double> xy) {
  const double* p = xy.begin();
  d.point(p[0], p[1], Pen::Move);
  for (std::size_t i = 2; i + 1 < xy.size(); i += 2) {
    d.point(p[i], p[i + 1], Pen::Draw);
  }
  d.point(0, 0, Pen::End);
}

void scene(Driver& d) {
  d.colour(Rgb{255, 0, 0, 255}, 0);
  polyline(d, {5, 5, 100, 20, 40, 80});
  polyline(d, {50, 50, 50.2, 50.1});  // a thin dot: both points on one pixel
  LineWidth w;
  w.n = 150;  // 6 pixels at 0.04
  d.pen_width(w);
  d.line_cap(1);
  d.line_join(1, 10.0);
  d.colour(Rgb{0, 255, 0, 128}, 0);
  polyline(d, {10, 60, 60, 10, 110, 60});
  polyline(d, {30, 30, 30, 30});  // a dot
  // A square with a square hole, even-odd.
  const double xs[8] = {60, 110, 110, 60, 75, 95, 95, 75};
  const double ys[8] = {40, 40, 85, 85, 50, 50, 75, 75};
  const int ends[2] = {4, 8};
  Path path;
  path.xs = xs;
  path.ys = ys;
  path.ends = ends;
  path.rule = FillRule::EvenOdd;
  d.fill(path, Rgb{0, 0, 255, 255});
  const std::uint8_t px[12] = {255, 255, 0, 0, 255, 255, 255, 0, 255, 255, 255, 255};
  Image img;
  img.pixels = px;
  img.width = 2;
  img.height = 2;
  img.stride = 6;
  img.x0 = 2;
  img.y0 = 70;
  img.x1 = 22;
  img.y1 = 88;
  d.image(img);
}

TEST(ScreenList, ReplayAtTheSameSizeGivesThePagesPixels) {
  for (const bool aa : {false, true}) {
    Screen s(aa);
    scene(*s.driver);
    s.driver->flush();
    EXPECT_EQ(s.target.shown, 1);
    EXPECT_TRUE(same_pixels(s.replayed(120, 90), s.page)) << "antialias " << aa;
  }
}

TEST(ScreenList, AnEraseKeepsTheLastFrameAndTheAttributes) {
  Screen s(false);
  scene(*s.driver);
  s.driver->erase();
  const std::size_t kept = s.target.list().commands.size();
  EXPECT_LE(kept, 4U);  // width, cap, join, colour
  EXPECT_TRUE(s.target.list().images.empty());
  polyline(*s.driver, {0, 0, 119, 89});  // in the wide green of the first frame
  EXPECT_TRUE(same_pixels(s.replayed(120, 90), s.page));
  s.driver->close();
  EXPECT_EQ(s.target.finished, 1);
}

TEST(ScreenList, DenseThinLinesReplayAlikeAtAnotherSize) {
  // 20,000 points on 120 pixels: most fall on the pixel of the point before. The replay
  // skips those; drawing every point at the new size must give the same page.
  Screen s(false);
  s.driver->colour(Rgb{255, 255, 255, 255}, 0);
  s.driver->point(0, 45, Pen::Move);
  for (int i = 1; i < 20000; ++i) {
    const double x = i * 0.006;
    s.driver->point(x, 45 + 40 * std::sin(x * 0.3) * std::cos(i * 0.01), Pen::Draw);
  }
  s.driver->point(0, 0, Pen::End);
  RasterPage direct;
  direct.allocate(60, 45, Rgb{0, 0, 0, 255});
  std::unique_ptr<Driver> d = make_raster_driver(nullptr);
  DriverSetup setup;
  setup.raster = &direct;
  setup.scale = 0.02;
  ASSERT_TRUE(d->open(nullptr, setup));
  d->colour(Rgb{255, 255, 255, 255}, 0);
  for (const screen::Command& c : s.target.list().commands) {
    if (c.op == screen::Op::Move || c.op == screen::Op::Draw) {
      d->point(c.x * 0.5, c.y * 0.5, c.op == screen::Op::Move ? Pen::Move : Pen::Draw);
    }
  }
  d->point(0, 0, Pen::End);
  d->close();
  EXPECT_TRUE(same_pixels(s.replayed(60, 45), direct));
}

TEST(ScreenList, AResizedWindowGetsThePipelinesScale) {
  // Catches a replay fitted differently from a plot made at the new size: page formats
  // turned or not, every sclmod, hwscal and sclfac, and a hardware page.
  const DeviceInfo& dev = *find_device("XWND");
  const int sizes[][2] = {{853, 603}, {400, 300}, {2500, 1800}, {300, 900}};
  for (const char* page : {"DA4L", "DA4P"}) {
    for (const char* mode : {"DOWN", "FULL", "NONE"}) {
      for (const bool hardware : {false, true}) {
        GlobalBlock g;
        api::setpag(g, page);
        api::sclmod(g, mode);
        api::hwscal(g, 0.8);
        api::sclfac(g, 1.25);
        if (hardware) {
          api::hwpage(g, 1500, 1000);
        }
        g.pipe.device = &dev;
        g.pipe.rotated = page_turned(g, dev);
        const screen::PageFit fit = screen::page_fit(g);
        for (const auto& wh : sizes) {
          g.core.window_width = wh[0];
          g.core.window_height = wh[1];
          EXPECT_DOUBLE_EQ(fit.scale(wh[0], wh[1]), device_scale(g, dev))
              << page << " " << mode << " hwpage " << hardware << " " << wh[0] << "x" << wh[1];
        }
      }
    }
  }
}

}  // namespace
}  // namespace zorvel

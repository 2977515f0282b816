// The device registry and the dispatch built from it.

#include <gtest/gtest.h>

#include "draw/pipeline.h"
#include "drivers/registry.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

TEST(Dispatch, CursorPositionsConvertBack) {
  // Catches an inverse that misses a turn, an offset or the page height, which would put
  // cursor input in the wrong place on some devices.
  PipelineState p;
  p.scale = 1.75;
  p.page_w = 2969;
  p.page_h = 2099;
  p.device_dx = 10;
  p.device_dy = -20;
  for (const Dispatch d : {Dispatch::Pixels, Dispatch::Metafile, Dispatch::Hpgl,
                           Dispatch::HpglSheet, Dispatch::Paper, Dispatch::None}) {
    for (const bool turned : {false, true}) {
      p.dispatch = d;
      p.rotated = turned;
      double dx = 0;
      double dy = 0;
      double x = 0;
      double y = 0;
      to_device(p, 123.25, 456.5, dx, dy);
      from_device(p, dx, dy, x, y);
      EXPECT_NEAR(x, 123.25, 1e-9) << static_cast<int>(d) << turned;
      EXPECT_NEAR(y, 456.5, 1e-9) << static_cast<int>(d) << turned;
    }
  }
}

TEST(Registry, RowsAreConsistent) {
  // Catches a row that would crash or mislead the core: a device with a driver but no
  // file kind for its extension, a keyword that is not four characters or is listed
  // twice, a colour depth
  // the colour code does not know, and a default device that cannot start.
  for (const DeviceInfo& row : all_devices()) {
    const DeviceInfo* d = &row;
    const std::string_view key = d->key;
    EXPECT_EQ(find_device(key), d) << key;
    EXPECT_EQ(d->key.size(), 4U) << key;
    EXPECT_EQ(d->extension.empty(), d->file == FileKind::None) << key;
    EXPECT_TRUE(d->colour_depth == 8 || d->colour_depth == 24) << key;
    EXPECT_GT(d->natural, 0.0) << key;
    EXPECT_NE(d->thinnest, 0.0) << key;
    EXPECT_EQ(find_device(d->code)->code, d->code) << key;
  }
  EXPECT_NE(default_device().factory, nullptr);
  EXPECT_EQ(find_device("NONE"), nullptr);
}

TEST(Images, PlacedWholeOrAsRunsOfPixels) {
  // Catches an image that misses the origin offset, pixel runs that are split or merged
  // wrongly, transparent pixels drawn, and a colour not restored after the fallback.
  const std::uint8_t px[2][3][4] = {{{255, 0, 0, 255}, {255, 0, 0, 255}, {0, 0, 255, 255}},
                                    {{0, 255, 0, 0}, {0, 255, 0, 255}, {0, 255, 0, 255}}};
  Image img;
  img.pixels = &px[0][0][0];
  img.width = 3;
  img.height = 2;
  img.channels = 4;
  img.stride = sizeof px[0];
  img.x0 = 100;
  img.y0 = 200;
  img.x1 = 130;
  img.y1 = 220;
  recording::Plot whole("GKSL", true, kCapFill | kCapImages);
  api::origin(whole.g, 5, 7);
  draw_image(whole.g, img);
  ASSERT_EQ(whole.rec->images.size(), 1U);
  EXPECT_EQ(whole.rec->images[0].x0, 105);
  EXPECT_EQ(whole.rec->images[0].y1, 227);
  EXPECT_TRUE(whole.rec->fills.empty());

  recording::Plot runs;
  api::setclr(runs.g, 7);
  draw_image(runs.g, img);
  ASSERT_EQ(runs.rec->fills.size(), 3U);  // red pair, blue, green pair (one pixel clear)
  EXPECT_EQ(runs.rec->fills[0].xs, (std::vector<double>{100, 120, 120, 100}));
  EXPECT_EQ(runs.rec->fills[1].rgb.b, 255);
  EXPECT_EQ(runs.rec->fills[2].xs, (std::vector<double>{110, 130, 130, 110}));
  EXPECT_EQ(runs.rec->fills[2].ys, (std::vector<double>{210, 210, 220, 220}));
  EXPECT_EQ(runs.g.colour.current, 7);
}

}  // namespace
}  // namespace zorvel

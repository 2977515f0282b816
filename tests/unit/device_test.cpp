// The device registry and the dispatch built from it.

#include <gtest/gtest.h>

#include "draw/pipeline.h"
#include "drivers/registry.h"

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

}  // namespace
}  // namespace zorvel

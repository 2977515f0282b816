#include "core/global_block.h"
#include "draw/pipeline.h"
#include "drivers/registry.h"

namespace zorvel {
namespace {

// Device units per plot unit for each family. The metafile works in centimetres.
double device_scale(const DeviceInfo& dev) {
  switch (dev.family) {
    case DeviceFamily::Metafile:
      return 0.01;
    default:
      return 1.0;
  }
}

}  // namespace

bool open_device(GlobalBlock& g, const DeviceInfo& dev, std::FILE* file) {
  PipelineState& p = g.pipe;
  p.driver = dev.factory();
  p.scale = device_scale(dev);
  p.x_offset = 0.0;
  p.write_error_reported = false;

  DriverSetup setup;
  setup.device = g.core.device;
  setup.page_width = g.page.width;
  setup.page_height = g.page.height;
  setup.scale = p.scale;
  setup.scale_factor = g.page.scale_factor;
  setup.landscape = g.page.width > g.page.height;
  setup.reversed = screen_reversed(g);
  setup.user_offset = g.page.hw_origin_set;
  setup.offset_x = g.page.hw_origin_x;
  setup.offset_y = g.page.hw_origin_y;
  setup.stamp = current_date_time();
  setup.single_page = g.ps.single_page;
  if (!p.driver->open(file, setup)) {
    p.driver.reset();
    return false;
  }
  return true;
}

bool close_device(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  if (!p.driver) {
    return true;
  }
  const bool ok = p.driver->close();
  p.driver.reset();
  return ok;
}

}  // namespace zorvel

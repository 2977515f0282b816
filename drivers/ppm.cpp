// Binary portable pixmaps: "P6", the width and height, the maximum 255, each on a line of
// its own, then the rows from the top, 3 bytes a pixel. The format has no size limit.

#include "core/format.h"
#include "drivers/image_files.h"
#include "drivers/raster_driver.h"

namespace zorvel {

bool write_ppm(Sink& out, const PixelView& px) {
  if (!valid_page(px)) {
    return false;
  }
  char header[2 * kNumberBuffer + 16] = "P6\n";
  char* p = format_int(header + 3, px.width);
  *p++ = ' ';
  p = format_int(p, px.height);
  for (const char c : {'\n', '2', '5', '5', '\n'}) {
    *p++ = c;
  }
  BlockWriter w(out);
  w.put(header, static_cast<std::size_t>(p - header));
  const std::size_t n = static_cast<std::size_t>(px.width) * 3;
  for (int j = 0; j < px.height; ++j) {
    if (!w.put(px.rgb + static_cast<std::size_t>(j) * px.stride, n)) {
      return false;
    }
  }
  return w.finish();
}

// The "PPM" device: the raster driver, its pages written by this writer.
std::unique_ptr<Driver> make_ppm_driver() { return make_raster_driver(image_writer_for(".ppm")); }

}  // namespace zorvel

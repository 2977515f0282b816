// The raw image format: width and height as 32-bit big-endian integers, then the rows
// from the top, R, G, B a pixel, nothing between rows. Any int size fits the header.

#include <cstdint>

#include "drivers/image_files.h"
#include "drivers/raster_driver.h"

namespace zorvel {

bool write_raw_image(Sink& out, const PixelView& px) {
  if (!valid_page(px)) {
    return false;
  }
  std::uint8_t header[8];
  for (int i = 0; i < 4; ++i) {
    header[i] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(px.width) >> (24 - 8 * i));
    header[4 + i] =
        static_cast<std::uint8_t>(static_cast<std::uint32_t>(px.height) >> (24 - 8 * i));
  }
  BlockWriter w(out);
  w.put(header, sizeof header);
  const std::size_t n = static_cast<std::size_t>(px.width) * 3;
  for (int j = 0; j < px.height; ++j) {
    if (!w.put(px.rgb + static_cast<std::size_t>(j) * px.stride, n)) {
      return false;
    }
  }
  return w.finish();
}

// The "IMAG" device: the raster driver, its pages written by this writer.
std::unique_ptr<Driver> make_imag_driver() { return make_raster_driver(image_writer_for(".img")); }

}  // namespace zorvel

// Windows bitmaps: the file header, the 40-byte BITMAPINFOHEADER and 24-bit pixels.
//
//   BITMAPFILEHEADER  14 bytes  "BM", file size (4), two reserved words (2 + 2), offset
//                               of the pixels (4): 54
//   BITMAPINFOHEADER  40 bytes  its size (4): 40, width (4), height (4, positive: rows
//                               from the bottom), planes (2): 1, bits a pixel (2): 24,
//                               compression (4): 0, size of the pixels (4), pixels a
//                               metre across and down (4 + 4): 3780 (96 dpi), colours
//                               used and important (4 + 4): 0
//   pixels            B, G, R a pixel, the bottom row first, each row padded with zeros
//                     to a multiple of 4 bytes
//
// All numbers are little-endian. Limits: the file size is a 32-bit field, so a page whose
// file would reach 4 GiB is refused.

#include <cstdint>
#include <cstring>

#include "drivers/image_files.h"
#include "drivers/raster_driver.h"

namespace zorvel {
namespace {

constexpr std::uint32_t kHeaderBytes = 14 + 40;
constexpr std::uint32_t kPixelsPerMetre = 3780;  // 96 dpi

std::uint8_t* put_le(std::uint8_t* p, std::uint32_t v, int bytes) {
  for (int i = 0; i < bytes; ++i) {
    *p++ = static_cast<std::uint8_t>(v >> (8 * i));
  }
  return p;
}

}  // namespace

bool write_bmp(Sink& out, const PixelView& px) {
  if (!valid_page(px)) {
    return false;
  }
  const std::uint64_t row = (static_cast<std::uint64_t>(px.width) * 3 + 3) / 4 * 4;
  const std::uint64_t pixels = row * static_cast<std::uint64_t>(px.height);
  if (pixels > 0xFFFFFFFFU - kHeaderBytes) {
    return false;
  }
  BlockWriter w(out);
  std::uint8_t header[kHeaderBytes];
  std::uint8_t* p = header;
  *p++ = 'B';
  *p++ = 'M';
  p = put_le(p, kHeaderBytes + static_cast<std::uint32_t>(pixels), 4);
  p = put_le(p, 0, 4);
  p = put_le(p, kHeaderBytes, 4);
  p = put_le(p, 40, 4);
  p = put_le(p, static_cast<std::uint32_t>(px.width), 4);
  p = put_le(p, static_cast<std::uint32_t>(px.height), 4);
  p = put_le(p, 1, 2);
  p = put_le(p, 24, 2);
  p = put_le(p, 0, 4);
  p = put_le(p, static_cast<std::uint32_t>(pixels), 4);
  p = put_le(p, kPixelsPerMetre, 4);
  p = put_le(p, kPixelsPerMetre, 4);
  p = put_le(p, 0, 4);
  put_le(p, 0, 4);
  w.put(header, sizeof header);
  const auto n = static_cast<std::size_t>(row);
  for (int j = px.height - 1; j >= 0; --j) {
    std::uint8_t* dst = w.room(n);
    if (dst == nullptr) {
      return false;
    }
    const std::uint8_t* src = px.rgb + static_cast<std::size_t>(j) * px.stride;
    for (int i = 0; i < px.width; ++i, src += 3, dst += 3) {
      dst[0] = src[2];
      dst[1] = src[1];
      dst[2] = src[0];
    }
    std::memset(dst, 0, n - static_cast<std::size_t>(px.width) * 3);
    w.commit(n);
  }
  return w.finish();
}

// The "BMP" device: the raster driver, its pages written by this writer.
std::unique_ptr<Driver> make_bmp_driver() { return make_raster_driver(image_writer_for(".bmp")); }

}  // namespace zorvel

#pragma once
// Writers of finished raster pages as image files, one source each: png.cpp, tiff.cpp,
// gif.cpp, bmp.cpp, ppm.cpp, imag.cpp, ps_image.cpp. They take a page of 8-bit RGB pixels
// and hand the whole file to a Sink (the plot file, or memory); none keeps state between
// calls. Each returns false when a write failed, memory ran out or the page cannot be held
// by the format (its size limits); the sink then holds a partial file at most.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "drivers/driver.h"
#include "drivers/sink.h"

namespace zorvel {

// A page of pixels: `height` rows from the top, each `width` pixels of 3 bytes (R, G, B),
// `stride` bytes apart.
struct PixelView {
  const std::uint8_t* rgb = nullptr;
  int width = 0;
  int height = 0;
  std::size_t stride = 0;
};

// PNG by our own writer over zlib: palette (1, 2, 4 or 8 bits) when the page has at most
// 256 colours, RGB otherwise, row filters chosen for size.
bool write_png(Sink& out, const PixelView& px);
// An image block (RGB or RGBA, Image::channels) as a PNG file in memory; empty on failure.
// The SVG driver embeds these.
std::vector<std::uint8_t> encode_png(const Image& img);

// TIFF through libtiff: baseline RGB, one strip per few rows, compressed.
enum class TiffCompression { Deflate, Lzw, None };
bool write_tiff(Sink& out, const PixelView& px, TiffCompression compression);

// GIF through giflib: the page's own colours when there are at most 256, else each pixel
// as the nearest colour of `table` (the plot's colour table, 256 entries).
bool write_gif(Sink& out, const PixelView& px, std::span<const Rgb> table);

// Windows bitmap, 24 bits, rows from the bottom padded to 4 bytes.
bool write_bmp(Sink& out, const PixelView& px);

// Binary portable pixmap (P6, maximum 255).
bool write_ppm(Sink& out, const PixelView& px);

// The raw image: width and height as 32-bit big-endian integers, then the rows from the
// top, 3 bytes a pixel, nothing between them.
bool write_raw_image(Sink& out, const PixelView& px);

// Where the raster-image PostScript writer places the image, in PostScript driver units
// (1/200 cm): the user's hworig and hwpage doubled when set.
struct PsImagePlacement {
  bool user_offset = false;
  int offset_x = 0;  // driver units, when user_offset
  int offset_y = 0;
  bool user_page = false;
  int page_width = 0;  // driver units, when user_page
  int page_height = 0;
};
// A one-page PostScript file holding the image as hexadecimal RGB.
bool write_ps_image(Sink& out, const PixelView& px, const PsImagePlacement& place);

}  // namespace zorvel

#pragma once
// The driver of the raster devices: it draws on the raster page and, at the end of each
// page, hands the page to the writer of the device's image format. Each image format's
// source makes its driver with make_raster_driver and its writer.

#include <memory>
#include <span>
#include <string_view>

#include "drivers/driver.h"
#include "drivers/image_files.h"

namespace zorvel {

struct ImageOptions {
  std::span<const Rgb> table;  // the colour table, for formats with a palette
  TiffCompression tiff = TiffCompression::Deflate;
  PsImagePlacement ps;  // the PostScript image's place on the sheet
};

// Writes a finished page as a whole file; false when a write failed.
using ImageWriter = bool (*)(Sink& out, const PixelView& px, const ImageOptions& options);

// A raster driver writing its pages through `writer`; null: the virtual bitmap, which
// keeps its page in memory only.
std::unique_ptr<Driver> make_raster_driver(ImageWriter writer);

// The writer for a file name's extension (png, tif, tiff, gif, bmp, ppm, img, ps, eps;
// any case), or null.
ImageWriter image_writer_for(std::string_view file_name);

// The 256 entries of a colour table (0x00RRGGBB) as RGB.
void table_colours(const int* table, Rgb (&out)[256]);

}  // namespace zorvel

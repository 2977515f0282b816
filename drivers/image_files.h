#pragma once
// Writers of finished raster pages as image files, one source each: png.cpp, tiff.cpp,
// gif.cpp, bmp.cpp, ppm.cpp, imag.cpp, ps_image.cpp. They take a page of 8-bit RGB pixels
// and hand the whole file to a Sink (the plot file, or memory); none keeps state between
// calls. Each returns false when a write failed, memory ran out or the page cannot be held
// by the format (its size limits); the sink then holds a partial file at most.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
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

// A page the writers accept: pixels present, at least one row of one pixel, rows that do
// not overlap. Each writer checks its format's own size limits besides.
inline bool valid_page(const PixelView& px) {
  return px.rgb != nullptr && px.width > 0 && px.height > 0 &&
         px.stride / 3 >= static_cast<std::size_t>(px.width);
}

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

// Shared by the writers
// =====================

// Bytes a writer gathers before handing them to the sink.
inline constexpr std::size_t kImageBlock = std::size_t{1} << 16;

// Gathers a writer's bytes into blocks of kImageBlock, so that the sink sees a few large
// writes however small the pieces are. The first failure (of the sink, or of memory) is
// sticky: later calls do nothing and finish() returns false.
class BlockWriter {
 public:
  explicit BlockWriter(Sink& out) : out_(out) {}

  // Room for n bytes at the end of the block, handing the bytes gathered so far to the
  // sink first when n would not fit; a request larger than a block grows it. Null after a
  // failure. The bytes count once commit() says how many were filled in.
  std::uint8_t* room(std::size_t n) {
    if (failed_) {
      return nullptr;
    }
    if (used_ + n > buf_.size()) {
      if (used_ > 0 && !drain()) {
        return nullptr;
      }
      try {
        if (n > buf_.size()) {
          buf_.resize(n < kImageBlock ? kImageBlock : n);
        }
      } catch (const std::bad_alloc&) {
        failed_ = true;
        return nullptr;
      }
    }
    return buf_.data() + used_;
  }
  void commit(std::size_t n) { used_ += n; }

  bool put(const void* data, std::size_t n) {
    const auto* p = static_cast<const std::uint8_t*>(data);
    while (n > 0) {
      const std::size_t part = n < kImageBlock ? n : kImageBlock;
      std::uint8_t* dst = room(part);
      if (dst == nullptr) {
        return false;
      }
      std::memcpy(dst, p, part);
      commit(part);
      p += part;
      n -= part;
    }
    return !failed_;
  }

  // Hands over what is left; true when every write succeeded.
  bool finish() { return !failed_ && (used_ == 0 || drain()); }

  bool failed() const { return failed_; }

 private:
  bool drain() {
    failed_ = !out_.write(reinterpret_cast<const char*>(buf_.data()), used_);
    used_ = 0;
    return !failed_;
  }

  Sink& out_;
  std::vector<std::uint8_t> buf_;
  std::size_t used_ = 0;
  bool failed_ = false;
};

// The distinct colours of a page when it has at most kMax of them (PNG and GIF write
// such pages with a palette): colours in the order they first appear, row by row, and
// each one's index. Counting compares each pixel with the one before and each row with
// the row above, so the runs of a plot cost little, and it stops at the colour after the
// kMax-th. Colours are 0xRRGGBB.
class PageColours {
 public:
  static constexpr int kMax = 256;

  // Collects the page's colours; false when it has more than kMax.
  bool collect(const PixelView& px);
  int size() const { return count_; }
  std::uint32_t colour(int i) const { return colours_[i]; }
  // The indices of `width` pixels at `rgb`, one byte each, into `out`. Every pixel must
  // have one of the collected colours (anything else reads as index 0).
  void map_row(const std::uint8_t* rgb, int width, std::uint8_t* out) const;

 private:
  static constexpr int kSlots = 1024;  // open addressing: at most a quarter full
  int slot(std::uint32_t c) const;

  std::uint32_t keys_[kSlots] = {};  // colour + 1; 0 is an empty slot
  std::uint8_t index_[kSlots];
  std::uint32_t colours_[kMax];
  int count_ = 0;
};

}  // namespace zorvel

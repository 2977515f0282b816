// PNG files, written by our own encoder over zlib.
//
//   signature, IHDR, PLTE (palette images), IDAT ..., IEND
//
// Rows are filtered one at a time and fed to deflate at its default level; each IDAT
// chunk carries up to 64 KiB of the compressed stream and goes to the sink as soon as
// deflate has filled it, so neither the filtered page nor its compressed form is ever
// held whole.
//
// Colour type. A page of at most 256 colours (a plot of flat colours) gets a palette, in
// the order the colours first appear, with the fewest bits a pixel that index it (1, 2,
// 4 or 8). Its rows stay unfiltered: the filters predict a byte from its neighbours,
// which for indices (packed several to a byte, at that) are unrelated numbers, and
// deflate does better on the plain runs. Any other page is 8-bit RGB, each row with the
// filter whose output, read as signed bytes, has the smallest sum of magnitudes (the
// usual heuristic: small differences compress well). Image blocks for SVG (encode_png)
// go the same way; RGBA blocks stay RGBA with filtered rows.
//
// Limits: PNG allows 2^31 - 1 pixels a side, which any positive int meets; the writers
// refuse a row whose bytes would not fit in memory's address range.

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "drivers/image_files.h"
#include "drivers/raster_driver.h"

namespace zorvel {
namespace {

// Compressed bytes a chunk holds at most.
constexpr std::size_t kChunkData = kImageBlock;
// Input handed to deflate at a time (its counters are 32 bits).
constexpr std::size_t kDeflateInput = std::size_t{1} << 30;
// PNG colour types.
constexpr std::uint8_t kTypeRgb = 2;
constexpr std::uint8_t kTypePalette = 3;
constexpr std::uint8_t kTypeRgba = 6;

void put_u32(std::uint8_t* p, std::uint32_t v) {
  p[0] = static_cast<std::uint8_t>(v >> 24);
  p[1] = static_cast<std::uint8_t>(v >> 16);
  p[2] = static_cast<std::uint8_t>(v >> 8);
  p[3] = static_cast<std::uint8_t>(v);
}

// Frames the n data bytes at p + 8 as a chunk: length and type before them, the CRC of
// type and data after. Returns the chunk's size.
std::size_t frame_chunk(std::uint8_t* p, const char* type, std::size_t n) {
  put_u32(p, static_cast<std::uint32_t>(n));
  std::memcpy(p + 4, type, 4);
  put_u32(p + 8 + n, static_cast<std::uint32_t>(crc32_z(0, p + 4, n + 4)));
  return n + 12;
}

// Bytes a pixel and the shape of the image as written.
struct PngLayout {
  int width = 0;
  int height = 0;
  std::uint8_t colour_type = kTypeRgb;
  int depth = 8;        // bits a sample (palette: an index)
  std::size_t bpp = 3;  // bytes a pixel for the filters (1 for palette images)
  std::size_t row = 0;  // bytes of a row without its filter byte
};

// Signature, IHDR and the palette in one write.
bool write_header(Sink& out, const PngLayout& l, const PageColours* palette) {
  std::uint8_t h[8 + 25 + 12 + 3 * PageColours::kMax];
  static constexpr std::uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  std::memcpy(h, kSignature, 8);
  std::uint8_t* ihdr = h + 8;
  put_u32(ihdr + 8, static_cast<std::uint32_t>(l.width));
  put_u32(ihdr + 12, static_cast<std::uint32_t>(l.height));
  ihdr[16] = static_cast<std::uint8_t>(l.depth);
  ihdr[17] = l.colour_type;
  ihdr[18] = 0;  // deflate
  ihdr[19] = 0;  // adaptive filtering, five filter types
  ihdr[20] = 0;  // not interlaced
  std::size_t n = 8 + frame_chunk(ihdr, "IHDR", 13);
  if (palette != nullptr) {
    std::uint8_t* plte = h + n;
    for (int i = 0; i < palette->size(); ++i) {
      const std::uint32_t c = palette->colour(i);
      plte[8 + 3 * i] = static_cast<std::uint8_t>(c >> 16);
      plte[9 + 3 * i] = static_cast<std::uint8_t>(c >> 8);
      plte[10 + 3 * i] = static_cast<std::uint8_t>(c);
    }
    n += frame_chunk(plte, "PLTE", 3 * static_cast<std::size_t>(palette->size()));
  }
  return out.write(reinterpret_cast<const char*>(h), n);
}

// The zlib stream of the image data, cut into IDAT chunks as deflate fills them; the
// last one goes out together with IEND.
class IdatStream {
 public:
  explicit IdatStream(Sink& out) : out_(out) {}
  IdatStream(const IdatStream&) = delete;
  IdatStream& operator=(const IdatStream&) = delete;
  ~IdatStream() {
    if (ready_) {
      deflateEnd(&z_);
    }
  }

  // False when zlib cannot start (no memory).
  bool start() {
    buf_.reset(new (std::nothrow) std::uint8_t[8 + kChunkData + 4 + 12]);
    if (buf_ == nullptr || deflateInit(&z_, Z_DEFAULT_COMPRESSION) != Z_OK) {
      return false;
    }
    ready_ = true;
    z_.next_out = buf_.get() + 8;
    z_.avail_out = static_cast<uInt>(kChunkData);
    return true;
  }

  bool put(const std::uint8_t* data, std::size_t n) {
    while (n > 0) {
      const std::size_t part = std::min(n, kDeflateInput);
      z_.next_in = data;
      z_.avail_in = static_cast<uInt>(part);
      data += part;
      n -= part;
      if (!pump(Z_NO_FLUSH)) {
        return false;
      }
    }
    return true;
  }

  // Ends the stream and writes the last IDAT and IEND.
  bool finish() {
    z_.avail_in = 0;
    return pump(Z_FINISH);
  }

 private:
  bool pump(int flush) {
    for (;;) {
      const int rc = deflate(&z_, flush);
      if (rc == Z_STREAM_END) {
        return emit(true);
      }
      if (rc != Z_OK && rc != Z_BUF_ERROR) {
        return false;
      }
      if (z_.avail_out == 0) {
        if (!emit(false)) {
          return false;
        }
      } else if (flush == Z_FINISH) {
        return false;  // room left yet no end: zlib is broken
      } else if (z_.avail_in == 0) {
        return true;
      }
    }
  }

  // Writes the compressed bytes gathered so far as an IDAT chunk (none when there are
  // none), with IEND behind it when `last`.
  bool emit(bool last) {
    const std::size_t n = kChunkData - z_.avail_out;
    std::size_t size = n > 0 ? frame_chunk(buf_.get(), "IDAT", n) : 0;
    std::uint8_t* p = buf_.get();
    if (n == 0) {
      p += 8 + kChunkData + 4;  // IEND alone, in the space after the chunk
    }
    if (last) {
      size += frame_chunk(p + size, "IEND", 0);
    }
    z_.next_out = buf_.get() + 8;
    z_.avail_out = static_cast<uInt>(kChunkData);
    return size == 0 || out_.write(reinterpret_cast<const char*>(p), size);
  }

  Sink& out_;
  z_stream z_{};
  std::unique_ptr<std::uint8_t[]> buf_;  // chunk frame, data, CRC, room for IEND
  bool ready_ = false;
};

// Row filters
// ===========

// The row `row` of n bytes as filter type `type` (0 None, 1 Sub, 2 Up, 3 Average,
// 4 Paeth) into `out`; `bpp` bytes a pixel, `prev` the row above (zeros for the first).
// For the first pixel of a row, whose left neighbours count as 0, Paeth predicts the
// byte above and Average half of it.
void filter_row(int type, const std::uint8_t* row, const std::uint8_t* prev, std::size_t n,
                std::size_t bpp, std::uint8_t* out) {
  const std::size_t first = std::min(bpp, n);
  switch (type) {
    case 1:
      std::memcpy(out, row, first);
      for (std::size_t i = first; i < n; ++i) {
        out[i] = static_cast<std::uint8_t>(row[i] - row[i - bpp]);
      }
      return;
    case 2:
      for (std::size_t i = 0; i < n; ++i) {
        out[i] = static_cast<std::uint8_t>(row[i] - prev[i]);
      }
      return;
    case 3:
      for (std::size_t i = 0; i < first; ++i) {
        out[i] = static_cast<std::uint8_t>(row[i] - prev[i] / 2);
      }
      for (std::size_t i = first; i < n; ++i) {
        out[i] = static_cast<std::uint8_t>(row[i] - (row[i - bpp] + prev[i]) / 2);
      }
      return;
    case 4:
      for (std::size_t i = 0; i < first; ++i) {
        out[i] = static_cast<std::uint8_t>(row[i] - prev[i]);
      }
      for (std::size_t i = first; i < n; ++i) {
        const int a = row[i - bpp];
        const int b = prev[i];
        const int c = prev[i - bpp];
        const int pa = std::abs(b - c);
        const int pb = std::abs(a - c);
        const int pc = std::abs(a + b - 2 * c);
        const int predicted = pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
        out[i] = static_cast<std::uint8_t>(row[i] - predicted);
      }
      return;
    default:
      std::memcpy(out, row, n);
      return;
  }
}

// Sum of the bytes as signed magnitudes, given up once it reaches `limit`.
unsigned long long signed_sum(const std::uint8_t* p, std::size_t n, unsigned long long limit) {
  unsigned long long sum = 0;
  for (std::size_t i = 0; i < n && sum < limit; ++i) {
    sum += p[i] < 128 ? p[i] : 256U - p[i];
  }
  return sum;
}

// Writers
// =======

// Pixels of `l.bpp` bytes (RGB or RGBA) with each row's filter chosen for size.
bool write_filtered(Sink& out, const std::uint8_t* pixels, std::size_t stride, const PngLayout& l) {
  if (!write_header(out, l, nullptr)) {
    return false;
  }
  IdatStream idat(out);
  if (!idat.start()) {
    return false;
  }
  std::vector<std::uint8_t> zeros(l.row, 0);
  std::vector<std::uint8_t> trial(l.row + 1);
  std::vector<std::uint8_t> best(l.row + 1);
  const std::uint8_t* prev = zeros.data();
  for (int j = 0; j < l.height; ++j) {
    const std::uint8_t* row = pixels + static_cast<std::size_t>(j) * stride;
    unsigned long long least = ~0ULL;
    for (int type = 0; type <= 4; ++type) {
      filter_row(type, row, prev, l.row, l.bpp, trial.data() + 1);
      const unsigned long long sum = signed_sum(trial.data() + 1, l.row, least);
      if (sum < least) {
        least = sum;
        trial[0] = static_cast<std::uint8_t>(type);
        std::swap(trial, best);
      }
    }
    if (!idat.put(best.data(), best.size())) {
      return false;
    }
    prev = row;
  }
  return idat.finish();
}

// Pixels as indices of `colours`, packed at l.depth bits, rows unfiltered.
bool write_palette(Sink& out, const PixelView& px, const PageColours& colours, const PngLayout& l) {
  if (!write_header(out, l, &colours)) {
    return false;
  }
  IdatStream idat(out);
  if (!idat.start()) {
    return false;
  }
  std::vector<std::uint8_t> index(static_cast<std::size_t>(px.width));
  std::vector<std::uint8_t> row(l.row + 1);
  const int per_byte = 8 / l.depth;
  for (int j = 0; j < l.height; ++j) {
    colours.map_row(px.rgb + static_cast<std::size_t>(j) * px.stride, px.width, index.data());
    row[0] = 0;  // filter None
    if (l.depth == 8) {
      std::memcpy(row.data() + 1, index.data(), index.size());
    } else {
      std::fill(row.begin() + 1, row.end(), 0);
      for (int i = 0; i < px.width; ++i) {  // leftmost pixel in the high bits
        const int shift = 8 - l.depth * (i % per_byte + 1);
        row[1 + static_cast<std::size_t>(i / per_byte)] |=
            static_cast<std::uint8_t>(index[static_cast<std::size_t>(i)] << shift);
      }
    }
    if (!idat.put(row.data(), row.size())) {
      return false;
    }
  }
  return idat.finish();
}

// Whether a row of `width` pixels of `bpp` bytes, with its filter byte, fits size_t.
bool row_fits(int width, std::size_t bpp) {
  return static_cast<std::size_t>(width) <= (SIZE_MAX - 1) / bpp;
}

// Bytes gathered in memory for encode_png; allocation failure counts as a failed write.
class VectorSink final : public Sink {
 public:
  bool write(const char* data, std::size_t n) override {
    try {
      bytes.insert(bytes.end(), data, data + n);
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }
  std::vector<std::uint8_t> bytes;
};

}  // namespace

bool write_png(Sink& out, const PixelView& px) {
  if (!valid_page(px) || !row_fits(px.width, 3)) {
    return false;
  }
  PngLayout l;
  l.width = px.width;
  l.height = px.height;
  try {
    PageColours colours;
    if (colours.collect(px)) {
      const int count = colours.size();
      l.colour_type = kTypePalette;
      l.depth = count <= 2 ? 1 : count <= 4 ? 2 : count <= 16 ? 4 : 8;
      l.bpp = 1;
      l.row = (static_cast<std::size_t>(px.width) * static_cast<std::size_t>(l.depth) + 7) / 8;
      return write_palette(out, px, colours, l);
    }
    l.row = static_cast<std::size_t>(px.width) * 3;
    return write_filtered(out, px.rgb, px.stride, l);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

std::vector<std::uint8_t> encode_png(const Image& img) {
  VectorSink out;
  bool ok = false;
  if (img.channels == 3) {
    ok = write_png(out, PixelView{img.pixels, img.width, img.height, img.stride});
  } else if (img.channels == 4 && img.pixels != nullptr && img.width > 0 && img.height > 0 &&
             row_fits(img.width, 4) && img.stride / 4 >= static_cast<std::size_t>(img.width)) {
    PngLayout l;
    l.width = img.width;
    l.height = img.height;
    l.colour_type = kTypeRgba;
    l.bpp = 4;
    l.row = static_cast<std::size_t>(img.width) * 4;
    try {
      ok = write_filtered(out, img.pixels, img.stride, l);
    } catch (const std::bad_alloc&) {
      ok = false;
    }
  }
  if (!ok) {
    return {};
  }
  return std::move(out.bytes);
}

// The "PNG" device: the raster driver, its pages written by this writer.
std::unique_ptr<Driver> make_png_driver() { return make_raster_driver(image_writer_for(".png")); }

}  // namespace zorvel

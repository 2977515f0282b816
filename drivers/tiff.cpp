// TIFF files through libtiff.
//
// Baseline RGB: 8 bits a sample, samples of a pixel together (PLANARCONFIG_CONTIG),
// strips of as many rows as fill about 64 KiB (at least one), 96 pixels an inch, the
// library's name as Software. Compression is Deflate or LZW, both with the horizontal
// predictor (each sample stored as its difference from the pixel to its left: runs turn
// into zeros and gradients into runs; with Deflate, a 853x603 plot of flat colours comes
// out 5 % smaller than without, a page of gradients four times smaller), or none.
//
// libtiff writes its directory last and seeks back to link it in, so the file is built in
// a growable block of memory through TIFFClientOpen and handed to the sink when complete.
// libtiff's messages never reach standard error: a failure is this function's false.
// With libtiff 4.5 and later, handlers of the open handle take them; older versions have
// only the process-wide handlers, which are silenced once.
//
// Limits: classic TIFF offsets are 32 bits, so a file beyond 4 GiB fails in libtiff.

#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <new>
#include <vector>

#include "drivers/image_files.h"
#include "drivers/raster_driver.h"

namespace zorvel {
namespace {

// The file as libtiff writes it: a byte vector with a position. A failed allocation is
// reported to libtiff as a short write.
struct MemoryFile {
  std::vector<std::uint8_t> bytes;
  std::uint64_t pos = 0;
};

MemoryFile& file_of(thandle_t h) { return *static_cast<MemoryFile*>(h); }

tmsize_t memory_read(thandle_t h, void* buf, tmsize_t n) {
  MemoryFile& f = file_of(h);
  if (n <= 0 || f.pos >= f.bytes.size()) {
    return 0;
  }
  const auto count = static_cast<std::size_t>(
      std::min<std::uint64_t>(static_cast<std::uint64_t>(n), f.bytes.size() - f.pos));
  std::memcpy(buf, f.bytes.data() + f.pos, count);
  f.pos += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t memory_write(thandle_t h, void* buf, tmsize_t n) {
  MemoryFile& f = file_of(h);
  if (n < 0) {
    return -1;
  }
  const std::uint64_t end = f.pos + static_cast<std::uint64_t>(n);
  if (end < f.pos || end > SIZE_MAX) {
    return -1;
  }
  try {
    if (end > f.bytes.size()) {
      f.bytes.resize(static_cast<std::size_t>(end));  // geometric growth: vector's own
    }
  } catch (const std::exception&) {
    return -1;  // no exception may cross libtiff's C frames
  }
  std::memcpy(f.bytes.data() + f.pos, buf, static_cast<std::size_t>(n));
  f.pos = end;
  return n;
}

toff_t memory_seek(thandle_t h, toff_t off, int whence) {
  MemoryFile& f = file_of(h);
  std::uint64_t base = 0;
  if (whence == SEEK_CUR) {
    base = f.pos;
  } else if (whence == SEEK_END) {
    base = f.bytes.size();
  }
  // Offsets arrive as unsigned; a step back from the current place or the end wraps
  // around, and the sum wraps back.
  f.pos = base + off;
  return f.pos;
}

int memory_close(thandle_t) { return 0; }
toff_t memory_size(thandle_t h) { return file_of(h).bytes.size(); }
int memory_map(thandle_t, void**, toff_t*) { return 0; }
void memory_unmap(thandle_t, void*, toff_t) {}

// Opens the TIFF in memory with libtiff's messages silenced.
#if TIFFLIB_VERSION >= 20221213
int quiet(TIFF*, void*, const char*, const char*, va_list) {
  return 1;  // handled: the global handlers are not called
}

TIFF* open_memory(MemoryFile& file) {
  TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
  if (options == nullptr) {
    return nullptr;
  }
  TIFFOpenOptionsSetErrorHandlerExtR(options, quiet, nullptr);
  TIFFOpenOptionsSetWarningHandlerExtR(options, quiet, nullptr);
  TIFF* tif = TIFFClientOpenExt("memory", "w", &file, memory_read, memory_write, memory_seek,
                                memory_close, memory_size, memory_map, memory_unmap, options);
  TIFFOpenOptionsFree(options);
  return tif;
}
#else
TIFF* open_memory(MemoryFile& file) {
  static std::once_flag silenced;
  std::call_once(silenced, [] {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
  });
  return TIFFClientOpen("memory", "w", &file, memory_read, memory_write, memory_seek, memory_close,
                        memory_size, memory_map, memory_unmap);
}
#endif

bool set_tags(TIFF* tif, const PixelView& px, TiffCompression compression, int strip_rows) {
  const int scheme = compression == TiffCompression::Deflate ? COMPRESSION_ADOBE_DEFLATE
                     : compression == TiffCompression::Lzw   ? COMPRESSION_LZW
                                                             : COMPRESSION_NONE;
  bool ok = TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(px.width)) &&
            TIFFSetField(tif, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(px.height)) &&
            TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 8) &&
            TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, 3) &&
            TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB) &&
            TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
            TIFFSetField(tif, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT) &&
            TIFFSetField(tif, TIFFTAG_COMPRESSION, scheme) &&
            TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(strip_rows)) &&
            TIFFSetField(tif, TIFFTAG_XRESOLUTION, 96.0) &&
            TIFFSetField(tif, TIFFTAG_YRESOLUTION, 96.0) &&
            TIFFSetField(tif, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH) &&
            TIFFSetField(tif, TIFFTAG_SOFTWARE, "Zorvel");
  if (ok && scheme != COMPRESSION_NONE) {
    ok = TIFFSetField(tif, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  }
  return ok;
}

// The strips, each gathered from the page's rows into one buffer (libtiff's predictor
// may change the buffer it is given, so it never sees the page itself).
bool write_strips(TIFF* tif, const PixelView& px, int strip_rows) {
  const std::size_t row = static_cast<std::size_t>(px.width) * 3;
  std::vector<std::uint8_t> strip(row * static_cast<std::size_t>(strip_rows));
  for (int j = 0, s = 0; j < px.height; j += strip_rows, ++s) {
    const int rows = std::min(strip_rows, px.height - j);
    for (int k = 0; k < rows; ++k) {
      std::memcpy(strip.data() + static_cast<std::size_t>(k) * row,
                  px.rgb + static_cast<std::size_t>(j + k) * px.stride, row);
    }
    const std::size_t n = row * static_cast<std::size_t>(rows);
    if (TIFFWriteEncodedStrip(tif, static_cast<std::uint32_t>(s), strip.data(),
                              static_cast<tmsize_t>(n)) < 0) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool write_tiff(Sink& out, const PixelView& px, TiffCompression compression) {
  if (!valid_page(px) || static_cast<std::size_t>(px.width) > SIZE_MAX / 3) {
    return false;
  }
  const std::size_t row = static_cast<std::size_t>(px.width) * 3;
  const int strip_rows = static_cast<int>(
      std::clamp<std::size_t>(kImageBlock / row, 1, static_cast<std::size_t>(px.height)));
  MemoryFile file;
  TIFF* tif = open_memory(file);
  if (tif == nullptr) {
    return false;
  }
  bool ok = false;
  try {
    ok = set_tags(tif, px, compression, strip_rows) && write_strips(tif, px, strip_rows) &&
         TIFFFlush(tif) == 1;
  } catch (const std::bad_alloc&) {
    ok = false;
  }
  TIFFClose(tif);
  return ok && out.write(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
}

// The "TIFF" device: the raster driver, its pages written by this writer.
std::unique_ptr<Driver> make_tiff_driver() { return make_raster_driver(image_writer_for(".tif")); }

}  // namespace zorvel

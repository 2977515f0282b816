// The raster page as the program sees it: its size (imgsiz, imgdpi) and options
// (imgopt), access to single pixels and rows between imgini and imgfin, copies of the
// whole page as RGB bytes or a PNG file in memory, and the page written to any image file
// on demand (wimage).

#include <algorithm>
#include <cmath>
#include <string>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/platform.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "drivers/raster_driver.h"
#include "drivers/registry.h"

namespace zorvel {
namespace {

// Resolutions imgdpi takes.
constexpr int kMinDpi = 10;
constexpr int kMaxDpi = 2400;

// The page for pixel access: flushed, with access granted; null after a warning.
RasterPage* accessible_page(GlobalBlock& g) {
  if (!g.raster.access) {
    warn(g, 55);
    return nullptr;
  }
  end_polyline(g);  // what was drawn so far is on the page
  return &g.raster.page;
}

// Warning n with a page size as its two values.
void warn_size(GlobalBlock& g, int n, double w, double h) {
  warn(g, n, std::to_string(static_cast<long long>(w)), std::to_string(static_cast<long long>(h)));
}

bool pixel_in_page(GlobalBlock& g, const RasterPage& page, int ix, int iy, int n = 1) {
  return check_range(g, ix, 0, page.width() - n) && check_range(g, iy, 0, page.height() - 1);
}

int pixel_value(const GlobalBlock& g, const std::uint8_t* p) {
  if (g.colour.depth <= 8) {
    return nearest_index(g, p[0], p[1], p[2]);
  }
  return explicit_rgb(p[0], p[1], p[2]);
}

void put_pixel(const GlobalBlock& g, std::uint8_t* p, int value) {
  const Rgb c = colour_rgb(g, value);
  p[0] = static_cast<std::uint8_t>(c.r);
  p[1] = static_cast<std::uint8_t>(c.g);
  p[2] = static_cast<std::uint8_t>(c.b);
}

// The page to copy out or write: the open plot's or the last plot's; null after
// warning 40 when no raster plot has been drawn.
const RasterPage* finished_page(GlobalBlock& g) {
  if (g.raster.page.empty() || (g.core.level > 0 && !g.raster.page_open)) {
    warn(g, 40);
    return nullptr;
  }
  if (g.raster.page_open) {
    end_polyline(g);
  }
  return &g.raster.page;
}

}  // namespace

bool uses_raster_page(const DeviceInfo& dev) { return dev.family == DeviceFamily::Raster; }

bool raster_scale(const GlobalBlock& g, double pw, double ph, double& scale) {
  const RasterState& r = g.raster;
  if (r.dpi > 0) {
    scale = r.dpi / 254.0;
    return true;
  }
  if (r.width > 0 && r.height > 0 && pw > 0.0 && ph > 0.0) {
    scale = std::min(r.width / pw, r.height / ph);  // the page fills the chosen size
    return true;
  }
  return false;
}

bool open_raster_page(GlobalBlock& g, DriverSetup& setup) {
  RasterState& r = g.raster;
  r.access = false;
  r.page_open = false;
  // The page's size: as chosen with imgsiz; at imgdpi the page's own extent; otherwise
  // the screen window of zorini.
  double w = g.core.window_width;
  double h = g.core.window_height;
  const bool file_page = g.pipe.device != nullptr && uses_raster_page(*g.pipe.device);
  if (!file_page) {
    // A screen window: its own size.
  } else if (r.width > 0) {
    w = r.width;
    h = r.height;
  } else if (r.dpi > 0) {
    w = std::ceil(setup.device_width + setup.scale - 1e-6);
    h = std::ceil(setup.device_height + setup.scale - 1e-6);
  }
  w = std::max(w, 1.0);
  h = std::max(h, 1.0);
  const double pixels = w * h;
  if (w > kMaxRasterSide || h > kMaxRasterSide || pixels > static_cast<double>(kMaxRasterPixels)) {
    // Too large: the whole page, scaled down to the largest size allowed.
    const double f = std::min({kMaxRasterSide / w, kMaxRasterSide / h,
                               std::sqrt(static_cast<double>(kMaxRasterPixels) / pixels)});
    warn_size(g, 231, w, h);
    w = std::max(1.0, std::floor(w * f));
    h = std::max(1.0, std::floor(h * f));
    g.pipe.scale *= f;
    setup.scale *= f;
    setup.device_width *= f;
    setup.device_height *= f;
  }
  const Rgb background = setup.reversed ? Rgb{255, 255, 255} : Rgb{0, 0, 0};
  if (!r.page.allocate(static_cast<int>(w), static_cast<int>(h), background)) {
    warn_size(g, 232, w, h);
    return false;
  }
  r.page_open = true;
  setup.raster = &r.page;
  setup.antialias = r.antialias;
  setup.image_compression = r.tiff_compression;
  setup.colour_table = g.colour.table.data();
  return true;
}

void close_raster_page(GlobalBlock& g) {
  RasterState& r = g.raster;
  if (r.access) {
    warn(g, 54);
    r.access = false;
  }
  r.page_open = false;
}

namespace api {

void imgsiz(GlobalBlock& g, int nw, int nh) {
  if (!check_range(g, nw, 1, kMaxRasterSide) || !check_range(g, nh, 1, kMaxRasterSide)) {
    return;
  }
  if (static_cast<long long>(nw) * nh > kMaxRasterPixels) {
    warn_size(g, 231, nw, nh);
    return;
  }
  g.raster.width = nw;
  g.raster.height = nh;
  g.raster.dpi = 0;
}

void imgdpi(GlobalBlock& g, int ndpi) {
  if (!check_range(g, ndpi, kMinDpi, kMaxDpi)) {
    return;
  }
  g.raster.dpi = ndpi;
  g.raster.width = 0;
  g.raster.height = 0;
}

void imgopt(GlobalBlock& g, const char* cval, const char* copt) {
  RasterState& r = g.raster;
  const int opt = match_keyword(g, "ANTI+TIFF", copt);
  if (opt == 1) {
    if (const int i = match_keyword(g, "ON  +OFF ", cval); i != 0) {
      if (r.page_open) {
        end_polyline(g);  // what was drawn keeps its mode
        r.page.set_antialias(i == 1);
      }
      r.antialias = i == 1;
    }
  } else if (opt == 2) {
    if (const int i = match_keyword(g, "DEFL+LZW +NONE", cval); i != 0) {
      r.tiff_compression = i - 1;
    }
  }
}

void imgini(GlobalBlock& g) {
  RasterState& r = g.raster;
  if (!r.page_open) {
    warn(g, 40);
    return;
  }
  if (r.access) {
    warn(g, 54);
  }
  end_polyline(g);
  r.access = true;
}

void imgfin(GlobalBlock& g) {
  if (!g.raster.access) {
    warn(g, 55);
    return;
  }
  g.raster.access = false;
}

void rpixel(GlobalBlock& g, int ix, int iy, int* nclr) {
  *nclr = -1;
  RasterPage* page = accessible_page(g);
  if (page == nullptr || !pixel_in_page(g, *page, ix, iy)) {
    return;
  }
  *nclr = pixel_value(g, page->row(iy) + 3 * static_cast<std::size_t>(ix));
}

void wpixel(GlobalBlock& g, int ix, int iy, int nclr) {
  RasterPage* page = accessible_page(g);
  if (page == nullptr || !pixel_in_page(g, *page, ix, iy)) {
    return;
  }
  put_pixel(g, page->row(iy) + 3 * static_cast<std::size_t>(ix), nclr);
}

void rpxrow(GlobalBlock& g, int* iray, int ix, int iy, int n) {
  RasterPage* page = accessible_page(g);
  if (page == nullptr || !check_range(g, n, 1, page->width()) ||
      !pixel_in_page(g, *page, ix, iy, n)) {
    return;
  }
  const std::uint8_t* p = page->row(iy) + 3 * static_cast<std::size_t>(ix);
  for (int i = 0; i < n; ++i, p += 3) {
    iray[i] = pixel_value(g, p);
  }
}

void wpxrow(GlobalBlock& g, const int* iray, int ix, int iy, int n) {
  RasterPage* page = accessible_page(g);
  if (page == nullptr || !check_range(g, n, 1, page->width()) ||
      !pixel_in_page(g, *page, ix, iy, n)) {
    return;
  }
  std::uint8_t* p = page->row(iy) + 3 * static_cast<std::size_t>(ix);
  for (int i = 0; i < n; ++i, p += 3) {
    put_pixel(g, p, iray[i]);
  }
}

void getimg(GlobalBlock& g, int* nw, int* nh) {
  *nw = g.raster.page.width();
  *nh = g.raster.page.height();
}

int rbfrgb(GlobalBlock& g, TextBuffer cbuf, int nmax) {
  const RasterPage* page = finished_page(g);
  if (page == nullptr) {
    return -1;
  }
  const std::size_t n = page->stride() * static_cast<std::size_t>(page->height());
  if (n > static_cast<std::size_t>(std::max(nmax, 0)) || !cbuf.holds(n)) {
    return static_cast<int>(n);  // the size needed; nothing written
  }
  for (int j = 0; j < page->height(); ++j) {
    std::copy_n(page->row(j), page->stride(), cbuf.data + static_cast<std::size_t>(j) * page->stride());
  }
  return static_cast<int>(n);
}

int rbfpng(GlobalBlock& g, TextBuffer cbuf, int nmax) {
  const RasterPage* page = finished_page(g);
  if (page == nullptr) {
    return -1;
  }
  MemorySink png;
  if (!write_png(png, page->view()) || png.bytes().size() > 0x7fffffffU) {
    warn(g, 233);
    return -1;
  }
  const std::size_t n = png.bytes().size();
  if (n <= static_cast<std::size_t>(std::max(nmax, 0)) && cbuf.holds(n)) {
    std::copy_n(png.bytes().data(), n, cbuf.data);
  }
  return static_cast<int>(n);
}

void wimage(GlobalBlock& g, const char* cfil) {
  const std::string name(cfil);
  if (name.empty()) {
    warn(g, 37);
    return;
  }
  const ImageWriter writer = image_writer_for(name);
  if (writer == nullptr) {
    warn(g, 56, std::string_view(name));
    return;
  }
  const RasterPage* page = finished_page(g);
  if (page == nullptr) {
    return;
  }
  ImageOptions options;
  Rgb table[256];
  table_colours(g.colour.table.data(), table);
  options.table = table;
  options.tiff = g.raster.tiff_compression == 1   ? TiffCompression::Lzw
                 : g.raster.tiff_compression == 2 ? TiffCompression::None
                                                  : TiffCompression::Deflate;
  const PageState& pg = g.page;
  options.ps.user_offset = pg.hw_origin_set;
  options.ps.offset_x = static_cast<int>(2 * pg.hw_origin_x);
  options.ps.offset_y = static_cast<int>(2 * pg.hw_origin_y);
  options.ps.user_page = pg.hw_page_set;
  options.ps.page_width = static_cast<int>(2 * pg.hw_page_width);
  options.ps.page_height = static_cast<int>(2 * pg.hw_page_height);
  std::FILE* f = platform::open_file(name, "wb");
  if (f == nullptr) {
    warn(g, 36);
    return;
  }
  FileSink sink(f);
  bool ok = writer(sink, page->view(), options) && sink.flush();
  if (std::fclose(f) != 0) {
    ok = false;
  }
  if (!ok) {
    warn(g, 36);
  }
}

}  // namespace api
}  // namespace zorvel

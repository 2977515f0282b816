// The raster driver: lines, fills, images and pages on the raster page (raster/), written
// out by the image format's writer at every page's end.
//
// Without anti-aliasing every point is rounded to the nearest pixel centre, as integer
// devices do, and lines one pixel wide are stepped from pixel to pixel: the output is
// exact and the same on every machine. Wider lines and fills are scan-converted from the
// rounded points. With anti-aliasing, points keep their sub-pixel positions and every
// line is stroked as an outline whose exact coverage blends into the page.
//
// Anti-aliased lines up to two pixels wide, the most common by far, are drawn from each
// pixel's distance to the segments (hairlines), wider ones as outlines.
//
// A polyline reaching the driver in pieces (each starts with a move to the last point of
// the one before) is stroked as one: a move to the current point continues it.

#include "drivers/raster_driver.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <vector>

#include "drivers/page_files.h"
#include "raster/raster_page.h"
#include "raster/stroke.h"

namespace zorvel {
namespace {

// Anti-aliased lines up to this width (pixels) are drawn as hairlines.
constexpr double kHairlineWidth = 2.0;

class RasterDriver final : public Driver {
 public:
  explicit RasterDriver(ImageWriter writer) : writer_(writer) {}

  bool open(Sink* out, const DriverSetup& setup) override;
  unsigned caps() const override { return kCapFill | kCapWidths | kCapImages | kCapAlpha; }
  void point(double x, double y, Pen pen) override;
  void colour(Rgb rgb, int /*value*/) override {
    end_line();
    current_ = rgb;
    page_->set_colour(rgb);
  }
  void pen_width(const LineWidth& w) override;
  void line_cap(int cap) override;
  void line_join(int join, double miter_limit) override;
  void fill(const Path& path, Rgb rgb) override;
  void image(const Image& img) override { page_->image(img); }
  void erase() override;
  void new_page() override;
  bool close() override;
  bool failed() const override { return failed_; }

 private:
  void end_line();
  double snap(double v) const;
  void release_held(bool snapped);
  void smooth_segment(double x0, double y0, double x1, double y1);
  bool thin() const { return !page_->antialias() && style_.width < 1.5; }
  void restyle();
  bool write_page(Sink* out);

  ImageWriter writer_;
  RasterPage* page_ = nullptr;
  std::unique_ptr<PageEdges> edges_;
  std::unique_ptr<Stroker> stroker_;
  StrokeStyle style_{};
  double scale_ = 1.0;  // pixels per plot unit
  Rgb background_{};
  Rgb current_{255, 255, 255, 255};
  ImageOptions options_{};
  Rgb table_[256]{};
  const int* colour_table_ = nullptr;
  PageFiles files_;  // the files of the pages
  // The open polyline: its last point (rounded, when not anti-aliasing) and whether it
  // has one.
  bool open_ = false;
  bool hairlines_ = false;    // anti-aliased and thin: drawn as hairlines
  bool rectilinear_ = false;  // anti-aliased: every segment so far is horizontal or vertical
  std::vector<double> held_x_;  // ... and its points, held back until the line ends
  std::vector<double> held_y_;
  double lx_ = 0.0;
  double ly_ = 0.0;
  bool failed_ = false;
  bool closed_ = false;
};

bool RasterDriver::open(Sink* out, const DriverSetup& setup) {
  page_ = setup.raster;
  if (page_ == nullptr || page_->empty()) {
    return false;
  }
  scale_ = setup.scale > 0.0 && std::isfinite(setup.scale) ? setup.scale : 1.0;
  background_ = setup.reversed ? Rgb{255, 255, 255} : Rgb{0, 0, 0};
  options_.tiff = setup.image_compression == 1   ? TiffCompression::Lzw
                  : setup.image_compression == 2 ? TiffCompression::None
                                                 : TiffCompression::Deflate;
  colour_table_ = setup.colour_table;
  files_.start(writer_ != nullptr ? out : nullptr, setup.file_name, setup.versions);
  page_->set_antialias(setup.antialias);
  style_.cap = std::clamp(setup.line_cap, 0, 2);
  edges_ = std::make_unique<PageEdges>(*page_);
  stroker_ = std::make_unique<Stroker>(*edges_);
  restyle();
  return true;
}

void RasterDriver::restyle() {
  StrokeStyle s = style_;
  if (!page_->antialias()) {
    s.width = std::max(1.0, std::round(s.width));
  }
  stroker_->set_style(s);
}

void RasterDriver::pen_width(const LineWidth& w) {
  end_line();
  style_.width = w.hardware ? std::max(1.0, w.n * scale_ * w.width_scale) : 1.0;
  restyle();
}

void RasterDriver::line_cap(int cap) {
  end_line();
  style_.cap = std::clamp(cap, 0, 2);
  restyle();
}

void RasterDriver::line_join(int join, double miter_limit) {
  end_line();
  style_.join = std::clamp(join, 0, 2);
  style_.miter_limit = miter_limit;
  restyle();
}

void RasterDriver::point(double x, double y, Pen pen) {
  if (pen == Pen::End || pen == Pen::Close) {
    end_line();
    return;
  }
  const bool aa = page_->antialias();
  if (!aa) {
    x = static_cast<double>(device_int(x));
    y = static_cast<double>(device_int(y));
  }
  if (pen == Pen::Move) {
    if (open_ && x == lx_ && y == ly_) {
      return;  // the next piece of the same polyline
    }
    end_line();
  }
  if (!open_) {
    open_ = true;
    if (aa) {
      hairlines_ = style_.width <= kHairlineWidth;
      rectilinear_ = true;
      held_x_.clear();
      held_y_.clear();
      held_x_.push_back(x);
      held_y_.push_back(y);
    } else if (!thin()) {
      stroker_->move(x, y);
    }
    lx_ = x;
    ly_ = y;
    if (pen == Pen::Move) {
      return;
    }
  }
  if (aa) {
    if (rectilinear_ && (x == lx_ || y == ly_)) {
      held_x_.push_back(x);
      held_y_.push_back(y);
    } else {
      if (rectilinear_) {
        release_held(false);
      }
      smooth_segment(lx_, ly_, x, y);
    }
  } else if (thin()) {
    page_->line(static_cast<long long>(lx_), static_cast<long long>(ly_),
                static_cast<long long>(x), static_cast<long long>(y));
  } else {
    stroker_->line(x, y);
  }
  lx_ = x;
  ly_ = y;
}

// Anti-aliased lines made of horizontal and vertical segments only (frames, ticks, grid
// lines) are held back until they end, then moved by less than half a pixel so that they
// cover whole pixels: sharp instead of smeared over two rows at half strength. A line
// that turns out to be oblique is drawn as it came.
double RasterDriver::snap(double v) const {
  const double w = std::max(1.0, std::round(style_.width));
  return std::fmod(w, 2.0) == 1.0 ? std::round(v) : std::floor(v) + 0.5;
}

void RasterDriver::release_held(bool snapped) {
  rectilinear_ = false;
  const std::size_t n = held_x_.size();
  double px = 0.0;
  double py = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    const double x = snapped ? snap(held_x_[i]) : held_x_[i];
    const double y = snapped ? snap(held_y_[i]) : held_y_[i];
    if (i > 0) {
      smooth_segment(px, py, x, y);
    }
    px = x;
    py = y;
  }
  held_x_.clear();
  held_y_.clear();
}

// An anti-aliased segment: a hairline for thin lines, else a piece of the outline.
void RasterDriver::smooth_segment(double x0, double y0, double x1, double y1) {
  if (hairlines_) {
    page_->hairline(x0, y0, x1, y1, style_.width);
    return;
  }
  if (!stroker_->open()) {
    stroker_->move(x0, y0);
  }
  stroker_->line(x1, y1);
}

void RasterDriver::end_line() {
  if (!open_) {
    return;
  }
  open_ = false;
  if (rectilinear_) {
    release_held(true);
  }
  if (hairlines_) {
    page_->paint_lines();
  } else if (stroker_->open()) {
    stroker_->finish();
    page_->paint(FillRule::NonZero);
  }
}

// Areas bounded by horizontal and vertical edges only (bars, frames, the cells of colour
// ramps) have their corners moved to the nearest pixel boundaries when anti-aliasing:
// areas side by side then meet on a boundary, with neither a lighter seam nor an overlap.
bool rectilinear(const Path& path) {
  std::size_t from = 0;
  for (const int end : path.ends) {
    const auto to = std::min(static_cast<std::size_t>(std::max(end, 0)), path.xs.size());
    for (std::size_t i = from; i < to; ++i) {
      const std::size_t k = i + 1 < to ? i + 1 : from;
      if (path.xs[i] != path.xs[k] && path.ys[i] != path.ys[k]) {
        return false;
      }
    }
    from = std::max(from, to);
  }
  return true;
}

double to_boundary(double v) { return std::round(v - 0.5) + 0.5; }

void RasterDriver::fill(const Path& path, Rgb rgb) {
  end_line();
  // Pieces of a mesh are sampled, not covered: their shared edges would let the
  // background through.
  const bool page_aa = page_->antialias();
  const bool aa = page_aa && !path.seamless;
  page_->set_antialias(aa);
  const bool snapped = aa && rectilinear(path);
  std::size_t from = 0;
  for (const int end : path.ends) {
    const auto to = std::min(static_cast<std::size_t>(std::max(end, 0)), path.xs.size());
    for (std::size_t i = from; i < to; ++i) {
      const std::size_t k = i + 1 < to ? i + 1 : from;
      double x0 = path.xs[i];
      double y0 = path.ys[i];
      double x1 = path.xs[k];
      double y1 = path.ys[k];
      if (!aa) {
        x0 = static_cast<double>(device_int(x0));
        y0 = static_cast<double>(device_int(y0));
        x1 = static_cast<double>(device_int(x1));
        y1 = static_cast<double>(device_int(y1));
      } else if (snapped) {
        x0 = to_boundary(x0);
        y0 = to_boundary(y0);
        x1 = to_boundary(x1);
        y1 = to_boundary(y1);
      }
      page_->edge(x0, y0, x1, y1);
    }
    from = std::max(from, to);
  }
  // The fill's colour for this area only.
  page_->set_colour(rgb);
  page_->paint(path.rule);
  page_->set_colour(current_);
  page_->set_antialias(page_aa);
}

void RasterDriver::erase() {
  end_line();
  page_->clear(background_);
}

bool RasterDriver::write_page(Sink* out) {
  if (writer_ == nullptr || out == nullptr) {
    return true;
  }
  if (colour_table_ != nullptr) {
    table_colours(colour_table_, table_);
  }
  options_.table = table_;
  return writer_(*out, page_->view(), options_) && out->flush();
}

// The finished page goes to its file; the next page starts blank in a new file named by
// the plot file's first free version. Without a file of its own for the next page (the
// virtual bitmap, pipes and devices), the page is only cleared.
void RasterDriver::new_page() {
  end_line();
  if (writer_ != nullptr) {
    if (!files_.versioned()) {
      return;  // later pages draw over this one, as on an EPS figure
    }
    if (!write_page(files_.current()) || !files_.next()) {
      failed_ = true;
    }
  }
  page_->clear(background_);
}

bool RasterDriver::close() {
  if (closed_) {
    return !failed_;
  }
  closed_ = true;
  end_line();
  if (!write_page(files_.current()) || !files_.close()) {
    failed_ = true;
  }
  return !failed_;
}

bool ends_with(const std::string& s, std::string_view tail) {
  return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

bool png_writer(Sink& out, const PixelView& px, const ImageOptions&) { return write_png(out, px); }
#ifdef ZORVEL_HAVE_TIFF
bool tiff_writer(Sink& out, const PixelView& px, const ImageOptions& o) {
  return write_tiff(out, px, o.tiff);
}
#endif
#ifdef ZORVEL_HAVE_GIF
bool gif_writer(Sink& out, const PixelView& px, const ImageOptions& o) {
  return write_gif(out, px, o.table);
}
#endif
bool bmp_writer(Sink& out, const PixelView& px, const ImageOptions&) { return write_bmp(out, px); }
bool ppm_writer(Sink& out, const PixelView& px, const ImageOptions&) { return write_ppm(out, px); }
bool raw_writer(Sink& out, const PixelView& px, const ImageOptions&) {
  return write_raw_image(out, px);
}
bool ps_writer(Sink& out, const PixelView& px, const ImageOptions& o) {
  return write_ps_image(out, px, o.ps);
}

}  // namespace

std::unique_ptr<Driver> make_raster_driver(ImageWriter writer) {
  return std::make_unique<RasterDriver>(writer);
}

ImageWriter image_writer_for(std::string_view file_name) {
  std::string name(file_name);
  for (char& c : name) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  static constexpr struct {
    std::string_view ext;
    ImageWriter writer;
  } kWriters[] = {{".png", &png_writer},
#ifdef ZORVEL_HAVE_TIFF
                  {".tif", &tiff_writer}, {".tiff", &tiff_writer},
#endif
#ifdef ZORVEL_HAVE_GIF
                  {".gif", &gif_writer},
#endif
                  {".bmp", &bmp_writer},  {".ppm", &ppm_writer},
                  {".img", &raw_writer}, {".ps", &ps_writer},    {".eps", &ps_writer}};
  for (const auto& w : kWriters) {
    if (ends_with(name, w.ext)) {
      return w.writer;
    }
  }
  return nullptr;
}

void table_colours(const int* table, Rgb (&out)[256]) {
  for (int i = 0; i < 256; ++i) {
    const int v = table[i];
    out[i] = {(v >> 16) & 255, (v >> 8) & 255, v & 255, 255};
  }
}

std::unique_ptr<Driver> make_virtual_driver() { return make_raster_driver(nullptr); }

}  // namespace zorvel

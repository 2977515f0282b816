#pragma once
// The raster page: a true-colour page of pixels in memory and the scan conversion that
// draws on it. Raster image files, the virtual bitmap and (later) screen windows draw
// here; the image-file writers take the finished page as a PixelView.
//
// Coordinates are pixels with the centre of pixel (i, j) at (i, j): pixel (i, j) covers
// [i - 0.5, i + 0.5) x [j - 0.5, j + 0.5), row 0 at the top. Everything drawn is clipped
// to the page here, whatever the coordinates (far outside, huge): nothing is written out
// of bounds, and no loop runs longer than the page is wide or high.
//
// Two ways to draw:
//   - plot and line: single pixels and one-pixel lines between pixel centres (Bresenham),
//     the exact output of the integer device transform;
//   - edge ... paint: closed contours handed as edges, whose exact area coverage per
//     pixel accumulates in a buffer; paint composites it in the current colour by the
//     fill rule and clears it. Anti-aliased, the coverage is the pixel's opacity (blended
//     in linear light); otherwise a pixel is set when its centre is inside (edges
//     through centres move a little right and down, so that abutting areas neither
//     overlap nor leave gaps).
// Overlapping contours of one paint are a union under the nonzero rule: a stroked
// polyline is painted once, so translucent lines do not darken where they cross.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "drivers/driver.h"
#include "drivers/image_files.h"
#include "raster/stroke.h"

namespace zorvel {

// Limits of a raster page: each side, and the pixels altogether (a page of the largest
// size takes 150 MB of pixels and 200 MB of coverage buffer).
constexpr int kMaxRasterSide = 20000;
constexpr long long kMaxRasterPixels = 50'000'000;

class RasterPage {
 public:
  // A page of w x h pixels cleared to `background`. False, with no page, when a side is
  // below 1, the size beyond the limits, or memory short.
  bool allocate(int w, int h, Rgb background);
  void release();

  int width() const { return w_; }
  int height() const { return h_; }
  bool empty() const { return w_ == 0; }
  PixelView view() const;
  std::uint8_t* row(int y) { return rgb_.data() + static_cast<std::size_t>(y) * stride(); }
  const std::uint8_t* row(int y) const {
    return rgb_.data() + static_cast<std::size_t>(y) * stride();
  }
  std::size_t stride() const { return static_cast<std::size_t>(w_) * 3; }

  void clear(Rgb c);

  // The colour of what follows; alpha below 255 blends.
  void set_colour(Rgb c);
  void set_antialias(bool on) { antialias_ = on; }
  bool antialias() const { return antialias_; }

  // One pixel, or a one-pixel line from pixel centre to pixel centre, both ends drawn.
  void plot(long long x, long long y);
  void line(long long x0, long long y0, long long x1, long long y1);

  // One edge of a closed contour (every contour handed edge by edge, closed).
  void edge(double x0, double y0, double x1, double y1);
  // A closed polygon of n points as its edges.
  void polygon(const double* xs, const double* ys, std::size_t n);
  // Composites what the edges since the last paint cover, and clears the coverage.
  void paint(FillRule rule);

  // A thin anti-aliased line (width up to a few pixels) from (x0, y0) to (x1, y1) with
  // round ends: each pixel takes the coverage that its centre's distance to the segment
  // gives, and keeps the largest of the segments drawn since the last paint_lines. Much
  // cheaper than the segment's outline as edges, and as smooth at these widths.
  void hairline(double x0, double y0, double x1, double y1, double width);
  // Composites the coverage of the hairlines since the last call, and clears it.
  void paint_lines();

  // Pixels placed at a device rectangle, each page pixel taking the image pixel under
  // its centre; RGBA pixels blend by their alpha.
  void image(const Image& img);

 private:
  // Bresenham steps from (ax, ay) to (bx, by), plotting what lies on the page.
  void step_line(long long ax, long long ay, long long bx, long long by);

  void cover(double x0, double y0, double y1, double dxdy, float dir);
  void sample(double x0, double y0, double y1, double dxdy, float dir);
  void deposit(int j, double xa, double xb, float d);
  void touch(int j, int c0, int c1);
  bool coverage_buffer();
  void composite(FillRule rule, bool summed);
  void blend(std::uint8_t* p, unsigned alpha);  // alpha 0..65535 of the current colour
  void set_pixel(std::uint8_t* p);

  int w_ = 0;
  int h_ = 0;
  std::vector<std::uint8_t> rgb_;
  // Coverage accumulation: per row w + 2 cells whose running sum is the signed area
  // covered; the columns touched per row and the rows touched since the last paint.
  std::vector<float> acc_;
  std::vector<int> lo_;
  std::vector<int> hi_;
  int row_lo_ = 0;
  int row_hi_ = -1;

  Rgb colour_{};
  std::uint16_t colour_linear_[3] = {0, 0, 0};
  bool antialias_ = false;
};

// The pieces of wide lines (raster/stroke.h) as contours of the page's next paint, all
// turned to the same (negative) area so that their overlaps add up under the nonzero
// rule: a stroked polyline is painted once.
class PageEdges final : public StrokeSink {
 public:
  explicit PageEdges(RasterPage& page) : page_(page) {}
  void polygon(const double* xs, const double* ys, int n) override;

 private:
  RasterPage& page_;
};

}  // namespace zorvel

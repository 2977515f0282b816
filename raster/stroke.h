#pragma once
// Wide and anti-aliased lines on the raster page: a polyline becomes the contours of its
// outline (one quadrilateral per segment, joins at the vertices, caps at the ends), all
// handed to the page with the same orientation so that the nonzero rule paints their
// union. The caller paints the page when the polyline ends.

#include "raster/raster_page.h"

namespace zorvel {

struct StrokeStyle {
  double width = 1.0;          // pixels
  int cap = 2;                 // 0 cut, 1 round, 2 projecting (lncap)
  int join = 0;                // 0 mitred, 1 round, 2 bevelled
  double miter_limit = 10.0;   // longest mitre as a multiple of the width
};

class Stroker {
 public:
  explicit Stroker(RasterPage& page) : page_(page) {}

  void set_style(const StrokeStyle& style);
  const StrokeStyle& style() const { return style_; }

  // A new polyline at (x, y); the open one is finished first.
  void move(double x, double y);
  // A segment from the last point. A polyline of one point drawn to itself is a dot.
  void line(double x, double y);
  // Caps the open polyline. The outline is then complete on the page, ready to paint.
  void finish();
  // Whether a polyline is open and the last point of it.
  bool open() const { return open_; }
  double last_x() const { return lx_; }
  double last_y() const { return ly_; }

 private:
  void cap(double x, double y, double ux, double uy);
  void join(double x, double y, double ux, double uy);
  void disc(double x, double y);
  void shape(const double* xs, const double* ys, int n);

  RasterPage& page_;
  StrokeStyle style_{};
  double hw_ = 0.5;  // half the width
  bool open_ = false;
  bool drawn_ = false;  // a Draw came since the move (a dot when no segment has length)
  int segments_ = 0;
  double sx_ = 0.0;  // start of the polyline
  double sy_ = 0.0;
  double lx_ = 0.0;  // last point and direction
  double ly_ = 0.0;
  double ux_ = 0.0;
  double uy_ = 0.0;
};

}  // namespace zorvel

#pragma once
// Wide lines as the convex pieces of their outline: a polyline becomes one quadrilateral
// per segment, joins at the vertices and caps at the ends, each handed to a sink. The
// raster page takes them as contours of one nonzero fill (their union), the OpenGL
// device as triangles. Depends on nothing else, so that the screen module builds it too.

namespace zorvel {

// Where the pieces go: convex polygons of n points (n <= 128), in either orientation.
class StrokeSink {
 public:
  virtual ~StrokeSink() = default;
  virtual void polygon(const double* xs, const double* ys, int n) = 0;
};

struct StrokeStyle {
  double width = 1.0;          // pixels
  int cap = 2;                 // 0 cut, 1 round, 2 projecting (lncap)
  int join = 0;                // 0 mitred, 1 round, 2 bevelled
  double miter_limit = 10.0;   // longest mitre as a multiple of the width
  double tolerance = 0.1;      // largest distance of a round piece from the circle, pixels
};

class Stroker {
 public:
  explicit Stroker(StrokeSink& sink) : sink_(sink) {}

  void set_style(const StrokeStyle& style);
  const StrokeStyle& style() const { return style_; }

  // A new polyline at (x, y); the open one is finished first.
  void move(double x, double y);
  // A segment from the last point. A polyline of one point drawn to itself is a dot.
  void line(double x, double y);
  // Caps the open polyline: its outline is then complete in the sink.
  void finish();
  // Whether a polyline is open and the last point of it.
  bool open() const { return open_; }
  double last_x() const { return lx_; }
  double last_y() const { return ly_; }

 private:
  void cap(double x, double y, double ux, double uy);
  void join(double x, double y, double ux, double uy);
  void disc(double x, double y);

  StrokeSink& sink_;
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

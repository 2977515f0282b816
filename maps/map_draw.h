#pragma once
// The geometry of map drawing, shared by the files of maps/: where a geographic point
// lies on the map, lines walked from point to point (densified, cut at the outline) and
// polygons closed along the outline.

#include "maps/map_state.h"

namespace zorvel {

struct GlobalBlock;

// Receives the visible pieces of a walked line, in page positions (plot units before the
// origin offset). `s` is the place along the outline where a piece enters or leaves
// through it (see outline_place); pieces that begin or end inside have on_outline false.
class PathSink {
 public:
  virtual ~PathSink() = default;
  virtual void start(double x, double y, bool on_outline, double s) = 0;
  virtual void point(double x, double y) = 0;
  virtual void stop(bool on_outline, double s) = 0;
};

// A line pen over the map: move and draw in longitude and latitude (degrees). Points that
// are not numbers or beyond the poles break the line; `nans` and `beyond` count them. A
// segment more than three turns round the globe is left out (a gap). The pen keeps no
// buffers: pieces go to the sink as they are found.
class MapPen {
 public:
  MapPen(const GlobalBlock& g, PathSink& sink);
  void move(double lon, double lat);
  void draw(double lon, double lat);
  // Ends the open piece, if any.
  void finish();
  int nans = 0;
  int beyond = 0;

 private:
  struct Node;
  bool valid(double lon, double lat);
  // The segment from (lon_, lat_) to (lon, lat): cut at the outline, densified.
  void walk(double lon, double lat);
  void densify(const Node& a, const Node& b, int depth);
  // The point at t in [0, 1] of the segment being walked.
  void eval(double t, double& lon, double& lat) const;

  const MapState& m_;
  PathSink& sink_;
  bool great_ = false;  // great circles (mapopt "LINE" "GREA"), else rhumb lines
  bool down_ = false;   // a piece is open at the last point
  bool have_ = false;   // (lon_, lat_) holds the last point
  double lon_ = 0.0, lat_ = 0.0;
  // The segment being walked: its ends, and for great circles their unit vectors and
  // the angle between them.
  double alon_ = 0.0, alat_ = 0.0, blon_ = 0.0, blat_ = 0.0;
  double va_[3] = {0, 0, 0}, vb_[3] = {0, 0, 0};
  double omega_ = 0.0;
};

// Page position of a map point given by its longitude from the central meridian within
// the box (lam, degrees) and its latitude; false where the projection has no image.
bool lam_to_page(const MapState& m, double lam, double lat, double& px, double& py);

// The place along the outline of a page point on it: the box's perimeter in degrees
// anticlockwise from its lower left corner, or the cap's angle in radians; and the
// outline's whole length in the same measure.
double outline_place(const MapState& m, double lam, double lat, double px, double py);
double outline_length(const MapState& m);

// Appends the outline from place s0 anticlockwise to s1 (page points, s0 excluded) to
// (xs, ys).
void append_outline(const MapState& m, double s0, double s1, std::vector<double>& xs,
                    std::vector<double>& ys);

// Polygon fills: rings are clipped and closed into work.fx/fy/ends by add_ring, then
// filled together by flush_fill (non-zero rule) in the current colour and pattern.
// The map's outline in the frame's colour and thickness (three times it), not clipped:
// grafmp draws it, and the fills of mapshd, which reach it, draw it again.
void draw_map_outline(GlobalBlock& g);

void begin_fill(GlobalBlock& g);
void add_ring(GlobalBlock& g, const double* lon, const double* lat, int n, int& nans, int& beyond);
void flush_fill(GlobalBlock& g);

// Counts the points skipped by a pen or a ring: NaN into the plot's NaN count, points
// beyond the poles as warning 287.
void report_skipped(GlobalBlock& g, int nans, int beyond);

}  // namespace zorvel

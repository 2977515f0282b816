#pragma once
// The drawing pipeline: every line the library draws passes through it.
//
//   move_to / draw_to  (plot units, before the origin offset)
//        |  current point; NaN and infinite coordinates are counted and dropped
//        v
//   dash engine        (dash.cpp: line styles with a continuous phase, sideways offset)
//        v
//   point transforms   (3D-plane projection, affine map; applied as points enter the buffer)
//        v
//   polyline buffer    (polyline.cpp: 100 points; flushed when full or before any
//        |              attribute change)
//        v
//   widening           (widen.cpp: parallel strokes for devices without native widths)
//        v
//   clipping           (clip.cpp: rectangle or circle, exact cut points)
//        v
//   dispatch           (dispatch.cpp: plot units -> device units per device family)
//        v
//   Driver::point      (drivers/driver.h)
//
// The state of every stage lives in PipelineState, one per GlobalBlock. zorini resets the
// running state (buffer, current point, dash phase, clip rectangle, width); settings that
// may be made before a plot (dash pattern, clip mode, line cap, page mode, buffer mode,
// hardware line-width mode) are kept.

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "drivers/registry.h"

namespace zorvel {

struct GlobalBlock;

// Points held by the polyline buffer before it is sent (it then continues from its last
// point).
inline constexpr int kPolylineCapacity = 100;
// Entries of a dash pattern (myline).
inline constexpr int kMaxDashes = 10;
// Colours that a dashed line can cycle through.
inline constexpr int kMaxDashColours = 30;
// Parallel strokes of a widened line; wider lines get their strokes spread apart.
inline constexpr int kMaxStrokes = 100;
// Inside tolerance of the clip rectangle, in plot units (the single-precision 0.001).
inline constexpr double kClipTolerance = 0.0010000000474974513;
// Coordinates are clamped to this magnitude as they enter, so that differences and
// products in the later stages stay finite.
inline constexpr double kCoordinateLimit = 1e300;
// Segments longer than this (plot units; 100 m) are drawn without their dash pattern:
// dashing them would take longer than any plot is worth.
inline constexpr double kMaxDashedLength = 1e6;

// Phase of the dash engine.
enum class DashPen { Drawn = 0, Blank = 1 };

// Where clipping takes its rectangle from (clpbor).
enum class ClipBorder { Page = 0, User = 1, Axis = 2 };

// Clipping region choice (clpmod).
enum class ClipMode { Auto = 0, None = 1, Circle = 2, Rect = 3 };

// Fill patterns (shdpat, myptrn): how fill_path fills. 0 draws the outline alone, 1 to
// 15 are the hatchings of the table in pattern.cpp, 16 is solid and 17 the line families
// that myptrn defined.
inline constexpr int kOutlinePattern = 0;
inline constexpr int kSolidPattern = 16;
inline constexpr int kUserPattern = 17;
// Line families of one pattern, at most (myptrn).
inline constexpr int kMaxHatchFamilies = 10;

// One family of parallel hatch lines.
struct HatchFamily {
  double angle = 0.0;    // degrees, counter-clockwise on the page from the x axis
  double spacing = 1.0;  // distance between neighbouring lines, plot units
};

// The pattern in force for every filled area; zorini sets it to solid.
struct FillPattern {
  int number = kSolidPattern;                       // 0..kUserPattern
  std::array<HatchFamily, kMaxHatchFamilies> user;  // the families of myptrn ...
  int user_count = 0;                               // ... and their number
};

// A crossing of a hatch line with an edge of a filled path.
struct Crossing {
  double x;
  int direction;  // +1 for an edge going down the page, -1 up
};

struct ClipRect {
  double xmin = 0.0;  // plot units, inclusive
  double ymin = 0.0;
  double xmax = 0.0;
  double ymax = 0.0;
  bool operator==(const ClipRect&) const = default;
};

// Shapes: groups of polylines that text draws many times alike (stroke glyphs), which
// drivers with kCapShapes define once and place by reference (shapes.cpp). A key names a
// shape completely: equal keys draw equal polylines.
using ShapeKey = std::array<std::uint64_t, 8>;
// Shapes remembered per plot; further ones are drawn line by line.
inline constexpr int kMaxShapes = 4096;

struct ShapeCache {
  struct Entry {
    ShapeKey key{};
    bool filled = false;  // closed contours filled by the non-zero rule, not polylines
    int ends_from = 0;  // its polylines: ends[ends_from .. ends_from + polylines)
    int polylines = 0;
    int points_from = 0;  // its points in plot units and device units from this index
    int points = 0;
    double xmin = 0.0;  // bounds in plot units, relative to the origin
    double ymin = 0.0;
    double xmax = 0.0;
    double ymax = 0.0;
    double dxmin = 0.0;  // the same in device units
    double dymin = 0.0;
    double dxmax = 0.0;
    double dymax = 0.0;
  };
  std::vector<Entry> entries;
  std::vector<int> slots;  // open addressing: index + 1 into entries, 0 empty
  std::vector<double> dev_x;  // device units relative to the origin
  std::vector<double> dev_y;
  std::vector<int> ends;      // per shape, relative to its first point
  std::vector<double> plot_x;  // one shape while it is recorded
  std::vector<double> plot_y;
  std::vector<int> plot_ends;
};

struct PipelineState {
  bool seamless_fills = false;     // fills are pieces of a mesh (SeamlessFillScope)
  // Device
  std::unique_ptr<Driver> driver;  // driver of the open plot; null at level 0
  std::unique_ptr<Sink> sink;      // where it writes: the plot file (null: no file)
  const DeviceInfo* device = nullptr;  // its registry row
  Dispatch dispatch = Dispatch::None;  // the row's transform (tests set None: plot units)
  unsigned caps = 0;               // the driver's DriverCaps
  double scale = 1.0;              // device units per plot unit, set when the device opens
  double x_offset = 0.0;           // added to x before scaling (metafile, CGM)
  double page_w = 0.0;             // page size of the open plot, plot units less one
  double page_h = 0.0;
  bool rotated = false;            // the dispatch turns the page (pagmod, sheet fitting)
  double device_dx = 0.0;          // hworig on devices that shift their coordinates
  double device_dy = 0.0;
  bool write_error_reported = false;  // warning 36 for a failed write is given once
  long long overflows_reported = 0;   // driver words already reported as warning 176

  // Current point and polyline buffer (element 0 is the start point)
  double cur_x = 0.0;              // last point reached, with the origin offset
  double cur_y = 0.0;
  std::array<double, kPolylineCapacity> buf_x{};
  std::array<double, kPolylineCapacity> buf_y{};
  int count = 0;                   // valid points in the buffer
  bool has_point = false;          // a current point exists; else a draw starts a polyline
  bool pending_move = false;       // a move waits for the shifted start (sideways offset)

  // Dash engine
  std::array<int, kMaxDashes> dash{1};  // lengths of drawn and blank parts, plot units
  int dash_count = 1;              // entries in use; 1 is a solid line
  double dash_remainder = 1.0;     // length still to go in the current part
  int dash_index = 0;              // current part, 0-based
  DashPen dash_pen = DashPen::Drawn;
  std::array<int, kMaxDashColours> dash_colours{};  // colours cycled per dash
  int dash_colour_count = 0;       // 0: dashes keep the current colour
  int dash_colour_index = 0;       // 0-based
  double line_style_scale = 1.0;   // lintyp divides its base lengths by it
  double side_offset = 0.0;        // perpendicular shift of every drawn segment

  // Point transforms, applied as points enter the buffer
  bool plane = false;              // 2D output projected onto a plane of a 3D box:
  std::array<double, 9> plane_h{}; //   x' = (h0 x + h1 y + h2) / (h6 x + h7 y + h8), y' likewise
  bool affine = false;             // x' = a0 x + a1 y + a2, y' = a3 x + a4 y + a5
  std::array<double, 6> affine_a{};

  // Clipping
  ClipRect clip;                   // active rectangle
  bool circle = false;             // a clip circle is set
  double circle_x = 0.0;
  double circle_y = 0.0;
  double circle_r = 0.0;
  ClipBorder border = ClipBorder::Page;
  ClipMode clip_mode = ClipMode::Auto;
  bool axis_rect_set = false;      // the axis system in force has published its frame
  ClipRect axis_rect;

  // Attributes and output settings
  int line_width = 1;              // linwid, plot units
  int line_cap = 2;                // lncap: 0 CUT, 1 ROUN, 2 LONG (the files' start state)
  int page_mode = 0;               // pagmod: 0 COMI/LAND, 1 MOVI/PORT (turned), 2 NONE
  bool hw_widths = true;           // hardware line-width mode (hwmode "LINE")
  double line_width_scale = 1.0;   // multiplies the widths that drivers write
  int buffer_mode = 0;             // bufmod: 0 OFF, 1 ON
  int strokes = 1;                 // parallel strokes of the widened line
  double stroke_step = 0.0;        // their distance, plot units
  bool fill_active = false;        // a fill is drawing: colour changes do not flush
  FillPattern pattern;             // shdpat, myptrn: how fill_path fills
  bool path_open = false;          // points went to the driver since its last End
  double last_dev_x = 0.0;         // last point handed to the driver, device units
  double last_dev_y = 0.0;

  // Per-format settings, handed to the driver in DriverSetup when a plot starts
  bool ps_single_page = false;     // psmode "SING": PostScript without pages
  bool pdf_compress = true;        // pdfmod "COMP": PDF content streams deflated
  bool hpgl2 = false;              // hpmode "HPG2": HPGL files in HP-GL/2

  // Scratch space, reused (grown to the largest size seen, never per point)
  std::array<double, kPolylineCapacity> wide_x{};
  std::array<double, kPolylineCapacity> wide_y{};
  std::vector<double> fill_x;      // a path's points, contour after contour
  std::vector<double> fill_y;
  std::vector<int> fill_ends;      // end index of every contour
  std::vector<double> fill_tx;
  std::vector<double> fill_ty;
  std::vector<double> cut_x;       // one contour while it is clipped
  std::vector<double> cut_y;
  std::vector<Crossing> crossings; // hatch lines of a fill
  std::vector<double> area_x;      // the outline of an area being built (sectors, the
  std::vector<double> area_y;      //   areas of charts), before it goes to fill_path
  std::vector<int> area_ends;
  std::vector<GlyphPlace> glyphs;  // a text run in device units
  std::string run_text;            // its visible characters as UTF-8
  ShapeCache shapes;               // shapes of the open plot
};

// Entry of the pipeline
// =====================

// Moves to / draws to (x, y) in plot units before the origin offset of origin(). Both
// do nothing but count the point in the NaN counter when a coordinate is NaN or
// infinite; the next draw then starts a new polyline.
void move_to(GlobalBlock& g, double x, double y);
void draw_to(GlobalBlock& g, double x, double y);

// Clips and sends the buffered polyline; it continues from its last point. Geometry
// changes (clipping, page) call it first.
void flush_polyline(GlobalBlock& g);
// As flush_polyline, then tells the driver to end its open polyline (pen End). Every
// attribute change (colour, width, cap, fill, page, erase) calls it first.
void end_polyline(GlobalBlock& g);

// Fills the polygon of n points (plot units before the origin offset, closed
// implicitly) in the current colour and pattern, clipped to the rectangle in force
// (non-zero rule).
void fill_polygon(GlobalBlock& g, const double* xs, const double* ys, int n);
// Fills a path of several contours: contour i ends before index ends[i] (the last end is
// the number of points). Points as for fill_polygon; any count. Contours of fewer than
// three points are left out. The pattern in force decides how: solid goes to the driver
// (drivers without fills get the area hatched by the rule with their thinnest pen);
// pattern 0 draws the contours as lines; a hatching draws its line families inside by
// the rule, and the contours. These lines take the current colour and width and the
// clip region in force (a clip circle too), not the dash pattern.
void fill_path(GlobalBlock& g, const double* xs, const double* ys, const int* ends,
               int contours, FillRule rule);

// Fill patterns (pattern.cpp)
// ===========================

// Selects the pattern of the fills that follow (0..kUserPattern; the caller has checked).
void set_fill_pattern(GlobalBlock& g, int number);
// The line families of pattern `number` (1..15, or kUserPattern for those of myptrn)
// into `out`; their count, 0 for the outline, solid and an empty user pattern.
int hatch_families(const FillPattern& f, int number, HatchFamily* out);

// Fills in pattern `number` while it lives, and gives back the pattern it found. Code
// whose fills are no areas of a chart (glyphs, symbols, images, backgrounds) keeps them
// solid with it.
class FillPatternScope {
 public:
  FillPatternScope(GlobalBlock& g, int number);
  ~FillPatternScope();
  FillPatternScope(const FillPatternScope&) = delete;
  FillPatternScope& operator=(const FillPatternScope&) = delete;

 private:
  GlobalBlock& g_;
  int old_;
};

// Fills as pieces of a mesh while it lives (Path::seamless): code that fills many
// polygons meeting edge to edge (shaded surfaces, coloured triangles) keeps raster pages
// from showing the background through their shared edges.
class SeamlessFillScope {
 public:
  explicit SeamlessFillScope(GlobalBlock& g);
  ~SeamlessFillScope();
  SeamlessFillScope(const SeamlessFillScope&) = delete;
  SeamlessFillScope& operator=(const SeamlessFillScope&) = delete;

 private:
  GlobalBlock& g_;
  bool old_;
};

// Fills the annular sector around (cx, cy) (plot units before the origin offset) from
// radius r1 to r2 (0 <= r1 <= r2), from angle a to b (degrees counter-clockwise on the
// page from 3 o'clock, a < b; a sweep beyond 360 degrees is a full ring) in the current
// colour and pattern. Solid sectors go to drivers with kCapSectors whole when no
// transform is in force and they lie inside the clip region; everything else becomes a
// polygon whose chords stay within kArcTolerance of the arc.
void fill_sector(GlobalBlock& g, double cx, double cy, double r1, double r2, double a, double b);
inline constexpr double kArcTolerance = 0.25;  // plot units

// A text run in a driver font: the glyphs' base-line centres in plot units before the
// origin offset (transformed and clipped like points: glyphs outside the clip region
// are left out), the face, the size (em) in plot units, the base line's angle in
// degrees (counter-clockwise on the page) and the stretch. Only for drivers with
// kCapText.
void draw_text_run(GlobalBlock& g, const TextRun& run_in_plot_units);

// The polylines of a shape, drawn once when the pipeline first meets its key.
class ShapeSource {
 public:
  // Draws the shape with its origin at (0, 0), plot units, by calls of r.move and r.draw.
  virtual void record(class ShapeRecorder& r) const = 0;
  // True for a filled shape: every move starts a closed contour, and the contours are
  // filled by the non-zero rule in the current colour instead of stroked.
  virtual bool filled() const { return false; }

 protected:
  ~ShapeSource() = default;
};

// Collects a source's polylines into the cache; pieces too short to draw (one point of a
// polyline, fewer than three of a contour) are dropped as the next move begins.
class ShapeRecorder {
 public:
  ShapeRecorder(ShapeCache& c, bool contours) : c_(c), min_points_(contours ? 3 : 2) {}
  void move(double x, double y);
  void draw(double x, double y);

 private:
  ShapeCache& c_;
  int min_points_;
};

// Draws the shape of `key` with its origin at (x, y) (plot units before the origin
// offset) as a whole through the driver, when the driver places shapes and nothing of
// the pipeline would change its lines: solid, unshifted, untransformed, unwidened and
// wholly inside the clip rectangle. False when it did not (the caller draws the
// polylines itself).
// A filled source goes to drivers with kCapFilledShapes when fill_path would hand its
// contours unchanged to the driver's fill: solid pattern, no transform, wholly inside
// the clip region. False otherwise (the caller fills the contours with fill_path). As
// fill_path, it leaves the current point where it was and counts no vectors.
bool place_shape(GlobalBlock& g, const ShapeKey& key, double x, double y,
                 const ShapeSource& source);
// Forgets the shapes of the last plot.
void clear_shapes(PipelineState& p);

// Pixels placed into the rectangle with the corners (x0, y0) (first pixel of the first
// row) and (x1, y1), plot units before the origin offset. Drivers without images get a
// filled rectangle per run of equal pixels.
void draw_image(GlobalBlock& g, const Image& img_in_plot_units);

// Dash engine and offsets (dash.cpp)
// ==================================

// Stores a dash pattern of n lengths (1..kMaxDashes entries, each >= 1; the caller has
// checked) and restarts the engine.
void set_dash_pattern(GlobalBlock& g, const int* lengths, int n);
// Restarts the pattern at its first drawn part.
void restart_dash(PipelineState& p);
// Draw of the dash engine: dashes, sideways offset. Used by draw_to when the pattern is
// not solid or an offset is set.
void dash_to(GlobalBlock& g, double x, double y);
// Colours of successive dashes (count 0 switches them off) and the sideways offset, for
// the routines that draw styled lines.
void set_dash_colours(GlobalBlock& g, const int* colours, int n);
void set_side_offset(GlobalBlock& g, double d);

// Solid lines without a sideways offset while it lives, for code that draws lines of its
// own (axes, symbols, legends); the dash engine (pattern and phase) and the offset come
// back as they were, so that the caller's dashed curve goes on where it stopped.
class DashScope {
 public:
  explicit DashScope(GlobalBlock& g);
  ~DashScope();
  DashScope(const DashScope&) = delete;
  DashScope& operator=(const DashScope&) = delete;

 private:
  GlobalBlock& g_;
  std::array<int, kMaxDashes> dash_;
  int count_;
  double remainder_;
  int index_;
  DashPen pen_;
  int colour_index_;
  double offset_;
};

// Buffer primitives, after the dash engine (polyline.cpp)
// ========================================================

// Starts a polyline at the point (with the origin already added): the dash colour
// changes, the buffer is flushed and restarted.
void buffer_move(GlobalBlock& g, double x, double y);
// Appends a point; `merge` drops a point equal to the last one.
void buffer_draw(GlobalBlock& g, double x, double y, bool merge);

// Point transforms (polyline.cpp). The routines of the 3D axis system and of
// transformed text set them; each takes effect for points that enter after the call.
void set_affine(GlobalBlock& g, const double a[6]);
// Applies the 3D-plane projection, then the affine map, and clamps the result into
// kCoordinateLimit; false when it is not a finite point (not a number, or a point on the
// projection's horizon).
bool transform_point(const PipelineState& p, double& x, double& y);
// A point in plot units before the origin offset into (ox, oy) after the origin and the
// point transforms; false when it cannot be drawn.
bool place_point(const GlobalBlock& g, double x, double y, double& ox, double& oy);
void set_plane_projection(GlobalBlock& g, const double h[9]);
void clear_transforms(GlobalBlock& g);

// Clipping (clip.cpp)
// ===================

// Publishes the frame of the axis system in force for clpbor("AXIS"); cleared by
// clear_axis_clip when the axis system ends.
void set_axis_clip(GlobalBlock& g, const ClipRect& r);
void clear_axis_clip(GlobalBlock& g);
// Inside an axis system whose frame clips (clpbor "AXIS"), text and the axes themselves
// are clipped to the page: this scope switches the rectangle to the page, and sets a
// clip circle (that of a polar axis system) aside, while it lives.
class PageClipScope {
 public:
  explicit PageClipScope(GlobalBlock& g);
  ~PageClipScope();
  PageClipScope(const PageClipScope&) = delete;
  PageClipScope& operator=(const PageClipScope&) = delete;

 private:
  GlobalBlock& g_;
  bool active_;
  bool circle_;
};
// Clipping of data to the axis system: graf publishes the frame and makes it the clip
// border.
void clip_to_axis(GlobalBlock& g);
// Sets a clip circle (centre and radius in plot units); clear_clip_circle removes it.
void set_clip_circle(GlobalBlock& g, double cx, double cy, double r);
void clear_clip_circle(GlobalBlock& g);
// Rectangle to the page (the start state of every plot).
void clip_to_page(GlobalBlock& g);

// The visible part of the segment a -> b as parameters t0 <= t1 in [0, 1]; false when
// nothing is visible. The rectangle test has the tolerance kClipTolerance.
bool clip_segment_rect(const ClipRect& r, double ax, double ay, double bx, double by,
                       double& t0, double& t1);
bool clip_segment_circle(double cx, double cy, double radius, double ax, double ay, double bx,
                         double by, double& t0, double& t1);

// Clips the polyline of n points to the active region and sends the visible pieces.
void clip_and_send(GlobalBlock& g, const double* xs, const double* ys, int n);
// Cuts the polygon (xs, ys) to the clip rectangle (a clip circle: its bounding square),
// using (tx, ty) as scratch; returns the number of points left in (xs, ys).
int clip_polygon(const PipelineState& p, std::vector<double>& xs, std::vector<double>& ys,
                 std::vector<double>& tx, std::vector<double>& ty);

// Whether the box (plot units, origin applied) lies wholly inside the active clip region.
bool box_inside_clip(const PipelineState& p, const ClipRect& box);

// Dispatch (dispatch.cpp)
// =======================

// One point in plot units (origin applied) to the driver, converted into device units;
// a draw counts as a vector.
void plot_point(GlobalBlock& g, double x, double y, Pen pen);
// The conversion alone, for fills.
void to_device(const PipelineState& p, double x, double y, double& dx, double& dy);
// Its inverse: device units back into plot units (with the origin offset), for cursor
// input.
void from_device(const PipelineState& p, double dx, double dy, double& x, double& y);

// Widening (widen.cpp)
// ====================

// Number of strokes and their spacing for the line width in force.
void update_strokes(GlobalBlock& g);
// Sends the buffered polyline as parallel strokes (strokes > 1).
void send_widened(GlobalBlock& g, const double* xs, const double* ys, int n);

// Device (output.cpp)
// ===================

// Starts the driver of `dev` on the opened plot file (null for devices without a file).
// False when the device cannot start; the caller returns to level 0.
bool open_device(GlobalBlock& g, const DeviceInfo& dev, std::FILE* file);
// As open_device with a driver made by the caller (tests use a recording driver).
bool open_driver(GlobalBlock& g, const DeviceInfo& dev, std::unique_ptr<Driver> driver,
                 std::FILE* file);

// Flushes pending output and has the driver write its closing part. True when every
// write of the plot succeeded. The driver is released.
bool close_device(GlobalBlock& g);

// Waits for cursor input on the device: the cursor in plot units (origin offset
// removed), the mouse button (1..3, 0 for a key) and the key. False when the device has
// no input.
bool cursor_input(GlobalBlock& g, double& x, double& y, int& button, int& key);

// Reports a failed write (warning 36, once per plot) and words the driver had to drop
// (warning 176), both as soon as they are known.
void check_driver(GlobalBlock& g);

// Hands the line width in force to the driver (linwid, hwmode).
void send_line_width(GlobalBlock& g);

// How much a page of pw x ph plot units shrinks (or grows, sclmod "FULL") to fit a sheet
// of sheet_w x sheet_h (0 x 0: no sheet, 1); scale_mode is sclmod's.
double fit_factor(double sheet_w, double sheet_h, double pw, double ph, int scale_mode);
// Device scale of a device for the page settings in force (device units per plot unit).
double device_scale(const GlobalBlock& g, const DeviceInfo& dev);
// Whether the dispatch turns the page of the settings in force on the device.
bool page_turned(const GlobalBlock& g, const DeviceInfo& dev);
// The size of a device pixel in plot units on devices drawn in pixels (raster pages,
// screens), so that curves need no finer steps than a pixel shows; 0 on the others.
double device_pixel(const GlobalBlock& g);

}  // namespace zorvel

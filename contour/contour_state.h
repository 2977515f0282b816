#pragma once
// State of contours, colour plots and surfaces: the contour label settings, the colour
// bar, surface options and the z-buffer. zorini resets it to its defaults.

#include <cstdint>
#include <vector>

#include "contour/lines.h"
#include "core/fixed_string.h"

namespace zorvel {

// Longest text of conlab, in bytes.
inline constexpr std::size_t kMaxContourLabel = 132;

// A label placed on a contour line: the box that holds it with its gap, inside which
// every contour line is cut. Plot units before the origin offset, y down.
struct PlacedLabel {
  double x = 0.0;   // centre
  double y = 0.0;
  double ux = 1.0;  // unit vector along the text's base line
  double uy = 0.0;
  double a = 0.0;   // half its length and half its height, gap included
  double b = 0.0;
};

// The labels and lines of the axis system in force, so that labels keep clear of the
// labels and of the lines other than their own. They belong to the axis system that the
// key names; another one (a new graf, a plane, level 3) starts afresh.
struct PlacedLabels {
  std::uint32_t graf_serial = 0;
  int level = 0;
  bool plane = false;
  std::vector<PlacedLabel> boxes;
  // Square cells over the axis system: the number of the last piece of a contour line
  // that crossed each (0 none), row by row from (x0, y0).
  double x0 = 0.0;
  double y0 = 0.0;
  double cell = 1.0;
  int cols = 0;
  int rows = 0;
  std::vector<std::uint32_t> owner;
  std::uint32_t pieces = 0;  // pieces numbered so far
};

// Colour plots and shaded contours: the colour range, the colour bar and their options
// (colran, colbar, colopt, conopt).
// Colour bar positions of colbar.
enum ColourBarSide { kBarNone = 0, kBarRight, kBarLeft, kBarTop, kBarBottom };
// How colmat draws: rectangles, one image, or an image for large regular grids.
enum ColourMatrixMode { kMatrixAuto = 0, kMatrixRect, kMatrixImage };
// Bands beyond the end levels of conshd (conopt "EXTE"), as bits.
inline constexpr int kExtendLow = 1;
inline constexpr int kExtendHigh = 2;

// An edge of a band's outline, plot-independent (user coordinates).
struct BandEdge {
  double x1, y1, x2, y2;
};

struct ColourPlotState {
  int first = 1;    // colran: the colour range spread over the Z scaling
  int last = 254;
  int bar_side = kBarRight;  // colbar
  int bar_width = 85;        // plot units
  int bar_gap = 85;          // distance from the axis system (its labels included)
  bool clip_outside = true;  // colopt "OUTS": values beyond the scaling take the end colours
  int matrix_mode = kMatrixAuto;  // colopt "IMAG"
  std::uint32_t graf3_serial = 0;  // graf_serial of the axis system that graf3 set up
  int extend = 0;            // conopt "EXTE": kExtendLow | kExtendHigh
  bool hatch = false;        // conopt "PATT"
  bool level_lines = false;  // conopt "LINE"
  bool floor = false;        // conopt "3D" "BASE": conshd3d on the box's floor

  // Scratch space, reused.
  std::vector<double> levels;      // sorted levels of a call
  std::vector<BandEdge> edges;     // outline edges of one band
  std::vector<float> cell_ranges;  // corner ranges of the grid's cells (conshd)
  std::vector<std::uint8_t> used;
  std::vector<double> ring_x;      // the band's rings in page positions
  std::vector<double> ring_y;
  std::vector<int> ring_ends;
  std::vector<std::uint8_t> pixels;  // colmat's image
};

// A page position of a surface point with its depth (view3d's depth row over the
// divisor: 0 at the front distance, 1 at the back one).
struct SurfacePoint {
  double bx = 0.0;  // box coordinates
  double by = 0.0;
  double bz = 0.0;
  double x = 0.0;  // plot units, y down
  double y = 0.0;
  double depth = 0.0;
  bool ok = false;  // it projects (in front of the eye, a number)
};

// A horizon of the hidden-line mesh: a piecewise-linear function of the page x, points
// in rising x; two points of equal x are a jump.
struct Horizon {
  std::vector<double> x;
  std::vector<double> y;
};

// The depth-tested section of zbfini .. zbffin: an image over a rectangle of the page.
struct ZBuffer {
  bool active = false;
  double x0 = 0.0;        // its upper left corner, plot units before the origin offset
  double y0 = 0.0;
  double dots = 1.0;      // pixels per plot unit
  int width = 0;
  int height = 0;
  std::vector<float> depth;         // per pixel; +inf where nothing was drawn
  std::vector<std::uint8_t> rgba;   // per pixel, alpha 0 where nothing was drawn
};

// A slab of values lo <= f < hi of a surface's triangles, painted in `colour` (a table
// index or an explicit value).
struct Slab {
  double lo;
  double hi;
  int colour;
};

// Surfaces and the z-buffer (surclr, suropt, zbfini, zbfres).
struct SurfaceState {
  int top = -1;             // surclr: colour of the upper side, -1 the current colour
  int bottom = -1;          //   and of the lower side
  bool hidden = true;       // suropt "HIDD"
  bool mesh = false;        // suropt "MESH": mesh lines on shaded surfaces
  bool smooth = false;      // suropt "SHAD" SMOO
  bool light = false;       // suropt "LIGH"
  int resolution = 100;     // zbfres: dots per cm on vector devices
  ZBuffer zbuf;

  // Scratch space, reused.
  std::vector<SurfacePoint> points;   // the grid's vertices on the page
  std::vector<double> values;         // surmat, surfun: the grid in user coordinates
  std::vector<double> xs;
  std::vector<double> ys;
  std::vector<std::uint32_t> order;   // cells or triangles in drawing order
  std::vector<double> keys;
  std::vector<double> ranks;          // cell ranks along y
  std::vector<std::uint32_t> counts;  // counting sort of the cells
  std::vector<std::uint32_t> triangles;  // corner indices, three per triangle
  std::vector<Slab> slabs;               // the pieces' slabs of one triangle (cut shading)
  std::vector<std::uint8_t> drawn;    // mesh edges already drawn
  Horizon upper;                      // over the drawn cells (page y up)
  Horizon lower;
  Horizon merged;
  std::vector<double> cuts;           // visible parts of one segment (parameter pairs)
};

struct ContourState {
  ColourPlotState colour;
  SurfaceState surface;

  // Labels of contour lines (labels, labdig and labdis "CON" live in the axes' chart
  // label settings).
  FixedString<kMaxContourLabel> label_text;  // conlab: the text of labels "CONL"
  double label_gap = 0.5;                    // congap: space around a label, in heights
  PlacedLabels placed;

  // Scratch space, reused (grown to the largest size seen).
  ContourLines lines;                 // the lines of one level, user coordinates
  std::vector<std::uint8_t> cells;    // marching squares: case and traced segments per cell
  MeshWork mesh;                      // contour lines of triangles
  std::vector<double> page_x;         // the lines of one call in plot units, in pieces
  std::vector<double> page_y;
  std::vector<std::size_t> piece_ends;
  std::vector<std::uint8_t> piece_closed;
  std::vector<double> ring_x;         // one piece, a closed one twice round
  std::vector<double> ring_y;
  std::vector<double> arc;            // its arc length up to each point
  std::vector<std::size_t> near;      // labels near the piece being drawn
};

}  // namespace zorvel

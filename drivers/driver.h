#pragma once
// The output-driver interface. One Driver object exists per open plot; the pipeline owns
// it. The core opens the plot file when the device's registry row says it has one, wraps
// it in a Sink for open() and closes it after close().
//
// Coordinates reach a driver in its device units as doubles, for every device: the
// pipeline's dispatch converts plot units by the transform of the device's registry row
// and rounds nothing. Drivers of integer formats (HPGL, the applet source) round with
// device_int() below; raster and vector drivers keep the sub-pixel positions. Drivers
// never see the GlobalBlock: what they need to know comes in DriverSetup.
//
// Order of calls for one plot:
//   open                          once, from zorini, before anything else
//   colour                        right after open (the colour table's foreground), then
//                                 on every colour change
//   pen_width                     right after open (the width every page starts with),
//                                 then on every change
//   point Move, Draw, Draw, ...   polylines, already clipped; a polyline longer than the
//                                 pipeline's buffer arrives as pieces of 100 points, each
//                                 starting with a Move to the last point of the one before
//   point End                     before every attribute change (colour, width, cap, fill,
//                                 text, image, new page, erase, close) when points were
//                                 sent since the last End; x, y repeat the last point
//   line_cap, fill, text, image, new_page, erase, flush, input   as the program asks
//   close                         once, from zorfin; the core then closes the file
// Coordinates are finite: the pipeline never sends NaN or infinities, but values far
// outside the page can arrive when clipping is off, so integer conversions must clamp.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>

#include "core/clock.h"
#include "drivers/sink.h"

namespace zorvel::screen {
class Target;
}

namespace zorvel {

class RasterPage;

// Pen codes of plot point.
enum class Pen : int {
  Draw = 2,     // line from the previous point
  Move = 3,     // start a new polyline
  End = 9,      // end the open polyline before an attribute change
  Close = 999,  // final flush before close (the pipeline calls close() instead)
};

struct Rgb {
  int r = 0;  // 0..255
  int g = 0;
  int b = 0;
  int a = 255;  // opacity 0..255; only drivers with kCapAlpha see other values than 255
};

// Nearest integer of a device coordinate for drivers of integer formats: halves upwards,
// clamped far outside every device and well inside int.
inline long long device_int(double v) {
  constexpr double kLimit = 2e9;
  if (!(v == v)) {
    return 0;
  }
  return static_cast<long long>(std::floor(std::clamp(v, -kLimit, kLimit) + 0.5));
}

// Page and device facts fixed when the plot starts, with every per-format setting the
// program made (psmode, ...).
struct DriverSetup {
  int variant = 0;          // the registry row's variant of its driver (PostScript:
                            //   POST, PSCL, EPS, PS; see the driver's source)
  double page_width = 0.0;  // page size in plot units (less one)
  double page_height = 0.0;
  double scale = 1.0;         // device units per plot unit
  double scale_factor = 1.0;  // sclfac
  bool landscape = true;      // the page is wider than high and not kept unrotated
  bool reversed = false;      // reversed screen mode: dark on white paper
  bool user_offset = false;   // hworig set: offset on the sheet in plot units
  int offset_x = 0;
  int offset_y = 0;
  DateTime stamp{};            // date and time for the file header
  bool single_page = false;    // PostScript: psmode "SING", no multi-page structure
  bool compress = true;        // PDF: pdfmod "COMP", content streams deflated
  bool hpgl2 = false;          // HPGL: hpmode "HPG2", the HP-GL/2 dialect
  int page_mode = 0;           // pagmod: 0 COMI/LAND, 1 MOVI/PORT (turned), 2 NONE
  double device_width = 0.0;   // the page in device units as the device holds it (turned
  double device_height = 0.0;  //   when the dispatch turns it): applet size, clearRect
  int line_cap = 2;            // lncap in force at the start (0 CUT, 1 ROUN, 2 LONG)
  std::string_view file_name;  // the plot file's name; valid during open() only
  // Raster devices: the page to draw on (owned by the caller, sized and cleared), whether
  // to anti-alias, the TIFF compression (0 deflate, 1 LZW, 2 none), and the colour table
  // whose entries (0x00RRGGBB) are the palette of index formats when the page is written.
  RasterPage* raster = nullptr;
  bool antialias = false;
  int image_compression = 0;
  const int* colour_table = nullptr;  // 256 entries, valid while the plot is open
  // Screen devices: the window the page is shown in (screen/screen_target.h).
  screen::Target* screen = nullptr;
  // How a single-page format names the files of further pages (filmod, filopt): the plot
  // file's stem, the separator, a number below 10^digits, the extension.
  struct Versions {
    char separator = '_';      // '\0': none
    int digits = 4;
    bool zero_padded = false;  // filopt NUMB: numbers padded to `digits`
    bool short_names = true;   // filmod COUN: stem and number kept within 8 characters
  } versions;
};

// What a driver does itself; the pipeline supplies the rest.
enum DriverCaps : unsigned {
  kCapFill = 1U,     // fill() draws filled paths; without it the pipeline hatches them
  kCapText = 2U,     // text() writes driver fonts; without it hwfont draws stroke glyphs
  kCapWidths = 4U,   // the device draws line widths (pen_width in hardware mode); without
                     //   it the pipeline draws wide lines as parallel strokes
  kCapDashes = 8U,   // the device draws dash patterns (not used yet: the pipeline dashes)
  kCapImages = 16U,  // image() places pixel blocks; without it the pipeline fills one
                     //   rectangle per run of equal pixels
  kCapAlpha = 32U,   // colours and images may be translucent (Rgb::a, image alpha)
  kCapShapes = 64U,  // place_shape() defines a group of polylines once and places it by
                     //   reference; without it the pipeline sends the polylines each time
  kCapSectors = 128U,  // sector() fills annular sectors (pie slices) with true arcs;
                       //   without it the pipeline fills a polygon
  kCapFilledShapes = 256U,  // place_shape() also takes filled shapes (Shape::filled): the
                            //   contours of outline glyphs, defined once and placed by
                            //   reference; without it the pipeline fills them each time
  kCapFontFiles = 512U,  // text() takes runs in outline font files (TextRun::file) and
                         //   embeds the glyphs they use; without it outline glyphs are
                         //   filled paths
};

// Line width of linwid as the pipeline hands it to the driver.
struct LineWidth {
  int n = 1;                 // linwid value in plot units, 1..32000
  bool hardware = true;      // hardware line-width mode and kCapWidths: the device draws it
  double width_scale = 1.0;  // line-width scale, multiplies the written width
  double style_scale = 1.0;  // line-style scale (PostScript restates widths on new pages)
};

// How a filled path decides what is inside.
enum class FillRule { NonZero, EvenOdd };

// A filled area: one or more closed contours in device units (already clipped). Contour
// i runs from index ends[i-1] (0 for the first) up to ends[i]; every contour has at least
// three points and is closed implicitly. Point counts are unlimited.
struct Path {
  std::span<const double> xs;
  std::span<const double> ys;
  std::span<const int> ends;
  FillRule rule = FillRule::NonZero;
  bool seamless = false;  // one of many pieces that meet edge to edge (shaded surfaces,
                          //   triangles in colours): raster pages fill it without
                          //   anti-aliased edges, which would leave seams between them
};

// A filled annular sector in device units: centre, inner radius r1 (0: a pie slice) up
// to the outer radius r2, from angle `start` to `end` in degrees, measured from the
// device's x axis towards its y axis; 0 <= r1 <= r2, start < end <= start + 360. The
// pipeline sends only sectors that lie wholly inside the clip region.
struct Sector {
  double x = 0.0;
  double y = 0.0;
  double r1 = 0.0;
  double r2 = 0.0;
  double start = 0.0;
  double end = 0.0;
};

// One character of a driver-font text run.
struct GlyphPlace {
  double x = 0.0;  // device units: the centre of the glyph's base line
  double y = 0.0;
  std::uint32_t unicode = 0;  // the character
  std::uint8_t code = 0;      // its code in the face's 8-bit encoding (PostScript:
                              //   ASCII, 127..186 the accented letters in the order of
                              //   the GermanVec vector, 187 copyright; Symbol's own);
                              //   0: outside the encoding, shown by its glyph name
                              //   (ps_glyph_name of text/ps_fonts.h)
  std::uint32_t glyph = 0;    // runs in a font file: the glyph index in the file, and
                              //   (x, y) is the glyph's origin on the base line
};

// An outline font file whose glyphs a text run uses (drivers with kCapFontFiles).
struct FontFileRef {
  std::string_view path;     // the file (TrueType, OpenType or Type 1)
  int face_index = 0;        // face of a collection
  std::string_view ps_name;  // PostScript name of the face: "DejaVuSans-Bold"
  std::uint64_t id = 0;      // the same for every run of the same face during a plot
};

// Text in the device's own font (hwfont). The text engine lays out and measures every
// character; the driver writes the run as a whole (SVG, PDF: one element) or character
// by character at the given places (PostScript).
struct TextRun {
  std::string_view utf8;               // the run's characters as UTF-8
  std::span<const GlyphPlace> glyphs;  // one per character of utf8, in order
  std::string_view face;               // font name: one of the 35 standard PostScript
                                       //   fonts ("Times-Roman", "Symbol", ...)
  const FontFileRef* file = nullptr;   // an outline font file instead (kCapFontFiles):
                                       //   glyphs by index, placed at their origins
  double angle = 0.0;                  // base line, degrees from the device x axis towards y
  double size = 0.0;                   // font size (em) in device units
  double stretch = 1.0;                // horizontal stretch of the characters, 0 < s < 2
};

// A group of polylines that the program draws many times alike (a stroke glyph of one
// font, size and angle), in device units relative to the point where it is placed.
// Polyline i runs from index ends[i-1] (0 for the first) up to ends[i]; each has at least
// two points. `id` numbers the shapes of one plot from 0: the same id is the same shape.
struct Shape {
  int id = 0;
  bool filled = false;  // closed contours (each at least 3 points) filled by the non-zero
                        //   rule in the current colour, not stroked (kCapFilledShapes)
  std::span<const double> xs;
  std::span<const double> ys;
  std::span<const int> ends;
  double xmin = 0.0;  // bounds of the points
  double ymin = 0.0;
  double xmax = 0.0;
  double ymax = 0.0;
};

// A block of pixels placed on the page: rows from the top, each `width` pixels of 3
// (RGB) or 4 (RGBA) bytes, `stride` bytes apart. Device rectangle: (x0, y0) is where the
// first pixel of the first row goes, (x1, y1) the opposite corner.
struct Image {
  const std::uint8_t* pixels = nullptr;
  int width = 0;
  int height = 0;
  int channels = 3;
  std::size_t stride = 0;
  double x0 = 0.0;
  double y0 = 0.0;
  double x1 = 0.0;
  double y1 = 0.0;
};

// Cursor input of screen devices.
struct InputEvent {
  double x = 0.0;  // device units of the cursor
  double y = 0.0;
  int button = 0;  // 1, 2, 3 mouse buttons; 0 a key
  int key = 0;     // the key's character code (button 0)
};

class Driver {
 public:
  virtual ~Driver() = default;

  // Writes the opening part into `out` (the plot file, or memory; null for devices
  // without a file). The core keeps ownership and closes the file after close(). False
  // when the device cannot start.
  virtual bool open(Sink* out, const DriverSetup& setup) = 0;

  // One point in device units with its pen code.
  virtual void point(double x, double y, Pen pen) = 0;

  // What the driver does itself (DriverCaps bits).
  virtual unsigned caps() const { return 0; }

  // Colour change: the RGB to draw with (from the colour table for an index) and the
  // colour value. On devices that only know table indices (colour depth 8 in the
  // registry) the value is always an index 0..255: an explicit RGB value has already
  // been replaced by its nearest table entry.
  virtual void colour(Rgb /*rgb*/, int /*value*/) {}

  // The line-width setting (linwid, hwmode). Drivers with kCapWidths draw lines n plot
  // units wide times the width scale when `hardware` is set, their thinnest line
  // otherwise.
  virtual void pen_width(const LineWidth& /*w*/) {}

  // Line cap of lncap: 0 cut ("CUT"), 1 round ("ROUN"), 2 projecting ("LONG").
  virtual void line_cap(int /*cap*/) {}

  // Line join: 0 mitred (with the miter limit), 1 round, 2 bevelled.
  virtual void line_join(int /*join*/, double /*miter_limit*/) {}

  // Filled path in the given colour; the current colour stays as it was for the lines
  // that follow. Called only when caps() has kCapFill.
  virtual void fill(const Path& /*path*/, Rgb /*rgb*/) {}

  // Filled sector in the given colour, which stays in force only for the sector. Called
  // only when caps() has kCapSectors.
  virtual void sector(const Sector& /*s*/, Rgb /*rgb*/) {}

  // Text in a driver font. Called only when caps() has kCapText.
  virtual void text(const TextRun& /*run*/) {}

  // Pixels placed at a device rectangle. Called only when caps() has kCapImages.
  virtual void image(const Image& /*img*/) {}

  // The shape drawn with its origin at (x, y), device units, as its polylines would be
  // drawn in the current colour, width and cap (only with kCapShapes). The polylines are
  // the same at every call with the same id, so the driver may define them at the first
  // and refer to them later. No polyline is open before or after the call.
  virtual void place_shape(const Shape& /*shape*/, double /*x*/, double /*y*/) {}

  // Waits for cursor input on a screen; false when the device has none.
  virtual bool input(InputEvent& /*event*/) { return false; }

  // erase: clears the page (the applet's clearRect); nothing on paper devices.
  virtual void erase() {}
  // new_page: finishes the page and starts the next (newpag, level 1). The driver restates
  // its own attributes (colour, width, cap) on the new page; the pipeline sends nothing.
  virtual void new_page() {}
  // flush: makes buffered drawing visible (screens, sendbf).
  virtual void flush() {}

  // Writes the closing part and flushes every buffered byte. True when every write of
  // the plot succeeded.
  virtual bool close() = 0;

  // A write failed since open (sticky). The pipeline asks after every polyline and
  // reports warning 36 once.
  virtual bool failed() const = 0;

  // Number of words dropped since open because they were longer than a line of the file
  // (TextWriter::overflows); the pipeline reports new ones as warning 176.
  virtual long long overflows() const { return 0; }
};

}  // namespace zorvel

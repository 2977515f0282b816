#pragma once
// The output-driver interface. One Driver object exists per open plot; the pipeline owns
// it. The core opens the plot file, hands it to open() and closes it after close().
//
// Coordinates reach a driver already converted into its device units by the pipeline's
// dispatch (integers for screens, rasters, HPGL and the applet source; reals for the
// metafile, PostScript, PDF, SVG and IPE). Drivers never see the GlobalBlock: what they
// need to know about the page comes in DriverSetup.
//
// Order of calls for one plot:
//   open                          once, from zorini, before anything else
//   colour                        right after open (the colour table's foreground), then
//                                 on every colour change
//   point Move, Draw, Draw, ...   polylines, already clipped; a polyline longer than the
//                                 pipeline's buffer arrives as pieces of 100 points, each
//                                 starting with a Move to the last point of the one before
//   point End                     before every attribute change (colour, width, cap, fill,
//                                 new page, erase, close) when points were sent since the
//                                 last End; x, y repeat the last point
//   pen_width, line_cap, fill, new_page, erase, flush   as the program asks
//   close                         once, from zorfin; the core then closes the file
// Coordinates are finite: the pipeline never sends NaN or infinities, but values far
// outside the page can arrive when clipping is off, so integer conversions must clamp.

#include <cstdio>
#include <span>
#include <string_view>

#include "core/clock.h"

namespace zorvel {

// Pen codes of plot point.
enum class Pen : int {
  Draw = 2,     // line from the previous point
  Move = 3,     // start a new polyline
  Width = 6,    // line-width change (PDF, SVG): x carries the width
  End = 9,      // end the open polyline before an attribute change
  Close = 999,  // final flush before close (the pipeline calls close() instead)
};

struct Rgb {
  int r = 0;  // 0..255
  int g = 0;
  int b = 0;
};

// Page and device facts fixed when the plot starts.
struct DriverSetup {
  int device = 0;              // device code of metafl
  double page_width = 0.0;     // page size in plot units (less one)
  double page_height = 0.0;
  double scale = 1.0;          // device units per plot unit
  double scale_factor = 1.0;   // sclfac
  bool landscape = true;       // the page is wider than high and not kept unrotated
  bool reversed = false;       // reversed screen mode: dark on white paper
  bool user_offset = false;    // hworig set: offset on the sheet in plot units
  int offset_x = 0;
  int offset_y = 0;
  DateTime stamp{};            // date and time for the file header
  bool single_page = false;    // PostScript: psmode "SING", no multi-page structure
  int page_mode = 0;           // pagmod: 0 COMI/LAND, 1 MOVI/PORT (turned), 2 NONE
  double device_width = 0.0;   // the page in device units as the device holds it (turned
  double device_height = 0.0;  //   when the dispatch turns it): applet size, clearRect
  int line_cap = 2;            // lncap in force at the start (0 CUT, 1 ROUN, 2 LONG)
  std::string_view file_name;  // the plot file's name; valid during open() only
};

// What a driver does itself; the pipeline supplies the rest.
enum DriverCaps : unsigned {
  kCapFill = 1U,  // fill() draws filled polygons; without it the pipeline hatches them
  kCapText = 2U,  // text() writes driver fonts; without it hwfont draws stroke glyphs
};

// Line width of linwid as the pipeline hands it to drivers that draw widths natively
// (PostScript; see pen_width below).
struct LineWidth {
  int n = 1;                  // linwid value in plot units, 1..32000
  bool hardware = true;       // hardware line-width mode: the device draws the width
  double width_scale = 1.0;   // line-width scale, multiplies the written width
  double style_scale = 1.0;   // line-style scale (PostScript restates widths on new pages)
};

// Text in the device's own font (font mode 1 of the text engine, hwfont). The engine
// places and measures every character itself; the driver only writes it.
struct TextRun {
  std::string_view text;    // 8-bit codes 32..187: ASCII, 127..186 the accented letters
                            // in the order of the PostScript GermanVec, 187 copyright
  std::string_view face;    // font name: "Times-Roman", "Times-Italic", "Symbol"
  double x = 0.0;           // device units: the centre of the text's base line
  double y = 0.0;
  double angle = 0.0;       // base line, degrees from the device x axis towards its y axis
  double size = 0.0;        // font size (em) in device units
  double stretch = 1.0;     // horizontal stretch of the characters (chawth), 0 < s < 2
};

class Driver {
 public:
  virtual ~Driver() = default;

  // Writes the opening part into `file` (open for writing; the core keeps ownership and
  // closes it after close()). False when the device cannot start.
  virtual bool open(std::FILE* file, const DriverSetup& setup) = 0;

  // One point in device units with its pen code.
  virtual void point(double x, double y, Pen pen) = 0;

  // What the driver does itself (DriverCaps bits).
  virtual unsigned caps() const { return 0; }

  // Colour change: the RGB to draw with (from the colour table for an index) and the
  // colour value. On devices that only know table indices (colour depth 8: the metafile,
  // HPGL, GIF) the value is always an index 0..255: an explicit RGB value has already
  // been replaced by its nearest table entry.
  virtual void colour(Rgb /*rgb*/, int /*value*/) {}

  // Line width in plot units (already clamped to 1..32000) times the width scale.
  virtual void line_width(double /*width*/) {}

  // The full line-width setting, for drivers whose output depends on more than the
  // product (PostScript writes max(2n, 5) driver units times the width scale in hardware
  // mode, its thinnest line otherwise). The pipeline calls this one; the default passes
  // n times the width scale on to line_width().
  virtual void pen_width(const LineWidth& w) { line_width(w.n * w.width_scale); }

  // Line cap of lncap: 0 cut ("CUT"), 1 round ("ROUN"), 2 projecting ("LONG").
  virtual void line_cap(int /*cap*/) {}

  // Line join: 0 mitred (with the miter limit), 1 round, 2 bevelled.
  virtual void line_join(int /*join*/, double /*miter_limit*/) {}

  // Filled polygon in device units (closed implicitly, already clipped), in the given
  // colour; the current colour stays as it was for the lines that follow. Called only
  // when caps() has kCapFill.
  virtual void fill(std::span<const double> /*xs*/, std::span<const double> /*ys*/, Rgb /*rgb*/) {}

  // erase: clears the page (the applet's clearRect); nothing on paper devices.
  // Text in a driver font, centred on (x, y) along its base line. Devices without
  // fonts of their own never receive it (the text engine draws strokes for them).
  virtual void text(const TextRun& /*run*/) {}

  virtual void erase() {}
  // new_page: finishes the page and starts the next (newpag, level 1). The driver restates
  // its own attributes (colour, width, cap) on the new page; the pipeline sends nothing.
  virtual void new_page() {}
  // flush: makes buffered drawing visible (screens, sendbf).
  virtual void flush() {}

  // Writes the closing part and flushes every buffered byte into the file. True when
  // every write of the plot succeeded.
  virtual bool close() = 0;

  // A write failed since open (sticky). The pipeline asks after every polyline and
  // reports warning 36 once.
  virtual bool failed() const = 0;

  // Number of words dropped since open because they were longer than a line of the file
  // (TextWriter::overflows); the pipeline reports new ones as warning 176.
  virtual long long overflows() const { return 0; }
};

}  // namespace zorvel

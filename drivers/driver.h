#pragma once
// The output-driver interface. One Driver object exists per open plot; the pipeline owns
// it. The core opens the plot file, hands it to open() and closes it after close().
//
// Coordinates reach a driver already converted into its device units by the pipeline's
// dispatch (integers for screens, rasters, HPGL and the applet source; reals for the
// metafile, PostScript, PDF, SVG and IPE). Drivers never see the GlobalBlock: what they
// need to know about the page comes in DriverSetup.

#include <cstdio>
#include <span>

#include "core/clock.h"

namespace zorvel {

// Pen codes of plot point.
enum class Pen : int {
  Draw = 2,     // line from the previous point
  Move = 3,     // start a new polyline
  Width = 6,    // line-width change (PDF, SVG): x carries the width
  End = 9,      // end the open polyline before an attribute change
  Close = 999,  // final flush before close
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
};

// Line width of linwid as the pipeline hands it to drivers that draw widths natively
// (PostScript; see pen_width below).
struct LineWidth {
  int n = 1;                  // linwid value in plot units, 1..32000
  bool hardware = true;       // hardware line-width mode: the device draws the width
  double width_scale = 1.0;   // line-width scale, multiplies the written width
  double style_scale = 1.0;   // line-style scale (PostScript restates widths on new pages)
};

class Driver {
 public:
  virtual ~Driver() = default;

  // Writes the opening part into `file` (open for writing; the core keeps ownership and
  // closes it after close()). False when the device cannot start.
  virtual bool open(std::FILE* file, const DriverSetup& setup) = 0;

  // One point in device units with its pen code.
  virtual void point(double x, double y, Pen pen) = 0;

  // Colour change: the RGB to draw with and the colour value it came from.
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

  // Filled polygon in device units (closed implicitly), in the given colour.
  virtual void fill(std::span<const double> /*xs*/, std::span<const double> /*ys*/, Rgb /*rgb*/) {}

  virtual void erase() {}
  virtual void new_page() {}
  virtual void flush() {}

  // Writes the closing part and flushes every buffered byte into the file. True when
  // every write of the plot succeeded.
  virtual bool close() = 0;

  // A write failed since open (sticky).
  virtual bool failed() const = 0;
};

}  // namespace zorvel

#pragma once
// The table of output devices: the one place that knows device codes. Each row holds
// everything the rest of the library needs to know about a device: its metafl keyword,
// code and file, how plot units become device units, the device page and scale, its
// colours, and the factory of its driver. Code outside this table asks the row, never the
// code; a new format is one driver source plus one row.

#include <memory>
#include <span>
#include <string_view>

#include "drivers/driver.h"

namespace zorvel {

// Kinds of device, for what is common to a kind (screens take erase and sendbf).
enum class DeviceFamily {
  Screen,    // window on the screen
  OpenGL,    // screen window drawn through OpenGL
  Metafile,  // the library's own text metafile "GKSL"
  Cgm,
  Wmf,
  Emf,
  Hpgl,
  PostScript,  // PS and EPS
  Pdf,
  Raster,  // TIFF, raw image, virtual bitmap, PNG, PPM, BMP, GIF
  Java,    // applet source
  Svg,
  Ipe,
};

// How the dispatch converts plot units (origin top left, y downwards) into device units,
// with s the device scale and W, H the page size in plot units (less one):
//
//   Pixels     (s x, s y)                     turned: (s y, s (W - x))
//   Metafile   ((x + xo) s, (H - y) s)        turned: ((y + xo) s, x s)
//   Hpgl       (s x, s (H - y))               turned: (s y, s x)
//   HpglSheet  (s x, s (H - y))               turned: (s (H - y), s (W - x))
//   Paper      (s x, s (H - y))               turned: (s y, s x)
//
// Integer devices round in their drivers. The Hpgl transforms add the hworig shift.
enum class Dispatch {
  None,       // no device open (tests: plot units handed over unchanged)
  Pixels,     // screens, WMF, raster images, the applet, SVG: y downwards
  Metafile,   // GKSL and CGM: centimetres from the bottom, with x offset
  Hpgl,       // plotter units from the bottom
  HpglSheet,  // fixed sheets, portrait pages turned onto the landscape sheet
  Paper,      // PostScript, PDF, IPE: from the bottom, landscape pages turned
};

// When the dispatch turns the page.
enum class Turning {
  PageMode,   // pagmod "MOVI"/"PORT"
  Landscape,  // a landscape page lies turned on a portrait sheet (unless pagmod "NONE")
  Portrait,   // a portrait page lies turned on a landscape sheet
};

// The device page that the page is fitted into (sclmod), unless hwpage sets one.
enum class Sheet {
  None,       // the output takes the page's own size
  Printable,  // the printable area of an A4 sheet, 19.5 x 28 cm, portrait
  A4,         // landscape A sheets
  A3,
  A2,
  A1,
  Window,  // the screen window of zorini
};

// The output's file: none, written as text, or binary.
enum class FileKind { None, Text, Binary };

// Colour rules of a device (ColourRule bits).
enum ColourRule : unsigned {
  kColourPaper = 1U,          // white is the paper's own colour: the small and VGA tables
                              //   swap their ends, reversed tables draw white as black
  kColourRampBlack = 2U,      // the ramp tables draw "WHIT" as black (CGM, WMF)
  kColourDarkOnLight = 4U,    // the ramp tables put their background at the top index
  kColourReversible = 8U,     // reversed screen mode swaps the table's ends
  kColourPens = 16U,          // plotter pens: plots start with the small table
  kColourAutoReversed = 32U,  // screen mode "AUTO" means reversed: dark on white paper
};

using DriverFactory = std::unique_ptr<Driver> (*)();

struct DeviceInfo {
  std::string_view key;        // metafl keyword, 4 characters, blank-padded
  int code;                    // device code stored by metafl
  std::string_view extension;  // of the default file "zorvel.<ext>"
  FileKind file;               // the core opens the plot file as this (None: no file)
  DeviceFamily family;
  Dispatch dispatch;
  Turning turning;
  double natural;  // device units per plot unit at true size
  Sheet sheet;
  bool scale_in_file;     // the driver writes sclfac into the file itself
  bool shifts_origin;     // hworig shifts the device coordinates (by natural units)
  double thinnest;        // thinnest line: device units when > 0, plot units when < 0
  int colour_depth;       // 8: the device knows table indices only; 24: true colour
  unsigned colours;       // ColourRule bits
  int variant;            // handed to the driver in DriverSetup::variant
  DriverFactory factory;  // null while no driver for the device exists
};

// Every row, in the table's order.
std::span<const DeviceInfo> all_devices();
// Row of a metafl keyword (exact, 4 characters), or null.
const DeviceInfo* find_device(std::string_view key4);
// Row of a device code, or null.
const DeviceInfo* find_device(int code);
// The row of the device that zorini chooses when metafl was never called.
const DeviceInfo& default_device();
// The row of the plain screen window (for keywords that stand for it).
const DeviceInfo& screen_device();

// The window a screen device draws in: 1..8 for the numbered windows ("XWIN", "XWI1" ..
// "XWI8"), 0 for the one window of "XWND" (and "CONS", "GL").
int screen_window(const DeviceInfo& dev);

// The device page of a sheet in plot units (0 x 0 for None and Window).
void sheet_size(Sheet s, double& width, double& height);
// The thinnest line of a device in plot units at the device scale s.
double thinnest_line(const DeviceInfo& dev, double s);

}  // namespace zorvel

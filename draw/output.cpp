// The device of the open plot: starting and closing the driver, fitting the page to the
// device, and the routines that act on the output as a whole (widths, caps, pages).

#include <algorithm>
#include <cmath>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "drivers/registry.h"

namespace zorvel {
namespace {

// Page fitting
// ============
//
// The device scale s (device units per plot unit) of a plot is
//
//     s = natural * k * hwscal * sclfac
//
// natural   device units per plot unit at true size (a plot unit is 0.1 mm):
//             PostScript        2.0       (1/200 cm)
//             PDF, IPE          72/254    (points)
//             metafile, CGM     0.01      (centimetres)
//             HPGL              4.0       (plotter units of 0.025 mm)
//             SVG, screens, raster images, applet   96/254   (pixels at 96 per inch)
// k         fits the page (W + 1 by H + 1 plot units, turned as the dispatch turns it)
//           into the device page (Dw by Dh plot units):  r = min(Dw / Pw, Dh / Ph)
//             sclmod "DOWN" (default)   k = min(r, 1): a page larger than the device page
//                                       shrinks to fit, a smaller one keeps its size
//             sclmod "FULL"             k = r: the page fills the device page
//             sclmod "NONE"             k = 1: true size
// device page   the hwpage size when set; otherwise
//             PostScript               the printable area of an A4 sheet, portrait
//                                      1950 x 2800 (19.5 x 28 cm), which the default
//                                      offset of 0.75 cm and 1 cm centres on the sheet;
//                                      landscape pages lie turned on it, so "DA4L" fills
//                                      it at s = 1.857 with margins of about 0.75 cm on
//                                      every side and nothing past the paper's edge;
//                                      EPS has none: a figure keeps its true size
//             HPA4, HPA3, HPA2, HPA1   the A4 ... A1 sheet, landscape
//             screens, applet, raster  the window of zorini (853 x 603 pixels for a
//                                      landscape page, 603 x 853 for a portrait one)
//             metafile, CGM, HPGL, EPS, PDF, SVG, IPE: none (k = 1), their output
//                                      takes the page's own size
// sclfac    the PostScript family leaves sclfac out of s: it writes it into the file's
//           "scale" command, and its bounding box uses W * s * sclfac.
// hworig    PostScript places the page at this offset on the sheet (its driver reads it
//           from DriverSetup); HPGL shifts its plotter coordinates by it; the other
//           devices have no sheet to place the page on.

struct Fitting {
  double natural = 1.0;
  double sheet_w = 0.0;  // device page in plot units; 0: no fitting
  double sheet_h = 0.0;
  bool factor_in_scale = true;
};

constexpr double kPoints = 72.0 / 254.0;
constexpr double kPixels = 96.0 / 254.0;

// Landscape A sheets in plot units.
constexpr double kSheets[4][2] = {{2970, 2100}, {4200, 2970}, {5940, 4200}, {8410, 5940}};

Fitting fitting(const GlobalBlock& g, Dispatch d, int device) {
  Fitting f;
  const CoreState& c = g.core;
  switch (d) {
    case Dispatch::Paper:
      if (device == 511) {
        f.natural = kPoints;
        break;
      }
      f.natural = 2.0;
      f.factor_in_scale = false;
      if (device != 503) {
        f.sheet_w = 1950.0;  // an EPS figure is placed by its user, not on a sheet
        f.sheet_h = 2800.0;
      }
      break;
    case Dispatch::Ipe:
      f.natural = kPoints;
      break;
    case Dispatch::Metafile:
      f.natural = 0.01;
      break;
    case Dispatch::Hpgl:
      f.natural = 4.0;
      break;
    case Dispatch::HpglSheet: {
      f.natural = 4.0;
      const auto i = static_cast<std::size_t>(std::clamp(device - 402, 0, 3));
      f.sheet_w = kSheets[i][0];
      f.sheet_h = kSheets[i][1];
      break;
    }
    case Dispatch::Svg:
      f.natural = kPixels;
      break;
    case Dispatch::Screen:
    case Dispatch::OpenGl:
    case Dispatch::Raster:
    case Dispatch::Java:
      f.natural = kPixels;
      f.sheet_w = c.window_width / kPixels;
      f.sheet_h = c.window_height / kPixels;
      break;
    case Dispatch::None:
      break;
  }
  if (g.page.hw_page_set) {
    f.sheet_w = g.page.hw_page_width;
    f.sheet_h = g.page.hw_page_height;
  }
  return f;
}

// Whether the dispatch turns the page for this device.
bool turned(const GlobalBlock& g, Dispatch d, int page_mode) {
  const double w = g.page.width;
  const double h = g.page.height;
  switch (d) {
    case Dispatch::Paper:
      return w > h && page_mode != 2;
    case Dispatch::HpglSheet:
      return w <= h;
    default:
      return page_mode == 1;
  }
}

// The running state of the pipeline at the start of a plot. Settings that may be made
// before zorini stay.
void reset_for_plot(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  p.cur_x = 0.0;
  p.cur_y = 0.0;
  p.count = 0;
  p.has_point = false;
  p.pending_move = false;
  restart_dash(p);
  p.dash_colour_count = 0;
  p.side_offset = 0.0;
  p.plane = false;
  p.affine = false;
  p.circle = false;
  p.axis_rect_set = false;
  clip_to_page(g);
  p.line_width = 1;
  p.strokes = 1;
  p.stroke_step = 0.0;
  p.fill_active = false;
  p.path_open = false;
  p.write_error_reported = false;
  p.overflows_reported = 0;
  p.x_offset = 0.0;
  p.device_dx = 0.0;
  p.device_dy = 0.0;
}

bool native_widths(int device) {
  return (device >= 501 && device <= 504) || device == 511 || device == 801 || device == 802;
}

}  // namespace

double device_scale(const GlobalBlock& g, const DeviceInfo& dev) {
  const int device = dev.code == 101 ? 80 : dev.code;
  const Dispatch d = dispatch_of(device);
  const Fitting f = fitting(g, d, device);
  double pw = g.page.width + 1.0;
  double ph = g.page.height + 1.0;
  if (turned(g, d, g.pipe.page_mode)) {
    std::swap(pw, ph);
  }
  double k = 1.0;
  if (f.sheet_w > 0.0 && f.sheet_h > 0.0 && g.page.scale_mode != 2) {
    const double r = std::min(f.sheet_w / pw, f.sheet_h / ph);
    k = g.page.scale_mode == 1 ? r : std::min(r, 1.0);
  }
  double s = f.natural * k * g.page.hw_scale;
  if (f.factor_in_scale) {
    s *= g.page.scale_factor;
  }
  return s;
}

bool open_device(GlobalBlock& g, const DeviceInfo& dev, std::FILE* file) {
  return open_driver(g, dev, dev.factory(), file);
}

bool open_driver(GlobalBlock& g, const DeviceInfo& dev, std::unique_ptr<Driver> driver,
                 std::FILE* file) {
  PipelineState& p = g.pipe;
  reset_for_plot(g);
  const int device = g.core.device;
  p.dispatch = dispatch_of(device);
  p.scale = device_scale(g, dev);
  p.page_w = g.page.width;
  p.page_h = g.page.height;
  p.rotated = turned(g, p.dispatch, p.page_mode);
  if (g.page.hw_origin_set && (p.dispatch == Dispatch::Hpgl || p.dispatch == Dispatch::HpglSheet)) {
    p.device_dx = g.page.hw_origin_x * 4.0;
    p.device_dy = g.page.hw_origin_y * 4.0;
  }

  DriverSetup setup;
  setup.device = device;
  setup.page_width = g.page.width;
  setup.page_height = g.page.height;
  setup.scale = p.scale;
  setup.scale_factor = g.page.scale_factor;
  setup.landscape = g.page.width > g.page.height && p.page_mode != 2;
  setup.reversed = screen_reversed(g);
  setup.user_offset = g.page.hw_origin_set;
  setup.offset_x = g.page.hw_origin_x;
  setup.offset_y = g.page.hw_origin_y;
  setup.stamp = current_date_time();
  setup.single_page = g.ps.single_page;
  setup.page_mode = p.page_mode;
  const double across = p.rotated ? g.page.height : g.page.width;
  const double along = p.rotated ? g.page.width : g.page.height;
  setup.device_width = across * p.scale;
  setup.device_height = along * p.scale;
  setup.line_cap = p.line_cap;
  setup.file_name = g.core.plot_file;

  p.driver = std::move(driver);
  if (!p.driver || !p.driver->open(file, setup)) {
    p.driver.reset();
    p.dispatch = Dispatch::None;
    return false;
  }
  if (p.line_cap != 2) {
    p.driver->line_cap(p.line_cap);  // files start with projecting caps
  }
  update_strokes(g);
  return true;
}

bool close_device(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  if (!p.driver) {
    return true;
  }
  end_polyline(g);
  const bool ok = p.driver->close();
  check_driver(g);
  p.driver.reset();
  p.dispatch = Dispatch::None;
  p.count = 0;
  p.has_point = false;
  return ok;
}

void check_driver(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  if (!p.driver) {
    return;
  }
  if (!p.write_error_reported && p.driver->failed()) {
    p.write_error_reported = true;
    warn(g, 36);
  }
  if (const long long n = p.driver->overflows(); n > p.overflows_reported) {
    p.overflows_reported = n;
    warn_custom(g, 176, "Internal overflow in qqsbuf");
  }
}

void send_line_width(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  if (!p.driver) {
    return;
  }
  update_strokes(g);
  LineWidth w;
  w.n = p.line_width;
  w.hardware = p.hw_widths && native_widths(g.core.device);
  w.width_scale = p.line_width_scale;
  w.style_scale = p.line_style_scale;
  p.driver->pen_width(w);
}

namespace api {

void linwid(GlobalBlock& g, int nwidth) {
  if (!check_range(g, nwidth, 1, 32000)) {
    return;
  }
  end_polyline(g);
  g.pipe.line_width = nwidth;
  send_line_width(g);
}

void lncap(GlobalBlock& g, const char* ccap) {
  const int i = match_keyword(g, "CUT +ROUN+LONG", ccap);
  if (i == 0) {
    return;
  }
  PipelineState& p = g.pipe;
  p.line_cap = i - 1;
  if (p.driver) {
    end_polyline(g);
    p.driver->line_cap(p.line_cap);
  }
}

void pagmod(GlobalBlock& g, const char* cmod) {
  static constexpr int kModes[] = {0, 1, 0, 1, 2};
  if (const int i = match_keyword(g, "COMI+MOVI+LAND+PORT+NONE", cmod); i != 0) {
    g.pipe.page_mode = kModes[i - 1];
  }
}

void hwmode(GlobalBlock& g, const char* cmode, const char* ckey) {
  if (key_view(key4(ckey)) != "LINE") {
    warn(g, 2, std::string_view(ckey));
    return;
  }
  const int i = match_keyword(g, "ON  +OFF ", cmode);
  if (i == 0) {
    return;
  }
  PipelineState& p = g.pipe;
  p.hw_widths = i == 1;
  if (p.driver) {
    end_polyline(g);
    send_line_width(g);
  }
}

void newpag(GlobalBlock& g) {
  end_polyline(g);
  PipelineState& p = g.pipe;
  if (p.driver) {
    p.driver->new_page();
    check_driver(g);
  }
}

void erase(GlobalBlock& g) {
  end_polyline(g);
  PipelineState& p = g.pipe;
  if (!p.driver) {
    return;
  }
  if (p.dispatch == Dispatch::Screen || p.dispatch == Dispatch::OpenGl) {
    // A window is cleared in the background colour (index 0).
    const int colour = g.colour.current;
    set_colour(g, 0);
    p.driver->erase();
    set_colour(g, colour);
    return;
  }
  p.driver->erase();
}

void sendbf(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  if (g.core.level == 0 || !p.driver) {
    return;
  }
  flush_polyline(g);
  if (p.dispatch == Dispatch::Screen || p.dispatch == Dispatch::OpenGl) {
    p.driver->flush();
  }
}

void bufmod(GlobalBlock& g, const char* cmode, const char* ckey) {
  if (key_view(key4(ckey)) != "SEND") {
    warn(g, 2, std::string_view(ckey));
    return;
  }
  if (const int i = match_keyword(g, "OFF +ON  ", cmode); i != 0) {
    g.pipe.buffer_mode = i - 1;
  }
}

}  // namespace api
}  // namespace zorvel

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
#include "screen/module.h"

namespace zorvel {
namespace {

// Page fitting
// ============
//
// The device scale s (device units per plot unit) of a plot is
//
//     s = natural * k * hwscal * sclfac
//
// natural   device units per plot unit at true size (a plot unit is 0.1 mm), from the
//           device's registry row: PostScript 2.0 (1/200 cm), PDF and IPE 72/254
//           (points), metafile and CGM 0.01 (centimetres), HPGL 4.0 (plotter units of
//           0.025 mm), SVG, screens, raster images and the applet 96/254 (pixels)
// k         fits the page (W + 1 by H + 1 plot units, turned as the dispatch turns it)
//           into the device page (Dw by Dh plot units):  r = min(Dw / Pw, Dh / Ph)
//             sclmod "DOWN" (default)   k = min(r, 1): a page larger than the device page
//                                       shrinks to fit, a smaller one keeps its size
//             sclmod "FULL"             k = r: the page fills the device page
//             sclmod "NONE"             k = 1: true size
// device page   the hwpage size when set; otherwise the row's sheet:
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

// The device page in plot units; 0 x 0: no fitting.
void device_page(const GlobalBlock& g, const DeviceInfo& dev, double& w, double& h) {
  if (g.page.hw_page_set) {
    w = g.page.hw_page_width;
    h = g.page.hw_page_height;
  } else if (dev.sheet == Sheet::Window) {
    w = g.core.window_width / dev.natural;  // the window's pixels at true size
    h = g.core.window_height / dev.natural;
  } else {
    sheet_size(dev.sheet, w, h);
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
  p.pattern = FillPattern{};
  p.path_open = false;
  p.write_error_reported = false;
  p.overflows_reported = 0;
  p.x_offset = 0.0;
  p.device_dx = 0.0;
  p.device_dy = 0.0;
  clear_shapes(p);
}

// Screen windows take erase in the background colour, and sendbf.
bool on_screen(const PipelineState& p) {
  return p.device != nullptr &&
         (p.device->family == DeviceFamily::Screen || p.device->family == DeviceFamily::OpenGL);
}

}  // namespace

double device_pixel(const GlobalBlock& g) {
  const PipelineState& p = g.pipe;
  if (p.device == nullptr || !(p.scale > 0.0) ||
      (p.device->family != DeviceFamily::Raster && !on_screen(p))) {
    return 0.0;
  }
  return 1.0 / p.scale;
}

bool page_turned(const GlobalBlock& g, const DeviceInfo& dev) {
  const double w = g.page.width;
  const double h = g.page.height;
  switch (dev.turning) {
    case Turning::Landscape:
      return w > h && g.pipe.page_mode != 2;
    case Turning::Portrait:
      return w <= h;
    case Turning::PageMode:
      break;
  }
  return g.pipe.page_mode == 1;
}

double fit_factor(double sheet_w, double sheet_h, double pw, double ph, int scale_mode) {
  if (!(sheet_w > 0.0 && sheet_h > 0.0) || scale_mode == 2) {
    return 1.0;
  }
  const double r = std::min(sheet_w / pw, sheet_h / ph);
  return scale_mode == 1 ? r : std::min(r, 1.0);
}

double device_scale(const GlobalBlock& g, const DeviceInfo& dev) {
  double pw = g.page.width + 1.0;
  double ph = g.page.height + 1.0;
  if (page_turned(g, dev)) {
    std::swap(pw, ph);
  }
  double sheet_w = 0.0;
  double sheet_h = 0.0;
  device_page(g, dev, sheet_w, sheet_h);
  double s = dev.natural * fit_factor(sheet_w, sheet_h, pw, ph, g.page.scale_mode);
  if (uses_raster_page(dev)) {
    raster_scale(g, pw, ph, s);  // imgsiz and imgdpi choose the raster page's size
  }
  s *= g.page.hw_scale;
  if (!dev.scale_in_file) {
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
  p.device = &dev;
  p.dispatch = dev.dispatch;
  p.scale = device_scale(g, dev);
  p.page_w = g.page.width;
  p.page_h = g.page.height;
  p.rotated = page_turned(g, dev);
  if (g.page.hw_origin_set && dev.shifts_origin) {
    p.device_dx = g.page.hw_origin_x * dev.natural;
    p.device_dy = g.page.hw_origin_y * dev.natural;
  }

  DriverSetup setup;
  setup.variant = dev.variant;
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
  setup.single_page = p.ps_single_page;
  setup.compress = p.pdf_compress;
  setup.hpgl2 = p.hpgl2;
  setup.page_mode = p.page_mode;
  const double across = p.rotated ? g.page.height : g.page.width;
  const double along = p.rotated ? g.page.width : g.page.height;
  setup.device_width = across * p.scale;
  setup.device_height = along * p.scale;
  setup.line_cap = p.line_cap;
  setup.file_name = g.core.plot_file;
  const CoreState& c = g.core;
  setup.versions.separator = c.version_separator == 0 ? '_' : c.version_separator == 1 ? '-' : '\0';
  setup.versions.digits = c.version_digits;
  setup.versions.zero_padded = c.version_long;
  setup.versions.short_names = c.file_mode == 0;

  const bool screen = screen::is_screen(dev);
  if ((uses_raster_page(dev) || screen) && !open_raster_page(g, setup)) {
    p.device = nullptr;
    p.dispatch = Dispatch::None;
    return false;
  }

  if (screen && !screen::attach_screen(g, dev, setup)) {
    p.device = nullptr;
    p.dispatch = Dispatch::None;
    return false;
  }

  p.driver = std::move(driver);
  p.sink.reset(file != nullptr ? new FileSink(file) : nullptr);
  if (!p.driver || !p.driver->open(p.sink.get(), setup)) {
    p.driver.reset();
    p.sink.reset();
    p.device = nullptr;
    p.dispatch = Dispatch::None;
    return false;
  }
  p.caps = p.driver->caps();
  if (p.line_cap != 2) {
    p.driver->line_cap(p.line_cap);  // files start with projecting caps
  }
  send_line_width(g);  // every page starts with the library's own width
  return true;
}

bool close_device(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  if (!p.driver) {
    return true;
  }
  end_polyline(g);
  close_raster_page(g);
  const bool ok = p.driver->close();
  check_driver(g);
  p.driver.reset();
  p.sink.reset();
  p.device = nullptr;
  p.dispatch = Dispatch::None;
  p.caps = 0;
  p.count = 0;
  p.has_point = false;
  return ok;
}

bool cursor_input(GlobalBlock& g, double& x, double& y, int& button, int& key) {
  PipelineState& p = g.pipe;
  if (!p.driver) {
    return false;
  }
  flush_polyline(g);
  InputEvent e;
  if (!p.driver->input(e)) {
    return false;
  }
  from_device(p, e.x, e.y, x, y);
  x -= g.page.origin_x;
  y -= g.page.origin_y;
  button = e.button;
  key = e.key;
  return true;
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
    warn(g, 176);
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
  w.hardware = p.hw_widths && (p.caps & kCapWidths) != 0U;
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

void psmode(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "MULT+SING", cmode); i != 0) {
    g.pipe.ps_single_page = i == 2;
  }
}

// The setting holds for the HPGL devices; another device chosen already is warned about.
void hpmode(GlobalBlock& g, const char* cmode) {
  const int i = match_keyword(g, "HPGL+HPG2", cmode);
  if (i == 0) {
    return;
  }
  g.pipe.hpgl2 = i == 2;
  const DeviceInfo* dev = find_device(g.core.device_key.view());
  if (g.core.metafl_called && dev != nullptr && dev->family != DeviceFamily::Hpgl) {
    warn(g, 41);
  }
}

void pdfmod(GlobalBlock& g, const char* cmode, const char* ckey) {
  if (key_view(key4(ckey)) != "COMP") {
    warn(g, 2, std::string_view(ckey));
    return;
  }
  if (const int i = match_keyword(g, "ON  +OFF ", cmode); i != 0) {
    g.pipe.pdf_compress = i == 1;
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
  if (on_screen(p)) {
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
  if (on_screen(p)) {
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

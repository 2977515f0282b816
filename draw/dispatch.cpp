// The dispatch: plot units (origin at the top left of the page, y downwards) into the
// units of the device, by device family. With s the device scale and W, H the page size
// in plot units (less one):
//
//   screens, WMF, raster, applet   (round(s x), round(s y))       turned: (round(s y), round(s (W - x)))
//   OpenGL                         (s x, s y), unrounded          turned: (s y, s (W - x))
//   metafile, CGM                  ((x + xo) s, (H - y) s)        turned: ((y + xo) s, x s)
//   HPGL                           (round(s x), round(s (H - y))) turned: (round(s y), round(s x))
//   HPGL sheets (HPA4 ... HPA1)    portrait pages (W <= H) are always turned onto the
//                                  landscape sheet: (round(s (H - y)), round(s (W - x)))
//   PostScript, PDF                (s x, s (H - y)); landscape pages (W > H, page mode not
//                                  NONE) lie turned on the portrait sheet: (s y, s x)
//   SVG                            (s x, s y)                     turned: (s y, s (W - x))
//   IPE                            (s x, s (H - y))               turned: (s y, s x)
//
// "Turned" is pagmod MOVI/PORT for the families that follow it, and the sheet rules for
// HPGL sheets and paper. round(v) is floor(v + 0.5) after clamping v into the int range.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// Far beyond every device, and well inside int.
constexpr double kIntLimit = 2e9;

double round_unit(double v) { return std::floor(std::clamp(v, -kIntLimit, kIntLimit) + 0.5); }

}  // namespace

Dispatch dispatch_of(int device) {
  if (device == 81) {
    return Dispatch::OpenGl;
  }
  if (device > 0 && device < 201) {
    return Dispatch::Screen;
  }
  switch (device) {
    case 201:
    case 211:
      return Dispatch::Metafile;
    case 221:
      return Dispatch::Screen;
    case 401:
      return Dispatch::Hpgl;
    case 402:
    case 403:
    case 404:
    case 405:
      return Dispatch::HpglSheet;
    case 701:
      return Dispatch::Java;
    case 801:
      return Dispatch::Svg;
    case 802:
      return Dispatch::Ipe;
    default:
      break;
  }
  if (device >= 501 && device <= 511) {
    return Dispatch::Paper;
  }
  if (device >= 601 && device <= 700) {
    return Dispatch::Raster;
  }
  return Dispatch::None;
}

void to_device(const PipelineState& p, double x, double y, double& dx, double& dy) {
  const double s = p.scale;
  const double w = p.page_w;
  const double h = p.page_h;
  switch (p.dispatch) {
    case Dispatch::Screen:
    case Dispatch::Raster:
    case Dispatch::Java:
      if (p.rotated) {
        dx = round_unit(s * y);
        dy = round_unit(s * (w - x));
      } else {
        dx = round_unit(s * x);
        dy = round_unit(s * y);
      }
      return;
    case Dispatch::OpenGl:
      dx = p.rotated ? s * y : s * x;
      dy = p.rotated ? s * (w - x) : s * y;
      return;
    case Dispatch::Metafile:
      if (p.rotated) {
        dx = (y + p.x_offset) * s;
        dy = x * s;
      } else {
        dx = (x + p.x_offset) * s;
        dy = (h - y) * s;
      }
      return;
    case Dispatch::Hpgl:
      if (p.rotated) {
        dx = round_unit(s * y + p.device_dx);
        dy = round_unit(s * x + p.device_dy);
      } else {
        dx = round_unit(s * x + p.device_dx);
        dy = round_unit(s * (h - y) + p.device_dy);
      }
      return;
    case Dispatch::HpglSheet:
      if (p.rotated) {
        dx = round_unit(s * (h - y) + p.device_dx);
        dy = round_unit(s * (w - x) + p.device_dy);
      } else {
        dx = round_unit(s * x + p.device_dx);
        dy = round_unit(s * (h - y) + p.device_dy);
      }
      return;
    case Dispatch::Paper:
    case Dispatch::Ipe:
      if (p.rotated) {
        dx = s * y;
        dy = s * x;
      } else {
        dx = s * x;
        dy = s * (h - y);
      }
      return;
    case Dispatch::Svg:
      dx = p.rotated ? s * y : s * x;
      dy = p.rotated ? s * (w - x) : s * y;
      return;
    case Dispatch::None:
      break;
  }
  dx = x;
  dy = y;
}

void plot_point(GlobalBlock& g, double x, double y, Pen pen) {
  PipelineState& p = g.pipe;
  if (pen == Pen::Draw && g.core.vectors < 0x7fffffff) {
    ++g.core.vectors;
  }
  double dx = 0.0;
  double dy = 0.0;
  to_device(p, x, y, dx, dy);
  p.driver->point(dx, dy, pen);
  p.last_dev_x = dx;
  p.last_dev_y = dy;
  p.path_open = true;
}

}  // namespace zorvel

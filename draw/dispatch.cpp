// The dispatch: plot units (origin at the top left of the page, y downwards) into the
// units of the device, by the transform of the device's registry row (drivers/registry.h
// gives the formulas). Nothing is rounded here: integer devices round in their drivers,
// so that raster devices keep sub-pixel positions for anti-aliasing.

#include "core/global_block.h"
#include "draw/pipeline.h"

namespace zorvel {

void to_device(const PipelineState& p, double x, double y, double& dx, double& dy) {
  const double s = p.scale;
  const double w = p.page_w;
  const double h = p.page_h;
  switch (p.dispatch) {
    case Dispatch::Pixels:
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
        dx = s * y + p.device_dx;
        dy = s * x + p.device_dy;
      } else {
        dx = s * x + p.device_dx;
        dy = s * (h - y) + p.device_dy;
      }
      return;
    case Dispatch::HpglSheet:
      if (p.rotated) {
        dx = s * (h - y) + p.device_dx;
        dy = s * (w - x) + p.device_dy;
      } else {
        dx = s * x + p.device_dx;
        dy = s * (h - y) + p.device_dy;
      }
      return;
    case Dispatch::Paper:
      if (p.rotated) {
        dx = s * y;
        dy = s * x;
      } else {
        dx = s * x;
        dy = s * (h - y);
      }
      return;
    case Dispatch::None:
      break;
  }
  dx = x;
  dy = y;
}

void from_device(const PipelineState& p, double dx, double dy, double& x, double& y) {
  const double s = p.scale != 0.0 ? p.scale : 1.0;
  const double w = p.page_w;
  const double h = p.page_h;
  switch (p.dispatch) {
    case Dispatch::Pixels:
      x = p.rotated ? w - dy / s : dx / s;
      y = p.rotated ? dx / s : dy / s;
      return;
    case Dispatch::Metafile:
      x = p.rotated ? dy / s : dx / s - p.x_offset;
      y = p.rotated ? dx / s - p.x_offset : h - dy / s;
      return;
    case Dispatch::Hpgl:
      x = p.rotated ? (dy - p.device_dy) / s : (dx - p.device_dx) / s;
      y = p.rotated ? (dx - p.device_dx) / s : h - (dy - p.device_dy) / s;
      return;
    case Dispatch::HpglSheet:
      x = p.rotated ? w - (dy - p.device_dy) / s : (dx - p.device_dx) / s;
      y = h - (p.rotated ? dx - p.device_dx : dy - p.device_dy) / s;
      return;
    case Dispatch::Paper:
      x = p.rotated ? dy / s : dx / s;
      y = p.rotated ? dx / s : h - dy / s;
      return;
    case Dispatch::None:
      break;
  }
  x = dx;
  y = dy;
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

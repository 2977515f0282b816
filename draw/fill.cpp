// Filled polygons. The polygon is cut to the clip rectangle and handed to the driver in
// device units; a driver that cannot fill (no kCapFill) gets the polygon hatched with
// horizontal lines of its thinnest pen instead, spaced so that they cover the area.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// Hatch lines of a fill, at most; larger fills get their lines spread further apart.
constexpr double kMaxHatchLines = 20000.0;

// Spacing of hatch lines in plot units: one device line apart.
double hatch_step(const PipelineState& p) {
  switch (p.dispatch) {
    case Dispatch::Screen:
    case Dispatch::OpenGl:
    case Dispatch::Raster:
    case Dispatch::Java:
      return 1.0 / p.scale;  // one pixel
    case Dispatch::Hpgl:
    case Dispatch::HpglSheet:
      return 3.0;  // a 0.3 mm pen
    default:
      return 1.0;
  }
}

// Even-odd scanline fill of the polygon (xs, ys) with horizontal lines, sent straight to
// the dispatch (the polygon is already clipped).
void hatch(GlobalBlock& g, const std::vector<double>& xs, const std::vector<double>& ys) {
  PipelineState& p = g.pipe;
  const std::size_t n = xs.size();
  const auto [lo, hi] = std::minmax_element(ys.begin(), ys.end());
  const double y0 = *lo;
  const double y1 = *hi;
  double step = hatch_step(p);
  if (!(step > 0.0) || !std::isfinite(step)) {
    step = 1.0;
  }
  step = std::max(step, (y1 - y0) / kMaxHatchLines);
  std::vector<double>& cuts = p.fill_tx;  // scratch, reused
  for (double y = y0 + step / 2.0; y < y1; y += step) {
    cuts.clear();
    for (std::size_t i = 0; i < n; ++i) {
      const std::size_t j = i + 1 == n ? 0 : i + 1;
      const double ya = ys[i];
      const double yb = ys[j];
      // Half-open at the upper end, so that a vertex is counted once.
      if ((ya <= y && y < yb) || (yb <= y && y < ya)) {
        cuts.push_back(xs[i] + (y - ya) / (yb - ya) * (xs[j] - xs[i]));
      }
    }
    std::sort(cuts.begin(), cuts.end());
    for (std::size_t k = 0; k + 1 < cuts.size(); k += 2) {
      plot_point(g, cuts[k], y, Pen::Move);
      plot_point(g, cuts[k + 1], y, Pen::Draw);
    }
  }
}

}  // namespace

void fill_polygon(GlobalBlock& g, const double* xs, const double* ys, int n) {
  PipelineState& p = g.pipe;
  if (n < 3 || !p.driver) {
    return;
  }
  end_polyline(g);
  std::vector<double>& fx = p.fill_x;
  std::vector<double>& fy = p.fill_y;
  fx.clear();
  fy.clear();
  for (int i = 0; i < n; ++i) {
    double x = g.page.origin_x + xs[i];
    double y = g.page.origin_y + ys[i];
    if (p.plane) {
      const auto& h = p.plane_h;
      const double w = h[6] * x + h[7] * y + h[8];
      const double nx = (h[0] * x + h[1] * y + h[2]) / w;
      y = (h[3] * x + h[4] * y + h[5]) / w;
      x = nx;
    }
    if (p.affine) {
      const auto& a = p.affine_a;
      const double nx = a[0] * x + a[1] * y + a[2];
      y = a[3] * x + a[4] * y + a[5];
      x = nx;
    }
    if (!std::isfinite(x) || !std::isfinite(y)) {
      // A polygon with a point that is not a number has no area to fill.
      if (g.core.nans < 0x7fffffff) {
        ++g.core.nans;
      }
      return;
    }
    fx.push_back(std::clamp(x, -kCoordinateLimit, kCoordinateLimit));
    fy.push_back(std::clamp(y, -kCoordinateLimit, kCoordinateLimit));
  }
  if (clip_polygon(p, fx, fy, p.fill_tx, p.fill_ty) < 3) {
    return;
  }
  p.fill_active = true;
  if ((p.driver->caps() & kCapFill) != 0U) {
    for (std::size_t i = 0; i < fx.size(); ++i) {
      to_device(p, fx[i], fy[i], fx[i], fy[i]);
    }
    p.driver->fill(fx, fy, colour_rgb(g, g.colour.current));
  } else {
    hatch(g, fx, fy);
    end_polyline(g);
  }
  p.fill_active = false;
  check_driver(g);
}

}  // namespace zorvel

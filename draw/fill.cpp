// Filled areas. Every contour of a path is cut to the clip rectangle on its own (the
// rectangle is convex, so both fill rules keep their meaning) and the path is handed to
// the driver in device units; a driver that cannot fill (no kCapFill) gets the area
// hatched with horizontal lines of its thinnest pen instead, spaced so that they cover
// it, inside by the path's fill rule.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// Hatch lines of a fill, at most; larger fills get their lines spread further apart.
constexpr double kMaxHatchLines = 20000.0;

// Scanline fill of the clipped path in fill_x/fill_y/fill_ends with horizontal lines,
// sent straight to the dispatch. Each crossing of a scan line carries the direction of
// its edge, so that the non-zero rule can count windings.
void hatch(GlobalBlock& g, FillRule rule) {
  PipelineState& p = g.pipe;
  const std::vector<double>& xs = p.fill_x;
  const std::vector<double>& ys = p.fill_y;
  const auto [lo, hi] = std::minmax_element(ys.begin(), ys.end());
  const double y0 = *lo;
  const double y1 = *hi;
  double step = p.device != nullptr ? thinnest_line(*p.device, p.scale) : 1.0;
  if (!(step > 0.0) || !std::isfinite(step)) {
    step = 1.0;
  }
  step = std::max(step, (y1 - y0) / kMaxHatchLines);
  std::vector<Crossing>& cuts = p.crossings;  // scratch, reused
  for (double y = y0 + step / 2.0; y < y1; y += step) {
    cuts.clear();
    std::size_t start = 0;
    for (const int end_index : p.fill_ends) {
      const auto end = static_cast<std::size_t>(end_index);
      for (std::size_t i = start; i < end; ++i) {
        const std::size_t j = i + 1 == end ? start : i + 1;
        const double ya = ys[i];
        const double yb = ys[j];
        // Half-open at the upper end, so that a vertex is counted once.
        if ((ya <= y && y < yb) || (yb <= y && y < ya)) {
          cuts.push_back({xs[i] + (y - ya) / (yb - ya) * (xs[j] - xs[i]), ya < yb ? 1 : -1});
        }
      }
      start = end;
    }
    std::sort(cuts.begin(), cuts.end(),
              [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
    int winding = 0;
    for (std::size_t k = 0; k + 1 < cuts.size(); ++k) {
      winding += rule == FillRule::EvenOdd ? 1 : cuts[k].direction;
      const bool inside = rule == FillRule::EvenOdd ? (winding & 1) != 0 : winding != 0;
      if (inside) {
        plot_point(g, cuts[k].x, y, Pen::Move);
        plot_point(g, cuts[k + 1].x, y, Pen::Draw);
      }
    }
  }
}

}  // namespace

void fill_polygon(GlobalBlock& g, const double* xs, const double* ys, int n) {
  fill_path(g, xs, ys, &n, 1, FillRule::NonZero);
}

void fill_path(GlobalBlock& g, const double* xs, const double* ys, const int* ends, int contours,
               FillRule rule) {
  PipelineState& p = g.pipe;
  if (!p.driver || contours <= 0) {
    return;
  }
  end_polyline(g);
  std::vector<double>& fx = p.fill_x;
  std::vector<double>& fy = p.fill_y;
  fx.clear();
  fy.clear();
  p.fill_ends.clear();
  int start = 0;
  for (int c = 0; c < contours; ++c) {
    const int end = ends[c];
    if (end - start < 3) {
      start = std::max(start, end);
      continue;
    }
    std::vector<double>& cx = p.cut_x;
    std::vector<double>& cy = p.cut_y;
    cx.clear();
    cy.clear();
    for (int i = start; i < end; ++i) {
      double x = 0.0;
      double y = 0.0;
      if (!place_point(g, xs[i], ys[i], x, y)) {
        // A path with a point that is not a number has no area to fill.
        if (g.core.nans < 0x7fffffff) {
          ++g.core.nans;
        }
        return;
      }
      cx.push_back(x);
      cy.push_back(y);
    }
    start = end;
    if (clip_polygon(p, cx, cy, p.fill_tx, p.fill_ty) >= 3) {
      fx.insert(fx.end(), cx.begin(), cx.end());
      fy.insert(fy.end(), cy.begin(), cy.end());
      p.fill_ends.push_back(static_cast<int>(fx.size()));
    }
  }
  if (p.fill_ends.empty()) {
    return;
  }
  p.fill_active = true;
  if ((p.caps & kCapFill) != 0U) {
    for (std::size_t i = 0; i < fx.size(); ++i) {
      to_device(p, fx[i], fy[i], fx[i], fy[i]);
    }
    p.driver->fill(Path{fx, fy, p.fill_ends, rule}, colour_rgb(g, g.colour.current));
  } else {
    hatch(g, rule);
    end_polyline(g);
  }
  p.fill_active = false;
  check_driver(g);
}

}  // namespace zorvel

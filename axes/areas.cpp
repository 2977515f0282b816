// Filled areas: rlarea (a polygon in user coordinates), shdcrv (the area between two
// curves) and sector (an annular sector in plot units). Each is filled in the current
// colour and fill pattern through the pipeline (shdpat, myptrn; pattern 0 draws the
// outline alone), clipped like every line, and leaves a filled box for its legend line.
//
// The area between two curves is the closed outline curve 1 forward, curve 2 backward,
// filled by the even-odd rule: where the curves cross, the outline crosses itself, and
// each lobe between two crossings is filled once whichever curve lies above.
//
//        curve 1 --->  ____            ____
//                     /    \ ________ /    \        lobes alternate in direction;
//        curve 2 <--- \____/          \____/        even-odd fills every one

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes/curve_state.h"
#include "axes/curves.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "maps/maps.h"

namespace zorvel {
namespace {

void count_nan(GlobalBlock& g) {
  if (g.core.nans < 0x7fffffff) {
    ++g.core.nans;
  }
}

// Appends the page positions of a curve's points to the area's outline, joined as
// `method` says: kStep holds each value until the next x, kStairs jumps at the next x,
// anything else joins straight. Points that cannot be placed (not numbers, not on a log
// axis) are left out and counted with the NaN values. `reversed` appends the outline
// from the last point to the first.
void append_curve(GlobalBlock& g, const double* x, const double* y, int n, int method,
                  bool reversed) {
  std::vector<double>& xs = g.pipe.area_x;
  std::vector<double>& ys = g.pipe.area_y;
  const std::size_t from = xs.size();
  bool first = true;
  double lx = 0.0;
  double ly = 0.0;
  for (int i = 0; i < n; ++i) {
    const double px = axis_page_x(g, x[i]);
    const double py = axis_page_y(g, y[i]);
    if (!std::isfinite(px) || !std::isfinite(py)) {
      count_nan(g);
      continue;
    }
    if (!first && method == kStep) {
      xs.push_back(px);
      ys.push_back(ly);
    } else if (!first && method == kStairs) {
      xs.push_back(lx);
      ys.push_back(py);
    }
    xs.push_back(px);
    ys.push_back(py);
    first = false;
    lx = px;
    ly = py;
  }
  if (reversed) {
    std::reverse(xs.begin() + static_cast<std::ptrdiff_t>(from), xs.end());
    std::reverse(ys.begin() + static_cast<std::ptrdiff_t>(from), ys.end());
  }
}

// Fills the outline built in area_x/area_y as one contour by the even-odd rule and
// records the area for the legend.
void fill_area(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  int n = static_cast<int>(p.area_x.size());
  if (n >= 3) {
    fill_path(g, p.area_x.data(), p.area_y.data(), &n, 1, FillRule::EvenOdd);
  }
  record_area(g, p.pattern.number, g.colour.current);
}

void start_area(GlobalBlock& g) {
  g.pipe.area_x.clear();
  g.pipe.area_y.clear();
}

}  // namespace

namespace api {

void rlarea(GlobalBlock& g, const double* xray, const double* yray, int n) {
  if (n < 3) {
    warn(g, 2, n);
    return;
  }
  if (g.maps.active) {
    map_fill(g, xray, yray, n);  // closed along the map's outline where it leaves it
    record_area(g, g.pipe.pattern.number, g.colour.current);
    return;
  }
  start_area(g);
  append_curve(g, xray, yray, n, kLine, false);
  fill_area(g);
}

void shdcrv(GlobalBlock& g, const double* x1ray, const double* y1ray, int n1, const double* x2ray,
            const double* y2ray, int n2) {
  if (n1 < 1 || n2 < 1 || n1 + n2 < 3) {
    warn(g, 2, std::min(n1, n2) < 1 ? std::min(n1, n2) : n1 + n2);
    return;
  }
  int method = g.curves.method;
  if (method == kSpline || method == kParametricSpline) {
    warn(g, 14);  // the edges stay straight
  }
  if (method != kStep && method != kStairs) {
    method = kLine;
  }
  start_area(g);
  append_curve(g, x1ray, y1ray, n1, method, false);
  append_curve(g, x2ray, y2ray, n2, method, true);
  fill_area(g);
}

void sector(GlobalBlock& g, int nx, int ny, int nr1, int nr2, double alpha, double beta, int ncol) {
  if (!std::isfinite(alpha) || !std::isfinite(beta)) {
    warn(g, 2, std::isfinite(alpha) ? beta : alpha);
    return;
  }
  if (alpha >= beta) {
    warn(g, 8);
    return;
  }
  if (nr1 < 0 || nr2 < 0) {
    warn(g, 1, std::min(nr1, nr2));  // the absolute values are taken
  }
  double r1 = std::fabs(static_cast<double>(nr1));
  double r2 = std::fabs(static_cast<double>(nr2));
  if (r1 > r2) {
    warn(g, 7);  // the same ring: the radii are swapped
    std::swap(r1, r2);
  }
  const int colour = g.colour.current;
  if (colour != ncol) {
    set_colour(g, ncol);
  }
  fill_sector(g, nx, page_y(g, static_cast<double>(ny)), r1, r2, alpha, beta);
  if (colour != ncol) {
    set_colour(g, colour);
  }
  record_area(g, g.pipe.pattern.number, ncol);
}

}  // namespace api
}  // namespace zorvel

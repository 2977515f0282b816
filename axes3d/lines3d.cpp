// Lines, curves and symbols in the 3D axis system, in user coordinates of the box.

#include <cmath>

#include "api_decl.h"
#include "axes/curve_state.h"
#include "axes/curves.h"
#include "axes/symbols.h"
#include "axes3d/axes3d.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

bool finite3(const std::array<double, 3>& b) {
  return std::isfinite(b[0]) && std::isfinite(b[1]) && std::isfinite(b[2]);
}

// A symbol at a box point that lies within the depth range.
void symbol_at(GlobalBlock& g, int nsym, const std::array<double, 3>& b, int height) {
  const View3dState& v = g.view3d;
  const double dist = box_distance(g, b);
  if (!finite3(b) || dist < v.front || (v.back >= 0.0 && dist > v.back)) {
    return;
  }
  double x = 0.0;
  double y = 0.0;
  if (box_to_page(g, b, x, y)) {
    draw_symbol(g, nsym, std::floor(x + 0.5), std::floor(y + 0.5), height);
  }
}

}  // namespace

namespace api {

void strt3d(GlobalBlock& g, double x, double y, double z) {
  View3dState& v = g.view3d;
  const std::array<double, 3> b = user_to_box(g, x, y, z);
  v.has_point = finite3(b);
  v.pen_there = false;
  v.last = b;
}

void conn3d(GlobalBlock& g, double x, double y, double z) {
  View3dState& v = g.view3d;
  const std::array<double, 3> b = user_to_box(g, x, y, z);
  if (!finite3(b)) {
    ++g.core.nans;
    v.has_point = false;  // the line breaks at a point that is not a number
    return;
  }
  v.pen_there = v.has_point && line3d(g, v.last, b, v.pen_there);
  v.last = b;
  v.has_point = true;
}

void curv3d(GlobalBlock& g, const double* xray, const double* yray, const double* zray, int n) {
  CurveState& c = g.curves;
  if (n < 1 || (n == 1 && c.marker_interval >= 0)) {
    warn(g, 2, n);
    return;
  }
  const bool symbols = c.marker_interval != 0 && c.symbol >= 0 && symbol_defined(g, c.symbol);
  const bool lines = c.marker_interval >= 0;
  const CurveColour colour(g, true);
  if (lines) {
    std::array<double, 3> last{};
    bool has_last = false;
    bool pen = false;
    for (int i = 0; i < n; ++i) {
      const std::array<double, 3> b = user_to_box(g, xray[i], yray[i], zray[i]);
      if (!finite3(b)) {
        ++g.core.nans;
        has_last = false;
        continue;
      }
      pen = has_last && line3d(g, last, b, pen);
      last = b;
      has_last = true;
    }
    end_polyline(g);
  }
  if (symbols) {
    const int old = g.colour.current;
    if (c.symbol_colour >= 0) {
      set_colour(g, c.symbol_colour);
    }
    const long long step = std::max(1LL, std::llabs(static_cast<long long>(c.marker_interval)));
    for (long long i = 0; i < n; i += step) {
      const auto k = static_cast<std::size_t>(i);
      symbol_at(g, c.symbol, user_to_box(g, xray[k], yray[k], zray[k]), c.symbol_height);
    }
    if (g.colour.current != old) {
      set_colour(g, old);
    }
  }
  end_polyline(g);
  g.view3d.has_point = false;
  g.view3d.pen_there = false;
  record_curve(g, lines, symbols);
}

void sym3d(GlobalBlock& g, int nsym, double x, double y, double z) {
  if (!symbol_defined(g, nsym)) {
    warn(g, 2, nsym);
    return;
  }
  symbol_at(g, nsym, user_to_box(g, x, y, z), g.curves.symbol_height);
  end_polyline(g);
}

}  // namespace api
}  // namespace zorvel

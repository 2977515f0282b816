#include "contour/colour_scale.h"

#include <algorithm>
#include <cmath>

#include "core/global_block.h"

namespace zorvel {
namespace {

// Position of z along the scaling: 0 at its start, 1 at its end; NaN when z has none.
double scale_position(const GlobalBlock& g, double z) {
  const AxisScale& s = g.axes.scale[2];
  double v = z;
  if (g.axes.log[2]) {
    v = z > 0.0 ? std::log10(z) : std::nan("");
  }
  const double span = s.e - s.a;
  if (std::isnan(v)) {
    return v;
  }
  if (span == 0.0) {
    return 0.5;
  }
  return (v - s.a) / span;
}

int colour_at(const GlobalBlock& g, double t) {
  const ColourPlotState& c = g.contours.colour;
  // A hair of tolerance: the scaling's own ends are inside.
  constexpr double kEdge = 1e-9;
  if (std::isnan(t)) {
    return -1;
  }
  if (!c.clip_outside && (t < -kEdge || t > 1.0 + kEdge)) {
    return -1;
  }
  t = std::clamp(t, 0.0, 1.0);
  const double k = c.first + t * (c.last - c.first);
  return static_cast<int>(std::lround(k));
}

}  // namespace

int z_colour(const GlobalBlock& g, double z) { return colour_at(g, scale_position(g, z)); }

double colour_position(const GlobalBlock& g, double z) {
  const ColourPlotState& c = g.contours.colour;
  const double t = scale_position(g, z);
  return c.first + t * (c.last - c.first);
}

int band_colour(const GlobalBlock& g, double lo, double hi) {
  const ColourPlotState& c = g.contours.colour;
  if (std::isinf(lo) && std::isinf(hi)) {
    return -1;
  }
  if (std::isinf(lo) || std::isinf(hi)) {
    // A band beyond the end levels takes the end colour of the range on its side.
    const AxisScale& s = g.axes.scale[2];
    const bool rising = s.e >= s.a;
    return std::isinf(lo) == rising ? c.first : c.last;
  }
  double mid = 0.5 * lo + 0.5 * hi;
  if (g.axes.log[2] && lo > 0.0 && hi > 0.0) {
    mid = std::sqrt(lo) * std::sqrt(hi);
  }
  return z_colour(g, mid);
}

}  // namespace zorvel

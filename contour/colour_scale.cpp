#include "contour/colour_scale.h"

#include <algorithm>
#include <cmath>

#include "core/global_block.h"

namespace zorvel {

int z_colour(const GlobalBlock& g, double z) {
  const ColourPlotState& c = g.contours.colour;
  const AxisScale& s = g.axes.scale[2];
  if (std::isnan(z)) {
    return -1;
  }
  double v = z;
  if (g.axes.log[2]) {
    if (!(z > 0.0)) {
      return -1;
    }
    v = std::log10(z);
  }
  const double span = s.e - s.a;
  double t = span != 0.0 ? (v - s.a) / span : 0.5;
  t = std::clamp(t, 0.0, 1.0);
  const double k = c.first + t * (c.last - c.first);
  return static_cast<int>(std::lround(k));
}

}  // namespace zorvel

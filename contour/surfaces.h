#pragma once
// Shared by the surface routines and the z-buffer: points of the box on the page with
// their depth, and the z-buffer's drawing primitives.

#include <array>
#include <vector>

#include "contour/contour_state.h"
#include "core/global_block.h"
#include "drivers/driver.h"

namespace zorvel {

// The page position and depth of a box point; ok false when it does not project or lies
// outside the depth range of vclp3d.
SurfacePoint project_box(const GlobalBlock& g, const std::array<double, 3>& b);

// Whether a z-buffer section (zbfini .. zbffin) is open.
inline bool zbuffer_open(const GlobalBlock& g) { return g.contours.surface.zbuf.active; }

// The bands between the levels (rising, checked; extend: conopt "EXTE" bits) on the
// surface of the grid in the 3D axis system, each in its band colour, darkened under
// suropt "LIGH": painted far to near, or into the z-buffer when a section is open; with
// `lines` the level lines on top. The grid's coordinates are checked (30, 53, 271).
void shade_surface_bands(GlobalBlock& g, const GridData& grid, const std::vector<double>& levels,
                         int extend, bool lines);

// A triangle into the z-buffer, each corner in its colour (interpolated across).
void zbuffer_triangle(GlobalBlock& g, const SurfacePoint& a, const SurfacePoint& b,
                      const SurfacePoint& c, Rgb ca, Rgb cb, Rgb cc);
// A line into the z-buffer in the colour rgb, the pipeline's line width, drawn a little
// in front of the surfaces it lies on.
void zbuffer_line(GlobalBlock& g, const SurfacePoint& a, const SurfacePoint& b, Rgb rgb);

}  // namespace zorvel


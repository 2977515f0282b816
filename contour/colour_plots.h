#pragma once
// Helpers shared by the colour plots and the shaded contours.

#include "contour/lines.h"

namespace zorvel {

struct GlobalBlock;

// The checks of a grid: nx, ny >= 2 (30), coordinates rising or falling strictly (271).
bool check_colour_grid(GlobalBlock& g, const GridData& grid);

// Draws the colour bar of the Z scaling beside the axis system, as colbar says.
void draw_colour_bar(GlobalBlock& g);

}  // namespace zorvel

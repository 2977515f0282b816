#pragma once
// The axes subsystem's functions for the rest of the library: the conversion of user
// coordinates through the axis system in force, and the drawing of the axes.

#include <array>

namespace zorvel {

struct GlobalBlock;

// User coordinates to page positions (plot units before the origin offset, y down) with
// the scaling that graf stored; log axes take the logarithm first (non-positive values
// give NaN, which the pipeline drops).
double axis_page_x(const GlobalBlock& g, double x);
double axis_page_y(const GlobalBlock& g, double y);

// How far the drawn axes reach outside the axis rectangle on each side (plot units, in
// the order of Side), the title lines included.
using AxisExtents = std::array<double, 4>;

// Draws the axes of the axis system that graf has scaled (every side as setgrf and the
// axis type say, the frame not included), or with draw = false only measures them.
AxisExtents draw_axis_system(GlobalBlock& g, bool draw);

// Draws the title lines of titlin above or below the axis system; `extents` are those of
// the drawn axes. With draw = false returns the height they need and draws nothing.
double draw_titles(GlobalBlock& g, const AxisExtents& extents, bool draw);

// The frame of frame() around the axis rectangle.
void draw_axis_frame(GlobalBlock& g);

// Grid lines in the current line style: nx and ny lines per label interval (1: at the
// labels; on log axes labelled by decades, 9 gives a line at every tick).
void draw_axis_grid(GlobalBlock& g, int nx, int ny);

// The scaling checks of graf for one axis (start, end, first label, step): the warnings
// of equal limits, a zero or wrongly signed step, a first label outside; false for the
// fatal ones.
bool check_axis_scaling(GlobalBlock& g, const double v[4]);

}  // namespace zorvel

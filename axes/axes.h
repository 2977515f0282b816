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

// Draws (or with draw = false measures) axis ax laid along any line: from the page point
// (x0, y0) in the unit direction (ux, uy) over `length` plot units, its ticks, labels
// and name on the side of the unit normal (nx, ny), with the parts that setgrf gives the
// lower X axis; no label at the value 0. Returns how far it reaches along the normal.
// The radius axis of polar systems.
// With `crossed` false the axis is drawn as a side of a rectangle (colour bars): every
// label, the name along its middle.
double draw_axis_ray(GlobalBlock& g, int ax, double x0, double y0, double ux, double uy,
                     double nx, double ny, double length, bool draw, bool crossed = true);

// Centres the axis system of the stored scaling on the page with everything drawn around
// it (center()); the caller places its scaling again afterwards.
void centre_axis_system(GlobalBlock& g);

// The scaling checks of graf for one axis (start, end, first label, step): the warnings
// of equal limits, a zero or wrongly signed step, a first label outside; false for the
// fatal ones.
bool check_axis_scaling(GlobalBlock& g, const double v[4]);

// The automatic scaling of axis ax from the limits of setscl into v (start, end, first
// label, step; exponents on log axes), as graf makes it.
void auto_scale_axis(GlobalBlock& g, int ax, double v[4]);

// Polar axis systems (polar.cpp)
// ==============================

// Page position of the data point (radius r, angle phi in polopt's unit) of the polar axis
// system in force; false when it is not a finite point.
bool polar_to_page(const GlobalBlock& g, double r, double phi, double& px, double& py);
// The BARS, STEM (spokes from the centre) and FBAR (wedges) forms of curve in a polar
// axis system.
void draw_polar_bars(GlobalBlock& g, const double* r, const double* phi, int n, int method);
// The circle, angle labels and radius axis of a polar system, as draw_axis_system.
AxisExtents draw_polar_axes(GlobalBlock& g, bool draw);
// Ends a polar axis system (endgrf): the clip circle goes, the log flags come back.
void end_polar(GlobalBlock& g);
// Segments of an arc of `sweep` radians at `radius` plot units that keep the polygon
// within a fifth of a plot unit of the true arc (1 to 2000).
int arc_segments(double radius, double sweep);

}  // namespace zorvel

#pragma once
// The map subsystem's entry points for the rest of the library.

#include "axes/axes.h"

namespace zorvel {

struct GlobalBlock;

// The map defaults of a new plot (called by zorini).
void map_defaults(GlobalBlock& g);

// Inside a map axis system (grafmp)
// =================================
// Longitudes and latitudes in degrees. Lines run as mapopt "LINE" says (rhumb lines or
// great circles), densified until no drawn chord strays more than half a plot unit from
// the projected line, and are cut where they leave the map's outline (also at the cut
// meridian). NaN points are counted and skipped; latitudes beyond 90 degrees are skipped
// and counted for warning 287 by the caller.

// Page position (plot units before the origin offset) of a point; false when it is not
// on the map (outside the outline, hidden, not a number).
bool map_to_page(const GlobalBlock& g, double lon, double lat, double& px, double& py);
// The polyline of n points (curve); a point that is not a number breaks it.
void map_polyline(GlobalBlock& g, const double* lon, const double* lat, int n);
// rlstrt and rlconn.
void map_line_start(GlobalBlock& g, double lon, double lat);
void map_line_to(GlobalBlock& g, double lon, double lat);
// Fills the polygon of n points (rlarea) in the current colour and pattern: the part
// inside the outline, closed along it.
void map_fill(GlobalBlock& g, const double* lon, const double* lat, int n);
// The outline and labels of the map (as draw_axis_system; draw = false measures).
AxisExtents draw_map_axes(GlobalBlock& g, bool draw);
// Ends the map axis system (endgrf): the clip circle goes, the label types come back.
void end_map(GlobalBlock& g);

}  // namespace zorvel

#pragma once
// Colours of values: the Z axis's scaling (graf3, graf3d) spread over the colour range.

namespace zorvel {

struct GlobalBlock;

// The colour value (table index) of z: the colour range (first..last, colran) spread over
// the Z axis's scaling, logarithmically on a log Z axis. Values beyond the scaling take
// the end colours (colopt "OUTS" "CLIP") or give -1 (colopt "OUTS" "NONE"); NaN and, on
// a log axis, z <= 0 give -1 (not drawn).
int z_colour(const GlobalBlock& g, double z);

// Position of z in the colour range, unrounded (first at the scaling's start, last at its
// end); NaN when z has no colour.
double colour_position(const GlobalBlock& g, double z);

// The colour of the band between the levels lo and hi (either may be infinite): the
// colour of its middle (on a log Z axis the geometric middle); an open band (below the
// first or above the last level) the end colour of the range on its side. -1: not drawn.
int band_colour(const GlobalBlock& g, double lo, double hi);

}  // namespace zorvel

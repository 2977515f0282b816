#pragma once
// Colours of values: the Z axis's scaling (graf3, graf3d) spread over the colour range.

namespace zorvel {

struct GlobalBlock;

// The colour value (table index) of z: the colour range (first..last, colran) spread over
// the Z axis's scaling, logarithmically on a log Z axis. Values beyond the scaling take
// the end colours; NaN and, on a log axis, z <= 0 give -1 (not drawn).
int z_colour(const GlobalBlock& g, double z);

}  // namespace zorvel

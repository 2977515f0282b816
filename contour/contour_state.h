#pragma once
// State of contours, colour plots and surfaces: the contour label settings, the colour
// bar, surface options and the z-buffer. zorini resets it to its defaults.

namespace zorvel {

struct ContourState {};

}  // namespace zorvel

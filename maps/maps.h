#pragma once
// The map subsystem's entry points for the rest of the library.

namespace zorvel {

struct GlobalBlock;

// The map defaults of a new plot (called by zorini).
void map_defaults(GlobalBlock& g);

}  // namespace zorvel

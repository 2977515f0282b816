// Map settings: projection, centre, parallels, data resolution.

#include "core/global_block.h"
#include "maps/maps.h"

namespace zorvel {

void map_defaults(GlobalBlock& g) { g.maps.active = false; }

}  // namespace zorvel

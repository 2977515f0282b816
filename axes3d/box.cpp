// The 3D box: its edges, axes, ticks, labels and names; grid lines on its back planes.

#include "api_decl.h"
#include "axes3d/axes3d.h"
#include "core/global_block.h"

namespace zorvel {

void draw_box3d(GlobalBlock& /*g*/) {}

namespace api {

void grid3d(GlobalBlock& /*g*/, int /*igrid*/, int /*jgrid*/, const char* /*copt*/) {}

}  // namespace api
}  // namespace zorvel

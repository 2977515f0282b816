// Drawing on a plane of the 3D box: between grfini and grffin the whole page maps onto
// the rectangle through three points of the box (its lower left, lower right and upper
// right corners), so that anything drawn in 2D (an axis system, curves, text, legends)
// lands on that plane, in perspective. The mapping is the pipeline's plane projection; the
// level is 1 meanwhile, so that graf can set up an axis system on the plane.

#include <cmath>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes3d/axes3d.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

double row_dot(const std::array<double, 4>& row, const double p[3]) {
  return row[0] * p[0] + row[1] * p[1] + row[2] * p[2];
}

// Ends the plane: its 2D axis system if one is open, the projection; back at level 3.
void close_plane(GlobalBlock& g) {
  if (g.core.level == 2) {
    api::endgrf(g);
  }
  end_polyline(g);
  clear_transforms(g);
  g.view3d.plane = false;
  g.axes.scale = g.view3d.saved_scale;
  g.axes.log = g.view3d.saved_log;
  g.axes.scaled = false;
  g.core.level = 3;
}

}  // namespace

namespace api {

void grfini(GlobalBlock& g, double x1, double y1, double z1, double x2, double y2, double z2,
            double x3, double y3, double z3) {
  View3dState& v = g.view3d;
  if (g.core.level != 3 && !v.plane) {
    warn(g, 3);  // a plane belongs to a 3D axis system
    return;
  }
  if (v.plane) {
    warn(g, 255);
    close_plane(g);
  }
  const std::array<double, 3> c1 = user_to_box(g, x1, y1, z1);
  const std::array<double, 3> c2 = user_to_box(g, x2, y2, z2);
  const std::array<double, 3> c3 = user_to_box(g, x3, y3, z3);
  for (const auto& c : {c1, c2, c3}) {
    if (!std::isfinite(c[0] + c[1] + c[2])) {
      warn(g, 2, !std::isfinite(x1 + y1 + z1) ? x1 + y1 + z1 : x2 + y2 + z2 + x3 + y3 + z3);
      return;
    }
  }
  // The page point (X, Y) (y down) lies at c1 + X a + (H - Y) b on the plane, with
  // a = (c2 - c1) / W and b = (c3 - c2) / H; each row of the view matrix is then an
  // affine function A X + B Y + C of it.
  const double w = g.page.width > 0.0 ? g.page.width : 1.0;
  const double h = g.page.height > 0.0 ? g.page.height : 1.0;
  double a[3];
  double b[3];
  double o[3];
  for (int i = 0; i < 3; ++i) {
    a[i] = (c2[static_cast<std::size_t>(i)] - c1[static_cast<std::size_t>(i)]) / w;
    b[i] = (c3[static_cast<std::size_t>(i)] - c2[static_cast<std::size_t>(i)]) / h;
    o[i] = c1[static_cast<std::size_t>(i)] + h * b[i];
  }
  double ra[4];
  double rb[4];
  double rc[4];
  for (std::size_t k = 0; k < 4; ++k) {
    ra[k] = row_dot(v.m[k], a);
    rb[k] = -row_dot(v.m[k], b);
    rc[k] = row_dot(v.m[k], o) + v.m[k][3];
  }
  const double d = v.d;
  const double hm[9] = {d * ra[0] + v.cx * ra[3], d * rb[0] + v.cx * rb[3], d * rc[0] + v.cx * rc[3],
                        v.cy * ra[3] - d * ra[1], v.cy * rb[3] - d * rb[1], v.cy * rc[3] - d * rc[1],
                        ra[3], rb[3], rc[3]};
  for (const double e : hm) {
    if (!std::isfinite(e)) {
      warn(g, 2, e);
      return;
    }
  }
  end_polyline(g);
  set_plane_projection(g, hm);
  v.plane = true;
  v.saved_scale = g.axes.scale;
  v.saved_log = g.axes.log;
  g.core.level = 1;
}

void grffin(GlobalBlock& g) {
  if (!g.view3d.plane) {
    warn(g, 34);
    return;
  }
  close_plane(g);
}

}  // namespace api

// endgrf in a plane without an axis system of its own ends the plane and the 3D axis
// system both.
bool end_plane_for_endgrf(GlobalBlock& g) {
  if (!g.view3d.plane || g.core.level != 1) {
    return false;
  }
  warn(g, 255);
  close_plane(g);
  return true;
}

}  // namespace zorvel

#pragma once
// The three-dimensional axis system: a box of given side lengths centred at the origin
// of box coordinates, seen from a viewpoint and projected onto the axis-system area of
// the page. View3dState holds the settings of axis3d and the view routines, and what
// graf3d computes from them (the scalings live in AxisState::scale, x, y and z, as for
// the 2D axis system, so that labels are formatted by the same code).
//
// Box coordinates run from -len/2 to +len/2 on each axis. The view matrix has four rows
// of three coefficients and a constant: rows 0 and 1 give the point across the view, row
// 2 its depth (0 at the front distance, 1 at the back one), row 3 the divisor of the
// projection (the distance in front of the eye times tan of half the view angle; a
// constant for the orthographic projection).

#include <array>

#include "axes/axis_state.h"

namespace zorvel {

struct GlobalBlock;

struct View3dState {
  // Settings (axis3d, view3d, vfoc3d, vup3d, vang3d, vclp3d, vscl3d, proj3d).
  std::array<double, 3> box{2.0, 2.0, 2.0};  // side lengths in box units
  std::array<double, 3> view{};              // viewpoint, as given
  int view_mode = 0;                         // 0 not set, 1 ABS, 2 USER, 3 ANGL
  std::array<double, 3> focus{};
  int focus_mode = 0;                        // 0 not set, 1 ABS, 2 USER
  double up = 0.0;                           // radians
  double half_angle = 0.24497869610786438;   // radians
  double front = 1.0;                        // distances from the viewpoint
  double back = -1.0;                        // -1: no back plane
  double ortho_scale = 1.0;                  // vscl3d
  int projection = 0;                        // 0 PERS, 1 ORTH

  // What graf3d computed.
  std::array<double, 3> eye{};               // resolved viewpoint, box coordinates
  std::array<double, 3> focus_box{};         // resolved focus
  std::array<std::array<double, 4>, 4> m{};  // the view matrix
  std::array<double, 4> distance{};          // distance in front of the eye (row 2 before
                                             // it became the depth)
  double d = 1.0;                            // projection scale, plot units
  double cx = 0.0;                           // projection centre, page positions
  double cy = 0.0;
  bool reflect = false;                      // pagorg BOTT: yp := page height - yp
  double reflect_height = 0.0;

  // Drawing in the box.
  bool plane = false;                        // between grfini and grffin
  std::array<AxisScale, 3> saved_scale{};    // the 3D scalings, kept from 2D axis systems
  std::array<bool, 3> saved_log{};           //   drawn on the plane
  bool has_point = false;                    // strt3d/conn3d: the last point (box)
  bool pen_there = false;                    // ... and the pen is at it
  std::array<double, 3> last{};
};

// Box coordinates of a user point (log axes: of its logarithm); NaN where it has none.
std::array<double, 3> user_to_box(const GlobalBlock& g, double x, double y, double z);
// User value of a box coordinate on axis ax (0 x, 1 y, 2 z).
double box_to_user(const GlobalBlock& g, int ax, double b);

// Page position (plot units, y downwards) of a box point; false when it cannot be
// projected (at or behind the eye in perspective, or not a number).
bool box_to_page(const GlobalBlock& g, const std::array<double, 3>& b, double& xp, double& yp);
// Distance of a box point in front of the eye, along the view direction.
double box_distance(const GlobalBlock& g, const std::array<double, 3>& b);

// A line between two box points, cut to the depth range of vclp3d (in front of the eye
// in perspective) and drawn through the pipeline. `pen_at_a`: the pen is at a already
// (the line goes on from there). Returns whether the pen is now at b.
bool line3d(GlobalBlock& g, const std::array<double, 3>& a, const std::array<double, 3>& b,
            bool pen_at_a);

// endgrf at level 1 in a plane of grfini: ends the plane (warning 255) and returns true,
// so that endgrf goes on to end the 3D axis system.
bool end_plane_for_endgrf(GlobalBlock& g);

// endgrf with a z-buffer section open (defined with the z-buffer, contour/zbuffer.cpp):
// warning 277, the section's image placed and the section closed; false when none is open.
bool end_zbuffer_for_endgrf(GlobalBlock& g);

// An edge of the box along axis `axis` (0 x, 1 y, 2 z): the other two coordinates, in
// their order, lie at the sides side[0] and side[1] of the box (-1: -len/2, +1: +len/2).
struct BoxEdge {
  int axis = 0;
  std::array<int, 2> side{-1, -1};
  bool operator==(const BoxEdge&) const = default;
};

// The edges that carry the x, y and z axes for the view of graf3d: edges on the outline
// of the projected box, so that labels placed outwards never fall on it (x and y the
// lowest on the page, z the furthest left). An axis seen end-on, which has no outline
// edge, takes the edge sharing the fewest corners with the other two.
std::array<BoxEdge, 3> axis_edges(const GlobalBlock& g);

// The side (-1 or +1) of the back plane across axis ax: the one facing away from the eye.
int back_side(const GlobalBlock& g, int ax);

// The box of graf3d (box.cpp): its edges in the current colour and line style, the axes
// with their ticks, labels and names, the text half as large again as in 2D.
void draw_box3d(GlobalBlock& g);

}  // namespace zorvel

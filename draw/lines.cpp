// Public routines that draw in plot coordinates: lines, polylines point by point, and
// filled rectangles. Their y coordinates go through the vertical conversion of the page
// (counted from the bottom after pagorg "BOTT").

#include "api_decl.h"
#include "core/global_block.h"
#include "core/page.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel::api {

void line(GlobalBlock& g, int nx1, int ny1, int nx2, int ny2) {
  // Dash colours may change the colour along the line; the line's colour comes back
  // afterwards.
  const int colour = g.colour.current;
  move_to(g, nx1, page_y(g, static_cast<double>(ny1)));
  draw_to(g, nx2, page_y(g, static_cast<double>(ny2)));
  if (g.colour.current != colour) {
    set_colour(g, colour);
  }
}

void strtpt(GlobalBlock& g, double x, double y) { move_to(g, x, page_y(g, y)); }

void connpt(GlobalBlock& g, double x, double y) { draw_to(g, x, page_y(g, y)); }

void point(GlobalBlock& g, int nx, int ny, int nb, int nh, int ncol) {
  const int colour = g.colour.current;
  const double x = nx;
  const double y = page_y(g, static_cast<double>(ny));
  const double hw = nb / 2.0;
  const double hh = nh / 2.0;
  const double xs[4] = {x - hw, x + hw, x + hw, x - hw};
  const double ys[4] = {y - hh, y - hh, y + hh, y + hh};
  set_colour(g, ncol);
  const FillPatternScope solid(g, kSolidPattern);  // a point, not an area
  fill_polygon(g, xs, ys, 4);
  set_colour(g, colour);
}

}  // namespace zorvel::api

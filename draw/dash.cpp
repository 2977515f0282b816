// The dash engine: line styles whose pattern runs on continuously across segments and
// polylines, and the sideways offset that draws a line parallel to the given one.
//
// A pattern is a list of lengths in plot units, alternately drawn and blank. The engine
// keeps the part it is in (index, pen) and the length still to go in it (remainder).
// Each segment A -> B is walked from A:
//
//      A    drawn     |  blank   |    drawn     |  blank  B
//      *==============+----------+==============+---------*
//           remainder   pattern[i+1]  pattern[i+2]   (remainder left for the next segment)
//
// Only myline and lintyp restart the pattern. Angles are measured counter-clockwise on
// the page, with y growing downwards: angle = atan2(A.y - B.y, B.x - A.x).

#include <algorithm>
#include <cmath>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// A segment with |dx| <= kSteep is vertical.
constexpr double kSteep = 1e-6;

// Base lengths of the predefined line styles of lintyp, before the line-style scale.
struct Style {
  int count;
  int lengths[4];
};
constexpr Style kStyles[8] = {
    {1, {1}},               // solid
    {2, {1, 10}},           // dot
    {2, {10, 10}},          // dash
    {4, {30, 15, 10, 15}},  // chain dash
    {4, {1, 15, 15, 15}},   // chain dot
    {2, {20, 15}},          // medium dash
    {2, {1, 20}},           // long dot
    {2, {30, 20}},          // long dash
};

// Moves or draws in the dash engine's current pen.
void pen_to(GlobalBlock& g, double x, double y) {
  if (g.pipe.dash_pen == DashPen::Blank) {
    buffer_move(g, x, y);
  } else {
    buffer_draw(g, x, y, true);
  }
}

// Steps to the next part of the pattern; a blank part moves on to the next dash colour.
void next_part(PipelineState& p) {
  p.dash_index = p.dash_index + 1 >= p.dash_count ? 0 : p.dash_index + 1;
  p.dash_pen = p.dash_pen == DashPen::Drawn ? DashPen::Blank : DashPen::Drawn;
  if (p.dash_pen == DashPen::Blank && p.dash_colour_count > 0) {
    p.dash_colour_index =
        p.dash_colour_index + 1 >= p.dash_colour_count ? 0 : p.dash_colour_index + 1;
  }
  p.dash_remainder = p.dash[static_cast<std::size_t>(p.dash_index)];
}

void select_style(GlobalBlock& g, int n) {
  const Style& st = kStyles[n];
  int lengths[4];
  for (int i = 0; i < st.count; ++i) {
    // Rounded by adding 0.5 and truncating, never below 1 (a zero-length part would stop
    // the pattern), never beyond what an int holds.
    const double v = std::floor(st.lengths[i] / g.pipe.line_style_scale + 0.5);
    lengths[i] = v >= 1.0 ? static_cast<int>(std::min(v, 1e9)) : 1;
  }
  set_dash_pattern(g, lengths, st.count);
}

}  // namespace

void restart_dash(PipelineState& p) {
  p.dash_pen = DashPen::Drawn;
  p.dash_index = 0;
  p.dash_colour_index = 0;
  p.dash_remainder = p.dash[0];
}

void set_dash_pattern(GlobalBlock& g, const int* lengths, int n) {
  PipelineState& p = g.pipe;
  std::copy(lengths, lengths + n, p.dash.begin());
  p.dash_count = n;
  restart_dash(p);
}

void set_dash_colours(GlobalBlock& g, const int* colours, int n) {
  PipelineState& p = g.pipe;
  n = std::clamp(n, 0, kMaxDashColours);
  std::copy(colours, colours + n, p.dash_colours.begin());
  p.dash_colour_count = n;
  p.dash_colour_index = 0;
}

void set_side_offset(GlobalBlock& g, double d) {
  PipelineState& p = g.pipe;
  p.side_offset = std::isfinite(d) ? d : 0.0;
  if (p.pending_move && p.side_offset == 0.0) {
    // The move waited for a direction that is no longer needed: make it now.
    p.pending_move = false;
    buffer_move(g, p.cur_x, p.cur_y);
  }
}

void dash_to(GlobalBlock& g, double bx, double by) {
  PipelineState& p = g.pipe;
  double ax = p.cur_x;
  double ay = p.cur_y;
  // The current point stays on the given line, also when the drawing is shifted.
  p.cur_x = bx;
  p.cur_y = by;

  double c = 0.0;
  double s = 0.0;
  if (std::abs(bx - ax) <= kSteep) {
    // Straight up or down the page. The direction is taken exactly: the cosine of the
    // single-precision right angle would make the dashes drift sideways, and their
    // last point miss B by a fraction that shows as a stray dot.
    s = ay - by < 0.0 ? -1.0 : 1.0;
  } else {
    const double angle = std::atan2(ay - by, bx - ax);
    c = std::cos(angle);
    s = std::sin(angle);
  }
  double len = std::abs(ay == by ? bx - ax : (ay - by) / s);

  if (const double d = p.side_offset; d != 0.0) {
    ax -= d * s;
    ay -= d * c;
    bx -= d * s;
    by -= d * c;
    if (p.pending_move) {
      p.pending_move = false;
      buffer_move(g, ax, ay);
    } else {
      pen_to(g, ax, ay);
    }
    if (p.dash_count == 1) {
      buffer_draw(g, bx, by, true);
      return;
    }
  }

  if (len > kMaxDashedLength) {
    // Far beyond any page: drawn solid, the pattern keeps its phase.
    buffer_draw(g, bx, by, true);
    return;
  }
  while (len >= p.dash_remainder) {
    const double r = p.dash_remainder;
    ax += r * c;
    ay -= r * s;
    pen_to(g, ax, ay);  // a blank part ends here: the next dash starts with a move
    len -= r;
    next_part(p);
  }
  pen_to(g, bx, by);
  p.dash_remainder -= len;
}

DashScope::DashScope(GlobalBlock& g)
    : g_(g),
      dash_(g.pipe.dash),
      count_(g.pipe.dash_count),
      remainder_(g.pipe.dash_remainder),
      index_(g.pipe.dash_index),
      pen_(g.pipe.dash_pen),
      colour_index_(g.pipe.dash_colour_index),
      offset_(g.pipe.side_offset) {
  g.pipe.dash_count = 1;
  g.pipe.dash[0] = 1;
  if (offset_ != 0.0) {
    set_side_offset(g, 0.0);
  }
}

DashScope::~DashScope() {
  PipelineState& p = g_.pipe;
  p.dash = dash_;
  p.dash_count = count_;
  p.dash_remainder = remainder_;
  p.dash_index = index_;
  p.dash_pen = pen_;
  p.dash_colour_index = colour_index_;
  if (offset_ != 0.0) {
    set_side_offset(g_, offset_);
  }
}

namespace api {

void lintyp(GlobalBlock& g, int n) {
  if (!check_range(g, n, 0, 7)) {
    return;
  }
  select_style(g, n);
}

void myline(GlobalBlock& g, const int* nray, int n) {
  if (!check_range(g, n, 1, kMaxDashes)) {
    return;
  }
  for (int i = 0; i < n; ++i) {
    if (nray[i] < 1) {
      warn(g, 2, nray[i]);
      return;
    }
  }
  set_dash_pattern(g, nray, n);
}

void solid(GlobalBlock& g) { select_style(g, 0); }
void dot(GlobalBlock& g) { select_style(g, 1); }
void dash(GlobalBlock& g) { select_style(g, 2); }
void chndsh(GlobalBlock& g) { select_style(g, 3); }
void chndot(GlobalBlock& g) { select_style(g, 4); }
void dashm(GlobalBlock& g) { select_style(g, 5); }
void dotl(GlobalBlock& g) { select_style(g, 6); }
void dashl(GlobalBlock& g) { select_style(g, 7); }

}  // namespace api
}  // namespace zorvel

// Entry of the pipeline and the polyline buffer.
//
// move_to/draw_to take plot units, add the origin offset and keep the current point.
// Solid lines go straight into the buffer; dashed lines and lines with a sideways offset
// pass through the dash engine first (dash.cpp), which calls buffer_move/buffer_draw.
// Points enter the buffer after the point transforms. A full buffer is flushed and
// continues from its last point, so a long polyline reaches the device as pieces of 100
// points that share their end points.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

bool finite(double x, double y) { return std::isfinite(x) && std::isfinite(y); }

double limited(double v) { return std::clamp(v, -kCoordinateLimit, kCoordinateLimit); }

// A point that cannot be drawn (not a number, or on the horizon of the plane
// projection): counted, and the line breaks there.
void drop_point(GlobalBlock& g) {
  if (g.core.nans < 0x7fffffff) {
    ++g.core.nans;
  }
  flush_polyline(g);
  g.pipe.count = 0;
}

}  // namespace

bool transform_point(const PipelineState& p, double& x, double& y) {
  if (p.plane) {
    const auto& h = p.plane_h;
    const double w = h[6] * x + h[7] * y + h[8];
    if (!(w > 0.0)) {
      return false;  // at or behind the eye: a line never wraps round through infinity
    }
    const double nx = (h[0] * x + h[1] * y + h[2]) / w;
    const double ny = (h[3] * x + h[4] * y + h[5]) / w;
    x = nx;
    y = ny;
  }
  if (p.affine) {
    const auto& a = p.affine_a;
    const double nx = a[0] * x + a[1] * y + a[2];
    const double ny = a[3] * x + a[4] * y + a[5];
    x = nx;
    y = ny;
  }
  if (!finite(x, y)) {
    return false;
  }
  x = limited(x);
  y = limited(y);
  return true;
}

bool place_point(const GlobalBlock& g, double x, double y, double& ox, double& oy) {
  ox = x + g.page.origin_x;
  oy = y + g.page.origin_y;
  return transform_point(g.pipe, ox, oy);
}


// Entry
// =====

void move_to(GlobalBlock& g, double x, double y) {
  PipelineState& p = g.pipe;
  if (!finite(x, y)) {
    drop_point(g);
    p.has_point = false;
    p.pending_move = false;
    return;
  }
  p.cur_x = limited(g.page.origin_x + x);
  p.cur_y = limited(g.page.origin_y + y);
  p.has_point = true;
  if (p.side_offset != 0.0) {
    // The start of a parallel line depends on the direction of its first segment.
    p.pending_move = true;
    return;
  }
  buffer_move(g, p.cur_x, p.cur_y);
}

void draw_to(GlobalBlock& g, double x, double y) {
  PipelineState& p = g.pipe;
  if (!finite(x, y)) {
    drop_point(g);
    p.has_point = false;
    return;
  }
  if (!p.has_point) {
    // Nothing to draw from (start of the plot, or a dropped point): start here.
    move_to(g, x, y);
    return;
  }
  const double bx = limited(g.page.origin_x + x);
  const double by = limited(g.page.origin_y + y);
  if (p.dash_count != 1 || p.side_offset != 0.0) {
    dash_to(g, bx, by);
    return;
  }
  p.cur_x = bx;
  p.cur_y = by;
  buffer_draw(g, bx, by, false);
}

// Buffer
// ======

void buffer_move(GlobalBlock& g, double x, double y) {
  PipelineState& p = g.pipe;
  if (p.dash_count != 1 && p.dash_colour_count >= 1) {
    set_colour(g, p.dash_colours[static_cast<std::size_t>(p.dash_colour_index)]);
  }
  flush_polyline(g);
  if ((p.plane || p.affine) && !transform_point(p, x, y)) {
    drop_point(g);
    return;
  }
  p.buf_x[0] = x;
  p.buf_y[0] = y;
  p.count = 1;
}

void buffer_draw(GlobalBlock& g, double x, double y, bool merge) {
  PipelineState& p = g.pipe;
  if ((p.plane || p.affine) && !transform_point(p, x, y)) {
    drop_point(g);
    return;
  }
  if (p.count == 0) {
    p.buf_x[0] = x;
    p.buf_y[0] = y;
    p.count = 1;
    return;
  }
  const auto n = static_cast<std::size_t>(p.count);
  if (merge && x == p.buf_x[n - 1] && y == p.buf_y[n - 1]) {
    // Equal to the last point: a segment of two equal points shrinks to its start, a
    // longer polyline keeps its last point.
    return;
  }
  p.buf_x[n] = x;
  p.buf_y[n] = y;
  if (++p.count == kPolylineCapacity) {
    flush_polyline(g);
  }
}

void flush_polyline(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  if (p.count < 2) {
    return;
  }
  if (p.driver) {
    if (p.strokes > 1) {
      send_widened(g, p.buf_x.data(), p.buf_y.data(), p.count);
    } else {
      clip_and_send(g, p.buf_x.data(), p.buf_y.data(), p.count);
    }
    check_driver(g);
  }
  // The polyline continues from its last point.
  const auto last = static_cast<std::size_t>(p.count - 1);
  p.buf_x[0] = p.buf_x[last];
  p.buf_y[0] = p.buf_y[last];
  p.count = 1;
}

void end_polyline(GlobalBlock& g) {
  flush_polyline(g);
  PipelineState& p = g.pipe;
  if (p.path_open && p.driver) {
    p.driver->point(p.last_dev_x, p.last_dev_y, Pen::End);
  }
  p.path_open = false;
}

// Transforms
// ==========

void set_affine(GlobalBlock& g, const double a[6]) {
  flush_polyline(g);
  PipelineState& p = g.pipe;
  std::copy(a, a + 6, p.affine_a.begin());
  p.affine = true;
}

void set_plane_projection(GlobalBlock& g, const double h[9]) {
  flush_polyline(g);
  PipelineState& p = g.pipe;
  std::copy(h, h + 9, p.plane_h.begin());
  p.plane = true;
}

void clear_transforms(GlobalBlock& g) {
  flush_polyline(g);
  g.pipe.plane = false;
  g.pipe.affine = false;
}

}  // namespace zorvel

// Shapes: the polylines of a stroke glyph, recorded once per plot in plot units and in
// device units relative to the glyph's origin, and handed to drivers that place them by
// reference. Drawing a glyph again then costs a table look-up and one call of the driver
// instead of every point through the pipeline.
//
// A shape takes this way only when the pipeline would pass its polylines unchanged: a
// solid line without sideways offset, no plane or affine transform, no widening into
// parallel strokes, and either no clipping or the shape wholly inside the clip rectangle.
// The dispatch is affine for every device, so a shape's device polylines are the same
// wherever it is placed.
//
// Filled shapes (the contours of outline glyphs) take the same way to drivers with
// kCapFilledShapes when fill_path would hand their contours unchanged to the driver's
// fill: the solid pattern, no plane or affine transform, and the shape wholly inside the
// clip region (or no clipping). Line style and width do not matter to them.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

std::uint64_t hash_key(const ShapeKey& key) {
  std::uint64_t h = 1469598103934665603ULL;
  for (const std::uint64_t w : key) {
    h = (h ^ w) * 1099511628211ULL;
    h ^= h >> 29;
  }
  return h;
}

// Records the shape of `key` from `source`, in plot units and device units. Null when it
// draws no line (fills no contour), or the table is full.
const ShapeCache::Entry* record_shape(PipelineState& p, const ShapeKey& key,
                                      const ShapeSource& source) {
  ShapeCache& c = p.shapes;
  if (c.entries.size() >= static_cast<std::size_t>(kMaxShapes)) {
    return nullptr;
  }
  c.plot_x.clear();
  c.plot_y.clear();
  c.plot_ends.clear();
  ShapeRecorder rec(c, source.filled());
  source.record(rec);
  // Close the last polyline (polylines of one point and contours of two draw nothing and
  // are dropped), then take back the start that closing it began.
  rec.move(0.0, 0.0);
  c.plot_x.pop_back();
  c.plot_y.pop_back();
  if (c.plot_ends.empty()) {
    return nullptr;
  }
  // Points far off or not numbers would not reach the driver as they are (fill_path
  // leaves out a path with one of them): such a source is drawn the ordinary way.
  for (std::size_t i = 0; i < c.plot_x.size(); ++i) {
    if (!(std::fabs(c.plot_x[i]) < 1e9 && std::fabs(c.plot_y[i]) < 1e9)) {
      return nullptr;
    }
  }
  ShapeCache::Entry e;
  e.key = key;
  e.filled = source.filled();
  e.ends_from = static_cast<int>(c.ends.size());
  e.points_from = static_cast<int>(c.dev_x.size());
  double ox = 0.0;
  double oy = 0.0;
  to_device(p, 0.0, 0.0, ox, oy);
  e.xmin = e.ymin = e.dxmin = e.dymin = HUGE_VAL;
  e.xmax = e.ymax = e.dxmax = e.dymax = -HUGE_VAL;
  for (std::size_t i = 0; i < c.plot_x.size(); ++i) {
    const double x = c.plot_x[i];
    const double y = c.plot_y[i];
    double dx = 0.0;
    double dy = 0.0;
    to_device(p, x, y, dx, dy);
    dx -= ox;
    dy -= oy;
    c.dev_x.push_back(dx);
    c.dev_y.push_back(dy);
    e.xmin = std::min(e.xmin, x);
    e.xmax = std::max(e.xmax, x);
    e.ymin = std::min(e.ymin, y);
    e.ymax = std::max(e.ymax, y);
    e.dxmin = std::min(e.dxmin, dx);
    e.dxmax = std::max(e.dxmax, dx);
    e.dymin = std::min(e.dymin, dy);
    e.dymax = std::max(e.dymax, dy);
  }
  c.ends.insert(c.ends.end(), c.plot_ends.begin(), c.plot_ends.end());
  e.polylines = static_cast<int>(c.plot_ends.size());
  e.points = static_cast<int>(c.plot_x.size());
  c.entries.push_back(e);
  return &c.entries.back();
}

// The shape of `key`, recorded when it is new.
const ShapeCache::Entry* find_shape(PipelineState& p, const ShapeKey& key,
                                    const ShapeSource& source) {
  ShapeCache& c = p.shapes;
  if (c.slots.empty()) {
    c.slots.assign(2 * static_cast<std::size_t>(kMaxShapes), 0);
  }
  const std::size_t mask = c.slots.size() - 1;
  std::size_t slot = static_cast<std::size_t>(hash_key(key)) & mask;
  for (; c.slots[slot] != 0; slot = (slot + 1) & mask) {
    const ShapeCache::Entry& e = c.entries[static_cast<std::size_t>(c.slots[slot] - 1)];
    if (e.key == key) {
      return &e;
    }
  }
  const ShapeCache::Entry* e = record_shape(p, key, source);
  if (e != nullptr) {
    c.slots[slot] = static_cast<int>(c.entries.size());
  }
  return e;
}

bool inside(const ClipRect& r, double x0, double y0, double x1, double y1) {
  return x0 >= r.xmin - kClipTolerance && x1 <= r.xmax + kClipTolerance &&
         y0 >= r.ymin - kClipTolerance && y1 <= r.ymax + kClipTolerance;
}

// Whether nothing of the pipeline would change the shape's lines or fill.
bool placeable(const PipelineState& p, bool filled) {
  if (!p.driver || p.plane || p.affine) {
    return false;
  }
  if (filled) {
    return (p.caps & kCapFilledShapes) != 0U && (p.caps & kCapFill) != 0U &&
           p.pattern.number == kSolidPattern;
  }
  return (p.caps & kCapShapes) != 0U && p.dash_count == 1 && p.side_offset == 0.0 &&
         p.strokes <= 1 &&
         !(p.clip_mode != ClipMode::None && p.clip_mode != ClipMode::Rect && p.circle);
}

}  // namespace

void ShapeRecorder::move(double x, double y) {
  const auto n = static_cast<int>(c_.plot_x.size());
  const int start = c_.plot_ends.empty() ? 0 : c_.plot_ends.back();
  if (n - start >= min_points_) {
    c_.plot_ends.push_back(n);
  } else {
    c_.plot_x.resize(static_cast<std::size_t>(start));
    c_.plot_y.resize(static_cast<std::size_t>(start));
  }
  c_.plot_x.push_back(x);
  c_.plot_y.push_back(y);
}

void ShapeRecorder::draw(double x, double y) {
  c_.plot_x.push_back(x);
  c_.plot_y.push_back(y);
}

bool place_shape(GlobalBlock& g, const ShapeKey& key, double x, double y,
                 const ShapeSource& source) {
  PipelineState& p = g.pipe;
  const bool filled = source.filled();
  if (!placeable(p, filled)) {
    return false;
  }
  const double ox = g.page.origin_x + x;
  const double oy = g.page.origin_y + y;
  if (!(std::fabs(ox) < 1e9 && std::fabs(oy) < 1e9)) {
    return false;
  }
  const ShapeCache::Entry* e = find_shape(p, key, source);
  if (e == nullptr || e->filled != filled) {
    return false;
  }
  // Lines are clipped with the tolerance of the clip rectangle; fills are cut to the
  // rectangle, or to the square of a clip circle, whose inside box_inside_clip keeps to.
  const ClipRect box{ox + e->xmin, oy + e->ymin, ox + e->xmax, oy + e->ymax};
  if (filled ? !box_inside_clip(p, box)
             : p.clip_mode != ClipMode::None &&
                   !inside(p.clip, box.xmin, box.ymin, box.xmax, box.ymax)) {
    return false;
  }
  end_polyline(g);
  double dx = 0.0;
  double dy = 0.0;
  to_device(p, ox, oy, dx, dy);
  const ShapeCache& c = p.shapes;
  Shape s;
  s.id = static_cast<int>(e - c.entries.data());
  s.filled = filled;
  s.xs = std::span<const double>(c.dev_x).subspan(static_cast<std::size_t>(e->points_from),
                                                  static_cast<std::size_t>(e->points));
  s.ys = std::span<const double>(c.dev_y).subspan(static_cast<std::size_t>(e->points_from),
                                                  static_cast<std::size_t>(e->points));
  s.ends = std::span<const int>(c.ends).subspan(static_cast<std::size_t>(e->ends_from),
                                                static_cast<std::size_t>(e->polylines));
  s.xmin = e->dxmin;
  s.ymin = e->dymin;
  s.xmax = e->dxmax;
  s.ymax = e->dymax;
  p.driver->place_shape(s, dx, dy);
  check_driver(g);
  if (filled) {
    // As fill_path: a driver's fill counts no vectors, and lines go on from where they
    // were.
    return true;
  }
  const long long vectors = g.core.vectors + (e->points - e->polylines);
  g.core.vectors = static_cast<int>(std::min<long long>(vectors, 0x7fffffff));
  // The glyph's polylines are finished: a draw that follows starts from its origin.
  p.cur_x = ox;
  p.cur_y = oy;
  p.count = 0;
  p.has_point = false;
  p.last_dev_x = dx;
  p.last_dev_y = dy;
  return true;
}

void clear_shapes(PipelineState& p) {
  ShapeCache& c = p.shapes;
  c.entries.clear();
  std::fill(c.slots.begin(), c.slots.end(), 0);
  c.dev_x.clear();
  c.dev_y.clear();
  c.ends.clear();
}

}  // namespace zorvel

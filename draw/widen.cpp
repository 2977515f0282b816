// Wide lines on devices that do not draw widths themselves (and on every device while
// the hardware line-width mode is off): the polyline is drawn as parallel strokes of the
// device's thinnest line, spread over the width, before clipping.
//
//      ------------------  +(m-1)/2 * step     m = round(width / thinnest line), at most
//      ------------------     ...                  kMaxStrokes
//      ------------------  -(m-1)/2 * step     step = (width - thinnest) / (m - 1)
//
// Each stroke is the polyline shifted sideways; at a corner the shift follows the mitre,
// the bisector of the two segments' normals, so that strokes stay parallel. Mitres are
// limited to four times the shift at sharp corners.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

constexpr double kMitreLimit = 4.0;

// Unit normal of the segment i -> i + 1, false for a segment of length 0.
bool normal(const double* xs, const double* ys, int i, double& nx, double& ny) {
  const double dx = xs[i + 1] - xs[i];
  const double dy = ys[i + 1] - ys[i];
  const double len = std::hypot(dx, dy);
  if (!(len > 0.0) || !std::isfinite(len)) {
    return false;
  }
  nx = -dy / len;
  ny = dx / len;
  return true;
}

}  // namespace

void update_strokes(GlobalBlock& g) {
  PipelineState& p = g.pipe;
  p.strokes = 1;
  p.stroke_step = 0.0;
  if (!p.driver || p.device == nullptr || (p.hw_widths && (p.caps & kCapWidths) != 0U)) {
    return;
  }
  const double thin = thinnest_line(*p.device, p.scale);
  if (!(thin > 0.0) || !std::isfinite(thin) || p.line_width <= thin) {
    return;
  }
  const double m = std::floor(p.line_width / thin + 0.5);
  p.strokes = static_cast<int>(std::clamp(m, 1.0, static_cast<double>(kMaxStrokes)));
  if (p.strokes > 1) {
    p.stroke_step = (p.line_width - thin) / (p.strokes - 1);
  }
}

void send_widened(GlobalBlock& g, const double* xs, const double* ys, int n) {
  PipelineState& p = g.pipe;
  // The mitre direction of every point, scaled so that a shift d moves the point by
  // d * mitre and keeps both adjacent strokes at distance d from their segments.
  double* mx = p.wide_x.data();
  double* my = p.wide_y.data();
  double prev_x = 0.0;
  double prev_y = 1.0;
  bool have_prev = false;
  for (int i = 0; i < n; ++i) {
    double next_x = 0.0;
    double next_y = 0.0;
    bool have_next = false;
    for (int j = i; j < n - 1 && !have_next; ++j) {
      have_next = normal(xs, ys, j, next_x, next_y);
    }
    if (!have_prev && !have_next) {
      mx[i] = 0.0;  // a dot: strokes stacked vertically
      my[i] = 1.0;
    } else if (!have_prev || !have_next) {
      mx[i] = have_prev ? prev_x : next_x;
      my[i] = have_prev ? prev_y : next_y;
    } else {
      const double denom = 1.0 + prev_x * next_x + prev_y * next_y;
      double vx = prev_x + next_x;
      double vy = prev_y + next_y;
      if (denom > 2.0 / (kMitreLimit * kMitreLimit)) {
        vx /= denom;
        vy /= denom;
      } else if (const double len = std::hypot(vx, vy); len > 1e-12) {
        vx *= kMitreLimit / len;  // sharp corner: the mitre is cut at its limit
        vy *= kMitreLimit / len;
      } else {
        vx = prev_x;  // the line turns back on itself
        vy = prev_y;
      }
      mx[i] = vx;
      my[i] = vy;
    }
    if (have_next) {
      prev_x = next_x;
      prev_y = next_y;
      have_prev = true;
    }
  }
  // Each stroke: shifted copies into the fill scratch (sized once per plot).
  std::vector<double>& sx = p.fill_tx;
  std::vector<double>& sy = p.fill_ty;
  sx.resize(static_cast<std::size_t>(n));
  sy.resize(static_cast<std::size_t>(n));
  for (int k = 0; k < p.strokes; ++k) {
    const double d = (k - (p.strokes - 1) / 2.0) * p.stroke_step;
    for (int i = 0; i < n; ++i) {
      sx[static_cast<std::size_t>(i)] = xs[i] + d * mx[i];
      sy[static_cast<std::size_t>(i)] = ys[i] + d * my[i];
    }
    clip_and_send(g, sx.data(), sy.data(), n);
  }
}

}  // namespace zorvel

#include "raster/stroke.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zorvel {
namespace {

// Lines at least this wide get joins; thinner ones are covered by their segments.
constexpr double kJoinWidth = 2.0;
constexpr int kMaxDiscPoints = 128;

}  // namespace

void Stroker::set_style(const StrokeStyle& style) {
  style_ = style;
  style_.width = std::isfinite(style.width) ? std::clamp(style.width, 1.0, 1e5) : 1.0;
  style_.miter_limit = std::max(1.0, style.miter_limit);
  style_.tolerance = style.tolerance > 1e-3 ? style.tolerance : 1e-3;
  hw_ = style_.width * 0.5;
}

void Stroker::disc(double x, double y) {
  const double r = hw_;
  int n = 8;
  if (r > style_.tolerance) {
    const double step = 2.0 * std::acos(std::max(-1.0, 1.0 - style_.tolerance / r));
    n = std::clamp(static_cast<int>(std::ceil(2.0 * std::numbers::pi / step)), 8, kMaxDiscPoints);
  }
  double xs[kMaxDiscPoints];
  double ys[kMaxDiscPoints];
  for (int i = 0; i < n; ++i) {
    const double a = 2.0 * std::numbers::pi * i / n;
    xs[i] = x + r * std::cos(a);
    ys[i] = y + r * std::sin(a);
  }
  sink_.polygon(xs, ys, n);
}

// The cap at (x, y) of a polyline leaving in direction (ux, uy) (pointing into the line).
void Stroker::cap(double x, double y, double ux, double uy) {
  if (style_.cap == 1) {
    disc(x, y);
  } else if (style_.cap == 2) {
    const double nx = -uy * hw_;
    const double ny = ux * hw_;
    const double bx = -ux * hw_;
    const double by = -uy * hw_;
    const double xs[4] = {x + nx, x - nx, x - nx + bx, x + nx + bx};
    const double ys[4] = {y + ny, y - ny, y - ny + by, y + ny + by};
    sink_.polygon(xs, ys, 4);
  }
}

// The join at (x, y) from the last direction to (ux, uy).
void Stroker::join(double x, double y, double ux, double uy) {
  if (style_.width < kJoinWidth) {
    return;
  }
  const double cross = ux_ * uy - uy_ * ux;
  const double dot = ux_ * ux + uy_ * uy;
  if (std::fabs(cross) < 1e-12 && dot > 0.0) {
    return;  // straight on
  }
  if (style_.join == 1) {
    disc(x, y);
    return;
  }
  const double s = cross > 0.0 ? -1.0 : 1.0;  // the outer side
  const double n1x = -uy_ * hw_ * s;
  const double n1y = ux_ * hw_ * s;
  const double n2x = -uy * hw_ * s;
  const double n2y = ux * hw_ * s;
  // 1 / cos(phi / 2) with phi the angle between the directions: the mitre's length as a
  // multiple of the width.
  const double ratio = 1.0 / std::sqrt(std::max(1e-12, (1.0 + dot) * 0.5));
  if (style_.join == 0 && ratio <= style_.miter_limit) {
    const double k = 1.0 / (1.0 + dot);
    const double xs[4] = {x, x + n1x, x + (n1x + n2x) * k, x + n2x};
    const double ys[4] = {y, y + n1y, y + (n1y + n2y) * k, y + n2y};
    sink_.polygon(xs, ys, 4);
  } else {
    const double xs[3] = {x, x + n1x, x + n2x};
    const double ys[3] = {y, y + n1y, y + n2y};
    sink_.polygon(xs, ys, 3);
  }
}

void Stroker::move(double x, double y) {
  finish();
  open_ = true;
  drawn_ = false;
  segments_ = 0;
  sx_ = lx_ = x;
  sy_ = ly_ = y;
}

void Stroker::line(double x, double y) {
  if (!open_) {
    move(x, y);
  }
  drawn_ = true;
  const double dx = x - lx_;
  const double dy = y - ly_;
  const double len = std::sqrt(dx * dx + dy * dy);
  if (!(len > 1e-9) || !std::isfinite(len)) {
    return;
  }
  const double ux = dx / len;
  const double uy = dy / len;
  if (segments_ == 0) {
    cap(lx_, ly_, ux, uy);
  } else {
    join(lx_, ly_, ux, uy);
  }
  const double nx = -uy * hw_;
  const double ny = ux * hw_;
  const double xs[4] = {lx_ + nx, x + nx, x - nx, lx_ - nx};
  const double ys[4] = {ly_ + ny, y + ny, y - ny, ly_ - ny};
  sink_.polygon(xs, ys, 4);
  ux_ = ux;
  uy_ = uy;
  lx_ = x;
  ly_ = y;
  ++segments_;
}

void Stroker::finish() {
  if (!open_) {
    return;
  }
  open_ = false;
  if (segments_ > 0) {
    cap(lx_, ly_, -ux_, -uy_);
  } else if (drawn_) {
    // A dot: a round one for round caps, else a square of the line's width.
    if (style_.cap == 1) {
      disc(sx_, sy_);
    } else {
      const double xs[4] = {sx_ - hw_, sx_ + hw_, sx_ + hw_, sx_ - hw_};
      const double ys[4] = {sy_ - hw_, sy_ - hw_, sy_ + hw_, sy_ + hw_};
      sink_.polygon(xs, ys, 4);
    }
  }
}

}  // namespace zorvel

// Signs of formulas that no glyph serves because they stretch with what they enclose:
// the radical, delimiters of any height, wide accents, and bars drawn with the pen. Each
// is a few centre lines in its cell; stroke fonts draw them as lines like their glyphs,
// outline and driver fonts as filled strokes of the formula's rule thickness.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/global_block.h"
#include "draw/pipeline.h"
#include "text/formula.h"

namespace zorvel {
namespace {

constexpr int kMaxShapePoints = 64;
constexpr int kArcSteps = 6;  // segments of every quarter arc of a brace
constexpr int kParenSteps = 16;
// Joins are mitred up to this many half weights from the centre line, so that a shape
// whose cell is inset by kTexShapeReach weights stays inside it.
constexpr double kMiterLimit = 2.0 * kTexShapeReach;

struct Builder {
  double* us;
  double* vs;
  bool* starts;
  int max;
  int n = 0;
  bool next_starts = true;
  void add(double u, double v) {
    if (n >= max) {
      return;
    }
    us[n] = u;
    vs[n] = v;
    starts[n] = next_starts;
    next_starts = false;
    ++n;
  }
  void lift() { next_starts = true; }
};

// Half of a brace (the upper when `up`): from its end over the arm to the tip.
void brace_half(Builder& b, double w, double h, bool left, bool up) {
  const double k = std::min(0.25 * h, 0.6 * w);
  const double half = 0.5 * h;
  auto put = [&](double u, double v) {
    b.add(left ? u : w - u, up ? v : h - v);
  };
  const double q = 0.5 * std::numbers::pi / kArcSteps;
  for (int i = 0; i <= kArcSteps; ++i) {
    const double a = i * q;
    put(0.9 * w - 0.4 * w * std::sin(a), h - k + k * std::cos(a));
  }
  for (int i = 0; i <= kArcSteps; ++i) {
    const double a = i * q;
    put(0.1 * w + 0.4 * w * std::cos(a), half + k - k * std::sin(a));
  }
}

}  // namespace

int tex_shape_points(int shape, double w, double h, double* us, double* vs, bool* starts,
                     int max) {
  Builder b{us, vs, starts, max};
  const double pi = std::numbers::pi;
  switch (shape) {
    case kShapeParenL:
    case kShapeParenR:
      for (int i = 0; i <= kParenSteps; ++i) {
        const double t = static_cast<double>(i) / kParenSteps;
        const double u = w * (0.9 - 0.75 * std::sin(pi * t));
        b.add(shape == kShapeParenL ? u : w - u, h * t);
      }
      break;
    case kShapeBracketL:
      b.add(0.85 * w, h);
      b.add(0.25 * w, h);
      b.add(0.25 * w, 0.0);
      b.add(0.85 * w, 0.0);
      break;
    case kShapeBracketR:
      b.add(0.15 * w, h);
      b.add(0.75 * w, h);
      b.add(0.75 * w, 0.0);
      b.add(0.15 * w, 0.0);
      break;
    case kShapeBraceL:
    case kShapeBraceR:
      brace_half(b, w, h, shape == kShapeBraceL, true);
      b.lift();
      brace_half(b, w, h, shape == kShapeBraceL, false);
      break;
    case kShapeVert:
      b.add(0.5 * w, 0.0);
      b.add(0.5 * w, h);
      break;
    case kShapeDoubleVert:
      b.add(0.3 * w, 0.0);
      b.add(0.3 * w, h);
      b.lift();
      b.add(0.7 * w, 0.0);
      b.add(0.7 * w, h);
      break;
    case kShapeAngleL:
      b.add(0.85 * w, h);
      b.add(0.15 * w, 0.5 * h);
      b.add(0.85 * w, 0.0);
      break;
    case kShapeAngleR:
      b.add(0.15 * w, h);
      b.add(0.85 * w, 0.5 * h);
      b.add(0.15 * w, 0.0);
      break;
    case kShapeFloorL:
      b.add(0.25 * w, h);
      b.add(0.25 * w, 0.0);
      b.add(0.85 * w, 0.0);
      break;
    case kShapeFloorR:
      b.add(0.75 * w, h);
      b.add(0.75 * w, 0.0);
      b.add(0.15 * w, 0.0);
      break;
    case kShapeCeilL:
      b.add(0.85 * w, h);
      b.add(0.25 * w, h);
      b.add(0.25 * w, 0.0);
      break;
    case kShapeCeilR:
      b.add(0.15 * w, h);
      b.add(0.75 * w, h);
      b.add(0.75 * w, 0.0);
      break;
    case kShapeSlash:
      b.add(0.1 * w, 0.0);
      b.add(0.9 * w, h);
      break;
    case kShapeRadical: {
      const double knee = std::min(0.5 * h, w);
      b.add(0.0, 0.55 * knee);
      b.add(0.2 * w, 0.7 * knee);
      b.add(0.5 * w, 0.0);
      b.add(w, h);
      break;
    }
    case kShapeHat:
      b.add(0.0, 0.0);
      b.add(0.5 * w, h);
      b.add(w, 0.0);
      break;
    case kShapeTilde:
      for (int i = 0; i <= 12; ++i) {
        const double t = i / 12.0;
        b.add(w * t, h * (0.5 + 0.5 * std::sin(2.0 * pi * t)));
      }
      break;
    case kShapeVec: {
      const double head = std::min(0.4 * w, h);
      b.add(0.0, 0.5 * h);
      b.add(w, 0.5 * h);
      b.lift();
      b.add(w - head, h);
      b.add(w, 0.5 * h);
      b.add(w - head, 0.0);
      break;
    }
    case kShapeRule:
      b.add(0.0, 0.5 * h);
      b.add(w, 0.5 * h);
      break;
    default:
      break;
  }
  return b.n;
}

void draw_tex_shape(GlobalBlock& g, const LaidGlyph& e, double x, double y) {
  double us[kMaxShapePoints];
  double vs[kMaxShapePoints];
  bool starts[kMaxShapePoints];
  const int n = tex_shape_points(e.glyph, e.width, e.thick, us, vs, starts, kMaxShapePoints);
  const double sn = g.text.sin_a;
  const double cs = g.text.cos_a;
  auto to_page = [&](double u, double v, double& px, double& py) {
    u += e.inset;
    v += e.raise;
    px = x + u * cs - v * sn;
    py = y - v * cs - u * sn;
  };
  const double half = 0.5 * e.weight;
  int i = 0;
  while (i < n) {
    int end = i + 1;
    while (end < n && !starts[end]) {
      ++end;
    }
    if (half <= 0.0) {
      for (int k = i; k < end; ++k) {
        double px = 0.0;
        double py = 0.0;
        to_page(us[k], vs[k], px, py);
        if (k == i) {
          move_to(g, px, py);
        } else {
          draw_to(g, px, py);
        }
      }
    } else if (end - i >= 2) {
      // The stroke as a polygon: one side forward, the other back, mitred joins.
      double xs[2 * kMaxShapePoints];
      double ys[2 * kMaxShapePoints];
      const int m = end - i;
      for (int k = 0; k < m; ++k) {
        const int a = i + std::max(k - 1, 0);
        const int b = i + std::min(k + 1, m - 1);
        const int c = i + k;
        // Normals of the segments before and after the point.
        auto normal = [&](int p, int q, double& nx, double& ny) {
          const double dx = us[q] - us[p];
          const double dy = vs[q] - vs[p];
          const double len = std::hypot(dx, dy);
          nx = len > 0.0 ? -dy / len : 0.0;
          ny = len > 0.0 ? dx / len : 0.0;
        };
        double n1x = 0.0;
        double n1y = 0.0;
        double n2x = 0.0;
        double n2y = 0.0;
        normal(a, c == a ? b : c, n1x, n1y);
        normal(c == b ? a : c, b, n2x, n2y);
        double nx = n1x + n2x;
        double ny = n1y + n2y;
        const double len = std::hypot(nx, ny);
        double scale = half;
        if (len > 1e-9) {
          nx /= len;
          ny /= len;
          const double dot = nx * n1x + ny * n1y;
          scale = half / std::max(dot, 1.0 / kMiterLimit);
        } else {
          nx = n1x;
          ny = n1y;
        }
        to_page(us[c] + nx * scale, vs[c] + ny * scale, xs[k], ys[k]);
        to_page(us[c] - nx * scale, vs[c] - ny * scale, xs[2 * m - 1 - k], ys[2 * m - 1 - k]);
      }
      const int ends = 2 * m;
      const FillPatternScope solid(g, kSolidPattern);
      fill_path(g, xs, ys, &ends, 1, FillRule::NonZero);
    }
    i = end;
  }
}

}  // namespace zorvel

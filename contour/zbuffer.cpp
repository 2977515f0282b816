// The z-buffer: between zbfini and zbffin, triangles and lines of the 3D axis system are
// drawn into an image with a depth per pixel, each pixel keeping the nearest. zbffin
// places the image through the pipeline (draw_image): on raster devices at the page's
// own pixels, on vector devices at zbfres dots per cm. Pixels nothing reached stay
// transparent.
//
// The image covers the projected box and the axis system's area, within the page.

#include <algorithm>
#include <cmath>
#include <limits>

#include "api_decl.h"
#include "axes3d/axes3d.h"
#include "contour/surfaces.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "drivers/registry.h"

namespace zorvel {
namespace {

// Most pixels of a z-buffer image; a finer resolution is coarsened to it.
constexpr double kMaxPixels = 25.0e6;
// How far in front of the surfaces (depth units) lines are drawn.
constexpr float kLineBias = 2e-4F;
// zbfres: dots per cm.
constexpr int kMinResolution = 10;
constexpr int kMaxResolution = 1000;

float depth_limit() { return std::numeric_limits<float>::infinity(); }

// Writes pixel (i, j) when depth d is nearer than what it holds.
void plot(ZBuffer& z, int i, int j, float d, Rgb c) {
  if (i < 0 || j < 0 || i >= z.width || j >= z.height) {
    return;
  }
  const std::size_t k = static_cast<std::size_t>(j) * static_cast<std::size_t>(z.width) +
                        static_cast<std::size_t>(i);
  if (!(d < z.depth[k])) {
    return;
  }
  z.depth[k] = d;
  std::uint8_t* px = &z.rgba[4 * k];
  px[0] = static_cast<std::uint8_t>(std::clamp(c.r, 0, 255));
  px[1] = static_cast<std::uint8_t>(std::clamp(c.g, 0, 255));
  px[2] = static_cast<std::uint8_t>(std::clamp(c.b, 0, 255));
  px[3] = 255;
}

// Places the image and closes the section.
void finish(GlobalBlock& g) {
  ZBuffer& z = g.contours.surface.zbuf;
  z.active = false;
  if (z.width > 0 && z.height > 0) {
    Image img;
    img.pixels = z.rgba.data();
    img.width = z.width;
    img.height = z.height;
    img.channels = 4;
    img.stride = static_cast<std::size_t>(z.width) * 4;
    img.x0 = z.x0;
    img.y0 = z.y0;
    img.x1 = z.x0 + z.width / z.dots;
    img.y1 = z.y0 + z.height / z.dots;
    end_polyline(g);
    draw_image(g, img);
  }
  // Give the memory back: a section may be large.
  z.depth = {};
  z.rgba = {};
  z.width = 0;
  z.height = 0;
}

}  // namespace

void zbuffer_triangle(GlobalBlock& g, const SurfacePoint& a, const SurfacePoint& b,
                      const SurfacePoint& c, Rgb ca, Rgb cb, Rgb cc) {
  ZBuffer& z = g.contours.surface.zbuf;
  if (!z.active || !(a.ok && b.ok && c.ok)) {
    return;
  }
  // Pixel coordinates.
  const double ax = (a.x - z.x0) * z.dots;
  const double ay = (a.y - z.y0) * z.dots;
  const double bx = (b.x - z.x0) * z.dots;
  const double by = (b.y - z.y0) * z.dots;
  const double cx = (c.x - z.x0) * z.dots;
  const double cy = (c.y - z.y0) * z.dots;
  const double area = (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
  if (!(std::fabs(area) > 1e-12)) {
    return;
  }
  const int i0 = std::max(0, static_cast<int>(std::floor(std::min({ax, bx, cx}))));
  const int i1 = std::min(z.width - 1, static_cast<int>(std::ceil(std::max({ax, bx, cx}))));
  const int j0 = std::max(0, static_cast<int>(std::floor(std::min({ay, by, cy}))));
  const int j1 = std::min(z.height - 1, static_cast<int>(std::ceil(std::max({ay, by, cy}))));
  const bool flat = ca.r == cb.r && ca.g == cb.g && ca.b == cb.b && ca.r == cc.r &&
                    ca.g == cc.g && ca.b == cc.b;
  for (int j = j0; j <= j1; ++j) {
    const double py = j + 0.5;
    for (int i = i0; i <= i1; ++i) {
      const double px = i + 0.5;
      // Barycentric weights of a and b (pixel centres on an edge belong to the triangle).
      const double wa = ((bx - px) * (cy - py) - (by - py) * (cx - px)) / area;
      const double wb = ((cx - px) * (ay - py) - (cy - py) * (ax - px)) / area;
      const double wc = 1.0 - wa - wb;
      if (wa < 0.0 || wb < 0.0 || wc < 0.0) {
        continue;
      }
      const auto d = static_cast<float>(wa * a.depth + wb * b.depth + wc * c.depth);
      if (flat) {
        plot(z, i, j, d, ca);
      } else {
        const Rgb m{static_cast<int>(std::lround(wa * ca.r + wb * cb.r + wc * cc.r)),
                    static_cast<int>(std::lround(wa * ca.g + wb * cb.g + wc * cc.g)),
                    static_cast<int>(std::lround(wa * ca.b + wb * cb.b + wc * cc.b))};
        plot(z, i, j, d, m);
      }
    }
  }
}

void zbuffer_line(GlobalBlock& g, const SurfacePoint& a, const SurfacePoint& b, Rgb rgb) {
  ZBuffer& z = g.contours.surface.zbuf;
  if (!z.active || !(a.ok && b.ok)) {
    return;
  }
  const double ax = (a.x - z.x0) * z.dots;
  const double ay = (a.y - z.y0) * z.dots;
  const double bx = (b.x - z.x0) * z.dots;
  const double by = (b.y - z.y0) * z.dots;
  const double len = std::hypot(bx - ax, by - ay);
  if (!std::isfinite(len)) {
    return;
  }
  // A square pen of the line width, at least one pixel.
  const int pen = std::max(1, static_cast<int>(std::lround(g.pipe.line_width * z.dots)));
  const int lo = -(pen - 1) / 2;
  const auto steps = static_cast<long long>(std::ceil(len * 2.0)) + 1;
  if (steps > 4LL * (z.width + z.height) + 8) {
    return;  // cannot happen for points on the image; far-off ones are left out
  }
  for (long long k = 0; k <= steps; ++k) {
    const double t = static_cast<double>(k) / static_cast<double>(steps);
    const int i = static_cast<int>(std::floor(ax + t * (bx - ax)));
    const int j = static_cast<int>(std::floor(ay + t * (by - ay)));
    const auto d = static_cast<float>(a.depth + t * (b.depth - a.depth)) - kLineBias;
    for (int v = 0; v < pen; ++v) {
      for (int u = 0; u < pen; ++u) {
        plot(z, i + lo + u, j + lo + v, d, rgb);
      }
    }
  }
}

bool end_zbuffer_for_endgrf(GlobalBlock& g) {
  if (!g.contours.surface.zbuf.active) {
    return false;
  }
  warn(g, 277);
  finish(g);
  return true;
}

namespace api {

void zbfini(GlobalBlock& g) {
  ZBuffer& z = g.contours.surface.zbuf;
  if (z.active) {
    finish(g);  // a second zbfini starts a new section
  }
  // The projected box and the axis system's area, within the page.
  const AxisState& s = g.axes;
  double xmin = s.pos_x;
  double xmax = s.pos_x + s.len_x;
  double ymin = s.pos_y - s.len_y;
  double ymax = s.pos_y;
  const auto& box = g.view3d.box;
  for (int c = 0; c < 8; ++c) {
    const std::array<double, 3> b{(c & 1) != 0 ? box[0] / 2 : -box[0] / 2,
                                  (c & 2) != 0 ? box[1] / 2 : -box[1] / 2,
                                  (c & 4) != 0 ? box[2] / 2 : -box[2] / 2};
    const SurfacePoint p = project_box(g, b);
    if (p.ok) {
      xmin = std::min(xmin, p.x);
      xmax = std::max(xmax, p.x);
      ymin = std::min(ymin, p.y);
      ymax = std::max(ymax, p.y);
    }
  }
  xmin = std::max(0.0, std::floor(xmin));
  ymin = std::max(0.0, std::floor(ymin));
  xmax = std::min(g.page.width + 1.0, std::ceil(xmax));
  ymax = std::min(g.page.height + 1.0, std::ceil(ymax));
  if (!(xmax > xmin && ymax > ymin)) {
    xmin = 0.0;
    ymin = 0.0;
    xmax = 1.0;
    ymax = 1.0;
  }
  const bool raster = g.pipe.device != nullptr && g.pipe.device->family == DeviceFamily::Raster;
  double dots = raster ? g.pipe.scale : g.contours.surface.resolution / 100.0;
  if (!(dots > 0.0) || !std::isfinite(dots)) {
    dots = 1.0;
  }
  const double pixels = (xmax - xmin) * (ymax - ymin) * dots * dots;
  if (pixels > kMaxPixels) {
    dots *= std::sqrt(kMaxPixels / pixels);
  }
  z.x0 = xmin;
  z.y0 = ymin;
  z.dots = dots;
  z.width = std::max(1, static_cast<int>(std::ceil((xmax - xmin) * dots)));
  z.height = std::max(1, static_cast<int>(std::ceil((ymax - ymin) * dots)));
  const std::size_t n = static_cast<std::size_t>(z.width) * static_cast<std::size_t>(z.height);
  try {
    z.depth.assign(n, depth_limit());
    z.rgba.assign(4 * n, 0);
  } catch (const std::bad_alloc&) {
    z.depth = {};
    z.rgba = {};
    z.width = 0;
    z.height = 0;
    warn(g, 53);
    return;
  }
  z.active = true;
}

void zbffin(GlobalBlock& g) {
  if (!g.contours.surface.zbuf.active) {
    warn(g, 276);
    return;
  }
  finish(g);
}

void zbfres(GlobalBlock& g, int n) {
  if (check_range(g, n, kMinResolution, kMaxResolution)) {
    g.contours.surface.resolution = n;
  }
}

void zbftri(GlobalBlock& g, const double* xray, const double* yray, const double* zray,
            const int* icray) {
  if (!zbuffer_open(g)) {
    warn(g, 276);
    return;
  }
  SurfacePoint p[3];
  Rgb c[3];
  for (int k = 0; k < 3; ++k) {
    p[k] = project_box(g, user_to_box(g, xray[k], yray[k], zray[k]));
    c[k] = colour_rgb(g, icray[k]);
  }
  zbuffer_triangle(g, p[0], p[1], p[2], c[0], c[1], c[2]);
}

void zbflin(GlobalBlock& g, double x1, double y1, double z1, double x2, double y2, double z2) {
  if (!zbuffer_open(g)) {
    warn(g, 276);
    return;
  }
  zbuffer_line(g, project_box(g, user_to_box(g, x1, y1, z1)),
               project_box(g, user_to_box(g, x2, y2, z2)), colour_rgb(g, g.colour.current));
}

}  // namespace api
}  // namespace zorvel

// Unit tests of surfaces and the z-buffer: the hidden lines of a mesh against visibility
// found by casting rays at every triangle, the z-buffer against painting far to near, and
// the warnings of bad input.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "api_decl.h"
#include "axes/curve_state.h"
#include "axes3d/axes3d.h"
#include "contour/surfaces.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

using recording::Plot;
using Vec3 = std::array<double, 3>;

class SurfacePlot : public Plot {
 public:
  SurfacePlot() : Plot("GKSL", true, kCapFill | kCapImages) {
    g.pipe.clip_mode = ClipMode::None;
    text_defaults(g);
    axes_defaults(g);
    curve_defaults(g);
  }
  ~SurfacePlot() { g.core.level = 0; }

  void axes(double a, double b, double r, bool ortho) {
    api::proj3d(g, ortho ? "ORTH" : "PERS");
    api::view3d(g, a, b, r, "ANGL");
    api::graf3d(g, -2, 2, -2, 1, -2, 2, -2, 1, -1, 1, -1, 0.5);
    end_polyline(g);
    rec->points.clear();
    rec->fills.clear();
    rec->images.clear();
  }
};

Vec3 sub(const Vec3& a, const Vec3& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
Vec3 cross3(const Vec3& a, const Vec3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double dot(const Vec3& a, const Vec3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

// Parameter s of the ray o + s d through triangle (a, b, c), or infinity.
double ray_hit(const Vec3& o, const Vec3& d, const Vec3& a, const Vec3& b, const Vec3& c) {
  const Vec3 e1 = sub(b, a);
  const Vec3 e2 = sub(c, a);
  const Vec3 p = cross3(d, e2);
  const double det = dot(e1, p);
  if (std::fabs(det) < 1e-14) {
    return std::numeric_limits<double>::infinity();
  }
  const Vec3 t = sub(o, a);
  const double u = dot(t, p) / det;
  const Vec3 q = cross3(t, e1);
  const double v = dot(d, q) / det;
  if (u < 0.0 || v < 0.0 || u + v > 1.0) {
    return std::numeric_limits<double>::infinity();
  }
  return dot(e2, q) / det;
}

double segment_distance(double px, double py, const recording::Sent& a, const recording::Sent& b) {
  const double dx = b.x - a.x;
  const double dy = b.y - a.y;
  const double l2 = dx * dx + dy * dy;
  double t = l2 > 0.0 ? ((px - a.x) * dx + (py - a.y) * dy) / l2 : 0.0;
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(px - (a.x + t * dx), py - (a.y + t * dy));
}

TEST(HiddenLines, AgreeWithRayCasting) {
  // Catches cells drawn out of order (lines behind a hill drawn over it), horizons merged
  // wrongly (lines in front left out, or lines behind drawn), and upright and reversed
  // segments mishandled. Every mesh segment is sampled; a sample is visible when the ray
  // between it and the eye meets no triangle of the surface. Samples whose neighbours
  // along the segment disagree lie at the edge of visibility and are not compared.
  constexpr int nx = 13;
  constexpr int ny = 11;
  std::vector<double> x(nx), y(ny), z(nx * ny);
  for (int i = 0; i < nx; ++i) {
    x[static_cast<std::size_t>(i)] = -2.0 + 4.0 * i / (nx - 1);
  }
  for (int j = 0; j < ny; ++j) {
    y[static_cast<std::size_t>(j)] = 2.0 - 4.0 * j / (ny - 1);  // falling
  }
  for (int j = 0; j < ny; ++j) {
    for (int i = 0; i < nx; ++i) {
      const double u = x[static_cast<std::size_t>(i)];
      const double v = y[static_cast<std::size_t>(j)];
      z[static_cast<std::size_t>(j * nx + i)] =
          0.9 / (1.0 + (u - 0.5) * (u - 0.5) + v * v) - 0.6 / (1.0 + (u + 1) * (u + 1) + (v - 1) * (v - 1));
    }
  }
  struct View {
    double a, b, r;
    bool ortho;
  };
  for (const View view : {View{-35, 30, 7, false}, View{150, 15, 6, false}, View{60, 40, 8, true},
                          View{-100, 8, 6, false}, View{20, 70, 4, false}}) {
    SCOPED_TRACE(testing::Message() << "view " << view.a << ", " << view.b << (view.ortho ? " ORTH" : ""));
    SurfacePlot p;
    p.axes(view.a, view.b, view.r, view.ortho);
    api::surfce(p.g, x.data(), nx, y.data(), ny, z.data());
    const auto lines = p.polylines();
    const View3dState& v = p.g.view3d;
    std::vector<Vec3> pts;
    for (int j = 0; j < ny; ++j) {
      for (int i = 0; i < nx; ++i) {
        pts.push_back(user_to_box(p.g, x[static_cast<std::size_t>(i)], y[static_cast<std::size_t>(j)],
                                  z[static_cast<std::size_t>(j * nx + i)]));
      }
    }
    // 1 visible, 0 hidden, -1 undecided (the two ways of splitting a cell disagree).
    const auto visible = [&](const Vec3& q) {
      Vec3 o = v.eye;
      Vec3 d = sub(q, v.eye);
      double limit = 1.0 - 1e-7;
      if (view.ortho) {
        const Vec3 back = sub(v.eye, v.focus_box);
        o = q;
        d = back;
        for (auto& c : d) {
          c = -c;
        }
        // From far out along the view, towards q.
        const double far = 100.0;
        o = {q[0] + far * back[0], q[1] + far * back[1], q[2] + far * back[2]};
        d = sub(q, o);
      }
      bool hidden[2] = {false, false};
      for (int j = 0; j + 1 < ny; ++j) {
        for (int i = 0; i + 1 < nx; ++i) {
          const Vec3& a = pts[static_cast<std::size_t>(j * nx + i)];
          const Vec3& b = pts[static_cast<std::size_t>(j * nx + i + 1)];
          const Vec3& c = pts[static_cast<std::size_t>((j + 1) * nx + i + 1)];
          const Vec3& e = pts[static_cast<std::size_t>((j + 1) * nx + i)];
          const double s[4] = {ray_hit(o, d, a, b, c), ray_hit(o, d, a, c, e),
                               ray_hit(o, d, a, b, e), ray_hit(o, d, b, c, e)};
          for (int k = 0; k < 4; ++k) {
            hidden[k / 2] = hidden[k / 2] || (s[k] > 1e-9 && s[k] < limit);
          }
        }
      }
      return hidden[0] != hidden[1] ? -1 : hidden[0] ? 0 : 1;
    };
    // Whether a drawn piece along the page direction (ux, uy) passes through q.
    const auto drawn = [&](const Vec3& q, double ux, double uy) {
      double px = 0.0;
      double py = 0.0;
      EXPECT_TRUE(box_to_page(p.g, q, px, py));
      for (const auto& l : lines) {
        for (std::size_t k = 1; k < l.size(); ++k) {
          const double dx = l[k].x - l[k - 1].x;
          const double dy = l[k].y - l[k - 1].y;
          const bool along = std::fabs(dx * uy - dy * ux) <= 1e-6 * std::hypot(dx, dy) * std::hypot(ux, uy);
          if (along && segment_distance(px, py, l[k - 1], l[k]) < 0.05) {
            return true;
          }
        }
      }
      return false;
    };
    int compared = 0;
    int wrong = 0;
    int seen = 0;
    const auto check_segment = [&](const Vec3& a, const Vec3& b) {
      double ax = 0.0;
      double ay = 0.0;
      double bx = 0.0;
      double by = 0.0;
      EXPECT_TRUE(box_to_page(p.g, a, ax, ay) && box_to_page(p.g, b, bx, by));
      constexpr int kSamples = 24;
      std::array<int, kSamples + 1> vis{};
      for (int s = 1; s < kSamples; ++s) {
        const double t = static_cast<double>(s) / kSamples;
        vis[static_cast<std::size_t>(s)] =
            visible({a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])});
      }
      for (int s = 2; s + 1 < kSamples; ++s) {
        const auto k = static_cast<std::size_t>(s);
        if (vis[k] < 0 || vis[k] != vis[k - 1] || vis[k] != vis[k + 1]) {
          continue;
        }
        const double t = static_cast<double>(s) / kSamples;
        const bool d = drawn({a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])},
                             bx - ax, by - ay);
        ++compared;
        seen += vis[k];
        wrong += d != (vis[k] != 0) ? 1 : 0;
      }
    };
    for (int j = 0; j < ny; ++j) {
      for (int i = 0; i < nx; ++i) {
        const Vec3& a = pts[static_cast<std::size_t>(j * nx + i)];
        if (i + 1 < nx) {
          check_segment(a, pts[static_cast<std::size_t>(j * nx + i + 1)]);
        }
        if (j + 1 < ny) {
          check_segment(a, pts[static_cast<std::size_t>((j + 1) * nx + i)]);
        }
      }
    }
    EXPECT_EQ(wrong, 0) << "of " << compared << " samples, " << seen << " visible";
    EXPECT_GT(seen, compared / 5);
    if (view.b < 60) {
      EXPECT_LT(seen, compared);  // something is hidden in the views from the side
    }
  }
}

TEST(ZBuffer, AgreesWithPaintingFarToNear) {
  // Catches a depth test the wrong way round, depth interpolated wrongly across a
  // triangle, and pixels outside a triangle written. Triangles parallel to the floor at
  // different heights and tilted ones that do not cross go in in random order; every
  // pixel must show the triangle that painting far to near leaves on top.
  SurfacePlot p;
  p.axes(-30, 35, 7, false);
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> u(-1.8, 1.8);
  struct Tri {
    std::array<double, 3> x, y, z;
    int colour;
    SurfacePoint sp[3];
    double depth;
  };
  std::vector<Tri> tris;
  for (int k = 0; k < 12; ++k) {
    Tri t;
    const double h = -0.9 + 0.15 * k;  // layers 0.15 apart, tilted by at most 0.06
    for (std::size_t c = 0; c < 3; ++c) {
      t.x[c] = u(rng);
      t.y[c] = u(rng);
      t.z[c] = h + 0.02 * static_cast<double>(c);
    }
    t.colour = explicit_rgb(20 * k, 255 - 20 * k, 7 * k);
    for (std::size_t c = 0; c < 3; ++c) {
      t.sp[c] = project_box(p.g, user_to_box(p.g, t.x[c], t.y[c], t.z[c]));
    }
    t.depth = (t.sp[0].depth + t.sp[1].depth + t.sp[2].depth) / 3.0;
    tris.push_back(t);
  }
  api::zbfini(p.g);
  std::vector<std::size_t> order(tris.size());
  for (std::size_t k = 0; k < order.size(); ++k) {
    order[k] = k;
  }
  std::shuffle(order.begin(), order.end(), rng);
  for (const std::size_t k : order) {
    const int c[3] = {tris[k].colour, tris[k].colour, tris[k].colour};
    api::zbftri(p.g, tris[k].x.data(), tris[k].y.data(), tris[k].z.data(), c);
  }
  const ZBuffer& zb = p.g.contours.surface.zbuf;
  ASSERT_TRUE(zb.active);
  // Paint far to near.
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return tris[a].depth > tris[b].depth; });
  int compared = 0;
  int wrong = 0;
  for (int j = 0; j < zb.height; ++j) {
    for (int i = 0; i < zb.width; ++i) {
      const double px = zb.x0 + (i + 0.5) / zb.dots;
      const double py = zb.y0 + (j + 0.5) / zb.dots;
      int expect = -1;
      bool near_edge = false;
      for (const std::size_t k : order) {
        const SurfacePoint* s = tris[k].sp;
        double w[3];
        const double area = (s[1].x - s[0].x) * (s[2].y - s[0].y) - (s[1].y - s[0].y) * (s[2].x - s[0].x);
        for (int e = 0; e < 3; ++e) {
          const SurfacePoint& a = s[(e + 1) % 3];
          const SurfacePoint& b = s[(e + 2) % 3];
          w[e] = ((b.x - a.x) * (py - a.y) - (b.y - a.y) * (px - a.x)) / area;
          const double len = std::hypot(b.x - a.x, b.y - a.y);
          near_edge = near_edge || std::fabs(w[e] * area / len) < 2.0 / zb.dots;
        }
        if (w[0] >= 0 && w[1] >= 0 && w[2] >= 0) {
          expect = tris[k].colour;
        }
      }
      if (near_edge) {
        continue;
      }
      const std::uint8_t* got = &zb.rgba[4 * (static_cast<std::size_t>(j) * zb.width + i)];
      const int got_colour = got[3] == 0 ? -1 : explicit_rgb(got[0], got[1], got[2]);
      ++compared;
      wrong += got_colour != expect ? 1 : 0;
    }
  }
  EXPECT_EQ(wrong, 0) << "of " << compared << " pixels";
  EXPECT_GT(compared, 1000);
  api::zbffin(p.g);
  EXPECT_FALSE(zb.active);
  ASSERT_EQ(p.rec->images.size(), 1U);
  EXPECT_EQ(p.rec->images[0].channels, 4);
}

// Area of a filled path in device units (contours by the shoelace formula, summed).
double filled_area(const recording::Filled& f) {
  double a = 0.0;
  std::size_t start = 0;
  for (const int end : f.ends) {
    for (std::size_t i = start; i < static_cast<std::size_t>(end); ++i) {
      const std::size_t j = i + 1 < static_cast<std::size_t>(end) ? i + 1 : start;
      a += f.xs[i] * f.ys[j] - f.xs[j] * f.ys[i];
    }
    start = static_cast<std::size_t>(end);
  }
  return std::fabs(0.5 * a);
}

TEST(Surfaces, CutShadingTilesTheTriangles) {
  // Bands on a surface (conshd3d) and smooth shading (one piece per colour) must cover
  // every triangle exactly: no gap, no overlap, a piece off the triangle's plane would
  // change the projected areas. Seen from straight above no triangle hides another, so the
  // pieces' areas add up to the grid's.
  SurfacePlot p;
  p.axes(-90, 90, 7, true);
  const double x[4] = {-2, -0.5, 0.7, 2};
  const double y[3] = {-2, 0.4, 2};
  const double z[12] = {-0.9, 0.3, 0.8, -0.2, 0.1, 0.95, -0.7, 0.4, 0.6, -0.4, 0.2, 0.0};
  double whole = 0.0;
  for (int j = 0; j < 2; ++j) {
    for (int i = 0; i < 3; ++i) {
      const SurfacePoint a = project_box(p.g, user_to_box(p.g, x[i], y[j], 0));
      const SurfacePoint c = project_box(p.g, user_to_box(p.g, x[i + 1], y[j + 1], 0));
      whole += std::fabs((c.x - a.x) * (c.y - a.y));
    }
  }
  const double lev[4] = {-0.5, 0.0, 0.25, 0.5};
  api::conopt(p.g, "BOTH", "EXTE");
  api::conshd3d(p.g, x, 4, y, 3, z, lev, 4);
  double area = 0.0;
  for (const auto& f : p.rec->fills) {
    area += filled_area(f);
  }
  EXPECT_NEAR(area, whole, 1e-6 * whole);
  EXPECT_GT(p.rec->fills.size(), 12U);
  p.rec->fills.clear();
  api::suropt(p.g, "SMOO", "SHAD");
  api::surshd(p.g, x, 4, y, 3, z);
  area = 0.0;
  for (const auto& f : p.rec->fills) {
    area += filled_area(f);
  }
  EXPECT_NEAR(area, whole, 1e-6 * whole);
  EXPECT_GT(p.rec->fills.size(), 100U);  // the colours of the table the values reach
}

TEST(Surfaces, BadInput) {
  // Each bad call warns with its number, draws nothing and leaves no state behind.
  SurfacePlot p;
  p.axes(-35, 30, 7, false);
  const double x[3] = {0, 1, 2};
  const double xb[3] = {0, 2, 1};
  const double zn[9] = {0, 1, 0, 1, NAN, 1, 0, 1, 0};
  api::surfce(p.g, x, 1, x, 3, zn);
  EXPECT_NE(p.text().find("Warning 30:"), std::string::npos) << p.text();
  api::surfce(p.g, xb, 3, x, 3, zn);
  EXPECT_NE(p.text().find("Warning 271:"), std::string::npos) << p.text();
  EXPECT_TRUE(p.polylines().empty());
  // A value that is not a number leaves out its four cells, and only those.
  api::surfce(p.g, x, 3, x, 3, zn);
  EXPECT_TRUE(p.polylines().empty());
  const int i1[2] = {1, 1};
  const int i2[2] = {2, 4};
  const int i3[2] = {3, 9};
  api::surtri(p.g, x, x, x, 3, i1, i2, i3, 2);
  EXPECT_NE(p.text().find("Warning 275:"), std::string::npos) << p.text();
  EXPECT_EQ(p.rec->fills.size(), 1U);
  api::zbffin(p.g);
  EXPECT_NE(p.text().find("Warning 276:"), std::string::npos) << p.text();
  api::zbfini(p.g);
  api::endgrf(p.g);
  EXPECT_NE(p.text().find("Warning 277:"), std::string::npos) << p.text();
  EXPECT_FALSE(p.g.contours.surface.zbuf.active);
  EXPECT_EQ(p.rec->images.size(), 1U);
}

}  // namespace
}  // namespace zorvel

// Unit tests of the 3D box: the edges that carry the axes and the back planes of grid3d
// from every side, labels and names outside the projected box for views from above,
// below and the side, and addlab.
//
// The box is checked against its outline computed here: the convex hull of its eight
// projected corners. Text is drawn in an outline font, so the recording driver receives
// every glyph as a filled path and every line as points.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "api_decl.h"
#include "axes/curve_state.h"
#include "axes3d/axes3d.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

using recording::Plot;
using Vec3 = std::array<double, 3>;

struct P2 {
  double x, y;
};

double cross(const P2& o, const P2& a, const P2& b) {
  return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

class BoxPlot : public Plot {
 public:
  BoxPlot() : Plot("GKSL", true, kCapFill) {
    g.pipe.clip_mode = ClipMode::None;
    text_defaults(g);
    axes_defaults(g);
    curve_defaults(g);
    api::helve(g);
  }
  ~BoxPlot() { g.core.level = 0; }

  // graf3d seen from (x, y, z) in the mode of view3d, the labelled axes named.
  void draw(double x, double y, double z, const char* mode, bool ortho = false) {
    api::proj3d(g, ortho ? "ORTH" : "PERS");
    api::view3d(g, x, y, z, mode);
    api::name(g, "X axis", "X");
    api::name(g, "Y axis", "Y");
    api::name(g, "Z axis", "Z");
    rec->points.clear();
    rec->fills.clear();
    api::graf3d(g, -3, 3, -3, 1, -3, 3, -3, 1, -1, 1, -1, 0.5);
    end_polyline(g);
  }

  P2 page(const Vec3& b) {
    P2 p{0, 0};
    EXPECT_TRUE(box_to_page(g, b, p.x, p.y));
    return p;
  }

  Vec3 corner(int k) {
    const auto& l = g.view3d.box;
    return {(k & 1 ? 0.5 : -0.5) * l[0], (k & 2 ? 0.5 : -0.5) * l[1], (k & 4 ? 0.5 : -0.5) * l[2]};
  }

  // The outline of the projected box, counter-clockwise as the page shows it (y down).
  std::vector<P2> outline() {
    std::vector<P2> pts;
    for (int k = 0; k < 8; ++k) {
      pts.push_back(page(corner(k)));
    }
    std::sort(pts.begin(), pts.end(),
              [](P2 a, P2 b) { return a.x < b.x || (a.x == b.x && a.y < b.y); });
    std::vector<P2> hull(16);
    std::size_t n = 0;
    for (int pass = 0; pass < 2; ++pass) {
      const std::size_t start = n;
      for (const P2& p : pts) {
        while (n >= start + 2 && cross(hull[n - 2], hull[n - 1], p) <= 1e-9) {
          --n;
        }
        hull[n++] = p;
      }
      --n;
      std::reverse(pts.begin(), pts.end());
    }
    hull.resize(n);
    return hull;
  }

  // How far p lies outside the outline (negative inside): the largest distance beyond
  // the line of one of its sides.
  static double outside(const std::vector<P2>& hull, P2 p) {
    double d = -1e300;
    for (std::size_t i = 0; i < hull.size(); ++i) {
      const P2& a = hull[i];
      const P2& b = hull[(i + 1) % hull.size()];
      d = std::max(d, -cross(a, b, p) / std::hypot(b.x - a.x, b.y - a.y));
    }
    return d;
  }

  // The end points of an edge on the page.
  std::array<P2, 2> ends(const BoxEdge& e) {
    std::array<P2, 2> out{};
    for (int t = 0; t < 2; ++t) {
      Vec3 p{};
      p[static_cast<std::size_t>(e.axis)] =
          (t == 0 ? -0.5 : 0.5) * g.view3d.box[static_cast<std::size_t>(e.axis)];
      int k = 0;
      for (int i = 0; i < 3; ++i) {
        if (i != e.axis) {
          p[static_cast<std::size_t>(i)] = e.side[static_cast<std::size_t>(k++)] * 0.5 *
                                           g.view3d.box[static_cast<std::size_t>(i)];
        }
      }
      out[static_cast<std::size_t>(t)] = page(p);
    }
    return out;
  }
};

bool same(P2 a, P2 b) { return std::fabs(a.x - b.x) < 1e-6 && std::fabs(a.y - b.y) < 1e-6; }

// Whether the segment a-b is one side of the hull.
bool hull_side(const std::vector<P2>& hull, P2 a, P2 b) {
  for (std::size_t i = 0; i < hull.size(); ++i) {
    const P2& p = hull[i];
    const P2& q = hull[(i + 1) % hull.size()];
    if ((same(p, a) && same(q, b)) || (same(p, b) && same(q, a))) {
      return true;
    }
  }
  return false;
}

TEST(Box3d, AxesRunAlongTheOutlineFromEveryOctant) {
  // Catches an axis put on an edge inside the projected box (labels on the faces), x or y
  // on a top edge where a bottom one is on the outline, z on the right where the left
  // one is, a mirrored choice from below or behind, and faces of the orthographic
  // projection judged by the eye's position instead of the view direction (they differ
  // for an eye within the box's extent on one axis).
  std::vector<Vec3> eyes;
  for (int octant = 0; octant < 8; ++octant) {
    eyes.push_back({octant & 1 ? -4.0 : 4.0, octant & 2 ? -5.0 : 5.0, octant & 4 ? -4.0 : 4.0});
  }
  eyes.insert(eyes.end(), {{0.5, -5, 4}, {4, 0.3, -4}, {-4, -5, 0.5}});
  for (const bool ortho : {false, true}) {
    for (const Vec3& eye : eyes) {
      BoxPlot p;
      p.draw(eye[0], eye[1], eye[2], "ABS", ortho);
      const std::vector<P2> hull = p.outline();
      const std::array<BoxEdge, 3> chosen = axis_edges(p.g);
      for (int ax = 0; ax < 3; ++ax) {
        const auto e = p.ends(chosen[static_cast<std::size_t>(ax)]);
        ASSERT_TRUE(hull_side(hull, e[0], e[1]))
            << eye[0] << " " << eye[1] << " " << eye[2] << " axis " << ax << " " << ortho;
        // No other outline edge along the same axis lies lower (x, y) or further left (z).
        for (int k = 0; k < 4; ++k) {
          const auto o = p.ends({ax, {k % 2 ? 1 : -1, k < 2 ? -1 : 1}});
          if (!hull_side(hull, o[0], o[1])) {
            continue;
          }
          if (ax == kAxisZ) {
            EXPECT_LE(e[0].x + e[1].x, o[0].x + o[1].x + 1.0) << eye[0] << " " << eye[1];
          } else {
            EXPECT_GE(e[0].y + e[1].y, o[0].y + o[1].y - 1.0) << eye[0] << " " << eye[1];
          }
        }
      }
      // The default view: x in front, y to the right, z on the left, all at the bottom.
      if (eye == Vec3{4, -5, 4} && !ortho) {
        EXPECT_EQ(chosen[0], (BoxEdge{0, {-1, -1}}));
        EXPECT_EQ(chosen[1], (BoxEdge{1, {1, -1}}));
        EXPECT_EQ(chosen[2], (BoxEdge{2, {-1, -1}}));
      }
    }
  }
}

TEST(Box3d, GridLinesLieOnTheBackPlanes) {
  // Catches grid lines on a face turned towards the eye (they would run through the
  // data), a plane for the wrong keyword, and lines off their plane.
  for (int octant = 0; octant < 8; ++octant) {
    BoxPlot p;
    const double s[3] = {octant & 1 ? -1.0 : 1.0, octant & 2 ? -1.0 : 1.0, octant & 4 ? -1.0 : 1.0};
    p.draw(4 * s[0], 5 * s[1], 4 * s[2], "ABS");
    for (int ax = 0; ax < 3; ++ax) {
      EXPECT_EQ(back_side(p.g, ax), -s[ax]);
    }
    p.rec->points.clear();
    api::grid3d(p.g, 2, 1, "XZ");
    // The plane across y at its back side, seen as a quadrilateral.
    const double yb = back_side(p.g, 1) * p.g.view3d.box[1] / 2;
    std::vector<P2> quad;
    for (const Vec3& c : {Vec3{-1, yb, -1}, Vec3{1, yb, -1}, Vec3{1, yb, 1}, Vec3{-1, yb, 1}}) {
      quad.push_back(p.page(c));
    }
    if (cross(quad[0], quad[1], quad[2]) < 0) {
      std::reverse(quad.begin(), quad.end());
    }
    // 2 lines per x step (13) and 1 per z step (5).
    int lines = 0;
    for (const auto& line : p.polylines()) {
      ++lines;
      for (const auto& pt : line) {
        EXPECT_LT(BoxPlot::outside(quad, {pt.x, pt.y}), 1e-6) << "octant " << octant;
      }
    }
    EXPECT_EQ(lines, 18);
  }
  BoxPlot p;
  p.draw(4, -5, 4, "ABS");
  api::grid3d(p.g, 0, 1, "ALL");
  api::grid3d(p.g, 1, 1, "XYZ ");
  p.rec->points.clear();
  api::grid3d(p.g, 1, 1, "yz");
  EXPECT_EQ(p.polylines().size(), 12U);  // 7 y lines and 5 z lines
  const std::string text = p.text();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2) << text;
  EXPECT_NE(text.find("Warning 2:"), std::string::npos);
}

TEST(Box3d, LabelsAndNamesStayOutsideTheBox) {
  // Catches labels or names placed on the box's faces or edges: the normal pointing
  // inwards, justification that lets a label reach back over its edge, a name inside its
  // labels, and views from below or with the orthographic projection handled as from
  // above.
  struct View {
    double x, y, z;
    const char* mode;
    bool ortho;
  };
  const View views[] = {
      {141, 30, 10, "ANGL", false}, {30, 30, 10, "ANGL", false},  {-60, 20, 10, "ANGL", false},
      {210, 40, 10, "ANGL", false}, {30, -30, 10, "ANGL", false}, {150, -60, 10, "ANGL", false},
      {0, 0, 10, "ANGL", false},    {45, 80, 10, "ANGL", false},  {0, 0, 5, "ABS", false},
      {-35, 25, 10, "ANGL", true},  {120, -20, 10, "ANGL", true}, {0, 0, 5, "ABS", true}};
  for (const View& v : views) {
    BoxPlot p;
    p.draw(v.x, v.y, v.z, v.mode, v.ortho);
    const std::vector<P2> hull = p.outline();
    EXPECT_GT(p.rec->fills.size(), 15U) << v.x << " " << v.y;  // labels and names
    for (const auto& f : p.rec->fills) {
      for (std::size_t i = 0; i < f.xs.size(); ++i) {
        EXPECT_GT(BoxPlot::outside(hull, {f.xs[i], f.ys[i]}), 5.0)
            << v.x << " " << v.y << " " << v.z << (v.ortho ? " ORTH" : "");
      }
    }
    EXPECT_EQ(p.text(), "");
  }
}

TEST(Box3d, AdditionalLabels) {
  // Catches a label of addlab away from where the axis' own labels stand, a tick drawn
  // without being asked for, a value off the axis drawn, and the 3D axis system not
  // refusing with its own text.
  BoxPlot p;
  api::axspos(p.g, 400, 1800);
  api::axslen(p.g, 2000, 1200);
  api::graf(p.g, 0, 10, 0, 2, 0, 5, 0, 1);
  p.rec->points.clear();
  p.rec->fills.clear();
  api::addlab(p.g, "M", 5, 1, "X");
  const auto lines = p.polylines();
  ASSERT_EQ(lines.size(), 1U);  // the tick, outwards from the lower axis
  const double x = 400 + 5 * (2000 - 1.0) / 10;
  EXPECT_NEAR(lines[0].front().x, x, 1e-9);
  EXPECT_NEAR(lines[0].front().y, 1800, 1e-9);
  EXPECT_NEAR(lines[0].back().y, 1800 + p.g.axes.tick_major, 1e-9);
  ASSERT_FALSE(p.rec->fills.empty());
  double x0 = 1e9, x1 = -1e9, y0 = 1e9;
  for (const auto& f : p.rec->fills) {
    x0 = std::min(x0, *std::min_element(f.xs.begin(), f.xs.end()));
    x1 = std::max(x1, *std::max_element(f.xs.begin(), f.xs.end()));
    y0 = std::min(y0, *std::min_element(f.ys.begin(), f.ys.end()));
  }
  EXPECT_NEAR((x0 + x1) / 2, x, 3.0);    // centred under the tick ...
  EXPECT_NEAR(y0, 1800 + 24 + 20, 3.0);  // ... hanging from ticlen + labdis
  p.rec->points.clear();
  p.rec->fills.clear();
  api::addlab(p.g, "N", 3, 0, "Y");
  EXPECT_TRUE(p.polylines().empty());
  EXPECT_FALSE(p.rec->fills.empty());
  api::addlab(p.g, "O", 10.5, 1, "X");
  api::addlab(p.g, "P", 1, 1, "Z");
  const std::string text = p.text();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2) << text;
  api::endgrf(p.g);
  p.draw(4, -5, 4, "ABS");
  p.rec->fills.clear();
  api::addlab(p.g, "Q", 0, 1, "X");
  EXPECT_TRUE(p.rec->fills.empty());
  EXPECT_NE(p.text().find(" <<<< Additonal labels for graf3d are not supported in test!"),
            std::string::npos)
      << p.text();
}

}  // namespace
}  // namespace zorvel

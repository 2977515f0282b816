// Unit tests of contour lines: the cases of marching squares and the saddle rule, values
// on the level and values that are not numbers, lines through triangles, the Delaunay
// triangulation on degenerate point sets, and labels that keep clear of each other and
// of the lines. (The lines against contourpy's and the triangles against qdelaunay's are
// compared by tests/contour; the warnings by tests/e2e/contour_bad_input.)

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "api_decl.h"
#include "contour/delaunay.h"
#include "contour/lines.h"
#include "contour/predicates.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

struct Pt {
  double x;
  double y;
};

std::vector<std::vector<Pt>> trace(const std::vector<double>& x, const std::vector<double>& y,
                                   const std::vector<double>& z, double level,
                                   std::vector<bool>* closed = nullptr) {
  ContourLines lines;
  std::vector<std::uint8_t> cells;
  trace_grid({x.data(), static_cast<int>(x.size()), y.data(), static_cast<int>(y.size()), z.data()},
             level, lines, cells);
  std::vector<std::vector<Pt>> out;
  for (std::size_t k = 0; k < lines.lines(); ++k) {
    auto& l = out.emplace_back();
    for (std::size_t i = lines.begin(k); i < lines.ends[k]; ++i) {
      l.push_back({lines.x[i], lines.y[i]});
    }
    if (closed != nullptr) {
      closed->push_back(lines.closed[k] != 0);
    }
  }
  return out;
}

double cross(Pt a, Pt b, Pt c) { return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x); }

TEST(MarchingSquares, SixteenCasesAndSaddles) {
  // Catches a case joining the wrong edges or running the wrong way (values above the
  // level belong on the left), a crossing interpolated from the wrong end, and saddles
  // not decided by the mean of the cell: corners 3 and -1 make the centre above and join
  // the corners above; 1 and -3 keep them apart.
  const Pt corner[4] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};  // counter-clockwise
  for (int c = 0; c < 16; ++c) {
    const bool saddle = c == 5 || c == 10;
    for (const double hi : saddle ? std::vector<double>{3.0, 1.0} : std::vector<double>{2.0}) {
      const double lo = saddle ? hi - 4.0 : -1.0;
      double v[4];
      for (int k = 0; k < 4; ++k) {
        v[k] = ((c >> k) & 1) != 0 ? hi : lo;
      }
      const auto lines = trace({0, 1}, {0, 1}, {v[0], v[1], v[3], v[2]}, 0.0);
      SCOPED_TRACE(testing::Message() << "case " << c << ", corners " << hi << " / " << lo);
      // Every crossed edge gives one end point, at the level's place along the edge.
      std::vector<Pt> crossings;
      for (int k = 0; k < 4; ++k) {
        const int k1 = (k + 1) % 4;
        if ((v[k] >= 0) != (v[k1] >= 0)) {
          const double t = v[k] / (v[k] - v[k1]);
          crossings.push_back({corner[k].x + t * (corner[k1].x - corner[k].x),
                               corner[k].y + t * (corner[k1].y - corner[k].y)});
        }
      }
      ASSERT_EQ(lines.size(), crossings.size() / 2);
      std::size_t met = 0;
      for (const auto& l : lines) {
        ASSERT_EQ(l.size(), 2U);
        for (const Pt& p : l) {
          met += std::count_if(crossings.begin(), crossings.end(), [&](Pt q) {
            return std::fabs(p.x - q.x) < 1e-15 && std::fabs(p.y - q.y) < 1e-15;
          });
        }
        // The side of the segment with fewer corners (one cut off, or two of two):
        // above the level on the left, below on the right.
        int left = 0;
        for (const Pt& q : corner) {
          left += cross(l[0], l[1], q) > 0 ? 1 : 0;
        }
        for (int k = 0; k < 4; ++k) {
          const bool on_left = cross(l[0], l[1], corner[k]) > 0;
          if ((left <= 2 && on_left) || (left >= 2 && !on_left)) {
            EXPECT_EQ(v[k] >= 0, on_left) << "corner " << k;
            // A saddle's segments cut off the corners below when its centre is above.
            if (saddle) {
              EXPECT_EQ(v[k] >= 0, hi < 2.0) << "corner " << k;
            }
          }
        }
      }
      EXPECT_EQ(met, crossings.size());
    }
  }
  // Cells join into lines: a peak in the middle of 3 x 3 values is one closed ring,
  // counter-clockwise, its first point repeated at the end.
  std::vector<bool> closed;
  const auto ring = trace({0, 1, 2}, {0, 1, 2}, {0, 0, 0, 0, 4, 0, 0, 0, 0}, 1.0, &closed);
  ASSERT_EQ(ring.size(), 1U);
  ASSERT_EQ(ring[0].size(), 5U);
  EXPECT_TRUE(closed[0]);
  EXPECT_EQ(ring[0].front().x, ring[0].back().x);
  EXPECT_EQ(ring[0].front().y, ring[0].back().y);
  double area = 0;
  for (std::size_t i = 0; i + 1 < ring[0].size(); ++i) {
    area += cross({1, 1}, ring[0][i], ring[0][i + 1]);
  }
  EXPECT_NEAR(area, 2 * 0.5 * 4 * 0.75 * 0.75, 1e-12);  // a diamond of half-diagonal 0.75
}

TEST(MarchingSquares, ValuesOnTheLevelAndHoles) {
  // Catches values equal to the level treated differently from cell to cell (a line
  // through a node appears twice or leaves a repeated point), a lone node on the level
  // drawn as a dot, and lines drawn into cells with a corner that is not a number.
  const std::vector<double> x = {0, 1, 2, 3, 4};
  const std::vector<double> y = {0, 1, 2, 3};
  // A plateau at the level 1 on the right, falling to the left: the line runs through
  // the plateau's edge nodes (x = 2), as for a level just below 1.
  std::vector<double> z(20);
  for (int j = 0; j < 4; ++j) {
    for (int i = 0; i < 5; ++i) {
      z[static_cast<std::size_t>(j * 5 + i)] = std::min(1.0, 0.5 * i);
    }
  }
  for (const double level : {1.0, 1.0 - 1e-13}) {
    const auto lines = trace(x, y, z, level);
    ASSERT_EQ(lines.size(), 1U) << level;
    ASSERT_EQ(lines[0].size(), 4U) << level;
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_NEAR(lines[0][i].x, 2.0, 1e-12);
      EXPECT_EQ(lines[0][i].y, 3.0 - static_cast<double>(i));
    }
  }
  EXPECT_TRUE(trace(x, y, z, 0.0).empty());  // the lowest value: all above, no line
  // A line through nodes on the level: each node once, nothing in between.
  std::vector<double> sum(20);
  for (std::size_t k = 0; k < 20; ++k) {
    sum[k] = static_cast<double>(k % 5 + k / 5);
  }
  const auto diagonal = trace(x, y, sum, 3.0);
  ASSERT_EQ(diagonal.size(), 1U);
  ASSERT_EQ(diagonal[0].size(), 4U);
  for (const Pt& q : diagonal[0]) {
    EXPECT_EQ(q.x + q.y, 3.0);
    EXPECT_EQ(q.x, std::floor(q.x));
  }
  // A single node on the level among lower values: no line; a flat field: none either.
  std::vector<double> lone(20, -1.0);
  lone[7] = 2.0;
  EXPECT_TRUE(trace(x, y, lone, 2.0).empty());
  EXPECT_TRUE(trace(x, y, std::vector<double>(20, 2.0), 2.0).empty());
  // Holes: a ramp z = x with a NaN and an infinity; the line x = 2.5 stops at the cells
  // they belong to and goes on beyond them, never inside.
  std::vector<double> ramp(20);
  for (std::size_t k = 0; k < 20; ++k) {
    ramp[k] = static_cast<double>(k % 5);
  }
  ramp[7] = std::nan("");  // node (2, 1): masks the cells of rows 0 and 1 at x 1..3
  auto lines = trace(x, y, ramp, 2.5);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].size(), 2U);  // only from y = 2 to y = 3
  EXPECT_EQ(std::min(lines[0][0].y, lines[0][1].y), 2.0);
  ramp[7] = 2.0;
  ramp[13] = HUGE_VAL;  // node (3, 2): the line runs from y = 0 to 1 and nothing else
  lines = trace(x, y, ramp, 2.5);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(std::max(lines[0][0].y, lines[0][1].y), 1.0);
}

TEST(MeshLines, PlaneAndBadTriangles) {
  // Catches triangles not joined into one line through their shared edges, triangles
  // listed clockwise that break the line, and corners out of range read instead of
  // skipped.
  std::vector<double> x, y, z;
  for (int j = 0; j < 4; ++j) {
    for (int i = 0; i < 5; ++i) {
      x.push_back(i);
      y.push_back(j);
      z.push_back(0.5 * i);
    }
  }
  std::vector<int> a, b, c;
  for (int j = 0; j < 3; ++j) {
    for (int i = 0; i < 4; ++i) {
      const int p = j * 5 + i + 1;
      const bool turned = (i + j) % 2 == 0;  // some triangles clockwise
      a.insert(a.end(), {p, p});
      b.insert(b.end(), {p + 1, turned ? p + 5 : p + 6});
      c.insert(c.end(), {p + 6, turned ? p + 6 : p + 5});
    }
  }
  a.push_back(0);  // out of range: skipped
  b.push_back(1);
  c.push_back(2);
  ContourLines lines;
  MeshWork work;
  const MeshData mesh{x.data(), y.data(), z.data(), 20,
                      a.data(), b.data(), c.data(), static_cast<int>(a.size())};
  EXPECT_EQ(trace_mesh(mesh, 0.75, lines, work), 1);
  ASSERT_EQ(lines.lines(), 1U);
  EXPECT_EQ(lines.closed[0], 0);
  for (std::size_t i = 0; i < lines.x.size(); ++i) {
    EXPECT_DOUBLE_EQ(lines.x[i], 1.5);
  }
  // Values above on the left: x = 1.5 runs downwards (larger x to the left of it).
  EXPECT_EQ(lines.y.front(), 3.0);
  EXPECT_EQ(lines.y.back(), 0.0);
}

// Triangulation
// =============

TEST(Predicates, ExactSigns) {
  // Catches a predicate that trusts rounded arithmetic where the answer is close: points
  // a few units in the last place beside the line y = x must fall on their true side,
  // differences that round away what decides must be taken exactly, and the sign of an
  // in-circle determinant must flip with every swap of two of its points (rounding
  // breaks this near degenerate positions).
  const Point2 a{12.0, 12.0}, b{24.0, 24.0};
  for (int i = 0; i < 64; ++i) {
    for (int j = 0; j < 64; ++j) {
      const Point2 c{0.5 + i * 0x1p-53, 0.5 + j * 0x1p-53};
      const double o = orient2d(a, b, c);
      ASSERT_TRUE(i < j ? o > 0 : i > j ? o < 0 : o == 0) << i << " " << j;
    }
  }
  // Where the rounded coordinate differences say "on the line" or "on the circle" and
  // only their rounding errors tell: far points and a point near the origin.
  const double r = 0x1p60;
  const Point2 c{0x1p-10, 0x1p-10 + 0x1p-62};
  EXPECT_GT(orient2d({-r, -r}, {r, r}, c), 0);
  EXPECT_LT(orient2d({r, r}, {-r, -r}, c), 0);
  EXPECT_EQ(orient2d({-r, -r}, {r, r}, {0x1p-10, 0x1p-10}), 0);
  // The circle through (2r, 0), (r, r), (r, -r) passes through the origin.
  EXPECT_GT(incircle({2 * r, 0}, {r, r}, {r, -r}, {1, 0}), 0);
  EXPECT_LT(incircle({2 * r, 0}, {r, r}, {r, -r}, {-1, 0}), 0);
  EXPECT_EQ(incircle({2 * r, 0}, {r, r}, {r, -r}, {0, 0}), 0);
  const auto sign = [](double v) { return v > 0 ? 1 : v < 0 ? -1 : 0; };
  std::mt19937 rng(11);
  std::uniform_real_distribution<double> angle(0.0, 6.283185307179586);
  int zeros = 0;
  for (int trial = 0; trial < 3000; ++trial) {
    // Four points on a circle far from the origin (rounded onto doubles), or three
    // and the centre of a short chord beside them.
    Point2 p[4];
    for (Point2& q : p) {
      const double t = angle(rng);
      q = {1000.3 + std::cos(t), -700.7 + std::sin(t)};
    }
    if (trial % 3 == 0) {
      p[3] = {0.5 * (p[0].x + p[1].x), 0.5 * (p[0].y + p[1].y)};
    }
    int perm[4] = {0, 1, 2, 3};
    const int s4 = sign(incircle(p[0], p[1], p[2], p[3]));
    const int s3 = sign(orient2d(p[0], p[1], p[3]));
    zeros += s4 == 0 ? 1 : 0;
    int parity = 1;
    do {
      // The parity of the permutation: the number of inversions.
      int inversions = 0;
      for (int u = 0; u < 4; ++u) {
        for (int v = u + 1; v < 4; ++v) {
          inversions += perm[u] > perm[v] ? 1 : 0;
        }
      }
      parity = inversions % 2 == 0 ? 1 : -1;
      ASSERT_EQ(sign(incircle(p[perm[0]], p[perm[1]], p[perm[2]], p[perm[3]])), parity * s4)
          << "trial " << trial;
    } while (std::next_permutation(perm, perm + 4));
    const Point2 q[3] = {p[0], p[1], p[3]};
    ASSERT_EQ(sign(orient2d(q[1], q[0], q[2])), -s3);
    ASSERT_EQ(sign(orient2d(q[2], q[0], q[1])), s3);
  }
  EXPECT_LT(zeros, 3000);
}

using Int = __int128;

// Twice the signed area of a, b, c and the in-circle determinant, exactly, for integer
// coordinates.
Int orient(const Pt& a, const Pt& b, const Pt& c) {
  return static_cast<Int>(b.x - a.x) * static_cast<Int>(c.y - a.y) -
         static_cast<Int>(b.y - a.y) * static_cast<Int>(c.x - a.x);
}

Int in_circle(const Pt& a, const Pt& b, const Pt& c, const Pt& d) {
  const Int ax = static_cast<Int>(a.x - d.x), ay = static_cast<Int>(a.y - d.y);
  const Int bx = static_cast<Int>(b.x - d.x), by = static_cast<Int>(b.y - d.y);
  const Int cx = static_cast<Int>(c.x - d.x), cy = static_cast<Int>(c.y - d.y);
  return (ax * ax + ay * ay) * (bx * cy - by * cx) + (bx * bx + by * by) * (cx * ay - cy * ax) +
         (cx * cx + cy * cy) * (ax * by - ay * bx);
}

// Twice the area of the convex hull.
Int hull_area(std::vector<Pt> p) {
  std::sort(p.begin(), p.end(), [](Pt a, Pt b) { return a.x != b.x ? a.x < b.x : a.y < b.y; });
  std::vector<Pt> h(2 * p.size());
  std::size_t k = 0;
  for (int pass = 0; pass < 2; ++pass) {
    const std::size_t base = k;
    for (const Pt& q : p) {
      while (k >= base + 2 && orient(h[k - 2], h[k - 1], q) <= 0) {
        --k;
      }
      h[k++] = q;
    }
    --k;
    std::reverse(p.begin(), p.end());
  }
  Int area = 0;
  for (std::size_t i = 1; i + 1 < k; ++i) {
    area += orient(h[0], h[i], h[i + 1]);
  }
  return area;
}

// Triangulates p (integer coordinates) and checks the result: counter-clockwise
// triangles of positive area that cover the hull exactly, every distinct point used, no
// point strictly inside a circumcircle; the duplicates counted.
void check_delaunay(const std::vector<Pt>& p, long long duplicates) {
  std::vector<double> x, y;
  for (const Pt& q : p) {
    x.push_back(q.x);
    y.push_back(q.y);
  }
  Triangulation t;
  delaunay(x.data(), y.data(), static_cast<int>(p.size()), t);
  ASSERT_TRUE(t.possible);
  EXPECT_EQ(t.duplicates, duplicates);
  Int area = 0;
  std::set<std::pair<double, double>> used;
  for (std::size_t k = 0; k < t.corners.size(); k += 3) {
    const Pt& a = p[static_cast<std::size_t>(t.corners[k])];
    const Pt& b = p[static_cast<std::size_t>(t.corners[k + 1])];
    const Pt& c = p[static_cast<std::size_t>(t.corners[k + 2])];
    ASSERT_GT(orient(a, b, c), 0) << "triangle " << k / 3;
    area += orient(a, b, c);
    for (const Pt* q : {&a, &b, &c}) {
      used.insert({q->x, q->y});
    }
    for (const Pt& d : p) {
      ASSERT_LE(in_circle(a, b, c, d), 0) << "a point inside triangle " << k / 3 << "'s circle";
    }
  }
  EXPECT_TRUE(area == hull_area(p));
  EXPECT_EQ(used.size(), p.size() - static_cast<std::size_t>(duplicates));
}

TEST(Delaunay, EmptyCirclesOnDegenerateSets) {
  // Catches inexact predicates (grids and circles are full of four points on one
  // circle), cavities that are not star-shaped, points on the hull's edges and lines
  // lost, and duplicates inserted twice.
  std::mt19937 rng(3);
  std::uniform_int_distribution<int> coord(0, 1000);
  std::vector<Pt> random;
  std::set<std::pair<int, int>> seen;
  while (random.size() < 400) {
    const int u = coord(rng), v = coord(rng);
    if (seen.insert({u, v}).second) {
      random.push_back({static_cast<double>(u), static_cast<double>(v)});
    }
  }
  {
    SCOPED_TRACE("random");
    check_delaunay(random, 0);
  }
  std::vector<Pt> grid;
  for (int j = 0; j < 17; ++j) {
    for (int i = 0; i < 23; ++i) {
      grid.push_back({1e6 + 30011.0 * i, -70001.0 * j});
    }
  }
  {
    SCOPED_TRACE("grid");
    check_delaunay(grid, 0);
  }
  // The integer points on radii 25 and 65, and the centre, magnified: the determinants
  // of four points on a circle are then far beyond what a double holds exactly.
  std::vector<Pt> circles = {{1e6, -2e6}};
  for (int i = -65; i <= 65; ++i) {
    for (int j = -65; j <= 65; ++j) {
      if (i * i + j * j == 625 || i * i + j * j == 4225) {
        circles.push_back({1e6 + 10007.0 * i, -2e6 + 10007.0 * j});
      }
    }
  }
  {
    SCOPED_TRACE("cocircular");
    check_delaunay(circles, 0);
  }
  std::vector<Pt> twice = random;
  twice.insert(twice.end(), random.begin(), random.begin() + 50);
  std::shuffle(twice.begin(), twice.end(), rng);
  {
    SCOPED_TRACE("duplicates");
    check_delaunay(twice, 50);
  }
  // Far out and tiny: the same triangles as at unit scale (a power of two changes no
  // predicate, but unscaled products would overflow or underflow).
  std::vector<double> rx, ry;
  for (const Pt& q : random) {
    rx.push_back(q.x);
    ry.push_back(q.y);
  }
  Triangulation unit;
  delaunay(rx.data(), ry.data(), 400, unit);
  for (const double scale : {0x1p900, 0x1p-1000}) {
    std::vector<double> sx, sy;
    for (const Pt& q : random) {
      sx.push_back(q.x * scale);
      sy.push_back(q.y * scale);
    }
    Triangulation t;
    delaunay(sx.data(), sy.data(), 400, t);
    EXPECT_EQ(t.corners, unit.corners) << scale;
  }
  // Points on a line: no triangulation.
  const double lx[5] = {0, 1, 2, 3, 4}, ly[5] = {5, 4, 3, 2, 1};
  Triangulation t;
  delaunay(lx, ly, 5, t);
  EXPECT_FALSE(t.possible);
}

// Labels
// ======

struct LabelPlot : recording::Plot {
  LabelPlot() : Plot("PS  ", true, kCapFill | kCapText) {
    text_defaults(g);
    axes_defaults(g);
    curve_defaults(g);
    api::frame(g, 0);
    api::setgrf(g, "NONE", "NONE", "NONE", "NONE");
    api::axspos(g, 100, 1100);
    api::axslen(g, 1001, 1001);
    api::graf(g, 0, 10, 0, 1, 0, 10, 0, 1);
    api::hwfont(g);
    end_polyline(g);
    rec->points.clear();
  }
  ~LabelPlot() { g.core.level = 0; }
};

// Whether the point lies inside the box, shrunk by `margin`.
bool in_box(const PlacedLabel& b, double x, double y, double margin) {
  const double u = (x - b.x) * b.ux + (y - b.y) * b.uy;
  const double v = -(x - b.x) * b.uy + (y - b.y) * b.ux;
  return std::fabs(u) < b.a - margin && std::fabs(v) < b.b - margin;
}

// Checks the labels placed so far: upright, inside the axis system (100..1100 both
// ways), never over each other, and no line drawn across their text (the box less its
// gap of 15).
void check_labels(recording::Plot& p) {
  const auto& boxes = p.g.contours.placed.boxes;
  ASSERT_EQ(p.rec->texts.size(), boxes.size());
  const auto corner = [](const PlacedLabel& b, double s, double t) {
    return Pt{b.x + s * b.a * b.ux - t * b.b * b.uy, b.y + s * b.a * b.uy + t * b.b * b.ux};
  };
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const PlacedLabel& b = boxes[i];
    EXPECT_GT(b.ux, -1e-12) << "label " << i << " upside down";
    for (const double s : {-1.0, 1.0}) {
      for (const double t : {-1.0, 1.0}) {
        const Pt c = corner(b, s, t);
        EXPECT_TRUE(c.x >= 100 && c.x <= 1100 && c.y >= 100 && c.y <= 1100) << "label " << i;
        for (std::size_t k = 0; k < boxes.size(); ++k) {
          EXPECT_TRUE(k == i || !in_box(boxes[k], c.x, c.y, 1e-9)) << i << " overlaps " << k;
        }
      }
    }
  }
  for (const auto& line : p.polylines()) {
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
      for (int k = 0; k <= 8; ++k) {
        const double px = line[i].x + k / 8.0 * (line[i + 1].x - line[i].x);
        const double py = line[i].y + k / 8.0 * (line[i + 1].y - line[i].y);
        for (const PlacedLabel& b : boxes) {
          ASSERT_FALSE(in_box(b, px, py, 15.0)) << "a line through a label at " << px << ", " << py;
        }
      }
    }
  }
}

TEST(ContourLabels, ClearOfEachOtherAndOfTheLines) {
  // Catches labels placed over each other (within a level and between levels), lines
  // drawn through labels, a label put over another level's line where its own line has
  // room elsewhere, labels outside the axis system or upside down, levels left without a
  // label, and labels kept from the last axis system.
  std::vector<double> x(41), y(41), z(41 * 41);
  for (int i = 0; i <= 40; ++i) {
    x[static_cast<std::size_t>(i)] = y[static_cast<std::size_t>(i)] = 0.25 * i;
  }
  {
    SCOPED_TRACE("rings round a peak");
    LabelPlot p;
    GlobalBlock& g = p.g;
    api::labels(g, "FLOA", "CON");
    api::labdis(g, 300, "CON");
    api::height(g, 30);
    for (std::size_t j = 0; j <= 40; ++j) {
      for (std::size_t i = 0; i <= 40; ++i) {
        const double dx = (x[i] - 5.0) * 0.7, dy = (y[j] - 5.0) * 1.4;
        z[j * 41 + i] = std::exp(-(dx * dx + dy * dy) / 8.0);
      }
    }
    for (int k = 1; k <= 9; ++k) {
      api::contur(g, x.data(), 41, y.data(), 41, z.data(), 0.1 * k);
    }
    check_labels(p);
    std::set<std::string> texts;
    for (const auto& t : p.rec->texts) {
      texts.insert(t.utf8);
    }
    EXPECT_EQ(texts.size(), 9U);  // "0.1" .. "0.9"
    EXPECT_EQ(texts.count("0.5"), 1U);
    // A new axis system starts without the labels of the last one.
    api::endgrf(g);
    api::graf(g, 0, 10, 0, 1, 0, 10, 0, 1);
    const std::size_t before = p.rec->texts.size();
    api::contur(g, x.data(), 41, y.data(), 41, z.data(), 0.5);
    EXPECT_EQ(g.contours.placed.boxes.size(), p.rec->texts.size() - before);
  }
  {
    SCOPED_TRACE("two lines close on the left, far apart on the right");
    LabelPlot p;
    GlobalBlock& g = p.g;
    api::labdis(g, 10000, "CON");  // one label, best near the middle
    api::height(g, 30);
    for (std::size_t j = 0; j <= 40; ++j) {
      for (std::size_t i = 0; i <= 40; ++i) {
        const double t = std::clamp(x[i] - 6.0, 0.0, 1.0);
        z[j * 41 + i] = (y[j] - 3.0) * (10.0 - 9.0 * t * t * (3.0 - 2.0 * t));
      }
    }
    api::contur(g, x.data(), 41, y.data(), 41, z.data(), 1.0);  // y = 3.1, later 4
    api::labels(g, "FLOA", "CON");
    api::contur(g, x.data(), 41, y.data(), 41, z.data(), 2.0);  // y = 3.2, later 5
    check_labels(p);
    ASSERT_EQ(g.contours.placed.boxes.size(), 1U);
    EXPECT_GT(g.contours.placed.boxes[0].x, 700.0);  // where the lines are far apart
  }
}

}  // namespace
}  // namespace zorvel

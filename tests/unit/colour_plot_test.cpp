// Unit tests of shaded contours and colour plots: the bands tile the grid and the
// triangles (holes, saddles, values on the levels, masked cells), the colours of values
// on linear and log scales, and one fill per band with the warnings of bad input.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "api_decl.h"
#include "contour/bands.h"
#include "contour/colour_scale.h"
#include "contour/delaunay.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

struct Rings {
  std::vector<double> x, y;
  std::vector<int> ends;
};

Rings rings_of(std::vector<BandEdge>& edges) {
  Rings r;
  std::vector<std::uint8_t> used;
  join_band_rings(edges, used, r.x, r.y, r.ends);
  return r;
}

// Signed area of ring k (counter-clockwise positive).
double ring_area(const Rings& r, std::size_t k) {
  const std::size_t b = k == 0 ? 0 : static_cast<std::size_t>(r.ends[k - 1]);
  const std::size_t e = static_cast<std::size_t>(r.ends[k]);
  double a = 0.0;
  for (std::size_t i = b; i < e; ++i) {
    const std::size_t j = i + 1 == e ? b : i + 1;
    a += r.x[i] * r.y[j] - r.x[j] * r.y[i];
  }
  return 0.5 * a;
}

double area(const Rings& r) {
  double a = 0.0;
  for (std::size_t k = 0; k < r.ends.size(); ++k) {
    a += ring_area(r, k);
  }
  return a;
}

// The areas of the bands between the levels, from below the first to above the last.
std::vector<double> band_areas(const GridData& grid, const std::vector<double>& lev) {
  std::vector<double> out;
  std::vector<BandEdge> edges;
  std::vector<BandEdge> fast;
  std::vector<float> ranges;
  cell_ranges(grid, ranges);
  for (std::size_t k = 0; k <= lev.size(); ++k) {
    const BandRange b{k == 0 ? -kInf : lev[k - 1], k == lev.size() ? kInf : lev[k], false};
    band_edges_grid(grid, b, lev.data(), static_cast<int>(lev.size()), edges);
    // Passing over the cells by their corner ranges must not lose one.
    band_edges_grid(grid, b, lev.data(), static_cast<int>(lev.size()), fast, &ranges);
    EXPECT_EQ(fast.size(), edges.size());
    out.push_back(area(rings_of(edges)));
  }
  return out;
}

TEST(Bands, TileTheGrid) {
  // Catches pieces lost or counted twice at saddles, at values on a level and between
  // cells (edges that do not cancel exactly), rings not closed, holes running the wrong
  // way, masked cells filled, and a closed top band that drops the values on its level.
  std::vector<double> x{0.0, 0.5, 1.7, 2.0, 3.1, 4.0, 4.2, 5.5};
  std::vector<double> y{0.0, 1.0, 1.5, 2.5, 3.0, 4.5};
  const double full = 5.5 * 4.5;
  std::vector<double> z(x.size() * y.size());
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> pick(0, 4);
  for (int trial = 0; trial < 200; ++trial) {
    for (double& v : z) {
      // Small integers: many saddles and values exactly on the levels.
      v = pick(rng);
    }
    const GridData grid{x.data(), 8, y.data(), 6, z.data()};
    const std::vector<double> lev{0.5, 1.0, 2.0, 2.5, 3.0};
    double sum = 0.0;
    for (const double a : band_areas(grid, lev)) {
      EXPECT_GT(a, -1e-12);
      sum += a;
    }
    ASSERT_NEAR(sum, full, 1e-9) << "trial " << trial;
  }
  {
    SCOPED_TRACE("a ring with a hole round a peak, and a masked node");
    std::vector<double> px{0, 1, 2, 3, 4}, pz(25, 0.0);
    pz[12] = 1.0;  // the centre
    for (const int k : {6, 7, 8, 11, 13, 16, 17, 18}) {
      pz[static_cast<std::size_t>(k)] = 0.5;
    }
    const GridData grid{px.data(), 5, px.data(), 5, pz.data()};
    std::vector<BandEdge> edges;
    const double two[] = {0.25, 0.75};
    band_edges_grid(grid, {0.25, 0.75, false}, two, 2, edges);
    const Rings r = rings_of(edges);
    ASSERT_EQ(r.ends.size(), 2U);
    const double a0 = ring_area(r, 0), a1 = ring_area(r, 1);
    EXPECT_LT(a0 * a1, 0.0);  // the hole runs the other way round
    // Outer ring: the square |x-2|, |y-2| < 1.5 less four corners of 1/8; the hole: the
    // diamond |x-2|+|y-2| < 0.5.
    EXPECT_NEAR(a0 + a1, 9.0 - 0.5 - 0.5, 1e-12);
    // The top band closed at its level holds the peak's point; all bands tile.
    const double top[] = {0.75, 1.0};
    band_edges_grid(grid, {0.75, 1.0, true}, top, 2, edges);
    EXPECT_NEAR(area(rings_of(edges)), 0.5, 1e-12);
    pz[0] = std::nan("");
    const std::vector<double> lev{0.25, 0.75};
    double sum = 0.0;
    for (const double a : band_areas(grid, lev)) {
      sum += a;
    }
    EXPECT_NEAR(sum, 16.0 - 1.0, 1e-12);  // one cell masked
  }
}

TEST(Bands, TileTheTriangles) {
  // Catches triangles of either orientation not cancelling their shared sides, and
  // pieces lost between the levels.
  std::mt19937 rng(3);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  std::vector<double> x(60), y(60), z(60);
  for (std::size_t i = 0; i < 60; ++i) {
    x[i] = u(rng);
    y[i] = u(rng);
    z[i] = std::sin(6.0 * x[i]) * std::cos(5.0 * y[i]);
  }
  Triangulation t;
  delaunay(x.data(), y.data(), 60, t);
  const int nt = static_cast<int>(t.corners.size() / 3);
  std::vector<int> i1, i2, i3;
  double hull = 0.0;
  for (int k = 0; k < nt; ++k) {
    const int a = t.corners[3 * k] + 1, b = t.corners[3 * k + 1] + 1, c = t.corners[3 * k + 2] + 1;
    // Every other triangle turned round.
    i1.push_back(a);
    i2.push_back(k % 2 == 0 ? b : c);
    i3.push_back(k % 2 == 0 ? c : b);
    hull += 0.5 * std::fabs((x[b - 1] - x[a - 1]) * (y[c - 1] - y[a - 1]) -
                            (x[c - 1] - x[a - 1]) * (y[b - 1] - y[a - 1]));
  }
  const MeshData mesh{x.data(), y.data(), z.data(), 60, i1.data(), i2.data(), i3.data(), nt};
  std::vector<BandEdge> edges;
  double sum = 0.0;
  const double lev[] = {-kInf, -0.5, 0.0, 0.3, kInf};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(band_edges_mesh(mesh, {lev[k], lev[k + 1], false}, edges), 0);
    sum += area(rings_of(edges));
  }
  EXPECT_NEAR(sum, hull, 1e-12);
}

TEST(ColourScale, LinearLogAndBeyond) {
  // Catches the colour range not spread over the scaling, log scales taken linearly,
  // values beyond the scaling drawn under colopt "OUTS" "NONE", and band colours taken
  // at the arithmetic middle on a log scale.
  recording::Plot p;
  GlobalBlock& g = p.g;
  AxisScale& s = g.axes.scale[2];
  s.a = 0.0;
  s.e = 10.0;
  EXPECT_EQ(z_colour(g, 0.0), 1);
  EXPECT_EQ(z_colour(g, 10.0), 254);
  EXPECT_EQ(z_colour(g, 5.0), 128);  // 127.5 rounded away
  EXPECT_EQ(z_colour(g, -3.0), 1);
  EXPECT_EQ(z_colour(g, std::nan("")), -1);
  api::colopt(g, "NONE", "OUTS");
  EXPECT_EQ(z_colour(g, -3.0), -1);
  EXPECT_EQ(z_colour(g, 10.0), 254);
  api::colopt(g, "CLIP", "OUTS");
  api::colran(g, 10, 20);
  EXPECT_EQ(z_colour(g, 2.5), 13);  // 12.5 rounded away
  EXPECT_EQ(band_colour(g, -kInf, 0.0), 10);
  EXPECT_EQ(band_colour(g, 10.0, kInf), 20);
  g.axes.log[2] = true;
  s.a = -1.0;  // 0.1 .. 1000
  s.e = 3.0;
  EXPECT_EQ(z_colour(g, 1.0), 13);
  EXPECT_EQ(z_colour(g, 100.0), 18);
  EXPECT_EQ(z_colour(g, 0.0), -1);
  EXPECT_EQ(band_colour(g, 1.0, 100.0), 15);  // at 10, not at 50.5
}

TEST(ConShd, OneFillPerBandAndBadInput) {
  // Catches bands split into many fills (seams in viewers), unsorted levels taken as
  // given or silently, and grids that are not checked.
  recording::Plot p;
  GlobalBlock& g = p.g;
  api::graf3(g, 0, 3, 0, 1, 0, 3, 0, 1, 0, 4, 0, 1);
  const std::size_t bar = p.rec->fills.size() + p.rec->images.size();
  EXPECT_GE(bar, 1U);  // the colour bar
  p.rec->fills.clear();
  std::vector<double> x{0, 1, 2, 3}, z(16);
  for (std::size_t k = 0; k < 16; ++k) {
    z[k] = static_cast<double>((k * 7) % 5);
  }
  const double lev[] = {3.0, 1.0, 2.0};
  api::conshd(g, x.data(), 4, x.data(), 4, z.data(), lev, 3);
  EXPECT_NE(p.text().find("272"), std::string::npos);
  EXPECT_EQ(p.rec->fills.size(), 2U);  // 1..2 and 2..3
  api::conopt(g, "BOTH", "EXTE");
  p.rec->fills.clear();
  const double sorted[] = {1.0, 2.0, 3.0};
  api::conshd(g, x.data(), 4, x.data(), 4, z.data(), sorted, 3);
  EXPECT_EQ(p.rec->fills.size(), 4U);
  const double bad_x[] = {0, 2, 1, 3};
  api::conshd(g, bad_x, 4, x.data(), 4, z.data(), sorted, 3);
  EXPECT_NE(p.text().find("271"), std::string::npos);
  api::colmat(g, x.data(), 1, x.data(), 4, z.data());
  EXPECT_NE(p.text().find(" 30"), std::string::npos);
}

}  // namespace
}  // namespace zorvel

namespace zorvel {
namespace {

TEST(ColTri, AntiAliasedTrianglesLeaveNoSeams) {
  // Catches mesh pieces filled with anti-aliased edges on a raster page: two triangles of
  // one colour that share the square's diagonal must colour every pixel along it fully,
  // with no trace of the white paper between them.
  Captured c;
  GlobalBlock& g = c.g;
  api::metafl(g, "VIRT");
  api::imgsiz(g, 200, 200);
  api::scrmod(g, "REVERS");
  api::zorini(g);
  api::imgopt(g, "ON", "ANTI");
  api::axspos(g, 400, 1600);
  api::axslen(g, 1200, 1200);
  api::graf(g, 0.0, 1.0, 0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  api::setvlt(g, "GREY");
  api::colran(g, 100, 100);
  const double x[4] = {0.0, 1.0, 1.0, 0.0};
  const double y[4] = {0.0, 0.0, 1.0, 1.0};
  const double z[4] = {0.5, 0.5, 0.5, 0.5};
  const int i1[2] = {1, 1};
  const int i2[2] = {2, 3};
  const int i3[2] = {3, 4};
  api::setscl(g, z, 4, "Z");
  api::coltri(g, x, y, z, 4, i1, i2, i3, 2);
  // The page's 2970 x 2100 plot units fit the 200-pixel image at 200 / 2970 pixels per
  // unit: the square's centre (1000, 1000) is at pixel (67, 67), and the diagonal crosses
  // the box around it.
  api::imgini(g);
  int inside = -1;
  int off = 0;
  for (int j = 57; j <= 77; ++j) {
    for (int i = 57; i <= 77; ++i) {
      int v = 0;
      api::rpixel(g, i, j, &v);
      inside = inside < 0 ? v : inside;
      off += v != inside ? 1 : 0;
    }
  }
  api::imgfin(g);
  EXPECT_GT(inside, 0) << c.text();
  EXPECT_EQ(off, 0);
  api::zorfin(g);
}

}  // namespace
}  // namespace zorvel

// Unit tests of map axis systems: equal-area maps keeping the land's area, lines and
// polygons cut at the cut meridian, the half-unit bound of densified lines, the labels
// and the warnings. The projections themselves are checked against PROJ by
// tests/maps/reference.py.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "api_decl.h"
#include "maps/map_data.h"
#include "maps/maps.h"
#include "tests/unit/recording_driver.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDeg = kPi / 180.0;

// A map in the square (200, 200) .. (1800, 1800) of a 2000 x 2000 page.
struct MapPlot : recording::Plot {
  MapPlot() : Plot("PS  ", true, kCapFill | kCapText) {
    text_defaults(g);
    axes_defaults(g);
    api::axspos(g, 200, 1800);
    api::axslen(g, 1601, 1601);
    g.curves.scale_check = false;
  }
  ~MapPlot() { g.core.level = 0; }
  void world(const char* proj) {
    api::projct(g, proj);
    api::grafmp(g, -180, 180, -180, 60, -90, 90, -90, 30);
    rec->points.clear();
    rec->fills.clear();
    rec->texts.clear();
  }
};

// The area of a lon/lat ring on the unit sphere, its edges rhumb lines as the maps draw
// them: the integral of -sin(lat) d(lon) round the ring (Green's theorem in the lon/lat
// plane), taken numerically along each edge.
double sphere_area(const std::int32_t* pts, int n) {
  double a = 0.0;
  auto iso = [](double lat) { return std::log(std::tan(0.25 * kPi + 0.5 * lat * kDeg)); };
  for (int i = 0; i + 1 < n; ++i) {
    const double l0 = pts[2 * i] * kBuiltinUnit, p0 = pts[2 * i + 1] * kBuiltinUnit;
    const double l1 = pts[2 * i + 2] * kBuiltinUnit, p1 = pts[2 * i + 3] * kBuiltinUnit;
    if (l0 == l1) {
      continue;
    }
    const bool rhumb = std::fabs(p0) < 89.9999 && std::fabs(p1) < 89.9999 && p0 != p1;
    const int steps = 64;
    for (int k = 0; k < steps; ++k) {
      const double t = (k + 0.5) / steps;
      const double lat =
          rhumb ? (2.0 * std::atan(std::exp(iso(p0) + t * (iso(p1) - iso(p0)))) / kDeg - 90.0)
                : p0 + t * (p1 - p0);
      a += -std::sin(lat * kDeg) * (l1 - l0) * kDeg / steps;
    }
  }
  return std::fabs(a);
}

// The area filled: each contour's shoelace area (the land's contours do not overlap).
double filled_area(const std::vector<recording::Filled>& fills) {
  double total = 0.0;
  for (const recording::Filled& f : fills) {
    std::size_t from = 0;
    for (const int to : f.ends) {
      double a = 0.0;
      for (std::size_t i = from, j = static_cast<std::size_t>(to) - 1;
           i < static_cast<std::size_t>(to); j = i++) {
        a += f.xs[j] * f.ys[i] - f.xs[i] * f.ys[j];
      }
      total += std::fabs(0.5 * a);
      from = static_cast<std::size_t>(to);
    }
  }
  return total;
}

TEST(Map, EqualAreaMapsKeepTheLandsArea) {
  // Catches: polygons closed the wrong way round along the outline (the sea filled for
  // the land), rings across the cut meridian or round the South Pole losing or doubling
  // a piece, a wrong scale, and any equal-area formula that is not.
  double land = 0.0;
  for (int i = 0; i < kBuiltinCoast.count; ++i) {
    const BuiltinRecord& r = kBuiltinCoast.records[i];
    if (r.level == 1) {
      land += sphere_area(kBuiltinCoast.points + 2 * r.first, r.count);
    }
  }
  ASSERT_GT(land, 1.0);  // about 1.83 of the sphere's 4 pi
  for (const char* proj : {"CEQA", "ALBE", "AZEA", "MOLL", "HAMM", "SINU", "ECK4", "EQEA"}) {
    SCOPED_TRACE(proj);
    MapPlot p;
    GlobalBlock& g = p.g;
    api::projct(g, proj);
    api::mappar(g, 20, 60);
    if (std::string(proj) == "AZEA") {
      api::mapctr(g, 20, 10);
      api::maprad(g, 179.9);
    }
    api::grafmp(g, -180, 180, -180, 60, -90, 90, -90, 30);
    ASSERT_EQ(g.core.level, 2);
    p.rec->fills.clear();
    api::mapshd(g, 3, -1);
    const double s = g.maps.scale;
    EXPECT_NEAR(filled_area(p.rec->fills) / (s * s) / land, 1.0, 0.005);
    api::endgrf(g);
    EXPECT_EQ(p.text(), "");
  }
}

TEST(Map, LinesAndPolygonsAreCutAtTheCutMeridian) {
  // Catches: a line drawn across the whole map where it passes 180 degrees, great circles
  // taking the long way round, pieces that stop short of the outline, and a polygon
  // across the cut closed by a chord instead of along the map's edges.
  MapPlot p;
  GlobalBlock& g = p.g;
  p.world("CYLI");
  const double left = g.maps.off_x - kPi * g.maps.scale, right = g.maps.off_x + kPi * g.maps.scale;
  auto check_cut = [&](const char* what) {
    SCOPED_TRACE(what);
    const auto lines = p.polylines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_NEAR(lines[0].back().x, right, 1e-6);
    EXPECT_NEAR(lines[1].front().x, left, 1e-6);
    EXPECT_NEAR(lines[0].back().y, lines[1].front().y, 1e-6);
    for (const auto& line : lines) {
      for (std::size_t i = 1; i < line.size(); ++i) {
        EXPECT_LT(std::fabs(line[i].x - line[i - 1].x), 0.1 * (right - left));
      }
    }
    p.rec->points.clear();
  };
  const double lon[2] = {170.0, 190.0}, lat[2] = {10.0, 20.0};
  api::curve(g, lon, lat, 2);
  check_cut("curve with continuous longitudes");
  api::mapopt(g, "GREA", "LINE");
  api::rlstrt(g, 170.0, 10.0);
  api::rlconn(g, -170.0, 20.0);
  check_cut("great circle across 180");
  // A box across the cut: two pieces, each closed along its edge of the map.
  api::mapopt(g, "RHUM", "LINE");
  const double bx[4] = {170.0, 190.0, 190.0, 170.0}, by[4] = {0.0, 0.0, 10.0, 10.0};
  api::rlarea(g, bx, by, 4);
  ASSERT_EQ(p.rec->fills.size(), 1U);
  const recording::Filled& f = p.rec->fills[0];
  ASSERT_EQ(f.ends.size(), 2U);
  const double w = 10.0 * kDeg * g.maps.scale, h = 10.0 * kDeg * g.maps.scale;
  EXPECT_NEAR(filled_area(p.rec->fills), 2.0 * w * h, 1e-6 * w * h);
  for (std::size_t i = 0; i < f.xs.size(); ++i) {
    EXPECT_TRUE(f.xs[i] >= right - w - 1e-6 || f.xs[i] <= left + w + 1e-6) << f.xs[i];
  }
  api::endgrf(g);
  EXPECT_EQ(p.text(), "");
}

TEST(Map, DensifiedLinesStayWithinHalfAUnit) {
  // Catches: lines drawn as chords between the given points, a densification that stops
  // early (a midpoint test fooled by a long first step), and curves that leave the map's
  // outline (clipping on the globe against a cap).
  // Small maps, on which the first steps of 2 degrees are hundreds of plot units long.
  for (const char* proj : {"ORTH", "LAMB", "ROBI"}) {
    SCOPED_TRACE(proj);
    MapPlot p;
    GlobalBlock& g = p.g;
    api::projct(g, proj);
    api::mapctr(g, 0, 45);
    api::maprad(g, 12);
    api::mapopt(g, "GREA", "LINE");
    api::grafmp(g, -12, 12, -10, 5, 36, 54, 40, 5);
    p.rec->points.clear();
    // Across the map and beyond it on both sides.
    const double a[2] = {-25.0, 38.0}, b[2] = {25.0, 52.0};
    api::rlstrt(g, a[0], a[1]);
    api::rlconn(g, b[0], b[1]);
    const auto lines = p.polylines();
    ASSERT_FALSE(lines.empty());
    // The true great circle, finely sampled, against the drawn chords.
    double va[3], vb[3];
    for (int k = 0; k < 2; ++k) {
      const double* q = k == 0 ? a : b;
      double* v = k == 0 ? va : vb;
      v[0] = std::cos(q[1] * kDeg) * std::cos(q[0] * kDeg);
      v[1] = std::cos(q[1] * kDeg) * std::sin(q[0] * kDeg);
      v[2] = std::sin(q[1] * kDeg);
    }
    const double om = std::acos(va[0] * vb[0] + va[1] * vb[1] + va[2] * vb[2]);
    int placed = 0;
    double worst = 0.0;
    for (int k = 0; k <= 4000; ++k) {
      const double t = k / 4000.0;
      const double sa = std::sin((1 - t) * om) / std::sin(om), sb = std::sin(t * om) / std::sin(om);
      const double x = sa * va[0] + sb * vb[0], y = sa * va[1] + sb * vb[1],
                   z = sa * va[2] + sb * vb[2];
      double px = 0.0, py = 0.0;
      api::mappos(g, std::atan2(y, x) / kDeg, std::atan2(z, std::hypot(x, y)) / kDeg, &px, &py);
      if (std::isnan(px)) {
        continue;
      }
      ++placed;
      double best = HUGE_VAL;
      for (const auto& line : lines) {
        for (std::size_t i = 1; i < line.size(); ++i) {
          const double dx = line[i].x - line[i - 1].x, dy = line[i].y - line[i - 1].y;
          const double len2 = dx * dx + dy * dy;
          const double u =
              len2 > 0 ? std::clamp(((px - line[i - 1].x) * dx + (py - line[i - 1].y) * dy) / len2,
                                    0.0, 1.0)
                       : 0.0;
          best =
              std::min(best, std::hypot(px - line[i - 1].x - u * dx, py - line[i - 1].y - u * dy));
        }
      }
      worst = std::max(worst, best);
    }
    EXPECT_GT(placed, 500);
    EXPECT_LE(worst, 0.5);
    // Every drawn point lies on the map.
    for (const auto& line : lines) {
      for (const auto& pt : line) {
        double lon = 0.0, lat = 0.0;
        api::mapinv(g, pt.x, pt.y, &lon, &lat);
        EXPECT_FALSE(std::isnan(lon)) << pt.x << " " << pt.y;
      }
    }
    api::endgrf(g);
    EXPECT_EQ(p.text(), "");
  }
}

TEST(Map, LabelsPositionsAndWarnings) {
  // Catches: labels of the plain number type on a map, a longitude missing at one end of
  // a map round the globe, mappos/mapinv not inverse to each other, the map routines
  // working outside a map and the axis routines working inside one, Mercator running to
  // its poles, invalid parallels accepted, points beyond the poles drawn, and settings
  // made in one plot leaking into the next.
  MapPlot p;
  GlobalBlock& g = p.g;
  api::hwfont(g);
  double x = 0.0, y = 0.0;
  g.core.level = 2;
  api::mappos(g, 0.0, 0.0, &x, &y);  // 285: no map axis system
  EXPECT_TRUE(std::isnan(x));
  api::gridmp(g, 1, 1);  // 285
  g.core.level = 1;
  api::grafmp(g, 10, 10, 10, 5, 0, 10, 0, 5);  // 10: equal limits
  EXPECT_EQ(g.core.level, 1);
  api::mappar(g, 30, -30);  // 284
  api::projct(g, "MERC");
  api::labels(g, "DMAP", "Y");
  api::grafmp(g, -180, 180, -180, 90, -90, 90, -90, 30);  // 283: cut to 85.0511
  ASSERT_EQ(g.core.level, 2);
  EXPECT_NEAR(g.maps.north, 85.0511287798066, 1e-9);
  std::string texts;
  for (const auto& t : p.rec->texts) {
    texts += t.utf8 + "|";
  }
  // FLOA longitudes become MAP labels, both ends of the globe labelled; DMAP latitudes
  // keep their sign; the poles are not labelled.
  for (const char* want : {"180", "90", "0", "-60", "30"}) {
    EXPECT_NE(texts.find(std::string("|") + want), std::string::npos) << want << " in " << texts;
  }
  EXPECT_EQ(std::count(texts.begin(), texts.end(), 'E'), 2) << texts;
  EXPECT_EQ(std::count(texts.begin(), texts.end(), 'W'), 2) << texts;
  for (const double lon : {-179.0, -30.5, 0.0, 123.25}) {
    for (const double lat : {-80.0, 0.0, 45.5, 85.0}) {
      double lo = 0.0, la = 0.0;
      api::mappos(g, lon, lat, &x, &y);
      api::mapinv(g, x, y, &lo, &la);
      EXPECT_NEAR(lo, lon, 1e-9);
      EXPECT_NEAR(la, lat, 1e-9);
    }
  }
  api::mappos(g, 0.0, 89.0, &x, &y);  // beyond the cut-off: not on the map
  EXPECT_TRUE(std::isnan(x));
  EXPECT_EQ(api::xposn(g, 10.0), 0.0);  // 286
  p.rec->points.clear();
  const double lon[4] = {0.0, 10.0, NAN, 20.0}, lat[4] = {95.0, 10.0, 5.0, 20.0};
  const int nans = g.core.nans;
  api::curve(g, lon, lat, 4);  // 287 for the first; the NaN counted
  EXPECT_EQ(g.core.nans, nans + 1);
  EXPECT_TRUE(p.polylines().empty());  // no two good neighbours
  api::endgrf(g);
  const std::string w = p.text();
  for (const char* n : {"285", "10", "284", "283", "286", "287"}) {
    EXPECT_NE(w.find(std::string("Warning ") + n + ":"), std::string::npos) << n << "\n" << w;
  }
  // A new plot starts from the default projection.
  map_defaults(g);
  EXPECT_EQ(g.maps.kind, ProjKind::Cyli);
  EXPECT_FALSE(g.maps.parallels_set);
}

}  // namespace
}  // namespace zorvel

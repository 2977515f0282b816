// Lines and polygons on a map: where a geographic point lies, lines walked between
// points (densified, cut at the outline and the cut meridian) and polygons closed along
// the outline.
//
// The map's outline is the image of a region on the globe: the lon/lat box of grafmp or
// a cap about the centre. Everything is clipped on the globe against that region, which
// on the map is clipping against the outline, whatever shape the projection gives it:
//
//        globe (longitude, latitude)                 map
//     sheet -1 |    box (sheet 0)    | sheet 1      ______________
//     .........+---------------------+.......     /              \     a line leaving
//          \   |                  .--|--.        |  box  --.   .--|    the box on the
//           \  |                 /   |   \   ->  |         \ /    |    right comes back
//            \ |                     |           |          '     |    on the left: its
//     .........+---------------------+.......     \______________/     pieces are cut at
//                                                                      both edges
// Longitudes are continuous along a line; the box repeats every 360 degrees ("sheets"),
// so a line that crosses the cut meridian passes from one sheet into the next and is cut
// at both edges. A polygon's pieces inside the region are joined by walking along the
// outline anticlockwise from each exit to the next entry (the polygon made anticlockwise
// first), which closes polygons along the cut meridian and around the poles.

#include "maps/map_draw.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <numbers>

#include "axes/axes.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;
// A line is first cut into steps of at most this many degrees, then halved until the
// middle of every step lies within kChordTolerance of its chord.
constexpr double kFirstStep = 2.0;
constexpr double kChordTolerance = 0.5;  // plot units
constexpr int kMaxDepth = 24;
// Longest segment between two points that is drawn, degrees.
constexpr double kLongestStep = 1080.0;
constexpr long kOut = LONG_MIN;
// Tolerance of the region tests, degrees.
constexpr double kEdge = 1e-9;

// Which sheet of the box a point lies in (kOut outside), and its longitude from the
// central meridian within that sheet.
long sheet_of(const MapState& m, double lon, double lat, double& lam) {
  if (m.region == MapRegion::Cap) {
    lam = std::remainder(lon - m.lon0, 360.0);
    const double p = lat * kDeg, c = m.cap_lat * kDeg;
    const double s1 = std::sin(0.5 * (p - c)), s2 = std::sin(0.5 * lam * kDeg);
    const double hav = s1 * s1 + std::cos(p) * std::cos(c) * s2 * s2;
    const double dist = 2.0 * std::asin(std::sqrt(std::clamp(hav, 0.0, 1.0))) / kDeg;
    return dist <= m.cap_radius + kEdge ? 0 : kOut;
  }
  const double raw = lon - m.lon0;
  if (!(std::fabs(raw) < 1e9)) {
    return kOut;  // no longitude of a map: its turns would not fit the sheet number
  }
  const double k = std::floor((raw - m.lam_min + kEdge) / 360.0);
  lam = raw - 360.0 * k;
  if (lam > m.lam_max + kEdge || lat < m.south - kEdge || lat > m.north + kEdge) {
    return kOut;
  }
  lam = std::min(lam, m.lam_max);
  return static_cast<long>(k);
}

// The point of the box's edge between a point inside (sheet k, lam, lat) and the point
// just outside it (olon, olat): its coordinate that crossed is set to the edge exactly.
void snap_to_edge(const MapState& m, long k, double& lam, double& lat, double olon, double olat) {
  if (m.region != MapRegion::Box) {
    return;
  }
  if (olat > m.north) {
    lat = m.north;
    return;
  }
  if (olat < m.south) {
    lat = m.south;
    return;
  }
  const double olam = olon - m.lon0 - 360.0 * static_cast<double>(k);
  lam = olam > m.lam_max ? m.lam_max : (olam < m.lam_min ? m.lam_min : lam);
}

void unit_vector(double lon, double lat, double v[3]) {
  const double p = lat * kDeg, l = lon * kDeg;
  v[0] = std::cos(p) * std::cos(l);
  v[1] = std::cos(p) * std::sin(l);
  v[2] = std::sin(p);
}

// Isometric latitude, for rhumb lines.
double isometric(double lat) { return std::log(std::tan(0.25 * kPi + 0.5 * lat * kDeg)); }
double from_isometric(double psi) { return (2.0 * std::atan(std::exp(psi)) - 0.5 * kPi) / kDeg; }

}  // namespace

bool lam_to_page(const MapState& m, double lam, double lat, double& px, double& py) {
  double x = 0.0, y = 0.0;
  if (!project(m.proj, lam * kDeg, std::clamp(lat, -90.0, 90.0) * kDeg, x, y)) {
    return false;
  }
  px = m.off_x + m.scale * x;
  py = m.off_y - m.scale * y;
  return std::isfinite(px) && std::isfinite(py);
}

bool map_to_page(const GlobalBlock& g, double lon, double lat, double& px, double& py) {
  const MapState& m = g.maps;
  if (!std::isfinite(lon) || !std::isfinite(lat) || std::fabs(lat) > 90.0) {
    return false;
  }
  double lam = 0.0;
  if (sheet_of(m, lon, lat, lam) == kOut) {
    return false;
  }
  return lam_to_page(m, lam, lat, px, py);
}

double outline_length(const MapState& m) {
  if (m.region == MapRegion::Cap) {
    return 2.0 * kPi;
  }
  return 2.0 * ((m.lam_max - m.lam_min) + (m.north - m.south));
}

double outline_place(const MapState& m, double lam, double lat, double px, double py) {
  if (m.region == MapRegion::Cap) {
    const double a = std::atan2(m.off_y - py, px - m.off_x);
    return a < 0.0 ? a + 2.0 * kPi : a;
  }
  const double w = m.lam_max - m.lam_min, h = m.north - m.south;
  const double tol = 1e-7;
  if (std::fabs(lat - m.south) < tol && lam < m.lam_max - tol) {
    return lam - m.lam_min;
  }
  if (std::fabs(lam - m.lam_max) < tol && lat < m.north - tol) {
    return w + (lat - m.south);
  }
  if (std::fabs(lat - m.north) < tol && lam > m.lam_min + tol) {
    return w + h + (m.lam_max - lam);
  }
  return 2.0 * w + h + (m.north - std::min(lat, m.north));
}

namespace {

// The box's perimeter point at place s.
void box_point(const MapState& m, double s, double& lam, double& lat) {
  const double w = m.lam_max - m.lam_min, h = m.north - m.south;
  s = std::fmod(s, 2.0 * (w + h));
  if (s < 0.0) {
    s += 2.0 * (w + h);
  }
  if (s <= w) {
    lam = m.lam_min + s;
    lat = m.south;
  } else if (s <= w + h) {
    lam = m.lam_max;
    lat = m.south + (s - w);
  } else if (s <= 2.0 * w + h) {
    lam = m.lam_max - (s - w - h);
    lat = m.north;
  } else {
    lam = m.lam_min;
    lat = m.north - (s - 2.0 * w - h);
  }
}

}  // namespace

void append_outline(const MapState& m, double s0, double s1, std::vector<double>& xs,
                    std::vector<double>& ys) {
  const double len = outline_length(m);
  double sweep = std::fmod(s1 - s0, len);
  if (sweep < 0.0) {
    sweep += len;
  }
  if (m.region == MapRegion::Cap) {
    const double r = m.cap_map_radius * m.scale;
    const int n = arc_segments(r, sweep);
    for (int k = 1; k <= n; ++k) {
      const double a = s0 + sweep * k / n;
      xs.push_back(m.off_x + r * std::cos(a));
      ys.push_back(m.off_y - r * std::sin(a));
    }
    return;
  }
  // Along the box's edges, through its corners, in steps that keep curved edges (the
  // parallels of conics, the meridians of pseudo-cylindrical maps) within tolerance.
  const double w = m.lam_max - m.lam_min, h = m.north - m.south;
  const double corners[4] = {w, w + h, 2.0 * w + h, 2.0 * (w + h)};
  double s = s0;
  const double end = s0 + sweep;
  double lx = 0.0, ly = 0.0;
  bool have = false;
  while (s < end - 1e-12) {
    // The next corner after s (places taken round the perimeter).
    const double base = std::floor(s / len) * len;
    double next = end;
    for (const double c : corners) {
      if (base + c > s + 1e-12) {
        next = std::min(next, base + c);
        break;
      }
    }
    const int n = std::max(1, static_cast<int>(std::ceil((next - s) / 0.5)));
    for (int k = 1; k <= n; ++k) {
      double lam = 0.0, lat = 0.0, px = 0.0, py = 0.0;
      box_point(m, s + (next - s) * k / n, lam, lat);
      if (lam_to_page(m, lam, lat, px, py) && (!have || px != lx || py != ly)) {
        xs.push_back(px);
        ys.push_back(py);
        lx = px;
        ly = py;
        have = true;
      }
    }
    s = next;
  }
}

// Line pen
// ========

struct MapPen::Node {
  double t = 0.0;
  double lon = 0.0, lat = 0.0;
  double lam = 0.0;
  long sheet = kOut;
  double x = 0.0, y = 0.0;
  bool ok = false;  // projected
};

MapPen::MapPen(const GlobalBlock& g, PathSink& sink)
    : m_(g.maps), sink_(sink), great_(g.maps.great_circles) {}

bool MapPen::valid(double lon, double lat) {
  if (!std::isfinite(lon) || !std::isfinite(lat)) {
    ++nans;
    return false;
  }
  if (std::fabs(lat) > 90.0) {
    ++beyond;
    return false;
  }
  return true;
}

void MapPen::move(double lon, double lat) {
  finish();
  have_ = false;
  if (!valid(lon, lat)) {
    return;
  }
  lon_ = lon;
  lat_ = lat;
  have_ = true;
  double lam = 0.0, x = 0.0, y = 0.0;
  if (sheet_of(m_, lon, lat, lam) != kOut && lam_to_page(m_, lam, lat, x, y)) {
    sink_.start(x, y, false, 0.0);
    down_ = true;
  }
}

void MapPen::draw(double lon, double lat) {
  if (!have_) {
    move(lon, lat);
    return;
  }
  if (!valid(lon, lat)) {
    finish();
    have_ = false;
    return;
  }
  walk(lon, lat);
  lon_ = lon;
  lat_ = lat;
}

void MapPen::finish() {
  if (down_) {
    sink_.stop(false, 0.0);
    down_ = false;
  }
}

void MapPen::eval(double t, double& lon, double& lat) const {
  if (t <= 0.0) {
    lon = alon_;
    lat = alat_;
    return;
  }
  if (t >= 1.0) {
    // A great circle arrives at the end's longitude taken continuously from the start.
    lon = great_ ? alon_ + std::remainder(blon_ - alon_, 360.0) : blon_;
    lat = blat_;
    return;
  }
  if (great_ && omega_ > 1e-12) {
    const double sa = std::sin((1.0 - t) * omega_), sb = std::sin(t * omega_);
    const double so = std::sin(omega_);
    double v[3];
    for (int i = 0; i < 3; ++i) {
      v[i] = (sa * va_[i] + sb * vb_[i]) / so;
    }
    lat = std::atan2(v[2], std::hypot(v[0], v[1])) / kDeg;
    // Continuous from the start: a great circle turns less than half a turn.
    lon = alon_ + std::remainder(std::atan2(v[1], v[0]) / kDeg - alon_, 360.0);
    return;
  }
  lon = alon_ + t * (blon_ - alon_);
  if (alat_ == blat_) {
    lat = alat_;
  } else if (std::fabs(alat_) < 89.9999 && std::fabs(blat_) < 89.9999 && blon_ != alon_) {
    // A rhumb line: straight in longitude and isometric latitude.
    const double pa = isometric(alat_), pb = isometric(blat_);
    lat = from_isometric(pa + t * (pb - pa));
  } else {
    lat = alat_ + t * (blat_ - alat_);
  }
}

void MapPen::densify(const Node& a, const Node& b, int depth) {
  if (!a.ok && !b.ok) {
    // Nothing the projection can place at either end: a break, without halving further
    // (which could only find more of the same).
    if (down_) {
      sink_.stop(false, 0.0);
      down_ = false;
    }
    return;
  }
  Node mid;
  mid.t = 0.5 * (a.t + b.t);
  mid.sheet = a.sheet;
  eval(mid.t, mid.lon, mid.lat);
  // The middle is taken in the sheet of the step's ends (it cannot leave it: the caller
  // cut the step at the outline).
  mid.lam = mid.lon - m_.lon0 - 360.0 * static_cast<double>(a.sheet);
  if (m_.region == MapRegion::Cap) {
    mid.lam = std::remainder(mid.lon - m_.lon0, 360.0);
  }
  mid.ok = lam_to_page(m_, mid.lam, mid.lat, mid.x, mid.y);
  if (depth < kMaxDepth && mid.ok && a.ok && b.ok) {
    const double dx = mid.x - 0.5 * (a.x + b.x), dy = mid.y - 0.5 * (a.y + b.y);
    if (dx * dx + dy * dy > kChordTolerance * kChordTolerance) {
      densify(a, mid, depth + 1);
      densify(mid, b, depth + 1);
      return;
    }
  } else if (depth < kMaxDepth && (!a.ok || !mid.ok || !b.ok)) {
    // Narrow down where the line breaks: one half has a good end, so this stays linear.
    densify(a, mid, depth + 1);
    densify(mid, b, depth + 1);
    return;
  }
  if (b.ok) {
    if (down_) {
      sink_.point(b.x, b.y);
    } else {
      sink_.start(b.x, b.y, false, 0.0);
      down_ = true;
    }
  } else if (down_) {
    sink_.stop(false, 0.0);  // a point the projection cannot place breaks the line
    down_ = false;
  }
}

void MapPen::walk(double lon, double lat) {
  alon_ = lon_;
  alat_ = lat_;
  blon_ = lon;
  blat_ = lat;
  double extent = std::max(std::fabs(blon_ - alon_), std::fabs(blat_ - alat_));
  if (great_) {
    unit_vector(alon_, alat_, va_);
    unit_vector(blon_, blat_, vb_);
    const double dot = va_[0] * vb_[0] + va_[1] * vb_[1] + va_[2] * vb_[2];
    const double cx = va_[1] * vb_[2] - va_[2] * vb_[1];
    const double cy = va_[2] * vb_[0] - va_[0] * vb_[2];
    const double cz = va_[0] * vb_[1] - va_[1] * vb_[0];
    omega_ = std::atan2(std::sqrt(cx * cx + cy * cy + cz * cz), dot);
    extent = omega_ / kDeg;
  }
  if (!(extent <= kLongestStep)) {
    // Round the globe more than a few times: no line of a map; a gap instead.
    finish();
    return;
  }
  const int steps = static_cast<int>(std::max(1.0, std::ceil(extent / kFirstStep)));
  Node a;
  a.t = 0.0;
  a.lon = alon_;
  a.lat = alat_;
  a.sheet = sheet_of(m_, a.lon, a.lat, a.lam);
  a.ok = a.sheet != kOut && lam_to_page(m_, a.lam, a.lat, a.x, a.y);
  for (int i = 1; i <= steps; ++i) {
    Node b;
    b.t = static_cast<double>(i) / steps;
    eval(b.t, b.lon, b.lat);
    b.sheet = sheet_of(m_, b.lon, b.lat, b.lam);
    b.ok = b.sheet != kOut && lam_to_page(m_, b.lam, b.lat, b.x, b.y);
    if (a.sheet == b.sheet) {
      if (a.sheet != kOut) {
        densify(a, b, 0);
      }
      a = b;
      continue;
    }
    // The step crosses the outline: cut it where it leaves a's sheet and where it enters
    // b's (bisection on the line's parameter; the crossing coordinate then set exactly).
    double lo = a.t, hi = b.t;
    if (a.sheet != kOut) {
      for (int k = 0; k < 60; ++k) {
        const double t = 0.5 * (lo + hi);
        double tl = 0.0, tp = 0.0, lam = 0.0;
        eval(t, tl, tp);
        (sheet_of(m_, tl, tp, lam) == a.sheet ? lo : hi) = t;
      }
      Node e;
      e.t = lo;
      eval(lo, e.lon, e.lat);
      e.sheet = a.sheet;
      e.lam = m_.region == MapRegion::Cap ? std::remainder(e.lon - m_.lon0, 360.0)
                                          : e.lon - m_.lon0 - 360.0 * static_cast<double>(a.sheet);
      double olon = 0.0, olat = 0.0;
      eval(hi, olon, olat);
      snap_to_edge(m_, a.sheet, e.lam, e.lat, olon, olat);
      e.ok = lam_to_page(m_, e.lam, e.lat, e.x, e.y);
      densify(a, e, 0);
      if (down_) {
        sink_.stop(true, outline_place(m_, e.lam, e.lat, e.x, e.y));
        down_ = false;
      }
      lo = hi;
      hi = b.t;
    }
    if (b.sheet != kOut) {
      // lo is outside a's sheet; find where b's sheet begins.
      double l2 = lo, h2 = b.t;
      for (int k = 0; k < 60; ++k) {
        const double t = 0.5 * (l2 + h2);
        double tl = 0.0, tp = 0.0, lam = 0.0;
        eval(t, tl, tp);
        (sheet_of(m_, tl, tp, lam) == b.sheet ? h2 : l2) = t;
      }
      Node e;
      e.t = h2;
      eval(h2, e.lon, e.lat);
      e.sheet = b.sheet;
      e.lam = m_.region == MapRegion::Cap ? std::remainder(e.lon - m_.lon0, 360.0)
                                          : e.lon - m_.lon0 - 360.0 * static_cast<double>(b.sheet);
      double olon = 0.0, olat = 0.0;
      eval(l2, olon, olat);
      snap_to_edge(m_, b.sheet, e.lam, e.lat, olon, olat);
      e.ok = lam_to_page(m_, e.lam, e.lat, e.x, e.y);
      if (e.ok) {
        sink_.start(e.x, e.y, true, outline_place(m_, e.lam, e.lat, e.x, e.y));
        down_ = true;
      }
      densify(e, b, 0);
    }
    a = b;
  }
}

// Polygons
// ========

namespace {

// Collects the pieces of one ring in work.px/py and work.arcs.
class RingSink final : public PathSink {
 public:
  explicit RingSink(MapWork& w) : w_(w) {}
  void start(double x, double y, bool on_outline, double s) override {
    MapArc a;
    a.from = static_cast<int>(w_.px.size());
    a.s_in = on_outline ? s : -1.0;
    w_.arcs.push_back(a);
    point(x, y);
  }
  void point(double x, double y) override {
    w_.px.push_back(x);
    w_.py.push_back(y);
  }
  void stop(bool on_outline, double s) override {
    MapArc& a = w_.arcs.back();
    a.to = static_cast<int>(w_.px.size());
    a.s_out = on_outline ? s : -1.0;
  }

 private:
  MapWork& w_;
};

// Winding number of the ring about (lon, lat), the ring's longitudes taken as they are
// and the point shifted by every turn of 360 degrees that the ring's span reaches.
int winding(const std::vector<double>& lon, const std::vector<double>& lat, double plon,
            double plat) {
  const auto [lo, hi] = std::minmax_element(lon.begin(), lon.end());
  int total = 0;
  const double k0 = std::floor((*lo - plon) / 360.0), k1 = std::ceil((*hi - plon) / 360.0);
  if (!(k1 - k0 <= 8.0)) {
    return 0;  // a ring wound round the globe several times holds no region of it
  }
  for (double k = k0; k <= k1; k += 1.0) {
    const double x = plon + 360.0 * k;
    int w = 0;
    const std::size_t n = lon.size();
    for (std::size_t i = 0, j = n - 1; i < n; j = i++) {
      const double yi = lat[i], yj = lat[j];
      if ((yj <= plat) != (yi <= plat)) {
        const double cross = (lon[j] - x) * (yi - plat) - (lon[i] - x) * (yj - plat);
        if (yj <= plat && cross < 0.0) {
          ++w;
        } else if (yj > plat && cross > 0.0) {
          --w;
        }
      }
    }
    total += w;
  }
  return total;
}

}  // namespace

void begin_fill(GlobalBlock& g) {
  MapWork& w = g.maps.work;
  w.fx.clear();
  w.fy.clear();
  w.ends.clear();
}

void add_ring(GlobalBlock& g, const double* lon, const double* lat, int n, int& nans, int& beyond) {
  const MapState& m = g.maps;
  MapWork& w = g.maps.work;
  // The ring's usable points, closed round a pole when its longitudes end a turn apart
  // (a ring about a pole), and made anticlockwise.
  w.lon.clear();
  w.lat.clear();
  for (int i = 0; i < n; ++i) {
    if (!std::isfinite(lon[i]) || !std::isfinite(lat[i])) {
      ++nans;
      continue;
    }
    if (std::fabs(lat[i]) > 90.0) {
      ++beyond;
      continue;
    }
    if (!(std::fabs(lon[i]) < 1e9)) {
      continue;  // no longitude of a map (MapPen would leave it out as well)
    }
    w.lon.push_back(lon[i]);
    w.lat.push_back(lat[i]);
  }
  while (w.lon.size() > 1 && w.lon.back() == w.lon.front() && w.lat.back() == w.lat.front()) {
    w.lon.pop_back();
    w.lat.pop_back();
  }
  if (w.lon.size() < 3) {
    return;
  }
  const double span = w.lon.back() - w.lon.front();
  if (std::fabs(std::fabs(span) - 360.0) < 0.01) {
    double mean = 0.0;
    for (const double v : w.lat) {
      mean += v;
    }
    const double pole = mean < 0.0 ? -90.0 : 90.0;
    const double first = w.lon.front();
    w.lon.push_back(w.lon.back());
    w.lat.push_back(pole);
    w.lon.push_back(first);
    w.lat.push_back(pole);
  }
  double area = 0.0;  // twice the signed area, positive anticlockwise
  for (std::size_t i = 0, j = w.lon.size() - 1; i < w.lon.size(); j = i++) {
    area += w.lon[j] * w.lat[i] - w.lon[i] * w.lat[j];
  }
  if (area < 0.0) {
    std::reverse(w.lon.begin(), w.lon.end());
    std::reverse(w.lat.begin(), w.lat.end());
  }
  // Walk the ring.
  w.px.clear();
  w.py.clear();
  w.arcs.clear();
  RingSink sink(w);
  MapPen pen(g, sink);
  pen.move(w.lon[0], w.lat[0]);
  for (std::size_t i = 1; i < w.lon.size(); ++i) {
    pen.draw(w.lon[i], w.lat[i]);
  }
  pen.draw(w.lon[0], w.lat[0]);
  pen.finish();
  std::vector<MapArc>& arcs = w.arcs;
  // A ring that starts inside: its first and last pieces are one.
  if (arcs.size() > 1 && arcs.front().s_in < 0.0 && arcs.back().s_out < 0.0) {
    const MapArc first = arcs.front();
    for (int i = first.from + 1; i < first.to; ++i) {
      w.px.push_back(w.px[static_cast<std::size_t>(i)]);
      w.py.push_back(w.py[static_cast<std::size_t>(i)]);
    }
    arcs.back().to = static_cast<int>(w.px.size());
    arcs.back().s_out = first.s_out;
    arcs.erase(arcs.begin());
  }
  // Pieces that lost an end at a point the projection could not place are dropped.
  std::erase_if(arcs, [](const MapArc& a) { return a.to - a.from < 2 && a.s_in < 0.0; });
  const bool closed = arcs.size() == 1 && arcs[0].s_in < 0.0 && arcs[0].s_out < 0.0;
  if (closed) {
    for (int i = arcs[0].from; i < arcs[0].to; ++i) {
      w.fx.push_back(w.px[static_cast<std::size_t>(i)]);
      w.fy.push_back(w.py[static_cast<std::size_t>(i)]);
    }
    w.ends.push_back(static_cast<int>(w.fx.size()));
    return;
  }
  std::erase_if(arcs, [](const MapArc& a) { return a.s_in < 0.0 || a.s_out < 0.0; });
  if (arcs.empty()) {
    // Wholly outside: the ring may still hold the whole map.
    double rlon = m.lon0 + 0.5 * (m.lam_min + m.lam_max), rlat = 0.5 * (m.south + m.north);
    if (m.region == MapRegion::Cap) {
      rlon = m.lon0;
      rlat = std::clamp(m.cap_lat, -90.0 + 1e-6, 90.0 - 1e-6);
    }
    if (winding(w.lon, w.lat, rlon, rlat) != 0) {
      append_outline(m, 0.0, outline_length(m) - 1e-9, w.fx, w.fy);
      w.ends.push_back(static_cast<int>(w.fx.size()));
    }
    return;
  }
  // Join each piece to the piece that enters next along the outline, anticlockwise.
  const double len = outline_length(m);
  for (MapArc& a : arcs) {
    double best = HUGE_VAL;
    for (std::size_t j = 0; j < arcs.size(); ++j) {
      double d = std::fmod(arcs[j].s_in - a.s_out, len);
      if (d < 0.0) {
        d += len;
      }
      if (d < best) {
        best = d;
        a.next = static_cast<int>(j);
      }
    }
  }
  for (std::size_t i = 0; i < arcs.size(); ++i) {
    if (arcs[i].used) {
      continue;
    }
    int k = static_cast<int>(i);
    const std::size_t start = w.fx.size();
    for (std::size_t guard = 0; guard <= arcs.size() && !arcs[static_cast<std::size_t>(k)].used;
         ++guard) {
      MapArc& a = arcs[static_cast<std::size_t>(k)];
      a.used = true;
      for (int p = a.from; p < a.to; ++p) {
        w.fx.push_back(w.px[static_cast<std::size_t>(p)]);
        w.fy.push_back(w.py[static_cast<std::size_t>(p)]);
      }
      const MapArc& b = arcs[static_cast<std::size_t>(a.next)];
      append_outline(m, a.s_out, b.s_in, w.fx, w.fy);
      k = a.next;
    }
    if (w.fx.size() - start >= 3) {
      w.ends.push_back(static_cast<int>(w.fx.size()));
    } else {
      w.fx.resize(start);
      w.fy.resize(start);
    }
  }
}

void flush_fill(GlobalBlock& g) {
  MapWork& w = g.maps.work;
  if (!w.ends.empty()) {
    fill_path(g, w.fx.data(), w.fy.data(), w.ends.data(), static_cast<int>(w.ends.size()),
              FillRule::NonZero);
  }
  begin_fill(g);
}

void report_skipped(GlobalBlock& g, int nans, int beyond) {
  if (nans > 0) {
    g.core.nans = static_cast<int>(std::min<long long>(0x7fffffffLL, 0LL + g.core.nans + nans));
  }
  if (beyond > 0) {
    warn(g, 287, beyond);
  }
}

}  // namespace zorvel

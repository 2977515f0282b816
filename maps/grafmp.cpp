// The map axis system: grafmp, its outline and labels, the conversions (mappos, mapinv),
// the graticule (gridmp), and the map forms of curve, rlstrt, rlconn and rlarea.
//
// grafmp takes longitudes xa..xe and latitudes ya..ye. Cylindrical, pseudo-cylindrical
// and conic maps show that box; azimuthal maps show a cap about their centre (maprad,
// or what reaches the box's far latitude when the box runs round a pole). The outline
// is scaled to fit the axis rectangle with equal scales in x and y and centred in it.
// Labels stand where the meridians and parallels of the label steps meet the outline:
// longitudes below, latitudes on the left (the sides of setgrf), or round a cap.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>
#include <vector>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes/axis_marks.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "maps/map_draw.h"
#include "maps/maps.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;

// Largest caps the azimuthal projections can show (degrees from the centre): the
// orthographic map ends at the horizon; gnomonic and stereographic maps grow without
// end towards their limits; the equal-area and equidistant maps stop just short of the
// antipode, whose image is the whole outline.
double max_cap(ProjKind k) {
  switch (k) {
    case ProjKind::Orth:
      return 90.0;
    case ProjKind::Gnom:
      return 80.0;
    case ProjKind::Ster:
      return 150.0;
    default:
      return 179.9;
  }
}

// Whether a page rectangle overlaps one of the placed labels.
struct Box {
  double x0, y0, x1, y1;
};
bool overlaps(const std::vector<Box>& boxes, const Box& b) {
  for (const Box& o : boxes) {
    if (b.x0 < o.x1 && o.x0 < b.x1 && b.y0 < o.y1 && o.y0 < b.y1) {
      return true;
    }
  }
  return false;
}

// Places the map's scaling: the outline's extent in map units, the scale and offsets
// that centre it in the axis rectangle.
void place_map(GlobalBlock& g) {
  MapState& m = g.maps;
  const AxisState& s = g.axes;
  if (m.region == MapRegion::Cap) {
    m.xmin = m.ymin = -m.cap_map_radius;
    m.xmax = m.ymax = m.cap_map_radius;
  } else {
    m.scale = 1.0;
    m.off_x = 0.0;
    m.off_y = 0.0;
    std::vector<double> xs, ys;
    append_outline(m, 0.0, outline_length(m) - 1e-9, xs, ys);
    m.xmin = m.ymin = HUGE_VAL;
    m.xmax = m.ymax = -HUGE_VAL;
    for (std::size_t i = 0; i < xs.size(); ++i) {
      m.xmin = std::min(m.xmin, xs[i]);
      m.xmax = std::max(m.xmax, xs[i]);
      m.ymin = std::min(m.ymin, -ys[i]);
      m.ymax = std::max(m.ymax, -ys[i]);
    }
  }
  const double w = std::max(m.xmax - m.xmin, 1e-12), h = std::max(m.ymax - m.ymin, 1e-12);
  m.scale = std::min((s.len_x - 1.0) / w, (s.len_y - 1.0) / h);
  m.off_x = s.pos_x + 0.5 * (s.len_x - 1.0) - m.scale * 0.5 * (m.xmin + m.xmax);
  m.off_y = s.pos_y - 0.5 * (s.len_y - 1.0) + m.scale * 0.5 * (m.ymin + m.ymax);
  // The scalings of X and Y: what title and centring measure.
  AxisScale& x = g.axes.scale[kAxisX];
  AxisScale& y = g.axes.scale[kAxisY];
  x.factor = y.factor = m.scale;
  x.corner = m.off_x;
  y.corner = m.off_y;
}

// The outline on the page, closed.
void outline_points(const MapState& m, std::vector<double>& xs, std::vector<double>& ys) {
  xs.clear();
  ys.clear();
  if (m.region == MapRegion::Cap) {
    append_outline(m, 0.0, 2.0 * kPi - 1e-12, xs, ys);
  } else {
    append_outline(m, 0.0, outline_length(m) - 1e-9, xs, ys);
  }
  if (!xs.empty()) {
    xs.push_back(xs.front());
    ys.push_back(ys.front());
  }
}

// One label at the page point (x, y) of the outline, pushed out along the unit direction
// (ux, uy) by the label distance, unless it would touch one placed before.
void place_label(GlobalBlock& g, int ax, const AxisLabelText& text, const LabelMark& mk, double x,
                 double y, double ux, double uy, bool draw, std::vector<Box>& boxes,
                 AxisExtents& ext) {
  const AxisState& s = g.axes;
  char buf[kLabelBuffer];
  const int n = text.format(mk.value, mk.index, buf);
  const std::string_view label(buf, static_cast<std::size_t>(n));
  const int h = g.text.height;
  const double w = measure_label(g, label, h);
  const double d = s.axis[static_cast<std::size_t>(ax)].label_dist +
                   0.5 * (std::fabs(ux) * w + std::fabs(uy) * h);
  const double cx = x + d * ux, cy = y + d * uy;
  const double gap = 0.25 * h;
  const Box b{cx - 0.5 * w - gap, cy - 0.5 * h - gap, cx + 0.5 * w + gap, cy + 0.5 * h + gap};
  if (overlaps(boxes, b)) {
    return;
  }
  boxes.push_back(b);
  const double left = s.pos_x, right = s.pos_x + s.len_x - 1.0;
  const double top = s.pos_y - s.len_y + 1.0, bottom = s.pos_y;
  ext[kSideLeft] = std::max(ext[kSideLeft], left - (cx - 0.5 * w));
  ext[kSideRight] = std::max(ext[kSideRight], cx + 0.5 * w - right);
  ext[kSideTop] = std::max(ext[kSideTop], top - (cy - 0.5 * h));
  ext[kSideBottom] = std::max(ext[kSideBottom], cy + 0.5 * h - bottom);
  if (draw) {
    draw_label(g, label, cx, cy, LabelStyle{0, h, 1, 1});
  }
}

// The outward unit direction of the outline at a page point: away from the map's centre
// for caps; for boxes the side's normal given by the caller.
void cap_direction(const MapState& m, double x, double y, double& ux, double& uy) {
  const double dx = x - m.off_x, dy = y - m.off_y;
  const double r = std::hypot(dx, dy);
  ux = r > 0.0 ? dx / r : 0.0;
  uy = r > 0.0 ? dy / r : 1.0;
}

// Labels of a box map: longitudes at the lower (and upper) edge, latitudes at the left
// (and right) edge, as setgrf gives the sides.
void box_labels(GlobalBlock& g, bool draw, std::vector<Box>& boxes, AxisExtents& ext) {
  const MapState& m = g.maps;
  const AxisState& s = g.axes;
  std::vector<LabelMark> marks;
  // Longitudes. Where the lower edge is a point (a pointed pole), they go under the
  // equator instead.
  double ax = 0.0, ay = 0.0, bx = 0.0, by = 0.0;
  lam_to_page(m, m.lam_min, m.south, ax, ay);
  lam_to_page(m, m.lam_max, m.south, bx, by);
  const bool pointed = std::hypot(bx - ax, by - ay) < 0.05 * (m.xmax - m.xmin) * m.scale;
  const double label_lat = pointed ? std::clamp(0.0, m.south, m.north) : m.south;
  for (int pass = 0; pass < 2; ++pass) {
    const int side = pass == 0 ? kSideBottom : kSideTop;
    if (s.sides[static_cast<std::size_t>(side)] < kPartLabel ||
        s.axis[kAxisX].label_type == kLabNone || (pass == 1 && pointed)) {
      continue;
    }
    if (!label_marks(s, kAxisX, marks)) {
      continue;
    }
    const AxisLabelText text(s, kAxisX, marks, label_chars(g));
    const PartColour c(g, s.axis[kAxisX].colours[2]);
    for (const LabelMark& mk : marks) {
      // Both ends of a box round the globe get their label.
      double lam = mk.value - m.lon0;
      if (lam < m.lam_min - 1e-9 || lam > m.lam_max + 1e-9) {
        lam -= 360.0 * std::floor((lam - m.lam_min) / 360.0);
      }
      if (lam > m.lam_max + 1e-9) {
        continue;
      }
      double x = 0.0, y = 0.0;
      if (lam_to_page(m, std::min(lam, m.lam_max), pass == 0 ? label_lat : m.north, x, y)) {
        place_label(g, kAxisX, text, mk, x, y, 0.0, pass == 0 ? 1.0 : -1.0, draw, boxes, ext);
      }
    }
  }
  for (int pass = 0; pass < 2; ++pass) {
    const int side = pass == 0 ? kSideLeft : kSideRight;
    if (s.sides[static_cast<std::size_t>(side)] < kPartLabel ||
        s.axis[kAxisY].label_type == kLabNone || !label_marks(s, kAxisY, marks)) {
      continue;
    }
    const AxisLabelText text(s, kAxisY, marks, label_chars(g));
    const PartColour c(g, s.axis[kAxisY].colours[2]);
    for (const LabelMark& mk : marks) {
      // The poles are no parallels: a point, or a line that the longitudes label.
      if (mk.value < m.south - 1e-9 || mk.value > m.north + 1e-9 ||
          std::fabs(mk.value) > 90.0 - 1e-9) {
        continue;
      }
      double x = 0.0, y = 0.0;
      if (lam_to_page(m, pass == 0 ? m.lam_min : m.lam_max, mk.value, x, y)) {
        place_label(g, kAxisY, text, mk, x, y, pass == 0 ? -1.0 : 1.0, 0.0, draw, boxes, ext);
      }
    }
  }
}

// Labels of a cap: every line of the label steps where it crosses the outline; on polar
// caps the parallels, which do not, along the meridian running down the page.
void cap_labels(GlobalBlock& g, bool draw, std::vector<Box>& boxes, AxisExtents& ext) {
  const MapState& m = g.maps;
  const AxisState& s = g.axes;
  std::vector<LabelMark> marks;
  const double cl = m.cap_lat * kDeg;
  auto distance = [&](double lon, double lat) {
    const double p = lat * kDeg, dl = (lon - m.lon0) * kDeg;
    return std::acos(std::clamp(
               std::sin(cl) * std::sin(p) + std::cos(cl) * std::cos(p) * std::cos(dl), -1.0, 1.0)) /
               kDeg -
           m.cap_radius;
  };
  for (int ax = 0; ax < 2; ++ax) {
    const int side = ax == kAxisX ? kSideBottom : kSideLeft;
    if (s.sides[static_cast<std::size_t>(side)] < kPartLabel ||
        s.axis[static_cast<std::size_t>(ax)].label_type == kLabNone || !label_marks(s, ax, marks)) {
      continue;
    }
    const AxisLabelText text(s, ax, marks, label_chars(g));
    const PartColour c(g, s.axis[static_cast<std::size_t>(ax)].colours[2]);
    const bool polar = std::fabs(std::fabs(m.cap_lat) - 90.0) < 1e-9;
    for (const LabelMark& mk : marks) {
      if (ax == kAxisY && polar) {
        if (std::fabs(mk.value - m.cap_lat) < 1e-9 || distance(m.lon0, mk.value) > -1e-9) {
          continue;
        }
        double x = 0.0, y = 0.0;
        const double lam = m.cap_lat > 0.0 ? 0.0 : 180.0;
        if (lam_to_page(m, lam, mk.value, x, y)) {
          place_label(g, ax, text, mk, x, y, 1.0, 0.0, draw, boxes, ext);
        }
        continue;
      }
      if (ax == kAxisX && mk.value >= s.scale[kAxisX].umin + 360.0 - 1e-9) {
        continue;
      }
      // Along the line in 1-degree steps; each sign change of the distance from the
      // outline is a crossing, found by bisection.
      auto at = [&](double t, double& lon, double& lat) {
        if (ax == kAxisX) {
          lon = mk.value;
          lat = -90.0 + 180.0 * t;
        } else {
          lon = m.lon0 - 180.0 + 360.0 * t;
          lat = mk.value;
        }
      };
      double plon = 0.0, plat = 0.0;
      at(0.0, plon, plat);
      double pd = distance(plon, plat);
      const int steps = ax == kAxisX ? 180 : 360;
      for (int i = 1; i <= steps; ++i) {
        double lon = 0.0, lat = 0.0;
        const double t1 = static_cast<double>(i) / steps;
        at(t1, lon, lat);
        const double d = distance(lon, lat);
        if ((pd < 0.0) != (d < 0.0)) {
          double lo = t1 - 1.0 / steps, hi = t1;
          for (int k = 0; k < 50; ++k) {
            const double t = 0.5 * (lo + hi);
            at(t, lon, lat);
            ((distance(lon, lat) < 0.0) == (pd < 0.0) ? lo : hi) = t;
          }
          at(pd < 0.0 ? lo : hi, lon, lat);
          double x = 0.0, y = 0.0, ux = 0.0, uy = 0.0;
          if (lam_to_page(m, std::remainder(lon - m.lon0, 360.0), lat, x, y)) {
            cap_direction(m, x, y, ux, uy);
            // About a pole every meridian is labelled round the cap; elsewhere, as on
            // box maps, longitudes below the centre and latitudes left of it.
            if (polar || (ax == kAxisX ? uy > 0.25 : ux < -0.25)) {
              place_label(g, ax, text, mk, x, y, ux, uy, draw, boxes, ext);
            }
          }
          at(t1, lon, lat);
        }
        pd = d;
      }
    }
  }
}

// The graticule: meridians and parallels at the given steps over the box (the whole
// globe for caps), each clipped to the outline.
class LineSink final : public PathSink {
 public:
  explicit LineSink(GlobalBlock& g) : g_(g) {}
  void start(double x, double y, bool, double) override { move_to(g_, x, y); }
  void point(double x, double y) override { draw_to(g_, x, y); }
  void stop(bool, double) override {}

 private:
  GlobalBlock& g_;
};

void graticule(GlobalBlock& g, int nlon, int nlat) {
  const MapState& m = g.maps;
  const AxisState& s = g.axes;
  const bool cap = m.region == MapRegion::Cap;
  const double west = cap ? m.lon0 - 180.0 : m.lon0 + m.lam_min;
  const double east = cap ? m.lon0 + 180.0 : m.lon0 + m.lam_max;
  const double south = cap ? -90.0 : m.south, north = cap ? 90.0 : m.north;
  LineSink sink(g);
  std::vector<double> values;
  // Lines of latitude and longitude follow the globe's grid whatever mapopt "LINE" says.
  const bool great = g.maps.great_circles;
  g.maps.great_circles = false;
  if (nlon > 0) {
    if (!grid_marks(s, kAxisX, nlon, values)) {
      warn(g, 251, kMaxAxisTicks);
    }
    MapPen pen(g, sink);
    for (const double v : values) {
      pen.move(v, south);
      pen.draw(v, north);
      pen.finish();
    }
    if (cap) {
      // Meridians of the label step round the whole globe.
      const double step = s.scale[kAxisX].step / nlon;
      if (std::fabs(step) > 1e-9 && 360.0 / std::fabs(step) <= kMaxAxisTicks) {
        const double first = s.scale[kAxisX].first;
        for (double v = first - std::floor((first - west) / std::fabs(step)) * std::fabs(step);
             v < east - 1e-9; v += std::fabs(step)) {
          if (v >= s.scale[kAxisX].umin - 1e-9 && v <= s.scale[kAxisX].umax + 1e-9) {
            continue;  // drawn above
          }
          pen.move(v, south);
          pen.draw(v, north);
          pen.finish();
        }
      }
    }
  }
  if (nlat > 0) {
    if (!grid_marks(s, kAxisY, nlat, values)) {
      warn(g, 251, kMaxAxisTicks);
    }
    MapPen pen(g, sink);
    for (const double v : values) {
      if (std::fabs(v) >= 90.0 - 1e-9) {
        continue;
      }
      pen.move(west, v);
      pen.draw(east, v);
      pen.finish();
    }
  }
  g.maps.great_circles = great;
  end_polyline(g);
}

// Forces map labels on an axis whose label type is no map type (NONE stays).
void use_map_labels(AxisSettings& st) {
  if (st.kind != kKindMap && st.label_type != kLabNone) {
    st.label_type = kLabMap;
    st.kind = kKindMap;
    st.log_form = kLogPlain;
  }
}

}  // namespace

AxisExtents draw_map_axes(GlobalBlock& g, bool draw) {
  const PageClipScope page(g);
  std::vector<Box> boxes;
  AxisExtents ext{};
  if (g.maps.region == MapRegion::Cap) {
    cap_labels(g, draw, boxes, ext);
  } else {
    box_labels(g, draw, boxes, ext);
  }
  return ext;
}

void end_map(GlobalBlock& g) {
  MapState& m = g.maps;
  clear_clip_circle(g);
  for (int ax = 0; ax < 2; ++ax) {
    AxisSettings& st = g.axes.axis[static_cast<std::size_t>(ax)];
    st.label_type = m.kept_label_type[ax];
    st.kind = m.kept_kind[ax];
    g.axes.log[static_cast<std::size_t>(ax)] = m.kept_log[ax];
  }
  m.active = false;
  m.pen_down = false;
}

// Lines and areas in map coordinates
// ==================================

void map_polyline(GlobalBlock& g, const double* lon, const double* lat, int n) {
  LineSink sink(g);
  MapPen pen(g, sink);
  // A point that is not a number ends the line; the next good point starts a new one.
  for (int i = 0; i < n; ++i) {
    if (i == 0) {
      pen.move(lon[i], lat[i]);
    } else {
      pen.draw(lon[i], lat[i]);
    }
  }
  pen.finish();
  report_skipped(g, pen.nans, pen.beyond);
}

void map_line_start(GlobalBlock& g, double lon, double lat) {
  MapState& m = g.maps;
  m.pen_down = false;
  if (!std::isfinite(lon) || !std::isfinite(lat)) {
    report_skipped(g, 1, 0);
    return;
  }
  if (std::fabs(lat) > 90.0) {
    report_skipped(g, 0, 1);
    return;
  }
  m.pen_down = true;
  m.last_lon = lon;
  m.last_lat = lat;
}

void map_line_to(GlobalBlock& g, double lon, double lat) {
  MapState& m = g.maps;
  if (!m.pen_down) {
    map_line_start(g, lon, lat);
    return;
  }
  LineSink sink(g);
  MapPen pen(g, sink);
  pen.move(m.last_lon, m.last_lat);
  pen.draw(lon, lat);
  pen.finish();
  report_skipped(g, pen.nans, pen.beyond);
  if (pen.nans == 0 && pen.beyond == 0) {
    m.last_lon = lon;
    m.last_lat = lat;
  } else {
    m.pen_down = false;
  }
}

void map_fill(GlobalBlock& g, const double* lon, const double* lat, int n) {
  int nans = 0, beyond = 0;
  begin_fill(g);
  add_ring(g, lon, lat, n, nans, beyond);
  flush_fill(g);
  report_skipped(g, nans, beyond);
}

namespace api {

void grafmp(GlobalBlock& g, double xa, double xe, double xorg, double xstp, double ya, double ye,
            double yorg, double ystp) {
  AxisState& s = g.axes;
  MapState& m = g.maps;
  const double vx[4] = {xa, xe, xorg, xstp};
  const double vy[4] = {ya, ye, yorg, ystp};
  // Longitudes beyond a few turns of the globe mean nothing on a map.
  for (const double v : {xa, xe, ya, ye}) {
    if (!(std::fabs(v) <= 1e6)) {
      warn(g, 2, v);
      return;
    }
  }
  const bool ok_x = check_axis_scaling(g, vx);
  const bool ok_y = check_axis_scaling(g, vy);
  if (!ok_x || !ok_y) {
    return;
  }
  if (s.log[kAxisX] || s.log[kAxisY]) {
    warn(g, 13);  // maps are linear in longitude and latitude
  }
  // The box, limited to the globe and to what the projection can show.
  double west = std::min(xa, xe), east = std::max(xa, xe);
  double south = std::min(ya, ye), north = std::max(ya, ye);
  bool clamped = false;
  if (east - west > 360.0 + 1e-9) {
    east = west + 360.0;
    clamped = true;
  }
  if (south < -90.0 || north > 90.0) {
    south = std::max(south, -90.0);
    north = std::min(north, 90.0);
    clamped = true;
  }
  const ProjKind kind = m.kind;
  const ProjFamily family = projection_family(kind);
  if (kind == ProjKind::Merc && (south < -kMercatorLimit || north > kMercatorLimit)) {
    south = std::max(south, -kMercatorLimit);
    north = std::min(north, kMercatorLimit);
    clamped = true;
  }
  if (north - south < 1e-9) {
    warn(g, 283);
    return;
  }
  const double lon0 = m.centre_set ? m.centre_lon : 0.5 * (west + east);
  if (east - west >= 360.0 - 1e-9) {
    // Round the globe: the box is centred on the central meridian.
    west = lon0 - 180.0;
    east = lon0 + 180.0;
  }
  // Conics: standard parallels from mappar, else at a sixth of the box from its edges.
  double p1 = m.parallels_set ? m.par1 : south + (north - south) / 6.0;
  double p2 = m.parallels_set ? m.par2 : north - (north - south) / 6.0;
  double lat0 = m.centre_set ? m.centre_lat : 0.5 * (south + north);
  // Azimuthal maps: a cap about the centre.
  double cap_lat = lat0;
  double cap_radius = 90.0;
  if (family == ProjFamily::Azimuthal) {
    const bool round = east - west >= 360.0 - 1e-9;
    if (!m.centre_set && round && (south <= -90.0 || north >= 90.0)) {
      cap_lat = south <= -90.0 && north < 90.0 ? -90.0 : 90.0;
      cap_radius = cap_lat < 0.0 ? north + 90.0 : 90.0 - south;
    }
    if (m.cap_degrees > 0.0) {
      cap_radius = m.cap_degrees;
    }
    if (kind == ProjKind::Gnom && m.cap_degrees <= 0.0) {
      cap_radius = std::min(cap_radius, 60.0);
    }
    if (cap_radius > max_cap(kind)) {
      cap_radius = max_cap(kind);
      clamped = true;
    }
    lat0 = cap_lat;
  }
  if (family == ProjFamily::Conic && kind == ProjKind::Lamb) {
    // The pole away from the cone's apex is infinitely far.
    const double apex = p1 + p2 >= 0.0 ? 1.0 : -1.0;
    if (apex > 0.0 && south < -89.0) {
      south = -89.0;
      clamped = true;
    } else if (apex < 0.0 && north > 89.0) {
      north = 89.0;
      clamped = true;
    }
  }
  if (clamped) {
    warn(g, 283);
  }
  // Ellipsoidal azimuthal maps keep a circular outline only about a pole.
  const bool ellipsoid = m.ellipsoid && (family != ProjFamily::Azimuthal ||
                                         std::fabs(std::fabs(cap_lat) - 90.0) < 1e-9);
  if (setup_projection(m.proj, kind, lat0 * kDeg, p1 * kDeg, p2 * kDeg, ellipsoid) != 0) {
    warn(g, 284);
    // Parallels at a sixth of the box, or 30 and 60 degrees in the box's hemisphere.
    p1 = south + (north - south) / 6.0;
    p2 = north - (north - south) / 6.0;
    if (setup_projection(m.proj, kind, lat0 * kDeg, p1 * kDeg, p2 * kDeg, ellipsoid) != 0) {
      const double hemi = south + north < 0.0 ? -1.0 : 1.0;
      setup_projection(m.proj, kind, lat0 * kDeg, 30.0 * hemi * kDeg, 60.0 * hemi * kDeg,
                       ellipsoid);
    }
  }
  m.lon0 = lon0;
  m.south = south;
  m.north = north;
  m.cap_lat = cap_lat;
  m.cap_radius = cap_radius;
  m.region = family == ProjFamily::Azimuthal ? MapRegion::Cap : MapRegion::Box;
  double lmin = west - lon0;
  const double k = std::floor((lmin + 180.0) / 360.0);
  lmin -= 360.0 * k;
  double lmax = east - lon0 - 360.0 * k;
  if (lmax > 180.0 + 1e-9) {
    warn(g, 283);  // the box reaches across the cut meridian of mapctr's centre
    lmax = 180.0;
  }
  m.lam_min = lmin;
  m.lam_max = lmax;
  if (m.region == MapRegion::Cap) {
    // The cap's radius on the map: its edge straight below the centre.
    double lat = cap_lat - cap_radius, lam = 0.0;
    if (lat < -90.0) {
      lat = -180.0 - lat;
      lam = 180.0;
    }
    double x = 0.0, y = 0.0;
    project(m.proj, lam * kDeg, lat * kDeg, x, y);
    m.cap_map_radius = std::hypot(x, y);
  }

  // The axis system.
  m.kept_log[0] = s.log[kAxisX];
  m.kept_log[1] = s.log[kAxisY];
  s.log[kAxisX] = s.log[kAxisY] = false;
  for (int ax = 0; ax < 2; ++ax) {
    AxisSettings& st = s.axis[static_cast<std::size_t>(ax)];
    m.kept_label_type[ax] = st.label_type;
    m.kept_kind[ax] = st.kind;
    use_map_labels(st);
    const double* v = ax == 0 ? vx : vy;
    AxisScale& sc = s.scale[static_cast<std::size_t>(ax)];
    sc = AxisScale{};
    sc.a = v[0];
    sc.e = v[1];
    sc.first = v[2];
    sc.step = v[3];
    sc.umin = std::min(v[0], v[1]);
    sc.umax = std::max(v[0], v[1]);
    if (std::fabs((sc.e - sc.a) / sc.step) > kMaxAxisLabels) {
      warn(g, 251, kMaxAxisLabels);
    }
  }
  g.core.level = 2;
  s.polar = false;
  s.no_axes = false;
  s.scaled = true;
  ++s.graf_serial;
  m.active = true;
  m.pen_down = false;
  place_map(g);
  if (s.centring == 1) {
    centre_axis_system(g);
    s.centring = 2;
    place_map(g);
  }

  // Sea, outline, labels.
  std::vector<double> xs, ys;
  outline_points(m, xs, ys);
  const int colour = g.colour.current;
  {
    const DashScope solid(g);
    if (s.background != -1 && xs.size() > 3) {
      set_colour(g, s.background);
      const FillPatternScope fill(g, kSolidPattern);
      fill_polygon(g, xs.data(), ys.data(), static_cast<int>(xs.size()) - 1);
      set_colour(g, colour);
    }
    draw_map_outline(g);
    draw_map_axes(g, true);
    if (g.colour.current != colour) {
      set_colour(g, colour);
    }
  }
  // Data is clipped on the globe; the pipeline clips to the outline's rectangle, or to
  // its circle, as well.
  const double x0 = m.off_x + m.scale * m.xmin, x1 = m.off_x + m.scale * m.xmax;
  const double y0 = m.off_y - m.scale * m.ymax, y1 = m.off_y - m.scale * m.ymin;
  set_axis_clip(g, {std::floor(x0), std::floor(y0), std::ceil(x1), std::ceil(y1)});
  clip_to_axis(g);
  if (m.region == MapRegion::Cap) {
    set_clip_circle(g, m.off_x, m.off_y, m.cap_map_radius * m.scale + kClipTolerance);
  }
}

}  // namespace api

void draw_map_outline(GlobalBlock& g) {
  const AxisState& s = g.axes;
  std::vector<double> xs, ys;
  outline_points(g.maps, xs, ys);
  if (s.frame == 0 || xs.empty()) {
    return;
  }
  // The outline three times as wide as the frame's thickness, as the frame of a map is
  // usually drawn, so that it holds its own against the coastlines; whole, not clipped
  // to the map.
  const DashScope solid(g);
  const PageClipScope whole(g);
  const int colour = g.colour.current;
  {
    const PartColour c(g, s.axis[kAxisX].colours[0]);
    const int width = g.pipe.line_width;
    end_polyline(g);
    g.pipe.line_width = std::clamp(3 * std::abs(s.frame), 1, 32000);
    send_line_width(g);
    move_to(g, xs[0], ys[0]);
    for (std::size_t i = 1; i < xs.size(); ++i) {
      draw_to(g, xs[i], ys[i]);
    }
    end_polyline(g);
    g.pipe.line_width = width;
    send_line_width(g);
  }
  if (g.colour.current != colour) {
    set_colour(g, colour);
  }
}

namespace api {

void mappos(GlobalBlock& g, double xlon, double ylat, double* xp, double* yp) {
  *xp = NAN;
  *yp = NAN;
  if (!g.maps.active) {
    warn(g, 285);
    return;
  }
  double x = 0.0, y = 0.0;
  if (map_to_page(g, xlon, ylat, x, y)) {
    *xp = x;
    *yp = page_y(g, y);
  }
}

void mapinv(GlobalBlock& g, double xp, double yp, double* xlon, double* ylat) {
  *xlon = NAN;
  *ylat = NAN;
  const MapState& m = g.maps;
  if (!m.active) {
    warn(g, 285);
    return;
  }
  const double x = (xp - m.off_x) / m.scale;
  const double y = (m.off_y - page_y(g, yp)) / m.scale;
  double lam = 0.0, phi = 0.0;
  if (!unproject(m.proj, x, y, lam, phi)) {
    return;
  }
  const double lon = lam / kDeg + m.lon0, lat = phi / kDeg;
  double px = 0.0, py = 0.0;
  if (map_to_page(g, lon, lat, px, py)) {
    *xlon = lon;
    *ylat = lat;
  }
}

void gridmp(GlobalBlock& g, int nlon, int nlat) {
  if (!g.maps.active) {
    warn(g, 285);
    return;
  }
  if (!check_range(g, nlon, 0, kMaxTicks) || !check_range(g, nlat, 0, kMaxTicks)) {
    return;
  }
  const PartColour colour(g, grid_colour(g));
  graticule(g, nlon, nlat);
}

}  // namespace api
}  // namespace zorvel

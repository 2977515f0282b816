// The 3D axis system: the box and view settings, graf3d, which resolves the viewpoint and
// focus and builds the view matrix, and the projection of user and box points onto the
// page (rel3pt).

#include <algorithm>
#include <cmath>
#include <limits>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes3d/axes3d.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

constexpr double kPi = 3.1415927;  // the degree conversions' own value of pi
// The angles of a viewpoint given by "ANGL" convert in single precision.
constexpr double kDegreeSingle = static_cast<double>(3.1415927F / 180.0F);
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
// How far off the page (plot units) projected lines are kept as they are.
constexpr double kPageMargin = 1e6;
// Viewpoints farther than this (box units) cannot be computed with.
constexpr double kFarEye = 1e150;
// Below this distance from the z axis, the eye looks straight down or up.
constexpr double kOnAxis = 1e-6;

double dot3(const std::array<double, 4>& row, const std::array<double, 3>& p) {
  return row[0] * p[0] + row[1] * p[1] + row[2] * p[2] + row[3];
}

// The eye's own coordinates: right, up and forward rows with their constants.
void view_rows(View3dState& v) {
  const auto& e = v.eye;
  const auto& f = v.focus_box;
  const double dx = e[0] - f[0];
  const double dy = e[1] - f[1];
  const double dz = e[2] - f[2];
  const double r = std::sqrt(dx * dx + dy * dy);
  const double c = std::cos(v.up);
  const double s = std::sin(v.up);
  auto& m = v.m;
  if (r >= kOnAxis) {
    const double len = std::sqrt(r * r + dz * dz);
    const double u[3] = {-dy / r, dx / r, 0.0};
    const double w[3] = {(dz / len) * (dx / r), (dz / len) * (dy / r), -r / len};
    const double fw[3] = {-dx / len, -dy / len, -dz / len};
    for (int i = 0; i < 3; ++i) {
      m[0][static_cast<std::size_t>(i)] = c * u[i] + s * w[i];
      m[1][static_cast<std::size_t>(i)] = s * u[i] - c * w[i];
      m[2][static_cast<std::size_t>(i)] = fw[i];
    }
    for (std::size_t k = 0; k < 3; ++k) {
      m[k][3] = -(m[k][0] * e[0] + m[k][1] * e[1] + m[k][2] * e[2]);
    }
  } else {
    m[0] = {c, -s, 0.0, s * e[1] - c * e[0]};
    m[1] = {s, c, 0.0, -s * e[0] - c * e[1]};
    m[2] = {0.0, 0.0, -1.0, e[2]};
  }
  v.distance = m[2];
}

// Rows 2 and 3 for the projection: depth from 0 at the front to 1 at the back, and the
// divisor.
void projection_rows(View3dState& v) {
  auto& m = v.m;
  if (v.projection == 0) {
    const double n = v.front;
    const double t = std::tan(v.half_angle);
    const double k = v.back >= 0.0 ? 1.0 - n / v.back : 1.0;
    for (std::size_t i = 0; i < 4; ++i) {
      m[3][i] = t * m[2][i];
    }
    for (std::size_t i = 0; i < 3; ++i) {
      m[2][i] *= t / k;
    }
    m[2][3] = (t / k) * m[2][3] - t * n / k;
  } else {
    m[3] = {0.0, 0.0, 0.0, 2.0 / v.ortho_scale};
    const double e = std::sqrt(v.eye[0] * v.eye[0] + v.eye[1] * v.eye[1] + v.eye[2] * v.eye[2]);
    const double by = v.back >= 0.0 ? v.back : 2.0 * e;
    if (by > 0.0) {
      for (std::size_t i = 0; i < 4; ++i) {
        m[2][i] /= by;
      }
    }
  }
}

// The viewpoint in box coordinates (warning 33 and the default for one inside the box).
void resolve_eye(GlobalBlock& g) {
  View3dState& v = g.view3d;
  if (v.view_mode == 2) {
    v.view = user_to_box(g, v.view[0], v.view[1], v.view[2]);
    v.view_mode = 1;
  } else if (v.view_mode == 3) {
    const double a = v.view[0] * kDegreeSingle;
    const double b = v.view[1] * kDegreeSingle;
    const double r = v.view[2];
    v.view = {r * std::cos(b) * std::sin(a), r * std::cos(b) * std::cos(a), r * std::sin(b)};
    v.view_mode = 1;
  }
  bool use_default = v.view_mode == 0;
  if (!use_default) {
    bool inside = true;
    for (std::size_t i = 0; i < 3; ++i) {
      const double half = v.box[i] / 2.0;
      inside = inside && v.view[i] >= -half && v.view[i] <= half;
    }
    // A viewpoint that is not a number, or so far away that its squared distance would
    // overflow, is no better than one inside the box.
    inside = inside || !std::isfinite(v.view[0] + v.view[1] + v.view[2]) ||
             std::max({std::fabs(v.view[0]), std::fabs(v.view[1]), std::fabs(v.view[2])}) > kFarEye;
    if (inside) {
      warn(g, 33);
      use_default = true;
    }
  }
  v.eye = use_default ? std::array<double, 3>{2.0 * v.box[0], -2.5 * v.box[1], 2.0 * v.box[2]}
                      : v.view;
}

void resolve_focus(GlobalBlock& g) {
  View3dState& v = g.view3d;
  if (v.focus_mode == 2) {
    v.focus_box = user_to_box(g, v.focus[0], v.focus[1], v.focus[2]);
  } else if (v.focus_mode == 1) {
    v.focus_box = v.focus;
  } else {
    v.focus_box = {0.0, 0.0, 0.0};
  }
  if (!std::isfinite(v.focus_box[0] + v.focus_box[1] + v.focus_box[2])) {
    v.focus_box = {0.0, 0.0, 0.0};
  }
}

// Cuts the segment a-b to the part whose distance in front of the eye lies in
// [lo, hi] (hi < 0: no far limit); false when nothing is left.
bool cut_to_depth(const View3dState& v, std::array<double, 3>& a, std::array<double, 3>& b,
                  double lo, double hi, double& da, double& db) {
  da = dot3(v.distance, a);
  db = dot3(v.distance, b);
  if (!std::isfinite(da) || !std::isfinite(db)) {
    return false;
  }
  const auto cut = [&](double limit, bool below) {
    const bool out_a = below ? da < limit : da > limit;
    const bool out_b = below ? db < limit : db > limit;
    if (out_a && out_b) {
      return false;
    }
    if (out_a || out_b) {
      // From the end that is kept: the end cut away may lie so far off that nothing of
      // the kept end's coordinates would survive the other way round.
      const std::array<double, 3>& keep = out_a ? b : a;
      const std::array<double, 3>& away = out_a ? a : b;
      const double dk = out_a ? db : da;
      const double dw = out_a ? da : db;
      const double t = (limit - dk) / (dw - dk);
      std::array<double, 3> p{};
      for (std::size_t i = 0; i < 3; ++i) {
        p[i] = keep[i] + t * (away[i] - keep[i]);
      }
      if (out_a) {
        a = p;
        da = limit;
      } else {
        b = p;
        db = limit;
      }
    }
    return true;
  };
  return cut(lo, true) && (hi < 0.0 || cut(hi, false));
}

}  // namespace

std::array<double, 3> user_to_box(const GlobalBlock& g, double x, double y, double z) {
  const double in[3] = {x, y, z};
  std::array<double, 3> out{};
  for (std::size_t i = 0; i < 3; ++i) {
    const AxisScale& sc = g.axes.scale[i];
    double u = in[i];
    if (g.axes.log[i]) {
      u = u > 0.0 ? std::log10(u) : kNaN;
    }
    const double len = g.view3d.box[i];
    out[i] = (u - sc.a) * len / (sc.e - sc.a) - len / 2.0;
  }
  return out;
}

double box_to_user(const GlobalBlock& g, int ax, double b) {
  const auto i = static_cast<std::size_t>(std::clamp(ax, 0, 2));
  const AxisScale& sc = g.axes.scale[i];
  const double len = g.view3d.box[i];
  const double u = (b + len / 2.0) * (sc.e - sc.a) / len + sc.a;
  return g.axes.log[i] ? std::pow(10.0, u) : u;
}

bool box_to_page(const GlobalBlock& g, const std::array<double, 3>& b, double& xp, double& yp) {
  const View3dState& v = g.view3d;
  const double w = dot3(v.m[3], b);
  if (!(w > 0.0) || !std::isfinite(w)) {
    return false;
  }
  xp = v.d * dot3(v.m[0], b) / w + v.cx;
  yp = v.cy - v.d * dot3(v.m[1], b) / w;
  return std::isfinite(xp) && std::isfinite(yp);
}

double box_distance(const GlobalBlock& g, const std::array<double, 3>& b) {
  return dot3(g.view3d.distance, b);
}

// The page position of a box point whose distance in front of the eye is known: points
// cut at a depth limit far off to the side would lose it to rounding if it were computed
// again from their coordinates.
static bool project_at(const GlobalBlock& g, const std::array<double, 3>& b, double dist, double& xp,
                double& yp) {
  const View3dState& v = g.view3d;
  const double w = v.projection == 0 ? std::tan(v.half_angle) * dist : v.m[3][3];
  if (!(w > 0.0) || !std::isfinite(w)) {
    return false;
  }
  xp = v.d * dot3(v.m[0], b) / w + v.cx;
  yp = v.cy - v.d * dot3(v.m[1], b) / w;
  return std::isfinite(xp) && std::isfinite(yp);
}

bool line3d(GlobalBlock& g, const std::array<double, 3>& a, const std::array<double, 3>& b,
            bool pen_at_a) {
  View3dState& v = g.view3d;
  std::array<double, 3> p = a;
  std::array<double, 3> q = b;
  // In perspective nothing at or behind the eye projects; the front distance keeps the
  // divisor positive.
  const double lo = v.projection == 0 ? std::max(v.front, 1e-9) : v.front;
  double dp = 0.0;
  double dq = 0.0;
  if (!cut_to_depth(v, p, q, lo, v.back, dp, dq)) {
    return false;
  }
  double x0 = 0.0;
  double y0 = 0.0;
  double x1 = 0.0;
  double y1 = 0.0;
  if (!project_at(g, p, dp, x0, y0) || !project_at(g, q, dq, x1, y1)) {
    return false;
  }
  // Ends projected far off the page are brought in along the line itself (the pipeline
  // would clamp each coordinate alone and turn the line), measured from the end nearer
  // the page so that the far one's size does not swallow the page's scale.
  const bool from_a = std::max(std::fabs(x0), std::fabs(y0)) <= std::max(std::fabs(x1), std::fabs(y1));
  const double base[2] = {from_a ? x0 : x1, from_a ? y0 : y1};
  const double d[2] = {from_a ? x1 - x0 : x0 - x1, from_a ? y1 - y0 : y0 - y1};
  const double lo_xy[2] = {-kPageMargin, -kPageMargin};
  const double hi_xy[2] = {g.page.width + kPageMargin, g.page.height + kPageMargin};
  double t0 = 0.0;
  double t1 = 1.0;
  for (int k = 0; k < 2; ++k) {
    if (d[k] == 0.0) {
      if (base[k] < lo_xy[k] || base[k] > hi_xy[k]) {
        return false;
      }
      continue;
    }
    double ta = (lo_xy[k] - base[k]) / d[k];
    double tb = (hi_xy[k] - base[k]) / d[k];
    if (ta > tb) {
      std::swap(ta, tb);
    }
    t0 = std::max(t0, ta);
    t1 = std::min(t1, tb);
    if (t0 > t1) {
      return false;
    }
  }
  const double ax = base[0] + t0 * d[0];
  const double ay = base[1] + t0 * d[1];
  const double bx = base[0] + t1 * d[0];
  const double by = base[1] + t1 * d[1];
  const bool start_kept = from_a ? t0 == 0.0 : t1 == 1.0;
  const bool end_kept = from_a ? t1 == 1.0 : t0 == 0.0;
  if (!pen_at_a || p != a || !start_kept) {
    move_to(g, from_a ? ax : bx, from_a ? ay : by);
  }
  draw_to(g, from_a ? bx : ax, from_a ? by : ay);
  return q == b && end_kept;
}

namespace api {

void axis3d(GlobalBlock& g, double xlen, double ylen, double zlen) {
  if (!(xlen > 0.0 && ylen > 0.0 && zlen > 0.0) || !std::isfinite(xlen + ylen + zlen)) {
    warn(g, 2, !(xlen > 0.0) ? xlen : !(ylen > 0.0) ? ylen : zlen);
    return;
  }
  g.view3d.box = {xlen, ylen, zlen};
}

void view3d(GlobalBlock& g, double xvu, double yvu, double zvu, const char* cvu) {
  const int mode = match_keyword(g, "ABS +USER+ANGL", cvu);
  if (mode == 0) {
    return;
  }
  if (!std::isfinite(xvu + yvu + zvu)) {
    warn(g, 2, xvu + yvu + zvu);
    return;
  }
  g.view3d.view = {xvu, yvu, zvu};
  g.view3d.view_mode = mode;
}

void vfoc3d(GlobalBlock& g, double xfoc, double yfoc, double zfoc, const char* cfoc) {
  const int mode = match_keyword(g, "ABS +USER", cfoc);
  if (mode == 0) {
    return;
  }
  if (!std::isfinite(xfoc + yfoc + zfoc)) {
    warn(g, 2, xfoc + yfoc + zfoc);
    return;
  }
  g.view3d.focus = {xfoc, yfoc, zfoc};
  g.view3d.focus_mode = mode;
}

void vup3d(GlobalBlock& g, double angle) {
  if (!std::isfinite(angle)) {
    warn(g, 2, angle);
    return;
  }
  g.view3d.up = angle * kPi / 180.0;
}

void vang3d(GlobalBlock& g, double angle) {
  if (!(angle > 0.0 && angle < 180.0)) {
    warn(g, 2, angle);
    return;
  }
  g.view3d.half_angle = angle * kPi / 360.0;
}

void vclp3d(GlobalBlock& g, double front, double back) {
  View3dState& v = g.view3d;
  const bool front_ok = front > 0.0 && std::isfinite(front);
  if (!front_ok) {
    warn(g, 2, front);
  }
  const double near = front_ok ? front : v.front;
  if (!(back > 0.0)) {
    v.front = near;
    v.back = -1.0;
  } else if (back < near || !std::isfinite(back)) {
    warn(g, 2, back);  // neither distance is taken: the pair must stay in order
  } else {
    v.front = near;
    v.back = back;
  }
}

void vscl3d(GlobalBlock& g, double scale) {
  if (!(scale > 0.0) || !std::isfinite(scale)) {
    warn(g, 2, scale);
    return;
  }
  g.view3d.ortho_scale = scale;
}

void proj3d(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "PERS+ORTH", cmode); i != 0) {
    g.view3d.projection = i - 1;
  }
}

void graf3d(GlobalBlock& g, double xa, double xe, double xorg, double xstp, double ya,
            double ye, double yorg, double ystp, double za, double ze, double zorg,
            double zstp) {
  AxisState& s = g.axes;
  const double v[3][4] = {{xa, xe, xorg, xstp}, {ya, ye, yorg, ystp}, {za, ze, zorg, zstp}};
  bool ok = true;
  for (const auto& axis : v) {
    ok = check_axis_scaling(g, axis) && ok;
  }
  if (!ok) {
    return;
  }
  for (std::size_t i = 0; i < 3; ++i) {
    AxisScale& sc = s.scale[i];
    sc.a = v[i][0];
    sc.e = v[i][1];
    sc.first = v[i][2];
    sc.step = v[i][3];
    sc.umin = std::min(sc.a, sc.e);
    sc.umax = std::max(sc.a, sc.e);
    sc.time_form = -1;
    sc.date_form = 0;
    sc.months = 0;
  }
  s.polar = false;
  s.scaled = false;  // the 2D conversions have no scaling in a 3D axis system
  g.core.level = 3;

  View3dState& view = g.view3d;
  view.cx = s.pos_x + s.len_x / 2.0;
  view.cy = s.pos_y - s.len_y / 2.0;
  view.d = std::min(s.len_x, s.len_y) / 2.0;
  view.reflect = g.page.origin_bottom;
  view.reflect_height = static_cast<double>(static_cast<long long>(g.page.height));
  view.plane = false;
  view.has_point = false;
  view.pen_there = false;
  resolve_focus(g);
  resolve_eye(g);
  view_rows(view);
  projection_rows(view);
  draw_box3d(g);
}

void rel3pt(GlobalBlock& g, double x, double y, double z, double* xp, double* yp) {
  *xp = kNaN;
  *yp = kNaN;
  double px = 0.0;
  double py = 0.0;
  if (!box_to_page(g, user_to_box(g, x, y, z), px, py)) {
    return;
  }
  *xp = px;
  *yp = g.view3d.reflect ? g.view3d.reflect_height - py : py;
}

}  // namespace api
}  // namespace zorvel

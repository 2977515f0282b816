// Map projections: the forward and inverse formulas of the 19 projections of projct.
//
// Where a projection has an ellipsoidal form it follows the usual construction through an
// auxiliary latitude: the conformal one (Mercator, Lambert conformal, stereographic via
// t(phi)), the authalic one (cylindrical, Albers and azimuthal equal-area, Equal Earth via
// q(phi)). With the eccentricity 0 the same formulas give the spherical forms, so each
// projection is written once. Inverses are closed forms on the sphere; the ellipsoidal
// ones, and the Winkel tripel, polish a start value by Newton steps on the forward
// formulas, which makes a round trip exact to rounding wherever the forward map is
// smooth.

#include "maps/projections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace zorvel {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kHalfPi = 0.5 * kPi;
constexpr double kQuarterPi = 0.25 * kPi;
constexpr double kDeg = kPi / 180.0;
constexpr double kPoleEps = 1e-12;

// Auxiliary functions of the ellipsoid (eccentricity e; all reduce to the sphere at 0)
// ==================================================================================

// Conformal: t(phi) = tan(pi/4 - phi/2) / ((1 - e sin phi) / (1 + e sin phi))^(e/2).
double tsfn(double phi, double e) {
  const double s = e * std::sin(phi);
  return std::tan(0.5 * (kHalfPi - phi)) / std::pow((1.0 - s) / (1.0 + s), 0.5 * e);
}

// Authalic: q(phi), 2 sin(phi) on the sphere.
double qsfn(double sinphi, double e) {
  if (e < 1e-7) {
    return 2.0 * sinphi;
  }
  // Odd in sin(phi) by construction, so that q(-90) is exactly -q(90).
  const double s = std::fabs(sinphi);
  const double con = e * s;
  const double q =
      (1.0 - e * e) * (s / (1.0 - con * con) - (0.5 / e) * std::log((1.0 - con) / (1.0 + con)));
  return std::copysign(q, sinphi);
}

// Radius of the parallel: cos(phi) / sqrt(1 - e^2 sin^2 phi).
double msfn(double phi, double es) {
  const double s = std::sin(phi);
  return std::cos(phi) / std::sqrt(1.0 - es * s * s);
}

// Conformal latitude (stereographic).
double conformal(double phi, double e) {
  const double s = e * std::sin(phi);
  return 2.0 *
             std::atan(std::tan(0.5 * (kHalfPi + phi)) * std::pow((1.0 - s) / (1.0 + s), 0.5 * e)) -
         kHalfPi;
}

// Solves f(t) = k for an increasing f on [lo, hi]: Newton steps with the derivative df,
// kept inside a shrinking bracket (bisection where a step would leave it).
template <class F, class D>
double solve_increasing(F f, D df, double k, double lo, double hi, double t) {
  for (int i = 0; i < 100; ++i) {
    const double r = f(t) - k;
    if (r == 0.0) {
      return t;
    }
    if (r > 0.0) {
      hi = t;
    } else {
      lo = t;
    }
    const double d = df(t);
    double next = d > 0.0 ? t - r / d : 0.5 * (lo + hi);
    if (!(next > lo && next < hi)) {
      next = 0.5 * (lo + hi);
    }
    if (std::fabs(next - t) <= 1e-16 * (1.0 + std::fabs(t)) || hi - lo <= 4e-16) {
      return next;
    }
    t = next;
  }
  return t;
}

// Robinson's table: lengths of the parallels and their distances from the equator at
// every 5 degrees, interpolated by a natural cubic spline.
constexpr std::array<double, 19> kRobinsonX = {
    1.0000, 0.9986, 0.9954, 0.9900, 0.9822, 0.9730, 0.9600, 0.9427, 0.9216, 0.8962,
    0.8679, 0.8350, 0.7986, 0.7597, 0.7186, 0.6732, 0.6213, 0.5722, 0.5322};
constexpr std::array<double, 19> kRobinsonY = {
    0.0000, 0.0620, 0.1240, 0.1860, 0.2480, 0.3100, 0.3720, 0.4340, 0.4958, 0.5571,
    0.6176, 0.6769, 0.7346, 0.7903, 0.8435, 0.8936, 0.9394, 0.9761, 1.0000};
constexpr double kRobinsonFx = 0.8487;
constexpr double kRobinsonFy = 1.3523;

struct Spline {
  std::array<double, 19> v{};
  std::array<double, 19> m{};  // second derivatives at the nodes (per node step squared)
  explicit Spline(const std::array<double, 19>& values) : v(values) {
    // Natural spline, unit node spacing: m[i-1] + 4 m[i] + m[i+1] = 6 (v[i+1] - 2 v[i] + v[i-1]).
    std::array<double, 19> c{}, d{};
    for (int i = 1; i < 18; ++i) {
      const double rhs = 6.0 * (v[i + 1] - 2.0 * v[i] + v[i - 1]);
      const double den = 4.0 - (i > 1 ? c[i - 1] : 0.0);
      c[i] = 1.0 / den;
      d[i] = (rhs - (i > 1 ? d[i - 1] : 0.0)) / den;
    }
    for (int i = 17; i >= 1; --i) {
      m[i] = d[i] - c[i] * m[i + 1];
    }
  }
  // Value and derivative (per node step) at s in [0, 18].
  double at(double s, double* deriv = nullptr) const {
    const int i = std::clamp(static_cast<int>(s), 0, 17);
    const double t = s - i;
    const double u = 1.0 - t;
    if (deriv != nullptr) {
      *deriv =
          v[i + 1] - v[i] + (-(3.0 * u * u - 1.0) * m[i] + (3.0 * t * t - 1.0) * m[i + 1]) / 6.0;
    }
    return u * v[i] + t * v[i + 1] + ((u * u * u - u) * m[i] + (t * t * t - t) * m[i + 1]) / 6.0;
  }
};

const Spline& robinson_x() {
  static const Spline s(kRobinsonX);
  return s;
}
const Spline& robinson_y() {
  static const Spline s(kRobinsonY);
  return s;
}

// Equal Earth's polynomial.
constexpr double kA1 = 1.340264, kA2 = -0.081106, kA3 = 0.000893, kA4 = 0.003796;
const double kEqeaM = std::sqrt(3.0) / 2.0;

double eqea_y(double t) {
  const double t2 = t * t, t6 = t2 * t2 * t2;
  return t * (kA1 + kA2 * t2 + t6 * (kA3 + kA4 * t2));
}
double eqea_dy(double t) {
  const double t2 = t * t, t6 = t2 * t2 * t2;
  return kA1 + 3.0 * kA2 * t2 + t6 * (7.0 * kA3 + 9.0 * kA4 * t2);
}

// Mollweide's and Eckert IV's auxiliary angles.
double moll_theta(double phi) {
  if (std::fabs(phi) >= kHalfPi - kPoleEps) {
    return std::copysign(kHalfPi, phi);
  }
  const double k = kPi * std::sin(phi);
  const double u = solve_increasing([](double a) { return a + std::sin(a); },
                                    [](double a) { return 1.0 + std::cos(a); }, k, -kPi, kPi, phi);
  return 0.5 * u;
}
constexpr double kEck4Cp = 2.0 + kHalfPi;
const double kEck4Cx = 2.0 / std::sqrt(kPi * (4.0 + kPi));
const double kEck4Cy = 2.0 * std::sqrt(kPi / (4.0 + kPi));

double eck4_g(double t) { return t + std::sin(t) * std::cos(t) + 2.0 * std::sin(t); }
double eck4_theta(double phi) {
  if (std::fabs(phi) >= kHalfPi - kPoleEps) {
    return std::copysign(kHalfPi, phi);
  }
  return solve_increasing(
      eck4_g, [](double t) { return 2.0 * std::cos(t) * (1.0 + std::cos(t)); },
      kEck4Cp * std::sin(phi), -kHalfPi, kHalfPi, phi);
}

// Winkel tripel: its standard parallel acos(2/pi).
constexpr double kWinkelCos1 = 2.0 / kPi;

bool is_pole(double phi) { return std::fabs(std::fabs(phi) - kHalfPi) < 1e-10; }

// Azimuthal forms: 1 + cos c and 1 - cos c of the point's angular distance c from the
// centre, each as a sum of squares (haversines of the distance to the centre and to its
// antipode), so that neither loses digits near 0; and the point's direction (x, y before
// scaling by k(c)).
void azimuth(const Projection& p, double lam, double phi, double& ppc, double& mmc, double& ax,
             double& ay) {
  const double sp = std::sin(phi), cp = std::cos(phi), cl = std::cos(lam);
  const double s1 = std::sin(0.5 * (phi + p.lat0)), s2 = std::sin(0.5 * (phi - p.lat0));
  const double c3 = std::cos(0.5 * lam), s3 = std::sin(0.5 * lam);
  ppc = 2.0 * (s1 * s1 + p.cos0 * cp * c3 * c3);
  mmc = 2.0 * (s2 * s2 + p.cos0 * cp * s3 * s3);
  ax = cp * std::sin(lam);
  ay = p.cos0 * sp - p.sin0 * cp * cl;
}

bool project_azimuthal(const Projection& p, double lam, double phi, double& x, double& y) {
  if (p.ellipsoid && p.kind == ProjKind::Ster) {
    if (p.pole != 0) {
      const double rho = p.akm1 * tsfn(p.pole * phi, p.e);
      x = rho * std::sin(lam);
      y = -p.pole * rho * std::cos(lam);
      return std::isfinite(x) && std::isfinite(y);
    }
    const double chi = conformal(phi, p.e);
    const double sx = std::sin(chi), cx = std::cos(chi), cl = std::cos(lam);
    const double den = p.cosb1 * (1.0 + p.sinb1 * sx + p.cosb1 * cx * cl);
    if (!(std::fabs(den) > 1e-15)) {
      return false;
    }
    const double a = p.akm1 / den;
    x = a * cx * std::sin(lam);
    y = a * (p.cosb1 * sx - p.sinb1 * cx * cl);
    return std::isfinite(x) && std::isfinite(y);
  }
  if (p.ellipsoid && p.kind == ProjKind::Azea) {
    const double q = qsfn(std::sin(phi), p.e);
    if (p.pole != 0) {
      const double rho = std::sqrt(std::max(0.0, p.qp - p.pole * q));
      x = rho * std::sin(lam);
      y = -p.pole * rho * std::cos(lam);
      return true;
    }
    const double sb = std::clamp(q / p.qp, -1.0, 1.0);
    const double cb = std::sqrt(1.0 - sb * sb);
    const double cl = std::cos(lam);
    // 1 + cos c on the authalic sphere, as in azimuth().
    const double s1 = std::sin(0.5 * (std::asin(sb) + std::asin(p.sinb1)));
    const double c3 = std::cos(0.5 * lam);
    const double den = 2.0 * (s1 * s1 + p.cosb1 * cb * c3 * c3);
    if (!(den > 1e-30)) {
      return false;
    }
    const double b = std::sqrt(2.0 / den);
    x = p.rq * p.dd * b * cb * std::sin(lam);
    y = (p.rq / p.dd) * b * (p.cosb1 * sb - p.sinb1 * cb * cl);
    return true;
  }
  double ppc = 0.0, mmc = 0.0, ax = 0.0, ay = 0.0;
  azimuth(p, lam, phi, ppc, mmc, ax, ay);
  const double cosc = 0.5 * (ppc - mmc);
  double k = 1.0;
  switch (p.kind) {
    case ProjKind::Ster:
      if (!(ppc > 1e-30)) {
        return false;
      }
      k = 2.0 / ppc;
      break;
    case ProjKind::Azea:
      if (!(ppc > 1e-30)) {
        return false;
      }
      k = std::sqrt(2.0 / ppc);
      break;
    case ProjKind::Azed: {
      const double c = 2.0 * std::atan2(std::sqrt(mmc), std::sqrt(ppc));
      if (c > kPi - 1e-12) {
        return false;
      }
      k = c < 1e-8 ? 1.0 + c * c / 6.0 : c / std::sin(c);
      break;
    }
    case ProjKind::Orth:
      if (cosc < -1e-10) {
        return false;
      }
      k = 1.0;
      break;
    default:  // Gnom
      if (!(cosc > 1e-6)) {
        return false;
      }
      k = 1.0 / cosc;
      break;
  }
  x = k * ax;
  y = k * ay;
  return true;
}

// sin c and cos c of the angular distance c from the centre of an azimuthal map point at
// radius rho (spherical forms), written without inverse trigonometry where that would
// lose digits; false beyond the projection's image.
bool azimuthal_distance(ProjKind kind, double rho, double& sc, double& cc) {
  switch (kind) {
    case ProjKind::Ster: {
      const double c = 2.0 * std::atan(0.5 * rho);
      sc = std::sin(c);
      cc = std::cos(c);
      return true;
    }
    case ProjKind::Azea:
      if (rho > 2.0 * (1.0 + 1e-9)) {
        return false;
      }
      sc = rho * std::sqrt(std::max(0.0, (1.0 - 0.5 * rho) * (1.0 + 0.5 * rho)));
      cc = std::max(-1.0, 1.0 - 0.5 * rho * rho);
      return true;
    case ProjKind::Azed:
      if (rho > kPi * (1.0 + 1e-9)) {
        return false;
      }
      sc = std::sin(std::min(rho, kPi));
      cc = std::cos(std::min(rho, kPi));
      return true;
    case ProjKind::Orth:
      if (rho > 1.0 + 1e-9) {
        return false;
      }
      sc = std::min(rho, 1.0);
      cc = std::sqrt(std::max(0.0, (1.0 - rho) * (1.0 + rho)));
      return true;
    default: {
      const double r = std::sqrt(1.0 + rho * rho);
      sc = rho / r;
      cc = 1.0 / r;
      return true;
    }
  }
}

bool unproject_azimuthal_sphere(const Projection& p, double x, double y, double& lam, double& phi) {
  const double rho = std::hypot(x, y);
  double sc = 0.0, cc = 1.0;
  if (!azimuthal_distance(p.kind, rho, sc, cc)) {
    return false;
  }
  if (rho < 1e-300) {
    lam = 0.0;
    phi = p.lat0;
    return true;
  }
  // The point on the unit sphere from the centre C, east E and north N at the centre:
  // P = cos c C + sin c (x E + y N) / rho, in a frame with the central meridian in x-z.
  const double e = sc * x / rho, nn = sc * y / rho;
  const double px = cc * p.cos0 - nn * p.sin0;
  const double pz = cc * p.sin0 + nn * p.cos0;
  phi = std::atan2(pz, std::hypot(px, e));
  lam = std::atan2(e, px);
  return true;
}

// Conics: the radius of the parallel phi.
double conic_rho(const Projection& p, double phi) {
  switch (p.kind) {
    case ProjKind::Lamb:
      if (is_pole(phi)) {
        return phi * p.n > 0.0 ? 0.0 : HUGE_VAL;
      }
      return p.c * std::pow(tsfn(phi, p.e), p.n);
    case ProjKind::Albe:
      return std::sqrt(std::max(0.0, p.c - p.n * qsfn(std::sin(phi), p.e))) / p.n;
    default:  // Coni
      return p.c - phi;
  }
}

// Newton steps on the forward formulas from (lam, phi) towards the map point (x, y).
bool polish(const Projection& p, double x, double y, double& lam, double& phi) {
  for (int it = 0; it < 60; ++it) {
    double fx = 0.0, fy = 0.0;
    if (!project(p, lam, phi, fx, fy)) {
      return false;
    }
    const double rx = fx - x, ry = fy - y;
    if (std::fabs(rx) + std::fabs(ry) < 1e-15 * (1.0 + std::fabs(x) + std::fabs(y))) {
      return true;
    }
    // Central differences, moved inside the domain at its edges.
    const double h = 1e-6;
    const double l0 = projection_family(p.kind) == ProjFamily::Azimuthal
                          ? lam
                          : std::clamp(lam, -kPi + h, kPi - h);
    const double p0 = std::clamp(phi, -kHalfPi + h, kHalfPi - h);
    double xa = 0.0, ya = 0.0, xb = 0.0, yb = 0.0, xc = 0.0, yc = 0.0, xd = 0.0, yd = 0.0;
    if (!project(p, l0 + h, phi, xa, ya) || !project(p, l0 - h, phi, xb, yb) ||
        !project(p, lam, p0 + h, xc, yc) || !project(p, lam, p0 - h, xd, yd)) {
      return false;
    }
    const double a = (xa - xb) / (2.0 * h), b = (xc - xd) / (2.0 * h);
    const double c = (ya - yb) / (2.0 * h), d = (yc - yd) / (2.0 * h);
    const double det = a * d - b * c;
    if (!(std::fabs(det) > 1e-300)) {
      return false;
    }
    double dl = (d * rx - b * ry) / det;
    double dp = (a * ry - c * rx) / det;
    // Damped near the edges of the domain.
    const double big = std::max(std::fabs(dl), std::fabs(dp));
    if (big > 0.5) {
      dl *= 0.5 / big;
      dp *= 0.5 / big;
    }
    // On azimuthal maps, which have no cut, a step across a pole comes down on the far
    // meridian and the longitude wraps. Elsewhere the cut meridian bounds the longitude
    // and a step across a pole goes half way to it (at the pole itself the longitude has
    // no effect and the iteration would stall).
    const double next = phi - dp;
    if (projection_family(p.kind) == ProjFamily::Azimuthal) {
      lam -= dl;
      phi = next;
      if (std::fabs(phi) > kHalfPi) {
        phi = std::copysign(kPi, phi) - phi;
        lam += kPi;
      }
      lam = std::remainder(lam, 2.0 * kPi);
    } else {
      lam = std::clamp(lam - dl, -kPi, kPi);
      phi = std::fabs(next) <= kHalfPi ? next : 0.5 * (phi + std::copysign(kHalfPi, next));
    }
  }
  double fx = 0.0, fy = 0.0;
  return project(p, lam, phi, fx, fy) &&
         std::fabs(fx - x) + std::fabs(fy - y) < 1e-10 * (1.0 + std::fabs(x) + std::fabs(y));
}

bool unproject_sphere(const Projection& p, double x, double y, double& lam, double& phi) {
  switch (p.kind) {
    case ProjKind::Cyli:
      lam = x;
      phi = y;
      break;
    case ProjKind::Merc:
      lam = x;
      phi = std::atan(std::sinh(y));
      break;
    case ProjKind::Mill:
      lam = x;
      phi = 2.5 * std::atan(std::exp(0.8 * y)) - 0.625 * kPi;
      break;
    case ProjKind::Ceqa:
      if (std::fabs(y) > 1.0) {
        return false;
      }
      lam = x;
      phi = std::asin(y);
      break;
    case ProjKind::Lamb:
    case ProjKind::Albe:
    case ProjKind::Coni: {
      double dx = x, dy = p.rho0 - y;
      double rho = std::hypot(dx, dy);
      if (p.n < 0.0) {
        rho = -rho;
        dx = -dx;
        dy = -dy;
      }
      lam = (rho != 0.0 ? std::atan2(dx, dy) : 0.0) / p.n;
      if (p.kind == ProjKind::Lamb) {
        phi = rho == 0.0 ? std::copysign(kHalfPi, p.n)
                         : kHalfPi - 2.0 * std::atan(std::pow(rho / p.c, 1.0 / p.n));
      } else if (p.kind == ProjKind::Albe) {
        const double s = 0.5 * (p.c - rho * rho * p.n * p.n) / p.n;
        if (std::fabs(s) > 1.0 + 1e-12) {
          return false;
        }
        phi = std::asin(std::clamp(s, -1.0, 1.0));
      } else {
        phi = p.c - rho;
      }
      break;
    }
    case ProjKind::Ster:
    case ProjKind::Azea:
    case ProjKind::Azed:
    case ProjKind::Orth:
    case ProjKind::Gnom:
      return unproject_azimuthal_sphere(p, x, y, lam, phi);
    case ProjKind::Robi: {
      const double v = std::fabs(y) / kRobinsonFy;
      if (v > 1.0 + 1e-12) {
        return false;
      }
      const Spline& sy = robinson_y();
      const double s = solve_increasing([&](double t) { return sy.at(t); },
                                        [&](double t) {
                                          double d = 0.0;
                                          sy.at(t, &d);
                                          return d;
                                        },
                                        std::min(v, 1.0), 0.0, 18.0, 18.0 * std::min(v, 1.0));
      phi = std::copysign(s * 5.0 * kDeg, y);
      lam = x / (kRobinsonFx * robinson_x().at(s));
      break;
    }
    case ProjKind::Moll: {
      const double s = y / std::numbers::sqrt2;
      if (std::fabs(s) > 1.0 + 1e-12) {
        return false;
      }
      const double t = std::asin(std::clamp(s, -1.0, 1.0));
      phi = std::asin(std::clamp((2.0 * t + std::sin(2.0 * t)) / kPi, -1.0, 1.0));
      const double ct = std::cos(t);
      lam = ct > 1e-15 ? kPi * x / (2.0 * std::numbers::sqrt2 * ct) : 0.0;
      break;
    }
    case ProjKind::Wink:
      // Start from the equirectangular mean of the two projections.
      lam = std::clamp(x / (0.5 * (1.0 + kWinkelCos1)), -kPi, kPi);
      phi = std::clamp(y, -kHalfPi, kHalfPi);
      return polish(p, x, y, lam, phi);
    case ProjKind::Hamm: {
      const double zz = 1.0 - 0.0625 * x * x - 0.25 * y * y;
      if (zz < 0.5 - 1e-12) {
        return false;
      }
      const double z = std::sqrt(std::max(zz, 0.5));
      lam = 2.0 * std::atan2(z * x, 2.0 * (2.0 * z * z - 1.0));
      phi = std::atan2(z * y, std::hypot(0.5 * z * x, 2.0 * z * z - 1.0));
      break;
    }
    case ProjKind::Sinu: {
      phi = y;
      const double c = std::cos(phi);
      lam = c > 1e-15 ? x / c : 0.0;
      break;
    }
    case ProjKind::Eck4: {
      const double s = y / kEck4Cy;
      if (std::fabs(s) > 1.0 + 1e-12) {
        return false;
      }
      const double t = std::asin(std::clamp(s, -1.0, 1.0));
      phi = std::asin(std::clamp(eck4_g(t) / kEck4Cp, -1.0, 1.0));
      lam = x / (kEck4Cx * (1.0 + std::cos(t)));
      break;
    }
    case ProjKind::Eqea: {
      const double top = eqea_y(std::asin(kEqeaM));
      if (std::fabs(y) > top + 1e-12) {
        return false;
      }
      const double t =
          solve_increasing(eqea_y, eqea_dy, std::clamp(y, -top, top), -1.05, 1.05, y / kA1);
      phi = std::asin(std::clamp(std::sin(t) / kEqeaM, -1.0, 1.0));
      lam = kEqeaM * x * eqea_dy(t) / std::cos(t);
      break;
    }
  }
  return std::fabs(lam) <= kPi + 1e-9 && std::fabs(phi) <= kHalfPi + 1e-12 && std::isfinite(lam);
}

}  // namespace

ProjFamily projection_family(ProjKind k) {
  switch (k) {
    case ProjKind::Lamb:
    case ProjKind::Albe:
    case ProjKind::Coni:
      return ProjFamily::Conic;
    case ProjKind::Ster:
    case ProjKind::Azea:
    case ProjKind::Azed:
    case ProjKind::Orth:
    case ProjKind::Gnom:
      return ProjFamily::Azimuthal;
    default:
      return ProjFamily::Cylindrical;
  }
}

bool has_ellipsoidal_form(ProjKind k) {
  switch (k) {
    case ProjKind::Merc:
    case ProjKind::Ceqa:
    case ProjKind::Lamb:
    case ProjKind::Albe:
    case ProjKind::Ster:
    case ProjKind::Azea:
    case ProjKind::Eqea:
      return true;
    default:
      return false;
  }
}

bool is_rectangular(ProjKind k) {
  return k == ProjKind::Cyli || k == ProjKind::Merc || k == ProjKind::Mill || k == ProjKind::Ceqa;
}

int setup_projection(Projection& p, ProjKind kind, double lat0, double lat1, double lat2,
                     bool ellipsoid) {
  p = Projection{};
  p.kind = kind;
  p.ellipsoid = ellipsoid && has_ellipsoidal_form(kind);
  if (p.ellipsoid) {
    p.es = kWgs84Flattening * (2.0 - kWgs84Flattening);
    p.e = std::sqrt(p.es);
  }
  p.lat0 = lat0;
  p.sin0 = std::sin(lat0);
  p.cos0 = std::cos(lat0);
  p.pole = is_pole(lat0) ? (lat0 > 0.0 ? 1 : -1) : 0;
  if (p.pole != 0) {
    p.sin0 = p.pole;
    p.cos0 = 0.0;
  }
  p.qp = qsfn(1.0, p.e);
  p.rq = std::sqrt(0.5 * p.qp);
  switch (kind) {
    case ProjKind::Lamb:
    case ProjKind::Albe:
    case ProjKind::Coni: {
      if (std::fabs(lat1 + lat2) < 1e-10 || std::fabs(lat1) >= kHalfPi - 1e-10 ||
          std::fabs(lat2) >= kHalfPi - 1e-10 || !std::isfinite(lat1) || !std::isfinite(lat2)) {
        return 284;
      }
      const bool secant = std::fabs(lat1 - lat2) >= 1e-10;
      const double m1 = msfn(lat1, p.es), m2 = msfn(lat2, p.es);
      if (kind == ProjKind::Lamb) {
        const double t1 = tsfn(lat1, p.e), t2 = tsfn(lat2, p.e);
        p.n = secant ? std::log(m1 / m2) / std::log(t1 / t2) : std::sin(lat1);
        p.c = m1 * std::pow(t1, -p.n) / p.n;
      } else if (kind == ProjKind::Albe) {
        const double q1 = qsfn(std::sin(lat1), p.e), q2 = qsfn(std::sin(lat2), p.e);
        p.n = secant ? (m1 * m1 - m2 * m2) / (q2 - q1) : std::sin(lat1);
        p.c = m1 * m1 + p.n * q1;
      } else {
        p.n = secant ? (std::cos(lat1) - std::cos(lat2)) / (lat2 - lat1) : std::sin(lat1);
        p.c = std::cos(lat1) / p.n + lat1;
      }
      if (!std::isfinite(p.n) || std::fabs(p.n) < 1e-10) {
        return 284;
      }
      p.rho0 = conic_rho(p, lat0);
      if (!std::isfinite(p.rho0)) {
        p.rho0 = 0.0;
      }
      break;
    }
    case ProjKind::Ster:
      if (p.ellipsoid) {
        if (p.pole != 0) {
          p.akm1 = 2.0 / std::sqrt(std::pow(1.0 + p.e, 1.0 + p.e) * std::pow(1.0 - p.e, 1.0 - p.e));
        } else {
          const double chi = conformal(lat0, p.e);
          p.sinb1 = std::sin(chi);
          p.cosb1 = std::cos(chi);
          const double t = p.e * std::sin(lat0);
          p.akm1 = 2.0 * std::cos(lat0) / std::sqrt(1.0 - t * t);
        }
      }
      break;
    case ProjKind::Azea:
      if (p.ellipsoid && p.pole == 0) {
        p.sinb1 = qsfn(std::sin(lat0), p.e) / p.qp;
        p.cosb1 = std::sqrt(1.0 - p.sinb1 * p.sinb1);
        const double s = std::sin(lat0);
        p.dd = std::cos(lat0) / (std::sqrt(1.0 - p.es * s * s) * p.rq * p.cosb1);
      }
      break;
    default:
      break;
  }
  return 0;
}

bool project(const Projection& p, double lam, double phi, double& x, double& y) {
  if (!std::isfinite(lam) || !std::isfinite(phi)) {
    return false;
  }
  switch (p.kind) {
    case ProjKind::Cyli:
      x = lam;
      y = phi;
      return true;
    case ProjKind::Merc:
      if (std::fabs(phi) >= kHalfPi) {
        return false;
      }
      x = lam;
      y = -std::log(tsfn(phi, p.e));
      return std::isfinite(y);
    case ProjKind::Mill:
      x = lam;
      y = 1.25 * std::log(std::tan(kQuarterPi + 0.4 * phi));
      return std::isfinite(y);
    case ProjKind::Ceqa:
      x = lam;
      y = 0.5 * qsfn(std::sin(phi), p.e);
      return true;
    case ProjKind::Lamb:
    case ProjKind::Albe:
    case ProjKind::Coni: {
      const double rho = conic_rho(p, phi);
      if (!std::isfinite(rho)) {
        return false;
      }
      x = rho * std::sin(p.n * lam);
      y = p.rho0 - rho * std::cos(p.n * lam);
      return true;
    }
    case ProjKind::Ster:
    case ProjKind::Azea:
    case ProjKind::Azed:
    case ProjKind::Orth:
    case ProjKind::Gnom:
      return project_azimuthal(p, lam, phi, x, y);
    case ProjKind::Robi: {
      const double s = std::min(std::fabs(phi) / (5.0 * kDeg), 18.0);
      x = kRobinsonFx * robinson_x().at(s) * lam;
      y = std::copysign(kRobinsonFy * robinson_y().at(s), phi);
      return true;
    }
    case ProjKind::Moll: {
      const double t = moll_theta(phi);
      x = 2.0 * std::numbers::sqrt2 / kPi * lam * std::cos(t);
      y = std::numbers::sqrt2 * std::sin(t);
      return true;
    }
    case ProjKind::Wink: {
      const double c = 0.5 * lam;
      const double d = std::acos(std::clamp(std::cos(phi) * std::cos(c), -1.0, 1.0));
      double ax = 0.0, ay = 0.0;
      if (d != 0.0) {
        const double k = d / std::sin(d);
        ax = 2.0 * k * std::cos(phi) * std::sin(c);
        ay = k * std::sin(phi);
      }
      x = 0.5 * (ax + lam * kWinkelCos1);
      y = 0.5 * (ay + phi);
      return true;
    }
    case ProjKind::Hamm: {
      const double cp = std::cos(phi);
      const double d = std::sqrt(2.0 / (1.0 + cp * std::cos(0.5 * lam)));
      x = 2.0 * d * cp * std::sin(0.5 * lam);
      y = d * std::sin(phi);
      return true;
    }
    case ProjKind::Sinu:
      x = lam * std::cos(phi);
      y = phi;
      return true;
    case ProjKind::Eck4: {
      const double t = eck4_theta(phi);
      x = kEck4Cx * lam * (1.0 + std::cos(t));
      y = kEck4Cy * std::sin(t);
      return true;
    }
    case ProjKind::Eqea: {
      double sb = std::sin(phi);
      if (p.ellipsoid) {
        sb = std::clamp(qsfn(sb, p.e) / p.qp, -1.0, 1.0);
      }
      const double t = std::asin(kEqeaM * sb);
      x = lam * std::cos(t) / (kEqeaM * eqea_dy(t)) * p.rq;
      y = eqea_y(t) * p.rq;
      return true;
    }
  }
  return false;
}

bool unproject(const Projection& p, double x, double y, double& lam, double& phi) {
  if (!std::isfinite(x) || !std::isfinite(y)) {
    return false;
  }
  if (!p.ellipsoid) {
    return unproject_sphere(p, x, y, lam, phi);
  }
  // The spherical inverse of the map point scaled to the authalic sphere is close to the
  // ellipsoidal answer: polish it.
  Projection sphere = p;
  sphere.ellipsoid = false;
  sphere.e = sphere.es = 0.0;
  sphere.qp = 2.0;
  sphere.rq = 1.0;
  sphere.dd = 1.0;
  if (!unproject_sphere(sphere, x, y, lam, phi)) {
    // Outside the sphere's image but perhaps inside the ellipsoid's: start at the centre.
    lam = 0.0;
    phi = p.lat0;
  }
  lam = std::clamp(std::isfinite(lam) ? lam : 0.0, -kPi, kPi);
  phi = std::clamp(std::isfinite(phi) ? phi : 0.0, -kHalfPi, kHalfPi);
  return polish(p, x, y, lam, phi);
}

}  // namespace zorvel

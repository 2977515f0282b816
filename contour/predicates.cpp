// Exact orientation and in-circle tests by adaptive floating-point arithmetic.
//
// The error-free transformations: two_sum(a, b) gives x = fl(a + b) and the error y with
// x + y = a + b exactly; two_product likewise for a * b. An expansion is an array of
// doubles, smallest magnitude first, whose bits do not overlap; its value is their exact
// sum and its sign that of its last (largest) component. Sums and products of
// expansions are again expansions, so a determinant of doubles can be evaluated without
// any rounding. The error bounds of the first stages are those of the published analysis
// of this arithmetic for round-to-nearest doubles (epsilon = 2^-53).

#include "contour/predicates.h"

#include <cmath>

namespace zorvel {
namespace {

constexpr double kEpsilon = 0x1p-53;
constexpr double kResultError = (3.0 + 8.0 * kEpsilon) * kEpsilon;
constexpr double kOrientErrorA = (3.0 + 16.0 * kEpsilon) * kEpsilon;
constexpr double kOrientErrorB = (2.0 + 12.0 * kEpsilon) * kEpsilon;
constexpr double kOrientErrorC = (9.0 + 64.0 * kEpsilon) * kEpsilon * kEpsilon;
constexpr double kCircleErrorA = (10.0 + 96.0 * kEpsilon) * kEpsilon;
constexpr double kCircleErrorB = (4.0 + 48.0 * kEpsilon) * kEpsilon;

inline void two_sum(double a, double b, double& x, double& y) {
  x = a + b;
  const double bv = x - a;
  const double av = x - bv;
  y = (a - av) + (b - bv);
}

inline void two_diff(double a, double b, double& x, double& y) {
  x = a - b;
  const double bv = a - x;
  const double av = x + bv;
  y = (a - av) + (bv - b);
}

// The rounding error of a - b, whose rounded value is x.
inline double diff_tail(double a, double b, double x) {
  const double bv = a - x;
  const double av = x + bv;
  return (a - av) + (bv - b);
}

inline void two_product(double a, double b, double& x, double& y) {
  x = a * b;
#if defined(__FMA__) || defined(__FP_FAST_FMA)
  y = std::fma(a, b, -x);
#else
  // Without a fused multiply-add the halves of 26 bits multiply exactly. (A compiler may
  // contract a * b + c only where the machine has the instruction, which the branch
  // above then uses itself.)
  constexpr double kSplitter = 0x1p27 + 1.0;
  const double ca = kSplitter * a;
  const double ahi = ca - (ca - a);
  const double alo = a - ahi;
  const double cb = kSplitter * b;
  const double bhi = cb - (cb - b);
  const double blo = b - bhi;
  const double err1 = x - ahi * bhi;
  const double err2 = err1 - alo * bhi;
  const double err3 = err2 - ahi * blo;
  y = alo * blo - err3;
#endif
}

// Expansions
// ==========

// h = e + f; h holds elen + flen components. Zero components are left out (an expansion
// of value zero keeps one). Returns the length of h.
int sum(int elen, const double* e, int flen, const double* f, double* h) {
  int i = 0;
  int j = 0;
  int k = 0;
  // The components of both, merged by increasing magnitude.
  const auto next = [&]() {
    if (j >= flen || (i < elen && std::fabs(e[i]) <= std::fabs(f[j]))) {
      return e[i++];
    }
    return f[j++];
  };
  double q = next();
  while (i < elen || j < flen) {
    double s = 0.0;
    double t = 0.0;
    two_sum(q, next(), s, t);
    if (t != 0.0) {
      h[k++] = t;
    }
    q = s;
  }
  if (q != 0.0 || k == 0) {
    h[k++] = q;
  }
  return k;
}

// h = e * b; h holds 2 elen components.
int scale(int elen, const double* e, double b, double* h) {
  int k = 0;
  double q = 0.0;
  double t = 0.0;
  two_product(e[0], b, q, t);
  if (t != 0.0) {
    h[k++] = t;
  }
  for (int i = 1; i < elen; ++i) {
    double p1 = 0.0;
    double p0 = 0.0;
    two_product(e[i], b, p1, p0);
    double s = 0.0;
    two_sum(q, p0, s, t);
    if (t != 0.0) {
      h[k++] = t;
    }
    two_sum(p1, s, q, t);
    if (t != 0.0) {
      h[k++] = t;
    }
  }
  if (q != 0.0 || k == 0) {
    h[k++] = q;
  }
  return k;
}

// h = e * f; h holds 2 elen flen components, `work` 2 elen + 2 elen flen.
int product(int elen, const double* e, int flen, const double* f, double* h, double* work) {
  double* part = work;
  double* acc = work + 2 * elen;
  int n = scale(elen, e, f[0], h);
  for (int j = 1; j < flen; ++j) {
    const int m = scale(elen, e, f[j], part);
    for (int i = 0; i < n; ++i) {
      acc[i] = h[i];
    }
    n = sum(n, acc, m, part, h);
  }
  return n;
}

void negate(int n, double* e) {
  for (int i = 0; i < n; ++i) {
    e[i] = -e[i];
  }
}

double estimate(int n, const double* e) {
  double s = e[0];
  for (int i = 1; i < n; ++i) {
    s += e[i];
  }
  return s;
}

// The exact difference a - b as an expansion of at most two components.
int difference(double a, double b, double* h) {
  double x = 0.0;
  double y = 0.0;
  two_diff(a, b, x, y);
  if (y == 0.0) {
    h[0] = x;
    return 1;
  }
  h[0] = y;
  h[1] = x;
  return 2;
}

// p * q - r * s for expansions of at most two components each: at most 16 components.
int cross(int plen, const double* p, int qlen, const double* q, int rlen, const double* r, int slen,
          const double* s, double* h) {
  double work[16];
  double a[8];
  double b[8];
  const int na = product(plen, p, qlen, q, a, work);
  const int nb = product(rlen, r, slen, s, b, work);
  negate(nb, b);
  return sum(na, a, nb, b, h);
}

// The orientation determinant from the exact coordinate differences.
double orient_exact(const Point2& a, const Point2& b, const Point2& c) {
  double acx[2];
  double bcx[2];
  double acy[2];
  double bcy[2];
  const int n1 = difference(a.x, c.x, acx);
  const int n2 = difference(b.x, c.x, bcx);
  const int n3 = difference(a.y, c.y, acy);
  const int n4 = difference(b.y, c.y, bcy);
  double d[16];
  const int n = cross(n1, acx, n4, bcy, n3, acy, n2, bcx, d);
  return d[n - 1];
}

double orient_adapt(const Point2& a, const Point2& b, const Point2& c, double detsum) {
  const double acx = a.x - c.x;
  const double bcx = b.x - c.x;
  const double acy = a.y - c.y;
  const double bcy = b.y - c.y;
  // The determinant of the rounded differences, exactly.
  double l[2];
  double r[2];
  two_product(acx, bcy, l[1], l[0]);
  two_product(acy, bcx, r[1], r[0]);
  r[0] = -r[0];
  r[1] = -r[1];
  double B[4];
  const int nb = sum(2, l, 2, r, B);
  double det = estimate(nb, B);
  double bound = kOrientErrorB * detsum;
  if (det >= bound || -det >= bound) {
    return det;
  }
  const double acxt = diff_tail(a.x, c.x, acx);
  const double bcxt = diff_tail(b.x, c.x, bcx);
  const double acyt = diff_tail(a.y, c.y, acy);
  const double bcyt = diff_tail(b.y, c.y, bcy);
  if (acxt == 0.0 && acyt == 0.0 && bcxt == 0.0 && bcyt == 0.0) {
    return B[nb - 1];  // the differences were exact, and so is B
  }
  // First-order correction by the rounding errors of the differences.
  bound = kOrientErrorC * detsum + kResultError * std::fabs(det);
  det += (acx * bcyt + bcy * acxt) - (acy * bcxt + bcx * acyt);
  if (det >= bound || -det >= bound) {
    return det;
  }
  return orient_exact(a, b, c);
}

// The coordinate differences to d as expansions of at most two components.
struct Differences {
  double v[6][2];
  int n[6];
};

// alift * bc + blift * ca + clift * ab with lift = dx^2 + dy^2, from the exact
// differences.
double incircle_exact(const Point2& a, const Point2& b, const Point2& c, const Point2& d) {
  Differences q{};
  const Point2* p[3] = {&a, &b, &c};
  for (int k = 0; k < 3; ++k) {
    q.n[2 * k] = difference(p[k]->x, d.x, q.v[2 * k]);
    q.n[2 * k + 1] = difference(p[k]->y, d.y, q.v[2 * k + 1]);
  }
  // Per corner k: lift_k times the cross product of the two other corners' differences.
  double total[1536];
  int ntotal = 0;
  for (int k = 0; k < 3; ++k) {
    const int u = (k + 1) % 3;
    const int w = (k + 2) % 3;
    double cr[16];
    const int ncr = cross(q.n[2 * u], q.v[2 * u], q.n[2 * w + 1], q.v[2 * w + 1], q.n[2 * w],
                          q.v[2 * w], q.n[2 * u + 1], q.v[2 * u + 1], cr);
    double xx[8];
    double yy[8];
    double work[544];
    const int nxx = product(q.n[2 * k], q.v[2 * k], q.n[2 * k], q.v[2 * k], xx, work);
    const int nyy =
        product(q.n[2 * k + 1], q.v[2 * k + 1], q.n[2 * k + 1], q.v[2 * k + 1], yy, work);
    double lift[16];
    const int nlift = sum(nxx, xx, nyy, yy, lift);
    double term[512];
    const int nterm = product(nlift, lift, ncr, cr, term, work);
    if (k == 0) {
      for (int i = 0; i < nterm; ++i) {
        total[i] = term[i];
      }
      ntotal = nterm;
    } else {
      double before[1024];
      for (int i = 0; i < ntotal; ++i) {
        before[i] = total[i];
      }
      ntotal = sum(ntotal, before, nterm, term, total);
    }
  }
  return total[ntotal - 1];
}

double incircle_adapt(const Point2& a, const Point2& b, const Point2& c, const Point2& d,
                      double permanent) {
  const double adx = a.x - d.x;
  const double bdx = b.x - d.x;
  const double cdx = c.x - d.x;
  const double ady = a.y - d.y;
  const double bdy = b.y - d.y;
  const double cdy = c.y - d.y;
  // The determinant of the rounded differences, exactly.
  const double dx[3] = {adx, bdx, cdx};
  const double dy[3] = {ady, bdy, cdy};
  double fin[96];
  int nfin = 0;
  for (int k = 0; k < 3; ++k) {
    const int u = (k + 1) % 3;
    const int w = (k + 2) % 3;
    double l[2];
    double r[2];
    two_product(dx[u], dy[w], l[1], l[0]);
    two_product(dx[w], dy[u], r[1], r[0]);
    r[0] = -r[0];
    r[1] = -r[1];
    double cr[4];
    const int ncr = sum(2, l, 2, r, cr);
    double t1[8];
    double t2[16];
    double t3[8];
    double t4[16];
    const int n1 = scale(ncr, cr, dx[k], t1);
    const int n2 = scale(n1, t1, dx[k], t2);
    const int n3 = scale(ncr, cr, dy[k], t3);
    const int n4 = scale(n3, t3, dy[k], t4);
    double term[32];
    const int nterm = sum(n2, t2, n4, t4, term);
    if (k == 0) {
      for (int i = 0; i < nterm; ++i) {
        fin[i] = term[i];
      }
      nfin = nterm;
    } else {
      double before[64];
      for (int i = 0; i < nfin; ++i) {
        before[i] = fin[i];
      }
      nfin = sum(nfin, before, nterm, term, fin);
    }
  }
  const double det = estimate(nfin, fin);
  const double bound = kCircleErrorB * permanent;
  if (det >= bound || -det >= bound) {
    return det;
  }
  if (diff_tail(a.x, d.x, adx) == 0.0 && diff_tail(b.x, d.x, bdx) == 0.0 &&
      diff_tail(c.x, d.x, cdx) == 0.0 && diff_tail(a.y, d.y, ady) == 0.0 &&
      diff_tail(b.y, d.y, bdy) == 0.0 && diff_tail(c.y, d.y, cdy) == 0.0) {
    return fin[nfin - 1];
  }
  return incircle_exact(a, b, c, d);
}

}  // namespace

double orient2d(const Point2& a, const Point2& b, const Point2& c) {
  const double left = (a.x - c.x) * (b.y - c.y);
  const double right = (a.y - c.y) * (b.x - c.x);
  const double det = left - right;
  double detsum = 0.0;
  if (left > 0.0) {
    if (right <= 0.0) {
      return det;
    }
    detsum = left + right;
  } else if (left < 0.0) {
    if (right >= 0.0) {
      return det;
    }
    detsum = -left - right;
  } else {
    return det;
  }
  const double bound = kOrientErrorA * detsum;
  if (det >= bound || -det >= bound) {
    return det;
  }
  return orient_adapt(a, b, c, detsum);
}

double incircle(const Point2& a, const Point2& b, const Point2& c, const Point2& d) {
  const double adx = a.x - d.x;
  const double bdx = b.x - d.x;
  const double cdx = c.x - d.x;
  const double ady = a.y - d.y;
  const double bdy = b.y - d.y;
  const double cdy = c.y - d.y;
  const double bdxcdy = bdx * cdy;
  const double cdxbdy = cdx * bdy;
  const double alift = adx * adx + ady * ady;
  const double cdxady = cdx * ady;
  const double adxcdy = adx * cdy;
  const double blift = bdx * bdx + bdy * bdy;
  const double adxbdy = adx * bdy;
  const double bdxady = bdx * ady;
  const double clift = cdx * cdx + cdy * cdy;
  const double det =
      alift * (bdxcdy - cdxbdy) + blift * (cdxady - adxcdy) + clift * (adxbdy - bdxady);
  const double permanent = (std::fabs(bdxcdy) + std::fabs(cdxbdy)) * alift +
                           (std::fabs(cdxady) + std::fabs(adxcdy)) * blift +
                           (std::fabs(adxbdy) + std::fabs(bdxady)) * clift;
  const double bound = kCircleErrorA * permanent;
  if (det > bound || -det > bound) {
    return det;
  }
  return incircle_adapt(a, b, c, d, permanent);
}

}  // namespace zorvel

// B-spline interpolation of data points: the knots from the parameter values, the banded
// collocation system, and the evaluation on a uniform grid by de Boor's algorithm.
//
// Input that the curve routines would refuse anyway is still handled here without a crash,
// an endless loop or a write out of bounds:
//   - x of the non-parametric form that is NaN, infinite or not strictly increasing (also
//     x[0] <= 0 with log_x, whose log10 is not finite): NotIncreasing;
//   - NaN or infinite y, and NaN or infinite x of the parametric form: Singular (the
//     coefficients would not be finite);
//   - repeated points of the parametric form (equal parameter values give equal rows of
//     the collocation matrix), ranges that overflow, and parameter values so close that
//     the knots coincide: Singular;
//   - degree < 0, and npts < 1 (no grid to evaluate): BadCount.

#include "axes/spline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zorvel {
namespace {

// The banded collocation matrix holds (2 * order - 1) * n values at most.
constexpr long long kMaxBand = 1000;
// The last knots lie this far (the single-precision 1e-7) beyond the last parameter value.
constexpr double kEndShift = 1.0000000116860974e-7;

void resize(std::vector<double>& v, int size) { v.resize(static_cast<std::size_t>(size)); }

// The interval [knots[l], knots[l + 1]) that holds p, l in [k - 1, n - 1]; p outside the
// knots falls into the first or the last interval (and NaN into the last). The knots of
// these intervals increase strictly (checked when they are built), so every interval that
// contains [knots[l], knots[l + 1]] has a positive length.
int knot_interval(const double* knots, int n, int k, double p) {
  return static_cast<int>(std::upper_bound(knots + k, knots + n, p) - knots) - 1;
}

// The values at p of the k B-splines that do not vanish on the interval l, those of
// number l - k + 1 .. l, into b[0 .. k - 1]; left and right hold k values each.
void basis_values(const double* knots, int k, int l, double p, double* b, double* left,
                  double* right) {
  b[0] = 1.0;
  for (int j = 1; j < k; ++j) {
    left[j] = p - knots[l + 1 - j];
    right[j] = knots[l + j] - p;
    double saved = 0.0;
    for (int r = 0; r < j; ++r) {
      const double term = b[r] / (right[r + 1] + left[j - r]);
      b[r] = saved + right[r + 1] * term;
      saved = left[j - r] * term;
    }
    b[j] = saved;
  }
}

// The spline with the coefficients coef at p in the interval l (de Boor's algorithm);
// d holds k values.
double de_boor(const double* knots, const double* coef, int k, int l, double p, double* d) {
  const int first = l - k + 1;
  for (int j = 0; j < k; ++j) {
    d[j] = coef[first + j];
  }
  for (int r = 1; r < k; ++r) {
    for (int j = k - 1; j >= r; --j) {
      const int i = first + j;
      const double alpha = (p - knots[i]) / (knots[i + k - r] - knots[i]);
      d[j] = (1.0 - alpha) * d[j - 1] + alpha * d[j];
    }
  }
  return d[k - 1];
}

bool all_finite(const double* v, int n) {
  return std::all_of(v, v + n, [](double a) { return std::isfinite(a); });
}

}  // namespace

SplineResult interpolate_spline(const double* x, const double* y, int n, int degree, int npts,
                                bool parametric, bool log_x, double* xs, double* ys,
                                SplineWork& work) {
  if (degree < 0 || degree >= kMaxBand || npts < 1) {
    return SplineResult::BadCount;
  }
  const int k = degree + 1;  // the order
  const int w = 2 * k - 1;   // the band width
  if (n < k || static_cast<long long>(w) * n > kMaxBand) {
    return SplineResult::BadCount;
  }
  log_x = log_x && !parametric;
  if (!parametric) {
    for (int i = 0; i < n; ++i) {
      if (!std::isfinite(x[i]) || (i > 0 && !(x[i - 1] < x[i]))) {
        return SplineResult::NotIncreasing;
      }
    }
    if (log_x && !(x[0] > 0.0)) {
      return SplineResult::NotIncreasing;
    }
  }
  if (!all_finite(y, n) || (parametric && !all_finite(x, n))) {
    return SplineResult::Singular;
  }

  // The parameter values, strictly increasing.
  resize(work.t, n);
  double* p = work.t.data();
  if (parametric) {
    p[0] = 0.0;
    for (int i = 1; i < n; ++i) {
      p[i] = p[i - 1] + std::hypot(x[i] - x[i - 1], y[i] - y[i - 1]);
      if (!(p[i] > p[i - 1])) {
        return SplineResult::Singular;  // a repeated point, or too close to be told apart
      }
    }
  } else {
    std::copy(x, x + n, p);
  }
  if (!std::isfinite(p[n - 1] - p[0])) {
    return SplineResult::Singular;
  }

  // The knots: k at p[0], k at p[n - 1] + kEndShift, and n - k interior knots centred on
  // the data. With s = k / 2 (rounded down: (k - 1) / 2 for odd k) the interior knot
  // j = 0 .. n - k - 1 is
  //   even k:  knots[k + j] = p[j + s],                      p[s] .. p[n - 1 - s],
  //   odd k:   knots[k + j] = (p[j + s] + p[j + s + 1]) / 2,  (p[s] + p[s + 1]) / 2 ..
  //                                                           (p[n - 2 - s] + p[n - 1 - s]) / 2,
  // as far into the data at the start as at the end. The data point i then lies in the knot
  // interval l = i + s (clamped to k - 1 .. n - 1 near the ends), so the collocation matrix
  // has k - 1 diagonals below and above the main one.
  resize(work.knots, n + k);
  double* knots = work.knots.data();
  const int s = k / 2;
  for (int j = 0; j < k; ++j) {
    knots[j] = p[0];
    knots[n + j] = p[n - 1] + kEndShift;
  }
  for (int j = 0; j < n - k; ++j) {
    knots[k + j] = k % 2 == 0 ? p[j + s] : 0.5 * (p[j + s] + p[j + s + 1]);
  }
  for (int j = k - 1; j < n; ++j) {
    if (!(knots[j] < knots[j + 1])) {
      return SplineResult::Singular;  // midpoints of neighbouring doubles that coincide
    }
  }

  resize(work.scratch, 3 * k);
  double* b = work.scratch.data();
  double* left = b + k;
  double* right = left + k;

  // The collocation matrix: row i holds the columns i - k + 1 .. i + k - 1 (those outside
  // 0 .. n - 1 stay zero), column c at row[c - i + k - 1].
  work.band.assign(static_cast<std::size_t>(w * n), 0.0);
  double* band = work.band.data();
  for (int i = 0; i < n; ++i) {
    const int l = knot_interval(knots, n, k, p[i]);
    if (l < i || l > i + k - 1) {
      return SplineResult::Singular;  // a zero on the diagonal: no knot between the points
    }
    basis_values(knots, k, l, p[i], b, left, right);
    std::copy(b, b + k, band + i * w + (l - i));
  }

  // Gaussian elimination without pivoting: the B-spline collocation matrix is totally
  // positive, and such a matrix is factored stably without row exchanges. Row exchanges
  // would also widen the upper band to 2k - 2. In exact arithmetic the pivots are the
  // ratios of the leading principal minors, all positive unless the matrix is singular,
  // so a zero pivot means a singular system. The right-hand sides are eliminated alongside.
  resize(work.cx, parametric ? n : 0);
  resize(work.cy, n);
  double* cx = work.cx.data();
  double* cy = work.cy.data();
  std::copy(y, y + n, cy);
  if (parametric) {
    std::copy(x, x + n, cx);
  }
  for (int c = 0; c < n; ++c) {
    const double* prow = band + c * w;
    const double pivot = prow[k - 1];
    if (pivot == 0.0 || !std::isfinite(pivot)) {
      return SplineResult::Singular;
    }
    const int last = std::min(n - 1, c + k - 1);
    for (int r = c + 1; r <= last; ++r) {
      double* row = band + r * w;
      const double m = row[c - r + k - 1] / pivot;
      if (m == 0.0) {
        continue;
      }
      for (int j = c + 1; j <= last; ++j) {
        row[j - r + k - 1] -= m * prow[j - c + k - 1];
      }
      cy[r] -= m * cy[c];
      if (parametric) {
        cx[r] -= m * cx[c];
      }
    }
  }
  for (int i = n - 1; i >= 0; --i) {
    const double* row = band + i * w;
    const int last = std::min(n - 1, i + k - 1);
    for (int j = i + 1; j <= last; ++j) {
      cy[i] -= row[j - i + k - 1] * cy[j];
      if (parametric) {
        cx[i] -= row[j - i + k - 1] * cx[j];
      }
    }
    cy[i] /= row[k - 1];
    if (parametric) {
      cx[i] /= row[k - 1];
    }
  }
  if (!all_finite(cy, n) || (parametric && !all_finite(cx, n))) {
    return SplineResult::Singular;  // nearly singular: the coefficients overflowed
  }

  // The grid: uniform in the parameter (in log10 x with log_x) between its first and last
  // values; its ends are the data ends exactly.
  const double first = log_x ? std::log10(x[0]) : p[0];
  const double h = ((log_x ? std::log10(x[n - 1]) : p[n - 1]) - first) / npts;
  for (int i = 1; i < npts; ++i) {
    const double q = first + i * h;
    const double at = log_x ? std::pow(10.0, q) : q;
    const int l = knot_interval(knots, n, k, at);
    ys[i] = de_boor(knots, cy, k, l, at, b);
    xs[i] = parametric ? de_boor(knots, cx, k, l, at, b) : at;
  }
  xs[0] = x[0];
  ys[0] = y[0];
  xs[npts] = x[n - 1];
  ys[npts] = y[n - 1];
  return SplineResult::Ok;
}

}  // namespace zorvel

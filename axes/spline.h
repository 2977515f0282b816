#pragma once
// B-spline interpolation of data points, for curve (SPLI, PSPL) and spline.

#include <vector>

namespace zorvel {

enum class SplineResult {
  Ok,
  BadCount,       // n < order, or (2 * order - 1) * n > 1000: warning 31
  NotIncreasing,  // x not strictly increasing (not for the parametric form): warning 32
  Singular,       // the collocation system is singular: warning 38
};

// Buffers of the interpolation, kept between calls so that repeated splines allocate
// nothing once they have grown.
struct SplineWork {
  std::vector<double> t;       // parameter values
  std::vector<double> knots;
  std::vector<double> band;    // the banded collocation matrix
  std::vector<double> cx;      // coefficients
  std::vector<double> cy;
  std::vector<double> scratch;
};

// Interpolates the n points (x, y) with a spline of the given degree (order degree + 1)
// and writes npts + 1 points into xs and ys (each must hold npts + 1 values): the first
// and last are the first and last data points exactly. parametric: x and y are
// interpolated separately over the cumulative chord length; otherwise over x. log_x:
// the evaluation grid is uniform in log10 x (x > 0 required; not for the parametric
// form). Nothing is written unless the result is Ok.
SplineResult interpolate_spline(const double* x, const double* y, int n, int degree, int npts,
                                bool parametric, bool log_x, double* xs, double* ys,
                                SplineWork& work);

}  // namespace zorvel

/* The data of workload W7 (see WORKLOAD.md), shared by the C programs of this folder:
 * the grid z = sin(3x) cos(2y) + 0.3 x over [0, 4] x [0, 3], and the points of the R2
 * sequence for the triangulation. */
#ifndef ZORVEL_BENCH_W7_DATA_H
#define ZORVEL_BENCH_W7_DATA_H

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#define W7_XMAX 4.0
#define W7_YMAX 3.0
#define W7_CONTOUR_N 1000 /* w7c: 1000 x 1000 values */
#define W7_HEAT_N 2000    /* w7h: 2000 x 2000 values */
#define W7_SURFACE_N 200  /* w7s: 200 x 200 values */
#define W7_POINTS 1000000L /* w7t */
#define W7_LEVELS 21      /* w7c: equally spaced over [min, max] */
/* The R2 sequence: powers of 1/phi2, phi2 the root of x^3 = x + 1. */
#define W7_R2_A1 0.7548776662466927
#define W7_R2_A2 0.5698402909980532

static inline void* w7_xmalloc(size_t n) {
  void* p = malloc(n);
  if (!p) {
    fprintf(stderr, "out of memory\n");
    exit(2);
  }
  return p;
}

/* n x n values: x[i] = 4 i / (n - 1), y[j] = 3 j / (n - 1), z[j * n + i] at (x[i], y[j]);
 * their range in *zmin, *zmax. */
static inline void w7_grid(int n, double* x, double* y, double* z, double* zmin,
                           double* zmax) {
  int i, j;
  double lo = HUGE_VAL, hi = -HUGE_VAL;
  for (i = 0; i < n; i++) {
    x[i] = W7_XMAX * i / (n - 1);
    y[i] = W7_YMAX * i / (n - 1);
  }
  for (j = 0; j < n; j++) {
    const double cy = cos(2.0 * y[j]);
    for (i = 0; i < n; i++) {
      const double v = sin(3.0 * x[i]) * cy + 0.3 * x[i];
      z[(size_t)j * n + i] = v;
      if (v < lo) lo = v;
      if (v > hi) hi = v;
    }
  }
  *zmin = lo;
  *zmax = hi;
}

/* frac(t) = t - floor(t); every t here is at least 0.5, where truncation is floor. */
static inline double w7_frac(double t) { return t - (double)(long long)t; }

/* Point k: (frac(0.5 + k A1), frac(0.5 + k A2)). */
static inline void w7_points(long n, double* x, double* y) {
  long k;
  for (k = 0; k < n; k++) {
    x[k] = w7_frac(0.5 + (double)k * W7_R2_A1);
    y[k] = w7_frac(0.5 + (double)k * W7_R2_A2);
  }
}

#endif

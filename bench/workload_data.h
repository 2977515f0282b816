/* The data of the benchmark workloads, computed exactly as the peers' programs compute it
 * (the same formulas in IEEE double, the same order), so that every program draws the
 * same numbers. */
#ifndef ZORVEL_BENCH_WORKLOAD_DATA_H
#define ZORVEL_BENCH_WORKLOAD_DATA_H

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

/* W1: x_i = i / N * 10, y_i = sin(3 x_i) cos(17 x_i), i = 0 .. N-1. */
static inline void w1_data(long n, double* x, double* y) {
  long i;
  for (i = 0; i < n; i++) {
    double xi = (double)i / (double)n * 10.0;
    x[i] = xi;
    y[i] = sin(3.0 * xi) * cos(17.0 * xi);
  }
}

/* W2: file k, curve c, m points: x_i = i / m * 10, y = sin((c + 1) x + 0.01 k) (1 - 0.25 c). */
static inline void w2_data(int k, int c, int m, double* x, double* y) {
  int i;
  for (i = 0; i < m; i++) {
    double xi = (double)i / (double)m * 10.0;
    x[i] = xi;
    y[i] = sin((c + 1) * xi + 0.01 * k) * (1.0 - 0.25 * c);
  }
}

/* W4: the R2 sequence, x = 10 frac(0.5 + k a1), y = 2 frac(0.5 + k a2) - 1. */
static inline double w4_frac(double v) { return v - floor(v); }
static inline void w4_data(long n, double* x, double* y) {
  long k;
  for (k = 0; k < n; k++) {
    x[k] = 10.0 * w4_frac(0.5 + (double)k * 0.7548776662466927);
    y[k] = 2.0 * w4_frac(0.5 + (double)k * 0.5698402909980532) - 1.0;
  }
}

/* W3: 20,000 labels in 100 columns and 200 rows. */
enum { W3_LABELS = 20000, W3_COLUMNS = 100 };

static inline void* bench_alloc(size_t n) {
  void* p = malloc(n);
  if (p == NULL) {
    fprintf(stderr, "out of memory\n");
    exit(2);
  }
  return p;
}

#endif

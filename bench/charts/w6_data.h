/* The data of chart workload W6 (see WORKLOAD.md), shared by the C programs of this folder:
 * N normal samples by Box-Muller from the R2 sequence, and their histogram into 1,000 bins
 * over [-5, 5] with the same edge rule as numpy's histogram, so that every program shows
 * the same counts. */
#ifndef ZORVEL_BENCH_W6_DATA_H
#define ZORVEL_BENCH_W6_DATA_H

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#define W6_N 1000000L
#define W6_BINS 1000
#define W6_LO (-5.0)
#define W6_HI 5.0
#define W6_YMAX 4500.0 /* page 1: y axis [0, W6_YMAX] */
#define W6_BARS 100    /* page 2: bars i = 0..99, height 1 + i mod 10, width 0.8 */
#define W6_R2_A1 0.7548776662466927
#define W6_R2_A2 0.5698402909980532

static inline double w6_frac(double t) { return t - floor(t); }

/* Sample k: u = frac(0.5 + k A1), v = frac(0.5 + k A2), u >= 1e-12,
 * x = sqrt(-2 ln u) cos(2 pi v). */
static inline void w6_data(long n, double* x) {
  long k;
  for (k = 0; k < n; k++) {
    double u = w6_frac(0.5 + (double)k * W6_R2_A1);
    double v = w6_frac(0.5 + (double)k * W6_R2_A2);
    if (u < 1e-12) u = 1e-12;
    x[k] = sqrt(-2.0 * log(u)) * cos(2.0 * 3.141592653589793 * v);
  }
}

/* Edge j of the bins: j * 0.01 - 5, the last one exactly 5. */
static inline double w6_edge(long j) {
  return j == W6_BINS ? W6_HI : (double)j * ((W6_HI - W6_LO) / W6_BINS) + W6_LO;
}

/* Bin j holds edge(j) <= x < edge(j + 1); the last bin also holds x = 5; values outside
 * [-5, 5] are left out. */
static inline void w6_histogram(long n, const double* x, long* count) {
  const double scale = W6_BINS / (W6_HI - W6_LO);
  long k, j;
  for (j = 0; j < W6_BINS; j++) count[j] = 0;
  for (k = 0; k < n; k++) {
    double t = x[k];
    if (!(t >= W6_LO && t <= W6_HI)) continue;
    j = (long)((t - W6_LO) * scale);
    if (j == W6_BINS) j--;
    if (t < w6_edge(j))
      j--;
    else if (j != W6_BINS - 1 && t >= w6_edge(j + 1))
      j++;
    count[j]++;
  }
}

static inline void* w6_xmalloc(size_t n) {
  void* p = malloc(n);
  if (!p) {
    fprintf(stderr, "out of memory\n");
    exit(2);
  }
  return p;
}

#endif

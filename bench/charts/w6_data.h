/* The data of chart workload W6 (see WORKLOAD.md), shared by the C programs of this folder:
 * N bell-shaped samples from the R4 sequence, and their histogram into 1,000 bins
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
/* The R4 sequence: powers of 1/phi4, phi4 the root of x^5 = x + 1. */
#define W6_R4_A1 0.8566748838545029
#define W6_R4_A2 0.7338918566271260
#define W6_R4_A3 0.6287067210378087
#define W6_R4_A4 0.5385972572236101

/* frac(t) = t - floor(t); every t here is at least 0.5, where truncation is floor. */
static inline double w6_frac(double t) { return t - (double)(long long)t; }

/* Sample k: sqrt(3) (f1 + f2 + f3 + f4 - 2), f_j = frac(0.5 + k A_j): the scaled sum of
 * the four coordinates of the R4 sequence, mean 0, variance 1, within +-2 sqrt(3). */
static inline void w6_data(long n, double* x) {
  long k;
  for (k = 0; k < n; k++) {
    const double t = (double)k;
    const double f = w6_frac(0.5 + t * W6_R4_A1) + w6_frac(0.5 + t * W6_R4_A2) +
                     w6_frac(0.5 + t * W6_R4_A3) + w6_frac(0.5 + t * W6_R4_A4);
    x[k] = 1.7320508075688772 * (f - 2.0);
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

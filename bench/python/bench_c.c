/* The C side of bench/python: the same two measurements as bench.py.
 *   calls  CALLS calls of a cheap routine (setclr at level 1), wall time per call
 *   w1     W1 (workload_data.h) with N points into a PostScript file, from zorini to
 *          zorfin, wall time
 * usage: bench_python_c CALLS N OUTPREFIX */
#define _POSIX_C_SOURCE 199309L
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

#include "../workload_data.h"
#include "zorvel.h"

static double now(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return t.tv_sec + t.tv_nsec * 1e-9;
}

int main(int argc, char** argv) {
  if (argc != 4) {
    fprintf(stderr, "usage: bench_python_c CALLS N OUTPREFIX\n");
    return 2;
  }
  const long calls = atol(argv[1]);
  const long n = atol(argv[2]);
  char file[1024];
  double* x = bench_alloc((size_t)n * sizeof *x);
  double* y = bench_alloc((size_t)n * sizeof *y);
  w1_data(n, x, y);

  snprintf(file, sizeof file, "%s_calls.ps", argv[3]);
  metafl("PS");
  setfil(file);
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  double t0 = now();
  for (long i = 0; i < calls; i++) {
    setclr((int)(i & 255));
  }
  const double t_calls = now() - t0;
  zorfin();

  snprintf(file, sizeof file, "%s_w1.ps", argv[3]);
  t0 = now();
  metafl("PS");
  setfil(file);
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  name("X axis", "X");
  name("Y axis", "Y");
  titlin("W1 big curve", 1);
  graf(0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5);
  title();
  curve(x, y, (int)n);
  endgrf();
  zorfin();
  const double t_w1 = now() - t0;
  printf("C      calls: %.1f ns per call   W1 %ld points: %.3f s\n", t_calls / calls * 1e9, n,
         t_w1);
  free(x);
  free(y);
  return 0;
}

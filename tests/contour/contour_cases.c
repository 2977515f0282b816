/* Runs contour routines on data from standard input and prints their results with %.17g,
 * for reference.py, which compares them with other programs' answers.
 *
 *   conpts NX NY LEVEL        then NX x values, NY y values, NX*NY z values (row by row;
 *                             "nan" for a hole). Prints "lines K", then per line
 *                             "line N" and its N points "x y".
 *   triang N                  then N points "x y". Prints "triangles T", then per
 *                             triangle its three 1-based corners.
 *
 * The library's warnings appear on standard output between them. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include "zorvel.h"

static double* read_values(long n) {
  double* v = malloc(sizeof(double) * (size_t)(n > 0 ? n : 1));
  long i;
  for (i = 0; i < n; i++) {
    if (scanf("%lf", &v[i]) != 1) {
      fprintf(stderr, "contour_cases: missing value %ld\n", i);
      exit(2);
    }
  }
  return v;
}

static void run_conpts(void) {
  int nx = 0, ny = 0, nlin = 0, i, k, used = 0;
  double level = 0;
  double *x, *y, *z, *xp, *yp;
  int* nray;
  const int nmax = 1000000, nlmax = 100000;
  if (scanf("%d %d %lf", &nx, &ny, &level) != 3) {
    exit(2);
  }
  x = read_values(nx);
  y = read_values(ny);
  z = read_values((long)nx * ny);
  xp = malloc(sizeof(double) * nmax);
  yp = malloc(sizeof(double) * nmax);
  nray = malloc(sizeof(int) * nlmax);
  conpts(x, nx, y, ny, z, level, xp, yp, nmax, nray, nlmax, &nlin);
  printf("lines %d\n", nlin);
  for (k = 0; k < nlin; k++) {
    printf("line %d\n", nray[k]);
    for (i = 0; i < nray[k]; i++, used++) {
      printf("%.17g %.17g\n", xp[used], yp[used]);
    }
  }
  free(x), free(y), free(z), free(xp), free(yp), free(nray);
}

static void run_triang(void) {
  int n = 0, i, nt;
  double *x, *y;
  int *a, *b, *c;
  if (scanf("%d", &n) != 1) {
    exit(2);
  }
  x = malloc(sizeof(double) * (size_t)n);
  y = malloc(sizeof(double) * (size_t)n);
  for (i = 0; i < n; i++) {
    if (scanf("%lf %lf", &x[i], &y[i]) != 2) {
      exit(2);
    }
  }
  a = malloc(sizeof(int) * (size_t)(2 * n + 1));
  b = malloc(sizeof(int) * (size_t)(2 * n + 1));
  c = malloc(sizeof(int) * (size_t)(2 * n + 1));
  nt = triang(x, y, n, a, b, c, 2 * n + 1);
  printf("triangles %d\n", nt);
  for (i = 0; i < nt; i++) {
    printf("%d %d %d\n", a[i], b[i], c[i]);
  }
  free(x), free(y), free(a), free(b), free(c);
}

int main(void) {
  char what[16];
  while (scanf("%15s", what) == 1) {
    if (strcmp(what, "conpts") == 0) {
      run_conpts();
    } else if (strcmp(what, "triang") == 0) {
      run_triang();
    } else {
      fprintf(stderr, "contour_cases: unknown request %s\n", what);
      return 2;
    }
    fflush(stdout);
  }
  return 0;
}

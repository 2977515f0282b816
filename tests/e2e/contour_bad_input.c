/* Hostile input to the contour routines: every refusal gives its numbered warning and
 * draws nothing, values that are not numbers are masked without a word, output arrays
 * that are too small get what fits and the size they would need, and the PostScript file
 * written around it all stays valid (the consumer check reads it). */
#include <math.h>
#include <stdio.h>
#include "zorvel.h"

#define N 4

static void show_lines(const char* what, int nlin, const int* nray) {
  int k;
  printf("%s: %d lines", what, nlin);
  for (k = 0; k < nlin; k++) {
    printf(" %d", nray[k]);
  }
  printf("\n");
}

int main(void) {
  double x[N] = {0, 1, 2, 3}, y[N] = {0, 1, 2, 3}, z[N * N];
  double bad_x[N] = {0, 2, 1, 3}, nan_y[N] = {0, 1, NAN, 3}, flat[N * N];
  double xp[64], yp[64], px[8] = {0, 1, 0, 1, 0.5, 0.5, 0.5, 3}, py[8] = {0, 0, 1, 1, 0.5, 0.5, 0.5, 3};
  double cx[6] = {0, 1, 2, 3, 4, 5}, cy[6] = {0, 0, 0, 0, 0, 0};
  int nray[8], i1[16], i2[16], i3[16], nlin = -1, i, j, nt;
  const int bad_i1[2] = {1, 0}, bad_i2[2] = {2, 2}, bad_i3[2] = {3, 9};

  for (j = 0; j < N; j++) {
    for (i = 0; i < N; i++) {
      z[j * N + i] = (i - 1.5) * (i - 1.5) + (j - 1.5) * (j - 1.5); /* a bowl */
      flat[j * N + i] = 2.0;
    }
  }
  metafl("PS");
  setfil("contour_bad_input.ps");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");

  printf("outside an axis system\n");
  contur(x, N, y, N, z, 1.0);
  congap(-1.0);
  congap(10.5);
  congap(2.0);

  printf("grids\n");
  graf(0, 3, 0, 1, 0, 3, 0, 1);
  contur(x, 1, y, N, z, 1.0);   /* too few points */
  contur(x, N, y, -3, z, 1.0);
  contur(bad_x, N, y, N, z, 1.0);
  contur(x, N, nan_y, N, z, 1.0);
  contur(x, N, y, N, z, NAN);
  contur(x, N, y, N, flat, 2.0); /* flat at the level: nothing, silently */
  z[5] = NAN;
  z[10] = INFINITY;
  contur(x, N, y, N, z, 1.0);    /* masked cells, silently */
  concrv(px, py, 1, 0.5);
  concrv(px, py, 4, INFINITY);

  printf("triangles\n");
  contri(px, py, px, 2, bad_i1, bad_i2, bad_i3, 2, 0.5);
  contri(px, py, px, 8, bad_i1, bad_i2, bad_i3, 0, 0.5);
  contri(px, py, px, 8, bad_i1, bad_i2, bad_i3, 2, 0.5); /* the second (0, 2, 9) skipped */
  endgrf();

  printf("conpts\n");
  z[5] = 1.25;
  z[10] = 0.25;
  conpts(x, N, y, N, z, 1.0, xp, yp, 64, nray, 8, &nlin);
  show_lines("enough room", nlin, nray);
  conpts(x, N, y, N, z, 1.0, xp, yp, 64, nray, 0, &nlin);
  show_lines("no room for lines", nlin, nray);
  conpts(x, N, y, N, z, 1.0, xp, yp, 3, nray, 8, &nlin);
  show_lines("room for 3 points", nlin, nray);
  conpts(x, N, y, N, z, 9.0, xp, yp, 64, nray, 8, &nlin);
  show_lines("a level above the data", nlin, nray);

  printf("triang\n");
  nt = triang(px, py, 2, i1, i2, i3, 16);
  printf("2 points: %d\n", nt);
  nt = triang(cx, cy, 6, i1, i2, i3, 16);
  printf("collinear: %d\n", nt);
  nt = triang(px, py, 8, i1, i2, i3, 16);
  printf("duplicates: %d\n", nt);
  nt = triang(px, py, 8, i1, i2, i3, 5);
  printf("room for 5: %d\n", nt);
  px[7] = NAN;
  nt = triang(px, py, 8, i1, i2, i3, 16);
  printf("a point that is not a number: %d\n", nt);
  zorfin();
  return 0;
}

/* Hostile input to the colour plots and shaded contours: every refusal gives its numbered
 * warning, levels out of order are sorted with a warning, values a log colour scale
 * cannot show are reported once and left empty, a 3D routine inside graf3 is told apart
 * from one outside any 3D axis system, and the PostScript file stays valid. */
#include <math.h>
#include <stdio.h>
#include "zorvel.h"

#define N 4

int main(void) {
  double x[N] = {0, 1, 2, 3}, bad_x[N] = {0, 2, 1, 3}, z[N * N], neg[N * N];
  double lev[3] = {3, 1, 2}, nan_lev[2] = {1, NAN};
  const int i1[2] = {1, 1}, i2[2] = {2, 3}, i3[2] = {3, 9};
  int i, j;
  for (j = 0; j < N; j++) {
    for (i = 0; i < N; i++) {
      z[j * N + i] = i + j;
      neg[j * N + i] = i - 1.0;
    }
  }
  metafl("PS");
  setfil("colour_bad_input.ps");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");

  printf("settings\n");
  colmat(x, N, x, N, z); /* outside an axis system */
  colbar("MIDD", 40, 30);
  colbar("LEFT", 0, 30);
  colran(-1, 254);
  colran(1, 256);
  colopt("SOME", "OUTS");
  conopt("ALL", "EXTE");
  graf3(0, 3, 0, 1, 0, 3, 0, 1, 0, 6, 0, -1); /* step against the scaling */
  endgrf();

  printf("grids and levels\n");
  graf3(0, 3, 0, 1, 0, 3, 0, 1, 0, 6, 0, 1);
  colmat(x, 1, x, N, z);
  colmat(bad_x, N, x, N, z);
  conshd(x, N, x, N, z, lev, 3); /* sorted, drawn */
  conshd(x, N, x, N, z, lev, 0);
  conshd(x, N, x, N, z, nan_lev, 2);
  coltri(x, x, z, N, i1, i2, i3, 2); /* the second triangle skipped */
  shdtri(x, x, z, N, i1, i2, i3, 2, lev, 3);
  colpts(x, x, z, 0);
  curv3d(x, x, z, N); /* a 3D routine in graf3 */
  endgrf();
  graf(0, 3, 0, 1, 0, 3, 0, 1);
  curv3d(x, x, z, N); /* and in graf */
  endgrf();

  printf("log colour scale\n");
  axsscl("LOG", "Z");
  graf3(0, 3, 0, 1, 0, 3, 0, 1, -1, 1, -1, 1);
  colmat(x, N, x, N, neg); /* values <= 0: once, left empty */
  endgrf();
  zorfin();
  return 0;
}

/* Writes the W6 histogram for charts.gp (not timed): 1,000 (bin centre, count) float64
 * pairs. usage: mkcharts OUTFILE */
#include "w6_data.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    fprintf(stderr, "usage: %s OUTFILE\n", argv[0]);
    return 2;
  }
  double* x = w6_xmalloc(W6_N * sizeof *x);
  static long count[W6_BINS];
  w6_data(W6_N, x);
  w6_histogram(W6_N, x, count);
  free(x);
  FILE* f = fopen(argv[1], "wb");
  if (!f) {
    perror(argv[1]);
    return 1;
  }
  for (long j = 0; j < W6_BINS; j++) {
    double p[2] = {0.5 * (w6_edge(j) + w6_edge(j + 1)), (double)count[j]};
    fwrite(p, sizeof p, 1, f);
  }
  return fclose(f) != 0;
}

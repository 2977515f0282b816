/* Writes the W6 values for charts.gp (not timed): the 1,000,000 samples as float64, which
 * gnuplot reads and bins itself, as the other programs do. usage: mkcharts OUTFILE */
#include "w6_data.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    fprintf(stderr, "usage: %s OUTFILE\n", argv[0]);
    return 2;
  }
  double* x = w6_xmalloc(W6_N * sizeof *x);
  w6_data(W6_N, x);
  FILE* f = fopen(argv[1], "wb");
  if (!f) {
    perror(argv[1]);
    return 1;
  }
  const size_t written = fwrite(x, sizeof *x, (size_t)W6_N, f);
  free(x);
  return (fclose(f) != 0 || written != (size_t)W6_N) ? 1 : 0;
}

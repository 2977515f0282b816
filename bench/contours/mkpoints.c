/* Writes the W7 triangulation points for qhull's qdelaunay (not timed): "2", the number of
 * points, then one point a line, in qhull's input format. usage: mkpoints OUTFILE */
#include "w7_data.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    fprintf(stderr, "usage: %s OUTFILE\n", argv[0]);
    return 2;
  }
  double* x = w7_xmalloc(W7_POINTS * sizeof *x);
  double* y = w7_xmalloc(W7_POINTS * sizeof *y);
  w7_points(W7_POINTS, x, y);
  FILE* f = fopen(argv[1], "w");
  if (!f) {
    perror(argv[1]);
    return 1;
  }
  int bad = fprintf(f, "2\n%ld\n", W7_POINTS) < 0;
  for (long k = 0; k < W7_POINTS && !bad; k++) bad = fprintf(f, "%.17g %.17g\n", x[k], y[k]) < 0;
  free(x);
  free(y);
  return (fclose(f) != 0 || bad) ? 1 : 0;
}

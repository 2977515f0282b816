/* Workload W8 (WORKLOAD.md): 10,000 formula labels on one A4 landscape page, PS or PDF;
 * w8x: 20,000 exponent labels "x[2$" of the instruction alphabet, 100 by 200.
 * usage: bench_formulas w8|w8x ps|pdf OUTPREFIX */
#include <stdio.h>
#include <string.h>

#include "zorvel.h"

int main(int argc, char** argv) {
  char file[1024];
  int i;
  int exponents;
  if (argc != 4 || (strcmp(argv[1], "w8") != 0 && strcmp(argv[1], "w8x") != 0) ||
      (strcmp(argv[2], "ps") != 0 && strcmp(argv[2], "pdf") != 0)) {
    fprintf(stderr, "usage: %s w8|w8x ps|pdf OUTPREFIX\n", argv[0]);
    return 2;
  }
  exponents = strcmp(argv[1], "w8x") == 0;
  snprintf(file, sizeof file, "%s.%s", argv[3], argv[2]);
  metafl(strcmp(argv[2], "ps") == 0 ? "PS" : "PDF");
  setfil(file);
  filmod("DELE");
  setpag("DA4L");
  zorini();
  errmod("PROT", "OFF");
  if (exponents) {
    mixalf();
  } else {
    texmod("ON");
  }
  height(7);
  txtjus("CENT");
  txtjus("MIDD");
  if (exponents) {
    for (i = 0; i < 20000; ++i) {
      const int x = (int)((i % 100 + 0.5) * 2970.0 / 100.0);
      const int y = (int)((i / 100 + 0.5) * 2100.0 / 200.0);
      messag("x[2$", x, y);
    }
    zorfin();
    return 0;
  }
  for (i = 0; i < 10000; ++i) {
    const int x = (int)((i % 100 + 0.5) * 2970.0 / 100.0);
    const int y = (int)((i / 100 + 0.5) * 2100.0 / 100.0);
    messag("$\\frac{\\alpha_i^2}{\\sqrt{2\\pi}}$", x, y);
  }
  zorfin();
  return 0;
}

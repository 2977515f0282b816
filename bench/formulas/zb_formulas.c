/* Workload W8 (WORKLOAD.md): 10,000 formula labels on one A4 landscape page, PS or PDF.
 * usage: bench_formulas w8 ps|pdf OUTPREFIX */
#include <stdio.h>
#include <string.h>

#include "zorvel.h"

int main(int argc, char** argv) {
  char file[1024];
  int i;
  if (argc != 4 || strcmp(argv[1], "w8") != 0 ||
      (strcmp(argv[2], "ps") != 0 && strcmp(argv[2], "pdf") != 0)) {
    fprintf(stderr, "usage: %s w8 ps|pdf OUTPREFIX\n", argv[0]);
    return 2;
  }
  snprintf(file, sizeof file, "%s.%s", argv[3], argv[2]);
  metafl(strcmp(argv[2], "ps") == 0 ? "PS" : "PDF");
  setfil(file);
  filmod("DELE");
  setpag("DA4L");
  zorini();
  errmod("PROT", "OFF");
  texmod("ON");
  height(7);
  txtjus("CENT");
  txtjus("MIDD");
  for (i = 0; i < 10000; ++i) {
    const int x = (int)((i % 100 + 0.5) * 2970.0 / 100.0);
    const int y = (int)((i / 100 + 0.5) * 2100.0 / 100.0);
    messag("$\\frac{\\alpha_i^2}{\\sqrt{2\\pi}}$", x, y);
  }
  zorfin();
  return 0;
}

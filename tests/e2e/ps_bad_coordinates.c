/* Catches NaN or infinite coordinates reaching a PostScript file as "nan" or "inf",
 * and huge coordinates overflowing the integer conversion (undefined behaviour that the
 * sanitizer build stops at): with clipping off they reach the driver, which clamps them.
 * The file must still be valid PostScript (the Ghostscript check reads it). */
#include <math.h>
#include <stdio.h>
#include <string.h>
#include "zorvel.h"

int main(void) {
  char line_buf[256];
  int bad = 0;
  FILE* f;
  metafl("PS");
  setfil("bad_coordinates.ps");
  zorini();
  noclip();
  strtpt(100, 100);
  connpt(NAN, 200);
  connpt(300, INFINITY);
  strtpt(100, 100);
  connpt(1e300, -1e300);
  connpt(-1e300, 1e300);
  connpt(2147483648.0, -2147483649.0);
  connpt(200, 200);
  zorfin();
  f = fopen("bad_coordinates.ps", "r");
  if (f == NULL) {
    printf("no file\n");
    return 1;
  }
  while (fgets(line_buf, sizeof line_buf, f) != NULL) {
    if (strstr(line_buf, "nan") != NULL || strstr(line_buf, "inf") != NULL ||
        strlen(line_buf) > 81) {
      bad++;
    }
  }
  fclose(f);
  printf("bad lines: %d\n", bad);
  return 0;
}

/* Settings a caller can make that must neither crash, run without end, nor write a file
 * that its consumer rejects (the Ghostscript check reads every file left here):
 * an origin far out, frames and scale factors beyond what can be drawn, a font matrix
 * squeezed to nothing, a page of kilometres, text at the extreme y of a page counted from
 * the bottom, and a plot still open when its state is freed by thrfin, which must be
 * finished rather than lost. */
#include <limits.h>
#include <stdio.h>
#include <string.h>
#include "zorvel.h"

static int file_has(const char* name, const char* text) {
  char line_buf[256];
  int found = 0;
  FILE* f = fopen(name, "r");
  if (f == NULL) {
    return 0;
  }
  while (fgets(line_buf, sizeof line_buf, f) != NULL) {
    if (strstr(line_buf, text) != NULL) {
      found = 1;
    }
  }
  fclose(f);
  return found;
}

int main(void) {
  metafl("EPS");
  setfil("hostile.eps");
  page(3000000, 3000000); /* refused: larger than 10 m */
  sclfac(100.0);          /* refused: the scale command would run its numbers together */
  sclfac(0.0001);         /* refused: it would read 0 */
  sclfac(0.5);
  zorini();
  errmod("PROT", "OFF");
  origin(INT_MAX, 0); /* refused */
  origin(9999999, 0); /* accepted, text lands far off the page */
  messag("x", 1, 1);
  number(1.5, 1, 1, 1);
  origin(0, 0);
  frmess(INT_MAX); /* refused: hours of frames */
  frmess(3);
  hwfont();
  chawth(1e-4); /* a font matrix of width 0 would be singular */
  messag("Squeezed", 100, 100);
  pagorg("BOTT");
  messag("far", 0, INT_MIN);
  number(1.0, 1, 0, INT_MIN);
  pagorg("TOP");
  zorfin();
  printf("scale line: %d\n", file_has("hostile.eps", "0.500000  0.500000 scale"));

  metafl("PS");
  setfil("open_at_thrfin.ps");
  zorini();
  errmod("PROT", "ON");
  messag("drawn before thrfin", 100, 100);
  thrini(2);
  thrfin(); /* frees the block with its plot open: the plot is finished */
  printf("finished: %d\n", file_has("open_at_thrfin.ps", "%%EOF"));
  return 0;
}

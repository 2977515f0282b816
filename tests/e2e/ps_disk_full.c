/* Catches a PostScript plot on a full disk that crashes, stays silent, or warns more
 * than once: the first failed block write (well before zorfin) gives warning 36 in the
 * routine that was drawing, and nothing more is reported for the rest of the plot. */
#include <stdio.h>
#include "zorvel.h"

int main(void) {
  int i;
  metafl("PS");
  setfil("/dev/full");
  zorini();
  printf("level %d\n", getlev());
  for (i = 0; i < 20000; i++) {
    line(100 + i % 2000, 100, 2800 - i % 2000, 2000);
  }
  newpag();
  for (i = 0; i < 100; i++) {
    line(100, 100 + i, 2800, 2000 - i);
  }
  zorfin();
  printf("level %d\n", getlev());
  return 0;
}

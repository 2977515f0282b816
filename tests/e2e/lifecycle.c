/* Catches faults of the plot life cycle: level checks, the default metafile, the file
 * name and the exact summary under a fixed date. */
#include <stdio.h>
#include "zorvel.h"

int main(void) {
  printf("level %d\n", getlev());
  zorfin();                /* wrong level: warning 3 with the level */
  zorini();
  printf("level %d\n", getlev());
  zorini();                /* twice: warning 3, plot stays open */
  zorfin();
  printf("level %d\n", getlev());
  return 0;
}

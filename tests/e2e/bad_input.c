/* Catches crashes and silent failures on bad input: null strings, over-long strings,
 * unwritable plot files (missing directory, a path below a regular file) and a write
 * error at the end of the plot (a full disk). */
#include <stdio.h>
#include <string.h>
#include "zorvel.h"

int main(void) {
  char longname[400];
  FILE* f;
  metafl(NULL);                  /* empty keyword: warning 2 */
  filmod(NULL);
  setfil(NULL);                  /* no name: warning 37 */
  errmod("PROT", NULL);          /* warning 3 (level 0), then warning 2 */
  metafl("gkslgkslgksl");        /* cut to four characters: accepted */
  memset(longname, 'n', sizeof longname - 1);
  longname[sizeof longname - 1] = '\0';
  setfil(longname);              /* cut to 256 characters: too long a name to create */
  zorini();                      /* warning 36 */
  printf("level %d\n", getlev());
  setfil("/nonexistent/folder/plot.met");
  zorini();                      /* warning 36 */
  f = fopen("regular", "w");
  if (f != NULL) {
    fclose(f);
  }
  setfil("regular/plot.met");
  zorini();                      /* warning 36 */
  printf("level %d\n", getlev());
  setfil("/dev/full");
  zorini();                      /* opens; the writes fail */
  printf("level %d\n", getlev());
  zorfin();                      /* warning 36 once, then the summary */
  printf("level %d\n", getlev());
  return 0;
}

/* Catches faults of the message device and the plot life cycle: unit(0) silencing
 * everything but the level warning of the entry check, warnings switched off but still
 * counted, the message file with its versioning, the summary's Err-file line, and the
 * level checks of zorini and zorfin (a second zorini leaves the plot open), and a
 * message file that cannot be opened: warning 186 names it, and the messages and the
 * summary come on the console instead. */
#include <stdio.h>
#include "zorvel.h"

int main(void) {
  FILE* f;
  char line[200];
  unit(0);                  /* relaxed at level 0: the warning comes before the switch */
  setpag("XXXX");           /* silent */
  zorfin();                 /* the level warning is always shown */
  setpag("YYYY");           /* shown again: the level warning switched messages back on */
  metafl("GKSL");
  errfil("messages.err");
  errdev("FILE");
  zorini();
  zorini();                 /* twice: level warning, the plot stays open */
  printf("level %d\n", getlev());
  errmod("WARN", "OFF");
  setpag("ZZZZ");           /* level warning counted, not shown */
  errmod("WARN", "ON");
  metafl("nope");           /* level warning into the file */
  zorfin();
  printf("level %d\n", getlev());
  printf("--- message file\n");
  f = fopen("messages.err", "r");
  while (f != NULL && fgets(line, sizeof line, f) != NULL) {
    fputs(line, stdout);
  }
  if (f != NULL) {
    fclose(f);
  }
  printf("--- no message file\n");
  errfil("missing/folder/messages.err");
  zorini();
  setpag("WWWW");           /* warning 186, then the level warning */
  zorfin();
  return 0;
}

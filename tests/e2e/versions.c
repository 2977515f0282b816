/* Catches faults in plot-file naming: the version number format (separator, padding,
 * digit limit), the COUN shortening, deletion and the refusal of an existing file. */
#include <stdio.h>
#include "zorvel.h"

static void touch(const char* name) {
  FILE* f = fopen(name, "w");
  if (f != NULL) {
    fclose(f);
  }
}

static void plot(void) {
  zorini();
  zorfin();
}

int main(void) {
  int i;
  errmod("PROT", "OFF");           /* level 0: warning 3, applied all the same */
  touch("zorvel.met");
  filmod("VERS");
  filopt("UNDE", "SEPA");
  filopt("LONG", "NUMB");
  plot();                          /* zorvel_0001.met */
  filopt("SHOR", "NUMB");
  plot();                          /* zorvel_1.met (zorvel_0001 is another name) */
  filopt("HYPH", "SEPA");
  plot();                          /* zorvel-1.met */
  filopt("NONE", "SEPA");
  plot();                          /* zorvel1.met */
  filopt("2", "DIGI");
  filopt("UNDE", "SEPA");
  for (i = 2; i <= 99; ++i) {
    char name[32];
    sprintf(name, "zorvel_%d.met", i);
    touch(name);
  }
  plot();                          /* all 99 versions exist: warning 170 */
  printf("level %d\n", getlev());
  filopt("7", "DIGI");             /* warning 2 */
  filopt("X", "NOPE");             /* warning 2 for the option only */
  filmod("BREA");
  plot();                          /* warning 169 */
  filmod("DELE");
  setfil("delete_me.met");
  touch("delete_me.met");
  plot();                          /* deleted and written again */
  setfil("countfilename.met");
  touch("countfilename.met");
  filmod("COUN");
  plot();                          /* countf_1.met: base cut to 8 characters with "_1" */
  /* The pages of a single-page format follow the same rules: "VERS" keeps the name
   * whole, a hyphen and four padded digits. */
  metafl("SVG");
  setfil("pages_of_svg.svg");
  filmod("VERS");
  filopt("HYPH", "SEPA");
  filopt("LONG", "NUMB");
  zorini();
  errmod("PROT", "OFF");
  newpag();
  newpag();
  zorfin();
  for (i = 2; i <= 99; ++i) {      /* the files touched above: only the plots stay listed */
    char name[32];
    sprintf(name, "zorvel_%d.met", i);
    remove(name);
  }
  return 0;
}

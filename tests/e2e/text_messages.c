/* Catches faults of the text routines seen from a C caller: the level check before
 * zorini, the exact warning lines for out-of-range parameters, broken UTF-8 and
 * over-long strings, the page warnings, and lengths that nlmess reports. */
#include <stdio.h>
#include <string.h>
#include "zorvel.h"

int main(void) {
  char longer[300];
  messag("too early", 100, 100);         /* level 0: warning 3 */
  zorini();
  printf("nlmess AB %d\n", nlmess("AB"));  /* zoralf, height 36: 2 * 35 */
  printf("nlmess blanks %d\n", nlmess("   "));
  height(10001);
  chaang(60.5);
  chawth(2.0);
  fixspc(0.0);
  number(1.5, 101, 100, 100);
  txtjus("MIDDLE");
  txtjus("UPPER");
  chacod("UTF8");
  messag("bad \xC3(", 100, 100);
  memset(longer, 'x', 257);
  longer[257] = '\0';
  messag(longer, 100, 100);
  printf("nlmess bad %d\n", nlmess("\xFF"));
  chacod("STAN");
  messag("ABC", -20, 100);
  messag("ABC", 2950, 2090);
  complx();
  angle(45);
  printf("nlmess complx AB %d\n", nlmess("AB"));
  zorfin();
  return 0;
}

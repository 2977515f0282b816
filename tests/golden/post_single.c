/* Catches changes in the single-page mode: no multi-page structure, the page comment
 * before the prolog, "showpage" at the end, a user offset and a scale factor; and the
 * "POST" variant clearing its page with erasepage. */
#include "zorvel.h"

int main(void) {
  metafl("POST");
  psmode("SING");
  sclfac(0.7);
  hworig(100, 50);
  setfil("post_single.psc");
  zorini();
  line(100, 100, 2869, 1999);
  dot();
  line(100, 1999, 2869, 100);
  zorfin();
  return 0;
}

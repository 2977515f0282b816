/* Catches any change in the single-page mode: no multi-page structure, the page comment
 * before the prolog, "showpage" at the end, a user offset and a scale factor. */
#include "zorvel.h"

int main(void) {
  metafl("POST");
  psmode("SING");
  sclfac(0.7);
  hworig(100, 50);
  setfil("post_single.psc");
  zorini();
  zorfin();
  return 0;
}

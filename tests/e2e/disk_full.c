/* Catches a plot on a full disk that crashes, stays silent, or warns more than once:
 * in a long PostScript plot the first failed block write (well before zorfin) gives
 * warning 36 in the routine that was drawing, and nothing more is reported for the rest
 * of the plot; then the scene of scene.h in every device with a driver, each warning
 * once and ending at level 0, and a plot after them that is written whole. */
#include <stdio.h>

#include "scene.h"

int main(void) {
  int i;
  char last[200] = "nothing\n";
  FILE* f;
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

  for (i = 0; i < SCENE_KEYS; i++) {
    metafl(scene_keys[i]);
    setfil("/dev/full");
    zorini();
    if (getlev() == 0) {
      continue; /* no driver: warning 183 */
    }
    errmod("PROT", "OFF");
    scene_draw();
    zorfin();
    printf("%s level %d\n", scene_keys[i], getlev());
  }

  metafl("PS");
  setfil("after.ps");
  zorini();
  errmod("PROT", "OFF");
  scene_draw();
  zorfin();
  f = fopen("after.ps", "r");
  while (f != NULL && fgets(last, sizeof last, f) != NULL) {
  }
  if (f != NULL) {
    fclose(f);
  }
  printf("after.ps ends with %s", last);
  return 0;
}

/* The screen routines where no screen is: without a display no plot starts (221); on a
   file device the cursor routines give 222 and -1; bad sizes and window numbers warn.
   The output is compared with warnings.out. */
#include <stdio.h>
#include <zorvel.h>

int main(void) {
  int nx = 0, ny = 0;
  metafl("XWND");
  zorini();
  printf("level after zorini without a display: %d\n", getlev());
  winsiz(0, 100);
  winsiz(20000, 100);
  window(10, 10, -5, 100);
  metafl("PS");
  setfil("/dev/null");
  zorini();
  csrpt1(&nx, &ny);
  printf("csrpt1: %d %d, csrkey: %d\n", nx, ny, csrkey());
  opnwin(9);
  zorfin();
  return 0;
}

/* Hostile input to the axis routines: each call warns as documented, nothing hangs, and
 * the PostScript file written around them stays valid (the consumer check reads it). */
#include <math.h>
#include <stdio.h>
#include <string.h>
#include "zorvel.h"

static void system_with(double xa, double xe, double xor_, double xstp) {
  graf(xa, xe, xor_, xstp, 0.0, 1.0, 0.0, 0.5);
  printf("graf(%g, %g, %g, %g): level %d\n", xa, xe, xor_, xstp, getlev());
  if (getlev() == 2) {
    endgrf();
  }
}

int main(void) {
  char long_text[400];
  memset(long_text, 'n', sizeof long_text - 1);
  long_text[sizeof long_text - 1] = '\0';

  metafl("PS");
  setfil("axes_bad_input.ps");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  axslen(1, 500);            /* below 2 */
  axslen(2, 2);              /* the smallest system */
  axspos(-5, 100);           /* off the page */
  axspos(100, 900000);
  ticks(1001, "X");
  labdig(101, "X");
  titlin("t", 5);
  titlin("t", -2147483647 - 1);  /* no line number whose negation overflows */
  frame(101);
  axclrs(-2, "ALL", "XY");
  labels("NOPE", "X");       /* unknown keyword: the setting stays */
  system_with(0.0, 10.0, 0.0, 2.0);
  axslen(2000, 1200);
  axspos(400, 1600);
  system_with(1.0, 1.0, 1.0, 1.0);          /* equal limits */
  system_with(0.0, 1.0, 0.0, 0.0);          /* zero step */
  system_with(0.0, 1.0, 0.0, -0.5);         /* wrong sign */
  system_with(0.0, NAN, 0.0, 1.0);
  system_with(-INFINITY, 1.0, 0.0, 1.0);
  system_with(-1e308, 1e308, 0.0, 1e307);   /* a range past the largest double */
  system_with(-1e300, 1e300, -1e300, 1e299);
  system_with(0.0, 1e-300, 0.0, 1e-301);    /* below the smallest difference */
  system_with(0.0, 1e-30, 0.0, 2e-31);
  system_with(0.0, 1e7, 0.0, 1e-3);         /* ten billion labels */
  system_with(0.0, 10.0, -1e20, 1.0);       /* ticks counted from a far first label */
  axsscl("LOG", "X");
  system_with(-400.0, 400.0, -400.0, 100.0);  /* 10^-400 .. 10^400 */
  axsscl("LIN", "X");
  name(long_text, "XY");
  titlin(long_text, 1);
  system_with(0.0, 10.0, 0.0, 5.0);
  title();
  {
    double data[3] = {NAN, INFINITY, -INFINITY};
    setscl(data, 3, "X");                    /* not one finite value */
    setscl(data, -1, "X");
  }
  zorfin();
  return 0;
}

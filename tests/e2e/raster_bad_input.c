/* Catches raster pages that crash, allocate without bound, write out of bounds or warn
 * wrongly: sizes of zero and beyond the limits, a page too large for its resolution,
 * pixel access without imgini, twice, outside the page and left open at zorfin, image
 * files of unknown formats, on a vector device and in a missing folder, NaN and huge
 * coordinates, and a file that cannot be written. Every PNG left is checked by pngcheck
 * (consumers.raster_writers). */
#include <math.h>
#include <stdio.h>

#include "zorvel.h"

static void report(const char* what) {
  int nw = -1, nh = -1;
  getimg(&nw, &nh);
  printf("%s: level %d, page %d x %d\n", what, getlev(), nw, nh);
}

int main(void) {
  double x[4] = {0.5, NAN, 1e300, -1e300}, y[4] = {0.5, 0.2, -1e300, INFINITY};
  int row[4] = {0, 0, 0, 0}, nclr = 7, n;
  char small[8];

  imgsiz(0, 100);      /* refused: warning 2 */
  imgsiz(30000, 10);   /* refused */
  imgsiz(10000, 9000); /* refused: more pixels than allowed (231) */
  imgdpi(5);           /* refused */
  imgopt("MAYBE", "ANTI");
  wimage("nothing.png"); /* no raster page yet: 40 */
  report("before");

  metafl("PNG");
  setfil("huge.png");
  setpag("DA0L");
  imgdpi(2400); /* A0 at 2400 dpi: scaled down to the limit, 231 */
  zorini();
  errmod("PROT", "OFF");
  report("huge");
  zorfin();

  metafl("PNG");
  setfil("bad.png");
  setpag("DA4L");
  imgsiz(200, 150);
  zorini();
  errmod("PROT", "OFF");
  report("plot");
  imgfin();                    /* 55 */
  rpixel(0, 0, &nclr);         /* 55 */
  printf("rpixel without imgini: %d\n", nclr);
  imgini();
  imgini();                    /* 54 */
  rpixel(200, 0, &nclr);       /* outside: 2 */
  rpixel(-1, 5, &nclr);
  wpixel(0, 150, 255);
  rpxrow(row, 198, 0, 4);      /* past the row's end */
  wpxrow(row, 0, 0, 0);
  wpixel(3, 3, intrgb(0.0, 0.0, 1.0));
  rpixel(3, 3, &nclr);
  printf("pixel (3, 3): 0x%08X\n", (unsigned)nclr);
  graf(0, 1, 0, 1, 0, 1, 0, 1);
  curve(x, y, 4); /* NaN and far outside: clipped, counted */
  imgopt("ON", "ANTI");
  messag("anti-aliased", 300, 300);
  rlstrt(-1e300, -1e300);
  rlconn(1e300, 1e300);
  endgrf();
  n = rbfpng(small, 8); /* too small: nothing written, the length returned */
  printf("png of %s bytes\n", n > 8 ? "more than 8" : "at most 8");
  wimage("page.xyz");          /* 56 */
  wimage("missing/page.png");  /* 36 */
  wimage("");                  /* 37 */
  wimage("copy.png");
  zorfin();                    /* imgini still open: 54 */
  report("after");

  metafl("PNG");
  setfil("/dev/full");
  zorini();
  errmod("PROT", "OFF");
  line(0, 0, 100, 100);
  zorfin(); /* 36 once */

  metafl("EPS");
  setfil("vector.eps");
  zorini();
  errmod("PROT", "OFF");
  imgini();              /* no raster page on this device: 40 */
  wimage("vector.png");  /* 40 */
  zorfin();
  return 0;
}

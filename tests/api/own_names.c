/* Catches calls inside the library that go through the exported names: this program
 * defines functions named like public routines (common names in user programs); if the
 * library called them, its plot would be broken and these would count the calls. */
#include <stdio.h>

void metafl(const char* cdev);
void setfil(const char* cfil);
void zorini(void);
void zorfin(void);
int getlev(void);
void filmod(const char* cmod);

static int hijacked = 0;
void height(int n) { (void)n; ++hijacked; }
void curve(const double* x, const double* y, int n) { (void)x; (void)y; (void)n; ++hijacked; }
void line(int a, int b, int c, int d) { (void)a; (void)b; (void)c; (void)d; ++hijacked; }
void setpag(const char* c) { (void)c; ++hijacked; }
void page(int a, int b) { (void)a; (void)b; ++hijacked; }
void errmod(const char* a, const char* b) { (void)a; (void)b; ++hijacked; }
void units(const char* c) { (void)c; ++hijacked; }

int main(void) {
  filmod("DELE");
  setfil("own_names.met");
  metafl("GKSL");
  zorini();
  if (getlev() != 1) {
    printf("zorini failed\n");
    return 1;
  }
  zorfin();
  if (hijacked != 0) {
    printf("the library called %d of the program's functions\n", hijacked);
    return 1;
  }
  return 0;
}

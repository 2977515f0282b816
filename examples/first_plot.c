/* The smallest plot: choose a device and a file, start and end the plot. */
#include "zorvel.h"

int main(void) {
  metafl("GKSL");
  setfil("first_plot.met");
  filmod("DELE");
  zorini();
  zorfin();
  return 0;
}

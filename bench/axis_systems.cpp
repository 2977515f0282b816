// Many axis systems on one page: N pairs of graf and endgrf, each a complete labelled
// system (ticks, labels on both axes, names, a title line), the cost of the axes alone.
// The 200 plots of workload W2 each draw one such system besides their curves.
//
// Usage: bench_axis_systems MODE COUNT OUTFILE
//   MODE  zoralf   the default stroke font
//         helve    the filled outline font
//         auto     zoralf, both axes scaled automatically by setscl

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "zorvel.h"

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s zoralf|helve|auto COUNT OUTFILE\n", argv[0]);
    return 2;
  }
  const char* mode = argv[1];
  const int count = std::atoi(argv[2]);
  metafl("PS");
  setfil(argv[3]);
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  if (std::strcmp(mode, "helve") == 0) {
    helve();
  }
  name("Time [s]", "X");
  name("Amplitude", "Y");
  titlin("W2 plot", 1);
  axslen(2200, 1500);
  axspos(450, 1800);
  for (int k = 0; k < count; ++k) {
    if (std::strcmp(mode, "auto") == 0) {
      const double x[2] = {0.0, 10.0 + 0.01 * k};
      const double y[2] = {-1.5, 1.5};
      setscl(x, 2, "X");
      setscl(y, 2, "Y");
    }
    graf(0.0, 10.0, 0.0, 2.0, -1.5, 1.5, -1.5, 0.5);
    title();
    endgrf();
  }
  zorfin();
  return 0;
}

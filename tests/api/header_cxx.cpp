// Catches a header that C++ cannot use: missing extern "C" (link errors), or exception
// declarations that differ from the library's.
#include "zorvel.h"

int main() {
  metafl("GKSL");
  return getlev() == 0 ? 0 : 1;
}

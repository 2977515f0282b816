// Runs the map projections on the points that reference.py sends: each input line
// "kind lat0 lat1 lat2 ellipsoid lon lat" (degrees; lon relative to the central
// meridian) gives "x y lon' lat'" (the map point and its inverse) or "* *" when the
// point has no image. A line "kind ... setup" answers the setup's warning number.

#include <cmath>
#include <cstdio>

#include "maps/projections.h"

int main() {
  constexpr double kDeg = 3.14159265358979323846 / 180.0;
  int kind = 0, ell = 0;
  double lat0 = 0.0, lat1 = 0.0, lat2 = 0.0, lon = 0.0, lat = 0.0;
  char line[256];
  while (std::fgets(line, sizeof line, stdin) != nullptr) {
    if (std::sscanf(line, "%d %lf %lf %lf %d %lf %lf", &kind, &lat0, &lat1, &lat2, &ell, &lon,
                    &lat) != 7) {
      std::printf("bad\n");
      continue;
    }
    zorvel::Projection p;
    const int w = zorvel::setup_projection(p, static_cast<zorvel::ProjKind>(kind), lat0 * kDeg,
                                           lat1 * kDeg, lat2 * kDeg, ell != 0);
    double x = 0.0, y = 0.0, l = 0.0, f = 0.0;
    if (w != 0) {
      std::printf("warning %d\n", w);
    } else if (!zorvel::project(p, lon * kDeg, lat * kDeg, x, y)) {
      std::printf("* *\n");
    } else if (!zorvel::unproject(p, x, y, l, f)) {
      std::printf("%.17g %.17g * *\n", x, y);
    } else {
      std::printf("%.17g %.17g %.17g %.17g\n", x, y, l / kDeg, f / kDeg);
    }
  }
  return 0;
}

// Reads map data files through the library's reader over the whole globe and prints, per
// file, its records, points and the reader's result (0, or 281/282); every point must lie
// in its record's box (shifted by a multiple of 360 degrees), and every ring must close as
// the reader hands it on (longitudes continuous: Antarctica round the pole too). With
// -draw FILE.ps it draws a filled world at mapres("LOW") from $ZORVEL/map/ through the
// public routines instead (their warnings go to the output).

#include <cmath>
#include <cstdio>
#include <string>

#include "maps/map_file.h"
#include "zorvel.h"

namespace {

class Count : public zorvel::MapSink {
 public:
  long records = 0;
  long points = 0;
  long faults = 0;
  bool record(const zorvel::MapRecord& r) override {
    ++records;
    points += r.n;
    if (r.closed && (std::fabs(r.lon[r.n - 1] - r.lon[0]) > 1e-6 || r.lat[r.n - 1] != r.lat[0])) {
      ++faults;
      return true;
    }
    // A ring round a pole (the whole circle) runs on past 360 degrees: latitudes only.
    const bool round = r.box.east - r.box.west >= 360.0;
    const double shift = 360.0 * std::floor((r.lon[0] - r.box.west) / 360.0);
    for (int i = 0; i < r.n; ++i) {
      const double x = r.lon[i] - shift;
      if ((!round && (x < r.box.west - 1e-6 || x > r.box.east + 1e-6)) ||
          r.lat[i] < r.box.south - 1e-6 || r.lat[i] > r.box.north + 1e-6) {
        ++faults;
        break;
      }
    }
    return true;
  }
};

void draw_world(const char* file) {
  metafl("PS");
  setfil(file);
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  projct("ROBI");
  grafmp(-180.0, 180.0, -180.0, 60.0, -90.0, 90.0, -90.0, 30.0);
  mapres("LOW");
  mapshd(3, 5);
  world();
  maplin("BORD");
  maplin("RIVE");
  endgrf();
  zorfin();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::string(argv[1]) == "-draw") {
    draw_world(argv[2]);
    return 0;
  }
  int status = 0;
  for (int k = 1; k < argc; ++k) {
    const std::string path = argv[k];
    const bool lines = path.find("wdb_") != std::string::npos;
    Count c;
    zorvel::MapFileWork work;
    const int rc = zorvel::read_map_file(path, zorvel::MapBox{}, lines, c, work);
    std::printf("%s %ld %ld %d %ld\n", path.c_str(), c.records, c.points, rc, c.faults);
    if (rc != 0 || c.faults != 0) {
      status = 1;
    }
  }
  return status;
}

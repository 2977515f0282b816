#pragma once
// Map data files in the published GSHHS 2 layout (coastlines, lakes, rivers, borders):
// big-endian records of 11 int32 (id, n, flag, west, east, south, north, area,
// area_full, container, ancestor), each followed by n (lon, lat) int32 pairs in
// micro-degrees. The reader streams the records, seeks past those whose box misses the
// map, and checks every count and box against the file's size and the ranges of
// longitudes and latitudes before it trusts them.

#include <cstdint>
#include <string>
#include <vector>

namespace zorvel {

struct GlobalBlock;

// A longitude and latitude box, degrees; west may exceed east for a box across 180.
struct MapBox {
  double west = -180.0;
  double east = 180.0;
  double south = -90.0;
  double north = 90.0;
};

// One record as the reader hands it on: its points in degrees, longitudes continuous
// (no jump of 360 between neighbours).
struct MapRecord {
  int id = 0;
  int level = 1;          // 1 land, 2 lake, 3 island in a lake, 4 pond; the WDB level
  bool river = false;     // a riverlake polygon of the shoreline data
  bool greenwich = false; // the record crosses the prime meridian
  bool closed = true;     // a polygon (shorelines); false for WDB lines (rivers, borders)
  MapBox box;
  const double* lon = nullptr;
  const double* lat = nullptr;
  int n = 0;
};

// Receives the records; returns false to stop reading.
class MapSink {
 public:
  virtual ~MapSink() = default;
  virtual bool record(const MapRecord& r) = 0;
};

// Reads the file at `path`, handing every record whose box meets `box` to `sink`, with
// `lines` true for WDB files (rivers, borders: open lines, never filled). Returns 0 when
// the whole file was read, 281 when it cannot be opened, 282 when reading stopped at a
// damaged record (what came before stays drawn). Gives no warning itself: the caller
// names the file. Point buffers are reused from `work`.
struct MapFileWork {
  std::vector<unsigned char> raw;  // the file's bytes of a chunk of points
  std::vector<double> lon;
  std::vector<double> lat;
};
int read_map_file(const std::string& path, const MapBox& box, bool lines, MapSink& sink,
                  MapFileWork& work);

}  // namespace zorvel

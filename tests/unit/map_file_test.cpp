// Unit tests of the map file reader on crafted files: records skipped by their box,
// longitudes made continuous, the header's flags, and damaged files (truncated, a count
// that lies, a box that cannot be) read up to the damage.

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "maps/map_file.h"

namespace zorvel {
namespace {

// The count of the points given, in place of one that lies.
constexpr std::int32_t kTrueCount = INT32_MIN;

struct Rec {
  std::int32_t id;
  std::int32_t flag;
  std::int32_t west, east, south, north;  // micro-degrees
  std::vector<std::int32_t> xy;           // lon, lat pairs, micro-degrees
  std::int32_t n = kTrueCount;            // the count written
};

void put(std::vector<unsigned char>& out, std::int32_t v) {
  const auto u = static_cast<std::uint32_t>(v);
  for (int s = 24; s >= 0; s -= 8) {
    out.push_back(static_cast<unsigned char>(u >> s));
  }
}

std::string write_file(const std::vector<Rec>& recs, std::size_t cut = 0) {
  std::vector<unsigned char> bytes;
  for (const Rec& r : recs) {
    const std::int32_t n = r.n != kTrueCount ? r.n : static_cast<std::int32_t>(r.xy.size() / 2);
    for (const std::int32_t v : {r.id, n, r.flag, r.west, r.east, r.south, r.north, 0, 0, -1, -1}) {
      put(bytes, v);
    }
    for (const std::int32_t v : r.xy) {
      put(bytes, v);
    }
  }
  if (cut > 0) {
    bytes.resize(bytes.size() - cut);
  }
  const std::string path = ::testing::TempDir() + "map_file_test.b";
  std::FILE* f = std::fopen(path.c_str(), "wb");
  std::fwrite(bytes.data(), 1, bytes.size(), f);
  std::fclose(f);
  return path;
}

class Collect : public MapSink {
 public:
  struct Got {
    MapRecord r;
    std::vector<double> lon;
    std::vector<double> lat;
  };
  bool record(const MapRecord& r) override {
    got.push_back({r, {r.lon, r.lon + r.n}, {r.lat, r.lat + r.n}});
    return true;
  }
  std::vector<Got> got;
};

constexpr std::int32_t M = 1000000;

// A square of land around (lon, lat) with sides of 2 degrees.
Rec square(std::int32_t id, std::int32_t lon, std::int32_t lat, std::int32_t flag = 1) {
  return {id, flag, (lon - 1) * M, (lon + 1) * M, (lat - 1) * M, (lat + 1) * M,
          {(lon - 1) * M, (lat - 1) * M, (lon + 1) * M, (lat - 1) * M, (lon + 1) * M,
           (lat + 1) * M, (lon - 1) * M, (lat + 1) * M, (lon - 1) * M, (lat - 1) * M}};
}

TEST(MapFile, ReadsRecordsThatMeetTheBox) {
  // An island across the date line, given in 0..360 as the layout has it (179, 181 is
  // written 179, -179 by some producers: both must come out continuous); a lake flagged
  // with greenwich and river bits; one far away that the box skips.
  Rec dateline{7, 1, 179 * M, 181 * M, -10 * M, -8 * M,
               {179 * M, -10 * M, -179 * M, -10 * M, -179 * M, -8 * M, 179 * M, -8 * M}};
  Rec lake = square(8, 0, 50, 2 | (1 << 16) | (1 << 25));
  Rec far = square(9, 100, 60);
  const std::string path = write_file({dateline, lake, far});
  Collect c;
  MapFileWork work;
  // A box across 180: from 170 east to 10 east.
  EXPECT_EQ(read_map_file(path, {170.0, 10.0, -60.0, 55.0}, false, c, work), 0);
  ASSERT_EQ(c.got.size(), 2U);
  EXPECT_EQ(c.got[0].r.id, 7);
  EXPECT_EQ(c.got[0].lon, (std::vector<double>{179, 181, 181, 179}));
  EXPECT_EQ(c.got[1].r.level, 2);
  EXPECT_TRUE(c.got[1].r.greenwich);
  EXPECT_TRUE(c.got[1].r.river);
  EXPECT_TRUE(c.got[1].r.closed);
  EXPECT_DOUBLE_EQ(c.got[1].lat[2], 51.0);
  // WDB lines come out open.
  c.got.clear();
  EXPECT_EQ(read_map_file(path, {95.0, 105.0, 50.0, 70.0}, true, c, work), 0);
  ASSERT_EQ(c.got.size(), 1U);
  EXPECT_FALSE(c.got[0].r.closed);
  EXPECT_EQ(read_map_file(path + ".none", {}, false, c, work), 281);
}

TEST(MapFile, StopsAtDamageKeepingWhatCameBefore) {
  // Each damaged file holds one good record first: it is delivered, then reading stops
  // with 282 without reading or seeking beyond the file.
  const Rec good = square(1, 10, 10);
  Rec lying = square(2, 20, 20);
  lying.n = 1 << 28;  // far more points than the file holds
  Rec negative = square(3, 20, 20);
  negative.n = -5;
  Rec box = square(4, 20, 20);
  std::swap(box.west, box.east);  // west beyond east
  Rec lat = square(5, 20, 20);
  lat.xy[1] = 91 * M;  // a latitude beyond the pole
  Rec huge = square(6, 20, 20);
  huge.north = 95 * M;
  for (const Rec& bad : {lying, negative, box, lat, huge}) {
    Collect c;
    MapFileWork work;
    EXPECT_EQ(read_map_file(write_file({good, bad}), {}, false, c, work), 282) << bad.id;
    EXPECT_EQ(c.got.size(), 1U) << bad.id;
  }
  // Cut inside the second record's points, and inside its header.
  for (const std::size_t cut : {std::size_t{4}, std::size_t{40 + 40}}) {
    Collect c;
    MapFileWork work;
    EXPECT_EQ(read_map_file(write_file({good, square(2, 20, 20)}, cut), {}, false, c, work), 282);
    EXPECT_EQ(c.got.size(), 1U);
  }
}

}  // namespace
}  // namespace zorvel

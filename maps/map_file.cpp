// The reader of map data files (GSHHS 2 layout). A file is a sequence of records, each a
// header of 11 big-endian int32 followed by its points; nothing tells how many records
// there are, so the reader walks the file from header to header. Every number that
// decides how far to read or seek is checked against the bytes left in the file first:
// a count or a box that cannot be right ends the reading with 282, and what was read
// before stays.

#include "maps/map_file.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "core/platform.h"

namespace zorvel {
namespace {

constexpr int kHeaderWords = 11;
constexpr long long kHeaderBytes = kHeaderWords * 4;
constexpr double kMicro = 1e-6;
// Longitudes of the layout lie in -360 .. 360 degrees (boxes across the prime meridian
// start below 0), latitudes in -90 .. 90; micro-degrees.
constexpr std::int64_t kMaxLon = 360000000;
constexpr std::int64_t kMaxLat = 90000000;
// The read buffer of the stream.
constexpr std::size_t kBuffer = 1U << 20;
// Points read at once.
constexpr std::size_t kChunk = 1U << 16;

constexpr int kDamaged = 282;
constexpr int kMissing = 281;

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};

std::int32_t big_endian(const unsigned char* p) {
  const std::uint32_t v = (static_cast<std::uint32_t>(p[0]) << 24) |
                          (static_cast<std::uint32_t>(p[1]) << 16) |
                          (static_cast<std::uint32_t>(p[2]) << 8) | static_cast<std::uint32_t>(p[3]);
  return static_cast<std::int32_t>(v);
}

// Whether the longitude intervals [w1, e1] and [w2, e2] (w <= e, degrees) meet, the
// second shifted by any multiple of 360.
bool lon_overlap(double w1, double e1, double w2, double e2) {
  if (e1 - w1 >= 360.0 || e2 - w2 >= 360.0) {
    return true;
  }
  for (int k = -2; k <= 2; ++k) {
    const double s = 360.0 * k;
    if (w2 + s <= e1 && e2 + s >= w1) {
      return true;
    }
  }
  return false;
}

bool box_meets(const MapBox& want, const MapBox& rec) {
  if (rec.north < want.south || rec.south > want.north) {
    return false;
  }
  const double east = want.east >= want.west ? want.east : want.east + 360.0;
  return lon_overlap(want.west, east, rec.west, rec.east);
}

}  // namespace

int read_map_file(const std::string& path, const MapBox& box, bool lines, MapSink& sink,
                  MapFileWork& work) {
  std::unique_ptr<std::FILE, FileCloser> file(platform::open_file(path, "rb"));
  if (!file) {
    return kMissing;
  }
  std::FILE* f = file.get();
  std::setvbuf(f, nullptr, _IOFBF, kBuffer);
  if (std::fseek(f, 0, SEEK_END) != 0) {
    return kDamaged;
  }
  const long long size = std::ftell(f);
  if (size < 0 || std::fseek(f, 0, SEEK_SET) != 0) {
    return kDamaged;
  }
  long long at = 0;
  unsigned char head[kHeaderBytes];
  std::vector<unsigned char>& bytes = work.raw;
  while (at < size) {
    if (size - at < kHeaderBytes ||
        std::fread(head, 1, kHeaderBytes, f) != static_cast<std::size_t>(kHeaderBytes)) {
      return kDamaged;
    }
    at += kHeaderBytes;
    std::int32_t h[kHeaderWords];
    for (int k = 0; k < kHeaderWords; ++k) {
      h[k] = big_endian(head + 4 * k);
    }
    const long long n = h[1];
    const std::int64_t west = h[3];
    const std::int64_t east = h[4];
    const std::int64_t south = h[5];
    const std::int64_t north = h[6];
    if (n < 0 || n > (size - at) / 8 || west > east || south > north || west < -kMaxLon ||
        east > kMaxLon || south < -kMaxLat || north > kMaxLat) {
      return kDamaged;
    }
    MapRecord r;
    r.id = h[0];
    const auto flag = static_cast<std::uint32_t>(h[2]);
    r.level = static_cast<int>(flag & 0xFFU);
    r.greenwich = ((flag >> 16) & 1U) != 0;
    r.river = ((flag >> 25) & 1U) != 0;
    r.closed = !lines;
    r.box = {west * kMicro, east * kMicro, south * kMicro, north * kMicro};
    const long long length = 8 * n;
    if (!box_meets(box, r.box)) {
      if (std::fseek(f, static_cast<long>(length), SEEK_CUR) != 0) {
        return kDamaged;
      }
      at += length;
      continue;
    }
    const auto count = static_cast<std::size_t>(n);
    work.lon.resize(count);
    work.lat.resize(count);
    bytes.resize(std::min(count, kChunk) * 8);
    double previous = 0.0;
    for (std::size_t done = 0; done < count;) {
      const std::size_t m = std::min(count - done, kChunk);
      if (std::fread(bytes.data(), 8, m, f) != m) {
        return kDamaged;
      }
      for (std::size_t i = 0; i < m; ++i) {
        const std::int64_t x = big_endian(&bytes[8 * i]);
        const std::int64_t y = big_endian(&bytes[8 * i + 4]);
        if (x < -kMaxLon || x > kMaxLon || y < -kMaxLat || y > kMaxLat) {
          return kDamaged;
        }
        double lon = x * kMicro;
        // Longitudes run on without jumps of 360 between neighbours.
        if (done + i > 0) {
          while (lon - previous > 180.0) {
            lon -= 360.0;
          }
          while (previous - lon > 180.0) {
            lon += 360.0;
          }
        }
        previous = lon;
        work.lon[done + i] = lon;
        work.lat[done + i] = y * kMicro;
      }
      done += m;
    }
    at += length;
    r.lon = work.lon.data();
    r.lat = work.lat.data();
    r.n = static_cast<int>(count);
    if (!sink.record(r)) {
      return 0;
    }
  }
  return 0;
}

}  // namespace zorvel

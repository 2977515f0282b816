// The fuzz target of the map file reader: the input is a map data file. The reader must
// stop with 0 or 282 on anything, read only inside the file and hand on only records
// whose points are in range.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "maps/map_file.h"

namespace {

class Check : public zorvel::MapSink {
 public:
  bool record(const zorvel::MapRecord& r) override {
    for (int i = 0; i < r.n; ++i) {
      if (!(r.lat[i] >= -90.0 && r.lat[i] <= 90.0) || !(r.lon[i] == r.lon[i])) {
        std::abort();
      }
    }
    return true;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string path = [] {
    const char* tmp = std::getenv("TMPDIR");
    return std::string(tmp != nullptr ? tmp : "/tmp") + "/zorvel_fuzz_map." +
           std::to_string(getpid());
  }();
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr) {
    return 0;
  }
  std::fwrite(data, 1, size, f);
  std::fclose(f);
  Check sink;
  zorvel::MapFileWork work;
  // Half the inputs read everything, half a box across the date line.
  const zorvel::MapBox box = (size & 1U) != 0U ? zorvel::MapBox{170.0, -170.0, -30.0, 30.0}
                                               : zorvel::MapBox{};
  const int rc = zorvel::read_map_file(path, box, (size & 2U) != 0U, sink, work);
  if (rc != 0 && rc != 282) {
    std::abort();
  }
  std::remove(path.c_str());
  return 0;
}

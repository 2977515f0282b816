// The fuzz target of the metafile reader: the input is a GKSL metafile, drawn by incmet
// into a plot on the metafile device (written to /dev/null) at a place and scale taken
// from the input's size. The reader must end on anything with at most a warning, read only
// inside its buffers and keep its memory bounded.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "api_decl.h"
#include "core/global_block.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string path = [] {
    const char* tmp = std::getenv("TMPDIR");
    return std::string(tmp != nullptr ? tmp : "/tmp") + "/zorvel_fuzz_gksl." +
           std::to_string(getpid());
  }();
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr) {
    return 0;
  }
  std::fwrite(data, 1, size, f);
  std::fclose(f);
  std::FILE* messages = std::fopen("/dev/null", "w");
  {
    zorvel::GlobalBlock g;
    g.msg.output = 1;
    g.msg.handle = messages;
    zorvel::api::metafl(g, "GKSL");
    zorvel::api::setfil(g, "/dev/null");
    zorvel::api::zorini(g);
    if (g.core.level != 0) {
      const double scales[] = {1.0, 0.5, 3.0, 1e-6};
      zorvel::api::incmet(g, path.c_str(), static_cast<int>(size % 3), 100, 200,
                          scales[(size >> 2) % 4]);
      zorvel::api::zorfin(g);
    }
    g.msg.handle = nullptr;
  }
  std::fclose(messages);
  std::remove(path.c_str());
  return 0;
}

// Writes one page with filled shapes in PostScript, PDF and SVG for filled_shapes.sh: a
// square of 400 plot units with a square hole of 200 (its contour wound the other way,
// so that the non-zero rule leaves it empty), placed three times along the page: red,
// red, blue. The second placement of the same shape must come out as the first.
//
// Usage: write_filled_shapes DIR. Exit status 1 when a shape was not placed whole or a
// file was not written.

#include <cstdio>
#include <string>
#include <utility>

#include "core/global_block.h"
#include "core/process.h"
#include "draw/pipeline.h"
#include "zorvel.h"

namespace {

class SquareWithHole final : public zorvel::ShapeSource {
 public:
  void record(zorvel::ShapeRecorder& r) const override {
    r.move(0, 0);
    r.draw(400, 0);
    r.draw(400, -400);
    r.draw(0, -400);
    r.move(100, -100);
    r.draw(100, -300);
    r.draw(300, -300);
    r.draw(300, -100);
  }
  bool filled() const override { return true; }
};

bool write_page(const std::string& file, const char* device) {
  filmod("DELE");
  metafl(device);
  setfil(file.c_str());
  scrmod("REVE");
  zorini();
  zorvel::GlobalBlock* g = zorvel::find_block();
  bool placed = g != nullptr;
  const SquareWithHole square;
  const zorvel::ShapeKey key{7};
  const char* colours[] = {"RED", "RED", "BLUE"};
  for (int i = 0; i < 3 && placed; ++i) {
    color(colours[i]);
    placed = zorvel::place_shape(*g, key, 400.0 + 800.0 * i, 1250.0, square);
  }
  zorfin();
  std::FILE* f = std::fopen(file.c_str(), "rb");
  if (f == nullptr) {
    return false;
  }
  std::fclose(f);
  return placed;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: write_filled_shapes DIR\n", stderr);
    return 2;
  }
  const std::string dir = argv[1];
  int status = 0;
  for (const auto& [name, device] :
       {std::pair{"filled_shapes.ps", "POST"}, std::pair{"filled_shapes.pdf", "PDF"},
        std::pair{"filled_shapes.svg", "SVG"}}) {
    if (!write_page(dir + "/" + name, device)) {
      std::fprintf(stderr, "FAIL: %s: shapes not placed whole, or no file\n", name);
      status = 1;
    }
  }
  return status;
}

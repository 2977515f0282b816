// The scene of scene.c from C++: the header's declarations in C++ with std::array and
// std::string, the same calls. Usage: scene_cxx DEVICE FILE
#include <array>
#include <cstdio>
#include <string>

#include "zorvel.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: scene_cxx DEVICE FILE\n");
    return 2;
  }
  std::array<double, 41> x{}, y1{}, y2{};
  for (int i = 0; i < 41; ++i) {
    x[i] = i / 4.0;
    y1[i] = (x[i] * (10.0 - x[i])) / 12.5 - 1.0;
    y2[i] = ((i * 7) % 11) / 10.0 - 0.5;
  }
  std::string cbuf(2 * 24 + 1, '\0');
  metafl(argv[1]);
  setfil(argv[2]);
  setpag("DA4L");
  zorini();
  legini(cbuf.data(), 2, 24);
  complx();
  titlin("One figure, five languages", 1);
  name("Distance x", "X");
  name("Value y", "Y");
  labdig(1, "X");
  graf(0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5);
  title();
  color("RED");
  linwid(3);
  curve(x.data(), y1.data(), static_cast<int>(x.size()));
  color("BLUE");
  incmrk(-1);
  marker(15);
  curve(x.data(), y2.data(), static_cast<int>(x.size()));
  color("FORE");
  leglin(cbuf.data(), "parabola", 1);
  leglin(cbuf.data(), "scattered points", 2);
  legend(cbuf.c_str(), 7);
  endgrf();
  zorfin();
  return 0;
}

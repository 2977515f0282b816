/* One figure in five languages (scene.c, scene.cpp, Scene.java, scene.py, scene.f90):
 * the same calls with the same data, so that every language writes the same bytes.
 * The data come from exact arithmetic (no library mathematics, whose last bit may differ
 * between languages). Usage: scene DEVICE FILE */
#include <stdio.h>

#include "zorvel.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: scene DEVICE FILE\n");
    return 2;
  }
  double x[41], y1[41], y2[41];
  for (int i = 0; i < 41; ++i) {
    x[i] = i / 4.0;
    y1[i] = (x[i] * (10.0 - x[i])) / 12.5 - 1.0;
    y2[i] = ((i * 7) % 11) / 10.0 - 0.5;
  }
  char cbuf[2 * 24 + 1];
  metafl(argv[1]);
  setfil(argv[2]);
  setpag("DA4L");
  zorini();
  legini(cbuf, 2, 24);
  complx();
  titlin("One figure, five languages", 1);
  name("Distance x", "X");
  name("Value y", "Y");
  labdig(1, "X");
  graf(0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5);
  title();
  color("RED");
  linwid(3);
  curve(x, y1, 41);
  color("BLUE");
  incmrk(-1);
  marker(15);
  curve(x, y2, 41);
  color("FORE");
  leglin(cbuf, "parabola", 1);
  leglin(cbuf, "scattered points", 2);
  legend(cbuf, 7);
  endgrf();
  zorfin();
  return 0;
}

/* Catches changes in the text formats written straight from the drawing pipeline: the
 * metafile's point, pen and colour fields, HPGL's pen and pen-up/pen-down instructions,
 * and the applet's drawLine, setColor and clearRect statements with their opening and
 * closing lines. Each file is printed after its plot. Colours beyond a plotter's eight
 * pens select its pens again (hp2xx reads the file). */
#include <stdio.h>
#include "zorvel.h"

static void scene(void) {
  int pattern[2] = {100, 50};
  clpmod("AUTO");                  /* the clip mode of the plot before stays otherwise */
  line(100, 100, 600, 100);        /* solid */
  setclr(3);
  myline(pattern, 2);
  line(100, 300, 700, 300);        /* dashed: four dashes */
  solid();
  setrgb(0, 0, 1);                 /* nearest index on index devices */
  clpwin(0, 0, 1000, 1000);
  line(500, 500, 1500, 1500);      /* clipped at (999, 999) */
  clpmod("NONE");
  point(2000, 800, 20, 4, 1);      /* filled: hatched where the device cannot fill */
  erase();
}

static void show(const char* name) {
  char buf[256];
  FILE* f = fopen(name, "r");
  if (f == NULL) {
    printf("no file %s\n", name);
    return;
  }
  while (fgets(buf, sizeof buf, f) != NULL) {
    fputs(buf, stdout);
  }
  fclose(f);
}

int main(void) {
  static const char* devices[3] = {"GKSL", "HPGL", "JAVA"};
  static const char* files[3] = {"plot.met", "plot.hpg", "plot.java"};
  int i;
  errmod("PROT", "OFF");
  for (i = 0; i < 3; ++i) {
    metafl(devices[i]);
    setfil(files[i]);
    zorini();
    scene();
    zorfin();
    printf("==== %s\n", files[i]);
    show(files[i]);
  }
  metafl("HPGL");
  setfil("pens.hpg");
  zorini();
  setclr(9);
  line(0, 0, 10, 10);
  setclr(16);
  line(0, 0, 10, 10);
  setclr(255);
  line(0, 0, 10, 10);
  zorfin();
  printf("==== pens.hpg\n");
  show("pens.hpg");
  /* A picture of one dot: a line of one plotter unit, which readers can size. */
  metafl("HPGL");
  setfil("dot.hpg");
  zorini();
  line(122, 122, 122, 122);
  zorfin();
  printf("==== dot.hpg\n");
  show("dot.hpg");
  return 0;
}

/* The map workload W9 (WORKLOAD.md) through the public C API, for the runner bench/run.sh.
 * usage: zb_maps w9w|w9e ps|png OUTPREFIX
 *   w9w  Robinson world at the intermediate resolution: land and lakes filled, coastlines,
 *        borders and rivers, graticule
 *   w9e  Lambert conformal Europe, the same layers (the reader passes over the records
 *        outside the map by their boxes)
 * The map files gshhs_i.b, wdb_borders_i.b, wdb_rivers_i.b come from $ZORVEL/map/ (the
 * build directory after its zorvel_map_data target) or the installation. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zorvel.h"

#define SEA 0x01F5E6D2   /* explicit RGB (210, 230, 245) */
#define LAND 0x01C8E6DC  /* (220, 230, 200) */
#define COAST 0x01505A5A /* (90, 90, 80) */
#define BORDER 0x01283CA0 /* (160, 60, 40) */
#define RIVER 0x01C88C3C /* (60, 140, 200) */
#define GRID 0x01B4B4B4

static void open_page(const char* format, const char* pre) {
  char file[1024];
  const int png = strcmp(format, "png") == 0;
  if (!png && strcmp(format, "ps") != 0) {
    fprintf(stderr, "unknown format %s\n", format);
    exit(2);
  }
  snprintf(file, sizeof file, "%s.%s", pre, format);
  metafl(png ? "PNG" : "PS");
  setfil(file);
  filmod("DELE");
  if (png) {
    scrmod("REVERS");
    imgsiz(1200, 850);
  }
  zorini();
  errmod("PROT", "OFF");
}

/* The layers of both maps: land and lakes, graticule, coastlines, borders, rivers. */
static void layers(void) {
  mapres("INTE");
  mapshd(LAND, SEA);
  setclr(GRID);
  gridmp(1, 1);
  setclr(COAST);
  world();
  setclr(BORDER);
  maplin("BORD");
  setclr(RIVER);
  maplin("RIVE");
  color("FORE");
}

int main(int argc, char** argv) {
  if (argc != 4 || (strcmp(argv[1], "w9w") != 0 && strcmp(argv[1], "w9e") != 0)) {
    fprintf(stderr, "usage: %s w9w|w9e ps|png OUTPREFIX\n", argv[0]);
    return 2;
  }
  open_page(argv[2], argv[3]);
  axsbgd(SEA);
  if (strcmp(argv[1], "w9w") == 0) {
    axspos(250, 1950);
    axslen(2470, 1700);
    projct("ROBI");
    titlin("W9 Robinson world", 2);
    grafmp(-180.0, 180.0, -180.0, 60.0, -90.0, 90.0, -90.0, 30.0);
  } else {
    axspos(600, 1950);
    axslen(1770, 1700);
    projct("LAMB");
    mappar(40.0, 60.0);
    titlin("W9 Lambert Europe", 2);
    grafmp(-15.0, 40.0, -10.0, 10.0, 33.0, 72.0, 40.0, 10.0);
  }
  layers();
  title();
  endgrf();
  zorfin();
  return 0;
}

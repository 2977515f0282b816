/* Maps, one EPS file per page:
 *   maps_world.eps        Robinson world: land and lakes filled, graticule, MAP labels
 *   maps_mercator.eps     Mercator: a great-circle route between cities, DMAP labels
 *   maps_europe.eps       Lambert conformal Europe with borders, LMAP labels
 *   maps_polar.eps        polar stereographic Antarctica and an orthographic globe
 *   maps_projections.eps  the 19 projections of projct */
#include <math.h>
#include <stdio.h>

#include "gallery.h"
#include "zorvel.h"

#define SEA 0x01F5E6D2    /* explicit RGB (210, 230, 245) */
#define LAND 0x01C8E6DC   /* (220, 230, 200) */
#define LAKE 0x01F5E6D2
#define COAST 0x01505A5A  /* (90, 90, 80) */

static void start(const char* file, int width, int height) {
  gallery_output("EPS", file);
  filmod("DELE");
  pagmod("NONE");
  page(width, height);
  zorini();
  errmod("PROT", "OFF");
  chacod("UTF8");
  helve();
}

/* Land and lakes, then the graticule and the coastlines over them. */
static void filled_world(int ngrid) {
  mapshd(LAND, LAKE);
  setclr(0x01B4B4B4);
  gridmp(ngrid, ngrid);
  setclr(COAST);
  world();
  color("FORE");
}

static void world_page(void) {
  start("maps_world.eps", 3000, 1800);
  axspos(200, 1600);
  axslen(2600, 1400);
  projct("ROBI");
  axsbgd(SEA);
  height(32);
  titlin("Robinson projection", 2);
  grafmp(-180, 180, -180, 60, -90, 90, -90, 30);
  filled_world(2);
  height(44);
  title();
  endgrf();
  zorfin();
}

/* Cities: longitude, latitude, name. */
static const double city_lon[6] = {-74.0, -0.13, 139.7, -43.2, 151.2, 28.0};
static const double city_lat[6] = {40.7, 51.5, 35.7, -22.9, -33.9, -26.2};
static const char* city_name[6] = {"New York", "London", "Tokyo", "Rio de Janeiro", "Sydney",
                                   "Johannesburg"};

/* A city: a filled circle and its name beside it. */
static void city(int i) {
  double x, y;
  mappos(city_lon[i], city_lat[i], &x, &y);
  if (!isnan(x)) { /* NaN: not on the map */
    symbol(21, (int)(x + 0.5), (int)(y + 0.5));
    messag(city_name[i], (int)(x + 22), (int)(y - 16));
  }
}

/* A route of great circles through the cities i0, i1, ... (-1 ends). */
static void route(const int* stops) {
  int k;
  mapopt("GREA", "LINE");
  rlstrt(city_lon[stops[0]], city_lat[stops[0]]);
  for (k = 1; stops[k] >= 0; k++) {
    rlconn(city_lon[stops[k]], city_lat[stops[k]]);
  }
  mapopt("RHUM", "LINE");
}

static void mercator_page(void) {
  static const int flights[] = {0, 1, 2, 4, 5, 3, 0, -1};
  int i;
  start("maps_mercator.eps", 3000, 2200);
  axspos(250, 2000);
  axslen(2500, 1750);
  projct("MERC");
  axsbgd(SEA);
  labels("DMAP", "XY");
  height(32);
  titlin("Mercator projection: great circles between cities", 2);
  grafmp(-180, 180, -180, 60, -80, 80, -80, 20);
  filled_world(1);
  setclr(0x011E3CC8); /* (200, 60, 30) */
  linwid(6);
  route(flights);
  linwid(1);
  color("FORE");
  hsymbl(22);
  height(28);
  for (i = 0; i < 6; i++) {
    city(i);
  }
  height(44);
  title();
  endgrf();
  zorfin();
}

static void europe_page(void) {
  start("maps_europe.eps", 2400, 2400);
  axspos(250, 2150);
  axslen(1950, 1850);
  projct("LAMB");
  mappar(40, 60);
  axsbgd(SEA);
  labels("LMAP", "XY");
  height(30);
  titlin("Lambert conformal conic: Europe and its borders", 2);
  mapres("CRUD"); /* the built-in data, whatever data files are installed */
  grafmp(-15, 40, -10, 10, 34, 72, 40, 10);
  mapshd(LAND, LAKE);
  setclr(0x01B4B4B4);
  gridmp(1, 1);
  setclr(0x018C6E8C);
  maplin("BORD");
  setclr(COAST);
  world();
  color("FORE");
  height(44);
  title();
  endgrf();
  zorfin();
}

static void polar_page(void) {
  start("maps_polar.eps", 3200, 1700);
  height(30);

  /* Antarctica from above the South Pole: the box runs round the pole, so the map is
     the cap down to 50 degrees south. */
  axspos(150, 1500);
  axslen(1300, 1300);
  projct("STER");
  axsbgd(SEA);
  titlin("Polar stereographic", 2);
  grafmp(-180, 180, -180, 30, -90, -50, -80, 10);
  filled_world(1);
  height(40);
  title();
  height(30);
  endgrf();

  /* The globe seen from above Europe. */
  axspos(1800, 1500);
  axslen(1300, 1300);
  projct("ORTH");
  mapctr(10, 45);
  titlin("Orthographic", 2);
  grafmp(-180, 180, -180, 30, -90, 90, -90, 30);
  filled_world(1);
  height(40);
  title();
  endgrf();
  zorfin();
}

static void projections_page(void) {
  static const char* names[19] = {"CYLI", "MERC", "MILL", "CEQA", "LAMB", "ALBE", "CONI",
                                  "STER", "AZEA", "AZED", "ORTH", "GNOM", "ROBI", "MOLL",
                                  "WINK", "HAMM", "SINU", "ECK4", "EQEA"};
  int i;
  start("maps_projections.eps", 3000, 2700);
  height(24);
  labels("NONE", "XY");
  for (i = 0; i < 19; i++) {
    const int col = i % 5, row = i / 5;
    mapctr(i >= 4 && i <= 6 ? -30 : 0, 0);
    axspos(60 + col * 590, 640 + row * 660);
    axslen(520, 540);
    projct(names[i]);
    axsbgd(SEA);
    titlin(names[i], 1);
    if (i >= 4 && i <= 6) {
      mappar(20, 60);
      grafmp(-100, 40, -100, 30, 10, 80, 10, 30);
    } else if (i == 11) {
      mapctr(0, 50);
      grafmp(-180, 180, -180, 30, -90, 90, -90, 30);
    } else if (i == 1) {
      grafmp(-180, 180, -180, 30, -80, 80, -60, 30);
    } else if (i >= 7 && i <= 10) {
      mapctr(10, 45);
      grafmp(-180, 180, -180, 30, -90, 90, -90, 30);
    } else {
      grafmp(-180, 180, -180, 30, -90, 90, -90, 30);
    }
    filled_world(1);
    title();
    endgrf();
  }
  zorfin();
}

int main(void) {
  world_page();
  mercator_page();
  europe_page();
  polar_page();
  projections_page();
  return 0;
}

// Maps, one EPS file per page: "maps_world.eps" (Robinson world, land and lakes filled,
// MAP labels), "maps_mercator.eps" (great circles between cities, DMAP labels),
// "maps_europe.eps" (Lambert conformal Europe with borders, LMAP labels),
// "maps_polar.eps" (polar stereographic Antarctica and an orthographic globe) and
// "maps_projections.eps" (the 19 projections). The Java twin of examples/maps.c.
import static zorvel.Zorvel.*;

public final class Maps {
  private Maps() {}

  static final int SEA = 0x01F5E6D2;
  static final int LAND = 0x01C8E6DC;
  static final int LAKE = 0x01F5E6D2;
  static final int COAST = 0x01505A5A;

  static void start(String file, int width, int height) {
    Gallery.output("EPS", file);
    filmod("DELE");
    pagmod("NONE");
    page(width, height);
    zorini();
    errmod("PROT", "OFF");
    chacod("UTF8");
    helve();
  }

  static void filledWorld(int ngrid) {
    mapshd(LAND, LAKE);
    setclr(0x01B4B4B4);
    gridmp(ngrid, ngrid);
    setclr(COAST);
    world();
    color("FORE");
  }

  static void worldPage() {
    start("maps_world.eps", 3000, 1800);
    axspos(200, 1600);
    axslen(2600, 1400);
    projct("ROBI");
    axsbgd(SEA);
    height(32);
    titlin("Robinson projection", 2);
    grafmp(-180, 180, -180, 60, -90, 90, -90, 30);
    filledWorld(2);
    height(44);
    title();
    endgrf();
    zorfin();
  }

  static final double[] CITY_LON = {-74.0, -0.13, 139.7, -43.2, 151.2, 28.0};
  static final double[] CITY_LAT = {40.7, 51.5, 35.7, -22.9, -33.9, -26.2};
  static final String[] CITY_NAME = {"New York", "London", "Tokyo", "Rio de Janeiro", "Sydney",
                                     "Johannesburg"};

  static void city(int i) {
    double[] x = new double[1];
    double[] y = new double[1];
    mappos(CITY_LON[i], CITY_LAT[i], x, y);
    if (!Double.isNaN(x[0])) {
      symbol(21, (int) (x[0] + 0.5), (int) (y[0] + 0.5));
      messag(CITY_NAME[i], (int) (x[0] + 22), (int) (y[0] - 16));
    }
  }

  static void route(int[] stops) {
    mapopt("GREA", "LINE");
    rlstrt(CITY_LON[stops[0]], CITY_LAT[stops[0]]);
    for (int k = 1; stops[k] >= 0; k++) {
      rlconn(CITY_LON[stops[k]], CITY_LAT[stops[k]]);
    }
    mapopt("RHUM", "LINE");
  }

  static void mercatorPage() {
    int[] flights = {0, 1, 2, 4, 5, 3, 0, -1};
    start("maps_mercator.eps", 3000, 2200);
    axspos(250, 2000);
    axslen(2500, 1750);
    projct("MERC");
    axsbgd(SEA);
    labels("DMAP", "XY");
    height(32);
    titlin("Mercator projection: great circles between cities", 2);
    grafmp(-180, 180, -180, 60, -80, 80, -80, 20);
    filledWorld(1);
    setclr(0x011E3CC8);
    linwid(6);
    route(flights);
    linwid(1);
    color("FORE");
    hsymbl(22);
    height(28);
    for (int i = 0; i < 6; i++) {
      city(i);
    }
    height(44);
    title();
    endgrf();
    zorfin();
  }

  static void europePage() {
    start("maps_europe.eps", 2400, 2400);
    axspos(250, 2150);
    axslen(1950, 1850);
    projct("LAMB");
    mappar(40, 60);
    axsbgd(SEA);
    labels("LMAP", "XY");
    height(30);
    titlin("Lambert conformal conic: Europe and its borders", 2);
    mapres("CRUD");
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

  static void polarPage() {
    start("maps_polar.eps", 3200, 1700);
    height(30);
    axspos(150, 1500);
    axslen(1300, 1300);
    projct("STER");
    axsbgd(SEA);
    titlin("Polar stereographic", 2);
    grafmp(-180, 180, -180, 30, -90, -50, -80, 10);
    filledWorld(1);
    height(40);
    title();
    height(30);
    endgrf();

    axspos(1800, 1500);
    axslen(1300, 1300);
    projct("ORTH");
    mapctr(10, 45);
    titlin("Orthographic", 2);
    grafmp(-180, 180, -180, 30, -90, 90, -90, 30);
    filledWorld(1);
    height(40);
    title();
    endgrf();
    zorfin();
  }

  static void projectionsPage() {
    String[] names = {"CYLI", "MERC", "MILL", "CEQA", "LAMB", "ALBE", "CONI", "STER", "AZEA",
                      "AZED", "ORTH", "GNOM", "ROBI", "MOLL", "WINK", "HAMM", "SINU", "ECK4",
                      "EQEA"};
    start("maps_projections.eps", 3000, 2700);
    height(24);
    labels("NONE", "XY");
    for (int i = 0; i < 19; i++) {
      int col = i % 5;
      int row = i / 5;
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
      filledWorld(1);
      title();
      endgrf();
    }
    zorfin();
  }

  public static void main(String[] args) {
    worldPage();
    mercatorPage();
    europePage();
    polarPage();
    projectionsPage();
  }
}

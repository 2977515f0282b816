/* Surfaces in the 3D axis system, one EPS file per page, each on an A4 landscape page:
 *   surfaces_mesh.eps    the mesh of a surface with two hills and a hollow (surfce), its
 *                        hidden lines left out, the upper side blue and the lower side
 *                        red
 *   surfaces_shaded.eps  the same surface shaded in the colours of its height, lit from
 *                        the eye, with its mesh on top (surshd)
 *   surfaces_surfun.eps  a peak with a shallow rim given as a function (surfun), seen
 *                        from lower down so that the peak hides the mesh behind it
 *   surfaces_bands.eps   the surface in the bands of its height with the level lines
 *                        (conshd3d), over the same bands on the box's floor
 *   surfaces_zbuffer.eps two surfaces that cut through each other, smoothly shaded,
 *                        in a z-buffer section (zbfini, zbffin)
 * The surfaces are built of rational bumps, and the function of surfun computes in single
 * precision as the Java twin's method does, so that the twin writes the same files. */
#include "gallery.h"
#include "zorvel.h"

#define NX 41
#define NY 31

static double bump(double x, double y, double x0, double y0, double s) {
  double dx = (x - x0) / s;
  double dy = (y - y0) / s;
  return 1.0 / (1.0 + dx * dx + dy * dy);
}

static double field(double x, double y) {
  return 1.2 * bump(x, y, -1.0, -0.5, 0.8) + 0.9 * bump(x, y, 1.2, 0.8, 0.7) -
         0.8 * bump(x, y, 0.6, -1.0, 0.6);
}

/* The function of surfun: a peak with a shallow rim, in single precision. */
static double peak(double x, double y) {
  float fx = (float)x;
  float fy = (float)y;
  float r2 = fx * fx + fy * fy;
  float u = 1.0F - r2 / 4.0F;
  return (double)(u * u / (1.0F + r2));
}

static void start(const char* file, const char* heading) {
  gallery_output("EPS", file);
  filmod("DELE");
  pagmod("NONE");
  zorini();
  helve();
  titlin(heading, 4);
  name("x", "X");
  name("y", "Y");
  name("z", "Z");
  axis3d(2, 1.5, 1);
}

int main(void) {
  static double xg[NX], yg[NY], zg[NX * NY];
  static double zp[NX * NY];
  double lev[9];
  int i, j, k;
  for (i = 0; i < NX; i++) {
    xg[i] = -2.0 + 0.1 * i;
  }
  for (j = 0; j < NY; j++) {
    yg[j] = -1.5 + 0.1 * j;
    for (i = 0; i < NX; i++) {
      zg[j * NX + i] = field(xg[i], yg[j]);
    }
  }

  start("surfaces_mesh.eps", "Mesh with hidden lines (surfce)");
  view3d(-35, 32, 6, "ANGL");
  graf3d(-2, 2, -2, 1, -1.5, 1.5, -1.5, 0.5, -1, 1.5, -1, 0.5);
  title();
  surclr(intrgb(0.12, 0.3, 0.75), intrgb(0.8, 0.15, 0.1));
  surfce(xg, NX, yg, NY, zg);
  endgrf();
  zorfin();

  start("surfaces_shaded.eps", "Shaded surface with its mesh (surshd)");
  view3d(-35, 32, 6, "ANGL");
  graf3d(-2, 2, -2, 1, -1.5, 1.5, -1.5, 0.5, -1, 1.5, -1, 0.5);
  title();
  suropt("ON", "MESH");
  suropt("ON", "LIGH");
  setvlt("RAIN");
  color("FORE");
  surshd(xg, NX, yg, NY, zg);
  endgrf();
  zorfin();

  start("surfaces_surfun.eps", "A function's surface (surfun)");
  view3d(-30, 22, 6.5, "ANGL");
  graf3d(-2, 2, -2, 1, -2, 2, -2, 1, 0, 1, 0, 0.25);
  title();
  color("BLUE");
  surfun(peak, 41, 0.1, 41, 0.1);
  color("FORE");
  endgrf();
  zorfin();

  start("surfaces_bands.eps", "Bands on the surface and its floor (conshd3d)");
  view3d(-35, 32, 6, "ANGL");
  graf3d(-2, 2, -2, 1, -1.5, 1.5, -1.5, 0.5, -1, 1.5, -1, 0.5);
  title();
  setvlt("VIRI");
  for (k = 0; k < 9; k++) {
    lev[k] = -0.8 + 0.25 * k;
  }
  conopt("BOTH", "EXTE");
  conopt("BASE", "3D");
  conshd3d(xg, NX, yg, NY, zg, lev, 9);
  conopt("SURF", "3D");
  conopt("ON", "LINE");
  suropt("ON", "LIGH");
  color("FORE");
  conshd3d(xg, NX, yg, NY, zg, lev, 9);
  endgrf();
  zorfin();

  start("surfaces_zbuffer.eps", "Two surfaces cutting through each other (z-buffer)");
  view3d(-35, 32, 6, "ANGL");
  graf3d(-2, 2, -2, 1, -1.5, 1.5, -1.5, 0.5, -1, 1.5, -1, 0.5);
  title();
  for (j = 0; j < NY; j++) {
    for (i = 0; i < NX; i++) {
      zp[j * NX + i] = 0.55 * xg[i] - 0.2 * yg[j] + 0.25;
    }
  }
  setvlt("PLAS");
  suropt("SMOO", "SHAD");
  suropt("ON", "LIGH");
  colran(1, 175);
  zbfini();
  surshd(xg, NX, yg, NY, zg);
  colran(200, 254);
  surshd(xg, NX, yg, NY, zp);
  zbffin();
  endgrf();
  zorfin();
  return 0;
}

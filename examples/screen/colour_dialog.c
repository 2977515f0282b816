/* A dialog that chooses a colour table, the number of levels and a file: "Plot" draws
   filled contours of a field with hills and hollows into the window's drawing area,
   "Save" writes the same plot as a PNG file to the chosen name, OK ends.
   Build: cc colour_dialog.c -lzorvel -lm */
#include <stdio.h>
#include <zorvel.h>

#define NX 81
#define NY 61

static const char *tables = "VIRI|CWAR|RAIN|TEMP|GREY|MAGM";
static int id_table, id_levels, id_file, id_status;
static double xg[NX], yg[NY], zg[NX * NY];

static double bump(double x, double y, double x0, double y0, double s) {
  const double dx = (x - x0) / s, dy = (y - y0) / s;
  return 1.0 / (1.0 + dx * dx + dy * dy);
}

/* The item of the list clis at position k (1-based) into buf. */
static void item(const char *clis, int k, char *buf, int n) {
  int i = 0;
  while (k > 1 && *clis) {
    if (*clis++ == '|') --k;
  }
  while (*clis && *clis != '|' && i < n - 1) buf[i++] = *clis++;
  buf[i] = '\0';
}

static void draw(const char *device, const char *file) {
  char table[8];
  double lev[64];
  const int nlev = (int)gwgscl(id_levels);
  int k;
  item(tables, gwglis(id_table), table, sizeof table);
  for (k = 0; k < nlev; ++k) lev[k] = -0.9 + 2.0 * k / (nlev - 1);
  metafl(device);
  if (file != NULL) {
    setfil(file);
    filmod("DELE");
  }
  scrmod("REVE");
  winmod("NONE");
  zorini();
  setvlt(table);
  helve();
  colbar("RIGH", 30, 20);
  name("x", "X");
  name("y", "Y");
  titlin("Filled contours", 1);
  conopt("BOTH", "EXTE");
  graf3(0, 4, 0, 1, 0, 3, 0, 1, -1.0, 1.0, -1.0, 0.5);
  conshd(xg, NX, yg, NY, zg, lev, nlev);
  color("FORE");
  title();
  endgrf();
  zorfin();
}

static void on_plot(int id) {
  (void)id;
  draw("XWND", NULL);
  swgtxt(id_status, "Drawn");
}

static void on_save(int id) {
  char file[256];
  (void)id;
  gwgfil(id_file, file, sizeof file);
  draw("PNG", file);
  swgtxt(id_status, "Saved");
}

int main(void) {
  int i, j, ip, iv;
  for (i = 0; i < NX; ++i) xg[i] = 0.05 * i;
  for (j = 0; j < NY; ++j) {
    yg[j] = 0.05 * j;
    for (i = 0; i < NX; ++i)
      zg[j * NX + i] = bump(xg[i], yg[j], 1.0, 1.0, 0.6) + 0.9 * bump(xg[i], yg[j], 3.0, 2.1, 0.7) -
                       0.8 * bump(xg[i], yg[j], 1.1, 2.3, 0.5) - 0.7 * bump(xg[i], yg[j], 3.0, 0.8, 0.6);
  }
  swgtit("Colour plot");
  ip = wgini("HORI");
  iv = wgbas(ip, "VERT");
  wglab(iv, "Colour table");
  id_table = wgdlis(iv, tables, 1);
  id_levels = wgscl(iv, "Levels", 3, 40, 11, 0);
  id_file = wgfil(iv, "PNG file", "contours.png", "*.png");
  swgcbk(wgpbut(iv, "Plot"), on_plot);
  swgcbk(wgpbut(iv, "Save"), on_save);
  id_status = wglab(iv, "");
  wgok(iv);
  wgdraw(ip);
  wgfin();
  return 0;
}

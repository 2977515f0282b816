/* Hostile input to the 3D axis system: each call warns as documented and keeps its
 * settings, NaN and huge coordinates never reach the PostScript file (the consumer check
 * reads it), and lines that pass the eye in perspective are cut at the front distance
 * instead of wrapping across the page: on a raster page, each such line changes the
 * pixels along its visible part, worked out here from the eye and the view direction,
 * and no others. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include "zorvel.h"

/* The box of every system here: 2 units a side on 0..10, so user = 5 (box + 1). */
#define LINEAR3 0.0, 10.0, 0.0, 2.0, 0.0, 10.0, 0.0, 2.0, 0.0, 10.0, 0.0, 2.0
#define USER(b) (5.0 * ((b) + 1.0))
#define BOX(u) ((u) / 5.0 - 1.0)

/* The eye close to the box (its near corner (1, -1, 1) is 0.74 in front of it), looking
 * at the centre, at user coordinates that convert exactly: (12.5, -2.5, 11.25). */
static const double eye[3] = {1.5, -1.5, 1.25};
static const double eye_distance = 2.4622144504490264; /* sqrt(6.0625) */

/* Polylines in user coordinates that pass the eye. */
typedef struct {
  const char* name;
  int n;
  double p[3][3];
} Scene;

static const Scene scenes[] = {
    /* The centre, the point as far behind the eye, on behind it: all of it projects to
     * the centre. */
    {"through the eye", 3, {{5.0, 5.0, 5.0}, {20.0, -10.0, 17.5}, {25.0, -9.0, 15.0}}},
    /* From the far corner to past the eye, 0.035 beside it. */
    {"beside the eye", 2, {{0.0, 10.0, 0.0}, {25.25, -14.75, 22.5}}},
    {"centre to far behind", 2, {{5.0, 5.0, 5.0}, {1e300, 5.0, 5.0}}},
    {"far behind to the centre", 2, {{1e300, 5.0, 5.0}, {5.0, 5.0, 5.0}}},
    {"far behind to a corner", 2, {{1e20, 5.0, 5.0}, {0.0, 10.0, 0.0}}},
    {"far behind to far in front", 2, {{1e20, 5.0, 5.0}, {-1e20, 1e20, -1e20}}},
};
#define SCENES ((int)(sizeof scenes / sizeof scenes[0]))

static void show(const char* what, double x, double y, double z) {
  double xp = -1.0, yp = -1.0;
  rel3pt(x, y, z, &xp, &yp);
  if (isnan(xp) || isnan(yp)) {
    printf("%s: %s\n", what, isnan(xp) && isnan(yp) ? "NaN" : "half NaN");
  } else {
    printf("%s: %.2f %.2f\n", what, xp, yp);
  }
}

static void system3d(const char* what) {
  graf3d(LINEAR3);
  printf("%s: level %d\n", what, getlev());
  if (getlev() == 3) {
    show("  corner (0, 0, 0)", 0.0, 0.0, 0.0);
    endgrf();
  }
}

static void draw_scene(const Scene* s) {
  int i;
  strt3d(s->p[0][0], s->p[0][1], s->p[0][2]);
  for (i = 1; i < s->n; ++i) {
    conn3d(s->p[i][0], s->p[i][1], s->p[i][2]);
  }
  if (s == &scenes[0]) {
    double x[3] = {s->p[0][0], s->p[1][0], s->p[2][0]};
    double y[3] = {s->p[0][1], s->p[1][1], s->p[2][1]};
    double z[3] = {s->p[0][2], s->p[1][2], s->p[2][2]};
    curv3d(x, y, z, 3);
    sym3d(3, x[1], y[1], z[1]);
  }
}

/* Depth of a user point in front of the eye. */
static double depth(const double u[3]) {
  double d = 0.0;
  int i;
  for (i = 0; i < 3; ++i) {
    d -= (BOX(u[i]) - eye[i]) * eye[i] / eye_distance;
  }
  return d;
}

/* The page positions (x0, y0, x1, y1) of the visible part of the line from u to v: the
 * part in front of the front distance 1. Far from the box (depth d) the visible part is
 * taken only to the depth d/1000: that is well off the page, and the point of depth 1
 * cannot be computed there. Returns 0 when no part is visible. */
static int visible_part(const double u[3], const double v[3], double s[4]) {
  const double du = depth(u), dv = depth(v);
  const double* keep = du >= dv ? u : v;
  const double* other = du >= dv ? v : u;
  const double dk = du >= dv ? du : dv, dother = du >= dv ? dv : du;
  double end[3], limit = dk / 1000.0 > 1.0 ? dk / 1000.0 : 1.0, t = 1.0;
  int i;
  if (dk < 1.0) {
    return 0;
  }
  if (dother < limit) {
    t = (dk - limit) / (dk - dother);
  }
  for (i = 0; i < 3; ++i) {
    end[i] = USER(BOX(keep[i]) + t * (BOX(other[i]) - BOX(keep[i])));
  }
  rel3pt(keep[0], keep[1], keep[2], &s[0], &s[1]);
  rel3pt(end[0], end[1], end[2], &s[2], &s[3]);
  return 1;
}

/* Whether (px, py) lies within r of the segment s (x0, y0, x1, y1). */
static int near_segment(double px, double py, const double s[4], double r) {
  double dx = s[2] - s[0], dy = s[3] - s[1], t = 0.0, len2 = dx * dx + dy * dy, ex, ey;
  if (len2 > 0.0) {
    t = ((px - s[0]) * dx + (py - s[1]) * dy) / len2;
    t = t < 0.0 ? 0.0 : (t > 1.0 ? 1.0 : t);
  }
  ex = px - s[0] - t * dx;
  ey = py - s[1] - t * dy;
  return ex * ex + ey * ey <= r * r;
}

/* Cuts the segment s to the rectangle 0..w, 0..h; 0 when nothing is left. */
static int cut_to(double s[4], double w, double h) {
  const double d[2] = {s[2] - s[0], s[3] - s[1]}, size[2] = {w, h};
  double t0 = 0.0, t1 = 1.0;
  int k;
  for (k = 0; k < 2; ++k) {
    if (d[k] == 0.0) {
      if (s[k] < 0.0 || s[k] > size[k]) {
        return 0;
      }
    } else {
      double a = -s[k] / d[k], b = (size[k] - s[k]) / d[k];
      if (a > b) {
        double c = a;
        a = b;
        b = c;
      }
      t0 = a > t0 ? a : t0;
      t1 = b < t1 ? b : t1;
    }
  }
  if (t0 > t1) {
    return 0;
  }
  s[2] = s[0] + t1 * d[0];
  s[3] = s[1] + t1 * d[1];
  s[0] += t0 * d[0];
  s[1] += t0 * d[1];
  return 1;
}

/* One scene on a raster page of its own: the pixels it changes must lie within 3 pixels
 * of the visible parts, and the visible parts on the page must have changed pixels
 * within 2 pixels all along. */
static void raster_scene(const Scene* s) {
  double seg[3][4], scale;
  unsigned char *before, *after, *ink;
  int nw = 0, nh = 0, n, i, k, m = 0, stray = 0, missing = 0;
  metafl("VIRT");
  zorini();
  errmod("PROT", "OFF");
  axspos(300, 1850);
  axslen(1500, 1500);
  view3d(eye[0], eye[1], eye[2], "ABS");
  errmod("WARN", "OFF"); /* the box's labels leave the page */
  graf3d(LINEAR3);
  errmod("WARN", "ON");
  color("RED"); /* apart from the box's black edges that the lines may cross */
  for (i = 1; i < s->n; ++i) {
    m += visible_part(s->p[i - 1], s->p[i], seg[m]);
  }
  getimg(&nw, &nh);
  n = 3 * nw * nh;
  before = malloc((size_t)n);
  after = malloc((size_t)n);
  ink = malloc((size_t)(nw * nh));
  if (before == NULL || after == NULL || ink == NULL || rbfrgb((char*)before, n) != n) {
    printf("no raster page\n");
    exit(1);
  }
  draw_scene(s);
  rbfrgb((char*)after, n);
  endgrf();
  zorfin();

  scale = nw / 2970.0; /* pixels per plot unit: the landscape page fills the width */
  for (k = 0; k < m; ++k) {
    for (i = 0; i < 4; ++i) {
      seg[k][i] *= scale;
    }
  }
  for (i = 0; i < nw * nh; ++i) {
    int near = 0;
    ink[i] = memcmp(before + 3 * i, after + 3 * i, 3) != 0;
    for (k = 0; k < m && ink[i] && !near; ++k) {
      near = near_segment(i % nw + 0.5, i / nw + 0.5, seg[k], 3.0);
    }
    stray += ink[i] && !near;
  }
  for (k = 0; k < m; ++k) {
    double steps, t;
    if (!cut_to(seg[k], nw, nh)) {
      continue;
    }
    steps = fabs(seg[k][2] - seg[k][0]) > fabs(seg[k][3] - seg[k][1])
                ? fabs(seg[k][2] - seg[k][0])
                : fabs(seg[k][3] - seg[k][1]);
    for (t = 0.0; t <= steps; t += 1.0) {
      const double f = steps > 0.0 ? t / steps : 0.0;
      const int x = (int)(seg[k][0] + f * (seg[k][2] - seg[k][0]));
      const int y = (int)(seg[k][1] + f * (seg[k][3] - seg[k][1]));
      int found = 0, dx, dy;
      for (dy = -2; dy <= 2; ++dy) {
        for (dx = -2; dx <= 2; ++dx) {
          found |= x + dx >= 0 && x + dx < nw && y + dy >= 0 && y + dy < nh &&
                   ink[(y + dy) * nw + x + dx];
        }
      }
      missing += !found;
    }
  }
  printf("raster, %s: %d stray, %d missing pixels\n", s->name, stray, missing);
  free(before);
  free(after);
  free(ink);
}

/* A PostScript file with "nan" or "inf" in it, or an overlong line, is broken. */
static void check_file(const char* name) {
  char text[256];
  int bad = 0;
  FILE* f = fopen(name, "r");
  if (f == NULL) {
    printf("no file %s\n", name);
    return;
  }
  while (fgets(text, sizeof text, f) != NULL) {
    if (strstr(text, "nan") != NULL || strstr(text, "inf") != NULL || strlen(text) > 81) {
      bad++;
    }
  }
  fclose(f);
  printf("%s: %d bad lines\n", name, bad);
}

int main(void) {
  double x[7] = {0.0, 5.0, NAN, 10.0, 1e300, 2.0, 3.0};
  double y[7] = {0.0, 5.0, 5.0, 10.0, 5.0, -1e300, 7.0};
  double z[7] = {0.0, 5.0, 5.0, INFINITY, 5.0, 2.0, 1e300};
  double xp = -1.0, yp = -1.0;
  int i;

  metafl("PS");
  setfil("axes3d_bad_input.ps");
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  axspos(300, 1850);
  axslen(1500, 1500);

  printf("settings\n");
  axis3d(0.0, 1.0, 1.0);        /* 2 */
  axis3d(1.0, -1.0, 1.0);       /* 2 */
  axis3d(NAN, 1.0, 1.0);        /* 2 */
  vang3d(0.0);                  /* 2 */
  vang3d(180.0);                /* 2 */
  vang3d(NAN);                  /* 2 */
  vclp3d(0.0, 5.0);             /* 2: front kept */
  vclp3d(-1.0, 5.0);            /* 2 */
  vclp3d(4.0, 2.0);             /* 2: back before front */
  vscl3d(0.0);                  /* 2 */
  vscl3d(-1.0);                 /* 2 */
  view3d(5.0, 5.0, 5.0, "XYZ"); /* 2 */
  proj3d("NONE");               /* 2 */
  vclp3d(1.0, 0.0);             /* the front 4 kept from vclp3d(4, 2) would cut everything */
  system3d("after the refused settings, the default view");

  printf("viewpoints inside the box\n");
  view3d(0.5, 0.2, -0.3, "ABS");
  system3d("inside");
  view3d(1.0, 0.3, 0.2, "ABS");
  system3d("on the face x = 1");
  view3d(0.0, 0.0, -1.0, "ABS");
  system3d("on the face z = -1");
  view3d(5.0, 0.0, 5.0, "USER");
  system3d("USER, on the face y = -1");
  view3d(30.0, 20.0, 0.9, "ANGL");
  system3d("ANGL, 0.9 from the centre");
  view3d(NAN, -5.0, 4.0, "ABS");
  system3d("NaN");

  printf("scalings\n");
  view3d(eye[0], eye[1], eye[2], "ABS");
  graf3d(0.0, 10.0, 0.0, 2.0, 5.0, 5.0, 5.0, 1.0, 0.0, 10.0, 0.0, 2.0);
  printf("equal y limits: level %d\n", getlev());
  graf3d(0.0, 10.0, 0.0, 2.0, 0.0, 10.0, 0.0, 2.0, 0.0, 10.0, 0.0, 0.0);
  printf("zero z step: level %d\n", getlev());
  graf3d(NAN, 10.0, 0.0, 2.0, 0.0, 10.0, 0.0, 2.0, 0.0, 10.0, 0.0, 2.0);
  printf("NaN x limit: level %d\n", getlev());

  printf("NaN and huge coordinates\n");
  errmod("WARN", "OFF"); /* the eye is so close that the box's labels leave the page */
  graf3d(LINEAR3);
  errmod("WARN", "ON");
  curv3d(x, y, z, 7);
  strt3d(NAN, 5.0, 5.0);
  conn3d(5.0, 5.0, 5.0);
  conn3d(1e300, 5.0, 5.0);
  conn3d(5.0, 1e300, -1e300);
  conn3d(0.0, 0.0, 0.0);
  strt3d(0.0, 10.0, 0.0);
  conn3d(0.0, 10.0, INFINITY);
  sym3d(4, NAN, 5.0, 5.0);
  sym3d(4, 1e300, 5.0, 5.0);
  sym3d(4, 5.0, 5.0, -1e300);
  show("NaN", NAN, 5.0, 5.0);
  show("1e300, behind the eye", 1e300, 5.0, 5.0);
  show("-1e300, in front", -1e300, 5.0, 5.0);

  printf("past the eye\n");
  show("the eye", USER(eye[0]), USER(eye[1]), USER(eye[2]));
  show("behind the eye", USER(2 * eye[0]), USER(2 * eye[1]), USER(2 * eye[2]));
  for (i = 0; i < SCENES; ++i) {
    draw_scene(&scenes[i]);
  }

  printf("planes\n");
  grfini(0.0, 0.0, 0.0, 10.0, 0.0, 0.0, 10.0, 0.0, 10.0);
  printf("grfini: level %d\n", getlev());
  rel3pt(5.0, 5.0, 5.0, &xp, &yp); /* 3 */
  grfini(0.0, 10.0, 0.0, 10.0, 10.0, 0.0, 10.0, 10.0, 10.0); /* 255: the first one ends */
  printf("grfini again: level %d\n", getlev());
  grffin();
  printf("grffin: level %d\n", getlev());
  grffin(); /* 34 */
  printf("grffin again: level %d\n", getlev());
  grfini(0.0, 0.0, 0.0, 10.0, 0.0, 0.0, 10.0, 0.0, 10.0);
  endgrf(); /* 255 */
  printf("endgrf in a plane: level %d\n", getlev());
  rel3pt(5.0, 5.0, 5.0, &xp, &yp); /* 3 */
  printf("rel3pt at level 1: %g %g\n", xp, yp);
  grffin(); /* 34 */
  zorfin();
  check_file("axes3d_bad_input.ps");

  for (i = 0; i < SCENES; ++i) {
    raster_scene(&scenes[i]);
  }
  return 0;
}

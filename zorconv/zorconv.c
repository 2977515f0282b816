/* zorconv: converts a GKSL metafile into another output format of the library.
 *
 *   zorconv in.met out.pdf
 *
 * The format follows from the output file's extension (ps, eps, pdf, svg, png, ...).
 * Every page of the metafile becomes a page of the output (formats of one page per file
 * write the further pages into numbered files). Warnings go to the console as in every
 * plot. Exit status 0 when the output was opened, 2 for wrong arguments, an unreadable
 * metafile or an output that could not be opened. */
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zorvel.h"

static const char* const formats[][2] = {
    {"ps", "PS"},   {"eps", "EPS"}, {"pdf", "PDF"}, {"svg", "SVG"},   {"png", "PNG"},
    {"gif", "GIF"}, {"bmp", "BMP"}, {"ppm", "PPM"}, {"tif", "TIFF"},  {"tiff", "TIFF"},
    {"cgm", "CGM"}, {"wmf", "WMF"}, {"emf", "EMF"}, {"ipe", "IPE"},   {"java", "JAVA"},
    {"hpg", "HPGL"}, {"hpgl", "HPGL"}, {"plt", "HPGL"}, {"met", "GKSL"}};

static const char* device_of(const char* name) {
  const char* dot = strrchr(name, '.');
  const char* slash = strrchr(name, '/');
  char ext[8];
  size_t i;
  if (dot == NULL || (slash != NULL && dot < slash) || strlen(dot + 1) >= sizeof ext) {
    return NULL;
  }
  for (i = 0; dot[1 + i] != '\0'; i++) {
    ext[i] = (char)tolower((unsigned char)dot[1 + i]);
  }
  ext[i] = '\0';
  for (i = 0; i < sizeof formats / sizeof formats[0]; i++) {
    if (strcmp(ext, formats[i][0]) == 0) {
      return formats[i][1];
    }
  }
  return NULL;
}

/* The page size of the metafile in plot units (tenths of millimetres) from its opening
 * record: width, height and the unit field (0 for centimetres, else centimetres a unit). */
static int page_of(const char* name, int* nx, int* ny) {
  char field[3][11];
  int f = 0;
  int k = 0;
  int c;
  double w;
  double h;
  double unit;
  FILE* in = fopen(name, "rb");
  if (in == NULL) {
    return 0;
  }
  while (f < 3 && (c = getc(in)) != EOF) {
    if (c == '\n' || c == '\r') {
      continue;
    }
    field[f][k++] = (char)c;
    if (k == 10) {
      field[f][10] = '\0';
      k = 0;
      f++;
    }
  }
  fclose(in);
  if (f < 3) {
    return 0;
  }
  w = atof(field[0]);
  h = atof(field[1]);
  unit = atof(field[2]);
  if (unit == 0.0) {
    unit = 1.0;
  }
  if (!(w > 0.0 && h > 0.0 && w * unit < 1e5 && h * unit < 1e5)) {
    return 0;
  }
  *nx = (int)(w * unit * 100.0 + 0.5) + 1;
  *ny = (int)(h * unit * 100.0 + 0.5) + 1;
  return 1;
}

int main(int argc, char** argv) {
  const char* device;
  int nx = 0;
  int ny = 0;
  if (argc != 3) {
    fprintf(stderr, "usage: zorconv in.met out.{ps,eps,pdf,svg,png,...}\n");
    return 2;
  }
  device = device_of(argv[2]);
  if (device == NULL) {
    fprintf(stderr, "zorconv: no output format for %s\n", argv[2]);
    return 2;
  }
  if (!page_of(argv[1], &nx, &ny)) {
    fprintf(stderr, "zorconv: %s is no GKSL metafile\n", argv[1]);
    return 2;
  }
  page(nx, ny);
  metafl(device);
  setfil(argv[2]);
  filmod("DELE");
  zorini();
  if (getlev() == 0) {
    return 2;
  }
  errmod("PROT", "OFF");
  incmet(argv[1], 0, 0, 0, 1.0);
  zorfin();
  return 0;
}

/* One page in every raster format, and the raster page in memory:
 *   raster_page.tif .img .png .ppm .bmp .gif   the page by the devices TIFF, IMAG, PNG,
 *                                              PPM, BMP and GIF (anti-aliased)
 *   raster_exact.png                           the same page without anti-aliasing
 *   raster_memory.png                          the virtual bitmap (VIRT): the page read
 *                                              pixel by pixel, marked, and copied out as
 *                                              a PNG in memory
 *   raster_image.ps                            the virtual bitmap as a PostScript image
 * The raw image (.img) holds the width and height as 32-bit big-endian integers, then
 * the RGB rows from the top. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#include "zorvel.h"

static void draw_page(void) {
  static double x[301], y1[301], y2[301];
  char cbuf[2 * 16 + 1];
  int i;
  for (i = 0; i <= 300; i++) {
    x[i] = i * 0.04;
    y1[i] = exp(-x[i] / 5.0) * cos(2.0 * x[i]);
    y2[i] = 0.6 * sin(1.3 * x[i]) * exp(-x[i] / 8.0);
  }
  helve();
  name("Time [s]", "X");
  name("Amplitude", "Y");
  titlin("Damped oscillations", 1);
  graf(0, 12, 0, 2, -1, 1, -1, 0.5);
  title();
  grid(1, 1);
  legini(cbuf, 2, 16);
  linwid(4);
  curve(x, y1, 301);
  curve(x, y2, 301);
  linwid(1);
  leglin(cbuf, "exp(-t/5) cos 2t", 1);
  leglin(cbuf, "damped sine", 2);
  legend(cbuf, 7);
  endgrf();
}

static void one_format(const char* device, const char* file, int smooth) {
  metafl(device);
  setfil(file);
  filmod("DELE");
  scrmod("REVERS");
  zorini();
  errmod("PROT", "OFF");
  imgopt(smooth ? "ON" : "OFF", "ANTI"); /* the setting stays for later plots */
  draw_page();
  zorfin();
}

int main(void) {
  static const char* devices[6] = {"TIFF", "IMAG", "PNG", "PPM", "BMP", "GIF"};
  static const char* files[6] = {"raster_page.tif", "raster_page.img", "raster_page.png",
                                 "raster_page.ppm", "raster_page.bmp", "raster_page.gif"};
  int i, nclr = 0, nw = 0, nh = 0, n;
  char probe = 0;
  char* png;
  FILE* f;
  for (i = 0; i < 6; i++) {
    one_format(devices[i], files[i], 1);
  }
  one_format("PNG", "raster_exact.png", 0);

  /* The virtual bitmap: no file; the program reads and writes the pixels. */
  metafl("VIRT");
  scrmod("REVERS");
  zorini();
  errmod("PROT", "OFF");
  imgopt("ON", "ANTI");
  draw_page();
  getimg(&nw, &nh);
  imgini();
  rpixel(nw / 2, nh / 2, &nclr);
  for (i = 0; i < nw; i++) { /* a red line across the middle */
    wpixel(i, nh / 2, intrgb(1.0, 0.0, 0.0));
  }
  imgfin();
  printf("virtual bitmap %d x %d, centre pixel 0x%08X\n", nw, nh, (unsigned)nclr);
  n = rbfpng(&probe, 0); /* the size first: nothing is written into 0 bytes */
  png = malloc((size_t)n);
  if (png != NULL && rbfpng(png, n) == n && (f = fopen("raster_memory.png", "wb")) != NULL) {
    fwrite(png, 1, (size_t)n, f);
    fclose(f);
  }
  free(png);
  wimage("raster_image.ps");
  zorfin();
  return 0;
}

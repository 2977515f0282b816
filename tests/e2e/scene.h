/* A complete plot that exercises every part of the output path: lines in every style,
 * widths and caps, own dash patterns, polylines, filled rectangles, colours by name,
 * index and RGB, and text in every font (stroke, outline and the device's own), turned,
 * slanted, framed and as numbers. Shared by the programs that compare plots drawn in
 * threads, check memory over many plots and run under Valgrind.
 *
 * scene_draw() expects an open plot (level 1) on the default page and leaves the
 * settings that outlive a plot (line style, cap) as it found them. */
#ifndef ZORVEL_TEST_SCENE_H
#define ZORVEL_TEST_SCENE_H

#include "zorvel.h"

/* Every device key of the library's device table except the screens. A key whose
 * driver is not built yet gives warning 183 in zorini; programs skip it then. */
static const char* const scene_keys[] = {
    "GKSL", "CGM",  "WMF",  "HPGL", "HPA4", "HPA3", "HPA2", "HPA1", "POST",
    "PSCL", "EPS",  "PS",   "PDF",  "TIFF", "IMAG", "PNG",  "PPM",  "BMP",
    "GIF",  "JAVA", "SVG",  "IPE"};
#define SCENE_KEYS ((int)(sizeof scene_keys / sizeof scene_keys[0]))

typedef void (*scene_font)(void);

static void scene_draw(void) {
  static const char* const names[] = {"RED", "GREE", "BLUE", "ORAN", "CYAN", "MAGE", "BLAC"};
  static const scene_font fonts[] = {zoralf, complx, simplx, duplx, triplx, gothic,
                                     serif,  helve,  helves, helvet, hwfont};
  static const int pattern[] = {40, 10, 5, 10};
  int i;

  /* Line styles and named colours. */
  for (i = 0; i < 8; ++i) {
    lintyp(i);
    color(names[i % 7]);
    line(150, 150 + 50 * i, 1150, 200 + 50 * i);
  }
  myline(pattern, 4);
  strtpt(150.0, 650.0);
  for (i = 1; i <= 40; ++i) {
    connpt(150.0 + 25.0 * i, 650.0 + (i % 2 == 0 ? 0.0 : 80.0));
  }
  solid();

  /* Widths, drawn by the device and as parallel strokes, with every cap. */
  setclr(200);
  for (i = 0; i < 6; ++i) {
    lncap(i % 3 == 0 ? "CUT" : i % 3 == 1 ? "ROUN" : "LONG");
    hwmode(i < 3 ? "ON" : "OFF", "LINE");
    linwid(1 + 7 * i);
    line(1300, 150 + 60 * i, 2700, 180 + 60 * i);
  }
  hwmode("ON", "LINE");
  lncap("LONG");
  linwid(1);

  /* Filled rectangles in table and RGB colours. */
  setvlt("RAIN");
  for (i = 0; i < 12; ++i) {
    point(1350 + 110 * i, 650, 90, 120, 20 * i + 10);
  }
  point(2000, 850, 1200, 60, intrgb(0.2, 0.6, 0.9));
  setrgb(0.9, 0.4, 0.1);
  line(1350, 950, 2650, 950);
  setvlt("SMAL");
  color("FORE");

  /* Text in every font, then turned, slanted, framed, justified and as numbers. */
  height(36);
  for (i = 0; i < (int)(sizeof fonts / sizeof fonts[0]); ++i) {
    fonts[i]();
    messag("Zorvel plots 0123 (x+y)/2 = 1.5", 150, 1000 + 70 * i);
  }
  helve();
  angle(30);
  chaang(15.0);
  messag("turned and slanted", 1500, 1500);
  angle(0);
  chaang(0.0);
  frmess(3);
  txtjus("CENT");
  messag("framed", 2300, 1800);
  frmess(0);
  txtjus("LEFT");
  complx();
  number(3.14159, 3, 1500, 1900);
  number(-42.0, -1, 999, 999);

  /* Axis systems, curves and legends join the scene here when the library draws
   * them. */
}

#endif

/* The output of a gallery example. Each example names its own PostScript device and file
 * (gallery_output("EPS", "axes_linear.eps")), and that is what it writes by default. The
 * environment variable ZORVEL_GALLERY_FORMAT writes the whole gallery in another format
 * instead:
 *   SVG      device "SVG", the file's extension .eps or .ps replaced by .svg;
 *   PDF      device "PDF", the extension replaced by .pdf;
 *   IPE      device "IPE", the extension replaced by .ipe;
 *   CGM      device "CGM", the extension replaced by .cgm;
 *   WMF      device "WMF", the extension replaced by .wmf;
 *   EMF      device "EMF", the extension replaced by .emf;
 *   HPGL     device "HPGL", the extension replaced by .hpg (HP-GL/2 with
 *            ZORVEL_GALLERY_HPGL2=1);
 *   GKSL     the library's metafile, the extension replaced by .met;
 *   PNG      device "PNG", the extension replaced by .png: anti-aliased (unless
 *            ZORVEL_GALLERY_ANTIALIAS is OFF), dark on white paper (scrmod "REVERS"),
 *            at 100 dots per inch;
 *   PS, EPS  the example's own PostScript device and file, as when the variable is unset.
 * The value is matched without regard to case; any other value is reported on standard
 * error and the example writes its default output. tools/gallery.sh runs the gallery once
 * per format. The Java twins in examples/java/ share the same helper (Gallery.java), so
 * that they write the same files as the C examples in every format. */
#ifndef ZORVEL_EXAMPLES_GALLERY_H
#define ZORVEL_EXAMPLES_GALLERY_H

#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zorvel.h"

static int gallery_same_word(const char* a, const char* b) {
  while (*a != '\0' && toupper((unsigned char)*a) == toupper((unsigned char)*b)) {
    ++a;
    ++b;
  }
  return *a == '\0' && *b == '\0';
}

/* Chooses the device and the file (metafl and setfil), at level 0. */
static void gallery_output(const char* device, const char* file) {
  const char* format = getenv("ZORVEL_GALLERY_FORMAT");
  const char* ext = NULL;
  int png = 0;
  char name[256];
  if (format != NULL && format[0] != '\0') {
    if (gallery_same_word(format, "SVG")) {
      device = "SVG";
      ext = ".svg";
    } else if (gallery_same_word(format, "PDF")) {
      device = "PDF";
      ext = ".pdf";
    } else if (gallery_same_word(format, "IPE")) {
      device = "IPE";
      ext = ".ipe";
    } else if (gallery_same_word(format, "CGM")) {
      device = "CGM";
      ext = ".cgm";
    } else if (gallery_same_word(format, "WMF")) {
      device = "WMF";
      ext = ".wmf";
    } else if (gallery_same_word(format, "EMF")) {
      device = "EMF";
      ext = ".emf";
    } else if (gallery_same_word(format, "HPGL")) {
      device = "HPGL";
      ext = ".hpg";
    } else if (gallery_same_word(format, "GKSL")) {
      device = "GKSL";
      ext = ".met";
    } else if (gallery_same_word(format, "PNG")) {
      device = "PNG";
      ext = ".png";
      png = 1;
    } else if (!gallery_same_word(format, "PS") && !gallery_same_word(format, "EPS")) {
      fprintf(stderr, "ZORVEL_GALLERY_FORMAT=%s is none of SVG, PDF, IPE, CGM, WMF, EMF, HPGL, GKSL, PNG, PS, EPS: writing %s\n",
              format, file);
    }
  }
  if (ext != NULL) {
    /* The stem, without an extension .eps or .ps, and the new extension. */
    size_t stem = strlen(file);
    const char* dot = strrchr(file, '.');
    if (dot != NULL && (strcmp(dot, ".eps") == 0 || strcmp(dot, ".ps") == 0)) {
      stem = (size_t)(dot - file);
    }
    snprintf(name, sizeof name, "%.*s%s", (int)stem, file, ext);
    file = name;
  }
  metafl(device);
  if (gallery_same_word(device, "HPGL")) {
    const char* two = getenv("ZORVEL_GALLERY_HPGL2");
    hpmode(two != NULL && two[0] == '1' ? "HPG2" : "HPGL");
  }
  setfil(file);
  if (png) {
    const char* smooth = getenv("ZORVEL_GALLERY_ANTIALIAS");
    scrmod("REVERS");
    imgdpi(100);
    if (smooth == NULL || !gallery_same_word(smooth, "OFF")) {
      imgopt("ON", "ANTI");
    }
  }
}

#endif

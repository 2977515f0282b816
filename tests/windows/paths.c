/* File names that the Windows layer must take like Linux: UTF-8 names (written through
 * the wide-character API on Windows), a long name, a missing directory, and a memory
 * file. The messages and the files written must be the same on both systems. */
#include <stdio.h>
#include <string.h>

#include "zorvel.h"

static void plot(const char* device, const char* file) {
  metafl(device);
  setfil(file);
  filmod("DELE");
  zorini();
  errmod("PROT", "OFF");
  messag("A file by name", 300, 300);
  zorfin();
}

int main(void) {
  char name[256];
  static char buf[65536];
  int n;
  plot("PS", "Gr\xc3\xbc\xc3\x9f" "e_\xce\xb1\xce\xb2.ps"); /* Grüße_αβ.ps */
  memset(name, 'n', 200);
  strcpy(name + 200, ".svg");
  plot("SVG", name);
  plot("PDF", "no_such_directory/plot.pdf"); /* warning 36, nothing written */
  memfil("ON");
  plot("PNG", "memory.png");
  n = rbffil(buf, (int)sizeof buf);
  printf("memory file: %d bytes, %s\n", n, n > 8 && memcmp(buf + 1, "PNG", 3) == 0 ? "PNG" : "?");
  return 0;
}

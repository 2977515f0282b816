/* Catches plots lost without a word: a plot file deleted between zorini and zorfin, or
 * replaced by another file under its name, gives warning 185 in zorfin, and the file
 * put in its place stays as it is; the plots before and after are written whole, and
 * a zorfin without a plot is refused. (Plot files that cannot be created are in
 * bad_input.c, a full disk in disk_full.c.) */
#define _POSIX_C_SOURCE 200809L
#include <stdio.h>
#include <unistd.h>

#include "scene.h"

static void start(const char* key, const char* file) {
  metafl(key);
  setfil(file);
  zorini();
  errmod("PROT", "OFF");
  scene_draw();
}

/* The first and the last line of a file. */
static void show(const char* name) {
  char first[200] = "", line[200] = "";
  FILE* f = fopen(name, "r");
  if (f == NULL) {
    printf("%s: missing\n", name);
    return;
  }
  if (fgets(first, sizeof first, f) != NULL) {
    while (fgets(line, sizeof line, f) != NULL) {
    }
  }
  fclose(f);
  printf("%s: %s   ... %s", name, first, line[0] != '\0' ? line : "(one line)\n");
}

int main(void) {
  FILE* f;
  start("PS", "before.ps");
  zorfin();

  start("JAVA", "deleted.java");
  unlink("deleted.java");
  zorfin();

  f = fopen("other.txt", "w");
  if (f != NULL) {
    fputs("not a plot\n", f);
    fclose(f);
  }
  start("GKSL", "replaced.met");
  rename("other.txt", "replaced.met");
  zorfin();

  start("EPS", "after.eps");
  zorfin();
  zorfin(); /* no plot open: warning 3 */

  show("before.ps");
  show("deleted.java");
  show("replaced.met");
  show("after.eps");
  return 0;
}

/* Runs the library calls of one 3D view case, one call a line from standard input
 * ("axis3d 2 3 1.5", "view3d 40 -20 6 ANGL", "rel3pt 1 2 3", ...), and prints what the
 * calls return: "rel3pt XP YP" with %.17g and "level N" for getlev. The library's
 * warnings go to standard output between them, in call order. reference.py writes the
 * cases and checks the numbers. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include "zorvel.h"

#define MAX_ARGS 12

static double num(char** args, int i) { return strtod(args[i], NULL); }
static int inum(char** args, int i) { return (int)strtol(args[i], NULL, 10); }

static int call(const char* name, char** a, int n) {
#define IS(routine, count) (strcmp(name, routine) == 0 && n == (count))
  if (IS("metafl", 1)) metafl(a[0]);
  else if (IS("setfil", 1)) setfil(a[0]);
  else if (IS("zorini", 0)) zorini();
  else if (IS("zorfin", 0)) zorfin();
  else if (IS("errmod", 2)) errmod(a[0], a[1]);
  else if (IS("setpag", 1)) setpag(a[0]);
  else if (IS("units", 1)) units(a[0]);
  else if (IS("page", 2)) page(inum(a, 0), inum(a, 1));
  else if (IS("pagorg", 1)) pagorg(a[0]);
  else if (IS("axspos", 2)) axspos(inum(a, 0), inum(a, 1));
  else if (IS("axslen", 2)) axslen(inum(a, 0), inum(a, 1));
  else if (IS("axsscl", 2)) axsscl(a[0], a[1]);
  else if (IS("axis3d", 3)) axis3d(num(a, 0), num(a, 1), num(a, 2));
  else if (IS("view3d", 4)) view3d(num(a, 0), num(a, 1), num(a, 2), a[3]);
  else if (IS("vfoc3d", 4)) vfoc3d(num(a, 0), num(a, 1), num(a, 2), a[3]);
  else if (IS("vup3d", 1)) vup3d(num(a, 0));
  else if (IS("vang3d", 1)) vang3d(num(a, 0));
  else if (IS("vclp3d", 2)) vclp3d(num(a, 0), num(a, 1));
  else if (IS("vscl3d", 1)) vscl3d(num(a, 0));
  else if (IS("proj3d", 1)) proj3d(a[0]);
  else if (IS("graf", 8))
    graf(num(a, 0), num(a, 1), num(a, 2), num(a, 3), num(a, 4), num(a, 5), num(a, 6),
         num(a, 7));
  else if (IS("graf3d", 12))
    graf3d(num(a, 0), num(a, 1), num(a, 2), num(a, 3), num(a, 4), num(a, 5), num(a, 6),
           num(a, 7), num(a, 8), num(a, 9), num(a, 10), num(a, 11));
  else if (IS("endgrf", 0)) endgrf();
  else if (IS("getlev", 0)) printf("level %d\n", getlev());
  else if (IS("rel3pt", 3)) {
    /* A refused call leaves the results alone: the sentinel shows it. */
    double xp = -7777.0, yp = -7777.0;
    rel3pt(num(a, 0), num(a, 1), num(a, 2), &xp, &yp);
    printf("rel3pt %.17g %.17g\n", xp, yp);
  } else {
    return 0;
  }
#undef IS
  fflush(stdout);
  return 1;
}

int main(void) {
  char line[512];
  int lineno = 0;
  while (fgets(line, sizeof line, stdin) != NULL) {
    char* args[MAX_ARGS + 1];
    char* name = strtok(line, " \t\r\n");
    int n = 0;
    ++lineno;
    if (name == NULL) {
      continue;
    }
    while (n <= MAX_ARGS && (args[n] = strtok(NULL, " \t\r\n")) != NULL) {
      ++n;
    }
    if (!call(name, args, n)) {
      fprintf(stderr, "line %d: unknown call %s with %d arguments\n", lineno, name, n);
      return 2;
    }
  }
  return 0;
}

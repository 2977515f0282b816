/* Catches memory and file descriptors that a plot leaves behind: draws COUNT complete
 * plots (the scene of tests/e2e/scene.h, zorini to zorfin) into a temporary folder,
 * going round the devices with a driver, and samples the resident set size and the
 * number of open descriptors every 1000 plots. Fails when the resident set grows by more
 * than BOUND_KB after the first 1000 plots (the warm-up: allocator pools, font tables),
 * or when a descriptor stays open. The first half of the plots share one block; in the
 * second half every 100th plot frees it (delglb), so that creating and freeing blocks is
 * measured too.
 *
 * Usage: many_plots [COUNT]   (default 10000) */
#define _POSIX_C_SOURCE 200809L
#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "scene.h"

#define SAMPLE 1000
#define BOUND_KB 256L

static long rss_kb(void) {
  char line[256];
  long kb = -1;
  FILE* f = fopen("/proc/self/status", "r");
  while (f != NULL && fgets(line, sizeof line, f) != NULL) {
    if (strncmp(line, "VmRSS:", 6) == 0) {
      kb = strtol(line + 6, NULL, 10);
    }
  }
  if (f != NULL) {
    fclose(f);
  }
  return kb;
}

/* Open descriptors, not counting the one that reads the folder. */
static int open_fds(void) {
  int n = 0;
  DIR* d = opendir("/proc/self/fd");
  if (d == NULL) {
    return -1;
  }
  while (readdir(d) != NULL) {
    ++n;
  }
  closedir(d);
  return n - 3; /* ".", ".." and the folder's own descriptor */
}

/* Draws the scene with device `key` into `file`; 0 when the device has no driver. */
static int plot(const char* key, const char* file) {
  metafl(key);
  setfil(file);
  filmod("DELE");
  zorini();
  if (getlev() == 0) {
    return 0;
  }
  errmod("PROT", "OFF");
  scene_draw();
  zorfin();
  return 1;
}

int main(int argc, char** argv) {
  const long count = argc > 1 ? strtol(argv[1], NULL, 10) : 10000;
  const char* tmp = getenv("TMPDIR");
  char dir[4096];
  char file[4200];
  int keys[SCENE_KEYS];
  int nkeys = 0, k, fds_start, fds_end, failed = 0;
  long i, rss_start, rss_warm = -1, rss_end = -1;

  snprintf(dir, sizeof dir, "%s/many_plots.XXXXXX", tmp != NULL && *tmp != '\0' ? tmp : "/tmp");
  if (count < 1 || mkdtemp(dir) == NULL) {
    printf("usage: many_plots [COUNT >= 1]; TMPDIR must be writable\n");
    return 2;
  }
  snprintf(file, sizeof file, "%s/plot", dir);
  fds_start = open_fds();
  rss_start = rss_kb();
  /* The devices with a driver; the others give warning 183 once here. */
  for (k = 0; k < SCENE_KEYS; ++k) {
    if (plot(scene_keys[k], file)) {
      keys[nkeys++] = k;
    }
  }
  if (nkeys == 0) {
    printf("no device with a driver\n");
    return 1;
  }
  printf("%8s %10s %5s\n", "plots", "RSS kB", "fds");
  printf("%8d %10ld %5d\n", 0, rss_start, fds_start);
  for (i = 1; i <= count; ++i) {
    plot(scene_keys[keys[i % nkeys]], file);
    if (i > count / 2 && i % 100 == 0) {
      delglb();
    }
    if (i % SAMPLE == 0 || i == count) {
      const long rss = rss_kb();
      const int fds = open_fds();
      printf("%8ld %10ld %5d\n", i, rss, fds);
      fflush(stdout);
      if (i == SAMPLE) {
        rss_warm = rss;
      }
      rss_end = rss;
      if (fds != fds_start) {
        failed = 1;
      }
    }
  }
  fds_end = open_fds();
  remove(file);
  remove(dir);
  delglb();
  if (rss_warm < 0) {
    rss_warm = rss_end;
  }
  printf("%ld plots in %d devices: RSS %ld kB at start, %ld kB after warm-up, %ld kB at the "
         "end (growth %ld kB, bound %ld kB); fds %d at start, %d at the end\n",
         count, nkeys, rss_start, rss_warm, rss_end, rss_end - rss_warm, BOUND_KB, fds_start,
         fds_end);
  if (rss_end - rss_warm > BOUND_KB || fds_end != fds_start) {
    failed = 1;
  }
  if (failed) {
    printf("FAIL: memory or descriptors grow with the number of plots\n");
  }
  return failed;
}

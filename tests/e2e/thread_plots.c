/* Catches state shared between threads that leaks into the output: the scene of
 * scene.h is drawn single-threaded in every device with a driver, then by THREADS
 * threads at once, each going twice through the devices from its own starting point,
 * and once more after thrfin; every file must hold the same bytes as the first drawing.
 * The same program runs under ThreadSanitizer. Devices without a driver give warning
 * 183 in the first pass and are skipped. Each drawing has a folder of its own, as the
 * applet names its class after the file. The thread beyond the table's size is
 * too_many_threads.c. */
#define _POSIX_C_SOURCE 200809L
#include <pthread.h>
#include <sys/stat.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "scene.h"

#define THREADS 4

static int available[SCENE_KEYS];
static int differs[THREADS][SCENE_KEYS];

/* Draws the scene into `file`; 0 when the device could not start. */
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

static char* slurp(const char* file, long* size) {
  FILE* f = fopen(file, "rb");
  char* data = NULL;
  *size = -1;
  if (f != NULL && fseek(f, 0, SEEK_END) == 0 && (*size = ftell(f)) >= 0 &&
      fseek(f, 0, SEEK_SET) == 0 && (data = malloc((size_t)*size + 1)) != NULL &&
      fread(data, 1, (size_t)*size, f) != (size_t)*size) {
    free(data);
    data = NULL;
  }
  if (f != NULL) {
    fclose(f);
  }
  return data;
}

static void file_name(char* buf, size_t n, const char* folder, int key) {
  snprintf(buf, n, "%s/%s.plt", folder, scene_keys[key]);
}

/* Draws `key` into `folder` and compares the file with the reference; the file is
 * removed when it holds the same bytes. 1 when it differs. */
static int draw_and_compare(int key, const char* folder) {
  char ref[32], file[32];
  long na = 0, nb = 0;
  char* a;
  char* b;
  int same;
  file_name(ref, sizeof ref, "ref", key);
  file_name(file, sizeof file, folder, key);
  plot(scene_keys[key], file);
  a = slurp(ref, &na);
  b = slurp(file, &nb);
  same = a != NULL && b != NULL && na == nb && memcmp(a, b, (size_t)na) == 0;
  free(a);
  free(b);
  if (same) {
    remove(file);
  }
  return !same;
}

static void* worker(void* arg) {
  const int t = (int)(size_t)arg;
  char folder[8];
  int k;
  snprintf(folder, sizeof folder, "t%d", t);
  for (k = 0; k < 2 * SCENE_KEYS; ++k) {
    const int key = (t + k) % SCENE_KEYS;
    if (available[key]) {
      differs[t][key] |= draw_and_compare(key, folder);
    }
  }
  return NULL;
}

int main(void) {
  pthread_t threads[THREADS];
  static const char* const folders[THREADS + 2] = {"ref", "t0", "t1", "t2", "t3", "after"};
  int key, t, first = -1, failures = 0;
  char ref[32];

  for (t = 0; t < (int)(sizeof folders / sizeof folders[0]); ++t) {
    mkdir(folders[t], 0777);
  }
  for (key = 0; key < SCENE_KEYS; ++key) {
    file_name(ref, sizeof ref, "ref", key);
    available[key] = plot(scene_keys[key], ref);
    if (available[key] && first < 0) {
      first = key;
    }
  }
  delglb();
  thrini(THREADS);
  for (t = 0; t < THREADS; ++t) {
    pthread_create(&threads[t], NULL, worker, (void*)(size_t)t);
  }
  for (t = 0; t < THREADS; ++t) {
    pthread_join(threads[t], NULL);
  }
  thrfin();
  if (first >= 0 && draw_and_compare(first, "after")) {
    printf("%s after thrfin differs\n", scene_keys[first]);
    ++failures;
  }

  for (key = 0; key < SCENE_KEYS; ++key) {
    int bad = 0;
    if (!available[key]) {
      continue;
    }
    for (t = 0; t < THREADS; ++t) {
      if (differs[t][key]) {
        printf("%s in thread %d differs\n", scene_keys[key], t);
        ++bad;
      }
    }
    if (bad == 0) {
      printf("%s: %d threads, same bytes\n", scene_keys[key], THREADS);
    }
    failures += bad;
  }
  if (failures == 0) {
    for (key = 0; key < SCENE_KEYS; ++key) {
      file_name(ref, sizeof ref, "ref", key);
      remove(ref);
    }
    for (t = 0; t < (int)(sizeof folders / sizeof folders[0]); ++t) {
      remove(folders[t]);
    }
  }
  delglb();
  return failures != 0;
}

/* Catches faults of the thread table: its console texts, one block per thread (each
 * thread's settings and plot stay its own), thrfin ending thread mode and finishing the
 * plot a thread left open (warning 184, the file complete). The same program runs under
 * ThreadSanitizer, which catches data races in the slot lookup. */
#include <pthread.h>
#include <stdio.h>
#include "zorvel.h"

static void* worker(void* arg) {
  const char* name = (const char*)arg;
  int i;
  for (i = 0; i < 20; ++i) {
    metafl("GKSL");
    setfil(name);
    filmod("DELE");
    zorini();
    errmod("PROT", "OFF");
    zorfin();
  }
  return NULL;
}

static void* leaves_open(void* arg) {
  (void)arg;
  metafl("PS");
  setfil("left_open.ps");
  filmod("DELE");
  zorini();
  messag("drawn in a thread that ends without zorfin", 100, 100);
  return NULL;
}

int main(void) {
  pthread_t t[4];
  char last[200] = "nothing\n";
  FILE* f;
  static const char* names[3] = {"thread_a.met", "thread_b.met", "thread_c.met"};
  int i;
  thrfin();                       /* not in thread mode */
  thrini(0);                      /* invalid, stays in single-thread mode */
  thrini(5);
  thrini(5);                      /* already called */
  for (i = 0; i < 3; ++i) {
    pthread_create(&t[i], NULL, worker, (void*)names[i]);
  }
  pthread_create(&t[3], NULL, leaves_open, NULL);
  for (i = 0; i < 4; ++i) {
    pthread_join(t[i], NULL);
  }
  printf("main level %d\n", getlev());
  thrfin();                       /* finishes left_open.ps: warning 184 */
  f = fopen("left_open.ps", "r");
  while (f != NULL && fgets(last, sizeof last, f) != NULL) {
  }
  if (f != NULL) {
    fclose(f);
  }
  printf("left_open.ps ends with %s", last);
  thrfin();                       /* thread mode has ended */
  printf("single level %d\n", getlev());
  delglb();
  return 0;
}

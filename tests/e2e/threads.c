/* Catches faults of the thread table: its console texts, one block per thread (each
 * thread's settings and plot stay its own), and thrfin ending thread mode. The same
 * program runs under ThreadSanitizer, which catches data races in the slot lookup. */
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

int main(void) {
  pthread_t t[3];
  static const char* names[3] = {"thread_a.met", "thread_b.met", "thread_c.met"};
  int i;
  thrfin();                       /* not in thread mode */
  thrini(0);                      /* invalid, stays in single-thread mode */
  thrini(4);
  thrini(4);                      /* already called */
  for (i = 0; i < 3; ++i) {
    pthread_create(&t[i], NULL, worker, (void*)names[i]);
  }
  for (i = 0; i < 3; ++i) {
    pthread_join(t[i], NULL);
  }
  printf("main level %d\n", getlev());
  thrfin();
  thrfin();                       /* thread mode has ended */
  printf("single level %d\n", getlev());
  delglb();
  return 0;
}

/* Catches a thread table that hands out more slots than it has, or ends the process
 * with the wrong text or status; and the notice for a routine called before thrini. */
#include <pthread.h>
#include <stdio.h>
#include "zorvel.h"

static void* second(void* arg) {
  (void)arg;
  getlev();                       /* no free slot: the process ends with status 1 */
  printf("not reached\n");
  return NULL;
}

int main(void) {
  pthread_t t;
  getlev();                       /* creates the single-thread block */
  thrini(1);                      /* notice: a routine was called before */
  printf("main level %d\n", getlev());
  fflush(stdout);
  pthread_create(&t, NULL, second, NULL);
  pthread_join(t, NULL);
  return 0;
}

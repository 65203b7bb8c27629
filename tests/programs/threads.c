// Eight threads at once, each with its own vectors and its own traced region.
#include <pthread.h>
#include <stdlib.h>

#include <quern/roi.h>
#include "program.h"
#include "sve_code.h"

enum { THREADS = 8, ROUNDS = 40, ELEMENTS = 500 };

static bool traced;  // a processor with SVE knows no marks

static void* run(void* argument) {
  const uint32_t number = *(uint32_t*)argument;
  uint32_t elements[ELEMENTS], expected = 0;
  for (uint32_t i = 0; i < ELEMENTS; ++i) expected += elements[i] = i * number + 1;
  __asm__ volatile("" : : "r"(elements) : "memory");
  bool right = true;
  for (int round = 0; round < ROUNDS; ++round) {
    if (round == ROUNDS / 2 && traced) quern_roi_begin();
    right = vector_sum(elements, ELEMENTS) == expected && right;
  }
  if (traced) quern_roi_end();
  return right ? argument : NULL;
}

int main(void) {
  traced = getenv("LD_PRELOAD") != NULL;
  pthread_t threads[THREADS];
  uint32_t numbers[THREADS];
  for (uint32_t i = 0; i < THREADS; ++i) {
    numbers[i] = i + 1;
    pthread_create(&threads[i], NULL, run, &numbers[i]);
  }
  for (int i = 0; i < THREADS; ++i) {
    void* result;
    pthread_join(threads[i], &result);
    check("thread's sums", result == &numbers[i]);
  }
  return finish("threads");
}

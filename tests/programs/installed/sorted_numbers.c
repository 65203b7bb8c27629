// Sorts numbers by Highway's library, which chooses the code for it when it runs, and says whether that is SVE's.
#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>

#include "program.h"

enum { HIGHWAY_SVE = 1 << 27, HIGHWAY_SVE2 = 1 << 26, COUNT = 10007 };

static void* function(void* library, const char* name) {
  void* const found = dlsym(library, name);
  if (!found) abort();
  return found;
}

static int by_value(const void* a, const void* b) {
  const uint32_t x = *(const uint32_t*)a, y = *(const uint32_t*)b;
  return x < y ? -1 : x > y;
}

// hwy::Sorter sorter; sorter(numbers, count, hwy::SortAscending());
static void sort(void* library, uint32_t* numbers, size_t count) {
  void (*const construct)(void**) = function(library, "_ZN3hwy6SorterC1Ev");
  void (*const call)(void**, uint32_t*, size_t, char) = function(library, "_ZNK3hwy6SorterclEPjmNS_13SortAscendingE");
  void* sorter = NULL;
  construct(&sorter);
  call(&sorter, numbers, count, 0);
}

int main(void) {
  void* const library = dlopen("libhwy_contrib.so.1", RTLD_NOW);
  if (!library) abort();
  static uint32_t numbers[COUNT], wanted[COUNT];
  fill_random(numbers, sizeof numbers);
  memcpy(wanted, numbers, sizeof numbers);
  qsort(wanted, COUNT, sizeof *wanted, by_value);
  sort(library, numbers, COUNT);
  check("sorted", same_bytes(numbers, wanted, sizeof numbers));
  int64_t (*const targets)(void) = function(library, "_ZN3hwy16SupportedTargetsEv");
  printf("SVE: %s\n", targets() & HIGHWAY_SVE ? "yes" : "no");
  printf("SVE2: %s\n", targets() & HIGHWAY_SVE2 ? "yes" : "no");
  return finish("sorted_numbers");
}

// Memory whose end is the end of what can be read.
#ifndef QUERN_TESTS_GUARDED_PAGES_H
#define QUERN_TESTS_GUARDED_PAGES_H

#include <stdint.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

// The end of `pages` readable pages; the page behind can't be touched.
static inline uint8_t* end_of_readable(size_t pages) {
  const size_t page = (size_t)sysconf(_SC_PAGESIZE);
  uint8_t* const base = mmap(NULL, (pages + 1) * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (base == MAP_FAILED || mprotect(base + pages * page, page, PROT_NONE) != 0) abort();
  return base + pages * page;
}

#endif

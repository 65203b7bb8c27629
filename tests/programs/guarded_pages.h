// Memory whose end is the end of what can be read.
#ifndef QUERN_TESTS_GUARDED_PAGES_H
#define QUERN_TESTS_GUARDED_PAGES_H

#include <stdint.h>
#include <stdio.h>
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

// The end of a file of `pages` pages; the page behind is mapped, but nothing is behind it.
static inline uint8_t* end_of_file(size_t pages) {
  const size_t page = (size_t)sysconf(_SC_PAGESIZE);
  FILE* const file = tmpfile();
  if (!file || ftruncate(fileno(file), (off_t)(pages * page)) != 0) abort();
  uint8_t* const base = mmap(NULL, (pages + 1) * page, PROT_READ | PROT_WRITE, MAP_SHARED, fileno(file), 0);
  if (base == MAP_FAILED) abort();
  return base + pages * page;
}

#endif

// The region of interest: under quern, a thread's SVE loads and stores are traced between quern_roi_begin() and
// quern_roi_end(). Anywhere else both do nothing, so that one build serves for both. C and C++; quern/roi.f90 is the
// same for Fortran.
#ifndef QUERN_ROI_H
#define QUERN_ROI_H

#ifndef QUERN_ROI_FUNCTION  // roi.c makes them functions to link
#define QUERN_ROI_FUNCTION static inline
#endif

#ifdef __aarch64__
#include <errno.h>
#include <stdio.h>
#include <string.h>

// A mark is a word that the architecture leaves undefined, and so ends a program that quern does not run. Whether quern
// runs it is told by the files that are mapped into the process: a host's library is one of them, whichever host it is
// and however the program is linked. They are looked through once, at the first mark; each other mark is a load and a
// branch. Where /proc can't be read, nothing is marked.
static inline int quern_roi_is_host(const char* mapping) {
  const char* const name = strstr(mapping, "/libquern_");
  return name != NULL && (strncmp(name + 10, "trap_", 5) == 0 || (name[10] >= '0' && name[10] <= '9'));
}

static inline int quern_roi_look_for_host(void) {
  char mapping[4400];  // a line: addresses, and a path of up to 4,096 bytes
  const int kept_errno = errno;
  int found = 0;
  FILE* const mappings = fopen("/proc/self/maps", "re");
  while (mappings != NULL && !found && fgets(mapping, sizeof mapping, mappings) != NULL) {
    found = quern_roi_is_host(mapping);
  }
  if (mappings != NULL) fclose(mappings);
  errno = kept_errno;
  return found;
}

// Not for signal handlers until it was called once.
static inline int quern_roi_is_traced(void) {
  static int answer = -1;
  int known = __atomic_load_n(&answer, __ATOMIC_RELAXED);
  if (known < 0) {
    known = quern_roi_look_for_host();
    __atomic_store_n(&answer, known, __ATOMIC_RELAXED);
  }
  return known;
}

QUERN_ROI_FUNCTION void quern_roi_begin(void) {
  if (quern_roi_is_traced()) __asm__ volatile(".inst 0x2520e020" : : : "memory");  // add z0.b, z0.b, #1, lsl #8
}

QUERN_ROI_FUNCTION void quern_roi_end(void) {
  if (quern_roi_is_traced()) __asm__ volatile(".inst 0x2520e040" : : : "memory");  // add z0.b, z0.b, #2, lsl #8
}

#else
QUERN_ROI_FUNCTION void quern_roi_begin(void) {}
QUERN_ROI_FUNCTION void quern_roi_end(void) {}
#endif

#endif

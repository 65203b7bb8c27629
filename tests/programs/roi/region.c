// A region of interest around one traced load. C and C++.
#include <quern/roi.h>
#include <stdio.h>

static const unsigned char bytes[4096] = {7};

int main(void) {
  unsigned first = 7;
  quern_roi_begin();
#ifdef __ARM_FEATURE_SVE
  __asm__ volatile(
      "ptrue p0.b\n"
      "ld1b {z0.b}, p0/z, [%1]\n"
      "umov %w0, v0.b[0]\n"
      : "=r"(first)
      : "r"(bytes)
      : "z0", "p0", "memory");
#endif
  quern_roi_end();
  quern_roi_begin();
  quern_roi_end();
  printf("%u\n", first);
  return 0;
}

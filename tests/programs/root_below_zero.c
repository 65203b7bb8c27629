// Square roots of numbers below zero: NaNs, the invalid flag, and errno as it was, which no instruction may touch.
#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

// The root of x by an SVE instruction, in element 0.
static float root(float x) {
  float r;
  __asm__ volatile(
      "ptrue p0.s\n\t"
      "mov z1.s, %s1\n\t"
      "fsqrt z0.s, p0/m, z1.s\n\t"
      "fmov %s0, s0"
      : "=&w"(r)
      : "w"(x)
      : "z0", "z1", "p0");
  return r;
}

static uint64_t flags(void) {
  uint64_t fpsr;
  __asm__ volatile("mrs %0, fpsr" : "=r"(fpsr));
  return fpsr & 0x9F;
}

int main(void) {
  static const float numbers[] = {4.0f, -0.0f, -1.0f, -2.5f};
  errno = E2BIG;
  for (int i = 0; i != 4; ++i) {
    const float r = root(numbers[i]);
    uint32_t bits;
    memcpy(&bits, &r, sizeof bits);
    printf("%08x, flags %02x\n", bits, (unsigned)flags());
  }
  printf("errno %s\n", errno == E2BIG ? "kept" : "changed");
  return errno == E2BIG ? 0 : 1;
}

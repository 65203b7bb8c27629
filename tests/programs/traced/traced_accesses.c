// A region whose records can be worked out by hand: they are in traced_accesses.golden. The memory stands at a fixed
// address; the program prints nothing.
#include <stdint.h>
#include <sys/mman.h>

#include <quern/roi.h>

enum { BYTES = 65536 };
static void* const memory_address = (void*)0x700000000;

static void traced_region(uint8_t* memory) {
  const uint64_t three = 3, one = 1, index = 1000;
  __asm__ volatile(
      "  ptrue p0.s\n"
      "  ptrue p2.h\n"
      "  pfalse p6.b\n"
      "  whilelo p1.s, xzr, %[three]\n"
      "  whilelo p4.d, xzr, %[three]\n"  // as words: lanes 0, 2 and 4
      "  whilelo p5.s, xzr, %[one]\n"
      "  index z4.s, #0, #8\n"
      "  .inst 0x2520e020\n"                                // start
      "  ld1w {z0.s}, p0/z, [%[memory]]\n"                  // a whole vector
      "  ld1w {z1.s}, p1/z, [%[memory], #1, mul vl]\n"      // three neighbours in one record
      "  ld1b {z2.h}, p2/z, [%[memory]]\n"                  // all lanes: told as a whole vector, though 128 bytes
      "  st1h {z2.s}, p1, [%[memory], %[index], lsl #1]\n"  // stores of narrower elements
      "  ld1w {z3.s}, p4/z, [%[memory]]\n"                  // three lanes, none neighbours
      "  ld1w {z5.s}, p1/z, [%[memory], z4.s, uxtw]\n"      // a group of three
      "  st1w {z5.s}, p5, [%[memory], z4.s, uxtw #2]\n"     // a group of one
      "  ld1w {z0.s}, p6/z, [%[memory]]\n"                  // nothing
      "  .inst 0x2520e040\n"                                // stop
      "  ld1w {z0.s}, p0/z, [%[memory]]\n"
      "  st1w {z0.s}, p0, [%[memory]]\n"
      :
      : [memory] "r"(memory), [three] "r"(three), [one] "r"(one), [index] "r"(index)
      : "z0", "z1", "z2", "z3", "z4", "z5", "p0", "p1", "p2", "p4", "p5", "p6", "cc", "memory");
}

int main(void) {
  uint8_t* const memory =
      mmap(memory_address, BYTES, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
  if (memory != memory_address) return 1;
  traced_region(memory);
  // A region of its own, with a start too many, and then a stop too many: each mark is a record.
  quern_roi_begin();
  quern_roi_begin();
  quern_roi_end();
  quern_roi_end();
  return 0;
}

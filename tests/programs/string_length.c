// String length and comparison by first-fault loads, with strings that end just before an unmapped page.
#include "guarded_pages.h"
#include "program.h"

static size_t vector_strlen(const uint8_t* string) {
  size_t length;
  __asm__ volatile(
      "  mov %[length], #0\n"
      "  ptrue p0.b\n"
      "0: setffr\n"
      "  ldff1b {z0.b}, p0/z, [%[string], %[length]]\n"
      "  rdffr p1.b, p0/z\n"
      "  cmpeq p2.b, p1/z, z0.b, #0\n"  // only what was loaded counts
      "  b.any 1f\n"
      "  incp %[length], p1.b\n"
      "  b 0b\n"
      "1: brkb p2.b, p0/z, p2.b\n"
      "  incp %[length], p2.b\n"
      : [length] "=&r"(length)
      : [string] "r"(string)
      : "z0", "p0", "p1", "p2", "cc", "memory");
  return length;
}

// The place of the first difference, or of the end of both.
static size_t vector_mismatch(const uint8_t* a, const uint8_t* b) {
  size_t place;
  __asm__ volatile(
      "  mov %[place], #0\n"
      "  ptrue p0.b\n"
      "0: setffr\n"
      "  ldff1b {z0.b}, p0/z, [%[a], %[place]]\n"
      "  ldff1b {z1.b}, p0/z, [%[b], %[place]]\n"
      "  rdffr p1.b, p0/z\n"
      "  cmpne p2.b, p1/z, z0.b, z1.b\n"
      "  cmpeq p3.b, p1/z, z0.b, #0\n"
      "  orr p2.b, p1/z, p2.b, p3.b\n"
      "  ptest p0, p2.b\n"
      "  b.any 1f\n"
      "  incp %[place], p1.b\n"
      "  b 0b\n"
      "1: brkb p2.b, p0/z, p2.b\n"
      "  incp %[place], p2.b\n"
      : [place] "=&r"(place)
      : [a] "r"(a), [b] "r"(b)
      : "z0", "z1", "p0", "p1", "p2", "p3", "cc", "memory");
  return place;
}

static SCALAR size_t scalar_strlen(const uint8_t* string) {
  size_t length = 0;
  while (((const volatile uint8_t*)string)[length]) ++length;
  return length;
}

static SCALAR size_t scalar_mismatch(const volatile uint8_t* a, const volatile uint8_t* b) {
  size_t place = 0;
  while (a[place] == b[place] && a[place]) ++place;
  return place;
}

// A string of `length` characters whose end is as far as `spare` bytes from the unmapped page.
static SCALAR uint8_t* put_string(uint8_t* end, size_t length, size_t spare) {
  uint8_t* const string = end - spare - 1 - length;
  for (size_t i = 0; i < length; ++i) string[i] = (uint8_t)('a' + i % 26);
  string[length] = 0;
  return string;
}

int main(void) {
  uint8_t *first_end = end_of_readable(2), *second_end = end_of_readable(2);
  static const size_t spares[] = {0, 1, 3, 200, 300};
  for (size_t s = 0; s < sizeof spares / sizeof *spares; ++s) {
    for (size_t i = 0; i < TEST_SIZES; ++i) {
      const size_t n = test_sizes[i];
      uint8_t* const string = put_string(first_end, n, spares[s]);
      check_case("length", n, vector_strlen(string) == n && scalar_strlen(string) == n);
      uint8_t* const other = put_string(second_end, n, spares[(s + 1) % 5]);
      check_case("equal strings", n, vector_mismatch(string, other) == n);
      if (n == 0) continue;
      other[n * 2 / 3] = '!';
      check_case("different strings", n, vector_mismatch(string, other) == n * 2 / 3);
      check_case("judge", n, scalar_mismatch(string, other) == n * 2 / 3);
      other[n * 2 / 3] = 0;
      check_case("shorter string", n, vector_mismatch(string, other) == scalar_mismatch(string, other));
    }
    printf("%zu bytes spare: done\n", spares[s]);
  }
  return finish("string_length");
}

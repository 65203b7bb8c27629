// What the programs of floating-point arithmetic share: FPSR and FPCR, numbers to compute with, and the comparison of
// vector results and their status with scalar ones. Sizes are those of the format: 2, 4 or 8 bytes.
#ifndef QUERN_TESTS_FLOATING_POINT_H
#define QUERN_TESTS_FLOATING_POINT_H

#include "program.h"

// The flags of FPSR since the last time, among them that of flushed inputs, which fetestexcept leaves out.
static inline uint32_t take_status(void) {
  uint64_t status;
  __asm__ volatile("mrs %0, fpsr\n  msr fpsr, xzr" : "=r"(status) : : "memory");
  return (uint32_t)status;
}

enum { NEAREST, UPWARD, DOWNWARD, TOWARD_ZERO, ROUNDING_MODES };

enum { CONTROL_FZ16 = 1 << 19, CONTROL_MODE = 1 << 22, CONTROL_FZ = 1 << 24, CONTROL_DN = 1 << 25 };

// Some of the controls in FPCR; the others stay as they are.
static inline void set_controls(uint64_t which, uint64_t controls) {
  uint64_t all;
  __asm__ volatile("mrs %0, fpcr" : "=r"(all) : : "memory");
  all = (all & ~which) | controls;
  __asm__ volatile("msr fpcr, %0" : : "r"(all) : "memory");
}

// A program linked with -ffast-math starts with FZ set, and keeps it.
static inline void set_rounding(uint64_t mode) { set_controls(3 * CONTROL_MODE, mode * CONTROL_MODE); }

static inline int fraction_bits(size_t size) { return size == 2 ? 10 : size == 4 ? 23 : 52; }

static inline double number_at(const void* a, size_t size, size_t i) {
  if (size == 2) return (double)((const _Float16*)a)[i];
  return size == 4 ? ((const float*)a)[i] : ((const double*)a)[i];
}

static inline void put_number(void* a, size_t size, size_t i, double number) {
  if (size == 2) ((_Float16*)a)[i] = (_Float16)number;
  if (size == 4) ((float*)a)[i] = (float)number;
  if (size == 8) ((double*)a)[i] = number;
}

// Numbers between `least` and `most`.
__attribute__((unused)) static SCALAR void fill_numbers(void* a, size_t size, size_t count, double least, double most) {
  for (size_t i = 0; i < count; ++i) put_number(a, size, i, least + next_random() * 0x1p-32 * (most - least));
}

// Numbers at the edges of the format, of both signs: zeros, subnormals, around one, the largest, infinities and NaNs.
__attribute__((unused)) static SCALAR void fill_corners(void* a, size_t size, size_t count) {
  const uint64_t sign = (uint64_t)1 << (8 * size - 1), normal = (uint64_t)1 << fraction_bits(size);
  const uint64_t infinity = sign - normal, one = infinity / 2 & -normal, nan = infinity | normal / 2;
  const uint64_t corners[] = {0,       1,           normal - 1,   normal,   one, one + 1, infinity / 4,
                              one / 2, one * 3 / 2, infinity - 1, infinity, nan};
  for (size_t i = 0; i < count; ++i) {
    const uint32_t random = next_random() >> 8;
    uint64_t number = corners[random / 2 % (sizeof corners / sizeof *corners)];
    if (random % 2 && number != nan) number |= sign;
    for (size_t byte = 0; byte < size; ++byte) ((uint8_t*)a)[i * size + byte] = (uint8_t)(number >> 8 * byte);
  }
}

// Makes every third number a NaN, quiet or signalling, of either sign and with any payload.
__attribute__((unused)) static SCALAR void put_nans(void* a, size_t size, size_t count) {
  const uint64_t sign = (uint64_t)1 << (8 * size - 1), normal = (uint64_t)1 << fraction_bits(size);
  for (size_t i = 0; i < count; i += 3) {
    const uint64_t payload = ((uint64_t)next_random() << 32 | next_random()) & (normal - 1);
    const uint64_t number = (sign - normal) | (payload ? payload : 1) | (next_random() >> 31 ? sign : 0);
    for (size_t byte = 0; byte < size; ++byte) ((uint8_t*)a)[i * size + byte] = (uint8_t)(number >> 8 * byte);
  }
}

// Within `units` in the last place of the wanted number, or of one where that is less.
__attribute__((unused)) static SCALAR bool close_numbers(const void* got, const void* wanted, size_t size, size_t count,
                                                         double units) {
  const double unit = 1.0 / (double)((uint64_t)1 << fraction_bits(size));
  for (size_t i = 0; i < count; ++i) {
    const double number = number_at(wanted, size, i), difference = number_at(got, size, i) - number;
    const double magnitude = number < 0 ? -number : number;
    const double bound = units * unit * (magnitude < 1 ? 1 : magnitude);
    if (!(difference <= bound && -difference <= bound)) return false;
  }
  return true;
}

// A comparison's results are printed, for another processor to print the same.
static inline void print_results(const char* name, size_t count, const void* results, size_t bytes, uint32_t status) {
  printf("%s, status %02x, ", name, (unsigned)status);
  char elements[32];
  snprintf(elements, sizeof elements, "%zu elements", count);
  print_digest(elements, results, bytes);
}

// With -ffast-math the compiler orders vector arithmetic otherwise than scalar: then only numbers that lie close
// together can be asked for, and no numbers but finite ones, nor a status. Without it, vectors raise all that scalars
// do; they may raise more, since the compiler lets lanes beyond an array's end and both sides of a condition compute.
#ifdef __FAST_MATH__
enum { STRICT = false };
#else
enum { STRICT = true };
#endif

__attribute__((unused)) static void compare_results(const char* name, bool finite, size_t size, size_t count,
                                                    const void* got, uint32_t status, const void* wanted,
                                                    uint32_t wanted_status) {
  print_results(name, count, got, size * count, status);
  if (STRICT) {
    check_case(name, count, same_bytes(got, wanted, size * count));
    check_case("its status", count, (status & wanted_status) == wanted_status);
  } else if (finite) {
    check_case(name, count, close_numbers(got, wanted, size, count, 1024));
  }
}

// Runs function(out, ...) and function_scalar(judged, ...), and compares `count` results. FINITE says whether the
// operands and results are all finite numbers.
#define COMPARE(function, finite, out, judged, count, ...)                                         \
  do {                                                                                             \
    take_status();                                                                                 \
    function(out, __VA_ARGS__);                                                                    \
    const uint32_t status_ = take_status();                                                        \
    function##_scalar(judged, __VA_ARGS__);                                                        \
    compare_results(#function, finite, sizeof *(out), count, out, status_, judged, take_status()); \
  } while (0)

#endif

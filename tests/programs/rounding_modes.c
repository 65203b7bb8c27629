// The program's own FPCR: rounding modes, flushing and default NaNs hold for its scalar arithmetic and read back as
// they were set, with vector code of integers and of memory between, and in two threads at once.
#include <math.h>
#include <pthread.h>
#include <string.h>

#include "program.h"
#include "sve_code.h"

// Loops that stay where they are between the writes of FPCR.
#define HERE __attribute__((noipa, optimize("no-tree-vectorize", "no-tree-loop-distribute-patterns")))

enum { NEAREST, UPWARD, DOWNWARD, ZERO, MODES };
static const char* const mode_names[MODES] = {"nearest", "upward", "downward", "zero"};
static const uint64_t flush_to_zero = 1 << 24, default_nan = 1 << 25;
static uint64_t rounding(int mode) { return (uint64_t)mode << 22; }

static uint64_t read_fpcr(void) {
  uint64_t value;
  __asm__ volatile("mrs %0, fpcr" : "=r"(value));
  return value;
}

// Writes of FPCR by way of one register each, in one block with vector instructions before and after.
#define WRITE_FPCR_BY(number)                              \
  static void write_fpcr_x##number(uint64_t value) {       \
    register uint64_t source __asm__("x" #number) = value; \
    __asm__ volatile(                                      \
        "index z0.s, #0, #1\n"                             \
        "msr fpcr, x" #number                              \
        "\n"                                               \
        "add z0.s, z0.s, z0.s\n"                           \
        :                                                  \
        : "r"(source)                                      \
        : "z0", "memory");                                 \
  }
WRITE_FPCR_BY(0)
WRITE_FPCR_BY(3)
WRITE_FPCR_BY(21)
WRITE_FPCR_BY(22)
WRITE_FPCR_BY(26)
WRITE_FPCR_BY(27)
WRITE_FPCR_BY(28)
#undef WRITE_FPCR_BY

static void clear_fpcr(void) { __asm__ volatile("msr fpcr, xzr" : : : "memory"); }

static const struct {
  const char* name;
  void (*write)(uint64_t);
} writers[] = {
    {"x0", write_fpcr_x0},   {"x3", write_fpcr_x3},   {"x21", write_fpcr_x21}, {"x22", write_fpcr_x22},
    {"x26", write_fpcr_x26}, {"x27", write_fpcr_x27}, {"x28", write_fpcr_x28},
};
enum { WRITERS = sizeof writers / sizeof *writers };

// Copies doubles by vectors.
static void vector_copy(double* to, const double* from, size_t n) {
  uint64_t i = 0;
  __asm__ volatile(
      "0: whilelo p0.d, %[i], %[n]\n"
      "b.none 1f\n"
      "ld1d {z0.d}, p0/z, [%[from], %[i], lsl #3]\n"
      "st1d {z0.d}, p0, [%[to], %[i], lsl #3]\n"
      "incd %[i]\n"
      "b 0b\n"
      "1:\n"
      : [i] "+r"(i)
      : [n] "r"((uint64_t)n), [from] "r"(from), [to] "r"(to)
      : "z0", "p0", "cc", "memory");
}

static HERE double sum(const double* a, size_t n) {
  double total = 0;
  for (size_t i = 0; i < n; ++i) total += a[i];
  return total;
}

static HERE double quotient(double a, double b) { return a / b; }
static HERE double integral(double a) { return nearbyint(a); }

static uint64_t bits(double value) {
  uint64_t word;
  memcpy(&word, &value, sizeof word);
  return word;
}

enum { ELEMENTS = 333 };
static double tenths[ELEMENTS];

static HERE void fill_tenths(void) {
  for (int i = 0; i < ELEMENTS; ++i) tenths[i] = (i + 1) * 0.1;
}

struct results {
  double sum, third, minus_third, half;
};

// Arithmetic under a mode, whose arrays go through vectors first.
static struct results compute(void) {
  double copy[ELEMENTS];
  vector_copy(copy, tenths, ELEMENTS);
  struct results r;
  r.sum = sum(copy, ELEMENTS);
  r.third = quotient(1, 3);
  r.minus_third = quotient(-1, 3);
  r.half = integral(2.5);
  return r;
}

static bool same_results(const struct results* a, const struct results* b) {
  return bits(a->sum) == bits(b->sum) && bits(a->third) == bits(b->third) &&
         bits(a->minus_third) == bits(b->minus_third) && bits(a->half) == bits(b->half);
}

static struct results expected[MODES];

static void each_mode(void) {
  for (int mode = 0; mode < MODES; ++mode) {
    write_fpcr_x3(rounding(mode));
    const struct results r = expected[mode] = compute();
    const uint64_t fpcr = read_fpcr();
    clear_fpcr();
    printf("%s: sum %016llx, 1/3 %016llx, -1/3 %016llx, 2.5 to %g\n", mode_names[mode], (unsigned long long)bits(r.sum),
           (unsigned long long)bits(r.third), (unsigned long long)bits(r.minus_third), r.half);
    check("mode reads back", fpcr == rounding(mode));
  }
  const struct results* const r = expected;
  check("sums in order", r[DOWNWARD].sum < r[NEAREST].sum && r[NEAREST].sum < r[UPWARD].sum);
  check("zero is downward for positive sums", bits(r[ZERO].sum) == bits(r[DOWNWARD].sum));
  check("thirds one apart", bits(r[UPWARD].third) == bits(r[DOWNWARD].third) + 1);
  check("negative thirds", bits(r[ZERO].minus_third) == bits(r[UPWARD].minus_third) &&
                               bits(r[DOWNWARD].minus_third) == bits(r[UPWARD].minus_third) + 1);
  check("halves", r[NEAREST].half == 2 && r[UPWARD].half == 3 && r[DOWNWARD].half == 2 && r[ZERO].half == 2);
}

static void each_register(void) {
  for (int i = 0; i < WRITERS; ++i) {
    for (int mode = MODES - 1; mode >= 0; --mode) {
      const uint64_t wanted = rounding(mode) | (mode & 1 ? default_nan : flush_to_zero);
      writers[i].write(wanted);
      const bool vectors = vectors_work();
      const uint64_t got = read_fpcr();
      const struct results r = compute();
      clear_fpcr();
      const uint64_t cleared = read_fpcr();
      check_case(writers[i].name, (size_t)mode,
                 vectors && got == wanted && cleared == 0 && same_results(&r, &expected[mode]));
    }
    printf("by %s: done\n", writers[i].name);
  }
}

// A subnormal counts as 0 under FZ; a NaN's payload is lost under DN.
static void flushing_and_nans(void) {
  double least = 0, nan = 0;
  const uint64_t least_bits = 3, nan_bits = 0x7FF8000000001234;
  memcpy(&least, &least_bits, sizeof least);
  memcpy(&nan, &nan_bits, sizeof nan);
  const double small[2] = {least, least}, nans[2] = {nan, 1};
  const struct {
    const char* name;
    uint64_t fpcr, subnormal, nan;
  } cases[] = {
      {"neither", 0, 6, nan_bits},
      {"FZ", flush_to_zero, 0, nan_bits},
      {"DN", default_nan, 6, 0x7FF8000000000000},
      {"FZ and DN", flush_to_zero | default_nan, 0, 0x7FF8000000000000},
  };
  for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
    double copies[4];
    write_fpcr_x21(cases[i].fpcr);
    vector_copy(copies, small, 2);
    vector_copy(copies + 2, nans, 2);
    const uint64_t subnormal = bits(sum(copies, 2)), not_a_number = bits(sum(copies + 2, 2));
    clear_fpcr();
    printf("%016llx %016llx ", (unsigned long long)subnormal, (unsigned long long)not_a_number);
    check(cases[i].name, subnormal == cases[i].subnormal && not_a_number == cases[i].nan);
  }
}

static pthread_barrier_t together;

// A thread keeps its mode through vectors while another has a different one.
static void* keep_mode(void* argument) {
  const int mode = *(const int*)argument;
  pthread_barrier_wait(&together);
  write_fpcr_x22(rounding(mode));
  bool right = true;
  for (int round = 0; round < 20; ++round) {
    const struct results r = compute();
    right = right && same_results(&r, &expected[mode]) && vectors_work() && read_fpcr() == rounding(mode);
  }
  clear_fpcr();
  return right ? argument : NULL;
}

static void two_threads(void) {
  static int modes[2] = {UPWARD, DOWNWARD};
  pthread_t threads[2];
  pthread_barrier_init(&together, NULL, 2);
  for (int i = 0; i < 2; ++i) pthread_create(&threads[i], NULL, keep_mode, &modes[i]);
  for (int i = 0; i < 2; ++i) {
    void* result;
    pthread_join(threads[i], &result);
    check(i == 0 ? "upward thread" : "downward thread", result == &modes[i]);
  }
  check("this thread's own", read_fpcr() == 0);
}

int main(void) {
  fill_tenths();
  each_mode();
  each_register();
  flushing_and_nans();
  two_threads();
  return finish("rounding_modes");
}

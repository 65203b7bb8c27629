// host_loops LOOP PASSES: plain loops that the compiler turns into SVE, to measure what a host makes of them. A pass
// leaves the same results as the one before; after four times as many that go uncounted, PASSES run between the marks
// of instruction_counter.c. host_loops LOOP: the same without marks, for about a fifth of a second of processor time.
// It prints the digest of the results, the numbers of the counter, and the nanoseconds of processor time a pass.
#include <inttypes.h>
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

enum { BYTES = 1 << 15, NUMBERS = BYTES / 4, STRIDE = 5, SIDE = 64, POINTS = 1024 };

static int32_t left[NUMBERS], right[NUMBERS], sums[NUMBERS];
static uint8_t from[BYTES], to[BYTES];
static uint32_t table[NUMBERS], picked[NUMBERS / STRIDE];
static float a[SIDE * SIDE], b[SIDE * SIDE], product[SIDE * SIDE];
static float samples[2 * POINTS], roots[POINTS], stages[2][2 * POINTS];

#define LOOP __attribute__((noipa)) static void

LOOP vector_sum(void) {
  for (size_t i = 0; i < NUMBERS; ++i) sums[i] = left[i] + right[i];
}

__attribute__((optimize("no-tree-loop-distribute-patterns"))) LOOP byte_copy(void) {
  for (size_t i = 0; i < BYTES; ++i) to[i] = from[i];
}

LOOP strided_gather(void) {
  for (size_t i = 0; i < NUMBERS / STRIDE; ++i) picked[i] = table[i * STRIDE];
}

LOOP matrix_product(void) {
  memset(product, 0, sizeof product);
  for (size_t i = 0; i < SIDE; ++i) {
    for (size_t k = 0; k < SIDE; ++k) {
      for (size_t j = 0; j < SIDE; ++j) product[i * SIDE + j] += a[i * SIDE + k] * b[k * SIDE + j];
    }
  }
}

// Joins transforms of `width` complex numbers to ones of twice as many.
LOOP transform_stage(float* restrict out, const float* restrict in, size_t width) {
  const size_t count = POINTS / 2 / width;
  for (size_t j = 0; j < count; ++j) {
    const float re = roots[2 * j * width], im = roots[2 * j * width + 1];
    const float *first = in + 2 * j * width, *second = first + POINTS;
    float *sum = out + 4 * j * width, *turned = sum + 2 * width;
#pragma GCC ivdep
    for (size_t k = 0; k < width; ++k) {
      const float x = first[2 * k] - second[2 * k], y = first[2 * k + 1] - second[2 * k + 1];
      sum[2 * k] = first[2 * k] + second[2 * k];
      sum[2 * k + 1] = first[2 * k + 1] + second[2 * k + 1];
      turned[2 * k] = x * re - y * im;
      turned[2 * k + 1] = x * im + y * re;
    }
  }
}

// Of ten stages, an even number, so that the results are in the second array again.
LOOP fourier_transform(void) {
  transform_stage(stages[0], samples, 1);
  size_t stage = 1;
  for (size_t width = 2; width < POINTS; width *= 2, ++stage) {
    transform_stage(stages[stage % 2], stages[(stage + 1) % 2], width);
  }
}
#undef LOOP

static const struct loop {
  const char* name;
  void (*pass)(void);
  const void* results;
  size_t bytes;
} loops[] = {
    {"vector_sum", vector_sum, sums, sizeof sums},
    {"byte_copy", byte_copy, to, sizeof to},
    {"strided_gather", strided_gather, picked, sizeof picked},
    {"matrix_product", matrix_product, product, sizeof product},
    {"fourier_transform", fourier_transform, stages[1], sizeof stages[1]},
};

static void fill(void) {
  for (int32_t i = 0; i < NUMBERS; ++i) {
    left[i] = 3 * i - 700;
    right[i] = 500000 - 7 * i;
    table[i] = (uint32_t)i * 2654435761u;
  }
  for (size_t i = 0; i < BYTES; ++i) from[i] = (uint8_t)(i * i >> 3);
  for (int i = 0; i < SIDE * SIDE; ++i) {
    a[i] = (float)(i % 37 - 18) / 16;
    b[i] = (float)(i % 41 - 20) / 32;
  }
  for (int i = 0; i < 2 * POINTS; ++i) samples[i] = (float)(i * 7 % 101 - 50) / 64;
  for (int k = 0; k < POINTS / 2; ++k) {
    roots[2 * k] = (float)cos(2 * M_PI * k / POINTS);
    roots[2 * k + 1] = (float)-sin(2 * M_PI * k / POINTS);
  }
}

// FNV-1a.
static uint64_t digest(const uint8_t* bytes, size_t count) {
  uint64_t digest = 0xCBF29CE484222325;
  for (size_t i = 0; i < count; ++i) digest = (digest ^ bytes[i]) * 0x100000001B3;
  return digest;
}

static double processor_seconds(void) {
  struct timespec time;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return (double)time.tv_sec + (double)time.tv_nsec * 1e-9;
}

// The seconds that the passes take.
static double run(const struct loop* loop, long passes) {
  const double begin = processor_seconds();
  for (long i = 0; i < passes; ++i) loop->pass();
  return processor_seconds() - begin;
}

static void run_counted(const struct loop* loop, long passes) {
  run(loop, 4 * passes);
  __asm__ volatile("hint #0x7e" ::: "memory");
  for (long i = 0; i < passes; ++i) loop->pass();
  __asm__ volatile("hint #0x7f" ::: "memory");
}

static double seconds_a_pass(const struct loop* loop) {
  const double enough = 0.1;
  long passes = 1;
  double seconds = run(loop, passes);
  while (seconds < enough) {
    passes *= 2;
    seconds = run(loop, passes);
  }
  return seconds / (double)passes;
}

int main(int count, char** arguments) {
  const struct loop* loop = loops;
  while (loop != loops + sizeof loops / sizeof *loops && count > 1 && strcmp(loop->name, arguments[1]) != 0) ++loop;
  if (count < 2 || loop == loops + sizeof loops / sizeof *loops) {
    fputs("host_loops: name a loop\n", stderr);
    return 2;
  }
  fill();
  double seconds = 0;
  if (count > 2) {
    run_counted(loop, atol(arguments[2]));
  } else {
    seconds = seconds_a_pass(loop);
  }
  printf(",%016" PRIx64 ",%.0f\n", digest(loop->results, loop->bytes), seconds * 1e9);
  return 0;
}

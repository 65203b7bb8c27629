// A Fourier transform of 512 complex numbers in nine stages of butterflies. A stage joins numbers half as far apart as
// the one before; so the loop over a stage's neighbours becomes shorter and shorter, and fills ever fewer lanes.
#include <math.h>
#include <stddef.h>
#include <stdio.h>

#include <quern/roi.h>

enum { POINTS = 512, TONE = 37 };

typedef struct {
  float re, im;
} complex_number;

static complex_number numbers[POINTS], turns[POINTS];  // the turns of one stage after those of the other

__attribute__((noinline)) static void join(complex_number* restrict low, complex_number* restrict high,
                                           const complex_number* restrict turn, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const complex_number a = low[i], b = high[i], w = turn[i];
    const float re = a.re - b.re, im = a.im - b.im;
    low[i].re = a.re + b.re;
    low[i].im = a.im + b.im;
    high[i].re = re * w.re - im * w.im;
    high[i].im = re * w.im + im * w.re;
  }
}

// The results come in the order of their numbers' reversed bits.
static void transform(void) {
  const complex_number* turn = turns;
  for (size_t half = POINTS / 2; half != 0; turn += half, half /= 2) {
    for (size_t start = 0; start < POINTS; start += 2 * half) join(numbers + start, numbers + start + half, turn, half);
  }
}

static size_t reversed(size_t number) {
  size_t result = 0;
  for (size_t bit = 1; bit < POINTS; bit *= 2) result = 2 * result + ((number & bit) != 0);
  return result;
}

int main(void) {
  const double circle = 2 * acos(-1.0);
  complex_number* turn = turns;
  for (size_t half = POINTS / 2; half != 0; half /= 2) {
    for (size_t i = 0; i < half; ++i) {
      const double angle = circle / 2 * (double)i / (double)half;
      *turn++ = (complex_number){(float)cos(angle), (float)-sin(angle)};
    }
  }
  for (size_t i = 0; i < POINTS; ++i) numbers[i].re = (float)cos(circle * (double)(TONE * i % POINTS) / POINTS);
  quern_roi_begin();
  transform();
  quern_roi_end();
  double loudest_other = 0;
  for (size_t i = 0; i < POINTS; ++i) {
    const complex_number number = numbers[reversed(i)];
    const double loudness = hypot((double)number.re, (double)number.im);
    if (i != TONE && i != POINTS - TONE && loudness > loudest_other) loudest_other = loudness;
  }
  const complex_number tone = numbers[reversed(TONE)];
  const int right = fabs((double)tone.re - POINTS / 2) < 0.01 && fabs((double)tone.im) < 0.01 && loudest_other < 0.01;
  printf("a tone of %d cycles: %.2f at %d, %s\n", TONE, (double)tone.re, TONE, right ? "silence elsewhere" : "WRONG");
  return !right;
}

// A histogram without gathers: one pass of compares for each bin.
#include "program.h"

enum { BINS = 16 };

#define HISTOGRAM(name, kind)                                          \
  static kind void name(uint32_t* bins, const uint32_t* a, size_t n) { \
    for (uint32_t bin = 0; bin < BINS; ++bin) {                        \
      uint32_t count = 0;                                              \
      for (size_t i = 0; i < n; ++i) count += (a[i] & 15) == bin;      \
      bins[bin] = count;                                               \
    }                                                                  \
  }
HISTOGRAM(histogram, VECTOR)
HISTOGRAM(histogram_scalar, SCALAR)

static uint32_t data[LARGEST_TEST_SIZE];

int main(void) {
  fill_random(data, sizeof data);
  static const size_t sizes[] = {0, 1, 255, 257, 777};
  for (size_t i = 0; i < sizeof sizes / sizeof *sizes; ++i) {
    uint32_t bins[BINS], judged[BINS];
    histogram(bins, data, sizes[i]);
    histogram_scalar(judged, data, sizes[i]);
    for (size_t bin = 0; bin < BINS; ++bin) check_case("histogram", sizes[i], bins[bin] == judged[bin]);
    print_digest("bins", bins, sizeof bins);
  }
  return finish("histogram");
}

// Searches in bytes: how many are equal to one, and whether any lies in a range.
#include "program.h"

// Counted modulo 256, so that a lane of a count is as wide as a lane of the text.
#define COUNT(name, kind)                                                \
  static kind uint8_t name(const uint8_t* a, uint8_t wanted, size_t n) { \
    uint8_t count = 0;                                                   \
    for (size_t i = 0; i < n; ++i) count += a[i] == wanted;              \
    return count;                                                        \
  }
COUNT(count_equal, VECTOR)
COUNT(count_equal_scalar, SCALAR)

#define ANY(name, kind)                                                             \
  static kind bool name(const uint8_t* a, uint8_t low, uint8_t high, size_t n) {    \
    uint8_t found = 0;                                                              \
    for (size_t i = 0; i < n; ++i) found |= (uint8_t)(a[i] >= low && a[i] <= high); \
    return found;                                                                   \
  }
ANY(any_between, VECTOR)
ANY(any_between_scalar, SCALAR)

static uint8_t text[LARGEST_TEST_SIZE];

int main(void) {
  for (size_t i = 0; i < sizeof text; ++i) text[i] = (uint8_t)('a' + next_random() % 24);
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    const uint8_t count = count_equal(text, 'k', n);
    check_case("count_equal", n, count == count_equal_scalar(text, 'k', n));
    check_case("any_between", n, any_between(text, 'c', 'd', n) == any_between_scalar(text, 'c', 'd', n));
    check_case("any_between (none)", n, !any_between(text, 'y', 'z', n));
    printf("%zu bytes: %u\n", n, count);
  }
  return finish("byte_search");
}

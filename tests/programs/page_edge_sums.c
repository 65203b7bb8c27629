// Sums by first-fault and non-fault loads of all lanes, of arrays that end where readable memory ends, or the file that
// is mapped: how many lanes a load brings is the processor's affair, what they sum to is not.
#include "guarded_pages.h"
#include "program.h"

struct load {
  const char* name;
  size_t size;                              // of an element
  uint64_t (*sum)(const void*, size_t);     // by the load
  uint64_t (*scalar)(const void*, size_t);  // by plain code
};

// A load of all lanes into z0, and sums of n elements by it. A lane is as wide as `lane`, whose letter is `width`.
// Where a load brings no lane, plain code takes an element; where one brings lanes from beyond the end, the sum is no
// sum.
#define LOAD(name, mnemonic, element, lane, width, address)                                             \
  static SCALAR uint64_t name##_scalar(const void* array, size_t n) {                                   \
    const volatile element* const a = array;                                                            \
    uint64_t total = 0;                                                                                 \
    for (size_t i = 0; i < n; ++i) total += (lane)a[i];                                                 \
    return total;                                                                                       \
  }                                                                                                     \
  static uint64_t name##_sum(const void* array, size_t n) {                                             \
    const volatile element* const a = array;                                                            \
    uint64_t total = 0, loaded, part;                                                                   \
    size_t i = 0;                                                                                       \
    while (i < n) {                                                                                     \
      __asm__ volatile("ptrue p0." width "; setffr;" mnemonic " {z0." width "}, p0/z, " address         \
                       "; rdffr p1.b, p0/z;"                                                            \
                       "cntp %[loaded], p0, p1." width "; uaddv d0, p1, z0." width "; fmov %[part], d0" \
                       : [loaded] "=&r"(loaded), [part] "=r"(part)                                      \
                       : [a] "r"(a), [i] "r"(i), [first] "r"(a + i)                                     \
                       : "z0", "p0", "p1", "memory");                                                   \
      total += loaded ? part : (lane)a[i];                                                              \
      i += loaded ? loaded : 1;                                                                         \
    }                                                                                                   \
    return i == n ? total : ~name##_scalar(array, n);                                                   \
  }                                                                                                     \
  static const struct load name = {#name, sizeof(element), name##_sum, name##_scalar};
#define FIRST "[%[first]]"
#define BYTES "[%[a], %[i]]"
#define WORDS "[%[a], %[i], lsl #2]"
#define DOUBLEWORDS "[%[a], %[i], lsl #3]"

LOAD(ldff1b, "ldff1b", uint8_t, uint8_t, "b", BYTES)
LOAD(ldff1b_first, "ldff1b", uint8_t, uint8_t, "b", FIRST)
LOAD(ldff1b_h, "ldff1b", uint8_t, uint16_t, "h", BYTES)
LOAD(ldff1b_s, "ldff1b", uint8_t, uint32_t, "s", BYTES)
LOAD(ldff1b_d, "ldff1b", uint8_t, uint64_t, "d", BYTES)
LOAD(ldff1w, "ldff1w", uint32_t, uint32_t, "s", WORDS)
LOAD(ldff1w_d, "ldff1w", uint32_t, uint64_t, "d", WORDS)
LOAD(ldff1d, "ldff1d", uint64_t, uint64_t, "d", DOUBLEWORDS)
LOAD(ldff1d_first, "ldff1d", uint64_t, uint64_t, "d", FIRST)
LOAD(ldnf1b, "ldnf1b", uint8_t, uint8_t, "b", FIRST)
LOAD(ldnf1sb_s, "ldnf1sb", int8_t, uint32_t, "s", FIRST)
LOAD(ldnf1h, "ldnf1h", uint16_t, uint16_t, "h", FIRST)
LOAD(ldnf1w_d, "ldnf1w", uint32_t, uint64_t, "d", FIRST)
LOAD(ldnf1d, "ldnf1d", uint64_t, uint64_t, "d", FIRST)

static const struct load* const first_fault_loads[] = {&ldff1b, &ldff1b_first, &ldff1b_h, &ldff1b_s,    &ldff1b_d,
                                                       &ldff1w, &ldff1w_d,     &ldff1d,   &ldff1d_first};
static const struct load* const non_fault_loads[] = {&ldnf1b, &ldnf1sb_s, &ldnf1h, &ldnf1w_d, &ldnf1d};

// Sums of arrays of every size, behind which `spare` bytes can be read.
static void check_sums(const struct load* load, const uint8_t* end, size_t spare) {
  uint64_t all = 0;
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    const uint8_t* const a = end - spare - n * load->size;
    const uint64_t sum = load->sum(a, n);
    check_case(load->name, n, sum == load->scalar(a, n));
    all += sum;
  }
  printf("%s, %zu bytes spare: %016llx\n", load->name, spare, (unsigned long long)all);
}

static void check_all_loads(uint8_t* end) {
  const size_t bytes = 2 * (size_t)sysconf(_SC_PAGESIZE);
  fill_random(end - bytes, bytes);
  for (size_t i = 0; i < sizeof first_fault_loads / sizeof *first_fault_loads; ++i) {
    check_sums(first_fault_loads[i], end, 0);
    check_sums(first_fault_loads[i], end, first_fault_loads[i]->size - 1);  // all but a byte of another element
  }
  for (size_t i = 0; i < sizeof non_fault_loads / sizeof *non_fault_loads; ++i) check_sums(non_fault_loads[i], end, 0);
}

int main(void) {
  check_all_loads(end_of_readable(2));
  check_all_loads(end_of_file(2));
  return finish("page_edge_sums");
}

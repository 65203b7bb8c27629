// Moves of elements between and within vectors for all element types: SPLICE, EXT, INSR, CLASTA, CLASTB, LASTA, LASTB.
#include <string.h>

#include "vectors.h"

static mask_bytes mask;
static uint64_t left[VECTOR_BYTES / 8], right[VECTOR_BYTES / 8], out[VECTOR_BYTES / 8], judged[VECTOR_BYTES / 8];

// The first active element and the last, or -1 and -1.
static SCALAR void active_range(size_t size, ptrdiff_t* first, ptrdiff_t* last) {
  *first = *last = -1;
  for (ptrdiff_t i = 0; i < (ptrdiff_t)(svcntb() / size); ++i) {
    if (!mask[(size_t)i * size]) continue;
    if (*first < 0) *first = i;
    *last = i;
  }
}

// The element behind the last active one, around the end.
static SCALAR ptrdiff_t after(ptrdiff_t last, size_t size) { return (last + 1) % (ptrdiff_t)(svcntb() / size); }

static SCALAR void judge_splice(size_t size, ptrdiff_t first, ptrdiff_t last) {
  const uint8_t *a = (const void*)left, *b = (const void*)right;
  uint8_t* to = (void*)judged;
  size_t at = 0;
  for (size_t i = (size_t)first * size; first >= 0 && i < (size_t)(last + 1) * size; ++i) to[at++] = a[i];
  for (size_t i = 0; at < svcntb(); ++i) to[at++] = b[i];
}

static void judge_moved(const void* from, size_t bytes) { memcpy(judged, from, bytes); }

static void compare(const char* name, size_t size) {
  check_case(name, size, same_bytes(out, judged, svcntb()));
  memset(judged, 0, sizeof judged);
  memset(out, 0, sizeof out);
}

#define TEST(element, bits)                                                                \
  static VECTOR void element##_test(void) {                                                \
    const svbool_t all = svptrue_b##bits(), pg = predicate_of(mask);                       \
    element *to = (void*)out, *a = (void*)left, *b = (void*)right, *judge = (void*)judged; \
    const size_t size = sizeof(element), count = svcntb() / size;                          \
    const element scalar = b[1];                                                           \
    ptrdiff_t first, last;                                                                 \
    active_range(size, &first, &last);                                                     \
    svst1(all, to, svsplice(pg, svld1(all, a), svld1(all, b)));                            \
    judge_splice(size, first, last);                                                       \
    compare(#element " splice", size);                                                     \
    svst1(all, to, svext(svld1(all, a), svld1(all, b), 1));                                \
    memcpy(judge, a + 1, (count - 1) * size);                                              \
    memcpy(judge + count - 1, b, size);                                                    \
    compare(#element " ext", size);                                                        \
    svst1(all, to, svinsr(svld1(all, a), scalar));                                         \
    memcpy(judge, &scalar, size);                                                          \
    memcpy(judge + 1, a, (count - 1) * size);                                              \
    compare(#element " insr", size);                                                       \
    const element* const before = last < 0 ? &scalar : a + last;                           \
    const element* const behind = last < 0 ? &scalar : a + after(last, size);              \
    *to = svclasta(pg, scalar, svld1(all, a));                                             \
    judge_moved(behind, size);                                                             \
    compare(#element " clasta", size);                                                     \
    *to = svclastb(pg, scalar, svld1(all, a));                                             \
    judge_moved(before, size);                                                             \
    compare(#element " clastb", size);                                                     \
    *to = svlasta(pg, svld1(all, a));                                                      \
    judge_moved(last < 0 ? a : behind, size);                                              \
    compare(#element " lasta", size);                                                      \
    *to = svlastb(pg, svld1(all, a));                                                      \
    judge_moved(last < 0 ? a + count - 1 : before, size);                                  \
    compare(#element " lastb", size);                                                      \
    svst1(all, to, svclasta(pg, svld1(all, b), svld1(all, a)));                            \
    for (size_t i = 0; i < count; ++i) memcpy(judge + i, last < 0 ? b + i : behind, size); \
    compare(#element " clasta of vectors", size);                                          \
    svst1(all, to, svclastb(pg, svld1(all, b), svld1(all, a)));                            \
    for (size_t i = 0; i < count; ++i) memcpy(judge + i, last < 0 ? b + i : before, size); \
    compare(#element " clastb of vectors", size);                                          \
  }
TEST(uint8_t, 8)
TEST(int16_t, 16)
TEST(uint32_t, 32)
TEST(int64_t, 64)
TEST(float16_t, 16)
TEST(float32_t, 32)
TEST(float64_t, 64)
#undef TEST

static const struct {
  size_t size;
  void (*run)(void);
} tests[] = {{1, uint8_t_test},   {2, int16_t_test},   {4, uint32_t_test}, {8, int64_t_test},
             {2, float16_t_test}, {4, float32_t_test}, {8, float64_t_test}};

int main(void) {
  for (size_t t = 0; t < sizeof tests / sizeof *tests; ++t) {
    for (int pattern = NONE; pattern < MASKS; ++pattern) {
      fill_mask(mask, tests[t].size, pattern);
      fill_random(left, sizeof left);
      fill_random(right, sizeof right);
      tests[t].run();
    }
    printf("elements of %zu bytes: done\n", tests[t].size);
  }
  return finish("splice_and_extract");
}

// Elements of records, by the words of their instructions.
#include "tools/accessed_elements.h"

#include <gtest/gtest.h>

namespace quern::test {
namespace {

struct form_case {
  const char* assembly;
  std::uint32_t word, memory_bytes, lane_bytes;  // 0 where nothing is told
};

TEST(AccessedElements, TracedFormsTellTheirElementsAndNoOthersDo) {
  constexpr form_case cases[] = {
      {"ld1w {z0.s}, p0/z, [x0]", 0xa540a000, 4, 4},
      {"ld1b {z0.h}, p0/z, [x0]", 0xa420a000, 1, 2},
      {"ld1sw {z0.d}, p0/z, [x0, x1, lsl #2]", 0xa4814000, 4, 8},
      {"ldff1w {z0.d}, p0/z, [x0, x1, lsl #2]", 0xa5616000, 4, 8},
      {"ldnf1d {z0.d}, p0/z, [x0]", 0xa5f0a000, 8, 8},
      {"ld3h {z0.h-z2.h}, p0/z, [x0]", 0xa4c0e000, 2, 2},
      {"st4d {z0.d-z3.d}, p0, [x0]", 0xe5f0e000, 8, 8},
      {"st1b {z0.d}, p0, [x0]", 0xe460e000, 1, 8},
      {"ld1h {z0.d}, p0/z, [x0, z1.d]", 0xc4c1c000, 2, 8},
      {"ldnt1w {z0.s}, p0/z, [x0]", 0xa500e000, 4, 4},
      {"st1w {z0.d}, p0, [z1.d]", 0xe540a020, 4, 8},
      {"ldff1h {z0.s}, p0/z, [x0, x1, lsl #1]", 0xa4c16000, 0, 0},  // the vector library's
      {"ld1rw {z0.s}, p0/z, [x0]", 0x8540c000, 0, 0},
      {"ld1rqb {z0.b}, p0/z, [x0]", 0xa4002000, 0, 0},
      {"ldr z0, [x0]", 0x85804000, 0, 0},
      {"str p0, [x0]", 0xe5800000, 0, 0},
      {"prfb pldl1keep, p0, [x0]", 0x85c00000, 0, 0},
      {"add z0.b, z1.b, z2.b", 0x04220020, 0, 0},
      {"nop", 0xd503201f, 0, 0},
  };
  for (const form_case& c : cases) {
    const auto form = element_form_of(c.word);
    ASSERT_EQ(form.has_value(), c.memory_bytes != 0) << c.assembly;
    if (!form) continue;
    EXPECT_EQ(form->memory_bytes, c.memory_bytes) << c.assembly;
    EXPECT_EQ(form->lane_bytes, c.lane_bytes) << c.assembly;
  }
}

struct record_case {
  std::uint32_t group;
  std::uint64_t size;
  element_form form;
  std::uint64_t elements;  // 0 where nothing is told
};

TEST(AccessedElements, ARecordHasAsManyAsItsSizeAndFormTell) {
  constexpr std::uint64_t vector_bytes = 256;
  constexpr record_case cases[] = {
      {0, 256, {4, 4}, 64},                                              // all lanes
      {0, 256, {1, 2}, 128}, {0, 256, {1, 8}, 32},  {0, 12, {4, 4}, 3},  // a run of lanes
      {0, 127, {1, 2}, 127}, {0, 128, {1, 1}, 128}, {3, 4, {4, 8}, 1},   // a lane of a group
      {7, 8, {8, 8}, 1},     {3, 8, {4, 8}, 0},                          // no instruction of that form makes these
      {0, 6, {4, 4}, 0},     {0, 0, {4, 4}, 0},     {0, 512, {4, 4}, 0},
  };
  for (const record_case& c : cases) {
    trace_record record{};
    record.group = c.group;
    record.size = c.size;
    const auto elements = elements_of(record, c.form, vector_bytes);
    EXPECT_EQ(elements.has_value(), c.elements != 0) << c.group << " " << c.size;
    EXPECT_EQ(elements.value_or(0), c.elements) << c.group << " " << c.size;
  }
}

}  // namespace
}  // namespace quern::test

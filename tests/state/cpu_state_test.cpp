#include <gtest/gtest.h>

#include "sve/state/cpu_state.h"

namespace {

// Generated code and signal frames rely on it. Between fpcr and z there is room, so that z may begin a cache line.
TEST(CpuState, FieldsHaveTheirPlaces) {
  struct {
    const char* name;
    std::size_t offset, expected;
  } const fields[] = {
      {"x", offsetof(cpu_state, x), 0},
      {"sp", offsetof(cpu_state, sp), 31 * 8},
      {"pc", offsetof(cpu_state, pc), 32 * 8},
      {"nzcv", offsetof(cpu_state, nzcv), 33 * 8},
      {"fpsr", offsetof(cpu_state, fpsr), 34 * 8},
      {"fpcr", offsetof(cpu_state, fpcr), 34 * 8 + 4},
      {"z", offsetof(cpu_state, z), 40 * 8},
      {"p", offsetof(cpu_state, p), 40 * 8 + 32 * VL_BYTES},
      {"ffr", offsetof(cpu_state, ffr), 40 * 8 + 48 * VL_BYTES},
      {"instr_word", offsetof(cpu_state, instr_word), 40 * 8 + 49 * VL_BYTES},
  };
  for (const auto& field : fields) EXPECT_EQ(field.offset, field.expected) << field.name;
}

TEST(CpuState, VectorsAreAlignedToQRegisters) {
  EXPECT_EQ(alignof(cpu_state), 16u);
  EXPECT_EQ(sizeof(cpu_state::z[0]), std::size_t{VL_BYTES});
  EXPECT_EQ(sizeof(cpu_state::p[0]), std::size_t{VL_BYTES});
}

TEST(ResultCodes, HaveTheirValues) {
  EXPECT_EQ(DECODE_OK, 0u);
  EXPECT_EQ(DECODE_UNIMPLEMENTED, 2u);
}

}  // namespace

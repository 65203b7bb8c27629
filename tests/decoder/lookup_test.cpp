#include <gtest/gtest.h>

#include "sve/decoder/sve_utils.h"

namespace {

TEST(Lookup, FindsTheUnpredicatedAdd) {
  static cpu_state s{};
  for (int i = 0; i != VL_BYTES; ++i) s.z[0][i] = 200;
  ASSERT_NE(get_sve_handler(0x04200000), nullptr);
  EXPECT_EQ(get_sve_handler(0x04200000)(&s, 0x04200000), DECODE_OK);
  EXPECT_EQ(s.z[0][7], 144);
  EXPECT_EQ(s.instr_word, 0x04200000u);
}

}  // namespace

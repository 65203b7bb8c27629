// Emulated words that ordinary instructions stand for: at every vector length, and what has none.
#include "sve/trap/patch/ordinary_instruction.h"

#include <gtest/gtest.h>

#include "sve/decoder/decode_map.h"
#include "sve/trap/patch/instructions.h"

namespace quern {
namespace {

using namespace aarch64;

constexpr word bytes = VL_BYTES;
// Sums up to 4095, or of whole 4096s, are one instruction.
constexpr word plus(reg d, reg n, word value) {
  return value < 4096 ? add_x(d, n, value) : value % 4096 == 0 ? add_x_4096(d, n, value / 4096) : 0;
}

struct counted {
  const char* text;
  std::uint32_t word, wanted;
};

constexpr counted words[] = {
    {"incb x5", 0x0430E3E5, plus({5}, {5}, bytes)},
    {"incb x5, all, mul #16", 0x043FE3E5, plus({5}, {5}, 16 * bytes)},
    {"decd x3, vl4, mul #3", 0x04F2E483, bytes / 8 < 4 ? add_x({3}, {3}, 0) : sub_x({3}, {3}, 12)},
    {"cntw x7", 0x04A0E3E7, movz_x({7}, bytes / 4)},
    {"cnth x30, all, mul #16", 0x046FE3FE, movz_x({30}, 8 * bytes)},
    {"addvl sp, sp, #-1", 0x043F57FF, sub_x(sp, sp, bytes)},
    {"addvl x1, x2, #16", 0x04225201, plus({1}, {2}, 16 * bytes)},
    {"addvl x7, sp, #31", 0x043F53E7, plus({7}, sp, 31 * bytes)},
    {"addpl x0, x1, #-32", 0x04615400, sub_x({0}, {1}, 4 * bytes)},
    {"rdvl x3, #-32", 0x04BF5403, movn_x({3}, 32 * bytes - 1)},
    {"incb xzr", 0x0430E3FF, 0},
    {"cntb xzr", 0x0420E3FF, 0},
    {"rdvl xzr, #1", 0x04BF503F, 0},
    {"add z3.b, z4.b, z5.b", 0x04250083, 0},
    {"sqincd x0", 0x04F0F3E0, 0},
    {"incp x0, p1.b", 0x252C8820, 0},
    {"inch z0.h", 0x0470C3E0, 0},
    {"uqincb w0", 0x0420F7E0, 0},
};

TEST(OrdinaryInstruction, StandsForSumsAndCountsOfElements) {
  for (const counted& c : words) {
    const decode_row* const row = decode_word(c.word).row;
    ASSERT_NE(row, nullptr) << c.text;
    EXPECT_EQ(ordinary_instruction(c.word, *row), c.wanted) << c.text;
  }
}

}  // namespace
}  // namespace quern

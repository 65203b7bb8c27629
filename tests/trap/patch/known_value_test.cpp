// What instructions make of known registers.
#include "sve/trap/patch/known_value.h"

#include <gtest/gtest.h>

#include <string>

namespace quern {
namespace {

using kind = known_value::kind;

// X1 is the state's address and 16, X2 is 5, X3 is 2^63 + 7, X4 where the function returns to, X5 is the state's
// address and 80, X6 is 16 before it; the others are not known.
known_registers some_registers() {
  known_registers registers{};
  registers[1] = {kind::state, 16};
  registers[2] = {kind::number, 5};
  registers[3] = {kind::number, 0x8000000000000007};
  registers[4] = {kind::way_back, 0};
  registers[5] = {kind::state, 80};
  registers[6] = {kind::state, std::uint64_t{0} - 16};
  return registers;
}

struct computed {
  const char* text;
  std::uint32_t word;
  known_result wanted;
};

constexpr std::uint32_t negative = 1u << 31, zero = 1 << 30, carry = 1 << 29;

const computed computed_words[] = {
    {"add x0, x1, #8", 0x91002020, {0, {kind::state, 24}}},
    {"sub x0, x1, #1, lsl #12", 0xD1400420, {0, {kind::state, std::uint64_t{16} - 4096}}},
    {"cmp x1, x1", 0xEB01003F, {31, {kind::number, 0}, zero | carry}},
    {"cmp x1, x5", 0xEB05003F, {31, {kind::number, std::uint64_t{0} - 64}, negative}},
    {"subs x0, x5, x1", 0xEB0100A0, {0, {kind::number, 64}, carry}},
    {"sub x0, x5, x1", 0xCB0100A0, {0, {kind::number, 64}}},
    {"add x0, x2, x1", 0x8B010040, {0, {kind::state, 21}}},
    {"add x0, x1, x2, lsl #3", 0x8B020C20, {0, {kind::state, 56}}},
    {"add x0, x1, w2, uxtw #2", 0x8B224820, {0, {kind::state, 36}}},
    {"mov x0, x1", 0xAA0103E0, {0, {kind::state, 16}}},
    {"mov x0, x4", 0xAA0403E0, {0, {kind::way_back, 0}}},
    {"cmp w2, #5", 0x7100145F, {31, {kind::number, 0}, zero | carry}},
    {"cmp x2, x3", 0xEB03005F, {31, {kind::number, 0x7FFFFFFFFFFFFFFE}, 0}},
    {"tst x3, x3", 0xEA03007F, {31, {kind::number, 0x8000000000000007}, negative}},
    {"add w0, w3, w2", 0x0B020060, {0, {kind::number, 12}}},
    {"ubfx x0, x3, #60, #4", 0xD37CFC60, {0, {kind::number, 8}}},
    {"ubfiz x0, x2, #8, #32", 0xD3787C40, {0, {kind::number, 0x500}}},
    {"asr x0, x3, #62", 0x937EFC60, {0, {kind::number, ~std::uint64_t{1}}}},
    {"bfi x2, x3, #32, #3", 0xB3600862, {2, {kind::number, 0x700000005}}},
    {"movk x2, #1, lsl #48", 0xF2E00022, {2, {kind::number, 0x0001000000000005}}},
    {"mov w0, #-1", 0x12800000, {0, {kind::number, 0xFFFFFFFF}}},
    {"orr x0, x2, #0x100000000", 0xB2600040, {0, {kind::number, 0x100000005}}},
    {"adr x0, .+4", 0x10000020, {0, {kind::number, 0x123454}}},
    {"adrp x0, .+4096", 0xB0000000, {0, {kind::number, 0x124000}}},
};

TEST(KnownValue, FollowsFromKnownOperands) {
  const auto* const pc = reinterpret_cast<const unsigned char*>(0x123450);
  for (const computed& c : computed_words) {
    const auto result = result_of(c.word, pc, some_registers());
    ASSERT_TRUE(result) << c.text;
    EXPECT_EQ(*result, c.wanted) << c.text;
  }
}

struct other {
  const char* text;
  std::uint32_t word;
};
constexpr other not_computed[] = {
    {"add x0, x7, #8: not known", 0x910020E0},
    {"cmp x6, x1: addresses beyond the state", 0xEB0100DF},
    {"cmp w5, w1: halves of addresses", 0x6B0100BF},
    {"add w0, w1, #8: half an address", 0x11002020},
    {"subs x0, x1, #8: its flags", 0xF1002020},
    {"sub x0, x2, x1: minus an address", 0xCB010040},
    {"add x0, x1, x1: two addresses", 0x8B010020},
    {"add x0, x2, x1, lsl #1: twice an address", 0x8B010440},
    {"and x0, x1, #0xfff: bits of an address", 0x92402C20},
    {"mov w0, w1", 0x2A0103E0},
    {"add sp, sp, #16", 0x910043FF},
    {"mov x0, sp", 0x910003E0},
    {"mov sp, x1", 0x9100003F},
    {"movk x5, #1", 0xF2800025},
    {"bfi x5, x2, #8, #8", 0xB3781C45},
    {"madd x0, x2, x2, x2", 0x9B020840},
    {"ldr x0, [x1]", 0xF9400020},
};

TEST(KnownValue, IsNoneOfAnythingElse) {
  for (const other& o : not_computed) EXPECT_FALSE(result_of(o.word, nullptr, some_registers())) << o.text;
}

// The conditions that flags meet, EQ to NV as bits 0 to 15.
struct met {
  std::uint32_t nzcv, conditions;
};
constexpr met flags[] = {{0, 0xD6AA}, {negative, 0xEA9A}, {zero, 0xE6A9}, {carry, 0xD5A6}, {1 << 28, 0xEA6A}};

TEST(Conditions, AreMetByFlags) {
  for (const met& m : flags)
    for (std::uint32_t condition = 0; condition != 16; ++condition)
      EXPECT_EQ(meets(m.nzcv, condition), (m.conditions >> condition & 1) != 0) << m.nzcv << " " << condition;
}

}  // namespace
}  // namespace quern

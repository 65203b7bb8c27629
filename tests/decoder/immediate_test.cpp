// Immediates that need more than their field.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <optional>
#include <set>

#include "sve/decoder/immediate.h"

namespace quern {
namespace {

// A bit mask by its definition: elements of `size` bits, each with `ones` ones at the bottom, rotated right by
// `rotation`, side by side in 64 bits.
std::uint64_t repeated_run(int size, int ones, int rotation) {
  std::uint64_t mask = 0;
  for (int bit = 0; bit != 64; ++bit) {
    const int before_rotation = (bit % size + rotation) % size;
    if (before_rotation < ones) mask |= std::uint64_t{1} << bit;
  }
  return mask;
}

// How N and imms code the element size: its prefix, above the bits that count the ones.
struct size_code_case {
  std::uint32_t n, prefix;
  int size;
};
const size_code_case size_codes[] = {{1, 0b000000, 64}, {0, 0b000000, 32}, {0, 0b100000, 16},
                                     {0, 0b110000, 8},  {0, 0b111000, 4},  {0, 0b111100, 2}};

// The mask of a field, or nothing when the field is reserved.
std::optional<std::uint64_t> expected_mask(std::uint32_t field) {
  const std::uint32_t n = field >> 12, immr = field >> 6 & 0x3F, imms = field & 0x3F;
  for (const size_code_case& c : size_codes) {
    const std::uint32_t counted = static_cast<std::uint32_t>(c.size - 1) & 0x3F;
    if (c.n != n || (imms & ~counted) != c.prefix) continue;
    if ((imms & counted) == counted) return std::nullopt;  // all ones
    return repeated_run(c.size, static_cast<int>(imms & counted) + 1, static_cast<int>(immr) % c.size);
  }
  return std::nullopt;
}

TEST(BitMask, ExpandsEveryValidField) {
  std::set<std::uint64_t> masks;
  for (std::uint32_t field = 0; field != 1 << 13; ++field) {
    const auto expected = expected_mask(field);
    if (!expected) continue;
    EXPECT_EQ(decode_bit_mask(field).value, *expected) << std::hex << field;
    masks.insert(*expected);
  }
  EXPECT_EQ(masks.size(), 5334u);  // all that the architecture can name
}

TEST(BitMask, EndsOnReservedFields) {
  int reserved = 0;
  for (std::uint32_t field = 0; field != 1 << 13; ++field) {
    if (expected_mask(field)) continue;
    ++reserved;
    const std::uint64_t mask = decode_bit_mask(field).value;
    EXPECT_TRUE(mask == 0 || mask == ~std::uint64_t{0}) << std::hex << field;
  }
  EXPECT_GT(reserved, 0);
  EXPECT_EQ(decode_bit_mask(0x003F).value, 0u);  // no element size
  EXPECT_EQ(decode_bit_mask(0x103F).value, 0u);  // 64 ones of 64
}

// A half-precision number by its definition.
double half_value(std::uint32_t bits) {
  const int exponent = static_cast<int>(bits >> 10 & 0x1F), fraction = static_cast<int>(bits & 0x3FF);
  return std::ldexp((bits >> 15 & 1) != 0 ? -1 - fraction / 1024.0 : 1 + fraction / 1024.0, exponent - 15);
}

TEST(FloatImmediate, IsTheSameNumberInThreeFormats) {
  for (std::uint32_t field = 0; field != 256; ++field) {
    const aarch64_sve_fp_dup_imm imm = expand_fp_immediate(field);
    const double magnitude = (16 + static_cast<int>(field & 0xF)) / 16.0;
    const int cd = static_cast<int>(field >> 4 & 3);
    const double number =
        std::ldexp((field & 0x80) != 0 ? -magnitude : magnitude, (field & 0x40) != 0 ? cd - 3 : cd + 1);
    EXPECT_EQ(half_value(imm.half), number) << field;
    EXPECT_EQ(std::bit_cast<float>(imm.single), static_cast<float>(number)) << field;
    EXPECT_EQ(std::bit_cast<double>(imm.dbl), number) << field;
  }
}

TEST(FloatImmediate, OneIs0x70) {
  EXPECT_EQ(expand_fp_immediate(0x70).half, 0x3C00);
  EXPECT_EQ(expand_fp_immediate(0x70).single, 0x3F800000u);
  EXPECT_EQ(expand_fp_immediate(0x70).dbl, 0x3FF0000000000000u);
}

TEST(ShiftedImmediate, KeepsItsShift) {
  EXPECT_EQ(shifted_immediate(0x0FF), 0xFFu);
  EXPECT_EQ(shifted_immediate(0x101), 0x100u);
  EXPECT_EQ(shifted_immediate(0x1FF), 0xFF00u);
  EXPECT_EQ(shifted_signed_immediate(0x0FF), -1);
  EXPECT_EQ(shifted_signed_immediate(0x180), -32768);
  EXPECT_EQ(shifted_signed_immediate(0x17F), 32512);
}

TEST(RightShift, CountsDownFromTheElement) {
  EXPECT_EQ(right_shift_amount(0, size_b), 8u);
  EXPECT_EQ(right_shift_amount(7, size_b), 1u);
  EXPECT_EQ(right_shift_amount(15, size_h), 1u);
  EXPECT_EQ(right_shift_amount(0, size_s), 32u);
  EXPECT_EQ(right_shift_amount(63, size_d), 1u);
}

}  // namespace
}  // namespace quern

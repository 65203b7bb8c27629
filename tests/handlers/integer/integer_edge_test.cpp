// Integer instructions at the edges: wrapping, counts beyond the element, divisors that trap elsewhere, empty
// predicates.
#include <gtest/gtest.h>

#include <cstring>

#include "sve/handlers/integer/divide.h"
#include "sve/handlers/integer/integer_arithmetic.h"
#include "sve/handlers/integer/integer_unary.h"
#include "sve/handlers/integer/multiply.h"
#include "sve/handlers/integer/reduce.h"
#include "sve/handlers/integer/shift.h"
#include "sve/handlers/permute/move_prefix.h"
#include "tests/harness/agreement.h"

namespace quern {
namespace {

constexpr aarch64_p_reg p0_merging = p_reg(0, p_merging), p0_zeroing = p_reg(0, p_zeroing),
                        p0 = p_reg(0, p_unqualified);

// A state whose lanes of `size` in Z0, Z1, Z2 are all of one value each, under a P0 with all lanes active.
cpu_state filled(std::uint32_t size, std::uint64_t z0, std::uint64_t z1 = 0, std::uint64_t z2 = 0) {
  cpu_state s = random_state(size, lanes_on::all);
  fill_elements(s.z[0], size, z0);
  fill_elements(s.z[1], size, z1);
  fill_elements(s.z[2], size, z2);
  return s;
}

// Expects every element of Z0.
void expect_z0(const cpu_state& s, std::uint32_t size, std::uint64_t value) {
  for (std::size_t i = 0; i != count_of(size); ++i) ASSERT_EQ(element(s.z[0], size, i), value) << i;
}

TEST(IntegerEdges, AddReadsBothSourcesBeforeTheDestinationChanges) {
  cpu_state s = filled(size_d, 0x8000000000000003);
  sve_add_zzz(&s, z_reg(0, size_d), z_reg(0, size_d), z_reg(0, size_d));
  expect_z0(s, size_d, 6);
}

TEST(IntegerEdges, AddOfBytesWrapsAt8Bits) {
  cpu_state s = filled(size_b, 200);
  sve_add_zzz(&s, z_reg(0, size_b), z_reg(0, size_b), z_reg(0, size_b));
  expect_z0(s, size_b, 144);
}

TEST(IntegerEdges, AnySizeCodeButThreeIsByte) {
  for (const std::uint32_t code : {0u, 4u, 5u, 7u, 0x80000000u}) {
    cpu_state s = filled(size_b, 255, 1);
    sve_add_zpz(&s, z_both(0, code), p0_merging, z_reg(1, code));
    expect_z0(s, size_b, 0);
  }
}

TEST(IntegerEdges, SxtbOfSizeCodesHAndBIsSignExtensionToHalfwords) {
  for (const std::uint32_t code : {1u, 0u, 4u}) {
    cpu_state s = filled(size_h, 0, 0x1280);
    sve_sxtb_zpz(&s, z_reg(0, code), p0_merging, z_reg(1, code));
    expect_z0(s, size_h, 0xFF80);
  }
}

TEST(IntegerEdges, ExtensionsOfHalfwordsTakeAnyCodeButDAsWords) {
  for (const std::uint32_t code : {0u, 1u, 2u}) {
    cpu_state s = filled(size_s, 0, 0x12348001);
    sve_sxth_zpz(&s, z_reg(0, code), p0_merging, z_reg(1, code));
    expect_z0(s, size_s, 0xFFFF8001);
    sve_uxth_zpz(&s, z_reg(0, code), p0_merging, z_reg(1, code));
    expect_z0(s, size_s, 0x8001);
  }
}

TEST(IntegerEdges, DoublewordOnlyHandlersIgnoreTheSizeCode) {
  cpu_state s = filled(size_d, 0, 0x00000001'80000002);
  const auto result_of = [&](auto* handler) {
    handler(&s, z_reg(0, size_b), p0_merging, z_reg(1, size_b));
    return element(s.z[0], size_d, 0);
  };
  EXPECT_EQ(result_of(sve_revw_zpz), 0x80000002'00000001u);
  EXPECT_EQ(result_of(sve_sxtw_zpz), 0xFFFFFFFF'80000002u);
  EXPECT_EQ(result_of(sve_uxtw_zpz), 0x80000002u);
}

TEST(IntegerEdges, EmptyPredicateKeepsTheDestinationAndMovprfxUnderZeroingClearsIt) {
  cpu_state s = random_state(size_h, lanes_on::none);
  const cpu_state before = s;
  sve_add_zpz(&s, z_both(0, size_h), p0_merging, z_reg(1, size_h));
  sve_movprfx_zpz(&s, z_reg(0, size_h), p0_merging, z_reg(1, size_h));
  EXPECT_EQ(difference(s, before), "") << "merging under an empty predicate";
  sve_movprfx_zpz(&s, z_reg(0, size_h), p0_zeroing, z_reg(1, size_h));
  expect_z0(s, size_h, 0);
}

TEST(IntegerEdges, MovprfxLooksAtTheFirstPredicateByteOfALaneAlone) {
  cpu_state s = filled(size_h, 7, 9);
  for (int i = 0; i != VL_BYTES; ++i) s.p[0][i] = i % 2 == 1 ? 1 : 0;
  sve_movprfx_zpz(&s, z_reg(0, size_h), p0_zeroing, z_reg(1, size_h));
  expect_z0(s, size_h, 0);
}

TEST(IntegerEdges, MovprfxMergesUnderAnyQualifierButZeroing) {
  for (const std::uint32_t qualifier : every_qualifier) {
    if (qualifier == p_zeroing) continue;
    cpu_state s = filled(size_s, 7, 9);
    std::memset(s.p[0], 0xFE, VL_BYTES);
    sve_movprfx_zpz(&s, z_reg(0, size_s), p_reg(0, qualifier), z_reg(1, size_s));
    expect_z0(s, size_s, 7);
  }
}

struct divide_case {
  const char* what;
  handler_zpz* handler;
  std::uint32_t size;
  std::uint64_t zdn, zm, result;
};

TEST(IntegerEdges, Division) {
  static constexpr divide_case cases[] = {
      {"sdiv by zero", sve_sdiv_zpz, size_s, 5, 0, 0},
      {"sdiv of doublewords by zero", sve_sdiv_zpz, size_d, 5, 0, 0},
      {"udiv by zero", sve_udiv_zpz, size_s, 5, 0, 0},
      {"smallest word by -1", sve_sdiv_zpz, size_s, 0x80000000, 0xFFFFFFFF, 0x80000000},
      {"smallest doubleword by -1", sve_sdiv_zpz, size_d, 1ull << 63, ~0ull, 1ull << 63},
      {"smallest word by -1, reversed", sve_sdivr_zpz, size_s, 0xFFFFFFFF, 0x80000000, 0x80000000},
      {"sdivr by a Zdn of zero", sve_sdivr_zpz, size_s, 0, 77, 0},
      {"udivr by a Zdn of zero", sve_udivr_zpz, size_d, 0, 77, 0},
      {"udiv of 7 by 2", sve_udiv_zpz, size_s, 7, 2, 3},
      {"udivr of 7 by 2", sve_udivr_zpz, size_s, 2, 7, 3},
      {"sdiv of -7 by 2", sve_sdiv_zpz, size_s, 0xFFFFFFF9, 2, 0xFFFFFFFD},
      {"udiv of the greatest by -1's pattern", sve_udiv_zpz, size_d, ~0ull, ~0ull, 1},
  };
  for (const divide_case& c : cases) {
    SCOPED_TRACE(c.what);
    cpu_state s = filled(c.size, c.zdn, c.zm);
    EXPECT_EQ(c.handler(&s, z_both(0, c.size), p0_merging, z_reg(1, c.size)), DECODE_OK);
    expect_z0(s, c.size, c.result);
  }
}

TEST(IntegerEdges, DivisionTakesAnySizeCodeButDAsWords) {
  for (const std::uint32_t code : {0u, 1u, 2u, 5u}) {
    cpu_state s = filled(size_s, 100, 7);
    sve_udiv_zpz(&s, z_both(0, code), p0_merging, z_reg(1, code));
    expect_z0(s, size_s, 14);
  }
}

struct shift_case {
  const char* what;
  handler_zpz* handler;
  std::uint32_t size;
  std::uint64_t zdn, count, result;
};

TEST(IntegerEdges, ShiftsByTheElementsBitsAndMore) {
  static constexpr shift_case cases[] = {
      {"lsl of bytes by 8", sve_lsl_zpz, size_b, 0xFF, 8, 0},
      {"asr of bytes by 8", sve_asr_zpz, size_b, 0x80, 8, 0xFF},
      {"asr of positive bytes by 8", sve_asr_zpz, size_b, 0x7F, 8, 0},
      {"lsr of doublewords by 64", sve_lsr_zpz, size_d, ~0ull, 64, 0},
      {"lsl of words by 0x100: the whole lane is the count", sve_lsl_zpz, size_s, 1, 0x100, 0},
      {"lsr of words by 0x100", sve_lsr_zpz, size_s, ~0u, 0x100, 0},
      {"asr of words by 0x100", sve_asr_zpz, size_s, 0x80000000, 0x100, 0xFFFFFFFF},
      {"asr of doublewords by 2^32", sve_asr_zpz, size_d, 1ull << 63, 1ull << 32, ~0ull},
      {"lsl of halfwords by 0xFF81, whose low byte is a negative number", sve_lsl_zpz, size_h, 1, 0xFF81, 0},
      {"lsr of doublewords by all ones", sve_lsr_zpz, size_d, ~0ull, ~0ull, 0},
      {"asr of bytes by all ones", sve_asr_zpz, size_b, 0x80, 0xFF, 0xFF},
      {"lsl of halfwords by 15", sve_lsl_zpz, size_h, 3, 15, 0x8000},
  };
  for (const shift_case& c : cases) {
    SCOPED_TRACE(c.what);
    cpu_state s = filled(c.size, c.zdn, c.count);
    c.handler(&s, z_both(0, c.size), p0_merging, z_reg(1, c.size));
    expect_z0(s, c.size, c.result);
  }
}

TEST(IntegerEdges, AsrOfBytesByTheImmediate8FillsEachLaneWithItsSign) {
  cpu_state s = filled(size_b, 0, 0x80);
  s.z[1][1] = 0x7F;
  sve_asr_zzi(&s, z_reg(0, size_b), z_reg(1, size_b), 8);
  EXPECT_EQ(s.z[0][0], 0xFF);
  EXPECT_EQ(s.z[0][1], 0);
  EXPECT_EQ(s.z[0][VL_BYTES - 1], 0xFF);
}

TEST(IntegerEdges, MadWithTheAccumulatorAsDestinationReadsTheOldValueForBoth) {
  cpu_state s = filled(size_s, 5, 7);
  sve_mad_zpzz(&s, z_both(0, size_s), p0_merging, z_reg(1, size_s), z_reg(0, size_s));
  expect_z0(s, size_s, 40);
}

TEST(IntegerEdges, HalfwordProductsDoNotOverflow) {
  cpu_state s = filled(size_h, 0xFFFF, 0xFFFF);
  sve_mul_zpz(&s, z_both(0, size_h), p0_merging, z_reg(1, size_h));
  expect_z0(s, size_h, 1);
}

// The result of a reduction over Z1 under an empty predicate, as the whole of Z0 from a Z0 of rubbish.
TEST(IntegerEdges, ReductionsOfNoLaneLeaveTheirStartingValueAndZeroAbove) {
  struct {
    handler_vpz* handler;
    std::uint32_t size;
    std::uint64_t low;
  } static constexpr cases[] = {
      {sve_andv_vpz, size_b, 0xFF},        {sve_uminv_vpz, size_h, 0xFFFF},
      {sve_smaxv_vpz, size_s, 0x80000000}, {sve_sminv_vpz, size_b, 0x7F},
      {sve_smaxv_vpz, size_d, 1ull << 63}, {sve_umaxv_vpz, size_s, 0},
      {sve_uaddv_vpz, size_b, 0},          {sve_orv_vpz, size_d, 0},
      {sve_eorv_vpz, size_h, 0},
  };
  for (const auto& c : cases) {
    cpu_state s = random_state(c.size, lanes_on::none);
    c.handler(&s, 0, p0, z_reg(1, c.size));
    EXPECT_EQ(element(s.z[0], size_d, 0), c.low);
    for (std::size_t i = 8; i != VL_BYTES; ++i) ASSERT_EQ(s.z[0][i], 0) << i;
  }
}

TEST(IntegerEdges, UaddvOfBytesDoesNotWrap) {
  cpu_state s = filled(size_b, 0, 0xFF);
  sve_uaddv_vpz(&s, 0, p0, z_reg(1, size_b));
  EXPECT_EQ(element(s.z[0], size_d, 0), 255u * VL_BYTES);
}

TEST(IntegerEdges, UaddvOf256GreatestBytesIs65280) {
  if constexpr (VL_BYTES != 256) GTEST_SKIP() << "names the length of 2048 bits";
  cpu_state s = filled(size_b, 0, 0xFF);
  sve_uaddv_vpz(&s, 0, p0, z_reg(1, size_b));
  EXPECT_EQ(element(s.z[0], size_d, 0), 65280u);
}

TEST(IntegerEdges, UaddvOfWordsIsA64BitSum) {
  cpu_state s = filled(size_s, 0, 0xFFFFFFFF);
  sve_uaddv_vpz(&s, 0, p0, z_reg(1, size_s));
  EXPECT_EQ(element(s.z[0], size_d, 0), 0xFFFFFFFFull * (VL_BYTES / 4));
}

}  // namespace
}  // namespace quern

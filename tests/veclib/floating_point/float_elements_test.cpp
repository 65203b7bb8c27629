// Floating point lane by lane: what a lane computes, whose flags are kept, and what inactive lanes are.
#include <gtest/gtest.h>

#include "sve/arith/float/fpscr.h"
#include "sve/veclib/floating_point/float_arithmetic.h"
#include "sve/veclib/floating_point/float_compare.h"
#include "sve/veclib/floating_point/float_convert.h"
#include "sve/veclib/floating_point/float_multiply_add.h"
#include "sve/veclib/floating_point/float_round.h"
#include "tests/veclib/library_values.h"

namespace {

using namespace quern;
using namespace quern::veclib;

using half = std::uint16_t;
using single = std::uint32_t;
using dbl = std::uint64_t;

constexpr single one = 0x3F800000, two = 0x40000000, three = 0x40400000, four = 0x40800000, half_one = 0x3F000000;
constexpr single signalling = 0x7F800001, quiet = 0x7FC00000, largest = 0x7F7FFFFF, infinite = 0x7F800000;
constexpr single minus = 0x80000000;

// What merging and comparing families have in common, by one of each shape.
TEST(FloatElements, AnEmptyPredicateKeepsTheDestinationAndRaisesNothing) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({signalling, one}), b = vector_of<single>({signalling, signalling});
  const std::vector<single> kept = {signalling, one};
  EXPECT_EQ(first_lanes<single>(VecF32AddVVM(a, PredV{}, b, &ctx), 2), kept);
  EXPECT_EQ(first_lanes<single>(VecF32AddVIM(a, PredV{}, 1, &ctx), 2), kept);
  EXPECT_EQ(first_lanes<single>(VecF32SqrtVM(a, PredV{}, b, &ctx), 2), kept);
  EXPECT_EQ(first_lanes<single>(VecF32FMAVVVM(a, PredV{}, b, b, &ctx), 2), kept);
  EXPECT_EQ(first_lanes<single>(VecF32FRIntXVM(a, PredV{}, b, &ctx), 2), kept);
  EXPECT_EQ(first_lanes<single>(VecH32TruncFVM(a, PredV{}, b, &ctx), 2), kept);
  EXPECT_EQ(VecF32CmpGEVVZ(PredV{}, a, b, &ctx), PredV{});
  EXPECT_EQ(VecF32CmpLTV0Z(PredV{}, a, &ctx), PredV{});
  EXPECT_EQ(ctx.fpsr, 0u);
}

TEST(FloatElements, AllHalfWidthConstantsLeaveTheStatusAsArithmeticDoesWithoutAnActiveLane) {
  CpuContext ctx = context();
  ctx.fpsr = ~0u;
  VecF32AddVIM(VecV{}, PredV{}, 0, &ctx);
  EXPECT_EQ(ctx.fpsr, ~0u);
  VecF16AddVIM(VecV{}, PredV{}, 0, &ctx);
  EXPECT_EQ(ctx.fpsr, 0xF800009F);
}

TEST(FloatElements, FlagsAddUpOverLanesAndToWhatWasThere) {
  CpuContext ctx = context();
  ctx.fpsr = DZC;
  const VecV a = vector_of<single>({one, one, signalling, largest});
  VecF32AddVVM(a, predicate_of<single>({2}), a, &ctx);
  EXPECT_EQ(ctx.fpsr, static_cast<unsigned>(DZC | IOC));
  VecF32AddVVM(a, predicate_of<single>({3}), a, &ctx);
  EXPECT_EQ(ctx.fpsr, static_cast<unsigned>(DZC | IOC | OFC | IXC));
}

// If lane 4 saw lane 3's flags, or the status that was there, nothing could tell: flags have no bearing on a result. It
// is seen by the control bits, which the status must not get.
TEST(FloatElements, TheStatusTakesFlagsAloneOfALanesWord) {
  CpuContext ctx = controlled(FPSCR_FZ | FPSCR_DN | FPSCR_AHP | FPSCR_RMode | FPSCR_FZ16);
  ctx.fpsr = 0;
  VecF32AddVVX(VecV{}, VecV{}, &ctx);
  EXPECT_EQ(ctx.fpsr, 0u);
}

struct binary_case {
  const char* name;
  VecV (*function)(VecV, PredV, VecV, CpuContext*);
  single a, b, result;
};
class SingleMerging : public testing::TestWithParam<binary_case> {};
TEST_P(SingleMerging, ComputesItsLane) {
  const auto& [name, function, a, b, result] = GetParam();
  CpuContext ctx = context();
  const VecV got = function(vector_of<single>({a, a}), predicate_of<single>({1}), vector_of<single>({b, b}), &ctx);
  EXPECT_EQ(first_lanes<single>(got, 2), (std::vector<single>{a, result}));
}
INSTANTIATE_TEST_SUITE_P(, SingleMerging,
                         testing::ValuesIn(std::vector<binary_case>{
                             {"add", VecF32AddVVM, three, one, four},
                             {"sub", VecF32SubVVM, three, one, two},
                             {"subr", VecF32SubRVVM, three, one, two | minus},
                             {"mul", VecF32MulVVM, two, two, four},
                             {"mulx", VecF32MulXVVM, infinite, minus, two | minus},
                             {"div", VecF32DivVVM, four, two, two},
                             {"divr", VecF32DivRVVM, two, one, half_one},
                             {"abd", VecF32AbdVVM, one, three, two},
                             {"abd_of_a_nan", VecF32AbdVVM, quiet | minus, one, quiet},
                             {"max", VecF32MaxVVM, one, two, two},
                             {"min", VecF32MinVVM, one, two, one},
                             {"max_of_a_nan", VecF32MaxVVM, quiet, two, quiet},
                             {"maxnum_of_a_nan", VecF32MaxNumVVM, quiet, two, two},
                             {"minnum_of_a_nan", VecF32MinNumVVM, one, quiet, one},
                             {"sqrt", VecF32SqrtVM, one, four, two},
                             {"abs_of_a_signalling_nan", VecF32AbsVM, one, signalling | minus, signalling},
                             {"neg_of_a_signalling_nan", VecF32NegVM, one, signalling, signalling | minus},
                             {"scale", VecF32ScaleVVM, three, static_cast<single>(-1), 0x3FC00000},
                         }),
                         case_name);

TEST(FloatElements, ChangesOfSignRaiseNothing) {
  CpuContext ctx = controlled(FPSCR_FZ);
  const VecV a = vector_of<single>({signalling, 1});
  VecF32AbsVM(a, all_true<single>(), a, &ctx);
  VecF32NegVM(a, all_true<single>(), a, &ctx);
  EXPECT_EQ(ctx.fpsr, 0u);
}

struct constant_case {
  const char* name;
  VecV (*function)(VecV, PredV, std::uint32_t, CpuContext*);
  single a;
  std::uint32_t selector;
  single result;
};
class SingleWithConstant : public testing::TestWithParam<constant_case> {};
TEST_P(SingleWithConstant, ComputesItsLane) {
  const auto& [name, function, a, selector, result] = GetParam();
  CpuContext ctx = context();
  const VecV got = function(vector_of<single>({a, a}), predicate_of<single>({1}), selector, &ctx);
  EXPECT_EQ(first_lanes<single>(got, 2), (std::vector<single>{a, result}));
}
INSTANTIATE_TEST_SUITE_P(, SingleWithConstant,
                         testing::ValuesIn(std::vector<constant_case>{
                             {"add_half", VecF32AddVIM, half_one, 0, one},
                             {"add_one", VecF32AddVIM, two, 1, three},
                             {"sub_half", VecF32SubVIM, one, 0, half_one},
                             {"sub_one", VecF32SubVIM, three, 1, two},
                             {"subr_half", VecF32SubRVIM, one, 0, half_one | minus},
                             {"one_less_three_is_minus_two", VecF32SubRVIM, three, 1, two | minus},
                             {"mul_half", VecF32MulVIM, two, 0, one},
                             {"mul_two", VecF32MulVIM, two, 1, four},
                             {"max_zero", VecF32MaxVIM, one | minus, 0, 0},
                             {"max_one", VecF32MaxVIM, half_one, 1, one},
                             {"min_zero", VecF32MinVIM, one, 0, 0},
                             {"min_one", VecF32MinVIM, three, 1, one},
                             {"maxnum_zero", VecF32MaxNumVIM, quiet, 0, 0},
                             {"minnum_one", VecF32MinNumVIM, quiet, 1, one},
                         }),
                         case_name);

TEST(FloatElements, ConstantsExistInAllFormats) {
  CpuContext ctx = context();
  EXPECT_EQ(first_lanes<half>(VecF16SubRVIM(vector_of<half>({0x4200}), predicate_of<half>({0}), 1, &ctx), 1)[0],
            0xC000);
  EXPECT_EQ(first_lanes<dbl>(VecD64MulVIM(vector_of<dbl>({0x3FF0000000000000}), predicate_of<dbl>({0}), 1, &ctx), 1)[0],
            0x4000000000000000);
}

struct multiply_add_case {
  const char* name;
  VecV (*function)(VecV, PredV, VecV, VecV, CpuContext*);
  single result;  // of 1, 2 and 3
};
class SingleMultiplyAdd : public testing::TestWithParam<multiply_add_case> {};
TEST_P(SingleMultiplyAdd, ComputesItsLane) {
  const auto& [name, function, result] = GetParam();
  CpuContext ctx = context();
  const VecV got = function(vector_of<single>({one, one}), predicate_of<single>({1}), vector_of<single>({two, two}),
                            vector_of<single>({three, three}), &ctx);
  EXPECT_EQ(first_lanes<single>(got, 2), (std::vector<single>{one, result}));
}
constexpr single five = 0x40A00000, seven = 0x40E00000;
INSTANTIATE_TEST_SUITE_P(, SingleMultiplyAdd,
                         testing::ValuesIn(std::vector<multiply_add_case>{
                             {"fmla", VecF32FMAVVVM, seven},             // 1 + 2 * 3
                             {"fmls", VecF32FMSVVVM, five | minus},      // 1 - 2 * 3
                             {"fnmla", VecF32FNMAVVVM, seven | minus},   // -1 - 2 * 3
                             {"fnmls", VecF32FNMSVVVM, five},            // -1 + 2 * 3
                             {"fmad", VecF32FMADDVVVM, five},            // 3 + 1 * 2
                             {"fmsb", VecF32FMSUBVVVM, one},             // 3 - 1 * 2
                             {"fnmad", VecF32FNMADDVVVM, five | minus},  // -3 - 1 * 2
                             {"fnmsb", VecF32FNMSUBVVVM, one | minus},   // -3 + 1 * 2
                         }),
                         case_name);

TEST(FloatIndexed, MultipliesByALaneOfTheSameSegment) {
  CpuContext ctx = context();
  VecV a{}, b{};
  for (std::size_t i = 0; i != lane_count<single>; ++i) set_lane(a.bytes, i, one);
  b = vector_of<single>({one, two, three, four});
  if constexpr (VL_BYTES > 16) set_lane(b.bytes, 6, five);
  const VecV product = VecF32MulVVIX(a, b, 2, &ctx);
  const VecV sum = VecF32FMAVVVIX(a, b, a, 2, &ctx), difference = VecF32FMSVVVIX(a, b, a, 2, &ctx);
  EXPECT_EQ(first_lanes<single>(product, 4), (std::vector<single>(4, three)));
  EXPECT_EQ(first_lanes<single>(sum, 4), (std::vector<single>(4, four)));
  EXPECT_EQ(first_lanes<single>(difference, 4), (std::vector<single>(4, two | minus)));
  if constexpr (VL_BYTES > 16) {
    EXPECT_EQ(lane<single>(product.bytes, 7), five);
  }
}

struct comparison_case {
  const char* name;
  PredV (*function)(PredV, VecV, VecV, CpuContext*);
  bool less, equal, greater, unordered;  // 1 with 2, 2 with 2, 3 with 2, a quiet NaN with 2
  unsigned flags;                        // of the last
};
class SingleComparison : public testing::TestWithParam<comparison_case> {};
TEST_P(SingleComparison, AnswersInActiveElementsAndLeavesFlags) {
  const auto& [name, function, less, equal, greater, unordered, flags] = GetParam();
  CpuContext ctx = context();
  ctx.nzcv = 0xA0000000;
  PredV expected{};
  for (const auto& [i, holds] : {std::pair{0, less}, {1, equal}, {2, greater}, {3, unordered}})
    set_element<single>(expected, static_cast<std::size_t>(i), holds);
  const VecV a = vector_of<single>({one, two, three, quiet}), b = vector_of<single>({two, two, two, two});
  PredV pg = predicate_of<single>({0, 1, 2, 3});
  pg.words[0] |= 0x22222;  // upper bits of elements don't count
  EXPECT_EQ(function(pg, a, b, &ctx), expected);
  EXPECT_EQ(ctx.fpsr, flags);
  EXPECT_EQ(ctx.nzcv, 0xA0000000);
}
INSTANTIATE_TEST_SUITE_P(, SingleComparison,
                         testing::ValuesIn(std::vector<comparison_case>{
                             {"eq", VecF32CmpEQVVZ, false, true, false, false, 0},
                             {"ge", VecF32CmpGEVVZ, false, true, true, false, IOC},
                             {"gt", VecF32CmpGTVVZ, false, false, true, false, IOC},
                             {"ne", VecF32CmpNEVVZ, true, false, true, true, 0},
                             {"un", VecF32CmpUNVVZ, false, false, false, true, 0},
                             {"acge", VecF32AcGEVVZ, false, true, true, false, IOC},
                             {"acgt", VecF32AcGTVVZ, false, false, true, false, IOC},
                         }),
                         case_name);

TEST(FloatComparison, OfMagnitudesDropsSigns) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({three | minus}), b = vector_of<single>({two});
  EXPECT_EQ(VecF32AcGTVVZ(predicate_of<single>({0}), a, b, &ctx), predicate_of<single>({0}));
  EXPECT_EQ(VecF32AcGTVVZ(predicate_of<single>({0}), b, a, &ctx), PredV{});
}

struct zero_case {
  const char* name;
  PredV (*function)(PredV, VecV, CpuContext*);
  bool below, zero, above, unordered;
  unsigned flags;
};
class SingleZeroComparison : public testing::TestWithParam<zero_case> {};
TEST_P(SingleZeroComparison, AnswersInActiveElements) {
  const auto& [name, function, below, zero, above, unordered, flags] = GetParam();
  CpuContext ctx = context();
  PredV expected{};
  for (const auto& [i, holds] : {std::pair{0, below}, {1, zero}, {2, above}, {3, unordered}})
    set_element<single>(expected, static_cast<std::size_t>(i), holds);
  const VecV a = vector_of<single>({one | minus, minus, one, quiet});
  EXPECT_EQ(function(predicate_of<single>({0, 1, 2, 3}), a, &ctx), expected);
  EXPECT_EQ(ctx.fpsr, flags);
}
INSTANTIATE_TEST_SUITE_P(, SingleZeroComparison,
                         testing::ValuesIn(std::vector<zero_case>{
                             {"eq", VecF32CmpEQV0Z, false, true, false, false, 0},
                             {"ge", VecF32CmpGEV0Z, false, true, true, false, IOC},
                             {"gt", VecF32CmpGTV0Z, false, false, true, false, IOC},
                             {"a_quiet_nan_is_not_zero_and_raises_nothing", VecF32CmpNEV0Z, true, false, true, true, 0},
                             {"a_nan_is_not_less_or_equal_and_raises_ioc", VecF32CmpLEV0Z, true, true, false, false,
                              IOC},
                             {"lt", VecF32CmpLTV0Z, true, false, false, false, IOC},
                         }),
                         case_name);

struct rounding_case {
  const char* name;
  VecV (*function)(VecV, PredV, VecV, CpuContext*);
  std::uint32_t fpcr;
  single value, result;
};
constexpr std::uint32_t up = 1u << FPSCR_RMode_shift, down = 2u << FPSCR_RMode_shift;
constexpr single two_and_a_half = 0x40200000;
class SingleRounding : public testing::TestWithParam<rounding_case> {};
TEST_P(SingleRounding, RoundsItsLane) {
  const auto& [name, function, fpcr, value, result] = GetParam();
  CpuContext ctx = controlled(fpcr);
  const VecV got = function(VecV{}, predicate_of<single>({0}), vector_of<single>({value, value}), &ctx);
  EXPECT_EQ(first_lanes<single>(got, 2), (std::vector<single>{result, 0}));
}
INSTANTIATE_TEST_SUITE_P(, SingleRounding,
                         testing::ValuesIn(std::vector<rounding_case>{
                             {"n", VecF32FRIntNVM, up, two_and_a_half, two},
                             {"p", VecF32FRIntPVM, down, two_and_a_half, three},
                             {"m", VecF32FRIntMVM, up, two_and_a_half, two},
                             {"z", VecF32FRIntZVM, up, two_and_a_half, two},
                             {"a", VecF32FRIntAVM, down, two_and_a_half, three},
                             {"i_to_nearest", VecF32FRIntIVM, 0, two_and_a_half, two},
                             {"i_up", VecF32FRIntIVM, up, two_and_a_half, three},
                             {"x_up", VecF32FRIntXVM, up, two_and_a_half, three},
                             {"x_down", VecF32FRIntXVM, down, two_and_a_half, two},
                         }),
                         case_name);

TEST(FloatRounding, OnlyXReportsAnInexactResult) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({two_and_a_half});
  VecF32FRIntIVM(VecV{}, predicate_of<single>({0}), a, &ctx);
  EXPECT_EQ(ctx.fpsr, 0u);
  VecF32FRIntXVM(VecV{}, predicate_of<single>({0}), a, &ctx);
  EXPECT_EQ(ctx.fpsr, static_cast<unsigned>(IXC));
}

// A conversion's lanes, as the wider side's: source and result patterns of lane 0, and what is raised.
struct conversion_case {
  const char* name;
  VecV (*function)(VecV, PredV, VecV, CpuContext*);
  std::uint64_t value, result;
  unsigned flags;
};
class Conversion : public testing::TestWithParam<conversion_case> {};
TEST_P(Conversion, FillsItsLane) {
  const auto& [name, function, value, result, flags] = GetParam();
  CpuContext ctx = controlled(FPSCR_AHP | FPSCR_FZ16);  // which have no part in it
  const VecV got = function(VecV{}, predicate_of<dbl>({0}), vector_of<dbl>({value}), &ctx);
  EXPECT_EQ(lane<dbl>(got.bytes, 0), result);
  EXPECT_EQ(ctx.fpsr, flags);
}
constexpr dbl rubbish = 0xAAAA000000000000;  // above a source that is narrower than its lane
INSTANTIATE_TEST_SUITE_P(
    , Conversion,
    testing::ValuesIn(std::vector<conversion_case>{
        {"half_infinity_is_one_also_with_the_alternative_format", VecF32ExtndHVM, 0x7C00, infinite, 0},
        {"half_to_double", VecD64ExtndHVM, rubbish | 0x3C00, 0x3FF0000000000000, 0},
        {"a_subnormal_half_is_never_flushed", VecF32ExtndHVM, 0x0001, 0x33800000, 0},
        {"single_to_double", VecD64ExtndFVM, rubbish | two, 0x4000000000000000, 0},
        {"single_to_half", VecH32TruncFVM, 0x3F800000, 0x3C00, 0},
        {"single_to_a_subnormal_half", VecH32TruncFVM, 0x33800000, 0x0001, 0},
        {"double_to_half_in_its_lane", VecH64TruncDVM, 0xBFF0000000000000, 0xBC00, 0},
        {"double_to_single_in_its_lane", VecF64TruncDVM, 0xBFF0000000000000, one | minus, 0},
        {"minus_one_and_a_half_is_minus_one_across_the_lane", VecS64_4FromDVM, 0xBFF8000000000000, ~dbl{0}, IXC},
        {"too_large_is_the_largest_of_32_bits", VecS64_4FromDVM, 0x7E37E43C8800759C, 0x7FFFFFFF, IOC},
        {"too_small_is_extended_by_its_sign", VecS64_4FromDVM, 0xFE37E43C8800759C, 0xFFFFFFFF80000000, IOC},
        {"unsigned_is_extended_by_zeros", VecU64_4FromDVM, 0x7E37E43C8800759C, 0xFFFFFFFF, IOC},
        {"double_to_64_bits", VecS64_8FromDVM, 0xC000000000000000, static_cast<dbl>(-2), 0},
        {"single_to_64_bits", VecS64_8FromFVM, rubbish | two | minus, static_cast<dbl>(-2), 0},
        {"half_to_64_bits", VecU64_8FromHVM, rubbish | 0x4000, 2, 0},
        {"half_to_32_bits", VecS32_4FromHVM, 0xC000, 0xFFFFFFFE, 0},
        {"half_to_16_bits", VecS16_2FromHVM, 0xC000, 0xFFFE, 0},
        {"single_to_32_bits", VecU32_4FromFVM, 0x4F800000, 0xFFFFFFFF, IOC},
        {"signed_32_to_double", VecD64FromS4VM, rubbish | 0xFFFFFFFF, 0xBFF0000000000000, 0},
        {"unsigned_32_to_double", VecD64FromU4VM, rubbish | 0xFFFFFFFF, 0x41EFFFFFFFE00000, 0},
        {"signed_64_to_half_in_its_lane", VecF16FromS8VM, ~dbl{0}, 0xBC00, 0},
        {"signed_32_to_half_in_its_lane", VecF16FromS4VM, 0xFFFFFFFF, 0xBC00, 0},
        {"signed_16_to_half", VecF16FromS2VM, 0xFFFF, 0xBC00, 0},
        {"unsigned_64_to_single_in_its_lane", VecF64FromU8VM, 1, one, 0},
        {"unsigned_64_to_double", VecD64FromU8VM, 1, 0x3FF0000000000000, 0},
        {"signed_32_to_single", VecF32FromS4VM, 0xFFFFFFFF, one | minus, 0},
        {"inexact", VecF32FromU4VM, 0x01000001, 0x4B800000, IXC},
    }),
    case_name);

TEST(FloatConversion, RoundsByTheContextsMode) {
  CpuContext ctx = controlled(up);
  EXPECT_EQ(
      lane<single>(VecF32FromU4VM(VecV{}, predicate_of<single>({0}), vector_of<single>({0x01000001}), &ctx).bytes, 0),
      0x4B800001u);
  // To an integer it is towards zero whatever the mode.
  EXPECT_EQ(lane<single>(
                VecS32_4FromFVM(VecV{}, predicate_of<single>({0}), vector_of<single>({two_and_a_half}), &ctx).bytes, 0),
            2u);
}

}  // namespace

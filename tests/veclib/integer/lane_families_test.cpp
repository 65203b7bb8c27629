// Every family of integer functions that works lane by lane, for all its types.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sve/arith/integer/bit_support.h"
#include "sve/arith/integer/saturation.h"
#include "tests/veclib/lane_laws.h"

namespace {

using namespace quern;

std::uint64_t add(const lane_view& x) { return x.a + x.b; }
std::uint64_t subtract(const lane_view& x) { return x.a - x.b; }
std::uint64_t divide(const lane_view& x, std::uint64_t a, std::uint64_t b) {
  return x.value(b) == 0 ? 0 : bits(x.value(a) / x.value(b));
}
std::uint64_t sum_of_products(const lane_view& x, std::uint64_t lane_of_m) {
  std::uint64_t sum = x.a;
  for (int at = 0; at != x.width; at += x.width / 4)
    sum += bits(Int(x.b >> at, x.width / 4, x.is_unsigned) * Int(lane_of_m >> at, x.width / 4, x.is_unsigned));
  return sum;
}
std::uint64_t shift_right(const lane_view& x, std::uint64_t a, std::uint64_t count) {
  return bits(ShiftRightInt(x.value(a), UInt(count, 64)));
}
std::uint64_t shift_left(std::uint64_t a, std::uint64_t count) {
  return bits(ShiftLeftInt(UInt(a, 64), UInt(count, 64)));
}
std::uint64_t extend(const lane_view& x, int from) { return bits(Int(x.b, from, x.is_unsigned)); }
std::uint64_t address(const lane_view& x, int128 offset, int scale) { return x.a + bits(offset * scale); }

const lane_law laws[] = {
    {"AddVVM", add},
    {"AddVVX", add},
    {"SubVVM", subtract},
    {"SubVVX", subtract},
    {"SubRVVM", [](const lane_view& x) { return x.b - x.a; }},
    {"AndVVM", [](const lane_view& x) { return x.a & x.b; }},
    {"AndVVX", [](const lane_view& x) { return x.a & x.b; }},
    {"OrVVM", [](const lane_view& x) { return x.a | x.b; }},
    {"OrVVX", [](const lane_view& x) { return x.a | x.b; }},
    {"XorVVM", [](const lane_view& x) { return x.a ^ x.b; }},
    {"XorVVX", [](const lane_view& x) { return x.a ^ x.b; }},
    {"BicVVM", [](const lane_view& x) { return x.a & ~x.b; }},
    {"BicVVX", [](const lane_view& x) { return x.a & ~x.b; }},
    {"MulVVM", [](const lane_view& x) { return x.a * x.b; }},
    {"MulHVVM",
     [](const lane_view& x) {
       return bits(static_cast<int128>(static_cast<uint128>(x.value(x.a)) * static_cast<uint128>(x.value(x.b))) >>
                   x.width);
     }},
    {"MaxVVM", [](const lane_view& x) { return Max(x.a, x.b, x.width, x.is_unsigned); }},
    {"MinVVM", [](const lane_view& x) { return Min(x.a, x.b, x.width, x.is_unsigned); }},
    {"AbdVVM", [](const lane_view& x) { return bits(AbsInt(x.value(x.a) - x.value(x.b))); }},
    {"DivVVM", [](const lane_view& x) { return divide(x, x.a, x.b); }},
    {"DivRVVM", [](const lane_view& x) { return divide(x, x.b, x.a); }},
    {"MLAVVVM", [](const lane_view& x) { return x.a + x.b * x.c; }},
    {"MLSVVVM", [](const lane_view& x) { return x.a - x.b * x.c; }},
    {"MADDVVVM", [](const lane_view& x) { return x.c + x.a * x.b; }},
    {"MSUBVVVM", [](const lane_view& x) { return x.c - x.a * x.b; }},
    {"ShlVVM", [](const lane_view& x) { return shift_left(x.a, x.b); }},
    {"ShlRVVM", [](const lane_view& x) { return shift_left(x.b, x.a); }},
    {"ShrVVM", [](const lane_view& x) { return shift_right(x, x.a, x.b); }},
    {"ShrRVVM", [](const lane_view& x) { return shift_right(x, x.b, x.a); }},
    {"ShlVWM", [](const lane_view& x) { return shift_left(x.a, x.wide); }},
    {"ShlVWX", [](const lane_view& x) { return shift_left(x.a, x.wide); }},
    {"ShrVWM", [](const lane_view& x) { return shift_right(x, x.a, x.wide); }},
    {"ShrVWX", [](const lane_view& x) { return shift_right(x, x.a, x.wide); }},
    {"QAddVVX", [](const lane_view& x) { return SatAdd(x.a, x.b, x.width, x.is_unsigned).value; }},
    {"QSubVVX", [](const lane_view& x) { return SatSub(x.a, x.b, x.width, x.is_unsigned).value; }},
    {"AbsVM", [](const lane_view& x) { return bits(AbsInt(x.value(x.b))); }},
    {"NegVM", [](const lane_view& x) { return 0 - x.b; }},
    {"InvVM", [](const lane_view& x) { return ~x.b; }},
    {"NotVM", [](const lane_view& x) -> std::uint64_t { return x.b == 0 ? 1 : 0; }},
    {"ClsVM", [](const lane_view& x) { return static_cast<std::uint64_t>(CountLeadingSignBits(x.b, x.width)); }},
    {"ClzVM", [](const lane_view& x) { return static_cast<std::uint64_t>(CountLeadingZeroBits(x.b, x.width)); }},
    {"CntVM", [](const lane_view& x) { return static_cast<std::uint64_t>(BitCount(x.b, x.width)); }},
    {"RBitVM", [](const lane_view& x) { return BitReverse(x.b, x.width); }},
    {"Rev1V", [](const lane_view& x) { return Reverse(x.b, x.width, 1); }},
    {"Rev2V", [](const lane_view& x) { return Reverse(x.b, x.width, 2); }},
    {"Rev4V", [](const lane_view& x) { return Reverse(x.b, x.width, 4); }},
    {"Extnd12VM", [](const lane_view& x) { return extend(x, 8); }},
    {"Extnd14VM", [](const lane_view& x) { return extend(x, 8); }},
    {"Extnd18VM", [](const lane_view& x) { return extend(x, 8); }},
    {"Extnd24VM", [](const lane_view& x) { return extend(x, 16); }},
    {"Extnd28VM", [](const lane_view& x) { return extend(x, 16); }},
    {"Extnd48VM", [](const lane_view& x) { return extend(x, 32); }},
    {"DotVVVX", [](const lane_view& x) { return sum_of_products(x, x.c); }},
    {"LEA1VV", [](const lane_view& x) { return address(x, UInt(x.b, 64), 1); }},
    {"LEA2VV", [](const lane_view& x) { return address(x, UInt(x.b, 64), 2); }},
    {"LEA4VV", [](const lane_view& x) { return address(x, UInt(x.b, 64), 4); }},
    {"LEA8VV", [](const lane_view& x) { return address(x, UInt(x.b, 64), 8); }},
    {"LEA1XVV", [](const lane_view& x) { return address(x, Int(x.b, 32, 0), 1); }},
    {"LEA2XVV", [](const lane_view& x) { return address(x, Int(x.b, 32, 0), 2); }},
    {"LEA4XVV", [](const lane_view& x) { return address(x, Int(x.b, 32, 0), 4); }},
    {"LEA8XVV", [](const lane_view& x) { return address(x, Int(x.b, 32, 0), 8); }},
    {"LEA1YVV", [](const lane_view& x) { return address(x, UInt(x.b, 32), 1); }},
    {"LEA2YVV", [](const lane_view& x) { return address(x, UInt(x.b, 32), 2); }},
    {"LEA4YVV", [](const lane_view& x) { return address(x, UInt(x.b, 32), 4); }},
    {"LEA8YVV", [](const lane_view& x) { return address(x, UInt(x.b, 32), 8); }},
};

TEST(LaneFamilies, FollowTheirLawsForAllTypes) {
  for (const lane_law& law : laws) judge_lanes(law);
}

const std::vector<std::uint64_t> immediates{0, 1, 5, 127, 128, 200, 255, 256, 0x7F00, 0xFF00, ~std::uint64_t{0}};
std::uint64_t immediate(const lane_view& x) { return bits(UInt(x.scalar, x.width)); }

const lane_law laws_of_immediates[] = {
    {"AddVIX", [](const lane_view& x) { return x.a + x.scalar; }},
    {"SubVIX", [](const lane_view& x) { return x.a - x.scalar; }},
    {"SubRVIX", [](const lane_view& x) { return x.scalar - x.a; }},
    {"MulVIX", [](const lane_view& x) { return x.a * x.scalar; }},
    {"MaxVIX", [](const lane_view& x) { return Max(x.a, x.scalar, x.width, x.is_unsigned); }},
    {"MinVIX", [](const lane_view& x) { return Min(x.a, x.scalar, x.width, x.is_unsigned); }},
    {"AndVIX", [](const lane_view& x) { return x.a & x.scalar; }},
    {"OrVIX", [](const lane_view& x) { return x.a | x.scalar; }},
    {"XorVIX", [](const lane_view& x) { return x.a ^ x.scalar; }},
    // The immediate of a saturating operation is unsigned, whatever the lanes are.
    {"QAddVIX", [](const lane_view& x) { return SatQ(x.value(x.a) + immediate(x), x.width, x.is_unsigned).value; }},
    {"QSubVIX", [](const lane_view& x) { return SatQ(x.value(x.a) - immediate(x), x.width, x.is_unsigned).value; }},
};

TEST(LaneFamilies, FollowTheirLawsForAllTypesWithImmediates) {
  for (const lane_law& law : laws_of_immediates) judge_lanes(law, immediates);
}

// Halving `count` times, towards zero. Doubling it could take more bits than there are.
std::uint64_t halve(const lane_view& x) {
  int128 value = x.value(x.a);
  for (std::uint64_t i = 0; i != x.scalar; ++i) value /= 2;
  return bits(value);
}

const lane_law laws_of_counts[] = {
    {"ShlVIM", [](const lane_view& x) { return shift_left(x.a, x.scalar); }},
    {"ShlVIX", [](const lane_view& x) { return shift_left(x.a, x.scalar); }},
    {"ShrVIM", [](const lane_view& x) { return shift_right(x, x.a, x.scalar); }},
    {"ShrVIX", [](const lane_view& x) { return shift_right(x, x.a, x.scalar); }},
    {"ShrDVIM", halve},
};

TEST(LaneFamilies, FollowTheirLawsForAllTypesWithShiftCounts) {
  for (const lane_law& law : laws_of_counts) judge_lanes(law, {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 64});
}

TEST(DotVVVIX, TakesOneLaneOfEachBlockOf16Bytes) {
  for (const library_member& member : members_of("DotVVVIX")) {
    for (std::uint64_t index = 0; index != 128u / static_cast<unsigned>(member.width()); ++index) {
      library_operands operands = random_operands(member.width(), index), spread = operands;
      operands.scalars[0] = index;
      const std::size_t bytes = static_cast<std::size_t>(member.width()) / 8;
      for (std::size_t at = 0; at != VL_BYTES; ++at)
        spread.vectors[2].bytes[at] = operands.vectors[2].bytes[at / 16 * 16 + index * bytes + at % bytes];
      CpuContext ctx = library_context();
      const std::string plain = "Vec" + std::string{member.tag} + "DotVVVX";
      for (const library_member& dot : members_of("DotVVVX")) {
        if (dot.name != plain) continue;
        EXPECT_THAT(member(operands, ctx).vector.bytes, testing::ElementsAreArray(dot(spread, ctx).vector.bytes))
            << member.name << ' ' << index;
      }
    }
  }
}

}  // namespace

// Floating-point instructions at their edges: what a handler leaves of one case, value and flags.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <vector>

#include "sve/handlers/floating_point/float_bits.h"
#include "sve/handlers/floating_point/host_float.h"
#include "tests/handlers/floating_point/libc_roots.h"
#include "tests/harness/agreement.h"
#include "tests/support/host_controls.h"

namespace quern {
namespace {

constexpr std::uint32_t IOC = 1, DZC = 2, IXC = 16;
constexpr std::uint32_t toward_zero = 3u << 22;
constexpr std::uint32_t quiet_nan = 0x7FC00001, default_nan = 0x7FC00000;

std::uint64_t bits(float x) { return std::bit_cast<std::uint32_t>(x); }
std::uint64_t bits(double x) { return std::bit_cast<std::uint64_t>(x); }

// Registers of which z1 and z2 hold one value each, z0 zeros; p0 is all active, p1 all but element 0. No flag is set.
struct machine {
  explicit machine(std::uint32_t element_size, std::uint64_t z1 = 0, std::uint64_t z2 = 0) : size(element_size) {
    fill_elements(s.z[1], size, z1);
    fill_elements(s.z[2], size, z2);
    write_flags(s.p[0], size, flags_of(count_of(size), true));
    write_flags(s.p[1], size, flags_of(count_of(size), true));
    s.p[1][0] = 0;
  }
  // handler(operands...) as its thunk calls it.
  template <class Handler, class... Operand>
  machine& run(Handler* handler, Operand... operand) {
    EXPECT_EQ(call_under_controls(handler, s, operand...), DECODE_OK);
    return *this;
  }
  aarch64_z_reg z(std::uint32_t n) const { return z_reg(n, size); }
  std::uint64_t lane(std::uint32_t n, std::size_t i = 0) const { return element(s.z[n], size, i); }
  std::size_t last() const { return count_of(size) - 1; }

  std::uint32_t size;
  cpu_state s{};
};

constexpr aarch64_p_reg p0 = p_reg(0, p_merging), p1 = p_reg(1, p_merging), p0_zeroing = p_reg(0, p_zeroing);

TEST(FloatEdges, AddRoundsAsTheApplicationsControlRegisterSays) {
  machine nearest(size_s, bits(1.0f), bits(0x1.8p-24f)), zero = nearest;
  zero.s.fpcr = toward_zero;
  EXPECT_EQ(nearest.run(sve_fadd_zzz, nearest.z(0), nearest.z(1), nearest.z(2)).lane(0), bits(0x1.000002p0f));
  EXPECT_EQ(zero.run(sve_fadd_zzz, zero.z(0), zero.z(1), zero.z(2)).lane(0), bits(1.0f));
  EXPECT_EQ(zero.s.fpsr, IXC);
  EXPECT_EQ(zero.s.fpcr, toward_zero);
}

TEST(FloatEdges, DivisionByZeroInAnActiveLaneAloneSetsDzc) {
  machine active(size_s, bits(2.0f), bits(1.0f));
  set_element(active.s.z[2], size_s, 0, 0);
  machine inactive = active;
  active.run(sve_fdiv_zpz, z_both(1, size_s), p0, active.z(2));
  EXPECT_EQ(active.lane(1), bits(HUGE_VALF));
  EXPECT_EQ(active.s.fpsr, DZC);
  inactive.run(sve_fdiv_zpz, z_both(1, size_s), p1, inactive.z(2));
  EXPECT_EQ(inactive.lane(1), bits(2.0f));
  EXPECT_EQ(inactive.s.fpsr, 0u);
}

TEST(FloatEdges, RootOfANegativeNumberIsTheDefaultNanAndCallsLibcOnce) {
  machine singles(size_s, bits(4.0f)), doubles(size_d, bits(4.0));
  set_element(singles.s.z[1], size_s, 3, bits(-1.0f));
  set_element(doubles.s.z[1], size_d, 1, bits(-1.0));
  const libc_roots calls;
  singles.run(sve_fsqrt_zpz, singles.z(0), p0, singles.z(1));
  EXPECT_EQ(calls.of_singles(), std::vector<float>{-1.0f});
  EXPECT_EQ(singles.lane(0, 3), default_nan);
  EXPECT_EQ(singles.lane(0, 2), bits(2.0f));
  EXPECT_EQ(singles.s.fpsr, IOC);
  doubles.run(sve_fsqrt_zpz, doubles.z(0), p0, doubles.z(1));
  EXPECT_EQ(calls.of_doubles(), std::vector<double>{-1.0});
  EXPECT_EQ(doubles.lane(0, 1), 0x7FF8000000000000u);
  EXPECT_EQ(doubles.s.fpsr, IOC);
}

TEST(FloatEdges, RootsOfZerosNansInfinityAndInactiveLanesCallNothing) {
  const libc_roots calls;
  for (const std::uint64_t x : {bits(-0.0f), bits(0.0f), bits(HUGE_VALF), std::uint64_t{quiet_nan},
                                std::uint64_t{0xFFC00000}, std::uint64_t{0xFF800001}, bits(4.0f)}) {
    machine m(size_s, x);
    m.run(sve_fsqrt_zpz, m.z(0), p0, m.z(1));
  }
  machine inactive(size_s, bits(4.0f));
  set_element(inactive.s.z[1], size_s, 0, bits(-1.0f));
  inactive.run(sve_fsqrt_zpz, inactive.z(0), p1, inactive.z(1));
  EXPECT_EQ(inactive.s.fpsr, 0u);
  EXPECT_TRUE(calls.of_singles().empty());
}

TEST(FloatEdges, RootsBelowZeroCallLibcUpToInfinity) {
  const libc_roots calls;
  for (const float x : {-HUGE_VALF, -0x1p-126f, -0x1p-149f}) {
    machine m(size_s, bits(4.0f));
    set_element(m.s.z[1], size_s, m.last(), bits(x));
    m.run(sve_fsqrt_zpz, m.z(0), p0, m.z(1));
  }
  EXPECT_EQ(calls.of_singles(), (std::vector<float>{-HUGE_VALF, -0x1p-126f, -0x1p-149f}));
}

TEST(FloatEdges, RootOfMinusZeroIsMinusZero) {
  machine m(size_s, bits(-0.0f));
  EXPECT_EQ(m.run(sve_fsqrt_zpz, m.z(0), p0, m.z(1)).lane(0), bits(-0.0f));
  EXPECT_EQ(m.s.fpsr, 0u);
}

TEST(FloatEdges, OrderedComparisonsSignalAQuietNanAndEqualityDoesNot) {
  constexpr struct {
    handler_ppzz* handler;
    std::uint32_t flags;
  } comparisons[] = {{sve_fcmge_ppzz, IOC}, {sve_fcmgt_ppzz, IOC}, {sve_fcmeq_ppzz, 0}};
  for (const auto& [handler, flags] : comparisons) {
    machine m(size_s, quiet_nan, bits(1.0f));
    write_flags(m.s.p[2], size_s, flags_of(count_of(size_s), true));
    m.run(handler, p_reg(2, size_s), p0_zeroing, m.z(1), m.z(2));
    EXPECT_EQ(read_flags(m.s.p[2], size_s), flags_of(count_of(size_s), false));
    EXPECT_EQ(m.s.fpsr, flags);
  }
}

TEST(FloatEdges, NotEqualIsTrueOfANan) {
  machine m(size_d, 0x7FF8000000000001, bits(1.0));
  m.run(sve_fcmne_ppzz, p_reg(2, size_d), p0_zeroing, m.z(1), m.z(2));
  EXPECT_EQ(read_elements(m.s.p[2], size_d), elements(count_of(size_d), 1));
  EXPECT_EQ(m.s.fpsr, 0u);
}

TEST(FloatEdges, ComparisonsLeaveNzcv) {
  machine m(size_s, bits(1.0f), bits(1.0f));
  m.s.nzcv = 0xB0000001;
  m.run(sve_fcmeq_ppzz, p_reg(2, size_s), p0_zeroing, m.z(1), m.z(2));
  m.run(sve_fcmlt_ppz, p_reg(3, size_s), p0_zeroing, m.z(1));
  EXPECT_EQ(m.s.nzcv, 0xB0000001u);
}

TEST(FloatEdges, MaximumNumberOfOneActiveLaneIsThatLane) {
  machine m(size_s, quiet_nan);
  set_element(m.s.z[1], size_s, 1, bits(-3.0f));
  write_flags(m.s.p[2], size_s, flags_of(count_of(size_s), false));
  m.s.p[2][4] = 1;
  fill_elements(m.s.z[0], size_s, 0xFFFFFFFF);
  EXPECT_EQ(m.run(sve_fmaxnmv_vpz, 0u, p_reg(2, p_unqualified), m.z(1)).lane(0), bits(-3.0f));
  EXPECT_EQ(m.s.fpsr, 0u);
}

TEST(FloatEdges, MaximumNumberOfNoLaneIsTheDefaultNanAboveZeros) {
  for (auto* const handler : {sve_fmaxnmv_vpz, sve_fminnmv_vpz}) {
    machine m(size_s, bits(1.0f));
    write_flags(m.s.p[2], size_s, flags_of(count_of(size_s), false));
    fill_elements(m.s.z[0], size_s, 0xFFFFFFFF);
    m.run(handler, 0u, p_reg(2, p_unqualified), m.z(1));
    elements expected(count_of(size_s), 0);
    expected[0] = default_nan;
    EXPECT_EQ(read_elements(m.s.z[0], size_s), expected);
    EXPECT_EQ(m.s.fpsr, 0u);
  }
}

TEST(FloatEdges, NarrowingClearsTheUpperWordOfActiveLanesAlone) {
  machine m(size_d, bits(-1.5));
  fill_elements(m.s.z[0], size_d, ~std::uint64_t{0});
  m.run(sve_fcvt_d2s_zpz, z_reg(0, size_s), p1, m.z(1));
  EXPECT_EQ(m.lane(0, 0), ~std::uint64_t{0});
  EXPECT_EQ(m.lane(0, 1), bits(-1.5f));
}

TEST(FloatEdges, ANegativeDoubleBecomesASignExtendedWord) {
  machine m(size_d, bits(-7.75));
  m.run(sve_fcvtzs_d2s_zpz, z_reg(0, size_s), p0, m.z(1));
  EXPECT_EQ(m.lane(0), static_cast<std::uint64_t>(-7));
  EXPECT_EQ(m.s.fpsr, IXC);
}

TEST(FloatEdges, ComplexMultiplyAddTurnedOnceAddsMinusBdAndBc) {
  machine m(size_d);
  const double a = 2, b = 3, c = 5, d = 7;
  for (std::size_t i = 0; i != count_of(size_d); ++i) {
    set_element(m.s.z[0], size_d, i, bits(i % 2 == 0 ? 100.0 : 200.0));
    set_element(m.s.z[1], size_d, i, bits(i % 2 == 0 ? a : b));
    set_element(m.s.z[2], size_d, i, bits(i % 2 == 0 ? c : d));
  }
  m.run(sve_fcmla_zpzzr, z_both(0, size_d), p0, m.z(1), m.z(2), 1u);
  EXPECT_EQ(m.lane(0, 0), bits(100 - b * d));
  EXPECT_EQ(m.lane(0, 1), bits(200 + b * c));
}

TEST(FloatEdges, DupOfHalvesWritesTheHalfPatternToEveryHalfword) {
  machine m(size_h);
  m.run(sve_fdup_zi, m.z(0), aarch64_sve_fp_dup_imm{0x3C00, 0x3F800000, 0x3FF0000000000000});
  EXPECT_EQ(read_elements(m.s.z[0], size_h), elements(count_of(size_h), 0x3C00));
}

TEST(FloatEdges, MultiplicationByAConstantIsBy2ForBit1AndByHalfForBit0) {
  for (const auto& [bit, product] : {std::pair{1u, 6.0f}, {0u, 1.5f}}) {
    machine m(size_s, bits(3.0f));
    m.run(sve_fmul_zpi, z_both(1, size_s), p0, aarch64_sve_fp_arith_imm{bit});
    EXPECT_EQ(m.lane(1), bits(product));
  }
}

TEST(FloatEdges, AbsAndNegOfASignallingNanMoveItsSignAndRaiseNothing) {
  machine m(size_s, 0xFF800001);
  EXPECT_EQ(m.run(sve_fabs_zpz, m.z(0), p0, m.z(1)).lane(0), 0x7F800001u);
  EXPECT_EQ(m.run(sve_fneg_zpz, m.z(0), p0, m.z(1)).lane(0), 0x7F800001u);
  EXPECT_EQ(m.s.fpsr, 0u);
}

// The thunks pass no other code.
TEST(FloatEdges, NothingIsComputedForOtherSizes) {
  for (const std::uint32_t code : {0u, 1u, 4u, 5u}) {
    machine m(size_s, 0x7F800001, 0x7F800001);
    const cpu_state before = m.s;
    m.run(sve_fadd_zpz, z_both(1, code), p0, z_reg(2, code)).run(sve_fadd_zzz, z_reg(0, code), m.z(1), m.z(2));
    m.run(sve_fmla_zpzz, z_both(1, code), p0, z_reg(2, code), z_reg(2, code));
    m.run(sve_fcmeq_ppzz, p_reg(2, code), p0_zeroing, z_reg(1, code), z_reg(2, code));
    m.run(sve_fmaxnmv_vpz, 0u, p0, z_reg(1, code)).run(sve_fsqrt_zpz, z_reg(0, code), p0, z_reg(1, code));
    EXPECT_EQ(difference(m.s, before), "") << code;
  }
}

}  // namespace
}  // namespace quern

// The two floating-point units against each other, where both can run: every operation, on groups of every kind of
// number, in every rounding mode, with flushing and default NaNs on and off; values and flags.
#ifdef __aarch64__
#include <gtest/gtest.h>

#include "sve/handlers/floating_point/neon_fp.h"
#include "sve/handlers/floating_point/software_fp.h"
#include "tests/handlers/floating_point/float_values.h"
#include "tests/support/host_controls.h"

namespace quern {
namespace {

template <lane_group T>
T random_group(random_source& random) {
  T group{};
  for (int i = 0; i != group_lanes<T>; ++i) group[i] = static_cast<lane_of<T>>(lane_value(random, size_code<T>));
  return group;
}

// What op leaves on a unit: the result and FPSR.
template <class Unit, lane_group T, class Op>
std::pair<T, std::uint32_t> outcome(Op op, std::uint32_t fpcr, T a, T b, T c) {
  cpu_state state{};
  state.fpcr = fpcr;
  const host_controls controls(state);
  load_host_fpsr(&state);
  T result;
  {
    Unit fp(state);
    result = op(fp, a, b, c);
  }
  if constexpr (std::is_same_v<Unit, neon_fp>) store_host_fpsr(&state);
  return {result, state.fpsr};
}

template <lane_group T, class Op>
void expect_same(const char* name, Op op) {
  random_source random(hash_text(name));
  for (int i = 0; i != 500; ++i) {
    const T a = random_group<T>(random), b = random.one_in(4) ? a : random_group<T>(random);
    const T c = random_group<T>(random);
    for (const std::uint32_t fpcr : all_controls()) {
      const auto [here, here_fpsr] = outcome<neon_fp>(op, fpcr, a, b, c);
      const auto [there, there_fpsr] = outcome<software_fp>(op, fpcr, a, b, c);
      for (int lane = 0; lane != group_lanes<T>; ++lane)
        ASSERT_EQ(here[lane], there[lane])
            << name << std::hex << "(" << a[lane] << ", " << b[lane] << ", " << c[lane] << "), fpcr " << fpcr;
      ASSERT_EQ(here_fpsr, there_fpsr) << name << std::hex << ", fpcr " << fpcr;
    }
  }
}

template <class Op>
void expect_same_at_both_sizes(const char* name, Op op) {
  expect_same<singles>(name, op);
  expect_same<doubles>(name, op);
}

#define OP(call)                                                                                             \
  []([[maybe_unused]] auto& fp, [[maybe_unused]] auto a, [[maybe_unused]] auto b, [[maybe_unused]] auto c) { \
    return fp.call;                                                                                          \
  }

TEST(FloatUnits, AgreeInArithmetic) {
  expect_same_at_both_sizes("fadd", OP(fadd(a, b)));
  expect_same_at_both_sizes("fsub", OP(fsub(a, b)));
  expect_same_at_both_sizes("fmul", OP(fmul(a, b)));
  expect_same_at_both_sizes("fdiv", OP(fdiv(a, b)));
  expect_same_at_both_sizes("fmax", OP(fmax(a, b)));
  expect_same_at_both_sizes("fmaxnm", OP(fmaxnm(a, b)));
  expect_same_at_both_sizes("fminnm", OP(fminnm(a, b)));
  expect_same_at_both_sizes("frecps", OP(frecps(a, b)));
  expect_same_at_both_sizes("fmla", OP(fmla(a, b, c)));
  expect_same_at_both_sizes("fmls", OP(fmls(a, b, c)));
  expect_same_at_both_sizes("fsqrt", OP(fsqrt(a)));
  expect_same_at_both_sizes("frinta", OP(frinta(a)));
  expect_same_at_both_sizes("frecpe", OP(frecpe(a)));
}

TEST(FloatUnits, AgreeInComparison) {
  expect_same_at_both_sizes("fcmeq", OP(fcmeq(a, b)));
  expect_same_at_both_sizes("fcmge", OP(fcmge(a, b)));
  expect_same_at_both_sizes("fcmgt", OP(fcmgt(a, b)));
  expect_same_at_both_sizes("fcmuo", OP(fcmuo(a, b)));
}

TEST(FloatUnits, AgreeInConversion) {
  expect_same_at_both_sizes("fcvtzs", OP(fcvtzs(a)));
  expect_same_at_both_sizes("fcvtzu", OP(fcvtzu(a)));
  expect_same_at_both_sizes("scvtf", OP(scvtf(a)));
  expect_same_at_both_sizes("ucvtf", OP(ucvtf(a)));
  expect_same<doubles>("fcvt_s2d", OP(fcvt_s2d(a)));
  expect_same<doubles>("fcvt_d2s", OP(fcvt_d2s(a)));
  expect_same<doubles>("fcvtzs_s2d", OP(fcvtzs_s2d(a)));
  expect_same<doubles>("fcvtzs_d2s", OP(fcvtzs_d2s(a)));
  expect_same<doubles>("fcvtzu_d2s", OP(fcvtzu_d2s(a)));
  expect_same<doubles>("scvtf_s2d", OP(scvtf_s2d(a)));
  expect_same<doubles>("scvtf_d2s", OP(scvtf_d2s(a)));
  expect_same<doubles>("ucvtf_s2d", OP(ucvtf_s2d(a)));
}

#undef OP

}  // namespace
}  // namespace quern
#endif

// The two floating-point units against each other, where both can run: every operation, on groups of every kind of
// number, in every rounding mode, with flushing and default NaNs on and off; values and flags. Halves by the host's
// unit need agree only where it raises neither IOC nor QC.
#ifdef __aarch64__
#include <gtest/gtest.h>

#include "sve/arith/unit/neon_fp.h"
#include "sve/arith/unit/software_fp.h"
#include "tests/support/float_values.h"
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
template <class Unit, float_operand T, class Op>
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

constexpr std::uint32_t QC = 1U << 27;

template <lane_group T, class Op>
void expect_same(const char* name, Op op, std::uint32_t fpcr, T a, T b, T c) {
  const auto [here, here_fpsr] = outcome<neon_fp>(op, fpcr, a, b, c);
  if (sizeof(lane_of<T>) == 2 && (here_fpsr & IOC) != 0) return;
  const auto [there, there_fpsr] = outcome<software_fp>(op, fpcr, a, b, c);
  for (int lane = 0; lane != group_lanes<T>; ++lane)
    ASSERT_EQ(here[lane], there[lane]) << name << std::hex << "(" << a[lane] << ", " << b[lane] << ", " << c[lane]
                                       << "), fpcr " << fpcr;
  ASSERT_EQ((here_fpsr & QC) != 0 ? here_fpsr ^ (QC | IOC) : here_fpsr, there_fpsr)
      << name << std::hex << "(" << a[0] << ", " << b[0] << ", " << c[0] << "), fpcr " << fpcr;
}

template <lane_group T, class Op>
void expect_same_at_random(const char* name, Op op) {
  random_source random(hash_text(name));
  for (int i = 0; i != 500; ++i) {
    const T a = random_group<T>(random), b = random.one_in(4) ? a : random_group<T>(random);
    const T c = random_group<T>(random);
    for (const std::uint32_t fpcr : all_controls()) expect_same(name, op, fpcr, a, b, c);
  }
}

template <class Op>
void expect_same_at_both_sizes(const char* name, Op op) {
  expect_same_at_random<singles>(name, op);
  expect_same_at_random<doubles>(name, op);
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
  expect_same_at_both_sizes("fmin", OP(fmin(a, b)));
  expect_same_at_both_sizes("fmulx", OP(fmulx(a, b)));
  expect_same_at_both_sizes("fmaxnm", OP(fmaxnm(a, b)));
  expect_same_at_both_sizes("fminnm", OP(fminnm(a, b)));
  expect_same_at_both_sizes("frecps", OP(frecps(a, b)));
  expect_same_at_both_sizes("frsqrts", OP(frsqrts(a, b)));
  expect_same_at_both_sizes("fscale", OP(fscale(a, b)));
  expect_same_at_random<singles>("fscale", OP(fscale(a, (b >> 23) - 256)));
  expect_same_at_random<doubles>("fscale", OP(fscale(a, (b >> 52) - 2048)));
  expect_same_at_random<doubles>("fscale", OP(fscale(a, (b >> 51) - 4096)));
  expect_same_at_both_sizes("ftsmul", OP(ftsmul(a, b)));
  expect_same_at_both_sizes("ftmad", OP(ftmad(4, a, b)));
  expect_same_at_both_sizes("fmla", OP(fmla(a, b, c)));
  expect_same_at_both_sizes("fmls", OP(fmls(a, b, c)));
  expect_same_at_both_sizes("fsqrt", OP(fsqrt(a)));
  expect_same_at_both_sizes("frinta", OP(frinta(a)));
  expect_same_at_both_sizes("frintn", OP(frintn(a)));
  expect_same_at_both_sizes("frintp", OP(frintp(a)));
  expect_same_at_both_sizes("frintm", OP(frintm(a)));
  expect_same_at_both_sizes("frintz", OP(frintz(a)));
  expect_same_at_both_sizes("frinti", OP(frinti(a)));
  expect_same_at_both_sizes("frintx", OP(frintx(a)));
  expect_same_at_both_sizes("frecpe", OP(frecpe(a)));
  expect_same_at_both_sizes("frsqrte", OP(frsqrte(a)));
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
  expect_same_at_random<doubles>("fcvt_s2d", OP(fcvt_s2d(a)));
  expect_same_at_random<doubles>("fcvt_d2s", OP(fcvt_d2s(a)));
  expect_same_at_random<doubles>("fcvtzs_s2d", OP(fcvtzs_s2d(a)));
  expect_same_at_random<doubles>("fcvtzs_d2s", OP(fcvtzs_d2s(a)));
  expect_same_at_random<doubles>("fcvtzu_d2s", OP(fcvtzu_d2s(a)));
  expect_same_at_random<doubles>("scvtf_s2d", OP(scvtf_s2d(a)));
  expect_same_at_random<doubles>("scvtf_d2s", OP(scvtf_d2s(a)));
  expect_same_at_random<doubles>("ucvtf_s2d", OP(ucvtf_s2d(a)));
}

// The same for one number in all lanes, so that no lane hides another's flags.
template <class Op>
void expect_same_half(const char* name, Op op, std::uint32_t fpcr, std::uint16_t a, std::uint16_t b, std::uint16_t c) {
  const auto [here, here_fpsr] =
      outcome<neon_fp>(op, fpcr, in_each_lane<halves>(a), in_each_lane<halves>(b), in_each_lane<halves>(c));
  if ((here_fpsr & IOC) != 0) return;
  const auto [there, there_fpsr] = outcome<software_fp>(op, fpcr, a, b, c);
  const doubles differences = doubles(here ^ in_each_lane<halves>(there));
  ASSERT_EQ(differences[0] | differences[1], 0)
      << name << std::hex << "(" << a << ", " << b << ", " << c << "), " << fpcr;
  ASSERT_EQ((here_fpsr & QC) != 0 ? here_fpsr ^ (QC | IOC) : here_fpsr, there_fpsr)
      << name << std::hex << "(" << a << ", " << b << ", " << c << "), fpcr " << fpcr;
}

// The rounding modes, and default NaNs with flushing.
constexpr std::uint32_t controls_of_halves[] = {0, 1U << 22, 2U << 22, 3U << 22, FPSCR_FZ | FPSCR_DN};

template <class Op>
void expect_same_for_all_halves(const char* name, Op op) {
  for (const std::uint32_t fpcr : controls_of_halves)
    for (std::uint32_t i = 0; i != 0x10000; ++i) {
      const auto a = static_cast<std::uint16_t>(i);
      expect_same_half(name, op, fpcr, a, a, a);
    }
}

// Halves of every exponent and sign, with fractions at the ends, in the middle and between.
std::vector<std::uint16_t> stratified_halves() {
  std::vector<std::uint16_t> all;
  for (std::uint32_t exponent = 0; exponent != 32; ++exponent)
    for (const std::uint32_t fraction : {0, 1, 0x155, 0x200, 0x201, 0x3FF})
      for (const std::uint32_t sign : {0, 0x8000})
        all.push_back(static_cast<std::uint16_t>(sign | exponent << 10 | fraction));
  return all;
}

template <class Op>
void expect_same_for_halves(const char* name, Op op) {
  random_source random(hash_text(name));
  const std::vector<std::uint16_t> values = stratified_halves();
  for (const std::uint16_t a : values)
    for (const std::uint16_t b : values)
      expect_same_half(name, op, random.pick(controls_of_halves), a, b, random.pick(values));
  expect_same_at_random<halves>(name, op);
}

TEST(FloatUnits, AgreeOnEveryHalf) {
  expect_same_for_all_halves("fsqrt", OP(fsqrt(a)));
  expect_same_for_all_halves("frintn", OP(frintn(a)));
  expect_same_for_all_halves("frintp", OP(frintp(a)));
  expect_same_for_all_halves("frintm", OP(frintm(a)));
  expect_same_for_all_halves("frintz", OP(frintz(a)));
  expect_same_for_all_halves("frinta", OP(frinta(a)));
  expect_same_for_all_halves("frinti", OP(frinti(a)));
  expect_same_for_all_halves("frintx", OP(frintx(a)));
  expect_same_for_all_halves("frecpe", OP(frecpe(a)));
  expect_same_for_all_halves("frsqrte", OP(frsqrte(a)));
  expect_same_for_all_halves("ftsmul", OP(ftsmul(a, b)));
  expect_same_for_all_halves("fcvtzs", OP(fcvtzs(a)));
  expect_same_for_all_halves("fcvtzu", OP(fcvtzu(a)));
  expect_same_for_all_halves("scvtf", OP(scvtf(a)));
  expect_same_for_all_halves("ucvtf", OP(ucvtf(a)));
}

TEST(FloatUnits, AgreeOnTwoHalves) {
  expect_same_for_halves("fadd", OP(fadd(a, b)));
  expect_same_for_halves("fsub", OP(fsub(a, b)));
  expect_same_for_halves("fmul", OP(fmul(a, b)));
  expect_same_for_halves("fmulx", OP(fmulx(a, b)));
  expect_same_for_halves("fdiv", OP(fdiv(a, b)));
  expect_same_for_halves("fmax", OP(fmax(a, b)));
  expect_same_for_halves("fmin", OP(fmin(a, b)));
  expect_same_for_halves("fmaxnm", OP(fmaxnm(a, b)));
  expect_same_for_halves("fminnm", OP(fminnm(a, b)));
  expect_same_for_halves("frecps", OP(frecps(a, b)));
  expect_same_for_halves("frsqrts", OP(frsqrts(a, b)));
  expect_same_for_halves("fscale", OP(fscale(a, b)));
  expect_same_at_random<halves>("fscale", OP(fscale(a, (b >> 10) - 32)));
  expect_same_for_halves("ftmad", OP(ftmad(2, a, b)));
  expect_same_for_halves("fcmeq", OP(fcmeq(a, b)));
  expect_same_for_halves("fcmge", OP(fcmge(a, b)));
  expect_same_for_halves("fcmgt", OP(fcmgt(a, b)));
  expect_same_for_halves("fcmuo", OP(fcmuo(a, b)));
}

TEST(FloatUnits, AgreeOnThreeHalves) {
  expect_same_for_halves("fmla", OP(fmla(c, a, b)));
  expect_same_for_halves("fmls", OP(fmls(a, b, c)));
}

// 3 * 683 is the middle of two halves, and what is added is below a single's last bit.
TEST(FloatUnits, FuseHalvesWithOneRounding) {
  const auto sum = [](auto& fp, auto a, auto b, auto c) { return fp.fmla(a, b, c); };
  const halves least = in_each_lane<halves>(1), three = in_each_lane<halves>(0x4200);
  const auto [result, fpsr] = outcome<neon_fp>(sum, 0, least, three, in_each_lane<halves>(0x6156));
  EXPECT_EQ(result[0], 0x6801);  // 2050
  EXPECT_EQ(fpsr, IXC);
}

#define CONVERSION(Lanes, to, Result, Source)                                                  \
  expect_same_at_random<Lanes>(#to " " #Result " " #Source, []<class T>(auto& fp, T a, T, T) { \
    return fp.template to<std::Result, std::Source>(a);                                        \
  })
TEST(FloatUnits, AgreeInConversionOfHalves) {
  CONVERSION(singles, to_format, uint32_t, uint16_t);
  CONVERSION(doubles, to_format, uint64_t, uint16_t);
  CONVERSION(singles, to_format, uint16_t, uint32_t);
  CONVERSION(doubles, to_format, uint16_t, uint64_t);
  CONVERSION(singles, to_integer, int32_t, uint16_t);
  CONVERSION(singles, to_integer, uint32_t, uint16_t);
  CONVERSION(doubles, to_integer, int64_t, uint16_t);
  CONVERSION(doubles, to_integer, uint64_t, uint16_t);
  CONVERSION(doubles, to_integer, uint64_t, uint32_t);
  CONVERSION(singles, from_integer, uint16_t, int32_t);
  CONVERSION(singles, from_integer, uint16_t, uint32_t);
  CONVERSION(doubles, from_integer, uint16_t, int64_t);
  CONVERSION(doubles, from_integer, uint16_t, uint64_t);
  CONVERSION(doubles, from_integer, uint32_t, uint64_t);
  CONVERSION(doubles, from_integer, uint32_t, int64_t);
  CONVERSION(doubles, from_integer, uint64_t, uint32_t);
  CONVERSION(doubles, from_integer, uint64_t, int32_t);
  CONVERSION(doubles, to_integer, uint32_t, uint64_t);
  CONVERSION(doubles, to_integer, int32_t, uint64_t);
}
#undef CONVERSION

#undef OP

}  // namespace
}  // namespace quern
#endif

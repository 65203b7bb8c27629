// Floating-point handlers against the software library, one element at a time: on random registers with every kind of
// number, in every rounding mode, with flushing and default NaNs on and off; values and flags. On AArch64 that is the
// host's unit against the library.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "sve/arith/float/add.h"
#include "sve/arith/float/compare.h"
#include "sve/arith/float/convert.h"
#include "sve/arith/float/divide.h"
#include "sve/arith/float/estimate.h"
#include "sve/arith/float/from_fixed.h"
#include "sve/arith/float/minimum_maximum.h"
#include "sve/arith/float/multiply.h"
#include "sve/arith/float/multiply_add.h"
#include "sve/arith/float/round_to_integral.h"
#include "sve/arith/float/sign.h"
#include "sve/arith/float/square_root.h"
#include "sve/arith/float/step.h"
#include "sve/arith/float/to_fixed.h"
#include "sve/handlers/floating_point/host_float.h"
#include "tests/harness/agreement.h"
#include "tests/support/float_values.h"
#include "tests/support/host_controls.h"

namespace quern {
namespace {

// One call: the registers that it works on, as operand records.
struct run {
  cpu_state& s;
  std::uint32_t size;
  const registers& r;

  aarch64_z_reg d() const { return z_reg(r.d, size); }
  aarch64_z_reg dn() const { return z_both(r.d, size); }
  aarch64_z_reg n() const { return z_reg(r.n, size); }
  aarch64_z_reg m() const { return z_reg(r.m, size); }
  aarch64_p_reg pd() const { return p_reg(r.d, size); }
  aarch64_p_reg pg(std::uint32_t qualifier) const { return p_reg(r.g, qualifier); }
};

using caller = std::function<aarch64_decode_rc(const run&)>;

caller binary(handler_zpz* h) {
  return [=](const run& x) { return call_under_controls(h, x.s, x.dn(), x.pg(p_merging), x.m()); };
}
caller unary(handler_zpz* h) {
  return [=](const run& x) { return call_under_controls(h, x.s, x.d(), x.pg(p_merging), x.n()); };
}
caller every(handler_zz* h) {
  return [=](const run& x) { return call_under_controls(h, x.s, x.d(), x.n()); };
}
caller every(handler_zzz* h) {
  return [=](const run& x) { return call_under_controls(h, x.s, x.d(), x.n(), x.m()); };
}
caller constant(handler_zpi_float* h, std::uint32_t bit) {
  return
      [=](const run& x) { return call_under_controls(h, x.s, x.dn(), x.pg(p_merging), aarch64_sve_fp_arith_imm{bit}); };
}
caller fused(handler_zpzz* h) {
  return [=](const run& x) { return call_under_controls(h, x.s, x.dn(), x.pg(p_merging), x.n(), x.m()); };
}
caller complex(unsigned int rotation) {
  return [=](const run& x) {
    return call_under_controls(sve_fcmla_zpzzr, x.s, x.dn(), x.pg(p_merging), x.n(), x.m(), rotation);
  };
}
caller compare(handler_ppzz* h) {
  return [=](const run& x) { return call_under_controls(h, x.s, x.pd(), x.pg(p_zeroing), x.n(), x.m()); };
}
caller compare(handler_ppz* h) {
  return [=](const run& x) { return call_under_controls(h, x.s, x.pd(), x.pg(p_zeroing), x.n()); };
}
caller reduction(handler_vpz* h) {
  return [=](const run& x) { return call_under_controls(h, x.s, x.r.d, x.pg(p_unqualified), x.n()); };
}

// What a call should do to the state, by the library's routines.
using definition = std::function<void(const run&, FPSCR&)>;

// The elements of a run's registers as they were.
struct operands {
  explicit operands(const run& x)
      : d(read_elements(x.s.z[x.r.d], x.size)),
        n(read_elements(x.s.z[x.r.n], x.size)),
        m(read_elements(x.s.z[x.r.m], x.size)),
        active(read_flags(x.s.p[x.r.g], x.size)) {}
  elements d, n, m;
  flags_of active;
};

// op on patterns of the run's size, in their type.
template <class Op>
std::uint64_t at_size(std::uint32_t size, Op op, std::uint64_t d, std::uint64_t n, std::uint64_t m, FPSCR& f) {
  const auto word = [](std::uint64_t x) { return static_cast<std::uint32_t>(x); };
  return size == size_s ? std::uint64_t{op(word(d), word(n), word(m), f)} : std::uint64_t{op(d, n, m, f)};
}

template <class Op>
definition writes(Op op, bool predicated = true) {
  return [=](const run& x, FPSCR& f) {
    const operands old(x);
    for (std::size_t i = 0; i != old.d.size(); ++i)
      if (!predicated || old.active[i])
        set_element(x.s.z[x.r.d], x.size, i, at_size(x.size, op, old.d[i], old.n[i], old.m[i], f));
  };
}

template <class Op>
definition writes_all(Op op) {
  return writes(op, false);
}

template <class Op>
definition decides(Op op) {
  return [=](const run& x, FPSCR& f) {
    const operands old(x);
    flags_of result(old.d.size());
    for (std::size_t i = 0; i != result.size(); ++i)
      result[i] = old.active[i] && at_size(x.size, op, old.d[i], old.n[i], old.m[i], f) != 0;
    write_flags(x.s.p[x.r.d], x.size, result);
  };
}

// Neighbours first, then neighbours among their results.
template <class Op>
definition reduces(Op op) {
  return [=](const run& x, FPSCR& f) {
    const operands old(x);
    elements level = old.n;
    for (std::size_t i = 0; i != level.size(); ++i)
      if (!old.active[i]) level[i] = x.size == size_s ? 0x7FC00000 : 0x7FF8000000000000;
    while (level.size() != 1) {
      elements next;
      for (std::size_t i = 0; i != level.size(); i += 2)
        next.push_back(at_size(x.size, op, 0, level[i], level[i + 1], f));
      level = next;
    }
    fill_elements(x.s.z[x.r.d], size_d, 0);
    set_element(x.s.z[x.r.d], x.size, 0, level[0]);
  };
}

// Which element of the pair at p is the first factor, which the second, and whether that one's sign changes.
struct factors {
  std::size_t first, second;
  bool negative;
};
constexpr factors even_factors[] = {{0, 0, false}, {1, 1, true}, {0, 0, true}, {1, 1, false}};
constexpr factors odd_factors[] = {{0, 1, false}, {1, 0, false}, {0, 1, true}, {1, 0, true}};

definition turns(unsigned int rotation) {
  return [=](const run& x, FPSCR& f) {
    const operands old(x);
    for (std::size_t i = 0; i != old.d.size(); ++i) {
      if (!old.active[i]) continue;
      const factors& t = (i % 2 == 0 ? even_factors : odd_factors)[rotation];
      const std::size_t p = i - i % 2;
      const auto fma = [&](auto d, auto n, auto m, FPSCR& status) {
        return FPMulAdd(d, n, t.negative ? FPNeg(m) : m, status);
      };
      set_element(x.s.z[x.r.d], x.size, i, at_size(x.size, fma, old.d[i], old.n[p + t.first], old.m[p + t.second], f));
    }
  };
}

std::uint32_t low(std::uint64_t lane) { return static_cast<std::uint32_t>(lane); }
std::uint64_t extended(std::uint32_t word) {
  return static_cast<std::uint64_t>(std::int64_t{static_cast<std::int32_t>(word)});
}
template <class To, class From>
To to_int(From x, bool u, FPSCR& f) {
  return fplibFPToFixed<From, To>(x, 0, u, FPRounding_ZERO, f);
}
template <class To>
To from_int(std::uint64_t x, bool u, FPSCR& f) {
  return fplibFixedToFP<To>(x, 0, u, rounding_of(f), f);
}
// A number of the format of `like`.
template <class T>
T half(T like) {
  return sizeof like == 4 ? static_cast<T>(0x3F000000) : static_cast<T>(0x3FE0000000000000);
}
template <class T>
T one(T like) {
  return sizeof like == 4 ? static_cast<T>(0x3F800000) : static_cast<T>(0x3FF0000000000000);
}
template <class T>
T two(T like) {
  return sizeof like == 4 ? static_cast<T>(0x40000000) : static_cast<T>(0x4000000000000000);
}

struct float_case {
  const char* name;
  std::string_view sizes;
  caller call;
  definition define;
};

#define LANE(result)                                                                                         \
  []([[maybe_unused]] auto d, [[maybe_unused]] auto n, [[maybe_unused]] auto m, [[maybe_unused]] FPSCR& f) { \
    return result;                                                                                           \
  }
const float_case cases[] = {
    {"fadd_zpz", "sd", binary(sve_fadd_zpz), writes(LANE(FPAdd(d, m, f)))},
    {"fsub_zpz", "sd", binary(sve_fsub_zpz), writes(LANE(FPSub(d, m, f)))},
    {"fsubr_zpz", "sd", binary(sve_fsubr_zpz), writes(LANE(FPSub(m, d, f)))},
    {"fmul_zpz", "sd", binary(sve_fmul_zpz), writes(LANE(FPMul(d, m, f)))},
    {"fdiv_zpz", "sd", binary(sve_fdiv_zpz), writes(LANE(FPDiv(d, m, f)))},
    {"fdivr_zpz", "sd", binary(sve_fdivr_zpz), writes(LANE(FPDiv(m, d, f)))},
    {"fmax_zpz", "sd", binary(sve_fmax_zpz), writes(LANE(FPMax(d, m, f)))},
    {"fmaxnm_zpz", "sd", binary(sve_fmaxnm_zpz), writes(LANE(FPMaxNum(d, m, f)))},
    {"fminnm_zpz", "sd", binary(sve_fminnm_zpz), writes(LANE(FPMinNum(d, m, f)))},

    {"fadd_zzz", "sd", every(sve_fadd_zzz), writes_all(LANE(FPAdd(n, m, f)))},
    {"fsub_zzz", "sd", every(sve_fsub_zzz), writes_all(LANE(FPSub(n, m, f)))},
    {"fmul_zzz", "sd", every(sve_fmul_zzz), writes_all(LANE(FPMul(n, m, f)))},
    {"frecps_zzz", "sd", every(sve_frecps_zzz), writes_all(LANE(FPRecipStepFused(n, m, f)))},
    {"frecpe_zz", "sd", every(sve_frecpe_zz), writes_all(LANE(FPRecipEstimate(n, f)))},

    {"fadd_zpi 0.5", "sd", constant(sve_fadd_zpi, 0), writes(LANE(FPAdd(d, half(d), f)))},
    {"fadd_zpi 1.0", "sd", constant(sve_fadd_zpi, 1), writes(LANE(FPAdd(d, one(d), f)))},
    {"fsub_zpi 0.5", "sd", constant(sve_fsub_zpi, 0), writes(LANE(FPSub(d, half(d), f)))},
    {"fsub_zpi 1.0", "sd", constant(sve_fsub_zpi, 1), writes(LANE(FPSub(d, one(d), f)))},
    {"fsubr_zpi 0.5", "sd", constant(sve_fsubr_zpi, 0), writes(LANE(FPSub(half(d), d, f)))},
    {"fsubr_zpi 1.0", "sd", constant(sve_fsubr_zpi, 1), writes(LANE(FPSub(one(d), d, f)))},
    {"fmul_zpi 0.5", "sd", constant(sve_fmul_zpi, 0), writes(LANE(FPMul(d, half(d), f)))},
    {"fmul_zpi 2.0", "sd", constant(sve_fmul_zpi, 1), writes(LANE(FPMul(d, two(d), f)))},

    {"fsqrt_zpz", "sd", unary(sve_fsqrt_zpz), writes(LANE(FPSqrt(n, f)))},
    {"frinta_zpz", "sd", unary(sve_frinta_zpz), writes(LANE(FPRoundInt(n, FPRounding_TIEAWAY, false, f)))},

    {"fmla_zpzz", "sd", fused(sve_fmla_zpzz), writes(LANE(FPMulAdd(d, n, m, f)))},
    {"fmls_zpzz", "sd", fused(sve_fmls_zpzz), writes(LANE(FPMulAdd(d, FPNeg(n), m, f)))},
    {"fnmla_zpzz", "sd", fused(sve_fnmla_zpzz), writes(LANE(FPMulAdd(FPNeg(d), FPNeg(n), m, f)))},
    {"fnmls_zpzz", "sd", fused(sve_fnmls_zpzz), writes(LANE(FPMulAdd(FPNeg(d), n, m, f)))},
    {"fmad_zpzz", "sd", fused(sve_fmad_zpzz), writes(LANE(FPMulAdd(m, d, n, f)))},
    {"fmsb_zpzz", "sd", fused(sve_fmsb_zpzz), writes(LANE(FPMulAdd(m, FPNeg(d), n, f)))},
    {"fnmad_zpzz", "sd", fused(sve_fnmad_zpzz), writes(LANE(FPMulAdd(FPNeg(m), FPNeg(d), n, f)))},
    {"fnmsb_zpzz", "sd", fused(sve_fnmsb_zpzz), writes(LANE(FPMulAdd(FPNeg(m), d, n, f)))},
    {"fcmla 0", "sd", complex(0), turns(0)},
    {"fcmla 90", "sd", complex(1), turns(1)},
    {"fcmla 180", "sd", complex(2), turns(2)},
    {"fcmla 270", "sd", complex(3), turns(3)},

    {"fcmeq_ppzz", "sd", compare(sve_fcmeq_ppzz), decides(LANE(FPCompareEQ(n, m, f)))},
    {"fcmne_ppzz", "sd", compare(sve_fcmne_ppzz), decides(LANE(!FPCompareEQ(n, m, f)))},
    {"fcmge_ppzz", "sd", compare(sve_fcmge_ppzz), decides(LANE(FPCompareGE(n, m, f)))},
    {"fcmgt_ppzz", "sd", compare(sve_fcmgt_ppzz), decides(LANE(FPCompareGT(n, m, f)))},
    {"fcmuo_ppzz", "sd", compare(sve_fcmuo_ppzz), decides(LANE(FPCompareUN(n, m, f)))},
    {"fcmeq_ppz", "sd", compare(sve_fcmeq_ppz), decides(LANE(FPCompareEQ(n, n - n, f)))},
    {"fcmge_ppz", "sd", compare(sve_fcmge_ppz), decides(LANE(FPCompareGE(n, n - n, f)))},
    {"fcmgt_ppz", "sd", compare(sve_fcmgt_ppz), decides(LANE(FPCompareGT(n, n - n, f)))},
    {"fcmle_ppz", "sd", compare(sve_fcmle_ppz), decides(LANE(FPCompareGE(n - n, n, f)))},
    {"fcmlt_ppz", "sd", compare(sve_fcmlt_ppz), decides(LANE(FPCompareGT(n - n, n, f)))},

    {"fcvt_s2d", "d", unary(sve_fcvt_s2d_zpz),
     writes(LANE((FPConvert<std::uint32_t, std::uint64_t>(low(n), rounding_of(f), f))))},
    {"fcvt_d2s", "d", unary(sve_fcvt_d2s_zpz),
     writes(LANE((FPConvert<std::uint64_t, std::uint32_t>(n, rounding_of(f), f))))},
    {"fcvtzs_s2s", "s", unary(sve_fcvtzs_s2s_zpz), writes(LANE(to_int<std::uint32_t>(low(n), false, f)))},
    {"fcvtzs_s2d", "d", unary(sve_fcvtzs_s2d_zpz), writes(LANE(to_int<std::uint64_t>(low(n), false, f)))},
    {"fcvtzs_d2s", "d", unary(sve_fcvtzs_d2s_zpz),
     writes(LANE(extended(to_int<std::uint32_t>(std::uint64_t{n}, false, f))))},
    {"fcvtzs_d2d", "d", unary(sve_fcvtzs_d2d_zpz), writes(LANE(to_int<std::uint64_t>(std::uint64_t{n}, false, f)))},
    {"fcvtzu_d2s", "d", unary(sve_fcvtzu_d2s_zpz), writes(LANE(to_int<std::uint32_t>(std::uint64_t{n}, true, f)))},
    {"fcvtzu_d2d", "d", unary(sve_fcvtzu_d2d_zpz), writes(LANE(to_int<std::uint64_t>(std::uint64_t{n}, true, f)))},
    {"scvtf_s2s", "s", unary(sve_scvtf_s2s_zpz), writes(LANE(from_int<std::uint32_t>(extended(low(n)), false, f)))},
    {"scvtf_s2d", "d", unary(sve_scvtf_s2d_zpz), writes(LANE(from_int<std::uint64_t>(extended(low(n)), false, f)))},
    {"scvtf_d2s", "d", unary(sve_scvtf_d2s_zpz), writes(LANE(from_int<std::uint32_t>(n, false, f)))},
    {"scvtf_d2d", "d", unary(sve_scvtf_d2d_zpz), writes(LANE(from_int<std::uint64_t>(n, false, f)))},
    {"ucvtf_s2s", "s", unary(sve_ucvtf_s2s_zpz), writes(LANE(from_int<std::uint32_t>(n, true, f)))},
    {"ucvtf_s2d", "d", unary(sve_ucvtf_s2d_zpz), writes(LANE(from_int<std::uint64_t>(low(n), true, f)))},
    {"ucvtf_d2d", "d", unary(sve_ucvtf_d2d_zpz), writes(LANE(from_int<std::uint64_t>(n, true, f)))},

    {"fmaxnmv", "sd", reduction(sve_fmaxnmv_vpz), reduces(LANE(FPMaxNum(n, m, f)))},
    {"fminnmv", "sd", reduction(sve_fminnmv_vpz), reduces(LANE(FPMinNum(n, m, f)))},
};
#undef LANE

// The harness's samples with every kind of number in vectors 0 to 3. Half of the lanes are as in the vector before, so
// that equal numbers are frequent, and terms that cancel.
std::vector<sample> float_samples() {
  random_source random(39);
  std::vector<sample> all;
  for (const sample& s : samples()) {
    if (s.size != size_s && s.size != size_d) continue;
    sample& made = all.emplace_back(s);
    for (std::size_t z = 0; z != 4; ++z) {
      for (std::size_t i = 0; i != count_of(s.size); ++i) {
        const bool repeated = z != 0 && random.one_in(2);
        set_element(made.state.z[z], s.size, i,
                    repeated ? element(made.state.z[z - 1], s.size, i) : lane_value(random, s.size));
      }
    }
  }
  return all;
}

class FloatAgreement : public testing::TestWithParam<float_case> {};

TEST_P(FloatAgreement, WithTheSoftwareLibrary) {
  static const std::vector<sample> all_samples = float_samples();
  const float_case& c = GetParam();
  std::size_t runs = 0;
  for (const sample& s : all_samples) {
    if (c.sizes.find(size_letter(s.size)) == c.sizes.npos) continue;
    for (const std::uint32_t fpcr : all_controls()) {
      for (int repeat = 0; repeat != 3; ++repeat) {
        const registers& r = all_registers[runs++ % all_registers.size()];
        cpu_state actual = s.state, expected = s.state;
        actual.fpcr = expected.fpcr = fpcr;
        FPSCR f{fpcr};
        c.define({expected, s.size, r}, f);
        expected.fpsr |= f.word & 0x9F;
        ASSERT_EQ(c.call({actual, s.size, r}), DECODE_OK);
        ASSERT_EQ(difference(actual, expected), "") << describe(c.name, s, r) << std::hex << ", fpcr " << fpcr;
      }
    }
  }
}

std::string case_name(const testing::TestParamInfo<float_case>& parameter) {
  std::string name = parameter.param.name;
  for (char& letter : name)
    if (letter == ' ' || letter == '.') letter = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Handlers, FloatAgreement, testing::ValuesIn(cases), case_name);

}  // namespace
}  // namespace quern

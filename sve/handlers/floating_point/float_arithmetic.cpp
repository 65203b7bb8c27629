// Floating-point arithmetic of one and two operands.
#include "sve/handlers/floating_point/float_families.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/floating_point/libc_root.h"

using namespace quern;

namespace {

// 2^exponent in each lane.
template <lane_group T>
T power_of_two(int exponent) {
  return in_each_lane<T>(pack<lane_of<T>>(0, format_of<T>::bias + exponent, 0));
}

// Zdn = op(fp, Zdn, 2^exponent), active lanes.
template <class Op>
aarch64_decode_rc with_constant(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, int exponent, Op op) {
  const aarch64_z_reg zn{zdn.num, zdn.dsize, z_none, z_none};
  return float_unary(state, zn, pg, zn,
                     [=]<class T>(host_fp& fp, T n) { return op(fp, n, power_of_two<T>(exponent)); });
}

// The C library's root of each number below zero, for the error that it reports in errno; its result is dropped. On the
// bits, since a comparison would raise flags: -0 and what lies above minus infinity, the NaNs, are not below zero.
template <lane_group T>
void report_roots_below_zero(T x) {
  const T below = T(x > format_of<T>::sign_bit) & T(x <= (format_of<T>::sign_bit | format_of<T>::infinity));
  const doubles halves = doubles(below);
  if ((halves[0] | halves[1]) == 0) return;
  for (int i = 0; i != group_lanes<T>; ++i)
    if (below[i] != 0) report_root(x[i]);
}

}  // namespace

#define BINARY(name, result)                                                                                    \
  aarch64_decode_rc sve_##name##_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) { \
    return float_zpz(state, zdn, pg, zm, [](host_fp& fp, auto n, auto m) { return result; });                   \
  }
BINARY(fadd, fp.fadd(n, m))
BINARY(fsub, fp.fsub(n, m))
BINARY(fsubr, fp.fsub(m, n))
BINARY(fmul, fp.fmul(n, m))
BINARY(fdiv, fp.fdiv(n, m))
BINARY(fdivr, fp.fdiv(m, n))
BINARY(fmax, fp.fmax(n, m))
BINARY(fmaxnm, fp.fmaxnm(n, m))
BINARY(fminnm, fp.fminnm(n, m))
#undef BINARY

#define UNPREDICATED(name)                                                                                     \
  aarch64_decode_rc sve_##name##_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) { \
    return float_zzz(state, zd, zn, zm, [](host_fp& fp, auto n, auto m) { return fp.name(n, m); });            \
  }
UNPREDICATED(fadd)
UNPREDICATED(fsub)
UNPREDICATED(fmul)
UNPREDICATED(frecps)
#undef UNPREDICATED

// The constants of a clear and of a set immediate bit, as powers of two.
#define WITH_CONSTANT(name, clear, set, result)                                             \
  aarch64_decode_rc sve_##name##_zpi(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, \
                                     aarch64_sve_fp_arith_imm imm) {                        \
    return with_constant(state, zdn, pg, imm.bit != 0 ? set : clear,                        \
                         [](host_fp& fp, auto n, auto c) { return result; });               \
  }
WITH_CONSTANT(fadd, -1, 0, fp.fadd(n, c))
WITH_CONSTANT(fsub, -1, 0, fp.fsub(n, c))
WITH_CONSTANT(fsubr, -1, 0, fp.fsub(c, n))
WITH_CONSTANT(fmul, -1, 1, fp.fmul(n, c))
#undef WITH_CONSTANT

aarch64_decode_rc sve_fsqrt_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return float_unary(state, zd, pg, zn, [](host_fp& fp, auto n) {
    report_roots_below_zero(n);
    return fp.fsqrt(n);
  });
}

aarch64_decode_rc sve_frinta_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return float_unary(state, zd, pg, zn, [](host_fp& fp, auto n) { return fp.frinta(n); });
}

aarch64_decode_rc sve_frecpe_zz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn) {
  return float_zz(state, zd, zn, [](host_fp& fp, auto n) { return fp.frecpe(n); });
}

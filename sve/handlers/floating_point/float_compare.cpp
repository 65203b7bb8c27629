// Floating-point comparisons into a predicate. Those for equality and order are quiet and signalling ones: the second
// kind raises IOC for any NaN.
#include "sve/handlers/floating_point/float_families.h"
#include "sve/handlers/floating_point/host_float.h"

using namespace quern;

namespace {

// Pd = whether op(fp, source...) answers all ones; 0 in inactive lanes.
template <class Op, class... Source>
aarch64_decode_rc compare(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, std::uint32_t size, Op op,
                          const Source*... source) {
  host_fp fp(*state);
  float_types::by_size(size, [&]<class T>(T) {
    zero_lanes_or_ones<T>([&](auto... x) { return op(fp, x...) & 1; }, bytes_of(state, pd), bytes_of(state, pg),
                          source...);
  });
  return DECODE_OK;
}

}  // namespace

#define COMPARE(cc, holds)                                                                                     \
  aarch64_decode_rc sve_fcm##cc##_ppzz(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn, \
                                       aarch64_z_reg zm) {                                                     \
    const auto op = [](host_fp& fp, auto n, auto m) { return holds; };                                         \
    return compare(state, pd, pg, zn.size, op, bytes_of(state, zn), bytes_of(state, zm));                      \
  }
COMPARE(eq, fp.fcmeq(n, m))
COMPARE(ne, ~fp.fcmeq(n, m))
COMPARE(ge, fp.fcmge(n, m))
COMPARE(gt, fp.fcmgt(n, m))
COMPARE(uo, fp.fcmuo(n, m))
#undef COMPARE

#define COMPARE_WITH_ZERO(cc, holds)                                                                            \
  aarch64_decode_rc sve_fcm##cc##_ppz(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn) { \
    const auto op = []<class T>(host_fp& fp, T n) { return holds; };                                            \
    return compare(state, pd, pg, zn.size, op, bytes_of(state, zn));                                            \
  }
COMPARE_WITH_ZERO(eq, fp.fcmeq(n, T{}))
COMPARE_WITH_ZERO(ge, fp.fcmge(n, T{}))
COMPARE_WITH_ZERO(gt, fp.fcmgt(n, T{}))
COMPARE_WITH_ZERO(le, fp.fcmge(T{}, n))
COMPARE_WITH_ZERO(lt, fp.fcmgt(T{}, n))
#undef COMPARE_WITH_ZERO

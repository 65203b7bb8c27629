// Fused multiply-add, one rounding for the product and the sum, and its complex form.
#include "sve/handlers/floating_point/float_families.h"
#include "sve/handlers/floating_point/host_float.h"

using namespace quern;

// The destination is the addend a, or the first factor n. FMLS is a - n * m, with n negated before the product.
#define INTO_ADDEND(name, result)                                                                              \
  aarch64_decode_rc sve_##name##_zpzz(cpu_state* state, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn, \
                                      aarch64_z_reg zm) {                                                      \
    return float_zpzz(state, zda, pg, zn, zm, [](host_fp& fp, auto a, auto n, auto m) { return result; });     \
  }
#define INTO_FACTOR(name, result)                                                                              \
  aarch64_decode_rc sve_##name##_zpzz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, \
                                      aarch64_z_reg za) {                                                      \
    return float_zpzz(state, zdn, pg, zm, za, [](host_fp& fp, auto n, auto m, auto a) { return result; });     \
  }
INTO_ADDEND(fmla, fp.fmla(a, n, m))
INTO_ADDEND(fmls, fp.fmls(a, n, m))
INTO_ADDEND(fnmla, fp.fmls(negated(a), n, m))
INTO_ADDEND(fnmls, fp.fmla(negated(a), n, m))
INTO_FACTOR(fmad, fp.fmla(a, n, m))
INTO_FACTOR(fmsb, fp.fmls(a, n, m))
INTO_FACTOR(fnmad, fp.fmls(negated(a), n, m))
INTO_FACTOR(fnmsb, fp.fmla(negated(a), n, m))
#undef INTO_ADDEND
#undef INTO_FACTOR

namespace {

// The signs that the turns change in the second factor's lanes.
template <lane_group T>
T changed_signs(unsigned int rotation) {
  T signs{};
  for (int i = 0; i != group_lanes<T>; ++i) {
    const bool changed = i % 2 == 0 ? rotation == 1 || rotation == 2 : rotation >= 2;
    signs[i] = changed ? format_of<T>::sign_bit : 0;
  }
  return signs;
}

// The factors of each lane: with an odd number of quarter turns the imaginary part of n, and both of m exchanged,
// else the real part of n and m as it is. They come from both lanes of a pair, active or not, and so before inactive
// lanes are replaced.
template <bool OddTurns, lane_group T>
void multiply_add_complex(host_fp& fp, unsigned int rotation, unsigned char* d, const unsigned char* pg,
                          const unsigned char* zn, const unsigned char* zm) {
  const T signs = changed_signs<T>(rotation);
#pragma GCC unroll 16
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const T active = active_mask<T>(lane<T>(pg, i)), sum = lane<T>(d, i), n = lane<T>(zn, i), m = lane<T>(zm, i);
    const T first = OddTurns ? odd_twice(n) : even_twice(n);
    const T second = (OddTurns ? exchanged(m) : m) ^ signs;
    const T result = fp.fmla(or_one(active, sum), or_one(active, first), or_one(active, second));
    set_lane<T>(d, i, select(active, result, sum));
  }
}

}  // namespace

aarch64_decode_rc sve_fcmla_zpzzr(cpu_state* state, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                  aarch64_z_reg zm, unsigned int rotation) {
  host_fp fp(*state);
  float_types::by_size(zda.dsize, [&]<class T>(T) {
    const auto multiply_add = rotation % 2 != 0 ? multiply_add_complex<true, T> : multiply_add_complex<false, T>;
    multiply_add(fp, rotation, bytes_of(state, zda), bytes_of(state, pg), bytes_of(state, zn), bytes_of(state, zm));
  });
  return DECODE_OK;
}

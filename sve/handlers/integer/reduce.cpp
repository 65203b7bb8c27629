// Reductions of a vector to a scalar.
#include "sve/handlers/integer/reduce.h"

#include <functional>
#include <limits>

#include "sve/handlers/lane_loops.h"
#include "sve/state/cpu_state.h"
#include "sve/state/integer_operations.h"

using namespace quern;

namespace {

// Neutral elements, as 64-bit patterns whose upper bits are the element's.
constexpr std::uint64_t zero = 0, all_ones = ~zero, smallest = std::uint64_t{1} << 63, largest = smallest - 1;

// Vd = op over the active lanes of Zn, in the element's width.
template <class Op>
aarch64_decode_rc reduce(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn, Op op,
                         std::uint64_t neutral) {
  by_size(zn.size, [&]<class T>(T) {
    const T start = static_cast<T>(neutral >> (64 - element_bits<T>));
    set_scalar<T>(state->z[vd], fold_active_lanes<T>(op, start, bytes_of(state, pg), bytes_of(state, zn)));
  });
  return DECODE_OK;
}

// The sum of the active lanes. Partial sums are kept no wider than a whole vector's sum needs, since narrow lanes add
// faster.
template <class T, class Sum>
std::uint64_t sum(const unsigned char* pg, const unsigned char* source) {
  static_assert(sizeof(Sum) == 8 || lane_count<T> * std::numeric_limits<T>::max() <= std::numeric_limits<Sum>::max());
  return fold_active_lanes<T>(std::plus{}, Sum{0}, pg, source);
}

}  // namespace

aarch64_decode_rc sve_andv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce(state, vd, pg, zn, std::bit_and{}, all_ones);
}

aarch64_decode_rc sve_orv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce(state, vd, pg, zn, std::bit_or{}, zero);
}

aarch64_decode_rc sve_eorv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce(state, vd, pg, zn, std::bit_xor{}, zero);
}

aarch64_decode_rc sve_uaddv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  const unsigned char *const predicate = bytes_of(state, pg), *const n = bytes_of(state, zn);
  unsigned char* const d = state->z[vd];
  if (zn.size == size_s) {
    set_scalar(d, sum<std::uint32_t, std::uint64_t>(predicate, n));
  } else if (zn.size == size_d) {
    set_scalar(d, sum<std::uint64_t, std::uint64_t>(predicate, n));
  } else if (zn.size == size_h) {
    set_scalar(d, sum<std::uint16_t, std::uint32_t>(predicate, n));
  } else {
    set_scalar(d, sum<std::uint8_t, std::uint32_t>(predicate, n));
  }
  return DECODE_OK;
}

aarch64_decode_rc sve_smaxv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce(state, vd, pg, zn, signed_maximum{}, smallest);
}

aarch64_decode_rc sve_sminv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce(state, vd, pg, zn, signed_minimum{}, largest);
}

aarch64_decode_rc sve_umaxv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce(state, vd, pg, zn, maximum{}, zero);
}

aarch64_decode_rc sve_uminv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce(state, vd, pg, zn, minimum{}, all_ones);
}

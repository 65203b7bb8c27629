// Floating-point instructions that only move bits.
#include "sve/handlers/floating_point/float_bits.h"

#include "sve/arith/float/format.h"
#include "sve/handlers/register_loops.h"

using namespace quern;

namespace {

// The instruction forms have no other size here.
using single_or_double = exact_element_types<std::uint32_t, std::uint64_t>;

}  // namespace

aarch64_decode_rc sve_fabs_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary<single_or_double>(state, zd, pg, zn, []<class T>(T x) { return x & ~float_format<T>::sign_bit; });
}

aarch64_decode_rc sve_fneg_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary<single_or_double>(state, zd, pg, zn, []<class T>(T x) { return x ^ float_format<T>::sign_bit; });
}

aarch64_decode_rc sve_fdup_zi(cpu_state* state, aarch64_z_reg zd, aarch64_sve_fp_dup_imm imm) {
  const auto dup = [&]<class T>(T pattern) { fill_lanes(bytes_of(state, zd), pattern); };
  if (zd.size == size_s) {
    dup(imm.single);
  } else if (zd.size == size_d) {
    dup(imm.dbl);
  } else {
    dup(imm.half);
  }
  return DECODE_OK;
}

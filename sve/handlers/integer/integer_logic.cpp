// Bitwise logic of vectors.
#include "sve/handlers/integer/integer_logic.h"

#include <functional>

#include "sve/handlers/integer/integer_families.h"

using namespace quern;

namespace {

// AND NOT.
struct bit_clear {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return static_cast<T>(a & ~b);
  }
};

// Zd = op(Zn, Zm), all bits: the lanes' width means nothing.
template <class Op>
aarch64_decode_rc all_bits(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm, Op op) {
  each_lane<std::uint64_t>(op, state->z[zd.num], state->z[zn.num], state->z[zm.num]);
  return DECODE_OK;
}

// Zdn = op(Zdn, mask), every doubleword.
template <class Op>
aarch64_decode_rc with_mask(cpu_state* state, aarch64_z_reg zdn, aarch64_sve_logical64_imm mask, Op op) {
  unsigned char* const d = state->z[zdn.num];
  each_lane<std::uint64_t>([=](std::uint64_t a) { return op(a, mask.value); }, d, d);
  return DECODE_OK;
}

}  // namespace

aarch64_decode_rc sve_and_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return all_bits(state, zd, zn, zm, std::bit_and{});
}

aarch64_decode_rc sve_orr_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return all_bits(state, zd, zn, zm, std::bit_or{});
}

aarch64_decode_rc sve_eor_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return all_bits(state, zd, zn, zm, std::bit_xor{});
}

aarch64_decode_rc sve_bic_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return all_bits(state, zd, zn, zm, bit_clear{});
}

aarch64_decode_rc sve_and_zi(cpu_state* state, aarch64_z_reg zdn, aarch64_sve_logical64_imm mask) {
  return with_mask(state, zdn, mask, std::bit_and{});
}

aarch64_decode_rc sve_orr_zi(cpu_state* state, aarch64_z_reg zdn, aarch64_sve_logical64_imm mask) {
  return with_mask(state, zdn, mask, std::bit_or{});
}

aarch64_decode_rc sve_eor_zi(cpu_state* state, aarch64_z_reg zdn, aarch64_sve_logical64_imm mask) {
  return with_mask(state, zdn, mask, std::bit_xor{});
}

aarch64_decode_rc sve_and_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, std::bit_and{});
}

aarch64_decode_rc sve_orr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, std::bit_or{});
}

aarch64_decode_rc sve_eor_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, std::bit_xor{});
}

aarch64_decode_rc sve_bic_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, bit_clear{});
}

// Bitwise logic of vectors.
#include "sve/handlers/integer/integer_logic.h"

#include <functional>

#include "sve/handlers/register_loops.h"

using namespace quern;

namespace {

// AND NOT.
struct bit_clear {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return static_cast<T>(a & ~b);
  }
};

using all_bits = element_types<std::uint64_t>;  // whatever the lanes' width, which means nothing

}  // namespace

aarch64_decode_rc sve_and_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return each_zzz<all_bits>(state, zd, zn, zm, std::bit_and{});
}

aarch64_decode_rc sve_orr_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return each_zzz<all_bits>(state, zd, zn, zm, std::bit_or{});
}

aarch64_decode_rc sve_eor_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return each_zzz<all_bits>(state, zd, zn, zm, std::bit_xor{});
}

aarch64_decode_rc sve_bic_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return each_zzz<all_bits>(state, zd, zn, zm, bit_clear{});
}

aarch64_decode_rc sve_and_zi(cpu_state* state, aarch64_z_reg zdn, aarch64_sve_logical64_imm mask) {
  return each_zi<all_bits>(state, zdn, mask.value, std::bit_and{});
}

aarch64_decode_rc sve_orr_zi(cpu_state* state, aarch64_z_reg zdn, aarch64_sve_logical64_imm mask) {
  return each_zi<all_bits>(state, zdn, mask.value, std::bit_or{});
}

aarch64_decode_rc sve_eor_zi(cpu_state* state, aarch64_z_reg zdn, aarch64_sve_logical64_imm mask) {
  return each_zi<all_bits>(state, zdn, mask.value, std::bit_xor{});
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

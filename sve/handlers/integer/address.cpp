// RDVL, ADDVL, ADDPL and ADR.
#include "sve/handlers/integer/address.h"

#include "sve/handlers/general_register.h"
#include "sve/handlers/lane_loops.h"

using namespace quern;

namespace {

std::uint64_t vector_lengths(int imm) { return as_register(imm * VL_BYTES); }
std::uint64_t predicate_lengths(int imm) { return as_register(imm * VL_BYTES / 8); }

}  // namespace

aarch64_decode_rc sve_rdvl_ri(cpu_state* state, aarch64_i_reg xd, int imm) {
  write_x(state, xd, vector_lengths(imm));
  return DECODE_OK;
}

aarch64_decode_rc sve_addvl_rri(cpu_state* state, aarch64_i_rsp_reg xd, aarch64_i_rsp_reg xn, int imm) {
  write_x(state, xd, read_x(state, xn) + vector_lengths(imm));
  return DECODE_OK;
}

aarch64_decode_rc sve_addpl_rri(cpu_state* state, aarch64_i_rsp_reg xd, aarch64_i_rsp_reg xn, int imm) {
  write_x(state, xd, read_x(state, xn) + predicate_lengths(imm));
  return DECODE_OK;
}

aarch64_decode_rc sve_adr_scaled_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  const auto shift = static_cast<int>(state->instr_word >> 10 & 3);
  const bool doublewords = (state->instr_word >> 22 & 1) != 0;
  by_size(doublewords ? size_d : size_s, [&]<class T>(T) {
    each_lane<T>([=](T n, T m) { return static_cast<T>(n + static_cast<T>(m << shift)); }, bytes_of(state, zd),
                 bytes_of(state, zn), bytes_of(state, zm));
  });
  return DECODE_OK;
}

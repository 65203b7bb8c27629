// INDEX.
#include "sve/handlers/integer/index.h"

#include <utility>

#include "sve/handlers/general_register.h"
#include "sve/handlers/register_bytes.h"
#include "sve/state/lane_group.h"

using namespace quern;

namespace {

// 0, 1, 2 and so on.
template <lane_group T>
constexpr T first_numbers() {
  return []<std::size_t... I>(std::index_sequence<I...>) { return T{static_cast<lane_of<T>>(I)...}; }
  (std::make_index_sequence<group_lanes<T>>{});
}

// Operands of 64 bits, an immediate sign-extended, since every element is a narrowing of the 64-bit one.
aarch64_decode_rc write_index(cpu_state* state, aarch64_z_reg zd, std::uint64_t start, std::uint64_t step) {
  unsigned char* const d = bytes_of(state, zd);
  by_size(zd.size, [&]<class T>(T) {
    using group = group_of<T>;
    group elements = first_numbers<group>() * static_cast<T>(step) + static_cast<T>(start);
    const group next = in_each_lane<group>(static_cast<T>(step * group_lanes<group>));
#pragma GCC unroll 16
    for (std::size_t i = 0; i != lane_count<group>; ++i, elements += next) set_lane(d, i, elements);
  });
  return DECODE_OK;
}

}  // namespace

aarch64_decode_rc sve_index_zii(cpu_state* state, aarch64_z_reg zd, int start, int step) {
  return write_index(state, zd, as_register(start), as_register(step));
}

aarch64_decode_rc sve_index_zir(cpu_state* state, aarch64_z_reg zd, int start, aarch64_i_reg rm) {
  return write_index(state, zd, as_register(start), read_x(state, rm));
}

aarch64_decode_rc sve_index_zri(cpu_state* state, aarch64_z_reg zd, aarch64_i_reg rn, int step) {
  return write_index(state, zd, read_x(state, rn), as_register(step));
}

aarch64_decode_rc sve_index_zrr(cpu_state* state, aarch64_z_reg zd, aarch64_i_reg rn, aarch64_i_reg rm) {
  return write_index(state, zd, read_x(state, rn), read_x(state, rm));
}

// INDEX.
#include "sve/handlers/integer/index.h"

#include "sve/handlers/general_register.h"
#include "sve/state/lanes.h"

using namespace quern;

namespace {

// Operands of 64 bits, an immediate sign-extended, since every element is a narrowing of the 64-bit one.
aarch64_decode_rc write_index(cpu_state* state, aarch64_z_reg zd, std::uint64_t start, std::uint64_t step) {
  unsigned char* const d = state->z[zd.num];
  by_size(zd.size, [&]<class T>(T) {
    T element = static_cast<T>(start);
    for (std::size_t i = 0; i != lane_count<T>; ++i, element = static_cast<T>(element + static_cast<T>(step)))
      set_lane<T>(d, i, element);
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

// Integer division.
#include "sve/handlers/integer/divide.h"

#include "sve/handlers/integer/integer_families.h"

using namespace quern;

namespace {

// AArch64's quotient, by tests that keep a host whose division traps from doing so.
template <class T>
constexpr T quotient(T dividend, T divisor) {
  if (divisor == 0) return 0;
  if constexpr (std::is_signed_v<T>) {
    if (divisor == -1) return static_cast<T>(0 - static_cast<std::make_unsigned_t<T>>(dividend));
  }
  return static_cast<T>(dividend / divisor);
}

// Zdn = op(Zdn, Zm), active lanes of element type T. A division costs far more than a branch, hence inactive lanes are
// passed over rather than computed and dropped.
template <class T, class Op>
void divide_lanes(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, Op op) {
  unsigned char* const d = state->z[zdn.num];
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    if (is_active<T>(state->p[pg.num], i)) set_lane<T>(d, i, op(lane<T>(d, i), lane<T>(state->z[zm.num], i)));
  }
}

template <class Word, class Doubleword, class Op>
aarch64_decode_rc divide(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, Op op) {
  if (zdn.dsize == size_d) {
    divide_lanes<Doubleword>(state, zdn, pg, zm, op);
  } else {
    divide_lanes<Word>(state, zdn, pg, zm, op);
  }
  return DECODE_OK;
}

constexpr auto by_second = [](auto a, auto b) { return quotient(a, b); };
constexpr auto by_first = [](auto a, auto b) { return quotient(b, a); };

}  // namespace

aarch64_decode_rc sve_sdiv_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<std::int32_t, std::int64_t>(state, zdn, pg, zm, by_second);
}

aarch64_decode_rc sve_sdivr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<std::int32_t, std::int64_t>(state, zdn, pg, zm, by_first);
}

aarch64_decode_rc sve_udiv_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<std::uint32_t, std::uint64_t>(state, zdn, pg, zm, by_second);
}

aarch64_decode_rc sve_udivr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<std::uint32_t, std::uint64_t>(state, zdn, pg, zm, by_first);
}

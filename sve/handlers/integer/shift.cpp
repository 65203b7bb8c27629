// Shifts by a vector and by an immediate.
#include "sve/handlers/integer/shift.h"

#include <bit>
#include <functional>
#include <utility>

#include "sve/handlers/register_loops.h"
#include "sve/state/integer_operations.h"
#include "sve/state/packed_shift.h"

using namespace quern;

namespace {

// A shift: what a count below the element's bits gives, and what any other does.
struct shift_left {
  static constexpr auto below(auto x, auto count) { return x << count; }
  template <class T>
  static constexpr T beyond(T) {
    return 0;
  }
};

struct shift_right {
  static constexpr auto below(auto x, auto count) { return x >> count; }
  template <class T>
  static constexpr T beyond(T) {
    return 0;
  }
};

struct shift_right_signed {
  static constexpr auto below(auto x, auto count) { return as_signed(x) >> count; }
  template <class T>
  static constexpr T beyond(T x) {
    return static_cast<T>(as_signed(x) >> (element_bits<T> - 1));
  }
};

// The bits of a count that tell below the element's bits. A compiler that sees no others in a shift keeps it as narrow
// as the element.
template <class T, class Count>
constexpr Count low_bits(Count count) {
  return static_cast<Count>(count & (element_bits<T> - 1));
}

// Vectors of AArch64 shift each lane by its own count; those of baseline x86-64 shift all lanes by one.
#ifdef __aarch64__
constexpr bool vectors_shift_by_lane = true;
#else
constexpr bool vectors_shift_by_lane = false;
#endif

// x shifted by the low bits of a lane's count. Where vectors cannot, by one constant step for each bit of the count;
// not so doublewords, as a vector has too few of them to gain by it.
template <class Shift, class T>
constexpr T shift_below(T x, T count) {
  if constexpr (vectors_shift_by_lane || sizeof(T) == 8) {
    return static_cast<T>(Shift::below(x, low_bits<T>(count)));
  } else {
    const auto step = [&](unsigned int bit) {
      const T bit_on_top = static_cast<T>(count << (element_bits<T> - 1 - bit));
      const T wanted = static_cast<T>(as_signed(bit_on_top) >> (element_bits<T> - 1));
      x = select(wanted, static_cast<T>(Shift::below(x, 1u << bit)), x);
    };
    [&]<unsigned int... Bit>(std::integer_sequence<unsigned int, Bit...>) { (step(Bit), ...); }
    (std::make_integer_sequence<unsigned int, std::bit_width(element_bits<T>) - 1>{});
    return x;
  }
}

// Zdn = Zdn shifted by Zm, active lanes.
template <class Shift>
aarch64_decode_rc shift_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, []<class T>(T x, T count) {
    const T shifted = shift_below<Shift>(x, count);
    return count < element_bits<T> ? shifted : Shift::beyond(x);
  });
}

// Shifts of a whole vector by one count, d = shift(a).
template <class T>
void shift_all(shift_left, unsigned char* d, const unsigned char* a, unsigned int count) {
  each_lane<std::uint64_t>([=](std::uint64_t x) { return packed_left<T>(x, count); }, d, a);
}
template <class T>
void shift_all(shift_right, unsigned char* d, const unsigned char* a, unsigned int count) {
  each_lane<std::uint64_t>([=](std::uint64_t x) { return packed_right<T>(x, count); }, d, a);
}
template <class T>
void shift_all(shift_right_signed, unsigned char* d, const unsigned char* a, unsigned int count) {
  each_lane<std::uint64_t>([=](std::uint64_t x) { return packed_right<std::make_signed_t<T>>(x, count); }, d, a);
}

// Zdn = Zdn shifted by the immediate, active lanes.
template <class Shift>
aarch64_decode_rc shift_zpi(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, unsigned int count) {
  unsigned char* const d = state->z[zdn.num];
  by_size(zdn.dsize, [&]<class T>(T) {
    vector_result shifted;
    shift_all<T>(Shift{}, shifted.bytes, d, count);
    merge_lanes<T>(std::identity{}, d, state->p[pg.num], shifted.bytes);
  });
  return DECODE_OK;
}

// Zd = Zn shifted by the immediate, every lane.
template <class Shift>
aarch64_decode_rc shift_zzi(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int count) {
  by_size(zd.size, [&]<class T>(T) { shift_all<T>(Shift{}, state->z[zd.num], state->z[zn.num], count); });
  return DECODE_OK;
}

}  // namespace

aarch64_decode_rc sve_lsl_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return shift_zpz<shift_left>(state, zdn, pg, zm);
}

aarch64_decode_rc sve_lsr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return shift_zpz<shift_right>(state, zdn, pg, zm);
}

aarch64_decode_rc sve_asr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return shift_zpz<shift_right_signed>(state, zdn, pg, zm);
}

aarch64_decode_rc sve_lsl_zpi(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, unsigned int count) {
  return shift_zpi<shift_left>(state, zdn, pg, count);
}

aarch64_decode_rc sve_lsr_zpi(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, unsigned int count) {
  return shift_zpi<shift_right>(state, zdn, pg, count);
}

aarch64_decode_rc sve_asr_zpi(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, unsigned int count) {
  return shift_zpi<shift_right_signed>(state, zdn, pg, count);
}

aarch64_decode_rc sve_lsl_zzi(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int count) {
  return shift_zzi<shift_left>(state, zd, zn, count);
}

aarch64_decode_rc sve_lsr_zzi(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int count) {
  return shift_zzi<shift_right>(state, zd, zn, count);
}

aarch64_decode_rc sve_asr_zzi(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int count) {
  return shift_zzi<shift_right_signed>(state, zd, zn, count);
}

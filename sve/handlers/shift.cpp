// Shifts by a vector and by an immediate.
#include "sve/handlers/shift.h"

#include <bit>
#include <utility>

#include "sve/handlers/integer_families.h"

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
      const T wanted = static_cast<T>(0 - (count >> bit & 1));
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

// The shift of one element by an immediate.
template <class Shift>
constexpr auto shift_by(unsigned int count) {
  return [=]<class T>(T x) {
    return count < element_bits<T> ? static_cast<T>(Shift::below(x, low_bits<T>(count))) : Shift::beyond(x);
  };
}

// Zdn = Zdn shifted by the immediate, active lanes.
template <class Shift>
aarch64_decode_rc shift_zpi(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, unsigned int count) {
  unsigned char* const d = state->z[zdn.num];
  by_size(zdn.dsize, [&]<class T>(T) { merge_lanes<T>(shift_by<Shift>(count), d, state->p[pg.num], d); });
  return DECODE_OK;
}

// Zd = Zn shifted by the immediate, every lane.
template <class Shift>
aarch64_decode_rc shift_zzi(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int count) {
  by_size(zd.size, [&]<class T>(T) { each_lane<T>(shift_by<Shift>(count), state->z[zd.num], state->z[zn.num]); });
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

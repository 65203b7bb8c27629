// Shifts by a vector and by an immediate.
#include "sve/handlers/integer/shift.h"

#include <type_traits>

#include "sve/handlers/register_loops.h"
#include "sve/state/integer_operations.h"

using namespace quern;

namespace {

template <lane_group T>
using signed_group = group_of<std::make_signed_t<lane_of<T>>>;
template <lane_group T>
inline constexpr unsigned int bits_of = element_bits<lane_of<T>>;

// The kinds of shifts of a group: by a count below the element's bits, one for all lanes or one for each, and by any
// other.
struct shift_left {
  template <class T>
  static T below(T x, auto count) {
    return x << count;
  }
  template <class T>
  static T beyond(T) {
    return T{};
  }
};

struct shift_right {
  template <class T>
  static T below(T x, auto count) {
    return x >> count;
  }
  template <class T>
  static T beyond(T) {
    return T{};
  }
};

struct shift_right_signed {
  template <class T>
  static T below(T x, auto count) {
    return T(signed_group<T>(x) >> count);
  }
  template <class T>
  static T beyond(T x) {
    return below(x, static_cast<lane_of<T>>(bits_of<T> - 1));
  }
};

#ifdef __aarch64__

// Vectors of AArch64 shift each lane by a signed count, to the left or the right; they look at its lowest byte alone,
// and all bits may go out.
uint8x16_t by_signed(uint8x16_t x, uint8x16_t n) { return vshlq_u8(x, int8x16_t(n)); }
uint16x8_t by_signed(uint16x8_t x, uint16x8_t n) { return vshlq_u16(x, int16x8_t(n)); }
uint32x4_t by_signed(uint32x4_t x, uint32x4_t n) { return vshlq_u32(x, int32x4_t(n)); }
uint64x2_t by_signed(uint64x2_t x, uint64x2_t n) { return vshlq_u64(x, int64x2_t(n)); }
int8x16_t by_signed(int8x16_t x, uint8x16_t n) { return vshlq_s8(x, int8x16_t(n)); }
int16x8_t by_signed(int16x8_t x, uint16x8_t n) { return vshlq_s16(x, int16x8_t(n)); }
int32x4_t by_signed(int32x4_t x, uint32x4_t n) { return vshlq_s32(x, int32x4_t(n)); }
int64x2_t by_signed(int64x2_t x, uint64x2_t n) { return vshlq_s64(x, int64x2_t(n)); }

template <lane_group T>
T at_most_all_bits(T count) {
  const T bits = in_each_lane<T>(bits_of<T>);
  return T(count < bits ? count : bits);
}

template <lane_group T>
T shift_each(shift_left, T x, T count) {
  return by_signed(x, at_most_all_bits(count));
}
template <lane_group T>
T shift_each(shift_right, T x, T count) {
  return by_signed(x, -at_most_all_bits(count));
}
template <lane_group T>
T shift_each(shift_right_signed, T x, T count) {
  return T(by_signed(signed_group<T>(x), -at_most_all_bits(count)));
}

#else

// By one constant step for each bit of the count, as vectors of baseline x86-64 shift all lanes by one count; not so
// doublewords, as a vector has too few of them to gain by it.
template <class Shift, lane_group T>
T shift_below(T x, T count) {
  if constexpr (bits_of<T> == 64) {
    return Shift::below(x, T(count & 63));
  } else {
    using lane = lane_of<T>;
    for (unsigned int bit = 0; 1u << bit != bits_of<T>; ++bit) {
      const T bit_on_top = count << static_cast<lane>(bits_of<T> - 1 - bit);
      const T wanted = shift_right_signed::below(bit_on_top, static_cast<lane>(bits_of<T> - 1));
      x = select(wanted, Shift::below(x, static_cast<lane>(1u << bit)), x);
    }
    return x;
  }
}

template <class Shift, lane_group T>
T shift_each(Shift, T x, T count) {
  return select(T(count < in_each_lane<T>(bits_of<T>)), shift_below<Shift>(x, count), Shift::beyond(x));
}

#endif

template <class Shift, lane_group T>
T shift_all(Shift, T x, unsigned int count) {
  return count < bits_of<T> ? Shift::below(x, static_cast<lane_of<T>>(count)) : Shift::beyond(x);
}

// Zdn = Zdn shifted by Zm, active lanes.
template <class Shift>
aarch64_decode_rc shift_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  unsigned char* const d = bytes_of(state, zdn);
  by_size(zdn.dsize, [&]<class T>(T) {
    const auto op = [](group_of<T> x, group_of<T> count) { return shift_each(Shift{}, x, count); };
    merge_lanes<group_of<T>>(op, d, bytes_of(state, pg), d, bytes_of(state, zm));
  });
  return DECODE_OK;
}

// Zdn = Zdn shifted by the immediate, active lanes.
template <class Shift>
aarch64_decode_rc shift_zpi(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, unsigned int count) {
  unsigned char* const d = bytes_of(state, zdn);
  by_size(zdn.dsize, [&]<class T>(T) {
    merge_lanes<group_of<T>>([=](group_of<T> x) { return shift_all(Shift{}, x, count); }, d, bytes_of(state, pg), d);
  });
  return DECODE_OK;
}

// Zd = Zn shifted by the immediate, every lane.
template <class Shift>
aarch64_decode_rc shift_zzi(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int count) {
  by_size(zd.size, [&]<class T>(T) {
    each_lane<group_of<T>>([=](group_of<T> x) { return shift_all(Shift{}, x, count); }, bytes_of(state, zd),
                           bytes_of(state, zn));
  });
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

// TBL, EXT, REV and the unpacks.
#include "sve/handlers/permute/permute.h"

#include <functional>

#include "sve/handlers/register_bytes.h"
#include "sve/state/lane_group.h"
#include "sve/state/lanes.h"

#ifdef __aarch64__
#include <arm_neon.h>
#endif

using namespace quern;

namespace {

enum class half : std::size_t { low = 0, high = VL_BYTES / 2 };

// The lanes in reverse order: those of each half, then the halves, for which there are instructions.
template <lane_group T>
T reversed(T x) {
  constexpr auto in_half = [](int i, int lanes) { return i ^ (lanes / 2 - 1); };
  return T(exchanged(doubles(shuffle<in_half>(x, x))));
}

[[gnu::flatten]] void reverse_elements(unsigned char* d, const unsigned char* n, std::uint32_t size) {
  by_size(size, [=]<class T>(T) {
    using group = group_of<T>;
    constexpr std::size_t groups = lane_count<group>;
    group result[groups];
#pragma GCC unroll 16
    for (std::size_t i = 0; i != groups; ++i) result[i] = reversed(lane<group>(n, groups - 1 - i));
#pragma GCC unroll 16
    for (std::size_t i = 0; i != groups; ++i) set_lane(d, i, result[i]);
  });
}

// d[i] = op(n[i]), for the Narrow elements of a half of n; the conversion to Wide extends.
template <class Narrow, class Wide, class Op = std::identity>
aarch64_decode_rc unpack(unsigned char* d, const unsigned char* n, half part, Op op = {}) {
  vector_result r;
  const unsigned char* const narrow = n + static_cast<std::size_t>(part);
  for (std::size_t i = 0; i != lane_count<Wide>; ++i)
    set_lane<Wide>(r.bytes, i, static_cast<Wide>(op(lane<Narrow>(narrow, i))));
  r.copy_to(d);
  return DECODE_OK;
}

aarch64_decode_rc unpack_predicate(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pn, half part) {
  return unpack<std::uint8_t, std::uint16_t>(bytes_of(state, pd), bytes_of(state, pn), part,
                                             [](std::uint8_t byte) { return byte & 1; });
}

#ifdef __aarch64__
// d[i] = table[indexes[i]] for bytes, or 0 beyond the table, by the instruction that the compiler does not make of a
// loop. An index outside a part of the table leaves what another has found.
constexpr std::size_t table_part = 64;
void look_up_bytes(unsigned char* d, const unsigned char* table, const unsigned char* indexes) {
  for (std::size_t i = 0; i != VL_BYTES; i += table_part) {
    uint8x16x4_t index = vld1q_u8_x4(indexes + i), found{};
    for (std::size_t first = 0; first != VL_BYTES; first += table_part) {
      const uint8x16x4_t part = vld1q_u8_x4(table + first);
#pragma GCC unroll 4
      for (int k = 0; k != 4; ++k) {
        found.val[k] = vqtbx4q_u8(found.val[k], part, index.val[k]);
        index.val[k] -= vdupq_n_u8(table_part);
      }
    }
#pragma GCC unroll 4
    for (int k = 0; k != 4; ++k) vst1q_u8(d + i + static_cast<std::size_t>(k) * 16, found.val[k]);
  }
}

// The same for wider elements, as look-ups of their bytes: no vector has more than 256.
template <class T>
void look_up_by_bytes(unsigned char* d, const unsigned char* table, const unsigned char* indexes) {
  constexpr T ones = static_cast<T>(~T{0}) / 0xFF, byte_numbers = static_cast<T>(0x03020100);
  unsigned char byte_indexes[VL_BYTES];
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(byte_indexes, i, static_cast<T>(lane<T>(indexes, i) * (sizeof(T) * ones) + byte_numbers));
  look_up_bytes(d, table, byte_indexes);
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const T found = lane<T>(d, i);
    set_lane<T>(d, i, lane<T>(indexes, i) < lane_count<T> ? found : T{0});
  }
}
#endif

// d[i] = table[indexes[i]], or 0 beyond the table.
template <class T>
void look_up(unsigned char* d, const unsigned char* table, const unsigned char* indexes) {
#ifdef __aarch64__
  if constexpr (VL_BYTES >= table_part && sizeof(T) == 1) return look_up_bytes(d, table, indexes);
  if constexpr (VL_BYTES >= table_part && sizeof(T) <= 4) return look_up_by_bytes<T>(d, table, indexes);
#endif
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const T index = lane<T>(indexes, i);
    set_lane<T>(d, i, index < lane_count<T> ? lane<T>(table, static_cast<std::size_t>(index)) : T{0});
  }
}

}  // namespace

aarch64_decode_rc sve_tbl_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  by_size(zd.size, [=]<class T>(T) {
    const unsigned char *const table = bytes_of(state, zn), *const indexes = bytes_of(state, zm);
    vector_result r;
    look_up<T>(r.bytes, table, indexes);
    r.copy_to(bytes_of(state, zd));
  });
  return DECODE_OK;
}

aarch64_decode_rc sve_ext_zzi(cpu_state* state, aarch64_z_reg zdn, aarch64_z_reg zm, unsigned int imm) {
  unsigned char both[2 * VL_BYTES];
  std::memcpy(both, bytes_of(state, zdn), VL_BYTES);
  std::memcpy(both + VL_BYTES, bytes_of(state, zm), VL_BYTES);
  std::memcpy(bytes_of(state, zdn), both + (imm < VL_BYTES ? imm : 0), VL_BYTES);
  return DECODE_OK;
}

aarch64_decode_rc sve_rev_zz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn) {
  reverse_elements(bytes_of(state, zd), bytes_of(state, zn), zd.size);
  return DECODE_OK;
}

aarch64_decode_rc sve_rev_pp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pn) {
  reverse_elements(bytes_of(state, pd), bytes_of(state, pn), pd.size);
  return DECODE_OK;
}

#define UNPACK(name, part, narrow, wide)                                                         \
  aarch64_decode_rc sve_##name##_zz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn) {      \
    return unpack<std::narrow, std::wide>(bytes_of(state, zd), bytes_of(state, zn), half::part); \
  }
UNPACK(uunpklo_b2h, low, uint8_t, uint16_t)
UNPACK(uunpkhi_b2h, high, uint8_t, uint16_t)
UNPACK(uunpklo_h2s, low, uint16_t, uint32_t)
UNPACK(uunpkhi_h2s, high, uint16_t, uint32_t)
UNPACK(uunpklo_s2d, low, uint32_t, uint64_t)
UNPACK(uunpkhi_s2d, high, uint32_t, uint64_t)
UNPACK(sunpklo_s2d, low, int32_t, int64_t)
UNPACK(sunpkhi_s2d, high, int32_t, int64_t)
#undef UNPACK

aarch64_decode_rc sve_punpklo_pp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pn) {
  return unpack_predicate(state, pd, pn, half::low);
}

aarch64_decode_rc sve_punpkhi_pp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pn) {
  return unpack_predicate(state, pd, pn, half::high);
}

// Integer operations on one vector: negation, reversals, extensions.
#include "sve/handlers/integer/integer_unary.h"

#include <bit>
#include <functional>

#include "sve/handlers/register_loops.h"
#include "sve/state/integer_operations.h"

using namespace quern;

namespace {

// x with neighbouring groups of Group bits of each lane exchanged.
template <unsigned int Group, lane_group T>
T exchange(T x) {
  constexpr auto lower = static_cast<lane_of<T>>(lane_of<T>(~0u) / ((1u << Group) + 1));  // of each pair
  return (x >> Group & lower) | (x & lower) << Group;
}

// The bits of each byte in reverse order, which is one instruction on AArch64.
group_of<std::uint8_t> reverse_in_bytes(group_of<std::uint8_t> x) {
#ifdef __aarch64__
  return vrbitq_u8(x);
#else
  return exchange<1>(exchange<2>(exchange<4>(x)));
#endif
}

// Those of each lane: of its bytes, then its bytes.
struct reverse_bits {
  template <lane_group T>
  T operator()(T x) const {
    constexpr auto in_lane = [](int i, int) { return i ^ static_cast<int>(sizeof(lane_of<T>) - 1); };
    const auto bytes = reverse_in_bytes(group_of<std::uint8_t>(x));
    return T(shuffle<in_lane>(bytes, bytes));
  }
};

// The low part of an element, as type Part, extended to the element. The signed form flips the sign bit and takes it
// off again, which needs no arithmetic shift of 64-bit lanes: vectors on x86-64 have none.
template <class Part>
struct extend {
  template <class T>
  constexpr T operator()(T x) const {
    const T part = x & static_cast<std::make_unsigned_t<Part>>(~0u);
    if constexpr (std::is_unsigned_v<Part>) return part;
    constexpr T sign = T{1} << (element_bits<Part> - 1);
    return static_cast<T>((part ^ sign) - sign);
  }
};

// Where a handler has fewer element types than all.
using doublewords = element_types<std::uint64_t>;
using words_up = element_types<std::uint64_t, std::uint32_t>;
using halfwords_up = element_types<std::uint32_t, std::uint64_t, std::uint16_t>;

}  // namespace

aarch64_decode_rc sve_neg_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary(state, zd, pg, zn, std::negate{});
}

aarch64_decode_rc sve_rbit_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  by_size(zd.size, [=]<class T>(T) {
    merge_lanes<group_of<T>>(reverse_bits{}, bytes_of(state, zd), bytes_of(state, pg), bytes_of(state, zn));
  });
  return DECODE_OK;
}

aarch64_decode_rc sve_revw_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary<doublewords>(state, zd, pg, zn, [](std::uint64_t x) { return std::rotl(x, 32); });
}

aarch64_decode_rc sve_sxtb_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary<halfwords_up>(state, zd, pg, zn, extend<std::int8_t>{});
}

aarch64_decode_rc sve_sxth_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary<words_up>(state, zd, pg, zn, extend<std::int16_t>{});
}

aarch64_decode_rc sve_sxtw_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary<doublewords>(state, zd, pg, zn, extend<std::int32_t>{});
}

aarch64_decode_rc sve_uxth_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary<words_up>(state, zd, pg, zn, extend<std::uint16_t>{});
}

aarch64_decode_rc sve_uxtw_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary<doublewords>(state, zd, pg, zn, extend<std::uint32_t>{});
}

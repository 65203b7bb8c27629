// Integer operations on one vector: negation, reversals, extensions.
#include "sve/handlers/integer/integer_unary.h"

#include <bit>
#include <functional>

#include "sve/handlers/register_loops.h"
#include "sve/state/integer_operations.h"

using namespace quern;

namespace {

// x with neighbouring groups of Group bits exchanged; x itself where an element has no two.
template <unsigned int Group, class T>
constexpr T exchange(T x) {
  if constexpr (2 * Group > element_bits<T>) {
    return x;
  } else {
    constexpr T lower = static_cast<T>(static_cast<T>(~T{0}) / ((T{1} << Group) + 1));  // of each pair
    return static_cast<T>((x >> Group & lower) | (x & lower) << Group);
  }
}

// Exchanging groups of every size reverses the bits, in whatever order. In this order, because a compiler that saw the
// steps of 8, 16 and 32 together would make them one byte reversal, which vectors on x86-64 don't have.
struct reverse_bits {
  template <class T>
  constexpr T operator()(T x) const {
    return exchange<8>(exchange<1>(exchange<16>(exchange<2>(exchange<32>(exchange<4>(x))))));
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
  return merge_unary(state, zd, pg, zn, reverse_bits{});
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

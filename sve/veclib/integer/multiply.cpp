// Integer multiplication and dot products.
#include "sve/veclib/integer/multiply.h"

#include <functional>

#include "sve/arith/integer/wide_integer.h"
#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

#ifdef __aarch64__
#include <arm_neon.h>
#endif

namespace quern::veclib {
namespace {

// A lane in twice its width, of the same sign.
template <class T>
constexpr auto widened(T a) {
  constexpr bool is_signed = std::is_signed_v<T>;
  if constexpr (sizeof(T) == 1) return static_cast<std::conditional_t<is_signed, std::int16_t, std::uint16_t>>(a);
  if constexpr (sizeof(T) == 2) return static_cast<std::conditional_t<is_signed, std::int32_t, std::uint32_t>>(a);
  if constexpr (sizeof(T) == 4) return static_cast<std::conditional_t<is_signed, std::int64_t, std::uint64_t>>(a);
  if constexpr (sizeof(T) == 8) return static_cast<std::conditional_t<is_signed, int128, uint128>>(a);
}

constexpr auto high_half = []<class T>(T a, T b) { return widened(a) * widened(b) >> quern::element_bits<T>; };

// Every lane's sum of the products of its quarters, and the lane of a.
#ifdef __aarch64__
// Products in twice the quarters' width, added by pairs, and those sums again: the compiler makes nothing of the kind.
#define DOT_PRODUCTS(T, quarters, quarter, product, sum)                                                               \
  uint8x16_t dot_products(T, uint8x16_t a, uint8x16_t n, uint8x16_t m) {                                               \
    const auto x = quarters(n), y = quarters(m);                                                                       \
    const auto low = vmull_##quarter(vget_low_##quarter(x), vget_low_##quarter(y)), high = vmull_high_##quarter(x, y); \
    const auto sums = vpaddq_##sum(vpaddlq_##product(low), vpaddlq_##product(high));                                   \
    return uint8x16_t(group_of<std::make_unsigned_t<T>>(a) + group_of<std::make_unsigned_t<T>>(sums));                 \
  }
DOT_PRODUCTS(std::int32_t, int8x16_t, s8, s16, s32)
DOT_PRODUCTS(std::uint32_t, uint8x16_t, u8, u16, u32)
DOT_PRODUCTS(std::int64_t, int16x8_t, s16, s32, s64)
DOT_PRODUCTS(std::uint64_t, uint16x8_t, u16, u32, u64)
#undef DOT_PRODUCTS

constexpr auto DotVVVX = []<class T>(T type, const CpuContext& ctx, const VecV& a, const VecV& n, const VecV& m) {
  VecV result;
  for (std::size_t i = 0; i != VL_BYTES; i += 16)
    vst1q_u8(result.bytes + i, dot_products(type, vld1q_u8(a.bytes + i), vld1q_u8(n.bytes + i), vld1q_u8(m.bytes + i)));
  clear_beyond(result, ctx);
  return result;
};
#else
// Quarter k of a lane, counted from the top, extended by the sign of the lane's type.
template <class T>
constexpr T quarter(T a, int k) {
  constexpr int bits = quern::element_bits<T> / 4;
  return static_cast<T>(static_cast<T>(as_unsigned(a) << k * bits) >> 3 * bits);
}

// Quarters of doublewords have products of a word: that keeps 64-bit factors, which vectors lack, out of the loop.
template <class T>
constexpr T quarter_product(T n, T m, int k) {
  using Half = std::conditional_t<std::is_signed_v<T>, std::int32_t, std::uint32_t>;
  return static_cast<Half>(quarter(n, k)) * T{1} * static_cast<Half>(quarter(m, k));
}

constexpr auto dot = []<class T>(T a, T n, T m) {
  for (int k = 0; k != 4; ++k) a = add(a, quarter_product(n, m, k));
  return a;
};

constexpr auto DotVVVX = unpredicated(dot);
#endif

// Every lane of a block of 16 bytes becomes lane `index` of the block.
template <class T>
VecV broadcast_in_blocks(const VecV& m, std::size_t index) {
  constexpr std::size_t per_block = 16 / sizeof(T);
  VecV result;
  for (std::size_t block = 0; block != lane_count<T>; block += per_block) {
    const T chosen = lane<T>(m.bytes, block + index);
    for (std::size_t i = 0; i != per_block; ++i) set_lane<T>(result.bytes, block + i, chosen);
  }
  return result;
}

constexpr auto MulVVM = merging([](auto a, auto b) { return multiply(a, b); });
// Vectors multiply no doublewords: those are apart from the merging, which vectors do.
constexpr auto MulHVVM = []<class T>(T, const CpuContext& ctx, const VecV& a, const PredV& pg, const VecV& b) {
  if constexpr (sizeof(T) != 8) {
    return merge_lanes<T>(high_half, ctx, a, pg, a, b);
  } else {
    VecV high;
    each_scalar_lane<T>(high_half, high.bytes, a.bytes, b.bytes);
    return merge_lanes<T>(std::identity{}, ctx, a, pg, high);
  }
};
constexpr auto MLAVVVM = merging([](auto a, auto n, auto m) { return add(a, multiply(n, m)); });
constexpr auto MLSVVVM = merging([](auto a, auto n, auto m) { return subtract(a, multiply(n, m)); });
constexpr auto MADDVVVM = merging([](auto n, auto m, auto a) { return add(a, multiply(n, m)); });
constexpr auto MSUBVVVM = merging([](auto n, auto m, auto a) { return subtract(a, multiply(n, m)); });
constexpr auto MulVIX = unpredicated([](auto a, auto factor) { return multiply(a, factor); });
constexpr auto DotVVVIX = []<class T>(T type, const CpuContext& ctx, const VecV& a, const VecV& n, const VecV& m,
                                      std::uint32_t index) {
  return DotVVVX(type, ctx, a, n, broadcast_in_blocks<T>(m, index));
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/multiply.def"
#include "sve/veclib/members/define.inc"

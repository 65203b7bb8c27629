// Integer multiplication and dot products.
#include "sve/veclib/integer/multiply.h"

#include "sve/arith/integer/wide_integer.h"
#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

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

// A quarter of a lane, of the same sign.
template <class T>
using signed_quarter = std::conditional_t<sizeof(T) == 4, std::int8_t, std::int16_t>;
template <class T>
using quarter = std::conditional_t<std::is_signed_v<T>, signed_quarter<T>, std::make_unsigned_t<signed_quarter<T>>>;

template <class T>
VecV dot(const CpuContext& ctx, const VecV& a, const VecV& n, const VecV& m) {
  using Q = quarter<T>;
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    T sum = lane<T>(a.bytes, i);
    for (std::size_t k = 4 * i; k != 4 * i + 4; ++k)
      sum = add(sum, multiply(T{lane<Q>(n.bytes, k)}, T{lane<Q>(m.bytes, k)}));
    set_lane<T>(result.bytes, i, sum);
  }
  return within(result, ctx);
}

// Every lane of a block of 16 bytes becomes lane `index` of the block.
template <class T>
VecV broadcast_in_blocks(const VecV& m, std::size_t index) {
  constexpr std::size_t per_block = 16 / sizeof(T);
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(result.bytes, i, lane<T>(m.bytes, i / per_block * per_block + index));
  return result;
}

constexpr auto MulVVM = merging([](auto a, auto b) { return multiply(a, b); });
constexpr auto MulHVVM = merging(high_half);
constexpr auto MLAVVVM = merging([](auto a, auto n, auto m) { return add(a, multiply(n, m)); });
constexpr auto MLSVVVM = merging([](auto a, auto n, auto m) { return subtract(a, multiply(n, m)); });
constexpr auto MADDVVVM = merging([](auto n, auto m, auto a) { return add(a, multiply(n, m)); });
constexpr auto MSUBVVVM = merging([](auto n, auto m, auto a) { return subtract(a, multiply(n, m)); });
constexpr auto MulVIX = unpredicated([](auto a, auto factor) { return multiply(a, factor); });
constexpr auto DotVVVX = []<class T>(T, const CpuContext& ctx, const VecV& a, const VecV& n, const VecV& m) {
  return dot<T>(ctx, a, n, m);
};
constexpr auto DotVVVIX = []<class T>(T, const CpuContext& ctx, const VecV& a, const VecV& n, const VecV& m,
                                      std::uint32_t index) {
  return dot<T>(ctx, a, n, broadcast_in_blocks<T>(m, index));
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/multiply.def"
#include "sve/veclib/members/define.inc"

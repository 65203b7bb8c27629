// Complex addition and multiply-add: the real part in an even lane, the imaginary part in the odd lane above it. Each
// lane of a pair is active by itself. A rotation is a choice of parts and signs of the operands that are rotated.
#include "sve/veclib/floating_point/complex.h"

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

// A vector in which each lane is one part of its own pair, with or without a change of sign: what the even lanes are
// and what the odd lanes are.
struct part {
  bool odd, negative;
};
template <class T>
VecV parts(const VecV& vector, part even_lane, part odd_lane) {
  using group = group_of<T>;
  group signs{};
  for (int i = 0; i != group_lanes<group>; ++i)
    signs[i] = (i % 2 == 0 ? even_lane : odd_lane).negative ? float_format<T>::sign_bit : T{0};
  const auto choose = [=](group pairs) {
    if (even_lane.odd) return odd_lane.odd ? odd_twice(pairs) : exchanged(pairs);
    return odd_lane.odd ? pairs : even_twice(pairs);
  };
  VecV result;
  for (std::size_t i = 0; i != lane_count<group>; ++i)
    set_lane<group>(result.bytes, i, choose(lane<group>(vector.bytes, i)) ^ signs);
  return result;
}

constexpr auto FCADDVVM = []<class T>(T, CpuContext& ctx, const VecV& a, const PredV& pg, const VecV& b,
                                      std::uint32_t rotation) {
  const bool by_270 = rotation != 0;
  const VecV addend = parts<T>(b, {.odd = true, .negative = !by_270}, {.odd = false, .negative = by_270});
  const auto add = [](auto& fp, auto x, auto y) { return fp.fadd(x, y); };
  return merge_float_lanes<T>(add, ctx, a, pg, a, addend);
};

// The factors of a rotation by quarter turns: lane by lane, a + x * y.
struct factors {
  VecV x, y;
};
template <class T>
factors rotated_factors(const VecV& n, const VecV& m, std::uint32_t rotation) {
  const bool odd = rotation % 2 != 0;
  const bool real_negative = rotation == 1 || rotation == 2, imaginary_negative = rotation >= 2;
  return {parts<T>(n, {odd, false}, {odd, false}), parts<T>(m, {odd, real_negative}, {!odd, imaginary_negative})};
}

constexpr auto multiply_add = [](auto& fp, auto a, auto x, auto y) { return fp.fmla(a, x, y); };

constexpr auto FCMLAVVVM = []<class T>(T, CpuContext& ctx, const VecV& a, const PredV& pg, const VecV& n, const VecV& m,
                                       std::uint32_t rotation) {
  const auto [x, y] = rotated_factors<T>(n, m, rotation);
  return merge_float_lanes<T>(multiply_add, ctx, a, pg, a, x, y);
};

constexpr auto FCMLAVVVIX = []<class T>(T, CpuContext& ctx, const VecV& n, const VecV& m, const VecV& a,
                                        std::uint32_t rotation, std::uint32_t index) {
  using pair = std::conditional_t<sizeof(T) == 2, std::uint32_t, std::uint64_t>;
  const auto [x, y] = rotated_factors<T>(n, segment_lane<pair>(m, index), rotation);
  return map_float_lanes<T>(multiply_add, ctx, a, x, y);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/complex.def"
#include "sve/veclib/members/define.inc"

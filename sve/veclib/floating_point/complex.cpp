// Complex addition and multiply-add: the real part in an even lane, the imaginary part in the odd lane above it. Each
// lane of a pair is active by itself. A rotation is a choice of parts and signs of the operands that are rotated.
#include "sve/veclib/floating_point/complex.h"

#include <array>

#include "sve/arith/float/add.h"
#include "sve/arith/float/multiply_add.h"
#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

// Lane i of a vector in which each lane is one part of its own pair, with or without a change of sign: for the even
// lane and for the odd lane.
struct part {
  bool odd, negative;
};
template <class T>
VecV parts(const VecV& vector, part even_lane, part odd_lane) {
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const part from = i % 2 == 0 ? even_lane : odd_lane;
    const T value = lane<T>(vector.bytes, i / 2 * 2 + from.odd);
    set_lane<T>(result.bytes, i, from.negative ? negated(value) : value);
  }
  return result;
}

constexpr auto FCADDVVM = []<class T>(T, CpuContext& ctx, const VecV& a, const PredV& pg, const VecV& b,
                                      std::uint32_t rotation) {
  const bool by_270 = rotation != 0;
  const VecV addend = parts<T>(b, {.odd = true, .negative = !by_270}, {.odd = false, .negative = by_270});
  const auto add = [](T x, T y, FPSCR& fpscr) { return FPAdd<T>(x, y, fpscr); };
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

constexpr auto multiply_add = []<class T>(T a, T x, T y, FPSCR& fpscr) { return FPMulAdd<T>(a, x, y, fpscr); };

constexpr auto FCMLAVVVM = []<class T>(T, CpuContext& ctx, const VecV& a, const PredV& pg, const VecV& n, const VecV& m,
                                       std::uint32_t rotation) {
  const auto [x, y] = rotated_factors<T>(n, m, rotation);
  return merge_float_lanes<T>(multiply_add, ctx, a, pg, a, x, y);
};

// Every pair of the result is pair `index` of its 128-bit segment.
template <class T>
VecV segment_pair(const VecV& vector, std::uint32_t index) {
  constexpr std::size_t segment = 16 / sizeof(T);
  VecV result;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(result.bytes, i, lane<T>(vector.bytes, i / segment * segment + 2 * index + i % 2));
  return result;
}

constexpr auto FCMLAVVVIX = []<class T>(T, CpuContext& ctx, const VecV& n, const VecV& m, const VecV& a,
                                        std::uint32_t rotation, std::uint32_t index) {
  const auto [x, y] = rotated_factors<T>(n, segment_pair<T>(m, index), rotation);
  return map_float_lanes<T>(multiply_add, ctx, a, x, y);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/complex.def"
#include "sve/veclib/members/define.inc"

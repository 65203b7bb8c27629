// The helpers of trigonometric and exponential series.
#include "sve/veclib/floating_point/trigonometric.h"

#include "sve/arith/float/exponential.h"
#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto EXPAV = unpredicated([]<class T>(T a) { return FPEXPA<T>(a); });

constexpr auto TRISMULVV = float_unpredicated([](auto& fp, auto a, auto b) { return fp.ftsmul(a, b); });

// One or a by bit 0 of b, its sign flipped by bit 1. NaNs are passed on as they are.
constexpr auto TRISSELVV = unpredicated([]<class T>(T a, T b) {
  const T value = (b & 1) != 0 ? pack<T>(0, float_format<T>::bias, 0) : a;
  return (b & 2) != 0 ? negated(value) : value;
});

constexpr auto TRIMADDVVI = []<class T>(T, CpuContext& ctx, const VecV& a, const VecV& b, std::uint32_t index) {
  const auto multiply_add = [=](auto& fp, auto x, auto y) { return fp.ftmad(index, x, y); };
  return map_float_lanes<T>(multiply_add, ctx, a, b);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/trigonometric.def"
#include "sve/veclib/members/define.inc"

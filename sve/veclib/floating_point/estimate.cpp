// Estimates of reciprocals and reciprocal square roots, and the steps that refine them.
#include "sve/veclib/floating_point/estimate.h"

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto RecpEV = float_unpredicated([](auto& fp, auto a) { return fp.frecpe(a); });
constexpr auto RSqrtEV = float_unpredicated([](auto& fp, auto a) { return fp.frsqrte(a); });
constexpr auto RecpSVV = float_unpredicated([](auto& fp, auto a, auto b) { return fp.frecps(a, b); });
constexpr auto RSqrtSVV = float_unpredicated([](auto& fp, auto a, auto b) { return fp.frsqrts(a, b); });

// Of NaNs one may raise a flag, and so may subnormal numbers, but not among halves.
constexpr auto plain_reciprocal = []<class T>(bool& is_special, T a) {
  using format = float_format<T>;
  const T magnitude = a & format::magnitude_mask, exponent = a & format::infinity;
  const bool is_subnormal = static_cast<T>(magnitude - 1) < format::fraction_mask;
  is_special = magnitude > format::infinity || (is_subnormal && sizeof(T) != 2);
  const T largest_power = format::infinity - format::hidden_bit;
  const T reciprocal = exponent == 0 ? largest_power : static_cast<T>(format::infinity - exponent);
  return static_cast<T>((a & format::sign_bit) | reciprocal);
};

// (old, Pg, a). The host has the exponent's reciprocal for scalars alone.
constexpr auto RecpXVM = []<class T>(T, CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
  const auto reciprocal = [](auto& fp, auto lane) { return fp.frecpx(lane); };
  return merge_plain_lanes<T>(plain_reciprocal, reciprocal, ctx, old, pg, a);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/estimate.def"
#include "sve/veclib/members/define.inc"

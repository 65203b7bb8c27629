// Floating-point reductions to a scalar.
#include "sve/veclib/floating_point/float_reduce.h"

#include <array>
#include <bit>

#include "sve/arith/float/add.h"
#include "sve/arith/float/minimum_maximum.h"
#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto add = []<class T>(T a, T b, FPSCR& fpscr) { return FPAdd<T>(a, b, fpscr); };

constexpr auto AddReduceAV = []<class T>(T, CpuContext& ctx, const PredV& pg, T start, const VecV& a) {
  return lane_arithmetic(add, ctx, [&](auto combine) {
    T sum = start;
    for (std::size_t i = 0; i != lanes<T>(ctx); ++i) {
      if (is_active<T>(pg, i)) sum = combine(sum, lane<T>(a.bytes, i));
    }
    return sum;
  });
};

// The working values of a tree: the active lanes, and the identity for all others up to a power of two.
template <class T>
std::array<T, lane_count<T>> leaves(const CpuContext& ctx, const PredV& pg, const VecV& a, T identity) {
  std::array<T, lane_count<T>> values;
  values.fill(identity);
  for (std::size_t i = 0; i != lanes<T>(ctx); ++i) {
    if (is_active<T>(pg, i)) values[i] = lane<T>(a.bytes, i);
  }
  return values;
}

// (Pg, a): neighbours are combined level by level, which decides how a sum is rounded. The identity takes part in the
// calls, so that an inactive lane raises what it would raise.
template <class Op, class Identity>
constexpr auto by_pairs(Op op, Identity identity) {
  return [=]<class T>(T type, CpuContext& ctx, const PredV& pg, const VecV& a) {
    return lane_arithmetic(op, ctx, [&](auto combine) {
      auto values = leaves<T>(ctx, pg, a, identity(type));
      for (std::size_t width = std::bit_ceil(lanes<T>(ctx)); width > 1; width /= 2) {
        for (std::size_t i = 0; i != width / 2; ++i) values[i] = combine(values[2 * i], values[2 * i + 1]);
      }
      return values[0];
    });
  };
}

constexpr auto plus_zero = []<class T>(T) { return T{0}; };
constexpr auto plus_infinity = []<class T>(T) { return infinity<T>(0); };
constexpr auto minus_infinity = []<class T>(T) { return infinity<T>(1); };
constexpr auto default_nan = []<class T>(T) { return float_format<T>::default_nan; };

constexpr auto AddReduceFV = by_pairs(add, plus_zero);
constexpr auto MaxReduceFV =
    by_pairs([]<class T>(T a, T b, FPSCR& fpscr) { return FPMax<T>(a, b, fpscr); }, minus_infinity);
constexpr auto MinReduceFV =
    by_pairs([]<class T>(T a, T b, FPSCR& fpscr) { return FPMin<T>(a, b, fpscr); }, plus_infinity);
constexpr auto MaxNumReduceFV =
    by_pairs([]<class T>(T a, T b, FPSCR& fpscr) { return FPMaxNum<T>(a, b, fpscr); }, default_nan);
constexpr auto MinNumReduceFV =
    by_pairs([]<class T>(T a, T b, FPSCR& fpscr) { return FPMinNum<T>(a, b, fpscr); }, default_nan);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/float_reduce.def"
#include "sve/veclib/members/define.inc"

// Integer reductions.
#include "sve/veclib/integer/reduce.h"

#include <functional>
#include <limits>

#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

// A fold in the lane's type, from what `start` is for it. The result has the lane's bits alone.
template <class Op, class Start>
constexpr auto reducing(Op op, Start start) {
  return [op, start]<class T>(T, const CpuContext& ctx, const PredV& pg, const VecV& a) -> std::uint64_t {
    return as_unsigned(reduce_lanes<T, T>(op, start(T{}), ctx, pg, a));
  };
}

constexpr auto zero = []<class T>(T) { return T{0}; };
constexpr auto ones_of = []<class T>(T) { return static_cast<T>(~T{0}); };
constexpr auto least = []<class T>(T) { return std::numeric_limits<T>::min(); };
constexpr auto greatest = []<class T>(T) { return std::numeric_limits<T>::max(); };

// What holds the sum of a whole vector: narrow lanes add faster, and it grows by no more than their width.
template <class T>
using signed_sum =
    std::conditional_t<sizeof(T) == 1, std::int16_t, std::conditional_t<sizeof(T) == 2, std::int32_t, std::int64_t>>;
template <class T>
using sum_type = std::conditional_t<std::is_signed_v<T>, signed_sum<T>, std::make_unsigned_t<signed_sum<T>>>;
static_assert(VL_BYTES <= 256, "the sum of as many bytes fits in 16 bits");

constexpr auto AddReduceV = []<class T>(T, const CpuContext& ctx, const PredV& pg, const VecV& a) {
  const auto sum = [](auto x, auto y) { return add(x, y); };
  return static_cast<std::uint64_t>(reduce_lanes<T, sum_type<T>>(sum, sum_type<T>{0}, ctx, pg, a));
};
constexpr auto AndReduceV = reducing(std::bit_and{}, ones_of);
constexpr auto OrReduceV = reducing(std::bit_or{}, zero);
constexpr auto XorReduceV = reducing(std::bit_xor{}, zero);
constexpr auto MaxReduceV = reducing(maximum{}, least);
constexpr auto MinReduceV = reducing(minimum{}, greatest);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/reduce.def"
#include "sve/veclib/members/define.inc"

// Integer comparisons.
#include "sve/veclib/integer/integer_compare.h"

#include <functional>

#include "sve/state/packed_shift.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

template <class Op>
constexpr auto comparing(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const PredV& pg, const VecV& a, const auto& b) {
    return with_flags<T>(compare_lanes<T>(op, ctx, pg, a, b), pg, ctx);
  };
}

// What a doubleword is to the lanes of type T that lie in it: one that T doesn't hold compares alike with all of them,
// and any lane may stand for them.
template <class T>
struct wide_operand {
  VecV narrow;   // lane by lane, the doubleword cut to the lane
  VecV fits;     // ones where that is its value
  VecV outside;  // ones where it is not, and the comparison is true
};

template <class T, class Op>
wide_operand<T> narrowed(Op op, const VecV& wide) {
  using Wide = std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>;
  wide_operand<T> result;
  for (std::size_t i = 0; i != lane_count<Wide>; ++i) {
    const Wide value = lane<Wide>(wide.bytes, i);
    const bool fits = static_cast<T>(value) == value;
    set_lane<std::uint64_t>(result.narrow.bytes, i, as_unsigned(static_cast<T>(value)) * ones_apiece<T>);
    set_lane<std::int64_t>(result.fits.bytes, i, fits ? -1 : 0);
    set_lane<std::int64_t>(result.outside.bytes, i, !fits && op(Wide{0}, value) ? -1 : 0);
  }
  return result;
}

template <class Op>
constexpr auto comparing_wide(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const PredV& pg, const VecV& a, const VecV& wide) {
    const wide_operand<T> b = narrowed<T>(op, wide);
    const auto compare = [op](T x, T y, T fits, T outside) {
      const T inside = op(x, y) ? T{1} : T{0};
      return static_cast<T>((inside & fits) | (outside & 1));
    };
    return with_flags<T>(compare_lanes<T>(compare, ctx, pg, a, b.narrow, b.fits, b.outside), pg, ctx);
  };
}

constexpr auto CmpFlgEQVVZ = comparing(std::equal_to{});
constexpr auto CmpFlgNEVVZ = comparing(std::not_equal_to{});
constexpr auto CmpFlgGEVVZ = comparing(std::greater_equal{});
constexpr auto CmpFlgGTVVZ = comparing(std::greater{});

constexpr auto CmpFlgEQVIZ = comparing(std::equal_to{});
constexpr auto CmpFlgNEVIZ = comparing(std::not_equal_to{});
constexpr auto CmpFlgGEVIZ = comparing(std::greater_equal{});
constexpr auto CmpFlgGTVIZ = comparing(std::greater{});
constexpr auto CmpFlgLEVIZ = comparing(std::less_equal{});
constexpr auto CmpFlgLTVIZ = comparing(std::less{});

constexpr auto CmpFlgEQVWZ = comparing_wide(std::equal_to{});
constexpr auto CmpFlgNEVWZ = comparing_wide(std::not_equal_to{});
constexpr auto CmpFlgGEVWZ = comparing_wide(std::greater_equal{});
constexpr auto CmpFlgGTVWZ = comparing_wide(std::greater{});
constexpr auto CmpFlgLEVWZ = comparing_wide(std::less_equal{});
constexpr auto CmpFlgLTVWZ = comparing_wide(std::less{});

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/integer_compare.def"
#include "sve/veclib/members/define.inc"

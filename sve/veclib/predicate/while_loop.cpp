// Loop control.
#include "sve/veclib/predicate/while_loop.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <type_traits>

#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

__extension__ using int128 = __int128;

// How many of n, n + 1, ..., of which there are `all`, are below the limit: as the sum never wraps, the rest are not.
std::size_t count_below(int128 n, int128 limit, std::size_t all) {
  return static_cast<std::size_t>(std::clamp<int128>(limit - n, 0, static_cast<int128>(all)));
}

enum class comparison { less, less_or_equal };

// (Rn, Rm), taken as Scalar in the signedness of the lanes.
template <class Scalar, comparison Wanted>
constexpr auto while_true = []<class T>(T, CpuContext& ctx, Scalar rn, Scalar rm) {
  using S = std::conditional_t<std::is_signed_v<T>, std::make_signed_t<Scalar>, Scalar>;
  const S n = static_cast<S>(rn), m = static_cast<S>(rm);
  std::size_t count = lanes<T>(ctx);
  if (Wanted == comparison::less) count = count_below(n, m, count);
  if (Wanted == comparison::less_or_equal && m != std::numeric_limits<S>::max())
    count = count_below(n, int128{m} + 1, count);
  return with_flags<T>(first_elements<T>(count), all_elements<T>(ctx), ctx);
};

constexpr auto While4LTSS = while_true<std::uint32_t, comparison::less>;
constexpr auto While4LESS = while_true<std::uint32_t, comparison::less_or_equal>;
constexpr auto While8LTSS = while_true<std::uint64_t, comparison::less>;
constexpr auto While8LESS = while_true<std::uint64_t, comparison::less_or_equal>;

// (Rn, Rm)
template <class Condition>
constexpr auto terminating(Condition condition) {
  return [condition]<class T>(T, CpuContext& ctx, T rn, T rm) {
    constexpr std::uint32_t n = 1u << 31, c = 1u << 29, v = 1u << 28;
    const std::uint32_t flags = condition(rn, rm) ? n : (ctx.nzcv & c) != 0 ? 0 : v;
    ctx.nzcv = (ctx.nzcv & ~(n | v)) | flags;
  };
}

constexpr auto CTermEQ = terminating(std::equal_to{});
constexpr auto CTermNE = terminating(std::not_equal_to{});

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/predicate/while_loop.def"
#include "sve/veclib/members/define.inc"

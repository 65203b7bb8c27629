// Shifts.
#include "sve/veclib/integer/shift.h"

#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

// A compiler that sees in a shift's count no bits but those below the element's keeps it as narrow as the element.
template <class T, class Count>
constexpr Count count_below_bits(Count count) {
  return static_cast<Count>(count & (quern::element_bits<T> - 1));
}

// Counts are unsigned, for signed lanes too.
constexpr auto left = []<class T>(T x, auto count) {
  const auto n = as_unsigned(count);
  return n < quern::element_bits<T> ? static_cast<T>(x << count_below_bits<T>(n)) : T{0};
};
constexpr auto right = []<class T>(T x, auto count) {
  const auto n = as_unsigned(count);
  const T none_left = std::is_signed_v<T> ? static_cast<T>(x >> (quern::element_bits<T> - 1)) : T{0};
  return n < quern::element_bits<T> ? static_cast<T>(x >> count_below_bits<T>(n)) : none_left;
};
constexpr auto reversed_left = [](auto count, auto x) { return left(x, count); };
constexpr auto reversed_right = [](auto count, auto x) { return right(x, count); };

// A shift by a power of two rounds down; a negative value is first made greater by all that may be lost.
constexpr auto divided = []<class T>(T x, std::uint32_t count) {
  if (count == 0) return x;
  if (count >= quern::element_bits<T>) return T{0};
  const T sign = static_cast<T>(x >> (quern::element_bits<T> - 1));
  const T bias = static_cast<T>(as_unsigned(sign) >> count_below_bits<T>(quern::element_bits<T> - count));
  return static_cast<T>(add(x, bias) >> count_below_bits<T>(count));
};

// Lane by lane, the count that the doubleword around the lane holds, or one too great where the lane's type can't.
template <class T>
VecV wide_counts(const VecV& wide) {
  using U = std::make_unsigned_t<T>;
  constexpr std::uint64_t one_a_lane = ~std::uint64_t{0} / static_cast<U>(~U{0});
  VecV counts;
  for (std::size_t i = 0; i != lane_count<std::uint64_t>; ++i) {
    const std::uint64_t count = minimum{}(lane<std::uint64_t>(wide.bytes, i), std::uint64_t{quern::element_bits<T>});
    set_lane<std::uint64_t>(counts.bytes, i, count * one_a_lane);
  }
  return counts;
}

template <class Op>
constexpr auto merging_wide(Op op) {
  return [op]<class T>(T, const CpuContext& ctx, const VecV& a, const PredV& pg, const VecV& wide) {
    return merge_lanes<T>(op, ctx, a, pg, a, wide_counts<T>(wide));
  };
}
template <class Op>
constexpr auto unpredicated_wide(Op op) {
  return [op]<class T>(T, const CpuContext& ctx, const VecV& a, const VecV& wide) {
    return map_lanes<T>(op, ctx, a, wide_counts<T>(wide));
  };
}

constexpr auto ShlVVM = merging(left);
constexpr auto ShlRVVM = merging(reversed_left);
constexpr auto ShrVVM = merging(right);
constexpr auto ShrRVVM = merging(reversed_right);
constexpr auto ShlVWM = merging_wide(left);
constexpr auto ShrVWM = merging_wide(right);
constexpr auto ShlVWX = unpredicated_wide(left);
constexpr auto ShrVWX = unpredicated_wide(right);
constexpr auto ShlVIM = merging(left);
constexpr auto ShrVIM = merging(right);
constexpr auto ShrDVIM = merging(divided);
constexpr auto ShlVIX = unpredicated(left);
constexpr auto ShrVIX = unpredicated(right);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/shift.def"
#include "sve/veclib/members/define.inc"

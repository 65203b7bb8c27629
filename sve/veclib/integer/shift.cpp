// Shifts.
#include "sve/veclib/integer/shift.h"

#include "sve/state/integer_operations.h"
#include "sve/state/packed_shift.h"
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

// Whole vectors by doublewords: each by a count of its own, or all by one.
template <class T>
constexpr auto doubleword_left = [](std::uint64_t x, std::uint64_t count) { return packed_left<T>(x, count); };
template <class T>
constexpr auto doubleword_right = [](std::uint64_t x, std::uint64_t count) { return packed_right<T>(x, count); };

constexpr auto all_left = []<class T>(T, const CpuContext& ctx, const VecV& a, const auto& count) {
  return map_lanes<std::uint64_t>(doubleword_left<T>, ctx, a, count);
};
constexpr auto all_right = []<class T>(T, const CpuContext& ctx, const VecV& a, const auto& count) {
  return map_lanes<std::uint64_t>(doubleword_right<T>, ctx, a, count);
};
constexpr auto merging_left = []<class T>(T, const CpuContext& ctx, const VecV& a, const PredV& pg, const auto& count) {
  return merge_lanes<std::uint64_t, T>(doubleword_left<T>, ctx, a, pg, a, count);
};
constexpr auto merging_right = []<class T>(T, const CpuContext& ctx, const VecV& a, const PredV& pg,
                                           const auto& count) {
  return merge_lanes<std::uint64_t, T>(doubleword_right<T>, ctx, a, pg, a, count);
};

constexpr auto ShlVVM = merging(left);
constexpr auto ShlRVVM = merging(reversed_left);
constexpr auto ShrVVM = merging(right);
constexpr auto ShrRVVM = merging(reversed_right);
constexpr auto ShlVWM = merging_left;
constexpr auto ShrVWM = merging_right;
constexpr auto ShlVWX = all_left;
constexpr auto ShrVWX = all_right;
constexpr auto ShlVIM = merging_left;
constexpr auto ShrVIM = merging_right;
// A shift by a power of two rounds down; a negative value is first made greater by all that may be lost.
constexpr auto ShrDVIM = []<class T>(T, const CpuContext& ctx, const VecV& a, const PredV& pg, std::uint32_t count) {
  if (count >= quern::element_bits<T>) return merge_lanes<T>([](T) { return T{0}; }, ctx, a, pg, a);
  const T rounding = static_cast<T>((std::make_unsigned_t<T>{1} << count) - 1);
  const auto round_up = [=](T x) { return x < 0 ? add(x, rounding) : x; };
  return merge_lanes<std::uint64_t, T>(doubleword_right<T>, ctx, a, pg, map_lanes<T>(round_up, ctx, a), count);
};
constexpr auto ShlVIX = all_left;
constexpr auto ShrVIX = all_right;

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/shift.def"
#include "sve/veclib/members/define.inc"

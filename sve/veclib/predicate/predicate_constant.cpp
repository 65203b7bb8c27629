// Predicates that depend on no predicate.
#include "sve/veclib/predicate/predicate_constant.h"

#include "sve/arith/predicate/predicate_support.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto False = [](auto, const CpuContext&) { return PredV{}; };

constexpr auto TrueI = []<class T>(T, const CpuContext& ctx, std::uint64_t pattern) {
  const int count = VecTrueILength(pattern, static_cast<int>(lanes<T>(ctx)));
  return first_elements<T>(static_cast<std::size_t>(count));
};
constexpr auto TrueFlgI = []<class T>(T type, CpuContext& ctx, std::uint64_t pattern) {
  const PredV result = TrueI(type, ctx, pattern);
  return with_flags<T>(result, result, ctx);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/predicate/predicate_constant.def"
#include "sve/veclib/members/define.inc"

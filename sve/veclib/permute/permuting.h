// Making permutations of lanes into families.
#pragma once

#include <cstddef>
#include <type_traits>

#include "sve/state/predicate_bits.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {

// (sources...): permute(result's bytes, number of lanes, sources' bytes...) writes all lanes. The number is a constant
// where the whole vector is in use, so that the loops come out as vector instructions.
template <class Permute>
constexpr auto permuting(Permute permute) {
  return [permute]<class T>(T, const CpuContext& ctx, const auto&... sources) {
    VecV result;
    if (const std::size_t count = lanes<T>(ctx); count == lane_count<T>) [[likely]] {
      permute.template operator()<T>(result.bytes, std::integral_constant<std::size_t, lane_count<T>>{},
                                     sources.bytes...);
    } else {
      result = {};
      permute.template operator()<T>(result.bytes, count, sources.bytes...);
    }
    return result;
  };
}

// A predicate with a byte for each bit: its elements are as wide as a vector's lanes, so that a vector's permutation
// moves them with all their bits.
inline VecV spread(const PredV& predicate) {
  VecV bytes;
  from_pred(predicate, bytes.bytes);
  return bytes;
}

// A family of vectors as one of predicates.
template <class Family>
constexpr auto on_predicates(Family family) {
  return [family](auto type, const CpuContext& ctx, const auto&... predicates) {
    return to_pred(family(type, ctx, spread(predicates)...).bytes);
  };
}

}  // namespace quern::veclib

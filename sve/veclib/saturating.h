// Sums and differences saturated to a lane's type, without leaving its width, so that a vector takes whole lanes.
#pragma once

#include <limits>
#include <type_traits>

#include "sve/state/integer_operations.h"

namespace quern::veclib {

// What a signed result beyond the range saturates to: a bound of the type, by the sign of the first operand.
template <class T>
constexpr T bound_towards(T a) {
  return static_cast<T>((a >> (quern::element_bits<T> - 1)) ^ std::numeric_limits<T>::max());
}

// a + b and a - b. b is of a's width and may be unsigned where a is signed (SQADD, UQADD, SQSUB, UQSUB).
template <class T, class U>
constexpr T saturating_add(T a, U b) {
  const T wrapped = add(a, static_cast<T>(b));
  if constexpr (std::is_unsigned_v<T>) return wrapped < a ? std::numeric_limits<T>::max() : wrapped;
  if constexpr (std::is_unsigned_v<U>) return wrapped < a ? std::numeric_limits<T>::max() : wrapped;
  // Signed: it overflowed if the sum's sign is neither operand's.
  return static_cast<T>((a ^ wrapped) & (b ^ wrapped)) < 0 ? bound_towards(a) : wrapped;
}
template <class T, class U>
constexpr T saturating_subtract(T a, U b) {
  const T wrapped = subtract(a, static_cast<T>(b));
  if constexpr (std::is_unsigned_v<U>) return wrapped > a ? std::numeric_limits<T>::min() : wrapped;
  // Signed: it overflowed if the operands' signs differ, and the difference's is not the first one's.
  return static_cast<T>((a ^ b) & (a ^ wrapped)) < 0 ? bound_towards(a) : wrapped;
}

}  // namespace quern::veclib

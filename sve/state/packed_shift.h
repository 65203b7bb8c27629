// Shifts of all elements of type T in a doubleword by one count. Whole vectors go by doublewords where one count serves
// many elements, as vectors shift narrow elements at more cost, or not at all. Shifts and differences alone do it, so
// that vectors of doublewords take it with a count for each.
#pragma once

#include <cstdint>
#include <type_traits>

#include "sve/state/integer_operations.h"

namespace quern {

// The number 1 as every element of a doubleword.
template <class T>
inline constexpr std::uint64_t ones_apiece = ~std::uint64_t{0} / static_cast<std::make_unsigned_t<T>>(-1);

// A count, or the greatest below the element's bits.
template <class T>
constexpr std::uint64_t below_bits(std::uint64_t count) {
  return minimum{}(count, std::uint64_t{element_bits<T> - 1});
}

// The number 2 to the power n + 1 as every element: in one of as many bits, that is 1 in the next one.
template <class T>
constexpr std::uint64_t doubled_powers(std::uint64_t n) {
  return ones_apiece<T> << n << 1;
}

// What is shifted out of one element into another is masked away: each mask is a difference of two powers of two in
// every element, which doesn't borrow beyond it.
template <class T>
constexpr std::uint64_t packed_left(std::uint64_t elements, std::uint64_t count) {
  const std::uint64_t n = below_bits<T>(count);
  const std::uint64_t kept = doubled_powers<T>(element_bits<T> - 1) - (ones_apiece<T> << n);
  return n == count ? elements << n & kept : 0;
}

// For signed elements, those that are negative get ones on top: n of them above their sign's new place, and itself.
template <class T>
constexpr std::uint64_t packed_right(std::uint64_t elements, std::uint64_t count) {
  const std::uint64_t n = below_bits<T>(count);
  const std::uint64_t kept = doubled_powers<T>(element_bits<T> - 1 - n) - ones_apiece<T>;
  const std::uint64_t shifted = elements >> n & kept;
  if constexpr (std::is_unsigned_v<T>) return n == count ? shifted : 0;
  const std::uint64_t negative = elements & ones_apiece<T> << (element_bits<T> - 1);
  return shifted | ((negative << 1) - (negative >> n));
}

}  // namespace quern

// Arithmetic on lanes that wraps at the lane's width, whatever the sign: computed unsigned, as signed numbers would
// overflow.
#pragma once

#include <type_traits>

namespace quern::veclib {

template <class T>
constexpr auto as_unsigned(T x) {
  return static_cast<std::make_unsigned_t<T>>(x);
}

template <class T>
constexpr T sum(T a, T b) {
  return static_cast<T>(as_unsigned(a) + as_unsigned(b));
}

template <class T>
constexpr T difference(T a, T b) {
  return static_cast<T>(as_unsigned(a) - as_unsigned(b));
}

// Narrow lanes would multiply as int, which may overflow.
template <class T>
constexpr T product(T a, T b) {
  return static_cast<T>(1u * as_unsigned(a) * as_unsigned(b));
}

}  // namespace quern::veclib

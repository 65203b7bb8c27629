// Operations on integer elements that several handlers have. They see elements as unsigned numbers, and their result is
// cut to the element, so that all arithmetic wraps.
#pragma once

#include <type_traits>

namespace quern {

template <class T>
inline constexpr unsigned int element_bits = 8 * sizeof(T);

template <class T>
constexpr auto as_signed(T x) {
  return static_cast<std::make_signed_t<T>>(x);
}

// The low half of a product. Narrow elements would multiply as int, which may overflow.
template <class T>
constexpr T multiply(T a, T b) {
  return static_cast<T>(1u * a * b);
}

// The greater and the smaller of two elements, unsigned and signed. On values, not references: so the compiler sees the
// vector instruction.
struct maximum {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return a < b ? b : a;
  }
};
struct minimum {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return b < a ? b : a;
  }
};
struct signed_maximum {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return static_cast<T>(maximum{}(as_signed(a), as_signed(b)));
  }
};
struct signed_minimum {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return static_cast<T>(minimum{}(as_signed(a), as_signed(b)));
  }
};

}  // namespace quern

// Operations on integer elements that handlers and the vector library share. All arithmetic wraps at the element's
// width, whatever its sign: it is computed unsigned, as signed numbers would overflow.
#pragma once

#include <type_traits>

namespace quern {

template <class T>
inline constexpr unsigned int element_bits = 8 * sizeof(T);

template <class T>
constexpr auto as_signed(T x) {
  return static_cast<std::make_signed_t<T>>(x);
}
template <class T>
constexpr auto as_unsigned(T x) {
  return static_cast<std::make_unsigned_t<T>>(x);
}

template <class T>
constexpr T add(T a, T b) {
  return static_cast<T>(as_unsigned(a) + as_unsigned(b));
}
template <class T>
constexpr T subtract(T a, T b) {
  return static_cast<T>(as_unsigned(a) - as_unsigned(b));
}
// Narrow elements would multiply as int, which may overflow.
template <class T>
constexpr T multiply(T a, T b) {
  return static_cast<T>(1u * as_unsigned(a) * as_unsigned(b));
}

// AArch64's quotient: that by 0 is 0. By tests that keep a host whose division traps from doing so.
template <class T>
constexpr T quotient(T dividend, T divisor) {
  if (divisor == 0) return 0;
  if constexpr (std::is_signed_v<T>) {
    if (divisor == -1) return subtract(T{0}, dividend);
  }
  return static_cast<T>(dividend / divisor);
}

// The greater and the smaller of two elements, in the elements' own sign and signed. On values, not references: so the
// compiler sees the vector instruction.
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

// A way for a function to use the processor's widest vectors, where the compiler may otherwise count on narrow ones
// only.
#pragma once

#include <cstddef>
#include <type_traits>

namespace quern {

// The bytes of a vector register, as a type.
template <std::size_t bytes>
using vectors_of = std::integral_constant<std::size_t, bytes>;

// Clang, which fuzzes and lints, does without.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define QUERN_BY_WIDEST_VECTORS

// flatten: all that `body` calls is compiled into this function, and so for its vectors.
template <class Body, class... Argument>
[[gnu::target("avx2"), gnu::flatten]] auto by_avx2(Body body, Argument... argument) {
  return body(vectors_of<32>{}, argument...);
}

template <class Body, class... Argument>
[[gnu::target("avx512bw,prefer-vector-width=512"), gnu::flatten]] auto by_avx512(Body body, Argument... argument) {
  return body(vectors_of<64>{}, argument...);
}

// Out of line, like the others: what decides among them stays short.
template <class Body, class... Argument>
[[gnu::noinline]] auto by_baseline(Body body, Argument... argument) {
  return body(vectors_of<16>{}, argument...);
}

// body(vectors_of<...>{}, argument...). The body captures nothing, so that its arguments stay in registers.
template <class Body, class... Argument>
inline auto by_widest_vectors(Body body, Argument... argument) {
  if (__builtin_cpu_supports("avx512bw")) return by_avx512(body, argument...);
  if (__builtin_cpu_supports("avx2")) return by_avx2(body, argument...);
  return by_baseline(body, argument...);
}

#else

template <class Body, class... Argument>
inline auto by_widest_vectors(Body body, Argument... argument) {
  return body(vectors_of<16>{}, argument...);
}

#endif

}  // namespace quern

// Moves of all lanes of a register at once, and the test for when they will do. `vectors` is what by_widest_vectors
// gives; `z` and `pg` are a register's bytes.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "sve/handlers/memory/widest_vectors.h"
#include "sve/state/lanes.h"

#ifdef QUERN_BY_WIDEST_VECTORS
#include <immintrin.h>
#endif

namespace quern {

// In the names below T is the element in memory and U the register's lane. U is unsigned; a signed T sign-extends.

// Any access of application memory may fault, and what has been done until then must be in place for a signal handler
// to see: no access may move, or merge with another, across this point.
inline void settle() { std::atomic_signal_fence(std::memory_order_seq_cst); }

// Bit 0 of each lane of U, in 64 bits.
template <class U>
inline constexpr std::uint64_t lowest_bits = ~std::uint64_t{0} / static_cast<U>(~U{0});

// Whether every lane of U is active.
template <class U>
inline bool all_active(auto, const unsigned char* pg) {
  static_assert(std::is_unsigned_v<U>);
  std::uint64_t common = lowest_bits<U>;
  for (std::size_t i = 0; i != lane_count<std::uint64_t>; ++i) common &= lane<std::uint64_t>(pg, i);
  return common == lowest_bits<U>;
}

// Copies a register's worth of bytes in ascending order, so that a fault is the first vector's.
template <std::size_t vector_bytes>
inline void copy_vector(vectors_of<vector_bytes>, unsigned char* to, const unsigned char* from) {
  constexpr std::size_t chunk_bytes = VL_BYTES < vector_bytes ? VL_BYTES : vector_bytes;
  using chunk [[gnu::vector_size(chunk_bytes)]] = unsigned char;
#pragma GCC unroll 16
  for (std::size_t i = 0; i != VL_BYTES; i += chunk_bytes) {
    chunk moved;
    std::memcpy(&moved, from + i, chunk_bytes);
    std::memcpy(to + i, &moved, chunk_bytes);
    settle();
  }
}

// Every lane of z from an element.
template <class T, class U>
inline void extend_lanes(auto, unsigned char* z, const unsigned char* elements) {
#pragma GCC ivdep  // no application's memory is the register file
  for (std::size_t i = 0; i != lane_count<U>; ++i) set_lane<U>(z, i, static_cast<U>(lane<T>(elements, i)));
}

// Every element from the low bytes of a lane of z.
template <class T, class U>
inline void truncate_lanes(auto, unsigned char* elements, const unsigned char* z) {
#pragma GCC ivdep
  for (std::size_t i = 0; i != lane_count<U>; ++i) set_lane<T>(elements, i, static_cast<T>(lane<U>(z, i)));
}

#ifdef QUERN_BY_WIDEST_VECTORS

// The same where the compiler knows no short way: it tests a vector by folding it again and again, and goes from bytes
// to doublewords and back through the widths between. Conversions without a mask would do, but make it warn.

inline constexpr __mmask8 all_eight = 0xFF;
template <class T, class U>
inline constexpr bool bytes_in_doublewords = VL_BYTES >= 64 && sizeof(T) == 1 && sizeof(U) == 8;

template <class U>
[[gnu::target("avx512bw")]] inline bool all_active(vectors_of<64>, const unsigned char* pg) requires(VL_BYTES >= 64) {
  const __m512i lowest = _mm512_set1_epi64(static_cast<long long>(lowest_bits<U>));
  __m512i common = lowest;
#pragma GCC unroll 4
  for (std::size_t i = 0; i != VL_BYTES; i += 64) common = _mm512_and_si512(common, _mm512_loadu_si512(pg + i));
  return _mm512_cmpneq_epi64_mask(common, lowest) == 0;
}

template <class T, class U>
[[gnu::target("avx512bw")]] inline void extend_lanes(
    vectors_of<64>, unsigned char* z, const unsigned char* elements) requires(bytes_in_doublewords<T, U>) {
#pragma GCC unroll 4
  for (std::size_t i = 0; i != VL_BYTES; i += 64) {
    const __m128i eight = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(elements + i / 8));
    _mm512_storeu_si512(z + i, std::is_signed_v<T> ? _mm512_maskz_cvtepi8_epi64(all_eight, eight)
                                                   : _mm512_maskz_cvtepu8_epi64(all_eight, eight));
  }
}

template <class T, class U>
[[gnu::target("avx512bw")]] inline void truncate_lanes(vectors_of<64>, unsigned char* elements,
                                                       const unsigned char* z) requires(bytes_in_doublewords<T, U>) {
#pragma GCC unroll 4
  for (std::size_t i = 0; i != VL_BYTES; i += 64)
    _mm_storel_epi64(reinterpret_cast<__m128i*>(elements + i / 8),
                     _mm512_maskz_cvtepi64_epi8(all_eight, _mm512_loadu_si512(z + i)));
}

#endif

}  // namespace quern

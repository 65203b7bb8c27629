// Vectors, predicates and memory as lists of elements, written apart from the emulator's own lanes: byte by byte, by
// size codes instead of types.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sve/state/cpu_context.h"
#include "sve/state/cpu_state.h"

namespace quern {

using elements = std::vector<std::uint64_t>;  // of a vector, zero-extended
using flags_of = std::vector<bool>;           // of a predicate, one for each element

// A size code as a number of elements in a vector, of bits, and as the letter of its element.
constexpr std::size_t count_of(std::uint32_t size) { return static_cast<std::size_t>(VL_BYTES) >> size; }
constexpr unsigned element_width(std::uint32_t size) { return 8u << size; }
constexpr char size_letter(std::uint32_t size) { return "bhsd"[size]; }

// The low `width` bits of x as a signed number, and as an unsigned one.
constexpr std::int64_t signed_value(unsigned width, std::uint64_t x) {
  return static_cast<std::int64_t>(x << (64 - width)) >> (64 - width);
}
constexpr std::uint64_t low_bits(unsigned width, std::uint64_t x) { return x << (64 - width) >> (64 - width); }

// The element of `bytes` bytes at `at`, extended to 64 bits; and its replacement by the low bits of `value`.
inline std::uint64_t element_at(const unsigned char* at, std::size_t bytes, bool sign_extend = false) {
  std::uint64_t value = sign_extend && (at[bytes - 1] & 0x80) != 0 ? ~std::uint64_t{0} : 0;
  for (std::size_t i = bytes; i-- != 0;) value = value << 8 | at[i];
  return value;
}
inline void put_element(unsigned char* at, std::size_t bytes, std::uint64_t value) {
  for (std::size_t i = 0; i != bytes; ++i) at[i] = static_cast<unsigned char>(value >> 8 * i);
}

// Element i of a size code in a vector's bytes.
inline std::uint64_t element(const unsigned char* z, std::uint32_t size, std::size_t i) {
  return element_at(z + (i << size), std::size_t{1} << size);
}
inline void set_element(unsigned char* z, std::uint32_t size, std::size_t i, std::uint64_t value) {
  put_element(z + (i << size), std::size_t{1} << size, value);
}

// All elements of a vector's bytes.
inline elements read_elements(const unsigned char* z, std::uint32_t size) {
  elements all(count_of(size));
  for (std::size_t i = 0; i != all.size(); ++i) all[i] = element(z, size, i);
  return all;
}
inline void write_elements(unsigned char* z, std::uint32_t size, const elements& all) {
  ASSERT_EQ(all.size(), count_of(size));
  for (std::size_t i = 0; i != all.size(); ++i) set_element(z, size, i, all[i]);
}
inline void fill_elements(unsigned char* z, std::uint32_t size, std::uint64_t value) {
  write_elements(z, size, elements(count_of(size), value));
}

// Whether element i of a predicate's bytes is active: bit 0 of its first byte.
inline bool element_active(const unsigned char* p, std::uint32_t size, std::size_t i) { return p[i << size] % 2 == 1; }

inline flags_of read_flags(const unsigned char* p, std::uint32_t size) {
  flags_of all(count_of(size));
  for (std::size_t i = 0; i != all.size(); ++i) all[i] = element_active(p, size, i);
  return all;
}
// Each element as 1 or 0 in its whole width.
inline void write_flags(unsigned char* p, std::uint32_t size, const flags_of& all) {
  write_elements(p, size, elements(all.begin(), all.end()));
}

// The same of the library's values.
inline elements read_elements(const VecV& value, std::uint32_t size) { return read_elements(value.bytes, size); }
inline flags_of read_flags(const PredV& value, std::uint32_t size) {
  unsigned char bytes[VL_BYTES];
  from_pred(value, bytes);
  return read_flags(bytes, size);
}

}  // namespace quern

// A source of pseudo-random numbers that gives the same sequence on every platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quern {

// SplitMix64. Not for several calls within one expression: their order would be the compiler's.
class random_source {
 public:
  explicit random_source(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t z = state_;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
    z = (z ^ z >> 27) * 0x94D049BB133111EB;
    return z ^ z >> 31;
  }
  // 0 to n - 1.
  std::uint64_t below(std::uint64_t n) { return next() % n; }
  // low to high, both included.
  std::int64_t between(std::int64_t low, std::int64_t high) {
    return low + static_cast<std::int64_t>(below(static_cast<std::uint64_t>(high - low) + 1));
  }
  // True once in n times.
  bool one_in(std::uint64_t n) { return below(n) == 0; }
  // An element of an array.
  template <class Array>
  auto pick(const Array& array) {
    return array[below(std::size(array))];
  }

 private:
  std::uint64_t state_;
};

// FNV-1a, for names and digests.
inline constexpr std::uint64_t hash_start = 0xCBF29CE484222325;
inline std::uint64_t hash_bytes(std::uint64_t hash, const void* bytes, std::size_t size) {
  for (std::size_t i = 0; i != size; ++i)
    hash = (hash ^ static_cast<const unsigned char*>(bytes)[i]) * std::uint64_t{0x100000001B3};
  return hash;
}
inline std::uint64_t hash_text(std::string_view text) { return hash_bytes(hash_start, text.data(), text.size()); }

}  // namespace quern

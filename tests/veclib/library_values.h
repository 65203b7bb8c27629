// Values that library functions are called with: contexts, predicates, vectors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <random>
#include <vector>

#include "sve/arith/predicate/predicate_support.h"
#include "sve/veclib/frame.h"

inline bool operator==(const VecV& a, const VecV& b) { return std::memcmp(a.bytes, b.bytes, VL_BYTES) == 0; }
inline bool operator==(const PredV& a, const PredV& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

namespace quern::veclib {

constexpr std::uint32_t flag_n = 8u << 28, flag_z = 4u << 28, flag_c = 2u << 28, flag_v = 1u << 28;

// What flags say of a result that has no active element set.
constexpr std::uint32_t none_set = flag_z | flag_c;

inline CpuContext context(std::uint32_t vl_units = VL_BITS / 64) {
  CpuContext ctx{};
  ctx.vl_units = vl_units;
  return ctx;
}

// The predicate of these elements of T's width.
template <class T>
inline PredV predicate_of(std::initializer_list<std::size_t> numbers) {
  PredV predicate{};
  for (const std::size_t i : numbers) set_element<T>(predicate, i, true);
  return predicate;
}

// The predicate of all elements; of the tag P those are bits.
template <class T>
inline PredV all_true() {
  return first_elements<T>(lane_count<T>);
}

// All bits at random, those that no element of a width reads too.
inline PredV random_predicate(std::mt19937_64& random) {
  PredV predicate{};
  for (std::uint64_t& word : predicate.words) word = random();
  return predicate & all_true<std::uint8_t>();
}

// About one bit in eight.
inline PredV sparse_predicate(std::mt19937_64& random) {
  return random_predicate(random) & random_predicate(random) & random_predicate(random);
}

inline VecV random_vector(std::mt19937_64& random) {
  VecV vector;
  for (unsigned char& byte : vector.bytes) byte = static_cast<unsigned char>(random());
  return vector;
}

// Lane i is first + i * step.
template <class T>
inline VecV counting_vector(T first, T step = 1) {
  VecV vector;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(vector.bytes, i, static_cast<T>(first + static_cast<T>(i) * step));
  return vector;
}

template <class T>
inline T lane_of(const VecV& vector, std::size_t i) {
  return lane<T>(vector.bytes, i);
}

// A context under this floating-point control word.
inline CpuContext controlled(std::uint32_t fpcr) {
  CpuContext ctx = context();
  ctx.fpcr = fpcr;
  return ctx;
}

// A vector by its first lanes; all others are 0.
template <class T>
VecV vector_of(std::initializer_list<T> lanes) {
  VecV vector{};
  std::size_t i = 0;
  for (const T each : lanes) set_lane<T>(vector.bytes, i++, each);
  return vector;
}

template <class T>
std::vector<T> first_lanes(const VecV& vector, std::size_t count) {
  std::vector<T> lanes;
  for (std::size_t i = 0; i != count; ++i) lanes.push_back(lane<T>(vector.bytes, i));
  return lanes;
}

// The name of a parameterised test's case: its parameter's `name`.
inline constexpr auto case_name = [](const auto& test) { return test.param.name; };

}  // namespace quern::veclib

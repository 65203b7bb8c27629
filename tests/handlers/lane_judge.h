// Handlers whose whole meaning is a function of one lane, against that function: at each size, under predicates of
// every kind, with each register equal to each other. Half of the lanes have values at which arithmetic changes its
// ways, so that two such meet often (the least number and -1, a count and the width).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tests/handlers/agreement.h"

namespace quern {

// A size code as the letter of its element, and as a number of bits.
constexpr char size_letter(std::uint32_t size) { return "bhsd"[size]; }
constexpr unsigned element_width(std::uint32_t size) { return 8u << size; }

// Element i of a size code, zero-extended, in a register's bytes; and its replacement by the low bits of `value`.
std::uint64_t element(const unsigned char* bytes, std::uint32_t size, std::size_t i);
void set_element(unsigned char* bytes, std::uint32_t size, std::size_t i, std::uint64_t value);

// Every element of a vector.
void fill(cpu_state& state, unsigned num, std::uint32_t size, std::uint64_t value);

// The low `width` bits of x as a signed number, and as an unsigned one.
constexpr std::int64_t signed_value(unsigned width, std::uint64_t x) {
  return static_cast<std::int64_t>(x << (64 - width)) >> (64 - width);
}
constexpr std::uint64_t low_bits(unsigned width, std::uint64_t x) { return x << (64 - width) >> (64 - width); }

// Whether lane i of a size is active in a predicate.
bool lane_active(const unsigned char* predicate, std::uint32_t size, std::size_t i);

// Every kind of governing predicate. The bytes that don't count, and the upper bits of those that do, hold rubbish.
enum class lanes_on { none, all, alternate, random };
inline constexpr lanes_on every_predicate[] = {lanes_on::none, lanes_on::all, lanes_on::alternate, lanes_on::random};

// A whole register file of random bytes; half of the elements of Z registers, taken as `size`, are values at which
// operations change their ways: 0, small counts, the greatest and least numbers. P0 governs lanes of `size`.
cpu_state& random_state(std::uint32_t size, lanes_on predicate);

// The registers that a case uses.
struct lane_registers {
  unsigned d, n, m;
};

// What a handler with up to three vectors should do to lanes. `call` runs it at a size with P0; `lane` is the new
// element of d, of which the low bits count, from the width and the old elements of d, n, m.
struct lane_case {
  std::string name;
  std::string_view sizes;  // of "bhsd"
  std::function<void(cpu_state&, std::uint32_t size, const lane_registers&)> call;
  std::function<std::uint64_t(unsigned width, std::uint64_t d, std::uint64_t n, std::uint64_t m)> lane;
  bool predicated = true;
  bool zeroing = false;
};

// Runs a case at each of its sizes under each predicate with each equality of registers, and expects the whole register
// file to be as the scalar definition says.
void judge_lanes(const lane_case& c);

// What a reduction should do: element 0 of Vd, `result_width` bits of it (0: the element's width), from folding the
// active lanes of Zn from `start` on; all else of Vd zero.
struct reduction_case {
  const char* name;
  aarch64_decode_rc (*handler)(cpu_state*, unsigned int, aarch64_p_reg, aarch64_z_reg);
  unsigned result_width;
  std::uint64_t (*start)(unsigned width);
  std::uint64_t (*fold)(unsigned width, std::uint64_t folded, std::uint64_t element);
};
void judge_reduction(const reduction_case& c);

}  // namespace quern

// Random register contents.
#include "tests/random_cases/random_registers.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace quern {
namespace {

constexpr std::uint64_t low_bits(unsigned n) { return n >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << n) - 1; }

// Around the ends of the signed and unsigned ranges, and around the number of bits (shift counts).
std::uint64_t integer_corner(random_source& random, unsigned bits) {
  const std::uint64_t top = std::uint64_t{1} << (bits - 1);
  const std::array<std::uint64_t, 6> bases{0, top, top - 1, ~std::uint64_t{0}, bits, 2 * bits};
  const std::uint64_t base = random.pick(bases);
  return base + static_cast<std::uint64_t>(random.between(-1, 1));
}

struct float_format {
  unsigned bits, fraction;
  std::uint64_t exponents() const { return low_bits(bits - 1 - fraction); }
  std::uint64_t bias() const { return exponents() >> 1; }
  std::uint64_t number(std::uint64_t sign, std::uint64_t exponent, std::uint64_t significand) const {
    return sign << (bits - 1) | (exponent & exponents()) << fraction | (significand & low_bits(fraction));
  }
};

float_format format_of(unsigned bits) { return {bits, bits == 64 ? 52u : bits == 32 ? 23u : 10u}; }

// Zeros, infinities, NaNs, the ends of the normal and subnormal ranges, and small numbers, of either sign.
std::uint64_t float_corner(random_source& random, unsigned bits) {
  const float_format f = format_of(bits);
  const std::array<std::uint64_t, 8> exponents{
      0, 0, 1, f.exponents() - 1, f.exponents(), f.exponents(), f.bias(), f.bias() + 1};
  const std::array<std::uint64_t, 6> significands{0,
                                                  1,
                                                  low_bits(f.fraction),
                                                  std::uint64_t{1} << (f.fraction - 1),
                                                  std::uint64_t{1} << (f.fraction - 2),
                                                  random.next()};
  const std::uint64_t e = random.pick(exponents);
  const std::uint64_t s = random.pick(significands);
  return f.number(random.below(2), e, s);
}

// A number of the size of 1, or of an integer's ends, or of a narrower format's, mostly halfway between numbers of
// fewer bits: sums of such round, cancel and overflow, and so do conversions.
std::uint64_t float_near_one(random_source& random, unsigned bits) {
  const float_format f = format_of(bits);
  constexpr std::int64_t powers[] = {0, 0, 0, 7, 8, 15, 16, 31, 32, 63, 64, -14, -24, -126, -149, 127, 128};
  const std::int64_t power = random.pick(powers);
  const auto e = f.bias() + static_cast<std::uint64_t>(power + random.between(-2, 2));
  const std::uint64_t last = random.below(f.fraction);  // the lowest bit that is set
  const std::uint64_t s = (random.next() & ~low_bits(static_cast<unsigned>(last))) | std::uint64_t{1} << last;
  const bool whole = random.one_in(4);
  return f.number(random.below(2), e, whole ? 0 : s);
}

using lane_source = std::uint64_t (*)(random_source& random, unsigned bits);

std::uint64_t small_number(random_source& random, unsigned bits) { return random.below(2 * bits); }
std::uint64_t small_signed(random_source& random, unsigned) {
  return static_cast<std::uint64_t>(random.between(-3, 3));
}

// Lanes from a palette of sixteen values: cheap, and equal lanes are frequent.
void fill_lanes(random_source& random, unsigned char* z, std::uint32_t size, lane_source source) {
  const std::size_t bytes = std::size_t{1} << size;
  std::array<std::uint64_t, 16> palette;
  for (auto& value : palette) value = source(random, static_cast<unsigned>(8 * bytes));
  std::uint64_t picks = 0;
  for (std::size_t lane = 0; lane != VL_BYTES / bytes; ++lane, picks >>= 4) {
    if (lane % 16 == 0) picks = random.next();
    std::memcpy(z + lane * bytes, &palette[picks & 15], bytes);
  }
}

void fill_bytes(random_source& random, unsigned char* z) {
  for (int at = 0; at != VL_BYTES; at += 8) {
    const std::uint64_t value = random.next();
    std::memcpy(z + at, &value, 8);
  }
}

// The first lane in all lanes.
void spread_first(unsigned char* z, std::uint32_t size) {
  const std::size_t bytes = std::size_t{1} << size;
  for (std::size_t at = bytes; at != VL_BYTES; at += bytes) std::memcpy(z + at, z, bytes);
}

// Vector n; equals another one but for a few bytes now and then, so that comparisons find equals.
void fill_vector(random_source& random, std::uint32_t row_size, cpu_state& state, std::uint64_t n) {
  const std::uint32_t fitting = std::min(row_size, size_d);
  const std::uint32_t size = random.one_in(4) ? static_cast<std::uint32_t>(random.below(4)) : fitting;
  unsigned char* const z = state.z[n];
  switch (random.below(10)) {
    case 0: return fill_lanes(random, z, size, small_number);
    case 1: return fill_lanes(random, z, size, small_signed);
    case 2: return fill_lanes(random, z, size, integer_corner);
    case 3: return fill_lanes(random, z, std::max(size, size_h), float_corner);
    case 4: fill_lanes(random, z, size, integer_corner); return spread_first(z, size);
    case 5:
      if (n == 0) break;
      std::memcpy(z, state.z[random.below(n)], VL_BYTES);
      for (int i = 0; i != 4; ++i) z[random.below(VL_BYTES)] ^= 1;
      return;
    default: break;
  }
  fill_bytes(random, z);
}

// The first `bytes` bytes become 1, the others 0.
void set_first_bytes(unsigned char* p, std::size_t bytes) {
  std::memset(p, 0, VL_BYTES);
  std::memset(p, 1, bytes);
}

// All bytes `rest`, but for about one in 32.
void fill_nearly(random_source& random, unsigned char* p, unsigned char rest) {
  std::memset(p, rest, VL_BYTES);
  for (int i = 0; i < VL_BYTES; i += 32) p[random.below(VL_BYTES)] = rest ^ 1;
}

void fill_evenly(random_source& random, unsigned char* p) {
  fill_bytes(random, p);
  for (int i = 0; i != VL_BYTES; ++i) p[i] &= 1;
}

// Only first bytes of elements stay set: what instructions of that element size leave.
void keep_first_bytes(unsigned char* p, std::uint32_t size) {
  const std::size_t bytes = std::size_t{1} << size;
  for (std::size_t i = 0; i != VL_BYTES; ++i)
    if (i % bytes != 0) p[i] = 0;
}

void fill_predicate(random_source& random, std::uint32_t row_size, unsigned char* p) {
  switch (random.below(8)) {
    case 0: set_first_bytes(p, 0); break;
    case 1: set_first_bytes(p, VL_BYTES); break;
    case 2: set_first_bytes(p, random.below(VL_BYTES + 1)); break;
    case 3: fill_nearly(random, p, 0); break;
    case 4: fill_nearly(random, p, 1); break;
    default: fill_evenly(random, p); break;
  }
  if (random.one_in(2)) keep_first_bytes(p, std::min(row_size, size_d));
}

void add_rubbish(random_source& random, unsigned char* p) {
  for (int at = 0; at != VL_BYTES; at += 8) {
    std::uint64_t bytes;
    std::memcpy(&bytes, p + at, 8);
    bytes |= random.next() & 0xFEFEFEFEFEFEFEFE;
    std::memcpy(p + at, &bytes, 8);
  }
}

// Scalars near each other and near the ends of the ranges, since loop conditions compare them.
std::uint64_t scalar(random_source& random, std::uint64_t pivot) {
  const auto near = static_cast<std::uint64_t>(random.between(-2 * VL_BYTES, 2 * VL_BYTES));
  switch (random.below(5)) {
    case 0: return near;
    case 1: return pivot + near;
    case 2: return integer_corner(random, 64);
    case 3: return integer_corner(random, 32) | random.next() << 32;
    default: return random.next();
  }
}

lane_source number_source(random_source& random) {
  constexpr lane_source sources[] = {float_corner, float_near_one, float_near_one};
  return random.pick(sources);
}

}  // namespace

void fill_registers(random_source& random, std::uint32_t size, bool clean, cpu_state& state) {
  const std::array<std::uint64_t, 4> pivots{random.next(), std::uint64_t{1} << 63, std::uint64_t{1} << 31,
                                            std::uint64_t{1} << 32};
  const std::uint64_t pivot = random.pick(pivots);
  for (auto& x : state.x) x = scalar(random, pivot);
  state.sp = scalar(random, pivot);
  state.nzcv = random.next();
  state.fpsr = random.one_in(2) ? 0 : static_cast<std::uint32_t>(random.next()) & 0x0800009F;  // QC and the flags
  state.fpcr = 0;
  for (std::uint64_t n = 0; n != 32; ++n) fill_vector(random, size, state, n);
  for (auto& p : state.p) fill_predicate(random, size, p);
  // FFR is all true up to somewhere: other contents have no defined effect on the architecture's loads.
  set_first_bytes(state.ffr, random.one_in(2) ? VL_BYTES : random.below(VL_BYTES + 1));
  if (clean) return;
  for (auto& p : state.p) add_rubbish(random, p);
  add_rubbish(random, state.ffr);
}

void fill_numbers(random_source& random, std::uint32_t size, cpu_state& state) {
  constexpr std::uint32_t modes = 0x07C80000;
  state.fpcr = random.one_in(4) ? 0 : static_cast<std::uint32_t>(random.next()) & modes;
  const std::uint32_t widest = std::clamp(size, size_h, size_d);
  const bool one_number = random.one_in(2);
  for (auto& z : state.z) {
    if (random.one_in(8)) continue;
    const bool narrower = random.one_in(4);
    const auto format = narrower ? static_cast<std::uint32_t>(random.between(size_h, widest)) : widest;
    fill_lanes(random, z, format, number_source(random));
    if (one_number) spread_first(z, widest);
  }
}

}  // namespace quern

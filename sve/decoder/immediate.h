// Immediates that need more than their field: shifted, counted down, expanded.
#pragma once

#include <bit>
#include <cstdint>

#include "sve/state/operands.h"

namespace quern {

// The low `width` bits of x as a signed number.
constexpr std::int32_t sign_extend(std::uint32_t x, int width) {
  return static_cast<std::int32_t>(x << (32 - width)) >> (32 - width);
}

// Bits 7..0, shifted left by 8 when bit 8 is set. Byte elements keep the shift too: ADD gives such words a meaning.
constexpr std::uint32_t shifted_immediate(std::uint32_t field) {
  return (field & 0xFF) << ((field & 0x100) != 0 ? 8 : 0);
}

// The same with bits 7..0 sign-extended first (DUP, CPY).
constexpr std::int32_t shifted_signed_immediate(std::uint32_t field) {
  return sign_extend(field, 8) * ((field & 0x100) != 0 ? 256 : 1);
}

// Right shifts are encoded as the element's bits minus the amount.
constexpr std::uint32_t right_shift_amount(std::uint32_t field, std::uint32_t size) { return (8u << size) - field; }

// The 64-bit mask of a 13-bit field N:immr:imms (DecodeBitMasks).
//
// The architecture reserves encodings that the field can hold all the same, and nobody may hang or crash an emulator
// with a word. A run of 64 ones at length 64 asks for 2^64 - 1 as "1 shifted by 64, minus 1", which wraps to no ones at
// all: 0. N = 0 with imms all ones has no element length, hence nothing to repeat: 0 too. Any other length is a power
// of two from 1 to 64, so the repetition always ends.
constexpr aarch64_sve_logical64_imm decode_bit_mask(std::uint32_t field) {
  const std::uint32_t n = field >> 12 & 1, immr = field >> 6 & 0x3F, imms = field & 0x3F;
  const std::uint32_t joined = n << 6 | (~imms & 0x3F);
  if (joined == 0) return {0};
  std::uint32_t size = std::bit_floor(joined);
  const std::uint32_t levels = size - 1, s = imms & levels, r = immr & levels;
  const std::uint64_t element = size == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << size) - 1;
  const std::uint64_t ones = s == 63 ? 0 : (std::uint64_t{1} << (s + 1)) - 1;
  std::uint64_t pattern = r == 0 ? ones : (ones >> r | ones << (size - r)) & element;
  for (; size != 64; size *= 2) pattern |= pattern << size;
  return {pattern};
}

// The number abcdefgh (VFPExpandImm) in half, single and double precision.
constexpr aarch64_sve_fp_dup_imm expand_fp_immediate(std::uint32_t field) {
  const std::uint32_t a = field >> 7 & 1, b = field >> 6 & 1, fraction = field & 0x3F;  // cd and efgh
  const std::uint32_t half = a << 15 | (b ^ 1) << 14 | fraction << 6 | (b != 0 ? 0x3000 : 0);
  const std::uint32_t single = a << 31 | (b ^ 1) << 30 | fraction << 19 | (b != 0 ? 0x3E000000 : 0);
  return {static_cast<std::uint16_t>(half), single,
          std::bit_cast<std::uint64_t>(static_cast<double>(std::bit_cast<float>(single)))};
}

}  // namespace quern

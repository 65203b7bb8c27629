// The AArch64 instructions that generated code is made of, as words.
#pragma once

#include <cstdint>

namespace quern::aarch64 {

using word = std::uint32_t;

// Register 31 is the zero register, or the stack pointer as a base and in an addition.
struct reg {
  word number;
};
inline constexpr reg x0{0}, x1{1}, x2{2}, x19{19}, x20{20}, sp{31}, zero{31};

enum class system_register : word { nzcv = 0x1B4200, fpcr = 0x1B4400, fpsr = 0x1B4420, tpidr_el0 = 0x1BD040 };

// `bits` low bits of a signed number of units of `unit` bytes.
constexpr word scaled(std::int64_t offset, std::int64_t unit, int bits) {
  return static_cast<word>(offset / unit) & ((1u << bits) - 1);
}
constexpr word place(reg t, reg base) { return base.number << 5 | t.number; }
constexpr word place(reg t, reg t2, reg base, std::int64_t offset, std::int64_t unit) {
  return scaled(offset, unit, 7) << 15 | t2.number << 10 | place(t, base);
}

// Pairs at base + offset: of 8 bytes a register, -512 to 504; of 16, -1024 to 1008.
constexpr word stp_x(reg t, reg t2, reg base, std::int64_t offset) {
  return 0xA9000000 | place(t, t2, base, offset, 8);
}
constexpr word ldp_x(reg t, reg t2, reg base, std::int64_t offset) {
  return 0xA9400000 | place(t, t2, base, offset, 8);
}
constexpr word stp_q(reg t, reg t2, reg base, std::int64_t offset) {
  return 0xAD000000 | place(t, t2, base, offset, 16);
}
constexpr word ldp_q(reg t, reg t2, reg base, std::int64_t offset) {
  return 0xAD400000 | place(t, t2, base, offset, 16);
}

// One register at base + offset, which is 0 to 4095 times its size.
constexpr word str_x(reg t, reg base, std::int64_t offset) {
  return 0xF9000000 | scaled(offset, 8, 12) << 10 | place(t, base);
}
constexpr word ldr_x(reg t, reg base, std::int64_t offset) {
  return 0xF9400000 | scaled(offset, 8, 12) << 10 | place(t, base);
}
constexpr word str_w(reg t, reg base, std::int64_t offset) {
  return 0xB9000000 | scaled(offset, 4, 12) << 10 | place(t, base);
}
constexpr word ldr_w(reg t, reg base, std::int64_t offset) {
  return 0xB9400000 | scaled(offset, 4, 12) << 10 | place(t, base);
}
constexpr word str_q(reg t, reg base, std::int64_t offset) {
  return 0x3D800000 | scaled(offset, 16, 12) << 10 | place(t, base);
}
constexpr word ldr_q(reg t, reg base, std::int64_t offset) {
  return 0x3DC00000 | scaled(offset, 16, 12) << 10 | place(t, base);
}

// The same at -256 to 255, not scaled.
constexpr word stur_x(reg t, reg base, std::int64_t offset) {
  return 0xF8000000 | scaled(offset, 1, 9) << 12 | place(t, base);
}
constexpr word ldur_x(reg t, reg base, std::int64_t offset) {
  return 0xF8400000 | scaled(offset, 1, 9) << 12 | place(t, base);
}

// The base moved by `offset` before the store, and after the load.
constexpr word str_x_pre(reg t, reg base, std::int64_t offset) {
  return 0xF8000C00 | scaled(offset, 1, 9) << 12 | place(t, base);
}
constexpr word ldr_x_post(reg t, reg base, std::int64_t offset) {
  return 0xF8400400 | scaled(offset, 1, 9) << 12 | place(t, base);
}
constexpr word stp_x_pre(reg t, reg t2, reg base, std::int64_t offset) {
  return 0xA9800000 | place(t, t2, base, offset, 8);
}
constexpr word ldp_x_post(reg t, reg t2, reg base, std::int64_t offset) {
  return 0xA8C00000 | place(t, t2, base, offset, 8);
}

// Relative to the instruction's own address; a literal is a multiple of 4 bytes away, less than 1 MiB.
constexpr word ldr_x_literal(reg t, std::int64_t distance) {
  return 0x58000000 | scaled(distance, 4, 19) << 5 | t.number;
}
constexpr word ldr_w_literal(reg t, std::int64_t distance) {
  return 0x18000000 | scaled(distance, 4, 19) << 5 | t.number;
}
constexpr word adr(reg t, std::int64_t distance) {
  return 0x10000000 | scaled(distance, 1, 2) << 29 | scaled(distance >> 2, 1, 19) << 5 | t.number;
}
constexpr word cbz_x(reg t, std::int64_t distance) { return 0xB4000000 | scaled(distance, 4, 19) << 5 | t.number; }
constexpr word cbnz_x(reg t, std::int64_t distance) { return 0xB5000000 | scaled(distance, 4, 19) << 5 | t.number; }
constexpr word tbz_x(reg t, word bit, std::int64_t distance) {
  return 0x36000000 | bit >> 5 << 31 | (bit & 31) << 19 | scaled(distance, 4, 14) << 5 | t.number;
}
constexpr word tbnz_x(reg t, word bit, std::int64_t distance) { return tbz_x(t, bit, distance) | 1 << 24; }

// The same instruction with another base.
constexpr word with_base(word w, reg base) { return (w & ~place({}, {31})) | place({}, base); }

// A conditional branch with a distance of 0, and where it is to lead: of 14 bits where it tests one bit, else of 19.
constexpr word with_distance(word branch, std::int64_t distance) {
  const bool tests_bit = (branch & 0x7E000000) == 0x36000000;
  return branch | scaled(distance, 4, tests_bit ? 14 : 19) << 5;
}

// The branch, the distances that it reaches, and where it leads.
inline constexpr std::int64_t branch_reach = 128 << 20;
constexpr word b(std::int64_t distance) { return 0x14000000 | scaled(distance, 4, 26); }
constexpr bool is_b(word w) { return w >> 26 == 0x05; }
constexpr std::int64_t b_distance(word w) { return static_cast<std::int32_t>(w << 6) / 16; }

constexpr word br(reg n) { return 0xD61F0000 | n.number << 5; }
constexpr word blr(reg n) { return 0xD63F0000 | n.number << 5; }
constexpr word mrs(reg t, system_register r) { return 0xD5200000 | static_cast<word>(r) | t.number; }
constexpr word msr(system_register r, reg t) { return 0xD5000000 | static_cast<word>(r) | t.number; }
constexpr word mov_x(reg d, reg m) { return 0xAA0003E0 | m.number << 16 | d.number; }
// n + value, n + value * 4096, and the same with minus; value is 0 to 4095. The stack pointer is allowed in both
// places.
constexpr word add_x(reg d, reg n, word value) { return 0x91000000 | value << 10 | place(d, n); }
constexpr word add_x_4096(reg d, reg n, word value) { return 0x91400000 | value << 10 | place(d, n); }
constexpr word sub_x(reg d, reg n, word value) { return 0xD1000000 | value << 10 | place(d, n); }
constexpr word sub_x_4096(reg d, reg n, word value) { return 0xD1400000 | value << 10 | place(d, n); }
constexpr bool is_add_or_sub_x(word w) { return (w & 0xBF800000) == 0x91000000; }
// A value of 16 bits in one quarter, with zeros in the others, or with what they had; and all bits but a value's.
constexpr word movz_x(reg d, word value, word quarter = 0) {
  return 0xD2800000 | quarter << 21 | value << 5 | d.number;
}
constexpr word movk_x(reg d, word value, word quarter) { return 0xF2800000 | quarter << 21 | value << 5 | d.number; }
constexpr word movn_x(reg d, word value) { return 0x92800000 | value << 5 | d.number; }
// n with `count` bits, 1 to 63, from bit `low` on set, or cleared.
constexpr word set_bits_x(reg d, reg n, word low, word count) {
  return 0xB2400000 | ((64 - low) & 63) << 16 | (count - 1) << 10 | place(d, n);
}
constexpr word clear_bits_x(reg d, reg n, word low, word count) {
  return 0x92400000 | ((64 - low - count) & 63) << 16 | (63 - count) << 10 | place(d, n);
}
// The same in both halves, `low` and `count` being those of a word.
constexpr word clear_bits_twice_x(reg d, reg n, word low, word count) {
  return 0x92000000 | ((32 - low - count) & 31) << 16 | (31 - count) << 10 | place(d, n);
}
// `count` bits from bit `low` on to the low bits of d, the others 0; and the low ones of n to these bits of d.
constexpr word ubfx_x(reg d, reg n, word low, word count) {
  return 0xD3400000 | low << 16 | (low + count - 1) << 10 | place(d, n);
}
constexpr word bfi_x(reg d, reg n, word low, word count) {
  return 0xB3400000 | ((64 - low) & 63) << 16 | (count - 1) << 10 | place(d, n);
}
constexpr word orr_x(reg d, reg n, reg m) { return 0xAA000000 | m.number << 16 | place(d, n); }
// An instruction that is none, for good, with a number of 16 bits.
constexpr word udf(word number = 0) { return number; }

}  // namespace quern::aarch64

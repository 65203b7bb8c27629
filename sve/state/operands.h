// Register operands as a thunk hands them to a direct handler, the size codes they carry, and their assembler names.
#pragma once

#include <array>
#include <cstdint>

// Element size and qualifier codes of the `size`, `dsize` and `ssize` fields. The first four serve every record:
// element sizes for vectors, predicates and byte or halfword scalars, and the W and X form of general registers.
inline constexpr std::uint32_t size_b = 0, size_h = 1, size_s = 2, size_d = 3;
inline constexpr std::uint32_t size_w = size_s, size_x = size_d;
inline constexpr std::uint32_t size_q = 4;         // aarch64_z_reg only: DUP (indexed) of a 128-bit element
inline constexpr std::uint32_t z_none = 5;         // aarch64_z_reg
inline constexpr std::uint32_t p_merging = 4;      // aarch64_p_reg, a governing predicate: /m
inline constexpr std::uint32_t p_zeroing = 5;      // aarch64_p_reg, a governing predicate: /z
inline constexpr std::uint32_t p_unqualified = 6;  // aarch64_p_reg, a governing predicate with neither
inline constexpr std::uint32_t p_none = 7;         // aarch64_p_reg
inline constexpr std::uint32_t i_none = 4;         // aarch64_i_reg, aarch64_i_rsp_reg

// A register that is both source and destination has the "none" code in `size` and its size in `dsize` and `ssize`; any
// other has its size in `size` and "none" in the two.

// A scalable vector register, Z0 to Z31.
struct aarch64_z_reg {
  std::uint32_t num, size, dsize, ssize;
  static const std::array<const char*, 32> zname, zname_b, zname_h, zname_s, zname_d;
};

// A predicate register, P0 to P15.
struct aarch64_p_reg {
  std::uint32_t num, size, dsize, ssize;
  static const std::array<const char*, 16> pname, pname_m, pname_z, pname_b, pname_h, pname_s, pname_d;
};

// A general register whose number 31 is the zero register: it reads as 0, and a write to it is dropped.
struct aarch64_i_reg {
  std::uint32_t num, size, dsize, ssize;
  static const std::array<const char*, 32> xname, wname;
};

// A general register whose number 31 is the stack pointer. It has no destructive form.
struct aarch64_i_rsp_reg {
  std::uint32_t num, size;
  static const std::array<const char*, 32> xname, wname;
};

// A bit-mask immediate (DecodeBitMasks), expanded to 64 bits.
struct aarch64_sve_logical64_imm {
  std::uint64_t value;
};

// An eight-bit floating-point immediate (VFPExpandImm) in its three formats at once.
struct aarch64_sve_fp_dup_imm {
  std::uint16_t half;
  std::uint32_t single;
  std::uint64_t dbl;
};

// The immediate bit of FADD, FMUL and their like, not yet turned into a number.
struct aarch64_sve_fp_arith_imm {
  std::uint32_t bit;
};

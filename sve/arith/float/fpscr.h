// Floating-point status and control as the library sees them: the FPSCR that callers hand in, and the mode and flags
// words that one operation works with.
#pragma once

#include <cstdint>

// Control and status in one word, which a caller owns. An operation reads the control bits, and sets cumulative flags
// in the low byte; it never clears a bit, nor changes any other. The trap enables may be set and have no effect: no
// trap is ever taken.
struct FPSCR {
  std::uint32_t word = 0;
};

// The control bits of FPSCR.
inline constexpr std::uint32_t FPSCR_FZ16 = 1U << 19;  // flush subnormal halves
inline constexpr int FPSCR_RMode_shift = 22;           // the rounding mode, 0 to 3 of FPRounding, in two bits
inline constexpr std::uint32_t FPSCR_RMode = 3U << FPSCR_RMode_shift;
inline constexpr std::uint32_t FPSCR_FZ = 1U << 24;   // flush subnormal singles and doubles
inline constexpr std::uint32_t FPSCR_DN = 1U << 25;   // default NaN
inline constexpr std::uint32_t FPSCR_AHP = 1U << 26;  // alternative half-precision

// The bits of FPSR that a program can meet: the flags, QC and NZCV.
inline constexpr std::uint32_t fpsr_mask = 0xF800009F;

// What rounding is asked for. The rounders treat TIEAWAY as ZERO; rounding to an integer honours it.
enum FPRounding : int {
  FPRounding_TIEEVEN = 0,
  FPRounding_POSINF = 1,
  FPRounding_NEGINF = 2,
  FPRounding_ZERO = 3,
  FPRounding_TIEAWAY = 4,  // to nearest, ties away from zero
  FPRounding_ODD = 5,      // truncated, then the last bit set if anything was lost; doubles are only truncated
};

namespace quern {

// The flags word: a local int, 0 at the start of an operation. The bits are those of FPSCR's low byte.
enum fp_flag : int {
  IOC = 1,    // invalid operation
  DZC = 2,    // division by zero
  OFC = 4,    // overflow
  UFC = 8,    // underflow
  IXC = 16,   // inexact
  IDC = 128,  // input denormal
};

// The mode word: FPSCR's controls as a small int, the rounding mode in the low two bits.
enum fp_mode : int {
  mode_rounding = 3,
  mode_FZ = 4,
  mode_DN = 8,
  mode_AHP = 16,  // only in the mode word of a conversion to half
  mode_FZ16 = 32,
};

constexpr int mode_of(const FPSCR& fpscr) {
  return static_cast<int>((fpscr.word >> FPSCR_RMode_shift & (mode_rounding | mode_FZ | mode_DN)) |
                          (fpscr.word >> 14 & mode_FZ16));
}
constexpr FPRounding rounding_of(int mode) { return static_cast<FPRounding>(mode & mode_rounding); }
constexpr FPRounding rounding_of(const FPSCR& fpscr) { return rounding_of(mode_of(fpscr)); }

constexpr void raise(FPSCR& fpscr, int flags) { fpscr.word |= static_cast<std::uint32_t>(flags); }

// The frame of an operation: what op(mode, &flags) returns, with the flags it gathered set in `fpscr`.
template <class Op>
inline auto with_flags(FPSCR& fpscr, Op op) {
  int flags = 0;
  const auto result = op(mode_of(fpscr), &flags);
  raise(fpscr, flags);
  return result;
}

}  // namespace quern

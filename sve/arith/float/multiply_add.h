// The fused multiply-add: one rounding for a product and a sum.
#pragma once

#include <cstdint>

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// a + b * c (FPMulAdd), rounded once by RMode. Note the order: the addend comes first, and NaNs are looked for in that
// order. An infinity times a zero gives the default NaN and IOC, even where the addend is a quiet NaN; so do infinities
// that cancel. An exact zero of two opposite terms is +0, but -0 when rounding towards minus infinity. Flags: IOC, OFC,
// UFC, IXC, and IDC in single and double.
template <quern::float_bits T>
T FPMulAdd(T a, T b, T c, FPSCR& fpscr);

// (a + b * c) * 2^scale with one rounding: the core of FPMulAdd and of the step operations, for operations that have a
// mode and a flags word of their own. Zeros and infinities ignore the scale.
std::uint16_t fp16_muladd(std::uint16_t a, std::uint16_t b, std::uint16_t c, int scale, int mode, int* flags);
std::uint32_t fp32_muladd(std::uint32_t a, std::uint32_t b, std::uint32_t c, int scale, int mode, int* flags);
std::uint64_t fp64_muladd(std::uint64_t a, std::uint64_t b, std::uint64_t c, int scale, int mode, int* flags);

namespace quern {

// The three cores by one name, for templates.
inline std::uint16_t muladd(std::uint16_t a, std::uint16_t b, std::uint16_t c, int scale, int mode, int* flags) {
  return fp16_muladd(a, b, c, scale, mode, flags);
}
inline std::uint32_t muladd(std::uint32_t a, std::uint32_t b, std::uint32_t c, int scale, int mode, int* flags) {
  return fp32_muladd(a, b, c, scale, mode, flags);
}
inline std::uint64_t muladd(std::uint64_t a, std::uint64_t b, std::uint64_t c, int scale, int mode, int* flags) {
  return fp64_muladd(a, b, c, scale, mode, flags);
}

}  // namespace quern

// The trigonometric accelerator.
#include "sve/arith/float/trigonometric.h"

#include <array>
#include <cstddef>

#include "sve/arith/float/multiply.h"
#include "sve/arith/float/multiply_add.h"
#include "sve/arith/float/nan.h"
#include "sve/arith/float/sign.h"
#include "sve/arith/float/unpack.h"

using namespace quern;

namespace {

// The coefficients of odd powers, for the sine, and then of even ones, for the cosine, of which the argument's first
// power or none has been taken out. They are near (-1)^i / (2i + 1)! and (-1)^i / (2i)!; each series ends in zeros.
constexpr std::size_t cosine = 8;

template <float_bits T>
constexpr std::array<T, 16> coefficients = {};
template <>
constexpr std::array<std::uint16_t, 16> coefficients<std::uint16_t> = {
    0x3C00, 0xB155, 0x2030, 0, 0, 0, 0, 0,  //
    0x3C00, 0xB800, 0x293A, 0, 0, 0, 0, 0,
};
template <>
constexpr std::array<std::uint32_t, 16> coefficients<std::uint32_t> = {
    0x3F800000, 0xBE2AAAAB, 0x3C088886, 0xB95008B9, 0x36369D6D, 0, 0, 0,  //
    0x3F800000, 0xBF000000, 0x3D2AAAA6, 0xBAB60705, 0x37CD37CC, 0, 0, 0,
};
template <>
constexpr std::array<std::uint64_t, 16> coefficients<std::uint64_t> = {
    0x3FF0000000000000, 0xBFC5555555555543, 0x3F8111111110F30C, 0xBF2A01A019B92FC6,  //
    0x3EC71DE351F3D22B, 0xBE5AE5E2B60F7B91, 0x3DE5D8408868552F, 0x0000000000000000,  //
    0x3FF0000000000000, 0xBFE0000000000000, 0x3FA5555555555536, 0xBF56C16C16C13A0B,  //
    0x3EFA01A019B1E8D8, 0xBE927E4F7282F468, 0x3E21EE96D2641B13, 0xBDA8F76380FBB401,
};

// A number's value, for the check below.
template <float_bits T>
constexpr double value_of(T pattern) {
  const unpacked<T> a = unpack(pattern, 0, nullptr);
  double value = static_cast<double>(a.mnt);
  for (int e = a.exp; e < float_format<T>::bias + float_format<T>::fraction_bits; ++e) value /= 2;
  return a.sgn ? -value : value;
}

// Whether each coefficient that is there is within a thirtieth of the Taylor series'.
template <float_bits T>
constexpr bool are_near_taylor() {
  for (std::size_t i = 0; i != 16; ++i) {
    const int power = i < cosine ? static_cast<int>(2 * i + 1) : static_cast<int>(2 * (i - cosine));
    double quotient = value_of(coefficients<T>[i]) * (i % 2 ? -1 : 1);
    for (int n = 2; n <= power; ++n) quotient *= n;
    if (coefficients<T>[i] != 0 && (quotient < 29. / 30 || quotient > 31. / 30)) return false;
  }
  return true;
}
static_assert(are_near_taylor<std::uint16_t>() && are_near_taylor<std::uint32_t>() && are_near_taylor<std::uint64_t>());

}  // namespace

template <float_bits T>
T trigonometric_coefficient(std::uint64_t i, bool of_cosine) {
  return coefficients<T>[i + (of_cosine ? cosine : 0)];
}

template <float_bits T>
T FPTRIMADD(std::uint64_t i, T a, T b, FPSCR& fpscr) {
  const bool negative = (b & float_format<T>::sign_bit) != 0;
  return FPMulAdd(trigonometric_coefficient<T>(i, negative), a, FPAbs(b), fpscr);
}

template <float_bits T>
T FPTRISMUL(T a, T b, FPSCR& fpscr) {
  const T square = FPMul(a, a, fpscr);
  if (is_nan(square)) return square;
  return static_cast<T>(square | (b & 1 ? float_format<T>::sign_bit : 0));
}

template std::uint16_t trigonometric_coefficient(std::uint64_t, bool);
template std::uint32_t trigonometric_coefficient(std::uint64_t, bool);
template std::uint64_t trigonometric_coefficient(std::uint64_t, bool);
template std::uint16_t FPTRIMADD(std::uint64_t, std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPTRIMADD(std::uint64_t, std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPTRIMADD(std::uint64_t, std::uint64_t, std::uint64_t, FPSCR&);
template std::uint16_t FPTRISMUL(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPTRISMUL(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPTRISMUL(std::uint64_t, std::uint64_t, FPSCR&);

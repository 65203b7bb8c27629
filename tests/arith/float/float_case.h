// What the tests of the floating-point library share: short names for controls and flags, numbers in each format, and
// one form of case.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <initializer_list>

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

namespace quern {

using half = std::uint16_t;
using single = std::uint32_t;
using double_bits = std::uint64_t;

// For typed tests, of what holds in every format alike.
using formats = testing::Types<half, single, double_bits>;

constexpr std::uint32_t FZ = FPSCR_FZ, FZ16 = FPSCR_FZ16, DN = FPSCR_DN, AHP = FPSCR_AHP;

// FPSCR's rounding modes.
constexpr std::uint32_t RN = 0, RP = 1U << FPSCR_RMode_shift, RM = 2U << FPSCR_RMode_shift,
                        RZ = 3U << FPSCR_RMode_shift;

// The control that flushes subnormals of a format, what a flushed operand raises there, and the other format's control.
template <class T>
constexpr std::uint32_t flush = sizeof(T) == 2 ? FZ16 : FZ;
template <class T>
constexpr int flushed = sizeof(T) == 2 ? 0 : IDC;
template <class T>
constexpr std::uint32_t other_flush = sizeof(T) == 2 ? FZ : FZ16;

// A number that the format holds exactly as a normal one, or a zero.
template <class T>
constexpr T num(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int sgn = static_cast<int>(bits >> 63);
  if (bits << 1 == 0) return zero<T>(sgn);
  const int exp = static_cast<int>(bits >> 52 & 2047) - 1023 + float_format<T>::bias;
  return pack<T>(sgn, exp, static_cast<mantissa<T>>(bits >> (52 - float_format<T>::fraction_bits)));
}

template <class T>
struct values {
  using format = float_format<T>;
  static constexpr T minus = format::sign_bit;  // to be added to a positive pattern
  static constexpr T inf = format::infinity;
  static constexpr T nan = format::default_nan;
  static constexpr T quiet = nan + 5, signalling = inf + 3, made_quiet = nan + 3;  // NaNs with a payload
  static constexpr T tiny = 1;                                                     // the smallest subnormal
  static constexpr T subnormal = format::hidden_bit / 2 + 1;
  static constexpr T smallest = format::hidden_bit;  // the smallest normal
  static constexpr T largest = format::largest_normal;
};

// One call: operands, the controls it runs under, what it answers, and exactly the flags it raises.
template <class T, int operands, class Result = T>
struct float_case {
  const char* what;
  T operand[operands];
  std::uint32_t controls;
  Result result;
  int flags;
};

template <class T, int operands, class Result, class Call>
void check_cases(std::initializer_list<float_case<T, operands, Result>> cases, Call call) {
  for (const auto& c : cases) {
    FPSCR fpscr{c.controls};
    const Result result = call(c.operand, fpscr);
    EXPECT_EQ(result, c.result) << c.what << " in " << 8 * sizeof(T) << " bits: " << std::hex << +result << " for "
                                << +c.result;
    EXPECT_EQ(fpscr.word, c.controls | static_cast<std::uint32_t>(c.flags))
        << c.what << " in " << 8 * sizeof(T) << " bits";
  }
}

// check<T>(operation, cases) for operations of one, two and three operands.
template <class T, class Result = T>
void check(std::type_identity_t<Result (*)(T, FPSCR&)> op, std::initializer_list<float_case<T, 1, Result>> cases) {
  check_cases(cases, [op](const T* x, FPSCR& fpscr) { return op(x[0], fpscr); });
}
template <class T, class Result = T>
void check(std::type_identity_t<Result (*)(T, T, FPSCR&)> op, std::initializer_list<float_case<T, 2, Result>> cases) {
  check_cases(cases, [op](const T* x, FPSCR& fpscr) { return op(x[0], x[1], fpscr); });
}
template <class T, class Result = T>
void check(std::type_identity_t<Result (*)(T, T, T, FPSCR&)> op,
           std::initializer_list<float_case<T, 3, Result>> cases) {
  check_cases(cases, [op](const T* x, FPSCR& fpscr) { return op(x[0], x[1], x[2], fpscr); });
}

}  // namespace quern

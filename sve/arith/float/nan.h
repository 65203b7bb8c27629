// Which NaN an operation answers that has NaNs among its operands (FPProcessNaN, FPProcessNaNs, FPProcessNaNs3).
#pragma once

#include <optional>

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

namespace quern {

template <float_bits T>
constexpr bool is_nan(T value) {
  return static_cast<T>(value & ~float_format<T>::sign_bit) > float_format<T>::infinity;
}
template <float_bits T>
constexpr bool is_quiet_nan(T value) {
  return (value & float_format<T>::default_nan) == float_format<T>::default_nan;
}
template <float_bits T>
constexpr bool is_signalling_nan(T value) {
  return is_nan(value) && !is_quiet_nan(value);
}

// What becomes of the NaN `value`: itself made quiet, or the default NaN if the mode holds DN. A signalling one raises
// IOC.
template <float_bits T>
constexpr T process_nan(T value, int mode, int* flags) {
  if (!is_quiet_nan(value)) *flags |= IOC;
  if (mode & mode_DN) return float_format<T>::default_nan;
  return static_cast<T>(value | float_format<T>::quiet_bit);
}

// The result of an operation on `operands` if one of them is a NaN: the first signalling one decides, or else the first
// quiet one. Nothing if none is a NaN.
template <float_bits T, std::same_as<T>... Rest>
constexpr std::optional<T> process_nans(int mode, int* flags, T first, Rest... rest) {
  const T operands[] = {first, rest...};
  if (!(is_nan(first) || ... || is_nan(rest))) return std::nullopt;
  for (const T operand : operands)
    if (is_signalling_nan(operand)) return process_nan(operand, mode, flags);
  for (const T operand : operands)
    if (is_nan(operand)) return process_nan(operand, mode, flags);
  return std::nullopt;
}

// The default NaN, as the answer to an invalid operation.
template <float_bits T>
constexpr T invalid_operation(int* flags) {
  *flags |= IOC;
  return float_format<T>::default_nan;
}

}  // namespace quern

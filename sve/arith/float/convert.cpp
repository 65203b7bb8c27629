// Conversion from one format to another.
#include "sve/arith/float/convert.h"

#include "sve/arith/float/integral.h"
#include "sve/arith/float/nan.h"
#include "sve/arith/float/round.h"

using namespace quern;

namespace {

template <float_bits From, float_bits To>
constexpr int rebias = float_format<To>::bias - float_format<From>::bias;

// The NaN made quiet, with the top of its fraction at the top of the other format's.
template <float_bits From, float_bits To>
To convert_nan(int sgn, From nan, int mode, int* flags) {
  constexpr int moved = float_format<To>::fraction_bits - float_format<From>::fraction_bits;
  if (is_signalling_nan(nan)) *flags |= IOC;
  const std::uint64_t fraction = nan & float_format<From>::fraction_mask;
  const auto kept = static_cast<mantissa<To>>(moved > 0 ? fraction << (moved & 63) : fraction >> (-moved & 63));
  return process_nan(pack<To>(sgn, float_format<To>::top_exponent, kept | float_format<To>::quiet_bit), mode, flags);
}

// To a wider format, which holds all that the narrower one does.
template <float_bits From, float_bits To>
To widen(From value, bool alternative, int mode, int* flags) {
  constexpr int moved = float_format<To>::fraction_bits - float_format<From>::fraction_bits;
  const unpacked<From> a = unpack(value, mode, flags);
  if (is_nan(value) && !alternative) return convert_nan<From, To>(a.sgn, value, mode, flags);
  if (is_infinite(a) && !alternative) return infinity<To>(a.sgn);
  if (is_zero(a)) return zero<To>(a.sgn);
  return normalize_and_pack<To>(a.sgn, a.exp + rebias<From, To>, mantissa<To>{a.mnt} << moved);
}

// NaNs and infinities as alternative halves, which have neither.
template <float_bits To>
To alternative_special(int sgn, bool nan, int* flags) {
  *flags |= IOC;
  return static_cast<To>(zero<To>(sgn) | (nan ? 0 : 0x7FFF));
}

template <float_bits From, float_bits To>
To narrow(From value, bool alternative, FPRounding rounding, int mode, int* flags) {
  const unpacked<From> a = unpack(value, mode, flags);
  if (a.exp == float_format<From>::top_exponent && alternative)
    return alternative_special<To>(a.sgn, is_nan(value), flags);
  if (is_nan(value)) return convert_nan<From, To>(a.sgn, value, mode, flags);
  if (is_infinite(a)) return infinity<To>(a.sgn);
  if (is_zero(a)) return zero<To>(a.sgn);
  // Under FZ16 a half is still not flushed.
  const int rounder_mode = (mode & ~mode_FZ16) | (alternative ? mode_AHP : 0);
  return normalize_and_round<To>(a.sgn, a.exp + rebias<From, To>, a.mnt, float_format<From>::fraction_bits, rounding,
                                 rounder_mode, flags);
}

}  // namespace

template <float_bits From, float_bits To>
To FPConvert(From value, FPRounding rounding, FPSCR& fpscr) {
  const bool alternative = (sizeof(From) == 2 || sizeof(To) == 2) && (fpscr.word & FPSCR_AHP) != 0;
  return with_flags(fpscr, [&](int mode, int* flags) {
    if constexpr (sizeof(From) < sizeof(To)) {
      return widen<From, To>(value, alternative, mode, flags);
    } else {
      return narrow<From, To>(value, alternative, rounding, mode, flags);
    }
  });
}

template std::uint16_t FPConvert(std::uint32_t, FPRounding, FPSCR&);
template std::uint16_t FPConvert(std::uint64_t, FPRounding, FPSCR&);
template std::uint32_t FPConvert(std::uint16_t, FPRounding, FPSCR&);
template std::uint32_t FPConvert(std::uint64_t, FPRounding, FPSCR&);
template std::uint64_t FPConvert(std::uint16_t, FPRounding, FPSCR&);
template std::uint64_t FPConvert(std::uint32_t, FPRounding, FPSCR&);

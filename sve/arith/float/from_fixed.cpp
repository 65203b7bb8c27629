// Conversion from fixed-point integers.
#include "sve/arith/float/from_fixed.h"

#include "sve/arith/float/round.h"

using namespace quern;

template <float_bits T>
T fplibFixedToFP(std::uint64_t value, int fbits, bool u, FPRounding rounding, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    if (value == 0) return zero<T>(0);
    const bool negative = !u && value >> 63 != 0;
    const std::uint64_t magnitude = negative ? 0 - value : value;
    return normalize_and_round<T>(negative, float_format<T>::bias, magnitude, fbits, rounding, mode & ~mode_FZ16,
                                  flags);
  });
}

template std::uint16_t fplibFixedToFP(std::uint64_t, int, bool, FPRounding, FPSCR&);
template std::uint32_t fplibFixedToFP(std::uint64_t, int, bool, FPRounding, FPSCR&);
template std::uint64_t fplibFixedToFP(std::uint64_t, int, bool, FPRounding, FPSCR&);

// Scaling by powers of two.
#include "sve/arith/float/scale.h"

#include <algorithm>

#include "sve/arith/float/nan.h"
#include "sve/arith/float/round.h"

using namespace quern;

namespace {

// Scales beyond these overflow, or underflow wholly, as these do. They keep the exponent's arithmetic within an int.
template <float_bits T>
constexpr int furthest = sizeof(T) == 2   ? 60
                         : sizeof(T) == 4 ? 300
                                          : 3000;

template <float_bits T, class Integer>
T scale(T value, Integer n, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    if (is_nan(value)) return process_nan(value, mode, flags);
    const unpacked<T> a = unpack(value, mode, flags);
    if (is_infinite(a)) return value;
    if (is_zero(a)) return zero<T>(a.sgn);
    const auto by = static_cast<int>(std::clamp<std::int64_t>(n, -furthest<T>, furthest<T>));
    return normalize_and_round<T>(a.sgn, a.exp + by, a.mnt, float_format<T>::fraction_bits, rounding_of(mode), mode,
                                  flags);
  });
}

}  // namespace

std::uint16_t FPScale16(std::uint16_t a, std::int16_t n, FPSCR& fpscr) { return scale(a, n, fpscr); }
std::uint32_t FPScale32(std::uint32_t a, std::int32_t n, FPSCR& fpscr) { return scale(a, n, fpscr); }
std::uint64_t FPScale64(std::uint64_t a, std::int64_t n, FPSCR& fpscr) { return scale(a, n, fpscr); }

// One value through unpacking, NaN selection and rounding.
#include "sve/arith/float/process.h"

#include "sve/arith/float/nan.h"
#include "sve/arith/float/round.h"

using namespace quern;

namespace {

template <float_bits T>
T process(T value, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    if (is_nan(value)) return process_nan(value, mode, flags);
    const unpacked<T> a = unpack(value, mode, flags);
    if (is_infinite(a)) return value;
    if (is_zero(a)) return zero<T>(a.sgn);
    return normalize_and_round<T>(a.sgn, a.exp, a.mnt, float_format<T>::fraction_bits, rounding_of(mode), mode, flags);
  });
}

}  // namespace

std::uint16_t FPProcess16(std::uint16_t value, FPSCR& fpscr) { return process(value, fpscr); }
std::uint32_t FPProcess32(std::uint32_t value, FPSCR& fpscr) { return process(value, fpscr); }
std::uint64_t FPProcess64(std::uint64_t value, FPSCR& fpscr) { return process(value, fpscr); }

// The fused multiply-add.
#include "sve/arith/float/multiply_add.h"

#include "sve/arith/float/nan.h"
#include "sve/arith/float/sum.h"

using namespace quern;

namespace {

// Where addend and product lie in the wide word of their sum. The zeros below each leave nothing but sticky bits out of
// the word, wherever the terms come to overlap.
template <float_bits T>
constexpr int addend_shift = sizeof(T) == 2   ? 19
                             : sizeof(T) == 4 ? 27
                                              : 64;
template <float_bits T>
constexpr int product_shift = sizeof(T) == 2 ? 9 : 3;

template <float_bits T>
T fused(T addend, T left, T right, int scale, int mode, int* flags) {
  using format = float_format<T>;
  using wide = wide_mantissa<T>;
  const unpacked<T> a = unpack(addend, mode, flags);
  const unpacked<T> b = unpack(left, mode, flags);
  const unpacked<T> c = unpack(right, mode, flags);

  const bool infinite_product = is_infinite(b) || is_infinite(c);
  const bool null_product = is_zero(b) || is_zero(c);
  const bool infinity_times_zero = (is_infinite(b) && is_zero(c)) || (is_zero(b) && is_infinite(c));
  if (const auto nan = process_nans(mode, flags, addend, left, right)) {
    // The product is invalid whatever a quiet addend is.
    return is_quiet_nan(addend) && infinity_times_zero ? invalid_operation<T>(flags) : *nan;
  }

  const int product_sgn = b.sgn ^ c.sgn;
  const bool infinities_cancel = is_infinite(a) && infinite_product && a.sgn != product_sgn;
  if (infinity_times_zero || infinities_cancel) return invalid_operation<T>(flags);
  if (is_infinite(a)) return infinity<T>(a.sgn);
  if (infinite_product) return infinity<T>(product_sgn);
  if (is_zero(a) && null_product && a.sgn == product_sgn) return zero<T>(a.sgn);

  constexpr int unit = format::fraction_bits + addend_shift<T>;
  constexpr int product_unit = 2 * format::fraction_bits + product_shift<T>;
  const int product_exp = b.exp + c.exp - format::bias;
  const term<wide> x = {a.sgn, a.exp, wide{a.mnt} << addend_shift<T>};
  const term<wide> y = {product_sgn, product_exp + unit - product_unit, (wide{b.mnt} * c.mnt) << product_shift<T>};
  term<wide> sum = add_terms(x, y);
  sum.exp += scale;
  return round_sum<T>(sum, unit, mode, flags);
}

}  // namespace

std::uint16_t fp16_muladd(std::uint16_t a, std::uint16_t b, std::uint16_t c, int scale, int mode, int* flags) {
  return fused(a, b, c, scale, mode, flags);
}
std::uint32_t fp32_muladd(std::uint32_t a, std::uint32_t b, std::uint32_t c, int scale, int mode, int* flags) {
  return fused(a, b, c, scale, mode, flags);
}
std::uint64_t fp64_muladd(std::uint64_t a, std::uint64_t b, std::uint64_t c, int scale, int mode, int* flags) {
  return fused(a, b, c, scale, mode, flags);
}

template <float_bits T>
T FPMulAdd(T a, T b, T c, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) { return muladd(a, b, c, 0, mode, flags); });
}

template std::uint16_t FPMulAdd(std::uint16_t, std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPMulAdd(std::uint32_t, std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPMulAdd(std::uint64_t, std::uint64_t, std::uint64_t, FPSCR&);

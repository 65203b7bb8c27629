// AArch64's floating-point unit, one instruction an operation; on halves, which processors need not compute with, the
// instruction for singles or doubles.
//
// In assembly, not in the compiler's arithmetic: to the compiler addition and multiplication commute and the sign of a
// NaN means nothing, while which NaN an operation answers depends on the order of its operands. Volatile, so that no
// operation is dropped, or moved across the instructions that move FPSR, wherever the handler is inlined.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/sign.h"
#include "sve/arith/float/trigonometric.h"
#include "sve/state/cpu_state.h"
#include "sve/state/lane_group.h"

namespace quern {

class neon_fp {
  using words [[gnu::vector_size(16)]] = std::int32_t;
  using doublewords [[gnu::vector_size(16)]] = std::int64_t;

 public:
  neon_fp() = default;
  explicit neon_fp(const cpu_state&) {}

// One instruction on a whole group; for halves as `in` does it.
#define UNARY(name, in)                                     \
  static halves name(halves a) {                            \
    return in([](auto x) { return name(x); }, a);           \
  }                                                         \
  static singles name(singles a) {                          \
    singles r;                                              \
    asm volatile(#name " %0.4s, %1.4s" : "=w"(r) : "w"(a)); \
    return r;                                               \
  }                                                         \
  static doubles name(doubles a) {                          \
    doubles r;                                              \
    asm volatile(#name " %0.2d, %1.2d" : "=w"(r) : "w"(a)); \
    return r;                                               \
  }
#define BINARY(name, in)                                                   \
  static halves name(halves a, halves b) {                                 \
    return in([](auto x, auto y) { return name(x, y); }, a, b);            \
  }                                                                        \
  static singles name(singles a, singles b) {                              \
    singles r;                                                             \
    asm volatile(#name " %0.4s, %1.4s, %2.4s" : "=w"(r) : "w"(a), "w"(b)); \
    return r;                                                              \
  }                                                                        \
  static doubles name(doubles a, doubles b) {                              \
    doubles r;                                                             \
    asm volatile(#name " %0.2d, %1.2d, %2.2d" : "=w"(r) : "w"(a), "w"(b)); \
    return r;                                                              \
  }
#define FUSED(name)                                                                     \
  static halves name(halves sum, halves a, halves b) {                                  \
    return in_doubles([](auto s, auto x, auto y) { return name(s, x, y); }, sum, a, b); \
  }                                                                                     \
  static singles name(singles sum, singles a, singles b) {                              \
    asm volatile(#name " %0.4s, %1.4s, %2.4s" : "+w"(sum) : "w"(a), "w"(b));            \
    return sum;                                                                         \
  }                                                                                     \
  static doubles name(doubles sum, doubles a, doubles b) {                              \
    asm volatile(#name " %0.2d, %1.2d, %2.2d" : "+w"(sum) : "w"(a), "w"(b));            \
    return sum;                                                                         \
  }
  BINARY(fadd, in_singles)
  BINARY(fsub, in_singles)
  BINARY(fmul, in_singles)
  BINARY(fmulx, in_singles)
  BINARY(fdiv, in_singles)
  BINARY(fmax, in_singles)
  BINARY(fmin, in_singles)
  BINARY(fmaxnm, in_singles)
  BINARY(fminnm, in_singles)
  BINARY(frecps, in_doubles)
  BINARY(frsqrts, in_doubles)
  FUSED(fmla)
  FUSED(fmls)
  UNARY(fsqrt, in_singles)
  UNARY(frintn, in_singles)
  UNARY(frintp, in_singles)
  UNARY(frintm, in_singles)
  UNARY(frintz, in_singles)
  UNARY(frinta, in_singles)
  UNARY(frinti, in_singles)
  UNARY(frintx, in_singles)
  UNARY(frecpe, in_singles)
  UNARY(frsqrte, in_singles)
  BINARY(fcmeq, whether_in_singles)
  BINARY(fcmge, whether_in_singles)
  BINARY(fcmgt, whether_in_singles)
  UNARY(fcvtzs, to_signed_in_singles)
  UNARY(fcvtzu, to_unsigned_in_singles)
  UNARY(scvtf, from_signed_in_singles)
  UNARY(ucvtf, from_unsigned_in_singles)
#undef UNARY
#undef BINARY
#undef FUSED

  // Whether a or b is a NaN. A number equals itself, and the comparison's flags are those of an unordered one.
  template <lane_group T>
  static T fcmuo(T a, T b) {
    return ~(fcmeq(a, a) & fcmeq(b, b));
  }

  // FTSMUL: the square of a, with bit 0 of b as its sign unless it is a NaN.
  template <lane_group T>
  static T ftsmul(T a, T b) {
    using format = float_format<lane_of<T>>;
    const T square = fmul(a, a);
    const T number = T(FPAbs(square) <= format::infinity);
    return square | (number & (b << (format::width - 1)));
  }

  // FSCALE: a * 2^n, of halves by singles and of singles by doubles. Scaled by as much as 60 or 300 they are exact
  // there, and more than that takes each number beyond its format's range.
  static halves fscale(halves a, halves n) {
    const singles low = fmul(low_singles(a), power_of_two(low_words(n)));
    return from_singles(low, fmul(high_singles(a), power_of_two(high_words(n))));
  }
  static singles fscale(singles a, singles n) {
    const doubles low = fmul(low_doubles(a), power_of_two(low_doublewords(n)));
    return from_doubles(low, fmul(high_doubles(a), power_of_two(high_doublewords(n))));
  }
  // Of doubles by the powers of two that are doubles, the largest part of n last. What is rounded before that
  // overflows, or is so small that the last leaves nothing of it, as it would be at once.
  static doubles fscale(doubles a, doubles n) {
    constexpr int largest = 1022;
    const doublewords all = clamped(doublewords(n), 3 * largest), last = clamped(all, largest);
    const doublewords others = all - last, second = clamped(others, largest);
    if ((others[0] | others[1]) != 0)
      a = fmul(fmul(a, exact_power_of_two(others - second)), exact_power_of_two(second));
    return fmul(a, exact_power_of_two(last));
  }

  // Conversions as the software unit has them.
  template <float_bits Result, float_bits Source, lane_group T>
  static T to_format(T a) {
    return narrowed<Result>(widened<Source>(a));
  }
  template <std::integral Result, float_bits Source, lane_group T>
  static T to_integer(T a) {
    constexpr bool is_unsigned = std::is_unsigned_v<Result>;
    if constexpr (sizeof(Result) < sizeof(Source)) return is_unsigned ? fcvtzu_d2s(a) : fcvtzs_d2s(a);
    if constexpr (sizeof(Result) >= sizeof(Source)) {
      return is_unsigned ? fcvtzu(widened<Source>(a)) : fcvtzs(widened<Source>(a));
    }
  }
  // To a half by the lane's format: an integer that it has too few bits for is beyond the halves, rounded or not.
  template <float_bits Result, std::integral Source, lane_group T>
  static T from_integer(T a) {
    constexpr bool is_unsigned = std::is_unsigned_v<Source>;
    if constexpr (sizeof(Source) < sizeof(Result)) return is_unsigned ? ucvtf_s2d(a) : scvtf_s2d(a);
    if constexpr (sizeof(Source) == 8 && sizeof(Result) == 4) return is_unsigned ? ucvtf_d2s(a) : scvtf_d2s(a);
    if constexpr (sizeof(Source) >= sizeof(Result) && !(sizeof(Source) == 8 && sizeof(Result) == 4)) {
      return narrowed<Result>(is_unsigned ? ucvtf(a) : scvtf(a));
    }
  }

  // FTMAD: coefficient `index` + a * |b|, of the series that the sign of b chooses.
  template <lane_group T>
  static T ftmad(std::uint64_t index, T a, T b) {
    using lane = lane_of<T>;
    const T negative = T((b & float_format<lane>::sign_bit) != 0);
    const T sine = in_each_lane<T>(trigonometric_coefficient<lane>(index, false));
    const T cosine = in_each_lane<T>(trigonometric_coefficient<lane>(index, true));
    return fmla(select(negative, cosine, sine), a, FPAbs(b));
  }

  // Between formats, in lanes of 64 bits: a single or a 32-bit integer is the low word, and as a result it clears, or
  // extends into, the upper word. There is no instruction for both lanes that converts and changes the width of an
  // integer; where one step is exact and raises no other flags, two do it.
  static doubles fcvt_s2d(doubles a) {
    doubles r;
    asm volatile("xtn %0.2s, %1.2d\n\tfcvtl %0.2d, %0.2s" : "=w"(r) : "w"(a));
    return r;
  }
  static doubles fcvt_d2s(doubles a) {
    doubles r;
    asm volatile("fcvtn %0.2s, %1.2d\n\tuxtl %0.2d, %0.2s" : "=w"(r) : "w"(a));
    return r;
  }
  static doubles fcvtzs_s2d(doubles a) { return fcvtzs(fcvt_s2d(a)); }
  static doubles scvtf_s2d(doubles a) {
    doubles r;
    asm volatile("xtn %0.2s, %1.2d\n\tsxtl %0.2d, %0.2s\n\tscvtf %0.2d, %0.2d" : "=w"(r) : "w"(a));
    return r;
  }
  static doubles ucvtf_s2d(doubles a) { return ucvtf(a & 0xFFFFFFFF); }

  static doubles fcvtzs_d2s(doubles a) { return doubles{to_signed_word(a[0]), to_signed_word(a[1])}; }
  static doubles fcvtzu_d2s(doubles a) { return doubles{to_unsigned_word(a[0]), to_unsigned_word(a[1])}; }
  static doubles scvtf_d2s(doubles a) { return doubles{single_of(a[0]), single_of(a[1])}; }
  static doubles ucvtf_d2s(doubles a) { return doubles{single_of_unsigned(a[0]), single_of_unsigned(a[1])}; }

 private:
  static std::uint64_t to_signed_word(std::uint64_t a) {
    std::int32_t r;
    asm volatile("fcvtzs %w0, %d1" : "=r"(r) : "w"(a));
    return static_cast<std::uint64_t>(std::int64_t{r});
  }
  static std::uint64_t to_unsigned_word(std::uint64_t a) {
    std::uint32_t r;
    asm volatile("fcvtzu %w0, %d1" : "=r"(r) : "w"(a));
    return r;
  }
  // SCVTF and UCVTF to a single clear the rest of the register.
  static std::uint64_t single_of(std::uint64_t a) {
    std::uint64_t r;
    asm volatile("scvtf %s0, %x1" : "=w"(r) : "r"(a));
    return r;
  }
  static std::uint64_t single_of_unsigned(std::uint64_t a) {
    std::uint64_t r;
    asm volatile("ucvtf %s0, %x1" : "=w"(r) : "r"(a));
    return r;
  }
  static std::uint64_t half_of(std::uint64_t a) {
    std::uint64_t r;
    asm volatile("fcvt %h0, %d1" : "=w"(r) : "w"(a));
    return r;
  }

  // The number in the low part of each lane, as one of the lane's width; and back, the rest of the lane cleared.
  template <float_bits Source, lane_group T>
  static T widened(T a) {
    T r = a;
    if constexpr (sizeof(Source) == 2 && sizeof(lane_of<T>) == 4)
      asm volatile("xtn %0.4h, %1.4s\n\tfcvtl %0.4s, %0.4h" : "=w"(r) : "w"(a));
    if constexpr (sizeof(Source) == 2 && sizeof(lane_of<T>) == 8)
      asm volatile("xtn %0.2s, %1.2d\n\txtn %0.4h, %0.4s\n\tfcvtl %0.4s, %0.4h\n\tfcvtl %0.2d, %0.2s"
                   : "=w"(r)
                   : "w"(a));
    if constexpr (sizeof(Source) == 4 && sizeof(lane_of<T>) == 8) r = fcvt_s2d(a);
    return r;
  }
  template <float_bits Result, lane_group T>
  static T narrowed(T a) {
    T r = a;
    if constexpr (sizeof(Result) == 2 && sizeof(lane_of<T>) == 4)
      asm volatile("fcvtn %0.4h, %1.4s\n\tuxtl %0.4s, %0.4h" : "=w"(r) : "w"(a));
    if constexpr (sizeof(Result) == 2 && sizeof(lane_of<T>) == 8) r = doubles{half_of(a[0]), half_of(a[1])};
    if constexpr (sizeof(Result) == 4 && sizeof(lane_of<T>) == 8) r = fcvt_d2s(a);
    return r;
  }

  // From the lower or the upper half of a group to a group, and from two groups to one.
#define HALF_OF_GROUP(name, To, From, instruction) \
  static To name(From a) {                         \
    To r;                                          \
    asm volatile(instruction : "=w"(r) : "w"(a));  \
    return r;                                      \
  }
#define GROUP_OF_TWO(name, To, From, first, second)                     \
  static To name(From low, From high) {                                 \
    To r;                                                               \
    asm volatile(first "\n\t" second : "=&w"(r) : "w"(low), "w"(high)); \
    return r;                                                           \
  }
  HALF_OF_GROUP(low_singles, singles, halves, "fcvtl %0.4s, %1.4h")
  HALF_OF_GROUP(high_singles, singles, halves, "fcvtl2 %0.4s, %1.8h")
  HALF_OF_GROUP(low_doubles, doubles, singles, "fcvtl %0.2d, %1.2s")
  HALF_OF_GROUP(high_doubles, doubles, singles, "fcvtl2 %0.2d, %1.4s")
  HALF_OF_GROUP(low_words, words, halves, "sxtl %0.4s, %1.4h")
  HALF_OF_GROUP(high_words, words, halves, "sxtl2 %0.4s, %1.8h")
  HALF_OF_GROUP(low_doublewords, doublewords, singles, "sxtl %0.2d, %1.2s")
  HALF_OF_GROUP(high_doublewords, doublewords, singles, "sxtl2 %0.2d, %1.4s")
  HALF_OF_GROUP(low_unsigned, singles, halves, "uxtl %0.4s, %1.4h")
  HALF_OF_GROUP(high_unsigned, singles, halves, "uxtl2 %0.4s, %1.8h")
  GROUP_OF_TWO(from_singles, halves, singles, "fcvtn %0.4h, %1.4s", "fcvtn2 %0.8h, %2.4s")
  GROUP_OF_TWO(from_doubles, singles, doubles, "fcvtn %0.2s, %1.2d", "fcvtn2 %0.4s, %2.2d")
  GROUP_OF_TWO(odd_from_doubles, singles, doubles, "fcvtxn %0.2s, %1.2d", "fcvtxn2 %0.4s, %2.2d")
  GROUP_OF_TWO(saturated, halves, singles, "sqxtn %0.4h, %1.4s", "sqxtn2 %0.8h, %2.4s")
  GROUP_OF_TWO(unsigned_saturated, halves, singles, "uqxtn %0.4h, %1.4s", "uqxtn2 %0.8h, %2.4s")
#undef HALF_OF_GROUP
#undef GROUP_OF_TWO

  // An operation on halves by singles. Rounding twice the same way, to 24 bits and then to 11, is rounding once:
  // towards a side always, and to nearest because sum, product, quotient and root, if not the middle of two halves, are
  // never so near to one that a single can't tell (24 >= 2 * 11 + 2). An inexact result is so at one step or the other.
  // One below the normal halves is a single or, a quotient, further from every half than a single's precision: so that
  // underflow is told by the last step alone. Signalling NaNs are lost at the first, which raises IOC.
  template <class Op, class... Halves>
  static halves in_singles(Op op, Halves... a) {
    return from_singles(op(low_singles(a)...), op(high_singles(a)...));
  }
  // A fused operation by doubles. The exact result is a double, or beyond the halves, or as near to the addend as to no
  // middle of two halves, on whichever side of it the product decides. Rounding to odd keeps all of that in a single.
  template <class Op, class... Halves>
  static halves in_doubles(Op op, Halves... a) {
    const auto by_doubles = [op](auto... x) { return odd_from_doubles(op(low_doubles(x)...), op(high_doubles(x)...)); };
    return in_singles(by_doubles, a...);
  }
  template <class Op>
  static halves whether_in_singles(Op op, halves a, halves b) {
    return even_lanes(halves(op(low_singles(a), low_singles(b))), halves(op(high_singles(a), high_singles(b))));
  }
  // Saturation, which IOC should tell of, raises QC.
  template <class Op>
  static halves to_signed_in_singles(Op op, halves a) {
    return saturated(op(low_singles(a)), op(high_singles(a)));
  }
  template <class Op>
  static halves to_unsigned_in_singles(Op op, halves a) {
    return unsigned_saturated(op(low_singles(a)), op(high_singles(a)));
  }
  template <class Op>
  static halves from_signed_in_singles(Op op, halves a) {
    return from_singles(op(singles(low_words(a))), op(singles(high_words(a))));
  }
  template <class Op>
  static halves from_unsigned_in_singles(Op op, halves a) {
    return from_singles(op(low_unsigned(a)), op(high_unsigned(a)));
  }

  static singles power_of_two(words n) { return singles(clamped(n, 60) + 127) << 23; }
  static doubles power_of_two(doublewords n) { return exact_power_of_two(clamped(n, 300)); }
  static doubles exact_power_of_two(doublewords n) { return doubles(n + 1023) << 52; }
  template <class Integers>
  static Integers clamped(Integers n, int most) {
    n = n > most ? Integers{} + most : n;
    return n < -most ? Integers{} - most : n;
  }
};

}  // namespace quern

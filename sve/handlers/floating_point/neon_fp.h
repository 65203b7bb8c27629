// AArch64's floating-point unit, one instruction an operation.
//
// In assembly, not in the compiler's arithmetic: to the compiler addition and multiplication commute and the sign of a
// NaN means nothing, while which NaN an operation answers depends on the order of its operands. Volatile, so that no
// operation is dropped, or moved across the instructions that move FPSR, wherever the handler is inlined.
#pragma once

#include "sve/handlers/lane_group.h"
#include "sve/state/cpu_state.h"

namespace quern {

class neon_fp {
 public:
  explicit neon_fp(cpu_state&) {}

// One instruction on a whole group.
#define UNARY(name)                                         \
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
#define BINARY(name)                                                       \
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
#define FUSED(name)                                                          \
  static singles name(singles sum, singles a, singles b) {                   \
    asm volatile(#name " %0.4s, %1.4s, %2.4s" : "+w"(sum) : "w"(a), "w"(b)); \
    return sum;                                                              \
  }                                                                          \
  static doubles name(doubles sum, doubles a, doubles b) {                   \
    asm volatile(#name " %0.2d, %1.2d, %2.2d" : "+w"(sum) : "w"(a), "w"(b)); \
    return sum;                                                              \
  }
  BINARY(fadd)
  BINARY(fsub)
  BINARY(fmul)
  BINARY(fdiv)
  BINARY(fmax)
  BINARY(fmaxnm)
  BINARY(fminnm)
  BINARY(frecps)
  FUSED(fmla)
  FUSED(fmls)
  UNARY(fsqrt)
  UNARY(frinta)
  UNARY(frecpe)
  BINARY(fcmeq)
  BINARY(fcmge)
  BINARY(fcmgt)
  UNARY(fcvtzs)
  UNARY(fcvtzu)
  UNARY(scvtf)
  UNARY(ucvtf)
#undef UNARY
#undef BINARY
#undef FUSED

  // Whether a or b is a NaN. A number equals itself, and the comparison's flags are those of an unordered one.
  template <lane_group T>
  static T fcmuo(T a, T b) {
    return ~(fcmeq(a, a) & fcmeq(b, b));
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
  // SCVTF to a single clears the rest of the register.
  static std::uint64_t single_of(std::uint64_t a) {
    std::uint64_t r;
    asm volatile("scvtf %s0, %x1" : "=w"(r) : "r"(a));
    return r;
  }
};

}  // namespace quern

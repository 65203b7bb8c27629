// Operands as direct handlers take them.
#include <gmock/gmock.h>

#include <type_traits>
#include <vector>

#include "sve/decoder/operands.h"

namespace quern {
namespace {

using values = std::vector<std::uint64_t>;

values fields_of(aarch64_z_reg z) { return {z.num, z.size, z.dsize, z.ssize}; }
values fields_of(aarch64_p_reg p) { return {p.num, p.size, p.dsize, p.ssize}; }
values fields_of(aarch64_i_reg r) { return {r.num, r.size, r.dsize, r.ssize}; }
values fields_of(aarch64_i_rsp_reg r) { return {r.num, r.size}; }
values fields_of(aarch64_sve_logical64_imm i) { return {i.value}; }
values fields_of(aarch64_sve_fp_dup_imm i) { return {i.half, i.single, i.dbl}; }
values fields_of(aarch64_sve_fp_arith_imm i) { return {i.bit}; }
template <class T>
requires std::is_integral_v<T> values fields_of(T x) {
  return {static_cast<std::uint64_t>(static_cast<std::int64_t>(x))};
}

template <operand Op, std::uint32_t Size>
values bound(std::uint32_t word) {
  return fields_of(bind<Op, Size>(word));
}

constexpr std::uint64_t minus(std::uint64_t x) { return 0 - x; }

struct value_case {
  const char* what;
  values got, expected;
};

// Words have the field in place: 17 << 5 is 17 in bits 9..5.
TEST(OperandValue, OfRegisters) {
  const value_case cases[] = {
      {"vector", bound<Zd, size_h>(30), {30, size_h, 5, 5}},
      {"vector, read and written", bound<Zdn, size_d>(30), {30, 5, size_d, size_d}},
      {"vector, 128-bit element", bound<Zd, size_q>(1), {1, 4, 5, 5}},
      {"source of its own size", bound<Zn.of(size_b), size_h>(17 << 5), {17, size_b, 5, 5}},
      {"second source", bound<Zm, size_s>(17 << 16), {17, size_s, 5, 5}},
      {"second source of a destructive form", bound<Zm5, size_s>(17 << 5 | 3 << 16), {17, size_s, 5, 5}},
      {"addend", bound<Za, size_s>(17 << 16), {17, size_s, 5, 5}},
      {"addend in the low place", bound<Za5, size_s>(17 << 5), {17, size_s, 5, 5}},
      {"indexed source, eight registers", bound<Zm_low8, size_h>(0x1F << 16), {7, size_h, 5, 5}},
      {"indexed source, sixteen registers", bound<Zm_low16, size_d>(0x1F << 16), {15, size_d, 5, 5}},
      {"32-bit offsets in 64-bit lanes", bound<Zm_sxtw, size_d>(9 << 16), {9, size_s, 5, 5}},
      {"32-bit offsets in 32-bit lanes", bound<Zm_uxtw, size_s>(9 << 16), {9, size_s, 5, 5}},
      {"transferred vector", bound<Zt.times(4), size_b>(31), {31, size_b, 5, 5}},
      {"vector without elements", bound<Zd.as(operand_kind::z_whole), size_s>(8), {8, size_s, 5, 5}},
      {"scalar in a vector", bound<Vd, size_h>(31), {31}},
      {"scalar in a vector, source", bound<Vn, size_h>(31 << 5), {31}},
      {"merging predicate", bound<Pg_m, size_h>(7 << 10), {7, 4, 7, 7}},
      {"zeroing predicate", bound<Pg_z, size_h>(7 << 10), {7, 5, 7, 7}},
      {"predicate without a qualifier", bound<Pg, size_h>(7 << 10), {7, 6, 7, 7}},
      {"four-bit merging predicate", bound<Pg4_m, size_b>(15 << 10), {15, 4, 7, 7}},
      {"four-bit zeroing predicate", bound<Pg4_z, size_b>(15 << 10), {15, 5, 7, 7}},
      {"four-bit predicate", bound<Pg4, size_b>(15 << 10), {15, 6, 7, 7}},
      {"predicate of CPY", bound<Pg16_z, size_b>(15 << 16), {15, 5, 7, 7}},
      {"predicate in the source's place", bound<Pg5, size_b>(15 << 5), {15, 6, 7, 7}},
      {"predicate with elements", bound<Pd, size_s>(15), {15, size_s, 7, 7}},
      {"predicate, read and written", bound<Pdn, size_s>(15), {15, 7, size_s, size_s}},
      {"predicate source", bound<Pn, size_d>(15 << 5), {15, size_d, 7, 7}},
      {"second predicate source", bound<Pm, size_d>(15 << 16), {15, size_d, 7, 7}},
      {"general register", bound<Rn, size_w>(31 << 5), {31, 2, 4, 4}},
      {"general register, X", bound<Xd, size_b>(31), {31, 3, 4, 4}},
      {"general register, read and written, X", bound<Xdn, size_b>(31), {31, 4, 3, 3}},
      {"general register, read and written, W", bound<Wdn, size_d>(31), {31, 4, 2, 2}},
      {"scalar of a narrow element is in W", bound<Rdn, size_b>(31), {31, 4, 2, 2}},
      {"scalar of a doubleword is in X", bound<Rdn, size_d>(31), {31, 4, 3, 3}},
      {"memory base", bound<Xn_sp, size_b>(31 << 5), {31, 3}},
      {"stack-relative scalar of an element", bound<Rn_sp, size_h>(31 << 5), {31, size_h}},
      {"base of ADDVL", bound<Xn16_sp, size_d>(31 << 16), {31, 3}},
  };
  for (const value_case& c : cases) EXPECT_EQ(c.got, c.expected) << c.what;
}

TEST(OperandValue, OfImmediates) {
  const value_case cases[] = {
      {"offset of a contiguous access", bound<imm4_vl, size_b>(8 << 16), {minus(8)}},
      {"offset of a structure is unscaled", bound<imm4_vl.times(3), size_b>(7 << 16), {7}},
      {"offset of a broadcast is unscaled", bound<imm6.times(8), size_d>(63 << 16), {63}},
      {"offset from a vector base is unscaled", bound<imm5.times(4), size_s>(31 << 16), {31}},
      {"offset of a whole register", bound<imm9_vl, size_b>(0x20 << 16), {minus(256)}},
      {"offset of a whole register, low bits", bound<imm9_vl, size_b>(1 << 16 | 2 << 10), {10}},
      {"five signed bits", bound<imm5_s, size_b>(0x10 << 16), {minus(16)}},
      {"five signed bits, low place", bound<imm5_low_s, size_b>(0x1F << 5), {minus(1)}},
      {"seven unsigned bits", bound<imm7, size_b>(0x7F << 14), {127}},
      {"six signed bits", bound<imm6_s, size_b>(0x20 << 5), {minus(32)}},
      {"eight signed bits", bound<imm8_s, size_d>(0x80 << 5), {minus(128)}},
      {"eight unsigned bits", bound<imm8, size_d>(0x80 << 5), {128}},
      {"shifted bits of bytes", bound<imm9_shifted, size_b>(0x101 << 5), {0x100}},
      {"shifted bits of halfwords", bound<imm9_shifted, size_h>(0x1FF << 5), {0xFF00}},
      {"shifted bits cut to bytes", bound<imm9_shifted_narrow, size_b>(0x1FF << 5), {0}},
      {"unshifted bits in bytes", bound<imm9_shifted_narrow, size_b>(0x0FF << 5), {0xFF}},
      {"shifted bits cut to halfwords", bound<imm9_shifted_narrow, size_h>(0x1FF << 5), {0xFF00}},
      {"shifted signed bits", bound<imm9_shifted_s, size_b>(0x1FF << 5), {minus(256)}},
      {"shift left, bytes", bound<left_b, size_b>(7 << 5 | 1 << 8), {7}},
      {"shift left, doublewords", bound<left_d, size_d>(1 << 22 | 31 << 5), {63}},
      {"shift left, unpredicated", bound<left16_h, size_h>(15 << 16), {15}},
      {"shift right by all bits of a byte", bound<right_b, size_b>(1 << 8), {8}},
      {"shift right, halfwords", bound<right_h, size_h>(15 << 5), {1}},
      {"shift right, words", bound<right_s, size_s>(0), {32}},
      {"shift right, doublewords", bound<right_d, size_d>(1 << 22), {32}},
      {"shift right, unpredicated", bound<right16_d, size_d>(1 << 22 | 31 << 16), {1}},
      {"index of a byte", bound<dup_index_b, size_b>(2 << 22 | 0x1F << 16), {2 << 4 | 15}},
      {"index of a halfword", bound<dup_index_h, size_h>(2 << 22 | 0x1F << 16), {2 << 3 | 7}},
      {"index of a word", bound<dup_index_s, size_s>(2 << 22 | 0x1F << 16), {2 << 2 | 3}},
      {"index of a doubleword", bound<dup_index_d, size_d>(2 << 22 | 0x1F << 16), {2 << 1 | 1}},
      {"index of a quadword", bound<dup_index_q, size_q>(2 << 22 | 0x1F << 16), {2}},
      {"bytes to extract from", bound<imm_ext, size_b>(0x1F << 16 | 5 << 10), {0xFD}},
      {"pattern", bound<pattern, size_b>(31 << 5), {31}},
      {"multiplier", bound<multiplier, size_b>(15 << 16), {16}},
      {"rotation", bound<rot13, size_s>(3 << 13), {3}},
      {"rotation of the indexed form", bound<rot10, size_s>(2 << 10), {2}},
      {"rotation bit", bound<rot16, size_s>(1 << 16), {1}},
      {"coefficient", bound<imm3, size_s>(7 << 16), {7}},
      {"multiplied element, halfwords", bound<index3, size_h>(1 << 22 | 2 << 19), {6}},
      {"multiplied element, words", bound<index2, size_s>(1 << 22 | 2 << 19), {2}},
      {"multiplied element, doublewords", bound<index1, size_d>(1 << 22 | 3 << 19), {1}},
      {"bit mask", bound<imm13, size_d>(0x1000 << 5), {1}},
      {"floating-point constant", bound<imm8_fp_dup, size_s>(0x70 << 5), {0x3C00, 0x3F800000, 0x3FF0000000000000}},
      {"half-precision constant", bound<imm8_fp, size_h>(0x70 << 5), {0x3C00}},
      {"single-precision constant", bound<imm8_fp, size_s>(0x70 << 5), {0x3F800000}},
      {"double-precision constant", bound<imm8_fp, size_d>(0x70 << 5), {0x3FF0000000000000}},
      {"arithmetic constant", bound<i1_half_one, size_s>(1 << 5), {1}},
      {"prefetch operation", bound<prfop, size_b>(0xF), {15}},
  };
  for (const value_case& c : cases) EXPECT_EQ(c.got, c.expected) << c.what;
}

}  // namespace
}  // namespace quern

// The operands that rows name, each with its bits in the word. A form that puts a register where others don't says the
// place's lowest bit: Zm5 stands in bits 9..5.
#pragma once

#include "sve/decoder/operand.h"

namespace quern {

// Bits high..low of a word.
consteval std::uint32_t bit_range(int high, int low) { return (~0u >> (31 - high)) & (~0u << low); }

// In the place of a result: the instruction sets flags alone.
inline constexpr operand no_result{"", '-', operand_kind::nothing, 0};

// Vectors.
inline constexpr operand Zd{"Zd", 'd', operand_kind::z, bit_range(4, 0)};
inline constexpr operand Zdn{"Zdn", 'd', operand_kind::z_both, bit_range(4, 0)};
inline constexpr operand Zda{"Zda", 'd', operand_kind::z_both, bit_range(4, 0)};
inline constexpr operand Zt{"Zt", 't', operand_kind::z_list, bit_range(4, 0)};
inline constexpr operand Zn{"Zn", 'n', operand_kind::z, bit_range(9, 5)};
inline constexpr operand Zm{"Zm", 'm', operand_kind::z, bit_range(20, 16)};
inline constexpr operand Zm5{"Zm", 'm', operand_kind::z, bit_range(9, 5)};
inline constexpr operand Zm_low8{"Zm", 'm', operand_kind::z, bit_range(18, 16)};
inline constexpr operand Zm_low16{"Zm", 'm', operand_kind::z, bit_range(19, 16)};
inline constexpr operand Za{"Za", 'a', operand_kind::z, bit_range(20, 16)};
inline constexpr operand Za5{"Za", 'a', operand_kind::z, bit_range(9, 5)};
inline constexpr operand Zm_sxtw = Zm.as(operand_kind::z_sxtw), Zm_uxtw = Zm.as(operand_kind::z_uxtw);

// Scalars in vectors.
inline constexpr operand Vd{"Vd", 'd', operand_kind::v, bit_range(4, 0)};
inline constexpr operand Vdn{"Vdn", 'd', operand_kind::v_both, bit_range(4, 0)};
inline constexpr operand Vn{"Vn", 'n', operand_kind::v, bit_range(9, 5)};
inline constexpr operand Vm5{"Vm", 'm', operand_kind::v, bit_range(9, 5)};

// Predicates.
inline constexpr operand Pg_m{"Pg", 'g', operand_kind::pg_merging, bit_range(12, 10)};
inline constexpr operand Pg_z{"Pg", 'g', operand_kind::pg_zeroing, bit_range(12, 10)};
inline constexpr operand Pg{"Pg", 'g', operand_kind::pg, bit_range(12, 10)};
inline constexpr operand Pg16_m{"Pg", 'g', operand_kind::pg_merging, bit_range(19, 16)};
inline constexpr operand Pg16_z{"Pg", 'g', operand_kind::pg_zeroing, bit_range(19, 16)};
inline constexpr operand Pg4_m{"Pg", 'g', operand_kind::pg_merging, bit_range(13, 10)};  // four bits wide
inline constexpr operand Pg4_z{"Pg", 'g', operand_kind::pg_zeroing, bit_range(13, 10)};
inline constexpr operand Pg4{"Pg", 'g', operand_kind::pg, bit_range(13, 10)};
inline constexpr operand Pg5{"Pg", 'g', operand_kind::pg, bit_range(8, 5)};
inline constexpr operand Pg5_z{"Pg", 'g', operand_kind::pg_zeroing, bit_range(8, 5)};
inline constexpr operand Pd{"Pd", 'd', operand_kind::p, bit_range(3, 0)};
inline constexpr operand Pdn{"Pdn", 'd', operand_kind::p_both, bit_range(3, 0)};
inline constexpr operand Pt{"Pt", 't', operand_kind::p_whole, bit_range(3, 0)};
inline constexpr operand Pn{"Pn", 'n', operand_kind::p, bit_range(8, 5)};
inline constexpr operand Pm{"Pm", 'm', operand_kind::p, bit_range(19, 16)};
inline constexpr operand Pm5{"Pm", 'm', operand_kind::p, bit_range(8, 5)};

// General registers: R is W or X as the row's size says, X is X. Those with _sp are the stack pointer at number 31.
inline constexpr operand Rd{"Rd", 'd', operand_kind::r, bit_range(4, 0)};
inline constexpr operand Rn{"Rn", 'n', operand_kind::r, bit_range(9, 5)};
inline constexpr operand Rm{"Rm", 'm', operand_kind::r, bit_range(20, 16)};
inline constexpr operand Rm5{"Rm", 'm', operand_kind::r, bit_range(9, 5)};
inline constexpr operand Rdn{"Rdn", 'd', operand_kind::r_both, bit_range(4, 0)};
inline constexpr operand Rn_sp{"Rn|SP", 'n', operand_kind::rsp, bit_range(9, 5)};
inline constexpr operand Xd = Rd.of(size_x), Xm = Rm.of(size_x), Xdn = Rdn.of(size_x), Wdn = Rdn.of(size_w);
inline constexpr operand Xn_sp = Rn_sp.of(size_x);
inline constexpr operand Xd_sp{"Xd|SP", 'd', operand_kind::rsp, bit_range(4, 0), size_x};
inline constexpr operand Xn16_sp{"Xn|SP", 'n', operand_kind::rsp, bit_range(20, 16), size_x};

// Immediates of memory addresses.
inline constexpr operand imm4_vl{"imm4", 'i', operand_kind::imm_vl, bit_range(19, 16)};
inline constexpr operand imm4_s{"imm4", 'i', operand_kind::imm_signed, bit_range(19, 16)};
inline constexpr operand imm5{"imm5", 'i', operand_kind::imm_unsigned, bit_range(20, 16)};
inline constexpr operand imm6{"imm6", 'i', operand_kind::imm_unsigned, bit_range(21, 16)};
inline constexpr operand imm6_vl{"imm6", 'i', operand_kind::imm_vl, bit_range(21, 16)};
inline constexpr operand imm9_vl{"imm9", 'i', operand_kind::imm_vl, bit_range(21, 16) | bit_range(12, 10)};
inline constexpr operand prfop{"prfop", 'o', operand_kind::imm_prefetch, bit_range(3, 0)};

// Immediates of arithmetic, moves and comparisons.
inline constexpr operand imm5_s{"imm5", 'i', operand_kind::imm_signed, bit_range(20, 16)};
inline constexpr operand imm5_low_s{"imm5", 'j', operand_kind::imm_signed, bit_range(9, 5)};
inline constexpr operand imm5b_s{"imm5b", 'i', operand_kind::imm_signed, bit_range(20, 16)};  // INDEX has both
inline constexpr operand imm7{"imm7", 'i', operand_kind::imm_unsigned, bit_range(20, 14)};
inline constexpr operand imm6_s{"imm6", 'i', operand_kind::imm_signed, bit_range(10, 5)};
inline constexpr operand imm8{"imm8", 'i', operand_kind::imm_unsigned, bit_range(12, 5)};
inline constexpr operand imm8_s = imm8.as(operand_kind::imm_signed);
inline constexpr operand imm8_fp_dup = imm8.as(operand_kind::imm_fp_dup), imm8_fp = imm8.as(operand_kind::imm_fp);
inline constexpr operand imm9_shifted{"imm", 'i', operand_kind::imm_shifted, bit_range(13, 5)};
inline constexpr operand imm9_shifted_narrow = imm9_shifted.as(operand_kind::imm_shifted_narrow);
inline constexpr operand imm9_shifted_s = imm9_shifted.as(operand_kind::imm_shifted_s);
inline constexpr operand imm13{"imm13", 'i', operand_kind::imm_logical, bit_range(17, 5)};
inline constexpr operand imm_ext{"imm8", 'i', operand_kind::imm_unsigned, bit_range(20, 16) | bit_range(12, 10)};
inline constexpr operand imm3{"imm3", 'i', operand_kind::imm_unsigned, bit_range(18, 16)};
inline constexpr operand i1_half_one{"i1", 'i', operand_kind::imm_fp_half_one, bit_range(5, 5)};
inline constexpr operand i1_half_two = i1_half_one.as(operand_kind::imm_fp_half_two);
inline constexpr operand i1_zero_one = i1_half_one.as(operand_kind::imm_fp_zero_one);
inline constexpr operand pattern{"pattern", 'p', operand_kind::imm_pattern, bit_range(9, 5)};
inline constexpr operand multiplier{"imm4", 'i', operand_kind::imm_multiplier, bit_range(19, 16)};
inline constexpr operand rot13{"rot", 'r', operand_kind::imm_rotation, bit_range(14, 13)};
inline constexpr operand rot10{"rot", 'r', operand_kind::imm_rotation, bit_range(11, 10)};
inline constexpr operand rot16{"rot", 'r', operand_kind::imm_half_turn, bit_range(16, 16)};

// Shift amounts, by the element bits that they leave room for: those left by the field, those right counted down.
// The upper ones stand with the predicate in bits 12..10, the lower ones without.
inline constexpr operand left_b{"const", 'i', operand_kind::imm_unsigned, bit_range(7, 5)};
inline constexpr operand left_h{"const", 'i', operand_kind::imm_unsigned, bit_range(8, 5)};
inline constexpr operand left_s{"const", 'i', operand_kind::imm_unsigned, bit_range(9, 5)};
inline constexpr operand left_d{"const", 'i', operand_kind::imm_unsigned, bit_range(22, 22) | bit_range(9, 5)};
inline constexpr operand right_b = left_b.as(operand_kind::imm_right_shift);
inline constexpr operand right_h = left_h.as(operand_kind::imm_right_shift);
inline constexpr operand right_s = left_s.as(operand_kind::imm_right_shift);
inline constexpr operand right_d = left_d.as(operand_kind::imm_right_shift);
inline constexpr operand left16_b{"const", 'i', operand_kind::imm_unsigned, bit_range(18, 16)};
inline constexpr operand left16_h{"const", 'i', operand_kind::imm_unsigned, bit_range(19, 16)};
inline constexpr operand left16_s{"const", 'i', operand_kind::imm_unsigned, bit_range(20, 16)};
inline constexpr operand left16_d{"const", 'i', operand_kind::imm_unsigned, bit_range(22, 22) | bit_range(20, 16)};
inline constexpr operand right16_b = left16_b.as(operand_kind::imm_right_shift);
inline constexpr operand right16_h = left16_h.as(operand_kind::imm_right_shift);
inline constexpr operand right16_s = left16_s.as(operand_kind::imm_right_shift);
inline constexpr operand right16_d = left16_d.as(operand_kind::imm_right_shift);

// Element indices: of DUP by element size, and of multiplications by one element.
inline constexpr operand dup_index_b{"imm", 'i', operand_kind::imm_index, bit_range(23, 22) | bit_range(20, 17)};
inline constexpr operand dup_index_h{"imm", 'i', operand_kind::imm_index, bit_range(23, 22) | bit_range(20, 18)};
inline constexpr operand dup_index_s{"imm", 'i', operand_kind::imm_index, bit_range(23, 22) | bit_range(20, 19)};
inline constexpr operand dup_index_d{"imm", 'i', operand_kind::imm_index, bit_range(23, 22) | bit_range(20, 20)};
inline constexpr operand dup_index_q{"imm", 'i', operand_kind::imm_index, bit_range(23, 22)};
inline constexpr operand index3{"imm", 'i', operand_kind::imm_index, bit_range(22, 22) | bit_range(20, 19)};
inline constexpr operand index2{"imm", 'i', operand_kind::imm_index, bit_range(20, 19)};
inline constexpr operand index1{"imm", 'i', operand_kind::imm_index, bit_range(20, 20)};

}  // namespace quern

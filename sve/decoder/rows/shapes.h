// The shapes that several forms have: their routine left open, their operands named once.
#pragma once

#include "sve/decoder/decode_row.h"
#include "sve/decoder/operands.h"

namespace quern::rows {

using namespace families;  // NOLINT(google-build-using-namespace): rows name families as they name types

// Zdn = Zdn op Zm, merging.
template <auto Handler>
constexpr auto binary = direct<Handler, Zdn, Pg_m, Zm5>;
template <auto Handler>
constexpr auto binary_fp = direct_fp<Handler, Zdn, Pg_m, Zm5>;
template <class Family>
constexpr auto library_binary = library<Family, Zdn, Zdn, Pg_m, Zm5>;
template <class Family>
constexpr auto library_binary_wide = library<Family, Zdn, Zdn, Pg_m, Zm5.of(size_d)>;

// Zdn = Zdn op an immediate, merging.
template <auto Handler, operand Immediate>
constexpr auto binary_imm = direct<Handler, Zdn, Pg_m, Immediate>;
template <auto Handler, operand Immediate>
constexpr auto binary_imm_fp = direct_fp<Handler, Zdn, Pg_m, Immediate>;
template <class Family, operand Immediate>
constexpr auto library_binary_imm = library<Family, Zdn, Zdn, Pg_m, Immediate>;

// Zd = op(Zn), merging.
template <auto Handler>
constexpr auto unary = direct<Handler, Zd, Pg_m, Zn>;
template <auto Handler>
constexpr auto unary_fp = direct_fp<Handler, Zd, Pg_m, Zn>;
template <class Family>
constexpr auto library_unary = library<Family, Zd, Zd, Pg_m, Zn>;

// The same between two formats: lanes have the width of the wider side, and each register is named by its own.
template <auto Handler, std::uint32_t To, std::uint32_t From>
constexpr auto convert = direct_fp<Handler, Zd.of(To), Pg_m, Zn.of(From)>;
template <class Family, std::uint32_t To, std::uint32_t From>
constexpr auto library_convert = library<Family, Zd.of(To), Zd.of(To), Pg_m, Zn.of(From)>;

// Zda = Zda + Zn * Zm and its like, merging; Zdn = Za + Zdn * Zm and its like.
template <auto Handler>
constexpr auto accumulate = direct<Handler, Zda, Pg_m, Zn, Zm>;
template <auto Handler>
constexpr auto accumulate_fp = direct_fp<Handler, Zda, Pg_m, Zn, Zm>;
template <class Family>
constexpr auto library_accumulate = library<Family, Zda, Zda, Pg_m, Zn, Zm>;
template <auto Handler>
constexpr auto multiply_add_fp = direct_fp<Handler, Zdn, Pg_m, Zm5, Za>;
template <class Family>
constexpr auto library_multiply_add = library<Family, Zdn, Zdn, Pg_m, Zm5, Za>;

// Zd = Zn op Zm.
template <auto Handler>
constexpr auto vectors = direct<Handler, Zd, Zn, Zm>;
template <auto Handler>
constexpr auto vectors_fp = direct_fp<Handler, Zd, Zn, Zm>;
template <class Family>
constexpr auto library_vectors = library<Family, Zd, Zn, Zm>;
template <class Family>
constexpr auto library_vectors_wide = library<Family, Zd, Zn, Zm.of(size_d)>;

// Zd = op(Zn).
template <auto Handler>
constexpr auto vector = direct<Handler, Zd, Zn>;
template <auto Handler>
constexpr auto vector_fp = direct_fp<Handler, Zd, Zn>;
template <class Family>
constexpr auto library_vector = library<Family, Zd, Zn>;

// Zdn = Zdn op an immediate; Zd = Zn op an immediate.
template <auto Handler, operand Immediate>
constexpr auto immediate = direct<Handler, Zdn, Immediate>;
template <class Family, operand Immediate>
constexpr auto library_immediate = library<Family, Zdn, Zdn, Immediate>;
template <auto Handler, operand Immediate>
constexpr auto vector_imm = direct<Handler, Zd, Zn, Immediate>;
template <class Family, operand Immediate>
constexpr auto library_vector_imm = library<Family, Zd, Zn, Immediate>;

// A scalar in a vector, from the active lanes of Zn; from those of Zm and the scalar itself.
template <auto Handler>
constexpr auto reduction = direct<Handler, Vd, Pg, Zn>;
template <auto Handler>
constexpr auto reduction_fp = direct_fp<Handler, Vd, Pg, Zn>;
template <class Family>
constexpr auto library_reduction = library<Family, Vd, Pg, Zn>;
template <class Family>
constexpr auto library_scalar_reduction = library<Family, Vdn, Pg, Vdn, Zm5>;

// Zdn, from the active lanes of it and of Zm.
template <class Family>
constexpr auto library_selection = library<Family, Zdn, Pg, Zdn, Zm5>;

// A predicate, from a comparison.
template <auto Handler>
constexpr auto compare = direct<Handler, Pd, Pg_z, Zn, Zm>;
template <auto Handler>
constexpr auto compare_fp = direct_fp<Handler, Pd, Pg_z, Zn, Zm>;
template <auto Handler>
constexpr auto compare_zero_fp = direct_fp<Handler, Pd, Pg_z, Zn>;
template <auto Handler>
constexpr auto compare_imm = direct<Handler, Pd, Pg_z, Zn, imm5_s>;
template <auto Handler>
constexpr auto compare_imm7 = direct<Handler, Pd, Pg_z, Zn, imm7>;
template <class Family>
constexpr auto library_compare = library<Family, Pd, Pg_z, Zn, Zm>;
template <class Family>
constexpr auto library_compare_wide = library<Family, Pd, Pg_z, Zn, Zm.of(size_d)>;
template <class Family>
constexpr auto library_compare_zero = library<Family, Pd, Pg_z, Zn>;
template <class Family>
constexpr auto library_compare_imm = library<Family, Pd, Pg_z, Zn, imm5_s>;
template <class Family>
constexpr auto library_compare_imm7 = library<Family, Pd, Pg_z, Zn, imm7>;

// Predicates from predicates: under one, zeroing, of two or of one; of two without; of one.
template <auto Handler>
constexpr auto predicate_logic = direct<Handler, Pd, Pg4_z, Pn, Pm>;
template <class Family>
constexpr auto library_predicate_logic = library<Family, Pd, Pg4_z, Pn, Pm>;
template <auto Handler, operand Qualified = Pg4_z>
constexpr auto predicate_break = direct<Handler, Pd, Qualified, Pn>;
template <class Family>
constexpr auto library_predicate_break = library<Family, Pd, Pg4_z, Pn>;
template <auto Handler>
constexpr auto predicates = direct<Handler, Pd, Pn, Pm>;
template <class Family>
constexpr auto library_predicates = library<Family, Pd, Pn, Pm>;

// A predicate, from two scalars.
template <auto Handler>
constexpr auto while_w = direct<Handler, Pd, Rn.of(size_w), Rm.of(size_w)>;
template <auto Handler>
constexpr auto while_x = direct<Handler, Pd, Rn.of(size_x), Rm.of(size_x)>;
template <class Family>
constexpr auto library_while_w = library<Family, Pd, Rn.of(size_w), Rm.of(size_w)>;
template <class Family>
constexpr auto library_while_x = library<Family, Pd, Rn.of(size_x), Rm.of(size_x)>;

// A register moved by a pattern's count of elements times a multiplier; by a predicate's count.
template <auto Handler, operand Register>
constexpr auto by_pattern = direct<Handler, Register, pattern, multiplier>;
template <class Family, operand Register>
constexpr auto library_by_pattern = library<Family, Register, Register, pattern, multiplier>;
template <class Family, operand Register>
constexpr auto library_by_predicate = library<Family, Register, Pm5, Register>;

// What a memory access touches.
constexpr memory_effect consecutive(memory_kind kind, unsigned bytes, unsigned registers = 1) {
  return {kind, memory_extent::consecutive, static_cast<std::uint8_t>(bytes), static_cast<std::uint8_t>(registers)};
}
constexpr memory_effect spread(memory_kind kind, memory_extent extent, unsigned bytes) {
  return {kind, extent, static_cast<std::uint8_t>(bytes), 1};
}

// Contiguous access of Bytes bytes an element: at a multiple of the vector's length, and at a scaled register.
template <memory_kind Kind, auto Handler, unsigned Bytes, unsigned Registers>
constexpr accessing_shape<
    consecutive(Kind, Bytes, Registers),
    direct_shape<Handler, Zt.times(Registers), Kind == memory_kind::store ? Pg : Pg_z, Xn_sp, imm4_vl.times(Registers)>>
    access_at_immediate{};
template <memory_kind Kind, auto Handler, unsigned Bytes, unsigned Registers>
constexpr accessing_shape<
    consecutive(Kind, Bytes, Registers),
    direct_shape<Handler, Zt.times(Registers), Kind == memory_kind::store ? Pg : Pg_z, Xn_sp, Xm.times(Bytes)>>
    access_at_register{};

template <auto Handler, unsigned Bytes, unsigned Registers = 1>
constexpr auto load_imm = access_at_immediate<memory_kind::load, Handler, Bytes, Registers>;
template <auto Handler, unsigned Bytes, unsigned Registers = 1>
constexpr auto store_imm = access_at_immediate<memory_kind::store, Handler, Bytes, Registers>;
template <auto Handler, unsigned Bytes>
constexpr auto non_fault_load = access_at_immediate<memory_kind::non_fault_load, Handler, Bytes, 1>;
template <auto Handler, unsigned Bytes, unsigned Registers = 1>
constexpr auto load_reg = access_at_register<memory_kind::load, Handler, Bytes, Registers>;
template <auto Handler, unsigned Bytes, unsigned Registers = 1>
constexpr auto store_reg = access_at_register<memory_kind::store, Handler, Bytes, Registers>;
template <auto Handler, unsigned Bytes>
constexpr auto first_fault_load = access_at_register<memory_kind::first_fault_load, Handler, Bytes, 1>;
template <class Family, unsigned Bytes>
constexpr accessing_shape<consecutive(memory_kind::first_fault_load, Bytes),
                          library_shape<true, Family, Zt, Pg_z, Xn_sp, Xm.times(Bytes)>>
    library_first_fault_load{};

// One element for all lanes; a block of 16 bytes for all.
template <auto Handler, unsigned Bytes>
constexpr accessing_shape<spread(memory_kind::load, memory_extent::one_element, Bytes),
                          direct_shape<Handler, Zt, Pg_z, Xn_sp, imm6.times(Bytes)>>
    broadcast{};
template <class Family, unsigned Bytes>
constexpr accessing_shape<spread(memory_kind::load, memory_extent::quadword, Bytes),
                          library_shape<false, Family, Zt, Pg_z, Xn_sp, imm4_s.times(16)>>
    library_quadword_imm{};
template <class Family, unsigned Bytes>
constexpr accessing_shape<spread(memory_kind::load, memory_extent::quadword, Bytes),
                          library_shape<false, Family, Zt, Pg_z, Xn_sp, Xm.times(Bytes)>>
    library_quadword_reg{};

// A register as it stands.
template <memory_kind Kind, auto Handler, operand Register>
constexpr accessing_shape<spread(Kind, memory_extent::image, 1), direct_shape<Handler, Register, Xn_sp, imm9_vl>>
    whole_register{};

// Gathers and scatters of Bytes bytes an element: at addresses in a vector, at offsets in a vector, at indices in one.
template <memory_kind Kind, unsigned Bytes, class Shape>
constexpr accessing_shape<spread(Kind, memory_extent::scattered, Bytes), Shape> scattered{};
template <auto Handler, unsigned Bytes>
constexpr auto load_address =
    scattered<memory_kind::load, Bytes, direct_shape<Handler, Zt, Pg_z, Zn, imm5.times(Bytes)>>;
template <auto Handler, unsigned Bytes, operand Offset>
constexpr auto load_offset = scattered<memory_kind::load, Bytes, direct_shape<Handler, Zt, Pg_z, Offset, Xn_sp>>;
template <auto Handler, unsigned Bytes, operand Index>
constexpr auto load_index =
    scattered<memory_kind::load, Bytes, direct_shape<Handler, Zt, Pg_z, Xn_sp, Index.times(Bytes)>>;
template <auto Handler, unsigned Bytes>
constexpr auto store_address =
    scattered<memory_kind::store, Bytes, direct_shape<Handler, Zt, Pg, Zn, imm5.times(Bytes)>>;
template <auto Handler, unsigned Bytes, operand Offset>
constexpr auto store_offset = scattered<memory_kind::store, Bytes, direct_shape<Handler, Zt, Pg, Offset, Xn_sp>>;
template <auto Handler, unsigned Bytes, operand Index>
constexpr auto store_index =
    scattered<memory_kind::store, Bytes, direct_shape<Handler, Zt, Pg, Xn_sp, Index.times(Bytes)>>;
template <class Family, unsigned Bytes>
constexpr auto first_fault_address =
    scattered<memory_kind::first_fault_load, Bytes, library_shape<true, Family, Zt, Pg_z, Zn, imm5.times(Bytes)>>;
template <class Family, unsigned Bytes, operand Offset>
constexpr auto first_fault_offset =
    scattered<memory_kind::first_fault_load, Bytes, library_shape<true, Family, Zt, Pg_z, Offset, Xn_sp>>;
template <class Family, unsigned Bytes, operand Index>
constexpr auto first_fault_index =
    scattered<memory_kind::first_fault_load, Bytes, library_shape<true, Family, Zt, Pg_z, Xn_sp, Index.times(Bytes)>>;

// Prefetches of Bytes bytes an element, by the form of the address.
constexpr auto prefetch_imm = no_operation<prfop, Pg, Xn_sp, imm6_vl>;
template <unsigned Bytes>
constexpr auto prefetch_scalar = no_operation<prfop, Pg, Xn_sp, Xm.times(Bytes)>;
template <operand Offset>
constexpr auto prefetch_vector = no_operation<prfop, Pg, Xn_sp, Offset>;
template <unsigned Bytes>
constexpr auto prefetch_base = no_operation<prfop, Pg, Zn, imm5.times(Bytes)>;

}  // namespace quern::rows

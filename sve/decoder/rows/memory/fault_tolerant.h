// Rows of contiguous non-fault and first-fault loads.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/fault_tolerant.h"
#include "sve/veclib/memory/fault_tolerant.h"

namespace quern::rows {

// Field z is the memory element and the lane as the architecture's dtype codes them.
constexpr encoding ldnf1_imm = "1010010 zzzz 1 iiii 101 ggg nnnnn ttttt";
constexpr encoding ldff1_reg = "1010010 zzzz mmmmm 011 ggg nnnnn ttttt";

constexpr auto fault_tolerant_rows =
    group(row<U8.at(0b0000)>("CLoadNF1SIZ", ldnf1_imm, non_fault_load<sve_ldnf1b_zpri, 1>),
          row<U16.at(0b0001)>("CLoadNF1SIZ", ldnf1_imm, non_fault_load<sve_ldnf1b_h_zpri, 1>),
          row<U32.at(0b0010)>("CLoadNF1SIZ", ldnf1_imm, non_fault_load<sve_ldnf1b_s_zpri, 1>),
          row<U64.at(0b0011)>("CLoadNF1SIZ", ldnf1_imm, non_fault_load<sve_ldnf1b_d_zpri, 1>),
          row<S16.at(0b1110)>("CLoadNF1SIZ", ldnf1_imm, non_fault_load<sve_ldnf1sb_h_zpri, 1>),
          row<S32.at(0b1101)>("CLoadNF1SIZ", ldnf1_imm, non_fault_load<sve_ldnf1sb_s_zpri, 1>),
          row<S64.at(0b1100)>("CLoadNF1SIZ", ldnf1_imm, non_fault_load<sve_ldnf1sb_d_zpri, 1>),
          row<U16.at(0b0101)>("CLoadNF2SIZ", ldnf1_imm, non_fault_load<sve_ldnf1h_zpri, 2>),
          row<U32.at(0b0110)>("CLoadNF2SIZ", ldnf1_imm, non_fault_load<sve_ldnf1h_s_zpri, 2>),
          row<U64.at(0b0111)>("CLoadNF2SIZ", ldnf1_imm, non_fault_load<sve_ldnf1h_d_zpri, 2>),
          row<S32.at(0b1001)>("CLoadNF2SIZ", ldnf1_imm, non_fault_load<sve_ldnf1sh_s_zpri, 2>),
          row<S64.at(0b1000)>("CLoadNF2SIZ", ldnf1_imm, non_fault_load<sve_ldnf1sh_d_zpri, 2>),
          row<U32.at(0b1010)>("CLoadNF4SIZ", ldnf1_imm, non_fault_load<sve_ldnf1w_zpri, 4>),
          row<U64.at(0b1011)>("CLoadNF4SIZ", ldnf1_imm, non_fault_load<sve_ldnf1w_d_zpri, 4>),
          row<S64.at(0b0100)>("CLoadNF4SIZ", ldnf1_imm, non_fault_load<sve_ldnf1sw_d_zpri, 4>),
          row<U64.at(0b1111)>("CLoadNF8SIZ", ldnf1_imm, non_fault_load<sve_ldnf1d_zpri, 8>),
          row<U8.at(0b0000)>("CLoadFF1LSSZ", ldff1_reg, first_fault_load<sve_ldff1b_scaled_zprr, 1>),
          row<U16.at(0b0001)>("CLoadFF1LSSZ", ldff1_reg, first_fault_load<sve_ldff1b_h_scaled_zprr, 1>),
          row<U32.at(0b0010)>("CLoadFF1LSSZ", ldff1_reg, first_fault_load<sve_ldff1b_s_scaled_zprr, 1>),
          row<U64.at(0b0011)>("CLoadFF1LSSZ", ldff1_reg, first_fault_load<sve_ldff1b_d_scaled_zprr, 1>),
          row<S16.at(0b1110)>("CLoadFF1LSSZ", ldff1_reg, library_first_fault_load<CLoadFF1LSSZ, 1>),
          row<S32.at(0b1101)>("CLoadFF1LSSZ", ldff1_reg, library_first_fault_load<CLoadFF1LSSZ, 1>),
          row<S64.at(0b1100)>("CLoadFF1LSSZ", ldff1_reg, library_first_fault_load<CLoadFF1LSSZ, 1>),
          row<U16.at(0b0101)>("CLoadFF2LSSZ", ldff1_reg, library_first_fault_load<CLoadFF2LSSZ, 2>),
          row<U32.at(0b0110)>("CLoadFF2LSSZ", ldff1_reg, library_first_fault_load<CLoadFF2LSSZ, 2>),
          row<U64.at(0b0111)>("CLoadFF2LSSZ", ldff1_reg, library_first_fault_load<CLoadFF2LSSZ, 2>),
          row<S32.at(0b1001)>("CLoadFF2LSSZ", ldff1_reg, library_first_fault_load<CLoadFF2LSSZ, 2>),
          row<S64.at(0b1000)>("CLoadFF2LSSZ", ldff1_reg, library_first_fault_load<CLoadFF2LSSZ, 2>),
          row<U32.at(0b1010)>("CLoadFF4LSSZ", ldff1_reg, first_fault_load<sve_ldff1w_scaled_zprr, 4>),
          row<U64.at(0b1011)>("CLoadFF4LSSZ", ldff1_reg, first_fault_load<sve_ldff1w_d_scaled_zprr, 4>),
          row<S64.at(0b0100)>("CLoadFF4LSSZ", ldff1_reg, library_first_fault_load<CLoadFF4LSSZ, 4>),
          row<U64.at(0b1111)>("CLoadFF8LSSZ", ldff1_reg, first_fault_load<sve_ldff1d_scaled_zprr, 8>));

}  // namespace quern::rows

// Rows of contiguous non-fault and first-fault loads.
#pragma once

#include "sve/decoder/rows/memory/element_type.h"
#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/fault_tolerant.h"
#include "sve/veclib/memory/fault_tolerant.h"

namespace quern::rows {

// Field z is the dtype.
constexpr encoding ldnf1_imm = "1010010 zzzz 1 iiii 101 ggg nnnnn ttttt";
constexpr encoding ldff1_reg = "1010010 zzzz mmmmm 011 ggg nnnnn ttttt";

constexpr auto non_fault_rows = group(
#define ELEMENT(letters, M, T, U) \
  row<dtype<T, U>>("CLoadNF" #M "SIZ", ldnf1_imm, non_fault_load<sve_ldnf1##letters##_zpri, M>),
#include "sve/handlers/memory/elements.def"
    no_rows);

constexpr auto first_fault_rows = group(
#define ELEMENT(letters, M, T, U) \
  row<dtype<T, U>>("CLoadFF" #M "LSSZ", ldff1_reg, first_fault_load<sve_ldff1##letters##_scaled_zprr, M>),
#define HALFWORD(letters, M, T, U) \
  row<dtype<T, U>>("CLoadFF" #M "LSSZ", ldff1_reg, library_first_fault_load<CLoadFF##M##LSSZ, M>),
#define SIGNED HALFWORD
#include "sve/handlers/memory/elements.def"
    no_rows);

constexpr auto fault_tolerant_rows = group(non_fault_rows, first_fault_rows);

}  // namespace quern::rows

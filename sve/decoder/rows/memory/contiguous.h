// Rows of contiguous loads and stores of one register.
#pragma once

#include "sve/decoder/rows/memory/element_type.h"
#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/contiguous.h"

namespace quern::rows {

// Field z of the single ones is the dtype; of the non-temporal ones, the element's size.
constexpr encoding ld1_imm = "1010010 zzzz 0 iiii 101 ggg nnnnn ttttt";
constexpr encoding ldnt1_imm = "1010010 zz 000 iiii 111 ggg nnnnn ttttt";
constexpr encoding st1_imm = "1110010 zzzz 0 iiii 111 ggg nnnnn ttttt";
constexpr encoding stnt1_imm = "1110010 zz 001 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld1_reg = "1010010 zzzz mmmmm 010 ggg nnnnn ttttt";
constexpr encoding ldnt1_reg = "1010010 zz 00 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st1_reg = "1110010 zzzz mmmmm 010 ggg nnnnn ttttt";
constexpr encoding stnt1_reg = "1110010 zz 00 mmmmm 011 ggg nnnnn ttttt";

// A load or store at an immediate and at a register.
#define ROWS(type, load, stem, M, ld1, handler)                             \
  row<type>(stem #M "SIZ", ld1##_imm, load##_imm<sve_##handler##_zpri, M>), \
      row<type>(stem #M "LSSZ", ld1##_reg, load##_reg<sve_##handler##_scaled_zprr, M>)
#define NON_TEMPORAL(letter, M, type) \
  ROWS(type, load, "CLoadNT", M, ldnt1, ldnt1##letter), ROWS(type, store, "CStoreNT", M, stnt1, stnt1##letter)

constexpr auto contiguous_rows =
    group(NON_TEMPORAL(b, 1, U8), NON_TEMPORAL(h, 2, U16), NON_TEMPORAL(w, 4, U32), NON_TEMPORAL(d, 8, U64),
#define SIGNED(letters, M, T, U) ROWS((dtype<T, U>), load, "CLoad", M, ld1, ld1##letters),
#define ELEMENT(letters, M, T, U) \
  SIGNED(letters, M, T, U)        \
  ROWS((dtype<T, U>), store, "CStore", M, st1, st1##letters),
#include "sve/handlers/memory/elements.def"
          no_rows);

#undef NON_TEMPORAL
#undef ROWS

}  // namespace quern::rows

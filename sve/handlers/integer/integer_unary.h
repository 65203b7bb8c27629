// Integer operations on one vector, merging: Zd = op(Zn) in active lanes. The size code is Zd's `size`.
#pragma once

#include "sve/handlers/handler_types.h"

handler_zpz sve_neg_zpz;   // NEG: 0 - Zn, wrapping. B, H, S, D
handler_zpz sve_rbit_zpz;  // RBIT: bits in reverse order within the element. B, H, S, D
handler_zpz sve_revw_zpz;  // REVW: the words of each doubleword exchanged. D, whatever the code

handler_zpz sve_sxtb_zpz;  // SXTB: low byte, sign-extended. S, D; any other code is H
handler_zpz sve_sxth_zpz;  // SXTH: low halfword, sign-extended. D; any other code is S
handler_zpz sve_sxtw_zpz;  // SXTW: low word, sign-extended. D, whatever the code
handler_zpz sve_uxth_zpz;  // UXTH: low halfword, zero-extended. D; any other code is S
handler_zpz sve_uxtw_zpz;  // UXTW: low word, zero-extended. D, whatever the code

// Elements moved within and between registers by position: lookup, extraction, reversal, unpacking. Flags stay.
#pragma once

#include "sve/handlers/handler_types.h"

// Zd[i] = Zn[Zm[i]], or 0 where that index is no lane. B, H, S, D by Zd's size (TBL).
handler_zzz sve_tbl_zzz;

// Zdn = VL_BYTES bytes of Zdn followed by Zm, from byte `imm` on, or from byte 0 when imm is VL_BYTES or more. There is
// no element size (EXT).
aarch64_decode_rc sve_ext_zzi(cpu_state* state, aarch64_z_reg zdn, aarch64_z_reg zm, unsigned int imm);

handler_zz sve_rev_zz;  // Zd[i] = Zn[last - i]. B, H, S, D by Zd's size (REV, vector)
handler_pp sve_rev_pp;  // Pd[i] = Pn[last - i], whole elements. B, H, S, D by Pd's size (REV, predicate)

// Zd = the elements of the low (high) half of Zn, zero-extended to twice their width.
handler_zz sve_uunpklo_b2h_zz;  // UUNPKLO, bytes to halfwords
handler_zz sve_uunpkhi_b2h_zz;  // UUNPKHI
handler_zz sve_uunpklo_h2s_zz;  // UUNPKLO, halfwords to words
handler_zz sve_uunpkhi_h2s_zz;  // UUNPKHI
handler_zz sve_uunpklo_s2d_zz;  // UUNPKLO, words to doublewords
handler_zz sve_uunpkhi_s2d_zz;  // UUNPKHI

// The same, sign-extended.
handler_zz sve_sunpklo_s2d_zz;  // SUNPKLO, words to doublewords
handler_zz sve_sunpkhi_s2d_zz;  // SUNPKHI

// Halfword i of Pd = bit 0 of byte i of the low (high) half of Pn.
handler_pp sve_punpklo_pp;  // PUNPKLO
handler_pp sve_punpkhi_pp;  // PUNPKHI

// Floating-point arithmetic on the host's own unit, single and double precision: S and D by the code of the destination
// (`dsize` where it is a source too), or as a name says. A predicate merges, and an inactive lane computes nothing.
// Flags accumulate in the host's FPSR, which the caller brings in and out; the control register is the host's own.
#pragma once

#include "sve/handlers/handler_types.h"

// Zdn = Zdn op Zm.
handler_zpz sve_fadd_zpz;    // FADD
handler_zpz sve_fsub_zpz;    // FSUB
handler_zpz sve_fsubr_zpz;   // FSUBR: Zm - Zdn
handler_zpz sve_fmul_zpz;    // FMUL
handler_zpz sve_fdiv_zpz;    // FDIV
handler_zpz sve_fdivr_zpz;   // FDIVR: Zm / Zdn
handler_zpz sve_fmax_zpz;    // FMAX: a NaN propagates
handler_zpz sve_fmaxnm_zpz;  // FMAXNM
handler_zpz sve_fminnm_zpz;  // FMINNM

// Zd = Zn op Zm, every lane.
handler_zzz sve_fadd_zzz;    // FADD
handler_zzz sve_fsub_zzz;    // FSUB
handler_zzz sve_fmul_zzz;    // FMUL
handler_zzz sve_frecps_zzz;  // FRECPS, reciprocal step

// Zdn = Zdn op a constant: 0.5 for bit 0, and for bit 1 1.0 (FMUL: 2.0).
handler_zpi_float sve_fadd_zpi;   // FADD
handler_zpi_float sve_fsub_zpi;   // FSUB
handler_zpi_float sve_fsubr_zpi;  // FSUBR: constant - Zdn
handler_zpi_float sve_fmul_zpi;   // FMUL

// Zd = op(Zn).
handler_zpz sve_fsqrt_zpz;   // FSQRT
handler_zpz sve_frinta_zpz;  // FRINTA: to nearest, ties away from zero
handler_zz sve_frecpe_zz;    // FRECPE, reciprocal estimate, every lane

// One rounding for product and sum. The state, then Zda, Pg, Zn, Zm.
handler_zpzz sve_fmla_zpzz;   // FMLA: Zda + Zn * Zm
handler_zpzz sve_fmls_zpzz;   // FMLS: Zda - Zn * Zm
handler_zpzz sve_fnmla_zpzz;  // FNMLA: -Zda - Zn * Zm
handler_zpzz sve_fnmls_zpzz;  // FNMLS: -Zda + Zn * Zm

// The state, then Zdn, Pg, Zm, Za.
handler_zpzz sve_fmad_zpzz;   // FMAD: Za + Zdn * Zm
handler_zpzz sve_fmsb_zpzz;   // FMSB: Za - Zdn * Zm
handler_zpzz sve_fnmad_zpzz;  // FNMAD: -Za - Zdn * Zm
handler_zpzz sve_fnmsb_zpzz;  // FNMSB: -Za + Zdn * Zm

// Complex multiply-add of pairs of lanes, Zm rotated by `rotation` (0 to 3) quarter turns (FCMLA, vectors).
aarch64_decode_rc sve_fcmla_zpzzr(cpu_state* state, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                  aarch64_z_reg zm, unsigned int rotation);

// Active elements of Pd = whether the comparison holds, inactive ones 0. NZCV stays.
handler_ppzz sve_fcmeq_ppzz;  // FCMEQ
handler_ppzz sve_fcmne_ppzz;  // FCMNE: not equal, or unordered
handler_ppzz sve_fcmge_ppzz;  // FCMGE
handler_ppzz sve_fcmgt_ppzz;  // FCMGT
handler_ppzz sve_fcmuo_ppzz;  // FCMUO: unordered
handler_ppz sve_fcmeq_ppz;    // FCMEQ with zero, as all that follow
handler_ppz sve_fcmge_ppz;    // FCMGE
handler_ppz sve_fcmgt_ppz;    // FCMGT
handler_ppz sve_fcmle_ppz;    // FCMLE
handler_ppz sve_fcmlt_ppz;    // FCMLT

// Conversions. s is 32 bits and d 64, source first; where one is wider, lanes have 64 bits and the 32-bit side is the
// low word. A 32-bit float clears the upper word, a 32-bit integer is extended into it by its sign.
handler_zpz sve_fcvt_s2d_zpz;    // FCVT
handler_zpz sve_fcvt_d2s_zpz;    // FCVT
handler_zpz sve_fcvtzs_s2s_zpz;  // FCVTZS, to signed, towards zero
handler_zpz sve_fcvtzs_s2d_zpz;  // FCVTZS
handler_zpz sve_fcvtzs_d2s_zpz;  // FCVTZS
handler_zpz sve_fcvtzs_d2d_zpz;  // FCVTZS
handler_zpz sve_fcvtzu_d2s_zpz;  // FCVTZU, to unsigned, towards zero
handler_zpz sve_fcvtzu_d2d_zpz;  // FCVTZU
handler_zpz sve_scvtf_s2s_zpz;   // SCVTF, from signed
handler_zpz sve_scvtf_s2d_zpz;   // SCVTF
handler_zpz sve_scvtf_d2s_zpz;   // SCVTF
handler_zpz sve_scvtf_d2d_zpz;   // SCVTF
handler_zpz sve_ucvtf_s2s_zpz;   // UCVTF, from unsigned
handler_zpz sve_ucvtf_s2d_zpz;   // UCVTF
handler_zpz sve_ucvtf_d2d_zpz;   // UCVTF

// Element 0 of Vd = the maximum (minimum) number of the active lanes by pairs, the default NaN when none is active; all
// other bytes of the vector become 0.
handler_vpz sve_fmaxnmv_vpz;  // FMAXNMV
handler_vpz sve_fminnmv_vpz;  // FMINNMV

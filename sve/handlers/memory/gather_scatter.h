// Gathers and scatters: one element for each active lane, at an address of its own (LD1, ST1 with a vector operand).
//
// The address of lane i is
//   _zpzi                               Zn[i] + imm * M, Zn[i] zero-extended
//   _zpzr                               base + Zm[i]
//   _sxtw_zpzr, _uxtw_zpzr              base + the low 32 bits of Zm[i], sign- or zero-extended
//   _scaled_zprz                        base + Zm[i] * M
//   _sxtw_scaled_zprz, _uxtw_scaled_zprz  base + the low 32 bits of Zm[i], extended, * M
// where M is the memory element's size. Lanes go in ascending order. A gather's inactive lane becomes 0 and touches no
// memory. Traced as one record for each active lane.
//
// In a name, b, h, w, d is the memory element, s before it a sign-extending load, and _s, _d the lane.
#pragma once

#include "sve/handlers/handler_types.h"

// Gathers, vector of addresses.
handler_zpzi sve_ld1b_s_zpzi, sve_ld1sb_s_zpzi, sve_ld1h_s_zpzi, sve_ld1sh_s_zpzi, sve_ld1w_zpzi;
handler_zpzi sve_ld1b_d_zpzi, sve_ld1sb_d_zpzi, sve_ld1h_d_zpzi, sve_ld1sh_d_zpzi, sve_ld1w_d_zpzi, sve_ld1sw_d_zpzi,
    sve_ld1d_zpzi;

// Gathers, vector of offsets: 64-bit, then 32-bit sign- and zero-extended.
handler_zpzr sve_ld1b_d_zpzr, sve_ld1sb_d_zpzr, sve_ld1h_d_zpzr, sve_ld1sh_d_zpzr, sve_ld1w_d_zpzr, sve_ld1sw_d_zpzr,
    sve_ld1d_zpzr;
handler_zpzr sve_ld1b_s_sxtw_zpzr, sve_ld1sb_s_sxtw_zpzr, sve_ld1h_s_sxtw_zpzr, sve_ld1sh_s_sxtw_zpzr,
    sve_ld1w_sxtw_zpzr;
handler_zpzr sve_ld1b_s_uxtw_zpzr, sve_ld1sb_s_uxtw_zpzr, sve_ld1h_s_uxtw_zpzr, sve_ld1sh_s_uxtw_zpzr,
    sve_ld1w_uxtw_zpzr;
handler_zpzr sve_ld1b_d_sxtw_zpzr, sve_ld1sb_d_sxtw_zpzr, sve_ld1h_d_sxtw_zpzr, sve_ld1sh_d_sxtw_zpzr,
    sve_ld1w_d_sxtw_zpzr, sve_ld1sw_d_sxtw_zpzr, sve_ld1d_sxtw_zpzr;
handler_zpzr sve_ld1b_d_uxtw_zpzr, sve_ld1sb_d_uxtw_zpzr, sve_ld1h_d_uxtw_zpzr, sve_ld1sh_d_uxtw_zpzr,
    sve_ld1w_d_uxtw_zpzr, sve_ld1sw_d_uxtw_zpzr, sve_ld1d_uxtw_zpzr;

// Gathers, vector of indices: 64-bit, then 32-bit sign- and zero-extended.
handler_zprz sve_ld1h_d_scaled_zprz, sve_ld1sh_d_scaled_zprz, sve_ld1w_d_scaled_zprz, sve_ld1sw_d_scaled_zprz,
    sve_ld1d_scaled_zprz;
handler_zprz sve_ld1h_s_sxtw_scaled_zprz, sve_ld1sh_s_sxtw_scaled_zprz, sve_ld1w_sxtw_scaled_zprz;
handler_zprz sve_ld1h_s_uxtw_scaled_zprz, sve_ld1sh_s_uxtw_scaled_zprz, sve_ld1w_uxtw_scaled_zprz;
handler_zprz sve_ld1h_d_sxtw_scaled_zprz, sve_ld1sh_d_sxtw_scaled_zprz, sve_ld1w_d_sxtw_scaled_zprz,
    sve_ld1sw_d_sxtw_scaled_zprz, sve_ld1d_sxtw_scaled_zprz;
handler_zprz sve_ld1h_d_uxtw_scaled_zprz, sve_ld1sh_d_uxtw_scaled_zprz, sve_ld1w_d_uxtw_scaled_zprz,
    sve_ld1sw_d_uxtw_scaled_zprz, sve_ld1d_uxtw_scaled_zprz;

// Scatters, vector of addresses.
handler_zpzi sve_st1b_s_zpzi, sve_st1h_s_zpzi, sve_st1w_zpzi;
handler_zpzi sve_st1b_d_zpzi, sve_st1h_d_zpzi, sve_st1w_d_zpzi, sve_st1d_zpzi;

// Scatters, vector of offsets: 64-bit, then 32-bit sign- and zero-extended.
handler_zpzr sve_st1b_d_zpzr, sve_st1h_d_zpzr, sve_st1w_d_zpzr, sve_st1d_zpzr;
handler_zpzr sve_st1b_s_sxtw_zpzr, sve_st1h_s_sxtw_zpzr, sve_st1w_sxtw_zpzr;
handler_zpzr sve_st1b_s_uxtw_zpzr, sve_st1h_s_uxtw_zpzr, sve_st1w_uxtw_zpzr;
handler_zpzr sve_st1b_d_sxtw_zpzr, sve_st1h_d_sxtw_zpzr, sve_st1w_d_sxtw_zpzr, sve_st1d_sxtw_zpzr;
handler_zpzr sve_st1b_d_uxtw_zpzr, sve_st1h_d_uxtw_zpzr, sve_st1w_d_uxtw_zpzr, sve_st1d_uxtw_zpzr;

// Scatters, vector of indices: 64-bit, then 32-bit sign- and zero-extended.
handler_zprz sve_st1h_d_scaled_zprz, sve_st1w_d_scaled_zprz, sve_st1d_scaled_zprz;
handler_zprz sve_st1h_s_sxtw_scaled_zprz, sve_st1w_sxtw_scaled_zprz;
handler_zprz sve_st1h_s_uxtw_scaled_zprz, sve_st1w_uxtw_scaled_zprz;
handler_zprz sve_st1h_d_sxtw_scaled_zprz, sve_st1w_d_sxtw_scaled_zprz, sve_st1d_sxtw_scaled_zprz;
handler_zprz sve_st1h_d_uxtw_scaled_zprz, sve_st1w_d_uxtw_scaled_zprz, sve_st1d_uxtw_scaled_zprz;

// Loads and stores of structures of two, three or four elements, one register for each member (LD2 to LD4, ST2 to ST4).
//
// Element k of structure i belongs to lane i of register (Zt + k) modulo 32, at base + offset + (i * N + k) * E. An
// inactive lane becomes 0 in a load and is left alone in memory by a store. The offset is imm times N whole vectors
// (_zpri), or the index times the element's size (_scaled_zprr). Traced as one record for each active lane, of one
// element's size, at the address of the lane's last element.
#pragma once

#include "sve/handlers/handler_types.h"

// The families: T in memory, U in the lane, N registers; the offset counts elements of T. Instances for T and U alike
// of signed char, short, int, long, and N of 2, 3, 4.
template <class T, class U, int N>
aarch64_decode_rc sve_ldN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset);
template <class T, class U, int N>
aarch64_decode_rc sve_stN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset);

// LD2, LD3, LD4.
handler_zpri sve_ld2b_zpri, sve_ld2h_zpri, sve_ld2w_zpri, sve_ld2d_zpri;
handler_zpri sve_ld3b_zpri, sve_ld3h_zpri, sve_ld3w_zpri, sve_ld3d_zpri;
handler_zpri sve_ld4b_zpri, sve_ld4h_zpri, sve_ld4w_zpri, sve_ld4d_zpri;
handler_zprr sve_ld2b_scaled_zprr, sve_ld2h_scaled_zprr, sve_ld2w_scaled_zprr, sve_ld2d_scaled_zprr;
handler_zprr sve_ld3b_scaled_zprr, sve_ld3h_scaled_zprr, sve_ld3w_scaled_zprr, sve_ld3d_scaled_zprr;
handler_zprr sve_ld4b_scaled_zprr, sve_ld4h_scaled_zprr, sve_ld4w_scaled_zprr, sve_ld4d_scaled_zprr;

// ST2, ST3, ST4.
handler_zpri sve_st2b_zpri, sve_st2h_zpri, sve_st2w_zpri, sve_st2d_zpri;
handler_zpri sve_st3b_zpri, sve_st3h_zpri, sve_st3w_zpri, sve_st3d_zpri;
handler_zpri sve_st4b_zpri, sve_st4h_zpri, sve_st4w_zpri, sve_st4d_zpri;
handler_zprr sve_st2b_scaled_zprr, sve_st2h_scaled_zprr, sve_st2w_scaled_zprr, sve_st2d_scaled_zprr;
handler_zprr sve_st3b_scaled_zprr, sve_st3h_scaled_zprr, sve_st3w_scaled_zprr, sve_st3d_scaled_zprr;
handler_zprr sve_st4b_scaled_zprr, sve_st4h_scaled_zprr, sve_st4w_scaled_zprr, sve_st4d_scaled_zprr;

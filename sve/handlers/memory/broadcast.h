// Loads of one memory element into every active lane (LD1RB to LD1RD). An inactive lane becomes 0; with no active lane
// no memory is touched. The address is base + imm * the memory element's size. Not traced.
//
// In a name, b, h, w, d is the memory element, s before it a sign-extending load, and _h, _s, _d a wider lane.
#pragma once

#include "sve/handlers/handler_types.h"

handler_zpri_unsigned sve_ld1rb_zpri, sve_ld1rb_h_zpri, sve_ld1rb_s_zpri, sve_ld1rb_d_zpri;
handler_zpri_unsigned sve_ld1rh_zpri, sve_ld1rh_s_zpri, sve_ld1rh_d_zpri;
handler_zpri_unsigned sve_ld1rw_zpri, sve_ld1rw_d_zpri;
handler_zpri_unsigned sve_ld1rd_zpri;
handler_zpri_unsigned sve_ld1rsb_h_zpri, sve_ld1rsb_s_zpri, sve_ld1rsb_d_zpri;
handler_zpri_unsigned sve_ld1rsh_s_zpri, sve_ld1rsh_d_zpri;
handler_zpri_unsigned sve_ld1rsw_d_zpri;

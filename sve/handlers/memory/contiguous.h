// Contiguous loads and stores of one register (LD1B to LD1D, ST1B to ST1D, and the non-temporal LDNT1 and STNT1).
//
// A load's active lane i reads the memory element at base + offset + i * its size, extended to the lane; an inactive
// lane becomes 0 and touches no memory. A store's active lane writes the lane's low bytes. The offset is imm times the
// bytes that all lanes touch in memory (_zpri), or the index times the memory element's size (_scaled_zprr). Traced as
// runs of neighbouring active lanes. The non-temporal forms are the plain ones: no hint reaches the host.
//
// In a name, b, h, w, d is the memory element, s before it a sign-extending load, and _h, _s, _d a wider lane.
#pragma once

#include "sve/handlers/handler_types.h"

// LD1 and ST1: immediate and register offset.
#define SIGNED(letters, M, T, U)        \
  handler_zpri sve_ld1##letters##_zpri; \
  handler_zprr sve_ld1##letters##_scaled_zprr;
#define ELEMENT(letters, M, T, U)       \
  SIGNED(letters, M, T, U)              \
  handler_zpri sve_st1##letters##_zpri; \
  handler_zprr sve_st1##letters##_scaled_zprr;
#include "sve/handlers/memory/elements.def"

// LDNT1 and STNT1.
handler_zpri sve_ldnt1b_zpri, sve_ldnt1h_zpri, sve_ldnt1w_zpri, sve_ldnt1d_zpri;
handler_zpri sve_stnt1b_zpri, sve_stnt1h_zpri, sve_stnt1w_zpri, sve_stnt1d_zpri;
handler_zprr sve_ldnt1b_scaled_zprr, sve_ldnt1h_scaled_zprr, sve_ldnt1w_scaled_zprr, sve_ldnt1d_scaled_zprr;
handler_zprr sve_stnt1b_scaled_zprr, sve_stnt1h_scaled_zprr, sve_stnt1w_scaled_zprr, sve_stnt1d_scaled_zprr;

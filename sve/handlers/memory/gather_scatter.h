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

#define WORDS(kind, name, M, T)   \
  handler_zpzi sve_##name##_zpzi; \
  handler_zpzr sve_##name##_sxtw_zpzr, sve_##name##_uxtw_zpzr;
#define SCALED_WORDS(kind, name, M, T) \
  WORDS(kind, name, M, T)              \
  handler_zprz sve_##name##_sxtw_scaled_zprz, sve_##name##_uxtw_scaled_zprz;
#define DOUBLEWORDS(kind, name, M, T) \
  WORDS(kind, name, M, T)             \
  handler_zpzr sve_##name##_zpzr;
#define SCALED_DOUBLEWORDS(kind, name, M, T) \
  SCALED_WORDS(kind, name, M, T)             \
  handler_zpzr sve_##name##_zpzr;            \
  handler_zprz sve_##name##_scaled_zprz;
#include "sve/handlers/memory/gather_scatter.def"

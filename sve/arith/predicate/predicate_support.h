// Helpers of the vector library for predicates: the first and last active elements, the flags that a result sets, and
// the count that a pattern names.
//
// An element of esize bits (8, 16, 32 or 64) owns esize / 8 bits of a predicate, and the lowest of them makes it
// active. The elements are those of vl_units units of 64 bits, the whole word counting, but never more than a PredV
// has; there are none for an esize of 0.
#pragma once

#include <cstdint>

#include "sve/state/cpu_context.h"

// The number of the first, or last, active element of `mask`; -1 if there is none (LastActiveElement for the last).
int FindFirstActive(PredV mask, int esize, CpuContext* ctx);
int FindLastActive(PredV mask, int esize, CpuContext* ctx);

// Sets flags in ctx->nzcv from the elements of `result` that `mask` has active (PredTest):
//   N  the lowest bit of the first one is set
//   Z  no bit of any is set
//   C  no bit of the last one is set
// Where no bit of any is set, or none is active, N is 0 and C is 1. N looks at one bit and C at all of an element's:
// the library itself writes the upper ones as 0. The letters of a name tell the flags that it writes, V as 0; no other
// bit of nzcv changes.
void PredSetNZC(PredV mask, PredV result, int esize, CpuContext* ctx);
void PredSetNZCV(PredV mask, PredV result, int esize, CpuContext* ctx);
void PredSetNC(PredV mask, PredV result, int esize, CpuContext* ctx);
void PredSetNCV(PredV mask, PredV result, int esize, CpuContext* ctx);

// The number of elements that a predicate-constraint pattern selects of `count` (DecodePredCount): selected_count.
int VecTrueILength(std::uint64_t pattern, int count);

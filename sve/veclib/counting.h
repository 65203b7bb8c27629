// Counts of lanes, by a pattern and a multiplier.
#pragma once

#include <cstdint>

#include "sve/state/cpu_context.h"
#include "sve/veclib/family.h"

extern "C" {

// The lanes of the tag's width that a pattern selects, times (field + 1); `field` is the raw multiplier of the
// encoding.
using vec_count = std::uint64_t(std::uint64_t pattern, std::uint64_t field, CpuContext* ctx);
vec_count VecU8CountVLSI;   // CNTB
vec_count VecU16CountVLSI;  // CNTH
vec_count VecU32CountVLSI;  // CNTW
vec_count VecU64CountVLSI;  // CNTD

}  // extern "C"

QUERN_LIBRARY_FUNCTION(U8, CountVLSI)
QUERN_LIBRARY_FUNCTION(U16, CountVLSI)
QUERN_LIBRARY_FUNCTION(U32, CountVLSI)
QUERN_LIBRARY_FUNCTION(U64, CountVLSI)

// The values that the vector library works on, and the context it sees in place of a cpu_state.
#pragma once

#include <cstdint>

#include "sve/state/cpu_state.h"

// A predicate value, one bit for each byte of a vector: bit i is bit i mod 64 of word i / 64. An element's state is its
// lowest bit.
struct PredV {
  std::uint64_t words[(VL_BYTES + 63) / 64];
};

// A vector value, passed by value.
struct VecV {
  unsigned char bytes[VL_BYTES];
};

// The AHP, DN, FZ, RMode, FZ16 and trap-enable bits of FPCR: all that the vector library may see of it.
inline constexpr std::uint32_t fpcr_library_mask = 0x07C89F00;

// What the vector library sees of the processor: one record for each library call, on the caller's stack.
struct CpuContext {
  std::uint32_t nzcv;      // flags, in the bit places of cpu_state::nzcv
  std::uint32_t fpsr;      // floating-point status, accumulated
  std::uint32_t fpcr;      // floating-point control, through fpcr_library_mask
  std::uint32_t vl_units;  // vector length in units of 64 bits; only the low 26 bits count
  PredV ffr;
};

// The packed value of a predicate of the register file. `bytes` has VL_BYTES bytes; only bit 0 of each counts.
PredV to_pred(const unsigned char* bytes);

// Writes a packed predicate to a predicate of the register file: all VL_BYTES bytes become 0 or 1.
void from_pred(const PredV& value, unsigned char* bytes);

// What packing a predicate of the register file and writing it back leaves: all VL_BYTES bytes become 0 or 1, by their
// bit 0.
void clean_pred(unsigned char* bytes);

// The context of one library call on `state`: flags, FP status and control, vector length, and FFR packed, or cleared
// for a call that does not look at it.
template <bool UsesFfr = true>
inline CpuContext make_context(const cpu_state& state) {
  return {.nzcv = static_cast<std::uint32_t>(state.nzcv),
          .fpsr = state.fpsr,
          .fpcr = state.fpcr & fpcr_library_mask,
          .vl_units = VL_BITS / 64,
          .ffr = UsesFfr ? to_pred(state.ffr) : PredV{}};
}

// Brings back what a library call may have changed: nzcv (bits 63 to 32 become 0), fpsr, and every byte of ffr as 0
// or 1. fpcr is not copied back.
template <bool UsesFfr = true>
inline void store_context(const CpuContext& ctx, cpu_state& state) {
  state.nzcv = ctx.nzcv;
  state.fpsr = ctx.fpsr;
  if constexpr (UsesFfr) {
    from_pred(ctx.ffr, state.ffr);
  } else {
    clean_pred(state.ffr);
  }
}

// A context that the shared object has always exported. SVEInitialize fills it; nothing reads it, and the vector length
// in it has no bearing on any lane count.
extern CpuContext cpu_ctxt;
extern CpuContext* ctxt;

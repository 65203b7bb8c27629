// The host's floating-point unit for the vector library, which computes under its context's controls.
#pragma once

#include "sve/arith/float/fpscr.h"
#include "sve/state/cpu_context.h"
#ifdef __aarch64__
#include "sve/arith/unit/neon_fp.h"
#endif

namespace quern {

// work(fp) with the host's unit under the context's rounding, flushing and default NaNs; true once the flags that it
// raised are in the context's status. False, and all that work has done is void, where software must do it: on another
// host, if halves are flushed, and in lanes T of halves if an operation was invalid, since the unit then may have
// chosen another NaN than an operation on halves does, or an integer was saturated. The host's FPSR is lost.
template <class T, class Work>
inline bool on_host_unit([[maybe_unused]] CpuContext& ctx, [[maybe_unused]] Work work) {
#ifdef __aarch64__
  constexpr std::uint32_t QC = 1U << 27, undecided = sizeof(T) == 2 ? IOC : 0;
  if (ctx.fpcr & FPSCR_FZ16) return false;
  const std::uint64_t controls = ctx.fpcr & (FPSCR_RMode | FPSCR_FZ | FPSCR_DN), no_flags = 0;
  std::uint64_t former, flags;
  asm volatile("mrs %0, fpcr" : "=r"(former));
  if (controls != former) asm volatile("msr fpcr, %0" : : "r"(controls) : "memory");
  asm volatile("msr fpsr, %0" : : "r"(no_flags) : "memory");
  neon_fp fp;
  work(fp);
  asm volatile("mrs %0, fpsr" : "=r"(flags) : : "memory");
  if (controls != former) asm volatile("msr fpcr, %0" : : "r"(former) : "memory");
  if (flags & undecided) return false;
  if (flags & QC) flags ^= QC | IOC;  // of a half that is too large an integer, and so lost nothing else
  ctx.fpsr = (ctx.fpsr | static_cast<std::uint32_t>(flags)) & fpsr_mask;
  return true;
#else
  return false;
#endif
}

}  // namespace quern

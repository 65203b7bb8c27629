// How the tables name an instruction of the processor: by its text, which takes its operands from registers of known
// number. For files that are built for an AArch64 processor with FP16 and SVE.
#pragma once

#include "tests/arith/float/judge/routine.h"

namespace quern::judge {

// The formats' patterns, as short as the letters of their registers.
using H = std::uint16_t;
using S = std::uint32_t;
using D = std::uint64_t;

// FPCR while it lives; on return the one that was there.
class control_setting {
 public:
  explicit control_setting(std::uint64_t fpcr) {
    asm volatile("mrs %0, fpcr" : "=r"(saved_));
    asm volatile("msr fpcr, %0" : : "r"(fpcr));
  }
  control_setting(const control_setting&) = delete;
  control_setting& operator=(const control_setting&) = delete;
  ~control_setting() { asm volatile("msr fpcr, %0" : : "r"(saved_)); }

 private:
  std::uint64_t saved_;
};

template <class Instruction>
void run_processor(std::span<const operands> cases, std::uint32_t fpcr, outcome* results) {
  const control_setting setting(fpcr);
  for (const operands& x : cases) *results++ = Instruction{}(x);
}

}  // namespace quern::judge

// The runner of the instructions in `text`. They find the operands in V1, V2 and V3, the first in X9 too, and leave the
// result in V0 with zeros above it. Registers are zero above their operands.
#define PROCESSOR(text)                                                           \
  run_processor<decltype([](const operands& x) {                                  \
    outcome result;                                                               \
    asm volatile(                                                                 \
        "fmov d1, %x[a]\n\tfmov d2, %x[b]\n\tfmov d3, %x[c]\n\tmov x9, %x[a]\n\t" \
        "msr fpsr, xzr\n\t" text "\n\tmrs %x[fpsr], fpsr\n\tfmov %x[value], d0"   \
        : [value] "=&r"(result.value), [fpsr] "=&r"(result.fpsr)                  \
        : [a] "r"(x.value[0]), [b] "r"(x.value[1]), [c] "r"(x.value[2])           \
        : "v0", "v1", "v2", "v3", "x9", "p0", "cc");                              \
    return result;                                                                \
  })>

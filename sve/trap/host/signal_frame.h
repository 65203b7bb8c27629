// The registers in a signal frame, as the emulator's register file and back.
#pragma once

#include <ucontext.h>

#include <cstdint>

#include "sve/state/cpu_state.h"
#include "sve/trap/patch/run_code.h"
#include "sve/trap/signal_set.h"

namespace quern {

// Fills x, sp, pc, nzcv, fpsr, fpcr and the low 16 bytes of each z.
void load_state(const ucontext_t& frame, cpu_state& state);

// Fills the low 16 bytes of each z only.
void load_vectors(const ucontext_t& frame, cpu_state& state);

// Writes x, sp, nzcv, fpsr and the low 16 bytes of each z to the frame, and moves its PC behind the instruction.
void store_state(const cpu_state& state, ucontext_t& frame);

// Writes a run's registers, which stand partly in `registers.v`, and the PC to the frame, which has the others.
void store_run(const thread_registers& registers, const run_code& code, unsigned char* pc, ucontext_t& frame);

// Makes `to` a frame of the code that `from` interrupted: registers, FP registers and mask.
void copy_frame(const ucontext_t& from, ucontext_t& to);

inline unsigned char* frame_pc(const ucontext_t& frame) {
  return reinterpret_cast<unsigned char*>(frame.uc_mcontext.pc);
}

// Another thread may be writing it.
inline std::uint32_t word_at(const unsigned char* pc) {
  return __atomic_load_n(reinterpret_cast<const std::uint32_t*>(pc), __ATOMIC_RELAXED);
}

}  // namespace quern

// Registers to and from the machine context of an AArch64 signal frame.
#include "sve/trap/host/signal_frame.h"

#include <asm/sigcontext.h>

#include <cstring>

namespace quern {
namespace {

constexpr std::uint64_t nzcv_bits = 0xF0000000;
constexpr std::uint64_t btype_bits = 0xC00;  // PSTATE.BTYPE, which each instruction but a branch clears
constexpr std::size_t q_bytes = 16;
constexpr std::size_t instruction_bytes = 4;

// The record of the FP registers, which the kernel writes into every frame.
fpsimd_context& fp_record(ucontext_t& frame) {
  unsigned char* at = frame.uc_mcontext.__reserved;
  for (;;) {
    auto& head = *reinterpret_cast<_aarch64_ctx*>(at);
    if (head.magic == FPSIMD_MAGIC) return *reinterpret_cast<fpsimd_context*>(at);
    at += head.size;
  }
}

const fpsimd_context& fp_record(const ucontext_t& frame) { return fp_record(const_cast<ucontext_t&>(frame)); }

// All but X0 to X30.
void store_special(const cpu_state& state, unsigned char* pc, mcontext_t& machine) {
  machine.sp = state.sp;
  machine.pc = reinterpret_cast<std::uintptr_t>(pc);
  machine.pstate = (machine.pstate & ~(nzcv_bits | btype_bits)) | (state.nzcv & nzcv_bits);
}

}  // namespace

void load_vectors(const ucontext_t& frame, cpu_state& state) {
  const fpsimd_context& fp = fp_record(frame);
  for (int i = 0; i != 32; ++i) std::memcpy(state.z[i], &fp.vregs[i], q_bytes);
}

void load_state(const ucontext_t& frame, cpu_state& state) {
  const mcontext_t& machine = frame.uc_mcontext;
  std::memcpy(state.x, machine.regs, sizeof state.x);
  state.sp = machine.sp;
  state.pc = frame_pc(frame);
  state.nzcv = machine.pstate & nzcv_bits;
  const fpsimd_context& fp = fp_record(frame);
  state.fpsr = fp.fpsr;
  state.fpcr = fp.fpcr;
  load_vectors(frame, state);
}

void store_state(const cpu_state& state, ucontext_t& frame) {
  mcontext_t& machine = frame.uc_mcontext;
  std::memcpy(machine.regs, state.x, sizeof state.x);
  store_special(state, frame_pc(frame) + instruction_bytes, machine);
  fpsimd_context& fp = fp_record(frame);
  fp.fpsr = state.fpsr;
  for (int i = 0; i != 32; ++i) std::memcpy(&fp.vregs[i], state.z[i], q_bytes);
}

void store_run(const thread_registers& registers, const run_code& code, unsigned char* pc, ucontext_t& frame) {
  const cpu_state& state = registers.state;
  mcontext_t& machine = frame.uc_mcontext;
  for (int i = 0; i != 31; ++i)
    if (code.x >> i & 1) machine.regs[i] = state.x[i];
  store_special(state, pc, machine);
  fpsimd_context& fp = fp_record(frame);
  if (code.fpsr) fp.fpsr = state.fpsr;
  for (int i = 0; i != 32; ++i) {
    if (code.z >> i & 1) {
      std::memcpy(&fp.vregs[i], state.z[i], q_bytes);
    } else if (code.v >> i & 1) {
      std::memcpy(&fp.vregs[i], registers.v[i], q_bytes);
    }
  }
}

void copy_frame(const ucontext_t& from, ucontext_t& to) {
  std::memcpy(to.uc_mcontext.regs, from.uc_mcontext.regs, sizeof to.uc_mcontext.regs);
  to.uc_mcontext.sp = from.uc_mcontext.sp;
  to.uc_mcontext.pc = from.uc_mcontext.pc;
  to.uc_mcontext.pstate = from.uc_mcontext.pstate;
  to.uc_sigmask = from.uc_sigmask;
  const fpsimd_context& source = fp_record(from);
  fpsimd_context& target = fp_record(to);
  target.fpsr = source.fpsr;
  target.fpcr = source.fpcr;
  std::memcpy(target.vregs, source.vregs, sizeof target.vregs);
}

}  // namespace quern

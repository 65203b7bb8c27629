// Frames of generated code.
#include "sve/trap/host/run_frames.h"

#include <cstring>

#include "sve/memory/kept_destination.h"
#include "sve/trap/host/code_pool.h"
#include "sve/trap/host/dispatch.h"
#include "sve/trap/host/emulate.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/signal_frame.h"
#include "sve/trap/patch/instructions.h"
#include "sve/trap/patch/known_lanes.h"
#include "sve/trap/signal_actions.h"

namespace quern {
namespace {

// The thread goes on in the application at `pc`.
void leave_run(const run_code& code, unsigned char* pc, ucontext_t& frame) {
  thread_registers& registers = own_registers();
  store_run(registers, code, pc, frame);
  registers.running = nullptr;
  registers.known = 0;  // the run has not told yet
  // A signal that found the dispatcher, which has a frame of its own, has left this one's mask alone.
  const bool blocked = from_sigset(frame.uc_sigmask) & registers.awaited;
  if (registers.ends == early_end::signal_blocked && blocked) to_sigset(registers.mask, frame.uc_sigmask);
  registers.ends = early_end::none;
}

// Where the run's code has the register that says whether it is to end. It looks there behind the word.
void tell_end(ucontext_t& frame) {
  const run_code* const code = find_code(frame_pc(frame));
  const auto end = static_cast<std::uint64_t>(own_registers().ends);
  if (code && code->is_under_way(frame_pc(frame))) frame.uc_mcontext.regs[known_lanes::keeper.number] |= end;
}

}  // namespace

bool is_within_run(ucontext_t& frame) {
  const unsigned char* const pc = frame_pc(frame);
  const run_code* const code = find_code(pc);
  if (!code) return own_registers().running != nullptr;
  if (pc == code->at(code->entry)) {
    frame.uc_mcontext.pc = reinterpret_cast<std::uintptr_t>(code->site);
  } else if (pc == code->at(code->last)) {
    frame.uc_mcontext.pc = reinterpret_cast<std::uintptr_t>(code->behind_site());
  } else if (pc == code->at(code->pop)) {
    mcontext_t& machine = frame.uc_mcontext;
    std::memcpy(&machine.regs[19], reinterpret_cast<const void*>(machine.sp), 2 * sizeof machine.regs[19]);
    machine.sp += 16;
    machine.pc = reinterpret_cast<std::uintptr_t>(code->behind_site());
  } else if (pc >= code->at(code->way_out) && pc < code->at(code->cold)) {
    leave_run(*code, code->behind_site(), frame);
  } else {
    return true;
  }
  return false;
}

unsigned char* word_within_run(const ucontext_t& frame) {
  const run_code* const code = own_registers().running;
  const unsigned char* const pc = frame_pc(frame);
  return code->holds(pc) ? code->site + code->word_with(pc) * sizeof(aarch64::word) : own_registers().state.pc;
}

void end_run_early(ucontext_t& frame) {
  thread_registers& registers = own_registers();
  if (registers.ends == early_end::none) registers.ends = early_end::signal_waits;
  tell_end(frame);
}

void postpone_to_early_end(int signal, const siginfo_t& info, ucontext_t& frame) {
  kernel::set_mask(~signal_set{0});  // before another signal can come this way
  thread_registers& registers = own_registers();
  const signal_set mask = from_sigset(frame.uc_sigmask);
  registers.mask = mask;
  registers.awaited = set_of(signal);
  registers.ends = early_end::signal_blocked;
  tell_end(frame);
  to_sigset(mask | ~trap_signals, frame.uc_sigmask);
  const signal_action wanted = application_action(signal);
  if (wanted.flags & static_cast<int>(SA_RESETHAND)) {
    // The kernel has reset it for this arrival, which does not count.
    const signal_action again = kernel_action(signal, wanted, reinterpret_cast<void*>(quern_on_signal));
    kernel::set_action(signal, &again, nullptr);
  }
  kernel::queue_to_self(signal, info);
}

bool take_early_end(ucontext_t& frame) {
  const run_code* const code = own_registers().running;
  const unsigned char* const pc = frame_pc(frame);
  if (!code || pc < code->early_end_at(0) || pc >= code->at(code->entry)) return false;
  leave_run(*code, code->site + (word_at(pc) + 1) * sizeof(aarch64::word), frame);
  return true;
}

void abandon_run(ucontext_t& frame) {
  put_destination_back();
  leave_run(*own_registers().running, word_within_run(frame), frame);
}

}  // namespace quern

// Signals, from the kernel to the emulator or to the application.
#include "sve/trap/host/dispatch.h"

#include <ucontext.h>

#include "sve/memory/guest_memory.h"
#include "sve/trap/held_note.h"
#include "sve/trap/host/call_on_stack.h"
#include "sve/trap/host/emulate.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/patch.h"
#include "sve/trap/host/probe.h"
#include "sve/trap/host/run_frames.h"
#include "sve/trap/host/signal_frame.h"
#include "sve/trap/host/thread_signals.h"
#include "sve/trap/host/trapped_place.h"
#include "sve/trap/host/vector_record.h"

namespace quern {
namespace {

// Sent by kill, sigqueue or raise, not raised by an instruction.
bool is_sent(const siginfo_t& info) { return info.si_code <= 0; }

// The stack that a SIGILL handler with SA_ONSTACK is to be called on; null to stay where we are. (The kernel sees to
// the other signals; it must not for SIGILL.)
void* other_stack(const signal_action& action, int signal, const ucontext_t& frame) {
  const stack_t& stack = frame.uc_stack;
  if (signal != SIGILL || !(action.flags & SA_ONSTACK) || (stack.ss_flags & SS_DISABLE) || stack.ss_size == 0) {
    return nullptr;
  }
  const auto base = reinterpret_cast<std::uintptr_t>(stack.ss_sp);
  const std::uintptr_t sp = frame.uc_mcontext.sp;
  if (sp > base && sp - base <= stack.ss_size) return nullptr;
  return reinterpret_cast<void*>((base + stack.ss_size) & ~std::uintptr_t{15});
}

// Runs the application's handler as the kernel would: with the mask that the action asks for, which the frame shows and
// gives back at the end, and with the interrupted code's vectors in the frame. The handler may never return: it may end
// its thread, throw, or switch to another context, so nothing here needs to be undone but what the frame has.
void run_handler(const signal_action& action, int signal, siginfo_t* info, ucontext_t& frame, bool after_emulation) {
  vector_record vectors;
  // Set in the kernel only while the C library hands the mask on to a new program, and where our own handler was about
  // to begin: not by the application, which has it held. Its handler may run emulated code.
  const signal_set blocked_in_kernel = from_sigset(frame.uc_sigmask) & never_blocked;
  const signal_set interrupted = (from_sigset(frame.uc_sigmask) & ~never_blocked) | held_signals();
  signal_set during = interrupted | action.mask;
  if (!(action.flags & SA_NODEFER)) during |= set_of(signal);
  hold_signals(during);
  // What holds other signals off a SIGILL's own work is to be undone; else the kernel has the mask right.
  if (after_emulation || signal == SIGILL || blocked_in_kernel) kernel::set_mask(during & ~never_blocked);
  to_sigset(interrupted, frame.uc_sigmask);
  note_held(frame.uc_sigmask, 0);  // the kernel leaves there what the stack held
  show_vectors(frame, vectors);

  const auto handler = reinterpret_cast<signal_function*>(action.handler);
  if (void* const stack = other_stack(action, signal, frame)) {
    quern_call_on_stack(signal, info, &frame, handler, stack);
  } else {
    handler(signal, info, &frame);
  }

  take_vectors(frame, vectors);
  const signal_set resumed = from_sigset(frame.uc_sigmask);
  to_sigset((resumed & ~never_blocked) | blocked_in_kernel, frame.uc_sigmask);
  hold_signals(resumed);
}

// Ends the process as the signal does by default. A fault, of the application's instruction at `pc`, is raised once
// more when it runs again.
void die(int signal, siginfo_t* info, ucontext_t& frame, const unsigned char* pc) {
  if (!is_sent(*info)) report_death(reinterpret_cast<std::uint64_t>(pc), signal);
  if (signal != SIGILL) SVESigHandler(signal, info, &frame);
  const signal_action standard{reinterpret_cast<void*>(SIG_DFL), 0, 0};
  kernel::set_action(signal, &standard, nullptr);
  if (is_sent(*info)) kernel::queue_to_self(signal, *info);
}

// The frame of an emulated instruction whose SIGILL came together with the signal of `frame`, and is not yet looked at;
// null if there is none. The instruction will raise another.
ucontext_t* frame_not_looked_at(const ucontext_t& frame) {
  const auto& x = frame.uc_mcontext.regs;
  if (frame_pc(frame) != reinterpret_cast<unsigned char*>(quern_on_signal) || x[0] != SIGILL) return nullptr;
  return is_sent(*reinterpret_cast<siginfo_t*>(x[1])) ? nullptr : reinterpret_cast<ucontext_t*>(x[2]);
}

// A trap signal that is not the emulator's business.
void pass_on_trap(int signal, siginfo_t* info, ucontext_t& frame) {
  ucontext_t* const emulated = emulated_frame();
  const bool in_run = !emulated && is_within_run(frame);
  if (is_sent(*info) && (emulated || in_run || contains(held_signals(), signal))) {
    if (in_run) end_run_early(frame);
    return keep_waiting(signal, *info);
  }
  const signal_action action = application_action(signal);
  if (is_ignore(action) && is_sent(*info)) return;
  // A fault that is ignored or blocked ends the process all the same.
  if (!has_handler(action) || contains(held_signals(), signal)) {
    const unsigned char* const pc = emulated ? frame_pc(*emulated) : frame_pc(frame);
    return die(signal, info, frame, in_run ? word_within_run(frame) : pc);
  }
  ucontext_t* const replaced = emulated ? emulated : frame_not_looked_at(frame);
  if (replaced) {
    // The handler is to see the application at the emulated instruction, and to resume there: this frame takes the
    // place of the other, which is left behind on the stack with all that the emulator had begun.
    copy_frame(*replaced, frame);
    abandon_emulation();
  } else if (in_run) {
    abandon_run(frame);
  }
  if (action.flags & static_cast<int>(SA_RESETHAND)) set_application_action(signal, {});
  run_handler(action, signal, info, frame, replaced || in_run);
}

// Whether the thread could not execute what is at its PC, to which a copied branch of ours has led it: it goes on at
// the program's own word.
bool go_back_to_copy(const siginfo_t& info, ucontext_t& frame) {
  if (info.si_addr != frame_pc(frame) || emulated_frame() || own_registers().running) return false;
  const unsigned char* const copy = mend_copied_branch(frame_pc(frame));
  if (copy) frame.uc_mcontext.pc = reinterpret_cast<std::uintptr_t>(copy);
  return copy != nullptr;
}

void pass_on(int signal, siginfo_t* info, ucontext_t& frame) {
  const signal_action action = application_action(signal);
  // The kernel has done its part of SA_RESETHAND. Without a handler here, another thread has just taken it away.
  if (!has_handler(action)) return;
  const bool others_are_blocked = own_registers().ends == early_end::signal_blocked;
  if (is_within_run(frame)) return postpone_to_early_end(signal, *info, frame);
  run_handler(action, signal, info, frame, others_are_blocked);
}

}  // namespace

void quern_on_signal(int signal, siginfo_t* info, void* context) {
  auto& frame = *static_cast<ucontext_t*>(context);
  if (!is_trap(signal)) return pass_on(signal, info, frame);
  if (!is_sent(*info)) {
    const bool is_done = signal == SIGILL ? emulate(frame) : recover_probe(frame);
    if (is_done || go_back_to_copy(*info, frame)) return;
    if (signal == SIGILL) refuse(place_of(frame));
  }
  pass_on_trap(signal, info, frame);
}

}  // namespace quern

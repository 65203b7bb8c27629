// The road from a trapped word to its handler.
#include "sve/trap/host/emulate.h"

#include <atomic>

#include "sve/decoder/sve_utils.h"
#include "sve/memory/kept_destination.h"
#include "sve/report/place_counts.h"
#include "sve/trap/failure_line.h"
#include "sve/trap/handler_cache.h"
#include "sve/trap/host/breakpoint.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/patch.h"
#include "sve/trap/host/run_frames.h"
#include "sve/trap/host/signal_frame.h"
#include "sve/trap/host/thread_signals.h"

namespace quern {
namespace {

constinit thread_local handler_cache cache{};

// Atomic since a fault's signal handler reads it on the same thread.
constinit thread_local std::atomic<ucontext_t*> under_emulation{nullptr};

// The last one is the first in memory: near the thread pointer, which is worth an instruction to generated code.
constinit thread_local thread_registers registers{};

void set_under_emulation(ucontext_t* frame) {
  under_emulation.store(frame, std::memory_order_relaxed);
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

// Sends the signals that waited for the instruction's end, to arrive when the frame is left.
void send_waiting() {
  if (!(waiting_signals() & ~held_signals())) return;
  kernel::set_mask(~signal_set{0});
  hold_signals(held_signals());
}

void run_handler(sve_handler handler, std::uint32_t word, ucontext_t& frame) {
  cpu_state& state = registers.state;
  load_state(frame, state);
  registers.known = 0;
  const aarch64_decode_rc result = handler(&state, word);
  const placed_word place{reinterpret_cast<std::uint64_t>(state.pc), word};
  // The application goes on behind an instruction that could not be emulated, as if it did nothing.
  if (result == DECODE_OK)
    count_emulated(place);
  else if (count_failed(place))
    kernel::print_error(failure_line(word, state.pc).c_str());
  store_state(state, frame);
}

bool go_on_at(const unsigned char* way, ucontext_t& frame) {
  if (way) frame.uc_mcontext.pc = reinterpret_cast<std::uintptr_t>(way);
  return way != nullptr;
}

// False, with the frame untouched, when the word is not an emulated one.
bool run_instruction(ucontext_t& frame) {
  unsigned char* const pc = frame_pc(frame);
  const std::uint32_t found = word_at(pc);  // once: another thread may be making a branch of it, or taking ours away
  if (take_early_end(frame) || go_on_at(patched_way(pc, found), frame)) return true;
  const std::uint32_t word = is_breakpoint(found) ? word_beneath_breakpoint(pc) : found;
  const sve_handler handler = cache.find(word, get_sve_handler);
  if (!handler) return word_at(pc) != found;
  if (!go_on_at(patch(pc), frame)) run_handler(handler, word, frame);
  return true;
}

}  // namespace

cpu_state& thread_state() { return registers.state; }

thread_registers& own_registers() { return registers; }

ucontext_t* emulated_frame() { return under_emulation.load(std::memory_order_relaxed); }

void abandon_emulation() {
  put_destination_back();
  set_under_emulation(nullptr);
}

bool emulate(ucontext_t& frame) {
  set_under_emulation(&frame);
  const bool emulated = run_instruction(frame);
  set_under_emulation(nullptr);
  send_waiting();
  return emulated;
}

}  // namespace quern

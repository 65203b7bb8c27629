// The road from a trapped word to its handler.
#include "sve/trap/host/emulate.h"

#include <atomic>
#include <cerrno>
#include <cstring>

#include "sve/decoder/sve_utils.h"
#include "sve/memory/kept_destination.h"
#include "sve/trap/failure_line.h"
#include "sve/trap/handler_cache.h"
#include "sve/trap/host/breakpoint.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/signal_frame.h"
#include "sve/trap/host/thread_signals.h"

namespace quern {
namespace {

constinit thread_local cpu_state registers{};
constinit thread_local handler_cache cache{};

// Atomic since a fault's signal handler reads it on the same thread.
constinit thread_local std::atomic<ucontext_t*> under_emulation{nullptr};

void set_under_emulation(ucontext_t* frame) {
  under_emulation.store(frame, std::memory_order_relaxed);
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

std::uint32_t word_at(const unsigned char* pc) {
  std::uint32_t word;
  std::memcpy(&word, pc, sizeof word);
  return word;
}

// Sends the signals that waited for the instruction's end, to arrive when the frame is left.
void send_waiting() {
  if (!(waiting_signals() & ~held_signals())) return;
  kernel::set_mask(~signal_set{0});
  hold_signals(held_signals());
}

// False, with the frame untouched, when the word is not an emulated one.
bool run_instruction(ucontext_t& frame) {
  const unsigned char* const pc = frame_pc(frame);
  std::uint32_t word = word_at(pc);
  if (is_breakpoint(word)) word = word_beneath_breakpoint(pc);
  const sve_handler handler = cache.find(word, get_sve_handler);
  if (!handler) return false;
  load_state(frame, registers);
  const int kept_errno = errno;  // the application's own, which a square root's call of the C library may write
  const aarch64_decode_rc result = handler(&registers, word);
  errno = kept_errno;
  // The application goes on behind an instruction that could not be emulated, as if it did nothing.
  if (result != DECODE_OK) kernel::print_error(failure_line(word_at(pc), pc).c_str());
  store_state(registers, frame);
  return true;
}

}  // namespace

cpu_state& thread_state() { return registers; }

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

// Copies of the scalable registers, one for each signal handler that runs.
#include "sve/client/signal_vectors.h"

#include <array>
#include <atomic>
#include <cstdint>

#include "sve/client/thread_state.h"
#include "sve/state/saved_vectors.h"

namespace quern {
namespace {

// What a handler has interrupted. The thread is named by its drcontext, null in a free entry; no other thread touches
// the rest. (The event may run with the application's thread-local storage, so the entries stand in no thread's own.)
struct interruption {
  std::atomic<const void*> thread;
  saved_vectors* vectors;
  std::uint64_t number;  // later ones have higher numbers
  std::uint64_t interrupted_sp;
  std::uint64_t handler_sp;  // at the handler's start
};

constinit std::array<interruption, saved_vectors_capacity> interruptions{};
constinit std::atomic<std::uint64_t> last_number{0};

bool is_of(const interruption& entry, const void* thread) {
  return entry.thread.load(std::memory_order_relaxed) == thread;
}

void drop(interruption& entry) {
  release_vectors(entry.vectors);
  entry.thread.store(nullptr, std::memory_order_release);
}

template <class Predicate>
void drop_if(const void* thread, Predicate stale) {
  for (interruption& entry : interruptions)
    if (is_of(entry, thread) && stale(entry)) drop(entry);
}

bool keep(interruption& entry, const void* thread, const dr_kernel_xfer_info_t& info, saved_vectors* vectors) {
  const void* nobody = nullptr;
  if (!entry.thread.compare_exchange_strong(nobody, thread, std::memory_order_acquire)) return false;
  entry.vectors = vectors;
  entry.number = ++last_number;
  entry.interrupted_sp = info.source_mcontext->xsp;
  entry.handler_sp = info.target_xsp;
  return true;
}

// There is an entry for every place of the store.
bool keep(const void* thread, const dr_kernel_xfer_info_t& info, const cpu_state& state) {
  saved_vectors* const vectors = save_vectors(state);
  if (vectors == nullptr) return false;
  for (interruption& entry : interruptions)
    if (keep(entry, thread, info, vectors)) return true;
  release_vectors(vectors);
  return false;
}

// The thread's oldest, or null.
interruption* oldest_of(const void* thread) {
  interruption* oldest = nullptr;
  for (interruption& entry : interruptions)
    if (is_of(entry, thread) && (oldest == nullptr || entry.number < oldest->number)) oldest = &entry;
  return oldest;
}

// The thread's latest that is wanted, or null.
template <class Predicate>
interruption* latest(const void* thread, Predicate wanted) {
  interruption* found = nullptr;
  for (interruption& entry : interruptions)
    if (is_of(entry, thread) && wanted(entry) && (found == nullptr || entry.number > found->number)) found = &entry;
  return found;
}

// Drops the handlers that were left by a long jump, as far as can be seen where the code at `sp` is interrupted by a
// new one. Where that takes the place of another's frame, the other is over. And a handler stays below the place where
// it began; only the latest is asked, since code that has interrupted an earlier one may be on any stack.
void drop_left(const void* thread, std::uint64_t sp, std::uint64_t new_handler_sp) {
  drop_if(thread, [=](const interruption& entry) { return entry.handler_sp == new_handler_sp; });
  const auto any = [](const interruption&) { return true; };
  for (auto* entry = latest(thread, any); entry != nullptr && sp > entry->handler_sp; entry = latest(thread, any))
    drop(*entry);
}

void begin_handler(const void* thread, const dr_kernel_xfer_info_t& info, const cpu_state& state) {
  drop_left(thread, info.source_mcontext->xsp, info.target_xsp);
  if (keep(thread, info, state)) return;
  if (interruption* const oldest = oldest_of(thread)) drop(*oldest);
  if (keep(thread, info, state)) return;
  dr_fprintf(our_stderr, "quern: too many signal handlers run at once; at most %d may\n",
             static_cast<int>(saved_vectors_capacity));
  dr_abort();
}

// What was interrupted later than the code that goes on has been left.
void end_handler(const void* thread, std::uint64_t sp, cpu_state& state) {
  const interruption* const ended =
      latest(thread, [sp](const interruption& entry) { return entry.interrupted_sp == sp; });
  if (ended == nullptr) return;
  restore_vectors(*ended->vectors, state);
  drop_if(thread, [number = ended->number](const interruption& entry) { return entry.number >= number; });
}

}  // namespace

void event_kernel_transfer(void* drcontext, const dr_kernel_xfer_info_t* info) {
  cpu_state& state = *thread_state(drcontext);
  if (info->type == DR_XFER_SIGNAL_DELIVERY) begin_handler(drcontext, *info, state);
  if (info->type == DR_XFER_SIGNAL_RETURN) end_handler(drcontext, info->target_xsp, state);
}

void forget_signal_vectors(const void* drcontext) {
  drop_if(drcontext, [](const interruption&) { return true; });
}

}  // namespace quern

// The register file of each application thread, kept in a field of the framework's thread-local storage.
#include "sve/client/thread_state.h"

#include <clocale>
#include <cstddef>
#include <memory>

#include "sve/client/client_assert.h"
#include "sve/client/shared_code.h"
#include "sve/client/signal_vectors.h"

int quern::tls_idx;

namespace {

constexpr std::size_t cache_line = 64;

// The framework's heap may put a block anywhere in a cache line.
constexpr std::size_t allocated_bytes = sizeof(quern::thread_block) + cache_line - 1;

}  // namespace

void quern::event_thread_init(void* drcontext) {
  // The framework gives the client a libc of its own, whose locale is unset on threads that it did not start itself:
  // without this, printing a report would crash there.
  uselocale(LC_GLOBAL_LOCALE);
  forget_signal_vectors(drcontext);
  void* const allocation = dr_thread_alloc(drcontext, allocated_bytes);
  void* aligned = allocation;
  std::size_t room = allocated_bytes;
  std::align(cache_line, sizeof(thread_block), aligned, room);
  auto* const block = static_cast<thread_block*>(aligned);
  block->allocation = allocation;
  block->call_outs = 0;
  client_assert(drmgr_set_tls_field(drcontext, tls_idx, &block->state), "false");
  if (shared_code == nullptr) make_shared_code(drcontext);  // in the first thread: the field must be there
}

void quern::event_thread_exit(void* drcontext) {
  forget_signal_vectors(drcontext);
  cpu_state* const data = thread_state(drcontext);
  client_assert(data != nullptr, "data != __null");
  // The check above ends the process through the framework, which the analyzer can't see.
  // NOLINTNEXTLINE(clang-analyzer-core.NullDereference)
  dr_thread_free(drcontext, reinterpret_cast<thread_block*>(data)->allocation, allocated_bytes);
}

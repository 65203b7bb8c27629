// pthread_setcanceltype and pthread_cancel. No stack can be unwound from generated code, so the signal by which the C
// library cancels a thread that may be cancelled anywhere comes to us first, and waits for the end of the present word
// as others do.
#include <pthread.h>

#include <atomic>

#include "sve/trap/host/export.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/next.h"
#include "sve/trap/host/own_actions.h"

namespace quern {
namespace {

constinit std::atomic<bool> handler_is_ours{false};

void* end_at_once(void*) { return nullptr; }

// The C library installs its handler when the first thread is cancelled: that is one of ours, which has ended or is
// about to. It handles no signal of the application's, and joining it is no point of cancellation for the caller.
void have_handler_installed() {
  const kernel::blocked_signals blocked(~trap_signals);
  int state;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
  pthread_t thread;
  if (next().pthread_create(&thread, nullptr, end_at_once, nullptr) == 0) {
    next().pthread_cancel(thread);
    pthread_join(thread, nullptr);
    own_cancel_signal();
    handler_is_ours.store(true, std::memory_order_release);
  }
  pthread_setcancelstate(state, nullptr);
}

}  // namespace
}  // namespace quern

using namespace quern;

QUERN_EXPORT int pthread_setcanceltype(int type, int* old) {
  static pthread_once_t once = PTHREAD_ONCE_INIT;
  if (type == PTHREAD_CANCEL_ASYNCHRONOUS) pthread_once(&once, have_handler_installed);
  return next().pthread_setcanceltype(type, old);
}

// The first call may install the C library's handler, just when another thread has ours installed.
QUERN_EXPORT int pthread_cancel(pthread_t thread) {
  const int result = next().pthread_cancel(thread);
  if (handler_is_ours.load(std::memory_order_acquire)) own_cancel_signal();
  return result;
}

// timer_create: the C library starts the threads that tell of a timer itself, with all signals blocked. (Those that
// tell of messages, of asynchronous reads and of looked-up names unblock all.)
#include <errno.h>
#include <signal.h>
#include <time.h>

#include <array>
#include <atomic>
#include <cstdlib>

#include "sve/trap/host/export.h"
#include "sve/trap/host/next.h"
#include "sve/trap/host/start.h"

namespace quern {
namespace {

// What a thread is to call. Never freed, as nobody tells when the last such thread has ended; but each is used for all
// that are to call the same.
struct notification {
  void (*function)(sigval);
  void* value;
  notification* next;
};

constinit std::array<std::atomic<notification*>, 64> notifications{};

std::atomic<notification*>& list_of(void* value) {
  return notifications[(reinterpret_cast<std::uintptr_t>(value) >> 4) % notifications.size()];
}

// Null when there is no memory.
notification* find_or_add(void (*function)(sigval), void* value) {
  std::atomic<notification*>& list = list_of(value);
  notification* first = list.load(std::memory_order_acquire);
  for (notification* n = first; n; n = n->next)
    if (n->function == function && n->value == value) return n;
  auto* const added = static_cast<notification*>(std::malloc(sizeof(notification)));
  if (!added) return nullptr;
  *added = {function, value, first};
  while (!list.compare_exchange_weak(added->next, added, std::memory_order_release)) {}
  return added;
}

void run_notification(sigval value) {
  adopt_kernel_mask();
  const notification& asked = *static_cast<notification*>(value.sival_ptr);
  asked.function({.sival_ptr = asked.value});
}

}  // namespace
}  // namespace quern

using namespace quern;

QUERN_EXPORT int timer_create(clockid_t clock, sigevent* event, timer_t* timer) noexcept {
  if (!event || event->sigev_notify != SIGEV_THREAD) return next().timer_create(clock, event, timer);
  notification* const asked = find_or_add(event->sigev_notify_function, event->sigev_value.sival_ptr);
  if (!asked) return result_of(EAGAIN);
  sigevent ours = *event;
  ours.sigev_notify_function = run_notification;
  ours.sigev_value.sival_ptr = asked;
  return next().timer_create(clock, &ours, timer);
}

// Threads of C++ that are cancelled asynchronously within runs: their objects are destroyed, by code that uses SVE, and
// a handler for all exceptions is passed.
#include <pthread.h>
#include <unistd.h>

#include <atomic>

#include "counting_run.h"
#include "program.h"
#include "sve_code.h"

namespace {

constexpr int rounds = 200;
std::atomic<int> working, destroyed, passed;

struct object {
  ~object() {
    if (vectors_work()) ++destroyed;
  }
};

// Cancelled at any instruction: it has nothing to destroy, as those that have may be cancelled in calls alone.
__attribute__((noipa)) void count() {
  pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, nullptr);
  ++working;
  while (count_by_run() == COUNTED_WORDS) {}
}

__attribute__((noipa)) void call_count() {
  const object in_between;
  count();
}

void* count_until_cancelled(void*) {
  const object first;
  try {
    call_count();
  } catch (...) {
    ++passed;
    throw;
  }
  return nullptr;
}

bool is_cancelled(int round) {
  pthread_t thread;
  void* result = nullptr;
  const int before = working;
  pthread_create(&thread, nullptr, count_until_cancelled, nullptr);
  while (working == before) sched_yield();
  usleep(static_cast<useconds_t>(1000 + round * 10));
  pthread_cancel(thread);
  pthread_join(thread, &result);
  return result == PTHREAD_CANCELED;
}

}  // namespace

int main() {
  bool right = true;
  for (int i = 0; i != rounds; ++i) right = is_cancelled(i) && right;
  check("are cancelled", right);
  check("destructors", destroyed == 2 * rounds);
  check("handlers of all exceptions", passed == rounds);
  return finish("cancelled_objects");
}

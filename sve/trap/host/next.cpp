// The look-up of the C library's functions.
#include "sve/trap/host/next.h"

#include <dlfcn.h>

#include <atomic>

namespace quern {
namespace {

constinit next_functions functions{};
constinit std::atomic<bool> found{false};

template <typename Function>
void find(Function& function, const char* name) {
  function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// Threads that come here at once store the same values.
const next_functions& next() {
  if (found.load(std::memory_order_acquire)) return functions;
#define FIND(name) find(functions.name, #name);
  QUERN_NEXT_FUNCTIONS(FIND)
#undef FIND
  find(functions.longjmp_checked, "__longjmp_chk");
  find(functions.setjmps[0], "__sigsetjmp");
  find(functions.setjmps[1], "_setjmp");
  find(functions.setjmps[2], "setjmp");
  found.store(true, std::memory_order_release);
  return functions;
}

}  // namespace quern

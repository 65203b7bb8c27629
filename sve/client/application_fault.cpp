// Faults of emulated loads and stores. The framework lets the client survive a fault of its own, yet tells nothing of
// it. So the access is made again as the application's code, by the few instructions below: the fault is then the
// application's, with the kernel's own account of it, and only the context is to be put right.
#include "sve/client/application_fault.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <cstring>

#include "sve/client/application_context.h"
#include "sve/client/reported_places.h"
#include "sve/client/thread_state.h"
#include "sve/decoder/memory_effect.h"
#include "sve/memory/current_access.h"
#include "sve/memory/kept_destination.h"

#ifdef __aarch64__
// X0 points to X1 addresses, one at least, whose bytes are touched in turn; X2 to X4 are lost. The store writes what
// it has read unless another thread has written meanwhile. UDF ends them, for the case that the memory has become
// accessible.
asm(R"(
.pushsection .text
.balign 4
quern_touch_loaded:
    ldr   x2, [x0], #8
    ldrb  w3, [x2]
    sub   x1, x1, #1
    cbnz  x1, quern_touch_loaded
    b     quern_touch_done
quern_touch_stored:
    ldr   x2, [x0], #8
1:  ldxrb w3, [x2]
    stxrb w4, w3, [x2]
    cbnz  w4, 1b
    sub   x1, x1, #1
    cbnz  x1, quern_touch_stored
quern_touch_done:
    udf   #0
.popsection
)");
// Hidden, so that no loader is needed to find them.
extern "C" __attribute__((visibility("hidden"))) unsigned char quern_touch_loaded[], quern_touch_stored[],
    quern_touch_done[];
#else
// The instructions are AArch64's: elsewhere only their places matter.
static unsigned char quern_touch_loaded[48];
static unsigned char* const quern_touch_stored = quern_touch_loaded + 20;
static unsigned char* const quern_touch_done = quern_touch_loaded + 44;
#endif

namespace quern {
namespace {

constinit thread_local std::array<std::uint64_t, max_suspects> suspects{};

// Goes on in the application, with an access to the bytes that can have faulted.
[[noreturn]] void repeat_access(const cpu_state& state) {
  put_destination_back();
  dr_mcontext_t context = context_of(state);
  context.r0 = reinterpret_cast<reg_t>(suspects.data());
  context.r1 = list_suspects(current_access, suspects);
  context.pc = current_access.kind == MEM_STORE ? quern_touch_stored : quern_touch_loaded;
  dr_redirect_execution(&context);
  __builtin_unreachable();
}

}  // namespace

aarch64_decode_rc run_handler(void* drcontext, sve_handler handler, cpu_state* state, unsigned int word) {
  // A fault of any other instruction is a defect of the emulator, for the framework to report as such.
  if (!has_memory_encoding(word)) return handler(state, word);
  aarch64_decode_rc result = DECODE_OK;
  DR_TRY_EXCEPT(
      drcontext, { result = handler(state, word); }, { repeat_access(*state); });
  return result;
}

dr_signal_action_t event_signal(void* drcontext, dr_siginfo_t* info) {
  const unsigned char* const pc = info->mcontext->pc;
  if (pc >= quern_touch_loaded && pc <= quern_touch_done) fill_context(*info->mcontext, *thread_state(drcontext));
  // No signal for the application when nothing has faulted: the instruction is due again.
  if (info->sig == SIGILL && pc == quern_touch_done) return DR_SIGNAL_REDIRECT;
  report_signal(*info);
  return DR_SIGNAL_DELIVER;
}

}  // namespace quern

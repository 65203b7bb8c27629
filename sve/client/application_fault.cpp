// Faults of emulated loads and stores. The framework lets the client survive a fault of its own, yet tells nothing of
// it. So the access is made again as the application's code, by the few instructions below: the fault is then the
// application's, with the kernel's own account of it, and only the context is to be put right.
#include "sve/client/application_fault.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <cstring>

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

// The host's own always is the application's; cpu_state has it only after the application has written it.
std::uint32_t control_of_floating_point([[maybe_unused]] const cpu_state& state) {
#ifdef __aarch64__
  return static_cast<std::uint32_t>(__builtin_aarch64_get_fpcr());
#else
  return state.fpcr;
#endif
}

// All of the application's registers, as they were before the instruction.
void fill(dr_mcontext_t& context, const cpu_state& state) {
  static_assert(offsetof(dr_mcontext_t, xsp) - offsetof(dr_mcontext_t, r0) == sizeof state.x);
  std::memcpy(reinterpret_cast<unsigned char*>(&context) + offsetof(dr_mcontext_t, r0), state.x, sizeof state.x);
  context.xsp = state.sp;
  context.pc = state.pc;
  context.nzcv = static_cast<uint>(state.nzcv);
  context.fpcr = control_of_floating_point(state);
  context.fpsr = state.fpsr;
  for (std::size_t n = 0; n != 32; ++n) std::memcpy(&context.simd[n], state.z[n], 16);
}

// Goes on in the application, with an access to the bytes that can have faulted. The context is built whole: the
// framework's own answer has some registers of the client's code, and others in the wrong places.
[[noreturn]] void repeat_access(const cpu_state& state) {
  put_destination_back();
  dr_mcontext_t context{};
  context.size = sizeof context;
  context.flags = DR_MC_ALL;
  fill(context, state);
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
  if (pc >= quern_touch_loaded && pc <= quern_touch_done) fill(*info->mcontext, *thread_state(drcontext));
  // No signal for the application when nothing has faulted: the instruction is due again.
  if (info->sig == SIGILL && pc == quern_touch_done) return DR_SIGNAL_REDIRECT;
  report_signal(*info);
  return DR_SIGNAL_DELIVER;
}

}  // namespace quern

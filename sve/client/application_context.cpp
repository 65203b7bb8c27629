// The application's registers, from the register file to the framework's record of them.
#include "sve/client/application_context.h"

#include <cstddef>
#include <cstring>

namespace quern {
namespace {

// The host's own always is the application's; cpu_state has it only after the application has written it.
std::uint32_t control_of_floating_point([[maybe_unused]] const cpu_state& state) {
#ifdef __aarch64__
  return static_cast<std::uint32_t>(__builtin_aarch64_get_fpcr());
#else
  return state.fpcr;
#endif
}

}  // namespace

void fill_context(dr_mcontext_t& context, const cpu_state& state) {
  static_assert(offsetof(dr_mcontext_t, xsp) - offsetof(dr_mcontext_t, r0) == sizeof state.x);
  std::memcpy(reinterpret_cast<unsigned char*>(&context) + offsetof(dr_mcontext_t, r0), state.x, sizeof state.x);
  context.xsp = state.sp;
  context.pc = state.pc;
  context.nzcv = static_cast<uint>(state.nzcv);
  context.fpcr = control_of_floating_point(state);
  context.fpsr = state.fpsr;
  for (std::size_t n = 0; n != 32; ++n) std::memcpy(&context.simd[n], state.z[n], 16);
}

dr_mcontext_t context_of(const cpu_state& state) {
  dr_mcontext_t context{};
  context.size = sizeof context;
  context.flags = DR_MC_ALL;
  fill_context(context, state);
  return context;
}

}  // namespace quern

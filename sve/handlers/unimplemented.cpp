// What an instruction that has no routine yet answers.
#include "sve/handlers/unimplemented.h"

#include <cstddef>
#include <cstdio>

namespace quern {

aarch64_decode_rc report_unimplemented(const cpu_state* state, std::uint32_t word, const char* name) {
  const auto pc = static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(state->pc));
  std::fprintf(stderr, "Unimplemented instruction: [  %tx:\t %08x\t %s  ]\n", pc, word, name);
  return DECODE_UNIMPLEMENTED;
}

}  // namespace quern

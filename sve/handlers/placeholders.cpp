// Placeholders for the instructions without a direct handler.
#include "sve/handlers/placeholders.h"

#include "sve/handlers/unimplemented.h"

#define PLACEHOLDER(name)                                                                            \
  aarch64_decode_rc name(cpu_state* state, ...) {                                                    \
    return quern::report_unimplemented(state, static_cast<std::uint32_t>(state->instr_word), #name); \
  }
#include "sve/handlers/placeholders.def"
#undef PLACEHOLDER

namespace quern {

std::span<const placeholder> placeholders() {
  static constexpr placeholder list[] = {
#define PLACEHOLDER(name) {#name, name},
#include "sve/handlers/placeholders.def"
#undef PLACEHOLDER
  };
  return list;
}

}  // namespace quern

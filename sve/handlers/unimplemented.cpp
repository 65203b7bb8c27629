// What an instruction that has no routine yet answers.
#include "sve/handlers/unimplemented.h"

#include "sve/state/text_line.h"

namespace quern {

aarch64_decode_rc report_unimplemented(const cpu_state* state, std::uint32_t word, const char* name) {
  text_line()
      .put("Unimplemented instruction: [  ")
      .put_hex(reinterpret_cast<std::uintptr_t>(state->pc))
      .put(":\t ")
      .put_hex(word, 8)
      .put("\t ")
      .put(name)
      .put("  ]\n")
      .print();
  return DECODE_UNIMPLEMENTED;
}

}  // namespace quern

// What a word that has no routine yet answers.
#include "sve/decoder/thunk.h"

#include <cstddef>
#include <cstdio>

#include "sve/decoder/decode_map.h"

namespace quern {

aarch64_decode_rc report_unimplemented(const cpu_state* state, std::uint32_t word, const char* name) {
  const auto pc = static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(state->pc));
  std::fprintf(stderr, "Unimplemented instruction: [  %tx:\t %08x\t %s  ]\n", pc, word, name);
  return DECODE_UNIMPLEMENTED;
}

aarch64_decode_rc unimplemented_thunk(cpu_state* state, unsigned int word) {
  const decode_row* row = decode_word(word).row;
  return report_unimplemented(state, word, row == nullptr ? "unknown" : row->name.c_str());
}

}  // namespace quern

// What a word that has no routine yet answers.
#include "sve/decoder/thunk.h"

#include "sve/decoder/decode_map.h"
#include "sve/handlers/unimplemented.h"

namespace quern {

aarch64_decode_rc unimplemented_thunk(cpu_state* state, unsigned int word) {
  const decode_row* row = decode_word(word).row;
  return report_unimplemented(state, word, row == nullptr ? "unknown" : row->name.c_str());
}

}  // namespace quern

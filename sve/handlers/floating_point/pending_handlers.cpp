// What the handlers answer that are not there yet.
#include "sve/handlers/floating_point/host_float.h"
#include "sve/handlers/unimplemented.h"

using z = aarch64_z_reg;
using p = aarch64_p_reg;

#define PENDING(name, ...)                                                                           \
  aarch64_decode_rc name(cpu_state* state, __VA_ARGS__) {                                            \
    return quern::report_unimplemented(state, static_cast<std::uint32_t>(state->instr_word), #name); \
  }
#include "sve/handlers/floating_point/pending_handlers.def"
#undef PENDING

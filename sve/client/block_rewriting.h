// The block event: where a block's emulated instructions become call-outs.
#pragma once

#include "sve/client/framework.h"

namespace quern {

// Replaces each emulated instruction of the block by a bracket, which calls the shared code with the instruction's
// record, and puts before each write of FPCR a copy of the written value into cpu_state::fpcr. After max_replacements
// the rest of the block is cut off. The outcome depends on the block alone, so that a block built again to translate an
// address has the same shape.
dr_emit_flags_t event_instruction_change(void* drcontext, void* tag, instrlist_t* bb, bool for_trace, bool translating);

// The framework gives up on a block whose code grows too large. A block may end anywhere: the framework goes on at the
// next instruction with a new one.
inline constexpr int max_replacements = 16;

}  // namespace quern

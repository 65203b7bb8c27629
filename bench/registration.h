// What quern_bench's sources register in its main, where the decode maps have been filled.
#pragma once

namespace quern {

// One for each direct thunk that neither touches memory nor computes in floating point, and another for its predicated
// forms with half of the lanes active.
void register_direct_thunks();

// The memory instructions, all and half of the lanes active, with tracing off and on, beside memcpy of the same bytes.
void register_memory();

// The routines of the software floating point.
void register_float();

// Packing and unpacking of predicates.
void register_predicate_bits();

}  // namespace quern

// The count that a pattern names.
#include "sve/arith/predicate/predicate_support.h"
#include "sve/state/predicate_pattern.h"

int VecTrueILength(std::uint64_t pattern, int count) { return quern::selected_count(pattern, count); }

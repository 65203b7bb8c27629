// Random register contents, with the values among them that instructions treat in a special way.
#pragma once

#include <cstdint>

#include "sve/state/cpu_state.h"
#include "tests/random_cases/random_source.h"

namespace quern {

// Fills all registers of `state`. `size` is the element size code that the values and predicates mostly fit. With
// `clean` every predicate byte is 0 or 1, else the bits above bit 0 are random.
void fill_registers(random_source& random, std::uint32_t size, bool clean, cpu_state& state);

// Puts floating-point numbers of lanes of `size`, or narrower, into most vectors, and a mode into FPCR: rounding, AHP,
// DN, FZ, FZ16. Every other time all lanes of a vector are one number, so that each flag comes from one operation.
void fill_numbers(random_source& random, std::uint32_t size, cpu_state& state);

}  // namespace quern

// Where the emulator differs from the processor on purpose, each with its reason.
#pragma once

#include <span>

#include "tests/harness/deviation.h"

namespace quern {

std::span<const deviation> known_deviations();

}  // namespace quern

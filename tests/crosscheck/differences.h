// Where a direct handler and the library's function of the same name differ on purpose, each with its reason.
#pragma once

#include <span>

#include "tests/harness/deviation.h"

namespace quern {

std::span<const deviation> known_differences();

}  // namespace quern

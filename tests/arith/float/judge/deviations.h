// Where a routine of the library differs from the processor's instruction on purpose, each with its reason.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "tests/arith/float/judge/routine.h"

namespace quern::judge {

struct deviation {
  std::string_view routines;  // the row's name, or what its name begins with and an asterisk
  std::uint32_t controls;     // bits of FPCR, of which one at least must be set
  bool (*applies)(const operands& x, const outcome& software, const outcome& processor);
  operands example;  // a case under `controls` that does differ
  const char* reason;
};

std::span<const deviation> known_deviations();

bool concerns(const deviation& d, const routine& r);

}  // namespace quern::judge

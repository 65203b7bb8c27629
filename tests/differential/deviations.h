// Where the emulator differs from the processor on purpose, each with its reason.
#pragma once

#include <span>
#include <string_view>

#include "tests/differential/comparison.h"
#include "tests/states/test_case.h"

namespace quern {

struct deviation {
  std::string_view handler;             // of the rows that it concerns
  part where;                           // what differs
  bool (*applies)(const test_case& c);  // in which cases it may
  const char* reason;
};

std::span<const deviation> known_deviations();

}  // namespace quern

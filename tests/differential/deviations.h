// Where the emulator differs from the processor on purpose, each with its reason.
#pragma once

#include <span>
#include <string_view>

#include "tests/differential/comparison.h"
#include "tests/random_cases/test_case.h"

namespace quern {

struct deviation {
  std::string_view handler;  // or family, of the rows that it concerns; or its start and an asterisk
  part where;                // what differs
  bool (*applies)(const decode_row& row, const test_case& c);  // in which cases it may
  bool everywhere;                                             // whether it shows on every processor with SVE
  const char* reason;
};

std::span<const deviation> known_deviations();

// Whether the deviation is one of the row's.
bool concerns(const deviation& d, const decode_row& row);

}  // namespace quern

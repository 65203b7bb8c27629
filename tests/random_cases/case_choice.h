// Which random cases a test runs: those from a first seed on. The environment can choose others.
#pragma once

#include <cstdint>

namespace quern {

struct case_choice {
  std::uint64_t first, count;
};

// By the variables <prefix>_SEED and <prefix>_CASES, where they are set; else from seed 1 on as many as said. A value
// that is no number ends the process with a message.
case_choice choose_cases(const char* prefix, std::uint64_t default_count);

}  // namespace quern

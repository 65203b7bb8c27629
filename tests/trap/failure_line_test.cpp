// The line for an instruction that could not be emulated is the one that the formatted print would give.
#include "sve/trap/failure_line.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace quern {
namespace {

TEST(FailureLine, IsAsPrinted) {
  for (const std::uint32_t word : {0u, 0x04200000u, 0xFFFFFFFFu, 0x1Fu}) {
    for (const std::uintptr_t pc : {std::uintptr_t{0x1}, std::uintptr_t{0x400abc}, ~std::uintptr_t{3}}) {
      char expected[128];
      std::snprintf(expected, sizeof expected, "Error: failed to emulate SVE instruction 0x%08x at PC %p\n", word,
                    reinterpret_cast<void*>(pc));
      EXPECT_STREQ(failure_line(word, reinterpret_cast<void*>(pc)).c_str(), expected);
    }
  }
}

}  // namespace
}  // namespace quern

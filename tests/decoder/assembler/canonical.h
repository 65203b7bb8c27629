// One spelling of assembly, so that two texts are equal when they say the same.
#pragma once

#include <string>
#include <string_view>

namespace quern::test {

// One spelling for what can be written in several ways: numbers in decimal, register ranges as lists, bit masks in 64
// bits, what may be left out left out (zero offsets, multipliers of one, the pattern "all").
std::string canonical(std::string_view assembly);

}  // namespace quern::test

// Whole traces of a few kilobytes, one of each version of the file, to be damaged by tests and fuzzers.
#pragma once

#include <string>
#include <vector>

namespace quern::test {

// The bytes of each file, the first version's first. Those that have packed records and a list of modules hold all: a
// region with a loop and a gather, packed; records behind them; a module that comes and goes.
std::vector<std::string> small_traces();

}  // namespace quern::test

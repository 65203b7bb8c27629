// A program run to its end in quern's place.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tools/hosts.h"

namespace quern {

struct started_program {
  std::filesystem::path file;
  std::vector<std::string> arguments;  // the first is the program's name to itself
  std::string name;                    // its name to the user
};

// Runs it with its trace where --trace says, hands on the signals that quern gets, and answers its exit status. When a
// signal ended it: 128 plus its number, after a line on standard error, which has the place that `place_of_death` knows
// of the process and the signal; empty if none. With --dry-run it is printed, as a line for a shell that would start
// it.
int run_to_end(const started_program& program, const run_options& options,
               const std::function<std::string(pid_t, int)>& place_of_death = {});

}  // namespace quern

// A program run to its end in quern's place.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quern {

// Runs the file with the arguments (the first is the program's name to itself), hands on the signals that quern gets,
// and answers the program's exit status. When a signal ended it: 128 plus its number, after a line on standard error
// that calls the program by `name`.
int run_to_end(const std::filesystem::path& file, const std::vector<std::string>& arguments, const std::string& name);

}  // namespace quern

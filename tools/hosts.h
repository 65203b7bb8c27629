// The hosts of `quern run`. Each runs a program to its end, and answers its exit status.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quern {

// Options of the command line; the texts are empty where they were not given.
struct run_options {
  std::optional<std::string> trace;
  std::string vector_length;  // in bits
  std::string lib_dir;
  std::string framework;  // the folder of DynamoRIO's package
  std::string stats;      // where to; "true", as the parser has it, for standard error
  bool strict = false;    // an instruction that can't be emulated ends the program
  bool dry_run = false;
  bool traps = false;     // for each instruction, under the preloaded library
  bool hide_sve = false;  // from the program's questions, under the preloaded library
};

// The program's file, known to be an AArch64 program, and its arguments: the first is its name to itself.
struct program_call {
  std::filesystem::path file;
  std::vector<std::string> arguments;
};

// Under the library that is preloaded into the program, which must be dynamically linked.
int run_embedded(const run_options& options, const program_call& program);

// Under DynamoRIO with quern's client.
int run_under_framework(const run_options& options, const program_call& program);

}  // namespace quern

// The commands of `quern`, one source file each. Each function adds its command to the command line; the command's
// callback runs when it was chosen, and sets the exit status of the program (0 until set).
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace quern {

// What a command throws when it can't do what it was asked: main prints it as one line. It says what is wrong and how
// to mend it.
struct user_error {
  std::string message;
  int status = 1;
};

// Exit status of a command line that makes no sense.
inline constexpr int status_usage = 2;

// Exit status of `run` when quern itself is what fails; any other is the program's, or a shell's for a missing program.
inline constexpr int status_cannot_run = 125;

// As shells have them, for the program to run.
inline constexpr int status_not_executable = 126, status_not_found = 127;

void add_run_command(CLI::App& app, int& status);
void add_trace_command(CLI::App& app, int& status);
void add_decode_command(CLI::App& app, int& status);
void add_list_command(CLI::App& app, int& status);

}  // namespace quern

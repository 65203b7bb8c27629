// What the commands of `quern` have to say when they can't do what they were asked.
#pragma once

#include <string>

#include "sve/report/place_report.h"

namespace quern {

// main prints it as one line. It says what is wrong and how to mend it.
struct user_error {
  std::string message;
  int status = 1;
};

// Exit status of a command line that makes no sense.
inline constexpr int status_usage = 2;

// Exit status of `run` when quern itself is what fails; any other is the program's, or a shell's for a missing program.
inline constexpr int status_cannot_run = status_of_own_failure;

// As shells have them, for the program to run.
inline constexpr int status_not_executable = 126, status_not_found = 127;

}  // namespace quern

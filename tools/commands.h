// The commands of `quern`, one source file each. Each function adds its command to the command line; the command's
// callback runs when it was chosen, and sets the exit status of the program (0 until set), or throws a user_error.
#pragma once

#include "tools/user_error.h"

namespace CLI {
class App;
}

namespace quern {

void add_run_command(CLI::App& app, int& status);
void add_check_command(CLI::App& app, int& status);
void add_trace_command(CLI::App& app, int& status);
void add_decode_command(CLI::App& app, int& status);
void add_list_command(CLI::App& app, int& status);

// All of them, --version and --help: the command line of `quern`.
void add_commands(CLI::App& app, int& status);

}  // namespace quern

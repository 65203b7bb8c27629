// Completion of the command line in shells.
#pragma once

#include <iosfwd>

#include "tools/manual/command_tree.h"

namespace quern {

// For bash: a file of its folder of completions, which defines and registers a function.
void print_bash_completion(std::ostream& out, const command_form& quern);

// For zsh: a file _quern of its function path.
void print_zsh_completion(std::ostream& out, const command_form& quern);

}  // namespace quern

// Manual pages.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/manual/command_tree.h"

namespace quern {

// The page of a command: its name and options, and between them what `text` has in roff. There, a line @OPTIONS@ stands
// for the options. A command with commands of its own has theirs too, unless these have pages of their own.
void print_manual_page(std::ostream& out, const command_form& command, std::istream& text);

}  // namespace quern

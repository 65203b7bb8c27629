// What the client does when one of its assumptions about the framework is broken.
#pragma once

#include <source_location>

namespace quern {

// Ends the process through the framework when `holds` is false, after one line on the framework's error stream:
// "ASSERT FAILURE: <source file>:<line>: <check> ()". `check` is the text of what was checked.
void client_assert(bool holds, const char* check, std::source_location where = std::source_location::current());

}  // namespace quern

// What the client does when one of its assumptions about the framework is broken.
#pragma once

namespace quern {

// Ends the process through the framework when `holds` is false, after one line on the framework's error stream:
// "ASSERT FAILURE: <source file>:<line>: <check> ()". `check` is the text of what was checked; the rest is the
// place of the call.
void client_assert(bool holds, const char* check, const char* file = __builtin_FILE(), int line = __builtin_LINE());

}  // namespace quern

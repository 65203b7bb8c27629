// Runs a piece of code that may fault, as an application with its own handlers would.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace quern {

// The faulting address of the SIGSEGV or SIGBUS that ends `code` early, or nothing when it runs to its end. Puts the
// former signal actions back.
std::optional<std::uint64_t> caught_fault(const std::function<void()>& code);

}  // namespace quern

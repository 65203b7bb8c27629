// Programs as files: found as a shell finds them, and told apart by their ELF headers.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace quern {

// The executable file that a shell would run for `name`: the path itself if there is a slash in it, else the first in
// the folders of PATH. Throws user_error with a shell's exit status, 127 (none) or 126 (none that can be executed).
std::filesystem::path find_program(const std::string& name);

// The same without complaint, for commands that may be missing.
std::optional<std::filesystem::path> find_in_path(const std::string& name);

// A library can be preloaded into a dynamically linked program, and into no other.
enum class linkage { statically, dynamically, library };

// Throws user_error (status 126) unless the file is an AArch64 program, or a shared library, which may be run as one.
linkage check_program(const std::filesystem::path& program);

bool is_aarch64_library(const std::filesystem::path& file);

}  // namespace quern

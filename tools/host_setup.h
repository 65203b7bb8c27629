// What the hosts of `quern run` need alike before a program starts: paths, and a processor emulator on another
// processor than AArch64. What is missing is thrown as user_error.
#pragma once

#include <filesystem>
#include <string>

namespace quern {

#ifdef __aarch64__
inline constexpr bool needs_emulator = false;
#else
inline constexpr bool needs_emulator = true;
#endif

// The path from the root on, without dots in it.
std::filesystem::path absolute_path(const std::filesystem::path& path);

// The emulator of AArch64 in PATH.
std::filesystem::path find_emulator();

// Where that emulator finds the libraries of AArch64 programs; empty if they are this system's own.
std::string library_root();

}  // namespace quern

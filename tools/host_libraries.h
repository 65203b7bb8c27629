// The libraries of a host, as files: where they are, and for which vector lengths.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tools/hosts.h"

namespace quern {

// What the names of the hosts' libraries begin with; the vector length in bits and ".so" follow.
inline constexpr std::string_view embedded_host_stem = "libquern_trap_", framework_host_stem = "libquern_";

// What a host needs, for AArch64.
struct host_libraries {
  std::filesystem::path host, utils;
};

// The host's library for the vector length of --vl, else of QUERN_VL, else for that of quern's own build; and
// libquern_utils.so. They are in the folder of --lib-dir, else of QUERN_LIB_DIR, else in the first of those where an
// installation and a build tree have them. `remedy` says how to get the two. Throws user_error if they are not there.
host_libraries find_host(const run_options& options, std::string_view stem, const std::string& remedy);

// The vector lengths in bits that there are hosts for, but for those that --lib-dir leads to.
std::vector<int> emulated_lengths();

}  // namespace quern

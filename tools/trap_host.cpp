// quern run --host trap: the host is a library that is preloaded into the program; on another processor than AArch64,
// both run in a processor emulator without SVE.
#include <fmt/core.h>

#include <cstdlib>

#include "sve/state/vector_length.h"
#include "tools/child_process.h"
#include "tools/host_setup.h"
#include "tools/hosts.h"
#include "tools/user_error.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

// The preloaded libraries, before those that the user preloads.
std::string preload_list(const fs::path& folder, const std::string& host_library) {
  constexpr const char* separators = " :,";  // the dynamic linker's, and the processor emulator's
  if (folder.string().find_first_of(separators) != std::string::npos)
    throw user_error{fmt::format("the libraries can't be preloaded from '{}': its path has a space, colon or comma in "
                                 "it; move them",
                                 folder.string()),
                     status_cannot_run};
  std::string list = (folder / host_library).string() + ":" + (folder / "libquern_utils.so").string();
  if constexpr (!needs_emulator) {
    const char* const users = std::getenv("LD_PRELOAD");
    if (users != nullptr && *users != 0) list += std::string(":") + users;
  }
  return list;
}

}  // namespace

int run_under_trap(const run_options& options, const program_call& program) {
  const std::string host_library = fmt::format("libquern_trap_{}.so", VL_BITS);
  const std::string preload = preload_list(library_folder(options.lib_dir, host_library, "build them"), host_library);
  const std::string& name = program.arguments.front();
  if (!needs_emulator) {
    set_trace_path(options.trace);
    setenv("LD_PRELOAD", preload.c_str(), 1);
    return run_to_end(program.file, program.arguments, name);
  }
  const fs::path emulator = find_emulator();
  std::vector<std::string> arguments{emulator.string(), "-cpu", "max,sve=off,sme=off", "-E", "LD_PRELOAD=" + preload};
  if (const std::string root = library_root(); !root.empty()) arguments.insert(arguments.end(), {"-L", root});
  arguments.insert(arguments.end(), {"-0", name, program.file.string()});
  arguments.insert(arguments.end(), program.arguments.begin() + 1, program.arguments.end());
  set_trace_path(options.trace);
  return run_to_end(emulator, arguments, name);
}

}  // namespace quern

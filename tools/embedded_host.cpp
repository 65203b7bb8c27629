// quern run --host embedded: the host is a library that is preloaded into the program. Both run in a processor emulator
// without SVE where the processor is none for AArch64.
#include <fmt/core.h>

#include <algorithm>
#include <cstdlib>

#include "tools/host_libraries.h"
#include "tools/host_setup.h"
#include "tools/hosts.h"
#include "tools/program_file.h"
#include "tools/run_report.h"
#include "tools/user_error.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

constexpr const char* list_separators = " :";  // of LD_PRELOAD

// The libraries that the user preloads: into the program, and into the processor emulator if there is one.
struct users_libraries {
  std::string programs, emulators;
};

// One without a slash is looked for where the dynamic linker would begin.
bool is_for_program(const std::string& library) {
  if (library.find('/') != std::string::npos) return is_aarch64_library(library);
  return is_aarch64_library(fs::path(library_root() + "/lib") / library);
}

users_libraries find_users_libraries() {
  users_libraries found;
  const char* const given = std::getenv("LD_PRELOAD");
  std::string_view list = given != nullptr ? given : "";
  if (!needs_emulator) return {std::string(list), ""};
  while (!list.empty()) {
    const std::string library(list.substr(0, list.find_first_of(list_separators)));
    list.remove_prefix(std::min(list.size(), library.size() + 1));
    if (library.empty()) continue;
    std::string& libraries = is_for_program(library) ? found.programs : found.emulators;
    libraries += (libraries.empty() ? "" : ":") + library;
  }
  return found;
}

// The libraries that are preloaded into the program: quern's, then the user's.
std::string preload_list(const host_libraries& libraries, const std::string& users) {
  const fs::path folder = libraries.host.parent_path();
  if (folder.string().find_first_of(std::string(list_separators) + ",") != std::string::npos)  // a comma: qemu's -E
    throw user_error{fmt::format("the libraries can't be preloaded from '{}': its path has a space, colon or comma in "
                                 "it; move them",
                                 folder.string()),
                     status_cannot_run};
  const std::string own = libraries.host.string() + ":" + libraries.utils.string();
  return users.empty() ? own : own + ":" + users;
}

}  // namespace

int run_embedded(const run_options& options, const program_call& program) {
  // Each instruction is counted where it traps, and so is to trap each time.
  if (!options.stats.empty()) setenv("QUERN_PATCH", "off", 1);
  const users_libraries users = find_users_libraries();
  const std::string preload = preload_list(find_host(options, embedded_host_stem, "build them"), users.programs);
  const std::string& name = program.arguments.front();
  if (!needs_emulator) {
    setenv("LD_PRELOAD", preload.c_str(), 1);
    return run_reported({program.file, program.arguments, name}, options, program.file);
  }
  const fs::path emulator = find_emulator();
  std::vector<std::string> arguments{emulator.string(), "-cpu", "max,sve=off,sme=off", "-E", "LD_PRELOAD=" + preload};
  if (const std::string root = library_root(); !root.empty()) arguments.insert(arguments.end(), {"-L", root});
  arguments.insert(arguments.end(), {"-0", name, program.file.string()});
  arguments.insert(arguments.end(), program.arguments.begin() + 1, program.arguments.end());
  if (users.emulators.empty())
    unsetenv("LD_PRELOAD");
  else
    setenv("LD_PRELOAD", users.emulators.c_str(), 1);
  return run_reported({emulator, arguments, name}, options, program.file);
}

}  // namespace quern

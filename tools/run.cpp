// quern run: runs a program under the trap host, which is preloaded into it; on another processor than AArch64, both
// run in a processor emulator without SVE.
#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>

#include "sve/state/vector_length.h"
#include "tools/child_process.h"
#include "tools/commands.h"
#include "tools/program_file.h"
#include "utils/trace_format.h"

namespace quern {
namespace {

namespace fs = std::filesystem;

#ifdef __aarch64__
constexpr bool needs_emulator = false;
#else
constexpr bool needs_emulator = true;
#endif
constexpr const char* sysroot = "/usr/aarch64-linux-gnu";

struct run_options {
  std::string trace, lib_dir;
};

std::string host_name() { return fmt::format("libquern_trap_{}.so", VL_BITS); }

bool has_libraries(const fs::path& folder) {
  return is_aarch64_library(folder / host_name()) && is_aarch64_library(folder / "libquern_utils.so");
}

// Beside quern's own folder where it is installed, or the build of the other platform in a build tree.
std::vector<fs::path> usual_folders() {
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error).parent_path();
  return {(self / "../lib").lexically_normal(), (self / "../../aarch64/lib").lexically_normal()};
}

fs::path library_folder(const std::string& chosen) {
  const char* const from_environment = std::getenv("QUERN_LIB_DIR");
  std::vector<fs::path> folders = usual_folders();
  if (!chosen.empty())
    folders = {chosen};
  else if (from_environment != nullptr && *from_environment != 0)
    folders = {from_environment};
  std::string tried;
  for (const fs::path& folder : folders) {
    if (has_libraries(folder)) return fs::absolute(folder);
    tried += (tried.empty() ? "" : " nor ") + folder.string();
  }
  throw user_error{
      fmt::format("there are no {} and libquern_utils.so for AArch64 in {} (build them, or name their folder "
                  "by --lib-dir or QUERN_LIB_DIR)",
                  host_name(), tried),
      status_cannot_run};
}

// The preloaded libraries, before those that the user preloads.
std::string preload_list(const fs::path& folder) {
  constexpr const char* separators = " :,";  // the dynamic linker's, and the processor emulator's
  if (folder.string().find_first_of(separators) != std::string::npos)
    throw user_error{fmt::format("the libraries can't be preloaded from '{}': its path has a space, colon or comma in "
                                 "it; move them",
                                 folder.string()),
                     status_cannot_run};
  std::string list = (folder / host_name()).string() + ":" + (folder / "libquern_utils.so").string();
  if constexpr (!needs_emulator) {
    const char* const users = std::getenv("LD_PRELOAD");
    if (users != nullptr && *users != 0) list += std::string(":") + users;
  }
  return list;
}

fs::path find_emulator() {
  for (const char* name : {"qemu-aarch64", "qemu-aarch64-static"})
    if (const auto path = find_in_path(name)) return *path;
  throw user_error{
      "qemu-aarch64 is not in PATH: install it (Debian package qemu-user), since this is no AArch64 machine",
      status_cannot_run};
}

// An earlier trace of that name makes room; another file does not.
void clear_the_way(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) return;
  if (!fs::is_regular_file(status))
    throw user_error{fmt::format("the trace can't be written to {}: it is not a regular file", path),
                     status_cannot_run};
  std::uint64_t magic = 0;
  std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(&magic), sizeof magic);
  if (magic != trace_magic && fs::file_size(path, error) != 0)
    throw user_error{fmt::format("{} exists and is no trace: remove it or choose another name", path),
                     status_cannot_run};
  fs::remove(path, error);
}

// Makes QUERN_TRACE of --trace: absolute, since the program may run elsewhere, and known to be writable.
void set_trace_path(const std::string& given) {
  const std::string path = fs::absolute(given).lexically_normal().string();
  clear_the_way(path);
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0)
    throw user_error{fmt::format("the trace can't be written to {}: {}", path, std::strerror(errno)),
                     status_cannot_run};
  close(file);
  unlink(path.c_str());
  setenv("QUERN_TRACE", path.c_str(), 1);
}

int run_program(const run_options& options, const std::vector<std::string>& command) {
  const fs::path program = find_program(command.front());
  check_program(program);
  const std::string preload = preload_list(library_folder(options.lib_dir));
  if (!needs_emulator) {
    if (!options.trace.empty()) set_trace_path(options.trace);
    setenv("LD_PRELOAD", preload.c_str(), 1);
    return run_to_end(program, command, command.front());
  }
  const fs::path emulator = find_emulator();
  std::vector<std::string> arguments{emulator.string(), "-cpu", "max,sve=off,sme=off", "-E", "LD_PRELOAD=" + preload};
  if (std::getenv("QEMU_LD_PREFIX") == nullptr && fs::exists(sysroot))
    arguments.insert(arguments.end(), {"-L", sysroot});
  arguments.insert(arguments.end(), {"-0", command.front(), program.string()});
  arguments.insert(arguments.end(), command.begin() + 1, command.end());
  if (!options.trace.empty()) set_trace_path(options.trace);
  return run_to_end(emulator, arguments, command.front());
}

}  // namespace

void add_run_command(CLI::App& app, int& status) {
  CLI::App* const run = app.add_subcommand("run", "Run a program under emulation");
  const auto options = std::make_shared<run_options>();
  run->add_option("--trace", options->trace, "Where the memory trace goes, if the program makes one")
      ->type_name("FILE");
  run->add_option("--lib-dir", options->lib_dir, "Where the emulator's libraries are")->type_name("DIR");
  run->footer(
      "Usage: quern run [OPTIONS] -- PROGRAM [ARGUMENTS...]\n"
      "The exit status is the program's, or 128 plus the number of the signal that ended it.");
  run->prefix_command();  // all from the program on is the program's
  run->callback([run, options, &status] {
    const std::vector<std::string> command = run->remaining();
    if (command.empty()) throw user_error{"give a program to run (see quern run --help)", status_usage};
    if (command.front().starts_with('-'))
      throw user_error{fmt::format("run has no option {} (see quern run --help)", command.front()), status_usage};
    status = run_program(*options, command);
  });
}

}  // namespace quern
